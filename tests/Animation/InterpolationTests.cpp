#include <VelmarCoreUI/Platform/Layers/VLXInterpolation.h>

#include <gtest/gtest.h>

#include <cmath>

#include "AnimationTestSupport.h"

TEST(VLXInterpolation, EveryKindEntryByEntry) {
    VLXValue n = VLXInterpolateValues(VLXValue(10), VLXValue(20.0f), 0.25);
    EXPECT_STREQ(n.objCType(), "d");
    EXPECT_EQ(n.doubleValue(), 12.5);

    VLXValue p = VLXInterpolateValues(VLXValue::valueWithPoint({0, 10}),
                                      VLXValue::valueWithPoint({10, -10}), 0.5);
    EXPECT_EQ(p.pointValue(), (VLXPoint{5, 0}));
    VLXValue s =
        VLXInterpolateValues(VLXValue::valueWithSize({2, 4}), VLXValue::valueWithSize({4, 8}), 0.5);
    EXPECT_EQ(s.sizeValue(), (VLXSize{3, 6}));
    VLXValue r = VLXInterpolateValues(VLXValue::valueWithRect({{0, 0}, {10, 10}}),
                                      VLXValue::valueWithRect({{10, 20}, {30, 40}}), 0.1);
    EXPECT_DOUBLE_EQ(r.rectValue().origin.x, 1);
    EXPECT_DOUBLE_EQ(r.rectValue().origin.y, 2);
    EXPECT_DOUBLE_EQ(r.rectValue().size.width, 12);
    EXPECT_DOUBLE_EQ(r.rectValue().size.height, 13);

    VLXValue a = VLXInterpolateValues(
        VLXValue::valueWithAffineTransform(VLXAffineTransformMakeScale(1, 1)),
        VLXValue::valueWithAffineTransform(VLXAffineTransformMake(3, 2, -2, 5, 10, 20)), 0.5);
    EXPECT_EQ(a.affineTransformValue(), VLXAffineTransformMake(2, 1, -1, 3, 5, 10));

    VLXTransform3D to = VLXTransform3DMakeScale(3, 5, 7);
    to.m34 = -0.5;
    to.m41 = 8;
    VLXValue t = VLXInterpolateValues(VLXValue::valueWithTransform3D(VLXTransform3DIdentity),
                                      VLXValue::valueWithTransform3D(to), 0.5);
    const VLXTransform3D m = t.transform3DValue();
    EXPECT_EQ(m.m11, 2);
    EXPECT_EQ(m.m22, 3);
    EXPECT_EQ(m.m33, 4);
    EXPECT_EQ(m.m34, -0.25);
    EXPECT_EQ(m.m41, 4);
    EXPECT_EQ(m.m44, 1);

    VLXValue c = VLXInterpolateValues(VLXValue(VLXColor::colorWithRed(1, 0, 0, 1)),
                                      VLXValue(VLXColor::colorWithRed(0, 0, 1, 0)), 0.5);
    ASSERT_TRUE(c.colorValue());
    EXPECT_EQ(*c.colorValue(), VLXColor::colorWithRed(0.5, 0, 0.5, 0.5));
    VLXValue w = VLXInterpolateValues(VLXValue(VLXColor::colorWithWhite(0, 1)),
                                      VLXValue(VLXColor::colorWithWhite(1, 1)), 0.25);
    EXPECT_EQ(*w.colorValue(), VLXColor::colorWithWhite(0.25, 1));
}

TEST(VLXInterpolation, ExactEndsExtrapolationAndOddInput) {
    // 0.1 + (0.7 − 0.1) × 1 is not 0.7 in doubles; the end must be.
    EXPECT_EQ(VLXInterpolateValues(VLXValue(0.1), VLXValue(0.7), 1).doubleValue(), 0.7);
    EXPECT_EQ(VLXInterpolateValues(VLXValue(0.1), VLXValue(0.7), 0).doubleValue(), 0.1);
    EXPECT_DOUBLE_EQ(VLXInterpolateValues(VLXValue(0), VLXValue(10), 1.5).doubleValue(), 15);
    EXPECT_DOUBLE_EQ(VLXInterpolateValues(VLXValue(0), VLXValue(10), -0.5).doubleValue(), -5);
    // Equal infinite entries stay put rather than becoming NaN.
    EXPECT_EQ(VLXInterpolateValues(VLXValue(kInf), VLXValue(kInf), 0.5).doubleValue(), kInf);
    EXPECT_EQ(VLXInterpolateDouble(kInf, kInf, 0.3), kInf);

    const VLXValue one(1.0);
    const VLXValue point = VLXValue::valueWithPoint({1, 2});
    // A nil end: the other end, whatever the fraction.
    EXPECT_EQ(VLXInterpolateValues(VLXValue(), one, 0.2), one);
    EXPECT_EQ(VLXInterpolateValues(point, VLXValue(), 0.9), point);
    EXPECT_TRUE(VLXInterpolateValues(VLXValue(), VLXValue(), 0.5).isNil());
    // Different kinds and opaque kinds step half way.
    EXPECT_EQ(VLXInterpolateValues(one, point, 0.49), one);
    EXPECT_EQ(VLXInterpolateValues(one, point, 0.5), point);
    EXPECT_EQ(VLXInterpolateValues(VLXValue("a"), VLXValue("b"), 0.7), VLXValue("b"));
    EXPECT_EQ(VLXInterpolateValues(VLXValue(false), VLXValue(true), 0.3), VLXValue(false));
    EXPECT_EQ(VLXInterpolationKindOf(VLXValue(true)), VLXInterpolationKind::None);
    EXPECT_EQ(VLXInterpolationKindOf(VLXValue::valueWithRange({1, 2})), VLXInterpolationKind::None);
    const VLXValue grey(VLXColor::colorWithWhite(0.5, 1));
    const VLXValue red(VLXColor::colorWithRed(1, 0, 0, 1));
    EXPECT_EQ(VLXInterpolateValues(grey, red, 0.2), grey) << "colour models differ";
    // Fractions that are not numbers.
    EXPECT_EQ(VLXInterpolateValues(VLXValue(2), VLXValue(4), kNaN).doubleValue(), 2);
    EXPECT_EQ(VLXInterpolateValues(VLXValue(2), VLXValue(4), kInf).doubleValue(), 4);
    EXPECT_EQ(VLXInterpolateValues(VLXValue(2), VLXValue(4), -kInf).doubleValue(), 2);
    // NaN entries propagate only where they are.
    VLXValue p = VLXInterpolateValues(VLXValue::valueWithPoint({kNaN, 0}),
                                      VLXValue::valueWithPoint({1, 10}), 0.5);
    EXPECT_TRUE(std::isnan(p.pointValue().x));
    EXPECT_EQ(p.pointValue().y, 5);
}
