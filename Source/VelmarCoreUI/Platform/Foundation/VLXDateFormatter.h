#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include <VelmarCoreUI/Platform/Foundation/VLXDate.h>
#include <VelmarCoreUI/Platform/Foundation/VLXTimeZone.h>

/// Turns dates into text and back with an ICU date pattern ("yyyy", "MMM d", "h:mm a", "zzz"),
/// in a time zone and a locale, on the proleptic Gregorian calendar whatever the locale.
///
/// The default locale is "en_US_POSIX": English names ("Mar", "Tue", "PM", "EST") and ASCII
/// digits that never change with the host's settings, so labels and tests are deterministic.
/// Pass another identifier ("de_DE", "fr") for localised names.
///
/// A small value: it only holds the pattern, zone and locale. The ICU formatters themselves
/// live in a process-wide cache keyed by (pattern, zone, locale), so a new VLXDateFormatter or
/// a one-off `stringFromDateWithFormat` costs no ICU construction once the key has been seen.
/// Strings are UTF-8 both ways.
class VLX_EXPORT VLXDateFormatter {
public:
    static constexpr std::string_view kDefaultLocaleIdentifier = "en_US_POSIX";

    /// Empty pattern, the system time zone at construction, the default locale.
    VLXDateFormatter();
    explicit VLXDateFormatter(std::string dateFormat, std::optional<VLXTimeZone> timeZone = {},
                              std::string localeIdentifier = std::string(kDefaultLocaleIdentifier));

    const std::string& dateFormat() const { return m_dateFormat; }
    void setDateFormat(std::string dateFormat) { m_dateFormat = std::move(dateFormat); }
    const VLXTimeZone& timeZone() const { return m_timeZone; }
    /// Nil means the system time zone (read now).
    void setTimeZone(std::optional<VLXTimeZone> timeZone);
    const std::string& localeIdentifier() const { return m_localeIdentifier; }
    void setLocaleIdentifier(std::string identifier) { m_localeIdentifier = std::move(identifier); }

    /// The date as text. Empty for dates outside the calendar range (NaN, infinities, beyond
    /// ±1e14 s), for an empty pattern and for a pattern ICU rejects. Text in quotes is copied
    /// ("h 'o''clock'" → "5 o'clock").
    std::string stringFromDate(VLXDate date) const;

    /// Reads a date written in the pattern. The whole string must match (no lenient guessing,
    /// no trailing text); fields the pattern lacks come from 1970-01-01 00:00:00 in the zone.
    /// Nil when the text does not match or the date is outside the calendar range, and for text
    /// with more than 32 digits (no date needs them).
    std::optional<VLXDate> dateFromString(std::string_view text) const;

    /// One-off formatting through the same cache: `VLXDateFormatter(pattern, zone, locale)
    /// .stringFromDate(date)` without building the formatter value.
    static std::string stringFromDateWithFormat(
        VLXDate date, std::string_view pattern, const VLXTimeZone& zone,
        std::string_view localeIdentifier = kDefaultLocaleIdentifier);

    /// Most cached ICU formatters kept (least recently used go first); 64 by default. 0 turns
    /// caching off, so that every call builds and drops its own ICU formatter.
    static void setCacheCapacity(std::size_t capacity);
    static std::size_t cacheCapacity();
    /// ICU formatters in the cache now.
    static std::size_t cachedFormatterCount();

private:
    std::string m_dateFormat;
    VLXTimeZone m_timeZone;
    std::string m_localeIdentifier;
};
