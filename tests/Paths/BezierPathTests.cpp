#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <vector>

#include <VelmarCoreUI/Platform/Graphics/VLXBezierPath.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsImageContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>

namespace {
constexpr double kPi = std::numbers::pi;
}

TEST(BezierPath, ScreenClockwiseArcsAndShapes) {
    // Clockwise on a y-down screen walks increasing angles: 0 → π/2 is one quarter via +y.
    const VLXBezierPath quarter =
        VLXBezierPath::bezierPathWithArcCenter({0, 0}, 10, 0, kPi / 2, true);
    EXPECT_EQ(quarter.CGPath().elementCount(), 2u);
    EXPECT_NEAR(quarter.currentPoint().y, 10, 1e-12);
    const VLXBezierPath other =
        VLXBezierPath::bezierPathWithArcCenter({0, 0}, 10, 0, kPi / 2, false);
    EXPECT_EQ(other.CGPath().elementCount(), 4u);  // the long way round, three quarters
    EXPECT_TRUE(other.containsPoint({-5, 0}));
    EXPECT_FALSE(quarter.containsPoint({-5, 0}));

    // Bounds are the control-point box.
    EXPECT_EQ(VLXBezierPath::bezierPathWithOvalInRect(VLXRectMake(1, 2, 30, 40)).bounds(),
              VLXRectMake(1, 2, 30, 40));
    EXPECT_TRUE(VLXBezierPath().bounds().isNull());

    // Only the top-left corner rounded: near it is outside, the other corners are square.
    const VLXBezierPath tab = VLXBezierPath::bezierPathWithRoundedRect(
        VLXRectMake(0, 0, 40, 20), VLXRectCornerTopLeft, VLXSizeMake(100, 100));
    EXPECT_FALSE(tab.containsPoint({1, 1}));
    EXPECT_TRUE(tab.containsPoint({39.5, 0.5}));
    EXPECT_TRUE(tab.containsPoint({0.5, 19.5}));
    EXPECT_TRUE(tab.containsPoint({20, 10}));  // radii clamped to 20 × 10
    EXPECT_EQ(tab.bounds(), VLXRectMake(0, 0, 40, 20));
    // All corners with radius larger than half the short side: clamped to a capsule.
    const VLXBezierPath capsule =
        VLXBezierPath::bezierPathWithRoundedRect(VLXRectMake(0, 0, 40, 20), 50);
    EXPECT_FALSE(capsule.containsPoint({39, 1}));
    EXPECT_TRUE(capsule.containsPoint({39, 10}));
    EXPECT_EQ(VLXBezierPath::bezierPathWithRoundedRect(VLXRectMake(0, 0, 4, 4), 0),
              VLXBezierPath::bezierPathWithRect(VLXRectMake(0, 0, 4, 4)));

    // The UIKit argument order (end first) maps onto the path's (controls first).
    VLXBezierPath curve;
    curve.moveToPoint({0, 0});
    curve.addCurveToPoint({9, 9}, {1, 0}, {2, 0});
    curve.addQuadCurveToPoint({5, 5}, {3, 3});
    EXPECT_EQ(std::vector<VLXPoint>(curve.CGPath().points().begin(), curve.CGPath().points().end()),
              (std::vector<VLXPoint>{{0, 0}, {1, 0}, {2, 0}, {9, 9}, {3, 3}, {5, 5}}));
}

TEST(BezierPath, AttributesDashAndFillRule) {
    VLXBezierPath path = VLXBezierPath::bezierPathWithRect(VLXRectMake(0, 0, 100, 100));
    path.appendPath(VLXBezierPath::bezierPathWithRect(VLXRectMake(25, 25, 50, 50)));
    EXPECT_TRUE(path.containsPoint({50, 50}));
    path.setUsesEvenOddFillRule(true);
    EXPECT_FALSE(path.containsPoint({50, 50}));
    EXPECT_TRUE(path.containsPoint({10, 50}));

    std::vector<double> pattern{4, 2};
    path.setLineDash(pattern, 1.5);
    pattern[0] = 99;  // the path keeps its own copy
    std::vector<double> read;
    double phase = 0;
    path.getLineDash(&read, &phase);
    EXPECT_EQ(read, (std::vector<double>{4, 2}));
    EXPECT_EQ(phase, 1.5);
    path.getLineDash(nullptr, nullptr);
    path.setLineDash({}, 3);
    EXPECT_TRUE(path.lineDashPattern().empty());
    EXPECT_EQ(path.lineDashPhase(), 3);

    // Copies and setCGPath keep attributes; removing points keeps them too.
    path.setLineWidth(4);
    VLXBezierPath copy = path;
    EXPECT_EQ(copy, path);
    copy.setCGPath(VLXPath());
    copy.removeAllPoints();
    EXPECT_EQ(copy.lineWidth(), 4);
    EXPECT_TRUE(copy.usesEvenOddFillRule());
    EXPECT_FALSE(copy == path);
}

TEST(BezierPath, DrawsIntoTheCurrentContext) {
    const VLXBezierPath square = VLXBezierPath::bezierPathWithRect(VLXRectMake(2, 2, 6, 6));
    square.fill();  // no context: nothing happens
    square.stroke();
    square.addClip();

    VLXGraphicsBeginImageContextWithOptions(VLXSizeMake(20, 10), false, 1);
    VLXGraphicsContext* context = VLXGraphicsGetCurrentContext();
    ASSERT_NE(context, nullptr);
    context->setFillColor(VLXColor::colorWithRed(1, 0, 0, 1));
    square.fill();
    VLXBezierPath line;
    line.moveToPoint({10, 5});
    line.addLineToPoint({20, 5});
    line.setLineWidth(2);
    context->setStrokeColor(VLXColor::colorWithRed(0, 0, 1, 1));
    line.stroke();
    const auto image = VLXGraphicsGetImageFromCurrentImageContext();
    VLXGraphicsEndImageContext();
    ASSERT_NE(image, nullptr);

    double r = 0, g = 0, b = 0, a = 0;
    ASSERT_TRUE(image->colorAtPixel(5, 5).getRed(&r, &g, &b, &a));
    EXPECT_NEAR(r, 1, 0.01);
    EXPECT_NEAR(a, 1, 0.01);
    ASSERT_TRUE(image->colorAtPixel(1, 1).getRed(&r, &g, &b, &a));
    EXPECT_NEAR(a, 0, 0.01);
    ASSERT_TRUE(image->colorAtPixel(15, 4).getRed(&r, &g, &b, &a));  // the 2-point line
    EXPECT_NEAR(b, 1, 0.01);
    ASSERT_TRUE(image->colorAtPixel(15, 7).getRed(&r, &g, &b, &a));
    EXPECT_NEAR(a, 0, 0.01);
}
