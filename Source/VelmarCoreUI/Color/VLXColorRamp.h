#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <VelmarCoreUI/Color/VLXColorRampInterval.h>
#include <VelmarCoreUI/Color/VLXColorRampIntervalRange.h>
#include <VelmarCoreUI/Color/VLXColorStop.h>
#include <VelmarCoreUI/Platform/Foundation/VLXObject.h>
#include <VelmarCoreUI/Platform/Foundation/VLXTypes.h>
#include <VelmarCoreUI/Platform/Primitives/VLXColor.h>

/// Upper bound on the intervals one ramp generates. Stops whose steps add up to more describe
/// no ramp anyone can draw: `generateIntervalsFromStops` then returns no intervals rather than
/// exhausting memory.
inline constexpr VLXUInteger VLXColorRampMaximumIntervals = 1'000'000;

/// Maps values to colours and labels for legends and scales: a list of colour stops becomes a
/// flat list of evenly spaced intervals, each with an interpolated colour and, where the
/// labelling rules allow, a label.
///
/// Between stop P and the next stop S there are S.totalSteps intermediate values. Optional
/// colour ranges choose the spacing values snap to; optional label ranges the spacing of
/// labelled values ("~"-ranges count intervals instead).
///
/// The intervals are generated once and cached: changing the stops after `intervals()` has
/// returned a non-empty list does not change what it returns.
class VLX_EXPORT VLXColorRamp : public VLXObject {
public:
    using Stops = std::vector<std::shared_ptr<VLXColorStop>>;
    using Intervals = std::vector<std::shared_ptr<VLXColorRampInterval>>;
    using Ranges = std::vector<std::shared_ptr<VLXColorRampIntervalRange>>;

    /// No stops, value labels on.
    static std::shared_ptr<VLXColorRamp> create();
    /// The given stops in order (null entries are skipped), value labels on.
    static std::shared_ptr<VLXColorRamp> create(Stops colorStops);

    // --- stops (none of these clears the cached intervals) ------------------------------------

    /// Appends a stop; a null stop is ignored.
    void addStop(std::shared_ptr<VLXColorStop> stop);
    /// Appends the stops in order; null entries are ignored.
    void addStops(const Stops& stops);
    /// Removes every occurrence of this very stop.
    void removeStop(const std::shared_ptr<VLXColorStop>& stop);
    void removeAllStops();

    /// Creates, appends and returns a stop with no label and alpha 1.
    std::shared_ptr<VLXColorStop> addStopWithColor(std::optional<VLXColor> color, VLXUInteger steps,
                                                   double value);
    std::shared_ptr<VLXColorStop> addStopWithColor(std::optional<VLXColor> color, VLXUInteger steps,
                                                   double value, std::optional<std::string> label);
    std::shared_ptr<VLXColorStop> addStopWithColor(std::optional<VLXColor> color, VLXUInteger steps,
                                                   double value, std::optional<std::string> label,
                                                   double alpha);

    /// The stops in insertion order.
    const Stops& mutableStops() const { return m_mutableStops; }
    /// Replaces the stops (null entries are skipped); the cache is kept.
    void setMutableStops(Stops stops);
    /// A copy of the stops.
    Stops stops() const { return m_mutableStops; }

    // --- intervals -------------------------------------------------------------------------

    /// The cached intervals when there are any; otherwise generates, caches and returns them (so
    /// an empty result is generated again on every call).
    const Intervals& intervals();
    const Intervals& cachedIntervals() const { return m_cachedIntervals; }
    void setCachedIntervals(Intervals intervals) { m_cachedIntervals = std::move(intervals); }

    /// 0 without stops, else the number of stops plus the steps of every stop but the first
    /// (saturating at the largest VLXInteger).
    VLXInteger totalIntervals() const;

    /// Builds the intervals from the current stops, ignoring the cache. Empty with fewer than 2
    /// stops or more than `VLXColorRampMaximumIntervals` intervals.
    Intervals generateIntervalsFromStops() const;

    /// RGB blend of two colours at `position` (not clamped; NaN gives NaN components), opaque:
    /// 0 gives `from`'s components, 1 `to`'s, in between a + p (b − a) from the smaller end. A
    /// missing colour reads 0 for red, green and blue, so it blends as black; a colour of
    /// another model reads -1.0.
    VLXColor interpolatedColorFromColor(const std::optional<VLXColor>& from,
                                        const std::optional<VLXColor>& to, double position) const;

    // --- labelling -------------------------------------------------------------------------

    bool includeValueLabels() const { return m_includeValueLabels; }
    void setIncludeValueLabels(bool include) { m_includeValueLabels = include; }
    /// Ranges choosing the rounding interval; empty = none.
    const Ranges& colorIntervalRanges() const { return m_colorIntervalRanges; }
    void setColorIntervalRanges(Ranges ranges) { m_colorIntervalRanges = std::move(ranges); }
    /// Ranges choosing the label interval; empty = none.
    const Ranges& labelIntervalRanges() const { return m_labelIntervalRanges; }
    void setLabelIntervalRanges(Ranges ranges) { m_labelIntervalRanges = std::move(ranges); }

    /// "<VLXColorRamp: 0x…> {stops = n; intervals = m}".
    std::string description() const override;

protected:
    VLXColorRamp() = default;
    void init() override;
    virtual void initWithColorStops(Stops colorStops);

private:
    Stops m_mutableStops;
    Intervals m_cachedIntervals;
    bool m_includeValueLabels = true;
    Ranges m_colorIntervalRanges;
    Ranges m_labelIntervalRanges;
};
