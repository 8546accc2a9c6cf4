#include <VelmarCoreUI/Animation/VLXEasing.h>
#include <VelmarCoreUI/Animation/VLXKeyframeAnimationBuilders.h>
#include <VelmarCoreUI/Platform/Layers/VLXKeyframeAnimation.h>
#include <VelmarCoreUI/Platform/Layers/VLXMediaTimingFunction.h>

#include <gtest/gtest.h>

#include <cmath>
#include <set>

namespace {

struct Curve {
    VLXEasing code;
    float x1, y1, x2, y2;
};

// The timing-function table, as published for the easing codes.
const Curve kCurves[] = {
    {4, 0.55f, 0.085f, 0.68f, 0.53f},   {5, 0.25f, 0.46f, 0.45f, 0.94f},
    {6, 0.455f, 0.03f, 0.515f, 0.955f}, {7, 0.55f, 0.055f, 0.675f, 0.19f},
    {8, 0.215f, 0.61f, 0.355f, 1},      {9, 0.645f, 0.045f, 0.355f, 1},
    {10, 0.895f, 0.03f, 0.685f, 0.22f}, {11, 0.165f, 0.84f, 0.44f, 1},
    {12, 0.77f, 0, 0.175f, 1},          {13, 0.755f, 0.05f, 0.855f, 0.06f},
    {14, 0.23f, 1, 0.32f, 1},           {15, 0.86f, 0, 0.07f, 1},
    {16, 0.47f, 0, 0.745f, 0.715f},     {17, 0.39f, 0.575f, 0.565f, 1},
    {18, 0.445f, 0.05f, 0.55f, 0.95f},  {19, 0.95f, 0.05f, 0.795f, 0.035f},
    {20, 0.19f, 1, 0.22f, 1},           {21, 1, 0, 0, 1},
    {22, 0.6f, 0.04f, 0.98f, 0.335f},   {23, 0.075f, 0.82f, 0.165f, 1},
    {24, 0.785f, 0.135f, 0.15f, 0.86f}, {34, 0.4027f, 0, 0.2256f, 1},
};

}  // namespace

TEST(VLXEasing, TimingFunctionsByCode) {
    for (const Curve& c : kCurves) {
        auto f = vlx_functionWithEasing(c.code);
        ASSERT_TRUE(f) << c.code;
        EXPECT_EQ(f, vlx_functionWithEasing(c.code)) << "cached";
        EXPECT_EQ(f->getControlPointAtIndex(1), (VLXPoint{double(c.x1), double(c.y1)})) << c.code;
        EXPECT_EQ(f->getControlPointAtIndex(2), (VLXPoint{double(c.x2), double(c.y2)})) << c.code;
    }
    // Single precision, widened: 0.55 is not stored as the double 0.55.
    EXPECT_EQ(vlx_functionWithEasing(4)->getControlPointAtIndex(1).x, 0.550000011920929);
    int withFunction = 0;
    for (VLXEasing code = -3; code < 40; ++code) {
        withFunction += vlx_functionWithEasing(code) != nullptr;
    }
    EXPECT_EQ(withFunction, 22) << "the table's codes and no others";
}

TEST(VLXEasing, ExactFunctionsAtTheEnds) {
    std::set<VLXEasing> present;
    for (VLXEasing code = -2; code < 40; ++code) {
        if (vlx_animationBlockForEasing(code)) {
            present.insert(code);
        }
    }
    EXPECT_EQ(present.size(), 30u);
    for (VLXEasing code : {0, 27, 28, 29, 30, 35}) {
        EXPECT_FALSE(vlx_animationBlockForEasing(code));
    }
    // Quad … circ: 0 at 0 and 1 at 1, up to rounding.
    for (VLXEasing code = 4; code <= 24; ++code) {
        const VLXEasingFunction f = vlx_animationBlockForEasing(code);
        EXPECT_NEAR(f(0), 0, 1e-12) << code;
        EXPECT_NEAR(f(1), 1, 1e-12) << code;
    }
    // Exact where the formulas would round, and clamped outside 0…1 for the elastic ones.
    struct Point {
        VLXEasing code;
        double t, y;
    };
    const Point kExact[] = {
        {VLXEasingExpoIn, 0, 0},     {VLXEasingExpoOut, 1, 1},     {VLXEasingElasticIn, 0, 0},
        {VLXEasingElasticIn, -3, 0}, {VLXEasingElasticIn, 1, 1},   {VLXEasingElasticIn, 4, 1},
        {VLXEasingElasticOut, 0, 0}, {VLXEasingElasticOut, -3, 0}, {VLXEasingElasticOut, 1, 1},
        {VLXEasingElasticOut, 4, 1}, {VLXEasingBounceOut, 1, 1},   {VLXEasingBounceIn, 0, 0},
        {VLXEasingBounceInOut, 1, 1}};
    for (const Point& p : kExact) {
        EXPECT_EQ(vlx_animationBlockForEasing(p.code)(p.t), p.y) << p.code << " at " << p.t;
    }
    // Known values inside; the bounce's are 2.75² × 0.2² on its first parabola and, on its third,
    // 0.9375 + 2.75² × (0.05 / 2.75)² at 0.05 / 2.75 past the middle.
    const Point kInside[] = {
        {VLXEasingQuadIn, 0.5, 0.25},         {VLXEasingCubicInOut, 0.25, 0.0625},
        {VLXEasingQuartInOut, 0.75, 0.96875}, {VLXEasingSineInOut, 0.5, 0.5},
        {VLXEasingExpoIn, 0.9, 0.5},          {VLXEasingExpoInOut, 0.55, 0.75},
        {VLXEasingBounceOut, 0.2, 0.3025},    {VLXEasingBounceOut, 0.8, 0.94}};
    for (const Point& p : kInside) {
        EXPECT_DOUBLE_EQ(vlx_animationBlockForEasing(p.code)(p.t), p.y) << p.code << " at " << p.t;
    }
    // Elastic-out has crossed 1 at its first peak.
    EXPECT_GT(vlx_animationBlockForEasing(VLXEasingElasticOut)(0.15), 1.0);
    // Code 34 is the smooth-out Bézier.
    EXPECT_EQ(vlx_animationBlockForEasing(34)(0.3), VLXBezierEvaluator(0.3, 0.4027, 0, 0.2256, 1));
    EXPECT_EQ(vlx_animationBlockForEasing(VLXEasingEaseIn)(0.6),
              VLXBezierEvaluator(0.6, 0.42, 0, 1, 1));
}

TEST(VLXEasing, UnitBezierSolver) {
    EXPECT_EQ(zef_bezier(2, 1, 2, 3), 2 * 2 * 2 + 2 * 2 * 2 + 3 * 2);
    EXPECT_EQ(zef_bezier_der(2, 1, 2, 3), 3 * 4 + 2 * 2 * 2 + 3);
    // A straight x mapping is solved at the first test.
    for (double x : {0.0, 0.2, 0.5, 0.77, 1.0}) {
        EXPECT_EQ(zef_xForTime(x, 1.0 / 3, 2.0 / 3), x);
    }
    // Otherwise within the solver's tolerance of 0.001 in x.
    const double t = zef_xForTime(0.3, 0.42, 0.58);
    const double cx = 3 * 0.42, bx = 3 * (0.58 - 0.42) - cx, ax = 1 - cx - bx;
    EXPECT_LT(std::fabs(zef_bezier(t, ax, bx, cx) - 0.3), 0.001);
    EXPECT_EQ(VLXBezierEvaluator(0, 0.42, 0, 0.58, 1), 0.0);
    EXPECT_NEAR(VLXBezierEvaluator(1, 0.42, 0, 0.58, 1), 1.0, 1e-12);
    EXPECT_NEAR(VLXBezierEvaluator(0.5, 0.42, 0, 0.58, 1), 0.5, 1e-3);
    // No guard for odd input: NaN stays NaN, and the loop still ends.
    EXPECT_TRUE(std::isnan(zef_xForTime(std::nan(""), 0.42, 0.58)));
    EXPECT_TRUE(std::isnan(VLXBezierEvaluator(0.5, std::nan(""), 0, 0.58, 1)));
}

TEST(VLXKeyframeBuilders, SampleAHundredAndOnePoints) {
    auto a = vlx_animationWithKeyPath("opacity", 0.0, 100.0, VLXEasingQuadIn);
    ASSERT_TRUE(a);
    EXPECT_EQ(a->fillMode(), VLXFillMode::Backwards);
    EXPECT_EQ(a->duration(), 0) << "left to the caller";
    const auto& values = a->values();
    ASSERT_EQ(values.size(), 101u);
    EXPECT_EQ(values[0].doubleValue(), 0);
    EXPECT_NEAR(values[1].doubleValue(), 100.0 / (101 * 101), 1e-12);
    EXPECT_NEAR(values[100].doubleValue(), 100 * std::pow(100.0 / 101, 2), 1e-9);

    auto p = vlx_animationFromPoint({0, 0}, {101, -202}, 4);
    ASSERT_TRUE(p);
    EXPECT_EQ(p->keyPath(), "position");
    EXPECT_NEAR(p->values()[10].pointValue().x, 101 * std::pow(10.0 / 101, 2), 1e-9);
    EXPECT_NEAR(p->values()[10].pointValue().y, -202 * std::pow(10.0 / 101, 2), 1e-9);

    auto s = vlx_animationFromSize({10, 20}, {30, 40}, VLXEasingQuadOut);
    EXPECT_EQ(s->keyPath(), "bounds");
    EXPECT_EQ(s->values()[0].rectValue(), (VLXRect{{0, 0}, {10, 20}}));
    EXPECT_EQ(s->values()[50].rectValue().origin, (VLXPoint{0, 0}));

    auto r = vlx_animationFromRect({{1, 2}, {3, 4}}, {{5, 6}, {7, 8}}, VLXEasingBounceOut);
    EXPECT_EQ(r->keyPath(), "frame");
    EXPECT_EQ(r->values().size(), 101u);

    auto t = vlx_animationFromTransform(VLXTransform3DIdentity, VLXTransform3DMakeScale(3, 3, 1),
                                        VLXEasingEaseInOut);
    EXPECT_EQ(t->keyPath(), "transform");
    const VLXTransform3D mid = t->values()[50].transform3DValue();
    EXPECT_NEAR(mid.m11, 1 + 2 * VLXBezierEvaluator(50.0 / 101, 0.42, 0, 0.58, 1), 1e-9);
    EXPECT_EQ(mid.m33, 1);

    EXPECT_FALSE(vlx_animationFromColor(VLXColor::redColor(), VLXColor::blueColor(), 4));
    // Codes without an exact function cannot build.
    EXPECT_FALSE(vlx_animationWithKeyPath("opacity", 0.0, 1.0, 0));
    EXPECT_FALSE(vlx_animationWithKeyPath("opacity", 0.0, 1.0, 28));
    EXPECT_FALSE(vlx_animationFromPoint({}, {}, 99));
    EXPECT_FALSE(vlx_animationWithKeyPath("opacity", VLXValue(0), VLXValue(1), nullptr,
                                          VLXKeyframeValueFunction()));

    // The general builder with caller functions.
    std::vector<double> times;
    auto g = vlx_animationWithKeyPath(
        "x", VLXValue("a"), VLXValue("b"),
        [&](double time) {
            times.push_back(time);
            return 2 * time;
        },
        [](const VLXValue& from, const VLXValue&, double e) {
            return VLXValue(from.stringValue() + std::to_string(e > 1));
        });
    ASSERT_EQ(times.size(), 101u);
    EXPECT_EQ(times[0], 0);
    EXPECT_NEAR(times[100], 100.0 / 101, 1e-12);
    EXPECT_EQ(g->values()[0], VLXValue("a0"));
    EXPECT_EQ(g->values()[100], VLXValue("a1"));
}

TEST(VLXKeyframeBuilders, JoiningAnimations) {
    auto first = vlx_animationWithKeyPath("position.y", 0.0, 10.0, VLXEasingQuadIn);
    first->setDuration(0.2);
    first->setCalculationMode(VLXAnimationCalculationMode::Discrete);
    auto second = vlx_animationWithKeyPath("opacity", 10.0, 0.0, VLXEasingQuadOut);
    second->setDuration(0.3);
    auto joined = animationWithAnimations({first, nullptr, second});
    ASSERT_TRUE(joined);
    EXPECT_EQ(joined->keyPath(), "position.y");
    EXPECT_EQ(joined->calculationMode(), VLXAnimationCalculationMode::Discrete);
    EXPECT_DOUBLE_EQ(joined->duration(), 0.5);
    EXPECT_EQ(joined->fillMode(), VLXFillMode::Backwards);
    ASSERT_EQ(joined->values().size(), 202u);
    EXPECT_EQ(joined->values()[101], second->values()[0]);
    EXPECT_FALSE(joined->keyTimes());
    EXPECT_FALSE(animationWithAnimations({}));
    EXPECT_FALSE(animationWithAnimations({nullptr}));
}
