// vlx-bench-series-table: the graph data model against plain loops doing the same work, one run,
// one line per case. Deriving points from a million records (VLXRecord and parsed JSON) against
// reading the two fields by name into a vector; nearest-point queries on sorted data against the
// literal walk; appending a thousand records against assigning the whole array again. Then the
// heap bytes a million derived points take.
#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include <VelmarCoreUI/Graphing/Private/VLXSeriesNearestPoint.h>
#include <VelmarCoreUI/Graphing/VLXSeriesItem.h>
#include <VelmarCoreUI/Platform/Foundation/VLXRecord.h>
#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>

#include "TableCase.h"

namespace {

constexpr std::size_t kCount = 1'000'000;

std::shared_ptr<VLXSeriesItem> itemReadingXY() {
    auto item = VLXSeriesItem::create();
    item->setXAxisPropertyName(std::string("x"));
    item->setYAxisPropertyName(std::string("y"));
    return item;
}

// Time series as a host hands them over: x increasing, y noisy, plus a label field.
VLXValue::Array makeRecords(std::size_t count, std::size_t first = 0) {
    std::mt19937 random(static_cast<unsigned>(first + 1));
    std::uniform_real_distribution<double> noise(-5, 5);
    VLXValue::Array records;
    records.reserve(count);
    for (std::size_t i = first; i < first + count; ++i) {
        records.emplace_back(VLXRecord::create(
            {{"x", static_cast<double>(i)}, {"y", 50 + noise(random)}, {"label", "sample"}}));
    }
    return records;
}

std::string makeJSON(std::size_t count) {
    std::mt19937 random(11);
    std::uniform_real_distribution<double> noise(-5, 5);
    std::string text = "[";
    char buffer[96];
    for (std::size_t i = 0; i < count; ++i) {
        std::snprintf(buffer, sizeof buffer, "%s{\"x\":%zu,\"y\":%.6f,\"label\":\"sample\"}",
                      i == 0 ? "" : ",", i, 50 + noise(random));
        text += buffer;
    }
    return text + "]";
}

// The simple way: two lookups by name per element into a vector.
std::vector<VLXSeriesPoint> plainLoop(const VLXValue& data) {
    std::vector<VLXSeriesPoint> points;
    points.reserve(data.count());
    for (const auto& element : data.arrayValue()) {
        points.push_back(
            {element.valueForKey("x").doubleValue(), element.valueForKey("y").doubleValue()});
    }
    return points;
}

void deriveCase(const char* name, const VLXValue& data) {
    std::shared_ptr<VLXSeriesItem> item;
    // One untimed pass first: each object resolves its key-value interface on its first
    // lookup, which neither side should pay for the other.
    std::vector<VLXSeriesPoint> sink = plainLoop(data);
    const double ours =
        table::bestMilliseconds([&] { item = itemReadingXY(); }, [&] { item->setData(data); });
    const double baseline =
        table::bestMilliseconds([&] { sink.clear(); }, [&] { sink = plainLoop(data); });
    if (item->points().size() != sink.size()) {
        std::printf("# %s: %zu points against %zu\n", name, item->points().size(), sink.size());
    }
    table::printCase(name, ours, baseline);
}

}  // namespace

int main() {
    {
        const VLXValue records(makeRecords(kCount));
        deriveCase("derive-records-1m", records);
    }
    {
        const VLXValue parsed = VLXValue::fromJSON(makeJSON(kCount));
        deriveCase("derive-json-1m", parsed);
    }

    // A sorted million-point item and a thousand queries spread over and beyond its range.
    VLXValue::Array pairs;
    pairs.reserve(kCount);
    for (std::size_t i = 0; i < kCount; ++i) {
        pairs.emplace_back(VLXValue::Array{static_cast<double>(i) * 0.5, std::sin(i * 0.001)});
    }
    auto sorted = VLXSeriesItem::create();
    sorted->setData(VLXValue(std::move(pairs)));
    std::vector<double> queries;
    std::mt19937 random(3);
    std::uniform_real_distribution<double> where(-1000, kCount * 0.5 + 1000);
    for (int i = 0; i < 1000; ++i) {
        queries.push_back(where(random));
    }
    const VLXGraphSeriesRange range = sorted->rangeForAxis(VLXGraphAxisTypeX);
    std::size_t agree = 0;
    std::size_t checksum = 0;
    const double fast = table::bestMilliseconds(
        [] {},
        [&] {
            for (const double q : queries) {
                const auto handle = sorted->closestPointToValue(q, VLXGraphAxisTypeX);
                checksum += handle ? handle->index : 0;
            }
        });
    const double walk =
        table::bestMilliseconds([] {},
                                [&] {
                                    for (const double q : queries) {
                                        const auto index = vlx::detail::nearestPointByWalk(
                                            sorted->points(), q, VLXGraphAxisTypeX, range);
                                        checksum -= index ? *index : 0;
                                    }
                                });
    for (const double q : queries) {
        const auto handle = sorted->closestPointToValue(q, VLXGraphAxisTypeX);
        const auto index =
            vlx::detail::nearestPointByWalk(sorted->points(), q, VLXGraphAxisTypeX, range);
        agree += (handle ? std::optional<std::size_t>(handle->index) : std::nullopt) == index;
    }
    if (agree != queries.size()) {
        std::printf("# nearest-sorted-1m: %zu of %zu answers differ\n", queries.size() - agree,
                    queries.size());
    }
    table::printCase("nearest-sorted-1m", fast, walk);

    // Appending a thousand records to a million-point item against assigning all of them.
    {
        const VLXValue base(makeRecords(kCount));
        const VLXValue more(makeRecords(1000, kCount));
        VLXValue::Array joined = base.arrayValue();
        joined.insert(joined.end(), more.arrayValue().begin(), more.arrayValue().end());
        const VLXValue all(std::move(joined));
        std::shared_ptr<VLXSeriesItem> item;
        const double append = table::bestMilliseconds(
            [&] {
                item = itemReadingXY();
                item->setData(base);
            },
            [&] { item->appendData(more); });
        const std::size_t appendedCount = item->points().size();
        const double assign =
            table::bestMilliseconds([&] { item = itemReadingXY(); }, [&] { item->setData(all); });
        if (appendedCount != item->points().size()) {
            std::printf("# append-1k: %zu points against %zu\n", appendedCount,
                        item->points().size());
        }
        table::printCase("append-1k", append, assign);

        // Heap bytes held by a million derived points (the data are the host's).
        item.reset();
        auto measured = itemReadingXY();
        malloc_trim(0);
        const std::size_t before = mallinfo2().uordblks;
        measured->setData(base);
        const std::size_t after = mallinfo2().uordblks;
        std::printf(
            "bytes_per_point %.2f (%zu points)\n",
            static_cast<double>(after - before) / static_cast<double>(measured->points().size()),
            measured->points().size());
    }
    return checksum == 0 ? 0 : 0;
}
