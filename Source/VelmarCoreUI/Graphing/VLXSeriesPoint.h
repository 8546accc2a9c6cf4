#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>
#include <VelmarCoreUI/VLXExport.h>

class VLXSeriesItem;

/// One x/y point of a series. A plain 16-byte value: an item keeps its points in one contiguous
/// array and hands them out as a span.
struct VLX_EXPORT VLXSeriesPoint {
    double x = 0;
    double y = 0;

    /// A zeroed point.
    static constexpr VLXSeriesPoint point() { return VLXSeriesPoint{}; }
    static constexpr VLXSeriesPoint pointWithX(double x, double y) { return VLXSeriesPoint{x, y}; }

    /// The point as a data element for a series item: a boxed point
    /// (`VLXValue::valueWithPoint`), which an item takes as is (full precision, no property
    /// names needed).
    VLX_EXPORT VLXValue value() const;
    /// The point held by a boxed point value; nothing for any other value.
    VLX_EXPORT static std::optional<VLXSeriesPoint> fromValue(const VLXValue& value);

    /// Field-wise, so NaN points differ from themselves; identity is the handle's business.
    friend constexpr bool operator==(const VLXSeriesPoint&, const VLXSeriesPoint&) = default;
};

/// A point found by a query (nearest point): which item, which index in its points, and the
/// point's value. Points are values, so this is what stands for "the same point object": two
/// handles are equal when they name the same index of the same set of points of an item.
/// Assigning new data (or new points) to the item starts a new set; appending keeps it.
struct VLX_EXPORT VLXSeriesPointHandle {
    std::weak_ptr<const VLXSeriesItem> item;
    std::size_t index = 0;
    /// Unique in the process for one set of points of one item.
    std::uint64_t generation = 0;
    VLXSeriesPoint point;

    double x() const { return point.x; }
    double y() const { return point.y; }

    friend bool operator==(const VLXSeriesPointHandle& a, const VLXSeriesPointHandle& b) {
        return a.generation == b.generation && a.index == b.index;
    }
};
