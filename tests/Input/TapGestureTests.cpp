#include <VelmarCoreUI/Platform/Input/VLXTapGestureRecognizer.h>

#include <VelmarCoreUI/Platform/Input/VLXLongPressGestureRecognizer.h>

#include "GestureTestSupport.h"

namespace {
class TapGesture : public GestureTest {};
}  // namespace

TEST_F(TapGesture, SingleTapRecognisesOnLiftUnlessTheFingerWandered) {
    auto tap = attach(VLXTapGestureRecognizer::create());
    auto finger = down({100, 100});
    move(finger, {109, 100});
    EXPECT_TRUE(log.empty());
    up(finger);
    EXPECT_EQ(log, Log{"ended"});
    // Window (109, 100) in the view at (20, 40).
    EXPECT_TRUE(pointNear(tap->locationInView(view.get()), {89, 60}));

    // Back to possible for the next sequence; 10 pt is allowed, beyond it is not.
    EXPECT_EQ(tap->state(), VLXGestureRecognizerState::Possible);
    log.clear();
    finger = down({100, 100});
    move(finger, {106, 108});  // 10 pt exactly
    move(finger, {100, 110.5});
    up(finger);
    EXPECT_TRUE(log.empty());
    EXPECT_EQ(tap->state(), VLXGestureRecognizerState::Possible);
}

TEST_F(TapGesture, DoubleTapNeedsTheSecondTouchDownWithinTheInterval) {
    auto tap = attach(VLXTapGestureRecognizer::create());
    tap->setNumberOfTapsRequired(2);
    up(down({100, 100}));
    EXPECT_TRUE(log.empty());
    wait(0.3);
    up(down({102, 101}));
    EXPECT_EQ(log, Log{"ended"});

    // Too slow: the timer fails it, and the recogniser is ready for a new series at once.
    log.clear();
    up(down({100, 100}));
    wait(0.36);
    up(down({100, 100}));
    EXPECT_TRUE(log.empty());
    wait(0.1);
    up(down({100, 100}));
    EXPECT_EQ(log, Log{"ended"});

    // Zero taps is stored as one.
    tap->setNumberOfTapsRequired(0);
    EXPECT_EQ(tap->numberOfTapsRequired(), 1u);
}

TEST_F(TapGesture, TwoFingerTapCountsFingersDownTogether) {
    auto tap = attach(VLXTapGestureRecognizer::create());
    tap->setNumberOfTouchesRequired(2);

    // Down in one event, lifted one at a time: recognised at the last lift, at the centroid.
    auto pair = down({{100, 100}, {140, 120}});
    up(pair[0]);
    EXPECT_TRUE(log.empty());
    up(pair[1]);
    EXPECT_EQ(log, Log{"ended"});
    EXPECT_TRUE(pointNear(tap->locationInView(nullptr), {120, 110}));

    // Down one after the other, lifted together.
    log.clear();
    auto a = down({100, 100});
    auto b = down({150, 100});
    up({a, b});
    EXPECT_EQ(log, Log{"ended"});

    // A lift before the second finger came down fails the sequence.
    log.clear();
    a = down({100, 100});
    up(a);
    up(down({150, 100}));
    EXPECT_TRUE(log.empty());

    // A third finger fails it, as does a finger replacing one that lifted.
    auto three = down({{100, 100}, {120, 100}, {140, 100}});
    up({three[0], three[1], three[2]});
    a = down({100, 100});
    b = down({120, 100});
    up(a);
    auto c = down({130, 100});
    up({b, c});
    EXPECT_TRUE(log.empty());
}

TEST_F(TapGesture, CancelsStrayTouchesAndEarlyTeardownLeaveNothingBehind) {
    auto tap = attach(VLXTapGestureRecognizer::create());
    tap->setNumberOfTapsRequired(2);

    // A cancelled touch fails the tap.
    up({down({100, 100})}, VLXTouchPhase::Cancelled);
    EXPECT_TRUE(log.empty());
    EXPECT_EQ(tap->state(), VLXGestureRecognizerState::Possible);

    // An end for a touch it never saw begin changes nothing.
    auto stray = VLXTouch::create({50, 50}, now(), VLXTouchPhase::Ended);
    auto event = VLXEvent::create({stray}, now());
    tap->touchesEnded({stray}, *event);
    EXPECT_EQ(tap->state(), VLXGestureRecognizerState::Possible);

    // Reset between the taps of a series forgets the first tap and its timer.
    up(down({100, 100}));
    tap->reset();
    up(down({100, 100}));
    EXPECT_TRUE(log.empty());

    // A recogniser that goes away while waiting for the second tap takes its timer with it
    // (the fixture checks that no timer is left).
    view->removeGestureRecognizer(tap.get());
    tap.reset();
    wait(1);
}

TEST_F(TapGesture, WaitsForALongPressToFailFirst) {
    auto tap = VLXTapGestureRecognizer::create();
    auto press = VLXLongPressGestureRecognizer::create();
    for (auto [r, name] : {std::pair<VLXGestureRecognizer*, std::string>{tap.get(), "tap"},
                           {press.get(), "press"}}) {
        r->addAction([this, name](VLXGestureRecognizer& g) {
            log.push_back(name + " " + VLXGestureRecognizerStateName(g.state()));
        });
    }
    view->addGestureRecognizer(tap);
    view->addGestureRecognizer(press);
    tap->requireGestureRecognizerToFail(press);

    // A quick tap: the press fails on the lift, which lets the tap through.
    auto finger = down({100, 100});
    wait(0.1);
    up(finger);
    EXPECT_EQ(log, Log{"tap ended"});

    // Held past the delay: the press wins and the tap never fires.
    log.clear();
    finger = down({100, 100});
    wait(0.6);
    up(finger);
    EXPECT_EQ(log, (Log{"press began", "press ended"}));
}
