#include <VelmarCoreUI/Graphing/VLXGraphSeries.h>

#include <algorithm>
#include <cfloat>
#include <cmath>

VLXGraphSeriesDelegate::~VLXGraphSeriesDelegate() = default;

VLXGraphSeries::VLXGraphSeries() = default;

std::shared_ptr<VLXGraphSeries> VLXGraphSeries::create() {
    return makeInitialized<VLXGraphSeries>();
}

void VLXGraphSeries::init() {
    VLXObject::init();
    m_mutableItems.clear();
    m_containsTimeBasedData = true;
    m_roundingTimeInterval = 3600.0;
}

void VLXGraphSeries::addSeriesItem(const std::shared_ptr<VLXSeriesItem>& item) {
    if (!item) {
        return;
    }
    const bool present = std::any_of(
        m_mutableItems.begin(), m_mutableItems.end(),
        [&](const std::shared_ptr<VLXSeriesItem>& e) { return e && e->isEqual(*item); });
    if (!present) {
        m_mutableItems.push_back(item);
    }
}

void VLXGraphSeries::addSeriesItems(const Items& items) {
    for (const auto& item : items) {
        addSeriesItem(item);
    }
}

void VLXGraphSeries::removeSeriesItem(const std::shared_ptr<VLXSeriesItem>& item) {
    if (!item) {
        return;
    }
    // Keep the item alive while comparing: it may be held only by this collection.
    const std::shared_ptr<VLXSeriesItem> keep = item;
    std::erase_if(m_mutableItems,
                  [&](const std::shared_ptr<VLXSeriesItem>& e) { return e && e->isEqual(*keep); });
}

void VLXGraphSeries::loadSeriesDataWithCompletion(std::function<void()> /*completion*/) {}

void VLXGraphSeries::cancelLoading() {}

VLXGraphSeriesRange VLXGraphSeries::rangeForAxis(VLXGraphAxisType axis) const {
    return rangeForAllSeriesForAxis(axis);
}

double VLXGraphSeries::valueIntervalForAxis(VLXGraphAxisType /*axis*/) const {
    double largest = 0;
    for (const auto& item : m_mutableItems) {
        if (item && item->interval() > largest) {
            largest = item->interval();
        }
    }
    return largest;
}

std::optional<VLXSeriesPointHandle> VLXGraphSeries::closestPointForAllSeriesToValue(
    double value, VLXGraphAxisType axis) const {
    double best = DBL_MAX;
    std::optional<VLXSeriesPointHandle> result;
    // By index: an item is free to be anything, but the collection is not edited from here.
    for (std::size_t i = 0; i < m_mutableItems.size(); ++i) {
        const std::shared_ptr<VLXSeriesItem> item = m_mutableItems[i];
        if (!item) {
            continue;
        }
        std::optional<VLXSeriesPointHandle> point = item->closestPointToValue(value, axis);
        if (!point) {
            continue;
        }
        const double coordinate = axis == VLXGraphAxisTypeY ? point->y() : point->x();
        const double distance = std::fabs(coordinate - value);
        if (distance < best) {
            best = distance;
            result = std::move(point);
        }
    }
    return result;
}

bool VLXGraphSeries::containsData() const {
    return std::any_of(
        m_mutableItems.begin(), m_mutableItems.end(),
        [](const std::shared_ptr<VLXSeriesItem>& e) { return e && e->containsData(); });
}

VLXGraphSeriesRange VLXGraphSeries::rangeForAllSeriesForAxis(VLXGraphAxisType axis) const {
    const double lowStart = DBL_MAX;
    const double highStart = DBL_MIN;
    double low = lowStart;
    double high = highStart;
    for (std::size_t i = 0; i < m_mutableItems.size(); ++i) {
        const std::shared_ptr<VLXSeriesItem> item = m_mutableItems[i];
        if (!item) {
            continue;
        }
        const VLXGraphSeriesRange range = item->rangeForAxis(axis);
        // std::min / std::max keep the running bound when the item's is NaN.
        low = std::min(low, range.min);
        high = std::max(high, range.max);
    }
    const double fallback = high == highStart ? 0 : high - 1;
    if (low == lowStart) {
        low = fallback;
    }
    if (high == highStart) {
        high = low + 1;
    } else if (!(high > low)) {
        high = low + 1;
    }
    return {low, high};
}

VLXGraphSeriesRange VLXGraphSeries::scaleForMin(double /*min*/, double /*max*/) const {
    return {0, 1};
}
