// Time-zone names, date patterns, locales and date text from hosts. A zone found by name is
// found again by its own name; a cached formatter gives what an uncached one gives (distinct
// requests never share a cache entry); a date in the supported range formatted with a pattern
// that holds every field parses back to the same millisecond and to the same text; parsing never
// gives a date outside the range.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include <VelmarCoreUI/Platform/Foundation/VLXDateFormatter.h>
#include <VelmarCoreUI/Platform/Foundation/VLXTimeZone.h>

#include "FuzzSupport.h"

namespace {

constexpr const char* kFullPatterns[] = {
    "uuuu-MM-dd'T'HH:mm:ss.SSS",
    "yyyy-MM-dd HH:mm:ss.SSS G",
    "uuuu-MM-dd HH:mm:ss.SSS ZZZZZ",
    "EEE, d MMM uuuu HH:mm:ss.SSS",
};

std::string show(double seconds) {
    char text[64];
    std::snprintf(text, sizeof text, "%.17g", seconds);
    return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    FuzzedDataProvider data(bytes, size);
    const std::string zoneName = data.ConsumeRandomLengthString(40);
    const std::string pattern = data.ConsumeRandomLengthString(40);
    const std::string locale =
        data.ConsumeBool() ? std::string("en_US_POSIX") : data.ConsumeRandomLengthString(20);
    const double seconds = data.ConsumeBool() ? vlxfuzz::edgyDouble(data)
                                              : data.ConsumeFloatingPointInRange(-1e14, 1e14);
    const bool checkCache = data.ConsumeIntegralInRange<int>(0, 3) == 0;
    const char* full =
        kFullPatterns[data.ConsumeIntegralInRange<std::size_t>(0, std::size(kFullPatterns) - 1)];
    const std::string text = data.ConsumeRemainingBytesAsString();

    const std::optional<VLXTimeZone> found = VLXTimeZone::timeZoneWithName(zoneName);
    if (found) {
        const std::optional<VLXTimeZone> again = VLXTimeZone::timeZoneWithName(found->name());
        VLX_FUZZ_CHECK(again && *again == *found, zoneName + " → " + found->name());
        (void)found->secondsFromGMTForDate(VLXDate::dateWithTimeIntervalSince1970(seconds));
        (void)found->abbreviationForDate(VLXDate::dateWithTimeIntervalSince1970(seconds));
    }
    const VLXTimeZone zone = found.value_or(VLXTimeZone::UTC());
    const VLXDate date = VLXDate::dateWithTimeIntervalSince1970(seconds);

    // The cache must not change results. Comparing with an uncached formatter empties the
    // cache, which makes the next inputs slow, so one input in four does it.
    const VLXDateFormatter formatter(pattern, zone, locale);
    const std::string cached = formatter.stringFromDate(date);
    const std::optional<VLXDate> parsedCached = formatter.dateFromString(text);
    if (checkCache) {
        const std::size_t capacity = VLXDateFormatter::cacheCapacity();
        VLXDateFormatter::setCacheCapacity(0);
        const std::string uncached = formatter.stringFromDate(date);
        const std::optional<VLXDate> parsedUncached = formatter.dateFromString(text);
        VLXDateFormatter::setCacheCapacity(capacity);
        VLX_FUZZ_CHECK(cached == uncached, pattern + " | " + zone.name() + " | " + locale);
        VLX_FUZZ_CHECK(parsedCached == parsedUncached, pattern + " | " + text);
    }
    if (parsedCached) {
        VLX_FUZZ_CHECK(parsedCached->isInCalendarRange(), text);
    }
    if (!date.isInCalendarRange()) {
        VLX_FUZZ_CHECK(cached.empty(), cached);
        return 0;
    }

    // Milliseconds are what the patterns keep; near ±1e14 s a double holds them only to 16 ms.
    const double tolerance =
        0.001 + 2 * std::fabs(std::nextafter(seconds * 1000.0, 0.0) - seconds * 1000.0) / 1000.0;
    {
        const VLXDateFormatter exact(full, zone);
        const std::string written = exact.stringFromDate(date);
        VLX_FUZZ_CHECK(!written.empty(), show(seconds));
        const std::optional<VLXDate> back = exact.dateFromString(written);
        const std::string detail = show(seconds) + " " + zone.name() + " → " + written + " → " +
                                   (back ? show(back->timeIntervalSince1970()) : "nil");
        VLX_FUZZ_CHECK(back && std::fabs(back->timeIntervalSince1970() - seconds) <= tolerance,
                       detail);
        VLX_FUZZ_CHECK(exact.stringFromDate(*back) == written, detail);
    }
    return 0;
}
