// Key paths from hosts, applied to JSON data. The first line of the input is the path, the rest
// the JSON. Following a path equals taking its first key and following the rest; arrays answer
// element-wise with nil as null; a dictionary answers its own keys whatever they contain.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(bytes), size);
    const std::size_t newline = input.find('\n');
    const std::string_view path = input.substr(0, newline);
    const std::string_view json =
        newline == std::string_view::npos ? std::string_view() : input.substr(newline + 1);
    const VLXValue value = VLXValue::fromJSON(json);
    const VLXValue result = value.valueForKeyPath(path);
    const std::string detail = std::string(path) + " in " + std::string(json);

    if (value.isArray()) {
        VLX_FUZZ_CHECK(result.isArray() && result.count() == value.count(), detail);
        for (std::size_t i = 0; i < value.count(); ++i) {
            const VLXValue element = value.objectAtIndex(i).valueForKeyPath(path);
            VLX_FUZZ_CHECK(
                result.objectAtIndex(i) == (element.isNil() ? VLXValue::null() : element), detail);
        }
        return 0;
    }
    if (value.isDictionary() && value.respondsTo(path)) {
        VLX_FUZZ_CHECK(value.valueForKey(path) == value.dictionaryValue().find(path)->second,
                       detail);
    }
    const std::size_t dot = path.find('.');
    if (dot == std::string_view::npos) {
        VLX_FUZZ_CHECK(result == value.valueForKey(path), detail);
        return 0;
    }
    const VLXValue head = value.valueForKey(path.substr(0, dot));
    const VLXValue expected =
        head.isNil() ? VLXValue() : head.valueForKeyPath(path.substr(dot + 1));
    VLX_FUZZ_CHECK(result == expected, detail);
    if (!value.isDictionary()) {
        VLX_FUZZ_CHECK(result.isNil(), detail + " → " + vlxfuzz::describe(result));
    }
    return 0;
}
