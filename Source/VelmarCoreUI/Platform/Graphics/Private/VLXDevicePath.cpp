#include <VelmarCoreUI/Platform/Graphics/Private/VLXDevicePath.h>

#include <cairo.h>

#include <algorithm>
#include <cmath>

namespace vlx::detail {

namespace {

bool isFinitePoint(VLXPoint p) {
    return std::isfinite(p.x) && std::isfinite(p.y);
}

}  // namespace

void DevicePath::clear() {
    ops.clear();
    points.clear();
    hasCurrentPoint = false;
    needsMove = false;
}

void DevicePath::moveTo(VLXPoint p) {
    if (!ops.empty() && ops.back() == PathOp::Move) {
        points.back() = p;
    } else {
        ops.push_back(PathOp::Move);
        points.push_back(p);
    }
    hasCurrentPoint = true;
    needsMove = false;
    currentPoint = subpathStart = p;
}

bool DevicePath::beginSegment(VLXPoint first) {
    if (!hasCurrentPoint) {
        moveTo(first);
        return false;
    }
    if (needsMove) {
        moveTo(subpathStart);
    }
    return true;
}

void DevicePath::lineTo(VLXPoint p) {
    if (!beginSegment(p)) {
        return;
    }
    ops.push_back(PathOp::Line);
    points.push_back(p);
    currentPoint = p;
}

void DevicePath::curveTo(VLXPoint c1, VLXPoint c2, VLXPoint end) {
    beginSegment(c1);
    ops.push_back(PathOp::Curve);
    points.push_back(c1);
    points.push_back(c2);
    points.push_back(end);
    currentPoint = end;
}

void DevicePath::quadTo(VLXPoint control, VLXPoint end) {
    beginSegment(control);
    const VLXPoint start = currentPoint;
    curveTo(
        VLXPoint{start.x + 2.0 / 3.0 * (control.x - start.x),
                 start.y + 2.0 / 3.0 * (control.y - start.y)},
        VLXPoint{end.x + 2.0 / 3.0 * (control.x - end.x), end.y + 2.0 / 3.0 * (control.y - end.y)},
        end);
}

void DevicePath::close() {
    if (!hasCurrentPoint || needsMove) {
        return;
    }
    ops.push_back(PathOp::Close);
    currentPoint = subpathStart;
    needsMove = true;
}

std::vector<Subpath> subpathsOf(const DevicePath& path) {
    std::vector<Subpath> result;
    subpathsOf(path, result);
    return result;
}

void subpathsOf(const DevicePath& path, std::vector<Subpath>& result) {
    result.clear();
    std::size_t pointIndex = 0;
    for (std::size_t i = 0; i < path.ops.size(); ++i) {
        const PathOp op = path.ops[i];
        if (op == PathOp::Move) {
            if (!result.empty()) {
                result.back().opEnd = i;
                result.back().pointEnd = pointIndex;
            }
            Subpath subpath;
            subpath.opBegin = i;
            subpath.pointBegin = pointIndex;
            result.push_back(subpath);
        }
        Subpath& current = result.back();
        const std::size_t count = op == PathOp::Curve ? 3 : op == PathOp::Close ? 0 : 1;
        for (std::size_t k = 0; k < count; ++k) {
            current.finite = current.finite && isFinitePoint(path.points[pointIndex + k]);
        }
        pointIndex += count;
        current.closed = current.closed || op == PathOp::Close;
        current.linesOnly = current.linesOnly && op != PathOp::Curve;
    }
    if (!result.empty()) {
        result.back().opEnd = path.ops.size();
        result.back().pointEnd = pointIndex;
    }
}

double clampCoordinate(double value) {
    return std::clamp(value, -kDeviceCoordinateLimit, kDeviceCoordinateLimit);
}

void emitSubpath(cairo_t* cr, const DevicePath& path, const Subpath& subpath) {
    std::size_t p = subpath.pointBegin;
    for (std::size_t i = subpath.opBegin; i < subpath.opEnd; ++i) {
        switch (path.ops[i]) {
            case PathOp::Move:
                cairo_move_to(cr, clampCoordinate(path.points[p].x),
                              clampCoordinate(path.points[p].y));
                p += 1;
                break;
            case PathOp::Line:
                cairo_line_to(cr, clampCoordinate(path.points[p].x),
                              clampCoordinate(path.points[p].y));
                p += 1;
                break;
            case PathOp::Curve:
                cairo_curve_to(
                    cr, clampCoordinate(path.points[p].x), clampCoordinate(path.points[p].y),
                    clampCoordinate(path.points[p + 1].x), clampCoordinate(path.points[p + 1].y),
                    clampCoordinate(path.points[p + 2].x), clampCoordinate(path.points[p + 2].y));
                p += 3;
                break;
            case PathOp::Close:
                cairo_close_path(cr);
                break;
        }
    }
}

std::span<const VLXPoint> polylineOf(const DevicePath& path, const Subpath& subpath,
                                     std::vector<VLXPoint>& scratch) {
    std::span<const VLXPoint> points{path.points.data() + subpath.pointBegin,
                                     subpath.pointEnd - subpath.pointBegin};
    const bool inRange = std::all_of(points.begin(), points.end(), [](VLXPoint p) {
        return std::fabs(p.x) <= kDeviceCoordinateLimit && std::fabs(p.y) <= kDeviceCoordinateLimit;
    });
    if (inRange) {
        return points;
    }
    scratch.resize(points.size());
    std::transform(points.begin(), points.end(), scratch.begin(), [](VLXPoint p) {
        return VLXPoint{clampCoordinate(p.x), clampCoordinate(p.y)};
    });
    return scratch;
}

namespace {

// Flattening tolerance for curves cut by the window, in device pixels (cairo's default is 0.1).
constexpr double kFlatness = 0.05;
// Subdivision depth: 2⁻⁴⁸ of anything a double can hold is below a pixel inside the window.
constexpr int kMaximumDepth = 48;

VLXPoint half(VLXPoint a, VLXPoint b) {
    // Halves first, so that points near the largest double do not overflow.
    return VLXPoint{a.x / 2 + b.x / 2, a.y / 2 + b.y / 2};
}

// Appends the cubic's end points after `p0`: pieces that cannot reach the window (their hull
// lies beyond one window edge) become their chords, which changes no winding number inside.
void flattenCubic(VLXPoint p0, VLXPoint p1, VLXPoint p2, VLXPoint p3, const DeviceWindow& window,
                  int depth, std::vector<VLXPoint>& out) {
    const double minX = std::min({p0.x, p1.x, p2.x, p3.x});
    const double maxX = std::max({p0.x, p1.x, p2.x, p3.x});
    const double minY = std::min({p0.y, p1.y, p2.y, p3.y});
    const double maxY = std::max({p0.y, p1.y, p2.y, p3.y});
    const bool outside =
        maxX < window.minX || minX > window.maxX || maxY < window.minY || minY > window.maxY;
    const double deviation =
        std::max({std::fabs(p0.x / 2 - p1.x + p2.x / 2), std::fabs(p0.y / 2 - p1.y + p2.y / 2),
                  std::fabs(p1.x / 2 - p2.x + p3.x / 2), std::fabs(p1.y / 2 - p2.y + p3.y / 2)});
    if (outside || depth >= kMaximumDepth || deviation * 1.5 <= kFlatness) {
        out.push_back(p3);
        return;
    }
    const VLXPoint a = half(p0, p1), b = half(p1, p2), c = half(p2, p3);
    const VLXPoint ab = half(a, b), bc = half(b, c);
    const VLXPoint mid = half(ab, bc);
    flattenCubic(p0, a, ab, mid, window, depth + 1, out);
    flattenCubic(mid, bc, c, p3, window, depth + 1, out);
}

// One Sutherland–Hodgman pass: keeps the side of the line `coordinate(axis) ⋛ limit` given by
// `keepBelow`. Intersections are computed in long double, where differences of the largest
// doubles do not overflow.
void clipAgainst(const std::vector<VLXPoint>& in, std::vector<VLXPoint>& out, bool vertical,
                 double limit, bool keepBelow) {
    out.clear();
    if (in.empty()) {
        return;
    }
    auto coordinate = [&](VLXPoint p) { return vertical ? p.x : p.y; };
    auto inside = [&](VLXPoint p) {
        return keepBelow ? coordinate(p) <= limit : coordinate(p) >= limit;
    };
    auto crossing = [&](VLXPoint a, VLXPoint b) {
        const long double ca = coordinate(a), cb = coordinate(b);
        const long double t = (static_cast<long double>(limit) - ca) / (cb - ca);
        const double other =
            vertical ? static_cast<double>(a.y + (static_cast<long double>(b.y) - a.y) * t)
                     : static_cast<double>(a.x + (static_cast<long double>(b.x) - a.x) * t);
        return vertical ? VLXPoint{limit, other} : VLXPoint{other, limit};
    };
    VLXPoint previous = in.back();
    bool previousInside = inside(previous);
    for (const VLXPoint& current : in) {
        const bool currentInside = inside(current);
        if (currentInside != previousInside) {
            out.push_back(crossing(previous, current));
        }
        if (currentInside) {
            out.push_back(current);
        }
        previous = current;
        previousInside = currentInside;
    }
}

bool onSameEdge(VLXPoint a, VLXPoint b, VLXPoint c, const DeviceWindow& w) {
    auto all = [](double x, double y, double z, double v) { return x == v && y == v && z == v; };
    return all(a.x, b.x, c.x, w.minX) || all(a.x, b.x, c.x, w.maxX) || all(a.y, b.y, c.y, w.minY) ||
           all(a.y, b.y, c.y, w.maxY);
}

}  // namespace

void emitFillSubpath(cairo_t* cr, const DevicePath& path, const Subpath& subpath,
                     const DeviceWindow& window, std::vector<VLXPoint>& scratch,
                     std::vector<VLXPoint>& clipped) {
    const std::span<const VLXPoint> points{path.points.data() + subpath.pointBegin,
                                           subpath.pointEnd - subpath.pointBegin};
    if (std::all_of(points.begin(), points.end(), [&](VLXPoint p) { return window.contains(p); })) {
        emitSubpath(cr, path, subpath);
        return;
    }
    // Flatten into `scratch`, then clip edge by edge, swapping the two buffers.
    scratch.clear();
    std::size_t p = subpath.pointBegin;
    for (std::size_t i = subpath.opBegin; i < subpath.opEnd; ++i) {
        switch (path.ops[i]) {
            case PathOp::Move:
            case PathOp::Line:
                scratch.push_back(path.points[p]);
                p += 1;
                break;
            case PathOp::Curve:
                flattenCubic(scratch.empty() ? path.points[p] : scratch.back(), path.points[p],
                             path.points[p + 1], path.points[p + 2], window, 0, scratch);
                p += 3;
                break;
            case PathOp::Close:
                break;
        }
    }
    clipAgainst(scratch, clipped, true, window.minX, false);
    clipAgainst(clipped, scratch, true, window.maxX, true);
    clipAgainst(scratch, clipped, false, window.minY, false);
    clipAgainst(clipped, scratch, false, window.maxY, true);
    // Drop repeats and the middle of runs along one window edge.
    clipped.clear();
    for (const VLXPoint& q : scratch) {
        if (!clipped.empty() && clipped.back().x == q.x && clipped.back().y == q.y) {
            continue;
        }
        if (clipped.size() >= 2 &&
            onSameEdge(clipped[clipped.size() - 2], clipped.back(), q, window)) {
            clipped.back() = q;
            continue;
        }
        clipped.push_back(q);
    }
    if (clipped.size() < 3) {
        return;
    }
    cairo_move_to(cr, clipped[0].x, clipped[0].y);
    for (std::size_t i = 1; i < clipped.size(); ++i) {
        cairo_line_to(cr, clipped[i].x, clipped[i].y);
    }
    cairo_close_path(cr);
}

}  // namespace vlx::detail
