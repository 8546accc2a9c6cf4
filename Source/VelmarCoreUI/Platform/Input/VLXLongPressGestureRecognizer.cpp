#include <VelmarCoreUI/Platform/Input/VLXLongPressGestureRecognizer.h>

#include <algorithm>
#include <cmath>

#include <VelmarCoreUI/Platform/Foundation/VLXTimer.h>
#include <VelmarCoreUI/Platform/Input/Private/VLXFingers.h>
#include <VelmarCoreUI/Platform/Input/VLXTapGestureRecognizer.h>

namespace {
double nonNegative(double value) {
    return std::isnan(value) || value < 0 ? 0.0 : value;
}
}  // namespace

struct VLXLongPressGestureRecognizer::Impl {
    std::vector<vlx::detail::HeldFinger> fingers;
    // The press delay while the fingers are down, the wait for the next touch-down between taps.
    std::shared_ptr<VLXTimer> timer;
    std::uint32_t tapsDone = 0;     // taps before the press
    std::uint32_t downThisTap = 0;  // fingers that came down since the last tap
    bool allDown = false;           // the required fingers were down together
    // The press lasted long enough and asked to begin (it may still be waiting on another
    // recogniser to fail, and then reads possible).
    bool asked = false;

    vlx::detail::HeldFinger* find(const VLXTouch* touch) {
        return vlx::detail::findFinger(fingers, touch);
    }
    void stopTimer() { vlx::detail::stopTimer(timer); }
};

VLXLongPressGestureRecognizer::VLXLongPressGestureRecognizer() : m_impl(std::make_unique<Impl>()) {}

VLXLongPressGestureRecognizer::~VLXLongPressGestureRecognizer() {
    m_impl->stopTimer();
}

std::shared_ptr<VLXLongPressGestureRecognizer> VLXLongPressGestureRecognizer::create() {
    return makeInitialized<VLXLongPressGestureRecognizer>();
}

void VLXLongPressGestureRecognizer::setMinimumPressDuration(double seconds) {
    m_minimumPressDuration = nonNegative(seconds);
}

void VLXLongPressGestureRecognizer::setAllowableMovement(double points) {
    m_allowableMovement = nonNegative(points);
}

void VLXLongPressGestureRecognizer::setNumberOfTouchesRequired(std::uint32_t touches) {
    m_touchesRequired = std::max<std::uint32_t>(touches, 1);
}

void VLXLongPressGestureRecognizer::touchesBegan(const VLXTouchSet& touches,
                                                 const VLXEvent& event) {
    if (state() != VLXGestureRecognizerState::Possible || m_impl->asked) {
        // Once the press is on, more fingers change nothing.
        for (const auto& touch : touches) {
            if (touch && !m_impl->find(touch.get())) {
                ignoreTouch(touch, event);
            }
        }
        return;
    }
    if (m_impl->fingers.empty()) {
        m_impl->stopTimer();  // the next tap, or the press, came down in time
    }
    for (const auto& touch : touches) {
        if (touch && !m_impl->find(touch.get())) {
            m_impl->fingers.push_back({touch, touch->locationInView(nullptr)});
            ++m_impl->downThisTap;
        }
    }
    if (m_impl->downThisTap > m_touchesRequired) {
        m_impl->stopTimer();
        setState(VLXGestureRecognizerState::Failed);
        return;
    }
    if (m_impl->fingers.size() < m_touchesRequired || m_impl->timer) {
        return;
    }
    m_impl->allDown = true;
    if (m_impl->tapsDone < m_tapsRequired) {
        return;  // a tap before the press: its lift counts
    }
    std::weak_ptr<VLXLongPressGestureRecognizer> weak = sharedFrom<VLXLongPressGestureRecognizer>();
    m_impl->timer = VLXTimer::scheduledTimer(m_minimumPressDuration, false, [weak](VLXTimer&) {
        auto self = weak.lock();
        if (!self) {
            return;
        }
        self->m_impl->timer.reset();
        if (self->state() == VLXGestureRecognizerState::Possible) {
            self->m_impl->asked = true;
            self->setState(VLXGestureRecognizerState::Began);
        }
    });
}

void VLXLongPressGestureRecognizer::touchesMoved(const VLXTouchSet& touches, const VLXEvent&) {
    const VLXGestureRecognizerState current = state();
    bool moved = false;
    for (const auto& touch : touches) {
        const vlx::detail::HeldFinger* finger = touch ? m_impl->find(touch.get()) : nullptr;
        if (!finger) {
            continue;
        }
        moved = true;
        if (current == VLXGestureRecognizerState::Possible && !m_impl->asked &&
            std::hypot(touch->locationInView(nullptr).x - finger->down.x,
                       touch->locationInView(nullptr).y - finger->down.y) > m_allowableMovement) {
            m_impl->stopTimer();
            setState(VLXGestureRecognizerState::Failed);
            return;
        }
    }
    if (moved && (current == VLXGestureRecognizerState::Began ||
                  current == VLXGestureRecognizerState::Changed)) {
        setState(VLXGestureRecognizerState::Changed);
    }
}

void VLXLongPressGestureRecognizer::touchesEnded(const VLXTouchSet& touches, const VLXEvent&) {
    bool lifted = false;
    for (const auto& touch : touches) {
        if (touch && m_impl->find(touch.get())) {
            std::erase_if(m_impl->fingers,
                          [&touch](const vlx::detail::HeldFinger& f) { return f.touch == touch; });
            lifted = true;
        }
    }
    if (!lifted) {
        return;
    }
    if (state() == VLXGestureRecognizerState::Possible && !m_impl->asked &&
        m_impl->tapsDone < m_tapsRequired && m_impl->allDown) {
        if (m_impl->fingers.empty()) {
            ++m_impl->tapsDone;
            m_impl->downThisTap = 0;
            m_impl->allDown = false;
            waitForNextTouchDown();
        }
        return;
    }
    m_impl->stopTimer();
    switch (state()) {
        case VLXGestureRecognizerState::Possible:
            // Lifted early, unless the press already asked to begin and is only waiting.
            setState(m_impl->asked ? VLXGestureRecognizerState::Ended
                                   : VLXGestureRecognizerState::Failed);
            break;
        case VLXGestureRecognizerState::Began:
        case VLXGestureRecognizerState::Changed:
            setState(VLXGestureRecognizerState::Ended);
            break;
        default:
            break;
    }
}

void VLXLongPressGestureRecognizer::touchesCancelled(const VLXTouchSet& touches, const VLXEvent&) {
    bool ours = false;
    for (const auto& touch : touches) {
        ours = ours || (touch && m_impl->find(touch.get()));
    }
    if (!ours) {
        return;
    }
    m_impl->stopTimer();
    finishGesture(VLXGestureRecognizerState::Failed, VLXGestureRecognizerState::Cancelled);
}

void VLXLongPressGestureRecognizer::waitForNextTouchDown() {
    std::weak_ptr<VLXLongPressGestureRecognizer> weak = sharedFrom<VLXLongPressGestureRecognizer>();
    m_impl->timer = VLXTimer::scheduledTimer(
        VLXTapGestureRecognizer::kMaximumTapInterval, false, [weak](VLXTimer&) {
            auto self = weak.lock();
            if (self && self->state() == VLXGestureRecognizerState::Possible) {
                self->m_impl->timer.reset();
                self->setState(VLXGestureRecognizerState::Failed);
            }
        });
}

void VLXLongPressGestureRecognizer::reset() {
    m_impl->stopTimer();
    m_impl->fingers.clear();
    m_impl->tapsDone = 0;
    m_impl->downThisTap = 0;
    m_impl->allDown = false;
    m_impl->asked = false;
    VLXGestureRecognizer::reset();
}
