#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <cstdint>
#include <optional>
#include <utility>

#include <VelmarCoreUI/Platform/Foundation/VLXDate.h>
#include <VelmarCoreUI/Platform/Foundation/VLXTimeZone.h>
#include <VelmarCoreUI/Platform/Foundation/VLXTypes.h>

/// What single-component queries return when a date has no calendar components (NaN, the
/// infinities, dates beyond ±1e14 s).
inline constexpr VLXInteger VLXUndefinedDateComponent = INT64_MAX;

/// The calendar fields of a date. Every field is optional: a date's components fill all of
/// them; when building or shifting a date, empty fields are left out.
struct VLX_EXPORT VLXDateComponents {
    std::optional<VLXInteger> year;        ///< astronomical numbering: 0 is 1 BC, -1 is 2 BC
    std::optional<VLXInteger> month;       ///< 1 = January … 12 = December
    std::optional<VLXInteger> day;         ///< day of the month, from 1
    std::optional<VLXInteger> hour;        ///< 0 … 23
    std::optional<VLXInteger> minute;      ///< 0 … 59
    std::optional<VLXInteger> second;      ///< 0 … 59
    std::optional<VLXInteger> nanosecond;  ///< 0 … 999 999 999, within the second
    std::optional<VLXInteger> weekday;     ///< 1 = Sunday … 7 = Saturday; read only

    friend bool operator==(const VLXDateComponents&, const VLXDateComponents&) = default;
};

/// A calendar field, for single-component queries.
enum class VLXCalendarUnit { Year, Month, Day, Hour, Minute, Second, Nanosecond, Weekday };

/// The Gregorian calendar in a time zone. Proleptic: the Gregorian rules apply before 1582 as
/// well, the way VLXDate::description counts.
///
/// A small value (it holds only its zone); the ICU calendars behind it are cached per zone and
/// shared, so creating VLXCalendars freely costs nothing.
///
/// Building and shifting dates is lenient, as wall clocks count: month 13 is January of the next
/// year, day 0 the last day of the previous month, minute 75 is 1:15 past the hour. A wall time
/// that occurs twice (when clocks go back) means its earlier instant; one that does not exist
/// (when clocks go forward) is moved forward by the length of the gap (02:30 → 03:30).
///
/// Dates outside the calendar range (VLXDate::isInCalendarRange) have no components: functions
/// returning optionals return nil for them, `component` returns VLXUndefinedDateComponent.
class VLX_EXPORT VLXCalendar {
public:
    /// In the system time zone (as it is now).
    VLXCalendar();
    explicit VLXCalendar(VLXTimeZone timeZone);
    /// A calendar in the system time zone.
    static VLXCalendar currentCalendar() { return VLXCalendar(); }

    const VLXTimeZone& timeZone() const { return m_timeZone; }
    void setTimeZone(VLXTimeZone timeZone) { m_timeZone = std::move(timeZone); }

    /// All components of `date`, every field set. Nil outside the calendar range.
    std::optional<VLXDateComponents> componentsFromDate(VLXDate date) const;
    /// One component of `date`; VLXUndefinedDateComponent outside the calendar range.
    VLXInteger component(VLXCalendarUnit unit, VLXDate date) const;

    /// The date with these components. Empty fields take 1970, January, day 1, 00:00:00;
    /// `weekday` is ignored. Nil when a field is beyond ±1 000 000 000 or the result falls
    /// outside the calendar range.
    std::optional<VLXDate> dateFromComponents(const VLXDateComponents& components) const;

    /// `date` moved by the components, largest first: years and months on the calendar (31
    /// January + 1 month is the last day of February), days on the wall clock (same local time
    /// across a daylight-saving change), then hours, minutes, seconds and nanoseconds as elapsed
    /// time. `weekday` is ignored. Nil when `date` or the result is outside the calendar range
    /// or a field is beyond ±1 000 000 000.
    std::optional<VLXDate> dateByAddingComponents(const VLXDateComponents& components,
                                                  VLXDate date) const;
    /// `dateByAddingComponents` with one field set.
    std::optional<VLXDate> dateByAddingUnit(VLXCalendarUnit unit, VLXInteger value,
                                            VLXDate date) const;

    /// The first instant of `date`'s day in the calendar's zone: midnight, or the end of the gap
    /// where clocks skip midnight. Nil outside the calendar range.
    std::optional<VLXDate> startOfDayForDate(VLXDate date) const;

private:
    VLXTimeZone m_timeZone;
};
