#include <VelmarCoreUI/Platform/Graphics/Private/VLXPolylineReduction.h>

#include <cmath>

namespace vlx::detail {

void reducePolylineByColumn(std::span<const VLXPoint> points, double columnWidth,
                            std::vector<VLXPoint>& out) {
    const std::size_t count = points.size();
    if (count < 3 || !(columnWidth > 0) || !std::isfinite(columnWidth)) {
        out.insert(out.end(), points.begin(), points.end());
        return;
    }
    // Column numbers stay doubles: no integer conversion of coordinates is needed, and device
    // coordinates are clamped and finite by the time they get here.
    const double inverse = 1.0 / columnWidth;
    std::size_t first = 0;
    while (first < count) {
        const double column = std::floor(points[first].x * inverse);
        std::size_t last = first;
        std::size_t lowest = first;
        std::size_t highest = first;
        while (last + 1 < count && std::floor(points[last + 1].x * inverse) == column) {
            ++last;
            if (points[last].y < points[lowest].y) {
                lowest = last;
            }
            if (points[last].y > points[highest].y) {
                highest = last;
            }
        }
        out.push_back(points[first]);
        if (last > first) {
            // The extremes in the order they were drawn, each once, and not where they coincide
            // with the run's ends.
            std::size_t a = lowest < highest ? lowest : highest;
            std::size_t b = lowest < highest ? highest : lowest;
            if (a != first && a != last) {
                out.push_back(points[a]);
            }
            if (b != first && b != last && b != a) {
                out.push_back(points[b]);
            }
            out.push_back(points[last]);
        }
        first = last + 1;
    }
}

}  // namespace vlx::detail

#include <atomic>

#include <VelmarCoreUI/Platform/Graphics/Private/VLXDevicePath.h>

namespace vlx::detail {

namespace {
std::atomic<bool> gReductionEnabled{true};
}  // namespace

void setPolylineReductionEnabled(bool enabled) {
    gReductionEnabled.store(enabled, std::memory_order_relaxed);
}

bool polylineReductionEnabled() {
    return gReductionEnabled.load(std::memory_order_relaxed);
}

std::size_t reduceDevicePath(const DevicePath& path, std::span<const Subpath> subpaths,
                             std::size_t minimumSegments, double columnWidth, DevicePath& out,
                             std::vector<VLXPoint>& scratch) {
    out.ops.clear();
    out.points.clear();
    std::size_t removed = 0;
    for (const Subpath& subpath : subpaths) {
        const std::size_t pointCount = subpath.pointEnd - subpath.pointBegin;
        const std::size_t segments = pointCount - 1 + (subpath.closed ? 1 : 0);
        if (!(subpath.finite && subpath.linesOnly && pointCount > 0 &&
              segments > minimumSegments)) {
            out.ops.insert(out.ops.end(),
                           path.ops.begin() + static_cast<std::ptrdiff_t>(subpath.opBegin),
                           path.ops.begin() + static_cast<std::ptrdiff_t>(subpath.opEnd));
            out.points.insert(out.points.end(),
                              path.points.begin() + static_cast<std::ptrdiff_t>(subpath.pointBegin),
                              path.points.begin() + static_cast<std::ptrdiff_t>(subpath.pointEnd));
            continue;
        }
        const std::size_t before = out.points.size();
        reducePolylineByColumn(polylineOf(path, subpath, scratch), columnWidth, out.points);
        const std::size_t kept = out.points.size() - before;
        removed += pointCount - kept;
        out.ops.push_back(PathOp::Move);
        out.ops.insert(out.ops.end(), kept - 1, PathOp::Line);
        if (subpath.closed) {
            out.ops.push_back(PathOp::Close);
        }
    }
    return removed;
}

}  // namespace vlx::detail
