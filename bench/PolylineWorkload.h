#pragma once

// The long-polyline workload shared by StrokeBench and the polyline table: a noisy line across a
// 1280 × 720 bitmap, stroked 1.5 wide through the graphics context and through raw cairo.
#include <cairo.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXPath.h>

namespace polyline {

constexpr int kWidth = 1280;
constexpr int kHeight = 720;
constexpr double kLineWidth = 1.5;
constexpr std::size_t kPieceSegments = 1000;

/// `count` points from left to right, y jumping randomly within ±3 pixels of the middle.
inline std::vector<VLXPoint> noisyLine(std::size_t count) {
    std::vector<VLXPoint> points;
    points.reserve(count);
    std::uint32_t seed = 2024;
    for (std::size_t i = 0; i < count; ++i) {
        seed = seed * 1664525U + 1013904223U;
        const double noise = static_cast<double>(seed >> 8) / static_cast<double>(1U << 24);
        points.push_back(VLXPointMake(static_cast<double>(i) * kWidth / static_cast<double>(count),
                                      kHeight / 2.0 + 6 * (noise - 0.5)));
    }
    return points;
}

/// Builds the path and strokes it through the context (which is cleared first).
inline void strokeWithContext(VLXGraphicsContext& context, const std::vector<VLXPoint>& points) {
    context.clearRect(VLXRectMake(0, 0, kWidth, kHeight));
    VLXPath path;
    path.reserve(points.size(), points.size());
    path.addLines(points);
    context.setLineWidth(kLineWidth);
    context.addPath(path);
    context.strokePath();
}

/// A raw cairo ARGB surface and context of the same size.
struct RawCairo {
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, kWidth, kHeight);
    cairo_t* cr = cairo_create(surface);
    RawCairo() { cairo_set_line_width(cr, kLineWidth); }
    ~RawCairo() {
        cairo_destroy(cr);
        cairo_surface_destroy(surface);
    }
    RawCairo(const RawCairo&) = delete;
    RawCairo& operator=(const RawCairo&) = delete;

    void clear() {
        cairo_save(cr);
        cairo_set_operator(cr, CAIRO_OPERATOR_CLEAR);
        cairo_paint(cr);
        cairo_restore(cr);
    }

    /// All points as one path: cairo's slow road.
    void strokeOnePath(const std::vector<VLXPoint>& points) {
        clear();
        cairo_move_to(cr, points[0].x, points[0].y);
        for (std::size_t i = 1; i < points.size(); ++i) {
            cairo_line_to(cr, points[i].x, points[i].y);
        }
        cairo_stroke(cr);
    }

    /// Strokes of 1000 segments, each starting one segment back so that joins stay whole.
    void strokePieces(const std::vector<VLXPoint>& points) {
        clear();
        std::size_t start = 0;
        while (start + 1 < points.size()) {
            const std::size_t end = std::min(start + kPieceSegments, points.size() - 1);
            cairo_move_to(cr, points[start].x, points[start].y);
            for (std::size_t i = start + 1; i <= end; ++i) {
                cairo_line_to(cr, points[i].x, points[i].y);
            }
            cairo_stroke(cr);
            if (end == points.size() - 1) {
                break;
            }
            start = end - 1;
        }
    }
};

}  // namespace polyline
