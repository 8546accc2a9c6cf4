#pragma once

// Shared by the recogniser tests: a window with one subview on the manual clock, fingers put
// down, moved and lifted through the window, and the states the targets heard.
#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Foundation/VLXRunLoop.h>
#include <VelmarCoreUI/Platform/Input/VLXEvent.h>
#include <VelmarCoreUI/Platform/Input/VLXGestureRecognizer.h>
#include <VelmarCoreUI/Platform/Input/VLXTouch.h>
#include <VelmarCoreUI/Platform/Views/VLXWindow.h>

inline constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

class GestureTest : public ::testing::Test {
protected:
    void SetUp() override {
        VLXClock::setManual(m_now);
        VLXRunLoop::main().runOnce();
        window = VLXWindow::createWithFrame({{0, 0}, {320, 480}});
        view = VLXView::createWithFrame({{20, 40}, {200, 300}});
        window->addSubview(view);
    }
    void TearDown() override {
        view.reset();
        window.reset();
        VLXRunLoop::main().runOnce();
        EXPECT_EQ(VLXRunLoop::main().timerCount(), 0u) << "a recogniser left a timer behind";
        VLXClock::setReal();
    }

    // Adds `recognizer` to the view; its targets' states go to `log`.
    template <class R>
    std::shared_ptr<R> attach(std::shared_ptr<R> recognizer) {
        recognizer->addAction([this](VLXGestureRecognizer& r) {
            log.push_back(VLXGestureRecognizerStateName(r.state()));
        });
        view->addGestureRecognizer(recognizer);
        return recognizer;
    }

    // Fingers down at window points, in one event.
    VLXTouchSet down(std::initializer_list<VLXPoint> points) {
        VLXTouchSet made;
        for (VLXPoint p : points) {
            made.push_back(VLXTouch::create(p, m_now, VLXTouchPhase::Began));
        }
        markStationary();
        m_live.insert(m_live.end(), made.begin(), made.end());
        send();
        return made;
    }
    std::shared_ptr<VLXTouch> down(VLXPoint p) { return down({p}).front(); }

    void move(const std::shared_ptr<VLXTouch>& touch, VLXPoint p) { move({{touch, p}}); }
    void move(std::initializer_list<std::pair<std::shared_ptr<VLXTouch>, VLXPoint>> moves) {
        markStationary();
        for (const auto& [touch, p] : moves) {
            touch->update(p, m_now, VLXTouchPhase::Moved);
        }
        send();
    }
    void up(std::initializer_list<std::shared_ptr<VLXTouch>> touches,
            VLXTouchPhase phase = VLXTouchPhase::Ended) {
        markStationary();
        for (const auto& touch : touches) {
            touch->update(touch->locationInView(nullptr), m_now, phase);
        }
        send();
        std::erase_if(m_live, [](const auto& t) { return t->isFinished(); });
    }
    void up(const std::shared_ptr<VLXTouch>& touch) { up({touch}); }

    // Moves the clock on, firing the timers due on the way.
    void wait(double seconds) {
        m_now += seconds;
        VLXRunLoop::main().runUntil(m_now);
    }
    double now() const { return m_now; }

    std::shared_ptr<VLXWindow> window;
    std::shared_ptr<VLXView> view;
    std::vector<std::string> log;

private:
    void markStationary() {
        for (const auto& touch : m_live) {
            touch->setPhase(VLXTouchPhase::Stationary);
        }
    }
    void send() { window->sendEvent(*VLXEvent::create(m_live, m_now)); }

    double m_now = 100;
    VLXTouchSet m_live;
};

using Log = std::vector<std::string>;

inline ::testing::AssertionResult pointNear(VLXPoint actual, VLXPoint expected,
                                            double tolerance = 1e-9) {
    if (std::abs(actual.x - expected.x) <= tolerance &&
        std::abs(actual.y - expected.y) <= tolerance) {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure() << "(" << actual.x << ", " << actual.y << ") is not ("
                                         << expected.x << ", " << expected.y << ")";
}
