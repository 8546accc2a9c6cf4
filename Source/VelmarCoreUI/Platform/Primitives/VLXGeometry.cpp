#include <VelmarCoreUI/Platform/Primitives/Private/VLXNumberPrinting.h>
#include <VelmarCoreUI/Platform/Primitives/VLXGeometry.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <ostream>

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

// std::min/max pick by `<`, which is false for NaN; these keep NaN visible instead of letting
// the argument order decide, so a NaN edge gives a NaN result rather than a silent number.
double minEdge(double a, double b) {
    if (std::isnan(a) || std::isnan(b)) {
        return std::nan("");
    }
    return a < b ? a : b;
}

double maxEdge(double a, double b) {
    if (std::isnan(a) || std::isnan(b)) {
        return std::nan("");
    }
    return a < b ? b : a;
}

VLXRect fromEdges(double minX, double minY, double maxX, double maxY) {
    return VLXRect{{minX, minY}, {maxX - minX, maxY - minY}};
}

}  // namespace

// --- VLXRect -----------------------------------------------------------------------------------

VLXRect VLXRect::standardized() const {
    if (isNull()) {
        return *this;
    }
    VLXRect r = *this;
    if (r.size.width < 0) {
        r.origin.x += r.size.width;
        r.size.width = -r.size.width;
    }
    if (r.size.height < 0) {
        r.origin.y += r.size.height;
        r.size.height = -r.size.height;
    }
    return r;
}

double VLXRect::minX() const {
    return standardized().origin.x;
}
double VLXRect::minY() const {
    return standardized().origin.y;
}
double VLXRect::width() const {
    return std::fabs(size.width);
}
double VLXRect::height() const {
    return std::fabs(size.height);
}

double VLXRect::midX() const {
    const VLXRect r = standardized();
    return r.origin.x + r.size.width * 0.5;
}

double VLXRect::midY() const {
    const VLXRect r = standardized();
    return r.origin.y + r.size.height * 0.5;
}

double VLXRect::maxX() const {
    const VLXRect r = standardized();
    return r.origin.x + r.size.width;
}

double VLXRect::maxY() const {
    const VLXRect r = standardized();
    return r.origin.y + r.size.height;
}

bool VLXRect::isNull() const {
    return origin.x == kInfinity || origin.y == kInfinity;
}

bool VLXRect::isEmpty() const {
    return isNull() || size.width == 0 || size.height == 0;
}

bool VLXRect::isInfinite() const {
    return *this == VLXRectInfinite;
}

// --- comparison --------------------------------------------------------------------------------

bool VLXRectEqualToRect(const VLXRect& a, const VLXRect& b) {
    if (a.isNull() || b.isNull()) {
        return a.isNull() && b.isNull();
    }
    return a.standardized() == b.standardized();
}

// --- containment and intersection --------------------------------------------------------------

bool VLXRectContainsPoint(const VLXRect& r, const VLXPoint& p) {
    if (r.isNull()) {
        return false;
    }
    const VLXRect s = r.standardized();
    return p.x >= s.origin.x && p.x < s.origin.x + s.size.width && p.y >= s.origin.y &&
           p.y < s.origin.y + s.size.height;
}

bool VLXRectContainsRect(const VLXRect& outer, const VLXRect& inner) {
    if (inner.isNull()) {
        return true;
    }
    if (outer.isNull()) {
        return false;
    }
    return inner.minX() >= outer.minX() && inner.maxX() <= outer.maxX() &&
           inner.minY() >= outer.minY() && inner.maxY() <= outer.maxY();
}

bool VLXRectIntersectsRect(const VLXRect& a, const VLXRect& b) {
    if (a.isEmpty() || b.isEmpty()) {
        return false;
    }
    return a.minX() < b.maxX() && b.minX() < a.maxX() && a.minY() < b.maxY() && b.minY() < a.maxY();
}

VLXRect VLXRectIntersection(const VLXRect& a, const VLXRect& b) {
    if (a.isNull() || b.isNull()) {
        return VLXRectNull;
    }
    const double minX = maxEdge(a.minX(), b.minX());
    const double minY = maxEdge(a.minY(), b.minY());
    const double maxX = minEdge(a.maxX(), b.maxX());
    const double maxY = minEdge(a.maxY(), b.maxY());
    // Written as "not <=" so that NaN edges also end in the null rectangle.
    if (!(minX <= maxX) || !(minY <= maxY)) {
        return VLXRectNull;
    }
    return fromEdges(minX, minY, maxX, maxY);
}

VLXRect VLXRectUnion(const VLXRect& a, const VLXRect& b) {
    if (a.isNull()) {
        return b.standardized();
    }
    if (b.isNull()) {
        return a.standardized();
    }
    return fromEdges(minEdge(a.minX(), b.minX()), minEdge(a.minY(), b.minY()),
                     maxEdge(a.maxX(), b.maxX()), maxEdge(a.maxY(), b.maxY()));
}

// --- derived rectangles ------------------------------------------------------------------------

VLXRect VLXRectInset(const VLXRect& r, double dx, double dy) {
    if (r.isNull()) {
        return VLXRectNull;
    }
    VLXRect s = r.standardized();
    s.origin.x += dx;
    s.origin.y += dy;
    s.size.width -= 2 * dx;
    s.size.height -= 2 * dy;
    if (s.size.width < 0 || s.size.height < 0) {
        return VLXRectNull;
    }
    return s;
}

VLXRect VLXRectOffset(const VLXRect& r, double dx, double dy) {
    if (r.isNull()) {
        return VLXRectNull;
    }
    VLXRect s = r.standardized();
    s.origin.x += dx;
    s.origin.y += dy;
    return s;
}

VLXRect VLXRectIntegral(const VLXRect& r) {
    if (r.isNull() || r.isInfinite()) {
        return r;
    }
    return fromEdges(std::floor(r.minX()), std::floor(r.minY()), std::ceil(r.maxX()),
                     std::ceil(r.maxY()));
}

void VLXRectDivide(const VLXRect& r, VLXRect& slice, VLXRect& remainder, double amount,
                   VLXRectEdge edge) {
    if (r.isNull()) {
        slice = VLXRectNull;
        remainder = VLXRectNull;
        return;
    }
    const VLXRect s = r.standardized();
    const bool horizontal = edge == VLXRectEdgeMinX || edge == VLXRectEdgeMaxX;
    const double extent = horizontal ? s.size.width : s.size.height;
    double cut = std::isnan(amount) ? 0.0 : amount;
    cut = std::clamp(cut, 0.0, extent > 0 ? extent : 0.0);
    slice = s;
    remainder = s;
    switch (edge) {
        case VLXRectEdgeMinX:
            slice.size.width = cut;
            remainder.origin.x += cut;
            remainder.size.width -= cut;
            break;
        case VLXRectEdgeMaxX:
            slice.origin.x += s.size.width - cut;
            slice.size.width = cut;
            remainder.size.width -= cut;
            break;
        case VLXRectEdgeMinY:
            slice.size.height = cut;
            remainder.origin.y += cut;
            remainder.size.height -= cut;
            break;
        case VLXRectEdgeMaxY:
            slice.origin.y += s.size.height - cut;
            slice.size.height = cut;
            remainder.size.height -= cut;
            break;
    }
}

// --- printing ----------------------------------------------------------------------------------

namespace vlx::detail {

void printNumber(std::ostream& os, double value) {
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "%.15g", value);
    if (std::isfinite(value) && std::strtod(buffer, nullptr) != value) {
        std::snprintf(buffer, sizeof buffer, "%.17g", value);
    }
    os << buffer;
}

}  // namespace vlx::detail

using vlx::detail::printNumber;

std::ostream& operator<<(std::ostream& os, const VLXPoint& p) {
    os << '{';
    printNumber(os, p.x);
    os << ", ";
    printNumber(os, p.y);
    return os << '}';
}

std::ostream& operator<<(std::ostream& os, const VLXSize& s) {
    os << '{';
    printNumber(os, s.width);
    os << ", ";
    printNumber(os, s.height);
    return os << '}';
}

std::ostream& operator<<(std::ostream& os, const VLXRect& r) {
    return os << '{' << r.origin << ", " << r.size << '}';
}

std::ostream& operator<<(std::ostream& os, const VLXEdgeInsets& e) {
    os << '{';
    printNumber(os, e.top);
    os << ", ";
    printNumber(os, e.left);
    os << ", ";
    printNumber(os, e.bottom);
    os << ", ";
    printNumber(os, e.right);
    return os << '}';
}

std::ostream& operator<<(std::ostream& os, const VLXOffset& o) {
    os << '{';
    printNumber(os, o.horizontal);
    os << ", ";
    printNumber(os, o.vertical);
    return os << '}';
}
