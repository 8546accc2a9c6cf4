#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include <VelmarCoreUI/Core/VLXDateFormats.h>
#include <VelmarCoreUI/Platform/Foundation/VLXDateFormatter.h>
#include <VelmarCoreUI/Platform/Foundation/VLXStringFormat.h>
#include "DateTestSupport.h"

namespace {
const VLXDate kMonday = at(1615800000);  // 2021-03-15 09:20:00 UTC
}

TEST(DateFormatter, PatternsInSeveralZones) {
    const std::string title =
        VLXStringWithFormat("%s:%s%s %s %s %s %s, %s", VLXDateFormatHour, VLXDateFormatMinutes,
                            VLXDateFormatPeriod, VLXDateFormatTimeZoneName, VLXDateFormatDayName,
                            VLXDateFormatMonthName, VLXDateFormatDate, VLXDateFormatYear);
    EXPECT_EQ(VLXDateFormatter(title, VLXTimeZone::UTC()).stringFromDate(kMonday),
              "9:20AM UTC Mon Mar 15, 2021");
    EXPECT_EQ(VLXDateFormatter(title, zoneNamed("America/New_York")).stringFromDate(kMonday),
              "5:20AM EDT Mon Mar 15, 2021");
    EXPECT_EQ(VLXDateFormatter(title, zoneNamed("Asia/Kolkata")).stringFromDate(kMonday),
              "2:50PM GMT+5:30 Mon Mar 15, 2021");
    // Late evening in New York is already the next day in UTC.
    EXPECT_EQ(
        VLXDateFormatter("MM/d h a", zoneNamed("America/New_York")).stringFromDate(at(1609545600)),
        "01/1 7 PM");
    EXPECT_EQ(VLXDateFormatter("yyyy", VLXTimeZone::UTC()).stringFromDate(at(-30610224000.0)),
              "1000");
    EXPECT_EQ(VLXDateFormatter("h 'o''clock'", VLXTimeZone::UTC()).stringFromDate(at(3600 * 17)),
              "5 o'clock");
    EXPECT_EQ(VLXDateFormatter("MMMM", VLXTimeZone::UTC(), "fr_FR").stringFromDate(kMonday),
              "mars");
}

TEST(DateFormatter, ParsingIsStrict) {
    VLXDateFormatter formatter("yyyy-MM-dd HH:mm:ss", zoneNamed("America/New_York"));
    EXPECT_EQ(formatter.dateFromString("2021-03-15 05:20:00"), kMonday);
    EXPECT_EQ(formatter.dateFromString(formatter.stringFromDate(at(1e9))), at(1e9));
    for (const char* bad :
         {"", "2021-02-30 00:00:00", "2021-03-15 05:20:00 tail", "15 March", "\xff\xfe"}) {
        EXPECT_FALSE(formatter.dateFromString(bad)) << bad;
    }
    formatter.setDateFormat("yyyy-MM-dd HH:mm zzz");
    EXPECT_EQ(formatter.dateFromString("2021-03-15 01:20 PST"), kMonday);  // 01:20 -08:00
    // A zone read from text does not stick to the shared formatter.
    EXPECT_EQ(formatter.stringFromDate(kMonday), "2021-03-15 05:20 EDT");

    VLXDateFormatter dayOnly("d", VLXTimeZone::UTC());  // missing fields from 1970-01-01
    EXPECT_EQ(dayOnly.dateFromString("3"), at(2 * 86400));
}

TEST(DateFormatter, BadInputGivesEmptyText) {
    const VLXDateFormatter formatter("yyyy-MM-dd", VLXTimeZone::UTC());
    for (double bad : kBadSeconds) {
        EXPECT_EQ(formatter.stringFromDate(at(bad)), "");
    }
    EXPECT_EQ(VLXDateFormatter("", VLXTimeZone::UTC()).stringFromDate(kMonday), "");
    EXPECT_EQ(
        VLXDateFormatter("yyyy", VLXTimeZone::UTC(), std::string(500, 'x')).stringFromDate(kMonday),
        "2021");
    EXPECT_EQ(formatter.stringFromDate(at(1e14)), "3170843-11-07");
}

TEST(DateFormatter, CacheIsBoundedAndOptional) {
    const std::size_t before = VLXDateFormatter::cacheCapacity();
    VLXDateFormatter::setCacheCapacity(2);
    for (const char* pattern : {"y", "yy", "yyy", "yyyy", "yyyyy"}) {
        VLXDateFormatter(pattern, VLXTimeZone::UTC()).stringFromDate(kMonday);
    }
    EXPECT_EQ(VLXDateFormatter::cachedFormatterCount(), 2u);
    VLXDateFormatter::setCacheCapacity(0);
    EXPECT_EQ(VLXDateFormatter::cachedFormatterCount(), 0u);
    EXPECT_EQ(VLXDateFormatter("yyyyy", VLXTimeZone::UTC()).stringFromDate(kMonday), "02021");
    EXPECT_EQ(VLXDateFormatter::cachedFormatterCount(), 0u);
    VLXDateFormatter::setCacheCapacity(before);
}
