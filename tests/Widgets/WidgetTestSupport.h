#pragma once

// Shared by the widget tests: a window at scale 1 to snapshot, pixels read back, the manual
// clock for the duration of a test.
#include <memory>

#include <gtest/gtest.h>

#include <VelmarCoreUI/Platform/Device/VLXScreen.h>
#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>
#include <VelmarCoreUI/Platform/Layers/VLXTransaction.h>
#include <VelmarCoreUI/Platform/Views/VLXWindow.h>

#include "Compositor/CompositorTestSupport.h"  // pixels read back

inline ::testing::AssertionResult pixelNear(const VLXImage& image, int x, int y, RGBA8 expected,
                                            int tolerance = 3) {
    const RGBA8 p = pixelAt(image, x, y);
    if (near(p, expected, tolerance)) {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure()
           << "pixel (" << x << ", " << y << ") is " << p << ", expected " << expected;
}

inline constexpr RGBA8 kOpaqueRed = kRed;
inline constexpr RGBA8 kOpaqueGreen = kGreen;
inline constexpr RGBA8 kOpaqueBlue = kBlue;
inline constexpr RGBA8 kOpaqueWhite{255, 255, 255, 255};

/// A window of `width` × `height` points on a screen of scale 1, white, so that a snapshot has one
/// pixel per point.
inline std::shared_ptr<VLXWindow> makeWindow(double width, double height) {
    auto screen = VLXScreen::create();
    screen->setScale(1);
    auto window = VLXWindow::createWithFrame({{0, 0}, {width, height}});
    window->setScreen(screen);
    window->setBackgroundColor(VLXColor::whiteColor());
    return window;
}

/// Manual time from 100 s for the test's duration; anything left open is committed first.
class WidgetTest : public ::testing::Test {
protected:
    void SetUp() override {
        VLXTransaction::flush();
        VLXClock::setManual(100);
    }
    void TearDown() override {
        VLXTransaction::flush();
        VLXClock::setReal();
    }
};
