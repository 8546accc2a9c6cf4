#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <VelmarCoreUI/Platform/Foundation/VLXObject.h>
#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>
#include <VelmarCoreUI/Platform/Layers/VLXMediaTimingFunction.h>
#include <VelmarCoreUI/VLXExport.h>

class VLXLayer;
class VLXAnimation;

/// What an animation does outside its active span [0, activeDuration).
enum class VLXFillMode {
    Removed,    ///< applies only while active (the default)
    Forwards,   ///< keeps its end value after the span
    Backwards,  ///< shows its start value before a delayed start
    Both,       ///< both of the above
};

/// Start and stop notifications. Both methods are optional (empty by default). The animation
/// holds its delegate strongly; the callbacks receive the animation attached to the layer (the
/// copy made when it was added), so key-value values set before adding are readable there.
class VLX_EXPORT VLXAnimationDelegate {
public:
    virtual ~VLXAnimationDelegate();
    /// The animation really started (after its transaction was committed and its begin time
    /// reached), delivered by the run loop.
    virtual void animationDidStart(VLXAnimation& animation);
    /// `finished` is true when the animation ran to its end, false when it was removed or
    /// replaced before.
    virtual void animationDidStop(VLXAnimation& animation, bool finished);
};

/// Base of the layer animations: timing (duration, begin time, pacing, fill) and bookkeeping
/// (delegate, removal, key-value values), but no target. A layer attaches a copy when the
/// animation is added; the layer's timeline ticks it and its presentation asks it to apply.
///
/// Time: a layer resolves the begin time when the animation is committed (`beginTime` 0 means
/// "at the commit") and then passes the local time, seconds since that resolved begin, to
/// `applyToLayer`. The animation is active for local times in [0, activeDuration()); fill modes
/// decide whether it applies before and after. `speed`, repeats and autoreversing do not exist.
class VLX_EXPORT VLXAnimation : public VLXObject {
public:
    /// Duration used when `duration()` is 0, negative or NaN.
    static constexpr double kDefaultDuration = 0.25;

    static std::shared_ptr<VLXAnimation> create();

    /// Seconds; 0 (the default) means `kDefaultDuration` when run. Virtual so that animations
    /// that compute their length (springs) report it; the layer reads it when the animation is
    /// added and whenever it evaluates.
    virtual double duration() const { return m_duration; }
    void setDuration(double duration) { m_duration = duration; }
    /// `duration()`, or `kDefaultDuration` when that is 0, negative or NaN. +∞ stays: such an
    /// animation never finishes and holds its start value.
    double effectiveDuration() const;
    /// The length of the active span: `effectiveDuration()` (there are no repeats).
    double activeDuration() const { return effectiveDuration(); }

    /// 0 (the default) = the moment the transaction that added the animation commits. Otherwise
    /// an absolute media time (`VLXClock::now()` plus a delay) for layers, or an offset inside
    /// the parent's time for members of a group.
    double beginTime() const { return m_beginTime; }
    void setBeginTime(double beginTime) { m_beginTime = beginTime; }
    /// The begin time a layer resolves when the animation is committed at `commitTime`:
    /// `beginTime()` when it is finite and not 0, else `commitTime`.
    double resolvedBeginTime(double commitTime) const;

    /// Pacing; nil (the default) = linear.
    const std::shared_ptr<VLXMediaTimingFunction>& timingFunction() const {
        return m_timingFunction;
    }
    void setTimingFunction(std::shared_ptr<VLXMediaTimingFunction> timingFunction) {
        m_timingFunction = std::move(timingFunction);
    }

    VLXFillMode fillMode() const { return m_fillMode; }
    void setFillMode(VLXFillMode fillMode) { m_fillMode = fillMode; }

    /// True (the default): the layer drops the animation once it has finished.
    bool isRemovedOnCompletion() const { return m_removedOnCompletion; }
    void setRemovedOnCompletion(bool removedOnCompletion) {
        m_removedOnCompletion = removedOnCompletion;
    }

    /// Held strongly (the platform's rule for animation delegates); copied with the animation.
    const std::shared_ptr<VLXAnimationDelegate>& delegate() const { return m_delegate; }
    void setDelegate(std::shared_ptr<VLXAnimationDelegate> delegate) {
        m_delegate = std::move(delegate);
    }

    /// Extra values stored on the animation under any key; nil removes the key. Copied with the
    /// animation, so the attached copy answers what was set on the original.
    void setValue(VLXValue value, std::string_view key);
    VLXValue valueForKey(std::string_view key) const;

    /// A copy of the animation with everything set on it (timing, delegate, key-value values and
    /// the subclass's own state). A layer attaches a copy, so later changes to the original do
    /// not reach an attached animation. Subclasses override it (a subclass that does not copies
    /// as its nearest ancestor that does).
    virtual std::shared_ptr<VLXAnimation> copy() const;

    // --- evaluation (called by the layer's presentation) ------------------------------------

    /// The eased progress at `localTime` (seconds since the resolved begin), or nothing when the
    /// animation does not apply then: before the start without backwards fill, from the end on
    /// without forwards fill, or a NaN time. Inside the span: the timing function of
    /// localTime ÷ effectiveDuration(); filling backwards gives the curve's value at 0, filling
    /// forwards its value at 1.
    std::optional<double> progressAtTime(double localTime) const;

    /// Writes the animated values at `localTime` into `presentation` (a copy of `model` on which
    /// earlier animations already applied), through the presentation layer's
    /// `setValueForKeyPath`, which triggers no actions there. `model` is the layer the
    /// animation is attached to, read for "to the current model value". Does nothing when
    /// `progressAtTime` gives nothing.
    void applyToLayer(VLXLayer& presentation, const VLXLayer& model, double localTime) const;

    /// Writes the values at an eased progress (0 = start, 1 = end; values outside extrapolate
    /// where the kind allows). The base animation animates nothing.
    virtual void applyAtProgress(VLXLayer& presentation, const VLXLayer& model,
                                 double progress) const;

    /// Called by the layer on the attached copy when it is added, with the value source of that
    /// moment (the presentation layer, or the model when there is none yet), so that an end
    /// left nil starts from what was on screen then rather than from a model that the caller
    /// may change right after adding. Without the call, such an end reads the presentation
    /// being built at each evaluation.
    virtual void prepareForLayer(const VLXLayer& current);

    std::string description() const override;

protected:
    VLXAnimation() = default;
    /// Copies the state of `other` (not its associated objects).
    VLXAnimation(const VLXAnimation& other);

    /// Progress rule shared with groups: nothing for a NaN time, the fill rules of `fill`
    /// outside [0, duration), the eased fraction inside.
    static std::optional<double> resolveProgress(double localTime, double duration,
                                                 VLXFillMode fill,
                                                 const VLXMediaTimingFunction* timing);

private:
    double m_duration = 0;
    double m_beginTime = 0;
    std::shared_ptr<VLXMediaTimingFunction> m_timingFunction;
    VLXFillMode m_fillMode = VLXFillMode::Removed;
    bool m_removedOnCompletion = true;
    std::shared_ptr<VLXAnimationDelegate> m_delegate;
    std::map<std::string, VLXValue, std::less<>> m_values;
};

/// An animation of one layer property, named by a key path ("opacity", "position",
/// "transform.scale", "transform.translation.x", a subclass's stored key …).
class VLX_EXPORT VLXPropertyAnimation : public VLXAnimation {
public:
    static std::shared_ptr<VLXPropertyAnimation> animationWithKeyPath(std::string keyPath);

    const std::string& keyPath() const { return m_keyPath; }
    void setKeyPath(std::string keyPath) { m_keyPath = std::move(keyPath); }

    std::shared_ptr<VLXAnimation> copy() const override;
    /// Reads the key path of `current` and keeps it as the start value for ends left nil.
    void prepareForLayer(const VLXLayer& current) override;
    /// Computes `valueAtProgress(progress, base, model)` with base = the presentation's value at
    /// the key path (the captured one when `prepareForLayer` ran) and model = the model's, and
    /// writes it to the presentation. A nil result writes nothing.
    void applyAtProgress(VLXLayer& presentation, const VLXLayer& model,
                         double progress) const override;

    /// The animated value at an eased progress. `base` stands for the value underneath (what
    /// was on screen), `model` for the layer's model value; subclasses decide which they use.
    /// The property animation itself has no values: nil.
    virtual VLXValue valueAtProgress(double progress, const VLXValue& base,
                                     const VLXValue& model) const;

    /// The value captured by `prepareForLayer` (what was on screen when the animation was
    /// added), if it ran.
    const std::optional<VLXValue>& capturedBase() const { return m_capturedBase; }

    std::string description() const override;

protected:
    VLXPropertyAnimation() = default;
    VLXPropertyAnimation(const VLXPropertyAnimation& other);

private:
    std::string m_keyPath;
    std::optional<VLXValue> m_capturedBase;
};
