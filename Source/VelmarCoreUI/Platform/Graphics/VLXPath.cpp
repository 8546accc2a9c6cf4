#include <VelmarCoreUI/Platform/Graphics/VLXPath.h>
#include <VelmarCoreUI/Platform/Primitives/Private/VLXNumberPrinting.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <limits>
#include <numbers>
#include <ostream>

namespace {

constexpr double kTwoPi = 2 * std::numbers::pi;
constexpr double kHalfPi = std::numbers::pi / 2;
// 4/3 · tan(π/8): the control-point distance of a quarter circle of radius 1.
constexpr double kQuarterKappa = 4.0 * (std::numbers::sqrt2 - 1.0) / 3.0;
// Flattening tolerance for hit testing, in points.
constexpr double kFlatness = 1e-3;
// Subdivision depth cap: 2^24 pieces per curve is far below 1/1000 of a point for any curve
// that fits a screen, and keeps huge or degenerate coordinates from recursing without end.
constexpr int kMaxSubdivisionDepth = 24;

inline bool isFinite(VLXPoint p) {
    return std::isfinite(p.x) && std::isfinite(p.y);
}

// The identity leaves points exactly as given: multiplying would turn an infinity into NaN
// (0 · ∞) and −0 into +0.
inline VLXPoint mapPoint(VLXPoint p, const VLXAffineTransform& t) {
    return VLXAffineTransformIsIdentity(t) ? p : VLXPointApplyAffineTransform(p, t);
}

bool sameDouble(double a, double b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}

// Control-point distance for an arc segment of `sweep` radians (signed), radius 1.
double arcKappa(double sweep) {
    if (std::fabs(sweep) == kHalfPi) {
        return std::copysign(kQuarterKappa, sweep);
    }
    return 4.0 / 3.0 * std::tan(sweep / 4);
}

// Min/max accumulator for bounding boxes.
struct Extent {
    double minX = std::numeric_limits<double>::infinity();
    double minY = std::numeric_limits<double>::infinity();
    double maxX = -std::numeric_limits<double>::infinity();
    double maxY = -std::numeric_limits<double>::infinity();
    bool any = false;

    void add(VLXPoint p) {
        minX = std::min(minX, p.x);
        minY = std::min(minY, p.y);
        maxX = std::max(maxX, p.x);
        maxY = std::max(maxY, p.y);
        any = true;
    }
    // A side wider than the largest double (finite points at both ends of the range) is the
    // largest double, so that the box stays finite and starts at the true minimum.
    VLXRect rect() const {
        constexpr double largest = std::numeric_limits<double>::max();
        return any ? VLXRectMake(minX, minY, std::min(maxX - minX, largest),
                                 std::min(maxY - minY, largest))
                   : VLXRectNull;
    }
};

// Parameters in (0, 1) where a·t² + b·t + c = 0.
int unitRoots(double a, double b, double c, double roots[2]) {
    int count = 0;
    auto keep = [&](double t) {
        if (t > 0 && t < 1) {
            roots[count++] = t;
        }
    };
    const double scale = std::max({std::fabs(a), std::fabs(b), std::fabs(c)});
    if (scale == 0 || !std::isfinite(scale)) {
        return 0;
    }
    if (std::fabs(a) <= 1e-12 * scale) {
        if (b != 0) {
            keep(-c / b);
        }
        return count;
    }
    const double disc = b * b - 4 * a * c;
    if (disc < 0) {
        return 0;
    }
    // The numerically stable pair of roots.
    const double q = -0.5 * (b + std::copysign(std::sqrt(disc), b));
    keep(q / a);
    if (q != 0) {
        keep(c / q);
    }
    return count;
}

double cubicAt(double p0, double p1, double p2, double p3, double t) {
    const double u = 1 - t;
    return u * u * u * p0 + 3 * u * u * t * p1 + 3 * u * t * t * p2 + t * t * t * p3;
}

// The extrema are found on the points scaled down by a power of two (exact), so that the
// polynomial's coefficients cannot overflow for finite points, and scaled back.
double extremaScale(std::initializer_list<VLXPoint> points) {
    double largest = 0;
    for (const VLXPoint& p : points) {
        largest = std::max({largest, std::fabs(p.x), std::fabs(p.y)});
    }
    // Large enough coordinates go to [1, 2), where squares of the coefficients stay finite.
    return largest > 1e100 ? std::ldexp(1.0, -std::ilogb(largest)) : 1;
}

VLXPoint scaled(VLXPoint p, double factor) {
    return VLXPoint{p.x * factor, p.y * factor};
}

void addCubicExtrema(Extent& extent, VLXPoint q0, VLXPoint q1, VLXPoint q2, VLXPoint q3) {
    const double factor = extremaScale({q0, q1, q2, q3});
    const VLXPoint p0 = scaled(q0, factor), p1 = scaled(q1, factor), p2 = scaled(q2, factor),
                   p3 = scaled(q3, factor);
    auto add = [&](VLXPoint p) { extent.add(scaled(p, 1 / factor)); };
    double roots[2];
    // B'(t)/3 = a·t² + b·t + c per coordinate.
    const int nx = unitRoots(-p0.x + 3 * p1.x - 3 * p2.x + p3.x, 2 * (p0.x - 2 * p1.x + p2.x),
                             p1.x - p0.x, roots);
    for (int i = 0; i < nx; ++i) {
        const double t = roots[i];
        add({cubicAt(p0.x, p1.x, p2.x, p3.x, t), cubicAt(p0.y, p1.y, p2.y, p3.y, t)});
    }
    const int ny = unitRoots(-p0.y + 3 * p1.y - 3 * p2.y + p3.y, 2 * (p0.y - 2 * p1.y + p2.y),
                             p1.y - p0.y, roots);
    for (int i = 0; i < ny; ++i) {
        const double t = roots[i];
        add({cubicAt(p0.x, p1.x, p2.x, p3.x, t), cubicAt(p0.y, p1.y, p2.y, p3.y, t)});
    }
}

void addQuadExtrema(Extent& extent, VLXPoint q0, VLXPoint q1, VLXPoint q2) {
    const double factor = extremaScale({q0, q1, q2});
    const VLXPoint p0 = scaled(q0, factor), p1 = scaled(q1, factor), p2 = scaled(q2, factor);
    auto at = [&](double t) {
        const double u = 1 - t;
        return VLXPoint{u * u * p0.x + 2 * u * t * p1.x + t * t * p2.x,
                        u * u * p0.y + 2 * u * t * p1.y + t * t * p2.y};
    };
    const double dx = p0.x - 2 * p1.x + p2.x;
    if (dx != 0) {
        const double t = (p0.x - p1.x) / dx;
        if (t > 0 && t < 1) {
            extent.add(scaled(at(t), 1 / factor));
        }
    }
    const double dy = p0.y - 2 * p1.y + p2.y;
    if (dy != 0) {
        const double t = (p0.y - p1.y) / dy;
        if (t > 0 && t < 1) {
            extent.add(scaled(at(t), 1 / factor));
        }
    }
}

// Winding number of a closed polyline-with-curves around one point, built edge by edge. The ray
// goes from the point towards +x; upward edges count +1, downward −1.
struct WindingCounter {
    VLXPoint point;
    long winding = 0;

    void line(VLXPoint a, VLXPoint b) {
        const bool up = a.y <= point.y && b.y > point.y;
        const bool down = b.y <= point.y && a.y > point.y;
        if (!up && !down) {
            return;
        }
        // Where the edge meets the ray's line; the fraction keeps huge coordinates from
        // overflowing the way a cross product would.
        const double x = a.x + (point.y - a.y) / (b.y - a.y) * (b.x - a.x);
        if (point.x < x) {
            winding += up ? 1 : -1;
        }
    }

    // Most curves of a large path lie wholly above, below or left of the point: that test is
    // kept inline, and only the rest go through the recursive subdivision.
    void cubic(VLXPoint p0, VLXPoint p1, VLXPoint p2, VLXPoint p3) {
        const double py = point.y, px = point.x;
        if ((p0.y <= py && p1.y <= py && p2.y <= py && p3.y <= py) ||
            (p0.y > py && p1.y > py && p2.y > py && p3.y > py) ||
            (p0.x <= px && p1.x <= px && p2.x <= px && p3.x <= px)) {
            return;
        }
        subdivide(p0, p1, p2, p3, 0);
    }

    void subdivide(VLXPoint p0, VLXPoint p1, VLXPoint p2, VLXPoint p3, int depth) {
        // The curve lies in its control points' hull. Entirely above or below the ray, or left
        // of the point, it cannot cross; entirely right of the point it crosses exactly as its
        // chord does (curve and reversed chord form a loop that cannot wind round the point).
        const double py = point.y, px = point.x;
        if ((p0.y <= py && p1.y <= py && p2.y <= py && p3.y <= py) ||
            (p0.y > py && p1.y > py && p2.y > py && p3.y > py) ||
            (p0.x <= px && p1.x <= px && p2.x <= px && p3.x <= px)) {
            return;
        }
        if ((p0.x > px && p1.x > px && p2.x > px && p3.x > px) || depth >= kMaxSubdivisionDepth) {
            line(p0, p3);
            return;
        }
        // Every point of the curve lies within sqrt(deviation)/4 of the matching chord point
        // (Willcocks). Flat enough, or the query point farther from the chord than that: the
        // chord decides, by the same loop argument.
        const double ux = 3 * p1.x - 2 * p0.x - p3.x;
        const double uy = 3 * p1.y - 2 * p0.y - p3.y;
        const double vx = 3 * p2.x - p0.x - 2 * p3.x;
        const double vy = 3 * p2.y - p0.y - 2 * p3.y;
        const double deviation = std::max(ux * ux, vx * vx) + std::max(uy * uy, vy * vy);
        if (deviation <= 16 * kFlatness * kFlatness ||
            16 * squaredDistanceToSegment(p0, p3) > deviation) {
            line(p0, p3);
            return;
        }
        const VLXPoint p01{(p0.x + p1.x) / 2, (p0.y + p1.y) / 2};
        const VLXPoint p12{(p1.x + p2.x) / 2, (p1.y + p2.y) / 2};
        const VLXPoint p23{(p2.x + p3.x) / 2, (p2.y + p3.y) / 2};
        const VLXPoint a{(p01.x + p12.x) / 2, (p01.y + p12.y) / 2};
        const VLXPoint b{(p12.x + p23.x) / 2, (p12.y + p23.y) / 2};
        const VLXPoint mid{(a.x + b.x) / 2, (a.y + b.y) / 2};
        subdivide(p0, p01, a, mid, depth + 1);
        subdivide(mid, b, p23, p3, depth + 1);
    }

    double squaredDistanceToSegment(VLXPoint a, VLXPoint b) const {
        const double dx = b.x - a.x, dy = b.y - a.y;
        const double wx = point.x - a.x, wy = point.y - a.y;
        const double length2 = dx * dx + dy * dy;
        double t = length2 > 0 ? (wx * dx + wy * dy) / length2 : 0;
        t = std::clamp(t, 0.0, 1.0);
        const double ex = wx - t * dx, ey = wy - t * dy;
        return ex * ex + ey * ey;
    }
};

const char* elementName(VLXPathElementType type) {
    switch (type) {
        case VLXPathElementType::MoveToPoint:
            return "move";
        case VLXPathElementType::AddLineToPoint:
            return "line";
        case VLXPathElementType::AddQuadCurveToPoint:
            return "quad";
        case VLXPathElementType::AddCurveToPoint:
            return "curve";
        case VLXPathElementType::CloseSubpath:
            return "close";
    }
    return "?";
}

}  // namespace

// --- construction ------------------------------------------------------------------------------

VLXPath VLXPath::pathWithRect(const VLXRect& rect, const VLXAffineTransform& transform) {
    VLXPath path;
    path.addRect(rect, transform);
    return path;
}

VLXPath VLXPath::pathWithEllipseInRect(const VLXRect& rect, const VLXAffineTransform& transform) {
    VLXPath path;
    path.addEllipseInRect(rect, transform);
    return path;
}

VLXPath VLXPath::pathWithRoundedRect(const VLXRect& rect, double cornerWidth, double cornerHeight,
                                     const VLXAffineTransform& transform) {
    VLXPath path;
    path.addRoundedRect(rect, cornerWidth, cornerHeight, transform);
    return path;
}

void VLXPath::appendElement(VLXPathElementType type, std::initializer_list<VLXPoint> points,
                            const VLXAffineTransform& transform) {
    if (type == VLXPathElementType::CloseSubpath) {
        closeSubpath();
        return;
    }
    if (type != VLXPathElementType::MoveToPoint && m_subpathStart < 0) {
        // No current point: start a subpath at the element's first point.
        m_types.push_back(VLXPathElementType::MoveToPoint);
        m_points.push_back(mapPoint(*points.begin(), transform));
        m_subpathStart = static_cast<std::ptrdiff_t>(m_points.size()) - 1;
    }
    if (type == VLXPathElementType::MoveToPoint) {
        m_subpathStart = static_cast<std::ptrdiff_t>(m_points.size());
    }
    m_types.push_back(type);
    for (const VLXPoint& p : points) {
        m_points.push_back(mapPoint(p, transform));
    }
}

void VLXPath::appendRaw(VLXPathElementType type, const VLXPoint* points) {
    if (type == VLXPathElementType::MoveToPoint) {
        m_subpathStart = static_cast<std::ptrdiff_t>(m_points.size());
    }
    m_types.push_back(type);
    m_points.insert(m_points.end(), points, points + VLXPathElementPointCount(type));
}

void VLXPath::moveToPoint(VLXPoint point, const VLXAffineTransform& transform) {
    appendElement(VLXPathElementType::MoveToPoint, {point}, transform);
}

void VLXPath::addLineToPoint(VLXPoint point, const VLXAffineTransform& transform) {
    if (m_subpathStart < 0) {
        appendElement(VLXPathElementType::AddLineToPoint, {point}, transform);
        return;
    }
    // The common case of long polylines, without the general element loop.
    m_types.push_back(VLXPathElementType::AddLineToPoint);
    m_points.push_back(mapPoint(point, transform));
}

void VLXPath::addQuadCurveToPoint(VLXPoint control, VLXPoint end,
                                  const VLXAffineTransform& transform) {
    appendElement(VLXPathElementType::AddQuadCurveToPoint, {control, end}, transform);
}

void VLXPath::addCurveToPoint(VLXPoint control1, VLXPoint control2, VLXPoint end,
                              const VLXAffineTransform& transform) {
    appendElement(VLXPathElementType::AddCurveToPoint, {control1, control2, end}, transform);
}

void VLXPath::closeSubpath() {
    if (m_types.empty() || m_types.back() == VLXPathElementType::CloseSubpath) {
        return;
    }
    m_types.push_back(VLXPathElementType::CloseSubpath);
}

void VLXPath::addRect(const VLXRect& rect, const VLXAffineTransform& transform) {
    if (rect.isNull()) {
        return;
    }
    const VLXRect r = rect.standardized();
    const double x0 = r.origin.x, y0 = r.origin.y;
    const double x1 = x0 + r.size.width, y1 = y0 + r.size.height;
    moveToPoint({x0, y0}, transform);
    addLineToPoint({x1, y0}, transform);
    addLineToPoint({x1, y1}, transform);
    addLineToPoint({x0, y1}, transform);
    closeSubpath();
}

void VLXPath::addLines(std::span<const VLXPoint> points, const VLXAffineTransform& transform) {
    if (points.empty()) {
        return;
    }
    reserve(points.size(), points.size());
    moveToPoint(points[0], transform);
    for (std::size_t i = 1; i < points.size(); ++i) {
        addLineToPoint(points[i], transform);
    }
}

void VLXPath::addEllipseInRect(const VLXRect& rect, const VLXAffineTransform& transform) {
    if (rect.isNull()) {
        return;
    }
    const VLXRect r = rect.standardized();
    const double rx = r.size.width / 2, ry = r.size.height / 2;
    const double cx = r.origin.x + rx, cy = r.origin.y + ry;
    const double kx = kQuarterKappa * rx, ky = kQuarterKappa * ry;
    moveToPoint({cx + rx, cy}, transform);
    addCurveToPoint({cx + rx, cy + ky}, {cx + kx, cy + ry}, {cx, cy + ry}, transform);
    addCurveToPoint({cx - kx, cy + ry}, {cx - rx, cy + ky}, {cx - rx, cy}, transform);
    addCurveToPoint({cx - rx, cy - ky}, {cx - kx, cy - ry}, {cx, cy - ry}, transform);
    addCurveToPoint({cx + kx, cy - ry}, {cx + rx, cy - ky}, {cx + rx, cy}, transform);
    closeSubpath();
}

void VLXPath::addRoundedRect(const VLXRect& rect, double cornerWidth, double cornerHeight,
                             const VLXAffineTransform& transform) {
    if (rect.isNull()) {
        return;
    }
    const VLXRect r = rect.standardized();
    // NaN and negative corners count as zero; !(x > 0) catches NaN.
    const double cw = !(cornerWidth > 0) ? 0 : std::min(cornerWidth, r.size.width / 2);
    const double ch = !(cornerHeight > 0) ? 0 : std::min(cornerHeight, r.size.height / 2);
    if (!(cw > 0) || !(ch > 0)) {
        addRect(r, transform);
        return;
    }
    const double x0 = r.origin.x, y0 = r.origin.y;
    const double x1 = x0 + r.size.width, y1 = y0 + r.size.height;
    const double kx = kQuarterKappa * cw, ky = kQuarterKappa * ch;
    // Clockwise on screen from the top edge, like the ellipse.
    moveToPoint({x0 + cw, y0}, transform);
    addLineToPoint({x1 - cw, y0}, transform);
    addCurveToPoint({x1 - cw + kx, y0}, {x1, y0 + ch - ky}, {x1, y0 + ch}, transform);
    addLineToPoint({x1, y1 - ch}, transform);
    addCurveToPoint({x1, y1 - ch + ky}, {x1 - cw + kx, y1}, {x1 - cw, y1}, transform);
    addLineToPoint({x0 + cw, y1}, transform);
    addCurveToPoint({x0 + cw - kx, y1}, {x0, y1 - ch + ky}, {x0, y1 - ch}, transform);
    addLineToPoint({x0, y0 + ch}, transform);
    addCurveToPoint({x0, y0 + ch - ky}, {x0 + cw - kx, y0}, {x0 + cw, y0}, transform);
    closeSubpath();
}

void VLXPath::appendArcSegments(VLXPoint center, double radius, double startAngle, double sweep,
                                const VLXAffineTransform& transform) {
    // Tangent arcs of extreme input can work out a NaN sweep; they add no curve.
    if (sweep == 0 || !std::isfinite(sweep)) {
        return;
    }
    // At most a quarter turn per cubic; the small epsilon keeps an exact quarter turn (whose
    // quotient may round up by an ulp) in one piece.
    const double pieces = std::ceil(std::fabs(sweep) / kHalfPi - 1e-9);
    const int count = std::clamp(static_cast<int>(pieces), 1, 4);
    const double step = sweep / count;
    const double k = arcKappa(step) * radius;
    const bool fullTurn = std::fabs(sweep) >= kTwoPi;
    const VLXPoint first{center.x + radius * std::cos(startAngle),
                         center.y + radius * std::sin(startAngle)};
    double a0 = startAngle;
    VLXPoint p0 = first;
    for (int i = 1; i <= count; ++i) {
        const double a1 = i == count ? startAngle + sweep : startAngle + step * i;
        VLXPoint p1{center.x + radius * std::cos(a1), center.y + radius * std::sin(a1)};
        if (i == count && fullTurn) {
            p1 = first;  // close exactly, not one rounding error away
        }
        const VLXPoint c1{p0.x - k * std::sin(a0), p0.y + k * std::cos(a0)};
        const VLXPoint c2{p1.x + k * std::sin(a1), p1.y - k * std::cos(a1)};
        addCurveToPoint(c1, c2, p1, transform);
        a0 = a1;
        p0 = p1;
    }
}

void VLXPath::addArc(VLXPoint center, double radius, double startAngle, double endAngle,
                     bool clockwise, const VLXAffineTransform& transform) {
    if (!std::isfinite(startAngle) || !std::isfinite(endAngle) || !std::isfinite(radius) ||
        radius < 0) {
        return;
    }
    if (radius == 0) {
        if (m_subpathStart < 0) {
            moveToPoint(center, transform);
        } else {
            addLineToPoint(center, transform);
        }
        return;
    }
    // Sweep in the walking direction, reduced into [0, 2π]: a full turn or more draws a full
    // turn; going the "wrong" way wraps round (0 → −π/2 increasing is three quarters).
    double sweep = clockwise ? startAngle - endAngle : endAngle - startAngle;
    if (!std::isfinite(sweep) || sweep > kTwoPi) {
        // Huge finite angles can still differ by ±∞.
        sweep = kTwoPi;
    } else if (sweep < 0) {
        sweep = std::fmod(sweep, kTwoPi) + kTwoPi;
    }
    if (clockwise) {
        sweep = -sweep;
    }

    const VLXPoint start{center.x + radius * std::cos(startAngle),
                         center.y + radius * std::sin(startAngle)};
    const VLXPoint mapped = mapPoint(start, transform);
    if (m_subpathStart < 0) {
        moveToPoint(start, transform);
    } else {
        const VLXPoint current = currentPoint();
        // A zero-length joining line would only add an element that draws nothing.
        if (!(current == mapped)) {
            addLineToPoint(start, transform);
        }
    }
    appendArcSegments(center, radius, startAngle, sweep, transform);
}

void VLXPath::addArcToPoint(VLXPoint tangent1, VLXPoint tangent2, double radius,
                            const VLXAffineTransform& transform) {
    if (std::isnan(radius) || radius < 0) {
        return;
    }
    if (m_subpathStart < 0) {
        moveToPoint(tangent1, transform);
        return;
    }
    // Work in the caller's space: bring the stored current point back through the transform.
    const VLXPoint p0 = mapPoint(currentPoint(), VLXAffineTransformInvert(transform));
    const double ux0 = p0.x - tangent1.x, uy0 = p0.y - tangent1.y;
    const double vx0 = tangent2.x - tangent1.x, vy0 = tangent2.y - tangent1.y;
    const double ulen = std::hypot(ux0, uy0), vlen = std::hypot(vx0, vy0);
    const double ux = ux0 / ulen, uy = uy0 / ulen, vx = vx0 / vlen, vy = vy0 / vlen;
    const double sinPhi = ux * vy - uy * vx;
    const double cosPhi = ux * vx + uy * vy;
    // Collinear (or degenerate, or non-finite) input: the corner has no circle.
    if (!(radius > 0) || !(std::fabs(sinPhi) > 1e-12) || !std::isfinite(radius)) {
        addLineToPoint(tangent1, transform);
        return;
    }
    const double phi = std::atan2(std::fabs(sinPhi), cosPhi);  // angle between the legs
    const double distance = radius / std::tan(phi / 2);
    const VLXPoint t1{tangent1.x + ux * distance, tangent1.y + uy * distance};
    const VLXPoint t2{tangent1.x + vx * distance, tangent1.y + vy * distance};
    const double bx = ux + vx, by = uy + vy, blen = std::hypot(bx, by);
    const double centerDistance = radius / std::sin(phi / 2);
    const VLXPoint center{tangent1.x + bx / blen * centerDistance,
                          tangent1.y + by / blen * centerDistance};
    const double a0 = std::atan2(t1.y - center.y, t1.x - center.x);
    const double ax = t1.x - center.x, ay = t1.y - center.y;
    const double bxx = t2.x - center.x, byy = t2.y - center.y;
    const double sweep = std::atan2(ax * byy - ay * bxx, ax * bxx + ay * byy);
    addLineToPoint(t1, transform);
    appendArcSegments(center, radius, a0, sweep, transform);
}

void VLXPath::addPath(const VLXPath& path, const VLXAffineTransform& transform) {
    if (&path == this) {
        const VLXPath copy = path;
        addPath(copy, transform);
        return;
    }
    reserve(path.m_types.size(), path.m_points.size());
    const VLXPoint* points = path.m_points.data();
    for (VLXPathElementType type : path.m_types) {
        VLXPoint mapped[3];
        const std::size_t n = VLXPathElementPointCount(type);
        for (std::size_t i = 0; i < n; ++i) {
            mapped[i] = mapPoint(points[i], transform);
        }
        if (type != VLXPathElementType::MoveToPoint && type != VLXPathElementType::CloseSubpath &&
            m_subpathStart < 0) {
            appendRaw(VLXPathElementType::MoveToPoint, mapped);
        }
        if (type == VLXPathElementType::CloseSubpath) {
            closeSubpath();
        } else {
            appendRaw(type, mapped);
        }
        points += n;
    }
}

void VLXPath::removeAllPoints() {
    m_types.clear();
    m_points.clear();
    m_subpathStart = -1;
}

void VLXPath::reserve(std::size_t elements, std::size_t points) {
    m_types.reserve(m_types.size() + elements);
    m_points.reserve(m_points.size() + points);
}

// --- reading -----------------------------------------------------------------------------------

VLXPoint VLXPath::currentPoint() const {
    if (m_types.empty() || m_subpathStart < 0) {
        return VLXPointZero;
    }
    if (m_types.back() == VLXPathElementType::CloseSubpath) {
        return m_points[static_cast<std::size_t>(m_subpathStart)];
    }
    return m_points.back();
}

void VLXPath::apply(const std::function<void(const VLXPathElement&)>& visitor) const {
    if (!visitor) {
        return;
    }
    const VLXPoint* points = m_points.data();
    for (VLXPathElementType type : m_types) {
        visitor(VLXPathElement{type, points});
        points += VLXPathElementPointCount(type);
    }
}

VLXRect VLXPath::boundingBox() const {
    Extent extent;
    const VLXPoint* points = m_points.data();
    for (VLXPathElementType type : m_types) {
        const std::size_t n = VLXPathElementPointCount(type);
        bool finite = true;
        for (std::size_t i = 0; i < n; ++i) {
            finite = finite && isFinite(points[i]);
        }
        if (finite) {
            for (std::size_t i = 0; i < n; ++i) {
                extent.add(points[i]);
            }
        }
        points += n;
    }
    return extent.rect();
}

VLXRect VLXPath::pathBoundingBox() const {
    Extent extent;
    const VLXPoint* points = m_points.data();
    VLXPoint current{};
    VLXPoint subpathStart{};
    for (VLXPathElementType type : m_types) {
        const std::size_t n = VLXPathElementPointCount(type);
        bool finite = true;
        for (std::size_t i = 0; i < n; ++i) {
            finite = finite && isFinite(points[i]);
        }
        switch (type) {
            case VLXPathElementType::MoveToPoint:
                subpathStart = points[0];
                [[fallthrough]];
            case VLXPathElementType::AddLineToPoint:
                if (finite) {
                    extent.add(points[0]);
                }
                break;
            case VLXPathElementType::AddQuadCurveToPoint:
                if (finite) {
                    extent.add(points[1]);
                    if (isFinite(current)) {
                        addQuadExtrema(extent, current, points[0], points[1]);
                    }
                }
                break;
            case VLXPathElementType::AddCurveToPoint:
                if (finite) {
                    extent.add(points[2]);
                    if (isFinite(current)) {
                        addCubicExtrema(extent, current, points[0], points[1], points[2]);
                    }
                }
                break;
            case VLXPathElementType::CloseSubpath:
                break;
        }
        current = n > 0 ? points[n - 1] : subpathStart;
        points += n;
    }
    return extent.rect();
}

bool VLXPath::containsPoint(VLXPoint point, VLXPathFillRule rule,
                            const VLXAffineTransform& transform) const {
    if (!isFinite(point)) {
        return false;
    }
    const bool identity = VLXAffineTransformIsIdentity(transform);
    auto map = [&](VLXPoint p) { return identity ? p : mapPoint(p, transform); };

    long total = 0;
    WindingCounter counter{point};
    bool subpathFinite = true;
    bool open = false;  // a subpath has started and not been closed
    VLXPoint start{}, current{};

    // A subpath with a non-finite point is left out, as drawing leaves it out.
    auto finishSubpath = [&] {
        if (open) {
            counter.line(current, start);
            if (subpathFinite) {
                total += counter.winding;
            }
        }
        counter.winding = 0;
        subpathFinite = true;
        open = false;
    };
    auto beginIfNeeded = [&] {
        if (!open) {
            open = true;
            current = start;
            subpathFinite = isFinite(start);
        }
    };

    const VLXPoint* points = m_points.data();
    for (VLXPathElementType type : m_types) {
        const std::size_t n = VLXPathElementPointCount(type);
        switch (type) {
            case VLXPathElementType::MoveToPoint:
                finishSubpath();
                start = map(points[0]);
                beginIfNeeded();
                break;
            case VLXPathElementType::AddLineToPoint: {
                beginIfNeeded();
                const VLXPoint p = map(points[0]);
                subpathFinite = subpathFinite && isFinite(p);
                if (subpathFinite) {
                    counter.line(current, p);
                }
                current = p;
                break;
            }
            case VLXPathElementType::AddQuadCurveToPoint: {
                beginIfNeeded();
                const VLXPoint q = map(points[0]);
                const VLXPoint p = map(points[1]);
                subpathFinite = subpathFinite && isFinite(q) && isFinite(p);
                if (subpathFinite) {
                    const VLXPoint c1{current.x + 2.0 / 3.0 * (q.x - current.x),
                                      current.y + 2.0 / 3.0 * (q.y - current.y)};
                    const VLXPoint c2{p.x + 2.0 / 3.0 * (q.x - p.x), p.y + 2.0 / 3.0 * (q.y - p.y)};
                    counter.cubic(current, c1, c2, p);
                }
                current = p;
                break;
            }
            case VLXPathElementType::AddCurveToPoint: {
                beginIfNeeded();
                const VLXPoint c1 = map(points[0]);
                const VLXPoint c2 = map(points[1]);
                const VLXPoint p = map(points[2]);
                subpathFinite = subpathFinite && isFinite(c1) && isFinite(c2) && isFinite(p);
                if (subpathFinite) {
                    counter.cubic(current, c1, c2, p);
                }
                current = p;
                break;
            }
            case VLXPathElementType::CloseSubpath:
                // The next subpath (without a move) starts where this one started.
                finishSubpath();
                break;
        }
        points += n;
    }
    finishSubpath();
    return rule == VLXPathFillRule::EvenOdd ? (total & 1) != 0 : total != 0;
}

// --- copies ------------------------------------------------------------------------------------

VLXPath VLXPath::copyByTransformingPath(const VLXAffineTransform& transform) const {
    VLXPath copy = *this;
    copy.applyTransform(transform);
    return copy;
}

void VLXPath::applyTransform(const VLXAffineTransform& transform) {
    for (VLXPoint& p : m_points) {
        p = mapPoint(p, transform);
    }
}

bool operator==(const VLXPath& a, const VLXPath& b) {
    if (a.m_types != b.m_types || a.m_points.size() != b.m_points.size()) {
        return false;
    }
    for (std::size_t i = 0; i < a.m_points.size(); ++i) {
        if (!sameDouble(a.m_points[i].x, b.m_points[i].x) ||
            !sameDouble(a.m_points[i].y, b.m_points[i].y)) {
            return false;
        }
    }
    return true;
}

std::ostream& operator<<(std::ostream& os, const VLXPath& path) {
    os << "VLXPath(";
    bool first = true;
    path.apply([&](const VLXPathElement& element) {
        if (!first) {
            os << "; ";
        }
        first = false;
        os << elementName(element.type);
        for (std::size_t i = 0; i < element.pointCount(); ++i) {
            os << ' ';
            vlx::detail::printNumber(os, element.points[i].x);
            os << ' ';
            vlx::detail::printNumber(os, element.points[i].y);
        }
    });
    return os << ')';
}
