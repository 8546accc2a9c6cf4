#include <VelmarCoreUI/Platform/Foundation/VLXTimeZone.h>

#include <unicode/simpletz.h>
#include <unicode/strenum.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <mutex>
#include <ostream>
#include <unordered_map>

#include <VelmarCoreUI/Platform/Foundation/VLXDateFormatter.h>
#include <VelmarCoreUI/Platform/Foundation/VLXStringFormat.h>

namespace vlx::detail {

struct TimeZoneData {
    std::string name;
    std::unique_ptr<const icu::TimeZone> zone;
};

const void* icuTimeZone(const VLXTimeZone& zone) {
    return zone.m_data->zone.get();
}

}  // namespace vlx::detail

namespace {

using vlx::detail::TimeZoneData;

constexpr VLXInteger kMaximumOffset = 18 * 3600;
// No zone identifier comes close; longer names are rejected before reaching ICU or the cache.
constexpr std::size_t kMaximumNameLength = 128;
// Zones are interned so that asking for a name twice shares one ICU zone. The set of names is
// small in practice; the bound only protects against hosts that invent names in a loop.
constexpr std::size_t kMaximumInternedZones = 1024;

std::string toUTF8(const icu::UnicodeString& text) {
    std::string out;
    text.toUTF8String(out);
    return out;
}

struct ZoneRegistry {
    std::mutex mutex;
    std::unordered_map<std::string, std::shared_ptr<const TimeZoneData>> zones;

    std::shared_ptr<const TimeZoneData> find(const std::string& name) {
        std::lock_guard lock(mutex);
        auto it = zones.find(name);
        return it == zones.end() ? nullptr : it->second;
    }
    void insert(const std::string& key, const std::shared_ptr<const TimeZoneData>& data) {
        std::lock_guard lock(mutex);
        if (zones.size() >= kMaximumInternedZones) {
            zones.clear();  // live zones keep their data; only sharing is lost
        }
        zones.emplace(key, data);
    }
};

ZoneRegistry& registry() {
    static ZoneRegistry* shared = new ZoneRegistry;  // never destroyed: usable during exit
    return *shared;
}

std::string offsetName(VLXInteger seconds) {
    if (seconds == 0) {
        return "GMT";
    }
    const char sign = seconds < 0 ? '-' : '+';
    const VLXInteger magnitude = seconds < 0 ? -seconds : seconds;
    const int hours = static_cast<int>(magnitude / 3600);
    const int minutes = static_cast<int>(magnitude / 60 % 60);
    const int rest = static_cast<int>(magnitude % 60);
    if (rest != 0) {
        return VLXStringWithFormat("GMT%c%02d%02d%02d", sign, hours, minutes, rest);
    }
    return VLXStringWithFormat("GMT%c%02d%02d", sign, hours, minutes);
}

std::shared_ptr<const TimeZoneData> fixedOffsetData(VLXInteger seconds) {
    if (seconds < -kMaximumOffset || seconds > kMaximumOffset) {
        return nullptr;
    }
    std::string name = offsetName(seconds);
    if (auto found = registry().find(name)) {
        return found;
    }
    auto zone = std::make_unique<icu::SimpleTimeZone>(static_cast<int32_t>(seconds * 1000),
                                                      icu::UnicodeString::fromUTF8(name));
    auto data = std::make_shared<const TimeZoneData>(TimeZoneData{name, std::move(zone)});
    registry().insert(name, data);
    return data;
}

bool isUnknown(const icu::TimeZone& zone) {
    icu::UnicodeString id;
    zone.getID(id);
    return id == icu::UnicodeString(u"Etc/Unknown");
}

// Wraps a zone ICU produced: system identifiers keep their name, anything else (custom
// "GMT+05:30" ids, hosts' odd TZ strings) becomes the fixed-offset zone of its raw offset.
std::shared_ptr<const TimeZoneData> dataForICUZone(std::unique_ptr<icu::TimeZone> zone,
                                                   const std::string& name) {
    if (!zone || isUnknown(*zone)) {
        return nullptr;
    }
    icu::UnicodeString id;
    zone->getID(id);
    icu::UnicodeString canonical;
    UBool isSystemID = false;
    UErrorCode status = U_ZERO_ERROR;
    icu::TimeZone::getCanonicalID(id, canonical, isSystemID, status);
    if (U_FAILURE(status) || !isSystemID) {
        return fixedOffsetData(zone->getRawOffset() / 1000);
    }
    auto data = std::make_shared<const TimeZoneData>(TimeZoneData{name, std::move(zone)});
    registry().insert(name, data);
    return data;
}

std::shared_ptr<const TimeZoneData> dataForName(std::string_view name) {
    if (name.empty() || name.size() > kMaximumNameLength ||
        name.find('\0') != std::string_view::npos) {
        return nullptr;
    }
    const std::string key(name);
    if (auto found = registry().find(key)) {
        return found;
    }
    const icu::UnicodeString id = icu::UnicodeString::fromUTF8(
        icu::StringPiece(key.data(), static_cast<int32_t>(key.size())));
    std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::createTimeZone(id));
    auto data = dataForICUZone(std::move(zone), key);
    if (data && data->name != key) {
        registry().insert(key, data);  // also remember the spelling that led to a fixed offset
    }
    return data;
}

struct SystemZoneCache {
    std::mutex mutex;
    std::shared_ptr<const TimeZoneData> data;
    std::optional<std::string> tzVariable;
};

SystemZoneCache& systemZoneCache() {
    static SystemZoneCache* cache = new SystemZoneCache;
    return *cache;
}

std::optional<std::string> currentTZVariable() {
    const char* value = std::getenv("TZ");
    return value ? std::optional<std::string>(value) : std::nullopt;
}

std::shared_ptr<const TimeZoneData> zoneFromTZVariable(std::string_view tz) {
    if (!tz.empty() && tz.front() == ':') {
        tz.remove_prefix(1);
    }
    if (tz.empty()) {
        return dataForName("UTC");  // what the C library makes of an empty TZ
    }
    if (auto data = dataForName(tz)) {
        return data;
    }
    // A path into the zone database: ":/usr/share/zoneinfo/Europe/Paris".
    constexpr std::string_view kZoneInfo = "zoneinfo/";
    if (const auto at = tz.rfind(kZoneInfo); at != std::string_view::npos) {
        if (auto data = dataForName(tz.substr(at + kZoneInfo.size()))) {
            return data;
        }
    }
    // A POSIX rule ("<+03>-3", "EST5EDT,M3.2.0,M11.1.0"): let the C library read it and keep
    // its standard offset; the daylight rule is not modelled.
    tzset();
    return fixedOffsetData(-static_cast<VLXInteger>(timezone));
}

std::shared_ptr<const TimeZoneData> detectSystemZone(const std::optional<std::string>& tz) {
    if (tz) {
        if (auto data = zoneFromTZVariable(*tz)) {
            return data;
        }
    }
    std::unique_ptr<icu::TimeZone> host(icu::TimeZone::detectHostTimeZone());
    if (!host || isUnknown(*host)) {
        return dataForName("UTC");
    }
    icu::UnicodeString id;
    host->getID(id);
    auto data = dataForICUZone(std::move(host), toUTF8(id));
    return data ? data : dataForName("UTC");
}

}  // namespace

VLXTimeZone::VLXTimeZone() : VLXTimeZone(UTC()) {}

VLXTimeZone::VLXTimeZone(std::shared_ptr<const TimeZoneData> data) : m_data(std::move(data)) {}

std::optional<VLXTimeZone> VLXTimeZone::timeZoneWithName(std::string_view name) {
    auto data = dataForName(name);
    return data ? std::optional<VLXTimeZone>(VLXTimeZone(std::move(data))) : std::nullopt;
}

std::optional<VLXTimeZone> VLXTimeZone::timeZoneForSecondsFromGMT(VLXInteger seconds) {
    auto data = fixedOffsetData(seconds);
    return data ? std::optional<VLXTimeZone>(VLXTimeZone(std::move(data))) : std::nullopt;
}

VLXTimeZone VLXTimeZone::systemTimeZone() {
    SystemZoneCache& cache = systemZoneCache();
    std::lock_guard lock(cache.mutex);
    auto tz = currentTZVariable();
    if (!cache.data || tz != cache.tzVariable) {
        cache.data = detectSystemZone(tz);
        cache.tzVariable = std::move(tz);
    }
    return VLXTimeZone(cache.data);
}

void VLXTimeZone::resetSystemTimeZone() {
    SystemZoneCache& cache = systemZoneCache();
    std::lock_guard lock(cache.mutex);
    cache.data.reset();
}

VLXTimeZone VLXTimeZone::UTC() {
    // ICU always carries "UTC"; the fallback only guards a broken data file.
    static const std::shared_ptr<const TimeZoneData> utc = [] {
        auto data = dataForName("UTC");
        return data ? data : fixedOffsetData(0);
    }();
    return VLXTimeZone(utc);
}

std::vector<std::string> VLXTimeZone::knownTimeZoneNames() {
    std::vector<std::string> names;
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::StringEnumeration> ids(icu::TimeZone::createEnumeration(status));
    if (U_FAILURE(status) || !ids) {
        return names;
    }
    while (const icu::UnicodeString* id = ids->snext(status)) {
        if (U_FAILURE(status)) {
            break;
        }
        names.push_back(toUTF8(*id));
    }
    std::sort(names.begin(), names.end());
    return names;
}

const std::string& VLXTimeZone::name() const {
    return m_data->name;
}

VLXInteger VLXTimeZone::secondsFromGMTForDate(VLXDate date) const {
    if (!date.isInCalendarRange()) {
        return m_data->zone->getRawOffset() / 1000;
    }
    int32_t raw = 0;
    int32_t dst = 0;
    UErrorCode status = U_ZERO_ERROR;
    m_data->zone->getOffset(date.timeIntervalSince1970() * 1000.0, false, raw, dst, status);
    if (U_FAILURE(status)) {
        return m_data->zone->getRawOffset() / 1000;
    }
    return (static_cast<VLXInteger>(raw) + dst) / 1000;
}

VLXInteger VLXTimeZone::secondsFromGMT() const {
    return secondsFromGMTForDate(VLXDate::date());
}

bool VLXTimeZone::isDaylightSavingTimeForDate(VLXDate date) const {
    if (!date.isInCalendarRange()) {
        return false;
    }
    int32_t raw = 0;
    int32_t dst = 0;
    UErrorCode status = U_ZERO_ERROR;
    m_data->zone->getOffset(date.timeIntervalSince1970() * 1000.0, false, raw, dst, status);
    return U_SUCCESS(status) && dst != 0;
}

std::string VLXTimeZone::abbreviationForDate(VLXDate date) const {
    return VLXDateFormatter::stringFromDateWithFormat(date, "zzz", *this, "en_US");
}

std::string VLXTimeZone::description() const {
    const VLXDate now = VLXDate::date();
    return VLXStringWithFormat("%s (%s) offset %lld", name().c_str(),
                               abbreviationForDate(now).c_str(),
                               static_cast<long long>(secondsFromGMTForDate(now)));
}

std::ostream& operator<<(std::ostream& os, const VLXTimeZone& zone) {
    return os << zone.name();
}
