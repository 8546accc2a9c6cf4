#include <VelmarCoreUI/Platform/Input/Private/VLXTouchDispatch.h>

#include <algorithm>

#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Input/Private/VLXGestureArena.h>
#include <VelmarCoreUI/Platform/Input/VLXEvent.h>
#include <VelmarCoreUI/Platform/Input/VLXGestureRecognizer.h>
#include <VelmarCoreUI/Platform/Views/VLXWindow.h>

namespace {

using State = VLXGestureRecognizerState;

bool contains(const VLXTouchSet& touches, const std::shared_ptr<VLXTouch>& touch) {
    return std::find(touches.begin(), touches.end(), touch) != touches.end();
}

bool isTerminal(State state) {
    return state == State::Ended || state == State::Cancelled || state == State::Failed;
}

// The touches of `touches` in `phase`.
VLXTouchSet inPhase(const VLXTouchSet& touches, VLXTouchPhase phase) {
    VLXTouchSet result;
    for (const auto& touch : touches) {
        if (touch->phase() == phase) {
            result.push_back(touch);
        }
    }
    return result;
}

// Calls a view touch method once per hit view, with that view's touches.
void sendToViews(const VLXTouchSet& touches, const VLXEvent& event, VLXTouchPhase phase) {
    std::vector<std::shared_ptr<VLXView>> views;
    for (const auto& touch : touches) {
        if (auto* view = touch->view()) {
            auto shared = std::static_pointer_cast<VLXView>(view->shared_from_this());
            if (std::find(views.begin(), views.end(), shared) == views.end()) {
                views.push_back(std::move(shared));
            }
        }
    }
    for (const auto& view : views) {
        VLXTouchSet own;
        for (const auto& touch : touches) {
            if (touch->view() == view.get()) {
                own.push_back(touch);
            }
        }
        switch (phase) {
            case VLXTouchPhase::Began:
                view->touchesBegan(own, event);
                break;
            case VLXTouchPhase::Moved:
                view->touchesMoved(own, event);
                break;
            case VLXTouchPhase::Ended:
                view->touchesEnded(own, event);
                break;
            case VLXTouchPhase::Cancelled:
                view->touchesCancelled(own, event);
                break;
            case VLXTouchPhase::Stationary:
                break;
        }
    }
}

}  // namespace

VLXTouchDispatch::VLXTouchDispatch(VLXWindow& window)
    : m_window(window), m_arena(std::make_shared<VLXGestureArena>()) {
    m_arena->setStateObserver(
        [this](VLXGestureRecognizer& recognizer) { recognizerDidChange(recognizer); });
}

VLXTouchDispatch::~VLXTouchDispatch() {
    m_arena->setStateObserver({});
    for (const auto& member : std::vector(m_arena->members())) {
        m_arena->leave(*member);
    }
}

void VLXTouchDispatch::sendEvent(const VLXEvent& event) {
    auto keepWindow = m_window.shared_from_this();
    auto keepArena = m_arena;
    auto shared = std::static_pointer_cast<const VLXEvent>(event.shared_from_this());

    VLXTouchSet changed;
    for (const auto& touch : event.allTouches()) {
        const bool live = contains(m_live, touch);
        switch (touch->phase()) {
            case VLXTouchPhase::Began:
                // A touch is hit-tested once; a touch seen before (here or in another window) is
                // never new again.
                if (!live && touch->m_window.expired() && beginTouch(touch)) {
                    changed.push_back(touch);
                }
                break;
            case VLXTouchPhase::Moved:
            case VLXTouchPhase::Ended:
            case VLXTouchPhase::Cancelled:
                if (live) {
                    changed.push_back(touch);
                }
                break;
            case VLXTouchPhase::Stationary:
                break;
        }
    }
    if (changed.empty()) {
        return;
    }

    auto previous = std::exchange(m_event, shared);
    deliverToRecognizers(event, changed);
    deliverToViews(shared, changed);
    m_event = previous;

    for (const auto& touch : changed) {
        if (touch->isFinished()) {
            std::erase(m_live, touch);
        }
    }
    m_arena->settle();
    releaseHeldDeliveries();
}

bool VLXTouchDispatch::beginTouch(const std::shared_ptr<VLXTouch>& touch) {
    const VLXPoint point = m_window.convertPointFromView(touch->locationInView(nullptr), nullptr);
    auto hit = m_window.hitTest(point);
    if (!hit) {
        return false;
    }
    if (m_live.empty()) {
        // A new sequence: what the last one left undecided stops holding anything back.
        m_arena->dropUndecided();
        releaseHeldDeliveries(true);
    }
    touch->m_view = hit;
    touch->m_window = std::static_pointer_cast<VLXView>(m_window.shared_from_this());
    for (VLXView* view = hit.get(); view; view = view->superview()) {
        for (const auto& recognizer : view->gestureRecognizers()) {
            if (!recognizer->isEnabled()) {
                continue;
            }
            if (auto d = recognizer->delegate();
                d && !d->gestureRecognizerShouldReceiveTouch(*recognizer, *touch)) {
                continue;
            }
            touch->m_recognizers.push_back(recognizer);
            recognizer->m_touches.push_back(touch);
            m_arena->join(*recognizer);
        }
    }
    m_live.push_back(touch);
    return true;
}

void VLXTouchDispatch::deliverToRecognizers(const VLXEvent& event, const VLXTouchSet& changed) {
    std::vector<std::shared_ptr<VLXGestureRecognizer>> recognizers;
    for (const auto& touch : changed) {
        for (auto& recognizer : touch->gestureRecognizers()) {
            if (std::find(recognizers.begin(), recognizers.end(), recognizer) ==
                recognizers.end()) {
                recognizers.push_back(std::move(recognizer));
            }
        }
    }

    constexpr VLXTouchPhase phases[] = {VLXTouchPhase::Began, VLXTouchPhase::Moved,
                                        VLXTouchPhase::Ended, VLXTouchPhase::Cancelled};
    for (const auto& recognizer : recognizers) {
        for (const VLXTouchPhase phase : phases) {
            if (!recognizer->isEnabled() || !recognizer->view() ||
                isTerminal(recognizer->state())) {
                break;
            }
            VLXTouchSet own;
            for (const auto& touch : inPhase(changed, phase)) {
                if (contains(recognizer->m_touches, touch)) {
                    own.push_back(touch);
                }
            }
            if (own.empty()) {
                continue;
            }
            switch (phase) {
                case VLXTouchPhase::Began:
                    recognizer->touchesBegan(own, event);
                    break;
                case VLXTouchPhase::Moved:
                    recognizer->touchesMoved(own, event);
                    break;
                case VLXTouchPhase::Ended:
                    recognizer->touchesEnded(own, event);
                    break;
                default:
                    recognizer->touchesCancelled(own, event);
                    break;
            }
        }
    }

    // Touches that are over leave their recognisers, which keep their last centroid.
    for (const auto& recognizer : recognizers) {
        if (!recognizer->m_touches.empty()) {
            recognizer->m_lastLocation = recognizer->locationInView(nullptr);
        }
        std::erase_if(recognizer->m_touches, [](const auto& touch) { return touch->isFinished(); });
    }
    // A gesture cannot outlive its touches.
    for (const auto& recognizer : recognizers) {
        if (recognizer->m_touches.empty() &&
            (recognizer->state() == State::Began || recognizer->state() == State::Changed)) {
            recognizer->applyState(State::Cancelled);
        }
    }
}

void VLXTouchDispatch::deliverToViews(const std::shared_ptr<const VLXEvent>& event,
                                      const VLXTouchSet& changed) {
    for (const VLXTouchPhase phase : {VLXTouchPhase::Began, VLXTouchPhase::Moved,
                                      VLXTouchPhase::Ended, VLXTouchPhase::Cancelled}) {
        VLXTouchSet now;
        for (const auto& touch : inPhase(changed, phase)) {
            if (touch->m_withheldFromView) {
                continue;
            }
            // Order per touch: nothing overtakes a delivery still held.
            const bool queued = std::any_of(m_held.begin(), m_held.end(),
                                            [&](const auto& held) { return held.touch == touch; });
            switch (phase) {
                case VLXTouchPhase::Began:
                    if (!hold(touch, event, phase)) {
                        touch->m_deliveredToView = true;
                        now.push_back(touch);
                    }
                    break;
                case VLXTouchPhase::Moved:
                    if (!queued && touch->m_deliveredToView) {
                        now.push_back(touch);
                    }
                    break;
                case VLXTouchPhase::Ended:
                    if (queued) {
                        m_held.push_back({touch, event, phase, {}});
                    } else if (!hold(touch, event, phase) && touch->m_deliveredToView) {
                        now.push_back(touch);
                    }
                    break;
                default:
                    std::erase_if(m_held, [&](const auto& held) { return held.touch == touch; });
                    if (touch->m_deliveredToView) {
                        now.push_back(touch);
                    }
                    break;
            }
        }
        if (!now.empty()) {
            sendToViews(now, *event, phase);
        }
    }
}

bool VLXTouchDispatch::hold(const std::shared_ptr<VLXTouch>& touch,
                            const std::shared_ptr<const VLXEvent>& event, VLXTouchPhase phase) {
    HeldDelivery held{touch, event, phase, {}};
    for (const auto& recognizer : touch->gestureRecognizers()) {
        const bool delays = phase == VLXTouchPhase::Began ? recognizer->delaysTouchesBegan()
                                                          : recognizer->delaysTouchesEnded();
        if (delays && recognizer->isEnabled() && recognizer->view() &&
            recognizer->state() == State::Possible) {
            held.waitingOn.emplace_back(recognizer, recognizer->m_decisions);
        }
    }
    if (held.waitingOn.empty()) {
        return false;
    }
    m_held.push_back(std::move(held));
    return true;
}

void VLXTouchDispatch::releaseHeldDeliveries(bool all) {
    auto decided = [all](const HeldDelivery& held) {
        return all ||
               std::all_of(held.waitingOn.begin(), held.waitingOn.end(), [](const auto& entry) {
                   auto recognizer = entry.first.lock();
                   return !recognizer || recognizer->m_decisions != entry.second ||
                          !recognizer->isEnabled() || !recognizer->view();
               });
    };
    // Deliveries run view code, which may send events: take the ready ones out first.
    std::vector<HeldDelivery> ready;
    std::vector<std::shared_ptr<VLXTouch>> blocked;
    for (auto it = m_held.begin(); it != m_held.end();) {
        if (contains(blocked, it->touch) || !decided(*it)) {
            blocked.push_back(it->touch);
            ++it;
        } else {
            ready.push_back(std::move(*it));
            it = m_held.erase(it);
        }
    }
    for (const auto& held : ready) {
        if (held.touch->m_withheldFromView) {
            continue;
        }
        if (held.phase == VLXTouchPhase::Began) {
            held.touch->m_deliveredToView = true;
        } else if (!held.touch->m_deliveredToView) {
            continue;
        }
        sendToViews({held.touch}, *held.event, held.phase);
    }
}

void VLXTouchDispatch::recognizerDidChange(VLXGestureRecognizer& recognizer) {
    const State state = recognizer.state();
    if ((state == State::Began || state == State::Ended) && recognizer.cancelsTouchesInView()) {
        // Its touches, and those whose end the view has not yet heard because of it.
        VLXTouchSet taken = recognizer.m_touches;
        for (const auto& held : m_held) {
            for (const auto& entry : held.waitingOn) {
                if (entry.first.lock().get() == &recognizer && !contains(taken, held.touch)) {
                    taken.push_back(held.touch);
                }
            }
        }
        VLXTouchSet cancelled;
        for (const auto& touch : taken) {
            if (touch->m_withheldFromView) {
                continue;
            }
            touch->m_withheldFromView = true;
            std::erase_if(m_held, [&](const auto& held) { return held.touch == touch; });
            if (touch->m_deliveredToView) {
                cancelled.push_back(touch);
            }
        }
        if (!cancelled.empty()) {
            auto event = currentEvent();
            sendToViews(cancelled, *event, VLXTouchPhase::Cancelled);
        }
    }
    if (isTerminal(state)) {
        releaseHeldDeliveries();
    }
}

std::shared_ptr<const VLXEvent> VLXTouchDispatch::currentEvent() {
    if (m_event) {
        return m_event;
    }
    return VLXEvent::create(m_live, VLXClock::now());
}
