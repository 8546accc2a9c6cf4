#include <VelmarCoreUI/Platform/Layers/VLXInterpolation.h>

#include <cmath>
#include <cstring>

#include <VelmarCoreUI/Platform/Layers/Private/VLXInterpolationComponents.h>

VLXInterpolationKind VLXInterpolationKindOf(const VLXValue& value) {
    switch (value.kind()) {
        case VLXValue::Kind::Number: {
            const char* type = value.objCType();
            // Booleans and chars are flags, not quantities.
            return (type[0] == 'c' || type[0] == 'C') ? VLXInterpolationKind::None
                                                      : VLXInterpolationKind::Number;
        }
        case VLXValue::Kind::Boxed: {
            const char* type = value.objCType();
            if (std::strcmp(type, "{CGPoint=dd}") == 0) {
                return VLXInterpolationKind::Point;
            }
            if (std::strcmp(type, "{CGSize=dd}") == 0) {
                return VLXInterpolationKind::Size;
            }
            if (std::strcmp(type, "{CGRect={CGPoint=dd}{CGSize=dd}}") == 0) {
                return VLXInterpolationKind::Rect;
            }
            if (std::strcmp(type, "{CGAffineTransform=dddddd}") == 0) {
                return VLXInterpolationKind::AffineTransform;
            }
            if (std::strcmp(type, "{CATransform3D=dddddddddddddddd}") == 0) {
                return VLXInterpolationKind::Transform3D;
            }
            return VLXInterpolationKind::None;
        }
        case VLXValue::Kind::Color:
            return VLXInterpolationKind::Color;
        default:
            return VLXInterpolationKind::None;
    }
}

namespace vlx::detail {

std::size_t interpolationComponents(const VLXValue& value, VLXInterpolationKind kind, double* out) {
    switch (kind) {
        case VLXInterpolationKind::Number:
            out[0] = value.doubleValue();
            return 1;
        case VLXInterpolationKind::Point: {
            const VLXPoint p = value.pointValue();
            out[0] = p.x;
            out[1] = p.y;
            return 2;
        }
        case VLXInterpolationKind::Size: {
            const VLXSize s = value.sizeValue();
            out[0] = s.width;
            out[1] = s.height;
            return 2;
        }
        case VLXInterpolationKind::Rect: {
            const VLXRect r = value.rectValue();
            out[0] = r.origin.x;
            out[1] = r.origin.y;
            out[2] = r.size.width;
            out[3] = r.size.height;
            return 4;
        }
        case VLXInterpolationKind::AffineTransform: {
            const VLXAffineTransform t = value.affineTransformValue();
            const double entries[6] = {t.a, t.b, t.c, t.d, t.tx, t.ty};
            std::memcpy(out, entries, sizeof entries);
            return 6;
        }
        case VLXInterpolationKind::Transform3D: {
            const VLXTransform3D t = value.transform3DValue();
            const double entries[16] = {t.m11, t.m12, t.m13, t.m14, t.m21, t.m22, t.m23, t.m24,
                                        t.m31, t.m32, t.m33, t.m34, t.m41, t.m42, t.m43, t.m44};
            std::memcpy(out, entries, sizeof entries);
            return 16;
        }
        case VLXInterpolationKind::Color: {
            const auto color = value.colorValue();
            if (!color) {
                return 0;
            }
            const auto components = color->components();
            std::size_t n = 0;
            for (double c : components) {
                if (n == kMaxInterpolationComponents) {
                    break;
                }
                out[n++] = c;
            }
            return n;
        }
        case VLXInterpolationKind::None:
            return 0;
    }
    return 0;
}

namespace {

VLXColor colorFromComponents(VLXColorSpaceModel model, const double* c, std::size_t count) {
    switch (count) {
        case 0:
            return VLXColor(model, {});
        case 1:
            return VLXColor(model, {c[0]});
        case 2:
            return VLXColor(model, {c[0], c[1]});
        case 3:
            return VLXColor(model, {c[0], c[1], c[2]});
        case 4:
            return VLXColor(model, {c[0], c[1], c[2], c[3]});
        default:
            return VLXColor(model, {c[0], c[1], c[2], c[3], c[4]});
    }
}

}  // namespace

VLXValue valueFromComponents(VLXInterpolationKind kind, const double* c, std::size_t count,
                             const VLXValue& colorModel) {
    switch (kind) {
        case VLXInterpolationKind::Number:
            return count >= 1 ? VLXValue(c[0]) : VLXValue();
        case VLXInterpolationKind::Point:
            return count >= 2 ? VLXValue::valueWithPoint({c[0], c[1]}) : VLXValue();
        case VLXInterpolationKind::Size:
            return count >= 2 ? VLXValue::valueWithSize({c[0], c[1]}) : VLXValue();
        case VLXInterpolationKind::Rect:
            return count >= 4 ? VLXValue::valueWithRect({{c[0], c[1]}, {c[2], c[3]}}) : VLXValue();
        case VLXInterpolationKind::AffineTransform:
            return count >= 6
                       ? VLXValue::valueWithAffineTransform({c[0], c[1], c[2], c[3], c[4], c[5]})
                       : VLXValue();
        case VLXInterpolationKind::Transform3D: {
            if (count < 16) {
                return {};
            }
            VLXTransform3D t;
            double* entries[16] = {&t.m11, &t.m12, &t.m13, &t.m14, &t.m21, &t.m22, &t.m23, &t.m24,
                                   &t.m31, &t.m32, &t.m33, &t.m34, &t.m41, &t.m42, &t.m43, &t.m44};
            for (std::size_t i = 0; i < 16; ++i) {
                *entries[i] = c[i];
            }
            return VLXValue::valueWithTransform3D(t);
        }
        case VLXInterpolationKind::Color: {
            const auto model = colorModel.colorValue();
            return VLXValue(colorFromComponents(
                model ? model->colorSpaceModel() : VLXColorSpaceModel::RGB, c, count));
        }
        case VLXInterpolationKind::None:
            return {};
    }
    return {};
}

}  // namespace vlx::detail

namespace {

const VLXValue& stepBetween(const VLXValue& from, const VLXValue& to, double fraction) {
    return fraction < 0.5 ? from : to;
}

bool colorsMatch(const VLXValue& from, const VLXValue& to) {
    const auto a = from.colorValue();
    const auto b = to.colorValue();
    return a && b && a->colorSpaceModel() == b->colorSpaceModel() &&
           a->numberOfComponents() == b->numberOfComponents();
}

}  // namespace

VLXValue VLXInterpolateValues(const VLXValue& from, const VLXValue& to, double fraction) {
    if (from.isNil()) {
        return to;
    }
    if (to.isNil()) {
        return from;
    }
    if (std::isnan(fraction) || fraction == -INFINITY) {
        return from;
    }
    if (fraction == INFINITY) {
        return to;
    }
    const VLXInterpolationKind kind = VLXInterpolationKindOf(from);
    if (kind == VLXInterpolationKind::None || VLXInterpolationKindOf(to) != kind ||
        (kind == VLXInterpolationKind::Color && !colorsMatch(from, to))) {
        return stepBetween(from, to, fraction);
    }
    double a[vlx::detail::kMaxInterpolationComponents];
    double b[vlx::detail::kMaxInterpolationComponents];
    const std::size_t n = vlx::detail::interpolationComponents(from, kind, a);
    vlx::detail::interpolationComponents(to, kind, b);
    for (std::size_t i = 0; i < n; ++i) {
        a[i] = VLXInterpolateDouble(a[i], b[i], fraction);
    }
    return vlx::detail::valueFromComponents(kind, a, n, from);
}
