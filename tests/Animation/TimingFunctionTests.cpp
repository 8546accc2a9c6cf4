#include <VelmarCoreUI/Platform/Layers/VLXMediaTimingFunction.h>

#include <gtest/gtest.h>

#include <cmath>

#include "AnimationTestSupport.h"

namespace {

struct Named {
    VLXMediaTimingFunctionName name;
    float x1, y1, x2, y2;
};

const Named kNamed[] = {
    {VLXMediaTimingFunctionName::Linear, 0, 0, 1, 1},
    {VLXMediaTimingFunctionName::EaseIn, 0.42f, 0, 1, 1},
    {VLXMediaTimingFunctionName::EaseOut, 0, 0, 0.58f, 1},
    {VLXMediaTimingFunctionName::EaseInEaseOut, 0.42f, 0, 0.58f, 1},
    {VLXMediaTimingFunctionName::Default, 0.25f, 0.1f, 0.25f, 1},
};

// The curve's point at parameter t, straight from the Bernstein form.
VLXPoint bezierPoint(const VLXMediaTimingFunction& f, double t) {
    const VLXPoint p1 = f.getControlPointAtIndex(1);
    const VLXPoint p2 = f.getControlPointAtIndex(2);
    const double u = 1 - t;
    return {3 * u * u * t * p1.x + 3 * u * t * t * p2.x + t * t * t,
            3 * u * u * t * p1.y + 3 * u * t * t * p2.y + t * t * t};
}

}  // namespace

TEST(VLXMediaTimingFunction, NamedCurvesHaveThePlatformControlPoints) {
    for (const Named& n : kNamed) {
        auto f = VLXMediaTimingFunction::functionWithName(n.name);
        ASSERT_TRUE(f);
        EXPECT_EQ(f, VLXMediaTimingFunction::functionWithName(n.name)) << "one shared instance";
        EXPECT_EQ(f->getControlPointAtIndex(1), (VLXPoint{double(n.x1), double(n.y1)}));
        EXPECT_EQ(f->getControlPointAtIndex(2), (VLXPoint{double(n.x2), double(n.y2)}));
        EXPECT_EQ(f->getControlPointAtIndex(4), (VLXPoint{0, 0})) << "out of range";
    }
    // Single precision is kept: 0.1 reads back as the float nearest to it.
    auto f = VLXMediaTimingFunction::functionWithControlPoints(0.1f, 0.2f, 0.3f, 0.4f);
    EXPECT_EQ(f->getControlPointAtIndex(1).x, double(0.1f));
    EXPECT_NE(f->getControlPointAtIndex(1).x, 0.1);
    EXPECT_NE(f, VLXMediaTimingFunction::functionWithControlPoints(0.1f, 0.2f, 0.3f, 0.4f));
}

TEST(VLXMediaTimingFunction, SolvesTheCurveForX) {
    // Every point of each named curve is found again from its x, and y never falls.
    for (const Named& n : kNamed) {
        auto f = VLXMediaTimingFunction::functionWithName(n.name);
        double previous = 0;
        for (int i = 1; i < 100; ++i) {
            const double t = i / 100.0;
            const VLXPoint p = bezierPoint(*f, t);
            EXPECT_NEAR(f->y(p.x), p.y, 1e-6) << "t = " << t;
            const double y = f->y(i / 100.0);
            EXPECT_GE(y, previous);
            previous = y;
        }
    }
    // Ease-out is ahead of linear, ease-in behind.
    EXPECT_GT(VLXMediaTimingFunction::functionWithName(VLXMediaTimingFunctionName::EaseOut)->y(0.3),
              0.3);
    EXPECT_LT(VLXMediaTimingFunction::functionWithName(VLXMediaTimingFunctionName::EaseIn)->y(0.3),
              0.3);
    // Steep curves that Newton's method alone handles badly.
    auto steep = VLXMediaTimingFunction::functionWithControlPoints(1, 0, 0, 1);
    for (int i = 1; i < 50; ++i) {
        const VLXPoint p = bezierPoint(*steep, i / 50.0);
        EXPECT_NEAR(steep->y(p.x), p.y, 1e-6);
    }
}

TEST(VLXMediaTimingFunction, OddInputGivesDefinedCurves) {
    auto f = VLXMediaTimingFunction::functionWithName(VLXMediaTimingFunctionName::Default);
    EXPECT_EQ(f->y(kNaN), 0.0);
    EXPECT_EQ(f->y(-kInf), 0.0);
    EXPECT_EQ(f->y(-0.5), 0.0);
    EXPECT_EQ(f->y(kInf), 1.0);
    EXPECT_EQ(f->y(7), 1.0);

    auto broken = VLXMediaTimingFunction::functionWithControlPoints(float(kNaN), 0, 1, float(kInf));
    EXPECT_TRUE(std::isnan(broken->getControlPointAtIndex(1).x)) << "stored as given";
    EXPECT_NEAR(broken->y(0.3), 0.3, 1e-12) << "evaluates as linear";

    // x control points outside the unit square are clamped for solving: still a function.
    auto wild = VLXMediaTimingFunction::functionWithControlPoints(-3, 0, 5, 1);
    double previous = 0;
    for (int i = 0; i <= 100; ++i) {
        const double y = wild->y(i / 100.0);
        ASSERT_TRUE(std::isfinite(y));
        EXPECT_GE(y, previous - 1e-9);
        previous = y;
    }
    // Overshooting y is allowed.
    auto overshoot = VLXMediaTimingFunction::functionWithControlPoints(0.3f, 1.8f, 0.6f, 1.0f);
    double highest = 0;
    for (int i = 0; i <= 100; ++i) {
        highest = std::max(highest, overshoot->y(i / 100.0));
    }
    EXPECT_GT(highest, 1.0);
    EXPECT_EQ(overshoot->y(1), 1.0);
}
