// JSON text from hosts. Text that parses must write and re-parse to an equal value, and the
// written text must be a fixed point (writing the re-parsed value gives the same text).

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(bytes), size);
    const VLXValue value = VLXValue::fromJSON(text);
    if (value.isNil()) {
        return 0;
    }
    VLX_FUZZ_CHECK(value == value, vlxfuzz::describe(value));
    const std::string written = value.toJSON();
    const VLXValue reread = VLXValue::fromJSON(written);
    VLX_FUZZ_CHECK(reread == value, std::string(text) + "\n→ " + written);
    VLX_FUZZ_CHECK(reread.toJSON() == written, written);
    (void)value.description();
    return 0;
}
