#include <VelmarCoreUI/Platform/Primitives/Private/VLXNumberPrinting.h>
#include <VelmarCoreUI/Platform/Primitives/VLXAffineTransform.h>

#include <cmath>
#include <ostream>

VLXAffineTransform VLXAffineTransformMakeRotation(double angle) {
    const double s = std::sin(angle);
    const double c = std::cos(angle);
    return VLXAffineTransform{c, s, -s, c, 0, 0};
}

VLXAffineTransform VLXAffineTransformRotate(const VLXAffineTransform& t, double angle) {
    return VLXAffineTransformConcat(VLXAffineTransformMakeRotation(angle), t);
}

VLXAffineTransform VLXAffineTransformInvert(const VLXAffineTransform& t) {
    const double det = t.a * t.d - t.b * t.c;
    if (det == 0 || !std::isfinite(det)) {
        return t;
    }
    const double a = t.d / det;
    const double b = -t.b / det;
    const double c = -t.c / det;
    const double d = t.a / det;
    return VLXAffineTransform{a, b, c, d, -(t.tx * a + t.ty * c), -(t.tx * b + t.ty * d)};
}

VLXRect VLXRectApplyAffineTransform(const VLXRect& r, const VLXAffineTransform& t) {
    if (r.isNull() || r.isInfinite()) {
        return r;
    }
    const VLXRect s = r.standardized();
    const VLXPoint corners[4] = {
        VLXPointApplyAffineTransform(s.origin, t),
        VLXPointApplyAffineTransform({s.origin.x + s.size.width, s.origin.y}, t),
        VLXPointApplyAffineTransform({s.origin.x, s.origin.y + s.size.height}, t),
        VLXPointApplyAffineTransform({s.origin.x + s.size.width, s.origin.y + s.size.height}, t),
    };
    VLXRect box{corners[0], {0, 0}};
    for (const VLXPoint& p : corners) {
        box = VLXRectUnion(box, VLXRect{p, {0, 0}});
    }
    return box;
}

std::ostream& operator<<(std::ostream& os, const VLXAffineTransform& t) {
    const double values[6] = {t.a, t.b, t.c, t.d, t.tx, t.ty};
    os << '[';
    for (int i = 0; i < 6; ++i) {
        if (i > 0) {
            os << ", ";
        }
        vlx::detail::printNumber(os, values[i]);
    }
    return os << ']';
}
