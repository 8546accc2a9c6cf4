#include <VelmarCoreUI/Color/VLXColorUtilities.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

namespace {

const double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kInf = std::numeric_limits<double>::infinity();

VLXColor rgb(double r, double g, double b, double a = 1.0) {
    return VLXColor::colorWithRed(r, g, b, a);
}

}  // namespace

TEST(VLXColorUtilities, HexScanFollowsTheCScan) {
    EXPECT_EQ(vlx_hexValue("ff"), 255u);
    EXPECT_EQ(vlx_hexValue(" \t0X1f"), 31u);
    EXPECT_EQ(vlx_hexValue("3z"), 3u);
    EXPECT_EQ(vlx_hexValue("zz"), 0u);
    EXPECT_EQ(vlx_hexValue(""), 0u);
    EXPECT_EQ(vlx_hexValue("0x"), 0u);
    EXPECT_EQ(vlx_hexValue("+a"), 10u);
    EXPECT_EQ(vlx_hexValue("-1"), std::numeric_limits<VLXUInteger>::max());
    EXPECT_EQ(vlx_hexValue("ffffffffffffffff"), std::numeric_limits<VLXUInteger>::max());
    EXPECT_EQ(vlx_hexValue(std::string(10000, '7')), std::numeric_limits<VLXUInteger>::max());
}

TEST(VLXColorUtilities, HexStringsOfEachLength) {
    const VLXColor white = rgb(1, 1, 1);
    for (const char* text : {"#fff", "fff", "0xfff", "#FFF", "#ffffff", "ffffffff"}) {
        ASSERT_TRUE(vlx_colorWithHex(text)) << text;
        EXPECT_EQ(*vlx_colorWithHex(text), white) << text;
    }
    EXPECT_EQ(*vlx_colorWithHex("#ff0000"), rgb(1, 0, 0));
    // Pairs are divided by 255 in single precision.
    EXPECT_EQ(vlx_colorWithHex("#ff000080")->alpha(), static_cast<double>(128.0f / 255.0f));
    EXPECT_EQ(*vlx_colorWithHex("#3z0zz0"), rgb(double(3.0f / 255.0f), 0, 0));

    for (const char* text : {"#ffff", "#fffff", "", "#", "0x", "#fffffffff"}) {
        EXPECT_FALSE(vlx_colorWithHex(text)) << text;
    }
    // Only "#" or a lowercase "0x" is a prefix, and only one is removed.
    EXPECT_EQ(*vlx_colorWithHex("0Xffffff"), rgb(0, 1, 1));
    EXPECT_FALSE(vlx_colorWithHex("#0xfff"));
    // Lengths count UTF-16 units: three accented letters are a 3-character string.
    EXPECT_EQ(*vlx_colorWithHex("#\xC3\xA9\xC3\xA9\xC3\xA9"), rgb(0, 0, 0));
    EXPECT_FALSE(vlx_colorWithHex(std::string(1 << 20, 'f')));
    // Each byte of malformed UTF-8 counts as one unit (and is no digit).
    EXPECT_EQ(*vlx_colorWithHex(std::string("\xFF\xFE\x80", 3) + "fff"), rgb(0, 0, 1));
}

TEST(VLXColorUtilities, RGBAStrings) {
    EXPECT_EQ(*vlx_colorWithRGB("rgba(255,0,0,0.5)"), rgb(1, 0, 0, 0.5));
    EXPECT_EQ(*vlx_colorWithRGB("RGBA(255, 0, 0, 0.5)"), rgb(1, 0, 0, 0.5));
    EXPECT_EQ(*vlx_colorWithRGB("rgb(0, 0, 255)"), rgb(0, 0, 1));
    EXPECT_EQ(*vlx_colorWithRGB("255,128,0"), rgb(1, 128.0 / 255.0, 0));
    // Components read in single precision; unreadable ones read 0.
    EXPECT_EQ(vlx_colorWithRGB("rgba(0,0,0,0.1)")->alpha(), static_cast<double>(0.1f));
    EXPECT_EQ(*vlx_colorWithRGB("rgb(x, 12px, )"), rgb(0, 12.0 / 255.0, 0));
    EXPECT_EQ(*vlx_colorWithRGB("rgb(510,-255,0)"), rgb(2, -1, 0));

    for (const char* text : {"rgba(1,2)", "", "rgba()", "1,2,3,4,5", "rgb"}) {
        EXPECT_FALSE(vlx_colorWithRGB(text)) << text;
    }
    EXPECT_FALSE(vlx_colorWithRGB(std::string(1 << 20, ',')));
}

TEST(VLXColorUtilities, HSLUsesTheToolkitMapping) {
    // Hue is divided by 255, so 85 is a third of a turn: green.
    EXPECT_EQ(vlx_colorWithHue(85, 100, 100, 1), VLXColor::colorWithHue(1.0 / 3.0, 1, 1, 1));
    // L = 40 is not below 0.5: saturation 50 × (1 − 40) < 0, clamped to a grey of 0.4.
    const auto percent = vlx_colorWithHSL("hsla(120, 50%, 40%, 1)");
    ASSERT_TRUE(percent);
    EXPECT_EQ(*percent, VLXColor::colorWithHue(120.0 / 255.0, 0, 0.4, 1));
    // L below 0.5 multiplies by L; from 0.5 on by 1 − L.
    EXPECT_EQ(*vlx_colorWithHSL("hsl(0, 100, 0.25)"),
              VLXColor::colorWithHue(0, 0.25, 0.25 / 100, 1));
    EXPECT_EQ(*vlx_colorWithHSL("HSLA(0, 100, 0.75, 0.5)"),
              VLXColor::colorWithHue(0, 0.25, 0.75 / 100, 0.5));
    EXPECT_FALSE(vlx_colorWithHSL("hsla(1, 2)"));
    EXPECT_FALSE(vlx_colorWithHSL("%%%"));
}

TEST(VLXColorUtilities, ComponentsByModel) {
    const VLXColor grey = VLXColor::colorWithWhite(0.3, 0.6);
    const VLXColor other(VLXColorSpaceModel::Other, {0.1, 0.2, 0.3, 0.4, 0.5});
    const VLXColor shortRGB(VLXColorSpaceModel::RGB, {0.1, 1});
    EXPECT_EQ(vlx_green(grey), 0.3);
    EXPECT_EQ(vlx_getComponentAtIndex(grey, 3), 0.6);
    EXPECT_EQ(vlx_getComponentAtIndex(grey, 99), 0.6);
    EXPECT_EQ(vlx_blue(rgb(0.1, 0.2, 0.3, 0.4)), 0.3);
    EXPECT_EQ(vlx_getComponentAtIndex(rgb(0.1, 0.2, 0.3, 0.4), 3), -1.0);
    EXPECT_EQ(vlx_red(other), -1.0);
    EXPECT_EQ(vlx_alpha(other), 0.5);
    EXPECT_EQ(vlx_blue(shortRGB), -1.0);
    EXPECT_EQ(vlx_adjustAlpha(grey, 0.2), rgb(0.3, 0.3, 0.3, 0.2));
    EXPECT_EQ(vlx_adjustAlpha(other, 1), rgb(-1, -1, -1, 1));
}

TEST(VLXColorUtilities, EqualityRebuildsGreysAsRGB) {
    EXPECT_TRUE(vlx_isEqualToColor(VLXColor::colorWithWhite(0.5, 1), rgb(0.5, 0.5, 0.5)));
    EXPECT_FALSE(vlx_isEqualToColor(VLXColor::colorWithWhite(0.5, 1), rgb(0.5, 0.5, 0.5, 0.9)));
    EXPECT_FALSE(vlx_isEqualToColor(rgb(0.5, 0.5, 0.5), rgb(0.5, 0.5, std::nextafter(0.5, 1.0))));
    const VLXColor other(VLXColorSpaceModel::Other, {1, 1});
    EXPECT_FALSE(vlx_isEqualToColor(other, VLXColor::colorWithWhite(1, 1)));
    EXPECT_TRUE(vlx_isEqualToColor(other, other));
}

TEST(VLXColorUtilities, InterpolationClampsAndHitsEndsExactly) {
    const VLXColor white = VLXColor::whiteColor();
    const VLXColor black = VLXColor::blackColor();
    EXPECT_EQ(vlx_interpolatedToColor(white, black, 0.25), rgb(0.75, 0.75, 0.75));
    EXPECT_EQ(vlx_interpolatedToColor(black, white, 0.25), rgb(0.25, 0.25, 0.25));
    EXPECT_TRUE(vlx_isEqualToColor(vlx_interpolatedToColor(white, black, -3), white));
    EXPECT_TRUE(vlx_isEqualToColor(vlx_interpolatedToColor(white, black, 7), black));
    EXPECT_TRUE(vlx_isEqualToColor(vlx_interpolatedToColor(white, black, kNaN), white));
    EXPECT_TRUE(vlx_isEqualToColor(vlx_interpolatedToColor(white, black, kInf), black));
    const VLXColor alpha = vlx_interpolatedToColor(rgb(1, 0, 0, 0), rgb(0, 0, 1, 1), 0.5);
    EXPECT_EQ(alpha, rgb(0.5, 0, 0.5, 0.5));
    // A colour of another model contributes -1 for red, green and blue.
    const VLXColor other(VLXColorSpaceModel::Other, {0, 0, 0, 0, 1});
    EXPECT_EQ(vlx_interpolatedToColor(other, white, 0.5), rgb(0, 0, 0));
}

TEST(VLXColorUtilities, HexOutput) {
    EXPECT_EQ(vlx_hexValue(VLXColor::colorWithWhite(0.5, 1)), "7f7f7f");
    EXPECT_EQ(vlx_hexValueWithAlpha(VLXColor::colorWithWhite(0.5, 1), true), "7f7f7fff");
    EXPECT_EQ(vlx_hexValueWithAlpha(rgb(1, 0, 0.2, 0.5), true), "ff00337f");
    EXPECT_EQ(*vlx_colorWithHex("#12ab9c"),
              *vlx_colorWithHex(vlx_hexValue(*vlx_colorWithHex("12ab9c"))));
    const VLXColor other(VLXColorSpaceModel::Other, {0, 0, 0, 0, 1});
    EXPECT_FALSE(vlx_hexValueWithAlpha(other, false));
    EXPECT_EQ(vlx_hexValue(other), "");
    // Out of range: truncation of the unclamped product, NaN and negatives 0, ∞ saturates.
    EXPECT_EQ(vlx_hexValue(rgb(2, kNaN, -1)), "1fe0000");
    EXPECT_EQ(vlx_hexValueWithAlpha(rgb(0, 0, 0, kInf), true), "000000ffffffffffffffff");
}

TEST(VLXColorUtilities, BrightnessGreyAndLightness) {
    EXPECT_EQ(*vlx_adjustBrightness(rgb(1, 0, 0), 0.5), rgb(0.5, 0, 0));
    const VLXColor brighter = *vlx_adjustBrightness(rgb(0.5, 0.25, 0), 4);
    EXPECT_NEAR(vlx_red(brighter), 1, 1e-12);
    EXPECT_NEAR(vlx_green(brighter), 0.5, 1e-12);
    EXPECT_NEAR(vlx_blue(brighter), 0, 1e-12);
    EXPECT_EQ(*vlx_adjustBrightness(VLXColor::colorWithWhite(0.5, 0.3), 1.6),
              VLXColor::colorWithWhite(0.8, 0.3));
    EXPECT_EQ(*vlx_adjustBrightness(VLXColor::colorWithWhite(0.5, 1), 3),
              VLXColor::colorWithWhite(1, 1));
    EXPECT_EQ(*vlx_adjustBrightness(VLXColor::colorWithWhite(0.5, 1), -2),
              VLXColor::colorWithWhite(0, 1));
    EXPECT_EQ(*vlx_adjustBrightness(VLXColor::colorWithWhite(0.5, 1), kNaN),
              VLXColor::colorWithWhite(0, 1));
    const VLXColor other(VLXColorSpaceModel::Other, {0, 0, 0, 0, 1});
    EXPECT_FALSE(vlx_adjustBrightness(other, 1));

    EXPECT_EQ(vlx_grayscale(rgb(1, 0, 0, 0.5)), VLXColor::colorWithWhite(0.299, 0.5));
    EXPECT_EQ(vlx_grayscale(VLXColor::colorWithWhite(0.4, 1)),
              VLXColor::colorWithWhite(0.4 * 0.299 + 0.4 * 0.587 + 0.4 * 0.114, 1));
    EXPECT_EQ(vlx_grayscale(other), other);

    EXPECT_FALSE(vlx_isLightColor(VLXColor::colorWithWhite(0.5, 1)));
    EXPECT_FALSE(vlx_isLightColor(VLXColor::colorWithWhite(0.52, 1)));
    EXPECT_TRUE(vlx_isLightColor(VLXColor::colorWithWhite(0.56, 1)));
    EXPECT_TRUE(vlx_isLightColor(VLXColor::yellowColor()));
    EXPECT_FALSE(vlx_isLightColor(rgb(kNaN, 1, 1)));
    EXPECT_FALSE(vlx_isLightColor(other));
}
