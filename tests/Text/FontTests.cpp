#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>

#include <VelmarCoreUI/Platform/Graphics/VLXFont.h>
#include <VelmarCoreUI/Platform/Graphics/VLXStringDrawing.h>

namespace {

// Pango stores sizes and metrics in 1/1024 units.
constexpr double kPangoUnit = 1.0 / 1024;

double widthOf(const char* text, const VLXFont& font) {
    VLXTextAttributes attributes;
    attributes.font = font;
    return VLXStringSizeWithAttributes(text, attributes).width;
}

}  // namespace

TEST(Font, SystemFontResolvesToInterWithSaneMetrics) {
    const VLXFont font = VLXFont::systemFontOfSize(12);
    EXPECT_EQ(font.familyName(), "Inter");
    EXPECT_EQ(font.fontName(), "Inter-Regular");
    EXPECT_EQ(font.pointSize(), 12);
    EXPECT_FALSE(font.isBold());

    EXPECT_GT(font.ascender(), 0);
    EXPECT_LT(font.descender(), 0);
    EXPECT_GE(font.leading(), 0);
    EXPECT_DOUBLE_EQ(font.lineHeight(), font.ascender() - font.descender() + font.leading());
    // Typographic sanity: lowercase below capitals below the ascender; a line is roughly
    // 1–1.5 em tall for a text face.
    EXPECT_GT(font.xHeight(), 0);
    EXPECT_LT(font.xHeight(), font.capHeight());
    EXPECT_LT(font.capHeight(), font.ascender());
    EXPECT_GT(font.lineHeight(), 12);
    EXPECT_LT(font.lineHeight(), 18);

    // Unhinted metrics scale with the size.
    const VLXFont twice = font.fontWithSize(24);
    EXPECT_NEAR(twice.ascender(), 2 * font.ascender(), 2 * kPangoUnit);
    EXPECT_NEAR(twice.descender(), 2 * font.descender(), 2 * kPangoUnit);
    EXPECT_NEAR(twice.capHeight(), 2 * font.capHeight(), 2 * kPangoUnit);

    const VLXFont bold = VLXFont::boldSystemFontOfSize(12);
    EXPECT_TRUE(bold.isBold());
    EXPECT_EQ(bold.familyName(), "Inter");
    EXPECT_EQ(bold.fontName(), "Inter-Bold");
    EXPECT_GT(widthOf("Measure me", bold), widthOf("Measure me", font));
    EXPECT_TRUE(bold.fontWithSize(30).isBold());
}

TEST(Font, NamedFontsExistOrAreNil) {
    const auto dejaVu = VLXFont::fontWithName("DejaVu Sans", 14);
    ASSERT_TRUE(dejaVu.has_value());
    EXPECT_EQ(dejaVu->familyName(), "DejaVu Sans");
    EXPECT_EQ(dejaVu->pointSize(), 14);
    // Family names compare without regard to case, and resolve to the installed spelling.
    const auto lower = VLXFont::fontWithName("dejavu sans", 14);
    ASSERT_TRUE(lower.has_value());
    EXPECT_EQ(lower->familyName(), "DejaVu Sans");
    EXPECT_EQ(*lower, *dejaVu);

    // A PostScript name picks the face.
    const auto interBold = VLXFont::fontWithName("Inter-Bold", 12);
    ASSERT_TRUE(interBold.has_value());
    EXPECT_TRUE(interBold->isBold());
    EXPECT_EQ(interBold->fontName(), "Inter-Bold");

    // No silent substitution, and malformed names are nil.
    EXPECT_FALSE(VLXFont::fontWithName("No Such Family Anywhere", 12));
    EXPECT_FALSE(VLXFont::fontWithName("", 12));
    EXPECT_FALSE(VLXFont::fontWithName(std::string_view("Inter\0X", 7), 12));
    EXPECT_FALSE(VLXFont::fontWithName("Inter\xff", 12));
    EXPECT_FALSE(VLXFont::fontWithName("Inter,DejaVu Sans", 12));
}

TEST(Font, SizesAreNormalisedAndEqualityFollowsTheDescription) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    for (double size : {nan, inf, -inf, 0.0, -4.0}) {
        EXPECT_EQ(VLXFont::systemFontOfSize(size).pointSize(), VLXFont::defaultPointSize) << size;
    }
    EXPECT_EQ(VLXFont::systemFontOfSize(1e9).pointSize(), 10000);
    EXPECT_EQ(VLXFont::systemFontOfSize(1e-9).pointSize(), 0.01);
    EXPECT_GT(VLXFont::systemFontOfSize(1e-9).ascender(), 0);
    EXPECT_EQ(VLXFont(), VLXFont::systemFontOfSize(12));

    EXPECT_EQ(VLXFont::systemFontOfSize(13.5), VLXFont::systemFontOfSize(13.5));
    EXPECT_NE(VLXFont::systemFontOfSize(13.5), VLXFont::systemFontOfSize(13.25));
    EXPECT_NE(VLXFont::systemFontOfSize(12), VLXFont::boldSystemFontOfSize(12));
    // Same face, different family list.
    EXPECT_NE(VLXFont::systemFontOfSize(12), *VLXFont::fontWithName("Inter", 12));
    // Copies share the record.
    const VLXFont font = VLXFont::systemFontOfSize(17);
    const VLXFont copy = font;
    EXPECT_EQ(copy.pangoFontDescription(), font.pangoFontDescription());

    std::ostringstream text;
    text << VLXFont::boldSystemFontOfSize(9);
    EXPECT_EQ(text.str(),
              "<VLXFont: font-family: \"Inter\"; font-weight: bold; font-style: normal; "
              "font-size: 9.00pt>");
}
