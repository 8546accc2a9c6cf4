#include <VelmarCoreUI/Platform/Input/VLXPanGestureRecognizer.h>

#include <algorithm>
#include <cmath>
#include <deque>

#include <VelmarCoreUI/Platform/Input/Private/VLXFingers.h>
#include <VelmarCoreUI/Platform/Input/VLXEvent.h>
#include <VelmarCoreUI/Platform/Views/VLXView.h>

namespace {
// Velocity is measured over the samples of this many recent seconds.
constexpr double kVelocityWindow = 0.1;
constexpr std::size_t kMaximumSamples = 64;

bool isFinite(VLXPoint p) {
    return std::isfinite(p.x) && std::isfinite(p.y);
}
VLXPoint difference(VLXPoint a, VLXPoint b) {
    return {a.x - b.x, a.y - b.y};
}
// The vector `delta` (window directions) in `view`'s coordinate directions.
VLXPoint deltaInView(VLXPoint delta, VLXPoint at, const VLXView* view) {
    if (!view) {
        return delta;
    }
    const VLXPoint result =
        difference(view->convertPointFromView({at.x + delta.x, at.y + delta.y}, nullptr),
                   view->convertPointFromView(at, nullptr));
    return isFinite(result) ? result : VLXPoint{};
}
}  // namespace

struct VLXPanGestureRecognizer::Impl {
    struct Sample {
        double time;
        VLXPoint translation;  // window directions
    };
    VLXTouchSet fingers;
    VLXPoint centroid{};  // window coordinates; the last one once every finger is up
    VLXPoint base{};      // translation = centroid - base
    std::deque<Sample> samples;
    bool fresh = true;  // the next touch-down starts a new drag

    VLXPoint currentCentroid() const {
        if (fingers.empty()) {
            return centroid;
        }
        VLXPoint sum{};
        for (const auto& finger : fingers) {
            const VLXPoint p = finger->locationInView(nullptr);
            sum.x += p.x;
            sum.y += p.y;
        }
        const auto n = static_cast<double>(fingers.size());
        return {sum.x / n, sum.y / n};
    }
    VLXPoint translation() const { return difference(centroid, base); }
    // Takes the fingers' positions at `time` into the centroid and the samples.
    void track(double time) {
        centroid = currentCentroid();
        if (!samples.empty() && !(time >= samples.back().time)) {
            time = samples.back().time;  // the clock never runs backwards here
        }
        samples.push_back({time, translation()});
        while (samples.size() > kMaximumSamples) {
            samples.pop_front();
        }
    }
    // After fingers came or went: the translation carries on from where it was.
    void rebase() {
        const VLXPoint kept = translation();
        if (!fingers.empty()) {
            centroid = currentCentroid();
        }
        base = difference(centroid, kept);
    }
    VLXPoint velocity() const {
        if (samples.size() < 2) {
            return {};
        }
        const Sample& last = samples.back();
        const std::size_t from = vlx::detail::velocityStart(samples, kVelocityWindow);
        const double dt = last.time - samples[from].time;
        if (!(dt > 0)) {
            return {};
        }
        const VLXPoint d = difference(last.translation, samples[from].translation);
        const VLXPoint v{d.x / dt, d.y / dt};
        return isFinite(v) ? v : VLXPoint{};
    }
};

VLXPanGestureRecognizer::VLXPanGestureRecognizer() : m_impl(std::make_unique<Impl>()) {}

VLXPanGestureRecognizer::~VLXPanGestureRecognizer() = default;

std::shared_ptr<VLXPanGestureRecognizer> VLXPanGestureRecognizer::create() {
    return makeInitialized<VLXPanGestureRecognizer>();
}

void VLXPanGestureRecognizer::setMinimumNumberOfTouches(std::uint32_t touches) {
    m_minimumTouches = std::max<std::uint32_t>(touches, 1);
}

VLXPoint VLXPanGestureRecognizer::translationInView(const VLXView* view) const {
    if (!view) {
        return m_impl->translation();
    }
    // Both points into the view, so that a rotated or scaled view reads its own directions.
    const VLXPoint result = difference(view->convertPointFromView(m_impl->centroid, nullptr),
                                       view->convertPointFromView(m_impl->base, nullptr));
    return isFinite(result) ? result : VLXPoint{};
}

void VLXPanGestureRecognizer::setTranslation(VLXPoint translation, const VLXView* view) {
    if (!isFinite(translation)) {
        return;
    }
    VLXPoint base = difference(m_impl->centroid, translation);
    if (view) {
        const VLXPoint inView = view->convertPointFromView(m_impl->centroid, nullptr);
        base = view->convertPointToView(difference(inView, translation), nullptr);
    }
    if (!isFinite(base)) {
        return;
    }
    m_impl->base = base;
    // Velocity is measured from here on.
    m_impl->samples.clear();
}

VLXPoint VLXPanGestureRecognizer::velocityInView(const VLXView* view) const {
    return deltaInView(m_impl->velocity(), m_impl->centroid, view);
}

void VLXPanGestureRecognizer::touchesBegan(const VLXTouchSet& touches, const VLXEvent& event) {
    const VLXGestureRecognizerState current = state();
    const bool active = current == VLXGestureRecognizerState::Began ||
                        current == VLXGestureRecognizerState::Changed;
    if (current != VLXGestureRecognizerState::Possible && !active) {
        return;
    }
    bool added = false;
    for (const auto& touch : touches) {
        if (!touch || vlx::detail::containsTouch(m_impl->fingers, touch.get())) {
            continue;
        }
        // Once the drag is on, fingers past the maximum are not followed.
        if (active && m_impl->fingers.size() >= m_maximumTouches) {
            ignoreTouch(touch, event);
            continue;
        }
        m_impl->fingers.push_back(touch);
        added = true;
    }
    if (!added) {
        return;
    }
    if (m_impl->fresh) {
        m_impl->fresh = false;
        m_impl->samples.clear();
        m_impl->centroid = m_impl->currentCentroid();
        m_impl->base = m_impl->centroid;
    } else {
        m_impl->rebase();
    }
    m_impl->track(vlx::detail::latestTime(touches, event));
}

void VLXPanGestureRecognizer::touchesMoved(const VLXTouchSet& touches, const VLXEvent& event) {
    const VLXGestureRecognizerState current = state();
    const bool ours = vlx::detail::containsAnyTouch(m_impl->fingers, touches);
    if (!ours) {
        return;
    }
    m_impl->track(vlx::detail::latestTime(touches, event));
    if (current == VLXGestureRecognizerState::Possible) {
        const std::size_t count = m_impl->fingers.size();
        const VLXPoint t = m_impl->translation();
        if (count >= m_minimumTouches && count <= m_maximumTouches &&
            std::hypot(t.x, t.y) > kHysteresis) {
            setState(VLXGestureRecognizerState::Began);
        }
    } else if (current == VLXGestureRecognizerState::Began ||
               current == VLXGestureRecognizerState::Changed) {
        setState(VLXGestureRecognizerState::Changed);
    }
}

void VLXPanGestureRecognizer::touchesEnded(const VLXTouchSet& touches, const VLXEvent& event) {
    const bool ours = vlx::detail::containsAnyTouch(m_impl->fingers, touches);
    if (!ours) {
        return;
    }
    // Where the lifting fingers were last counts, then the rest carry on from there.
    m_impl->track(vlx::detail::latestTime(touches, event));
    vlx::detail::removeTouches(m_impl->fingers, touches);
    m_impl->rebase();
    if (!m_impl->fingers.empty()) {
        return;
    }
    finishGesture(VLXGestureRecognizerState::Failed, VLXGestureRecognizerState::Ended);
}

void VLXPanGestureRecognizer::touchesCancelled(const VLXTouchSet& touches, const VLXEvent&) {
    const bool ours = vlx::detail::containsAnyTouch(m_impl->fingers, touches);
    if (!ours) {
        return;
    }
    vlx::detail::removeTouches(m_impl->fingers, touches);
    m_impl->rebase();
    finishGesture(VLXGestureRecognizerState::Failed, VLXGestureRecognizerState::Cancelled);
}

void VLXPanGestureRecognizer::reset() {
    // The translation and velocity of the finished drag stay readable until the next one.
    m_impl->fingers.clear();
    m_impl->fresh = true;
    VLXGestureRecognizer::reset();
}
