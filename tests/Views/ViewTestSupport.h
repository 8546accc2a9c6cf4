#pragma once

// Shared helpers of the view tests: the manual clock, a window on a scale-1 screen, pixels read
// back from frames.
#include <cstdint>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include <VelmarCoreUI/Platform/Device/VLXScreen.h>
#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Foundation/VLXRunLoop.h>
#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>
#include <VelmarCoreUI/Platform/Layers/VLXTransaction.h>
#include <VelmarCoreUI/Platform/Views/VLXView.h>
#include <VelmarCoreUI/Platform/Views/VLXWindow.h>

#include <gtest/gtest.h>

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

/// One premultiplied pixel, channels 0…255.
struct Pixel {
    int a = 0, r = 0, g = 0, b = 0;
    friend bool operator==(const Pixel&, const Pixel&) = default;
    friend std::ostream& operator<<(std::ostream& os, const Pixel& p) {
        return os << "argb(" << p.a << ", " << p.r << ", " << p.g << ", " << p.b << ")";
    }
};

inline Pixel pixelAt(const VLXImage& image, int x, int y) {
    const std::uint32_t w =
        image.pixels()[static_cast<std::size_t>(y) * static_cast<std::size_t>(image.pixelWidth()) +
                       static_cast<std::size_t>(x)];
    return Pixel{static_cast<int>(w >> 24), static_cast<int>((w >> 16) & 0xff),
                 static_cast<int>((w >> 8) & 0xff), static_cast<int>(w & 0xff)};
}

inline constexpr Pixel kClear{0, 0, 0, 0};
inline constexpr Pixel kRed{255, 255, 0, 0};
inline constexpr Pixel kGreen{255, 0, 255, 0};
inline constexpr Pixel kBlue{255, 0, 0, 255};
