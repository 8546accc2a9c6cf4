#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <optional>
#include <random>
#include <vector>

#include <VelmarCoreUI/Graphing/Private/VLXSeriesNearestPoint.h>
#include <VelmarCoreUI/Graphing/VLXSeriesItem.h>

#include "GraphingTestSupport.h"

namespace {

std::optional<std::size_t> indexOf(const std::optional<VLXSeriesPointHandle>& handle) {
    return handle ? std::optional<std::size_t>(handle->index) : std::nullopt;
}

std::shared_ptr<VLXSeriesItem> itemWithX(const std::vector<double>& xs) {
    std::vector<VLXSeriesPoint> points;
    for (std::size_t i = 0; i < xs.size(); ++i) {
        points.push_back({xs[i], static_cast<double>(i)});
    }
    auto item = VLXSeriesItem::create();
    item->setPoints(std::move(points));
    return item;
}

}  // namespace

TEST(SeriesItemNearestPoint, WalkResults) {
    // Fewer than two points: nothing.
    EXPECT_FALSE(itemWithX({})->closestPointToValue(0, 0));
    EXPECT_FALSE(itemWithX({5})->closestPointToValue(5, 0));

    auto sorted = itemWithX({0, 10, 20, 30});
    EXPECT_EQ(indexOf(sorted->closestPointToValue(12, 0)), 1u);
    EXPECT_EQ(indexOf(sorted->closestPointToValue(16, 0)), 2u);
    // A tie keeps the earlier point: the later one is not strictly closer.
    EXPECT_EQ(indexOf(sorted->closestPointToValue(15, 0)), 1u);
    EXPECT_EQ(indexOf(sorted->closestPointToValue(-100, 0)), 0u);
    EXPECT_EQ(indexOf(sorted->closestPointToValue(20, 0)), 2u);
    // Beyond the upper end (30) only the last spacing counts: within 10 of the last point.
    EXPECT_EQ(indexOf(sorted->closestPointToValue(39, 0)), 3u);
    EXPECT_EQ(indexOf(sorted->closestPointToValue(40, 0)), 3u);
    EXPECT_FALSE(sorted->closestPointToValue(40.5, 0));
    EXPECT_FALSE(sorted->closestPointToValue(NAN, 0));
    EXPECT_FALSE(sorted->closestPointToValue(INFINITY, 0));
    // The query fills the cache it reads.
    EXPECT_EQ(sorted->xAxisDataRange().max, 30);

    // Unsorted data: the last point closer than its predecessor wins, not the nearest.
    auto unsorted = itemWithX({0, 10, 1, 50, 40});
    EXPECT_EQ(indexOf(unsorted->closestPointToValue(9, 0)), 4u);
    // Duplicates: the first of an exact match, the first of a closing run otherwise.
    auto duplicated = itemWithX({1, 2, 2, 2, 5});
    EXPECT_EQ(indexOf(duplicated->closestPointToValue(2, 0)), 1u);
    EXPECT_EQ(indexOf(duplicated->closestPointToValue(3, 0)), 1u);
    EXPECT_EQ(indexOf(duplicated->closestPointToValue(4, 0)), 4u);

    // Any non-zero axis reads y; y here is 0, 1, 2, 3.
    EXPECT_EQ(indexOf(sorted->closestPointToValue(2.2, 1)), 2u);
    EXPECT_EQ(indexOf(sorted->closestPointToValue(2.2, -3)), 2u);
}

TEST(SeriesItemNearestPoint, HandlesNameOnePointOfOneSet) {
    auto item = VLXSeriesItem::create();
    item->setData(VLXValue::Array{pair(0, 5), pair(1, 6), pair(2, 7)});
    const auto first = item->closestPointToValue(1.2, 0);
    ASSERT_TRUE(first);
    EXPECT_EQ(first->item.lock(), item);
    EXPECT_EQ(first->y(), 6);
    EXPECT_EQ(item->closestPointToValue(0.9, 0), first);  // the same point found again
    EXPECT_EQ(item->pointForHandle(*first), (VLXSeriesPoint{1, 6}));

    // Appending keeps the set; assigning data starts a new one.
    item->appendData(VLXValue(VLXValue::Array{pair(3, 8)}));
    EXPECT_EQ(item->closestPointToValue(1.2, 0), first);
    item->setData(VLXValue::Array{pair(0, 5), pair(1, 6), pair(2, 7)});
    EXPECT_NE(item->closestPointToValue(1.2, 0), first);
    EXPECT_FALSE(item->pointForHandle(*first));
}

// The logarithmic search against the literal walk, on sorted, unsorted, duplicated and
// NaN-bearing data, for values at, between, below and beyond the points.
TEST(SeriesItemNearestPoint, FastPathMatchesTheWalk) {
    std::mt19937_64 random(20261122);
    std::uniform_real_distribution<double> unit(0, 1);
    int fastQueries = 0;
    for (int round = 0; round < 400; ++round) {
        const int shape = round % 4;  // sorted, sorted with duplicates, unsorted, NaN-bearing
        const std::size_t count = 2 + random() % (round < 200 ? 12 : 400);
        std::vector<double> xs(count);
        double x = (unit(random) - 0.5) * 100;
        for (auto& value : xs) {
            const double kind = unit(random);
            x += shape == 1 && kind < 0.4 ? 0 : unit(random) * (kind < 0.1 ? 1e-12 : 10);
            value = x;
        }
        if (shape == 2) {
            std::shuffle(xs.begin(), xs.end(), random);
        } else if (shape == 3) {
            xs[random() % count] = NAN;
        }
        if (round % 7 == 0) {
            // Huge magnitudes, where distances overflow or collapse when rounded.
            for (auto& value : xs) {
                value = std::isnan(value) ? value : value * 1e306;
            }
        }
        auto item = itemWithX(xs);
        // y range too: the y coordinates 0, 1, 2 … are sorted.
        for (const VLXGraphAxisType axis : {VLXGraphAxisTypeX, VLXGraphAxisTypeY}) {
            const VLXGraphSeriesRange range = item->rangeForAxis(axis);
            const bool finite =
                std::all_of(xs.begin(), xs.end(), [](double v) { return std::isfinite(v); });
            if (axis == VLXGraphAxisTypeY || (shape < 2 && finite)) {
                ASSERT_TRUE(item->isSortedAlongAxis(axis));
            }
            std::vector<double> queries = {NAN,      INFINITY,  -INFINITY, DBL_MAX,
                                           -DBL_MAX, range.max, range.min};
            for (std::size_t i = 0; i < count; ++i) {
                const double c = axis == 0 ? xs[i] : static_cast<double>(i);
                queries.push_back(c);
                queries.push_back(c + 0.5);
                queries.push_back(std::nextafter(c, -INFINITY));
                queries.push_back(c + unit(random) * 30 - 15);
                queries.push_back(range.max + unit(random) * 20);
            }
            for (const double value : queries) {
                const auto expected =
                    vlx::detail::nearestPointByWalk(item->points(), value, axis, range);
                ASSERT_EQ(indexOf(item->closestPointToValue(value, axis)), expected)
                    << "round " << round << " axis " << axis << " value " << value;
                fastQueries += item->isSortedAlongAxis(axis) ? 1 : 0;
            }
        }
    }
    EXPECT_GT(fastQueries, 10000);
}

TEST(SeriesItemNearestPoint, SortednessFollowsThePoints) {
    auto item = VLXSeriesItem::create();
    item->setData(VLXValue::Array{pair(1, 9), pair(2, 8)});
    EXPECT_TRUE(item->isSortedAlongAxis(VLXGraphAxisTypeX));
    EXPECT_FALSE(item->isSortedAlongAxis(VLXGraphAxisTypeY));
    item->appendData(VLXValue(VLXValue::Array{pair(1.5, 10)}));
    EXPECT_FALSE(item->isSortedAlongAxis(VLXGraphAxisTypeX));
    item->setData(VLXValue::Array{pair(1, 1), pair(INFINITY, 2)});
    EXPECT_FALSE(item->isSortedAlongAxis(VLXGraphAxisTypeX));  // infinities walk
}
