#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <VelmarCoreUI/Platform/Foundation/VLXTypes.h>

/// The extent of values along one axis. {0, 0} is the empty range, which also means "not yet
/// computed" throughout the graph classes; a range holding NaN is not empty.
struct VLX_EXPORT VLXGraphSeriesRange {
    double min = 0;
    double max = 0;
};

/// The extents of both axes, in the order the graph view builds it: x range, then y range.
struct VLX_EXPORT VLXGraphSeriesDomain {
    double minX = 0;
    double maxX = 0;
    double minY = 0;
    double maxY = 0;
};

/// The axis selector the graph classes take.
using VLXGraphAxisType = VLXInteger;
inline constexpr VLXGraphAxisType VLXGraphAxisTypeX = 0;
inline constexpr VLXGraphAxisType VLXGraphAxisTypeY = 1;

/// {min, max} as given: no ordering, no validation.
constexpr VLXGraphSeriesRange VLXGraphSeriesRangeMake(double min, double max) {
    return VLXGraphSeriesRange{min, max};
}

/// Exact comparison with 0, so -0.0 counts as 0 and NaN never does.
constexpr bool VLXGraphSeriesRangeIsEmpty(VLXGraphSeriesRange range) {
    return range.min == 0 && range.max == 0;
}

inline constexpr VLXGraphSeriesRange VLXGraphSeriesRangeZero{0, 0};

constexpr VLXGraphSeriesDomain VLXGraphSeriesDomainMake(double minX, double maxX, double minY,
                                                        double maxY) {
    return VLXGraphSeriesDomain{minX, maxX, minY, maxY};
}

constexpr bool VLXGraphSeriesDomainIsEmpty(VLXGraphSeriesDomain domain) {
    return domain.minX == 0 && domain.maxX == 0 && domain.minY == 0 && domain.maxY == 0;
}

inline constexpr VLXGraphSeriesDomain VLXGraphSeriesDomainZero{0, 0, 0, 0};
