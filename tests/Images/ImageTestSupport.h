#pragma once

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>

namespace imagetest {

/// An image drawn by `draw` into a fresh bitmap context (independent of the code under test).
inline std::shared_ptr<VLXImage> drawnImage(VLXSize size, double scale,
                                            const std::function<void(VLXGraphicsContext&)>& draw) {
    auto context = VLXGraphicsContext::createBitmap(size, scale);
    if (!context) {
        return nullptr;
    }
    draw(*context);
    return context->makeImage();
}

/// Premultiplied bytes of the stored pixel at (x, y).
struct Pixel {
    int r = 0, g = 0, b = 0, a = 0;
};

inline Pixel pixelAt(const VLXImage& image, int x, int y) {
    const std::uint32_t word = image.pixels()[static_cast<std::size_t>(y * image.pixelWidth() + x)];
    return Pixel{static_cast<int>((word >> 16) & 0xFF), static_cast<int>((word >> 8) & 0xFF),
                 static_cast<int>(word & 0xFF), static_cast<int>(word >> 24)};
}

/// Sets an environment variable for the scope, restoring the previous state afterwards.
class ScopedEnvironment {
public:
    ScopedEnvironment(const char* name, const std::optional<std::string>& value) : m_name(name) {
        if (const char* old = std::getenv(name)) {
            m_old = old;
        }
        set(value);
    }
    ~ScopedEnvironment() { set(m_old); }
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

private:
    void set(const std::optional<std::string>& value) {
        if (value) {
            setenv(m_name.c_str(), value->c_str(), 1);
        } else {
            unsetenv(m_name.c_str());
        }
    }
    std::string m_name;
    std::optional<std::string> m_old;
};

}  // namespace imagetest
