#pragma once

#include <cmath>

/// Single-precision steps that the toolkit's behaviour is defined by. Several computations pass
/// a value through a 32-bit float (and round halves away from zero there); writing them through
/// these helpers keeps each detour visible and named instead of scattered casts.
namespace vlx {

/// `x` narrowed to float and widened back: what a float variable would have held.
inline double f32(double x) {
    return static_cast<double>(static_cast<float>(x));
}

/// `roundf` of `x` in single precision (halves away from zero), widened back.
inline double roundf32(double x) {
    return static_cast<double>(std::roundf(static_cast<float>(x)));
}

inline double floorf32(double x) {
    return static_cast<double>(std::floor(static_cast<float>(x)));
}

inline double ceilf32(double x) {
    return static_cast<double>(std::ceil(static_cast<float>(x)));
}

}  // namespace vlx
