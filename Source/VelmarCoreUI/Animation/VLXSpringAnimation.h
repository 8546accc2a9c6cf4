#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>
#include <VelmarCoreUI/Platform/Layers/VLXKeyframeAnimation.h>
#include <VelmarCoreUI/VLXExport.h>

// --- spring mathematics ------------------------------------------------------------------

/// `distance` × 0.0001 (the single-precision constant widened); no absolute value is taken.
VLX_EXPORT double VLXSpringAnimationThreshold(double distance);
/// The damped angular frequency √(k/m − c²/(4m²)); 0 when that is not a number (over- or
/// critically damped springs, m = 0).
VLX_EXPORT double VLXAngularFrequency(double stiffness, double mass, double damping);
/// The signed distance still to go at time t: A·e^(−c/(2m)·t)·cos(ωd·t + phase); 0 when A is 0.
VLX_EXPORT double VLXRelativePosition(double amplitude, double time, double phase, double damping,
                                      double mass, double stiffness);
/// x0 + A − `VLXRelativePosition`(…): with A = target − start, the position at time t.
VLX_EXPORT double VLXAbsolutePosition(double amplitude, double time, double phase, double damping,
                                      double mass, double stiffness, double startPosition);
/// |current − previous| ≤ threshold and |previous − target| ≤ threshold.
VLX_EXPORT bool VLXThresholdReached(double previous, double current, double target,
                                    double threshold);
/// For each (previous, current, target) triple, both differences are below the single-precision
/// 0.001.
VLX_EXPORT bool VLXCalculationsAreComplete(double previous1, double current1, double target1,
                                           double previous2, double current2, double target2,
                                           double previous3, double current3, double target3);

/// A keyframe animation whose frames come from a damped mass–spring model.
///
/// The value (a number, point, size, rectangle, affine or 3-D transform: the kind of
/// `fromValue` decides) is taken apart into components; each follows its own one-dimensional
/// spring with the same mass, damping and stiffness, sampled every millisecond until two
/// consecutive frames and the earlier frame's distance to the target are all within
/// 0.0001 × the component's distance. Frames are computed lazily and cached until an input
/// changes; `duration()` is the frame count × 0.001 s. Adding the animation to a layer copies it
/// with its frames.
///
/// Odd input: a damping of 0 or less is replaced by 1 (with a message on standard error); other
/// kinds of value give no frames; a NaN or infinite component, or a mass, damping or stiffness
/// that is NaN or infinite, or a mass of 0 or less, gives no frames either (the motion would not
/// settle); and a spring that has not settled after `kMaximumFrames` frames ends there.
class VLX_EXPORT VLXSpringAnimation : public VLXKeyframeAnimation {
public:
    /// 250 s of spring time: far beyond a damping of 1 with the default mass (about 92 s), and
    /// small enough that a spring that never settles (damping near 0) costs tens of MB at most.
    static constexpr std::size_t kMaximumFrames = 250'000;

    static std::shared_ptr<VLXSpringAnimation> create();
    static std::shared_ptr<VLXSpringAnimation> animationWithKeyPath(std::string keyPath);

    /// The computed frames (computing them when needed); nil when the kind is not supported.
    const std::optional<VLXValue::Array>& interpolatedValues() const;
    void setInterpolatedValues(std::optional<VLXValue::Array> values);

    /// Raised by every input setter, cleared when frames are computed.
    bool needsRecalculation() const { return m_needsRecalculation; }
    void setNeedsRecalculation(bool needs) { m_needsRecalculation = needs; }

    /// Spring constant k; 300 by default.
    double stiffness() const { return m_stiffness; }
    void setStiffness(double stiffness);
    /// Damping coefficient c; 30 by default; values ≤ 0 become 1.
    double damping() const { return m_damping; }
    void setDamping(double damping);
    /// Mass m; 5 by default.
    double mass() const { return m_mass; }
    void setMass(double mass);
    const VLXValue& fromValue() const { return m_fromValue; }
    void setFromValue(VLXValue fromValue);
    const VLXValue& toValue() const { return m_toValue; }
    void setToValue(VLXValue toValue);

    /// 0 when either end is nil, else the number of frames × 0.001 (single precision).
    double duration() const override;
    /// `interpolatedValues`, or an empty list when there are none.
    const VLXValue::Array& values() const override;

    /// The copy carries the computed frames (computed now if needed) and does not recompute.
    std::shared_ptr<VLXAnimation> copy() const override;

    /// Computes the frames from the current inputs and stores them.
    void calculateInterpolatedValues() const;

    /// The sampling loop: `map` turns each frame's components (pointer and count) into a value.
    /// No frames for an empty start list; end components missing from `toNumbers` read 0.
    VLXValue::Array valuesFromNumbers(
        const VLXValue::Array& fromNumbers, const VLXValue::Array& toNumbers,
        const std::function<VLXValue(const double* components, std::size_t count)>& map) const;

    /// "<VLXSpringAnimation: 0x…> mass: 5.000000, damping: …, stiffness: …, keyPath: …,
    /// toValue: …, fromValue …".
    std::string description() const override;

protected:
    VLXSpringAnimation() = default;
    VLXSpringAnimation(const VLXSpringAnimation& other);
    void init() override;

private:
    mutable std::optional<VLXValue::Array> m_interpolatedValues;
    mutable bool m_needsRecalculation = false;
    double m_stiffness = 0;
    double m_damping = 0;
    double m_mass = 0;
    VLXValue m_fromValue;
    VLXValue m_toValue;
};
