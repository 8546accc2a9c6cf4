#include "ViewTestSupport.h"

#include <cmath>
#include <limits>
#include <stdexcept>

#include <VelmarCoreUI/Platform/Layers/VLXBasicAnimation.h>
#include <VelmarCoreUI/Platform/Layers/VLXMediaTimingFunction.h>

namespace {

class ViewAnimation : public ViewTest {
protected:
    void SetUp() override {
        ViewTest::SetUp();
        window = makeWindow(100, 20);
    }
    /// A committed view of `frame` in the window, opaque red.
    std::shared_ptr<VLXView> addView(VLXRect frame) {
        auto view = VLXView::createWithFrame(frame);
        view->setBackgroundColor(VLXColor::redColor());
        window->addSubview(view);
        turn();
        return view;
    }
    /// Moves the clock by `dt` and draws a host frame there.
    std::shared_ptr<VLXImage> frameAfter(double dt) {
        VLXClock::advance(dt);
        return window->renderFrame();
    }
    static double shownOpacity(const VLXView& view) {
        return view.layer()->presentationLayer()->opacity();
    }
    static std::shared_ptr<VLXMediaTimingFunction> curve(VLXMediaTimingFunctionName name) {
        return VLXMediaTimingFunction::functionWithName(name);
    }
    std::shared_ptr<VLXWindow> window;
};

// Records completions as "<name>:<finished>".
VLXView::Completion record(std::vector<std::string>* log, std::string name) {
    return [log, name](bool finished) { log->push_back(name + ":" + (finished ? "1" : "0")); };
}

}  // namespace

TEST_F(ViewAnimation, OnlyChangesInsideBlocksAnimate) {
    auto view = addView(VLXRectMake(0, 0, 10, 10));
    view->setAlpha(0.5);
    view->setCenter({20, 10});
    EXPECT_FALSE(view->layer()->hasAnimations());

    bool inside = false;
    VLXView::animate(1, [&] {
        inside = VLXView::isAnimating();
        view->setAlpha(0);
        view->setHidden(true);  // not a view animation key
        view->setClipsToBounds(true);
    });
    EXPECT_TRUE(inside);
    EXPECT_EQ(view->alpha(), 0);  // the model changes at once
    EXPECT_EQ(view->layer()->animationKeys(), (std::vector<std::string>{"opacity"}));
    auto opacity =
        std::dynamic_pointer_cast<VLXBasicAnimation>(view->layer()->attachedAnimation("opacity"));
    ASSERT_NE(opacity, nullptr);
    EXPECT_EQ(opacity->fromValue().doubleValue(), 0.5);
    EXPECT_EQ(opacity->duration(), 1);
    EXPECT_EQ(opacity->timingFunction(), curve(VLXMediaTimingFunctionName::EaseInEaseOut));

    // An exception thrown by a block leaves no block open behind it.
    EXPECT_THROW(VLXView::animate(1, [] { throw std::runtime_error("no"); }), std::runtime_error);
    view->setAlpha(1);
    EXPECT_EQ(view->layer()->attachedAnimation("opacity")->duration(), 1);  // not replaced
}

TEST_F(ViewAnimation, CurvesAndFramesAtChosenTimes) {
    const std::pair<VLXViewAnimationOptions, VLXMediaTimingFunctionName> curves[] = {
        {VLXViewAnimationOptionCurveEaseInOut, VLXMediaTimingFunctionName::EaseInEaseOut},
        {VLXViewAnimationOptionCurveEaseIn, VLXMediaTimingFunctionName::EaseIn},
        {VLXViewAnimationOptionCurveEaseOut, VLXMediaTimingFunctionName::EaseOut},
        {VLXViewAnimationOptionCurveLinear, VLXMediaTimingFunctionName::Linear},
    };
    std::vector<std::shared_ptr<VLXView>> faders;
    for (const auto& [option, name] : curves) {
        auto view = addView(VLXRectMake(90, 0, 1, 1));
        faders.push_back(view);
        VLXView::animate(2, 0, option, [&] { view->setAlpha(0); });
    }
    auto mover = addView(VLXRectMake(0, 0, 10, 10));
    VLXView::animate(2, 0, VLXViewAnimationOptionCurveLinear,
                     [&] { mover->setFrame(VLXRectMake(40, 0, 30, 20)); });
    EXPECT_EQ(mover->frame(), VLXRectMake(40, 0, 30, 20));

    frameAfter(0.5);
    for (std::size_t i = 0; i < faders.size(); ++i) {
        EXPECT_NEAR(shownOpacity(*faders[i]), 1 - curve(curves[i].second)->y(0.25), 1e-6) << i;
    }
    EXPECT_LT(1 - shownOpacity(*faders[1]), 0.25);  // ease-in lags the linear curve
    EXPECT_GT(1 - shownOpacity(*faders[2]), 0.25);  // ease-out leads it
    auto image = frameAfter(0.5);  // halfway: position (5, 5) → (55, 10), size 10 → 30 × 20
    EXPECT_EQ(mover->layer()->presentationLayer()->position(), (VLXPoint{30, 7.5}));
    EXPECT_EQ(mover->layer()->presentationLayer()->bounds().size, (VLXSize{20, 15}));
    ASSERT_NE(image, nullptr);
    // The frame shows the mover at (20…40, 0…15): red at x 35, nothing at x 15 any more.
    EXPECT_EQ(pixelAt(*image, 35, 5), kRed);
    EXPECT_EQ(pixelAt(*image, 15, 5), kClear);

    frameAfter(1.01);
    EXPECT_FALSE(mover->layer()->hasAnimations());
    EXPECT_EQ(shownOpacity(*faders[0]), 0);
}

TEST_F(ViewAnimation, DelaysFillBackwardsAndZeroDurationsChangeAtOnce) {
    std::vector<std::string> log;
    auto delayed = addView(VLXRectMake(0, 0, 10, 10));
    VLXView::animate(
        1, 0.5, VLXViewAnimationOptionCurveLinear, [&] { delayed->setAlpha(0); },
        record(&log, "delayed"));
    frameAfter(0.25);
    EXPECT_EQ(shownOpacity(*delayed), 1);  // still waiting, showing the old value
    frameAfter(0.75);
    EXPECT_NEAR(shownOpacity(*delayed), 0.5, 1e-9);
    EXPECT_TRUE(log.empty());
    frameAfter(0.6);
    EXPECT_EQ(log, (std::vector<std::string>{"delayed:1"}));

    // Zero, negative and non-finite durations change at once; the completion waits for a turn.
    log.clear();
    auto now = addView(VLXRectMake(0, 0, 10, 10));
    int n = 0;
    for (double duration : {0.0, -1.0, std::nan(""), std::numeric_limits<double>::infinity()}) {
        VLXView::animate(
            duration, [&] { now->setAlpha(0.1 * ++n); }, record(&log, "now"));
        EXPECT_FALSE(now->layer()->hasAnimations()) << duration;
        EXPECT_FALSE(VLXView::isAnimating());
    }
    EXPECT_TRUE(log.empty());
    turn();
    EXPECT_EQ(log, (std::vector<std::string>(4, "now:1")));

    // No duration but a delay: the old value holds until the delay is over.
    auto later = addView(VLXRectMake(0, 0, 10, 10));
    VLXView::animate(0, 0.5, VLXViewAnimationOptionNone, [&] { later->setAlpha(0); });
    frameAfter(0.4);
    EXPECT_EQ(shownOpacity(*later), 1);
    frameAfter(0.2);
    EXPECT_EQ(shownOpacity(*later), 0);
}

TEST_F(ViewAnimation, InterruptionStartsFromTheScreenAndReportsUnfinished) {
    std::vector<std::string> log;
    auto view = addView(VLXRectMake(0, 0, 10, 10));
    VLXView::animate(
        1, 0, VLXViewAnimationOptionCurveLinear, [&] { view->setAlpha(0); }, record(&log, "first"));
    frameAfter(0.5);
    ASSERT_NEAR(shownOpacity(*view), 0.5, 1e-9);
    VLXView::animate(
        1, 0, VLXViewAnimationOptionCurveLinear, [&] { view->setAlpha(1); },
        record(&log, "second"));
    turn();
    EXPECT_EQ(log, (std::vector<std::string>{"first:0"}));
    EXPECT_NEAR(shownOpacity(*view), 0.5, 1e-9);  // no jump
    frameAfter(0.5);
    EXPECT_NEAR(shownOpacity(*view), 0.75, 1e-9);
    frameAfter(0.6);
    EXPECT_EQ(log, (std::vector<std::string>{"first:0", "second:1"}));

    // Removing the animations counts as an interruption too.
    log.clear();
    VLXView::animate(
        1,
        [&] {
            view->setCenter({50, 10});
        },
        record(&log, "removed"));
    view->layer()->removeAllAnimations();
    turn();
    EXPECT_EQ(log, (std::vector<std::string>{"removed:0"}));
}

TEST_F(ViewAnimation, NestedBlocksKeepTheirOwnSettings) {
    std::vector<std::string> log;
    auto a = addView(VLXRectMake(0, 0, 10, 10));
    auto b = addView(VLXRectMake(0, 0, 10, 10));
    bool animatingWithout = true;
    VLXView::animate(
        1, 0, VLXViewAnimationOptionCurveLinear,
        [&] {
            a->setAlpha(0);
            VLXView::animate(
                2, 0, VLXViewAnimationOptionCurveEaseIn,
                [&] {
                    b->setCenter({50, 5});
                },
                record(&log, "inner"));
            a->setCenter({30, 5});  // back in the outer block
            VLXView::performWithoutAnimation([&] {
                animatingWithout = VLXView::isAnimating();
                b->setAlpha(0.5);
            });
        },
        record(&log, "outer"));
    EXPECT_FALSE(animatingWithout);
    EXPECT_EQ(a->layer()->attachedAnimation("opacity")->duration(), 1);
    EXPECT_EQ(a->layer()->attachedAnimation("position")->duration(), 1);
    auto inner = b->layer()->attachedAnimation("position");
    ASSERT_NE(inner, nullptr);
    EXPECT_EQ(inner->duration(), 2);
    EXPECT_EQ(inner->timingFunction(), curve(VLXMediaTimingFunctionName::EaseIn));
    EXPECT_EQ(b->layer()->attachedAnimation("opacity"), nullptr);
    EXPECT_EQ(b->alpha(), 0.5);

    // The outer completion waits for the animations of the blocks nested in it.
    frameAfter(1.1);
    EXPECT_TRUE(log.empty());
    frameAfter(1.0);
    EXPECT_EQ(log, (std::vector<std::string>{"inner:1", "outer:1"}));
}

TEST_F(ViewAnimation, StandaloneAndDetachedLayersFollowTheBlock) {
    std::vector<std::string> log;
    auto view = addView(VLXRectMake(0, 0, 10, 10));
    auto standalone = VLXLayer::create();
    view->layer()->addSublayer(standalone);
    turn();
    VLXView::animate(
        0.4, 0, VLXViewAnimationOptionCurveEaseOut, [&] { standalone->setOpacity(0); },
        record(&log, "standalone"));
    auto implicit = standalone->attachedAnimation("opacity");
    ASSERT_NE(implicit, nullptr);
    EXPECT_EQ(implicit->duration(), 0.4);
    EXPECT_EQ(implicit->timingFunction(), curve(VLXMediaTimingFunctionName::EaseOut));
    frameAfter(0.3);
    EXPECT_TRUE(log.empty());
    frameAfter(0.2);
    EXPECT_EQ(log, (std::vector<std::string>{"standalone:1"}));

    // Without a block the transaction's own defaults hold again.
    standalone->setOpacity(1);
    EXPECT_EQ(standalone->attachedAnimation("opacity")->duration(), 0.25);

    // A view outside any window (and hidden) animates on the same timeline.
    auto detached = VLXView::createWithFrame(VLXRectMake(0, 0, 10, 10));
    detached->setHidden(true);
    VLXView::animate(1, 0, VLXViewAnimationOptionCurveLinear, [&] { detached->setAlpha(0); });
    // Creating the view opened the turn's transaction: the block's animations start when that
    // commits.
    step(0.25);
    EXPECT_EQ(shownOpacity(*detached), 1);
    step(0.25);
    ASSERT_NE(detached->layer()->presentationLayer(), nullptr);
    EXPECT_NEAR(shownOpacity(*detached), 0.75, 1e-9);
}
