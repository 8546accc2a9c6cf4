// Colour parsing, blending and ramp generation: the paths legends and styles hit per value.
#include <benchmark/benchmark.h>

#include <array>
#include <cstdio>
#include <string>

#include <VelmarCoreUI/Color/VLXColorRamp.h>
#include <VelmarCoreUI/Color/VLXColorUtilities.h>
#include "BenchRatio.h"

namespace {

void BM_HexParsing(benchmark::State& state) {
    const std::array<std::string, 4> inputs = {"#ff8800", "0x1a2b3c4d", "#abc", "12ab9c"};
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(vlx_colorWithHex(inputs[i++ % inputs.size()]));
    }
}
BENCHMARK(BM_HexParsing);

void BM_RGBAParsing(benchmark::State& state) {
    const std::array<std::string, 3> inputs = {"rgba(255, 128, 0, 0.5)", "rgb(12,34,56)",
                                               "200, 100, 50"};
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(vlx_colorWithRGB(inputs[i++ % inputs.size()]));
    }
}
BENCHMARK(BM_RGBAParsing);

void BM_Interpolation(benchmark::State& state) {
    const VLXColor from = VLXColor::colorWithRed(0.1, 0.4, 0.9, 1);
    const VLXColor to = VLXColor::colorWithWhite(0.8, 0.5);
    double position = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(vlx_interpolatedToColor(from, to, position));
        position = position >= 1 ? 0 : position + 0.001;
    }
}
BENCHMARK(BM_Interpolation);

void BM_HexOutput(benchmark::State& state) {
    const VLXColor color = VLXColor::colorWithRed(0.1, 0.4, 0.9, 0.5);
    for (auto _ : state) {
        benchmark::DoNotOptimize(vlx_hexValueWithAlpha(color, true));
    }
}
BENCHMARK(BM_HexOutput);

// A fresh ramp each iteration so the interval cache cannot hide the work.
void BM_RampGeneration(benchmark::State& state) {
    const auto steps = static_cast<VLXUInteger>(state.range(0));
    const auto colorRanges = VLXColorRampIntervalRange::arrayOfRangesFromString("100:10,1000:50");
    const auto labelRanges = VLXColorRampIntervalRange::arrayOfRangesFromString("100:20,1000:~5");
    for (auto _ : state) {
        auto ramp = VLXColorRamp::create();
        ramp->addStopWithColor(VLXColor::blueColor(), 0, 0);
        ramp->addStopWithColor(VLXColor::yellowColor(), steps / 2, 500);
        ramp->addStopWithColor(VLXColor::redColor(), steps - steps / 2, 1000);
        ramp->setColorIntervalRanges(colorRanges);
        ramp->setLabelIntervalRanges(labelRanges);
        benchmark::DoNotOptimize(ramp->intervals().size());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_RampGeneration)->Arg(1000);

// The library's hex parser against a bare sscanf of "RRGGBB" on the same 100 000 strings: what
// the prefix, length and per-pair rules cost over the minimum.
void BM_HexParsingVsSscanf(benchmark::State& state) {
    const std::array<std::string, 4> inputs = {"#ff8800", "#1a2b3c", "#abcdef", "#12ab9c"};
    runAgainstBaseline(
        state, "vlx_colorWithHex",
        [&] {
            for (int i = 0; i < 100000; ++i) {
                benchmark::DoNotOptimize(vlx_colorWithHex(inputs[i % inputs.size()]));
            }
        },
        [&] {
            for (int i = 0; i < 100000; ++i) {
                unsigned r = 0, g = 0, b = 0;
                std::sscanf(inputs[i % inputs.size()].c_str() + 1, "%2x%2x%2x", &r, &g, &b);
                benchmark::DoNotOptimize(
                    VLXColor::colorWithRed(r / 255.0, g / 255.0, b / 255.0, 1));
            }
        });
}
BENCHMARK(BM_HexParsingVsSscanf)->Unit(benchmark::kMillisecond)->Iterations(5);

}  // namespace
