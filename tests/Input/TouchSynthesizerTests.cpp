#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Foundation/VLXRunLoop.h>
#include <VelmarCoreUI/Platform/Foundation/VLXTimer.h>
#include <VelmarCoreUI/Platform/Input/VLXEvent.h>
#include <VelmarCoreUI/Platform/Input/VLXGestureRecognizer.h>
#include <VelmarCoreUI/Platform/Input/VLXTouch.h>
#include <VelmarCoreUI/Platform/Input/VLXTouchSynthesizer.h>
#include <VelmarCoreUI/Platform/Views/VLXWindow.h>

namespace {

using Synth = VLXTouchSynthesizer;

struct ManualClock {
    ManualClock() { VLXClock::setManual(1000); }
    ~ManualClock() { VLXClock::setReal(); }
};

// One call of a touch method: which one, when, and the touches it was given.
struct Call {
    std::string method;
    double time = 0;
    std::vector<VLXPoint> points;
    std::vector<std::uint32_t> tapCounts;
};

Call makeCall(const char* method, const VLXTouchSet& touches, const VLXEvent& event) {
    Call call{method, event.timestamp(), {}, {}};
    for (const auto& touch : touches) {
        call.points.push_back(touch->locationInView(nullptr));
        call.tapCounts.push_back(touch->tapCount());
    }
    return call;
}

class LoggingView : public VLXView {
public:
    static std::shared_ptr<LoggingView> create(VLXRect frame) {
        return makeWithFrame<LoggingView>(frame);
    }
    void touchesBegan(const Touches& t, const VLXEvent& e) override {
        calls.push_back(makeCall("began", t, e));
    }
    void touchesMoved(const Touches& t, const VLXEvent& e) override {
        calls.push_back(makeCall("moved", t, e));
    }
    void touchesEnded(const Touches& t, const VLXEvent& e) override {
        calls.push_back(makeCall("ended", t, e));
    }
    void touchesCancelled(const Touches& t, const VLXEvent& e) override {
        calls.push_back(makeCall("cancelled", t, e));
    }
    std::vector<Call> calls;
};

// Records the phases of every touch of each event it sees; never recognises anything.
class EventLogger : public VLXGestureRecognizer {
public:
    static std::shared_ptr<EventLogger> create() {
        auto logger = makeInitialized<EventLogger>();
        logger->setDelaysTouchesEnded(false);
        return logger;
    }
    void touchesBegan(const VLXTouchSet&, const VLXEvent& e) override { log(e); }
    void touchesMoved(const VLXTouchSet&, const VLXEvent& e) override { log(e); }
    void touchesEnded(const VLXTouchSet&, const VLXEvent& e) override { log(e); }
    void touchesCancelled(const VLXTouchSet&, const VLXEvent& e) override { log(e); }

    // "BS" = the first touch began, the second stationary, in the event's order.
    std::vector<std::string> phases;

private:
    void log(const VLXEvent& event) {
        std::string text;
        for (const auto& touch : event.allTouches()) {
            text += "BMSEC"[static_cast<int>(touch->phase())];
        }
        phases.push_back(text);
    }
};

struct Scene {
    ManualClock clock;
    std::shared_ptr<VLXWindow> window = VLXWindow::createWithFrame({{0, 0}, {400, 300}});
    std::shared_ptr<LoggingView> view = LoggingView::create({{0, 0}, {400, 300}});
    std::shared_ptr<EventLogger> logger = EventLogger::create();
    Scene() {
        window->addSubview(view);
        view->addGestureRecognizer(logger);
    }
    std::string methods() const {
        std::string text;
        for (const auto& call : view->calls) {
            text += (text.empty() ? "" : " ") + call.method;
        }
        return text;
    }
};

}  // namespace

TEST(TouchSynthesizer, TapsCarryTheirTimingAndTapCounts) {
    Scene scene;
    Synth synth(scene.window);
    const double t0 = VLXClock::now();
    synth.tap({50, 60});
    ASSERT_EQ(scene.methods(), "began ended");
    EXPECT_DOUBLE_EQ(scene.view->calls[0].time, t0);
    EXPECT_DOUBLE_EQ(scene.view->calls[1].time, t0 + Synth::kTapDuration);
    EXPECT_EQ(scene.view->calls[1].points, (std::vector<VLXPoint>{{50, 60}}));
    // The gesture waits out its settle time before returning.
    EXPECT_DOUBLE_EQ(VLXClock::now(), t0 + Synth::kTapDuration + Synth::kSettleDuration);
    EXPECT_EQ(synth.activeTouchCount(), 0u);

    scene.view->calls.clear();
    const double t1 = VLXClock::now();
    synth.doubleTap({10, 20});
    ASSERT_EQ(scene.methods(), "began ended began ended");
    const auto& calls = scene.view->calls;
    EXPECT_EQ(calls[0].tapCounts, std::vector<std::uint32_t>{1});
    EXPECT_EQ(calls[2].tapCounts, std::vector<std::uint32_t>{2});
    EXPECT_DOUBLE_EQ(calls[2].time, t1 + Synth::kTapDuration + Synth::kTapGap);
    EXPECT_DOUBLE_EQ(calls[3].time, t1 + 2 * Synth::kTapDuration + Synth::kTapGap);

    scene.view->calls.clear();
    scene.logger->phases.clear();
    synth.twoFingerTap({200, 100}, 40);
    // Both fingers come down in one event and lift in one.
    ASSERT_EQ(scene.methods(), "began ended");
    EXPECT_EQ(calls[0].points, (std::vector<VLXPoint>{{180, 100}, {220, 100}}));
    EXPECT_EQ(scene.logger->phases, (std::vector<std::string>{"BB", "EE"}));
}

TEST(TouchSynthesizer, DragsAndPinchesMoveInStepsToTheirEnds) {
    Scene scene;
    Synth synth(scene.window);
    const double t0 = VLXClock::now();
    synth.drag({100, 100}, {160, 40}, 0.3);
    const auto& calls = scene.view->calls;
    ASSERT_EQ(calls.size(), 2u + 18u);  // 0.3 s at 60 moves a second
    EXPECT_EQ(calls.front().method, "began");
    EXPECT_EQ(calls.back().method, "ended");
    for (std::size_t i = 1; i + 1 < calls.size(); ++i) {
        EXPECT_EQ(calls[i].method, "moved");
        EXPECT_NEAR(calls[i].time, t0 + double(i) * Synth::kStepInterval, 1e-9);
        // On the straight line, further along each step.
        EXPECT_NEAR(calls[i].points[0].x - 100, -(calls[i].points[0].y - 100), 1e-9);
        EXPECT_GT(calls[i].points[0].x, calls[i - 1].points[0].x);
    }
    EXPECT_EQ(calls[calls.size() - 2].points[0], (VLXPoint{160, 40}));
    // The lift comes with the last move (no pause that would kill a fling's speed).
    EXPECT_DOUBLE_EQ(calls.back().time, t0 + 0.3);

    scene.view->calls.clear();
    scene.logger->phases.clear();
    const double t1 = VLXClock::now();
    synth.pressAndDrag({50, 50}, {50, 80}, 0.8, 0.1);
    EXPECT_DOUBLE_EQ(calls[1].time, t1 + 0.8 + Synth::kStepInterval);

    scene.view->calls.clear();
    scene.logger->phases.clear();
    synth.pinch({200, 150}, 40, 100, 0.5);
    EXPECT_EQ(calls.front().points, (std::vector<VLXPoint>{{180, 150}, {220, 150}}));
    EXPECT_EQ(calls[calls.size() - 2].points, (std::vector<VLXPoint>{{150, 150}, {250, 150}}));
    ASSERT_EQ(scene.logger->phases.size(), 32u);
    EXPECT_EQ(scene.logger->phases.front(), "BB");
    EXPECT_EQ(scene.logger->phases[10], "MM");
    EXPECT_EQ(scene.logger->phases.back(), "EE");
}

TEST(TouchSynthesizer, SingleEventsMarkOtherFingersStationaryAndDropLiftedOnes) {
    Scene scene;
    Synth synth(scene.window);
    std::vector<std::size_t> observed;
    synth.setEventObserver(
        [&](const VLXEvent& event) { observed.push_back(event.allTouches().size()); });
    synth.touchDown(3, {10, 10});
    synth.touchDown(7, {30, 10});
    synth.touchDown(7, {99, 99});  // already down: nothing
    synth.moveTo(7, {40, 20});
    synth.moveTo(5, {1, 1});  // not down: nothing
    synth.lift(3);
    synth.moveTo(7, {45, 25});
    EXPECT_EQ(synth.activeTouchCount(), 1u);
    synth.cancelAll();
    EXPECT_EQ(synth.activeTouchCount(), 0u);
    synth.lift(7);  // already gone
    EXPECT_EQ(scene.logger->phases, (std::vector<std::string>{"B", "SB", "SM", "ES", "M", "C"}));
    EXPECT_EQ(observed, (std::vector<std::size_t>{1, 2, 2, 2, 1, 1}));
    EXPECT_EQ(scene.methods(), "began began moved ended moved cancelled");

    // Gestures take finger numbers that are free, around a finger held down by the caller.
    scene.logger->phases.clear();
    synth.touchDown(0, {300, 200});
    synth.tap({20, 20});
    EXPECT_EQ(scene.logger->phases[0], "SB");
    EXPECT_EQ(synth.activeTouchCount(), 1u);
    synth.lift(0);
}

TEST(TouchSynthesizer, RunLoopTimersFireDuringAPress) {
    Scene scene;
    Synth synth(scene.window);
    const double t0 = VLXClock::now();
    std::size_t downAtTimer = 99;
    double firedAt = 0;
    auto timer = VLXTimer::scheduledTimer(0.5, false, [&](VLXTimer&) {
        downAtTimer = synth.activeTouchCount();
        firedAt = VLXClock::now();
    });
    synth.longPress({100, 100}, 0.8);
    EXPECT_EQ(downAtTimer, 1u);
    EXPECT_DOUBLE_EQ(firedAt, t0 + 0.5);
    EXPECT_DOUBLE_EQ(scene.view->calls.back().time, t0 + 0.8);
}

TEST(TouchSynthesizer, BadInputAndAGoneWindow) {
    Scene scene;
    {
        Synth synth(scene.window);
        const double t0 = VLXClock::now();
        synth.wait(std::numeric_limits<double>::quiet_NaN());
        synth.wait(-5);
        EXPECT_DOUBLE_EQ(VLXClock::now(), t0);
        synth.wait(std::numeric_limits<double>::infinity());
        EXPECT_DOUBLE_EQ(VLXClock::now(), t0 + Synth::kMaximumDuration);

        const double nan = std::numeric_limits<double>::quiet_NaN();
        synth.drag({10, 10}, {nan, 50}, nan);  // one step, the bad point not taken
        ASSERT_FALSE(scene.view->calls.empty());
        for (const auto& call : scene.view->calls) {
            EXPECT_TRUE(std::isfinite(call.points[0].x));
        }
        synth.pinch({100, 100}, nan, 1e300, 0.05);
        // A finger left down is cancelled when the synthesiser goes.
        scene.view->calls.clear();
        synth.touchDown(1, {5, 5});
    }
    EXPECT_EQ(scene.methods(), "began cancelled");

    Synth orphan(scene.window);
    scene.view->calls.clear();
    scene.window.reset();
    orphan.tap({10, 10});
    orphan.touchDown(0, {10, 10});
    EXPECT_EQ(orphan.activeTouchCount(), 0u);
    EXPECT_TRUE(scene.view->calls.empty());
}
