// Gallery page for views: a nested view tree (clipping, alpha, transforms, a drawRect view)
// beside its recursiveDescription, and view animations with each curve as frame strips rendered
// through the window on the manual clock.
#include <cmath>
#include <memory>
#include <string>

#include <VelmarCoreUI/Platform/Device/VLXScreen.h>
#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Foundation/VLXRunLoop.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>
#include <VelmarCoreUI/Platform/Views/VLXView.h>
#include <VelmarCoreUI/Platform/Views/VLXWindow.h>
#include "GalleryPage.h"

namespace {

constexpr double kScale = 2;

VLXColor hue(double h, double alpha = 1) {
    return VLXColor::colorWithHue(h, 0.6, 0.9, alpha);
}

std::shared_ptr<VLXView> box(VLXRect frame, const VLXColor& color) {
    auto view = VLXView::createWithFrame(frame);
    view->setBackgroundColor(color);
    return view;
}

// A window of its own screen at the page's scale.
std::shared_ptr<VLXWindow> makeWindow(VLXSize size, const VLXColor& background) {
    auto screen = VLXScreen::create();
    screen->setBounds({{0, 0}, size});
    screen->setScale(kScale);
    auto window = VLXWindow::createWithFrame({{0, 0}, size});
    window->setScreen(screen);
    window->setBackgroundColor(background);
    return window;
}

// Draws a target (rings and a cross) with drawRect: its bitmap is made by the display pass.
class TargetView : public VLXView {
public:
    static std::shared_ptr<TargetView> make(VLXRect frame) {
        return makeWithFrame<TargetView>(frame);
    }
    void drawRect(const VLXRect& rect, VLXGraphicsContext& context) override {
        const double cx = rect.size.width / 2, cy = rect.size.height / 2;
        context.setStrokeColor(VLXColor::colorWithWhite(0.15, 1));
        context.setLineWidth(2);
        for (double r : {8.0, 16.0, 24.0}) {
            context.strokeEllipseInRect({{cx - r, cy - r}, {2 * r, 2 * r}});
        }
        context.setFillColor(hue(0.0));
        context.fillEllipseInRect({{cx - 4, cy - 4}, {8, 8}});
    }
};

std::string treeFigure(const std::filesystem::path& out) {
    auto window = makeWindow({380, 200}, VLXColor::whiteColor());
    // A clipping container whose child reaches out of it (cut at the edge).
    auto clip = box({{20, 20}, {120, 80}}, VLXColor::colorWithWhite(0.9, 1));
    clip->setClipsToBounds(true);
    clip->addSubview(box({{70, 40}, {90, 60}}, hue(0.58)));
    window->addSubview(clip);
    // The same without clipping.
    auto open = box({{20, 120}, {120, 60}}, VLXColor::colorWithWhite(0.9, 1));
    open->addSubview(box({{70, 30}, {90, 40}}, hue(0.58)));
    window->addSubview(open);
    // Half transparent, over a stripe.
    window->addSubview(box({{170, 20}, {20, 160}}, hue(0.08)));
    auto faded = box({{160, 60}, {60, 60}}, hue(0.33));
    faded->setAlpha(0.5);
    window->addSubview(faded);
    // Turned by 20° with a subview turning along; then a scaled view.
    auto turned = box({{240, 20}, {70, 50}}, hue(0.75));
    turned->setTransform(VLXAffineTransformMakeRotation(M_PI / 9));
    turned->addSubview(box({{10, 10}, {20, 20}}, hue(0.9)));
    window->addSubview(turned);
    auto scaled = box({{330, 30}, {20, 20}}, hue(0.5));
    scaled->setTransform(VLXAffineTransformMakeScale(1.5, 1.5));
    window->addSubview(scaled);
    // A drawing view, scrolled by its bounds origin inside a container.
    auto scroller = box({{240, 100}, {120, 80}}, VLXColor::colorWithWhite(0.95, 1));
    scroller->setClipsToBounds(true);
    scroller->setBounds({{20, 0}, {120, 80}});
    scroller->addSubview(TargetView::make({{30, 10}, {60, 60}}));
    window->addSubview(scroller);

    auto image = window->renderFrame();
    auto bitmap = VLXGraphicsContext::createBitmap({380, 200}, kScale);
    if (image) {
        bitmap->drawImage(*image, {{0, 0}, {380, 200}});
    }
    std::string html = "<div style=\"display:flex;gap:16px;align-items:flex-start\">\n";
    html += galleryFigure(out, "views-tree.png", *bitmap,
                          "Clipped and unclipped containers, alpha 0.5 over a stripe, rotation "
                          "and scale, a drawRect view scrolled by 20 points.");
    html += "<pre style=\"font-size:11px\">" + galleryEscapeHTML(window->recursiveDescription()) +
            "</pre>\n</div>\n";
    return html;
}

std::string animationFigure(const std::filesystem::path& out) {
    const bool wasManual = VLXClock::isManual();
    VLXClock::setManual(2000);
    const VLXSize size{320, 112};
    auto window = makeWindow(size, VLXColor::colorWithWhite(0.97, 1));
    const VLXViewAnimationOptions curves[] = {
        VLXViewAnimationOptionCurveEaseInOut, VLXViewAnimationOptionCurveEaseIn,
        VLXViewAnimationOptionCurveEaseOut, VLXViewAnimationOptionCurveLinear};
    std::vector<std::shared_ptr<VLXView>> lanes;
    for (int i = 0; i < 4; ++i) {
        auto view = box({{6, 6.0 + 27 * i}, {20, 16}}, hue(0.15 * i + 0.55));
        window->addSubview(view);
        lanes.push_back(view);
    }
    window->renderFrame();  // committed: what follows animates from here
    for (int i = 0; i < 4; ++i) {
        VLXView::animate(1, 0, curves[i], [&, i] {
            lanes[i]->setFrame({{250, 4.0 + 27 * i}, {64, 22}});
            lanes[i]->setAlpha(0.35);
        });
    }
    const int frames = 6;
    auto strip = VLXGraphicsContext::createBitmap({size.width, (size.height + 4) * frames}, kScale);
    for (int f = 0; f < frames; ++f) {
        if (auto image = window->renderFrame()) {
            strip->drawImage(*image, {{0, (size.height + 4) * f}, size});
        }
        VLXClock::advance(1.0 / (frames - 1));
    }
    window->renderFrame();
    if (!wasManual) {
        VLXClock::setReal();
    }
    return galleryFigure(out, "views-animation.png", *strip,
                         "One animate block per lane (1 s): frame and alpha, curves ease-in-out, "
                         "ease-in, ease-out, linear from the top; host frames every 0.2 s on the "
                         "manual clock, top to bottom.");
}

}  // namespace

GalleryPage makeViewsPage(const std::filesystem::path& outputDirectory) {
    GalleryPage page;
    page.id = "views";
    page.title = "Views";
    page.summary = "View trees with clipping, alpha and transforms, drawRect, view animations";
    page.bodyHTML = "<h2>A view tree and its recursiveDescription</h2>\n" +
                    treeFigure(outputDirectory) + "<h2>View animations</h2>\n" +
                    animationFigure(outputDirectory);
    return page;
}
