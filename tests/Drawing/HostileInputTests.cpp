// Hostile geometry: transforms, clips, dashes and images that cairo cannot handle must give a
// defined result and leave the context drawing normally.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <utility>
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

// A 100 × 100 bitmap squeezed by `yScale` along y, with a 10-wide line dashed one point on, one
// off, stroked down the middle over the whole height.
std::shared_ptr<VLXGraphicsContext> strokeVerticalUnitDashes(double yScale) {
    const double unit[] = {1, 1};
    auto context = makeBitmap(100, 100);
    context->scaleCTM(1, yScale);
    context->setLineWidth(10);
    context->setLineDash(0, unit);
    context->moveToPoint(VLXPointMake(50, 0));
    context->addLineToPoint(VLXPointMake(50, 100 / yScale));
    context->strokePath();
    return context;
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
        auto context = strokeVerticalUnitDashes(1e-7);
        Pixels pixels(*context);
        EXPECT_NEAR(meanAlpha(pixels, 46, 10, 54, 90), 255 * 0.5, 12);
    }
    {
        // Mixed: a thousandth of a pixel per point along y, where dashes thin, while across x
        // 4-point dashes stay dashes.
        auto context = strokeVerticalUnitDashes(1e-3);
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

TEST(HostileDrawing, ImagesShrunkBeyondFixedPointAreAveraged) {
    // 1 000 pixels across a fifth of a device pixel: left half red, right half blue.
    std::vector<std::uint32_t> stripes(1000 * 4);
    for (std::size_t i = 0; i < stripes.size(); ++i) {
        stripes[i] = i % 1000 < 500 ? 0xffff0000U : 0xff0000ffU;
    }
    auto image = VLXImage::imageWithPixels(1000, 4, std::move(stripes));
    ASSERT_NE(image, nullptr);
    auto context = makeBitmap(40, 40);
    context->drawImage(*image, VLXRectMake(10, 10, 0.2, 20));
    context->saveGState();
    context->rotateCTM(M_PI / 2);
    context->drawImage(*image, VLXRectMake(10, -30, 0.2, 20));  // the same, lying down
    context->restoreGState();
    ASSERT_TRUE(context->isValid());
    Pixels pixels(*context);
    for (const auto& [x, y] : {std::pair{10, 20}, std::pair{20, 10}}) {
        const Pixel p = pixels.at(x, y);
        EXPECT_NEAR(p.a, 51, 8) << x << ", " << y;
        EXPECT_NEAR(p.r, p.b, 8) << x << ", " << y;  // the average of both halves
    }
    expectStillDraws(*context, "shrunk image");
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

namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// A path of two huge arcs, as a host might build one from garbage.
VLXPath hugeArcs() {
    VLXPath path;
    path.moveToPoint({-kInf, 3.034226521864362e+307});
    path.addLineToPoint({1.647950421110584e+308, 256});
    path.addArc({kNaN, 1}, 1.7541110696467794e+308, kInf, kInf, false);
    path.moveToPoint({-kInf, kNaN});
    path.addLineToPoint({kNaN, -kInf});
    path.addArc({-406.17777358911223, 2.1955024041883379e+307}, -887.31719633651073, kInf,
                -1.2715107188413931e+308, true);
    return path;
}

}  // namespace

TEST(HostileDrawing, ExtremeSequencesKeepContextsValid) {
    auto image = VLXImage::imageWithPixels(2, 2, {0xffff0000U, 0xff00ff00U, 0x800000ffU, 0}, 2);
    ASSERT_NE(image, nullptr);
    std::vector<std::shared_ptr<VLXGraphicsContext>> contexts{
        makeBitmap(16, 16), makeBitmap(16, 16, 0.25), VLXGraphicsContext::createSVG({16, 16})};
    for (const auto& context : contexts) {
        // An image into a rectangle a billion points wide under an extreme, rotated CTM, then
        // an even-odd clip of huge rectangles.
        context->saveGState();
        context->setLineCap(VLXLineCap::Square);
        context->scaleCTM(4.6e12, -1e-9);
        context->addRect(VLXRectMake(-466.17353857356534, 9.5296512224863527e+307, -1e15, -1e15));
        context->addRect(VLXRectMake(-816.8610157018669, kNaN, 2.1615826879020938e+307,
                                     -1.5743869320353481e+308));
        context->rotateCTM(7.6623957543046429e+307);
        context->drawImage(
            *image, VLXRectMake(645.98811089565015, -200.60926675796497, 1e9, 633.14556695786678));
        context->clip(VLXPathFillRule::EvenOdd);
        context->restoreGState();
        EXPECT_TRUE(context->isValid());

        // Huge arcs, non-finite clips and a fill through a CTM of NaN and infinities.
        context->saveGState();
        context->setShadow(VLXSizeMake(-178.09040963370046, -898.39077252502545), kInf);
        context->addLineToPoint(VLXPointMake(-835.47455583124122, 5.4064796682464715e+307));
        context->concatCTM({kNaN, 3.1970881009396033e+307, kInf, kNaN, 256, kInf});
        context->addRect(VLXRectMake(kInf, -1e9, kNaN, 1.6048370550215616e+308));
        context->rotateCTM(-1);
        context->addPath(hugeArcs());
        context->clipToRect(VLXRectMake(1e14, -kInf, kInf, kInf));
        context->addCurveToPoint(VLXPointMake(-1e14, -1e14), VLXPointMake(kNaN, 728.2),
                                 VLXPointMake(0.29582267578541632, kNaN));
        context->drawImage(*image, VLXRectMake(kInf, -769.0985612620351, kNaN, kNaN));
        context->restoreGState();
        context->addPath(hugeArcs());
        context->fillPath();
        context->fillRect(VLXRectMake(-1.7976823191323179e+308, 0, 0, 0));
        EXPECT_TRUE(context->isValid());
        if (context->kind() == VLXGraphicsContextKind::Bitmap) {
            context->clearRect(VLXRectMake(0, 0, 16, 16));
            expectStillDraws(*context, "extreme sequence");
        }
    }
}

TEST(HostileDrawing, WideShadowsKeepTheirPlaceAndStrength) {
    // A blur this wide is computed on a reduced mask: the shadow must still sit at the offset,
    // spread symmetrically and carry the square's whole coverage.
    auto context = makeBitmap(400, 400);
    context->setShadow(VLXSize{190, 190}, 60, VLXColor::colorWithRed(0, 0, 0, 1));
    context->setFillColor(VLXColor::colorWithRed(0, 0, 1, 1));
    context->fillRect(VLXRectMake(10, 10, 40, 40));
    Pixels pixels(*context);
    ASSERT_TRUE(pixels.valid());
    double mass = 0;
    for (int y = 100; y < 360; ++y) {
        for (int x = 100; x < 360; ++x) {
            mass += pixels.alpha(x, y) / 255.0;
        }
    }
    EXPECT_NEAR(mass, 1600, 80);
    const int centre = 220;
    EXPECT_GT(pixels.alpha(centre, centre), pixels.alpha(centre - 30, centre));
    EXPECT_GT(pixels.alpha(centre - 30, centre), pixels.alpha(centre - 70, centre));
    EXPECT_GT(pixels.alpha(centre - 70, centre), 0);
    EXPECT_NEAR(pixels.alpha(centre - 40, centre), pixels.alpha(centre + 40, centre), 2);
    EXPECT_NEAR(pixels.alpha(centre, centre - 40), pixels.alpha(centre, centre + 40), 2);
    EXPECT_EQ(pixels.at(30, 30), (Pixel{255, 0, 0, 255}));  // the square itself, unblurred
}
