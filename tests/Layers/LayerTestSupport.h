#pragma once

// Shared helpers of the layer tests: the manual clock, run-loop turns, callback recording.
#include <memory>
#include <string>
#include <vector>

#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Foundation/VLXRunLoop.h>
#include <VelmarCoreUI/Platform/Layers/VLXAnimation.h>
#include <VelmarCoreUI/Platform/Layers/VLXLayer.h>
#include <VelmarCoreUI/Platform/Layers/VLXTransaction.h>

#include <gtest/gtest.h>

/// Switches to manual time at `start` and runs a turn so nothing of an earlier test is pending;
/// back to the real clock at the end.
class ManualClock {
public:
    explicit ManualClock(double start = 1000) {
        VLXClock::setManual(start);
        VLXRunLoop::main().runOnce();
    }
    ~ManualClock() {
        VLXRunLoop::main().runOnce();
        VLXClock::setReal();
    }
    ManualClock(const ManualClock&) = delete;
    ManualClock& operator=(const ManualClock&) = delete;

    /// Advances the clock by `dt` and runs one turn there.
    void step(double dt) {
        VLXClock::advance(dt);
        VLXRunLoop::main().runOnce();
    }
    /// One turn without moving the clock (commits the implicit transaction).
    void turn() { VLXRunLoop::main().runOnce(); }
    /// Moves the clock without running the loop: presentation reads the clock directly.
    void at(double t) { VLXClock::setManual(t); }
};

/// A new layer called `name`, with an optional delegate.
inline std::shared_ptr<VLXLayer> named(const char* name, VLXLayerDelegate* delegate = nullptr) {
    auto layer = VLXLayer::create();
    layer->setName(std::string(name));
    layer->setDelegate(delegate);
    return layer;
}

/// A test inside one explicit transaction with actions disabled, so property changes apply at once
/// and start no implicit animations.
class ActionsDisabledTest : public ::testing::Test {
protected:
    void SetUp() override {
        VLXTransaction::begin();
        VLXTransaction::setDisableActions(true);
    }
    void TearDown() override { VLXTransaction::commit(); }
};

/// Records start and stop callbacks, as "start:<name>" and "stop:<name>:<finished>", where the
/// name is the animation's key-value "name".
class RecordingAnimationDelegate : public VLXAnimationDelegate {
public:
    explicit RecordingAnimationDelegate(std::vector<std::string>* log) : m_log(log) {}
    void animationDidStart(VLXAnimation& animation) override {
        m_log->push_back("start:" + animation.valueForKey("name").stringValue());
    }
    void animationDidStop(VLXAnimation& animation, bool finished) override {
        m_log->push_back("stop:" + animation.valueForKey("name").stringValue() + ":" +
                         (finished ? "1" : "0"));
    }

private:
    std::vector<std::string>* m_log;
};
