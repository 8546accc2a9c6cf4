#include <VelmarCoreUI/Platform/Foundation/VLXDate.h>

#include <chrono>
#include <cmath>
#include <cstdint>
#include <ostream>

#include <VelmarCoreUI/Platform/Foundation/VLXStringFormat.h>

namespace {

struct CivilDate {
    std::int64_t year;
    int month;  // 1…12
    int day;    // 1…31
};

// Proleptic Gregorian date of a day count since 1970-01-01 (H. Hinnant's days-to-civil
// algorithm). Exact for every count the calendar range produces, with no overflow.
CivilDate civilFromDays(std::int64_t days) {
    const std::int64_t z = days + 719468;
    const std::int64_t era = (z >= 0 ? z : z - 146096) / 146097;
    const std::int64_t dayOfEra = z - era * 146097;
    const std::int64_t yearOfEra =
        (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const std::int64_t shiftedMonth = (5 * dayOfYear + 2) / 153;  // March = 0
    const int day = static_cast<int>(dayOfYear - (153 * shiftedMonth + 2) / 5 + 1);
    const int month = static_cast<int>(shiftedMonth < 10 ? shiftedMonth + 3 : shiftedMonth - 9);
    const std::int64_t year = yearOfEra + era * 400 + (month <= 2 ? 1 : 0);
    return {year, month, day};
}

}  // namespace

VLXDate VLXDate::date() {
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return VLXDate(std::chrono::duration<double>(sinceEpoch).count());
}

std::string VLXDate::description() const {
    if (std::isnan(m_seconds)) {
        return "invalid date (nan)";
    }
    if (std::isinf(m_seconds)) {
        return m_seconds > 0 ? "invalid date (inf)" : "invalid date (-inf)";
    }
    if (!isInCalendarRange()) {
        return VLXStringWithFormat("date out of range (%g)", m_seconds);
    }
    // In range, so the whole seconds fit an int64 exactly.
    const auto whole = static_cast<std::int64_t>(std::floor(m_seconds));
    std::int64_t days = whole / 86400;
    std::int64_t secondOfDay = whole % 86400;
    if (secondOfDay < 0) {
        secondOfDay += 86400;
        days -= 1;
    }
    const CivilDate civil = civilFromDays(days);
    const int hour = static_cast<int>(secondOfDay / 3600);
    const int minute = static_cast<int>(secondOfDay / 60 % 60);
    const int second = static_cast<int>(secondOfDay % 60);
    const char* sign = civil.year < 0 ? "-" : "";
    const long long absoluteYear = civil.year < 0 ? -civil.year : civil.year;
    return VLXStringWithFormat("%s%04lld-%02d-%02d %02d:%02d:%02d +0000", sign, absoluteYear,
                               civil.month, civil.day, hour, minute, second);
}

std::ostream& operator<<(std::ostream& os, const VLXDate& date) {
    return os << date.description();
}
