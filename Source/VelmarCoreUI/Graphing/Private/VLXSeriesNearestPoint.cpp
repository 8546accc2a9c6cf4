#include <VelmarCoreUI/Graphing/Private/VLXSeriesNearestPoint.h>

#include <cfloat>
#include <cmath>

namespace vlx::detail {

std::optional<std::size_t> nearestPointByWalk(std::span<const VLXSeriesPoint> points, double value,
                                              VLXInteger axis, VLXGraphSeriesRange range) {
    const std::size_t count = points.size();
    if (count < 2) {
        return std::nullopt;
    }
    const double last = seriesCoordinate(points[count - 1], axis);
    const double second = seriesCoordinate(points[count - 2], axis);
    std::optional<std::size_t> result;
    double distance = DBL_MAX;
    for (std::size_t i = 0; i < count; ++i) {
        const double coordinate = seriesCoordinate(points[i], axis);
        if (coordinate == value) {
            return i;
        }
        const double e = std::fabs(value - coordinate);
        if (value > range.max) {
            const double spacing = std::fabs(last - second);
            result = e > spacing ? std::nullopt : std::optional<std::size_t>(i);
        } else if (distance > e) {
            result = i;
        }
        // Every point's distance replaces the running one, not only smaller ones.
        distance = e;
    }
    return result;
}

std::optional<std::size_t> nearestPointInSorted(std::span<const VLXSeriesPoint> points,
                                                double value, VLXInteger axis,
                                                VLXGraphSeriesRange range) {
    const std::size_t count = points.size();
    if (count < 2 || std::isnan(value)) {
        // A NaN value matches nothing and no distance to it is smaller than another.
        return std::nullopt;
    }
    auto coordinate = [&](std::size_t i) { return seriesCoordinate(points[i], axis); };
    auto distanceAt = [&](std::size_t i) { return std::fabs(value - coordinate(i)); };

    // First index whose coordinate is not below the value.
    std::size_t low = 0;
    std::size_t high = count;
    while (low < high) {
        const std::size_t mid = low + (high - low) / 2;
        if (coordinate(mid) < value) {
            low = mid + 1;
        } else {
            high = mid;
        }
    }
    const std::size_t above = low;
    if (above < count && coordinate(above) == value) {
        return above;  // the walk stops at the first exact match
    }
    if (value > range.max) {
        // Beyond the range only the last point's distance decides.
        const double spacing = std::fabs(coordinate(count - 1) - coordinate(count - 2));
        return distanceAt(count - 1) > spacing ? std::nullopt
                                               : std::optional<std::size_t>(count - 1);
    }
    // The walk keeps the last point whose distance is below its predecessor's. Distances fall
    // (weakly) up to the value and rise (weakly) after it, so that point is either the first one
    // above the value or the first of the closing run of equal distances below it.
    if (above < count) {
        const double previous = above == 0 ? DBL_MAX : distanceAt(above - 1);
        if (previous > distanceAt(above)) {
            return above;
        }
    }
    if (above == 0) {
        return std::nullopt;
    }
    const double closing = distanceAt(above - 1);
    low = 0;
    high = above - 1;
    while (low < high) {
        const std::size_t mid = low + (high - low) / 2;
        if (distanceAt(mid) <= closing) {
            high = mid;
        } else {
            low = mid + 1;
        }
    }
    if (low > 0) {
        return low;
    }
    return DBL_MAX > distanceAt(0) ? std::optional<std::size_t>(0) : std::nullopt;
}

}  // namespace vlx::detail
