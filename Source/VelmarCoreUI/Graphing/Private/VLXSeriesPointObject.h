#pragma once

#include <memory>
#include <string>
#include <string_view>

#include <VelmarCoreUI/Graphing/VLXSeriesPoint.h>
#include <VelmarCoreUI/Platform/Foundation/VLXKeyValueObject.h>
#include <VelmarCoreUI/Platform/Foundation/VLXObject.h>

namespace vlx::detail {

/// A series point boxed as a data element (`VLXSeriesPoint::value()`). Immutable like every
/// value: the item copies the point when it derives its points.
class SeriesPointObject : public VLXObject, public VLXKeyValueObject {
public:
    static std::shared_ptr<SeriesPointObject> create(VLXSeriesPoint point);
    const VLXSeriesPoint& point() const { return m_point; }

    std::string className() const override;
    std::string description() const override;
    bool respondsToKey(std::string_view key) const override;
    VLXValue valueForKey(std::string_view key) const override;

protected:
    explicit SeriesPointObject(VLXSeriesPoint point);

private:
    VLXSeriesPoint m_point;
};

/// The point boxed in `object`, or null when it is no boxed point.
const VLXSeriesPoint* seriesPointOf(const VLXObject& object);

}  // namespace vlx::detail
