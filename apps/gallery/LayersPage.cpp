// Gallery page for layers: geometry (anchor, transform, frame boxes), hit testing, custom drawing
// cached by display, presentation values of an implicit animation over time, and the tree dump.
#include <cmath>
#include <memory>
#include <string>

#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Foundation/VLXRunLoop.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXPath.h>
#include <VelmarCoreUI/Platform/Layers/VLXCompositor.h>
#include <VelmarCoreUI/Platform/Layers/VLXLayer.h>
#include <VelmarCoreUI/Platform/Layers/VLXTransaction.h>
#include "GalleryPage.h"

namespace {

constexpr double kScale = 2;

std::shared_ptr<VLXLayer> box(VLXRect frame, const VLXColor& color) {
    auto layer = VLXLayer::create();
    layer->setFrame(frame);
    layer->setBackgroundColor(color);
    return layer;
}

VLXColor hue(double h, double alpha = 1) {
    return VLXColor::colorWithHue(h, 0.6, 0.9, alpha);
}

// Outlines every layer's frame, converted into the root, in red.
void outlineFrames(VLXGraphicsContext& context, const VLXLayer& root) {
    context.saveGState();
    context.setStrokeColor(VLXColor::colorWithRed(0.85, 0.1, 0.1, 1));
    context.setLineWidth(1);
    std::vector<const VLXLayer*> stack{&root};
    while (!stack.empty()) {
        const VLXLayer* layer = stack.back();
        stack.pop_back();
        for (const auto& s : layer->sublayers()) {
            const VLXRect inRoot = layer->convertRectToLayer(s->frame(), &root);
            context.strokeRect(VLXRectInset(inRoot, -0.5, -0.5));
            stack.push_back(s.get());
        }
    }
    context.restoreGState();
}

std::shared_ptr<VLXLayer> geometryTree() {
    auto root = box({{0, 0}, {420, 180}}, VLXColor::whiteColor());
    // Plain, anchored at its top-left corner.
    auto plain = box({{20, 20}, {80, 50}}, hue(0.58));
    plain->setAnchorPoint({0, 0});
    root->addSublayer(plain);
    // Turned by 30° about its centre, rounded and bordered: the frame is the turned box's box.
    auto turned = box({{140, 40}, {90, 60}}, hue(0.08));
    turned->setCornerRadius(12);
    turned->setBorderWidth(3);
    turned->setBorderColor(VLXColor::colorWithWhite(0.2, 1));
    turned->setAffineTransform(VLXAffineTransformMakeRotation(M_PI / 6));
    root->addSublayer(turned);
    // Scaled through the key path; its child is drawn in the scaled space.
    auto scaled = box({{290, 50}, {50, 40}}, hue(0.33));
    scaled->setValueForKeyPath(VLXValue(1.6), "transform.scale");
    scaled->addSublayer(box({{5, 5}, {15, 15}}, hue(0.9)));
    root->addSublayer(scaled);
    // A shifted bounds origin scrolls the sublayers.
    auto scroller = box({{20, 100}, {100, 60}}, VLXColor::colorWithWhite(0.9, 1));
    scroller->setMasksToBounds(true);
    scroller->setBounds({{30, 0}, {100, 60}});
    scroller->addSublayer(box({{40, 10}, {50, 40}}, hue(0.75)));
    root->addSublayer(scroller);
    return root;
}

std::string geometryFigure(const std::filesystem::path& out) {
    auto root = geometryTree();
    auto context = VLXGraphicsContext::createBitmap(root->bounds().size, kScale);
    VLXCompositor::render(*root, *context);
    outlineFrames(*context, *root);
    return galleryFigure(out, "layers-geometry.png", *context,
                         "Anchor (0, 0); a 30° turn with corner radius and border; "
                         "transform.scale 1.6 with a child; a bounds origin of (30, 0) with "
                         "masksToBounds. Red: each frame, the box of the transformed bounds.");
}

std::string hitTestFigure(const std::filesystem::path& out) {
    auto root = box({{0, 0}, {300, 160}}, VLXColor::colorWithWhite(0.97, 1));
    auto back = box({{20, 20}, {150, 110}}, hue(0.58, 0.35));
    auto front = box({{110, 40}, {150, 100}}, hue(0.08, 0.35));
    auto child = box({{20, 20}, {50, 50}}, hue(0.33, 0.35));
    auto raised = box({{60, 90}, {70, 50}}, hue(0.9, 0.35));
    raised->setZPosition(1);  // in front of `front` although added first
    auto hidden = box({{200, 10}, {60, 40}}, hue(0.75, 0.35));
    hidden->setHidden(true);
    root->addSublayer(raised);
    root->addSublayer(back);
    root->addSublayer(front);
    front->addSublayer(child);
    root->addSublayer(hidden);
    auto turned = box({{200, 95}, {60, 30}}, hue(0.15, 0.35));
    turned->setAffineTransform(VLXAffineTransformMakeRotation(-0.5));
    root->addSublayer(turned);

    auto context = VLXGraphicsContext::createBitmap(root->bounds().size, kScale);
    VLXCompositor::render(*root, *context);
    for (double y = 3; y < 160; y += 6) {
        for (double x = 3; x < 300; x += 6) {
            auto hit = root->hitTest({x, y});
            if (!hit || hit == root) {
                continue;
            }
            VLXColor c = *hit->backgroundColor();
            double r = 0, g = 0, b = 0, a = 0;
            c.getRed(&r, &g, &b, &a);
            context->setFillColor(VLXColor::colorWithRed(r * 0.7, g * 0.7, b * 0.7, 1));
            context->fillEllipseInRect({{x - 1.5, y - 1.5}, {3, 3}});
        }
    }
    return galleryFigure(out, "layers-hittest.png", *context,
                         "hitTest on a 6-point grid: each dot takes the colour of the layer it "
                         "hits. The pink layer has zPosition 1; the violet one at the top right "
                         "is hidden (no dots); the turned one is hit through its transform.");
}

// Draws a level meter; "level" is a store property that redraws the layer.
class MeterLayer : public VLXLayer {
public:
    static std::shared_ptr<MeterLayer> create() { return makeInitialized<MeterLayer>(); }
    std::shared_ptr<VLXLayer> newInstance() const override { return VLXMakeShared<MeterLayer>(); }
    bool needsDisplayForKey(std::string_view key) const override {
        return key == "level" || VLXLayer::needsDisplayForKey(key);
    }
    void drawInContext(VLXGraphicsContext& context) override {
        const VLXRect b = bounds();
        const double level = storedDouble("level");
        const VLXPoint c{VLXRectGetMidX(b), VLXRectGetMidY(b)};
        const double r = std::min(b.size.width, b.size.height) / 2 - 4;
        context.setStrokeColor(VLXColor::colorWithWhite(0.8, 1));
        context.setLineWidth(8);
        context.setLineCap(VLXLineCap::Round);
        // y grows downward: increasing angles turn clockwise on screen.
        VLXPath track;
        track.addArc(c, r, 0.75 * M_PI, 2.25 * M_PI, false);
        context.addPath(track);
        context.strokePath();
        if (level > 0) {
            VLXPath fill;
            fill.addArc(c, r, 0.75 * M_PI, 0.75 * M_PI + 1.5 * M_PI * level, false);
            context.setStrokeColor(hue(0.33 - 0.33 * level));
            context.addPath(fill);
            context.strokePath();
        }
    }
};

std::string displayFigure(const std::filesystem::path& out) {
    auto root = box({{0, 0}, {400, 100}}, VLXColor::whiteColor());
    for (int i = 0; i < 5; ++i) {
        auto meter = MeterLayer::create();
        meter->setFrame({{10.0 + i * 78, 10}, {70, 70}});
        meter->setContentsScale(kScale);
        meter->setValue(VLXValue(i / 4.0), "level");  // marks the layer for display
        root->addSublayer(meter);
    }
    root->displayTreeIfNeeded();
    auto context = VLXGraphicsContext::createBitmap(root->bounds().size, kScale);
    VLXCompositor::render(*root, *context);
    return galleryFigure(
        out, "layers-display.png", *context,
        "A layer subclass drawing in drawInContext, cached as contents at "
        "contentsScale 2; its store property \"level\" (0, ¼, ½, ¾, 1) redraws it.");
}

std::string presentationFigure(const std::filesystem::path& out, std::string* treeText) {
    const bool wasManual = VLXClock::isManual();
    VLXClock::setManual(100);
    VLXRunLoop::main().runOnce();
    auto root = box({{0, 0}, {400, 40}}, VLXColor::whiteColor());
    auto dot = box({{10, 10}, {20, 20}}, hue(0.58));
    dot->setCornerRadius(10);
    root->addSublayer(dot);
    VLXRunLoop::main().runOnce();  // committed: the next changes animate implicitly
    dot->setPosition({370, 20});
    dot->setOpacity(0.2);
    VLXRunLoop::main().runOnce();  // commit at 100 s
    auto strip = VLXGraphicsContext::createBitmap({400, 6 * 40.0}, kScale);
    for (int i = 0; i < 6; ++i) {
        strip->saveGState();
        strip->translateCTM(0, 40.0 * i);
        VLXCompositor::render(*root, *strip);
        strip->restoreGState();
        if (i == 2) {
            *treeText = root->layerTreeAsText();
        }
        VLXClock::advance(0.05);
        VLXRunLoop::main().runOnce();
    }
    if (!wasManual) {
        VLXClock::setReal();
    }
    return galleryFigure(out, "layers-presentation.png", *strip,
                         "Implicit animations of position and opacity (0.25 s, linear), the "
                         "presentation drawn every 0.05 s on the manual clock, top to bottom.");
}

}  // namespace

GalleryPage makeLayersPage(const std::filesystem::path& outputDirectory) {
    GalleryPage page;
    page.id = "layers";
    page.title = "Layers";
    page.summary = "Layer geometry, hit testing, cached custom drawing, presentation over time";
    // Built one after another: the presentation figure fills in the tree text.
    std::string treeText;
    std::string body = "<h2>Geometry</h2>\n" + geometryFigure(outputDirectory);
    body += "<h2>Hit testing</h2>\n" + hitTestFigure(outputDirectory);
    body += "<h2>Display</h2>\n" + displayFigure(outputDirectory);
    body += "<h2>Presentation</h2>\n" + presentationFigure(outputDirectory, &treeText);
    body += "<h2>layerTreeAsText (model, during the animation)</h2>\n<pre>" +
            galleryEscapeHTML(treeText) + "</pre>\n";
    page.bodyHTML = std::move(body);
    return page;
}
