#include <gtest/gtest.h>

#include "Support/TouchStorm.h"

// 10^5 mixed events (fingers down, moves, lifts, cancels, stray touches, bad readings, time
// going backwards, recognisers disabled or moved and views removed mid-gesture) through a
// window holding every recogniser kind. Nothing may crash, and every sequence must end with
// every recogniser possible, holding no touch, having ended or been cancelled at most once.
TEST(TouchStorm, EverySequenceEndsWithEveryRecognizerPossibleAndNoTouchStuck) {
    for (std::uint32_t seed : {1u, 2u}) {
        SCOPED_TRACE(seed);
        storm::TouchStorm storm(seed);
        const storm::Result result = storm.run(50'000);
        EXPECT_GE(result.events, 50'000u);
        EXPECT_GT(result.sequences, 1'000u);
        EXPECT_GT(result.actions, 1'000u);  // the storm does make gestures happen
        EXPECT_EQ(result.stuckStates, 0u);
        EXPECT_EQ(result.stuckTouches, 0u);
        EXPECT_EQ(result.doubleOutcomes, 0u);
    }
}
