#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <VelmarCoreUI/Core/VLXArrayHelpers.h>
#include <VelmarCoreUI/Core/VLXStringHelpers.h>
#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>

TEST(VLXStringHelpers, TrimsUnicodeWhitespaceAtBothEndsOnly) {
    const auto trim = [](std::string_view text) {
        return vlx_stringByTrimmingLeadingAndTrailingWhitespaceAndNewlineCharacters(text);
    };
    EXPECT_EQ(trim("  \t\nabc \r\n\v\f"), "abc");
    EXPECT_EQ(trim("\xc2\xa0\xe2\x80\x83x  y\xe3\x80\x80\xe2\x80\xa9\xc2\x85"), "x  y");
    EXPECT_EQ(trim("\xe1\x9a\x80\xe2\x80\xaf"
                   "a"
                   "\xe2\x81\x9f"),
              "a");
    EXPECT_EQ(trim(" \n "), "");
    EXPECT_EQ(trim(""), "");
    // A zero-width space is no white space; é (C3 A9) ends in a byte that only looks like one.
    EXPECT_EQ(trim("\xe2\x80\x8b"
                   "a"),
              "\xe2\x80\x8b"
              "a");
    EXPECT_EQ(trim("caf\xc3\xa9 "), "caf\xc3\xa9");
    // Truncated or stray UTF-8 bytes are kept, not trimmed or read past.
    EXPECT_EQ(trim(" x\xe2\x80"), "x\xe2\x80");
    EXPECT_EQ(trim("\xc2"), "\xc2");
    EXPECT_EQ(trim("\xa0 x"), "\xa0 x");
}

TEST(VLXStringHelpers, NonEmptyStringTestAndMapping) {
    EXPECT_TRUE(VLXIsNonEmptyString(VLXValue("a")));
    EXPECT_FALSE(VLXIsNonEmptyString(VLXValue("")));
    EXPECT_FALSE(VLXIsNonEmptyString(VLXValue()));
    EXPECT_FALSE(VLXIsNonEmptyString(VLXValue::null()));
    EXPECT_FALSE(VLXIsNonEmptyString(VLXValue(5)));
    EXPECT_TRUE(VLXIsNonEmptyString(std::optional<std::string>(" ")));
    EXPECT_FALSE(VLXIsNonEmptyString(std::optional<std::string>()));
    EXPECT_FALSE(VLXIsNonEmptyString(static_cast<const char*>(nullptr)));
    EXPECT_TRUE(VLXIsNonEmptyString(std::string("x")));

    const std::vector<int> numbers{10, 20, 30};
    const auto labels = vlx_mapObjectsUsingBlock(numbers, [](int n, std::size_t index) {
        return std::to_string(index) + ":" + std::to_string(n);
    });
    EXPECT_EQ(labels, (std::vector<std::string>{"0:10", "1:20", "2:30"}));

    const VLXValue items = VLXValue::fromJSON(R"([{"name": "a"}, {}, {"name": "c"}])");
    const VLXValue::Array names = vlx_mapObjectsUsingBlock(
        items, [](const VLXValue& item, std::size_t) { return item.valueForKey("name"); });
    EXPECT_EQ(VLXValue(names), VLXValue::fromJSON(R"(["a", null, "c"])"));
}
