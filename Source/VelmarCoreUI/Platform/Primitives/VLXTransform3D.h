#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <iosfwd>

#include <VelmarCoreUI/Platform/Primitives/VLXAffineTransform.h>

/// A 4×4 homogeneous transform for layers, row-vector convention like VLXAffineTransform
/// (translation in m41, m42, m43).
///
/// As with the 2-D helpers, `VLXTransform3DConcat(a, b)` applies a first, then b, and the
/// `Translate` / `Scale` / `Rotate` helpers put their step before `t`. Rotations turn by
/// `angle` radians about the axis (x, y, z); about z they match VLXAffineTransformMakeRotation.
struct VLX_EXPORT VLXTransform3D {
    double m11 = 1, m12 = 0, m13 = 0, m14 = 0;
    double m21 = 0, m22 = 1, m23 = 0, m24 = 0;
    double m31 = 0, m32 = 0, m33 = 1, m34 = 0;
    double m41 = 0, m42 = 0, m43 = 0, m44 = 1;
    friend constexpr bool operator==(const VLXTransform3D&, const VLXTransform3D&) = default;
};

inline constexpr VLXTransform3D VLXTransform3DIdentity{};

constexpr VLXTransform3D VLXTransform3DMakeTranslation(double tx, double ty, double tz) {
    VLXTransform3D t;
    t.m41 = tx;
    t.m42 = ty;
    t.m43 = tz;
    return t;
}
constexpr VLXTransform3D VLXTransform3DMakeScale(double sx, double sy, double sz) {
    VLXTransform3D t;
    t.m11 = sx;
    t.m22 = sy;
    t.m33 = sz;
    return t;
}
/// Rotation about the axis (x, y, z), which need not be of unit length. An axis of zero or
/// non-finite length gives the identity.
VLX_EXPORT VLXTransform3D VLXTransform3DMakeRotation(double angle, double x, double y, double z);

/// a then b: the matrix product a × b.
VLX_EXPORT VLXTransform3D VLXTransform3DConcat(const VLXTransform3D& a, const VLXTransform3D& b);
VLX_EXPORT VLXTransform3D VLXTransform3DTranslate(const VLXTransform3D& t, double tx, double ty,
                                                  double tz);
VLX_EXPORT VLXTransform3D VLXTransform3DScale(const VLXTransform3D& t, double sx, double sy,
                                              double sz);
VLX_EXPORT VLXTransform3D VLXTransform3DRotate(const VLXTransform3D& t, double angle, double x,
                                               double y, double z);
/// The inverse, or `t` unchanged when it has none (determinant zero or not finite).
VLX_EXPORT VLXTransform3D VLXTransform3DInvert(const VLXTransform3D& t);

constexpr bool VLXTransform3DIsIdentity(const VLXTransform3D& t) {
    return t == VLXTransform3DIdentity;
}
constexpr bool VLXTransform3DEqualToTransform(const VLXTransform3D& a, const VLXTransform3D& b) {
    return a == b;
}
/// True when `t` only acts in the x-y plane: exactly representable as a VLXAffineTransform.
constexpr bool VLXTransform3DIsAffine(const VLXTransform3D& t) {
    return t.m13 == 0 && t.m14 == 0 && t.m23 == 0 && t.m24 == 0 && t.m31 == 0 && t.m32 == 0 &&
           t.m33 == 1 && t.m34 == 0 && t.m43 == 0 && t.m44 == 1;
}
constexpr VLXTransform3D VLXTransform3DMakeAffineTransform(const VLXAffineTransform& m) {
    VLXTransform3D t;
    t.m11 = m.a;
    t.m12 = m.b;
    t.m21 = m.c;
    t.m22 = m.d;
    t.m41 = m.tx;
    t.m42 = m.ty;
    return t;
}
/// The x-y part of `t` (the other entries are dropped; meaningful when `IsAffine`).
constexpr VLXAffineTransform VLXTransform3DGetAffineTransform(const VLXTransform3D& t) {
    return VLXAffineTransform{t.m11, t.m12, t.m21, t.m22, t.m41, t.m42};
}

/// "[m11, m12, m13, m14; m21, …; m41, m42, m43, m44]".
VLX_EXPORT std::ostream& operator<<(std::ostream& os, const VLXTransform3D& t);
