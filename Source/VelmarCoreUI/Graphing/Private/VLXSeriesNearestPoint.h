#pragma once

#include <cstddef>
#include <optional>
#include <span>

#include <VelmarCoreUI/Graphing/VLXGraphSeriesRange.h>
#include <VelmarCoreUI/Graphing/VLXSeriesPoint.h>

namespace vlx::detail {

/// The coordinate a nearest-point query reads: x for axis 0, y for every other axis.
inline double seriesCoordinate(const VLXSeriesPoint& point, VLXInteger axis) {
    return axis == 0 ? point.x : point.y;
}

/// The nearest-point walk as the item defines it, point by point: the index it settles on, or
/// nothing. `range` is the item's range for the axis. O(n).
std::optional<std::size_t> nearestPointByWalk(std::span<const VLXSeriesPoint> points, double value,
                                              VLXInteger axis, VLXGraphSeriesRange range);

/// The same answer in O(log n) for points whose coordinates along the axis are finite and
/// non-decreasing (the caller checks that).
std::optional<std::size_t> nearestPointInSorted(std::span<const VLXSeriesPoint> points,
                                                double value, VLXInteger axis,
                                                VLXGraphSeriesRange range);

}  // namespace vlx::detail
