// Gallery page for the drawing platform: the graphics context's line attributes, fill rules,
// clipping, shadows, blend modes, global alpha and image orientations, drawn into bitmaps (and
// once into an SVG document). Labels live in the captions; text drawing belongs to another page.
#include <cmath>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>
#include <VelmarCoreUI/Platform/Graphics/VLXPath.h>
#include "GalleryPage.h"

namespace {

constexpr double kScale = 2;

std::shared_ptr<VLXGraphicsContext> bitmap(double width, double height) {
    return VLXGraphicsContext::createBitmap(VLXSizeMake(width, height), kScale);
}

void fillBackground(VLXGraphicsContext& context, const VLXColor& color) {
    context.saveGState();
    context.setFillColor(color);
    context.fillRect(VLXRectMake(0, 0, context.size().width, context.size().height));
    context.restoreGState();
}

VLXColor hueColor(double hue, double alpha = 1) {
    return VLXColor::colorWithHue(hue, 0.75, 0.95, alpha);
}

void line(VLXGraphicsContext& context, VLXPoint from, VLXPoint to) {
    context.moveToPoint(from);
    context.addLineToPoint(to);
    context.strokePath();
}

// Thin guides through the points a thick stroke was built on.
void guide(VLXGraphicsContext& context, const std::vector<VLXPoint>& points) {
    context.saveGState();
    context.setStrokeColor(VLXColor::colorWithRed(0.9, 0.1, 0.1, 1));
    context.setLineWidth(0.75);
    context.moveToPoint(points[0]);
    for (std::size_t i = 1; i < points.size(); ++i) {
        context.addLineToPoint(points[i]);
    }
    context.strokePath();
    context.restoreGState();
}

void drawCapsAndJoins(VLXGraphicsContext& context) {
    fillBackground(context, VLXColor::whiteColor());
    context.setStrokeColor(VLXColor::colorWithRed(0.2, 0.35, 0.6, 1));
    context.setLineWidth(16);
    const VLXLineCap caps[] = {VLXLineCap::Butt, VLXLineCap::Round, VLXLineCap::Square};
    for (int i = 0; i < 3; ++i) {
        const double y = 30 + i * 40;
        context.setLineCap(caps[i]);
        line(context, VLXPointMake(30, y), VLXPointMake(150, y));
        guide(context, {VLXPointMake(30, y), VLXPointMake(150, y)});
    }
    context.setLineCap(VLXLineCap::Butt);
    const VLXLineJoin joins[] = {VLXLineJoin::Miter, VLXLineJoin::Round, VLXLineJoin::Bevel};
    for (int i = 0; i < 3; ++i) {
        const double x = 200 + i * 90;
        const std::vector<VLXPoint> points = {VLXPointMake(x, 120), VLXPointMake(x + 30, 25),
                                              VLXPointMake(x + 60, 120)};
        context.setLineJoin(joins[i]);
        context.moveToPoint(points[0]);
        context.addLineToPoint(points[1]);
        context.addLineToPoint(points[2]);
        context.strokePath();
        guide(context, points);
    }
}

void drawDashes(VLXGraphicsContext& context) {
    fillBackground(context, VLXColor::whiteColor());
    context.setLineWidth(6);
    const double pattern[] = {24, 12};
    for (int i = 0; i < 5; ++i) {
        context.setStrokeColor(hueColor(0.55 + i * 0.08));
        context.setLineDash(i * 9, pattern);
        line(context, VLXPointMake(20, 20 + i * 18), VLXPointMake(400, 20 + i * 18));
    }
    // Zero-length dashes with round caps are dots; an odd pattern repeats with on and off swapped.
    context.setLineCap(VLXLineCap::Round);
    const double dots[] = {0, 14};
    context.setStrokeColor(VLXColor::darkGrayColor());
    context.setLineDash(0, dots);
    line(context, VLXPointMake(20, 120), VLXPointMake(400, 120));
    const double odd[] = {30, 8, 4};
    context.setLineDash(0, odd);
    context.setLineCap(VLXLineCap::Butt);
    line(context, VLXPointMake(20, 140), VLXPointMake(400, 140));
    // A long dashed polyline (5 000 points) goes through the piecewise stroker.
    VLXPath wave;
    for (int i = 0; i < 5000; ++i) {
        const double x = 20 + 380.0 * i / 4999;
        const VLXPoint p = VLXPointMake(x, 175 + 14 * std::sin(x / 11) + 4 * std::sin(x * 1.7));
        i == 0 ? wave.moveToPoint(p) : wave.addLineToPoint(p);
    }
    const double waveDash[] = {10, 5, 2, 5};
    context.setLineWidth(2.5);
    context.setLineDash(3, waveDash);
    context.setStrokeColor(VLXColor::colorWithRed(0.1, 0.5, 0.3, 1));
    context.addPath(wave);
    context.strokePath();
}

void addStar(VLXGraphicsContext& context, VLXPoint center, double radius) {
    for (int i = 0; i < 5; ++i) {
        const double angle = -M_PI / 2 + i * 4 * M_PI / 5;
        const VLXPoint p =
            VLXPointMake(center.x + radius * std::cos(angle), center.y + radius * std::sin(angle));
        i == 0 ? context.moveToPoint(p) : context.addLineToPoint(p);
    }
    context.closePath();
}

void drawFillRules(VLXGraphicsContext& context) {
    fillBackground(context, VLXColor::whiteColor());
    context.setFillColor(VLXColor::colorWithRed(0.85, 0.45, 0.1, 1));
    context.setStrokeColor(VLXColor::blackColor());
    const VLXPathDrawingMode modes[] = {VLXPathDrawingMode::FillStroke,
                                        VLXPathDrawingMode::EOFillStroke};
    for (int i = 0; i < 2; ++i) {
        const double x = 20 + i * 260;
        addStar(context, VLXPointMake(x + 60, 80), 60);
        context.drawPath(modes[i]);
        // Two squares turning the same way: the inner one has winding number 2.
        context.addRect(VLXRectMake(x + 135, 25, 100, 110));
        context.addRect(VLXRectMake(x + 160, 50, 50, 60));
        context.drawPath(modes[i]);
    }
}

void drawClipping(VLXGraphicsContext& context) {
    fillBackground(context, VLXColor::whiteColor());
    auto stripes = [&](double x0) {
        for (int i = 0; i < 24; ++i) {
            context.setFillColor(hueColor(i / 24.0));
            context.fillRect(VLXRectMake(x0 + i * 8, 0, 8, 160));
        }
    };
    context.saveGState();
    context.addEllipseInRect(VLXRectMake(20, 20, 170, 120));
    context.clip();
    stripes(0);
    context.restoreGState();

    context.saveGState();
    context.addEllipseInRect(VLXRectMake(220, 15, 170, 130));
    context.addEllipseInRect(VLXRectMake(265, 45, 80, 70));
    context.clip(VLXPathFillRule::EvenOdd);
    stripes(210);
    context.restoreGState();

    // Clips intersect: a rectangle inside a star.
    context.saveGState();
    addStar(context, VLXPointMake(500, 80), 70);
    context.clip();
    context.clipToRect(VLXRectMake(430, 60, 140, 45));
    stripes(420);
    context.restoreGState();
}

void drawShadows(VLXGraphicsContext& context) {
    fillBackground(context, VLXColor::colorWithWhite(0.96, 1));
    struct Shadow {
        VLXSize offset;
        double blur;
        VLXColor color;
    };
    const Shadow shadows[] = {
        {VLXSizeMake(6, 6), 0, VLXColor::colorWithWhite(0, 0.5)},
        {VLXSizeMake(4, 4), 4, VLXColor::colorWithWhite(0, 0.5)},
        {VLXSizeMake(0, 8), 12, VLXColor::colorWithWhite(0, 0.6)},
        {VLXSizeMake(0, 0), 20, VLXColor::colorWithRed(0.1, 0.4, 1, 0.9)},
        {VLXSizeMake(-8, -8), 6, VLXColor::colorWithRed(0.9, 0.2, 0.2, 0.7)},
    };
    for (int i = 0; i < 5; ++i) {
        const double x = 30 + i * 110;
        context.saveGState();
        context.setShadow(shadows[i].offset, shadows[i].blur, shadows[i].color);
        context.setFillColor(VLXColor::whiteColor());
        context.fillEllipseInRect(VLXRectMake(x, 30, 70, 70));
        context.setStrokeColor(hueColor(i / 5.0));
        context.setLineWidth(5);
        context.setLineCap(VLXLineCap::Round);
        line(context, VLXPointMake(x, 130), VLXPointMake(x + 70, 120));
        context.restoreGState();
    }
}

// A colourful backdrop that leaves the right part of the cell transparent, so that modes which
// look at the destination's alpha show it.
void drawBlendCell(VLXGraphicsContext& context, VLXBlendMode mode) {
    for (int i = 0; i < 6; ++i) {
        context.setFillColor(hueColor(i / 6.0));
        context.fillRect(VLXRectMake(i * 10, 0, 10, 80));
    }
    context.setFillColor(VLXColor::colorWithWhite(0.15, 1));
    context.fillRect(VLXRectMake(0, 60, 60, 20));
    context.setBlendMode(mode);
    context.setFillColor(VLXColor::colorWithRed(0.95, 0.75, 0.1, 0.9));
    context.fillEllipseInRect(VLXRectMake(22, 12, 50, 50));
    context.setBlendMode(VLXBlendMode::Normal);
}

std::shared_ptr<VLXImage> makeSampleImage() {
    // An "F" with a red dot in its top right corner: asymmetric, so every turn and flip shows.
    auto context = VLXGraphicsContext::createBitmap(VLXSizeMake(40, 60), 2);
    fillBackground(*context, VLXColor::colorWithRed(0.9, 0.95, 1, 1));
    context->setFillColor(VLXColor::colorWithRed(0.15, 0.25, 0.55, 1));
    context->fillRect(VLXRectMake(8, 8, 8, 44));
    context->fillRect(VLXRectMake(8, 8, 26, 8));
    context->fillRect(VLXRectMake(8, 26, 18, 7));
    context->setFillColor(VLXColor::redColor());
    context->fillEllipseInRect(VLXRectMake(30, 2, 8, 8));
    return context->makeImage();
}

std::string section(const std::string& title, const std::string& text) {
    return "<h2>" + galleryEscapeHTML(title) + "</h2>\n<p>" + galleryEscapeHTML(text) + "</p>\n";
}

}  // namespace

GalleryPage makeDrawingPage(const std::filesystem::path& outputDirectory) {
    std::string body =
        "<h1>Drawing</h1>\n<p>Everything here is drawn by VLXGraphicsContext over "
        "cairo at scale 2 and read back as PNG (one figure also as SVG).</p>\n";

    body += section("Caps and joins",
                    "Line width 16 with the path in red. Left, top to bottom: butt, round and "
                    "square caps. Right, left to right: miter, round and bevel joins.");
    if (auto context = bitmap(480, 150)) {
        drawCapsAndJoins(*context);
        body += galleryFigure(outputDirectory, "drawing-caps-joins.png", *context,
                              "Caps: butt, round, square. Joins: miter, round, bevel.");
    }

    body +=
        section("Dashes",
                "Pattern 24 on / 12 off with phases 0, 9, 18, 27 and 36; zero-length dashes "
                "with round caps (dots); an odd pattern 30, 8, 4; and a 5 000-point wave "
                "dashed 10, 5, 2, 5, which is stroked in pieces with the phase carried across.");
    if (auto context = bitmap(420, 200)) {
        drawDashes(*context);
        body += galleryFigure(outputDirectory, "drawing-dashes.png", *context,
                              "Dash phases 0–36, dots, odd pattern, long dashed wave.");
    }

    body += section("Winding and even-odd",
                    "The same star and nested squares filled with the non-zero winding rule (left) "
                    "and the even-odd rule (right), then stroked.");
    if (auto context = bitmap(540, 160)) {
        drawFillRules(*context);
        body += galleryFigure(outputDirectory, "drawing-fill-rules.png", *context,
                              "Left: winding (fill + stroke). Right: even-odd.");
    }

    body += section("Clipping",
                    "Colour stripes clipped to an ellipse, to a ring (even-odd clip of two "
                    "ellipses), and to a star intersected with a rectangle.");
    if (auto context = bitmap(600, 160)) {
        drawClipping(*context);
        body += galleryFigure(outputDirectory, "drawing-clipping.png", *context,
                              "Ellipse clip; even-odd ring clip; star ∩ rectangle.");
    }

    body += section("Shadows",
                    "Offsets and blurs in points, y down: (6, 6) blur 0; (4, 4) blur 4; (0, 8) "
                    "blur 12; (0, 0) blur 20 in blue; (−8, −8) blur 6 in red. Each shadow falls "
                    "under a filled circle and a stroked line.");
    if (auto context = bitmap(580, 160)) {
        drawShadows(*context);
        body += galleryFigure(outputDirectory, "drawing-shadows.png", *context,
                              "Shadows with several offsets, blurs and colours.");
    }

    body +=
        section("Blend modes",
                "Each cell: colour bars over the left of the cell (the right is transparent), "
                "then a yellow circle at 90 % alpha drawn with the mode named below it. "
                "Blend modes cover source and destination, so where the backdrop is transparent "
                "they show the circle as drawn.");
    struct Mode {
        VLXBlendMode mode;
        const char* name;
    };
    const Mode modes[] = {
        {VLXBlendMode::Normal, "Normal"},
        {VLXBlendMode::Multiply, "Multiply"},
        {VLXBlendMode::Screen, "Screen"},
        {VLXBlendMode::Overlay, "Overlay"},
        {VLXBlendMode::Darken, "Darken"},
        {VLXBlendMode::Lighten, "Lighten"},
        {VLXBlendMode::ColorDodge, "ColorDodge"},
        {VLXBlendMode::ColorBurn, "ColorBurn"},
        {VLXBlendMode::SoftLight, "SoftLight"},
        {VLXBlendMode::HardLight, "HardLight"},
        {VLXBlendMode::Difference, "Difference"},
        {VLXBlendMode::Exclusion, "Exclusion"},
        {VLXBlendMode::Hue, "Hue"},
        {VLXBlendMode::Saturation, "Saturation"},
        {VLXBlendMode::Color, "Color"},
        {VLXBlendMode::Luminosity, "Luminosity"},
        {VLXBlendMode::Clear, "Clear"},
        {VLXBlendMode::Copy, "Copy"},
        {VLXBlendMode::SourceIn, "SourceIn"},
        {VLXBlendMode::SourceOut, "SourceOut"},
        {VLXBlendMode::SourceAtop, "SourceAtop"},
        {VLXBlendMode::DestinationOver, "DestinationOver"},
        {VLXBlendMode::DestinationIn, "DestinationIn"},
        {VLXBlendMode::DestinationOut, "DestinationOut"},
        {VLXBlendMode::DestinationAtop, "DestinationAtop"},
        {VLXBlendMode::XOR, "XOR"},
        {VLXBlendMode::PlusDarker, "PlusDarker"},
        {VLXBlendMode::PlusLighter, "PlusLighter"},
    };
    body += "<div class=\"columns\">\n";
    for (const Mode& mode : modes) {
        if (auto context = bitmap(80, 80)) {
            drawBlendCell(*context, mode.mode);
            body +=
                galleryFigure(outputDirectory, std::string("drawing-blend-") + mode.name + ".png",
                              *context, mode.name);
        }
    }
    body += "</div>\n";

    auto sample = makeSampleImage();
    body += section("Desaturating and tinting an image",
                    "Left: the image. Middle: drawn, then black filled over it with Saturation — a "
                    "grey image; the blend covers its transparent margin with the black source. "
                    "Right: drawn, then "
                    "teal filled with SourceAtop — only the image's pixels are coloured.");
    if (sample) {
        auto rounded = [&](VLXGraphicsContext& context) {
            // The image with a transparent margin: clip to an ellipse first.
            context.saveGState();
            context.addEllipseInRect(VLXRectMake(5, 5, 70, 90));
            context.clip();
            context.drawImage(*sample, VLXRectMake(5, 5, 70, 90));
            context.restoreGState();
        };
        if (auto context = bitmap(80, 100)) {
            rounded(*context);
            body += galleryFigure(outputDirectory, "drawing-image-plain.png", *context, "Image");
        }
        if (auto context = bitmap(80, 100)) {
            rounded(*context);
            context->setBlendMode(VLXBlendMode::Saturation);
            context->fillRect(VLXRectMake(0, 0, 80, 100));
            body += galleryFigure(outputDirectory, "drawing-image-desaturated.png", *context,
                                  "Saturation with black");
        }
        if (auto context = bitmap(80, 100)) {
            rounded(*context);
            context->setBlendMode(VLXBlendMode::SourceAtop);
            context->setFillColor(VLXColor::colorWithRed(0.1, 0.6, 0.6, 0.8));
            context->fillRect(VLXRectMake(0, 0, 80, 100));
            body += galleryFigure(outputDirectory, "drawing-image-tinted.png", *context,
                                  "SourceAtop with teal");
        }
    }

    body += section("Global alpha",
                    "The same group — a filled square, a stroked circle and the image — drawn "
                    "with global alpha 1, 0.75, 0.5 and 0.25 over a striped backdrop.");
    if (auto context = bitmap(460, 130)) {
        for (int i = 0; i < 23; ++i) {
            context->setFillColor(i % 2 == 0 ? VLXColor::colorWithWhite(0.85, 1)
                                             : VLXColor::whiteColor());
            context->fillRect(VLXRectMake(i * 20, 0, 20, 130));
        }
        const double alphas[] = {1, 0.75, 0.5, 0.25};
        for (int i = 0; i < 4; ++i) {
            const double x = 15 + i * 112;
            context->saveGState();
            context->setAlpha(alphas[i]);
            context->setFillColor(VLXColor::colorWithRed(0.8, 0.2, 0.3, 1));
            context->fillRect(VLXRectMake(x, 15, 60, 60));
            context->setStrokeColor(VLXColor::colorWithRed(0.1, 0.3, 0.8, 1));
            context->setLineWidth(8);
            context->strokeEllipseInRect(VLXRectMake(x + 30, 45, 60, 60));
            if (sample) {
                context->drawImage(*sample, VLXRectMake(x + 5, 70, 30, 45));
            }
            context->restoreGState();
        }
        body += galleryFigure(outputDirectory, "drawing-alpha.png", *context,
                              "Global alpha 1, 0.75, 0.5, 0.25.");
    }

    body += section("Image orientations",
                    "One stored bitmap (an F with a red dot at its top right) drawn upright with "
                    "each orientation, left to right: Up, Down, Left, Right, UpMirrored, "
                    "DownMirrored, LeftMirrored, RightMirrored. The turned ones are wider than "
                    "tall, since their size swaps.");
    if (sample) {
        if (auto context = bitmap(500, 80)) {
            fillBackground(*context, VLXColor::whiteColor());
            double x = 10;
            for (int o = 0; o < 8; ++o) {
                auto oriented =
                    VLXImage::imageWithImage(*sample, 2, static_cast<VLXImageOrientation>(o));
                const VLXSize size = oriented->size();
                context->drawImage(*oriented, VLXRectMake(x, 10, size.width, size.height));
                x += size.width + 12;
            }
            body += galleryFigure(outputDirectory, "drawing-orientations.png", *context,
                                  "Up, Down, Left, Right, UpMirrored, DownMirrored, LeftMirrored, "
                                  "RightMirrored.");
        }
    }

    body += section("Long polyline",
                    "A 200 000-point random walk around a sine wave, stroked 1 wide in a "
                    "translucent colour. Cairo takes seconds for that as one path; the context "
                    "strokes it in pieces whose coverage is gathered first, so where the walk "
                    "crosses itself the colour never darkens.");
    if (auto context = bitmap(600, 120)) {
        fillBackground(*context, VLXColor::whiteColor());
        VLXPath walk;
        walk.reserve(200000, 200000);
        std::uint32_t seed = 7;
        double y = 60;
        for (int i = 0; i < 200000; ++i) {
            seed = seed * 1664525U + 1013904223U;
            const double noise = static_cast<double>(seed >> 8) / (1 << 24) - 0.5;
            const double x = 10 + 580.0 * i / 199999;
            y += 1.2 * noise - 0.004 * (y - 60 - 30 * std::sin(x / 40));
            const VLXPoint p = VLXPointMake(x, y);
            i == 0 ? walk.moveToPoint(p) : walk.addLineToPoint(p);
        }
        context->setStrokeColor(VLXColor::colorWithRed(0.1, 0.3, 0.7, 0.35));
        context->setLineWidth(1);
        context->setLineJoin(VLXLineJoin::Round);
        context->addPath(walk);
        context->strokePath();
        body += galleryFigure(outputDirectory, "drawing-long-polyline.png", *context,
                              "200 000 points, alpha 0.35.");
    }

    body += section("As SVG",
                    "Caps, joins and shadows drawn into an SVG document instead of a "
                    "bitmap (shadows are embedded as images).");
    if (auto svg = VLXGraphicsContext::createSVG(VLXSizeMake(480, 150))) {
        drawCapsAndJoins(*svg);
        svg->setShadow(VLXSizeMake(3, 3), 4);
        svg->setFillColor(VLXColor::colorWithRed(0.95, 0.75, 0.1, 1));
        svg->fillEllipseInRect(VLXRectMake(400, 95, 50, 40));
        body += galleryFigure(outputDirectory, "drawing-caps-joins.svg", *svg,
                              "The caps and joins figure as SVG, plus a shadowed ellipse.");
    }
    if (auto pdf = VLXGraphicsContext::createPDF(VLXSizeMake(540, 160))) {
        drawFillRules(*pdf);
        body += galleryFigure(outputDirectory, "drawing-fill-rules.pdf", *pdf,
                              "The fill-rule figure as a one-page PDF.");
    }

    return GalleryPage{"drawing", "Drawing",
                       "Line attributes, fill rules, clipping, shadows, blend modes, alpha and "
                       "image orientations through VLXGraphicsContext.",
                       body};
}
