#pragma once

// Helpers shared by the compositor tests: layers made with actions disabled, frames rendered
// through a compositor, pixels read back.
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <ostream>

#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>
#include <VelmarCoreUI/Platform/Layers/VLXCompositor.h>
#include <VelmarCoreUI/Platform/Layers/VLXLayer.h>
#include <VelmarCoreUI/Platform/Layers/VLXTransaction.h>

#include <gtest/gtest.h>

/// One premultiplied pixel, channels 0…255.
struct RGBA8 {
    int a = 0, r = 0, g = 0, b = 0;
    friend bool operator==(const RGBA8&, const RGBA8&) = default;
    friend std::ostream& operator<<(std::ostream& os, const RGBA8& p) {
        return os << "argb(" << p.a << ", " << p.r << ", " << p.g << ", " << p.b << ")";
    }
};

/// Pixel (x, y) of an image, in pixels.
inline RGBA8 pixelAt(const VLXImage& image, int x, int y) {
    const std::uint32_t w =
        image.pixels()[static_cast<std::size_t>(y) * static_cast<std::size_t>(image.pixelWidth()) +
                       static_cast<std::size_t>(x)];
    return RGBA8{static_cast<int>(w >> 24), static_cast<int>((w >> 16) & 0xff),
                 static_cast<int>((w >> 8) & 0xff), static_cast<int>(w & 0xff)};
}

/// True when every channel is within `tolerance` of the expected one.
inline bool near(RGBA8 p, RGBA8 q, int tolerance = 2) {
    auto close = [&](int a, int b) { return a - b <= tolerance && b - a <= tolerance; };
    return close(p.a, q.a) && close(p.r, q.r) && close(p.g, q.g) && close(p.b, q.b);
}

/// The number of pixels with any coverage.
inline int paintedCount(const VLXImage& image) {
    int count = 0;
    for (std::uint32_t word : image.pixels()) {
        count += (word >> 24) != 0 ? 1 : 0;
    }
    return count;
}

/// A pixel to check: its coordinates, the colour expected there and the tolerance per channel.
struct PixelCheck {
    int x, y;
    RGBA8 color;
    int tolerance = 2;
};

/// Expects every listed pixel of `image` near its colour.
inline void expectPixels(const VLXImage& image, std::initializer_list<PixelCheck> checks) {
    for (const PixelCheck& c : checks) {
        const RGBA8 got = pixelAt(image, c.x, c.y);
        EXPECT_TRUE(near(got, c.color, c.tolerance))
            << "at (" << c.x << ", " << c.y << "): " << got << ", expected " << c.color;
    }
}

inline constexpr RGBA8 kClear{0, 0, 0, 0};
inline constexpr RGBA8 kRed{255, 255, 0, 0};
inline constexpr RGBA8 kGreen{255, 0, 255, 0};
inline constexpr RGBA8 kBlue{255, 0, 0, 255};
inline constexpr RGBA8 kBlack{255, 0, 0, 0};

/// Changes made inside run without actions, as one committed transaction; changes made earlier
/// outside any transaction (which opened the implicit one) are committed too.
template <class Body>
void withoutActions(Body body) {
    VLXTransaction::begin();
    VLXTransaction::setDisableActions(true);
    body();
    VLXTransaction::commit();
    VLXTransaction::flush();
}

/// Commits what is pending (the implicit transaction), as the end of a run-loop turn would.
inline void commitPending() {
    VLXTransaction::flush();
}

/// A layer at `frame` (anchor in the middle) with an optional background.
template <class T = VLXLayer>
std::shared_ptr<T> makeLayer(const VLXRect& frame,
                             std::optional<VLXColor> background = std::nullopt) {
    auto layer = T::create();
    withoutActions([&] {
        layer->setFrame(frame);
        layer->setBackgroundColor(background);
    });
    return layer;
}

/// One frame of `root` at `scale`, `width` × `height` points.
inline std::shared_ptr<VLXImage> renderOnce(const VLXLayer& root, double width, double height,
                                            double scale = 1) {
    auto compositor = VLXCompositor::create();
    return compositor->renderFrame(root, VLXSize{width, height}, scale);
}
