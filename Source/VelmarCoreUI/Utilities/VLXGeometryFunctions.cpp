#include <VelmarCoreUI/Utilities/VLXGeometryFunctions.h>

#include <cfloat>
#include <cmath>
#include <numbers>

#include <VelmarCoreUI/Platform/Foundation/VLXNumerics.h>
#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>

namespace {

// roundf in single precision. Doubles beyond the float range would overflow the narrowing, so
// they are sent to the infinity the float detour stands for; NaN and infinities pass through.
double roundThroughFloat(double value) {
    if (std::isfinite(value) && std::fabs(value) > FLT_MAX) {
        return std::copysign(HUGE_VAL, value);
    }
    return vlx::roundf32(value);
}

}  // namespace

VLXRect VLXRectMakeFromSize(VLXSize size) {
    return VLXRect{{0, 0}, size};
}

VLXRect VLXRectSetOriginX(VLXRect r, double x) {
    return VLXRectMake(x, r.minY(), r.width(), r.height());
}

VLXRect VLXRectSetOriginY(VLXRect r, double y) {
    return VLXRectMake(r.minX(), y, r.width(), r.height());
}

VLXRect VLXRectSetOrigin(VLXRect r, VLXPoint origin) {
    return VLXRectMake(origin.x, origin.y, r.width(), r.height());
}

VLXRect VLXRectSetMaxX(VLXRect r, double maxX) {
    return VLXRectMake(maxX - r.width(), r.minY(), r.width(), r.height());
}

VLXRect VLXRectSetMaxY(VLXRect r, double maxY) {
    return VLXRectMake(r.minX(), maxY - r.height(), r.width(), r.height());
}

VLXRect VLXRectSetCenterX(VLXRect r, double centerX) {
    return VLXRectMake(roundThroughFloat(centerX - r.width() * 0.5), r.minY(), r.width(),
                       r.height());
}

VLXRect VLXRectSetCenterY(VLXRect r, double centerY) {
    return VLXRectMake(r.minX(), roundThroughFloat(centerY - r.height() * 0.5), r.width(),
                       r.height());
}

VLXRect VLXRectSetWidth(VLXRect r, double width) {
    return VLXRectMake(r.minX(), r.minY(), width, r.height());
}

VLXRect VLXRectSetHeight(VLXRect r, double height) {
    return VLXRectMake(r.minX(), r.minY(), r.width(), height);
}

VLXRect VLXRectSetSize(VLXRect r, VLXSize size) {
    return VLXRectMake(r.minX(), r.minY(), size.width, size.height);
}

VLXRect VLXRectStretchWidth(VLXRect r, double amount, bool centered) {
    return VLXRectMake(r.minX() - (centered ? amount * 0.5 : 0), r.minY(), r.width() + amount,
                       r.height());
}

VLXRect VLXRectStretchHeight(VLXRect r, double amount, bool centered) {
    return VLXRectMake(r.minX(), r.minY() - (centered ? amount * 0.5 : 0), r.width(),
                       r.height() + amount);
}

VLXRect VLXRectShiftOriginX(VLXRect r, double dx) {
    return VLXRectMake(r.minX() + dx, r.minY(), r.width(), r.height());
}

VLXRect VLXRectShiftOriginY(VLXRect r, double dy) {
    return VLXRectMake(r.minX(), r.minY() + dy, r.width(), r.height());
}

VLXRect VLXRectCenteredInRect(VLXRect r, VLXRect container) {
    return VLXRectMake(container.minX() + (container.width() - r.width()) * 0.5,
                       container.minY() + (container.height() - r.height()) * 0.5, r.width(),
                       r.height());
}

VLXRect VLXRectFromPoints(VLXPoint p1, VLXPoint p2) {
    return VLXRectMake(p1.x, p1.y, p2.x - p1.x, p2.y - p1.y);
}

VLXPoint CGPointGetMidpoint(VLXPoint a, VLXPoint b) {
    return VLXPoint{(a.x + b.x) * 0.5, (a.y + b.y) * 0.5};
}

VLXPoint CGPointCentroidOfPoints(const std::vector<VLXValue>& points) {
    double sumX = 0;
    double sumY = 0;
    for (const VLXValue& value : points) {
        const VLXPoint p = value.pointValue();
        sumX += p.x;
        sumY += p.y;
    }
    // An empty array deliberately divides 0 by 0: (NaN, NaN), no integer conversion involved.
    const auto count = static_cast<double>(points.size());
    return VLXPoint{sumX / count, sumY / count};
}

VLXPoint CGPointCentroidOfPoints(const std::vector<VLXPoint>& points) {
    double sumX = 0;
    double sumY = 0;
    for (const VLXPoint& p : points) {
        sumX += p.x;
        sumY += p.y;
    }
    const auto count = static_cast<double>(points.size());
    return VLXPoint{sumX / count, sumY / count};
}

double VLXPointGetAngle(VLXPoint from, VLXPoint to) {
    double angle = std::atan2(to.y - from.y, to.x - from.x);
    if (angle < 0) {
        angle += 2 * std::numbers::pi;
    }
    return angle;
}

double CGPointGetDistance(VLXPoint a, VLXPoint b) {
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    return std::sqrt(dx * dx + dy * dy);
}
