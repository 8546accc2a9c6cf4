#pragma once

// Shared helpers of the view tests: the manual clock and windows on screens of a chosen scale.
#include <memory>
#include <string>
#include <vector>

#include <VelmarCoreUI/Platform/Device/VLXScreen.h>
#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Foundation/VLXRunLoop.h>
#include <VelmarCoreUI/Platform/Layers/VLXTransaction.h>
#include <VelmarCoreUI/Platform/Views/VLXView.h>
#include <VelmarCoreUI/Platform/Views/VLXWindow.h>

#include <gtest/gtest.h>

#include "Compositor/CompositorTestSupport.h"  // pixels read back

/// Manual time from 1000 for the test's life; what earlier tests left pending runs first.
class ViewTest : public ::testing::Test {
protected:
    void SetUp() override {
        VLXClock::setManual(1000);
        VLXRunLoop::main().runOnce();
    }
    void TearDown() override {
        VLXRunLoop::main().runOnce();
        VLXClock::setReal();
    }
    /// Advances the clock by `dt` and runs one turn there.
    static void step(double dt) {
        VLXClock::advance(dt);
        VLXRunLoop::main().runOnce();
    }
    static void turn() { VLXRunLoop::main().runOnce(); }

    /// A window of `width` × `height` points on its own screen of `scale`.
    static std::shared_ptr<VLXWindow> makeWindow(double width, double height, double scale = 1) {
        auto window = VLXWindow::createWithFrame(VLXRectMake(0, 0, width, height));
        auto screen = VLXScreen::create();
        screen->setBounds(VLXRectMake(0, 0, width, height));
        screen->setScale(scale);
        window->setScreen(screen);
        return window;
    }
};
