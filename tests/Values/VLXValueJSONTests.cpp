#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include <VelmarCoreUI/Platform/Foundation/VLXObject.h>
#include <VelmarCoreUI/Platform/Foundation/VLXRecord.h>
#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>

TEST(VLXValueJSON, ParsesEveryKindWithTheExpectedEncodings) {
    const VLXValue v = VLXValue::fromJSON(
        R"({"i": -5, "big": 18446744073709551615, "d": 1.0, "t": true, "n": null,
            "s": "h\u00e9", "a": [1, [2]], "o": {}, "dup": 1, "dup": 2})");
    ASSERT_TRUE(v.isDictionary());
    EXPECT_STREQ(v.valueForKey("i").objCType(), "q");
    EXPECT_EQ(v.valueForKey("big").unsignedIntegerValue(), UINT64_MAX);
    EXPECT_STREQ(v.valueForKey("big").objCType(), "Q");
    EXPECT_STREQ(v.valueForKey("d").objCType(), "d");
    EXPECT_STREQ(v.valueForKey("t").objCType(), "c");
    EXPECT_TRUE(v.valueForKey("n").isNull());
    EXPECT_EQ(v.valueForKey("s").stringValue(), "h\xc3\xa9");
    EXPECT_EQ(v.valueForKey("a").objectAtIndex(1).objectAtIndex(0), VLXValue(2));
    EXPECT_TRUE(v.valueForKey("o").isDictionary());
    EXPECT_EQ(v.valueForKey("dup"), VLXValue(2));
    EXPECT_EQ(VLXValue::fromJSON(" 3 "), VLXValue(3));
    EXPECT_TRUE(VLXValue::fromJSON("null").isNull());
}

TEST(VLXValueJSON, MalformedOrTooDeepTextGivesNil) {
    for (const char* text : {"", "   ", "{", "[1,]", "{\"a\" 1}", "nul", "[1] x", "\xff",
                             "\"\xc3\"", "{\"a\":}", "[1e]", "01"}) {
        EXPECT_TRUE(VLXValue::fromJSON(text).isNil()) << text;
    }
    const auto nested = [](int depth) {
        return std::string(static_cast<std::size_t>(depth), '[') +
               std::string(static_cast<std::size_t>(depth), ']');
    };
    EXPECT_TRUE(VLXValue::fromJSON(nested(VLXValue::kMaxJSONDepth)).isArray());
    EXPECT_TRUE(VLXValue::fromJSON(nested(VLXValue::kMaxJSONDepth + 1)).isNil());
    EXPECT_TRUE(VLXValue::fromJSON(std::string(200000, '[')).isNil());
}

TEST(VLXValueJSON, WritesEveryKindAndReadsBackTheSameData) {
    const VLXValue::Dictionary dictionary{
        {"int", 42},
        {"double", 2.5},
        {"bool", true},
        {"char", VLXValue::number(65, 'c')},
        {"string", "tab\there \"q\""},
        {"array", VLXValue::Array{1, "two", VLXValue::null()}},
        {"nested", VLXValue::Dictionary{{"x", -1}}},
    };
    const VLXValue value(dictionary);
    const VLXValue back = VLXValue::fromJSON(value.toJSON());
    EXPECT_EQ(back, value);
    EXPECT_EQ(VLXValue(0.1f).toJSON(), "0.1");  // the float's own digits, not 0.10000000149…
    EXPECT_STREQ(back.valueForKey("bool").objCType(), "c");
    EXPECT_EQ(back.valueForKey("char").integerValue(), 65);

    EXPECT_EQ(VLXValue().toJSON(), "null");
    EXPECT_EQ(VLXValue(std::numeric_limits<double>::quiet_NaN()).toJSON(), "null");
    EXPECT_EQ(VLXValue(-std::numeric_limits<double>::infinity()).toJSON(), "null");
    EXPECT_EQ(VLXValue(VLXDate::dateWithTimeIntervalSince1970(1.5)).toJSON(), "1.5");
    EXPECT_EQ(VLXValue(VLXColor::colorWithRed(1, 0.5, 0, 1)).toJSON(),
              R"({"components":[1.0,0.5,0.0,1.0],"model":"rgb"})");
    EXPECT_EQ(VLXValue(VLXColor::whiteColor()).toJSON(),
              R"({"components":[1.0,1.0],"model":"monochrome"})");
    EXPECT_EQ(VLXValue::valueWithRect(VLXRectMake(1, 2, 3, 4)).toJSON(), "[1.0,2.0,3.0,4.0]");
    EXPECT_EQ(VLXValue::valueWithRange(VLXMakeRange(2, 3)).toJSON(), "[2,3]");

    // Records are written as objects of their fields, other objects as their description.
    const auto record = VLXRecord::create({{"value", 12.5}, {"name", "a"}});
    EXPECT_EQ(VLXValue(record).toJSON(), R"({"name":"a","value":12.5})");
    const auto object = VLXObject::create();
    EXPECT_EQ(VLXValue::fromJSON(VLXValue(object).toJSON()).stringValue(), object->description());

    // Invalid UTF-8 is replaced rather than producing unreadable JSON.
    EXPECT_TRUE(VLXValue::fromJSON(VLXValue("bad \xff byte").toJSON()).isString());
}
