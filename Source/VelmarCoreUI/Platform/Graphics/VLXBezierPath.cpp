#include <VelmarCoreUI/Platform/Graphics/VLXBezierPath.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <ostream>

#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsImageContext.h>
#include <VelmarCoreUI/Platform/Primitives/Private/VLXNumberPrinting.h>

namespace {

constexpr double kQuarterKappa = 4.0 * (std::numbers::sqrt2 - 1.0) / 3.0;

// A radius that is not positive (NaN included) is no radius; others are clamped to `limit`.
double clampedRadius(double radius, double limit) {
    return radius > 0 ? std::min(radius, limit) : 0;
}

bool sameDouble(double a, double b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}

}  // namespace

VLXBezierPath VLXBezierPath::bezierPathWithRect(const VLXRect& rect) {
    VLXBezierPath path;
    path.m_path.addRect(rect);
    return path;
}

VLXBezierPath VLXBezierPath::bezierPathWithOvalInRect(const VLXRect& rect) {
    VLXBezierPath path;
    path.m_path.addEllipseInRect(rect);
    return path;
}

VLXBezierPath VLXBezierPath::bezierPathWithRoundedRect(const VLXRect& rect, double cornerRadius) {
    VLXBezierPath path;
    if (rect.isNull()) {
        return path;
    }
    const VLXRect r = rect.standardized();
    const double radius = clampedRadius(cornerRadius, std::min(r.size.width, r.size.height) / 2);
    path.m_path.addRoundedRect(r, radius, radius);
    return path;
}

VLXBezierPath VLXBezierPath::bezierPathWithRoundedRect(const VLXRect& rect, unsigned corners,
                                                       VLXSize cornerRadii) {
    VLXBezierPath path;
    if (rect.isNull()) {
        return path;
    }
    const VLXRect r = rect.standardized();
    const double rx = clampedRadius(cornerRadii.width, r.size.width / 2);
    const double ry = clampedRadius(cornerRadii.height, r.size.height / 2);
    if (!(rx > 0) || !(ry > 0) || (corners & VLXRectCornerAllCorners) == 0) {
        path.m_path.addRect(r);
        return path;
    }
    const double x0 = r.origin.x, y0 = r.origin.y;
    const double x1 = x0 + r.size.width, y1 = y0 + r.size.height;
    const double kx = kQuarterKappa * rx, ky = kQuarterKappa * ry;
    auto radiiFor = [&](unsigned corner) {
        return (corners & corner) != 0 ? VLXSize{rx, ry} : VLXSize{0, 0};
    };
    const VLXSize tl = radiiFor(VLXRectCornerTopLeft);
    const VLXSize tr = radiiFor(VLXRectCornerTopRight);
    const VLXSize br = radiiFor(VLXRectCornerBottomRight);
    const VLXSize bl = radiiFor(VLXRectCornerBottomLeft);

    // Clockwise on screen from the end of the top-left corner; square corners are a plain
    // vertex instead of a zero-size curve.
    VLXPath& p = path.m_path;
    p.moveToPoint({x0 + tl.width, y0});
    p.addLineToPoint({x1 - tr.width, y0});
    if (tr.width > 0) {
        p.addCurveToPoint({x1 - rx + kx, y0}, {x1, y0 + ry - ky}, {x1, y0 + ry});
    }
    p.addLineToPoint({x1, y1 - br.height});
    if (br.width > 0) {
        p.addCurveToPoint({x1, y1 - ry + ky}, {x1 - rx + kx, y1}, {x1 - rx, y1});
    }
    p.addLineToPoint({x0 + bl.width, y1});
    if (bl.width > 0) {
        p.addCurveToPoint({x0 + rx - kx, y1}, {x0, y1 - ry + ky}, {x0, y1 - ry});
    }
    p.addLineToPoint({x0, y0 + tl.height});
    if (tl.width > 0) {
        p.addCurveToPoint({x0, y0 + ry - ky}, {x0 + rx - kx, y0}, {x0 + rx, y0});
    }
    p.closeSubpath();
    return path;
}

VLXBezierPath VLXBezierPath::bezierPathWithArcCenter(VLXPoint center, double radius,
                                                     double startAngle, double endAngle,
                                                     bool clockwise) {
    VLXBezierPath path;
    path.addArcWithCenter(center, radius, startAngle, endAngle, clockwise);
    return path;
}

VLXBezierPath VLXBezierPath::bezierPathWithCGPath(const VLXPath& path) {
    VLXBezierPath result;
    result.m_path = path;
    return result;
}

void VLXBezierPath::moveToPoint(VLXPoint point) {
    m_path.moveToPoint(point);
}

void VLXBezierPath::addLineToPoint(VLXPoint point) {
    m_path.addLineToPoint(point);
}

void VLXBezierPath::addCurveToPoint(VLXPoint end, VLXPoint controlPoint1, VLXPoint controlPoint2) {
    m_path.addCurveToPoint(controlPoint1, controlPoint2, end);
}

void VLXBezierPath::addQuadCurveToPoint(VLXPoint end, VLXPoint controlPoint) {
    m_path.addQuadCurveToPoint(controlPoint, end);
}

void VLXBezierPath::addArcWithCenter(VLXPoint center, double radius, double startAngle,
                                     double endAngle, bool clockwise) {
    // On a y-down screen, "clockwise" walks increasing angles: the opposite of the path's
    // drawing-space flag.
    m_path.addArc(center, radius, startAngle, endAngle, !clockwise);
}

void VLXBezierPath::closePath() {
    m_path.closeSubpath();
}

void VLXBezierPath::removeAllPoints() {
    m_path.removeAllPoints();
}

void VLXBezierPath::appendPath(const VLXBezierPath& other) {
    m_path.addPath(other.m_path);
}

void VLXBezierPath::applyTransform(const VLXAffineTransform& transform) {
    m_path.applyTransform(transform);
}

bool VLXBezierPath::containsPoint(VLXPoint point) const {
    return m_path.containsPoint(point, fillRule());
}

void VLXBezierPath::setLineDash(std::span<const double> pattern, double phase) {
    m_dashPattern.assign(pattern.begin(), pattern.end());
    m_dashPhase = phase;
}

void VLXBezierPath::getLineDash(std::vector<double>* pattern, double* phase) const {
    if (pattern != nullptr) {
        *pattern = m_dashPattern;
    }
    if (phase != nullptr) {
        *phase = m_dashPhase;
    }
}

void VLXBezierPath::fill() const {
    if (VLXGraphicsContext* context = VLXGraphicsGetCurrentContext()) {
        context->fillBezierPath(*this);
    }
}

void VLXBezierPath::stroke() const {
    if (VLXGraphicsContext* context = VLXGraphicsGetCurrentContext()) {
        context->strokeBezierPath(*this);
    }
}

void VLXBezierPath::addClip() const {
    if (VLXGraphicsContext* context = VLXGraphicsGetCurrentContext()) {
        context->clipToBezierPath(*this);
    }
}

bool operator==(const VLXBezierPath& a, const VLXBezierPath& b) {
    if (a.m_dashPattern.size() != b.m_dashPattern.size()) {
        return false;
    }
    for (std::size_t i = 0; i < a.m_dashPattern.size(); ++i) {
        if (!sameDouble(a.m_dashPattern[i], b.m_dashPattern[i])) {
            return false;
        }
    }
    return a.m_path == b.m_path && sameDouble(a.m_lineWidth, b.m_lineWidth) &&
           a.m_lineCap == b.m_lineCap && a.m_lineJoin == b.m_lineJoin &&
           sameDouble(a.m_miterLimit, b.m_miterLimit) && sameDouble(a.m_flatness, b.m_flatness) &&
           a.m_usesEvenOddFillRule == b.m_usesEvenOddFillRule &&
           sameDouble(a.m_dashPhase, b.m_dashPhase);
}

std::ostream& operator<<(std::ostream& os, const VLXBezierPath& path) {
    os << "VLXBezierPath(" << path.CGPath() << ", lineWidth ";
    vlx::detail::printNumber(os, path.lineWidth());
    if (path.usesEvenOddFillRule()) {
        os << ", even-odd";
    }
    if (!path.lineDashPattern().empty()) {
        os << ", dash [";
        for (std::size_t i = 0; i < path.lineDashPattern().size(); ++i) {
            os << (i > 0 ? " " : "");
            vlx::detail::printNumber(os, path.lineDashPattern()[i]);
        }
        os << "] phase ";
        vlx::detail::printNumber(os, path.lineDashPhase());
    }
    return os << ')';
}
