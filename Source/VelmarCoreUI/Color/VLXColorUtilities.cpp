#include <VelmarCoreUI/Color/VLXColorUtilities.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include <VelmarCoreUI/Platform/Foundation/VLXNumerics.h>
#include <VelmarCoreUI/Platform/Foundation/VLXStringFormat.h>
#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>

namespace {

bool isScanSpace(unsigned unit) {
    return unit == ' ' || (unit >= '\t' && unit <= '\r');  // C locale isspace
}

int hexDigit(unsigned unit) {
    if (unit >= '0' && unit <= '9') {
        return static_cast<int>(unit - '0');
    }
    if (unit >= 'a' && unit <= 'f') {
        return static_cast<int>(unit - 'a' + 10);
    }
    if (unit >= 'A' && unit <= 'F') {
        return static_cast<int>(unit - 'A' + 10);
    }
    return -1;
}

// The "%lx" scan over any sequence of code units; units outside ASCII are never digits or
// blanks, so UTF-8 bytes and UTF-16 units scan alike.
template <class Unit>
VLXUInteger scanHex(const Unit* begin, const Unit* end) {
    auto unitAt = [](const Unit* p) {
        return static_cast<unsigned>(static_cast<std::make_unsigned_t<Unit>>(*p));
    };
    const Unit* p = begin;
    while (p != end && isScanSpace(unitAt(p))) {
        ++p;
    }
    bool negative = false;
    if (p != end && (unitAt(p) == '+' || unitAt(p) == '-')) {
        negative = unitAt(p) == '-';
        ++p;
    }
    if (end - p >= 3 && unitAt(p) == '0' && (unitAt(p + 1) == 'x' || unitAt(p + 1) == 'X') &&
        hexDigit(unitAt(p + 2)) >= 0) {
        p += 2;
    }
    VLXUInteger value = 0;
    bool overflow = false;
    for (; p != end; ++p) {
        const int digit = hexDigit(unitAt(p));
        if (digit < 0) {
            break;
        }
        if (value > (std::numeric_limits<VLXUInteger>::max() >> 4)) {
            overflow = true;
        }
        value = (value << 4) | static_cast<VLXUInteger>(digit);
    }
    if (overflow) {
        return std::numeric_limits<VLXUInteger>::max();
    }
    return negative ? VLXUInteger{0} - value : value;
}

// UTF-8 to UTF-16 code units, the units in which platform strings count their length. Each
// byte of a malformed sequence becomes one U+FFFD.
std::u16string utf16Units(std::string_view text) {
    std::u16string units;
    units.reserve(text.size());
    std::size_t i = 0;
    while (i < text.size()) {
        const auto lead = static_cast<unsigned char>(text[i]);
        std::size_t length = 0;
        char32_t codePoint = 0;
        if (lead < 0x80) {
            length = 1;
            codePoint = lead;
        } else if (lead >= 0xC2 && lead <= 0xDF) {
            length = 2;
            codePoint = lead & 0x1Fu;
        } else if (lead >= 0xE0 && lead <= 0xEF) {
            length = 3;
            codePoint = lead & 0x0Fu;
        } else if (lead >= 0xF0 && lead <= 0xF4) {
            length = 4;
            codePoint = lead & 0x07u;
        }
        bool valid = length != 0 && i + length <= text.size();
        for (std::size_t k = 1; valid && k < length; ++k) {
            const auto next = static_cast<unsigned char>(text[i + k]);
            if ((next & 0xC0u) != 0x80u) {
                valid = false;
            } else {
                codePoint = (codePoint << 6) | (next & 0x3Fu);
            }
        }
        if (valid &&
            ((length == 3 && (codePoint < 0x800 || (codePoint >= 0xD800 && codePoint <= 0xDFFF))) ||
             (length == 4 && (codePoint < 0x10000 || codePoint > 0x10FFFF)))) {
            valid = false;
        }
        if (!valid) {
            units.push_back(u'\uFFFD');
            ++i;
            continue;
        }
        if (codePoint >= 0x10000) {
            codePoint -= 0x10000;
            units.push_back(static_cast<char16_t>(0xD800 + (codePoint >> 10)));
            units.push_back(static_cast<char16_t>(0xDC00 + (codePoint & 0x3FF)));
        } else {
            units.push_back(static_cast<char16_t>(codePoint));
        }
        i += length;
    }
    return units;
}

// ASCII lowercasing is enough: the trim sets and the number syntax are ASCII, and no
// non-ASCII letter lowercases into one of them.
std::string lowercasedASCII(std::string_view text) {
    std::string lower(text);
    for (char& c : lower) {
        if (c >= 'A' && c <= 'Z') {
            c = static_cast<char>(c - 'A' + 'a');
        }
    }
    return lower;
}

// Lowercases, trims the characters of `trimSet` from both ends and splits at ",". Empty when
// the count cannot be 3 or 4, so huge text with many commas is rejected before it is copied.
std::vector<std::string> notationComponents(std::string_view text, std::string_view trimSet) {
    const std::string lower = lowercasedASCII(text);
    const std::string_view whole = lower;
    const std::size_t first = whole.find_first_not_of(trimSet);
    if (first == std::string_view::npos) {
        return {};  // nothing left: a single empty component
    }
    const std::size_t last = whole.find_last_not_of(trimSet);
    const std::string_view body = whole.substr(first, last - first + 1);
    const auto commas = std::count(body.begin(), body.end(), ',');
    if (commas != 2 && commas != 3) {
        return {};
    }
    std::vector<std::string> components;
    std::size_t start = 0;
    while (true) {
        const std::size_t comma = body.find(',', start);
        if (comma == std::string_view::npos) {
            components.emplace_back(body.substr(start));
            break;
        }
        components.emplace_back(body.substr(start, comma - start));
        start = comma + 1;
    }
    return components;
}

double floatValueOf(const std::string& text) {
    return static_cast<double>(VLXValue(text).floatValue());
}

// Component × 255 truncated toward zero as an unsigned integer, with the conversions that
// would be undefined pinned down: NaN and negatives give 0, values past 64 bits saturate.
unsigned long truncatedByte(double component) {
    const double scaled = component * 255.0;
    if (!(scaled > 0.0)) {
        return 0;
    }
    if (scaled >= 18446744073709551616.0) {  // 2^64
        return std::numeric_limits<unsigned long>::max();
    }
    return static_cast<unsigned long>(scaled);
}

// min(value, 1) then max(that, 0), with NaN read as 0.
double clampedUnit(double value) {
    if (std::isnan(value)) {
        return 0.0;
    }
    return std::max(std::min(value, 1.0), 0.0);
}

double blend(double a, double b, double position) {
    if (position == 0.0) {
        return a;
    }
    if (position == 1.0) {
        return b;
    }
    return a < b ? a + position * (b - a) : b + (1.0 - position) * (a - b);
}

}  // namespace

VLXUInteger vlx_hexValue(std::string_view text) {
    return scanHex(text.data(), text.data() + text.size());
}

VLXColor vlx_colorWithRed(double red, double green, double blue, double alpha) {
    return VLXColor::colorWithRed(red / 255.0, green / 255.0, blue / 255.0, alpha);
}

std::optional<VLXColor> vlx_colorWithRGB(std::string_view text) {
    const std::vector<std::string> parts = notationComponents(text, "rgba( )");
    if (parts.size() != 3 && parts.size() != 4) {
        return std::nullopt;
    }
    const double alpha = parts.size() == 4 ? floatValueOf(parts[3]) : 1.0;
    return vlx_colorWithRed(floatValueOf(parts[0]), floatValueOf(parts[1]), floatValueOf(parts[2]),
                            alpha);
}

VLXColor vlx_colorWithHue(double hue, double saturation, double brightness, double alpha) {
    return VLXColor::colorWithHue(hue / 255.0, saturation / 100.0, brightness / 100.0, alpha);
}

std::optional<VLXColor> vlx_colorWithHSL(std::string_view text) {
    const std::vector<std::string> parts = notationComponents(text, "hsla(% )");
    if (parts.size() != 3 && parts.size() != 4) {
        return std::nullopt;
    }
    const double alpha = parts.size() == 4 ? floatValueOf(parts[3]) : 1.0;
    const float hue = VLXValue(parts[0]).floatValue();
    const float saturation = VLXValue(parts[1]).floatValue();
    const float lightness = VLXValue(parts[2]).floatValue();
    const double factor =
        lightness < 0.5f ? static_cast<double>(lightness) : 1.0 - static_cast<double>(lightness);
    const double brightnessSaturation = static_cast<double>(saturation) * factor;
    return vlx_colorWithHue(hue, brightnessSaturation, lightness, alpha);
}

std::optional<VLXColor> vlx_colorWithHex(std::string_view text) {
    std::u16string units = utf16Units(text);
    if (!units.empty() && units[0] == u'#') {
        units.erase(0, 1);
    } else if (units.size() >= 2 && units[0] == u'0' && units[1] == u'x') {
        units.erase(0, 2);
    }
    if (units.size() == 6) {
        units += u"ff";
    } else if (units.size() == 3) {
        units =
            std::u16string{units[0], units[0], units[1], units[1], units[2], units[2], u'f', u'f'};
    } else if (units.size() != 8) {
        return std::nullopt;
    }
    double channels[4];
    for (std::size_t i = 0; i < 4; ++i) {
        const char16_t* pair = units.data() + 2 * i;
        const float value = static_cast<float>(scanHex(pair, pair + 2));
        channels[i] = static_cast<double>(value / 255.0f);
    }
    return VLXColor::colorWithRed(channels[0], channels[1], channels[2], channels[3]);
}

bool vlx_isEqualToColor(const VLXColor& color, const VLXColor& other) {
    auto normalised = [](const VLXColor& c) {
        double white = 0;
        double alpha = 0;
        if (c.getWhite(&white, &alpha)) {
            return VLXColor::colorWithRed(white, white, white, alpha);
        }
        return c;
    };
    return normalised(color) == normalised(other);
}

VLXColor vlx_interpolatedToColor(const VLXColor& color, const VLXColor& to, double position) {
    const double p = std::isnan(position) ? 0.0 : std::clamp(position, 0.0, 1.0);
    const double red = blend(vlx_red(color), vlx_red(to), p);
    const double green = blend(vlx_green(color), vlx_green(to), p);
    const double blue = blend(vlx_blue(color), vlx_blue(to), p);
    const double alpha = blend(vlx_alpha(color), vlx_alpha(to), p);
    return vlx_colorWithRed(red * 255.0, green * 255.0, blue * 255.0, alpha);
}

std::string vlx_hexValue(const VLXColor& color) {
    return vlx_hexValueWithAlpha(color, false).value_or("");
}

std::optional<std::string> vlx_hexValueWithAlpha(const VLXColor& color, bool withAlpha) {
    const auto components = color.components();
    std::string hex;
    if (components.size() == 4) {
        hex = VLXStringWithFormat("%02lx%02lx%02lx", truncatedByte(components[0]),
                                  truncatedByte(components[1]), truncatedByte(components[2]));
    } else if (components.size() == 2) {
        const unsigned long white = truncatedByte(components[0]);
        hex = VLXStringWithFormat("%02lx%02lx%02lx", white, white, white);
    } else {
        return std::nullopt;
    }
    if (withAlpha) {
        hex += VLXStringWithFormat("%02lx", truncatedByte(vlx_alpha(color)));
    }
    return hex;
}

std::optional<VLXColor> vlx_adjustBrightness(const VLXColor& color, double factor) {
    double hue = 0;
    double saturation = 0;
    double brightness = 0;
    double alpha = 0;
    if (color.getHue(&hue, &saturation, &brightness, &alpha)) {
        return VLXColor::colorWithHue(hue, saturation, clampedUnit(brightness * factor), alpha);
    }
    double white = 0;
    if (color.getWhite(&white, &alpha)) {
        return VLXColor::colorWithWhite(clampedUnit(white * factor), alpha);
    }
    return std::nullopt;
}

VLXColor vlx_grayscale(const VLXColor& color) {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 0;
    if (color.getRed(&red, &green, &blue, &alpha)) {
        return VLXColor::colorWithWhite(red * 0.299 + green * 0.587 + blue * 0.114, alpha);
    }
    return color;
}

bool vlx_isLightColor(const VLXColor& color) {
    const double luma =
        (vlx_red(color) * 299.0 + vlx_green(color) * 587.0 + vlx_blue(color) * 114.0) / 1000.0;
    return luma >= 0.55;
}

VLXColor vlx_adjustAlpha(const VLXColor& color, double alpha) {
    return VLXColor::colorWithRed(vlx_red(color), vlx_green(color), vlx_blue(color), alpha);
}

double vlx_red(const VLXColor& color) {
    return vlx_getComponentAtIndex(color, 0);
}
double vlx_green(const VLXColor& color) {
    return vlx_getComponentAtIndex(color, 1);
}
double vlx_blue(const VLXColor& color) {
    return vlx_getComponentAtIndex(color, 2);
}
double vlx_alpha(const VLXColor& color) {
    return color.alpha();
}

double vlx_getComponentAtIndex(const VLXColor& color, VLXUInteger index) {
    const auto components = color.components();
    switch (color.colorSpaceModel()) {
        case VLXColorSpaceModel::Monochrome:
            if (components.size() == 2) {
                return index < 3 ? components[0] : components[1];
            }
            break;
        case VLXColorSpaceModel::RGB:
            if (components.size() == 4 && index < 3) {
                return components[index];
            }
            break;
        default:
            break;
    }
    return -1.0;
}
