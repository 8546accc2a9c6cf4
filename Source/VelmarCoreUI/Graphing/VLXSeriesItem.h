#pragma once

#include <cfloat>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <VelmarCoreUI/Graphing/VLXGraphSeriesRange.h>
#include <VelmarCoreUI/Graphing/VLXSeriesPoint.h>
#include <VelmarCoreUI/Platform/Foundation/VLXDate.h>
#include <VelmarCoreUI/Platform/Foundation/VLXObject.h>
#include <VelmarCoreUI/Platform/Foundation/VLXTypes.h>
#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>
#include <VelmarCoreUI/Platform/Primitives/VLXColor.h>
#include <VelmarCoreUI/VLXExport.h>

/// How y values are transformed while points are derived. Values other than the named ones
/// behave as `VLXSeriesItemModifierNone`.
using VLXSeriesItemModifier = VLXUInteger;
inline constexpr VLXSeriesItemModifier VLXSeriesItemModifierNone = 0;
/// Each y gets the previous derived point's y added: a running total in data order.
inline constexpr VLXSeriesItemModifier VLXSeriesItemModifierCumulative = 1;

/// One plottable series: a titled, styled list of x/y points derived from the host's data.
///
/// `data` is an array of anything the toolkit reads: `VLXRecord`s, other `VLXKeyValueObject`s,
/// JSON objects (dictionaries), boxed `VLXSeriesPoint`s (taken as they are), pairs [x, y], or
/// objects holding a "periods" array read through ".#." key paths. x and y are read by
/// property name (`xAxisPropertyName`, `yAxisPropertyName`) at single precision; dates become
/// seconds since 1970. Set the names and options first and `data` last: points and ranges are
/// derived when a different array is assigned, not when options change.
///
/// Points live in one contiguous array of 16-byte values (`points()` is a span over it); the
/// extents of x and y and whether the points are sorted along each axis are kept up to date as
/// points are added, so ranges cost O(1) and nearest-point queries on sorted data O(log n).
class VLX_EXPORT VLXSeriesItem : public VLXObject {
public:
    using Formatter = std::function<std::string(double)>;

    static std::shared_ptr<VLXSeriesItem> create();

    // --- properties ------------------------------------------------------------------------
    /// Display name (callout, legend); by default the same text as `identifier`.
    const std::string& title() const { return m_title; }
    void setTitle(std::string title) { m_title = std::move(title); }
    /// The caller's key for the item: "series-N" with a random N in 0…999 by default.
    const std::string& identifier() const { return m_identifier; }
    void setIdentifier(std::string identifier) { m_identifier = std::move(identifier); }

    /// The data the points come from: an array value, nil by default. After `appendData` this
    /// is one array of everything assigned and appended (built when first read).
    VLXValue data() const;
    /// Assigning the array already held (the same storage) does nothing. Any other value is
    /// stored, the range caches are emptied and the points derived anew (`seriesData`). A value
    /// that is not an array derives no points.
    void setData(VLXValue data);
    /// Appends the elements of `records` (an array value; anything else is ignored) to `data`,
    /// deriving only their points: the same points, extents and caches as assigning the whole
    /// array anew, in time proportional to the appended elements. Handles of existing points
    /// stay valid. When the points were assigned directly or the reading options changed since
    /// the last derivation, everything is derived again so the result still matches.
    void appendData(const VLXValue& records);

    const std::optional<std::string>& xAxisPropertyName() const { return m_xAxisPropertyName; }
    void setXAxisPropertyName(std::optional<std::string> name) {
        m_xAxisPropertyName = std::move(name);
    }
    const std::optional<std::string>& yAxisPropertyName() const { return m_yAxisPropertyName; }
    void setYAxisPropertyName(std::optional<std::string> name) {
        m_yAxisPropertyName = std::move(name);
    }

    /// Rounding step of the y range (1.0).
    double interval() const { return m_interval; }
    void setInterval(double interval) { m_interval = interval; }
    /// Clamp the y range's lower bound at 0 (false).
    bool constrainToPositiveValues() const { return m_constrainToPositiveValues; }
    void setConstrainToPositiveValues(bool value) { m_constrainToPositiveValues = value; }
    /// Dates are reduced to their calendar day (system time zone) before conversion (false).
    bool ignoreTime() const { return m_ignoreTime; }
    void setIgnoreTime(bool value) { m_ignoreTime = value; }
    /// Skip data whose value reads as zero (false); see `seriesData`.
    bool ignoreZeroValues() const { return m_ignoreZeroValues; }
    void setIgnoreZeroValues(bool value) { m_ignoreZeroValues = value; }
    VLXSeriesItemModifier modifier() const { return m_modifier; }
    void setModifier(VLXSeriesItemModifier modifier) { m_modifier = modifier; }

    /// Which renderer draws the item: 0 line, 1 bar; other values get none.
    VLXInteger rendererType() const { return m_rendererType; }
    void setRendererType(VLXInteger type) { m_rendererType = type; }
    const std::optional<VLXColor>& fillColor() const { return m_fillColor; }
    void setFillColor(std::optional<VLXColor> color) { m_fillColor = std::move(color); }
    /// Black by default.
    const std::optional<VLXColor>& strokeColor() const { return m_strokeColor; }
    void setStrokeColor(std::optional<VLXColor> color) { m_strokeColor = std::move(color); }
    double strokeWidth() const { return m_strokeWidth; }
    void setStrokeWidth(double width) { m_strokeWidth = width; }
    double pointRadius() const { return m_pointRadius; }
    void setPointRadius(double radius) { m_pointRadius = radius; }

    /// The derived points in data order.
    std::span<const VLXSeriesPoint> points() const { return m_points; }
    /// Replaces the points (a new set for handles). The range caches are left as they are.
    void setPoints(std::vector<VLXSeriesPoint> points);

    /// Earliest and latest x as dates; set only by `calculateDateRange`.
    const std::optional<VLXDate>& minDate() const { return m_minDate; }
    void setMinDate(std::optional<VLXDate> date) { m_minDate = date; }
    const std::optional<VLXDate>& maxDate() const { return m_maxDate; }
    void setMaxDate(std::optional<VLXDate> date) { m_maxDate = date; }

    const Formatter& formatter() const { return m_formatter; }
    void setFormatter(Formatter formatter) { m_formatter = std::move(formatter); }

    /// Cached extents; {0, 0} means not computed yet.
    VLXGraphSeriesRange xAxisDataRange() const { return m_xAxisDataRange; }
    void setXAxisDataRange(VLXGraphSeriesRange range) { m_xAxisDataRange = range; }
    VLXGraphSeriesRange yAxisDataRange() const { return m_yAxisDataRange; }
    void setYAxisDataRange(VLXGraphSeriesRange range) { m_yAxisDataRange = range; }

    // --- operations ------------------------------------------------------------------------
    /// A new item of the receiver's class (`newInstance`) with, in this order: title, a copy of
    /// the data array (so points are derived with the copy's still unset property names),
    /// property names, interval, constraint, ignoreTime, formatter, renderer type, colours,
    /// stroke width and point radius. Identifier, `ignoreZeroValues` and `modifier` are not
    /// copied.
    std::shared_ptr<VLXSeriesItem> copy() const;

    /// The cached range of axis 0 (x) or of any other axis (y), computed first when empty.
    VLXGraphSeriesRange rangeForAxis(VLXGraphAxisType axis);

    /// The point a walk over the points settles on for `value` along axis 0 (x) or any other
    /// axis (y): the first exact match, else the last point closer than its predecessor; beyond
    /// the range's upper end the last point when within one spacing of the final two, else
    /// nothing. Nothing with fewer than two points. O(log n) when the points are sorted along
    /// the axis (finite, non-decreasing), the literal walk otherwise.
    std::optional<VLXSeriesPointHandle> closestPointToValue(double value, VLXGraphAxisType axis);

    void setValueFormatter(Formatter formatter) { setFormatter(std::move(formatter)); }
    /// The formatter's text, or the value as "%.0f".
    std::string formatValue(double value) const;
    bool containsData() const { return !m_points.empty(); }

    /// Freshly computed extents (the caches are untouched). x: the smallest and largest x,
    /// starting from the largest finite double and the smallest positive normal double (so no
    /// points give {DBL_MAX, DBL_MIN} and all-negative x a max of DBL_MIN), widened by 0.5 each
    /// way when they are equal. NaN coordinates are passed over.
    VLXGraphSeriesRange xDataRange() const;
    /// y: the smallest and largest y rounded out to `interval` (quotients at single precision),
    /// padded by a whole step when already on a step, clamped at 0 with
    /// `constrainToPositiveValues`, widened by a step each way when both bounds meet.
    VLXGraphSeriesRange yDataRange() const;

    /// The points `data` derives to now, without touching the item.
    std::vector<VLXSeriesPoint> seriesData() const;

    /// Seconds since 1970 of `date`, reduced to its calendar day first with `ignoreTime`.
    double timeIntervalForPointValueWithDate(VLXDate date) const;
    /// Sets `minDate` and `maxDate` from the smallest and largest x (NaN x passed over); does
    /// nothing without points (or when every x is NaN).
    void calculateDateRange();

    /// The value at `keyPath` in `object`. Arrays map the path over their elements (nil
    /// results left out, at any nesting depth). A path holding ".#." reads the array under its
    /// first component and maps the second component over it ("periods.#.date"); later
    /// components are ignored; an object that lacks the first component gives nil. Otherwise a
    /// plain dotted key-path read, with dates reduced to their day under `ignoreTime`.
    VLXValue parseKeyPath(std::string_view keyPath, const VLXValue& object) const;

    // --- identity of points ----------------------------------------------------------------
    /// Changes (to a value unique in the process) whenever the points are replaced as a whole.
    std::uint64_t pointsGeneration() const { return m_generation; }
    /// The point a handle names while it belongs to this item's current set of points.
    std::optional<VLXSeriesPoint> pointForHandle(const VLXSeriesPointHandle& handle) const;
    /// Whether the coordinates along axis 0 (x) or any other axis (y) are finite and
    /// non-decreasing, which selects the logarithmic nearest-point search.
    bool isSortedAlongAxis(VLXGraphAxisType axis) const;

protected:
    VLXSeriesItem();
    void init() override;
    /// A new, initialised item of the receiver's class, for `copy`. Subclasses override it.
    virtual std::shared_ptr<VLXSeriesItem> newInstance() const;

private:
    // Running facts about the points, updated as each point is added.
    struct PointStats {
        double minX = DBL_MAX;
        double maxX = DBL_MIN;
        double minY = DBL_MAX;
        double maxY = DBL_MIN;
        bool sortedX = true;
        bool sortedY = true;
        void add(const VLXSeriesPoint& point, const VLXSeriesPoint* previous);
    };
    // What a derivation read the data with; appending with other settings re-derives.
    struct ReadSettings {
        std::optional<std::string> xName;
        std::optional<std::string> yName;
        VLXSeriesItemModifier modifier = 0;
        bool ignoreTime = false;
        bool ignoreZeroValues = false;
        bool operator==(const ReadSettings&) const = default;
    };
    class Deriver;
    friend class Deriver;

    ReadSettings currentSettings() const;
    void deriveAll();
    void startNewGeneration();
    const VLXValue::Array* dataChunkArray(const VLXValue& chunk) const;

    std::string m_title;
    std::string m_identifier;
    // The assigned array and the arrays appended since, joined when `data()` is read.
    mutable std::vector<VLXValue> m_dataChunks;
    std::optional<std::string> m_xAxisPropertyName;
    std::optional<std::string> m_yAxisPropertyName;
    double m_interval = 1.0;
    bool m_constrainToPositiveValues = false;
    bool m_ignoreTime = false;
    bool m_ignoreZeroValues = false;
    VLXSeriesItemModifier m_modifier = VLXSeriesItemModifierNone;
    VLXInteger m_rendererType = 0;
    std::optional<VLXColor> m_fillColor;
    std::optional<VLXColor> m_strokeColor;
    double m_strokeWidth = 2.0;
    double m_pointRadius = 5.0;
    std::vector<VLXSeriesPoint> m_points;
    std::optional<VLXDate> m_minDate;
    std::optional<VLXDate> m_maxDate;
    Formatter m_formatter;
    VLXGraphSeriesRange m_xAxisDataRange;
    VLXGraphSeriesRange m_yAxisDataRange;

    PointStats m_stats;
    std::uint64_t m_generation = 0;
    // Where the last derivation stopped, so appended data continue the same walk.
    bool m_pointsDerived = true;
    ReadSettings m_derivedWith;
    double m_previousY = 0;
    std::size_t m_derivedCount = 0;
};
