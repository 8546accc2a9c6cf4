#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>

namespace {

const double kNaN = std::numeric_limits<double>::quiet_NaN();

// `depth` arrays around `leaf`.
VLXValue nestedArrays(int depth, VLXValue leaf) {
    VLXValue value = std::move(leaf);
    for (int i = 0; i < depth; ++i) {
        value = VLXValue(VLXValue::Array{value});
    }
    return value;
}

}  // namespace

TEST(VLXValueLimits, EveryValueEqualsItselfAndItsCopy) {
    const VLXValue values[] = {
        VLXValue(kNaN),
        VLXValue(VLXDate::dateWithTimeIntervalSince1970(kNaN)),
        VLXValue::valueWithPoint({kNaN, 1}),
        VLXValue::valueWithSize({1, kNaN}),
        VLXValue::valueWithRect({{0, 0}, {kNaN, 2}}),
        VLXValue::valueWithAffineTransform({1, 0, 0, 1, kNaN, 0}),
        VLXValue::valueWithTransform3D({kNaN, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}),
        VLXValue(VLXColor::colorWithRed(kNaN, 0, 0, 1)),
    };
    VLXValue::Array all;
    VLXValue::Dictionary byKey;
    for (const VLXValue& value : values) {
        const VLXValue copy = value;  // NOLINT: the copy is the point
        EXPECT_EQ(value, value) << value.description();
        EXPECT_EQ(value, copy) << value.description();
        all.push_back(value);
        byKey.emplace(std::to_string(byKey.size()), value);
    }
    const VLXValue array(all);
    const VLXValue rebuilt(VLXValue::Array(all.begin(), all.end()));
    EXPECT_EQ(array, rebuilt);
    EXPECT_EQ(VLXValue(byKey), VLXValue(VLXValue::Dictionary(byKey)));

    // NaN is equal only to NaN, and signed zeros stay equal, in every field.
    EXPECT_NE(VLXValue::valueWithPoint({kNaN, 1}), VLXValue::valueWithPoint({0, 1}));
    EXPECT_NE(VLXValue(VLXDate::dateWithTimeIntervalSince1970(kNaN)), VLXValue(VLXDate()));
    EXPECT_EQ(VLXValue::valueWithPoint({-0.0, 1}), VLXValue::valueWithPoint({0.0, 1}));
}

TEST(VLXValueLimits, WritingAndReadingJSONAgreeOnTheDepthLimit) {
    const int limit = VLXValue::kMaxJSONDepth;
    // Exactly as deep as the reader accepts: written and read back whole.
    const VLXValue deepest = nestedArrays(limit, VLXValue(7));
    EXPECT_EQ(deepest.jsonDepth(), limit);
    const std::string text = deepest.toJSON();
    EXPECT_EQ(VLXValue::fromJSON(text), deepest);

    // One level more is refused by both sides, with no text that would read back differently.
    const VLXValue tooDeep = nestedArrays(limit + 1, VLXValue(7));
    EXPECT_EQ(tooDeep.jsonDepth(), limit + 1);
    EXPECT_EQ(tooDeep.toJSON(), "");
    EXPECT_TRUE(
        VLXValue::fromJSON(std::string(limit + 1, '[') + std::string(limit + 1, ']')).isNil());

    // Colours and boxes add their own levels: {"components": [...]} two, a box one.
    const VLXValue colorLeaf = VLXValue(VLXColor::redColor());
    EXPECT_EQ(nestedArrays(limit - 2, colorLeaf).jsonDepth(), limit);
    EXPECT_EQ(VLXValue::fromJSON(nestedArrays(limit - 2, colorLeaf).toJSON()).jsonDepth(), limit);
    EXPECT_EQ(nestedArrays(limit - 1, colorLeaf).toJSON(), "");
    const VLXValue boxLeaf = VLXValue::valueWithRect({{1, 2}, {3, 4}});
    EXPECT_FALSE(VLXValue::fromJSON(nestedArrays(limit - 1, boxLeaf).toJSON()).isNil());
    EXPECT_EQ(nestedArrays(limit, boxLeaf).toJSON(), "");

    // Scalars and empty containers: a scalar has depth 0, an empty array 1.
    EXPECT_EQ(VLXValue(3).jsonDepth(), 0);
    EXPECT_EQ(VLXValue(VLXValue::Array{}).jsonDepth(), 1);
    EXPECT_EQ(VLXValue().toJSON(), "null");
}
