#include <gtest/gtest.h>

#include <cmath>
#include <iomanip>
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

    // Long runs of fractional-second digits are refused, not handed to ICU (which divides by
    // zero past 34 of them); nine digits still read.
    const VLXDateFormatter fraction("ss.SSS", VLXTimeZone::UTC());
    EXPECT_EQ(fraction.dateFromString("01.123456789"), at(1.123));
    for (int digits : {35, 40, 1000}) {
        EXPECT_FALSE(fraction.dateFromString("00." + std::string(digits, '3'))) << digits;
    }
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

TEST(DateFormatter, DistinctRequestsNeverShareACachedFormatter) {
    // Texts chosen so that joining pattern, zone and locale with a separator character gives
    // the same text for both requests.
    const VLXTimeZone tokyo = *VLXTimeZone::timeZoneWithName("Asia/Tokyo");
    const VLXDateFormatter a("HH'\x1fUTC\x1fx'", tokyo, "en");
    const VLXDateFormatter b("HH'", VLXTimeZone::UTC(),
                             "x'\x1f"
                             "Asia/Tokyo\x1f"
                             "en");
    const std::size_t before = VLXDateFormatter::cacheCapacity();
    VLXDateFormatter::setCacheCapacity(0);
    const std::string expectedA = a.stringFromDate(kMonday);
    const std::string expectedB = b.stringFromDate(kMonday);
    EXPECT_EQ(expectedA, "18\x1fUTC\x1fx");  // 09:20 UTC is 18:20 in Tokyo
    ASSERT_NE(expectedA, expectedB);
    for (bool aFirst : {true, false}) {
        VLXDateFormatter::setCacheCapacity(0);
        VLXDateFormatter::setCacheCapacity(8);
        if (aFirst) {
            EXPECT_EQ(a.stringFromDate(kMonday), expectedA);
            EXPECT_EQ(b.stringFromDate(kMonday), expectedB);
        } else {
            EXPECT_EQ(b.stringFromDate(kMonday), expectedB);
            EXPECT_EQ(a.stringFromDate(kMonday), expectedA);
        }
        EXPECT_EQ(VLXDateFormatter::cachedFormatterCount(), 2u);
    }
    VLXDateFormatter::setCacheCapacity(before);
}

TEST(DateFormatter, FarDatesParseBackWhatTheyFormat) {
    // The whole supported range, past the ±144 000 years where ICU's strict calendar stops
    // reading its own output; years with their era ("y G") or astronomical ("uuuu").
    const VLXTimeZone newYork = *VLXTimeZone::timeZoneWithName("America/New_York");
    for (const char* pattern : {"uuuu-MM-dd HH:mm:ss.SSS", "y-MM-dd HH:mm:ss.SSS G"}) {
        for (const VLXTimeZone& zone : {VLXTimeZone::UTC(), newYork}) {
            const VLXDateFormatter formatter(pattern, zone);
            for (double seconds : {4.5e12, 4.6e12, -4.6e12, 1e13, -1e13, 99999999999999.5, 1e14,
                                   -1e14, -62135769600.25}) {
                const std::string text = formatter.stringFromDate(at(seconds));
                const auto back = formatter.dateFromString(text);
                ASSERT_TRUE(back.has_value()) << pattern << " " << text;
                EXPECT_EQ(back->timeIntervalSince1970(), std::floor(seconds * 1000) / 1000)
                    << pattern << " " << text;
            }
        }
    }
    // Text with milliseconds reads back to a date that formats to the same text, also before
    // 1970, where whole milliseconds ÷ 1000 lie just below the millisecond they stand for.
    const VLXDateFormatter millis("uuuu-MM-dd HH:mm:ss.SSS", VLXTimeZone::UTC());
    for (const char* text :
         {"1969-12-31 23:57:50.581", "1969-12-31 23:59:59.999", "1969-12-31 23:59:59.001",
          "1970-01-01 00:00:00.001", "-2000-06-30 12:00:00.007"}) {
        const auto date = millis.dateFromString(text);
        ASSERT_TRUE(date.has_value()) << text;
        EXPECT_EQ(millis.stringFromDate(*date), text);
    }
    EXPECT_EQ(millis.stringFromDate(at(-0.0005)), "1969-12-31 23:59:59.999");  // still rounded down

    // Where a double holds dates only to about a millisecond, the date read back is not the date
    // written, yet it must still format to the same text (a zone with seconds in its offset).
    const VLXDateFormatter coarse("yyyy-MM-dd HH:mm:ss.SSS G",
                                  *VLXTimeZone::timeZoneWithName("GMT+005115"));
    for (double start : {-4476106154203.3125, 4.4e12, -8.8e12, 9.1e12, -5e13, 1e14 - 1}) {
        double seconds = start;
        for (int step = 0; step < 200; ++step) {
            seconds = std::nextafter(seconds, 0.0);
            const std::string text = coarse.stringFromDate(at(seconds));
            const auto back = coarse.dateFromString(text);
            ASSERT_TRUE(back.has_value()) << text;
            ASSERT_EQ(coarse.stringFromDate(*back), text) << std::setprecision(17) << seconds;
        }
    }

    // Far away, parsing stays strict: no 30 February, no hour 25, no trailing text.
    const VLXDateFormatter formatter("uuuu-MM-dd HH", VLXTimeZone::UTC());
    EXPECT_TRUE(formatter.dateFromString("147738-02-28 10").has_value());
    EXPECT_FALSE(formatter.dateFromString("147738-02-30 10").has_value());
    EXPECT_FALSE(formatter.dateFromString("147738-02-28 25").has_value());
    EXPECT_FALSE(formatter.dateFromString("147738-02-28 10x").has_value());
    // Beyond the range: nil, even though the text is well formed.
    EXPECT_FALSE(formatter.dateFromString("3170844-01-01 00").has_value());
}

TEST(DateFormatter, LocalesICUCannotReadFallBackToTheDefault) {
    // Day periods ("B") look up rules by the locale's name, which an unreadable identifier
    // lacks; such identifiers format as the default locale does.
    const std::string expected =
        VLXDateFormatter("h B EEE", VLXTimeZone::UTC()).stringFromDate(kMonday);
    EXPECT_EQ(expected, "9 in the morning Mon");
    for (const std::string& locale : {std::string("EEE, d MUS/\x01"), std::string("en\0US", 5)}) {
        const VLXDateFormatter formatter("h B EEE", VLXTimeZone::UTC(), locale);
        EXPECT_EQ(formatter.stringFromDate(kMonday), expected);
        EXPECT_EQ(formatter.dateFromString("9 in the morning Mon").has_value(),
                  VLXDateFormatter("h B EEE", VLXTimeZone::UTC())
                      .dateFromString("9 in the morning Mon")
                      .has_value());
    }
}
