#include <gtest/gtest.h>

#include <cfloat>
#include <vector>

#include <VelmarCoreUI/Graphing/VLXGraphSeries.h>

#include "GraphingTestSupport.h"

namespace {

std::shared_ptr<VLXSeriesItem> itemWithPairs(std::vector<std::pair<double, double>> values,
                                             double interval = 1) {
    VLXValue::Array data;
    for (const auto& [x, y] : values) {
        data.push_back(pair(x, y));
    }
    auto item = VLXSeriesItem::create();
    item->setInterval(interval);
    item->setData(VLXValue(std::move(data)));
    return item;
}

}  // namespace

TEST(GraphSeries, NewSeries) {
    auto series = VLXGraphSeries::create();
    EXPECT_TRUE(series->items().empty());
    EXPECT_FALSE(series->containsData());
    EXPECT_EQ(series->rangeForAxis(VLXGraphAxisTypeX).min, 0);
    EXPECT_EQ(series->rangeForAxis(VLXGraphAxisTypeX).max, 1);
    EXPECT_EQ(series->valueIntervalForAxis(VLXGraphAxisTypeY), 0);
    EXPECT_FALSE(series->closestPointForAllSeriesToValue(0, 0));
    EXPECT_EQ(series->roundingTimeInterval(), 3600);
    EXPECT_TRUE(series->containsTimeBasedData());
    EXPECT_EQ(series->delegate(), nullptr);
    EXPECT_EQ(series->scaleForMin(3, 9).min, 0);
    EXPECT_EQ(series->scaleForMin(3, 9).max, 1);

    bool called = false;
    series->loadSeriesDataWithCompletion([&] { called = true; });
    series->cancelLoading();
    EXPECT_FALSE(called);
}

TEST(GraphSeries, ItemsArePresentOnce) {
    auto a = itemWithPairs({{0, 1}});
    auto b = itemWithPairs({{0, 2}});
    auto series = VLXGraphSeries::seriesWithItems({a, b, a, nullptr});
    EXPECT_EQ(series->items(), (VLXGraphSeries::Items{a, b}));
    series->addSeriesItem(b);
    EXPECT_EQ(series->items().size(), 2u);

    // Removing while iterating a snapshot is safe; duplicates pushed by hand all go.
    series->mutableItems().push_back(a);
    for (const auto& item : series->items()) {
        series->removeSeriesItem(item);
    }
    EXPECT_TRUE(series->items().empty());
    series->removeSeriesItem(a);
    series->removeSeriesItem(nullptr);

    // Subclasses get themselves.
    class Loading : public VLXGraphSeries {};
    auto loading = VLXGraphSeries::seriesWithItems<Loading>({a});
    EXPECT_EQ(loading->items().size(), 1u);
}

TEST(GraphSeries, CombinedRanges) {
    // y ranges {0, 10} and {-5, 4} combine to {-5, 10}.
    auto series = VLXGraphSeries::seriesWithItems(
        {itemWithPairs({{0, 0.5}, {1, 9.5}}), itemWithPairs({{2, -4.5}, {3, 3.5}})});
    EXPECT_EQ(series->rangeForAxis(VLXGraphAxisTypeY).min, -5);
    EXPECT_EQ(series->rangeForAxis(VLXGraphAxisTypeY).max, 10);
    EXPECT_EQ(series->rangeForAllSeriesForAxis(VLXGraphAxisTypeX).min, 0);
    EXPECT_EQ(series->rangeForAllSeriesForAxis(VLXGraphAxisTypeX).max, 3);
    EXPECT_TRUE(series->containsData());

    // Every y is 7: {6, 8} for the item and for the series.
    auto flat = itemWithPairs({{0, 7}, {1, 7}});
    EXPECT_EQ(flat->rangeForAxis(VLXGraphAxisTypeY).min, 6);
    auto single = VLXGraphSeries::seriesWithItems({flat});
    EXPECT_EQ(single->rangeForAxis(VLXGraphAxisTypeY).min, 6);
    EXPECT_EQ(single->rangeForAxis(VLXGraphAxisTypeY).max, 8);

    // An item without points reports an inverted x range; alone it falls back to {0, 1}…
    auto empty = VLXSeriesItem::create();
    EXPECT_EQ(VLXGraphSeries::seriesWithItems({empty})->rangeForAxis(0).max, 1);
    EXPECT_FALSE(VLXGraphSeries::seriesWithItems({empty})->containsData());
    // …and beside an all-negative item, whose max is the smallest positive double, the
    // combined upper bound stays at that start value: hi = lo + 1.
    auto negative = itemWithPairs({{-9, 1}, {-4, 2}});
    auto mixed = VLXGraphSeries::seriesWithItems({empty, negative});
    EXPECT_EQ(mixed->rangeForAxis(VLXGraphAxisTypeX).min, -9);
    EXPECT_EQ(mixed->rangeForAxis(VLXGraphAxisTypeX).max, -8);
    // A single value v gives {v, v + 1}: ranges reported through the caches count as they are.
    auto pinned = VLXSeriesItem::create();
    pinned->setXAxisDataRange({4, 4});
    EXPECT_EQ(VLXGraphSeries::seriesWithItems({pinned})->rangeForAxis(0).max, 5);
    // NaN bounds of an item do not spread.
    auto broken = itemWithPairs({{0, 1}, {1, 2}}, 0);
    auto withBroken = VLXGraphSeries::seriesWithItems({broken, flat});
    EXPECT_EQ(withBroken->rangeForAxis(VLXGraphAxisTypeY).min, 6);
    EXPECT_EQ(withBroken->rangeForAxis(VLXGraphAxisTypeY).max, 8);
}

TEST(GraphSeries, LargestStepAndNearestPoint) {
    auto a = itemWithPairs({{0, 0}, {10, 10}, {20, 20}}, 1);
    auto b = itemWithPairs({{4, 100}, {14, 110}}, 5);
    auto c = itemWithPairs({{2, 50}, {12, 50}}, 2);
    auto series = VLXGraphSeries::seriesWithItems({a, b, c});
    EXPECT_EQ(series->valueIntervalForAxis(0), 5);
    EXPECT_EQ(series->valueIntervalForAxis(1), 5);
    auto negativeSteps = VLXGraphSeries::seriesWithItems({itemWithPairs({{0, 0}}, -3)});
    EXPECT_EQ(negativeSteps->valueIntervalForAxis(0), 0);

    // x 13: a gives 10 (3 away), b 14 (1 away), c 12 (1 away): ties go to the earlier item.
    auto best = series->closestPointForAllSeriesToValue(13, 0);
    ASSERT_TRUE(best);
    EXPECT_EQ(best->item.lock(), b);
    EXPECT_EQ(best->x(), 14);
    // Axis 1 compares y; every other axis compares x, while the items read their own axis.
    auto byY = series->closestPointForAllSeriesToValue(48, 1);
    ASSERT_TRUE(byY);
    EXPECT_EQ(byY->item.lock(), c);
    // Beyond every item's range: nothing.
    EXPECT_FALSE(series->closestPointForAllSeriesToValue(1000, 0));
}
