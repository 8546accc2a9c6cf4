#include <gtest/gtest.h>

#include <string>

#include <VelmarCoreUI/Platform/Foundation/VLXKeyValueObject.h>
#include <VelmarCoreUI/Platform/Foundation/VLXObject.h>
#include <VelmarCoreUI/Platform/Foundation/VLXRecord.h>
#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>

namespace {
// A host object that computes its one property.
class Thermometer : public VLXObject, public VLXKeyValueObject {
public:
    static std::shared_ptr<Thermometer> create() { return VLXMakeShared<Thermometer>(); }
    bool respondsToKey(std::string_view key) const override { return key == "celsius"; }
    VLXValue valueForKey(std::string_view key) const override {
        return key == "celsius" ? VLXValue(21.5) : VLXValue();
    }
};
}  // namespace

TEST(VLXKeyValue, DictionariesFollowPathsOneKeyAtATime) {
    const VLXValue v = VLXValue::fromJSON(R"({"a": {"b": {"c": 3}}, "a.b": "literal"})");
    EXPECT_EQ(v.valueForKeyPath("a.b.c"), VLXValue(3));
    EXPECT_TRUE(v.valueForKeyPath("a.x.c").isNil());
    EXPECT_TRUE(v.valueForKeyPath("a.b.c.d").isNil());  // a number has no properties
    EXPECT_TRUE(v.valueForKeyPath("").isNil());
    EXPECT_TRUE(v.valueForKeyPath("a..b").isNil());
    // The whole name is one key for respondsTo / valueForKey, a path for valueForKeyPath.
    EXPECT_TRUE(v.respondsTo("a.b"));
    EXPECT_FALSE(v.respondsTo("b"));
    EXPECT_EQ(v.valueForKey("a.b"), VLXValue("literal"));
    EXPECT_TRUE(v.valueForKeyPath("a.b").isDictionary());

    EXPECT_TRUE(VLXValue(5).valueForKey("a").isNil());
    EXPECT_TRUE(VLXValue::null().valueForKeyPath("a.b").isNil());
    EXPECT_FALSE(VLXValue("a").respondsTo("length"));
    EXPECT_TRUE(v.valueForKeyPath(std::string(100000, '.')).isNil());
}

TEST(VLXKeyValue, RecordsAndHostObjects) {
    const auto record = VLXRecord::create({{"value", 12.5}, {"when", VLXDate()}});
    const VLXValue value(record);
    EXPECT_EQ(value.className(), "VLXRecord");
    EXPECT_TRUE(value.respondsTo("value"));
    EXPECT_FALSE(value.respondsTo("missing"));
    EXPECT_EQ(value.valueForKey("value"), VLXValue(12.5));
    EXPECT_TRUE(value.valueForKey("missing").isNil());

    record->setValue("value", 3);
    record->setValue("extra", "x");
    EXPECT_EQ(value.valueForKey("value"), VLXValue(3));
    ASSERT_EQ(record->fields().size(), 3u);
    EXPECT_EQ(record->fields()[2].first, "extra");

    EXPECT_EQ(value,
              VLXValue(VLXRecord::create({{"value", 3}, {"when", VLXDate()}, {"extra", "x"}})));
    EXPECT_NE(value,
              VLXValue(VLXRecord::create({{"when", VLXDate()}, {"value", 3}, {"extra", "x"}})));

    const VLXValue holder(
        VLXValue::Dictionary{{"record", value}, {"probe", Thermometer::create()}});
    EXPECT_EQ(holder.valueForKeyPath("record.extra"), VLXValue("x"));
    EXPECT_EQ(holder.valueForKeyPath("probe.celsius"), VLXValue(21.5));
    EXPECT_TRUE(holder.valueForKeyPath("probe.kelvin").isNil());

    // An object that offers no key-value access answers nothing.
    const VLXValue plain(VLXObject::create());
    EXPECT_FALSE(plain.respondsTo("description"));
    EXPECT_TRUE(plain.valueForKey("description").isNil());
}

TEST(VLXKeyValue, ArraysMapOverTheirElementsWithNullForNil) {
    const VLXValue array(
        VLXValue::Array{VLXRecord::create({{"v", 1}}), VLXValue::Dictionary{{"v", 2}}, 5});
    EXPECT_EQ(array.valueForKey("v"), VLXValue(VLXValue::Array{1, 2, VLXValue::null()}));
    EXPECT_FALSE(array.respondsTo("v"));

    const VLXValue data = VLXValue::fromJSON(
        R"({"periods": [{"p": {"x": 1}}, {"p": {"y": 2}}, {"p": [{"x": 3}, {"x": 4}]}]})");
    EXPECT_EQ(data.valueForKeyPath("periods.p.x"), VLXValue::fromJSON(R"([1, null, [3, 4]])"));
    EXPECT_EQ(VLXValue(VLXValue::Array{}).valueForKeyPath("a.b"), VLXValue(VLXValue::Array{}));
}
