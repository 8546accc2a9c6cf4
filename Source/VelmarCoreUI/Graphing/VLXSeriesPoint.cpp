#include <VelmarCoreUI/Graphing/VLXSeriesPoint.h>

#include <typeinfo>

#include <VelmarCoreUI/Graphing/Private/VLXSeriesPointObject.h>
#include <VelmarCoreUI/Platform/Foundation/VLXStringFormat.h>

namespace vlx::detail {

SeriesPointObject::SeriesPointObject(VLXSeriesPoint point) : m_point(point) {}

std::shared_ptr<SeriesPointObject> SeriesPointObject::create(VLXSeriesPoint point) {
    return makeInitialized<SeriesPointObject>(point);
}

std::string SeriesPointObject::className() const {
    return "VLXSeriesPoint";
}

std::string SeriesPointObject::description() const {
    return VLXObject::description() + VLXStringWithFormat(" {%g, %g}", m_point.x, m_point.y);
}

bool SeriesPointObject::respondsToKey(std::string_view key) const {
    return key == "x" || key == "y";
}

VLXValue SeriesPointObject::valueForKey(std::string_view key) const {
    if (key == "x") {
        return VLXValue(m_point.x);
    }
    if (key == "y") {
        return VLXValue(m_point.y);
    }
    return VLXValue();
}

const VLXSeriesPoint* seriesPointOf(const VLXObject& object) {
    // An exact type test: it runs for every data element, and a failed cross-cast costs more
    // than reading the element's fields.
    if (typeid(object) == typeid(Constructible<SeriesPointObject>)) {
        return &static_cast<const SeriesPointObject&>(object).point();
    }
    return nullptr;
}

}  // namespace vlx::detail

VLXValue VLXSeriesPoint::value() const {
    return VLXValue(vlx::detail::SeriesPointObject::create(*this));
}

std::optional<VLXSeriesPoint> VLXSeriesPoint::fromValue(const VLXValue& value) {
    if (!value.isObject()) {
        return std::nullopt;
    }
    const VLXSeriesPoint* point = vlx::detail::seriesPointOf(*value.objectValue());
    return point != nullptr ? std::optional<VLXSeriesPoint>(*point) : std::nullopt;
}
