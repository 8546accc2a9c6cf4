#pragma once

// What every table program shares: best-of timing and the one output line per case,
// "case <name> ours_ms <x> baseline_ms <y> ratio <r>".
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>

namespace table {

/// The best of `repeats` runs of `run`, in milliseconds; `prepare` runs untimed before each.
inline double bestMilliseconds(const std::function<void()>& prepare,
                               const std::function<void()>& run, int repeats = 3) {
    double best = 1e300;
    for (int i = 0; i < repeats; ++i) {
        prepare();
        const auto start = std::chrono::steady_clock::now();
        run();
        best = std::min(best, std::chrono::duration<double, std::milli>(
                                  std::chrono::steady_clock::now() - start)
                                  .count());
    }
    return best;
}

inline double bestMilliseconds(const std::function<void()>& run, int repeats) {
    return bestMilliseconds([] {}, run, repeats);
}

/// Prints one case; the ratio is 0 when the baseline took no measurable time.
inline void printCase(const char* name, double ours, double baseline) {
    std::printf("case %s ours_ms %.4f baseline_ms %.4f ratio %.4f\n", name, ours, baseline,
                baseline > 0 ? ours / baseline : 0.0);
    std::fflush(stdout);
}

}  // namespace table
