// Hit testing and smoothing on large paths: what a graph does per touch and per series redraw.
#include <benchmark/benchmark.h>
#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numbers>
#include <vector>

#include <VelmarCoreUI/Utilities/VLXBezierPathUtilities.h>
#include <VelmarCoreUI/Utilities/VLXValueBoxing.h>
#include "BenchRatio.h"

namespace {

// A closed wavy ring of `elements` elements, every other one a cubic.
VLXPath wavyRing(int elements) {
    VLXPath path;
    const double step = 2 * std::numbers::pi / elements;
    auto at = [](double angle, double radius) {
        return VLXPoint{200 + radius * std::cos(angle), 200 + radius * std::sin(angle)};
    };
    path.moveToPoint(at(0, 150));
    for (int i = 1; i < elements; ++i) {
        const double a = i * step;
        const double r = 150 + 30 * std::sin(7 * a);
        if (i % 2 == 0) {
            path.addLineToPoint(at(a, r));
        } else {
            path.addCurveToPoint(at(a - step * 0.66, r + 25), at(a - step * 0.33, r - 25),
                                 at(a, r));
        }
    }
    path.closeSubpath();
    return path;
}

std::vector<VLXPoint> queryGrid() {
    std::vector<VLXPoint> points;
    for (int y = 0; y < 16; ++y) {
        for (int x = 0; x < 16; ++x) {
            points.push_back({12.5 + x * 25.0, 12.5 + y * 25.0});
        }
    }
    return points;
}

void addToCairo(cairo_t* cr, const VLXPath& path) {
    cairo_new_path(cr);
    path.apply([&](const VLXPathElement& e) {
        const VLXPoint* p = e.points;
        switch (e.type) {
            case VLXPathElementType::MoveToPoint:
                cairo_move_to(cr, p[0].x, p[0].y);
                break;
            case VLXPathElementType::AddLineToPoint:
                cairo_line_to(cr, p[0].x, p[0].y);
                break;
            case VLXPathElementType::AddQuadCurveToPoint:
                break;  // not used here
            case VLXPathElementType::AddCurveToPoint:
                cairo_curve_to(cr, p[0].x, p[0].y, p[1].x, p[1].y, p[2].x, p[2].y);
                break;
            case VLXPathElementType::CloseSubpath:
                cairo_close_path(cr);
                break;
        }
    });
}

// 256 hit tests on a 1000-element ring against cairo_in_fill on the same path (already built
// in the cairo context, cairo's default tolerance 0.1).
void BM_ContainsPointVsCairo(benchmark::State& state) {
    const VLXPath path = wavyRing(1000);
    const std::vector<VLXPoint> queries = queryGrid();
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_A8, 1, 1);
    cairo_t* cr = cairo_create(surface);
    addToCairo(cr, path);
    int ours = 0;
    int theirs = 0;
    runAgainstBaseline(
        state, "containsPoint",
        [&] {
            ours = 0;
            for (const VLXPoint& p : queries) {
                ours += path.containsPoint(p) ? 1 : 0;
            }
            benchmark::DoNotOptimize(ours);
        },
        [&] {
            theirs = 0;
            for (const VLXPoint& p : queries) {
                theirs += cairo_in_fill(cr, p.x, p.y) ? 1 : 0;
            }
            benchmark::DoNotOptimize(theirs);
        });
    state.counters["inside"] = ours;
    state.counters["inside_cairo"] = theirs;
    cairo_destroy(cr);
    cairo_surface_destroy(surface);
}
BENCHMARK(BM_ContainsPointVsCairo)->Unit(benchmark::kMillisecond);

VLXBezierPath noisyPolyline(int count) {
    std::vector<VLXPoint> points;
    points.reserve(static_cast<std::size_t>(count));
    std::uint32_t seed = 12345;
    for (int i = 0; i < count; ++i) {
        seed = seed * 1664525u + 1013904223u;
        points.push_back({i * 1.0, 100 + (seed >> 8) % 1000 / 10.0});
    }
    VLXPath path;
    path.addLines(points);
    return VLXBezierPath::bezierPathWithCGPath(path);
}

// The same Catmull-Rom smoothing written the boxed way: every point read back from a boxed
// value, the output grown one line at a time.
VLXBezierPath boxedSmoothing(const VLXBezierPath& path, int granularity) {
    std::vector<VLXValue> points = pointsFromBezierPath(path);
    if (points.size() <= 3) {
        return path;
    }
    double minY = std::numeric_limits<double>::max();
    double maxY = -minY;
    for (const VLXValue& value : points) {
        const double y = vlx_pointValue(value).y;
        minY = std::min(minY, y);
        maxY = std::max(maxY, y);
    }
    points.insert(points.begin(), points.front());
    points.push_back(points.back());
    VLXBezierPath result = path;
    result.removeAllPoints();
    result.moveToPoint(vlx_pointValue(points[0]));
    const float step = 1.0f / static_cast<float>(granularity);
    for (std::size_t i = 1; i + 2 < points.size(); ++i) {
        const VLXPoint p0 = vlx_pointValue(points[i - 1]);
        const VLXPoint p1 = vlx_pointValue(points[i]);
        const VLXPoint p2 = vlx_pointValue(points[i + 1]);
        const VLXPoint p3 = vlx_pointValue(points[i + 2]);
        for (int j = 1; j < granularity; ++j) {
            const float t = step * static_cast<float>(j);
            const float tt = t * t;
            const float ttt = tt * t;
            const double x =
                0.5 * (2 * p1.x + (p2.x - p0.x) * t + (2 * p0.x - 5 * p1.x + 4 * p2.x - p3.x) * tt +
                       (3 * p1.x - p0.x - 3 * p2.x + p3.x) * ttt);
            const double y = std::clamp(
                0.5 * (2 * p1.y + (p2.y - p0.y) * t + (2 * p0.y - 5 * p1.y + 4 * p2.y - p3.y) * tt +
                       (3 * p1.y - p0.y - 3 * p2.y + p3.y) * ttt),
                minY, maxY);
            if (x > p0.x) {
                result.addLineToPoint({x, y});
            }
        }
        result.addLineToPoint(p2);
    }
    result.addLineToPoint(vlx_pointValue(points.back()));
    return result;
}

// 10 000 noisy points at granularity 80 (about 800 000 output points).
void BM_SmoothingVsBoxed(benchmark::State& state) {
    const VLXBezierPath path = noisyPolyline(10000);
    std::size_t ours = 0;
    std::size_t theirs = 0;
    runAgainstBaseline(
        state, "smoothed",
        [&] { ours = vlx_smoothedPathWithGranularity(path, 80).CGPath().elementCount(); },
        [&] { theirs = boxedSmoothing(path, 80).CGPath().elementCount(); });
    state.counters["elements"] = static_cast<double>(ours);
    state.counters["elements_boxed"] = static_cast<double>(theirs);
}
BENCHMARK(BM_SmoothingVsBoxed)->Unit(benchmark::kMillisecond);

void BM_ArrowPath(benchmark::State& state) {
    double x = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(vlx_bezierPathWithArrowFromPoint({0, 0}, {x, 40}, 4, 12, 10));
        x = x > 100 ? 0 : x + 1;
    }
}
BENCHMARK(BM_ArrowPath);

}  // namespace
