#include <VelmarCoreUI/Graphing/VLXSeriesPoint.h>

#include <cstring>

VLXValue VLXSeriesPoint::value() const {
    return VLXValue::valueWithPoint(VLXPointMake(x, y));
}

std::optional<VLXSeriesPoint> VLXSeriesPoint::fromValue(const VLXValue& value) {
    if (!value.isBoxed() || std::strcmp(value.objCType(), "{CGPoint=dd}") != 0) {
        return std::nullopt;
    }
    const VLXPoint point = value.pointValue();
    return VLXSeriesPoint{point.x, point.y};
}
