#include <VelmarCoreUI/Platform/Input/VLXTapGestureRecognizer.h>

#include <algorithm>
#include <cmath>
#include <optional>

#include <VelmarCoreUI/Platform/Foundation/VLXTimer.h>
#include <VelmarCoreUI/Platform/Input/Private/VLXFingers.h>
#include <VelmarCoreUI/Platform/Views/VLXView.h>

namespace {
double distanceBetween(VLXPoint a, VLXPoint b) {
    return std::hypot(a.x - b.x, a.y - b.y);
}
}  // namespace

struct VLXTapGestureRecognizer::Impl {
    std::vector<vlx::detail::HeldFinger> fingers;  // down now
    std::uint32_t tapsDone = 0;                    // completed taps of the series
    std::uint32_t downThisTap = 0;                 // fingers that came down during the current tap
    bool allDownTogether = false;                  // the required fingers were down at one moment
    std::shared_ptr<VLXTimer> timer;               // the wait for the next tap
    std::vector<VLXPoint> lifts;      // where the fingers of the current tap lifted (window)
    std::optional<VLXPoint> lastTap;  // the centroid of those once the tap completed

    vlx::detail::HeldFinger* find(const VLXTouch* touch) {
        return vlx::detail::findFinger(fingers, touch);
    }
    void stopTimer() { vlx::detail::stopTimer(timer); }
};

VLXTapGestureRecognizer::VLXTapGestureRecognizer() : m_impl(std::make_unique<Impl>()) {}

VLXTapGestureRecognizer::~VLXTapGestureRecognizer() {
    m_impl->stopTimer();
}

std::shared_ptr<VLXTapGestureRecognizer> VLXTapGestureRecognizer::create() {
    return makeInitialized<VLXTapGestureRecognizer>();
}

void VLXTapGestureRecognizer::setNumberOfTapsRequired(std::uint32_t taps) {
    m_tapsRequired = std::max<std::uint32_t>(taps, 1);
}

void VLXTapGestureRecognizer::setNumberOfTouchesRequired(std::uint32_t touches) {
    m_touchesRequired = std::max<std::uint32_t>(touches, 1);
}

VLXPoint VLXTapGestureRecognizer::locationInView(const VLXView* view) const {
    // While the last fingers lift the base still counts them; the tap's own record is whole.
    if (!m_impl->fingers.empty() || !m_impl->lastTap) {
        return VLXGestureRecognizer::locationInView(view);
    }
    return view ? view->convertPointFromView(*m_impl->lastTap, nullptr) : *m_impl->lastTap;
}

void VLXTapGestureRecognizer::touchesBegan(const VLXTouchSet& touches, const VLXEvent&) {
    if (state() != VLXGestureRecognizerState::Possible) {
        return;
    }
    if (m_impl->downThisTap == 0) {
        m_impl->lifts.clear();
    }
    m_impl->lastTap.reset();
    // The next tap came down in time.
    m_impl->stopTimer();
    for (const auto& touch : touches) {
        if (!touch || m_impl->find(touch.get())) {
            continue;
        }
        m_impl->fingers.push_back({touch, touch->locationInView(nullptr)});
        ++m_impl->downThisTap;
    }
    if (m_impl->downThisTap > m_touchesRequired) {
        m_impl->stopTimer();
        setState(VLXGestureRecognizerState::Failed);
        return;
    }
    if (m_impl->fingers.size() == m_touchesRequired) {
        m_impl->allDownTogether = true;
    }
}

void VLXTapGestureRecognizer::touchesMoved(const VLXTouchSet& touches, const VLXEvent&) {
    if (state() != VLXGestureRecognizerState::Possible) {
        return;
    }
    for (const auto& touch : touches) {
        const vlx::detail::HeldFinger* finger = touch ? m_impl->find(touch.get()) : nullptr;
        if (finger &&
            distanceBetween(touch->locationInView(nullptr), finger->down) > kMaximumMovement) {
            setState(VLXGestureRecognizerState::Failed);
            return;
        }
    }
}

void VLXTapGestureRecognizer::touchesEnded(const VLXTouchSet& touches, const VLXEvent&) {
    if (state() != VLXGestureRecognizerState::Possible) {
        return;
    }
    bool lifted = false;
    for (const auto& touch : touches) {
        const vlx::detail::HeldFinger* finger = touch ? m_impl->find(touch.get()) : nullptr;
        if (!finger) {
            continue;  // a touch this recogniser never saw begin
        }
        if (distanceBetween(touch->locationInView(nullptr), finger->down) > kMaximumMovement) {
            setState(VLXGestureRecognizerState::Failed);
            return;
        }
        std::erase_if(m_impl->fingers,
                      [&touch](const vlx::detail::HeldFinger& f) { return f.touch == touch; });
        m_impl->lifts.push_back(touch->locationInView(nullptr));
        lifted = true;
    }
    if (!lifted) {
        return;
    }
    if (!m_impl->allDownTogether) {
        // A finger lifted before the others of the tap came down.
        setState(VLXGestureRecognizerState::Failed);
        return;
    }
    if (!m_impl->fingers.empty()) {
        return;  // the tap counts once every finger is up
    }
    ++m_impl->tapsDone;
    VLXPoint sum{};
    for (VLXPoint p : m_impl->lifts) {
        sum.x += p.x;
        sum.y += p.y;
    }
    const auto n = static_cast<double>(m_impl->lifts.size());
    m_impl->lastTap = VLXPoint{sum.x / n, sum.y / n};
    m_impl->downThisTap = 0;
    m_impl->allDownTogether = false;
    if (m_impl->tapsDone >= m_tapsRequired) {
        setState(VLXGestureRecognizerState::Ended);
        return;
    }
    std::weak_ptr<VLXTapGestureRecognizer> weak = sharedFrom<VLXTapGestureRecognizer>();
    m_impl->timer = VLXTimer::scheduledTimer(kMaximumTapInterval, false, [weak](VLXTimer&) {
        auto self = weak.lock();
        if (self && self->state() == VLXGestureRecognizerState::Possible) {
            self->m_impl->timer.reset();
            self->setState(VLXGestureRecognizerState::Failed);
        }
    });
}

void VLXTapGestureRecognizer::touchesCancelled(const VLXTouchSet& touches, const VLXEvent&) {
    if (state() != VLXGestureRecognizerState::Possible) {
        return;
    }
    for (const auto& touch : touches) {
        if (touch && m_impl->find(touch.get())) {
            m_impl->stopTimer();
            setState(VLXGestureRecognizerState::Failed);
            return;
        }
    }
}

void VLXTapGestureRecognizer::reset() {
    m_impl->stopTimer();
    m_impl->fingers.clear();
    m_impl->lifts.clear();
    m_impl->tapsDone = 0;
    m_impl->downThisTap = 0;
    m_impl->allDownTogether = false;
    VLXGestureRecognizer::reset();
}

bool VLXTapGestureRecognizer::canPreventGestureRecognizer(const VLXGestureRecognizer& other) const {
    const auto* tap = dynamic_cast<const VLXTapGestureRecognizer*>(&other);
    return !tap || tap->numberOfTapsRequired() <= m_tapsRequired ||
           tap->numberOfTouchesRequired() != m_touchesRequired;
}
