#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <iosfwd>

#include <VelmarCoreUI/Platform/Primitives/VLXGeometry.h>

/// A 2-D affine transform [a b 0; c d 0; tx ty 1] applied to row vectors, as on the platform:
/// x' = a·x + c·y + tx, y' = b·x + d·y + ty.
///
/// Composition follows the platform: `VLXAffineTransformConcat(t1, t2)` applies t1 first, then
/// t2; the `Translate` / `Scale` / `Rotate` helpers put their step before `t` (in the
/// transform's own coordinate space). Angles are radians; with y growing downward a positive
/// angle turns clockwise on screen. Values are not snapped, so cos(π/2) is 6e-17, not 0.
struct VLX_EXPORT VLXAffineTransform {
    double a = 1, b = 0, c = 0, d = 1, tx = 0, ty = 0;
    friend constexpr bool operator==(const VLXAffineTransform&,
                                     const VLXAffineTransform&) = default;
};

inline constexpr VLXAffineTransform VLXAffineTransformIdentity{};

constexpr VLXAffineTransform VLXAffineTransformMake(double a, double b, double c, double d,
                                                    double tx, double ty) {
    return VLXAffineTransform{a, b, c, d, tx, ty};
}
constexpr VLXAffineTransform VLXAffineTransformMakeTranslation(double tx, double ty) {
    return VLXAffineTransform{1, 0, 0, 1, tx, ty};
}
constexpr VLXAffineTransform VLXAffineTransformMakeScale(double sx, double sy) {
    return VLXAffineTransform{sx, 0, 0, sy, 0, 0};
}
VLX_EXPORT VLXAffineTransform VLXAffineTransformMakeRotation(double angle);

/// t1 then t2: the matrix product t1 × t2.
constexpr VLXAffineTransform VLXAffineTransformConcat(const VLXAffineTransform& t1,
                                                      const VLXAffineTransform& t2) {
    return VLXAffineTransform{
        t1.a * t2.a + t1.b * t2.c,           t1.a * t2.b + t1.b * t2.d,
        t1.c * t2.a + t1.d * t2.c,           t1.c * t2.b + t1.d * t2.d,
        t1.tx * t2.a + t1.ty * t2.c + t2.tx, t1.tx * t2.b + t1.ty * t2.d + t2.ty};
}
constexpr VLXAffineTransform VLXAffineTransformTranslate(const VLXAffineTransform& t, double tx,
                                                         double ty) {
    return VLXAffineTransformConcat(VLXAffineTransformMakeTranslation(tx, ty), t);
}
constexpr VLXAffineTransform VLXAffineTransformScale(const VLXAffineTransform& t, double sx,
                                                     double sy) {
    return VLXAffineTransformConcat(VLXAffineTransformMakeScale(sx, sy), t);
}
VLX_EXPORT VLXAffineTransform VLXAffineTransformRotate(const VLXAffineTransform& t, double angle);

/// The inverse, or `t` unchanged when it has none (determinant zero or not finite).
VLX_EXPORT VLXAffineTransform VLXAffineTransformInvert(const VLXAffineTransform& t);
constexpr bool VLXAffineTransformIsIdentity(const VLXAffineTransform& t) {
    return t == VLXAffineTransformIdentity;
}
constexpr bool VLXAffineTransformEqualToTransform(const VLXAffineTransform& t1,
                                                  const VLXAffineTransform& t2) {
    return t1 == t2;
}

constexpr VLXPoint VLXPointApplyAffineTransform(const VLXPoint& p, const VLXAffineTransform& t) {
    return VLXPoint{t.a * p.x + t.c * p.y + t.tx, t.b * p.x + t.d * p.y + t.ty};
}
/// Sizes are vectors: the translation does not apply, and the result may be negative.
constexpr VLXSize VLXSizeApplyAffineTransform(const VLXSize& s, const VLXAffineTransform& t) {
    return VLXSize{t.a * s.width + t.c * s.height, t.b * s.width + t.d * s.height};
}
/// The bounding box of the transformed corners of the standardised rectangle. Null and
/// infinite rectangles are returned unchanged.
VLX_EXPORT VLXRect VLXRectApplyAffineTransform(const VLXRect& r, const VLXAffineTransform& t);

/// "[a, b, c, d, tx, ty]".
VLX_EXPORT std::ostream& operator<<(std::ostream& os, const VLXAffineTransform& t);
