// Gallery page for the compositor: one layer tree with opacity groups, transforms about the
// anchor, masks, rounded corners, borders, gradient and shape layers, composited into a bitmap,
// an SVG and a PDF from the same walk; and a million-point polyline in a shape layer.
#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>
#include <VelmarCoreUI/Platform/Layers/VLXCompositor.h>
#include <VelmarCoreUI/Platform/Layers/VLXGradientLayer.h>
#include <VelmarCoreUI/Platform/Layers/VLXShapeLayer.h>
#include <VelmarCoreUI/Platform/Layers/VLXTransaction.h>
#include "GalleryPage.h"

namespace {

constexpr double kScale = 2;
constexpr double kWidth = 480;
constexpr double kHeight = 260;

VLXColor hue(double h, double alpha = 1) {
    return VLXColor::colorWithHue(h, 0.65, 0.9, alpha);
}

std::shared_ptr<VLXLayer> box(VLXRect frame, std::optional<VLXColor> color) {
    auto layer = VLXLayer::create();
    layer->setFrame(frame);
    layer->setBackgroundColor(std::move(color));
    return layer;
}

std::shared_ptr<VLXLayer> buildTree() {
    auto root = box({{0, 0}, {kWidth, kHeight}}, VLXColor::colorWithWhite(0.97, 1));

    // Rounded cards with borders; the second is turned 12° about its centre (its anchor).
    auto card = box({{16, 16}, {140, 100}}, hue(0.58));
    card->setCornerRadius(16);
    card->setBorderWidth(3);
    card->setBorderColor(hue(0.62, 1));
    root->addSublayer(card);
    auto turned = box({{176, 20}, {120, 90}}, hue(0.08));
    turned->setCornerRadius(10);
    turned->setAffineTransform(VLXAffineTransformMakeRotation(12 * M_PI / 180));
    turned->setBorderWidth(2);
    turned->setBorderColor(VLXColor::colorWithWhite(0.2, 1));
    root->addSublayer(turned);

    // Half opacity over two overlapping children: one group, no darker overlap.
    auto group = box({{320, 16}, {144, 100}}, std::nullopt);
    group->addSublayer(box({{0, 0}, {90, 100}}, hue(0.95)));
    group->addSublayer(box({{54, 0}, {90, 100}}, hue(0.75)));
    group->setOpacity(0.5);
    root->addSublayer(group);

    // A gradient clipped to its rounded bounds, with a sublayer hanging out (clipped).
    auto gradient = VLXGradientLayer::create();
    gradient->setFrame({{16, 136}, {140, 108}});
    gradient->setColors(
        VLXValue(VLXValue::Array{VLXValue(hue(0.55)), VLXValue(hue(0.85)), VLXValue(hue(0.12))}));
    gradient->setLocations(VLXValue(VLXValue::Array{VLXValue(0), VLXValue(0.6), VLXValue(1)}));
    gradient->setStartPoint({0, 0});
    gradient->setEndPoint({1, 1});
    gradient->setCornerRadius(20);
    gradient->setMasksToBounds(true);
    gradient->addSublayer(box({{100, 70}, {80, 80}}, VLXColor::colorWithWhite(1, 0.7)));
    root->addSublayer(gradient);

    // Shape layers: a filled star with a dashed outline, a stroke drawn to 70 %.
    auto star = VLXShapeLayer::create();
    star->setFrame({{176, 136}, {110, 108}});
    VLXPath starPath;
    for (int i = 0; i < 10; ++i) {
        const double angle = -M_PI / 2 + i * M_PI / 5;
        const double radius = i % 2 == 0 ? 52 : 22;
        const VLXPoint p{55 + radius * std::cos(angle), 56 + radius * std::sin(angle)};
        if (i == 0) {
            starPath.moveToPoint(p);
        } else {
            starPath.addLineToPoint(p);
        }
    }
    starPath.closeSubpath();
    star->setPath(starPath);
    star->setFillColor(hue(0.14));
    star->setStrokeColor(VLXColor::colorWithWhite(0.15, 1));
    star->setLineWidth(2.5);
    star->setLineJoin(VLXLineJoin::Round);
    star->setLineDashPattern({8, 4});
    root->addSublayer(star);
    auto ring = VLXShapeLayer::create();
    ring->setFrame({{300, 140}, {100, 100}});
    ring->setPath(VLXPath::pathWithEllipseInRect({{10, 10}, {80, 80}}));
    ring->setFillColor(std::nullopt);
    ring->setStrokeColor(hue(0.33));
    ring->setLineWidth(10);
    ring->setLineCap(VLXLineCap::Round);
    ring->setStrokeEnd(0.7);
    root->addSublayer(ring);

    // A layer masked by a circle: only the disc of its stripes shows.
    auto striped = box({{408, 150}, {64, 64}}, std::nullopt);
    for (int i = 0; i < 8; ++i) {
        striped->addSublayer(box({{i * 8.0, 0}, {4, 64}}, hue(0.0)));
    }
    auto disc = box({{0, 0}, {64, 64}}, VLXColor::blackColor());
    disc->setCornerRadius(32);
    striped->setMask(disc);
    root->addSublayer(striped);
    return root;
}

std::string treeFigures(const std::filesystem::path& out) {
    VLXTransaction::begin();
    VLXTransaction::setDisableActions(true);
    auto root = buildTree();
    VLXTransaction::commit();
    VLXTransaction::flush();

    auto bitmap = VLXGraphicsContext::createBitmap({kWidth, kHeight}, kScale);
    VLXCompositor::render(*root, *bitmap);
    std::string html = "<div style=\"display:flex;flex-wrap:wrap;gap:16px\">\n";
    html += galleryFigure(out, "compositor-tree.png", *bitmap, "Bitmap, 2 pixels per point");
    auto svg = VLXGraphicsContext::createSVG({kWidth, kHeight});
    VLXCompositor::render(*root, *svg);
    html += galleryFigure(out, "compositor-tree.svg", *svg,
                          "SVG from the same walk (opacity folded into each drawing)");
    auto pdf = VLXGraphicsContext::createPDF({kWidth, kHeight});
    VLXCompositor::render(*root, *pdf);
    html += galleryFigure(out, "compositor-tree.pdf", *pdf, "PDF from the same walk");
    html += "</div>\n";
    html +=
        "<p>Top row: a rounded card with a border; a card turned 12° about its anchor; two "
        "overlapping layers in a 50 % group. Bottom row: a diagonal three-stop gradient with "
        "rounded masksToBounds clipping a white sublayer; a shape layer (fill, dashed round-"
        "joined outline); a stroke ending at strokeEnd 0.7; stripes masked by a disc.</p>\n";
    return html;
}

std::string polylineFigure(const std::filesystem::path& out) {
    constexpr std::size_t kCount = 1000000;
    std::vector<VLXPoint> points;
    points.reserve(kCount);
    std::uint32_t seed = 7;
    for (std::size_t i = 0; i < kCount; ++i) {
        seed = seed * 1664525U + 1013904223U;
        const double noise = static_cast<double>(seed >> 8) / static_cast<double>(1U << 24);
        const double x = kWidth * static_cast<double>(i) / static_cast<double>(kCount);
        points.push_back({x, 60 + 35 * std::sin(x / 40) + 10 * (noise - 0.5)});
    }
    VLXPath path;
    path.reserve(kCount, kCount);
    path.addLines(points);
    VLXTransaction::begin();
    VLXTransaction::setDisableActions(true);
    auto root = box({{0, 0}, {kWidth, 120}}, VLXColor::whiteColor());
    auto line = VLXShapeLayer::create();
    line->setFrame(root->bounds());
    line->setPath(std::move(path));
    line->setFillColor(std::nullopt);
    line->setStrokeColor(VLXColor::colorWithRed(0.1, 0.3, 0.8, 1));
    line->setLineWidth(0.5);
    line->setLineJoin(VLXLineJoin::Round);
    root->addSublayer(line);
    VLXTransaction::commit();
    VLXTransaction::flush();
    auto bitmap = VLXGraphicsContext::createBitmap({kWidth, 120}, kScale);
    VLXCompositor::render(*root, *bitmap);
    return galleryFigure(out, "compositor-polyline.png", *bitmap,
                         "A shape layer holding 1 000 000 points (a noisy sine), stroked 0.5 pt "
                         "wide with round joins: the stroke keeps only the extremes of each "
                         "quarter-pixel column.");
}

}  // namespace

GalleryPage makeCompositorPage(const std::filesystem::path& outputDirectory) {
    GalleryPage page;
    page.id = "compositor";
    page.title = "Compositor";
    page.summary = "A layer tree as PNG, SVG and PDF; shape and gradient layers; long polylines";
    page.bodyHTML = "<h2>One tree, three outputs</h2>\n" + treeFigures(outputDirectory) +
                    "<h2>Long polylines</h2>\n" + polylineFigure(outputDirectory);
    return page;
}
