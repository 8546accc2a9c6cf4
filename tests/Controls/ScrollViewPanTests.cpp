#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Foundation/VLXRunLoop.h>
#include <VelmarCoreUI/Platform/Input/VLXEvent.h>
#include <VelmarCoreUI/Platform/Input/VLXLongPressGestureRecognizer.h>
#include <VelmarCoreUI/Platform/Input/VLXPanGestureRecognizer.h>
#include <VelmarCoreUI/Platform/Input/VLXTouchSynthesizer.h>
#include <VelmarCoreUI/Platform/Views/VLXScrollView.h>
#include <VelmarCoreUI/Platform/Views/VLXWindow.h>

namespace {

// Delegate calls in order, runs of scrolls folded into one "scroll".
struct Recorder : VLXScrollViewDelegate {
    std::vector<std::string> log;
    std::vector<bool> draggingWhenScrolled;

    void add(const std::string& entry) {
        if (entry == "scroll" && !log.empty() && log.back() == "scroll") {
            return;
        }
        log.push_back(entry);
    }
    std::string text() const {
        std::string joined;
        for (const auto& entry : log) {
            joined += (joined.empty() ? "" : " ") + entry;
        }
        return joined;
    }
    void scrollViewDidScroll(VLXScrollView& s) override {
        draggingWhenScrolled.push_back(s.isDragging());
        add("scroll");
    }
    void scrollViewWillBeginDragging(VLXScrollView&) override { add("willBeginDragging"); }
    void scrollViewDidEndDragging(VLXScrollView&, bool decelerate) override {
        add(decelerate ? "didEndDragging(1)" : "didEndDragging(0)");
    }
    void scrollViewWillBeginDecelerating(VLXScrollView&) override { add("willDecelerate"); }
    void scrollViewDidEndDecelerating(VLXScrollView&) override { add("didEndDecelerating"); }
};

// A content view that records which of its touch methods ran.
class ContentView : public VLXView {
public:
    static std::shared_ptr<ContentView> create(VLXRect frame) {
        return makeWithFrame<ContentView>(frame);
    }
    void touchesBegan(const Touches&, const VLXEvent&) override { add("began"); }
    void touchesMoved(const Touches&, const VLXEvent&) override { add("moved"); }
    void touchesEnded(const Touches&, const VLXEvent&) override { add("ended"); }
    void touchesCancelled(const Touches&, const VLXEvent&) override { add("cancelled"); }
    std::string calls;

private:
    void add(const char* what) {
        if (calls.size() >= 5 && calls.compare(calls.size() - 5, 5, "moved") == 0 &&
            std::string(what) == "moved") {
            return;
        }
        calls += (calls.empty() ? "" : " ") + std::string(what);
    }
};

// A 100 × 100 scroll view at the window's origin, on the manual clock.
struct Scene {
    Scene() {
        VLXClock::setManual(500);
        window->addSubview(scroll);
        scroll->setDelegate(recorder);
    }
    ~Scene() { VLXClock::setReal(); }

    // A flick to the left: 6 moves of 10 points every 1/60 s, then the lift (600 pt/s).
    void flickLeft(VLXPoint from) {
        synth.touchDown(0, from);
        for (int i = 1; i <= 6; ++i) {
            synth.wait(VLXTouchSynthesizer::kStepInterval);
            synth.moveTo(0, {from.x - 10 * i, from.y});
        }
        releaseVelocity = scroll->panGestureRecognizer()->velocityInView(scroll.get());
        synth.lift(0);
    }
    void runFor(double seconds) { VLXRunLoop::main().runUntil(VLXClock::now() + seconds); }

    std::shared_ptr<VLXWindow> window = VLXWindow::createWithFrame({{0, 0}, {300, 300}});
    std::shared_ptr<VLXScrollView> scroll = VLXScrollView::createWithFrame({{0, 0}, {100, 100}});
    std::shared_ptr<Recorder> recorder = std::make_shared<Recorder>();
    VLXTouchSynthesizer synth{window};
    VLXPoint releaseVelocity{};
};

// The offset a glide at `speed` ends at past its start: speed decaying by the documented rate
// per millisecond until it is below the documented minimum.
double glideDistance(double speed) {
    const double k = 1000 * std::log(VLXScrollView::kDecelerationRate);
    return (VLXScrollView::kMinimumDecelerationSpeed - speed) / k;
}

}  // namespace

TEST(ScrollViewPan, DragFollowsTheFingerWithinTheContent) {
    Scene scene;
    auto& scroll = *scene.scroll;
    ASSERT_NE(scroll.panGestureRecognizer(), nullptr);
    EXPECT_EQ(scroll.panGestureRecognizer()->view(), &scroll);
    EXPECT_EQ(scroll.pinchGestureRecognizer(), nullptr);
    scroll.setContentSize({300, 400});
    scroll.setDecelerationEnabled(false);

    scene.synth.drag({80, 80}, {30, 50});
    EXPECT_EQ(scroll.contentOffset(), (VLXPoint{50, 30}));
    EXPECT_EQ(scene.recorder->text(), "willBeginDragging scroll didEndDragging(0)");
    for (bool dragging : scene.recorder->draggingWhenScrolled) {
        EXPECT_TRUE(dragging);
    }
    EXPECT_FALSE(scroll.isDragging());

    // Far past either end: the offset stops at the content's edges (no rubber band).
    scene.synth.drag({90, 90}, {-400, -400});
    EXPECT_EQ(scroll.contentOffset(), (VLXPoint{200, 300}));
    scene.synth.drag({10, 10}, {290, 290});
    EXPECT_EQ(scroll.contentOffset(), (VLXPoint{0, 0}));
    EXPECT_FALSE(scroll.isDecelerating());

    // A scrolled view keeps following: the start offset is where the drag picks up.
    scroll.setContentOffset({100, 100});
    scene.synth.drag({50, 50}, {70, 40});
    EXPECT_EQ(scroll.contentOffset(), (VLXPoint{80, 110}));
}

TEST(ScrollViewPan, MovesOnlyAlongAxesThatScroll) {
    Scene scene;
    auto& scroll = *scene.scroll;
    scroll.setDecelerationEnabled(false);
    scroll.setContentSize({300, 100});  // only wider than the bounds
    scroll.setContentOffset({0, 7});    // set by code on the fixed axis: kept
    scene.synth.drag({80, 80}, {30, 30});
    EXPECT_EQ(scroll.contentOffset(), (VLXPoint{50, 7}));

    // Content that fits both ways: no drag at all; the press belongs to the content.
    scroll.setContentOffset({0, 0});
    scene.recorder->log.clear();
    scroll.setContentSize({100, 100});
    auto content = ContentView::create({{0, 0}, {100, 100}});
    scroll.addSubview(content);
    scene.synth.drag({50, 80}, {20, 10});
    EXPECT_EQ(content->calls, "began moved ended");
    EXPECT_EQ(scene.recorder->text(), "");
    EXPECT_EQ(scroll.contentOffset(), (VLXPoint{0, 0}));

    // A bounce flag opens the axis: the drag begins and takes the touch, but there is no room.
    scroll.setAlwaysBounceVertical(true);
    content->calls.clear();
    scene.synth.drag({50, 80}, {50, 10});
    EXPECT_EQ(content->calls, "began moved cancelled");
    EXPECT_EQ(scene.recorder->text(), "willBeginDragging didEndDragging(0)");
    EXPECT_EQ(scroll.contentOffset(), (VLXPoint{0, 0}));
}

TEST(ScrollViewPan, ContentTouchesAndALongPressThatWins) {
    Scene scene;
    auto& scroll = *scene.scroll;
    scroll.setDecelerationEnabled(false);
    scroll.setContentSize({100, 500});
    auto content = ContentView::create({{0, 0}, {100, 50}});
    scroll.addSubview(content);

    // Without take-over, a touch held by the content never drags; one on the bare scroll view does.
    scroll.setCanCancelContentTouches(false);
    scene.synth.drag({50, 40}, {50, 0});
    EXPECT_EQ(scroll.contentOffset(), (VLXPoint{0, 0}));
    EXPECT_EQ(content->calls, "began moved ended");
    scene.synth.drag({50, 90}, {50, 60});
    EXPECT_EQ(scroll.contentOffset(), (VLXPoint{0, 30}));

    // Turned off while the finger rests on the content, before the drag began.
    scroll.setContentOffset({0, 0});
    scroll.setCanCancelContentTouches(true);
    scene.synth.touchDown(0, {50, 30});
    scene.synth.moveTo(0, {50, 27});
    scroll.setCanCancelContentTouches(false);
    scene.synth.moveTo(0, {50, 0});
    scene.synth.lift(0);
    EXPECT_EQ(scroll.contentOffset(), (VLXPoint{0, 0}));
    scroll.setCanCancelContentTouches(true);

    // A long press in the content that begins before the finger moves keeps the drag out.
    auto press = VLXLongPressGestureRecognizer::create();
    std::vector<VLXGestureRecognizerState> pressStates;
    press->addAction([&](VLXGestureRecognizer& r) { pressStates.push_back(r.state()); });
    content->addGestureRecognizer(press);
    scene.recorder->log.clear();
    scene.synth.pressAndDrag({50, 40}, {50, 0}, 0.8, 0.3);
    EXPECT_EQ(scroll.contentOffset(), (VLXPoint{0, 0}));
    EXPECT_EQ(scene.recorder->text(), "");
    ASSERT_GE(pressStates.size(), 3u);
    EXPECT_EQ(pressStates.front(), VLXGestureRecognizerState::Began);
    EXPECT_EQ(pressStates.back(), VLXGestureRecognizerState::Ended);

    // A quick drag is the scroll view's: the press fails and hears nothing.
    pressStates.clear();
    scene.synth.drag({50, 40}, {50, 0}, 0.2);
    EXPECT_EQ(scroll.contentOffset(), (VLXPoint{0, 40}));
    EXPECT_TRUE(pressStates.empty());
}

TEST(ScrollViewPan, ScrollingOffDisablesThePan) {
    Scene scene;
    auto& scroll = *scene.scroll;
    scroll.setContentSize({500, 100});
    scroll.setDecelerationEnabled(false);
    scroll.setScrollEnabled(false);
    EXPECT_FALSE(scroll.panGestureRecognizer()->isEnabled());
    scene.synth.drag({80, 50}, {20, 50});
    EXPECT_EQ(scroll.contentOffset(), (VLXPoint{0, 0}));

    // Switched off in the middle of a drag: the drag ends there and the finger no longer moves it.
    scroll.setScrollEnabled(true);
    scene.synth.touchDown(0, {80, 50});
    scene.synth.moveTo(0, {50, 50});
    EXPECT_TRUE(scroll.isDragging());
    scroll.setScrollEnabled(false);
    EXPECT_FALSE(scroll.isDragging());
    const VLXPoint stopped = scroll.contentOffset();
    scene.synth.moveTo(0, {10, 50});
    scene.synth.lift(0);
    EXPECT_EQ(scroll.contentOffset(), stopped);
    EXPECT_EQ(scene.recorder->text(), "willBeginDragging scroll didEndDragging(0)");
}

TEST(ScrollViewPan, GlidesAfterAFlickAndEndsWithinItsRange) {
    Scene scene;
    auto& scroll = *scene.scroll;
    scroll.setContentSize({2000, 100});
    scene.flickLeft({90, 50});
    const double speed = -scene.releaseVelocity.x;
    ASSERT_GT(speed, 500);
    EXPECT_TRUE(scroll.isDecelerating());
    const double released = scroll.contentOffset().x;

    // The offset keeps growing while the glide slows, then stays.
    double last = released;
    double lastStep = INFINITY;
    for (int i = 0; i < 10; ++i) {
        scene.runFor(0.1);
        const double x = scroll.contentOffset().x;
        EXPECT_GT(x, last);
        EXPECT_LT(x - last, lastStep);
        lastStep = x - last;
        last = x;
    }
    scene.runFor(2);
    EXPECT_FALSE(scroll.isDecelerating());
    EXPECT_NEAR(scroll.contentOffset().x - released, glideDistance(speed), 1e-6);
    EXPECT_EQ(scroll.contentOffset().y, 0);
    EXPECT_EQ(scene.recorder->text(),
              "willBeginDragging scroll didEndDragging(1) willDecelerate scroll "
              "didEndDecelerating");

    // A glide that reaches the end stops there and then.
    scene.recorder->log.clear();
    scroll.setContentSize({250, 100});
    scroll.setContentOffset({0, 0});
    scene.flickLeft({90, 50});
    scene.runFor(0.5);
    EXPECT_FALSE(scroll.isDecelerating());
    EXPECT_EQ(scroll.contentOffset().x, 150);

    // Off, or a finger that stops before lifting: the drag ends without a glide.
    scene.recorder->log.clear();
    scroll.setContentOffset({0, 0});
    scroll.setDecelerationEnabled(false);
    scene.flickLeft({90, 50});
    EXPECT_EQ(scene.recorder->text(), "scroll willBeginDragging scroll didEndDragging(0)");
    scroll.setDecelerationEnabled(true);
    scene.synth.touchDown(0, {90, 50});
    scene.synth.moveTo(0, {40, 50});
    scene.synth.wait(0.3);
    scene.synth.lift(0);
    EXPECT_FALSE(scroll.isDecelerating());
}

TEST(ScrollViewPan, ATouchOrANewOffsetStopsTheGlide) {
    Scene scene;
    auto& scroll = *scene.scroll;
    scroll.setContentSize({2000, 100});
    scene.flickLeft({90, 50});
    scene.runFor(0.1);
    scene.synth.touchDown(0, {50, 50});
    EXPECT_FALSE(scroll.isDecelerating());
    const double held = scroll.contentOffset().x;
    scene.runFor(1);
    EXPECT_EQ(scroll.contentOffset().x, held);
    scene.synth.lift(0);
    EXPECT_EQ(scene.recorder->log.back(), "didEndDecelerating");

    scene.flickLeft({90, 50});
    scene.runFor(0.1);
    scroll.setContentOffset({10, 0});
    EXPECT_FALSE(scroll.isDecelerating());
    scene.runFor(1);
    EXPECT_EQ(scroll.contentOffset().x, 10);

    // A scroll view that goes away mid-glide leaves nothing running behind it.
    scene.flickLeft({90, 50});
    std::weak_ptr<VLXScrollView> weak = scene.scroll;
    scene.scroll->removeFromSuperview();
    scene.scroll.reset();
    scene.runFor(1);
    EXPECT_TRUE(weak.expired());
}
