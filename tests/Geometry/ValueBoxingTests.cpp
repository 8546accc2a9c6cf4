#include <gtest/gtest.h>

#include <VelmarCoreUI/Utilities/VLXValueBoxing.h>

TEST(ValueBoxing, TypeCodesFollowTheEncoding) {
    EXPECT_EQ(vlx_type(VLXValue(2.5)), VLXValueTypeNumber);
    EXPECT_EQ(vlx_type(VLXValue(2.5f)), VLXValueTypeNumber);
    EXPECT_EQ(vlx_type(VLXValue(7)), VLXValueTypeNumber);
    EXPECT_EQ(vlx_type(VLXValue::number(3, 's')), VLXValueTypeNumber);
    EXPECT_EQ(vlx_type(VLXValue::numberWithUnsignedInteger(3)), VLXValueTypeNumber);
    // Booleans and chars are boxed as "c"/"C", which is not in the number list.
    EXPECT_EQ(vlx_type(VLXValue(true)), VLXValueTypeUnknown);
    EXPECT_EQ(vlx_type(VLXValue::number(3, 'C')), VLXValueTypeUnknown);

    EXPECT_EQ(vlx_type(vlx_valueWithPoint({1, 2})), VLXValueTypePoint);
    EXPECT_EQ(vlx_type(vlx_valueWithSize({1, 2})), VLXValueTypeSize);
    EXPECT_EQ(vlx_type(vlx_valueWithRect(VLXRectMake(1, 2, 3, 4))), VLXValueTypeRect);
    EXPECT_EQ(vlx_type(vlx_valueWithAffineTransform(VLXAffineTransformIdentity)),
              VLXValueTypeAffineTransform);
    EXPECT_EQ(vlx_type(VLXValue::valueWithTransform3D(VLXTransform3DIdentity)),
              VLXValueTypeTransform3D);

    EXPECT_EQ(vlx_type(VLXValue::valueWithRange(VLXMakeRange(1, 2))), VLXValueTypeUnknown);
    EXPECT_EQ(vlx_type(VLXValue("1.5")), VLXValueTypeUnknown);
    EXPECT_EQ(vlx_type(VLXValue::null()), VLXValueTypeUnknown);
    EXPECT_EQ(vlx_type(VLXValue()), VLXValueTypeUnknown);
}

TEST(ValueBoxing, RoundTripsAndMismatches) {
    const VLXRect rect = VLXRectMake(1, -2, -3, 4.5);  // stored as given, not standardised
    EXPECT_EQ(vlx_rectValue(vlx_valueWithRect(rect)), rect);
    EXPECT_EQ(vlx_pointValue(vlx_valueWithPoint({-1, 0.25})), VLXPointMake(-1, 0.25));
    EXPECT_EQ(vlx_sizeValue(vlx_valueWithSize({7, 8})), VLXSizeMake(7, 8));
    const VLXAffineTransform t{1, 2, 3, 4, 5, 6};
    EXPECT_EQ(vlx_affineTransformValue(vlx_valueWithAffineTransform(t)), t);

    EXPECT_EQ(vlx_rectValue(vlx_valueWithPoint({1, 2})), VLXRectZero);
    EXPECT_EQ(vlx_pointValue(VLXValue()), VLXPointZero);
    EXPECT_EQ(vlx_affineTransformValue(VLXValue("x")), VLXAffineTransform{});
}
