// Colour text from hosts: hexadecimal, rgba and hsla notations. A parsed colour that hex can
// express, written back as hex (with alpha), must parse to the same colour; colours of the other
// notations must reach a fixed point after one hex round trip, and every colour must equal itself
// as a value.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <VelmarCoreUI/Color/VLXColorUtilities.h>

#include "FuzzSupport.h"

namespace {

bool withinUnit(const VLXColor& color) {
    for (double component : color.components()) {
        if (!(component >= 0.0 && component <= 1.0)) {
            return false;
        }
    }
    return true;
}

void exercise(const VLXColor& color) {
    VLX_FUZZ_CHECK(VLXValue(color) == VLXValue(color), color.description());
    (void)vlx_isLightColor(color);
    (void)vlx_grayscale(color);
    (void)vlx_adjustBrightness(color, 0.5);
    (void)vlx_interpolatedToColor(color, VLXColor::whiteColor(), 0.25);
    (void)vlx_hexValue(color);
}

// hex → colour → hex is the identity from the second step on.
void checkHexFixedPoint(const VLXColor& color) {
    const std::optional<std::string> hex = vlx_hexValueWithAlpha(color, true);
    VLX_FUZZ_CHECK(hex && hex->size() == 8, color.description());
    const std::optional<VLXColor> parsed = vlx_colorWithHex("#" + *hex);
    VLX_FUZZ_CHECK(parsed.has_value(), *hex);
    VLX_FUZZ_CHECK(vlx_hexValueWithAlpha(*parsed, true) == hex,
                   *hex + " → " + parsed->description());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(bytes), size);

    (void)vlx_hexValue(text);
    if (const auto color = vlx_colorWithHex(text)) {
        exercise(*color);
        // Pairs are read like "%lx", so a signed pair ("-2") wraps modulo 2^64 into a component
        // hex cannot express; every other parsed colour round-trips exactly.
        if (withinUnit(*color)) {
            const std::optional<std::string> hex = vlx_hexValueWithAlpha(*color, true);
            VLX_FUZZ_CHECK(hex && hex->size() == 8, color->description());
            const std::optional<VLXColor> again = vlx_colorWithHex("#" + *hex);
            VLX_FUZZ_CHECK(again && *again == *color, std::string(text) + " → " + *hex);
        }
    }
    for (const auto& color : {vlx_colorWithRGB(text), vlx_colorWithHSL(text)}) {
        if (!color) {
            continue;
        }
        VLX_FUZZ_CHECK(color->numberOfComponents() == 4, color->description());
        exercise(*color);
        if (withinUnit(*color)) {
            checkHexFixedPoint(*color);
        }
    }
    return 0;
}
