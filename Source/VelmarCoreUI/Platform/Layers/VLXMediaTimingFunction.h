#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include <VelmarCoreUI/Platform/Foundation/VLXObject.h>
#include <VelmarCoreUI/Platform/Primitives/VLXGeometry.h>
#include <VelmarCoreUI/VLXExport.h>

/// The platform's named pacing curves.
enum class VLXMediaTimingFunctionName {
    Linear,         ///< (0, 0, 1, 1)
    EaseIn,         ///< (0.42, 0, 1, 1)
    EaseOut,        ///< (0, 0, 0.58, 1)
    EaseInEaseOut,  ///< (0.42, 0, 0.58, 1)
    Default,        ///< (0.25, 0.1, 0.25, 1): the pacing of implicit animations
};

/// A pacing curve: a unit cubic Bézier from (0, 0) to (1, 1) through two control points,
/// mapping the elapsed fraction of an animation (x) to the fraction of its change (y).
///
/// A reference object, immutable once made, so it can be shared by any number of animations and
/// caches can hand out the same instance. Control points are stored in single precision, as the
/// platform stores them.
class VLX_EXPORT VLXMediaTimingFunction : public VLXObject {
public:
    /// The named curve. Each name always gives the same shared instance.
    static std::shared_ptr<VLXMediaTimingFunction> functionWithName(
        VLXMediaTimingFunctionName name);
    /// A curve through (x1, y1) and (x2, y2), each narrowed to float. Any values are kept as
    /// given (NaN and infinities included); see `y` for how odd curves evaluate.
    static std::shared_ptr<VLXMediaTimingFunction> functionWithControlPoints(float x1, float y1,
                                                                             float x2, float y2);

    /// Index 0 → (0, 0), 1 → (x1, y1), 2 → (x2, y2), 3 → (1, 1); any other index → (0, 0).
    VLXPoint getControlPointAtIndex(std::size_t index) const;

    /// The curve's y at x: solves x(t) = x for the curve parameter t, then evaluates y(t).
    /// Exact at the ends: x ≤ 0 (and NaN) gives 0, x ≥ 1 gives 1. The x control coordinates are
    /// clamped into [0, 1] for solving, so x(t) is monotonic and the solution unique; y may
    /// leave [0, 1] (overshooting curves). A curve with a non-finite control point is linear.
    double y(double x) const;

    /// "<VLXMediaTimingFunction: 0x…> (x1, y1, x2, y2)".
    std::string description() const override;

protected:
    VLXMediaTimingFunction(float x1, float y1, float x2, float y2);

private:
    float m_x1, m_y1, m_x2, m_y2;
    // Polynomial coefficients of x(t) and y(t) (Horner form), from the clamped points.
    double m_ax, m_bx, m_cx, m_ay, m_by, m_cy;
    bool m_linear;
};
