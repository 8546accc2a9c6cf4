#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <sstream>
#include <vector>

#include <VelmarCoreUI/Platform/Graphics/VLXPath.h>

namespace {

using Type = VLXPathElementType;
constexpr double kPi = std::numbers::pi;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

std::vector<Type> types(const VLXPath& path) {
    return {path.elementTypes().begin(), path.elementTypes().end()};
}

// Point of a cubic at parameter t.
VLXPoint cubicAt(VLXPoint p0, VLXPoint p1, VLXPoint p2, VLXPoint p3, double t) {
    const double u = 1 - t;
    return {u * u * u * p0.x + 3 * u * u * t * p1.x + 3 * u * t * t * p2.x + t * t * t * p3.x,
            u * u * u * p0.y + 3 * u * u * t * p1.y + 3 * u * t * t * p2.y + t * t * t * p3.y};
}

// Every cubic of `path` stays within `tolerance` of the circle (center, radius) at several
// parameters: checks both the end points and the control-point distance of arc pieces.
void expectOnCircle(const VLXPath& path, VLXPoint center, double radius, double tolerance) {
    VLXPoint current{};
    path.apply([&](const VLXPathElement& e) {
        if (e.type == Type::AddCurveToPoint) {
            for (double t = 0; t <= 1; t += 0.125) {
                const VLXPoint p = cubicAt(current, e.points[0], e.points[1], e.points[2], t);
                EXPECT_NEAR(std::hypot(p.x - center.x, p.y - center.y), radius, tolerance);
            }
        }
        if (e.pointCount() > 0) {
            current = e.points[e.pointCount() - 1];
        }
    });
}

}  // namespace

TEST(Path, RectEllipseAndRoundedRectElements) {
    // A negative size is standardised: the rectangle starts at its top-left corner.
    const VLXPath rect = VLXPath::pathWithRect(VLXRectMake(10, 20, -10, 5));
    EXPECT_EQ(types(rect),
              (std::vector<Type>{Type::MoveToPoint, Type::AddLineToPoint, Type::AddLineToPoint,
                                 Type::AddLineToPoint, Type::CloseSubpath}));
    EXPECT_EQ(std::vector<VLXPoint>(rect.points().begin(), rect.points().end()),
              (std::vector<VLXPoint>{{0, 20}, {10, 20}, {10, 25}, {0, 25}}));
    EXPECT_TRUE(VLXPath::pathWithRect(VLXRectNull).isEmpty());

    const VLXPath oval = VLXPath::pathWithEllipseInRect(VLXRectMake(0, 0, 20, 20));
    EXPECT_EQ(types(oval), (std::vector<Type>{Type::MoveToPoint, Type::AddCurveToPoint,
                                              Type::AddCurveToPoint, Type::AddCurveToPoint,
                                              Type::AddCurveToPoint, Type::CloseSubpath}));
    // Starts at (maxX, midY) and turns towards +y first; quarter-circle kappa 0.5522847498.
    EXPECT_EQ(oval.points()[0], VLXPointMake(20, 10));
    EXPECT_NEAR(oval.points()[1].y, 10 + 10 * 0.5522847498, 1e-9);
    EXPECT_EQ(oval.points()[3], VLXPointMake(10, 20));
    EXPECT_EQ(oval.points()[12], VLXPointMake(20, 10));
    // The classic approximation stays within 0.03 % of the radius.
    expectOnCircle(oval, {10, 10}, 10, 10 * 3e-4);

    // Corners clamped to half the sides: 100 × 10 with corner 50 × 50 → 50 × 5 corners.
    const VLXPath rounded = VLXPath::pathWithRoundedRect(VLXRectMake(0, 0, 100, 10), 50, 50);
    EXPECT_EQ(rounded.elementCount(), 10u);
    EXPECT_EQ(rounded.boundingBox(), VLXRectMake(0, 0, 100, 10));
    EXPECT_TRUE(rounded.containsPoint({50, 5}));
    EXPECT_FALSE(rounded.containsPoint({1, 1}));  // cut off by the corner ellipse
    // Zero, negative or NaN corners: a plain rectangle.
    EXPECT_EQ(VLXPath::pathWithRoundedRect(VLXRectMake(0, 0, 4, 4), 0, 2),
              VLXPath::pathWithRect(VLXRectMake(0, 0, 4, 4)));
    EXPECT_EQ(VLXPath::pathWithRoundedRect(VLXRectMake(0, 0, 4, 4), kNaN, -1),
              VLXPath::pathWithRect(VLXRectMake(0, 0, 4, 4)));
}

TEST(Path, ArcsAreQuarterTurnCubics) {
    const VLXPoint c{100, 50};
    // Three quarters of a turn: a move to the start and three cubics, all on the circle.
    VLXPath threeQuarters;
    threeQuarters.addArc(c, 10, 0, 1.5 * kPi, false);
    EXPECT_EQ(types(threeQuarters),
              (std::vector<Type>{Type::MoveToPoint, Type::AddCurveToPoint, Type::AddCurveToPoint,
                                 Type::AddCurveToPoint}));
    EXPECT_EQ(threeQuarters.points()[0], VLXPointMake(110, 50));
    // Increasing angle goes towards +y first.
    EXPECT_NEAR(threeQuarters.points()[3].x, 100, 1e-12);
    EXPECT_NEAR(threeQuarters.points()[3].y, 60, 1e-12);
    expectOnCircle(threeQuarters, c, 10, 3e-3);

    // clockwise = true walks towards decreasing angles: 0 → π/2 is three quarters through −y.
    VLXPath decreasing;
    decreasing.addArc(c, 10, 0, kPi / 2, true);
    EXPECT_EQ(decreasing.elementCount(), 4u);
    EXPECT_NEAR(decreasing.points()[3].y, 40, 1e-12);
    EXPECT_NEAR(decreasing.currentPoint().y, 60, 1e-12);

    // A full turn (and anything beyond) is four cubics ending exactly where it began.
    VLXPath full;
    full.addArc(c, 10, 0.3, 0.3 + 7 * kPi, false);
    EXPECT_EQ(full.elementCount(), 5u);
    EXPECT_EQ(full.currentPoint(), full.points()[0]);

    // A partial piece uses 4/3·tan(θ/4): a sixth of a turn is one cubic hugging the circle.
    VLXPath sixth;
    sixth.addArc({0, 0}, 100, 0, kPi / 3, false);
    EXPECT_EQ(sixth.elementCount(), 2u);
    EXPECT_NEAR(sixth.points()[1].y, 100 * 4.0 / 3.0 * std::tan(kPi / 12), 1e-9);
    expectOnCircle(sixth, {0, 0}, 100, 100 * 3e-5);  // error grows as θ⁶: ~2.4e-5 at 60°

    // A line joins the current point to the arc's start.
    VLXPath joined;
    joined.moveToPoint({0, 0});
    joined.addArc(c, 10, kPi, kPi / 2, true);
    EXPECT_EQ(types(joined),
              (std::vector<Type>{Type::MoveToPoint, Type::AddLineToPoint, Type::AddCurveToPoint}));
    EXPECT_EQ(joined.points()[1], VLXPointMake(90, 50));
}

TEST(Path, DegenerateArcsAndOddInput) {
    VLXPath path;
    path.addArc({1, 1}, -1, 0, 1, false);
    path.addArc({1, 1}, 5, kNaN, 1, false);
    path.addArc({1, 1}, 5, 0, kInf, false);
    path.addArc({1, 1}, kInf, 0, 1, false);
    EXPECT_TRUE(path.isEmpty());
    VLXPath hugeCorner;  // the corner's centre overflows: a line to the tangent point, no curve
    hugeCorner.moveToPoint({0, 0});
    hugeCorner.addArcToPoint({10, 0}, {10, 10}, 1.7e308);
    EXPECT_EQ(hugeCorner.elementCount(), 2u);
    EXPECT_EQ(hugeCorner.elementTypes()[1], VLXPathElementType::AddLineToPoint);
    VLXPath hugeAngles;  // the difference overflows to −∞: one full turn
    hugeAngles.addArc({0, 0}, 5, 1e308, -1e308, false);
    EXPECT_EQ(hugeAngles.elementCount(), 5u);
    const VLXPath hugeCircle =
        VLXPath::pathWithEllipseInRect(VLXRectMake(-1e300, -1e300, 2e300, 2e300));
    EXPECT_TRUE(hugeCircle.containsPoint({0, 0}));
    EXPECT_TRUE(hugeCircle.containsPoint({0, 0.99e300}));
    EXPECT_FALSE(hugeCircle.containsPoint({0.9e300, 0.9e300}));
    path.addArc({1, 1}, 0, 0, 1, false);  // zero radius: the centre
    EXPECT_EQ(path.elementCount(), 1u);
    EXPECT_EQ(path.currentPoint(), VLXPointMake(1, 1));
    path.addArc({3, 3}, 2, 1, 1, false);  // equal angles: only the joining line
    EXPECT_EQ(types(path), (std::vector<Type>{Type::MoveToPoint, Type::AddLineToPoint}));

    // A line without a current point starts a subpath; double closes collapse; after a close
    // the current point is the subpath's start.
    VLXPath odd;
    odd.closeSubpath();
    EXPECT_TRUE(odd.isEmpty());
    odd.addLineToPoint({4, 5});
    odd.addLineToPoint({8, 5});
    odd.closeSubpath();
    odd.closeSubpath();
    EXPECT_EQ(types(odd), (std::vector<Type>{Type::MoveToPoint, Type::AddLineToPoint,
                                             Type::AddLineToPoint, Type::CloseSubpath}));
    EXPECT_EQ(odd.currentPoint(), VLXPointMake(4, 5));

    // Rounded corner between two legs: tangent points at distance r from the corner.
    VLXPath corner;
    corner.moveToPoint({0, 0});
    corner.addArcToPoint({10, 0}, {10, 10}, 2);
    EXPECT_EQ(corner.points()[1], VLXPointMake(8, 0));
    EXPECT_NEAR(corner.currentPoint().x, 10, 1e-12);
    EXPECT_NEAR(corner.currentPoint().y, 2, 1e-12);
    expectOnCircle(corner, {8, 2}, 2, 1e-3);
    corner.addArcToPoint({10, 20}, {10, 30}, 2);  // collinear: a line
    EXPECT_EQ(corner.currentPoint(), VLXPointMake(10, 20));

    // Non-finite points are kept, skipped by bounds, and compare equal to themselves.
    VLXPath nanPath;
    nanPath.moveToPoint({0, 0});
    nanPath.addLineToPoint({kNaN, 3});
    nanPath.addLineToPoint({2, kInf});
    nanPath.addLineToPoint({5, 1});
    nanPath.addLineToPoint({kInf, 0});  // stored as given, not turned into NaN
    EXPECT_EQ(nanPath.currentPoint(), VLXPointMake(kInf, 0));
    nanPath.addLineToPoint({5, 1});
    EXPECT_EQ(nanPath.boundingBox(), VLXRectMake(0, 0, 5, 1));
    EXPECT_EQ(nanPath.pathBoundingBox(), VLXRectMake(0, 0, 5, 1));
    EXPECT_EQ(nanPath, VLXPath(nanPath));
    EXPECT_FALSE(nanPath.containsPoint({1, 0.1}));
    EXPECT_TRUE(VLXPath().boundingBox().isNull());

    std::ostringstream os;
    os << VLXPath::pathWithRect(VLXRectMake(0, 0, 10, 0.5));
    EXPECT_EQ(os.str(), "VLXPath(move 0 0; line 10 0; line 10 0.5; line 0 0.5; close)");
}

TEST(Path, BoundingBoxesAndTransforms) {
    // One cubic hump: its top is at t = ½, y = (3·10 + 3·10)/8 = 7.5, below the controls.
    VLXPath hump;
    hump.moveToPoint({0, 0});
    hump.addCurveToPoint({0, 10}, {10, 10}, {10, 0});
    EXPECT_EQ(hump.boundingBox(), VLXRectMake(0, 0, 10, 10));
    const VLXRect tight = hump.pathBoundingBox();
    EXPECT_NEAR(tight.maxY(), 7.5, 1e-12);
    EXPECT_EQ(tight.width(), 10);
    // A quadratic: top at t = ½, y = 10/2.
    VLXPath quad;
    quad.moveToPoint({0, 0});
    quad.addQuadCurveToPoint({5, 10}, {10, 0});
    EXPECT_NEAR(quad.pathBoundingBox().maxY(), 5, 1e-12);
    EXPECT_EQ(quad.boundingBox().maxY(), 10);

    // A quarter arc centred on the bottom: its controls stick out, the curve barely does.
    VLXPath arc;
    arc.addArc({0, 0}, 10, kPi / 4, 3 * kPi / 4, false);
    EXPECT_GT(arc.boundingBox().maxY(), 10.9);  // 10·(sin 45° + 0.552·cos 45°)
    EXPECT_NEAR(arc.pathBoundingBox().maxY(), 10, 10 * 3e-4);
    const VLXRect circle =
        VLXPath::pathWithEllipseInRect(VLXRectMake(40, 40, 20, 20)).pathBoundingBox();
    EXPECT_NEAR(circle.minX(), 40, 1e-12);
    EXPECT_NEAR(circle.maxY(), 60, 1e-12);

    const VLXAffineTransform move = VLXAffineTransformMakeTranslation(5, -5);
    const VLXPath moved = hump.copyByTransformingPath(move);
    EXPECT_EQ(moved.boundingBox(), VLXRectMake(5, -5, 10, 10));
    VLXPath inPlace = hump;
    inPlace.applyTransform(move);
    EXPECT_EQ(inPlace, moved);
    VLXPath added;
    added.addPath(hump, move);
    EXPECT_EQ(added, moved);
    VLXPath viaAdd;
    viaAdd.moveToPoint({0, 0}, move);
    viaAdd.addCurveToPoint({0, 10}, {10, 10}, {10, 0}, move);
    EXPECT_EQ(viaAdd, moved);
}

TEST(Path, ContainsPointWithBothFillRules) {
    // Pentagram drawn in one stroke: the centre pentagon is wound twice.
    VLXPath star;
    for (int i = 0; i < 5; ++i) {
        const double a = -kPi / 2 + i * 4 * kPi / 5;
        const VLXPoint p{100 * std::cos(a), 100 * std::sin(a)};
        i == 0 ? star.moveToPoint(p) : star.addLineToPoint(p);
    }
    star.closeSubpath();
    EXPECT_TRUE(star.containsPoint({0, 0}, VLXPathFillRule::Winding));
    EXPECT_FALSE(star.containsPoint({0, 0}, VLXPathFillRule::EvenOdd));
    EXPECT_TRUE(star.containsPoint({0, -80}, VLXPathFillRule::Winding));  // inside a point
    EXPECT_TRUE(star.containsPoint({0, -80}, VLXPathFillRule::EvenOdd));
    EXPECT_FALSE(star.containsPoint({0, -101}));

    // Nested rectangles turning the same way wind twice; turning opposite ways cancel.
    VLXPath same = VLXPath::pathWithRect(VLXRectMake(0, 0, 100, 100));
    same.addRect(VLXRectMake(25, 25, 50, 50));
    EXPECT_TRUE(same.containsPoint({50, 50}, VLXPathFillRule::Winding));
    EXPECT_FALSE(same.containsPoint({50, 50}, VLXPathFillRule::EvenOdd));
    EXPECT_TRUE(same.containsPoint({10, 50}, VLXPathFillRule::EvenOdd));
    VLXPath hole = VLXPath::pathWithRect(VLXRectMake(0, 0, 100, 100));
    hole.moveToPoint({25, 25});
    hole.addLineToPoint({25, 75});
    hole.addLineToPoint({75, 75});
    hole.addLineToPoint({75, 25});
    EXPECT_FALSE(hole.containsPoint({50, 50}, VLXPathFillRule::Winding));  // open, closed by fill
    EXPECT_TRUE(hole.containsPoint({10, 10}, VLXPathFillRule::Winding));

    // Curves are followed closely: just inside and just outside a circle of radius 100.
    const VLXPath circle = VLXPath::pathWithEllipseInRect(VLXRectMake(-100, -100, 200, 200));
    for (int i = 0; i < 16; ++i) {
        const double a = i * kPi / 8 + 0.1;
        EXPECT_TRUE(circle.containsPoint({99.9 * std::cos(a), 99.9 * std::sin(a)}));
        EXPECT_FALSE(circle.containsPoint({100.1 * std::cos(a), 100.1 * std::sin(a)}));
    }
    // The transform applies to the path, not the point.
    EXPECT_TRUE(circle.containsPoint({250, 0}, VLXPathFillRule::Winding,
                                     VLXAffineTransformMakeTranslation(200, 0)));
    EXPECT_FALSE(circle.containsPoint({kNaN, 0}));
    EXPECT_FALSE(circle.containsPoint({kInf, 0}));

    // A subpath with a non-finite point is left out; the others still count.
    VLXPath mixed = VLXPath::pathWithRect(VLXRectMake(0, 0, 10, 10));
    mixed.moveToPoint({20, 0});
    mixed.addLineToPoint({30, kNaN});
    mixed.addLineToPoint({20, 10});
    EXPECT_TRUE(mixed.containsPoint({5, 5}));
    EXPECT_FALSE(mixed.containsPoint({21, 5}));
}

TEST(Path, BoundingBoxesOfHugeCoordinatesStayFinite) {
    constexpr double kMax = std::numeric_limits<double>::max();
    VLXPath line;
    line.moveToPoint({-1e308, -1e308});
    line.addLineToPoint({1e308, 1e308});
    for (const VLXRect& box : {line.boundingBox(), line.pathBoundingBox()}) {
        EXPECT_EQ(box.origin.x, -1e308);
        EXPECT_EQ(box.size.width, kMax);
        EXPECT_EQ(box.size.height, kMax);
    }
    // Curve extrema of huge controls: the hump's top is found, not skipped, and stays finite.
    VLXPath hump;
    hump.moveToPoint({0, 0});
    hump.addCurveToPoint({0, 1e308}, {1e308, 1e308}, {1e308, 0});
    const VLXRect tight = hump.pathBoundingBox();
    EXPECT_TRUE(std::isfinite(tight.size.height));
    EXPECT_NEAR(tight.maxY() / 1e308, 0.75, 1e-12);
    EXPECT_EQ(tight.minX(), 0);
    VLXPath quad;
    quad.moveToPoint({-kMax, 0});
    quad.addQuadCurveToPoint({0, kMax}, {kMax, 0});
    const VLXRect q = quad.pathBoundingBox();
    EXPECT_NEAR(q.maxY() / kMax, 0.5, 1e-12);
    EXPECT_EQ(q.size.width, kMax);
}
