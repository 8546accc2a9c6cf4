#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <optional>
#include <string>
#include <string_view>

class VLXValue;

/// `text` without the white space and line breaks at both ends: ASCII space, tab, LF, VT, FF,
/// CR, NEL (U+0085) and the Unicode separators (U+00A0, U+1680, U+2000–U+200A, U+2028, U+2029,
/// U+202F, U+205F, U+3000), read as UTF-8. Bytes that are not valid UTF-8 are kept as they are.
VLX_EXPORT std::string vlx_stringByTrimmingLeadingAndTrailingWhitespaceAndNewlineCharacters(
    std::string_view text);

/// True only for a string value with at least one character; nil, null, numbers and every
/// other kind are false.
VLX_EXPORT bool VLXIsNonEmptyString(const VLXValue& value);
/// True when the optional holds a non-empty string.
VLX_EXPORT bool VLXIsNonEmptyString(const std::optional<std::string>& string);
VLX_EXPORT bool VLXIsNonEmptyString(const std::string& string);
/// False for a null pointer.
VLX_EXPORT bool VLXIsNonEmptyString(const char* string);
