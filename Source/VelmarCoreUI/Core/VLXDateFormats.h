#pragma once

/// Date pattern pieces for labels and titles, in ICU pattern syntax. They are fragments meant to
/// be combined ("%s %s" of month name and date gives "MMM d" → "Mar 5") and passed to
/// vlx_formattedDateWithFormat or a VLXDateFormatter. Examples are in the default locale,
/// en_US_POSIX.

/// The year, at least four digits: "2021", "0987" (years before 1 count back from 1 BC).
inline constexpr const char* VLXDateFormatYear = "yyyy";
/// The month number, two digits: "03", "12".
inline constexpr const char* VLXDateFormatMonth = "MM";
/// The abbreviated month name: "Mar", "Dec".
inline constexpr const char* VLXDateFormatMonthName = "MMM";
/// The day of the month without padding: "5", "31".
inline constexpr const char* VLXDateFormatDate = "d";
/// The abbreviated weekday name: "Mon", "Sat".
inline constexpr const char* VLXDateFormatDayName = "EEE";
/// The hour on a 12-hour clock without padding: "12", "1" … "11".
inline constexpr const char* VLXDateFormatHour = "h";
/// The minutes, two digits: "00" … "59".
inline constexpr const char* VLXDateFormatMinutes = "mm";
/// The day period: "AM", "PM".
inline constexpr const char* VLXDateFormatPeriod = "a";
/// The short time-zone name: "EST", "EDT", "UTC", or "GMT+5:30" where no abbreviation is in
/// common use.
inline constexpr const char* VLXDateFormatTimeZoneName = "zzz";
