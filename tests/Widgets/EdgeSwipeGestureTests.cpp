#include <VelmarCoreUI/Views/VLXEdgeSwipeGestureRecognizer.h>

#include <cmath>
#include <numbers>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <VelmarCoreUI/Platform/Input/VLXEvent.h>
#include <VelmarCoreUI/Platform/Input/VLXTouch.h>
#include <VelmarCoreUI/Platform/Primitives/VLXAffineTransform.h>
#include <VelmarCoreUI/Platform/Views/VLXView.h>

namespace {
using State = VLXGestureRecognizerState;
using Log = std::vector<std::string>;
constexpr double kPi = std::numbers::pi;

// A 320 × 480 view whose recognisers are fed by calling their touch methods directly.
class EdgeSwipeGesture : public ::testing::Test {
protected:
    std::shared_ptr<VLXEdgeSwipeGestureRecognizer> swipe(VLXUInteger side) {
        auto made = VLXEdgeSwipeGestureRecognizer::create([this](VLXGestureRecognizer& r) {
            log.push_back(VLXGestureRecognizerStateName(r.state()));
        });
        made->setSide(side);
        view->addGestureRecognizer(made);
        return made;
    }
    // One finger down at `p` (view coordinates; the view sits at the origin) at time `t`.
    static std::shared_ptr<VLXTouch> begin(VLXEdgeSwipeGestureRecognizer& r, VLXPoint p,
                                           double t = 1) {
        auto touch = VLXTouch::create(p, t);
        r.touchesBegan({touch}, *VLXEvent::create({touch}, t));
        return touch;
    }
    static void moveBy(VLXEdgeSwipeGestureRecognizer& r, const std::shared_ptr<VLXTouch>& touch,
                       VLXPoint d, double t = 2) {
        const VLXPoint p = touch->locationInView(nullptr);
        touch->update({p.x + d.x, p.y + d.y}, t, VLXTouchPhase::Moved);
        r.touchesMoved({touch}, *VLXEvent::create({touch}, t));
    }
    // A new recogniser's state after a finger went down at `start` and moved by `d` (if given).
    State after(VLXUInteger side, VLXPoint start, VLXPoint d = {NAN, NAN}) {
        auto r = swipe(side);
        auto touch = begin(*r, start);
        if (!std::isnan(d.x)) {
            moveBy(*r, touch, d);
        }
        return r->state();
    }

    std::shared_ptr<VLXView> view = VLXView::createWithFrame({{0, 0}, {320, 480}});
    Log log;
};
}  // namespace

TEST_F(EdgeSwipeGesture, TouchMustStartInTheEdgeBand) {
    EXPECT_EQ(after(VLXEdgeSwipeSideLeft, {20, 200}), State::Possible);
    EXPECT_EQ(after(VLXEdgeSwipeSideLeft, {20.5, 200}), State::Failed);
    EXPECT_EQ(after(VLXEdgeSwipeSideRight, {300, 200}), State::Possible);
    EXPECT_EQ(after(VLXEdgeSwipeSideRight, {299, 200}), State::Failed);
    EXPECT_EQ(after(VLXEdgeSwipeSideTop, {100, 21}), State::Failed);
    EXPECT_EQ(after(VLXEdgeSwipeSideBottom, {100, 460}), State::Possible);
    EXPECT_EQ(after(VLXEdgeSwipeSideBottom, {100, 459}), State::Failed);
    EXPECT_EQ(after(9, {160, 240}), State::Possible);

    // The right band follows the frame (160 wide under this transform), not the bounds (320).
    view->setTransform(VLXAffineTransformMakeScale(0.5, 0.5));
    auto right = swipe(VLXEdgeSwipeSideRight);
    begin(*right, view->convertPointToView({141, 200}, nullptr));
    EXPECT_EQ(right->state(), State::Possible);
    EXPECT_NEAR(right->startPoint().x, 141, 1e-9);

    auto left = swipe(VLXEdgeSwipeSideLeft);
    auto a = VLXTouch::create({5, 100}, 1);
    auto b = VLXTouch::create({5, 200}, 1);
    left->touchesBegan({a, b}, *VLXEvent::create({a, b}, 1));
    EXPECT_EQ(left->state(), State::Failed);
}

TEST_F(EdgeSwipeGesture, DirectionIsJudgedPastTheMinimumDistance) {
    auto left = swipe(VLXEdgeSwipeSideLeft);
    EXPECT_EQ(left->minimumDistance(), 5.0);
    EXPECT_FALSE(left->isAngleCloseEnough(kPi / 4));  // strict
    EXPECT_TRUE(left->isAngleCloseEnough(-0.1));      // no wrap on the left
    // Sides past 3 expect 0 yet wrap negative angles, so slightly upward is refused.
    EXPECT_EQ(after(7, {10, 200}, {10, 1}), State::Began);
    EXPECT_EQ(after(7, {10, 200}, {10, -1}), State::Failed);
    auto touch = begin(*left, {10, 200});
    moveBy(*left, touch, {4, 0});
    EXPECT_EQ(left->state(), State::Possible);
    moveBy(*left, touch, {2, 0});
    EXPECT_EQ(left->state(), State::Began);
    EXPECT_EQ(after(VLXEdgeSwipeSideLeft, {10, 200}, {5, 0}), State::Possible);
    EXPECT_EQ(after(VLXEdgeSwipeSideLeft, {10, 200}, {4, 4.5}), State::Failed);  // 48°
    EXPECT_EQ(after(VLXEdgeSwipeSideBottom, {100, 470}, {0, -10}), State::Began);
    EXPECT_EQ(after(VLXEdgeSwipeSideRight, {310, 200}, {-10, 1}), State::Began);
    EXPECT_EQ(after(VLXEdgeSwipeSideRight, {310, 200}, {-10, -1}), State::Began);
    EXPECT_EQ(after(VLXEdgeSwipeSideTop, {100, 10}, {10, 0}), State::Failed);
}

TEST_F(EdgeSwipeGesture, StatesActionsAndRecordedPoints) {
    auto left = swipe(VLXEdgeSwipeSideLeft);
    auto touch = begin(*left, {10, 200}, 1.0);
    moveBy(*left, touch, {10, 2}, 1.5);
    moveBy(*left, touch, {20, 4}, 1.75);
    moveBy(*left, touch, {10, 0}, 2.0);  // changed is not set again
    EXPECT_EQ(left->previousPoint(), (VLXPoint{40, 206}));
    EXPECT_EQ(left->translationInView(view.get()), (VLXPoint{40, 6}));
    EXPECT_EQ(left->velocityInView(view.get()), (VLXPoint{40, 0}));
    // In a parent that holds the view at half scale.
    auto parent = VLXView::createWithFrame({{0, 0}, {640, 960}});
    parent->addSubview(view);
    view->setTransform(VLXAffineTransformMakeScale(0.5, 0.5));
    EXPECT_NEAR(left->translationInView(parent.get()).x, 20, 1e-9);
    EXPECT_NEAR(left->velocityInView(parent.get()).x, 20, 1e-9);
    view->setTransform(VLXAffineTransformIdentity);
    moveBy(*left, touch, {5, 0}, 2.0);
    EXPECT_EQ(left->velocityInView(view.get()), (VLXPoint{0, 0}));
    left->touchesEnded({touch}, *VLXEvent::create({touch}, 2));
    EXPECT_EQ(log, (Log{"began", "changed", "ended"}));

    // Ended before deciding fails, and later moves record nothing.
    auto early = swipe(VLXEdgeSwipeSideLeft);
    touch = begin(*early, {10, 200});
    early->touchesEnded({touch}, *VLXEvent::create({touch}, 1));
    moveBy(*early, touch, {50, 0});
    EXPECT_EQ(early->state(), State::Failed);
    EXPECT_EQ(early->currentPoint(), (VLXPoint{10, 200}));
    // A cancel after it began fails it and forgets the start.
    auto cancelled = swipe(VLXEdgeSwipeSideLeft);
    touch = begin(*cancelled, {10, 200});
    moveBy(*cancelled, touch, {10, 0});
    cancelled->touchesCancelled({touch}, *VLXEvent::create({touch}, 2));
    EXPECT_EQ(cancelled->state(), State::Failed);
    EXPECT_EQ(cancelled->startPoint(), (VLXPoint{0, 0}));
    EXPECT_EQ(log, (Log{"began", "changed", "ended", "began"}));
}
