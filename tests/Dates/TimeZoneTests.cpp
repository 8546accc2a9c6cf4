#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

#include <VelmarCoreUI/Platform/Foundation/VLXTimeZone.h>
#include "DateTestSupport.h"

TEST(TimeZone, NamesResolveOrGiveNil) {
    auto newYork = VLXTimeZone::timeZoneWithName("America/New_York");
    ASSERT_TRUE(newYork);
    EXPECT_EQ(newYork->name(), "America/New_York");
    EXPECT_EQ(VLXTimeZone::timeZoneWithName("US/Eastern")->name(), "US/Eastern");  // alias kept

    for (const char* bad : {"", "Mars/Olympus_Mons", "Etc/Unknown", "GMT+20"}) {
        EXPECT_FALSE(VLXTimeZone::timeZoneWithName(bad)) << bad;
    }
    EXPECT_FALSE(VLXTimeZone::timeZoneWithName(std::string(1000, 'A')));
    EXPECT_FALSE(VLXTimeZone::timeZoneWithName("\xff\xfe"));
    EXPECT_FALSE(VLXTimeZone::timeZoneWithName(std::string("UTC\0junk", 8)));

    EXPECT_EQ(VLXTimeZone(), VLXTimeZone::UTC());
    EXPECT_NE(VLXTimeZone::UTC(), *newYork);
}

TEST(TimeZone, FixedOffsetsAreNamedByOffset) {
    auto india = VLXTimeZone::timeZoneForSecondsFromGMT(19800);
    ASSERT_TRUE(india);
    EXPECT_EQ(india->name(), "GMT+0530");
    EXPECT_EQ(VLXTimeZone::timeZoneWithName("GMT+05:30"), india);
    EXPECT_EQ(VLXTimeZone::timeZoneForSecondsFromGMT(-8 * 3600)->name(), "GMT-0800");
    EXPECT_EQ(VLXTimeZone::timeZoneForSecondsFromGMT(0)->name(), "GMT");
    EXPECT_EQ(VLXTimeZone::timeZoneForSecondsFromGMT(3661)->name(), "GMT+010101");
    EXPECT_EQ(VLXTimeZone::timeZoneForSecondsFromGMT(3661)->secondsFromGMTForDate(at(0)), 3661);
    EXPECT_TRUE(VLXTimeZone::timeZoneForSecondsFromGMT(-18 * 3600));
    EXPECT_FALSE(VLXTimeZone::timeZoneForSecondsFromGMT(18 * 3600 + 1));
    EXPECT_FALSE(VLXTimeZone::timeZoneForSecondsFromGMT(INT64_MIN));
}

TEST(TimeZone, OffsetsFollowDaylightSavingTime) {
    const VLXTimeZone newYork = zoneNamed("America/New_York");
    const VLXDate winter = at(1610712000);  // 2021-01-15 12:00 UTC
    const VLXDate summer = at(1625140800);  // 2021-07-01 12:00 UTC
    EXPECT_EQ(newYork.secondsFromGMTForDate(winter), -5 * 3600);
    EXPECT_EQ(newYork.secondsFromGMTForDate(summer), -4 * 3600);
    EXPECT_FALSE(newYork.isDaylightSavingTimeForDate(winter));
    EXPECT_TRUE(newYork.isDaylightSavingTimeForDate(summer));
    EXPECT_EQ(newYork.abbreviationForDate(winter), "EST");
    EXPECT_EQ(newYork.abbreviationForDate(summer), "EDT");

    // Clocks went forward at 2021-03-14 07:00 UTC.
    EXPECT_EQ(newYork.secondsFromGMTForDate(at(1615705200 - 1)), -5 * 3600);
    EXPECT_EQ(newYork.secondsFromGMTForDate(at(1615705200)), -4 * 3600);

    const VLXTimeZone kolkata = zoneNamed("Asia/Kolkata");
    EXPECT_EQ(kolkata.secondsFromGMTForDate(summer), 5 * 3600 + 1800);
    EXPECT_EQ(kolkata.abbreviationForDate(summer), "GMT+5:30");

    // Without calendar components the standard offset is all there is.
    for (double bad : kBadSeconds) {
        EXPECT_EQ(newYork.secondsFromGMTForDate(at(bad)), -5 * 3600);
        EXPECT_FALSE(newYork.isDaylightSavingTimeForDate(at(bad)));
        EXPECT_EQ(newYork.abbreviationForDate(at(bad)), "");
    }
}

TEST(TimeZone, SystemZoneFollowsTZ) {
    {
        ScopedTZ tz("Asia/Kolkata");
        EXPECT_EQ(VLXTimeZone::systemTimeZone().name(), "Asia/Kolkata");
        setenv("TZ", ":America/New_York", 1);  // noticed without a reset
        EXPECT_EQ(VLXTimeZone::systemTimeZone().name(), "America/New_York");
        setenv("TZ", "/usr/share/zoneinfo/Europe/Paris", 1);
        EXPECT_EQ(VLXTimeZone::systemTimeZone().name(), "Europe/Paris");
        setenv("TZ", "<+03>-3", 1);
        EXPECT_EQ(VLXTimeZone::systemTimeZone().name(), "GMT+0300");
        setenv("TZ", "", 1);
        EXPECT_EQ(VLXTimeZone::systemTimeZone().name(), "UTC");
    }
    ScopedTZ utc("UTC");
    EXPECT_EQ(VLXTimeZone::systemTimeZone(), VLXTimeZone::UTC());
}

TEST(TimeZone, KnownNamesAreSortedAndResolvable) {
    const auto names = VLXTimeZone::knownTimeZoneNames();
    ASSERT_GT(names.size(), 300u);
    EXPECT_TRUE(std::is_sorted(names.begin(), names.end()));
    EXPECT_TRUE(std::binary_search(names.begin(), names.end(), "Asia/Kolkata"));
    for (std::size_t i = 0; i < names.size(); i += 37) {
        EXPECT_TRUE(VLXTimeZone::timeZoneWithName(names[i])) << names[i];
    }
}
