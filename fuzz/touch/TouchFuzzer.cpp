// Touch input from hosts: fingers down, moves, lifts and cancels in any order, readings that are
// NaN, infinite or far away, time going backwards, recognisers disabled or moved and views
// removed mid-gesture, through a window holding every recogniser kind. The fuzzer's bytes pick
// every step. After the input every finger lifts and a second passes: every recogniser must be
// possible again, holding no touch, and no gesture may have ended twice.

#include <cstddef>
#include <cstdint>
#include <string>

#include "FuzzSupport.h"
#include "Support/TouchStorm.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    FuzzedDataProvider data(bytes, size);
    storm::TouchStorm storm([&data] { return data.ConsumeProbability<double>(); });
    // About one step per two bytes; once the bytes run out every step reads 0 (a finger down,
    // then moves), so the count bounds the work.
    const storm::Result result = storm.run(size / 2 + 1);
    const std::string detail = "events " + std::to_string(result.events) + ", sequences " +
                               std::to_string(result.sequences);
    VLX_FUZZ_CHECK(result.stuckStates == 0, detail);
    VLX_FUZZ_CHECK(result.stuckTouches == 0, detail);
    VLX_FUZZ_CHECK(result.doubleOutcomes == 0, detail);
    return 0;
}
