#pragma once

// Runs a measured path and its baseline on the same input within one benchmark iteration, so
// the reported ratio compares like with like on whatever the machine is doing at that moment.
#include <benchmark/benchmark.h>

#include <chrono>
#include <string>

template <class Measured, class Baseline>
void runAgainstBaseline(benchmark::State& state, const std::string& name, Measured measured,
                        Baseline baseline) {
    using Clock = std::chrono::steady_clock;
    double measuredSeconds = 0;
    double baselineSeconds = 0;
    for (auto _ : state) {
        auto start = Clock::now();
        measured();
        measuredSeconds += std::chrono::duration<double>(Clock::now() - start).count();
        start = Clock::now();
        baseline();
        baselineSeconds += std::chrono::duration<double>(Clock::now() - start).count();
    }
    const double runs = static_cast<double>(state.iterations());
    state.counters[name + "_ms"] = measuredSeconds * 1e3 / runs;
    state.counters["baseline_ms"] = baselineSeconds * 1e3 / runs;
    state.counters["ratio"] = baselineSeconds > 0 ? measuredSeconds / baselineSeconds : 0;
}
