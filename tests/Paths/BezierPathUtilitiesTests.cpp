#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

#include <VelmarCoreUI/Utilities/VLXBezierPathUtilities.h>
#include <VelmarCoreUI/Utilities/VLXValueBoxing.h>

namespace {

std::vector<VLXPoint> pathPoints(const VLXBezierPath& path) {
    return {path.CGPath().points().begin(), path.CGPath().points().end()};
}

VLXBezierPath polyline(const std::vector<VLXPoint>& points) {
    VLXPath path;
    path.addLines(points);
    return VLXBezierPath::bezierPathWithCGPath(path);
}

}  // namespace

TEST(BezierArrows, PointsFollowTheDirection) {
    const std::vector<VLXPoint> expected{{0, 1},  {6, 1},  {6, 3}, {10, 0},
                                         {6, -3}, {6, -1}, {0, -1}};
    std::array<VLXPoint, 7> points{};
    vlx_pointsForArrowFromPoint({0, 0}, {10, 0}, 2, 6, 4, points, 7);
    EXPECT_EQ(std::vector<VLXPoint>(points.begin(), points.end()), expected);
    vlx_getAxisAlignedArrowPoints(points, 10, 2, 6, 4);
    EXPECT_EQ(std::vector<VLXPoint>(points.begin(), points.end()), expected);

    // Straight down: the same shape turned by 90° (cos 0, sin 1 exactly).
    vlx_pointsForArrowFromPoint({0, 0}, {0, 10}, 2, 6, 4, points, 7);
    EXPECT_EQ(points[3], VLXPointMake(0, 10));
    EXPECT_EQ(points[0], VLXPointMake(-1, 0));
    EXPECT_EQ(points[6], VLXPointMake(1, 0));

    // The path has the same seven points, closed.
    const VLXBezierPath down = vlx_bezierPathWithArrowFromPoint({0, 0}, {0, 10}, 2, 6, 4);
    EXPECT_EQ(pathPoints(down), std::vector<VLXPoint>(points.begin(), points.end()));
    EXPECT_EQ(down.CGPath().elementCount(), 8u);
    EXPECT_EQ(down.CGPath().elementTypes().back(), VLXPathElementType::CloseSubpath);
    EXPECT_TRUE(down.containsPoint({0, 3}));
    EXPECT_FALSE(down.containsPoint({2, 3}));   // beside the tail
    EXPECT_TRUE(down.containsPoint({2, 6.5}));  // within the head

    // The length is a single-precision hypotenuse; count 0 leaves the axis-aligned points.
    vlx_pointsForArrowFromPoint({0, 0}, {1, 1}, 0, 0, 0, points, 0);
    EXPECT_EQ(points[3].x, static_cast<double>(static_cast<float>(std::sqrt(2.0))));
    EXPECT_NE(points[3].x, std::sqrt(2.0));

    // Count is clamped to the buffer; entries past the seventh are mapped in place.
    std::array<VLXPoint, 8> longer{};
    longer[7] = {1, 0};
    vlx_pointsForArrowFromPoint({5, 5}, {5, 15}, 2, 6, 4, longer, 1000);
    EXPECT_EQ(longer[3], VLXPointMake(5, 15));
    EXPECT_EQ(longer[7], VLXPointMake(5, 6));
    // A buffer too small for an arrow is left alone.
    std::array<VLXPoint, 6> small{};
    small.fill({42, 42});
    vlx_getAxisAlignedArrowPoints(small, 10, 2, 6, 4);
    vlx_pointsForArrowFromPoint({0, 0}, {10, 0}, 2, 6, 4, small, 6);
    EXPECT_TRUE(std::all_of(small.begin(), small.end(),
                            [](VLXPoint p) { return p == VLXPointMake(42, 42); }));

    // Start equal to end: a zero length divides to NaN; nothing crashes.
    vlx_pointsForArrowFromPoint({3, 3}, {3, 3}, 2, 6, 4, points, 7);
    EXPECT_TRUE(std::isnan(points[0].x));
    const VLXBezierPath degenerate = vlx_bezierPathWithArrowFromPoint({3, 3}, {3, 3}, 2, 6, 4);
    EXPECT_EQ(degenerate.CGPath().elementCount(), 8u);
    EXPECT_TRUE(degenerate.bounds().isNull());
    EXPECT_FALSE(degenerate.containsPoint({3, 3}));
}

TEST(BezierPathPoints, ControlPointsCountAsVertices) {
    VLXPath path;
    path.moveToPoint({0, 0});
    path.addCurveToPoint({1, 5}, {2, -5}, {3, 0});
    path.addQuadCurveToPoint({4, 4}, {5, 0});
    path.closeSubpath();
    path.addLineToPoint({6, 1});
    const VLXBezierPath bezier = VLXBezierPath::bezierPathWithCGPath(path);
    const std::vector<VLXValue> boxed = pointsFromBezierPath(bezier);
    const std::vector<VLXPoint> expected{{0, 0}, {1, 5}, {2, -5}, {3, 0}, {4, 4}, {5, 0}, {6, 1}};
    ASSERT_EQ(boxed.size(), expected.size());
    for (std::size_t i = 0; i < boxed.size(); ++i) {
        EXPECT_EQ(vlx_type(boxed[i]), VLXValueTypePoint);
        EXPECT_EQ(vlx_pointValue(boxed[i]), expected[i]);
    }
    std::vector<VLXValue> none;
    getPointsFromBezier(none, VLXPathElement{VLXPathElementType::CloseSubpath, nullptr});
    getPointsFromBezier(none, VLXPathElement{VLXPathElementType::AddLineToPoint, nullptr});
    EXPECT_TRUE(none.empty());

    // Smoothing with granularity 1 just joins those vertices (plus the repeated last point).
    std::vector<VLXPoint> joined = expected;
    joined.push_back(expected.back());
    EXPECT_EQ(pathPoints(vlx_smoothedPathWithGranularity(bezier, 1)), joined);
    EXPECT_EQ(pathPoints(vlx_smoothedPathWithGranularity(bezier, 0)), joined);
    EXPECT_EQ(pathPoints(vlx_smoothedPathWithGranularity(bezier, -5)), joined);
}

TEST(BezierSmoothing, CatmullRomThroughTheData) {
    // Three points or fewer: an unchanged copy, attributes included.
    VLXBezierPath three = polyline({{0, 0}, {1, 5}, {2, 0}});
    three.setLineWidth(3);
    EXPECT_EQ(vlx_smoothedPathWithGranularity(three, 10), three);

    const std::vector<VLXPoint> data{{0, 0}, {1, 3}, {2, -1}, {3, 2}};
    VLXBezierPath four = polyline(data);
    four.setLineWidth(2.5);
    const double dash[] = {3, 1};
    four.setLineDash(dash, 0.5);
    const VLXBezierPath smooth = vlx_smoothedPathWithGranularity(four, 8);
    EXPECT_EQ(smooth.lineWidth(), 2.5);
    EXPECT_EQ(smooth.lineDashPattern(), (std::vector<double>{3, 1}));

    // Move, then per segment 7 interpolated points and the data point, then the last again.
    const std::vector<VLXPoint> out = pathPoints(smooth);
    ASSERT_EQ(out.size(), 1u + 3 * 8 + 1);
    EXPECT_EQ(smooth.CGPath().elementTypes()[0], VLXPathElementType::MoveToPoint);
    EXPECT_EQ(out[0], data[0]);
    EXPECT_EQ(out[8], data[1]);
    EXPECT_EQ(out[16], data[2]);
    EXPECT_EQ(out[24], data[3]);
    EXPECT_EQ(out[25], data[3]);
    // Middle segment at t = ½ (j = 4 of 8): x = 1.5 and
    // y = ½·(2·3 + (−1 − 0)·½ + (0 − 15 − 4 − 2)·¼ + (9 − 0 + 3 + 2)·⅛) = 1.
    EXPECT_EQ(out[12], VLXPointMake(1.5, 1));
    for (const VLXPoint& p : out) {
        EXPECT_GE(p.y, -1);
        EXPECT_LE(p.y, 3);
    }
    for (std::size_t i = 1; i < out.size(); ++i) {
        EXPECT_GE(out[i].x, out[i - 1].x);
    }

    // A step into a plateau would overshoot (½·(20 + 5 − 5 + 1.25) = 10.625 at t = ½): clamped.
    const VLXBezierPath step =
        vlx_smoothedPathWithGranularity(polyline({{0, 0}, {1, 0}, {2, 10}, {3, 10}, {4, 10}}), 4);
    const std::vector<VLXPoint> stepOut = pathPoints(step);
    double top = -1;
    int atTop = 0;
    for (const VLXPoint& p : stepOut) {
        top = std::max(top, p.y);
        atTop += p.y == 10 ? 1 : 0;
    }
    EXPECT_EQ(top, 10);
    EXPECT_GT(atTop, 5);  // 3 data points + repeat, plus clamped interpolations

    // Points that do not move right of the segment's first neighbour are dropped.
    const VLXBezierPath vertical =
        vlx_smoothedPathWithGranularity(polyline({{0, 0}, {0, 1}, {0, 2}, {0, 3}}), 16);
    EXPECT_EQ(vertical.CGPath().elementCount(), 5u);

    // Huge granularities are clamped, so the output stays bounded.
    const VLXBezierPath huge = vlx_smoothedPathWithGranularity(four, INT64_MAX);
    EXPECT_EQ(huge.CGPath().elementCount(),
              static_cast<std::size_t>(3 * VLXSmoothingMaximumGranularity + 2));
}
