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

}  // namespace vlx::detail
