#include <VelmarCoreUI/Utilities/VLXBezierPathUtilities.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

#include <VelmarCoreUI/Utilities/VLXValueBoxing.h>

namespace {

using ArrowPoints = std::array<VLXPoint, VLXArrowPointCount>;

ArrowPoints axisAlignedArrow(double length, double tailWidth, double headWidth, double headLength) {
    const double tail = length - headLength;
    return ArrowPoints{{{0, tailWidth * 0.5},
                        {tail, tailWidth * 0.5},
                        {tail, headWidth * 0.5},
                        {length, 0},
                        {tail, -headWidth * 0.5},
                        {tail, -tailWidth * 0.5},
                        {0, -tailWidth * 0.5}}};
}

struct ArrowFrame {
    double length;
    double cosine;
    double sine;
};

ArrowFrame arrowFrame(VLXPoint start, VLXPoint end) {
    const double dx = end.x - start.x;
    const double dy = end.y - start.y;
    // The platform measures the length in single precision.
    const double length =
        static_cast<double>(std::hypotf(static_cast<float>(dx), static_cast<float>(dy)));
    return ArrowFrame{length, dx / length, dy / length};
}

// Lowest granularity that still gives the caller's request when it fits, lowered so that the
// interpolated points of `segments` pieces stay within the documented maximum.
VLXInteger effectiveGranularity(VLXInteger granularity, std::size_t segments) {
    if (granularity < 2) {
        return granularity;
    }
    VLXInteger g = std::min(granularity, VLXSmoothingMaximumGranularity);
    const VLXUInteger perSegment =
        VLXSmoothingMaximumInterpolatedPoints / std::max<VLXUInteger>(segments, 1);
    if (static_cast<VLXUInteger>(g - 1) > perSegment) {
        g = static_cast<VLXInteger>(perSegment) + 1;
    }
    return g;
}

}  // namespace

void vlx_getAxisAlignedArrowPoints(std::span<VLXPoint> points, double length, double tailWidth,
                                   double headWidth, double headLength) {
    if (points.size() < VLXArrowPointCount) {
        return;
    }
    const ArrowPoints arrow = axisAlignedArrow(length, tailWidth, headWidth, headLength);
    std::copy(arrow.begin(), arrow.end(), points.begin());
}

void vlx_pointsForArrowFromPoint(VLXPoint start, VLXPoint end, double tailWidth, double headWidth,
                                 double headLength, std::span<VLXPoint> points, VLXUInteger count) {
    if (points.size() < VLXArrowPointCount) {
        return;
    }
    const ArrowFrame frame = arrowFrame(start, end);
    vlx_getAxisAlignedArrowPoints(points, frame.length, tailWidth, headWidth, headLength);
    const std::size_t n = static_cast<std::size_t>(std::min<VLXUInteger>(count, points.size()));
    for (std::size_t i = 0; i < n; ++i) {
        const VLXPoint p = points[i];
        points[i] = VLXPoint{start.x + (frame.cosine * p.x - frame.sine * p.y),
                             start.y + (frame.sine * p.x + frame.cosine * p.y)};
    }
}

VLXBezierPath vlx_bezierPathWithArrowFromPoint(VLXPoint start, VLXPoint end, double tailWidth,
                                               double headWidth, double headLength) {
    const ArrowFrame frame = arrowFrame(start, end);
    const ArrowPoints arrow = axisAlignedArrow(frame.length, tailWidth, headWidth, headLength);
    const VLXAffineTransform transform = VLXAffineTransformMake(
        frame.cosine, frame.sine, -frame.sine, frame.cosine, start.x, start.y);
    VLXPath path;
    path.addLines(arrow, transform);
    path.closeSubpath();
    return VLXBezierPath::bezierPathWithCGPath(path);
}

VLXBezierPath vlx_smoothedPathWithGranularity(const VLXBezierPath& path, VLXInteger granularity) {
    // The path's point storage is exactly the element-by-element point list (closes carry no
    // point), so the points are read without boxing.
    const std::span<const VLXPoint> source = path.CGPath().points();
    if (source.size() <= 3) {
        return path;
    }

    double minY = std::numeric_limits<double>::max();
    double maxY = -std::numeric_limits<double>::max();
    for (const VLXPoint& p : source) {
        if (p.y < minY) {
            minY = p.y;
        }
        if (p.y > maxY) {
            maxY = p.y;
        }
    }

    // The first and last points doubled, so the end segments have neighbours.
    std::vector<VLXPoint> points;
    points.reserve(source.size() + 2);
    points.push_back(source.front());
    points.insert(points.end(), source.begin(), source.end());
    points.push_back(source.back());
    const std::size_t n = points.size();

    const std::size_t segments = n - 3;
    const VLXInteger g = effectiveGranularity(granularity, segments);
    const std::size_t perSegment = g >= 2 ? static_cast<std::size_t>(g) : 1;

    VLXBezierPath result = path;
    result.removeAllPoints();
    VLXPath smoothed;
    smoothed.reserve(segments * perSegment + 2, segments * perSegment + 2);
    smoothed.moveToPoint(points[0]);

    const float step = g >= 2 ? 1.0f / static_cast<float>(g) : 0.0f;
    for (std::size_t i = 1; i < n - 2; ++i) {
        const VLXPoint p0 = points[i - 1];
        const VLXPoint p1 = points[i];
        const VLXPoint p2 = points[i + 1];
        const VLXPoint p3 = points[i + 2];
        for (VLXInteger j = 1; j < g; ++j) {
            // Single precision, as the platform computes the parameter.
            const float t = step * static_cast<float>(j);
            const float tt = t * t;
            const float ttt = tt * t;
            const double x =
                0.5 * (2 * p1.x + (p2.x - p0.x) * t + (2 * p0.x - 5 * p1.x + 4 * p2.x - p3.x) * tt +
                       (3 * p1.x - p0.x - 3 * p2.x + p3.x) * ttt);
            double y =
                0.5 * (2 * p1.y + (p2.y - p0.y) * t + (2 * p0.y - 5 * p1.y + 4 * p2.y - p3.y) * tt +
                       (3 * p1.y - p0.y - 3 * p2.y + p3.y) * ttt);
            if (y > maxY) {
                y = maxY;
            } else if (y < minY) {
                y = minY;
            }
            // Graph data runs rightwards: a point that would step back is dropped.
            if (x > p0.x) {
                smoothed.addLineToPoint({x, y});
            }
        }
        smoothed.addLineToPoint(p2);
    }
    smoothed.addLineToPoint(points[n - 1]);
    result.setCGPath(std::move(smoothed));
    return result;
}

std::vector<VLXValue> pointsFromBezierPath(const VLXBezierPath& path) {
    std::vector<VLXValue> points;
    points.reserve(path.CGPath().points().size());
    path.CGPath().apply(
        [&](const VLXPathElement& element) { getPointsFromBezier(points, element); });
    return points;
}

void getPointsFromBezier(std::vector<VLXValue>& points, const VLXPathElement& element) {
    if (element.points == nullptr) {
        return;
    }
    for (std::size_t i = 0; i < element.pointCount(); ++i) {
        points.push_back(vlx_valueWithPoint(element.points[i]));
    }
}
