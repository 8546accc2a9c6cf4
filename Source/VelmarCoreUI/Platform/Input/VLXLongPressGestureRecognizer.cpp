#include <VelmarCoreUI/Platform/Input/VLXLongPressGestureRecognizer.h>

#include <algorithm>
#include <cmath>

#include <VelmarCoreUI/Platform/Foundation/VLXTimer.h>

namespace {
double nonNegative(double value) {
    return std::isnan(value) || value < 0 ? 0.0 : value;
}
}  // namespace

struct VLXLongPressGestureRecognizer::Impl {
    struct Finger {
        std::shared_ptr<VLXTouch> touch;
        VLXPoint down;  // window coordinates
    };
    std::vector<Finger> fingers;
    std::shared_ptr<VLXTimer> timer;
    // The press lasted long enough and asked to begin (it may still be waiting on another
    // recogniser to fail, and then reads possible).
    bool asked = false;

    Finger* find(const VLXTouch* touch) {
        auto it = std::find_if(fingers.begin(), fingers.end(),
                               [touch](const Finger& f) { return f.touch.get() == touch; });
        return it == fingers.end() ? nullptr : &*it;
    }
    void stopTimer() {
        if (timer) {
            timer->invalidate();
            timer.reset();
        }
    }
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
    for (const auto& touch : touches) {
        if (touch && !m_impl->find(touch.get())) {
            m_impl->fingers.push_back({touch, touch->locationInView(nullptr)});
        }
    }
    if (m_impl->fingers.size() > m_touchesRequired) {
        m_impl->stopTimer();
        setState(VLXGestureRecognizerState::Failed);
        return;
    }
    if (m_impl->fingers.size() < m_touchesRequired || m_impl->timer) {
        return;
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
        const Impl::Finger* finger = touch ? m_impl->find(touch.get()) : nullptr;
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
                          [&touch](const Impl::Finger& f) { return f.touch == touch; });
            lifted = true;
        }
    }
    if (!lifted) {
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
    switch (state()) {
        case VLXGestureRecognizerState::Possible:
            setState(VLXGestureRecognizerState::Failed);
            break;
        case VLXGestureRecognizerState::Began:
        case VLXGestureRecognizerState::Changed:
            setState(VLXGestureRecognizerState::Cancelled);
            break;
        default:
            break;
    }
}

void VLXLongPressGestureRecognizer::reset() {
    m_impl->stopTimer();
    m_impl->fingers.clear();
    m_impl->asked = false;
    VLXGestureRecognizer::reset();
}
