#include <VelmarCoreUI/Core/VLXDateHelpers.h>

#include <VelmarCoreUI/Platform/Foundation/VLXDateFormatter.h>

namespace {

VLXTimeZone zoneOrSystem(std::optional<VLXTimeZone>& zone) {
    return zone ? std::move(*zone) : VLXTimeZone::systemTimeZone();
}

VLXInteger componentOf(VLXCalendarUnit unit, VLXDate date, std::optional<VLXTimeZone>& zone) {
    if (!date.isInCalendarRange()) {
        return VLXUndefinedDateComponent;  // no need to look up a zone
    }
    return VLXCalendar(zoneOrSystem(zone)).component(unit, date);
}

}  // namespace

VLXDate vlx_dateByIgnoringTime(VLXDate date, std::optional<VLXTimeZone> zone) {
    return VLXCalendar(zoneOrSystem(zone)).startOfDayForDate(date).value_or(date);
}

std::string vlx_formattedDateWithFormat(VLXDate date, std::string_view format,
                                        std::optional<VLXTimeZone> zone) {
    if (format.empty() || !date.isInCalendarRange()) {
        return {};
    }
    return VLXDateFormatter::stringFromDateWithFormat(date, format, zoneOrSystem(zone));
}

std::optional<VLXDate> vlx_dateWithYear(VLXInteger year, VLXInteger month, VLXInteger day,
                                        std::optional<VLXTimeZone> zone) {
    return vlx_dateWithYear(year, month, day, 0, 0, 0, std::move(zone));
}

std::optional<VLXDate> vlx_dateWithYear(VLXInteger year, VLXInteger month, VLXInteger day,
                                        VLXInteger hour, VLXInteger minute, VLXInteger second,
                                        std::optional<VLXTimeZone> zone) {
    VLXDateComponents components;
    components.year = year;
    components.month = month;
    components.day = day;
    components.hour = hour;
    components.minute = minute;
    components.second = second;
    return VLXCalendar(zoneOrSystem(zone)).dateFromComponents(components);
}

VLXInteger vlx_year(VLXDate date, std::optional<VLXTimeZone> zone) {
    return componentOf(VLXCalendarUnit::Year, date, zone);
}

VLXInteger vlx_month(VLXDate date, std::optional<VLXTimeZone> zone) {
    return componentOf(VLXCalendarUnit::Month, date, zone);
}

VLXInteger vlx_day(VLXDate date, std::optional<VLXTimeZone> zone) {
    return componentOf(VLXCalendarUnit::Day, date, zone);
}

VLXInteger vlx_hour(VLXDate date, std::optional<VLXTimeZone> zone) {
    return componentOf(VLXCalendarUnit::Hour, date, zone);
}

VLXInteger vlx_minute(VLXDate date, std::optional<VLXTimeZone> zone) {
    return componentOf(VLXCalendarUnit::Minute, date, zone);
}

VLXInteger vlx_second(VLXDate date, std::optional<VLXTimeZone> zone) {
    return componentOf(VLXCalendarUnit::Second, date, zone);
}
