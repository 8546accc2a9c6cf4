// Gallery page for arrows and smoothing: arrows around a compass rose at several widths, and a
// noisy series smoothed at several granularities with the data's y range marked, so the clamp
// against overshoot can be seen.
#include <cmath>
#include <cstdint>
#include <memory>
#include <numbers>
#include <string>
#include <vector>

#include <VelmarCoreUI/Platform/Foundation/VLXStringFormat.h>
#include <VelmarCoreUI/Platform/Graphics/VLXBezierPath.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Utilities/VLXBezierPathUtilities.h>
#include "GalleryPage.h"

namespace {

constexpr double kPi = std::numbers::pi;

void fillBackground(VLXGraphicsContext& context) {
    context.setFillColor(VLXColor::whiteColor());
    context.fillRect(VLXRectMake(0, 0, context.size().width, context.size().height));
}

// Fills an arrow and outlines it in a darker shade of the same hue.
void drawArrow(VLXGraphicsContext& context, VLXPoint from, VLXPoint to, double tailWidth,
               double headWidth, double headLength, double hue) {
    VLXBezierPath arrow =
        vlx_bezierPathWithArrowFromPoint(from, to, tailWidth, headWidth, headLength);
    context.setFillColor(VLXColor::colorWithHue(hue, 0.55, 0.95, 1));
    context.fillBezierPath(arrow);
    arrow.setLineWidth(1);
    arrow.setLineJoinStyle(VLXLineJoin::Round);
    context.setStrokeColor(VLXColor::colorWithHue(hue, 0.8, 0.45, 1));
    context.strokeBezierPath(arrow);
}

std::string compassRose(const std::filesystem::path& directory) {
    const VLXSize size = VLXSizeMake(360, 360);
    auto context = VLXGraphicsContext::createBitmap(size, 2);
    if (!context) {
        return "<p>bitmap context unavailable</p>";
    }
    fillBackground(*context);
    const VLXPoint center{180, 180};
    context->setStrokeColor(VLXColor::colorWithWhite(0.85, 1));
    VLXBezierPath ring = VLXBezierPath::bezierPathWithOvalInRect(VLXRectMake(30, 30, 300, 300));
    const double dash[] = {4, 4};
    ring.setLineDash(dash, 0);
    context->strokeBezierPath(ring);
    for (int k = 0; k < 8; ++k) {
        // North first, then clockwise on screen; angles grow clockwise with y down.
        const double angle = -kPi / 2 + k * kPi / 4;
        const double length = k % 2 == 0 ? 150 : 110;
        const VLXPoint from{center.x + 18 * std::cos(angle), center.y + 18 * std::sin(angle)};
        const VLXPoint to{center.x + length * std::cos(angle), center.y + length * std::sin(angle)};
        drawArrow(*context, from, to, 2 + k * 1.5, 12 + k * 3, 14 + k * 2, k / 8.0);
    }
    context->setFillColor(VLXColor::darkGrayColor());
    context->fillEllipseInRect(VLXRectMake(center.x - 4, center.y - 4, 8, 8));
    return galleryFigure(directory, "paths-compass.png", *context,
                         "Eight directions from N clockwise (E is +x, S is +y on screen). Tail "
                         "width 2 … 12.5, head width 12 … 33, head length 14 … 28 points, "
                         "growing with each step; diagonals are shorter (110 vs 150 points).");
}

std::string arrowWidths(const std::filesystem::path& directory) {
    const VLXSize size = VLXSizeMake(560, 200);
    auto context = VLXGraphicsContext::createSVG(size);
    if (!context) {
        return "<p>SVG context unavailable</p>";
    }
    fillBackground(*context);
    struct Shape {
        double tail, head, headLength;
    };
    const Shape shapes[] = {{1, 6, 6},    {4, 12, 10},  {8, 20, 16},
                            {14, 30, 24}, {20, 20, 12}, {6, 40, 40}};
    double y = 20;
    for (const Shape& s : shapes) {
        drawArrow(*context, {20, y}, {260, y}, s.tail, s.head, s.headLength, 0.58);
        // The same shape pointing back and up-left, to show it turns as a whole.
        drawArrow(*context, {540, y + 12}, {330, y - 4}, s.tail, s.head, s.headLength, 0.08);
        y += 32;
    }
    // Start equal to end: NaN points, which drawing leaves out (nothing appears).
    drawArrow(*context, {300, 190}, {300, 190}, 4, 12, 10, 0);
    return galleryFigure(directory, "paths-widths.svg", *context,
                         "SVG. Rows from the top, (tail, head width, head length): (1, 6, 6), "
                         "(4, 12, 10), (8, 20, 16), (14, 30, 24), (20, 20, 12) — head as wide "
                         "as the tail, a plain pointed bar — and (6, 40, 40). Right: the same "
                         "shapes from right to left, slightly rising. A zero-length arrow at "
                         "(300, 190) draws nothing.");
}

// Deterministic noisy series: a slow wave plus LCG noise, with a few flat runs at the extremes
// (where Catmull-Rom would overshoot without the clamp).
std::vector<double> noisySeries(int count) {
    std::vector<double> values;
    std::uint32_t seed = 20240611u;
    for (int i = 0; i < count; ++i) {
        seed = seed * 1664525u + 1013904223u;
        const double noise = static_cast<double>(seed >> 8) / static_cast<double>(1u << 24);
        double v = 50 + 25 * std::sin(i * 0.35) + 30 * (noise - 0.5);
        if (i >= 9 && i <= 11) {
            v = 92;
        } else if (i >= 27 && i <= 28) {
            v = 8;
        }
        values.push_back(v);
    }
    return values;
}

// Data to screen: x spread over the panel, value 0 … 100 from bottom to top.
std::vector<VLXPoint> screenPoints(const std::vector<double>& values, const VLXRect& panel) {
    std::vector<VLXPoint> points;
    const double dx = panel.width() / static_cast<double>(values.size() - 1);
    for (std::size_t i = 0; i < values.size(); ++i) {
        points.push_back({panel.minX() + static_cast<double>(i) * dx,
                          panel.maxY() - values[i] / 100.0 * panel.height()});
    }
    return points;
}

void drawRangeLines(VLXGraphicsContext& context, const std::vector<VLXPoint>& points,
                    const VLXRect& panel) {
    double minY = points[0].y, maxY = points[0].y;
    for (const VLXPoint& p : points) {
        minY = std::fmin(minY, p.y);
        maxY = std::fmax(maxY, p.y);
    }
    VLXBezierPath lines;
    lines.moveToPoint({panel.minX() - 8, minY});
    lines.addLineToPoint({panel.maxX() + 8, minY});
    lines.moveToPoint({panel.minX() - 8, maxY});
    lines.addLineToPoint({panel.maxX() + 8, maxY});
    const double dash[] = {5, 3};
    lines.setLineDash(dash, 0);
    lines.setLineWidth(0.75);
    context.setStrokeColor(VLXColor::colorWithRed(0.8, 0.2, 0.2, 0.8));
    context.strokeBezierPath(lines);
}

void drawData(VLXGraphicsContext& context, const std::vector<VLXPoint>& points) {
    VLXPath raw;
    raw.addLines(points);
    VLXBezierPath line = VLXBezierPath::bezierPathWithCGPath(raw);
    line.setLineWidth(0.5);
    context.setStrokeColor(VLXColor::colorWithWhite(0.55, 1));
    context.strokeBezierPath(line);
    context.setFillColor(VLXColor::colorWithWhite(0.15, 1));
    for (const VLXPoint& p : points) {
        context.fillBezierPath(
            VLXBezierPath::bezierPathWithOvalInRect(VLXRectMake(p.x - 2, p.y - 2, 4, 4)));
    }
}

void drawSmoothed(VLXGraphicsContext& context, const std::vector<VLXPoint>& points,
                  VLXInteger granularity, const VLXColor& color, double width) {
    VLXPath raw;
    raw.addLines(points);
    VLXBezierPath line = VLXBezierPath::bezierPathWithCGPath(raw);
    line.setLineWidth(width);
    line.setLineJoinStyle(VLXLineJoin::Round);
    context.setStrokeColor(color);
    context.strokeBezierPath(vlx_smoothedPathWithGranularity(line, granularity));
}

VLXColor granularityColor(int index) {
    static const VLXColor colors[] = {
        VLXColor::colorWithRed(0.55, 0.55, 0.55, 1), VLXColor::colorWithRed(0.9, 0.55, 0.1, 1),
        VLXColor::colorWithRed(0.15, 0.6, 0.3, 1), VLXColor::colorWithRed(0.15, 0.35, 0.9, 1)};
    return colors[index % 4];
}

std::string smoothingPanel(const std::filesystem::path& directory,
                           const std::vector<double>& values, VLXInteger granularity, int index) {
    auto context = VLXGraphicsContext::createBitmap(VLXSizeMake(560, 170), 2);
    if (!context) {
        return "<p>bitmap context unavailable</p>";
    }
    fillBackground(*context);
    const VLXRect panel = VLXRectMake(20, 15, 520, 140);
    const std::vector<VLXPoint> points = screenPoints(values, panel);
    drawRangeLines(*context, points, panel);
    drawSmoothed(*context, points, granularity, granularityColor(index), 1.75);
    drawData(*context, points);
    const std::string file =
        VLXStringWithFormat("paths-smooth-%lld.png", static_cast<long long>(granularity));
    std::string caption =
        VLXStringWithFormat("Granularity %lld. ", static_cast<long long>(granularity));
    caption += granularity < 2
                   ? "Below 2 nothing is interpolated: the data points joined by straight lines."
                   : VLXStringWithFormat(
                         "%lld points interpolated between each pair of data "
                         "points, y clamped to the dashed data range.",
                         static_cast<long long>(granularity - 1));
    return galleryFigure(directory, file, *context, caption);
}

std::string smoothingOverlay(const std::filesystem::path& directory,
                             const std::vector<double>& values) {
    auto context = VLXGraphicsContext::createBitmap(VLXSizeMake(560, 260), 2);
    if (!context) {
        return "<p>bitmap context unavailable</p>";
    }
    fillBackground(*context);
    // A close-up of the first plateau: 6 … 16 of the series.
    const std::vector<double> part(values.begin() + 6, values.begin() + 17);
    const VLXRect panel = VLXRectMake(30, 20, 500, 220);
    const std::vector<VLXPoint> points = screenPoints(part, panel);
    drawRangeLines(*context, points, panel);
    const VLXInteger granularities[] = {0, 4, 16, 80};
    // Widest first, so every curve shows where they coincide.
    const double widths[] = {6, 4.5, 3, 1.5};
    for (int i = 0; i < 4; ++i) {
        drawSmoothed(*context, points, granularities[i], granularityColor(i), widths[i]);
    }
    drawData(*context, points);
    return galleryFigure(
        directory, "paths-smooth-overlay.png", *context,
        "Close-up of points 6 … 16 with all four granularities, widest "
        "first: grey 0, orange 4, green 16, blue 80. Near the plateau at the top (points 9 … "
        "11 of the series) the curve would rise above the highest data point; "
        "it runs flat along the dashed maximum instead.");
}

}  // namespace

GalleryPage makePathsPage(const std::filesystem::path& outputDirectory) {
    std::string body;
    body += "<h2>Arrows</h2>\n";
    body +=
        "<p>An arrow is a closed seven-point path: a tail of the given width, then a head "
        "of the given width and length whose tip lies on the end point. The length is "
        "measured in single precision, as the platform does.</p>\n";
    body += compassRose(outputDirectory);
    body += arrowWidths(outputDirectory);

    body += "<h2>Smoothing</h2>\n";
    body +=
        "<p>A series of 40 points (a slow wave plus fixed pseudo-random noise, with two "
        "flat runs at the extremes) drawn as dots on a thin grey line, and its Catmull-Rom "
        "smoothing at four granularities. Dashed red lines mark the data's smallest and "
        "largest y: interpolated points never leave that band.</p>\n";
    const std::vector<double> values = noisySeries(40);
    const VLXInteger granularities[] = {0, 4, 16, 80};
    for (int i = 0; i < 4; ++i) {
        body += smoothingPanel(outputDirectory, values, granularities[i], i);
    }
    body += smoothingOverlay(outputDirectory, values);

    return GalleryPage{"paths", "Arrows and smoothing",
                       "Arrow shapes between two points and Catmull-Rom smoothing of series "
                       "lines, clamped to the data's vertical range.",
                       body};
}
