#pragma once

#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Foundation/VLXRunLoop.h>
#include <VelmarCoreUI/Platform/Foundation/VLXTimer.h>

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <memory>
#include <vector>

inline constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
inline constexpr double kInf = std::numeric_limits<double>::infinity();

// Every test starts on the manual clock with an idle main loop and leaves it idle: the loop is
// process-wide, so timers, observers and open transactions must not leak into the next test.
class RunLoopTest : public ::testing::Test {
protected:
    void SetUp() override {
        VLXClock::setManual(100);
        drain();
    }

    void TearDown() override {
        for (auto& timer : m_timers) {
            timer->invalidate();
        }
        for (auto token : m_observers) {
            loop().removeObserver(token);
        }
        drain();
        EXPECT_EQ(loop().timerCount(), 0u) << "a test left timers scheduled";
        VLXClock::setReal();
    }

    static VLXRunLoop& loop() { return VLXRunLoop::main(); }

    // Runs turns until nothing queued is left (a few turns suffice for every test here).
    static void drain() {
        for (int i = 0; i < 4; ++i) {
            loop().runOnce();
        }
    }

    std::shared_ptr<VLXTimer> timer(double interval, bool repeats, VLXTimer::Callback callback) {
        auto made = VLXTimer::scheduledTimer(interval, repeats, std::move(callback));
        m_timers.push_back(made);
        return made;
    }

    VLXRunLoop::ObserverToken observe(VLXRunLoopPhase phase, VLXRunLoop::Block block) {
        const auto token = loop().addObserver(phase, std::move(block));
        m_observers.push_back(token);
        return token;
    }

private:
    std::vector<std::shared_ptr<VLXTimer>> m_timers;
    std::vector<VLXRunLoop::ObserverToken> m_observers;
};
