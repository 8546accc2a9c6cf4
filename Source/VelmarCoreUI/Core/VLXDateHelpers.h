#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <optional>
#include <string>
#include <string_view>

#include <VelmarCoreUI/Platform/Foundation/VLXCalendar.h>
#include <VelmarCoreUI/Platform/Foundation/VLXDate.h>
#include <VelmarCoreUI/Platform/Foundation/VLXTimeZone.h>
#include <VelmarCoreUI/Platform/Foundation/VLXTypes.h>

/// Date helpers of the core library: calendar questions asked in one line. A nil zone means the
/// system time zone (VLXTimeZone::systemTimeZone, read at the call). Everything goes through
/// VLXCalendar and VLXDateFormatter (Gregorian, default locale en_US_POSIX), so dates outside
/// the calendar range (NaN, infinities, beyond ±1e14 s) give the stated fallbacks.

/// The start of `date`'s calendar day in the zone (midnight, or the first instant after a gap
/// that skips midnight). Dates outside the calendar range come back unchanged.
VLX_EXPORT VLXDate vlx_dateByIgnoringTime(VLXDate date,
                                          std::optional<VLXTimeZone> zone = std::nullopt);

/// `date` written with an ICU pattern ("yyyy", "MMM d", "h:mm a"; see VLXDateFormats.h) in the
/// zone. Empty for dates outside the calendar range and for an empty or broken pattern.
VLX_EXPORT std::string vlx_formattedDateWithFormat(VLXDate date, std::string_view format,
                                                   std::optional<VLXTimeZone> zone = std::nullopt);

/// Midnight starting the given day in the zone. Lenient like VLXCalendar: month 13 is January of
/// the next year, day 0 the last day of the previous month, 31 April is 1 May. Nil when a
/// component is beyond ±1 000 000 000 or the date falls outside the calendar range.
VLX_EXPORT std::optional<VLXDate> vlx_dateWithYear(VLXInteger year, VLXInteger month,
                                                   VLXInteger day,
                                                   std::optional<VLXTimeZone> zone = std::nullopt);
/// The given wall-clock time in the zone, lenient the same way (minute 60 is the next hour).
VLX_EXPORT std::optional<VLXDate> vlx_dateWithYear(VLXInteger year, VLXInteger month,
                                                   VLXInteger day, VLXInteger hour,
                                                   VLXInteger minute, VLXInteger second,
                                                   std::optional<VLXTimeZone> zone = std::nullopt);

/// Components of `date` in the zone. VLXUndefinedDateComponent for dates outside the calendar
/// range. The year counts astronomically (0 is 1 BC); the month is 1…12.
VLX_EXPORT VLXInteger vlx_year(VLXDate date, std::optional<VLXTimeZone> zone = std::nullopt);
VLX_EXPORT VLXInteger vlx_month(VLXDate date, std::optional<VLXTimeZone> zone = std::nullopt);
VLX_EXPORT VLXInteger vlx_day(VLXDate date, std::optional<VLXTimeZone> zone = std::nullopt);
VLX_EXPORT VLXInteger vlx_hour(VLXDate date, std::optional<VLXTimeZone> zone = std::nullopt);
VLX_EXPORT VLXInteger vlx_minute(VLXDate date, std::optional<VLXTimeZone> zone = std::nullopt);
VLX_EXPORT VLXInteger vlx_second(VLXDate date, std::optional<VLXTimeZone> zone = std::nullopt);
