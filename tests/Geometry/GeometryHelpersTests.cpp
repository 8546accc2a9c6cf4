#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <sstream>

#include <VelmarCoreUI/Platform/Primitives/VLXAffineTransform.h>
#include <VelmarCoreUI/Platform/Primitives/VLXGeometry.h>
#include <VelmarCoreUI/Platform/Primitives/VLXTransform3D.h>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

void expectNear(const VLXAffineTransform& a, const VLXAffineTransform& b) {
    EXPECT_NEAR(a.a, b.a, 1e-12);
    EXPECT_NEAR(a.b, b.b, 1e-12);
    EXPECT_NEAR(a.c, b.c, 1e-12);
    EXPECT_NEAR(a.d, b.d, 1e-12);
    EXPECT_NEAR(a.tx, b.tx, 1e-12);
    EXPECT_NEAR(a.ty, b.ty, 1e-12);
}

}  // namespace

TEST(GeometryHelpers, AccessorsStandardiseNegativeSizes) {
    const VLXRect r = VLXRectMake(10, 20, -4, -6);
    EXPECT_EQ(r.minX(), 6);
    EXPECT_EQ(r.maxX(), 10);
    EXPECT_EQ(r.midX(), 8);
    EXPECT_EQ(r.minY(), 14);
    EXPECT_EQ(r.maxY(), 20);
    EXPECT_EQ(r.width(), 4);
    EXPECT_EQ(r.height(), 6);
    EXPECT_EQ(VLXRectStandardize(r), VLXRectMake(6, 14, 4, 6));
    EXPECT_TRUE(VLXRectEqualToRect(r, VLXRectMake(6, 14, 4, 6)));
    EXPECT_FALSE(r == VLXRectMake(6, 14, 4, 6));  // `==` compares the stored fields
}

TEST(GeometryHelpers, NullInfiniteAndEmpty) {
    EXPECT_TRUE(VLXRectNull.isNull());
    EXPECT_TRUE(VLXRectNull.isEmpty());
    EXPECT_TRUE(VLXRectMake(1, 1, 0, 5).isEmpty());
    EXPECT_FALSE(VLXRectMake(1, 1, -1, 5).isEmpty());
    EXPECT_TRUE(VLXRectInfinite.isInfinite());
    EXPECT_TRUE(std::isfinite(VLXRectInfinite.maxX()));
    EXPECT_EQ(VLXRectStandardize(VLXRectNull), VLXRectNull);
    EXPECT_TRUE(VLXRectEqualToRect(VLXRectNull, VLXRectMake(INFINITY, 0, 3, 3)));
    // NaN never compares equal and never counts as inside.
    const VLXRect nan = VLXRectMake(kNaN, 0, 10, 10);
    EXPECT_FALSE(VLXRectEqualToRect(nan, nan));
    EXPECT_FALSE(VLXRectContainsPoint(nan, {1, 1}));
    EXPECT_FALSE(VLXRectContainsPoint(VLXRectMake(0, 0, 10, 10), {kNaN, 1}));
}

TEST(GeometryHelpers, ContainmentIsHalfOpen) {
    const VLXRect r = VLXRectMake(0, 0, 10, 10);
    EXPECT_TRUE(VLXRectContainsPoint(r, {0, 0}));
    EXPECT_TRUE(VLXRectContainsPoint(r, {9.999, 9.999}));
    EXPECT_FALSE(VLXRectContainsPoint(r, {10, 5}));
    EXPECT_FALSE(VLXRectContainsPoint(r, {5, 10}));
    EXPECT_TRUE(VLXRectContainsPoint(VLXRectMake(10, 10, -10, -10), {0, 0}));
    EXPECT_FALSE(VLXRectContainsPoint(VLXRectMake(0, 0, 0, 10), {0, 5}));

    EXPECT_TRUE(VLXRectContainsRect(r, r));
    EXPECT_TRUE(VLXRectContainsRect(r, VLXRectMake(10, 10, -5, -5)));
    EXPECT_FALSE(VLXRectContainsRect(r, VLXRectMake(5, 5, 6, 1)));
    EXPECT_TRUE(VLXRectContainsRect(r, VLXRectNull));
    EXPECT_FALSE(VLXRectContainsRect(VLXRectNull, r));
}

TEST(GeometryHelpers, IntersectionAndUnion) {
    const VLXRect a = VLXRectMake(0, 0, 10, 10);
    EXPECT_EQ(VLXRectIntersection(a, VLXRectMake(5, -5, 10, 10)), VLXRectMake(5, 0, 5, 5));
    EXPECT_TRUE(VLXRectIntersectsRect(a, VLXRectMake(5, -5, 10, 10)));
    EXPECT_TRUE(VLXRectIntersection(a, VLXRectMake(11, 0, 1, 1)).isNull());
    EXPECT_FALSE(VLXRectIntersectsRect(a, VLXRectMake(11, 0, 1, 1)));
    // Touching edges share a line, not an area.
    EXPECT_EQ(VLXRectIntersection(a, VLXRectMake(10, 0, 5, 5)), VLXRectMake(10, 0, 0, 5));
    EXPECT_FALSE(VLXRectIntersectsRect(a, VLXRectMake(10, 0, 5, 5)));
    EXPECT_TRUE(VLXRectIntersection(a, VLXRectNull).isNull());
    EXPECT_TRUE(VLXRectIntersection(a, VLXRectMake(kNaN, 0, 1, 1)).isNull());

    EXPECT_EQ(VLXRectUnion(a, VLXRectMake(20, 30, -5, -5)), VLXRectMake(0, 0, 20, 30));
    EXPECT_EQ(VLXRectUnion(VLXRectNull, VLXRectMake(3, 3, -1, 1)), VLXRectMake(2, 3, 1, 1));
    EXPECT_EQ(VLXRectUnion(a, VLXRectNull), a);
    EXPECT_TRUE(VLXRectUnion(VLXRectNull, VLXRectNull).isNull());
    // An empty but placed rectangle still widens the union.
    EXPECT_EQ(VLXRectUnion(a, VLXRectMake(20, 0, 0, 0)), VLXRectMake(0, 0, 20, 10));
}

TEST(GeometryHelpers, DerivedRectangles) {
    EXPECT_EQ(VLXRectInset(VLXRectMake(10, 10, -10, 20), 2, 3), VLXRectMake(2, 13, 6, 14));
    EXPECT_EQ(VLXRectInset(VLXRectMake(0, 0, 10, 10), -1, -1), VLXRectMake(-1, -1, 12, 12));
    EXPECT_TRUE(VLXRectInset(VLXRectMake(0, 0, 10, 10), 6, 0).isNull());
    EXPECT_EQ(VLXRectOffset(VLXRectMake(5, 5, -5, 5), 1, 2), VLXRectMake(1, 7, 5, 5));
    EXPECT_TRUE(VLXRectOffset(VLXRectNull, 1, 1).isNull());
    EXPECT_EQ(VLXRectIntegral(VLXRectMake(0.5, -0.5, 1, 1.2)), VLXRectMake(0, -1, 2, 2));
    EXPECT_TRUE(VLXRectIntegral(VLXRectInfinite).isInfinite());

    VLXRect slice;
    VLXRect remainder;
    VLXRectDivide(VLXRectMake(0, 0, 10, 4), slice, remainder, 3, VLXRectEdgeMaxX);
    EXPECT_EQ(slice, VLXRectMake(7, 0, 3, 4));
    EXPECT_EQ(remainder, VLXRectMake(0, 0, 7, 4));
    VLXRectDivide(VLXRectMake(0, 0, 10, 4), slice, remainder, 99, VLXRectEdgeMinY);
    EXPECT_EQ(slice, VLXRectMake(0, 0, 10, 4));
    EXPECT_EQ(remainder, VLXRectMake(0, 4, 10, 0));
    VLXRectDivide(VLXRectMake(0, 0, 10, 4), slice, remainder, kNaN, VLXRectEdgeMinX);
    EXPECT_EQ(slice, VLXRectMake(0, 0, 0, 4));

    EXPECT_EQ(VLXEdgeInsetsInsetRect(VLXRectMake(0, 0, 100, 50), VLXEdgeInsetsMake(1, 2, 3, 4)),
              VLXRectMake(2, 1, 94, 46));
}

TEST(GeometryHelpers, AffineTransforms) {
    // Translate then scale: the scale applies to the already translated point.
    const VLXAffineTransform t = VLXAffineTransformConcat(VLXAffineTransformMakeTranslation(1, 2),
                                                          VLXAffineTransformMakeScale(10, 100));
    EXPECT_EQ(VLXPointApplyAffineTransform({1, 1}, t), VLXPointMake(20, 300));
    // The helpers insert their step before the existing transform.
    EXPECT_EQ(VLXAffineTransformTranslate(VLXAffineTransformMakeScale(10, 100), 1, 2), t);
    EXPECT_EQ(VLXSizeApplyAffineTransform({1, 1}, t), VLXSizeMake(10, 100));

    const VLXAffineTransform rotation = VLXAffineTransformMakeRotation(std::numbers::pi / 2);
    const VLXPoint turned = VLXPointApplyAffineTransform({1, 0}, rotation);
    EXPECT_NEAR(turned.x, 0, 1e-12);
    EXPECT_NEAR(turned.y, 1, 1e-12);  // clockwise on a y-down screen
    const VLXRect box = VLXRectApplyAffineTransform(VLXRectMake(0, 0, 2, 1), rotation);
    EXPECT_NEAR(box.minX(), -1, 1e-12);
    EXPECT_NEAR(box.width(), 1, 1e-12);
    EXPECT_NEAR(box.height(), 2, 1e-12);

    const VLXAffineTransform general{2, 1, -1, 3, 5, -7};
    expectNear(VLXAffineTransformConcat(general, VLXAffineTransformInvert(general)),
               VLXAffineTransformIdentity);
    const VLXAffineTransform singular = VLXAffineTransformMakeScale(0, 4);
    EXPECT_EQ(VLXAffineTransformInvert(singular), singular);
    EXPECT_TRUE(VLXAffineTransformIsIdentity(VLXAffineTransformMake(1, 0, 0, 1, 0, 0)));
}

TEST(GeometryHelpers, Transforms3D) {
    const VLXTransform3D aroundZ = VLXTransform3DMakeRotation(0.3, 0, 0, 2);
    EXPECT_TRUE(VLXTransform3DIsAffine(aroundZ));
    expectNear(VLXTransform3DGetAffineTransform(aroundZ), VLXAffineTransformMakeRotation(0.3));
    EXPECT_FALSE(VLXTransform3DIsAffine(VLXTransform3DMakeRotation(0.3, 1, 0, 0)));
    EXPECT_EQ(VLXTransform3DMakeRotation(1, 0, 0, 0), VLXTransform3DIdentity);

    VLXTransform3D t = VLXTransform3DMakeTranslation(1, 2, 3);
    t = VLXTransform3DScale(t, 2, 3, 4);
    t = VLXTransform3DRotate(t, 0.7, 1, 1, 0);
    t.m34 = -1.0 / 500;  // perspective
    const VLXTransform3D product = VLXTransform3DConcat(t, VLXTransform3DInvert(t));
    const double values[16] = {product.m11, product.m12, product.m13, product.m14,
                               product.m21, product.m22, product.m23, product.m24,
                               product.m31, product.m32, product.m33, product.m34,
                               product.m41, product.m42, product.m43, product.m44};
    for (int i = 0; i < 16; ++i) {
        EXPECT_NEAR(values[i], i % 5 == 0 ? 1.0 : 0.0, 1e-12) << "entry " << i;
    }
    const VLXTransform3D flat = VLXTransform3DMakeScale(1, 1, 0);
    EXPECT_EQ(VLXTransform3DInvert(flat), flat);

    const VLXAffineTransform affine{2, 1, -1, 3, 5, -7};
    EXPECT_EQ(VLXTransform3DGetAffineTransform(VLXTransform3DMakeAffineTransform(affine)), affine);
    EXPECT_EQ(VLXTransform3DTranslate(VLXTransform3DIdentity, 1, 2, 3),
              VLXTransform3DMakeTranslation(1, 2, 3));
}

TEST(GeometryHelpers, Printing) {
    std::ostringstream text;
    text << VLXRectMake(1, -2.5, 0.1, 1e20) << ' ' << VLXPointMake(kNaN, INFINITY) << ' '
         << VLXAffineTransformIdentity;
    EXPECT_EQ(text.str(), "{{1, -2.5}, {0.1, 1e+20}} {nan, inf} [1, 0, 0, 1, 0, 0]");
}
