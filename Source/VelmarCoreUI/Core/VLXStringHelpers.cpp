#include <VelmarCoreUI/Core/VLXStringHelpers.h>

#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>

namespace {

// Length of the white space or line break that starts at `text[i]`, or 0.
std::size_t whitespaceLengthAt(std::string_view text, std::size_t i) {
    const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(text[k]); };
    const std::size_t left = text.size() - i;
    const unsigned char b0 = byte(i);
    if (b0 == ' ' || (b0 >= 0x09 && b0 <= 0x0D)) {
        return 1;
    }
    if (b0 == 0xC2 && left >= 2) {
        return (byte(i + 1) == 0x85 || byte(i + 1) == 0xA0) ? 2 : 0;  // NEL, NBSP
    }
    if (left < 3) {
        return 0;
    }
    const unsigned char b1 = byte(i + 1);
    const unsigned char b2 = byte(i + 2);
    if (b0 == 0xE1) {
        return (b1 == 0x9A && b2 == 0x80) ? 3 : 0;  // U+1680
    }
    if (b0 == 0xE2 && b1 == 0x80) {
        // U+2000–U+200A, U+2028, U+2029, U+202F
        return ((b2 >= 0x80 && b2 <= 0x8A) || b2 == 0xA8 || b2 == 0xA9 || b2 == 0xAF) ? 3 : 0;
    }
    if (b0 == 0xE2 && b1 == 0x81) {
        return b2 == 0x9F ? 3 : 0;  // U+205F
    }
    if (b0 == 0xE3) {
        return (b1 == 0x80 && b2 == 0x80) ? 3 : 0;  // U+3000
    }
    return 0;
}

// Length of the white space or line break that ends at `end` (exclusive), or 0. Every trimmed
// character is at most three bytes, so trying the three possible starts is enough.
std::size_t whitespaceLengthBefore(std::string_view text, std::size_t end) {
    for (std::size_t length = 1; length <= 3 && length <= end; ++length) {
        if (whitespaceLengthAt(text.substr(0, end), end - length) == length) {
            return length;
        }
    }
    return 0;
}

}  // namespace

std::string vlx_stringByTrimmingLeadingAndTrailingWhitespaceAndNewlineCharacters(
    std::string_view text) {
    std::size_t begin = 0;
    while (begin < text.size()) {
        const std::size_t length = whitespaceLengthAt(text, begin);
        if (length == 0) {
            break;
        }
        begin += length;
    }
    std::size_t end = text.size();
    while (end > begin) {
        const std::size_t length = whitespaceLengthBefore(text.substr(begin), end - begin);
        if (length == 0) {
            break;
        }
        end -= length;
    }
    return std::string(text.substr(begin, end - begin));
}

bool VLXIsNonEmptyString(const VLXValue& value) {
    return value.isString() && !value.stringValue().empty();
}

bool VLXIsNonEmptyString(const std::optional<std::string>& string) {
    return string.has_value() && !string->empty();
}

bool VLXIsNonEmptyString(const std::string& string) {
    return !string.empty();
}

bool VLXIsNonEmptyString(const char* string) {
    return string != nullptr && *string != '\0';
}
