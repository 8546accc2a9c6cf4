#include "ViewTestSupport.h"

#include <cmath>

#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsImageContext.h>
#include <VelmarCoreUI/Platform/Layers/VLXCompositor.h>

namespace {

// Fills a blue square at (2, 2, 6, 6) of its bounds through the current context; counts draws.
class SquareView : public VLXView {
public:
    using VLXView::makeWithFrame;
    int draws = 0;
    bool contextWasCurrent = false;
    VLXRect drawnRect{};
    void drawRect(const VLXRect& rect, VLXGraphicsContext& context) override {
        ++draws;
        drawnRect = rect;
        contextWasCurrent = VLXGraphicsGetCurrentContext() == &context;
        context.setFillColor(VLXColor::blueColor());
        context.fillRect(VLXRectMake(2, 2, 6, 6));
    }
};

// A subclass of a drawing view that does not draw itself still draws through its base.
class DerivedSquareView : public SquareView {};

}  // namespace

using WindowRender = ViewTest;

TEST_F(WindowRender, FramesShowSubviewsWithClippingAndAlpha) {
    auto window = makeWindow(40, 30);
    window->setBackgroundColor(VLXColor::whiteColor());
    auto red = VLXView::createWithFrame(VLXRectMake(10, 10, 10, 10));
    red->setBackgroundColor(VLXColor::redColor());
    auto clip = VLXView::createWithFrame(VLXRectMake(25, 0, 10, 10));
    clip->setClipsToBounds(true);
    auto overflow = VLXView::createWithFrame(VLXRectMake(5, 5, 20, 20));  // reaches out of clip
    overflow->setBackgroundColor(VLXColor::greenColor());
    window->addSubview(red);
    window->addSubview(clip);
    clip->addSubview(overflow);

    auto image = window->renderFrame();
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(pixelAt(*image, 15, 15), kRed);
    EXPECT_EQ(pixelAt(*image, 5, 5), (RGBA8{255, 255, 255, 255}));
    EXPECT_EQ(pixelAt(*image, 32, 7), kGreen);
    EXPECT_EQ(pixelAt(*image, 32, 12), (RGBA8{255, 255, 255, 255}));  // clipped away

    // Nothing changed: the same image object comes back.
    EXPECT_EQ(window->renderFrame(), image);

    red->setAlpha(0.5);
    auto faded = window->renderFrame();
    ASSERT_NE(faded, image);
    EXPECT_TRUE(near(pixelAt(*faded, 15, 15), RGBA8{255, 255, 128, 128}, 2));
    red->setHidden(true);
    EXPECT_EQ(pixelAt(*window->renderFrame(), 15, 15), (RGBA8{255, 255, 255, 255}));

    // The document forms carry the same scene.
    EXPECT_NE(window->renderSVG().find("<svg"), std::string::npos);
    EXPECT_EQ(window->renderPDF().rfind("%PDF", 0), 0u);
}

TEST_F(WindowRender, DrawRectRunsInTheDisplayPassAtTheScreenScale) {
    auto window = makeWindow(20, 20, 2);
    auto square = SquareView::makeWithFrame<SquareView>(VLXRectMake(5, 5, 10, 10));
    auto plain = VLXView::createWithFrame(VLXRectMake(0, 0, 5, 5));
    window->addSubview(square);
    window->addSubview(plain);
    EXPECT_TRUE(square->layer()->needsDisplay());  // drawing views start marked
    EXPECT_FALSE(plain->layer()->needsDisplay());
    plain->setNeedsDisplay();  // no drawRect: no backing bitmap
    EXPECT_FALSE(plain->layer()->needsDisplay());

    auto image = window->renderFrame();
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(square->draws, 1);
    EXPECT_TRUE(square->contextWasCurrent);
    EXPECT_EQ(square->drawnRect, VLXRectMake(0, 0, 10, 10));
    ASSERT_NE(square->layer()->contents(), nullptr);
    EXPECT_EQ(square->layer()->contents()->pixelWidth(), 20);  // 10 points at scale 2
    // The square covers (7…13) points of the window = pixels 14…26 at scale 2.
    EXPECT_EQ(pixelAt(*image, 20, 20), kBlue);
    EXPECT_EQ(pixelAt(*image, 12, 12), kClear);
    EXPECT_EQ(pixelAt(*image, 27, 27), kClear);

    // Drawn once until marked again; a new size redraws.
    window->renderFrame();
    EXPECT_EQ(square->draws, 1);
    square->setNeedsDisplay();
    window->renderFrame();
    EXPECT_EQ(square->draws, 2);
    square->setFrame(VLXRectMake(5, 5, 12, 12));
    window->renderFrame();
    square->setFrame(VLXRectMake(5, 5, 0, 12));  // empty bounds draw nothing
    window->renderFrame();
    EXPECT_EQ(square->draws, 3);

    auto derived = SquareView::makeWithFrame<DerivedSquareView>(VLXRectMake(0, 0, 10, 10));
    window->addSubview(derived);
    window->renderFrame();
    EXPECT_EQ(derived->draws, 1);
}

TEST_F(WindowRender, SnapshotsAreFreshAndUnusableSizesGiveNothing) {
    auto window = makeWindow(10, 10);
    auto view = VLXView::createWithFrame(VLXRectMake(0, 0, 5, 5));
    view->setBackgroundColor(VLXColor::redColor());
    window->addSubview(view);
    auto first = window->snapshot();
    ASSERT_NE(first, nullptr);
    EXPECT_NE(first, window->snapshot());
    EXPECT_EQ(pixelAt(*first, 2, 2), kRed);
    EXPECT_EQ(pixelAt(*first, 7, 7), kClear);

    window->setFrame(VLXRectMake(0, 0, 0, 10));
    EXPECT_EQ(window->renderFrame(), nullptr);
    EXPECT_EQ(window->snapshot(), nullptr);
    EXPECT_EQ(window->renderSVG(), "");
    auto empty = VLXWindow::createWithFrame(VLXRectZero);
    EXPECT_EQ(empty->renderFrame(), nullptr);
    EXPECT_EQ(VLXWindow::createWithFrame(VLXRectMake(std::nan(""), 0, 10, 10))->renderFrame(),
              nullptr);  // the frame is refused, the window stays empty
    auto screen = VLXScreen::create();
    screen->setBounds(VLXRectZero);
    empty->setScreen(screen);
    EXPECT_EQ(empty->renderFrame(), nullptr);
}
