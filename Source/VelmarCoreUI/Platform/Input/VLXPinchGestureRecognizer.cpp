#include <VelmarCoreUI/Platform/Input/VLXPinchGestureRecognizer.h>

#include <algorithm>
#include <cmath>
#include <deque>

#include <VelmarCoreUI/Platform/Input/Private/VLXFingers.h>
#include <VelmarCoreUI/Platform/Input/VLXEvent.h>

namespace {
// Velocity is measured over the samples of this many recent seconds.
constexpr double kVelocityWindow = 0.1;
constexpr std::size_t kMaximumSamples = 64;
// Distances below this count as this when divided by, so that fingers that came down on one
// point give a large but finite scale.
constexpr double kMinimumMeasuredDistance = 1.0;
}  // namespace

struct VLXPinchGestureRecognizer::Impl {
    struct Sample {
        double time;
        double scale;
    };
    VLXTouchSet fingers;       // at most two
    double startDistance = 0;  // when the second finger came down, for the hysteresis
    double baseDistance = 0;   // the distance that `baseScale` stands for
    double baseScale = 1;
    std::deque<Sample> samples;

    double distance() const {
        if (fingers.size() < 2) {
            return 0;
        }
        const VLXPoint a = fingers[0]->locationInView(nullptr);
        const VLXPoint b = fingers[1]->locationInView(nullptr);
        return std::hypot(a.x - b.x, a.y - b.y);
    }
    void restartFrom(double scale) {
        baseScale = scale;
        baseDistance = distance();
    }
    double measuredScale(double fallback) const {
        const double s = baseScale * distance() / std::max(baseDistance, kMinimumMeasuredDistance);
        return std::isfinite(s) ? s : fallback;
    }
    void sample(double time, double scale) {
        if (!samples.empty() && !(time >= samples.back().time)) {
            time = samples.back().time;
        }
        samples.push_back({time, scale});
        while (samples.size() > kMaximumSamples) {
            samples.pop_front();
        }
    }
    double velocity() const {
        if (samples.size() < 2) {
            return 0;
        }
        const Sample& last = samples.back();
        const std::size_t from = vlx::detail::velocityStart(samples, kVelocityWindow);
        const double dt = last.time - samples[from].time;
        if (!(dt > 0)) {
            return 0;
        }
        const double v = (last.scale - samples[from].scale) / dt;
        return std::isfinite(v) ? v : 0;
    }
};

namespace {
bool isActive(VLXGestureRecognizerState state) {
    return state == VLXGestureRecognizerState::Began || state == VLXGestureRecognizerState::Changed;
}
}  // namespace

VLXPinchGestureRecognizer::VLXPinchGestureRecognizer() : m_impl(std::make_unique<Impl>()) {}

VLXPinchGestureRecognizer::~VLXPinchGestureRecognizer() = default;

std::shared_ptr<VLXPinchGestureRecognizer> VLXPinchGestureRecognizer::create() {
    return makeInitialized<VLXPinchGestureRecognizer>();
}

void VLXPinchGestureRecognizer::setScale(double scale) {
    if (!std::isfinite(scale)) {
        return;
    }
    m_scale = scale;
    m_impl->restartFrom(scale);
    m_impl->samples.clear();
    m_velocity = 0;
}

void VLXPinchGestureRecognizer::touchesBegan(const VLXTouchSet& touches, const VLXEvent& event) {
    const VLXGestureRecognizerState current = state();
    if (current != VLXGestureRecognizerState::Possible && !isActive(current)) {
        return;
    }
    bool added = false;
    for (const auto& touch : touches) {
        if (!touch || vlx::detail::containsTouch(m_impl->fingers, touch.get())) {
            continue;
        }
        if (m_impl->fingers.size() >= 2) {
            ignoreTouch(touch, event);  // a third finger is not part of the pinch
            continue;
        }
        m_impl->fingers.push_back(touch);
        added = true;
    }
    if (!added || m_impl->fingers.size() < 2) {
        return;
    }
    if (current == VLXGestureRecognizerState::Possible) {
        m_impl->startDistance = m_impl->distance();
        m_impl->samples.clear();
    }
    // A second finger again: the scale carries on from where it held.
    m_impl->restartFrom(m_scale);
    m_impl->sample(vlx::detail::latestTime(touches, event), m_scale);
}

void VLXPinchGestureRecognizer::touchesMoved(const VLXTouchSet& touches, const VLXEvent& event) {
    const bool ours = vlx::detail::containsAnyTouch(m_impl->fingers, touches);
    const VLXGestureRecognizerState current = state();
    if (!ours || m_impl->fingers.empty()) {
        return;
    }
    if (m_impl->fingers.size() == 2) {
        m_scale = m_impl->measuredScale(m_scale);
        m_impl->sample(vlx::detail::latestTime(touches, event), m_scale);
        m_velocity = m_impl->velocity();
    }
    if (current == VLXGestureRecognizerState::Possible) {
        if (m_impl->fingers.size() == 2 &&
            std::abs(m_impl->distance() - m_impl->startDistance) > kHysteresis) {
            setState(VLXGestureRecognizerState::Began);
        }
    } else if (isActive(current)) {
        setState(VLXGestureRecognizerState::Changed);
    }
}

void VLXPinchGestureRecognizer::touchesEnded(const VLXTouchSet& touches, const VLXEvent& event) {
    const bool ours = vlx::detail::containsAnyTouch(m_impl->fingers, touches);
    if (!ours) {
        return;
    }
    if (m_impl->fingers.size() == 2) {
        // The lift's own position is the last measure.
        m_scale = m_impl->measuredScale(m_scale);
        m_impl->sample(vlx::detail::latestTime(touches, event), m_scale);
        m_velocity = m_impl->velocity();
    }
    vlx::detail::removeTouches(m_impl->fingers, touches);
    const VLXGestureRecognizerState current = state();
    if (current == VLXGestureRecognizerState::Possible) {
        setState(VLXGestureRecognizerState::Failed);
    } else if (isActive(current) && m_impl->fingers.empty()) {
        setState(VLXGestureRecognizerState::Ended);
    }
}

void VLXPinchGestureRecognizer::touchesCancelled(const VLXTouchSet& touches, const VLXEvent&) {
    const bool ours = vlx::detail::containsAnyTouch(m_impl->fingers, touches);
    if (!ours) {
        return;
    }
    vlx::detail::removeTouches(m_impl->fingers, touches);
    finishGesture(VLXGestureRecognizerState::Failed, VLXGestureRecognizerState::Cancelled);
}

void VLXPinchGestureRecognizer::reset() {
    m_impl->fingers.clear();
    m_impl->samples.clear();
    m_impl->startDistance = 0;
    m_impl->baseDistance = 0;
    m_impl->baseScale = 1;
    m_scale = 1;
    m_velocity = 0;
    VLXGestureRecognizer::reset();
}
