#include <gtest/gtest.h>

#include <cmath>

#include <VelmarCoreUI/Platform/Foundation/VLXCalendar.h>
#include "DateTestSupport.h"

namespace {

VLXDateComponents ymdhms(VLXInteger y, VLXInteger mo, VLXInteger d, VLXInteger h = 0,
                         VLXInteger mi = 0, VLXInteger s = 0) {
    VLXDateComponents c;
    c.year = y;
    c.month = mo;
    c.day = d;
    c.hour = h;
    c.minute = mi;
    c.second = s;
    return c;
}

}  // namespace

TEST(Calendar, ComponentsInSeveralZones) {
    const VLXDate date = at(1615800000.25);  // 2021-03-15 09:20:00.25 UTC, a Monday
    auto utc = VLXCalendar(VLXTimeZone::UTC()).componentsFromDate(date);
    ASSERT_TRUE(utc);
    EXPECT_EQ(*utc, (VLXDateComponents{2021, 3, 15, 9, 20, 0, 250'000'000, 2}));

    auto newYork = VLXCalendar(zoneNamed("America/New_York")).componentsFromDate(date);
    EXPECT_EQ(*newYork->hour, 5);  // EDT began the day before
    auto kolkata = VLXCalendar(zoneNamed("Asia/Kolkata")).componentsFromDate(date);
    EXPECT_EQ(*kolkata->hour, 14);
    EXPECT_EQ(*kolkata->minute, 50);

    // Before 1970 the fraction still counts forward within the second.
    auto early = VLXCalendar(VLXTimeZone::UTC()).componentsFromDate(at(-0.75));
    EXPECT_EQ(*early->year, 1969);
    EXPECT_EQ(*early->second, 59);
    EXPECT_EQ(*early->nanosecond, 250'000'000);
    EXPECT_EQ(*early->weekday, 4);  // 1969-12-31 was a Wednesday
}

TEST(Calendar, ComponentsRoundTrip) {
    for (const char* name : {"UTC", "America/New_York", "Asia/Kolkata", "Australia/Lord_Howe"}) {
        const VLXCalendar calendar(zoneNamed(name));
        for (double t : {-62135596800.0, -1e9, 0.0, 951782400.0, 1615705200.0, 4102444799.0}) {
            auto components = calendar.componentsFromDate(at(t));
            ASSERT_TRUE(components);
            EXPECT_EQ(calendar.dateFromComponents(*components), at(t)) << name << " " << t;
        }
    }
}

TEST(Calendar, LenientComponentsAndWallTimeGaps) {
    const VLXCalendar utc(VLXTimeZone::UTC());
    EXPECT_EQ(utc.dateFromComponents(ymdhms(2021, 13, 1)),
              utc.dateFromComponents(ymdhms(2022, 1, 1)));
    EXPECT_EQ(utc.dateFromComponents(ymdhms(2021, 3, 0)),
              utc.dateFromComponents(ymdhms(2021, 2, 28)));
    EXPECT_EQ(utc.dateFromComponents(ymdhms(1900, 2, 29)),
              utc.dateFromComponents(ymdhms(1900, 3, 1)));
    EXPECT_EQ(utc.dateFromComponents(ymdhms(2000, 1, 1, 0, 0, -1)), at(946684799));
    EXPECT_EQ(utc.dateFromComponents(VLXDateComponents{}), at(0));

    const VLXCalendar newYork(zoneNamed("America/New_York"));
    // 02:30 did not exist on 2021-03-14: it is read as 03:30 EDT.
    EXPECT_EQ(newYork.dateFromComponents(ymdhms(2021, 3, 14, 2, 30)), at(1615707000));
    // 01:30 happened twice on 2021-11-07: the earlier, EDT one.
    EXPECT_EQ(newYork.dateFromComponents(ymdhms(2021, 11, 7, 1, 30)), at(1636263000));
}

TEST(Calendar, AddingFollowsTheCalendar) {
    const VLXCalendar utc(VLXTimeZone::UTC());
    auto add = [&](VLXCalendarUnit unit, VLXInteger n, VLXDateComponents from) {
        return utc.dateByAddingUnit(unit, n, *utc.dateFromComponents(from));
    };
    EXPECT_EQ(add(VLXCalendarUnit::Month, 1, ymdhms(2021, 1, 31)),
              utc.dateFromComponents(ymdhms(2021, 2, 28)));
    EXPECT_EQ(add(VLXCalendarUnit::Month, 1, ymdhms(2024, 1, 31)),
              utc.dateFromComponents(ymdhms(2024, 2, 29)));
    EXPECT_EQ(add(VLXCalendarUnit::Month, -1, ymdhms(2021, 3, 31)),
              utc.dateFromComponents(ymdhms(2021, 2, 28)));
    EXPECT_EQ(add(VLXCalendarUnit::Year, 1, ymdhms(2020, 2, 29)),
              utc.dateFromComponents(ymdhms(2021, 2, 28)));
    EXPECT_EQ(add(VLXCalendarUnit::Month, 13, ymdhms(2021, 12, 15)),
              utc.dateFromComponents(ymdhms(2023, 1, 15)));
    EXPECT_EQ(utc.dateByAddingUnit(VLXCalendarUnit::Nanosecond, 500'000'000, at(10.25)), at(10.75));

    // A day keeps the wall-clock time across the change to summer time; 24 hours do not.
    const VLXCalendar newYork(zoneNamed("America/New_York"));
    const VLXDate noon = *newYork.dateFromComponents(ymdhms(2021, 3, 13, 12));
    const VLXDate nextNoon = *newYork.dateByAddingUnit(VLXCalendarUnit::Day, 1, noon);
    EXPECT_EQ(nextNoon.timeIntervalSinceDate(noon), 23 * 3600);
    EXPECT_EQ(newYork.component(VLXCalendarUnit::Hour, nextNoon), 12);
    EXPECT_EQ(newYork.component(VLXCalendarUnit::Hour,
                                *newYork.dateByAddingUnit(VLXCalendarUnit::Hour, 24, noon)),
              13);
}

TEST(Calendar, StartOfDay) {
    const VLXCalendar newYork(zoneNamed("America/New_York"));
    // Midnight of the day clocks go forward is still EST: 05:00 UTC.
    EXPECT_EQ(newYork.startOfDayForDate(at(1615705200 + 3600)), at(1615698000));
    // Sao Paulo skipped midnight on 2018-11-04: the day starts at 01:00 (-02), 03:00 UTC.
    const VLXCalendar saoPaulo(zoneNamed("America/Sao_Paulo"));
    EXPECT_EQ(saoPaulo.startOfDayForDate(*saoPaulo.dateFromComponents(ymdhms(2018, 11, 4, 12))),
              at(1541300400));
    const VLXCalendar kolkata(zoneNamed("Asia/Kolkata"));
    EXPECT_EQ(kolkata.startOfDayForDate(at(0)), at(-19800));
}

TEST(Calendar, OutOfRangeInputGivesNil) {
    const VLXCalendar calendar(zoneNamed("America/New_York"));
    for (double bad : kBadSeconds) {
        EXPECT_FALSE(calendar.componentsFromDate(at(bad)));
        EXPECT_EQ(calendar.component(VLXCalendarUnit::Year, at(bad)), VLXUndefinedDateComponent);
        EXPECT_FALSE(calendar.dateByAddingUnit(VLXCalendarUnit::Day, 1, at(bad)));
        EXPECT_FALSE(calendar.startOfDayForDate(at(bad)));
    }
    // The edges of the range still have components, on the proleptic Gregorian calendar.
    EXPECT_EQ(calendar.component(VLXCalendarUnit::Year, at(1e14)), 3170843);
    EXPECT_EQ(
        VLXCalendar(VLXTimeZone::UTC()).component(VLXCalendarUnit::Day, at(-12219292800.0 - 86400)),
        14);

    EXPECT_FALSE(calendar.dateFromComponents(ymdhms(1'000'000'000'000, 1, 1)));
    EXPECT_FALSE(calendar.dateFromComponents(ymdhms(2021, INT64_MAX, 1)));
    EXPECT_FALSE(calendar.dateFromComponents(ymdhms(2021, 1, 1, INT64_MIN)));
    EXPECT_FALSE(calendar.dateFromComponents(ymdhms(4'000'000, 1, 1)));
    EXPECT_FALSE(calendar.dateByAddingUnit(VLXCalendarUnit::Year, 900'000'000, at(0)));
    EXPECT_FALSE(calendar.dateByAddingUnit(VLXCalendarUnit::Nanosecond, INT64_MAX, at(1e14 - 1e9)));
    EXPECT_FALSE(calendar.dateByAddingUnit(VLXCalendarUnit::Day, 2, at(1e14)));
}
