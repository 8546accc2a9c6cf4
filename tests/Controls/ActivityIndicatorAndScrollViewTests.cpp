#include <cmath>
#include <memory>

#include <gtest/gtest.h>

#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Views/VLXActivityIndicatorView.h>
#include <VelmarCoreUI/Platform/Views/VLXScrollView.h>

#include "ControlsTestSupport.h"

using controls_test::inkBox;
using controls_test::makeWindow;

namespace {

struct ManualClock {
    ManualClock() { VLXClock::setManual(100); }
    ~ManualClock() { VLXClock::setReal(); }
};

}  // namespace

TEST(ActivityIndicator, StylesStartStopAndHiding) {
    auto large =
        VLXActivityIndicatorView::createWithStyle(VLXActivityIndicatorViewStyle::WhiteLarge);
    EXPECT_EQ(large->frame().size.width, 37);
    auto grey = VLXActivityIndicatorView::createWithStyle(VLXActivityIndicatorViewStyle::Gray);
    EXPECT_EQ(grey->sizeThatFits({500, 500}).height, 20);
    EXPECT_EQ(grey->color(), VLXColor::grayColor());
    grey->setActivityIndicatorViewStyle(static_cast<VLXActivityIndicatorViewStyle>(42));
    EXPECT_EQ(grey->activityIndicatorViewStyle(), VLXActivityIndicatorViewStyle::White);

    auto view = VLXActivityIndicatorView::create();
    EXPECT_TRUE(view->isHidden());  // hidden while stopped
    view->startAnimating();
    view->startAnimating();
    EXPECT_FALSE(view->isHidden());
    view->stopAnimating();
    EXPECT_FALSE(view->isAnimating());
    EXPECT_TRUE(view->isHidden());
    view->setHidesWhenStopped(false);
    EXPECT_FALSE(view->isHidden());
    view->startAnimating();
    view->stopAnimating();
    EXPECT_FALSE(view->isHidden());
}

TEST(ActivityIndicator, SpinsOnTheClockCentredInItsFrame) {
    ManualClock clock;
    auto window = makeWindow({100, 100});
    auto indicator = VLXActivityIndicatorView::createWithFrame({{0, 0}, {100, 100}});
    indicator->setActivityIndicatorViewStyle(VLXActivityIndicatorViewStyle::Gray);
    window->addSubview(indicator);
    EXPECT_EQ(inkBox(*window->snapshot()).size.width, -1);  // hidden while stopped

    indicator->startAnimating();
    const auto first = window->renderFrame();
    ASSERT_TRUE(first);
    const VLXRect box = inkBox(
        *first, [](std::uint32_t) { return true; }, 20);
    EXPECT_NEAR(box.origin.x + box.size.width / 2, 50, 1.5);
    EXPECT_NEAR(box.origin.y + box.size.height / 2, 50, 1.5);
    EXPECT_LE(box.size.width, 21);

    VLXClock::advance(0.25);
    const auto later = window->renderFrame();
    ASSERT_TRUE(later);
    EXPECT_NE(first->PNGRepresentation(), later->PNGRepresentation());
    // A full turn later the wheel looks the same again.
    VLXClock::advance(1.0);
    const auto turned = window->renderFrame();
    EXPECT_EQ(later->PNGRepresentation(), turned->PNGRepresentation());

    // Stopped, time no longer changes anything.
    indicator->setHidesWhenStopped(false);
    indicator->stopAnimating();
    const auto stopped = window->renderFrame()->PNGRepresentation();
    VLXClock::advance(0.3);
    EXPECT_EQ(window->renderFrame()->PNGRepresentation(), stopped);
    indicator->removeFromSuperview();
}

TEST(ActivityIndicator, AnimatingIndicatorThatGoesAwayStopsItsTimer) {
    ManualClock clock;
    auto window = makeWindow({50, 50});
    {
        auto indicator = VLXActivityIndicatorView::create();
        indicator->startAnimating();
    }
    VLXClock::advance(0.5);
    window->renderFrame();  // the timer fires into a view that has gone
}

namespace {

struct CountingDelegate : VLXScrollViewDelegate {
    int scrolls = 0;
    int animationsEnded = 0;
    void scrollViewDidEndScrollingAnimation(VLXScrollView&) override { ++animationsEnded; }
    VLXPoint lastOffset{};
    void scrollViewDidScroll(VLXScrollView& scrollView) override {
        ++scrolls;
        lastOffset = scrollView.contentOffset();
    }
};

}  // namespace

TEST(ScrollView, DelegateHearsOffsetChangesOnly) {
    auto scrollView = VLXScrollView::createWithFrame({{0, 0}, {100, 80}});
    EXPECT_TRUE(scrollView->clipsToBounds());

    auto delegate = std::make_shared<CountingDelegate>();
    scrollView->setDelegate(delegate);
    scrollView->setContentSize({50, 50});
    scrollView->setContentOffset({-30, 400});  // never clamped
    EXPECT_EQ(delegate->scrolls, 1);
    EXPECT_EQ(delegate->lastOffset, (VLXPoint{-30, 400}));
    EXPECT_EQ(scrollView->bounds().origin.y, 400);
    scrollView->setContentSize({1000, 1000});
    EXPECT_EQ(scrollView->contentOffset().y, 400);

    scrollView->setContentOffset({-30, 400});
    scrollView->setFrame({{10, 10}, {200, 200}});
    scrollView->setContentSize({5, 5});
    EXPECT_EQ(delegate->scrolls, 1);
    EXPECT_EQ(scrollView->contentOffset().x, -30);
    // A new bounds origin set directly is a new offset too.
    scrollView->setBounds({{-30, 0}, {200, 200}});
    EXPECT_EQ(delegate->scrolls, 2);
    EXPECT_EQ(delegate->lastOffset.y, 0);

    // A non-finite coordinate keeps the current one.
    scrollView->setContentOffset({NAN, 10});
    EXPECT_EQ(delegate->scrolls, 3);
    EXPECT_EQ(scrollView->contentOffset(), (VLXPoint{-30, 10}));
    scrollView->setContentSize({NAN, -5});
    EXPECT_EQ(scrollView->contentSize(), (VLXSize{0, 0}));

    // The delegate is not kept alive, and one that has gone is not called.
    delegate.reset();
    EXPECT_EQ(scrollView->delegate(), nullptr);
    scrollView->setContentOffset({1, 1});
    EXPECT_EQ(scrollView->contentOffset().x, 1);
}

TEST(ScrollView, OffsetMovesTheContentAnimatedOnTheClock) {
    ManualClock clock;
    auto window = makeWindow({100, 100});
    auto scrollView = VLXScrollView::createWithFrame({{0, 0}, {100, 100}});
    auto block = VLXView::createWithFrame({{10, 10}, {20, 20}});
    block->setBackgroundColor(VLXColor::blueColor());
    scrollView->addSubview(block);
    window->addSubview(scrollView);
    EXPECT_EQ(inkBox(*window->snapshot()).origin, (VLXPoint{10, 10}));
    scrollView->setContentOffset({5, -20});
    EXPECT_EQ(inkBox(*window->snapshot()).origin, (VLXPoint{5, 30}));
    scrollView->setContentOffset({0, 0});

    // Animated: the model moves at once, the screen on the clock; the end is reported once.
    auto delegate = std::make_shared<CountingDelegate>();
    scrollView->setDelegate(delegate);
    window->renderFrame();

    scrollView->setContentOffset({0, 60}, true);
    EXPECT_EQ(delegate->scrolls, 1);
    EXPECT_EQ(scrollView->contentOffset().y, 60);
    window->renderFrame();
    VLXClock::advance(0.15);
    window->renderFrame();
    auto presentation = scrollView->layer()->presentationLayer();
    ASSERT_TRUE(presentation);
    EXPECT_GT(presentation->bounds().origin.y, 0);
    EXPECT_LT(presentation->bounds().origin.y, 60);
    EXPECT_EQ(delegate->animationsEnded, 0);
    VLXClock::advance(0.5);
    window->renderFrame();
    window->renderFrame();
    EXPECT_EQ(delegate->animationsEnded, 1);
    EXPECT_EQ(delegate->scrolls, 1);
}
