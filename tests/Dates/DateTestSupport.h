#pragma once

#include <cstdlib>
#include <limits>
#include <optional>
#include <string>

#include <VelmarCoreUI/Platform/Foundation/VLXDate.h>
#include <VelmarCoreUI/Platform/Foundation/VLXTimeZone.h>

/// Seconds that have no calendar components: NaN, the infinities, beyond ±1e14.
inline constexpr double kBadSeconds[] = {std::numeric_limits<double>::quiet_NaN(),
                                         std::numeric_limits<double>::infinity(),
                                         -std::numeric_limits<double>::infinity(),
                                         1e15,
                                         -1e15,
                                         1e300};

inline VLXDate at(double seconds) {
    return VLXDate::dateWithTimeIntervalSince1970(seconds);
}

inline VLXTimeZone zoneNamed(const char* name) {
    auto zone = VLXTimeZone::timeZoneWithName(name);
    return zone ? *zone : VLXTimeZone::UTC();
}

/// Sets TZ for one test and puts the previous value back afterwards.
class ScopedTZ {
public:
    explicit ScopedTZ(const char* value) {
        if (const char* old = std::getenv("TZ")) {
            m_old = old;
        }
        setenv("TZ", value, 1);
        VLXTimeZone::resetSystemTimeZone();
    }
    ~ScopedTZ() {
        if (m_old) {
            setenv("TZ", m_old->c_str(), 1);
        } else {
            unsetenv("TZ");
        }
        VLXTimeZone::resetSystemTimeZone();
    }
    ScopedTZ(const ScopedTZ&) = delete;
    ScopedTZ& operator=(const ScopedTZ&) = delete;

private:
    std::optional<std::string> m_old;
};
