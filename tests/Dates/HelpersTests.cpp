#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include <VelmarCoreUI/Core/VLXDateFormats.h>
#include <VelmarCoreUI/Core/VLXDateHelpers.h>
#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include "DateTestSupport.h"

TEST(DateDescription, UTCTextAndInvalidDates) {
    EXPECT_EQ(at(0).description(), "1970-01-01 00:00:00 +0000");
    EXPECT_EQ(VLXDate::dateWithTimeIntervalSinceReferenceDate(0).description(),
              "2001-01-01 00:00:00 +0000");
    EXPECT_EQ(at(-0.5).description(), "1969-12-31 23:59:59 +0000");
    EXPECT_EQ(at(951782400 + 86399.9).description(), "2000-02-29 23:59:59 +0000");
    EXPECT_EQ(at(253402300800.0).description(), "10000-01-01 00:00:00 +0000");
    EXPECT_EQ(at(-62135596800.0 - (366 + 365) * 86400.0).description(),
              "-0001-01-01 00:00:00 +0000");
    EXPECT_EQ(VLXDate::distantFuture().description(), "4001-01-01 00:00:00 +0000");
    EXPECT_EQ(at(NAN).description(), "invalid date (nan)");
    EXPECT_EQ(at(-INFINITY).description(), "invalid date (-inf)");
    EXPECT_EQ(at(1e15).description(), "date out of range (1e+15)");
    std::ostringstream out;
    out << at(86400);
    EXPECT_EQ(out.str(), "1970-01-02 00:00:00 +0000");
}

TEST(DateHelpers, ComponentsAndFormatsInTheSystemZone) {
    ScopedTZ tz("America/New_York");
    const VLXDate date = at(1615800000);  // 05:20:00 EDT
    EXPECT_EQ(vlx_year(date), 2021);
    EXPECT_EQ(vlx_month(date), 3);
    EXPECT_EQ(vlx_day(date), 15);
    EXPECT_EQ(vlx_hour(date), 5);
    EXPECT_EQ(vlx_minute(date), 20);
    EXPECT_EQ(vlx_second(at(1615800007.9)), 7);
    EXPECT_EQ(vlx_hour(date, VLXTimeZone::UTC()), 9);
    EXPECT_EQ(vlx_formattedDateWithFormat(date, VLXDateFormatMonth), "03");
    EXPECT_EQ(vlx_formattedDateWithFormat(date, "h:mm a zzz", zoneNamed("Asia/Kolkata")),
              "2:50 PM GMT+5:30");

    EXPECT_EQ(vlx_dateByIgnoringTime(date), at(1615780800));  // 00:00 EDT
    EXPECT_EQ(vlx_dateWithYear(2021, 3, 15), at(1615780800));
    EXPECT_EQ(vlx_dateWithYear(2021, 3, 15, 5, 20, 0), date);
    EXPECT_EQ(vlx_dateWithYear(2021, 3, 15, VLXTimeZone::UTC()), at(1615766400));
    // Lenient: 31 April is 1 May, minute 60 the next hour.
    EXPECT_EQ(vlx_dateWithYear(2021, 4, 31), vlx_dateWithYear(2021, 5, 1));
    EXPECT_EQ(vlx_dateWithYear(2021, 5, 1, 10, 60, 0), vlx_dateWithYear(2021, 5, 1, 11, 0, 0));
}

TEST(DateHelpers, OutOfRangeFallbacks) {
    for (double bad : kBadSeconds) {
        EXPECT_EQ(vlx_year(at(bad)), VLXUndefinedDateComponent);
        EXPECT_EQ(vlx_second(at(bad), VLXTimeZone::UTC()), VLXUndefinedDateComponent);
        EXPECT_EQ(vlx_formattedDateWithFormat(at(bad), VLXDateFormatYear), "");
        const double back = vlx_dateByIgnoringTime(at(bad)).timeIntervalSince1970();
        EXPECT_TRUE(back == bad || (std::isnan(back) && std::isnan(bad)));
    }
    EXPECT_FALSE(vlx_dateWithYear(INT64_MAX, 1, 1));
    EXPECT_FALSE(vlx_dateWithYear(2021, 1, 1, 0, 0, INT64_MIN));
    EXPECT_EQ(vlx_formattedDateWithFormat(at(0), ""), "");
}

TEST(Clock, ManualTimeIsSteppedAndRealTimeResumes) {
    VLXClock::setManual(10);
    EXPECT_TRUE(VLXClock::isManual());
    VLXClock::advance(0.5);
    VLXClock::advance(NAN);
    VLXClock::setManual(INFINITY);
    EXPECT_EQ(VLXClock::now(), 10.5);
    VLXClock::advance(-1);
    EXPECT_EQ(VLXClock::now(), 9.5);

    VLXClock::setReal();
    EXPECT_FALSE(VLXClock::isManual());
    const double first = VLXClock::now();
    EXPECT_GE(first, 0);
    EXPECT_GE(VLXClock::now(), first);
    VLXClock::advance(100);  // from the real reading, into manual time
    EXPECT_TRUE(VLXClock::isManual());
    EXPECT_GE(VLXClock::now(), first + 100);
    VLXClock::setReal();
}
