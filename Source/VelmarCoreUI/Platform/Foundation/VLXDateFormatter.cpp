#include <VelmarCoreUI/Platform/Foundation/VLXDateFormatter.h>

#include <unicode/fieldpos.h>
#include <unicode/gregocal.h>
#include <unicode/locid.h>
#include <unicode/parsepos.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <cmath>
#include <limits>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <unordered_map>
#include <utility>

namespace {

constexpr std::size_t kDefaultCacheCapacity = 64;
// Longer locale identifiers are not locales; they are cut rather than handed to ICU whole.
constexpr std::size_t kMaximumLocaleLength = 64;

icu::UnicodeString fromUTF8(std::string_view text) {
    if (text.size() > static_cast<std::size_t>(std::numeric_limits<int32_t>::max())) {
        return {};
    }
    return icu::UnicodeString::fromUTF8(
        icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
}

// One ICU formatter with the calendar it formats through. Formatting goes through our own
// calendar because DateFormat::format(UDate) clones its calendar on every call.
struct Entry {
    std::unique_ptr<icu::SimpleDateFormat> format;  // null when ICU rejected the pattern
    std::unique_ptr<icu::Calendar> calendar;
};

Entry makeEntry(std::string_view pattern, const VLXTimeZone& zone, std::string_view localeId) {
    Entry entry;
    const std::string localeName(localeId.substr(0, kMaximumLocaleLength));
    icu::Locale locale(localeName.c_str());
    if (locale.isBogus() || localeName.find('\0') != std::string::npos) {
        // ICU keeps no name for identifiers it cannot read, and some of its lookups (day
        // periods) then crash; such identifiers mean the default locale.
        locale = icu::Locale(VLXDateFormatter::kDefaultLocaleIdentifier.data());
    }
    const auto* icuZone = static_cast<const icu::TimeZone*>(vlx::detail::icuTimeZone(zone));
    UErrorCode status = U_ZERO_ERROR;
    auto format = std::make_unique<icu::SimpleDateFormat>(fromUTF8(pattern), locale, status);
    if (U_FAILURE(status)) {
        return entry;
    }
    // Gregorian in every locale, and proleptic so that early dates agree with VLXCalendar and
    // VLXDate::description (ICU otherwise switches to the Julian calendar before 1582).
    auto calendar = std::make_unique<icu::GregorianCalendar>(*icuZone, locale, status);
    if (U_FAILURE(status)) {
        return entry;
    }
    calendar->setGregorianChange(std::numeric_limits<double>::lowest(), status);
    calendar->setLenient(false);  // parsing rejects 30 February instead of rolling it over
    format->setCalendar(*calendar);
    if (U_FAILURE(status)) {
        return entry;
    }
    entry.format = std::move(format);
    entry.calendar = std::move(calendar);
    return entry;
}

// The next whole millisecond after (direction +1) or before (-1) a whole `millis`: the next
// integer, or the next double once doubles are all whole but no longer hold every integer.
double stepMilliseconds(double millis, double direction) {
    constexpr double kEveryIntegerBelow = 9007199254740992.0;  // 2^53
    return std::fabs(millis) < kEveryIntegerBelow ? millis + direction
                                                  : std::nextafter(millis, direction * HUGE_VAL);
}

// The date (within the calendar range) in ICU's milliseconds, which ICU rounds down to a whole
// millisecond. Text parses to whole milliseconds ÷ 1000, which a double holds only roughly, so a
// date that is the nearest double to a whole millisecond stands for that millisecond, and any
// other date is rounded down. Working from the exact product (not the rounded one) is what makes
// text read back from a date format to the same text, also where a double holds dates only to a
// millisecond or two (beyond about 140 000 years).
UDate millisecondsOf(VLXDate date) {
    const double seconds = date.timeIntervalSince1970();
    const double product = seconds * 1000.0;
    const double error = std::fma(seconds, 1000.0, -product);  // exactly: product + error
    double below = std::floor(product);
    double above = below + 1.0;
    if (below == product) {
        below = error < 0 ? stepMilliseconds(product, -1.0) : product;
        above = error > 0 ? stepMilliseconds(product, 1.0) : product;
    }
    const auto standsFor = [seconds](double millis) { return millis / 1000.0 == seconds; };
    const auto distance = [&](double millis) { return std::fabs((millis - product) - error); };
    if (standsFor(above) && (!standsFor(below) || distance(above) < distance(below))) {
        return above;
    }
    return below;
}

// No date text needs this many digits. ICU 72 divides by a power of ten that overflows to zero
// when fractional seconds run past 34 digits (SIGFPE), so longer digit counts are refused before
// ICU sees them. All digits count, grouped or not, in any script.
constexpr int kMaximumDigits = 32;

bool hasTooManyDigits(const icu::UnicodeString& text) {
    int digits = 0;
    for (int32_t index = 0; index < text.length(); index = text.moveIndex32(index, 1)) {
        if (u_isdigit(text.char32At(index)) && ++digits > kMaximumDigits) {
            return true;
        }
    }
    return false;
}

// Reads the whole of `input` into a copy of the entry's calendar (parsing a zone name re-zones
// the calendar it parses into, and the cached one must stay intact).
std::optional<UDate> parseWhole(Entry& entry, const icu::UnicodeString& input, bool lenient) {
    std::unique_ptr<icu::Calendar> calendar(entry.calendar->clone());
    if (!calendar) {
        return std::nullopt;
    }
    calendar->clear();
    calendar->setLenient(lenient);
    icu::ParsePosition position(0);
    entry.format->parse(input, *calendar, position);
    if (position.getErrorIndex() >= 0 || position.getIndex() != input.length()) {
        return std::nullopt;
    }
    UErrorCode status = U_ZERO_ERROR;
    const UDate millis = calendar->getTime(status);
    if (U_FAILURE(status)) {
        return std::nullopt;
    }
    return millis;
}

icu::UnicodeString formatted(Entry& entry, UDate millis) {
    icu::UnicodeString text;
    UErrorCode status = U_ZERO_ERROR;
    entry.calendar->setTime(millis, status);
    if (U_FAILURE(status)) {
        return text;
    }
    icu::FieldPosition position(icu::FieldPosition::DONT_CARE);
    entry.format->format(*entry.calendar, text, position);
    return text;
}

class FormatterCache {
public:
    // Runs `body(entry)` with the cached formatter of the key, under the cache's lock.
    template <class Body>
    auto with(std::string_view pattern, const VLXTimeZone& zone, std::string_view localeId,
              Body&& body) {
        std::lock_guard lock(m_mutex);
        if (m_capacity == 0) {
            Entry entry = makeEntry(pattern, zone, localeId);
            return body(entry);
        }
        // Each part is preceded by its length, so no text of a part (separators included) can
        // make two different requests share a key.
        m_key.clear();
        appendPart(pattern);
        appendPart(zone.name());
        appendPart(localeId);
        auto found = m_index.find(m_key);
        if (found != m_index.end()) {
            m_entries.splice(m_entries.begin(), m_entries, found->second);
            return body(found->second->second);
        }
        while (m_entries.size() >= m_capacity) {
            evictLast();
        }
        m_entries.emplace_front(m_key, makeEntry(pattern, zone, localeId));
        m_index.emplace(m_key, m_entries.begin());
        return body(m_entries.front().second);
    }

    void setCapacity(std::size_t capacity) {
        std::lock_guard lock(m_mutex);
        m_capacity = capacity;
        while (m_entries.size() > m_capacity) {
            evictLast();
        }
    }
    std::size_t capacity() {
        std::lock_guard lock(m_mutex);
        return m_capacity;
    }
    std::size_t count() {
        std::lock_guard lock(m_mutex);
        return m_entries.size();
    }

private:
    void appendPart(std::string_view part) {
        const std::size_t length = part.size();
        m_key.append(reinterpret_cast<const char*>(&length), sizeof length);
        m_key.append(part);
    }

    void evictLast() {
        m_index.erase(m_entries.back().first);
        m_entries.pop_back();
    }

    std::mutex m_mutex;
    std::size_t m_capacity = kDefaultCacheCapacity;
    std::list<std::pair<std::string, Entry>> m_entries;  // most recently used first
    std::unordered_map<std::string, std::list<std::pair<std::string, Entry>>::iterator> m_index;
    std::string m_key;  // reused so that a cache hit allocates nothing
};

FormatterCache& cache() {
    static FormatterCache* shared = new FormatterCache;  // never destroyed: usable during exit
    return *shared;
}

}  // namespace

VLXDateFormatter::VLXDateFormatter() : VLXDateFormatter(std::string()) {}

VLXDateFormatter::VLXDateFormatter(std::string dateFormat, std::optional<VLXTimeZone> timeZone,
                                   std::string localeIdentifier)
    : m_dateFormat(std::move(dateFormat)),
      m_timeZone(timeZone ? std::move(*timeZone) : VLXTimeZone::systemTimeZone()),
      m_localeIdentifier(std::move(localeIdentifier)) {}

void VLXDateFormatter::setTimeZone(std::optional<VLXTimeZone> timeZone) {
    m_timeZone = timeZone ? std::move(*timeZone) : VLXTimeZone::systemTimeZone();
}

std::string VLXDateFormatter::stringFromDate(VLXDate date) const {
    return stringFromDateWithFormat(date, m_dateFormat, m_timeZone, m_localeIdentifier);
}

std::string VLXDateFormatter::stringFromDateWithFormat(VLXDate date, std::string_view pattern,
                                                       const VLXTimeZone& zone,
                                                       std::string_view localeIdentifier) {
    if (pattern.empty() || !date.isInCalendarRange()) {
        return {};
    }
    icu::UnicodeString text;
    cache().with(pattern, zone, localeIdentifier, [&](Entry& entry) {
        if (!entry.format) {
            return;
        }
        UErrorCode status = U_ZERO_ERROR;
        entry.calendar->setTime(millisecondsOf(date), status);
        if (U_FAILURE(status)) {
            return;
        }
        icu::FieldPosition position(icu::FieldPosition::DONT_CARE);
        entry.format->format(*entry.calendar, text, position);
    });
    std::string out;
    text.toUTF8String(out);
    return out;
}

std::optional<VLXDate> VLXDateFormatter::dateFromString(std::string_view text) const {
    if (m_dateFormat.empty() || text.empty()) {
        return std::nullopt;
    }
    const icu::UnicodeString input = fromUTF8(text);
    if (hasTooManyDigits(input)) {
        return std::nullopt;
    }
    std::optional<VLXDate> result;
    cache().with(m_dateFormat, m_timeZone, m_localeIdentifier, [&](Entry& entry) {
        if (!entry.format) {
            return;
        }
        std::optional<UDate> millis = parseWhole(entry, input, false);
        if (!millis) {
            // ICU's strict calendar refuses fields beyond about ±144 000 years (2^52 ms) that
            // it formats itself. A lenient reading is accepted when it formats back to exactly
            // the text, which still rejects rolled-over fields such as 30 February.
            millis = parseWhole(entry, input, true);
            if (millis && formatted(entry, *millis) != input) {
                millis.reset();
            }
        }
        if (!millis) {
            return;
        }
        const VLXDate date = VLXDate::dateWithTimeIntervalSince1970(*millis / 1000.0);
        if (date.isInCalendarRange()) {
            result = date;
        }
    });
    return result;
}

void VLXDateFormatter::setCacheCapacity(std::size_t capacity) {
    cache().setCapacity(capacity);
}

std::size_t VLXDateFormatter::cacheCapacity() {
    return cache().capacity();
}

std::size_t VLXDateFormatter::cachedFormatterCount() {
    return cache().count();
}
