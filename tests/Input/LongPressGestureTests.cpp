#include <VelmarCoreUI/Platform/Input/VLXLongPressGestureRecognizer.h>

#include "GestureTestSupport.h"

using LongPressGesture = GestureTest;

TEST_F(LongPressGesture, BeginsAfterTheDelayThenFollowsTheFinger) {
    auto press = attach(VLXLongPressGestureRecognizer::create());
    auto finger = down({100, 100});
    move(finger, {108, 104});
    wait(0.49);
    EXPECT_TRUE(log.empty());
    wait(0.02);
    EXPECT_EQ(log, Log{"began"});
    move(finger, {160, 200});      // any distance once begun
    auto late = down({200, 300});  // a finger added now is not part of the press
    EXPECT_TRUE(near(press->locationInView(view.get()), {140, 160}));
    up(finger);
    up(late);
    finger = down({100, 100});
    wait(0.6);
    up({finger}, VLXTouchPhase::Cancelled);
    EXPECT_EQ(log, (Log{"began", "changed", "ended", "began", "cancelled"}));

    // No delay (a NaN one is taken as none): it begins on the next turn of the run loop.
    log.clear();
    press->setMinimumPressDuration(std::nan(""));
    EXPECT_EQ(press->minimumPressDuration(), 0.0);
    finger = down({100, 100});
    EXPECT_TRUE(log.empty());
    wait(0);
    up(finger);
    EXPECT_EQ(log, (Log{"began", "ended"}));
}

TEST_F(LongPressGesture, FailsOnEarlyLiftMovementOrAnExtraFinger) {
    auto press = attach(VLXLongPressGestureRecognizer::create());
    up(down({100, 100}));
    auto finger = down({100, 100});
    move(finger, {100, 110.5});
    wait(1);
    up(finger);
    finger = down({100, 100});
    wait(0.2);
    auto extra = down({150, 150});
    wait(1);
    up({finger, extra});
    EXPECT_TRUE(log.empty());

    // With two required, the delay runs from the second touch-down.
    press->setNumberOfTouchesRequired(2);
    auto a = down({100, 100});
    wait(0.3);
    auto b = down({140, 100});
    wait(0.45);
    EXPECT_TRUE(log.empty());
    wait(0.1);
    EXPECT_EQ(log, Log{"began"});
    up({a, b});
}

TEST_F(LongPressGesture, TapsBeforeThePress) {
    auto press = attach(VLXLongPressGestureRecognizer::create());
    press->setNumberOfTapsRequired(1);
    // Held without a tap first, it only counts as the tap; no press follows in time.
    auto finger = down({100, 100});
    wait(0.6);
    up(finger);
    wait(0.4);
    EXPECT_TRUE(log.empty());
    // Tap, then press within the interval; then with too long a gap, which starts a new series.
    for (double gap : {0.3, 0.4}) {
        up(down({100, 100}));
        wait(gap);
        finger = down({104, 100});
        wait(0.6);
        up(finger);
    }
    EXPECT_EQ(log, (Log{"began", "ended"}));
}
