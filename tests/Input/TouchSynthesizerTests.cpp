#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Foundation/VLXTimer.h>
#include <VelmarCoreUI/Platform/Input/VLXEvent.h>
#include <VelmarCoreUI/Platform/Input/VLXGestureRecognizer.h>
#include <VelmarCoreUI/Platform/Input/VLXTouchSynthesizer.h>
#include <VelmarCoreUI/Platform/Views/VLXWindow.h>

namespace {

using Synth = VLXTouchSynthesizer;
using Points = std::vector<VLXPoint>;

// Every event a recogniser sees, as it was then: phases of all its touches ("SB": stationary,
// began), their points and tap counts, and its time.
struct Logged {
    std::string phases;
    Points points;
    std::vector<std::uint32_t> taps;
    double time;
};
class EventLogger : public VLXGestureRecognizer {
public:
    static std::shared_ptr<EventLogger> create() { return makeInitialized<EventLogger>(); }
    void touchesBegan(const VLXTouchSet&, const VLXEvent& e) override { log(e); }
    void touchesMoved(const VLXTouchSet&, const VLXEvent& e) override { log(e); }
    void touchesEnded(const VLXTouchSet&, const VLXEvent& e) override { log(e); }
    void touchesCancelled(const VLXTouchSet&, const VLXEvent& e) override { log(e); }
    std::string phases() const {
        std::string text;
        for (const auto& event : events) {
            text += (text.empty() ? "" : " ") + event.phases;
        }
        return text;
    }
    std::vector<Logged> events;

private:
    void log(const VLXEvent& event) {
        Logged logged{"", {}, {}, event.timestamp()};
        for (const auto& touch : event.allTouches()) {
            logged.phases += "BMSEC"[static_cast<int>(touch->phase())];
            logged.points.push_back(touch->locationInView(nullptr));
            logged.taps.push_back(touch->tapCount());
        }
        events.push_back(logged);
    }
};

struct Scene {
    Scene() {
        VLXClock::setManual(1000);
        logger->setDelaysTouchesEnded(false);
        window->addSubview(view);
        view->addGestureRecognizer(logger);
    }
    ~Scene() { VLXClock::setReal(); }
    std::shared_ptr<VLXWindow> window = VLXWindow::createWithFrame({{0, 0}, {400, 300}});
    std::shared_ptr<VLXView> view = VLXView::createWithFrame({{}, {400, 300}});
    std::shared_ptr<EventLogger> logger = EventLogger::create();
    std::vector<Logged>& events = logger->events;
    Synth synth{window};
};

}  // namespace

TEST(TouchSynthesizer, TapsAndPressesKeepTheirTimingAndTapCounts) {
    Scene scene;
    auto& events = scene.events;
    double t0 = VLXClock::now();
    scene.synth.tap({50, 60});
    ASSERT_EQ(scene.logger->phases(), "B E");
    EXPECT_EQ(events[1].points, (Points{{50, 60}}));
    EXPECT_DOUBLE_EQ(events[1].time, t0 + Synth::kTapDuration);
    // The gesture returns after its settle time, with no finger left down.
    EXPECT_DOUBLE_EQ(VLXClock::now(), t0 + Synth::kTapDuration + Synth::kSettleDuration);
    EXPECT_EQ(scene.synth.activeTouchCount(), 0u);

    events.clear();
    t0 = VLXClock::now();
    scene.synth.doubleTap({10, 20});
    ASSERT_EQ(scene.logger->phases(), "B E B E");
    EXPECT_EQ(events[0].taps[0] * 10 + events[2].taps[0], 12u);
    EXPECT_DOUBLE_EQ(events[2].time, t0 + Synth::kTapDuration + Synth::kTapGap);

    // Two fingers come down in one event and lift in one.
    events.clear();
    scene.synth.twoFingerTap({200, 100}, 40);
    ASSERT_EQ(scene.logger->phases(), "BB EE");
    EXPECT_EQ(events[0].points, (Points{{180, 100}, {220, 100}}));

    // Timers fire at their dates while the finger is held.
    events.clear();
    t0 = VLXClock::now();
    std::size_t downAtTimer = 0;
    auto timer = VLXTimer::scheduledTimer(
        0.5, false, [&](VLXTimer&) { downAtTimer = scene.synth.activeTouchCount() + 10; });
    scene.synth.longPress({100, 100}, 0.8);
    EXPECT_EQ(downAtTimer, 11u);
    EXPECT_DOUBLE_EQ(events.back().time, t0 + 0.8);
}

TEST(TouchSynthesizer, DragsAndPinchesMoveInStepsToTheirEnds) {
    Scene scene;
    auto& events = scene.events;
    const double t0 = VLXClock::now();
    scene.synth.drag({100, 100}, {160, 40}, 0.3);
    ASSERT_EQ(events.size(), 2u + 18u);  // 0.3 s at 60 moves a second
    for (std::size_t i = 1; i + 1 < events.size(); ++i) {
        EXPECT_EQ(events[i].phases, "M");
        EXPECT_NEAR(events[i].time, t0 + double(i) * Synth::kStepInterval, 1e-9);
        // Along the straight line, further each step.
        EXPECT_NEAR(events[i].points[0].x - 100, 100 - events[i].points[0].y, 1e-9);
        EXPECT_GT(events[i].points[0].x, events[i - 1].points[0].x);
    }
    // The lift comes with the last move, where it ended: no pause that would stop a flick.
    EXPECT_EQ(events.back().phases, "E");
    EXPECT_EQ(events.back().points, (Points{{160, 40}}));
    EXPECT_NEAR(events.back().time, t0 + 0.3, 1e-9);

    events.clear();
    scene.synth.pinch({200, 150}, 40, 100, 0.5);
    ASSERT_EQ(events.size(), 32u);
    EXPECT_EQ(events[0].phases + events[10].phases + events[31].phases, "BBMMEE");
    EXPECT_EQ(events[0].points, (Points{{180, 150}, {220, 150}}));
    EXPECT_EQ(events[31].points, (Points{{150, 150}, {250, 150}}));
}

TEST(TouchSynthesizer, SingleEventsMarkOtherFingersStationary) {
    Scene scene;
    auto& synth = scene.synth;
    int observed = 0;
    synth.setEventObserver([&](const VLXEvent&) { ++observed; });
    synth.touchDown(3, {10, 10});
    synth.touchDown(7, {30, 10});
    synth.touchDown(7, {99, 99});  // already down: nothing
    synth.moveTo(7, {40, 20});
    synth.moveTo(5, {1, 1});  // not down: nothing
    synth.lift(3);
    synth.moveTo(7, {45, 25});
    EXPECT_EQ(synth.activeTouchCount(), 1u);
    synth.cancelAll();
    synth.lift(7);  // already gone
    EXPECT_EQ(scene.logger->phases(), "B SB SM ES M C");
    EXPECT_EQ(observed, 6);

    // A gesture takes a finger number that is free, beside one the caller holds.
    scene.events.clear();
    synth.touchDown(0, {300, 200});
    synth.tap({20, 20});
    EXPECT_EQ(scene.logger->phases(), "B SB SE");
    EXPECT_EQ(synth.activeTouchCount(), 1u);
}

TEST(TouchSynthesizer, BadInputAndAGoneWindow) {
    Scene scene;
    const double nan = std::numeric_limits<double>::quiet_NaN();
    {
        Synth synth(scene.window);
        const double t0 = VLXClock::now();
        synth.wait(nan);
        synth.wait(-5);
        EXPECT_DOUBLE_EQ(VLXClock::now(), t0);
        synth.wait(std::numeric_limits<double>::infinity());
        EXPECT_DOUBLE_EQ(VLXClock::now(), t0 + Synth::kMaximumDuration);

        synth.drag({10, 10}, {nan, 50}, nan);  // the bad coordinate is never delivered
        synth.pinch({100, 100}, nan, 1e300, 0.05);
        for (const auto& event : scene.events) {
            EXPECT_TRUE(std::isfinite(event.points[0].x));
        }
        // A finger left down is cancelled when the synthesiser goes.
        scene.events.clear();
        synth.touchDown(1, {5, 5});
    }
    EXPECT_EQ(scene.logger->phases(), "B C");

    scene.events.clear();
    scene.window.reset();
    scene.synth.tap({10, 10});
    EXPECT_EQ(scene.synth.activeTouchCount(), 0u);
    EXPECT_TRUE(scene.events.empty());
}
