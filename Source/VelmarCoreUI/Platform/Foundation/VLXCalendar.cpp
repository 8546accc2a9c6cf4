#include <VelmarCoreUI/Platform/Foundation/VLXCalendar.h>

#include <unicode/gregocal.h>
#include <unicode/locid.h>
#include <unicode/timezone.h>

#include <cmath>
#include <limits>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>

namespace {

constexpr double kDay = 86400.0;
// Component values beyond this are refused before they reach ICU's 32-bit fields.
constexpr VLXInteger kMaximumComponent = 1'000'000'000;
// A generous estimate of how far components move a date must stay inside this; ICU itself
// reaches about 1.8e14 s, and results are then checked against the calendar range exactly.
constexpr double kMaximumEstimatedReach = 1.5e14;
// Zones used in one process are few; the bound only protects against hosts that cycle through
// many.
constexpr std::size_t kMaximumCachedCalendars = 64;

// One ICU calendar per zone, reused under a lock: building an ICU calendar costs far more than
// the field computations asked of it.
class CalendarCache {
public:
    // Runs `body(calendar)` with the zone's calendar; false when ICU could not build one.
    template <class Body>
    bool with(const VLXTimeZone& zone, Body&& body) {
        std::lock_guard lock(m_mutex);
        auto found = m_calendars.find(zone.name());
        if (found == m_calendars.end()) {
            auto calendar = makeCalendar(zone);
            if (!calendar) {
                return false;
            }
            if (m_calendars.size() >= kMaximumCachedCalendars) {
                m_calendars.clear();
            }
            found = m_calendars.emplace(zone.name(), std::move(calendar)).first;
        }
        body(*found->second);
        return true;
    }

private:
    static std::unique_ptr<icu::Calendar> makeCalendar(const VLXTimeZone& zone) {
        const auto* icuZone = static_cast<const icu::TimeZone*>(vlx::detail::icuTimeZone(zone));
        UErrorCode status = U_ZERO_ERROR;
        auto calendar =
            std::make_unique<icu::GregorianCalendar>(*icuZone, icu::Locale::getRoot(), status);
        // Proleptic: no switch to the Julian calendar before 1582.
        calendar->setGregorianChange(std::numeric_limits<double>::lowest(), status);
        calendar->setRepeatedWallTimeOption(UCAL_WALLTIME_FIRST);
        calendar->setSkippedWallTimeOption(UCAL_WALLTIME_LAST);
        calendar->setLenient(true);
        if (U_FAILURE(status)) {
            return nullptr;
        }
        return calendar;
    }

    std::mutex m_mutex;
    std::unordered_map<std::string, std::unique_ptr<icu::Calendar>> m_calendars;
};

CalendarCache& calendars() {
    static CalendarCache* shared = new CalendarCache;  // never destroyed: usable during exit
    return *shared;
}

bool componentInBounds(const std::optional<VLXInteger>& value) {
    return !value || (*value >= -kMaximumComponent && *value <= kMaximumComponent);
}

bool allComponentsInBounds(const VLXDateComponents& c) {
    return componentInBounds(c.year) && componentInBounds(c.month) && componentInBounds(c.day) &&
           componentInBounds(c.hour) && componentInBounds(c.minute) && componentInBounds(c.second);
}

double magnitude(const std::optional<VLXInteger>& value, double unit) {
    return value ? std::fabs(static_cast<double>(*value)) * unit : 0.0;
}

// An upper bound of how far the fields reach from the start of year 0 of the count.
double estimatedReach(const VLXDateComponents& c) {
    return magnitude(c.year, 366 * kDay) + magnitude(c.month, 31 * kDay) + magnitude(c.day, kDay) +
           magnitude(c.hour, 3600) + magnitude(c.minute, 60) + magnitude(c.second, 1) +
           magnitude(c.nanosecond, 1e-9);
}

int32_t field(const std::optional<VLXInteger>& value, int32_t fallback) {
    return value ? static_cast<int32_t>(*value) : fallback;  // bounds checked by the caller
}

std::optional<VLXDate> dateInRange(double seconds) {
    const VLXDate date = VLXDate::dateWithTimeIntervalSince1970(seconds);
    return date.isInCalendarRange() ? std::optional<VLXDate>(date) : std::nullopt;
}

}  // namespace

VLXCalendar::VLXCalendar() : m_timeZone(VLXTimeZone::systemTimeZone()) {}

VLXCalendar::VLXCalendar(VLXTimeZone timeZone) : m_timeZone(std::move(timeZone)) {}

std::optional<VLXDateComponents> VLXCalendar::componentsFromDate(VLXDate date) const {
    if (!date.isInCalendarRange()) {
        return std::nullopt;
    }
    const double seconds = date.timeIntervalSince1970();
    const double whole = std::floor(seconds);
    // Within the calendar range the fraction is exact to well below a nanosecond's rounding.
    auto nanosecond = static_cast<VLXInteger>(std::llround((seconds - whole) * 1e9));
    if (nanosecond > 999'999'999) {
        nanosecond = 999'999'999;
    }
    std::optional<VLXDateComponents> result;
    calendars().with(m_timeZone, [&](icu::Calendar& calendar) {
        UErrorCode status = U_ZERO_ERROR;
        calendar.setTime(whole * 1000.0, status);
        VLXDateComponents c;
        c.year = calendar.get(UCAL_EXTENDED_YEAR, status);
        c.month = calendar.get(UCAL_MONTH, status) + 1;
        c.day = calendar.get(UCAL_DATE, status);
        c.hour = calendar.get(UCAL_HOUR_OF_DAY, status);
        c.minute = calendar.get(UCAL_MINUTE, status);
        c.second = calendar.get(UCAL_SECOND, status);
        c.weekday = calendar.get(UCAL_DAY_OF_WEEK, status);
        c.nanosecond = nanosecond;
        if (U_SUCCESS(status)) {
            result = c;
        }
    });
    return result;
}

VLXInteger VLXCalendar::component(VLXCalendarUnit unit, VLXDate date) const {
    const auto components = componentsFromDate(date);
    if (!components) {
        return VLXUndefinedDateComponent;
    }
    switch (unit) {
        case VLXCalendarUnit::Year:
            return *components->year;
        case VLXCalendarUnit::Month:
            return *components->month;
        case VLXCalendarUnit::Day:
            return *components->day;
        case VLXCalendarUnit::Hour:
            return *components->hour;
        case VLXCalendarUnit::Minute:
            return *components->minute;
        case VLXCalendarUnit::Second:
            return *components->second;
        case VLXCalendarUnit::Nanosecond:
            return *components->nanosecond;
        case VLXCalendarUnit::Weekday:
            return *components->weekday;
    }
    return VLXUndefinedDateComponent;
}

std::optional<VLXDate> VLXCalendar::dateFromComponents(const VLXDateComponents& c) const {
    if (!allComponentsInBounds(c)) {
        return std::nullopt;
    }
    VLXDateComponents fromEpoch = c;
    if (fromEpoch.year) {
        *fromEpoch.year -= 1970;
    }
    if (estimatedReach(fromEpoch) > kMaximumEstimatedReach) {
        return std::nullopt;
    }
    std::optional<double> millis;
    calendars().with(m_timeZone, [&](icu::Calendar& calendar) {
        calendar.clear();
        calendar.set(UCAL_EXTENDED_YEAR, field(c.year, 1970));
        calendar.set(UCAL_MONTH, field(c.month, 1) - 1);
        calendar.set(UCAL_DATE, field(c.day, 1));
        calendar.set(UCAL_HOUR_OF_DAY, field(c.hour, 0));
        calendar.set(UCAL_MINUTE, field(c.minute, 0));
        calendar.set(UCAL_SECOND, field(c.second, 0));
        calendar.set(UCAL_MILLISECOND, 0);
        UErrorCode status = U_ZERO_ERROR;
        const UDate time = calendar.getTime(status);
        if (U_SUCCESS(status)) {
            millis = time;
        }
    });
    if (!millis) {
        return std::nullopt;
    }
    const double nanoseconds = c.nanosecond ? static_cast<double>(*c.nanosecond) * 1e-9 : 0.0;
    return dateInRange(*millis / 1000.0 + nanoseconds);
}

std::optional<VLXDate> VLXCalendar::dateByAddingComponents(const VLXDateComponents& c,
                                                           VLXDate date) const {
    if (!date.isInCalendarRange() || !allComponentsInBounds(c)) {
        return std::nullopt;
    }
    const double seconds = date.timeIntervalSince1970();
    if (std::fabs(seconds) + estimatedReach(c) > kMaximumEstimatedReach) {
        return std::nullopt;
    }
    const double whole = std::floor(seconds);
    std::optional<double> millis = whole * 1000.0;
    if (c.year || c.month || c.day) {
        millis.reset();
        calendars().with(m_timeZone, [&](icu::Calendar& calendar) {
            UErrorCode status = U_ZERO_ERROR;
            calendar.setTime(whole * 1000.0, status);
            if (c.year) {
                calendar.add(UCAL_EXTENDED_YEAR, field(c.year, 0), status);
            }
            if (c.month) {
                calendar.add(UCAL_MONTH, field(c.month, 0), status);
            }
            if (c.day) {
                calendar.add(UCAL_DATE, field(c.day, 0), status);
            }
            const UDate time = calendar.getTime(status);
            if (U_SUCCESS(status)) {
                millis = time;
            }
        });
        if (!millis) {
            return std::nullopt;
        }
    }
    const double elapsed = static_cast<double>(c.hour.value_or(0)) * 3600 +
                           static_cast<double>(c.minute.value_or(0)) * 60 +
                           static_cast<double>(c.second.value_or(0)) +
                           static_cast<double>(c.nanosecond.value_or(0)) * 1e-9;
    return dateInRange(*millis / 1000.0 + (seconds - whole) + elapsed);
}

std::optional<VLXDate> VLXCalendar::dateByAddingUnit(VLXCalendarUnit unit, VLXInteger value,
                                                     VLXDate date) const {
    VLXDateComponents c;
    switch (unit) {
        case VLXCalendarUnit::Year:
            c.year = value;
            break;
        case VLXCalendarUnit::Month:
            c.month = value;
            break;
        case VLXCalendarUnit::Day:
            c.day = value;
            break;
        case VLXCalendarUnit::Hour:
            c.hour = value;
            break;
        case VLXCalendarUnit::Minute:
            c.minute = value;
            break;
        case VLXCalendarUnit::Second:
            c.second = value;
            break;
        case VLXCalendarUnit::Nanosecond:
            c.nanosecond = value;
            break;
        case VLXCalendarUnit::Weekday:
            break;  // not a unit of arithmetic
    }
    return dateByAddingComponents(c, date);
}

std::optional<VLXDate> VLXCalendar::startOfDayForDate(VLXDate date) const {
    if (!date.isInCalendarRange()) {
        return std::nullopt;
    }
    const double whole = std::floor(date.timeIntervalSince1970());
    std::optional<double> millis;
    calendars().with(m_timeZone, [&](icu::Calendar& calendar) {
        UErrorCode status = U_ZERO_ERROR;
        calendar.setTime(whole * 1000.0, status);
        calendar.set(UCAL_HOUR_OF_DAY, 0);
        calendar.set(UCAL_MINUTE, 0);
        calendar.set(UCAL_SECOND, 0);
        calendar.set(UCAL_MILLISECOND, 0);
        const UDate time = calendar.getTime(status);
        if (U_SUCCESS(status)) {
            millis = time;
        }
    });
    return millis ? dateInRange(*millis / 1000.0) : std::nullopt;
}
