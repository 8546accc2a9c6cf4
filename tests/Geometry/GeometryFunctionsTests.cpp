#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <vector>

#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>
#include <VelmarCoreUI/Utilities/VLXGeometryFunctions.h>

TEST(GeometryFunctions, SettersStandardiseTheRest) {
    // A negative size is made positive with the origin at the smaller edge.
    EXPECT_EQ(VLXRectSetOriginX(VLXRectMake(10, 10, -4, 6), 0), VLXRectMake(0, 10, 4, 6));
    EXPECT_EQ(VLXRectSetOriginY(VLXRectMake(1, 10, 3, -4), 2), VLXRectMake(1, 2, 3, 4));
    EXPECT_EQ(VLXRectSetMaxX(VLXRectMake(0, 0, 20, 5), 50), VLXRectMake(30, 0, 20, 5));
    EXPECT_EQ(VLXRectSetMaxY(VLXRectMake(0, 8, 20, -5), 50), VLXRectMake(0, 45, 20, 5));
    EXPECT_EQ(VLXRectShiftOriginX(VLXRectMake(10, 0, -4, 1), 1), VLXRectMake(7, 0, 4, 1));
    EXPECT_EQ(VLXRectShiftOriginY(VLXRectMake(0, 10, 1, -4), -1), VLXRectMake(0, 5, 1, 4));
    // Values taken from the argument are stored as given, negative or not.
    EXPECT_EQ(VLXRectSetWidth(VLXRectMake(10, 0, -4, 1), -7), VLXRectMake(6, 0, -7, 1));
    EXPECT_EQ(VLXRectSetHeight(VLXRectMake(0, 0, 1, 1), -2), VLXRectMake(0, 0, 1, -2));
    EXPECT_EQ(VLXRectSetSize(VLXRectMake(4, 4, -4, -4), VLXSizeMake(-1, 2)),
              VLXRectMake(0, 0, -1, 2));
    EXPECT_EQ(VLXRectSetOrigin(VLXRectMake(4, 4, -4, 2), VLXPointMake(-1, -1)),
              VLXRectMake(-1, -1, 4, 2));
    EXPECT_EQ(VLXRectMakeFromSize(VLXSizeMake(-3, 4)), VLXRectMake(0, 0, -3, 4));
    EXPECT_EQ(VLXRectFromPoints({5, 5}, {2, 9}), VLXRectMake(5, 5, -3, 4));
}

TEST(GeometryFunctions, CentringRoundsHalfAwayFromZeroInSinglePrecision) {
    // 10 − 5.5 = 4.5 → 5; −10 − 5.5 = −15.5 → −16.
    EXPECT_EQ(VLXRectSetCenterX(VLXRectMake(0, 0, 11, 4), 10), VLXRectMake(5, 0, 11, 4));
    EXPECT_EQ(VLXRectSetCenterX(VLXRectMake(0, 0, 11, 4), -10), VLXRectMake(-16, 0, 11, 4));
    EXPECT_EQ(VLXRectSetCenterY(VLXRectMake(3, 0, 2, 3), 0), VLXRectMake(3, -2, 2, 3));
    // Width and height are never rounded.
    EXPECT_EQ(VLXRectSetCenterY(VLXRectMake(0, 0, 0.25, 0.5), 0).size, VLXSizeMake(0.25, 0.5));
    // 2^24 + 1 is not a float: it comes back as 2^24.
    EXPECT_EQ(VLXRectSetCenterX(VLXRectMake(0, 0, 0, 0), 16777217).origin.x, 16777216);
    EXPECT_TRUE(std::isnan(VLXRectSetCenterX(VLXRectMake(0, 0, 1, 1), NAN).origin.x));
    EXPECT_EQ(VLXRectSetCenterX(VLXRectMake(0, 0, 1, 1), 1e300).origin.x, INFINITY);
    EXPECT_EQ(VLXRectSetCenterY(VLXRectMake(0, 0, 1, 1), -1e300).origin.y, -INFINITY);
}

TEST(GeometryFunctions, StretchAndCentre) {
    const VLXRect r = VLXRectMake(10, 10, 20, 10);
    EXPECT_EQ(VLXRectStretchWidth(r, 6, true), VLXRectMake(7, 10, 26, 10));
    EXPECT_EQ(VLXRectStretchWidth(r, -6, false), VLXRectMake(10, 10, 14, 10));
    EXPECT_EQ(VLXRectStretchHeight(r, 4, true), VLXRectMake(10, 8, 20, 14));
    EXPECT_EQ(VLXRectStretchHeight(r, 4, false), VLXRectMake(10, 10, 20, 14));

    EXPECT_EQ(VLXRectCenteredInRect(VLXRectMake(0, 0, 3, 2), VLXRectMake(10, 20, 10, 10)),
              VLXRectMake(13.5, 24, 3, 2));
    // Larger than its container: starts before it.
    EXPECT_EQ(VLXRectCenteredInRect(VLXRectMake(0, 0, 30, 10), VLXRectMake(0, 0, 10, -10)),
              VLXRectMake(-10, -10, 30, 10));
}

TEST(GeometryFunctions, Points) {
    EXPECT_EQ(CGPointGetMidpoint({-2, 4}, {3, 5}), VLXPointMake(0.5, 4.5));
    EXPECT_EQ(CGPointGetDistance({1, 1}, {4, 5}), 5);

    const double pi = std::numbers::pi;
    EXPECT_DOUBLE_EQ(VLXPointGetAngle({5, 5}, {5, 0}), 3 * pi / 2);  // straight above on screen
    EXPECT_DOUBLE_EQ(VLXPointGetAngle({5, 5}, {5, 9}), pi / 2);
    EXPECT_DOUBLE_EQ(VLXPointGetAngle({0, 0}, {-1, 0}), pi);
    EXPECT_EQ(VLXPointGetAngle({2, 2}, {2, 2}), 0);
    EXPECT_TRUE(std::isnan(VLXPointGetAngle({0, 0}, {NAN, 1})));

    const std::vector<VLXValue> boxed = {VLXValue::valueWithPoint({0, 0}),
                                         VLXValue::valueWithPoint({4, 1}),
                                         VLXValue::valueWithPoint({2, 8})};
    EXPECT_EQ(CGPointCentroidOfPoints(boxed), VLXPointMake(2, 3));
    EXPECT_EQ(CGPointCentroidOfPoints(std::vector<VLXPoint>{{1, 1}, {2, 3}}), VLXPointMake(1.5, 2));
    // Elements that box no point count as the origin, and still count.
    EXPECT_EQ(
        CGPointCentroidOfPoints({VLXValue::valueWithPoint({6, 3}), VLXValue("x"), VLXValue()}),
        VLXPointMake(2, 1));
    const VLXPoint empty = CGPointCentroidOfPoints(std::vector<VLXValue>{});
    EXPECT_TRUE(std::isnan(empty.x) && std::isnan(empty.y));
}
