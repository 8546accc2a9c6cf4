// Key-path lookup on the data objects series read point by point, and JSON loading of a large
// host data set.
#include <benchmark/benchmark.h>

#include <nlohmann/json.hpp>

#include <string>

#include "BenchRatio.h"

#include <VelmarCoreUI/Platform/Foundation/VLXRecord.h>
#include <VelmarCoreUI/Platform/Foundation/VLXStringFormat.h>
#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>

namespace {

constexpr int kJSONRecords = 100000;

VLXValue makeRecord() {
    auto meta = VLXRecord::create({{"unit", "kWh"}, {"source", "meter"}});
    return VLXValue(VLXRecord::create({{"date", VLXDate::dateWithTimeIntervalSince1970(1.5e9)},
                                       {"label", "p1"},
                                       {"value", 12.5},
                                       {"meta", meta}}));
}

VLXValue makeDictionary() {
    return VLXValue(
        VLXValue::Dictionary{{"date", VLXDate::dateWithTimeIntervalSince1970(1.5e9)},
                             {"label", "p1"},
                             {"value", 12.5},
                             {"meta", VLXValue::Dictionary{{"unit", "kWh"}, {"source", "meter"}}}});
}

void lookUp(benchmark::State& state, const VLXValue& object, const char* path) {
    for (auto _ : state) {
        VLXValue value = object.valueForKeyPath(path);
        benchmark::DoNotOptimize(value);
    }
    state.SetItemsProcessed(state.iterations());
}

void BM_RecordKeyPath(benchmark::State& state) {
    lookUp(state, makeRecord(), "value");
}
void BM_RecordNestedKeyPath(benchmark::State& state) {
    lookUp(state, makeRecord(), "meta.unit");
}
void BM_DictionaryKeyPath(benchmark::State& state) {
    lookUp(state, makeDictionary(), "value");
}
void BM_DictionaryNestedKeyPath(benchmark::State& state) {
    lookUp(state, makeDictionary(), "meta.unit");
}

const std::string& recordsJSON() {
    static const std::string text = [] {
        std::string json = "[";
        for (int i = 0; i < kJSONRecords; ++i) {
            json += VLXStringWithFormat(
                "%s{\"date\": %d, \"value\": %.2f, \"label\": \"point %d\", \"ok\": true}",
                i == 0 ? "" : ", ", 1500000000 + i * 60, i * 0.25, i);
        }
        return json + "]";
    }();
    return text;
}

void BM_FromJSON100kRecords(benchmark::State& state) {
    const std::string& json = recordsJSON();
    for (auto _ : state) {
        VLXValue value = VLXValue::fromJSON(json);
        if (value.count() != static_cast<std::size_t>(kJSONRecords)) {
            state.SkipWithError("parse failed");
            break;
        }
        benchmark::DoNotOptimize(value);
    }
    state.SetItemsProcessed(state.iterations() * kJSONRecords);
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(json.size()));
}

// fromJSON against nlohmann's own document parse of the same text: the cost of building
// values on top of tokenising.
void BM_FromJSONVsJSONDocument(benchmark::State& state) {
    const std::string& json = recordsJSON();
    runAgainstBaseline(
        state, "fromJSON", [&] { benchmark::DoNotOptimize(VLXValue::fromJSON(json)); },
        [&] { benchmark::DoNotOptimize(nlohmann::json::parse(json)); });
}

// A record lookup against the same lookup on a dictionary, 100 000 times each.
void BM_RecordVsDictionaryKeyPath(benchmark::State& state) {
    const VLXValue record = makeRecord();
    const VLXValue dictionary = makeDictionary();
    auto lookUps = [](const VLXValue& object) {
        for (int i = 0; i < 100000; ++i) {
            benchmark::DoNotOptimize(object.valueForKeyPath("meta.unit"));
        }
    };
    runAgainstBaseline(
        state, "record", [&] { lookUps(record); }, [&] { lookUps(dictionary); });
}

}  // namespace

BENCHMARK(BM_RecordKeyPath);
BENCHMARK(BM_RecordNestedKeyPath);
BENCHMARK(BM_DictionaryKeyPath);
BENCHMARK(BM_DictionaryNestedKeyPath);
BENCHMARK(BM_FromJSON100kRecords)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FromJSONVsJSONDocument)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_RecordVsDictionaryKeyPath)->Unit(benchmark::kMillisecond)->Iterations(5);
