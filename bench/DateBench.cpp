// Date formatting: the cached ICU formatters against building one per call.
//
// The cached runs format 100 000 dates per iteration; the baseline (cache capacity 0, so every
// call builds and drops its own ICU formatter, as a naive implementation would) formats the
// first 1 000 of them. CachedVsFresh times both on the same dates and reports the speed-up.

#include <benchmark/benchmark.h>

#include <chrono>
#include <string>
#include <vector>

#include <VelmarCoreUI/Core/VLXDateFormats.h>
#include <VelmarCoreUI/Core/VLXDateHelpers.h>
#include <VelmarCoreUI/Platform/Foundation/VLXDateFormatter.h>
#include <VelmarCoreUI/Platform/Foundation/VLXStringFormat.h>

namespace {

constexpr int kCachedCount = 100'000;
constexpr int kFreshCount = 1'000;

const std::vector<VLXDate>& dates() {
    static const std::vector<VLXDate> all = [] {
        std::vector<VLXDate> out;
        out.reserve(kCachedCount);
        for (int i = 0; i < kCachedCount; ++i) {
            // About 25 years of dates, 7919 s apart, so that labels keep changing.
            out.push_back(VLXDate::dateWithTimeIntervalSince1970(1.0e9 + 7919.0 * i));
        }
        return out;
    }();
    return all;
}

const std::string& timePattern() {
    static const std::string pattern = VLXStringWithFormat(
        "%s:%s %s", VLXDateFormatHour, VLXDateFormatMinutes, VLXDateFormatPeriod);
    return pattern;
}

VLXTimeZone newYork() {
    return *VLXTimeZone::timeZoneWithName("America/New_York");
}

// Formats `count` dates with `format`; returns the characters produced (kept alive).
template <class Format>
std::size_t formatDates(int count, Format&& format) {
    std::size_t characters = 0;
    const auto& all = dates();
    for (int i = 0; i < count; ++i) {
        characters += format(all[static_cast<std::size_t>(i)]).size();
    }
    return characters;
}

void BM_FormatterCached(benchmark::State& state) {
    const VLXDateFormatter formatter(timePattern(), newYork());
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            formatDates(kCachedCount, [&](VLXDate d) { return formatter.stringFromDate(d); }));
    }
    state.SetItemsProcessed(state.iterations() * kCachedCount);
}
BENCHMARK(BM_FormatterCached)->Unit(benchmark::kMillisecond);

void BM_HelperCached(benchmark::State& state) {
    const VLXTimeZone zone = newYork();
    for (auto _ : state) {
        benchmark::DoNotOptimize(formatDates(kCachedCount, [&](VLXDate d) {
            return vlx_formattedDateWithFormat(d, timePattern(), zone);
        }));
    }
    state.SetItemsProcessed(state.iterations() * kCachedCount);
}
BENCHMARK(BM_HelperCached)->Unit(benchmark::kMillisecond);

void BM_FreshFormatterPerCall(benchmark::State& state) {
    const VLXDateFormatter formatter(timePattern(), newYork());
    const std::size_t capacity = VLXDateFormatter::cacheCapacity();
    VLXDateFormatter::setCacheCapacity(0);
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            formatDates(kFreshCount, [&](VLXDate d) { return formatter.stringFromDate(d); }));
    }
    VLXDateFormatter::setCacheCapacity(capacity);
    state.SetItemsProcessed(state.iterations() * kFreshCount);
}
BENCHMARK(BM_FreshFormatterPerCall)->Unit(benchmark::kMillisecond);

// Both paths on the same dates, timed by hand so that one row shows the ratio.
void BM_CachedVsFresh(benchmark::State& state) {
    const VLXDateFormatter formatter(timePattern(), newYork());
    auto format = [&](VLXDate d) { return formatter.stringFromDate(d); };
    using Clock = std::chrono::steady_clock;
    double cachedSeconds = 0;
    double freshSeconds = 0;
    const std::size_t capacity = VLXDateFormatter::cacheCapacity();
    for (auto _ : state) {
        auto start = Clock::now();
        benchmark::DoNotOptimize(formatDates(kCachedCount, format));
        cachedSeconds += std::chrono::duration<double>(Clock::now() - start).count();

        VLXDateFormatter::setCacheCapacity(0);
        start = Clock::now();
        benchmark::DoNotOptimize(formatDates(kFreshCount, format));
        freshSeconds += std::chrono::duration<double>(Clock::now() - start).count();
        VLXDateFormatter::setCacheCapacity(capacity);
    }
    const double runs = static_cast<double>(state.iterations());
    const double cachedPerDate = cachedSeconds / (runs * kCachedCount);
    const double freshPerDate = freshSeconds / (runs * kFreshCount);
    state.counters["cached_us_per_date"] = cachedPerDate * 1e6;
    state.counters["fresh_us_per_date"] = freshPerDate * 1e6;
    state.counters["speedup"] = cachedPerDate > 0 ? freshPerDate / cachedPerDate : 0;
}
BENCHMARK(BM_CachedVsFresh)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace
