#include <VelmarCoreUI/Views/VLXEdgeSwipeGestureRecognizer.h>

#include <cmath>
#include <numbers>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Input/VLXEvent.h>
#include <VelmarCoreUI/Platform/Input/VLXTouch.h>
#include <VelmarCoreUI/Platform/Primitives/VLXAffineTransform.h>
#include <VelmarCoreUI/Platform/Views/VLXWindow.h>

namespace {
using State = VLXGestureRecognizerState;
constexpr double kPi = std::numbers::pi;

// A 320 × 480 view with an edge swipe recogniser, fed by calling the touch methods directly.
class EdgeSwipeGesture : public ::testing::Test {
protected:
    void SetUp() override {
        view = VLXView::createWithFrame({{0, 0}, {320, 480}});
        swipe = makeSwipe(VLXEdgeSwipeSideLeft);
    }

    std::shared_ptr<VLXEdgeSwipeGestureRecognizer> makeSwipe(VLXUInteger side) {
        auto made = VLXEdgeSwipeGestureRecognizer::create([this](VLXGestureRecognizer& r) {
            log.push_back(VLXGestureRecognizerStateName(r.state()));
        });
        made->setSide(side);
        view->addGestureRecognizer(made);
        return made;
    }

    // One finger down at `p` (view coordinates, which are the window's here) at time `t`.
    std::shared_ptr<VLXTouch> begin(VLXEdgeSwipeGestureRecognizer& r, VLXPoint p, double t = 1) {
        auto touch = VLXTouch::create(p, t);
        r.touchesBegan({touch}, *VLXEvent::create({touch}, t));
        return touch;
    }
    void moveBy(VLXEdgeSwipeGestureRecognizer& r, const std::shared_ptr<VLXTouch>& touch,
                VLXPoint d, double t = 2) {
        const VLXPoint p = touch->locationInView(nullptr);
        touch->update({p.x + d.x, p.y + d.y}, t, VLXTouchPhase::Moved);
        r.touchesMoved({touch}, *VLXEvent::create({touch}, t));
    }
    // The state after a start at `start` and one move by `d`.
    State afterMove(VLXUInteger side, VLXPoint start, VLXPoint d) {
        auto r = makeSwipe(side);
        moveBy(*r, begin(*r, start), d);
        return r->state();
    }
    State afterBegin(VLXUInteger side, VLXPoint start) {
        auto r = makeSwipe(side);
        begin(*r, start);
        return r->state();
    }

    std::shared_ptr<VLXView> view;
    std::shared_ptr<VLXEdgeSwipeGestureRecognizer> swipe;
    std::vector<std::string> log;
};
}  // namespace

TEST_F(EdgeSwipeGesture, DefaultsAndTheAngleWindow) {
    EXPECT_EQ(swipe->side(), VLXEdgeSwipeSideLeft);
    EXPECT_EQ(swipe->minimumDistance(), 5.0);
    EXPECT_EQ(swipe->margin(), 20.0);
    EXPECT_EQ(swipe->startPoint(), (VLXPoint{0, 0}));

    // Strict at both ends, no wrap for the left side.
    EXPECT_TRUE(swipe->isAngleCloseEnough(kPi / 4 - 1e-9));
    EXPECT_FALSE(swipe->isAngleCloseEnough(kPi / 4));
    EXPECT_TRUE(swipe->isAngleCloseEnough(-0.1));
    EXPECT_FALSE(swipe->isAngleCloseEnough(std::nan("")));
    swipe->setSide(VLXEdgeSwipeSideBottom);
    EXPECT_TRUE(swipe->isAngleCloseEnough(-kPi / 2));  // wraps to 3π/2
    EXPECT_FALSE(swipe->isAngleCloseEnough(kPi / 2));
    // Other sides expect 0 but still wrap negative angles: slightly upward is rejected.
    swipe->setSide(7);
    EXPECT_TRUE(swipe->isAngleCloseEnough(0.1));
    EXPECT_FALSE(swipe->isAngleCloseEnough(-0.1));
}

TEST_F(EdgeSwipeGesture, TouchMustStartInTheEdgeBand) {
    EXPECT_EQ(afterBegin(VLXEdgeSwipeSideLeft, {20, 200}), State::Possible);
    EXPECT_EQ(afterBegin(VLXEdgeSwipeSideLeft, {20.5, 200}), State::Failed);
    EXPECT_EQ(afterBegin(VLXEdgeSwipeSideRight, {300, 200}), State::Possible);
    EXPECT_EQ(afterBegin(VLXEdgeSwipeSideRight, {299, 200}), State::Failed);
    EXPECT_EQ(afterBegin(VLXEdgeSwipeSideTop, {100, 20}), State::Possible);
    EXPECT_EQ(afterBegin(VLXEdgeSwipeSideTop, {100, 21}), State::Failed);
    EXPECT_EQ(afterBegin(VLXEdgeSwipeSideBottom, {100, 460}), State::Possible);
    EXPECT_EQ(afterBegin(VLXEdgeSwipeSideBottom, {100, 459}), State::Failed);
    EXPECT_EQ(afterBegin(9, {160, 240}), State::Possible);

    // The right and bottom bands follow the frame, which a transform changes, not the bounds.
    view->setTransform(VLXAffineTransformMakeScale(0.5, 0.5));  // frame 160 × 240
    EXPECT_EQ(view->bounds().size.width, 320.0);
    auto right = makeSwipe(VLXEdgeSwipeSideRight);
    // In view coordinates x = 141 passes against 160 − 20, and would fail against 320 − 20.
    auto touch = VLXTouch::create(view->convertPointToView({141, 200}, nullptr), 1);
    right->touchesBegan({touch}, *VLXEvent::create({touch}, 1));
    EXPECT_EQ(right->state(), State::Possible);
    EXPECT_NEAR(right->startPoint().x, 141, 1e-9);

    // Two fingers at once fail at the start.
    auto a = VLXTouch::create({5, 100}, 1);
    auto b = VLXTouch::create({5, 200}, 1);
    swipe->touchesBegan({a, b}, *VLXEvent::create({a, b}, 1));
    EXPECT_EQ(swipe->state(), State::Failed);
    EXPECT_TRUE(log.empty());
}

TEST_F(EdgeSwipeGesture, DirectionIsJudgedPastTheMinimumDistance) {
    auto touch = begin(*swipe, {10, 200});
    moveBy(*swipe, touch, {4, 0});
    EXPECT_EQ(swipe->state(), State::Possible);
    moveBy(*swipe, touch, {2, 0});  // (6, 0) from the start
    EXPECT_EQ(swipe->state(), State::Began);

    EXPECT_EQ(afterMove(VLXEdgeSwipeSideLeft, {10, 200}, {4, 4.5}), State::Failed);  // 48°
    EXPECT_EQ(afterMove(VLXEdgeSwipeSideLeft, {10, 200}, {5, 0}), State::Possible);
    EXPECT_EQ(afterMove(VLXEdgeSwipeSideBottom, {100, 470}, {0, -10}), State::Began);
    EXPECT_EQ(afterMove(VLXEdgeSwipeSideRight, {310, 200}, {-10, 1}), State::Began);
    EXPECT_EQ(afterMove(VLXEdgeSwipeSideRight, {310, 200}, {-10, -1}), State::Began);
    EXPECT_EQ(afterMove(VLXEdgeSwipeSideTop, {100, 10}, {0, 10}), State::Began);
    EXPECT_EQ(afterMove(VLXEdgeSwipeSideTop, {100, 10}, {10, 0}), State::Failed);
}

TEST_F(EdgeSwipeGesture, StatesAndActionsOverASwipe) {
    auto touch = begin(*swipe, {10, 200});
    moveBy(*swipe, touch, {10, 0}, 2);
    moveBy(*swipe, touch, {10, 0}, 3);
    // Changed is set once; later moves only record their points.
    moveBy(*swipe, touch, {10, 0}, 4);
    EXPECT_EQ(swipe->state(), State::Changed);
    EXPECT_EQ(swipe->currentPoint(), (VLXPoint{40, 200}));
    EXPECT_EQ(swipe->previousPoint(), (VLXPoint{30, 200}));
    swipe->touchesEnded({touch}, *VLXEvent::create({touch}, 4));
    EXPECT_EQ(log, (std::vector<std::string>{"began", "changed", "ended"}));

    // Ending before deciding fails; so does a cancel, which also forgets the start.
    auto early = makeSwipe(VLXEdgeSwipeSideLeft);
    touch = begin(*early, {10, 200});
    early->touchesEnded({touch}, *VLXEvent::create({touch}, 1));
    EXPECT_EQ(early->state(), State::Failed);
    // Moves after failing change nothing.
    moveBy(*early, touch, {50, 0});
    EXPECT_EQ(early->currentPoint(), (VLXPoint{10, 200}));

    auto cancelled = makeSwipe(VLXEdgeSwipeSideLeft);
    touch = begin(*cancelled, {10, 200});
    moveBy(*cancelled, touch, {10, 0});
    cancelled->touchesCancelled({touch}, *VLXEvent::create({touch}, 2));
    EXPECT_EQ(cancelled->state(), State::Failed);
    EXPECT_EQ(cancelled->startPoint(), (VLXPoint{0, 0}));
    EXPECT_EQ(log, (std::vector<std::string>{"began", "changed", "ended", "began"}));
}

TEST_F(EdgeSwipeGesture, TranslationAndVelocityFromTheLastTwoSamples) {
    auto touch = begin(*swipe, {10, 200}, 1.0);
    moveBy(*swipe, touch, {10, 2}, 1.5);
    moveBy(*swipe, touch, {20, 4}, 1.75);
    EXPECT_EQ(swipe->translationInView(view.get()), (VLXPoint{30, 6}));
    EXPECT_EQ(swipe->velocityInView(view.get()), (VLXPoint{80, 16}));

    // In another view's coordinates: a parent that the view sits in at half scale.
    auto parent = VLXView::createWithFrame({{0, 0}, {640, 960}});
    parent->addSubview(view);
    view->setTransform(VLXAffineTransformMakeScale(0.5, 0.5));
    const VLXPoint t = swipe->translationInView(parent.get());
    EXPECT_NEAR(t.x, 15, 1e-9);
    EXPECT_NEAR(t.y, 3, 1e-9);
    EXPECT_NEAR(swipe->velocityInView(parent.get()).x, 40, 1e-9);

    // Two samples with one timestamp.
    moveBy(*swipe, touch, {5, 0}, 1.75);
    EXPECT_EQ(swipe->velocityInView(view.get()), (VLXPoint{0, 0}));
}
