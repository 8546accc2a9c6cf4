#pragma once

#include <cstdint>
#include <memory>

#include <VelmarCoreUI/Platform/Device/VLXScreen.h>
#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>
#include <VelmarCoreUI/Platform/Primitives/VLXGeometry.h>
#include <VelmarCoreUI/Platform/Views/VLXWindow.h>

namespace controls_test {

// A window drawn at one pixel per point, so pixel and point coordinates agree.
inline std::shared_ptr<VLXWindow> makeWindow(VLXSize size) {
    auto window = VLXWindow::createWithFrame({{0, 0}, size});
    auto screen = VLXScreen::create();
    screen->setScale(1);
    window->setScreen(screen);
    return window;
}

// Bounding box of the pixels whose alpha reaches `threshold` and that `accept` takes; an empty
// rectangle (width −1) when there are none.
template <class Accept>
VLXRect inkBox(const VLXImage& image, Accept accept, std::uint32_t threshold = 100) {
    int minX = image.pixelWidth(), minY = image.pixelHeight(), maxX = -1, maxY = -1;
    for (int y = 0; y < image.pixelHeight(); ++y) {
        for (int x = 0; x < image.pixelWidth(); ++x) {
            const std::uint32_t pixel = image.pixels()[y * image.pixelWidth() + x];
            if ((pixel >> 24) >= threshold && accept(pixel)) {
                minX = std::min(minX, x);
                minY = std::min(minY, y);
                maxX = std::max(maxX, x);
                maxY = std::max(maxY, y);
            }
        }
    }
    if (maxX < 0) {
        return {{0, 0}, {-1, -1}};
    }
    return {{double(minX), double(minY)}, {double(maxX - minX + 1), double(maxY - minY + 1)}};
}

inline VLXRect inkBox(const VLXImage& image) {
    return inkBox(image, [](std::uint32_t) { return true; });
}

}  // namespace controls_test
