#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "DrawingTestSupport.h"

namespace {

const double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kInf = std::numeric_limits<double>::infinity();

void expectPixel(const Pixels& pixels, int x, int y, Pixel expected, int tolerance = 1) {
    const Pixel p = pixels.at(x, y);
    EXPECT_NEAR(p.a, expected.a, tolerance) << "alpha at " << x << "," << y;
    EXPECT_NEAR(p.r, expected.r, tolerance) << "red at " << x << "," << y;
    EXPECT_NEAR(p.g, expected.g, tolerance) << "green at " << x << "," << y;
    EXPECT_NEAR(p.b, expected.b, tolerance) << "blue at " << x << "," << y;
}

constexpr Pixel kClear{0, 0, 0, 0};
constexpr Pixel kRed{255, 255, 0, 0};
constexpr Pixel kBlue{255, 0, 0, 255};

}  // namespace

TEST(GraphicsContext, FillsRectanglesInTheirColourOnly) {
    auto context = makeBitmap(100, 50);
    ASSERT_TRUE(context);
    context->setFillColor(VLXColor::redColor());
    context->fillRect(VLXRectMake(10, 10, 30, 20));
    // Half-transparent colours are stored premultiplied; monochrome colours are greys.
    context->setFillColor(VLXColor::colorWithRed(0, 0, 1, 0.5));
    context->fillRect(VLXRectMake(50, 10, 10, 10));
    context->setFillColor(VLXColor::colorWithWhite(0.5, 1));
    context->fillRect(VLXRectMake(70, 10, 10, 10));
    // A colour of another model draws black with its alpha.
    context->setFillColor(VLXColor(VLXColorSpaceModel::Other, {0.2, 0.9, 0.4, 0.1, 1}));
    context->fillRect(VLXRectMake(85, 10, 10, 10));

    const Pixels pixels(*context);
    ASSERT_EQ(pixels.width(), 100);
    expectPixel(pixels, 10, 10, kRed);
    expectPixel(pixels, 39, 29, kRed);
    expectPixel(pixels, 9, 10, kClear);
    expectPixel(pixels, 40, 29, kClear);
    expectPixel(pixels, 39, 30, kClear);
    expectPixel(pixels, 55, 15, Pixel{128, 0, 0, 128});
    expectPixel(pixels, 75, 15, Pixel{255, 128, 128, 128});
    expectPixel(pixels, 90, 15, Pixel{255, 0, 0, 0});
}

TEST(GraphicsContext, StrokesCoverTheLineWidthWithTheirCaps) {
    auto context = makeBitmap(100, 60);
    context->setStrokeColor(VLXColor::blueColor());
    context->setLineWidth(4);
    context->moveToPoint(VLXPointMake(10, 20));
    context->addLineToPoint(VLXPointMake(90, 20));
    context->strokePath();
    EXPECT_TRUE(context->isPathEmpty());  // painting consumes the path

    context->setLineCap(VLXLineCap::Square);
    context->setLineWidth(kNaN);  // ignored: still 4
    context->setLineWidth(-3);
    context->moveToPoint(VLXPointMake(10, 40));
    context->addLineToPoint(VLXPointMake(90, 40));
    context->strokePath();

    const Pixels pixels(*context);
    for (int y = 18; y < 22; ++y) {
        expectPixel(pixels, 50, y, kBlue);
    }
    expectPixel(pixels, 50, 17, kClear);
    expectPixel(pixels, 50, 22, kClear);
    expectPixel(pixels, 10, 20, kBlue);  // butt caps end at the points
    expectPixel(pixels, 9, 20, kClear);
    expectPixel(pixels, 90, 20, kClear);
    expectPixel(pixels, 8, 40, kBlue);  // square caps reach half the width further
    expectPixel(pixels, 91, 40, kBlue);
    expectPixel(pixels, 7, 40, kClear);
    expectPixel(pixels, 92, 40, kClear);
    expectPixel(pixels, 50, 37, kClear);
    expectPixel(pixels, 50, 38, kBlue);
}

TEST(GraphicsContext, FillRulesAndClipRules) {
    // Two nested squares turning the same way: the inner one has winding number 2.
    auto addNestedSquares = [](VLXGraphicsContext& context) {
        context.addRect(VLXRectMake(10, 10, 80, 80));
        context.addRect(VLXRectMake(30, 30, 40, 40));
    };
    for (const VLXPathFillRule rule : {VLXPathFillRule::Winding, VLXPathFillRule::EvenOdd}) {
        auto filled = makeBitmap(100, 100);
        addNestedSquares(*filled);
        filled->fillPath(rule);
        auto clipped = makeBitmap(100, 100);
        addNestedSquares(*clipped);
        clipped->clip(rule);
        clipped->fillRect(VLXRectMake(0, 0, 100, 100));

        for (const auto* context : {filled.get(), clipped.get()}) {
            const Pixels pixels(*const_cast<VLXGraphicsContext*>(context));
            EXPECT_EQ(pixels.alpha(20, 20), 255);
            EXPECT_EQ(pixels.alpha(5, 5), 0);
            EXPECT_EQ(pixels.alpha(50, 50), rule == VLXPathFillRule::Winding ? 255 : 0);
        }
    }

    // A pentagram crosses itself: its centre has winding number 2 (filled only by winding),
    // its tips 1 (filled by both).
    for (const VLXPathFillRule rule : {VLXPathFillRule::Winding, VLXPathFillRule::EvenOdd}) {
        auto context = makeBitmap(100, 100);
        for (int i = 0; i < 5; ++i) {
            const double angle = -M_PI / 2 + i * 4 * M_PI / 5;
            const VLXPoint p = VLXPointMake(50 + 45 * std::cos(angle), 50 + 45 * std::sin(angle));
            i == 0 ? context->moveToPoint(p) : context->addLineToPoint(p);
        }
        context->closePath();
        context->fillPath(rule);
        const Pixels pixels(*context);
        EXPECT_EQ(pixels.alpha(50, 50), rule == VLXPathFillRule::Winding ? 255 : 0);
        EXPECT_EQ(pixels.alpha(50, 12), 255);
    }
}

TEST(GraphicsContext, SaveAndRestoreTheWholeState) {
    auto context = makeBitmap(100, 40);
    context->setFillColor(VLXColor::redColor());
    context->saveGState();
    context->setFillColor(VLXColor::blueColor());
    context->translateCTM(50, 0);
    context->clipToRect(VLXRectMake(0, 0, 10, 10));
    context->setAlpha(0.5);
    context->fillRect(VLXRectMake(0, 0, 20, 20));  // clipped to 50…60 × 0…10
    EXPECT_EQ(context->CTM(), VLXAffineTransformMakeTranslation(50, 0));
    context->restoreGState();
    context->restoreGState();  // nothing saved: ignored
    EXPECT_EQ(context->CTM(), VLXAffineTransformIdentity);
    EXPECT_EQ(context->fillColor(), VLXColor::redColor());
    context->fillRect(VLXRectMake(0, 20, 100, 10));  // the clip is gone, alpha is 1 again

    const Pixels pixels(*context);
    expectPixel(pixels, 55, 5, Pixel{128, 0, 0, 128});
    expectPixel(pixels, 65, 5, kClear);
    expectPixel(pixels, 5, 25, kRed);
    expectPixel(pixels, 95, 25, kRed);
    EXPECT_TRUE(context->isValid());
}

TEST(GraphicsContext, ScaledBitmapsMapPointsToPixelBlocks) {
    auto context = makeBitmap(10.25, 10, 2);
    ASSERT_TRUE(context);
    EXPECT_EQ(context->CTM(), VLXAffineTransformIdentity);  // the pixel scale is not in the CTM
    context->fillRect(VLXRectMake(2, 2, 3, 3));
    auto image = context->makeImage();
    ASSERT_TRUE(image);
    EXPECT_EQ(image->pixelWidth(), 21);  // ceil(10.25 × 2)
    EXPECT_EQ(image->pixelHeight(), 20);
    EXPECT_EQ(image->scale(), 2);
    const Pixels pixels(image);
    EXPECT_EQ(pixels.alpha(3, 5), 0);
    EXPECT_EQ(pixels.alpha(4, 4), 255);
    EXPECT_EQ(pixels.alpha(9, 9), 255);
    EXPECT_EQ(pixels.alpha(10, 9), 0);
}

TEST(GraphicsContext, BlendModesOnKnownPixels) {
    // Source-atop colours only what is there: the tinting idiom.
    auto tint = makeBitmap(40, 10);
    tint->setFillColor(VLXColor::redColor());
    tint->fillRect(VLXRectMake(0, 0, 20, 10));
    tint->setBlendMode(VLXBlendMode::SourceAtop);
    tint->setFillColor(VLXColor::blueColor());
    tint->fillRect(VLXRectMake(0, 0, 40, 10));
    const Pixels tinted(*tint);
    expectPixel(tinted, 10, 5, kBlue);
    expectPixel(tinted, 30, 5, kClear);

    // Saturation with black makes a grey of the same luminosity (0.3 r + 0.59 g + 0.11 b); as a
    // blend mode its result covers source and destination, so half-covered pixels mix the grey
    // with the black source and empty ones turn black.
    auto grey = makeBitmap(40, 10);
    grey->setFillColor(VLXColor::colorWithRed(0.8, 0.2, 0.2, 1));
    grey->fillRect(VLXRectMake(0, 0, 10, 10));
    grey->setFillColor(VLXColor::colorWithRed(0.8, 0.2, 0.2, 0.5));
    grey->fillRect(VLXRectMake(10, 0, 10, 10));
    grey->setBlendMode(VLXBlendMode::Saturation);
    grey->setFillColor(VLXColor::blackColor());
    grey->fillRect(VLXRectMake(0, 0, 40, 10));
    const Pixels greyed(*grey);
    const int luminosity =
        static_cast<int>(std::lround((0.3 * 0.8 + 0.59 * 0.2 + 0.11 * 0.2) * 255));
    expectPixel(greyed, 5, 5, Pixel{255, luminosity, luminosity, luminosity}, 2);
    expectPixel(greyed, 15, 5, Pixel{255, luminosity / 2, luminosity / 2, luminosity / 2}, 2);
    expectPixel(greyed, 30, 5, Pixel{255, 0, 0, 0});

    // Multiply: 0.5 grey × red = dark red.
    auto multiply = makeBitmap(10, 10);
    multiply->setFillColor(VLXColor::grayColor());
    multiply->fillRect(VLXRectMake(0, 0, 10, 10));
    multiply->setBlendMode(VLXBlendMode::Multiply);
    multiply->setFillColor(VLXColor::redColor());
    multiply->fillRect(VLXRectMake(0, 0, 10, 10));
    expectPixel(Pixels(*multiply), 5, 5, Pixel{255, 128, 0, 0});

    // Copy replaces inside the shape, alpha included, and leaves the rest alone.
    auto copy = makeBitmap(20, 10);
    copy->setFillColor(VLXColor::blueColor());
    copy->fillRect(VLXRectMake(0, 0, 20, 10));
    copy->setBlendMode(VLXBlendMode::Copy);
    copy->setFillColor(VLXColor::colorWithRed(1, 0, 0, 0.5));
    copy->fillRect(VLXRectMake(0, 0, 10, 10));
    const Pixels copied(*copy);
    expectPixel(copied, 5, 5, Pixel{128, 128, 0, 0});
    expectPixel(copied, 15, 5, kBlue);
}

TEST(GraphicsContext, GlobalAlphaMultipliesFillsStrokesAndImages) {
    auto image = VLXImage::imageWithPixels(2, 2, std::vector<std::uint32_t>(4, 0xff00ff00U));
    ASSERT_TRUE(image);
    auto context = makeBitmap(60, 20);
    context->setAlpha(0.5);
    context->setAlpha(kNaN);  // ignored
    context->setFillColor(VLXColor::colorWithRed(1, 0, 0, 0.5));
    context->fillRect(VLXRectMake(0, 0, 10, 10));
    context->setStrokeColor(VLXColor::redColor());
    context->setLineWidth(10);
    context->strokeRect(VLXRectMake(25, 5, 10, 10));  // covers 20…40 × 0…20 except the hole
    context->drawImage(*image, VLXRectMake(45, 5, 10, 10));
    const Pixels pixels(*context);
    expectPixel(pixels, 5, 5, Pixel{64, 64, 0, 0});
    expectPixel(pixels, 22, 10, Pixel{128, 128, 0, 0});
    expectPixel(pixels, 50, 10, Pixel{128, 0, 128, 0});
}

TEST(GraphicsContext, ShadowsFallAtTheOffsetAndSpreadWithBlur) {
    auto hard = makeBitmap(100, 100, 2);  // offsets are in points: 10 points = 20 pixels
    hard->setShadow(VLXSizeMake(10, 10), 0, VLXColor::blackColor());
    hard->setFillColor(VLXColor::whiteColor());
    hard->fillRect(VLXRectMake(25, 25, 20, 20));  // pixels 50…90; its shadow 70…110
    const Pixels hardPixels(*hard);
    expectPixel(hardPixels, 60, 60, Pixel{255, 255, 255, 255});
    expectPixel(hardPixels, 100, 100, Pixel{255, 0, 0, 0});
    expectPixel(hardPixels, 100, 60, kClear);  // y grows downward: nothing above the shape
    expectPixel(hardPixels, 60, 45, kClear);

    auto soft = makeBitmap(100, 100);
    soft->setShadow(VLXSizeMake(0, 0), 10);  // default colour: black at 1/3
    soft->fillRect(VLXRectMake(40, 40, 20, 20));
    const Pixels softPixels(*soft);
    EXPECT_EQ(softPixels.alpha(50, 50), 255);
    const int near = softPixels.alpha(50, 61);
    const int middle = softPixels.alpha(50, 64);
    const int far = softPixels.alpha(50, 68);
    EXPECT_GT(near, middle);
    EXPECT_GT(middle, far);
    EXPECT_GT(far, 0);
    EXPECT_LE(near, 86);  // never darker than the shadow colour's alpha
    EXPECT_EQ(softPixels.alpha(50, 95), 0);

    // A transparent colour turns shadows off.
    auto none = makeBitmap(50, 50);
    none->setShadow(VLXSizeMake(10, 10), 5, VLXColor::clearColor());
    none->fillRect(VLXRectMake(10, 10, 10, 10));
    EXPECT_EQ(Pixels(*none).countPainted(), 100);
}

TEST(GraphicsContext, DashesLeaveGapsAndBadDashesDrawSolid) {
    auto lineAt = [](VLXGraphicsContext& context, double y) {
        context.moveToPoint(VLXPointMake(0, y));
        context.addLineToPoint(VLXPointMake(100, y));
        context.strokePath();
    };
    auto context = makeBitmap(100, 40);
    context->setLineWidth(2);
    const double pattern[] = {10, 10};
    context->setLineDash(0, pattern);
    lineAt(*context, 5);
    context->setLineDash(5, pattern);
    lineAt(*context, 15);
    const double bad[] = {10, -1};
    context->setLineDash(0, bad);
    lineAt(*context, 25);
    const double zeros[] = {0, 0};
    context->setLineDash(0, zeros);
    lineAt(*context, 35);

    const Pixels pixels(*context);
    EXPECT_EQ(pixels.alpha(5, 5), 255);
    EXPECT_EQ(pixels.alpha(15, 5), 0);
    EXPECT_EQ(pixels.alpha(25, 5), 255);
    EXPECT_EQ(pixels.alpha(2, 15), 255);  // phase 5: on 0…5, off 5…15, on 15…25
    EXPECT_EQ(pixels.alpha(10, 15), 0);
    EXPECT_EQ(pixels.alpha(20, 15), 255);
    for (int x = 1; x < 100; x += 7) {
        EXPECT_EQ(pixels.alpha(x, 25), 255);
        EXPECT_EQ(pixels.alpha(x, 35), 255);
    }
}

TEST(GraphicsContext, BadInputLeavesTheContextUsable) {
    EXPECT_FALSE(makeBitmap(1e6, 10));
    EXPECT_FALSE(makeBitmap(30000, 30000));  // too many pixels
    EXPECT_FALSE(makeBitmap(kNaN, 10));
    EXPECT_FALSE(makeBitmap(-1, 10));
    EXPECT_FALSE(makeBitmap(10, kInf));
    EXPECT_FALSE(makeBitmap(10, 10, 0));
    EXPECT_FALSE(makeBitmap(10, 10, kNaN));
    EXPECT_FALSE(makeBitmap(10, 10, 1e-300));  // a base matrix cairo could not invert
    EXPECT_FALSE(makeBitmap(1, 1, 2000));
    EXPECT_FALSE(VLXGraphicsContext::createSVG(VLXSizeMake(0, 10)));
    EXPECT_FALSE(VLXGraphicsContext::createPDF(VLXSizeMake(10, kNaN)));

    auto image = VLXImage::imageWithPixels(1, 1, {0xffff0000U});
    auto context = makeBitmap(100, 100);
    context->setLineWidth(3);
    for (const VLXAffineTransform& bad :
         {VLXAffineTransformMake(kNaN, 0, 0, 1, 0, 0), VLXAffineTransformMakeScale(0, 0),
          VLXAffineTransformMake(1, 0, 0, 1, kInf, 0)}) {
        context->saveGState();
        context->concatCTM(bad);
        context->fillRect(VLXRectMake(0, 0, 100, 100));
        context->strokeRect(VLXRectMake(10, 10, 50, 50));
        context->drawImage(*image, VLXRectMake(0, 0, 100, 100));
        context->drawWithEffects([](cairo_t*) { FAIL() << "drawn with an unusable CTM"; });
        context->restoreGState();
    }
    context->restoreGState();
    // Huge and non-finite numbers everywhere.
    context->setLineWidth(1e300);
    context->setShadow(VLXSizeMake(1e300, kNaN), 1e300);
    context->setShadow(VLXSizeMake(1e300, 1e300), 1e300);
    context->setMiterLimit(kNaN);
    const double tiny[] = {1e-9, 1e-9};
    context->setLineDash(0, tiny);
    context->moveToPoint(VLXPointMake(-1e300, 5));
    context->addLineToPoint(VLXPointMake(1e300, 1e300));
    context->strokePath();
    context->setShadow(VLXSizeMake(0, 0), 0);
    context->setLineDash(0, {});
    context->setFillColor(VLXColor(VLXColorSpaceModel::RGB, {kNaN, kInf, -kInf, kNaN}));
    context->fillRect(VLXRectMake(-1e300, -1e300, 2e300, 2e300));
    context->fillRect(VLXRectMake(kNaN, 0, 10, 10));
    context->drawImage(*image, VLXRectMake(kNaN, 0, 1e-300, kInf));
    EXPECT_TRUE(context->isValid());

    // After all that, ordinary drawing is exact; a subpath with a NaN point is left out.
    int calls = 0;
    context->drawWithEffects([&](cairo_t* cairo) { calls += cairo != nullptr ? 1 : 100; });
    EXPECT_EQ(calls, 1);
    context->clearRect(VLXRectMake(0, 0, 100, 100));
    context->setFillColor(VLXColor::redColor());
    context->addRect(VLXRectMake(10, 10, 10, 10));
    context->moveToPoint(VLXPointMake(50, 50));
    context->addLineToPoint(VLXPointMake(kNaN, 90));
    context->addLineToPoint(VLXPointMake(90, 90));
    context->fillPath();
    const Pixels pixels(*context);
    EXPECT_EQ(pixels.countPainted(), 100);
    expectPixel(pixels, 15, 15, kRed);
    EXPECT_TRUE(context->isValid());
}

TEST(GraphicsContext, DocumentsAreWholeAndFinishOnce) {
    for (const bool svg : {true, false}) {
        auto document = svg ? VLXGraphicsContext::createSVG(VLXSizeMake(120, 80))
                            : VLXGraphicsContext::createPDF(VLXSizeMake(120, 80));
        ASSERT_TRUE(document);
        document->setShadow(VLXSizeMake(3, 3), 4);
        document->setFillColor(VLXColor::orangeColor());
        document->fillEllipseInRect(VLXRectMake(10, 10, 60, 40));
        EXPECT_FALSE(document->makeImage());
        const std::string data = document->documentData();
        EXPECT_EQ(data.rfind(svg ? "<?xml" : "%PDF", 0), 0u);
        if (svg) {
            EXPECT_NE(data.find("</svg>"), std::string::npos);
        }
        document->fillRect(VLXRectMake(0, 0, 10, 10));  // ignored once finished
        EXPECT_EQ(document->documentData(), data);
        EXPECT_TRUE(document->isValid());
    }
    EXPECT_EQ(makeBitmap(4, 4)->documentData(), "");
}
