// The input tests' storm of mixed touch events at 10^6 events: dispatch, arbitration and every
// recogniser kind under odd orders, bad readings and recognisers changing mid-gesture. The
// counters report what the storm checks (all must be 0 but events, sequences and actions).
#include <benchmark/benchmark.h>

#include "Support/TouchStorm.h"

static void TouchStorm1M(benchmark::State& state) {
    for (auto _ : state) {
        storm::TouchStorm storm(2026);
        const storm::Result result = storm.run(1'000'000);
        state.counters["events"] = double(result.events);
        state.counters["sequences"] = double(result.sequences);
        state.counters["actions"] = double(result.actions);
        state.counters["stuck_states"] = double(result.stuckStates);
        state.counters["stuck_touches"] = double(result.stuckTouches);
        state.counters["double_outcomes"] = double(result.doubleOutcomes);
    }
}
BENCHMARK(TouchStorm1M)->Iterations(1)->Unit(benchmark::kMillisecond);
