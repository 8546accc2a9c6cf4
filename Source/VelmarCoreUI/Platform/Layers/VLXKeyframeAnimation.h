#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>
#include <VelmarCoreUI/Platform/Layers/VLXAnimation.h>
#include <VelmarCoreUI/Platform/Layers/VLXInterpolation.h>
#include <VelmarCoreUI/VLXExport.h>

/// How a keyframe animation moves between its key frames.
enum class VLXAnimationCalculationMode {
    Linear,    ///< straight interpolation between neighbouring key frames (the default)
    Discrete,  ///< each key frame holds until the next key time
    Paced,     ///< evaluated as Linear
    Cubic,     ///< evaluated as Linear
};

/// A property animation through a list of key frames.
///
/// Key frame i is reached at key time i (a fraction of the duration). Without key times, or
/// when they do not fit (a different count from the values, a NaN, a decrease, a value outside
/// [0, 1]), the frames are evenly spaced at i ÷ (n − 1). The eased progress is clamped to
/// [0, 1]. One key frame holds its value throughout; none animates nothing.
///
/// Evaluation is built for long frame lists on many layers: on first use the frames are
/// unpacked once into a flat array of numbers (when they are all of one interpolable kind), and
/// each evaluation then finds its segment by binary search over the key times (or by index
/// arithmetic for even spacing) and interpolates without allocating (boxing the result for a
/// geometric kind is the only allocation).
class VLX_EXPORT VLXKeyframeAnimation : public VLXPropertyAnimation {
public:
    static std::shared_ptr<VLXKeyframeAnimation> create();
    static std::shared_ptr<VLXKeyframeAnimation> animationWithKeyPath(std::string keyPath);

    ~VLXKeyframeAnimation() override;

    /// The key frames. Virtual so that subclasses can compute them (springs).
    virtual const VLXValue::Array& values() const { return m_values; }
    void setValues(VLXValue::Array values);

    /// Fractions of the duration at which each key frame is reached; nil = evenly spaced.
    const std::optional<std::vector<double>>& keyTimes() const { return m_keyTimes; }
    void setKeyTimes(std::optional<std::vector<double>> keyTimes);

    VLXAnimationCalculationMode calculationMode() const { return m_calculationMode; }
    void setCalculationMode(VLXAnimationCalculationMode mode) { m_calculationMode = mode; }

    /// Stored and copied only: per-segment pacing is not evaluated.
    const std::vector<std::shared_ptr<VLXMediaTimingFunction>>& timingFunctions() const {
        return m_timingFunctions;
    }
    void setTimingFunctions(std::vector<std::shared_ptr<VLXMediaTimingFunction>> functions) {
        m_timingFunctions = std::move(functions);
    }

    std::shared_ptr<VLXAnimation> copy() const override;
    /// Writes `valueAtProgress(progress)` to the presentation (reads nothing from the layers).
    void applyAtProgress(VLXLayer& presentation, const VLXLayer& model,
                         double progress) const override;

    /// The value at an eased progress (clamped to [0, 1]); `base` and `model` are not used.
    /// Nil when there are no key frames.
    VLXValue valueAtProgress(double progress, const VLXValue& base,
                             const VLXValue& model) const override;
    VLXValue valueAtProgress(double progress) const;

    /// The segment for `progress` (clamped to [0, 1]): the index i of the key frame that starts
    /// it (so the value lies between frames i and i + 1; the last index at the very end) and the
    /// fraction within it. Nothing when there are no key frames.
    struct Segment {
        std::size_t index;
        double fraction;
    };
    std::optional<Segment> segmentAtProgress(double progress) const;

    /// The key frames unpacked as plain numbers, for hosts that evaluate many animations in one
    /// loop (the layers' animation tick does). `values` holds `count` numbers, `keyTimes` the
    /// fitting key times (null: evenly spaced); the pointers stay valid while
    /// `numberFramesSerial()` still answers `serial`. Nothing when the frames are not all numbers
    /// (booleans count as flags, not numbers) or there are none.
    struct NumberFrames {
        const double* values;
        std::size_t count;
        const double* keyTimes;
        std::uint64_t serial;
    };
    std::optional<NumberFrames> numberFrames() const;
    /// A number never used before each time the unpacked frames are rebuilt; 0 while there are
    /// none (after `setValues`, `setKeyTimes` or `invalidateEvaluationCache`).
    std::uint64_t numberFramesSerial() const { return m_cacheSerial; }
    /// Counts every drop of any keyframe animation's unpacked frames (frames or key times
    /// replaced, `invalidateEvaluationCache`, the animation destroyed): a host holding the
    /// `NumberFrames` of many animations compares this one number per frame instead of asking
    /// each animation.
    static std::uint64_t numberFramesDropCount();
    /// The value of `frames` at an eased progress, as `valueAtProgress` computes it (the same
    /// segment search, interpolation and discrete rule). `exactFrame` receives the index of the
    /// frame returned as it is (at a frame or in discrete mode), or −1 for an interpolated value.
#if defined(__GNUC__)
    [[gnu::always_inline]]
#endif
    static double
    numberAtProgress(const NumberFrames& frames, double progress, bool discrete,
                     std::ptrdiff_t* exactFrame = nullptr) {
        const std::size_t count = frames.count;
        const double p = progress > 0.0 ? (progress < 1.0 ? progress : 1.0) : 0.0;  // NaN → 0
        std::size_t i = 0;
        double fraction = 0.0;
        if (count <= 1 || p >= 1.0) {
            i = count > 0 ? count - 1 : 0;
        } else if (!frames.keyTimes) {
            // Even spacing: the segment is the index itself, no search.
            const double x = p * static_cast<double>(count - 1);
            i = static_cast<std::size_t>(x);
            i = i < count - 2 ? i : count - 2;
            fraction = x - static_cast<double>(i);
        } else {
            const double* times = frames.keyTimes;
            if (p < times[0]) {
                i = 0;
            } else if (p >= times[count - 1]) {
                i = count - 1;
            } else {
                i = static_cast<std::size_t>(std::upper_bound(times, times + count, p) - times) - 1;
                fraction = (p - times[i]) / (times[i + 1] - times[i]);
            }
        }
        if (fraction == 0.0 || i + 1 >= count || discrete) {
            if (exactFrame) {
                *exactFrame = static_cast<std::ptrdiff_t>(i);
            }
            return frames.values[i];
        }
        if (exactFrame) {
            *exactFrame = -1;
        }
        return VLXInterpolateDouble(frames.values[i], frames.values[i + 1], fraction);
    }

    std::string description() const override;

protected:
    VLXKeyframeAnimation();
    VLXKeyframeAnimation(const VLXKeyframeAnimation& other);

    /// Subclasses whose `values()` change call this so the unpacked frames are rebuilt.
    void invalidateEvaluationCache() const;

private:
    struct EvaluationCache;
    const EvaluationCache& evaluationCache() const;

    VLXValue::Array m_values;
    std::optional<std::vector<double>> m_keyTimes;
    VLXAnimationCalculationMode m_calculationMode = VLXAnimationCalculationMode::Linear;
    std::vector<std::shared_ptr<VLXMediaTimingFunction>> m_timingFunctions;
    mutable std::unique_ptr<EvaluationCache> m_cache;
    mutable std::uint64_t m_cacheSerial = 0;
};
