#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <thread>

#include <VelmarCoreUI/Platform/Graphics/Private/VLXTextEngine.h>
#include <VelmarCoreUI/Platform/Graphics/VLXFont.h>
#include <VelmarCoreUI/Platform/Graphics/VLXStringDrawing.h>

namespace {

constexpr unsigned kOrigin = VLXStringDrawingUsesLineFragmentOrigin;
const char* const kParagraph =
    "The quick brown fox jumps over the lazy dog while the five boxing wizards jump quickly";

VLXTextAttributes attributesWith(
    VLXFont font, VLXParagraphStyle style = VLXParagraphStyle::defaultParagraphStyle()) {
    VLXTextAttributes attributes;
    attributes.font = font;
    attributes.paragraphStyle = style;
    return attributes;
}

double lines(const VLXRect& rect, const VLXFont& font) {
    return rect.size.height / font.lineHeight();
}

}  // namespace

TEST(Measurement, SingleLines) {
    const VLXFont font = VLXFont::systemFontOfSize(12);
    const VLXTextAttributes attributes = attributesWith(font);
    const VLXSize short1 = VLXStringSizeWithAttributes("Label", attributes);
    const VLXSize long1 = VLXStringSizeWithAttributes("Label with more words", attributes);
    EXPECT_GT(short1.width, 0);
    EXPECT_GT(long1.width, short1.width);
    EXPECT_DOUBLE_EQ(short1.height, font.lineHeight());
    // Widths are typographic, not rounded: different strings give non-integral widths.
    EXPECT_NE(std::floor(long1.width), long1.width);
    // A larger font scales the width.
    EXPECT_NEAR(VLXStringSizeWithAttributes("Label", attributesWith(font.fontWithSize(24))).width,
                2 * short1.width, 0.01);

    // Paragraph breaks start lines even without a width.
    EXPECT_DOUBLE_EQ(VLXStringSizeWithAttributes("one\ntwo\r\nthree", attributes).height,
                     3 * font.lineHeight());

    // Without the line-fragment origin: one line per paragraph, origin at the first baseline.
    const VLXRect baseline = VLXStringBoundingRect(kParagraph, {50, 10}, 0, attributes);
    EXPECT_DOUBLE_EQ(baseline.origin.y, -font.ascender());
    EXPECT_DOUBLE_EQ(baseline.size.height, font.lineHeight());
    EXPECT_EQ(baseline.size.width, VLXStringSizeWithAttributes(kParagraph, attributes).width);
}

TEST(Measurement, WrappingAndHeightLimits) {
    const VLXFont font = VLXFont::systemFontOfSize(14);
    const VLXTextAttributes attributes = attributesWith(font);
    const double unwrapped = VLXStringSizeWithAttributes(kParagraph, attributes).width;
    double previousLines = 0;
    for (double width : {1000.0, 320.0, 200.0, 120.0}) {
        const VLXRect rect = VLXStringBoundingRect(kParagraph, {width, 1e6}, kOrigin, attributes);
        EXPECT_EQ(rect.origin, VLXPointZero);
        EXPECT_LE(rect.size.width, width) << width;
        const double count = lines(rect, font);
        EXPECT_DOUBLE_EQ(count, std::round(count)) << width;  // whole lines
        EXPECT_GT(count, previousLines) << width;
        previousLines = count;
        if (width >= unwrapped) {
            EXPECT_EQ(count, 1);
            EXPECT_EQ(rect.size.width, unwrapped);
        }
    }

    // Only whole lines that fit count, and the first always does.
    const double lh = font.lineHeight();
    EXPECT_DOUBLE_EQ(
        VLXStringBoundingRect(kParagraph, {120, 2.5 * lh}, kOrigin, attributes).size.height,
        2 * lh);
    EXPECT_DOUBLE_EQ(
        VLXStringBoundingRect(kParagraph, {120, 2 * lh}, kOrigin, attributes).size.height, 2 * lh);
    EXPECT_DOUBLE_EQ(VLXStringBoundingRect(kParagraph, {120, 3}, kOrigin, attributes).size.height,
                     lh);

    // A truncated last line stays within the width and the line count.
    const VLXRect truncated = VLXStringBoundingRect(
        kParagraph, {120, 2 * lh}, kOrigin | VLXStringDrawingTruncatesLastVisibleLine, attributes);
    EXPECT_DOUBLE_EQ(truncated.size.height, 2 * lh);
    EXPECT_LE(truncated.size.width, 120);
    // When only later paragraphs are cut off, the last visible line gains "…".
    const VLXRect cut =
        VLXStringBoundingRect("Short\nLonger line\nThird", {500, 2 * lh},
                              kOrigin | VLXStringDrawingTruncatesLastVisibleLine, attributes);
    EXPECT_EQ(cut.size.width, VLXStringSizeWithAttributes("Longer line\u2026", attributes).width);
    EXPECT_EQ(VLXStringBoundingRect("Short\nLonger line\nThird", {500, 2 * lh}, kOrigin, attributes)
                  .size.width,
              VLXStringSizeWithAttributes("Longer line", attributes).width);
    // Without the line-fragment origin the option does nothing.
    EXPECT_EQ(VLXStringBoundingRect("Short\nLonger line\nThird", {500, 2 * lh},
                                    VLXStringDrawingTruncatesLastVisibleLine, attributes)
                  .size.height,
              3 * lh);
}

TEST(Measurement, ParagraphStyleAndOptions) {
    const VLXFont font = VLXFont::systemFontOfSize(12);
    const double lh = font.lineHeight();
    const VLXTextAttributes plain = attributesWith(font);
    const VLXRect wrapped = VLXStringBoundingRect(kParagraph, {150, 1e6}, kOrigin, plain);
    const double count = lines(wrapped, font);
    ASSERT_GE(count, 3);

    // Leading is added per line; spacing between lines.
    const VLXRect withLeading = VLXStringBoundingRect(
        kParagraph, {150, 1e6}, kOrigin | VLXStringDrawingUsesFontLeading, plain);
    EXPECT_DOUBLE_EQ(withLeading.size.height, count * (lh + font.leading()));
    VLXParagraphStyle spaced;
    spaced.lineSpacing = 4;
    EXPECT_DOUBLE_EQ(
        VLXStringBoundingRect(kParagraph, {150, 1e6}, kOrigin, attributesWith(font, spaced))
            .size.height,
        count * lh + (count - 1) * 4);
    spaced.lineSpacing = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(VLXStringBoundingRect(kParagraph, {150, 1e6}, kOrigin, attributesWith(font, spaced)),
              wrapped);

    // Truncating modes keep each paragraph on one line within the width; clipping keeps the
    // full width; character wrapping fills lines at least as well as word wrapping.
    const double full = VLXStringSizeWithAttributes(kParagraph, plain).width;
    for (auto mode : {VLXLineBreakMode::ByTruncatingHead, VLXLineBreakMode::ByTruncatingTail,
                      VLXLineBreakMode::ByTruncatingMiddle, VLXLineBreakMode::ByClipping}) {
        VLXParagraphStyle style;
        style.lineBreakMode = mode;
        const VLXRect rect = VLXStringBoundingRect(std::string(kParagraph) + "\nsecond", {150, 1e6},
                                                   kOrigin, attributesWith(font, style));
        EXPECT_DOUBLE_EQ(rect.size.height, 2 * lh) << int(mode);
        if (mode == VLXLineBreakMode::ByClipping) {
            EXPECT_EQ(rect.size.width, full);
        } else {
            EXPECT_LE(rect.size.width, 150) << int(mode);
        }
    }
    VLXParagraphStyle chars;
    chars.lineBreakMode = VLXLineBreakMode::ByCharWrapping;
    EXPECT_LE(VLXStringBoundingRect(kParagraph, {150, 1e6}, kOrigin, attributesWith(font, chars))
                  .size.height,
              wrapped.size.height);

    // Device metrics bound the ink: inside the line box for letters without accents.
    const VLXRect ink =
        VLXStringBoundingRect("Hxg", {0, 0}, kOrigin | VLXStringDrawingUsesDeviceMetrics, plain);
    const VLXRect box = VLXStringBoundingRect("Hxg", {0, 0}, kOrigin, plain);
    EXPECT_GT(ink.size.height, font.capHeight());
    EXPECT_GT(ink.minY(), box.minY());
    EXPECT_LT(ink.maxY(), box.maxY());
    EXPECT_NEAR(ink.minY(), font.ascender() - font.capHeight(), 0.3);
    EXPECT_EQ(
        VLXStringBoundingRect("   ", {0, 0}, kOrigin | VLXStringDrawingUsesDeviceMetrics, plain)
            .size,
        VLXSizeZero);
}

TEST(Measurement, OddInputIsDocumented) {
    const VLXFont font = VLXFont::systemFontOfSize(12);
    const VLXTextAttributes attributes = attributesWith(font);
    EXPECT_EQ(VLXStringBoundingRect("", {100, 100}, kOrigin, attributes), VLXRectZero);
    EXPECT_EQ(VLXStringSizeWithAttributes("", attributes), VLXSizeZero);

    // Invalid UTF-8 and NUL bytes measure as U+FFFD.
    EXPECT_EQ(VLXStringSizeWithAttributes("a\xff\xfe"
                                          "b",
                                          attributes),
              VLXStringSizeWithAttributes("a\uFFFD\uFFFD"
                                          "b",
                                          attributes));
    EXPECT_EQ(VLXStringSizeWithAttributes(std::string_view("a\0b", 3), attributes),
              VLXStringSizeWithAttributes("a\uFFFDb", attributes));
    EXPECT_EQ(VLXStringSizeWithAttributes("\xe2\x82", attributes).height, font.lineHeight());

    // Unusable limits are no limit.
    const VLXRect unlimited =
        VLXStringBoundingRect(kParagraph, {1e300, 1e300}, kOrigin, attributes);
    EXPECT_EQ(unlimited.size, VLXStringSizeWithAttributes(kParagraph, attributes));
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    for (VLXSize size : {VLXSize{nan, nan}, VLXSize{0, 0}, VLXSize{-10, -10}, VLXSize{inf, -inf}}) {
        EXPECT_EQ(VLXStringBoundingRect(kParagraph, size, kOrigin | 0xffc0u, attributes), unlimited)
            << size;
    }
}

TEST(Measurement, DeterministicAndCached) {
    const VLXTextAttributes attributes = attributesWith(VLXFont::systemFontOfSize(11));
    const VLXRect first = VLXStringBoundingRect(kParagraph, {130, 1e6}, kOrigin, attributes);
    const auto before = vlx::detail::textEngineCounters();
    for (int i = 0; i < 3000; ++i) {
        VLXStringBoundingRect("Label " + std::to_string(i), {130, 1e6}, kOrigin, attributes);
    }
    // Thousands of strings later (the result cache turned over), the same answer again,
    // without new font maps, descriptions or layouts.
    EXPECT_EQ(VLXStringBoundingRect(kParagraph, {130, 1e6}, kOrigin, attributes), first);
    const auto after = vlx::detail::textEngineCounters();
    EXPECT_EQ(after.fontMapsCreated, before.fontMapsCreated);
    EXPECT_EQ(after.fontDescriptionsCreated, before.fontDescriptionsCreated);
    EXPECT_EQ(after.layoutsCreated, before.layoutsCreated);

    // Another thread has its own context and reaches the same result.
    VLXRect elsewhere;
    std::thread([&] {
        elsewhere = VLXStringBoundingRect(kParagraph, {130, 1e6}, kOrigin, attributes);
    }).join();
    EXPECT_EQ(elsewhere, first);
}
