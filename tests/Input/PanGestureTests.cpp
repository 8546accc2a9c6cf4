#include <VelmarCoreUI/Platform/Input/VLXPanGestureRecognizer.h>

#include <numbers>

#include <VelmarCoreUI/Platform/Primitives/VLXAffineTransform.h>

#include "GestureTestSupport.h"

using PanGesture = GestureTest;

TEST_F(PanGesture, BeginsPastTheHysteresisAndMeasuresFromTheStart) {
    auto pan = attach(VLXPanGestureRecognizer::create());
    auto finger = down({100, 100});
    wait(0.04);
    move(finger, {105, 100});
    EXPECT_TRUE(log.empty());
    wait(0.04);
    move(finger, {112, 100});
    EXPECT_TRUE(near(pan->translationInView(nullptr), {12, 0}));
    wait(0.04);
    move(finger, {130, 110});
    // Over the last 0.1 s: from (5, 0) at +0.04 to (30, 10) at +0.12.
    EXPECT_TRUE(near(pan->velocityInView(nullptr), {312.5, 125}, 1e-6));
    wait(0.04);
    up(finger);
    EXPECT_EQ(log, (Log{"began", "changed", "ended"}));
    // The still lift slows it: (12, 0) at +0.08 to (30, 10) at +0.16.
    EXPECT_TRUE(near(pan->velocityInView(nullptr), {225, 125}, 1e-6));
    EXPECT_TRUE(near(pan->translationInView(nullptr), {30, 10}));

    // Lifted before it began: failed; the next drag starts from zero.
    finger = down({200, 200});
    move(finger, {205, 205});
    up(finger);
    finger = down({50, 50});
    EXPECT_TRUE(near(pan->translationInView(nullptr), {0, 0}));
    up({finger}, VLXTouchPhase::Cancelled);
    EXPECT_EQ(log.size(), 3u);
}

TEST_F(PanGesture, TranslationAndVelocityTakeTheViewsDirections) {
    auto pan = attach(VLXPanGestureRecognizer::create());
    view->setTransform(VLXAffineTransformMakeScale(2, 2));
    auto finger = down({100, 100});
    wait(0.05);
    move(finger, {120, 100});
    EXPECT_TRUE(near(pan->translationInView(view.get()), {10, 0}));
    EXPECT_TRUE(near(pan->velocityInView(view.get()), {200, 0}, 1e-6));
    // A quarter turn: the view's x axis points down the window.
    view->setTransform(VLXAffineTransformMakeRotation(std::numbers::pi / 2));
    EXPECT_TRUE(near(pan->translationInView(view.get()), {0, -20}));

    view->setTransform(VLXAffineTransformMakeScale(2, 2));
    pan->setTranslation({1, 2}, view.get());
    move(finger, {140, 100});
    EXPECT_TRUE(near(pan->translationInView(view.get()), {11, 2}));
    pan->setTranslation({std::nan(""), 0}, nullptr);
    EXPECT_TRUE(near(pan->translationInView(view.get()), {11, 2}));
    up(finger);
}

TEST_F(PanGesture, FingerCountChangesMidDragDoNotJump) {
    auto pan = attach(VLXPanGestureRecognizer::create());
    auto a = down({100, 100});
    move(a, {120, 100});
    auto b = down({200, 200});
    move({{a, {130, 100}}, {b, {210, 200}}});
    EXPECT_TRUE(near(pan->translationInView(nullptr), {30, 0}));
    up(b);
    move(a, {135, 100});
    EXPECT_TRUE(near(pan->translationInView(nullptr), {35, 0}));
    up(a);
    EXPECT_EQ(log, (Log{"began", "changed", "changed", "ended"}));

    // One finger of the two required moves without beginning; the second lets it begin.
    log.clear();
    pan->setMinimumNumberOfTouches(2);
    a = down({100, 100});
    move(a, {150, 100});
    EXPECT_TRUE(log.empty());
    b = down({100, 200});
    move({{a, {156, 100}}, {b, {106, 200}}});
    EXPECT_EQ(log, Log{"began"});
    up({a, b});
    EXPECT_EQ(log, (Log{"began", "ended"}));
}

TEST_F(PanGesture, StrayTouchesBackwardTimeAndResetMidDrag) {
    auto pan = attach(VLXPanGestureRecognizer::create());
    auto event = VLXEvent::create({}, 0);
    auto stray = VLXTouch::create({10, 10}, 200);
    // A second finger stamped earlier than the first: time holds, velocity stays finite.
    auto a = VLXTouch::create({100, 100}, 200);
    auto b = VLXTouch::create({100, 150}, 150);
    pan->touchesBegan({a}, *event);
    pan->touchesBegan({b}, *event);
    b->update({160, 150}, 150.01, VLXTouchPhase::Moved);
    pan->touchesMoved({b}, *event);
    EXPECT_TRUE(near(pan->translationInView(nullptr), {30, 0}));
    EXPECT_TRUE(near(pan->velocityInView(nullptr), {0, 0}));
    // Reset mid-drag: the old touches are forgotten.
    pan->reset();
    pan->touchesMoved({a}, *event);
    pan->touchesBegan({stray}, *event);
    EXPECT_TRUE(near(pan->translationInView(nullptr), {0, 0}));
    EXPECT_EQ(log, Log{"began"});
    pan->reset();
}
