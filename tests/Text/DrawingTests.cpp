#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsImageContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>
#include <VelmarCoreUI/Platform/Graphics/VLXStringDrawing.h>

namespace {

struct Ink {
    int minX = std::numeric_limits<int>::max();
    int minY = std::numeric_limits<int>::max();
    int maxX = -1;
    int maxY = -1;
    bool empty() const { return maxX < 0; }
    double midX() const { return (minX + maxX + 1) / 2.0; }
};

// Bounding box of pixels whose alpha passes `threshold` and that `accept` (by colour).
template <class Accept>
Ink inkOf(const VLXImage& image, Accept accept, std::uint32_t threshold = 0x40) {
    Ink ink;
    for (int y = 0; y < image.pixelHeight(); ++y) {
        for (int x = 0; x < image.pixelWidth(); ++x) {
            const std::uint32_t pixel = image.pixels()[y * image.pixelWidth() + x];
            if ((pixel >> 24) >= threshold && accept(pixel)) {
                ink.minX = std::min(ink.minX, x);
                ink.minY = std::min(ink.minY, y);
                ink.maxX = std::max(ink.maxX, x);
                ink.maxY = std::max(ink.maxY, y);
            }
        }
    }
    return ink;
}

Ink inkOf(const VLXImage& image) {
    return inkOf(image, [](std::uint32_t) { return true; });
}

VLXTextAttributes aligned(VLXTextAlignment alignment) {
    VLXTextAttributes attributes;
    attributes.font = VLXFont::systemFontOfSize(16);
    VLXParagraphStyle style;
    style.alignment = alignment;
    attributes.paragraphStyle = style;
    return attributes;
}

}  // namespace

TEST(TextDrawing, AlignmentPlacesInkWithinTheRectangle) {
    const VLXRect rect = VLXRectMake(10, 5, 180, 30);
    const VLXTextAttributes left = aligned(VLXTextAlignment::Left);
    const double textWidth = VLXStringSizeWithAttributes("IHIHI", left).width;
    struct Case {
        VLXTextAlignment alignment;
        double expectedMid;
    };
    for (const Case& c :
         {Case{VLXTextAlignment::Left, 10 + textWidth / 2},
          Case{VLXTextAlignment::Natural, 10 + textWidth / 2}, Case{VLXTextAlignment::Center, 100},
          Case{VLXTextAlignment::Right, 190 - textWidth / 2}}) {
        auto context = VLXGraphicsContext::createBitmap({200, 40}, 2);
        ASSERT_TRUE(context);
        VLXStringDrawInRect("IHIHI", rect, aligned(c.alignment));  // no current context: nothing
        VLXGraphicsPushContext(*context);
        VLXStringDrawInRect("IHIHI", rect, aligned(c.alignment));
        VLXGraphicsPopContext();
        const Ink ink = inkOf(*context->makeImage());
        ASSERT_FALSE(ink.empty()) << int(c.alignment);
        // Pixels are half points; I and H have small side bearings.
        EXPECT_NEAR(ink.midX() / 2, c.expectedMid, 1.5) << int(c.alignment);
        EXPECT_GE(ink.minX / 2.0, 10);
        EXPECT_LE(ink.maxX / 2.0, 190);
        // Capitals stand on the baseline, cap height below the rectangle's top + ascender.
        const VLXFont& font = *left.font;
        EXPECT_NEAR(ink.minY / 2.0, 5 + font.ascender() - font.capHeight(), 0.75);
        EXPECT_NEAR((ink.maxY + 1) / 2.0, 5 + font.ascender(), 0.75);
    }
}

TEST(TextDrawing, ColourTruncationAndEffects) {
    auto context = VLXGraphicsContext::createBitmap({120, 60}, 1);
    ASSERT_TRUE(context);
    VLXTextAttributes attributes;
    attributes.font = VLXFont::boldSystemFontOfSize(14);
    attributes.foregroundColor = VLXColor::redColor();
    VLXParagraphStyle tail;
    tail.lineBreakMode = VLXLineBreakMode::ByTruncatingTail;
    attributes.paragraphStyle = tail;
    // A path under construction survives drawing text.
    context->moveToPoint({0, 0});
    context->addLineToPoint({5, 5});
    VLXStringDrawWithRect(*context, "A long line that cannot fit into sixty points",
                          VLXRectMake(0, 0, 60, 30), VLXStringDrawingUsesLineFragmentOrigin,
                          attributes);
    EXPECT_FALSE(context->isPathEmpty());
    auto image = context->makeImage();
    const Ink red = inkOf(*image, [](std::uint32_t p) {
        return ((p >> 16) & 0xff) > 0x80 && ((p >> 8) & 0xff) < 0x20 && (p & 0xff) < 0x20;
    });
    ASSERT_FALSE(red.empty());
    EXPECT_LT(red.maxX, 60);  // truncated with "…" inside the width
    EXPECT_GT(red.maxX, 40);
    EXPECT_LT(red.maxY, 20);  // one line

    // A shadow below the text, in its own colour.
    auto shadowed = VLXGraphicsContext::createBitmap({120, 60}, 1);
    VLXTextAttributes withShadow;
    withShadow.font = VLXFont::boldSystemFontOfSize(20);
    withShadow.foregroundColor = VLXColor::blackColor();
    withShadow.shadow = VLXShadow{{0, 25}, 0, VLXColor::blueColor()};
    VLXStringDrawAtPoint(*shadowed, "Hi", {10, 5}, withShadow);
    const Ink blue = inkOf(*shadowed->makeImage(), [](std::uint32_t p) {
        return (p & 0xff) > 0x80 && ((p >> 16) & 0xff) < 0x40;
    });
    ASSERT_FALSE(blue.empty());
    EXPECT_GE(blue.minY, 30);

    // The context's alpha applies to text.
    auto faded = VLXGraphicsContext::createBitmap({60, 30}, 1);
    faded->setAlpha(0.5);
    VLXTextAttributes large;
    large.font = VLXFont::boldSystemFontOfSize(24);
    VLXStringDrawAtPoint(*faded, "HH", {2, 2}, large);
    auto fadedImage = faded->makeImage();
    std::uint32_t maxAlpha = 0;
    for (std::uint32_t p : fadedImage->pixels()) {
        maxAlpha = std::max(maxAlpha, p >> 24);
    }
    EXPECT_NEAR(maxAlpha, 128, 3);
}

TEST(TextDrawing, OddInputDrawsNothingAndKeepsTheContextUsable) {
    auto context = VLXGraphicsContext::createBitmap({50, 30}, 1);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    VLXStringDrawAtPoint(*context, "x", {nan, 5});
    VLXStringDrawWithRect(*context, "x", VLXRectMake(inf, 0, 10, 10), 0);
    VLXStringDrawWithRect(*context, "", VLXRectMake(0, 0, 10, 10), 0);
    VLXStringDrawAtPoint(*context, "x", {1e300, -1e300});
    EXPECT_TRUE(inkOf(*context->makeImage()).empty());
    VLXTextAttributes odd;
    odd.foregroundColor = VLXColor::colorWithRed(nan, 2, -1, inf);
    odd.shadow = VLXShadow{{nan, inf}, nan, std::nullopt};
    VLXStringDrawWithRect(*context, "\xff\xfe\0x", VLXRectMake(0, 0, nan, -5),
                          VLXStringDrawingUsesLineFragmentOrigin, odd);
    EXPECT_TRUE(context->isValid());
    // Glyphs far larger than any surface are left out (cairo fails to make such fonts).
    context->saveGState();
    context->scaleCTM(1e5, 1e5);
    VLXStringDrawAtPoint(*context, "x", {0, 0});
    context->restoreGState();
    EXPECT_TRUE(context->isValid());
    EXPECT_TRUE(inkOf(*context->makeImage()).empty());
    // Still draws afterwards.
    VLXStringDrawAtPoint(*context, "H", {5, 5});
    EXPECT_FALSE(inkOf(*context->makeImage()).empty());
}
