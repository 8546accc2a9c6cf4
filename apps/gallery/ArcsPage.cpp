// Gallery page for the arc and circular progress layers: ring segments with fill, outline and
// inner shadow; an animated change of the end angle as a strip of frames on the manual clock;
// progress wedges.
#include <cmath>
#include <memory>
#include <string>

#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Layers/VLXCompositor.h>
#include <VelmarCoreUI/Platform/Layers/VLXTransaction.h>
#include <VelmarCoreUI/Views/VLXArcLayer.h>
#include <VelmarCoreUI/Views/VLXCircularLayer.h>
#include "GalleryPage.h"

namespace {

constexpr double kScale = 2;

VLXColor hue(double h, double alpha = 1) {
    return VLXColor::colorWithHue(h, 0.65, 0.9, alpha);
}

std::shared_ptr<VLXLayer> background(VLXSize size) {
    auto root = VLXLayer::create();
    root->setFrame({{0, 0}, size});
    root->setBackgroundColor(VLXColor::whiteColor());
    return root;
}

std::shared_ptr<VLXArcLayer> arc(VLXRect frame, double start, double end, double thickness) {
    auto layer = VLXArcLayer::create();
    layer->setFrame(frame);
    layer->setContentsScale(kScale);
    layer->setStartAngle(start);
    layer->setEndAngle(end);
    layer->setThickness(thickness);
    return layer;
}

void commitWithoutActions(const std::function<void()>& body) {
    VLXTransaction::begin();
    VLXTransaction::setDisableActions(true);
    body();
    VLXTransaction::commit();
    VLXTransaction::flush();
}

std::string stylesFigure(const std::filesystem::path& out) {
    auto root = background({480, 130});
    commitWithoutActions([&] {
        auto filled = arc({{10, 10}, {110, 110}}, -M_PI / 2, M_PI, 22);
        filled->setFillColor(hue(0.58));
        root->addSublayer(filled);
        auto outlined = arc({{130, 10}, {110, 110}}, -M_PI, 0.25 * M_PI, 22);
        outlined->setFillColor(hue(0.1));
        outlined->setStrokeColor(VLXColor::colorWithWhite(0.2, 1));
        outlined->setStrokeWidth(2);
        root->addSublayer(outlined);
        auto blackFill = arc({{250, 10}, {110, 110}}, 0, 1.5 * M_PI, 30);
        blackFill->setStrokeColor(hue(0.95));
        blackFill->setStrokeWidth(3);
        root->addSublayer(blackFill);
        auto shadowed = arc({{370, 10}, {110, 110}}, -0.75 * M_PI, 0.75 * M_PI, 34);
        shadowed->setFillColor(hue(0.33));
        shadowed->setInnerShadowColor(VLXColor::blackColor());
        shadowed->setInnerShadowRadius(8);
        shadowed->setInnerShadowOpacity(0.8);
        root->addSublayer(shadowed);
    });
    auto bitmap = VLXGraphicsContext::createBitmap(root->bounds().size, kScale);
    VLXCompositor::render(*root, *bitmap);
    return galleryFigure(out, "arcs-styles.png", *bitmap,
                         "Fill only; fill and outline; outline without fill colour (filled in the "
                         "context's default black); fill with an inner shadow (radius 8, opacity "
                         "0.8).");
}

std::string animationFigure(const std::filesystem::path& out) {
    const bool wasManual = VLXClock::isManual();
    VLXClock::setManual(500);
    auto root = background({110, 110});
    std::shared_ptr<VLXArcLayer> layer;
    commitWithoutActions([&] {
        layer = arc({{5, 5}, {100, 100}}, -M_PI / 2, -M_PI / 4, 18);
        layer->setFillColor(hue(0.58));
        layer->setInnerShadowColor(VLXColor::blackColor());
        root->addSublayer(layer);
    });
    // Committed: the angle change animates (0.5 s, ease-out) from the presentation value.
    VLXTransaction::begin();
    layer->setEndAngle(1.25 * M_PI);
    VLXTransaction::commit();
    const int frames = 8;
    auto strip = VLXGraphicsContext::createBitmap({110.0 * frames, 110}, kScale);
    for (int i = 0; i < frames; ++i) {
        strip->saveGState();
        strip->translateCTM(110.0 * i, 0);
        VLXCompositor::render(*root, *strip);
        strip->restoreGState();
        VLXClock::advance(0.5 / (frames - 1));
    }
    layer->removeAllAnimations();
    if (!wasManual) {
        VLXClock::setReal();
    }
    return galleryFigure(out, "arcs-animation.png", *strip,
                         "endAngle from −45° to 225°: frames every 0.5 s / 7 on the manual clock, "
                         "left to right. Ease-out: most of the sweep happens early.");
}

std::string progressFigure(const std::filesystem::path& out) {
    auto root = background({240, 60});
    commitWithoutActions([&] {
        const double values[] = {0, 0.25, 0.6, 1};
        for (int i = 0; i < 4; ++i) {
            auto layer = VLXCircularLayer::create();
            layer->setBounds({{0, 0}, {36, 36}});
            layer->setPosition({30.0 + i * 60, 30});
            layer->setContentsScale(kScale);
            layer->setBorderColor(hue(0.6));
            layer->setBorderWidth(1);
            layer->setProgress(values[i]);
            layer->layoutSublayers();
            root->addSublayer(layer);
        }
    });
    auto bitmap = VLXGraphicsContext::createBitmap(root->bounds().size, kScale);
    VLXCompositor::render(*root, *bitmap);
    return galleryFigure(out, "arcs-progress.png", *bitmap,
                         "Circular layers (36 × 36, corner radius 18, 1 pt border) at progress 0, "
                         "0.25, 0.6 and 1: the wedge grows clockwise from twelve o'clock.");
}

}  // namespace

GalleryPage makeArcsPage(const std::filesystem::path& outputDirectory) {
    GalleryPage page;
    page.id = "arcs";
    page.title = "Arcs and progress";
    page.summary = "Arc layers with fill, outline and inner shadow; angle animation; progress";
    page.bodyHTML = "<h2>Arc layers</h2>\n" + stylesFigure(outputDirectory) +
                    "<h2>Animating the end angle</h2>\n" + animationFigure(outputDirectory) +
                    "<h2>Circular progress layers</h2>\n" + progressFigure(outputDirectory);
    return page;
}
