#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>

#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>

namespace {
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
}  // namespace

TEST(VLXValue, KindsEncodingsAndClassNames) {
    EXPECT_STREQ(VLXValue(true).objCType(), "c");
    EXPECT_STREQ(VLXValue(7).objCType(), "i");
    EXPECT_STREQ(VLXValue(7L).objCType(), "q");
    EXPECT_STREQ(VLXValue(7U).objCType(), "I");
    EXPECT_STREQ(VLXValue(VLXUInteger{7}).objCType(), "Q");
    EXPECT_STREQ(VLXValue(0.5f).objCType(), "f");
    EXPECT_STREQ(VLXValue(0.5).objCType(), "d");
    EXPECT_STREQ(VLXValue("x").objCType(), "@");
    EXPECT_STREQ(VLXValue().objCType(), "");
    EXPECT_STREQ(VLXValue::valueWithRect({}).objCType(), "{CGRect={CGPoint=dd}{CGSize=dd}}");
    EXPECT_STREQ(VLXValue::valueWithRange({}).objCType(), "{_NSRange=QQ}");

    EXPECT_TRUE(VLXValue(static_cast<const char*>(nullptr)).isNil());
    EXPECT_TRUE(VLXValue(std::optional<std::string>()).isNil());
    EXPECT_TRUE(VLXValue(std::optional<std::string>("")).isString());
    EXPECT_TRUE(VLXValue(std::shared_ptr<VLXObject>()).isNil());
    EXPECT_EQ(VLXValue::null().className(), "NSNull");
    EXPECT_EQ(VLXValue(VLXDate()).className(), "NSDate");
    EXPECT_EQ(VLXValue(VLXValue::Array{}).className(), "NSArray");
    EXPECT_EQ(VLXValue().className(), "nil");

    const VLXRect rect = VLXRectMake(1, 2, -3, 4);
    EXPECT_EQ(VLXValue::valueWithRect(rect).rectValue(), rect);
    EXPECT_EQ(VLXValue::valueWithRect(rect).pointValue(), VLXPointZero);  // other box kind
    EXPECT_EQ(VLXValue::valueWithRange(VLXMakeRange(3, 4)).rangeValue(), VLXMakeRange(3, 4));
    EXPECT_EQ(VLXValue(1).arrayValue().size(), 0u);
    EXPECT_TRUE(VLXValue(VLXValue::Array{1}).objectAtIndex(1).isNil());
}

TEST(VLXValue, ExplicitEncodingsSaturateAndIntegerReadingsNeverOverflow) {
    EXPECT_EQ(VLXValue::number(300, 'c').integerValue(), 127);
    EXPECT_EQ(VLXValue::number(-70000, 's').integerValue(), SHRT_MIN);
    EXPECT_EQ(VLXValue::number(-1, 'Q').unsignedIntegerValue(), 0u);
    EXPECT_EQ(VLXValue::number(-3.9, 'i').integerValue(), -3);
    EXPECT_EQ(VLXValue::number(kNaN, 'q').integerValue(), 0);
    EXPECT_EQ(VLXValue::number(1e30, 'q').integerValue(), INT64_MAX);
    EXPECT_EQ(VLXValue::number(1e30, 'L').unsignedIntegerValue(), UINT32_MAX);
    EXPECT_EQ(VLXValue::number(1e39, 'f').doubleValue(), kInf);
    EXPECT_EQ(VLXValue::number(0.1, 'f').doubleValue(), static_cast<double>(0.1f));
    EXPECT_STREQ(VLXValue::number(2, 'x').objCType(), "d");

    EXPECT_EQ(VLXValue(1e300).integerValue(), INT64_MAX);
    EXPECT_EQ(VLXValue(-1e300).intValue(), INT_MIN);
    EXPECT_EQ(VLXValue(kNaN).intValue(), 0);
    EXPECT_EQ(VLXValue(kNaN).unsignedIntegerValue(), 0u);
    EXPECT_EQ(VLXValue(1e300).floatValue(), std::numeric_limits<float>::infinity());
    EXPECT_EQ(VLXValue(-1).unsignedIntegerValue(), UINT64_MAX);
    EXPECT_EQ(VLXValue::numberWithUnsignedInteger(UINT64_MAX).integerValue(), -1);
    EXPECT_EQ(VLXValue::numberWithInteger(INT64_MAX).doubleValue(), 9223372036854775808.0);
    EXPECT_EQ(VLXValue(VLXDate::dateWithTimeIntervalSince1970(12.5)).doubleValue(), 12.5);
}

TEST(VLXValue, StringsReadAsNumbersTheWayThePlatformDoes) {
    const float inf = std::numeric_limits<float>::infinity();
    const struct {
        const char* text;
        float expected;
    } cases[] = {
        {"  3.5abc", 3.5f}, {"\n\t-2e3x", -2000.0f},
        {"+.5", 0.5f},      {"5.", 5.0f},
        {"50%", 50.0f},     {"1e", 1.0f},
        {"1e+", 1.0f},      {"abc", 0.0f},
        {"", 0.0f},         {".", 0.0f},
        {"-", 0.0f},        {"~5", 0.0f},
        {"0x1A", 0.0f},     {"inf", 0.0f},
        {"nan", 0.0f},      {"1e39", inf},
        {"-1e39", -inf},    {"1e-60", 0.0f},
        {"0.1", 0.1f},      {"1e99999999999999999999", inf},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(VLXValue(c.text).floatValue(), c.expected) << '"' << c.text << '"';
    }
    // Read at the precision asked for, not through the other one.
    EXPECT_EQ(VLXValue("0.1").doubleValue(), 0.1);
    EXPECT_EQ(VLXValue("1e300").doubleValue(), 1e300);
    EXPECT_EQ(VLXValue(std::string(5000, '9')).doubleValue(), kInf);

    EXPECT_EQ(VLXValue("3.9").intValue(), 3);
    EXPECT_EQ(VLXValue("  -42xyz").intValue(), -42);
    EXPECT_EQ(VLXValue("99999999999").intValue(), INT_MAX);
    EXPECT_EQ(VLXValue("-99999999999999999999").integerValue(), INT64_MIN);
    EXPECT_EQ(VLXValue("9223372036854775807").integerValue(), INT64_MAX);

    EXPECT_TRUE(VLXValue(" YES").boolValue());
    EXPECT_TRUE(VLXValue("t").boolValue());
    EXPECT_TRUE(VLXValue("007").boolValue());
    EXPECT_TRUE(VLXValue("-1").boolValue());
    EXPECT_FALSE(VLXValue("0").boolValue());
    EXPECT_FALSE(VLXValue("no").boolValue());
    EXPECT_FALSE(VLXValue("").boolValue());
}

TEST(VLXValue, NumbersPrintAsShortestText) {
    EXPECT_EQ(VLXValue(3).stringValue(), "3");
    EXPECT_EQ(VLXValue(0.5).stringValue(), "0.5");
    EXPECT_EQ(VLXValue(1e20).stringValue(), "1e+20");
    EXPECT_EQ(VLXValue(1e16).stringValue(), "10000000000000000");
    EXPECT_EQ(VLXValue(1e17).stringValue(), "1e+17");
    EXPECT_EQ(VLXValue(0.0001).stringValue(), "0.0001");
    EXPECT_EQ(VLXValue(0.00001).stringValue(), "1e-05");
    EXPECT_EQ(VLXValue(-123.456).stringValue(), "-123.456");
    EXPECT_EQ(VLXValue(1.0 / 3).stringValue(), "0.3333333333333333");
    EXPECT_EQ(VLXValue(0.1f).stringValue(), "0.1");  // the float's digits, not the double's
    EXPECT_EQ(VLXValue(kNaN).stringValue(), "nan");
    EXPECT_EQ(VLXValue(-kInf).stringValue(), "-inf");
    EXPECT_EQ(VLXValue::numberWithUnsignedInteger(UINT64_MAX).stringValue(),
              "18446744073709551615");
    EXPECT_EQ(VLXValue(VLXDate()).stringValue(), "");
}

TEST(VLXValue, EqualityAcrossEncodingsAndKinds) {
    EXPECT_EQ(VLXValue(1), VLXValue(1.0));
    EXPECT_EQ(VLXValue(1), VLXValue(true));
    EXPECT_EQ(VLXValue(1.0f), VLXValue::numberWithUnsignedInteger(1));
    EXPECT_NE(VLXValue(1.5), VLXValue(1));
    EXPECT_NE(VLXValue::numberWithUnsignedInteger(UINT64_MAX), VLXValue::numberWithInteger(-1));
    // 2^53 + 1 is no double: the integer must not be rounded to compare.
    EXPECT_NE(VLXValue::numberWithInteger(9007199254740993), VLXValue(9007199254740992.0));
    EXPECT_NE(VLXValue(1e300), VLXValue::numberWithInteger(INT64_MAX));
    EXPECT_EQ(VLXValue(kNaN), VLXValue(kNaN));
    EXPECT_NE(VLXValue("1"), VLXValue(1));
    EXPECT_NE(VLXValue(), VLXValue::null());
    EXPECT_EQ(VLXValue(), VLXValue(nullptr));

    const VLXValue::Dictionary d1{{"a", VLXValue::Array{1, "x"}}, {"b", VLXValue::null()}};
    const VLXValue::Dictionary d2{{"a", VLXValue::Array{1.0, "x"}}, {"b", VLXValue::null()}};
    const VLXValue::Dictionary d3{{"a", VLXValue::Array{1, "y"}}, {"b", VLXValue::null()}};
    EXPECT_EQ(VLXValue(d1), VLXValue(d2));
    EXPECT_NE(VLXValue(d1), VLXValue(d3));
    EXPECT_EQ(VLXValue(VLXColor::redColor()), VLXValue(VLXColor::colorWithRed(1, 0, 0, 1)));
    EXPECT_NE(VLXValue(VLXColor::whiteColor()), VLXValue(VLXColor::colorWithRed(1, 1, 1, 1)));
    EXPECT_NE(VLXValue::valueWithPoint({1, 2}), VLXValue::valueWithSize({1, 2}));
}

TEST(VLXValue, DescriptionsFollowThePlatformsPropertyListStyle) {
    const VLXValue array(
        VLXValue::Array{1, "a b", "plain", VLXValue::Array{"x"}, VLXValue::null()});
    EXPECT_EQ(array.description(),
              "(\n    1,\n    \"a b\",\n    plain,\n        (\n        x\n    ),\n    <null>\n)");
    const VLXValue dictionary(VLXValue::Dictionary{{"k", VLXValue::Array{1, 2}}, {"a_b", ""}});
    EXPECT_EQ(dictionary.description(),
              "{\n    \"a_b\" = \"\";\n    k =     (\n        1,\n        2\n    );\n}");
    EXPECT_EQ(VLXValue(VLXValue::Array{}).description(), "(\n)");
    EXPECT_EQ(VLXValue(VLXValue::Array{"say \"hi\""}).description(),
              "(\n    \"say \\\"hi\\\"\"\n)");
    EXPECT_EQ(VLXValue().description(), "(null)");
    EXPECT_EQ(VLXValue::valueWithPoint({1.5, 2}).description(), "NSPoint: {1.5, 2}");
    EXPECT_EQ(VLXValue::valueWithRect(VLXRectMake(1, 2, 3, 4)).description(),
              "NSRect: {{1, 2}, {3, 4}}");
}
