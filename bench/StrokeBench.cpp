// Long polylines: the graphics context's stroke against raw cairo stroking the same points as
// one path (super-linear) and in 1000-segment pieces (the fast baseline to match).
#include <benchmark/benchmark.h>

#include "BenchRatio.h"
#include "PolylineWorkload.h"

namespace {

// Strokes the polyline of state.range(0) points with the context against `baseline` of raw cairo.
void strokeAgainst(benchmark::State& state,
                   void (polyline::RawCairo::*baseline)(const std::vector<VLXPoint>&)) {
    const auto points = polyline::noisyLine(static_cast<std::size_t>(state.range(0)));
    auto context =
        VLXGraphicsContext::createBitmap(VLXSizeMake(polyline::kWidth, polyline::kHeight), 1);
    polyline::RawCairo raw;
    runAgainstBaseline(
        state, "context", [&] { polyline::strokeWithContext(*context, points); },
        [&] { (raw.*baseline)(points); });
}

void BM_StrokeAgainstRawPieces(benchmark::State& state) {
    strokeAgainst(state, &polyline::RawCairo::strokePieces);
}
BENCHMARK(BM_StrokeAgainstRawPieces)
    ->Arg(10000)
    ->Arg(100000)
    ->Arg(1000000)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3);

// The one-path baseline; a million points take ~20 s, so that size runs once.
void BM_StrokeAgainstRawOnePath(benchmark::State& state) {
    strokeAgainst(state, &polyline::RawCairo::strokeOnePath);
}
BENCHMARK(BM_StrokeAgainstRawOnePath)
    ->Arg(10000)
    ->Arg(100000)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3);
BENCHMARK(BM_StrokeAgainstRawOnePath)->Arg(1000000)->Unit(benchmark::kMillisecond)->Iterations(1);

// A short, dashed and a translucent stroke: the everyday cases must not pay for the long road.
void BM_StrokeShortPath(benchmark::State& state) {
    const auto points = polyline::noisyLine(500);
    auto context =
        VLXGraphicsContext::createBitmap(VLXSizeMake(polyline::kWidth, polyline::kHeight), 1);
    for (auto _ : state) {
        polyline::strokeWithContext(*context, points);
    }
}
BENCHMARK(BM_StrokeShortPath)->Unit(benchmark::kMicrosecond);

void BM_StrokeLongDashedTranslucent(benchmark::State& state) {
    const auto points = polyline::noisyLine(static_cast<std::size_t>(state.range(0)));
    auto context =
        VLXGraphicsContext::createBitmap(VLXSizeMake(polyline::kWidth, polyline::kHeight), 1);
    const double dash[] = {6, 3};
    context->setLineDash(0, dash);
    context->setStrokeColor(VLXColor::colorWithRed(0.2, 0.4, 0.9, 0.5));
    for (auto _ : state) {
        polyline::strokeWithContext(*context, points);
    }
}
BENCHMARK(BM_StrokeLongDashedTranslucent)
    ->Arg(100000)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3);

}  // namespace
