#pragma once

#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>
#include <VelmarCoreUI/VLXExport.h>

/// The kinds of value an animation interpolates entry by entry.
enum class VLXInterpolationKind {
    Number,           ///< any number except booleans; interpolated as a double ("d")
    Point,            ///< x, y
    Size,             ///< width, height
    Rect,             ///< x, y, width, height
    AffineTransform,  ///< a, b, c, d, tx, ty
    Transform3D,      ///< m11 … m44
    Color,            ///< components, alpha last, within one colour model
    None,             ///< nil, booleans, strings, collections, objects …
};

/// The interpolation kind of `value`.
VLX_EXPORT VLXInterpolationKind VLXInterpolationKindOf(const VLXValue& value);

/// from + (to − from) × fraction, entry by entry; exactly `to` at fraction 1 and `from` at 0.
/// Fractions outside [0, 1] extrapolate (overshooting curves).
///
/// Odd input gives a defined value, never nil unless both ends are nil:
/// * a nil end: the other end;
/// * different kinds, kinds that do not interpolate (strings, booleans, arrays …), colours of
///   different models or component counts: a step, `from` below fraction 0.5, `to` from 0.5 on;
/// * a NaN fraction: `from`; +∞: `to`; −∞: `from`;
/// * non-finite entries interpolate arithmetically (∞ stays ∞; ∞ − ∞ gives NaN) except that
///   equal entries give that entry.
/// Numbers come back as doubles ("d"), geometry in its own box, colours in `from`'s model.
VLX_EXPORT VLXValue VLXInterpolateValues(const VLXValue& from, const VLXValue& to, double fraction);

/// The scalar rule used for every entry.
inline double VLXInterpolateDouble(double from, double to, double fraction) {
    if (fraction == 1.0) {
        return to;
    }
    if (from == to) {
        return from;
    }
    return from + (to - from) * fraction;
}
