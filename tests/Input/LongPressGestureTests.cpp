#include <VelmarCoreUI/Platform/Input/VLXLongPressGestureRecognizer.h>

#include "GestureTestSupport.h"

namespace {
class LongPressGesture : public GestureTest {};
}  // namespace

TEST_F(LongPressGesture, BeginsAfterTheDelayThenFollowsTheFinger) {
    auto press = attach(VLXLongPressGestureRecognizer::create());
    auto finger = down({100, 100});
    move(finger, {108, 104});  // within the allowed 10 pt
    wait(0.49);
    EXPECT_TRUE(log.empty());
    wait(0.02);
    EXPECT_EQ(log, Log{"began"});
    // Once begun, any distance is fine.
    move(finger, {160, 200});
    EXPECT_TRUE(pointNear(press->locationInView(view.get()), {140, 160}));
    up(finger);
    EXPECT_EQ(log, (Log{"began", "changed", "ended"}));
    EXPECT_EQ(press->state(), VLXGestureRecognizerState::Possible);

    // Cancelled after it began.
    log.clear();
    finger = down({100, 100});
    wait(0.6);
    up({finger}, VLXTouchPhase::Cancelled);
    EXPECT_EQ(log, (Log{"began", "cancelled"}));
}

TEST_F(LongPressGesture, FailsOnEarlyLiftMovementOrAnExtraFinger) {
    auto press = attach(VLXLongPressGestureRecognizer::create());
    up(down({100, 100}));
    auto finger = down({100, 100});
    move(finger, {100, 110.5});
    wait(1);
    up(finger);
    auto pair = down({{100, 100}, {150, 150}});
    wait(1);
    up({pair[0], pair[1]});
    finger = down({100, 100});
    wait(0.2);
    auto extra = down({150, 150});
    wait(1);
    up({finger, extra});
    EXPECT_TRUE(log.empty());

    // Two required: the timer starts when the second finger is down.
    press->setNumberOfTouchesRequired(2);
    auto a = down({100, 100});
    wait(0.3);
    auto b = down({140, 100});
    wait(0.3);
    EXPECT_TRUE(log.empty());
    wait(0.25);
    EXPECT_EQ(log, Log{"began"});
    up({a, b});
}

TEST_F(LongPressGesture, SettersClampAndTimersDieWithTheRecognizer) {
    auto press = attach(VLXLongPressGestureRecognizer::create());
    press->setMinimumPressDuration(kNaN);
    EXPECT_EQ(press->minimumPressDuration(), 0.0);
    press->setMinimumPressDuration(-1);
    EXPECT_EQ(press->minimumPressDuration(), 0.0);
    press->setAllowableMovement(-3);
    EXPECT_EQ(press->allowableMovement(), 0.0);
    press->setNumberOfTouchesRequired(0);
    EXPECT_EQ(press->numberOfTouchesRequired(), 1u);

    // No delay: begins on the next turn of the run loop.
    auto finger = down({100, 100});
    wait(0);
    EXPECT_EQ(log, Log{"began"});
    up(finger);

    // Reset or destroyed while the timer runs: nothing fires later.
    log.clear();
    press->setMinimumPressDuration(0.5);
    finger = down({100, 100});
    press->reset();
    wait(1);
    EXPECT_TRUE(log.empty());
    up(finger);
    finger = down({100, 100});
    view->removeGestureRecognizer(press.get());
    press.reset();
    wait(1);
    up(finger);
    EXPECT_TRUE(log.empty());
}
