// Screenshots of views, read back pixel by pixel.
#include <cmath>
#include <limits>
#include <memory>

#include <gtest/gtest.h>

#include <VelmarCoreUI/Platform/Device/VLXScreen.h>
#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>
#include <VelmarCoreUI/Platform/Views/VLXView.h>
#include <VelmarCoreUI/Utilities/VLXViewLayoutHelpers.h>

#include "Compositor/CompositorTestSupport.h"
#include "Controls/ControlsTestSupport.h"

namespace {

// Sets the main screen's scale for one test.
class ScreenScale {
public:
    explicit ScreenScale(double scale) : m_previous(VLXScreen::mainScreen()->scale()) {
        VLXScreen::mainScreen()->setScale(scale);
    }
    ~ScreenScale() { VLXScreen::mainScreen()->setScale(m_previous); }

private:
    double m_previous;
};

// The bounding box, in pixels, of pixels close to `colour`; zero when there are none.
VLXRect boundingBox(const VLXImage& image, RGBA8 colour) {
    const VLXRect box = controls_test::inkBox(
        image,
        [&](std::uint32_t w) {
            const RGBA8 p{int(w >> 24), int(w >> 16 & 0xff), int(w >> 8 & 0xff), int(w & 0xff)};
            return near(p, colour, 8);
        },
        0);
    return box.size.width < 0 ? VLXRectZero : box;
}

// A 40 × 30 white view away from the origin of its superview, with a red square at (10, 5).
struct Scene {
    std::shared_ptr<VLXView> parent = VLXView::createWithFrame(VLXRectMake(0, 0, 200, 200));
    std::shared_ptr<VLXView> view = VLXView::createWithFrame(VLXRectMake(100, 60, 40, 30));
    std::shared_ptr<VLXView> square = VLXView::createWithFrame(VLXRectMake(10, 5, 8, 6));
    Scene() {
        parent->setBackgroundColor(VLXColor::colorWithRed(0, 0, 1, 1));
        view->setBackgroundColor(VLXColor::colorWithWhite(1, 1));
        square->setBackgroundColor(VLXColor::colorWithRed(1, 0, 0, 1));
        parent->addSubview(view);
        view->addSubview(square);
    }
};

constexpr RGBA8 kWhite{255, 255, 255, 255};

}  // namespace

TEST(Screenshot, DrawsTheViewTreeInItsBoundsAtTheScreenScale) {
    ScreenScale scale(2);
    Scene scene;
    auto image = vlx_screenshot(*scene.view);
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->size(), VLXSizeMake(40, 30));
    ASSERT_EQ(image->pixelWidth(), 80);
    ASSERT_EQ(image->pixelHeight(), 60);
    // The red square at (10, 5) – (18, 11) points; white around it; nothing of the parent.
    EXPECT_EQ(boundingBox(*image, kRed), VLXRectMake(20, 10, 16, 12));
    EXPECT_TRUE(near(pixelAt(*image, 2, 2), kWhite));
    EXPECT_TRUE(near(pixelAt(*image, 79, 59), kWhite));
    EXPECT_EQ(boundingBox(*image, kBlue), VLXRectZero);

    // Content offset: the bounds origin is the image's origin.
    scene.view->setBounds(VLXRectMake(5, 5, 40, 30));
    image = vlx_screenshot(*scene.view);
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(boundingBox(*image, kRed), VLXRectMake(10, 0, 16, 12));

    // The view's own transform is undone: a turned view is shot upright.
    scene.view->setBounds(VLXRectMake(0, 0, 40, 30));
    scene.view->setTransform(VLXAffineTransformMakeRotation(M_PI / 2));
    image = vlx_screenshot(*scene.view);
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->size(), VLXSizeMake(40, 30));
    EXPECT_EQ(boundingBox(*image, kRed), VLXRectMake(20, 10, 16, 12));

    // Not opaque: a view without background leaves the rest transparent.
    scene.square->removeFromSuperview();
    image = vlx_screenshot(*scene.square);
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(boundingBox(*image, kRed), VLXRectMake(0, 0, 16, 12));
    scene.view->setBackgroundColor(std::nullopt);
    image = vlx_screenshot(*scene.view);
    ASSERT_NE(image, nullptr);
    EXPECT_TRUE(near(pixelAt(*image, 40, 30), kClear));
}

TEST(Screenshot, UnusableSizesGiveNil) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    for (VLXRect frame :
         {VLXRectMake(0, 0, 0, 10), VLXRectMake(0, 0, 10, 0), VLXRectMake(0, 0, nan, 10),
          VLXRectMake(0, 0, 10, infinity), VLXRectMake(0, 0, 1e12, 1e12)}) {
        auto view = VLXView::createWithFrame(frame);
        view->setBackgroundColor(VLXColor::colorWithWhite(1, 1));
        EXPECT_EQ(vlx_screenshot(*view), nullptr) << frame;
        vlx_debug(*view);
    }
    // A transform that cannot be undone gives an empty picture, not a crash.
    auto flat = VLXView::createWithFrame(VLXRectMake(0, 0, 10, 10));
    flat->setBackgroundColor(VLXColor::colorWithRed(1, 0, 0, 1));
    flat->setTransform(VLXAffineTransformMakeScale(0, 1));
    auto image = vlx_screenshot(*flat);
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(boundingBox(*image, kRed), VLXRectZero);
}
