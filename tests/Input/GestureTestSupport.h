#pragma once

// Shared by the recogniser tests: a window with one subview on the manual clock, fingers put
// down, moved and lifted through the window, and the states the targets heard.
#include <algorithm>
#include <cmath>
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

using Log = std::vector<std::string>;

class GestureTest : public ::testing::Test {
protected:
    void SetUp() override {
        VLXClock::setManual(m_now);
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

    // Adds `recognizer` to the view; what its targets hear goes to `log` as "<prefix>state".
    template <class R>
    std::shared_ptr<R> attach(std::shared_ptr<R> recognizer, std::string prefix = "") {
        recognizer->addAction([this, prefix](VLXGestureRecognizer& r) {
            log.push_back(prefix + VLXGestureRecognizerStateName(r.state()));
        });
        view->addGestureRecognizer(recognizer);
        return recognizer;
    }

    // Fingers down at window points, in one event.
    VLXTouchSet down(std::initializer_list<VLXPoint> points) {
        rest();
        const auto first = m_live.size();
        for (VLXPoint p : points) {
            m_live.push_back(VLXTouch::create(p, m_now));
        }
        send();
        return {m_live.begin() + static_cast<std::ptrdiff_t>(first), m_live.end()};
    }
    std::shared_ptr<VLXTouch> down(VLXPoint p) { return down({p}).front(); }
    void move(std::initializer_list<std::pair<std::shared_ptr<VLXTouch>, VLXPoint>> moves) {
        rest();
        for (const auto& [touch, p] : moves) {
            touch->update(p, m_now, VLXTouchPhase::Moved);
        }
        send();
    }
    void move(const std::shared_ptr<VLXTouch>& touch, VLXPoint p) { move({{touch, p}}); }
    void up(const VLXTouchSet& touches, VLXTouchPhase phase = VLXTouchPhase::Ended) {
        rest();
        for (const auto& touch : touches) {
            touch->update(touch->locationInView(nullptr), m_now, phase);
        }
        send();
        std::erase_if(m_live, [](const auto& t) { return t->isFinished(); });
    }
    void up(const std::shared_ptr<VLXTouch>& touch) { up(VLXTouchSet{touch}); }

    // Moves the clock on, firing the timers due on the way.
    void wait(double seconds) {
        m_now += seconds;
        VLXRunLoop::main().runUntil(m_now);
    }

    std::shared_ptr<VLXWindow> window;
    std::shared_ptr<VLXView> view;
    Log log;

private:
    void rest() {
        std::ranges::for_each(m_live, [](auto& t) { t->setPhase(VLXTouchPhase::Stationary); });
    }
    void send() { window->sendEvent(*VLXEvent::create(m_live, m_now)); }

    double m_now = 100;
    VLXTouchSet m_live;
};

inline bool near(VLXPoint a, VLXPoint b, double tolerance = 1e-9) {
    return std::abs(a.x - b.x) <= tolerance && std::abs(a.y - b.y) <= tolerance;
}
