// Hostile geometry: transforms, clips, dashes and images that cairo cannot handle must give a
// defined result and leave the context drawing normally.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "DrawingTestSupport.h"

namespace {

// A fill of the given device-pixel square after the state is restored draws opaque pixels.
void expectStillDraws(VLXGraphicsContext& context, const char* what) {
    ASSERT_TRUE(context.isValid()) << what;
    context.saveGState();
    context.setFillColor(VLXColor::colorWithRed(0, 0, 1, 1));
    context.fillRect(VLXRectMake(0, 0, context.size().width, context.size().height));
    EXPECT_TRUE(context.isValid()) << what;
    context.restoreGState();
    Pixels pixels(context);
    ASSERT_TRUE(pixels.valid()) << what;
    EXPECT_EQ(pixels.at(pixels.width() / 2, pixels.height() / 2), (Pixel{255, 0, 0, 255})) << what;
}

}  // namespace

TEST(HostileDrawing, DegenerateDeviceClipsDoNotReachCairo) {
    for (double scale : {1.0 / 1024, 512.0}) {
        for (double angle : {0.3, 1.0, 2.5}) {
            for (double extent : {1e-3, 1.0, 40.0, 1e6}) {
                // 16 pixels a side.
                auto context = makeBitmap(16 / scale, 16 / scale, scale);
                ASSERT_NE(context, nullptr);
                context->saveGState();
                context->rotateCTM(angle);
                context->moveToPoint(VLXPointMake(0, 0));
                context->addLineToPoint(VLXPointMake(extent, extent));
                context->addLineToPoint(VLXPointMake(extent, 0));
                context->addLineToPoint(VLXPointMake(0, extent));
                context->addLineToPoint(VLXPointMake(-extent, extent / 3));
                context->clip(VLXPathFillRule::EvenOdd);
                context->fillRect(VLXRectMake(-extent, -extent, 2 * extent, 2 * extent));
                context->restoreGState();
                expectStillDraws(*context, "clip");
            }
        }
    }
}

namespace {

// Mean alpha of the pixels in a device rectangle.
double meanAlpha(const Pixels& pixels, int x0, int y0, int x1, int y1) {
    double sum = 0;
    for (int y = y0; y < y1; ++y) {
        for (int x = x0; x < x1; ++x) {
            sum += pixels.alpha(x, y);
        }
    }
    return sum / ((x1 - x0) * (y1 - y0));
}

}  // namespace

TEST(HostileDrawing, SubPixelDashesDrawAThinnedLine) {
    const double dash[] = {0.01, 0.03};  // a quarter on
    {
        // A short path: 20 000 dashes over 200 pixels.
        auto context = makeBitmap(200, 20);
        context->setLineWidth(10);
        context->setLineDash(0, dash);
        context->moveToPoint(VLXPointMake(0, 10));
        context->addLineToPoint(VLXPointMake(200, 10));
        context->strokePath();
        Pixels pixels(*context);
        EXPECT_NEAR(meanAlpha(pixels, 10, 6, 190, 14), 255 * 0.25, 12);
        EXPECT_EQ(pixels.alpha(100, 2), 0);
    }
    {
        // Sub-pixel dots with round caps overlap into a solid line.
        const double dots[] = {0, 0.02};
        auto context = makeBitmap(200, 20);
        context->setLineWidth(10);
        context->setLineCap(VLXLineCap::Round);
        context->setLineDash(0, dots);
        context->moveToPoint(VLXPointMake(10, 10));
        context->addLineToPoint(VLXPointMake(190, 10));
        context->strokePath();
        Pixels pixels(*context);
        EXPECT_EQ(pixels.alpha(100, 10), 255);
        EXPECT_EQ(pixels.alpha(7, 10), 255);  // the round cap beyond the end
    }
    {
        // A polyline below the long-stroke threshold that runs far outside the surface.
        auto context = makeBitmap(200, 20);
        context->setLineWidth(10);
        context->setLineDash(0, dash);
        context->moveToPoint(VLXPointMake(-1e6, 10));
        for (int i = 1; i <= 1000; ++i) {
            context->addLineToPoint(VLXPointMake(-1e6 + i * 2e3, i % 2 == 0 ? 10 : 10.001));
        }
        context->strokePath();
        Pixels pixels(*context);
        EXPECT_NEAR(meanAlpha(pixels, 10, 6, 190, 14), 255 * 0.25, 12);
    }
    {
        // Anisotropic: the pattern is a point long across x but a ten-millionth of a pixel
        // along y, where the line runs (half a billion dashes).
        const double unit[] = {1, 1};
        auto context = makeBitmap(100, 100);
        context->scaleCTM(1, 1e-7);
        context->setLineWidth(10);
        context->setLineDash(0, unit);
        context->moveToPoint(VLXPointMake(50, 0));
        context->addLineToPoint(VLXPointMake(50, 1e9));
        context->strokePath();
        Pixels pixels(*context);
        EXPECT_NEAR(meanAlpha(pixels, 46, 10, 54, 90), 255 * 0.5, 12);
    }
    {
        // Mixed: a thousandth of a pixel per point along y, where dashes thin, while across x
        // 4-point dashes stay dashes.
        const double unit[] = {1, 1};
        auto context = makeBitmap(100, 100);
        context->scaleCTM(1, 1e-3);
        context->setLineWidth(10);
        context->setLineDash(0, unit);
        context->moveToPoint(VLXPointMake(50, 0));
        context->addLineToPoint(VLXPointMake(50, 1e5));
        context->strokePath();
        const double visible[] = {4, 4};
        context->setLineDash(0, visible);
        context->setLineWidth(1e4);
        context->moveToPoint(VLXPointMake(0, 5e4));
        context->addLineToPoint(VLXPointMake(40, 5e4));
        context->strokePath();
        Pixels after(*context);
        EXPECT_NEAR(meanAlpha(after, 46, 60, 54, 90), 255 * 0.5, 12);
        EXPECT_GT(after.alpha(2, 50), 200);
        EXPECT_EQ(after.alpha(6, 50), 0);
    }
}

TEST(HostileDrawing, ImagesWithExtremeRectanglesLeaveTheContextUsable) {
    auto image = VLXImage::imageWithPixels(4, 4, std::vector<std::uint32_t>(16, 0xffff0000U));
    ASSERT_NE(image, nullptr);
    for (double extent : {1e12, 1e200, 1e307}) {
        // A finite but huge rotated rectangle covers the whole surface.
        auto context = makeBitmap(40, 40);
        context->saveGState();
        context->rotateCTM(0.5);
        context->drawImage(*image, VLXRectMake(-extent, -extent, 1.5 * extent, 1.5 * extent));
        context->restoreGState();
        ASSERT_TRUE(context->isValid());
        Pixels pixels(*context);
        EXPECT_EQ(pixels.at(20, 20), (Pixel{255, 255, 0, 0}));
        EXPECT_EQ(pixels.at(1, 38), (Pixel{255, 255, 0, 0}));
        expectStillDraws(*context, "huge image");
    }
    for (double height : {1e-9, -1e-9, 1e-300}) {
        auto context = makeBitmap(40, 40);
        context->drawImage(*image, VLXRectMake(5, 5, 30, height));
        context->rotateCTM(0.3);
        context->drawImage(*image, VLXRectMake(5, 5, height, 30));
        ASSERT_TRUE(context->isValid());
        EXPECT_EQ(Pixels(*context).countPainted(), 0);
        expectStillDraws(*context, "thin image");
    }
}

TEST(HostileDrawing, HugeFillsCostTheirVisibleArea) {
    // A star of 20 000 curves between radii 1e7 and 1e12 around the surface: every pixel is
    // inside it once.
    auto context = makeBitmap(50, 50);
    constexpr int kPoints = 20000;
    auto at = [](double angle, double radius) {
        return VLXPointMake(25 + radius * std::cos(angle), 25 + radius * std::sin(angle));
    };
    context->moveToPoint(at(0, 1e12));
    for (int i = 1; i <= kPoints; ++i) {
        const double angle = 2 * M_PI * i / kPoints, step = 2 * M_PI / kPoints;
        context->addCurveToPoint(at(angle - step * 0.66, 1e7), at(angle - step * 0.33, 1e7),
                                 at(angle, i % 2 == 0 ? 1e12 : 1e9));
    }
    context->closePath();
    context->setFillColor(VLXColor::colorWithRed(0, 1, 0, 1));
    context->fillPath();
    Pixels pixels(*context);
    EXPECT_EQ(pixels.at(0, 0), (Pixel{255, 0, 255, 0}));
    EXPECT_EQ(pixels.at(25, 25), (Pixel{255, 0, 255, 0}));
    EXPECT_EQ(pixels.at(49, 49), (Pixel{255, 0, 255, 0}));

    // 300 000 edges far to the left, each spanning every row (cairo kept them all active on
    // every scanline), and a square in the middle.
    auto zigzag = makeBitmap(200, 200);
    constexpr int kEdges = 300000;
    for (int i = 0; i < kEdges; ++i) {
        const VLXPoint p = VLXPointMake(-1e12 + i * (1e12 / kEdges), i % 2 == 0 ? -1e12 : 1e12);
        if (i == 0) {
            zigzag->moveToPoint(p);
        } else {
            zigzag->addLineToPoint(p);
        }
    }
    zigzag->closePath();
    zigzag->addRect(VLXRectMake(50, 50, 100, 100));
    zigzag->fillPath(VLXPathFillRule::EvenOdd);
    Pixels square(*zigzag);
    EXPECT_EQ(square.alpha(100, 100), 255);
    EXPECT_EQ(square.alpha(10, 100), 0);
    EXPECT_EQ(square.countPainted(), 100 * 100);
}
