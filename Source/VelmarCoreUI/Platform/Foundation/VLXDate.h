#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <compare>
#include <iosfwd>
#include <string>

#include <VelmarCoreUI/Platform/Foundation/VLXTypes.h>

/// A point in time: seconds since 1970-01-01 00:00:00 UTC, as a double. Calendar arithmetic,
/// components and formatting live in VLXCalendar and VLXDateFormatter.
class VLX_EXPORT VLXDate {
public:
    constexpr VLXDate() = default;  ///< 1970-01-01 00:00:00 UTC

    static constexpr VLXDate dateWithTimeIntervalSince1970(VLXTimeInterval seconds) {
        return VLXDate(seconds);
    }
    /// Seconds since 2001-01-01 00:00:00 UTC, the platform's reference date.
    static constexpr VLXDate dateWithTimeIntervalSinceReferenceDate(VLXTimeInterval seconds) {
        return VLXDate(seconds + kReferenceDateOffset);
    }
    /// The wall-clock time now.
    static VLXDate date();
    /// 1 January of year 1 in the Julian calendar, which the proleptic Gregorian calendar used
    /// here calls 0000-12-30.
    static constexpr VLXDate distantPast() { return VLXDate(-62135769600.0); }
    static constexpr VLXDate distantFuture() { return VLXDate(64092211200.0); }  ///< year 4001

    constexpr VLXTimeInterval timeIntervalSince1970() const { return m_seconds; }
    constexpr VLXTimeInterval timeIntervalSinceReferenceDate() const {
        return m_seconds - kReferenceDateOffset;
    }
    constexpr VLXTimeInterval timeIntervalSinceDate(VLXDate other) const {
        return m_seconds - other.m_seconds;
    }
    constexpr VLXDate dateByAddingTimeInterval(VLXTimeInterval seconds) const {
        return VLXDate(m_seconds + seconds);
    }

    /// The span of dates the calendar, the formatters and the date helpers work with:
    /// ±1e14 seconds around 1970 (about ±3.1 million years). Dates beyond it, NaN and the
    /// infinities have no calendar components; each API states what it gives for them.
    static constexpr VLXTimeInterval kCalendarRange = 1e14;
    constexpr bool isInCalendarRange() const {
        return m_seconds >= -kCalendarRange && m_seconds <= kCalendarRange;  // false for NaN
    }

    /// "2001-01-01 00:00:00 +0000": the proleptic Gregorian date in UTC, fractions of a second
    /// dropped (rounded down). Years beyond 9999 get more digits, years before 1 are written
    /// astronomically ("-0001" is 2 BC). Outside the calendar range the text is
    /// "invalid date (nan)", "invalid date (inf)", "invalid date (-inf)" or, for finite dates,
    /// "date out of range (1e+15)" (the seconds as "%g").
    std::string description() const;

    friend constexpr bool operator==(const VLXDate&, const VLXDate&) = default;
    friend constexpr auto operator<=>(const VLXDate&, const VLXDate&) = default;

    static constexpr VLXTimeInterval kReferenceDateOffset = 978307200.0;

private:
    explicit constexpr VLXDate(VLXTimeInterval seconds) : m_seconds(seconds) {}
    VLXTimeInterval m_seconds = 0;
};

/// Writes `date.description()`.
VLX_EXPORT std::ostream& operator<<(std::ostream& os, const VLXDate& date);
