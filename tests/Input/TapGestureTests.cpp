#include <VelmarCoreUI/Platform/Input/VLXTapGestureRecognizer.h>

#include "GestureTestSupport.h"

using TapGesture = GestureTest;

TEST_F(TapGesture, SingleAndDoubleTapsCancelAndReset) {
    auto tap = attach(VLXTapGestureRecognizer::create());
    auto finger = down({100, 100});
    move(finger, {106, 108});  // 10 pt exactly is still a tap
    up(finger);
    EXPECT_EQ(log, Log{"ended"});
    EXPECT_TRUE(near(tap->locationInView(view.get()), {86, 68}));
    finger = down({100, 100});
    move(finger, {100, 110.5});
    up(finger);
    EXPECT_EQ(log, Log{"ended"});

    tap->setNumberOfTapsRequired(2);
    up(down({100, 100}));
    wait(0.3);
    up(down({102, 101}));
    EXPECT_EQ(log, (Log{"ended", "ended"}));
    // Too slow: the timer fails the series, and a new one can start at once.
    up(down({100, 100}));
    wait(0.36);
    up(down({100, 100}));
    wait(0.1);
    up(down({100, 100}));
    EXPECT_EQ(log, (Log{"ended", "ended", "ended"}));

    // A cancelled tap, or a reset between the taps, forgets the first tap of the series.
    log.clear();
    up({down({100, 100})}, VLXTouchPhase::Cancelled);
    up(down({100, 100}));
    tap->reset();
    up(down({100, 100}));
    EXPECT_TRUE(log.empty());
    // Going away while waiting for the next tap takes the timer along (the fixture checks).
    view->removeGestureRecognizer(tap.get());
    tap.reset();
}

TEST_F(TapGesture, TwoFingerTapNeedsBothDownTogether) {
    auto tap = attach(VLXTapGestureRecognizer::create());
    tap->setNumberOfTouchesRequired(2);
    // Down together, lifted one by one: recognised at the last lift, between the fingers.
    auto pair = down({{100, 100}, {140, 120}});
    up(pair[0]);
    EXPECT_TRUE(log.empty());
    up(pair[1]);
    EXPECT_TRUE(near(tap->locationInView(nullptr), {120, 110}));
    // Down one after the other, lifted together.
    auto a = down({100, 100});
    auto b = down({150, 100});
    up({a, b});
    EXPECT_EQ(log, (Log{"ended", "ended"}));

    // Failures: a lift before the second finger, three fingers, a finger replacing a lifted one.
    log.clear();
    up(down({100, 100}));
    up(down({150, 100}));
    up(down({{100, 100}, {120, 100}, {140, 100}}));
    a = down({100, 100});
    b = down({120, 100});
    up(a);
    up({b, down({130, 100})});
    EXPECT_TRUE(log.empty());
}
