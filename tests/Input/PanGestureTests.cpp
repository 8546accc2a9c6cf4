#include <VelmarCoreUI/Platform/Input/VLXPanGestureRecognizer.h>

#include <numbers>

#include <VelmarCoreUI/Platform/Primitives/VLXAffineTransform.h>

#include "GestureTestSupport.h"

namespace {
class PanGesture : public GestureTest {};
}  // namespace

TEST_F(PanGesture, BeginsPastTheHysteresisAndMeasuresFromTheStart) {
    auto pan = attach(VLXPanGestureRecognizer::create());
    auto finger = down({100, 100});
    wait(0.04);
    move(finger, {105, 100});
    EXPECT_TRUE(log.empty());
    wait(0.04);
    move(finger, {112, 100});
    EXPECT_EQ(log, Log{"began"});
    EXPECT_TRUE(pointNear(pan->translationInView(nullptr), {12, 0}));
    wait(0.04);
    move(finger, {130, 110});
    EXPECT_TRUE(pointNear(pan->translationInView(view.get()), {30, 10}));
    // Over the last 0.1 s: from (5, 0) at +0.04 to (30, 10) at +0.12.
    EXPECT_TRUE(pointNear(pan->velocityInView(nullptr), {312.5, 125}, 1e-6));
    wait(0.04);
    up(finger);
    EXPECT_EQ(log, (Log{"began", "changed", "ended"}));
    // The lift without movement slows the measure: (12, 0) at +0.08 to (30, 10) at +0.16.
    EXPECT_TRUE(pointNear(pan->velocityInView(nullptr), {225, 125}, 1e-6));
    EXPECT_TRUE(pointNear(pan->translationInView(nullptr), {30, 10}));

    // A lift before it began fails it, and the next drag starts from zero.
    log.clear();
    finger = down({200, 200});
    move(finger, {205, 205});
    up(finger);
    EXPECT_TRUE(log.empty());
    finger = down({50, 50});
    EXPECT_TRUE(pointNear(pan->translationInView(nullptr), {0, 0}));
    up(finger);
}

TEST_F(PanGesture, TranslationAndVelocityTakeTheViewsDirections) {
    auto pan = attach(VLXPanGestureRecognizer::create());
    view->setTransform(VLXAffineTransformMakeScale(2, 2));
    auto finger = down({100, 100});
    wait(0.05);
    move(finger, {120, 100});
    EXPECT_TRUE(pointNear(pan->translationInView(view.get()), {10, 0}));
    EXPECT_TRUE(pointNear(pan->velocityInView(view.get()), {200, 0}, 1e-6));
    EXPECT_TRUE(pointNear(pan->translationInView(window.get()), {20, 0}));

    // Rotated a quarter turn: the view's x axis points down the window.
    view->setTransform(VLXAffineTransformMakeRotation(std::numbers::pi / 2));
    EXPECT_TRUE(pointNear(pan->translationInView(view.get()), {0, -20}, 1e-9));

    // setTranslation restarts the measure in the view's terms.
    view->setTransform(VLXAffineTransformMakeScale(2, 2));
    pan->setTranslation({1, 2}, view.get());
    EXPECT_TRUE(pointNear(pan->translationInView(view.get()), {1, 2}));
    move(finger, {140, 100});
    EXPECT_TRUE(pointNear(pan->translationInView(view.get()), {11, 2}));
    pan->setTranslation({kNaN, 0}, nullptr);
    EXPECT_TRUE(pointNear(pan->translationInView(view.get()), {11, 2}));
    up(finger);
}

TEST_F(PanGesture, FingersAddedOrLiftedMidDragDoNotJump) {
    auto pan = attach(VLXPanGestureRecognizer::create());
    auto a = down({100, 100});
    move(a, {120, 100});
    auto b = down({200, 200});
    EXPECT_TRUE(pointNear(pan->translationInView(nullptr), {20, 0}));
    move({{a, {130, 100}}, {b, {210, 200}}});
    EXPECT_TRUE(pointNear(pan->translationInView(nullptr), {30, 0}));
    up(b);
    EXPECT_TRUE(pointNear(pan->translationInView(nullptr), {30, 0}));
    EXPECT_EQ(pan->state(), VLXGestureRecognizerState::Changed);
    move(a, {135, 100});
    EXPECT_TRUE(pointNear(pan->translationInView(nullptr), {35, 0}));
    up(a);
    EXPECT_EQ(log, (Log{"began", "changed", "changed", "ended"}));
}

TEST_F(PanGesture, TouchCountLimitsKeepItFromBeginning) {
    auto pan = attach(VLXPanGestureRecognizer::create());
    pan->setMinimumNumberOfTouches(2);
    auto a = down({100, 100});
    move(a, {150, 100});
    EXPECT_TRUE(log.empty());
    auto b = down({100, 200});
    // The count is right now: the next move past the hysteresis begins.
    move({{a, {156, 100}}, {b, {106, 200}}});
    EXPECT_EQ(log, Log{"began"});
    up({a, b});

    log.clear();
    pan->setMinimumNumberOfTouches(1);
    pan->setMaximumNumberOfTouches(1);
    auto pair = down({{100, 100}, {100, 200}});
    move({{pair[0], {150, 100}}, {pair[1], {150, 200}}});
    EXPECT_TRUE(log.empty());
    up({pair[0], pair[1]});
    EXPECT_TRUE(log.empty());

    // Two moves at one timestamp: no velocity rather than a division by zero.
    a = down({100, 100});
    move(a, {140, 100});
    move(a, {180, 100});
    EXPECT_TRUE(pointNear(pan->velocityInView(nullptr), {0, 0}));
    // Cancelled mid-drag.
    up({a}, VLXTouchPhase::Cancelled);
    EXPECT_EQ(log, (Log{"began", "changed", "cancelled"}));
}

TEST_F(PanGesture, OddOrdersBackwardTimeAndResetMidDrag) {
    auto pan = attach(VLXPanGestureRecognizer::create());
    auto call = [](const std::shared_ptr<VLXTouch>& t) {
        return VLXEvent::create({t}, t->timestamp());
    };
    // The end of a touch it never saw begin, and its moves, change nothing.
    auto stray = VLXTouch::create({10, 10}, 200, VLXTouchPhase::Moved);
    pan->touchesMoved({stray}, *call(stray));
    pan->touchesEnded({stray}, *call(stray));
    EXPECT_EQ(pan->state(), VLXGestureRecognizerState::Possible);

    // A second finger stamped earlier than the first: time is held, never run backwards.
    auto a = VLXTouch::create({100, 100}, 200);
    pan->touchesBegan({a}, *call(a));
    auto b = VLXTouch::create({100, 150}, 150);
    pan->touchesBegan({b}, *call(b));
    b->update({160, 150}, 150.01, VLXTouchPhase::Moved);
    pan->touchesMoved({b}, *call(b));
    EXPECT_EQ(log, Log{"began"});
    EXPECT_TRUE(pointNear(pan->translationInView(nullptr), {30, 0}));
    EXPECT_TRUE(pointNear(pan->velocityInView(nullptr), {0, 0}));

    // Reset mid-drag: the old touches are forgotten and the next drag starts afresh.
    pan->reset();
    a->update({300, 100}, 200.1, VLXTouchPhase::Moved);
    pan->touchesMoved({a}, *call(a));
    EXPECT_EQ(log, Log{"began"});
    auto c = VLXTouch::create({50, 50}, 201);
    pan->touchesBegan({c}, *call(c));
    EXPECT_TRUE(pointNear(pan->translationInView(nullptr), {0, 0}));
    pan->reset();
}
