#pragma once

// Pixel read-back helpers shared by the drawing tests.
#include <cstdint>
#include <memory>
#include <ostream>
#include <vector>

#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>

/// One premultiplied pixel, channels 0…255.
struct Pixel {
    int a = 0, r = 0, g = 0, b = 0;
    friend bool operator==(const Pixel&, const Pixel&) = default;
    friend std::ostream& operator<<(std::ostream& os, const Pixel& p) {
        return os << "argb(" << p.a << ", " << p.r << ", " << p.g << ", " << p.b << ")";
    }
};

inline Pixel pixelOf(std::uint32_t word) {
    return Pixel{static_cast<int>(word >> 24), static_cast<int>((word >> 16) & 0xff),
                 static_cast<int>((word >> 8) & 0xff), static_cast<int>(word & 0xff)};
}

/// The context's pixels, read once; (x, y) in device pixels.
class Pixels {
public:
    explicit Pixels(VLXGraphicsContext& context) : m_image(context.makeImage()) {}
    explicit Pixels(std::shared_ptr<VLXImage> image) : m_image(std::move(image)) {}

    bool valid() const { return m_image != nullptr; }
    int width() const { return m_image->pixelWidth(); }
    int height() const { return m_image->pixelHeight(); }
    Pixel at(int x, int y) const {
        return pixelOf(m_image->pixels()[static_cast<std::size_t>(y) * width() + x]);
    }
    int alpha(int x, int y) const { return at(x, y).a; }
    /// Number of pixels whose alpha differs from `other`'s by more than `tolerance`.
    int countAlphaDifferences(const Pixels& other, int tolerance) const {
        int count = 0;
        for (int y = 0; y < height(); ++y) {
            for (int x = 0; x < width(); ++x) {
                const int d = alpha(x, y) - other.alpha(x, y);
                count += (d > tolerance || d < -tolerance) ? 1 : 0;
            }
        }
        return count;
    }
    int countPainted() const {
        int count = 0;
        for (std::uint32_t word : m_image->pixels()) {
            count += (word >> 24) != 0 ? 1 : 0;
        }
        return count;
    }

private:
    std::shared_ptr<VLXImage> m_image;
};

inline std::shared_ptr<VLXGraphicsContext> makeBitmap(double width, double height,
                                                      double scale = 1) {
    return VLXGraphicsContext::createBitmap(VLXSize{width, height}, scale);
}
