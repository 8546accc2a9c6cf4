#pragma once

#include <VelmarCoreUI/Platform/Foundation/VLXTypes.h>

/// Nominal lengths of calendar units, in seconds, for choosing scales and estimating spans.
/// They ignore daylight-saving changes and leap seconds; the month is 30 days and the year 365
/// days. Stepping by real months and years goes through VLXCalendar instead.
inline constexpr VLXTimeInterval VLXSecondInterval = 1;
inline constexpr VLXTimeInterval VLXMinuteInterval = 60;
inline constexpr VLXTimeInterval VLXHourInterval = 60 * VLXMinuteInterval;  // 3 600
inline constexpr VLXTimeInterval VLXDayInterval = 24 * VLXHourInterval;     // 86 400
inline constexpr VLXTimeInterval VLXWeekInterval = 7 * VLXDayInterval;      // 604 800
inline constexpr VLXTimeInterval VLXMonthInterval = 30 * VLXDayInterval;    // 2 592 000
inline constexpr VLXTimeInterval VLXYearInterval = 365 * VLXDayInterval;    // 31 536 000
