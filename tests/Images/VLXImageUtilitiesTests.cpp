#include <VelmarCoreUI/Utilities/VLXImageUtilities.h>

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>

#include <VelmarCoreUI/Platform/Device/VLXScreen.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsImageContext.h>
#include "ImageTestSupport.h"

namespace {

using imagetest::drawnImage;
using imagetest::Pixel;

const double kNaN = std::numeric_limits<double>::quiet_NaN();

// The pixel under the point (x, y).
Pixel at(const VLXImage& image, double x, double y) {
    return imagetest::pixelAt(image, static_cast<int>(x * image.scale()),
                              static_cast<int>(y * image.scale()));
}

void expectPixel(const Pixel& pixel, int r, int g, int b, int a, int tolerance = 2) {
    SCOPED_TRACE(testing::Message()
                 << "pixel " << pixel.r << ' ' << pixel.g << ' ' << pixel.b << ' ' << pixel.a);
    EXPECT_NEAR(pixel.r, r, tolerance);
    EXPECT_NEAR(pixel.g, g, tolerance);
    EXPECT_NEAR(pixel.b, b, tolerance);
    EXPECT_NEAR(pixel.a, a, tolerance);
}
// Names the pixel expression in failure messages.
#define EXPECT_PIXEL(pixel, ...)         \
    do {                                 \
        SCOPED_TRACE(#pixel);            \
        expectPixel(pixel, __VA_ARGS__); \
    } while (false)

// Left half of the width in one colour, right half in another.
std::shared_ptr<VLXImage> halves(VLXSize size, double scale, VLXColor left, VLXColor right) {
    return drawnImage(size, scale, [&](VLXGraphicsContext& context) {
        context.setFillColor(left);
        context.fillRect(VLXRectMake(0, 0, size.width / 2, size.height));
        context.setFillColor(right);
        context.fillRect(VLXRectMake(size.width / 2, 0, size.width / 2, size.height));
    });
}

// Every test starts with an empty cache and a screen of scale 2.
class VLXImageUtilitiesTest : public ::testing::Test {
protected:
    void SetUp() override {
        m_savedScale = VLXScreen::mainScreen()->scale();
        VLXScreen::mainScreen()->setScale(2);
        vlx_removeAllImages();
    }
    void TearDown() override {
        vlx_removeAllImages();
        VLXScreen::mainScreen()->setScale(m_savedScale);
    }
    double m_savedScale = 1;
};

}  // namespace

TEST_F(VLXImageUtilitiesTest, IconIdentifiersAndSizes) {
    const VLXColor red = VLXColor::redColor();
    EXPECT_EQ(vlx_identifierForIcon(VLXIconTypePlay, {20, 30}, red), "VLXIcon_play_20x30_ff0000");
    // Alpha is not part of the identifier; greys print as three equal bytes.
    EXPECT_EQ(vlx_identifierForIcon(VLXIconTypePlay, {20, 30}, red.colorWithAlphaComponent(0.5)),
              "VLXIcon_play_20x30_ff0000");
    EXPECT_EQ(vlx_identifierForIcon(VLXIconTypeStop, {10.9, -7.9}, VLXColor::grayColor()),
              "VLXIcon_stop_10x-7_7f7f7f");
    EXPECT_EQ(vlx_identifierForIcon(VLXIconTypeStop, {kNaN, 1e300}, std::nullopt),
              "VLXIcon_stop_0x" + std::to_string(LONG_MAX) + "_(null)");
    EXPECT_FALSE(vlx_identifierForIcon(2, {20, 30}, red));

    EXPECT_EQ(vlx_defaultSizeForIcon(VLXIconTypePlay), VLXSizeMake(20, 30));
    EXPECT_EQ(vlx_defaultSizeForIcon(VLXIconTypeStop), VLXSizeMake(30, 30));
    EXPECT_EQ(vlx_defaultSizeForIcon(7), VLXSizeZero);

    EXPECT_EQ(vlx_iconWithTypeWidth(VLXIconTypeStop, 15, std::nullopt)->size(),
              VLXSizeMake(15, 15));
    EXPECT_EQ(vlx_iconWithTypeHeight(VLXIconTypePlay, 15, std::nullopt)->size(),
              VLXSizeMake(10, 15));
    // 12.5 rounds half away from zero.
    EXPECT_EQ(vlx_iconWithTypeWidth(VLXIconTypeStop, 12.5, red)->size(), VLXSizeMake(12.5, 13));

    EXPECT_FALSE(vlx_iconWithType(VLXIconTypePlay, {-4, 10}, red));
    EXPECT_FALSE(vlx_iconWithTypeWidth(VLXIconTypePlay, kNaN, red));
}

TEST_F(VLXImageUtilitiesTest, IconDrawingAndTint) {
    auto play = vlx_iconWithType(VLXIconTypePlay, {40, 60}, std::nullopt);
    ASSERT_TRUE(play);
    EXPECT_PIXEL(at(*play, 4, 30), 0, 0, 0, 255);   // inside the triangle
    EXPECT_PIXEL(at(*play, 30, 30), 0, 0, 0, 255);  // towards the tip
    EXPECT_PIXEL(at(*play, 36, 6), 0, 0, 0, 0);     // above the upper edge
    EXPECT_PIXEL(at(*play, 20, 56), 0, 0, 0, 0);    // below the lower edge
    auto stop = vlx_iconWithType(VLXIconTypeStop, {30, 30}, VLXColor::blueColor());
    ASSERT_TRUE(stop);
    EXPECT_PIXEL(at(*stop, 0, 0), 0, 0, 255, 255);
    EXPECT_PIXEL(at(*stop, 29.5, 29.5), 0, 0, 255, 255);

    auto red = vlx_iconWithType(VLXIconTypePlay, {40, 60}, VLXColor::redColor());
    auto green = vlx_iconWithType(VLXIconTypePlay, {40, 60}, VLXColor::colorWithRed(0, 1, 0, 0.5));
    ASSERT_TRUE(red && green);
    EXPECT_PIXEL(at(*red, 4, 30), 255, 0, 0, 255);
    EXPECT_PIXEL(at(*red, 36, 6), 0, 0, 0, 0);
    // Half-transparent green atop black: half green, still opaque (premultiplied bytes).
    EXPECT_PIXEL(at(*green, 4, 30), 0, 128, 0, 255);
    EXPECT_PIXEL(at(*green, 36, 6), 0, 0, 0, 0);
}

TEST_F(VLXImageUtilitiesTest, IconCacheHoldsBlackDrawings) {
    auto cache = drawingCache();
    auto red = vlx_iconWithType(VLXIconTypePlay, {40, 60}, VLXColor::redColor());
    ASSERT_TRUE(red);
    EXPECT_EQ(cache->count(), 2u);
    // The default-size drawing is cached under the requested colour's name, still black.
    auto base = vlx_imageWithIdentifier("VLXIcon_play_20x30_ff0000");
    auto scaled = vlx_imageWithIdentifier("VLXIcon_play_40x60_ff0000");
    ASSERT_TRUE(base && scaled);
    EXPECT_EQ(base->size(), VLXSizeMake(20, 30));
    EXPECT_EQ(scaled->size(), VLXSizeMake(40, 60));
    EXPECT_PIXEL(at(*base, 2, 15), 0, 0, 0, 255);
    EXPECT_PIXEL(at(*scaled, 4, 30), 0, 0, 0, 255);

    // Tinting happens on every call: new images, the cached ones untouched.
    auto again = vlx_iconWithType(VLXIconTypePlay, {40, 60}, VLXColor::redColor());
    EXPECT_NE(again, red);
    EXPECT_EQ(vlx_imageWithIdentifier("VLXIcon_play_40x60_ff0000"), scaled);
    EXPECT_EQ(cache->count(), 2u);
    // Without a colour the cached image itself comes back.
    auto plain = vlx_iconWithType(VLXIconTypePlay, {20, 30}, std::nullopt);
    EXPECT_EQ(vlx_iconWithType(VLXIconTypePlay, {20, 30}, std::nullopt), plain);
    EXPECT_EQ(vlx_imageWithIdentifier("VLXIcon_play_20x30_(null)"), plain);
    EXPECT_EQ(cache->count(), 3u);

    // Whatever is cached under an identifier is used, for the size and as the base to scale.
    auto green = halves({30, 30}, 1, VLXColor::greenColor(), VLXColor::greenColor());
    vlx_cacheImage(green, "VLXIcon_stop_30x30_(null)");
    EXPECT_EQ(vlx_iconWithType(VLXIconTypeStop, {30, 30}, std::nullopt), green);
    auto bigGreen = vlx_iconWithType(VLXIconTypeStop, {60, 60}, std::nullopt);
    ASSERT_TRUE(bigGreen);
    EXPECT_EQ(bigGreen->scale(), 1);  // the base image's scale
    EXPECT_PIXEL(at(*bigGreen, 50, 50), 0, 255, 0, 255);

    // Unknown types: nothing is looked up or stored; the drawing has zero size.
    cache->removeAllObjects();
    auto empty = vlx_iconWithType(5, VLXSizeZero, std::nullopt);
    ASSERT_TRUE(empty);
    EXPECT_EQ(empty->size(), VLXSizeZero);
    auto blank = vlx_iconWithType(5, {8, 8}, VLXColor::redColor());
    ASSERT_TRUE(blank);
    EXPECT_EQ(blank->size(), VLXSizeMake(8, 8));
    EXPECT_PIXEL(at(*blank, 4, 4), 0, 0, 0, 0);
    EXPECT_FALSE(vlx_iconWithTypeWidth(5, 20, std::nullopt));
    EXPECT_EQ(cache->count(), 0u);
}

TEST_F(VLXImageUtilitiesTest, DrawingCacheByIdentifier) {
    int draws = 0;
    const VLXImageDrawing drawing = [&] {
        ++draws;
        VLXGraphicsGetCurrentContext()->fillRect(VLXRectMake(0, 0, 1, 1));
    };
    auto first = vlx_imageWithIdentifier("square", {3, 2}, drawing);
    ASSERT_TRUE(first);
    EXPECT_EQ(first->size(), VLXSizeMake(3, 2));
    EXPECT_EQ(first->scale(), 2);  // the screen's
    EXPECT_PIXEL(at(*first, 0.5, 0.5), 0, 0, 0, 255);
    EXPECT_PIXEL(at(*first, 2.5, 1.5), 0, 0, 0, 0);
    EXPECT_EQ(vlx_imageWithIdentifier("square", {9, 9}, drawing), first);
    EXPECT_EQ(draws, 1);

    // A nil identifier draws every time and stores nothing; refused sizes draw nothing.
    EXPECT_TRUE(vlx_imageWithIdentifier(std::nullopt, {3, 2}, drawing));
    EXPECT_TRUE(vlx_imageWithIdentifier(std::nullopt, {3, 2}, drawing));
    EXPECT_EQ(draws, 3);
    EXPECT_FALSE(vlx_imageWithIdentifier("bad", {kNaN, 2}, drawing));
    EXPECT_FALSE(vlx_imageWithIdentifier("bad", {-1, 2}, drawing));
    EXPECT_EQ(draws, 3);
    EXPECT_FALSE(vlx_imageWithIdentifier("bad"));
    EXPECT_FALSE(vlx_imageWithIdentifier(std::nullopt));
    EXPECT_EQ(vlx_imageWithSize({0, 4}, {})->size(), VLXSizeMake(0, 4));
    EXPECT_PIXEL(at(*vlx_imageWithSize({2, 2}, {}), 1, 1), 0, 0, 0, 0);

    vlx_cacheImage(nullptr, "square");
    vlx_cacheImage(first, std::nullopt);
    EXPECT_EQ(vlx_imageWithIdentifier("square"), first);
    EXPECT_EQ(drawingCache()->count(), 1u);
    vlx_removeImageWithIdentifier(std::nullopt);
    vlx_removeImageWithIdentifier("square");
    EXPECT_FALSE(vlx_imageWithIdentifier("square"));
}

TEST_F(VLXImageUtilitiesTest, ScaledDesaturatedTinted) {
    auto image = halves({4, 2}, 2, VLXColor::redColor(), VLXColor::blueColor());
    auto scaled = vlx_imageScaledToSize(*image, {10, 3});
    ASSERT_TRUE(scaled);
    EXPECT_EQ(scaled->size(), VLXSizeMake(10, 3));
    EXPECT_EQ(scaled->scale(), 2);
    EXPECT_PIXEL(at(*scaled, 1, 1), 255, 0, 0, 255);
    EXPECT_PIXEL(at(*scaled, 9, 2), 0, 0, 255, 255);
    EXPECT_FALSE(vlx_imageScaledToSize(*image, {kNaN, 3}));

    // Greys of the PDF luminosity 0.3 R + 0.59 G + 0.11 B; the blend covers the transparent
    // pixel with the black source.
    auto colours = drawnImage({4, 1}, 1, [](VLXGraphicsContext& context) {
        const VLXColor fills[] = {VLXColor::redColor(), VLXColor::greenColor(),
                                  VLXColor::blueColor()};
        for (int i = 0; i < 3; ++i) {
            context.setFillColor(fills[i]);
            context.fillRect(VLXRectMake(i, 0, 1, 1));
        }
    });
    auto grey = vlx_desaturatedImage(*colours);
    ASSERT_TRUE(grey);
    EXPECT_PIXEL(at(*grey, 0, 0), 77, 77, 77, 255);
    EXPECT_PIXEL(at(*grey, 1, 0), 150, 150, 150, 255);
    EXPECT_PIXEL(at(*grey, 2, 0), 28, 28, 28, 255);
    EXPECT_PIXEL(at(*grey, 3, 0), 0, 0, 0, 255);

    // Source-atop colours opaque pixels, keeps transparent and partial alpha.
    auto shape = drawnImage({3, 1}, 3, [](VLXGraphicsContext& context) {
        context.setFillColor(VLXColor::whiteColor());
        context.fillRect(VLXRectMake(0, 0, 1, 1));
        context.setFillColor(VLXColor::colorWithWhite(0, 0.5));
        context.fillRect(VLXRectMake(1, 0, 1, 1));
    });
    auto tinted = vlx_imageTintedWithColor(*shape, VLXColor::colorWithRed(1, 0, 0, 0.5));
    ASSERT_TRUE(tinted);
    EXPECT_EQ(tinted->scale(), 3);
    EXPECT_EQ(tinted->imageOrientation(), VLXImageOrientation::Up);
    EXPECT_PIXEL(at(*tinted, 0.5, 0.5), 255, 128, 128, 255);
    EXPECT_PIXEL(at(*tinted, 1.5, 0.5), 64, 0, 0, 128);
    EXPECT_PIXEL(at(*tinted, 2.5, 0.5), 0, 0, 0, 0);
}

TEST_F(VLXImageUtilitiesTest, AverageColor) {
    auto expectColor = [](const VLXColor& color, double r, double g, double b, double a) {
        ASSERT_EQ(color.colorSpaceModel(), VLXColorSpaceModel::RGB);
        const auto c = color.components();
        EXPECT_NEAR(c[0], r, 0.01);
        EXPECT_NEAR(c[1], g, 0.01);
        EXPECT_NEAR(c[2], b, 0.01);
        EXPECT_NEAR(c[3], a, 0.01);
    };
    const VLXColor red = VLXColor::redColor();
    const VLXColor blue = VLXColor::blueColor();
    expectColor(vlx_averageColor(*halves({2, 1}, 1, red, blue)), 0.5, 0, 0.5, 1);
    // Large images average every pixel, not a few samples.
    expectColor(vlx_averageColor(*halves({300, 200}, 2, red, blue)), 0.5, 0, 0.5, 1);
    auto patch = drawnImage({100, 100}, 1, [](VLXGraphicsContext& context) {
        context.setFillColor(VLXColor::blackColor());
        context.fillRect(VLXRectMake(0, 0, 100, 100));
        context.setFillColor(VLXColor::whiteColor());
        context.fillRect(VLXRectMake(37, 61, 30, 30));
    });
    expectColor(vlx_averageColor(*patch), 0.09, 0.09, 0.09, 1);
    // Premultiplied bytes are multiplied by alpha once more: half-transparent white → 0.25.
    expectColor(vlx_averageColor(*halves({2, 2}, 1, VLXColor::colorWithWhite(1, 0.5),
                                         VLXColor::colorWithWhite(1, 0.5))),
                0.25, 0.25, 0.25, 0.5);
    expectColor(
        vlx_averageColor(*halves({4, 4}, 1, VLXColor::clearColor(), VLXColor::clearColor())), 0, 0,
        0, 0);
    expectColor(vlx_averageColor(*vlx_imageWithSize(VLXSizeZero, {})), 0, 0, 0, 0);
}

TEST_F(VLXImageUtilitiesTest, RefusedIconSizesNeverFindACachedIcon) {
    // NaN and small negative sizes share the identifier of a small positive size ("0x0"); they
    // are refused before the cache is asked, so they never come back with that icon.
    const auto small = vlx_iconWithType(VLXIconTypePlay, {0.5, 0.5}, std::nullopt);
    ASSERT_TRUE(small);
    EXPECT_EQ(vlx_iconWithType(VLXIconTypePlay, {kNaN, 0.5}, std::nullopt), nullptr);
    EXPECT_EQ(vlx_iconWithType(VLXIconTypePlay, {-0.5, 0.5}, std::nullopt), nullptr);
    EXPECT_EQ(vlx_iconWithType(VLXIconTypePlay, {0.5, -1e-9}, VLXColor::redColor()), nullptr);
    const double inf = std::numeric_limits<double>::infinity();
    EXPECT_EQ(vlx_iconWithType(VLXIconTypePlay, {inf, 0.5}, std::nullopt), nullptr);
    // Zero is a size (an image without pixels), and the cached icon still answers its own size.
    EXPECT_TRUE(vlx_iconWithType(VLXIconTypePlay, {-0.0, 0.5}, std::nullopt));
    EXPECT_EQ(vlx_iconWithType(VLXIconTypePlay, {0.5, 0.5}, std::nullopt), small);
}
