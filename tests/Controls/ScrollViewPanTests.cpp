#include <cmath>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Foundation/VLXRunLoop.h>
#include <VelmarCoreUI/Platform/Input/VLXPanGestureRecognizer.h>
#include <VelmarCoreUI/Platform/Input/VLXTouchSynthesizer.h>
#include <VelmarCoreUI/Platform/Views/VLXScrollView.h>
#include <VelmarCoreUI/Platform/Views/VLXWindow.h>

namespace {

// Delegate calls in order, runs of scrolls folded into one "scroll".
struct Recorder : VLXScrollViewDelegate {
    std::string log;
    void add(const std::string& entry) {
        if (entry != "scroll" || !log.ends_with("scroll")) {
            log += (log.empty() ? "" : " ") + entry;
        }
    }
    void scrollViewDidScroll(VLXScrollView&) override { add("scroll"); }
    void scrollViewWillBeginDragging(VLXScrollView&) override { add("drag"); }
    void scrollViewDidEndDragging(VLXScrollView&, bool glide) override {
        add(glide ? "endDrag(glide)" : "endDrag");
    }
    void scrollViewWillBeginDecelerating(VLXScrollView&) override { add("glide"); }
    void scrollViewDidEndDecelerating(VLXScrollView&) override { add("endGlide"); }
};

// Content that records its touch methods ("b m e c"), repeated moves once.
class ContentView : public VLXView {
public:
    static std::shared_ptr<ContentView> create(VLXRect f) { return makeWithFrame<ContentView>(f); }
    void touchesBegan(const Touches&, const VLXEvent&) override { calls += "b"; }
    void touchesMoved(const Touches&, const VLXEvent&) override {
        calls += calls.ends_with('m') ? "" : "m";
    }
    void touchesEnded(const Touches&, const VLXEvent&) override { calls += "e"; }
    void touchesCancelled(const Touches&, const VLXEvent&) override { calls += "c"; }
    std::string calls;
};

// A 100 × 100 scroll view at the window's origin, on the manual clock.
struct Scene {
    Scene() {
        VLXClock::setManual(500);
        window->addSubview(scroll);
        scroll->setDelegate(recorder);
    }
    ~Scene() { VLXClock::setReal(); }
    // Six moves of 10 points to the left every 1/60 s, then the lift: 600 pt/s.
    void flickLeft() {
        synth.touchDown(0, {90, 50});
        for (int i = 1; i <= 6; ++i) {
            synth.wait(VLXTouchSynthesizer::kStepInterval);
            synth.moveTo(0, {90.0 - 10 * i, 50});
        }
        releaseSpeed = -scroll->panGestureRecognizer()->velocityInView(scroll.get()).x;
        synth.lift(0);
    }
    void runFor(double seconds) { VLXRunLoop::main().runUntil(VLXClock::now() + seconds); }
    void drag(VLXPoint from, VLXPoint to) { synth.drag(from, to); }
    VLXPoint offset() const { return scroll->contentOffset(); }

    std::shared_ptr<VLXWindow> window = VLXWindow::createWithFrame({{0, 0}, {300, 300}});
    std::shared_ptr<VLXScrollView> scroll = VLXScrollView::createWithFrame({{0, 0}, {100, 100}});
    std::shared_ptr<Recorder> recorder = std::make_shared<Recorder>();
    VLXTouchSynthesizer synth{window};
    double releaseSpeed = 0;
};

}  // namespace

TEST(ScrollViewPan, DragFollowsTheFingerAlongAxesThatScroll) {
    Scene scene;
    ASSERT_NE(scene.scroll->panGestureRecognizer(), nullptr);
    scene.scroll->setContentSize({300, 400});
    scene.scroll->setDecelerationEnabled(false);
    scene.drag({80, 80}, {30, 50});
    EXPECT_EQ(scene.offset(), (VLXPoint{50, 30}));
    EXPECT_EQ(scene.recorder->log, "drag scroll endDrag");
    // Far past either end the offset stops at the content's edges (no rubber band).
    scene.drag({90, 90}, {-400, -400});
    EXPECT_EQ(scene.offset(), (VLXPoint{200, 300}));
    scene.drag({10, 10}, {295, 315});
    EXPECT_EQ(scene.offset(), (VLXPoint{0, 0}));
    // Only wider than the bounds: the vertical offset, even one set out of range, stays.
    scene.scroll->setContentSize({300, 100});
    scene.scroll->setContentOffset({100, 7});
    scene.drag({50, 50}, {70, 20});
    EXPECT_EQ(scene.offset(), (VLXPoint{80, 7}));
}

TEST(ScrollViewPan, ContentThatFitsOrHoldsTheTouchIsNotDragged) {
    Scene scene;
    auto& scroll = *scene.scroll;
    auto& synth = scene.synth;
    scroll.setDecelerationEnabled(false);
    auto content = ContentView::create({{0, 0}, {100, 50}});
    scroll.addSubview(content);

    // Fits both ways: the drag never begins and the content keeps its touch.
    scroll.setContentSize({100, 100});
    scene.drag({50, 40}, {20, 0});
    EXPECT_EQ(content->calls, "bme");
    // A bounce flag opens the axis: the drag takes the touch, though there is no room to move.
    scroll.setAlwaysBounceVertical(true);
    scene.drag({50, 40}, {50, 0});
    EXPECT_EQ(content->calls, "bmebmc");
    EXPECT_EQ(scene.recorder->log, "drag endDrag");
    EXPECT_EQ(scene.offset(), (VLXPoint{0, 0}));

    // Without take-over, a touch on the content never drags; one on the bare scroll view does.
    scroll.setContentSize({100, 500});
    scroll.setCanCancelContentTouches(false);
    content->calls.clear();
    scene.drag({50, 40}, {50, 0});
    EXPECT_EQ(content->calls, "bme");
    scene.drag({50, 90}, {50, 60});
    EXPECT_EQ(scene.offset(), (VLXPoint{0, 30}));
    // Turned off while the finger rests on the content, before the drag began.
    scroll.setCanCancelContentTouches(true);
    synth.touchDown(0, {50, 10});
    synth.moveTo(0, {50, 7});
    scroll.setCanCancelContentTouches(false);
    synth.moveTo(0, {50, -40});
    synth.lift(0);
    EXPECT_EQ(scene.offset(), (VLXPoint{0, 30}));

    // Scrolling off disables the pan, ending a drag in progress where it is.
    scene.recorder->log.clear();
    synth.touchDown(0, {50, 90});
    synth.moveTo(0, {50, 70});
    scroll.setScrollEnabled(false);
    EXPECT_FALSE(scroll.isDragging() || scroll.panGestureRecognizer()->isEnabled());
    synth.moveTo(0, {50, 10});
    synth.lift(0);
    EXPECT_EQ(scene.offset(), (VLXPoint{0, 50}));
    EXPECT_EQ(scene.recorder->log, "drag scroll endDrag");
}

TEST(ScrollViewPan, GlidesAfterAFlickUntilSlowAtTheEndOrTouched) {
    Scene scene;
    auto& scroll = *scene.scroll;
    const std::string glided = "drag scroll endDrag(glide) glide scroll endGlide";
    scroll.setContentSize({2000, 100});
    scene.flickLeft();
    ASSERT_GT(scene.releaseSpeed, 500);
    EXPECT_TRUE(scroll.isDecelerating());
    const double released = scene.offset().x;
    // Further every tenth of a second, by less each time, then still.
    double last = released, lastStep = INFINITY;
    for (int i = 0; i < 10; ++i) {
        scene.runFor(0.1);
        const double step = scene.offset().x - last;
        EXPECT_TRUE(step > 0 && step < lastStep) << step;
        lastStep = step;
        last += step;
    }
    scene.runFor(2);
    EXPECT_FALSE(scroll.isDecelerating());
    // The speed decays by the documented rate per millisecond until below the minimum speed.
    const double k = 1000 * std::log(VLXScrollView::kDecelerationRate);
    EXPECT_NEAR(scene.offset().x - released,
                (VLXScrollView::kMinimumDecelerationSpeed - scene.releaseSpeed) / k, 1e-6);
    EXPECT_EQ(scene.recorder->log, glided);

    // A touch stops it where it is, and the delegate hears the end; so does a new offset.
    scene.recorder->log.clear();
    scene.flickLeft();
    scene.runFor(0.1);
    scene.synth.touchDown(0, {50, 50});
    const double held = scene.offset().x;
    scene.runFor(1);
    scene.synth.lift(0);
    EXPECT_EQ(scene.offset().x, held);
    EXPECT_EQ(scene.recorder->log, glided);
    scene.flickLeft();
    scroll.setContentOffset({10, 0});
    scene.runFor(1);
    EXPECT_EQ(scene.offset().x, 10);

    // A glide that reaches the end stops there and then.
    scroll.setContentSize({250, 100});
    scroll.setContentOffset({0, 0});
    scene.flickLeft();
    scene.runFor(0.5);
    EXPECT_FALSE(scroll.isDecelerating());
    EXPECT_EQ(scene.offset().x, 150);

    // Gliding off: the drag just ends. A scroll view gone mid-glide leaves nothing running.
    scroll.setContentOffset({0, 0});
    scroll.setDecelerationEnabled(false);
    scene.recorder->log.clear();
    scene.flickLeft();
    EXPECT_EQ(scene.recorder->log, "drag scroll endDrag");
    scroll.setDecelerationEnabled(true);
    scene.flickLeft();
    std::weak_ptr<VLXScrollView> weak = scene.scroll;
    scene.scroll->removeFromSuperview();
    scene.scroll.reset();
    scene.runFor(1);
    EXPECT_TRUE(weak.expired());
}
