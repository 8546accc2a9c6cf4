#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include <VelmarCoreUI/Platform/Graphics/VLXStringDrawing.h>
#include <VelmarCoreUI/Utilities/VLXFontUtilities.h>

TEST(FontUtilities, ContentSizeScale) {
    EXPECT_DOUBLE_EQ(vlx_fontScaleForContentSize(VLXContentSizeCategoryAccessibilityLarge, 12),
                     1.5);
    EXPECT_DOUBLE_EQ(vlx_fontScaleForContentSize(VLXContentSizeCategoryAccessibilityExtraLarge, 12),
                     17.0 / 12);
    const std::pair<VLXContentSizeCategory, double> table[] = {
        {VLXContentSizeCategoryExtraSmall, -3},
        {VLXContentSizeCategorySmall, -2},
        {VLXContentSizeCategoryMedium, -1},
        {VLXContentSizeCategoryLarge, 0},
        {VLXContentSizeCategoryExtraLarge, 1},
        {VLXContentSizeCategoryExtraExtraLarge, 2},
        {VLXContentSizeCategoryExtraExtraExtraLarge, 3},
        {VLXContentSizeCategoryAccessibilityMedium, 4},
        {VLXContentSizeCategoryAccessibilityLarge, 6},
        {VLXContentSizeCategoryAccessibilityExtraLarge, 5},
        {VLXContentSizeCategoryAccessibilityExtraExtraLarge, 7},
        {VLXContentSizeCategoryAccessibilityExtraExtraExtraLarge, 8},
        {VLXContentSizeCategoryUnspecified, 0},
        {"SomethingElse", 0},
        {"", 0},
    };
    for (const auto& [category, delta] : table) {
        EXPECT_DOUBLE_EQ(vlx_fontScaleForContentSize(category, 16), (16 + delta) / 16) << category;
    }
    // The same text from another buffer is the same category.
    const std::string copy(VLXContentSizeCategoryExtraExtraLarge);
    EXPECT_DOUBLE_EQ(vlx_fontScaleForContentSize(copy, 10), 1.2);

    EXPECT_EQ(vlx_fontScaleForContentSize(VLXContentSizeCategoryExtraLarge, 0),
              std::numeric_limits<double>::infinity());
    EXPECT_EQ(vlx_fontScaleForContentSize(VLXContentSizeCategoryExtraSmall, 0),
              -std::numeric_limits<double>::infinity());
    EXPECT_TRUE(std::isnan(vlx_fontScaleForContentSize(VLXContentSizeCategoryLarge, 0)));
    EXPECT_TRUE(std::isnan(vlx_fontScaleForContentSize("unknown", 0)));
}

TEST(FontUtilities, SizeNeededForString) {
    const VLXFont font = VLXFont::systemFontOfSize(13);
    const std::string text = "Axis label that needs a few lines at narrow widths";
    EXPECT_EQ(vlx_sizeNeededForString(font, std::nullopt, 100), VLXSizeZero);
    EXPECT_EQ(vlx_sizeNeededForString(font, std::nullopt, {100, 100}, std::nullopt), VLXSizeZero);
    EXPECT_EQ(vlx_sizeNeededForString(font, std::string(), 100), VLXSizeZero);

    // Whole points, covering the fractional layout with options 35.
    VLXTextAttributes attributes;
    attributes.font = font;
    const VLXRect exact =
        VLXStringBoundingRect(text, {90, std::numeric_limits<double>::max()}, 35, attributes);
    const VLXSize needed = vlx_sizeNeededForString(font, text, 90);
    EXPECT_EQ(needed, VLXSizeMake(std::ceil(exact.size.width), std::ceil(exact.size.height)));
    EXPECT_GT(needed.height, 2 * font.lineHeight());
    EXPECT_LT(vlx_sizeNeededForString(font, text, 400).height, needed.height);

    // The mode argument is not used: every mode wraps by words.
    for (int mode = 0; mode <= 5; ++mode) {
        EXPECT_EQ(vlx_sizeNeededForString(font, text, 90, static_cast<VLXLineBreakMode>(mode)),
                  needed)
            << mode;
    }
    // A given paragraph style does take part, and a height cuts lines off.
    VLXParagraphStyle tail;
    tail.lineBreakMode = VLXLineBreakMode::ByTruncatingTail;
    EXPECT_EQ(vlx_sizeNeededForString(font, text, {90, 1000}, tail).height,
              std::ceil(font.lineHeight()));
    EXPECT_EQ(vlx_sizeNeededForString(font, text, {90, 2 * font.lineHeight()}, std::nullopt).height,
              std::ceil(2 * font.lineHeight()));
    // A NaN width does not wrap.
    EXPECT_EQ(vlx_sizeNeededForString(font, text, std::numeric_limits<double>::quiet_NaN()).height,
              std::ceil(font.lineHeight()));
}
