#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <VelmarCoreUI/Platform/Foundation/VLXDate.h>
#include <VelmarCoreUI/Platform/Foundation/VLXTypes.h>

class VLXTimeZone;

namespace vlx::detail {
struct TimeZoneData;
/// The ICU zone behind `zone`, as `const icu::TimeZone*`. Typed void so that this header stays
/// free of ICU; only the date layer's .cpp files call it (it is not exported), and they clone
/// what they keep. Valid while `zone` (or a copy) lives.
const void* icuTimeZone(const VLXTimeZone& zone);
}  // namespace vlx::detail

/// A time zone: an IANA zone ("America/New_York", "UTC") or a fixed offset from GMT
/// ("GMT+0530"), backed by ICU's zone data. A small value: copies share the same immutable
/// zone, so passing zones around is as cheap as passing a shared pointer. Two zones are equal
/// when their names are equal ("UTC" and "GMT" are different names, hence different zones).
class VLX_EXPORT VLXTimeZone {
public:
    /// UTC.
    VLXTimeZone();

    /// The zone of an IANA identifier ("Europe/Paris", "US/Eastern", "UTC", "Etc/GMT-5") or of a
    /// GMT offset written "GMT+0530", "GMT-08:00", "GMT+3". Nil for empty and unknown names.
    /// Identifiers keep the spelling asked for (aliases are not resolved); offset names come
    /// back in the form `timeZoneForSecondsFromGMT` uses.
    static std::optional<VLXTimeZone> timeZoneWithName(std::string_view name);

    /// A zone without daylight saving time, `seconds` east of GMT, named "GMT" for 0 and
    /// "GMT+HHMM" / "GMT-HHMM" otherwise ("GMT+HHMMSS" when the offset has odd seconds).
    /// Nil beyond ±18 hours.
    static std::optional<VLXTimeZone> timeZoneForSecondsFromGMT(VLXInteger seconds);

    /// The zone of the process: the `TZ` environment variable (a zone name, optionally after ':',
    /// or a path ending in "zoneinfo/<name>"), else /etc/localtime. A POSIX rule in `TZ`
    /// ("<+03>-3") gives the fixed-offset zone of its standard offset; an empty `TZ` gives UTC,
    /// as it does in the C library; UTC is also the fallback when nothing can be determined.
    /// A change of `TZ` is noticed on the next call; call `resetSystemTimeZone` after
    /// /etc/localtime changes.
    static VLXTimeZone systemTimeZone();
    /// Forgets the cached system zone so that the next `systemTimeZone()` detects it again.
    static void resetSystemTimeZone();

    /// The zone named "UTC".
    static VLXTimeZone UTC();

    /// Every IANA identifier ICU knows, sorted.
    static std::vector<std::string> knownTimeZoneNames();

    const std::string& name() const;

    /// Offset from GMT in seconds at `date` (daylight saving included). Dates outside the
    /// calendar range (NaN, infinities, beyond ±1e14 s) give the zone's standard offset.
    VLXInteger secondsFromGMTForDate(VLXDate date) const;
    /// Offset from GMT now.
    VLXInteger secondsFromGMT() const;
    /// Whether daylight saving time is in effect at `date`; false outside the calendar range.
    bool isDaylightSavingTimeForDate(VLXDate date) const;
    /// The short name at `date` in US English: "EST", "EDT", "GMT", or "GMT+5:30" where no
    /// abbreviation is in common use. Empty outside the calendar range.
    std::string abbreviationForDate(VLXDate date) const;

    /// "America/New_York (EST) offset -18000" (abbreviation and offset now).
    std::string description() const;

    friend bool operator==(const VLXTimeZone& a, const VLXTimeZone& b) {
        return a.m_data == b.m_data || a.name() == b.name();
    }

private:
    explicit VLXTimeZone(std::shared_ptr<const vlx::detail::TimeZoneData> data);
    friend const void* vlx::detail::icuTimeZone(const VLXTimeZone& zone);

    std::shared_ptr<const vlx::detail::TimeZoneData> m_data;
};

/// Writes `zone.name()`.
VLX_EXPORT std::ostream& operator<<(std::ostream& os, const VLXTimeZone& zone);
