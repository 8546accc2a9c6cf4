#include <VelmarCoreUI/Platform/Layers/VLXAnimation.h>

#include <cmath>

#include <VelmarCoreUI/Platform/Foundation/VLXStringFormat.h>
#include <VelmarCoreUI/Platform/Layers/VLXLayer.h>

VLXAnimationDelegate::~VLXAnimationDelegate() = default;

void VLXAnimationDelegate::animationDidStart(VLXAnimation&) {}

void VLXAnimationDelegate::animationDidStop(VLXAnimation&, bool) {}

// --- VLXAnimation ----------------------------------------------------------------------------

VLXAnimation::VLXAnimation(const VLXAnimation& other)
    : VLXObject(),
      m_duration(other.m_duration),
      m_beginTime(other.m_beginTime),
      m_timingFunction(other.m_timingFunction),
      m_fillMode(other.m_fillMode),
      m_removedOnCompletion(other.m_removedOnCompletion),
      m_delegate(other.m_delegate),
      m_values(other.m_values) {}

std::shared_ptr<VLXAnimation> VLXAnimation::create() {
    return makeInitialized<VLXAnimation>();
}

double VLXAnimation::effectiveDuration() const {
    const double d = duration();
    return d > 0.0 ? d : kDefaultDuration;  // NaN fails the test too
}

double VLXAnimation::resolvedBeginTime(double commitTime) const {
    return (std::isfinite(m_beginTime) && m_beginTime != 0.0) ? m_beginTime : commitTime;
}

void VLXAnimation::setValue(VLXValue value, std::string_view key) {
    if (value.isNil()) {
        if (auto it = m_values.find(key); it != m_values.end()) {
            m_values.erase(it);
        }
        return;
    }
    m_values.insert_or_assign(std::string(key), std::move(value));
}

VLXValue VLXAnimation::valueForKey(std::string_view key) const {
    auto it = m_values.find(key);
    return it == m_values.end() ? VLXValue() : it->second;
}

std::shared_ptr<VLXAnimation> VLXAnimation::copy() const {
    return VLXMakeShared<VLXAnimation>(*this);
}

std::optional<double> VLXAnimation::resolveProgress(double localTime, double duration,
                                                    VLXFillMode fill,
                                                    const VLXMediaTimingFunction* timing) {
    if (std::isnan(localTime) || std::isnan(duration)) {
        return std::nullopt;
    }
    double fraction;
    if (localTime < 0.0) {
        if (fill != VLXFillMode::Backwards && fill != VLXFillMode::Both) {
            return std::nullopt;
        }
        fraction = 0.0;
    } else if (localTime >= duration) {
        if (fill != VLXFillMode::Forwards && fill != VLXFillMode::Both) {
            return std::nullopt;
        }
        fraction = 1.0;
    } else {
        // duration > localTime >= 0 here, so the quotient is finite (0 for an endless one).
        fraction = localTime / duration;
    }
    return timing ? timing->y(fraction) : fraction;
}

std::optional<double> VLXAnimation::progressAtTime(double localTime) const {
    return resolveProgress(localTime, effectiveDuration(), m_fillMode, m_timingFunction.get());
}

void VLXAnimation::applyToLayer(VLXLayer& presentation, const VLXLayer& model,
                                double localTime) const {
    if (auto progress = progressAtTime(localTime)) {
        applyAtProgress(presentation, model, *progress);
    }
}

void VLXAnimation::applyAtProgress(VLXLayer&, const VLXLayer&, double) const {}

void VLXAnimation::prepareForLayer(const VLXLayer&) {}

std::string VLXAnimation::description() const {
    return VLXStringWithFormat("<%s: %p> duration: %g, beginTime: %g", className().c_str(),
                               static_cast<const void*>(this), duration(), m_beginTime);
}

// --- VLXPropertyAnimation --------------------------------------------------------------------

VLXPropertyAnimation::VLXPropertyAnimation(const VLXPropertyAnimation& other)
    : VLXAnimation(other), m_keyPath(other.m_keyPath), m_capturedBase(other.m_capturedBase) {}

std::shared_ptr<VLXPropertyAnimation> VLXPropertyAnimation::animationWithKeyPath(
    std::string keyPath) {
    auto animation = makeInitialized<VLXPropertyAnimation>();
    animation->setKeyPath(std::move(keyPath));
    return animation;
}

std::shared_ptr<VLXAnimation> VLXPropertyAnimation::copy() const {
    return VLXMakeShared<VLXPropertyAnimation>(*this);
}

void VLXPropertyAnimation::prepareForLayer(const VLXLayer& current) {
    m_capturedBase = current.valueForKeyPath(m_keyPath);
}

void VLXPropertyAnimation::applyAtProgress(VLXLayer& presentation, const VLXLayer& model,
                                           double progress) const {
    if (m_keyPath.empty()) {
        return;
    }
    const VLXValue base =
        m_capturedBase ? *m_capturedBase : presentation.valueForKeyPath(m_keyPath);
    VLXValue value = valueAtProgress(progress, base, model.valueForKeyPath(m_keyPath));
    if (!value.isNil()) {
        presentation.setValueForKeyPath(value, m_keyPath);
    }
}

VLXValue VLXPropertyAnimation::valueAtProgress(double, const VLXValue&, const VLXValue&) const {
    return {};
}

std::string VLXPropertyAnimation::description() const {
    return VLXStringWithFormat("<%s: %p> keyPath: %s, duration: %g", className().c_str(),
                               static_cast<const void*>(this), m_keyPath.c_str(), duration());
}
