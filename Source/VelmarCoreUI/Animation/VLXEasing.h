#pragma once

#include <memory>

#include <VelmarCoreUI/Platform/Foundation/VLXTypes.h>
#include <VelmarCoreUI/VLXExport.h>

class VLXMediaTimingFunction;

/// The easing vocabulary: an integer code naming a curve. A code may have a timing-function
/// form (`vlx_functionWithEasing`), an exact function evaluated in code
/// (`vlx_animationBlockForEasing`), both or neither. Code 0 and codes 27 to 30 have neither.
using VLXEasing = VLXInteger;

inline constexpr VLXEasing VLXEasingEaseIn = 1;
inline constexpr VLXEasing VLXEasingEaseOut = 2;
inline constexpr VLXEasing VLXEasingEaseInOut = 3;
inline constexpr VLXEasing VLXEasingQuadIn = 4;
inline constexpr VLXEasing VLXEasingQuadOut = 5;
inline constexpr VLXEasing VLXEasingQuadInOut = 6;
inline constexpr VLXEasing VLXEasingCubicIn = 7;
inline constexpr VLXEasing VLXEasingCubicOut = 8;
inline constexpr VLXEasing VLXEasingCubicInOut = 9;
inline constexpr VLXEasing VLXEasingQuartIn = 10;
inline constexpr VLXEasing VLXEasingQuartOut = 11;
inline constexpr VLXEasing VLXEasingQuartInOut = 12;
inline constexpr VLXEasing VLXEasingQuintIn = 13;
inline constexpr VLXEasing VLXEasingQuintOut = 14;
inline constexpr VLXEasing VLXEasingQuintInOut = 15;
inline constexpr VLXEasing VLXEasingSineIn = 16;
inline constexpr VLXEasing VLXEasingSineOut = 17;
inline constexpr VLXEasing VLXEasingSineInOut = 18;
inline constexpr VLXEasing VLXEasingExpoIn = 19;
inline constexpr VLXEasing VLXEasingExpoOut = 20;
inline constexpr VLXEasing VLXEasingExpoInOut = 21;
inline constexpr VLXEasing VLXEasingCircIn = 22;
inline constexpr VLXEasing VLXEasingCircOut = 23;
inline constexpr VLXEasing VLXEasingCircInOut = 24;
inline constexpr VLXEasing VLXEasingElasticIn = 25;
inline constexpr VLXEasing VLXEasingElasticOut = 26;
inline constexpr VLXEasing VLXEasingBounceIn = 31;
inline constexpr VLXEasing VLXEasingBounceOut = 32;
inline constexpr VLXEasing VLXEasingBounceInOut = 33;
inline constexpr VLXEasing VLXEasingSmoothOut = 34;

/// An exact easing curve: the eased fraction for a time fraction t in 0…1. The curves are
/// stateless functions; outside 0…1 their formulas are evaluated as written (NaN gives NaN).
using VLXEasingFunction = double (*)(double t);

// --- unit cubic Bézier -------------------------------------------------------------------

/// a t³ + b t² + c t, as ((t a + b) t + c) t.
VLX_EXPORT double zef_bezier(double t, double a, double b, double c);
/// The derivative 3 a t² + 2 b t + c, as (t 3 a + 2 b) t + c.
VLX_EXPORT double zef_bezier_der(double t, double a, double b, double c);
/// The curve parameter t whose x is `x`, for a unit curve with x control coordinates x1, x2:
/// Newton's method from t = x, at most 5 steps, stopping once |x(t) − x| < 0.001. No clamping
/// and no fallback for a flat derivative (a zero derivative gives a non-finite t).
VLX_EXPORT double zef_xForTime(double x, double x1, double x2);

/// (x, x1, y1, x2, y2) → the y of the unit curve through (x1, y1), (x2, y2) at `x`.
using VLXBezierEvaluatorFunction = double (*)(double x, double x1, double y1, double x2, double y2);
/// Solves x with `zef_xForTime`, then evaluates y at that parameter.
extern VLX_EXPORT const VLXBezierEvaluatorFunction VLXBezierEvaluator;

// --- curves by code ----------------------------------------------------------------------

/// The timing function of `easing` from its single-precision control points, or nil for a
/// code without one (0 to 3, 25 to 33 and anything else outside the table). The 22 functions
/// are made once, on the first call, and every later call returns the same objects.
VLX_EXPORT std::shared_ptr<VLXMediaTimingFunction> vlx_functionWithEasing(VLXEasing easing);

/// The exact function of `easing`, or nil for 0, 27 to 30 and codes outside 0…34.
VLX_EXPORT VLXEasingFunction vlx_animationBlockForEasing(VLXEasing easing);
