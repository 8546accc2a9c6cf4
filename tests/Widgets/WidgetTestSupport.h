#pragma once

// Shared by the widget tests: a window at scale 1 to snapshot, pixels read back, the manual
// clock for the duration of a test.
#include <cstdint>
#include <memory>
#include <ostream>

#include <gtest/gtest.h>

#include <VelmarCoreUI/Platform/Device/VLXScreen.h>
#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>
#include <VelmarCoreUI/Platform/Layers/VLXTransaction.h>
#include <VelmarCoreUI/Platform/Views/VLXWindow.h>

/// One premultiplied pixel, channels 0…255.
struct Pixel {
    int a = 0, r = 0, g = 0, b = 0;
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

inline ::testing::AssertionResult pixelNear(const VLXImage& image, int x, int y, Pixel expected,
                                            int tolerance = 3) {
    const Pixel p = pixelAt(image, x, y);
    auto close = [&](int a, int b) { return a - b <= tolerance && b - a <= tolerance; };
    if (close(p.a, expected.a) && close(p.r, expected.r) && close(p.g, expected.g) &&
        close(p.b, expected.b)) {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure()
           << "pixel (" << x << ", " << y << ") is " << p << ", expected " << expected;
}

inline constexpr Pixel kOpaqueRed{255, 255, 0, 0};
inline constexpr Pixel kOpaqueGreen{255, 0, 255, 0};
inline constexpr Pixel kOpaqueBlue{255, 0, 0, 255};
inline constexpr Pixel kOpaqueWhite{255, 255, 255, 255};

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
