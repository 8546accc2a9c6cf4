#include <VelmarCoreUI/Platform/Input/VLXPinchGestureRecognizer.h>

#include "GestureTestSupport.h"

using PinchGesture = GestureTest;

TEST_F(PinchGesture, ScaleIsTheDistanceOverTheStartingDistance) {
    auto pinch = attach(VLXPinchGestureRecognizer::create());
    auto fingers = down({{100, 100}, {200, 100}});
    wait(0.04);
    move(fingers[1], {207, 100});
    EXPECT_TRUE(log.empty());
    wait(0.04);
    move(fingers[1], {209, 100});
    EXPECT_NEAR(pinch->scale(), 1.09, 1e-12);
    wait(0.04);
    move(fingers[1], {300, 100});
    EXPECT_NEAR(pinch->scale(), 2.0, 1e-12);
    // Over the last 0.1 s: from 1.07 at +0.04 to 2.0 at +0.12.
    EXPECT_NEAR(pinch->velocity(), (2.0 - 1.07) / 0.08, 1e-6);

    // One finger lifts: the scale holds; a new second finger carries on from it.
    up(fingers[0]);
    EXPECT_EQ(pinch->numberOfTouches(), 1u);
    EXPECT_NEAR(pinch->scale(), 2.0, 1e-12);
    auto c = down({200, 100});
    move(c, {150, 100});
    EXPECT_NEAR(pinch->scale(), 3.0, 1e-12);
    up({fingers[1], c});
    EXPECT_EQ(log, (Log{"began", "changed", "changed", "ended"}));

    // Lifted before it began: failed.
    fingers = down({{100, 100}, {200, 100}});
    move(fingers[1], {204, 100});
    up(fingers[1]);
    up(fingers[0]);
    EXPECT_EQ(log.size(), 4u);
}

TEST_F(PinchGesture, DegenerateDistancesSetScaleAndExtraFingers) {
    auto pinch = attach(VLXPinchGestureRecognizer::create());
    auto fingers = down({{100, 100}, {100, 100}});
    move(fingers[1], {120, 100});
    EXPECT_TRUE(std::isfinite(pinch->scale()));
    EXPECT_GT(pinch->scale(), 1.0);
    // setScale restarts the measure from the current distance (20 pt).
    pinch->setScale(1.0);
    move(fingers[1], {130, 100});
    EXPECT_NEAR(pinch->scale(), 1.5, 1e-12);
    pinch->setScale(std::nan(""));
    EXPECT_NEAR(pinch->scale(), 1.5, 1e-12);
    EXPECT_EQ(pinch->velocity(), 0.0);  // every sample at one timestamp
    up(fingers, VLXTouchPhase::Cancelled);
    EXPECT_EQ(log, (Log{"began", "changed", "cancelled"}));

    // A third finger is not part of the pinch.
    auto three = down({{100, 100}, {200, 100}, {150, 300}});
    EXPECT_EQ(pinch->numberOfTouches(), 2u);
    move(three[2], {10, 10});
    EXPECT_EQ(log.size(), 3u);
    move(three[1], {220, 100});
    EXPECT_NEAR(pinch->scale(), 1.2, 1e-12);
    up(three);
}
