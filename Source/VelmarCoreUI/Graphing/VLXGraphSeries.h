#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include <VelmarCoreUI/Graphing/VLXGraphSeriesRange.h>
#include <VelmarCoreUI/Graphing/VLXSeriesItem.h>
#include <VelmarCoreUI/Graphing/VLXSeriesPoint.h>
#include <VelmarCoreUI/Platform/Foundation/VLXObject.h>
#include <VelmarCoreUI/Platform/Foundation/VLXTypes.h>
#include <VelmarCoreUI/VLXExport.h>

/// What a loading subclass reports to; the collection itself declares and sends nothing.
class VLX_EXPORT VLXGraphSeriesDelegate {
public:
    virtual ~VLXGraphSeriesDelegate();
};

/// The data source of one graph view: an ordered set of series items answering for all of them
/// at once (combined ranges, the largest step, the nearest point across items), and the hook
/// through which data are loaded. Loading and cancelling do nothing here: a subclass that
/// fetches data overrides them and calls the completion, once, on the main thread.
class VLX_EXPORT VLXGraphSeries : public VLXObject {
public:
    using Items = std::vector<std::shared_ptr<VLXSeriesItem>>;

    static std::shared_ptr<VLXGraphSeries> create();
    /// A new series of class T (the receiving class) holding `items` as `addSeriesItems` adds
    /// them.
    template <class T = VLXGraphSeries>
    static std::shared_ptr<T> seriesWithItems(const Items& items) {
        auto series = makeInitialized<T>();
        series->addSeriesItems(items);
        return series;
    }

    /// The backing store, in insertion order (what `addSeriesItem` and friends edit).
    Items& mutableItems() { return m_mutableItems; }
    void setMutableItems(Items items) { m_mutableItems = std::move(items); }
    /// A snapshot of the items: safe to iterate while adding or removing.
    Items items() const { return m_mutableItems; }

    /// Appends the item unless an equal one is present; null is ignored.
    void addSeriesItem(const std::shared_ptr<VLXSeriesItem>& item);
    /// `addSeriesItem` for each in order, so duplicates within `items` are dropped too.
    void addSeriesItems(const Items& items);
    /// Removes every element equal to the item; an absent item is ignored.
    void removeSeriesItem(const std::shared_ptr<VLXSeriesItem>& item);

    /// Does nothing and never calls the completion. Overrides fill or refresh the items, then
    /// call the completion exactly once on the main thread.
    virtual void loadSeriesDataWithCompletion(std::function<void()> completion);
    /// Does nothing; overrides stop a load in progress without calling its completion.
    virtual void cancelLoading();

    /// The same as `rangeForAllSeriesForAxis`.
    VLXGraphSeriesRange rangeForAxis(VLXGraphAxisType axis) const;
    /// The largest `interval` among the items, starting from 0 (the axis is not used).
    double valueIntervalForAxis(VLXGraphAxisType axis) const;
    /// The nearest point across items: each item's own nearest point, compared by its distance
    /// along y for axis 1 and along x for every other axis; ties go to the earlier item.
    std::optional<VLXSeriesPointHandle> closestPointForAllSeriesToValue(
        double value, VLXGraphAxisType axis) const;
    /// True when some item contains data.
    bool containsData() const;
    /// The union of the items' cached ranges, with fallbacks: no items give {0, 1}; a combined
    /// range whose upper bound is not above its lower bound becomes {lo, lo + 1}.
    VLXGraphSeriesRange rangeForAllSeriesForAxis(VLXGraphAxisType axis) const;
    /// {0, 1}, whatever it is given.
    VLXGraphSeriesRange scaleForMin(double min, double max) const;

    /// The caller's statement that x values are times; not read by the graph classes (true).
    bool containsTimeBasedData() const { return m_containsTimeBasedData; }
    void setContainsTimeBasedData(bool value) { m_containsTimeBasedData = value; }
    /// The step a selected time snaps to for display, in seconds (3600).
    double roundingTimeInterval() const { return m_roundingTimeInterval; }
    void setRoundingTimeInterval(double interval) { m_roundingTimeInterval = interval; }
    /// Not retained; the owner clears it.
    VLXGraphSeriesDelegate* delegate() const { return m_delegate; }
    void setDelegate(VLXGraphSeriesDelegate* delegate) { m_delegate = delegate; }

protected:
    VLXGraphSeries();
    void init() override;

private:
    Items m_mutableItems;
    bool m_containsTimeBasedData = true;
    double m_roundingTimeInterval = 3600.0;
    VLXGraphSeriesDelegate* m_delegate = nullptr;
};
