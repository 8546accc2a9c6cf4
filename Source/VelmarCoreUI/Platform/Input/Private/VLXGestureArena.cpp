#include <VelmarCoreUI/Platform/Input/Private/VLXGestureArena.h>

#include <algorithm>

namespace {

using State = VLXGestureRecognizerState;

bool hasRecognized(const VLXGestureRecognizer& r) {
    return r.state() == State::Began || r.state() == State::Changed || r.state() == State::Ended;
}

bool isTerminal(State state) {
    return state == State::Ended || state == State::Cancelled || state == State::Failed;
}

bool shareTouch(const VLXGestureRecognizer& a, const VLXGestureRecognizer& b) {
    for (const auto& touch : a.touches()) {
        const auto& other = b.touches();
        if (std::find(other.begin(), other.end(), touch) != other.end()) {
            return true;
        }
    }
    return false;
}

}  // namespace

void VLXGestureArena::join(VLXGestureRecognizer& recognizer) {
    if (!isMember(recognizer)) {
        m_members.push_back(recognizer.sharedFrom<VLXGestureRecognizer>());
    }
    recognizer.m_arena = weak_from_this();
}

void VLXGestureArena::leave(VLXGestureRecognizer& recognizer) {
    std::erase_if(m_members, [&](const auto& member) { return member.get() == &recognizer; });
    if (recognizer.m_arena.lock().get() == this) {
        recognizer.m_arena.reset();
    }
}

bool VLXGestureArena::isMember(const VLXGestureRecognizer& recognizer) const {
    return std::any_of(m_members.begin(), m_members.end(),
                       [&](const auto& member) { return member.get() == &recognizer; });
}

bool VLXGestureArena::canRecognizeSimultaneously(VLXGestureRecognizer& a, VLXGestureRecognizer& b) {
    if (auto d = a.delegate();
        d && d->gestureRecognizerShouldRecognizeSimultaneouslyWithGestureRecognizer(a, b)) {
        return true;
    }
    auto d = b.delegate();
    return d && d->gestureRecognizerShouldRecognizeSimultaneouslyWithGestureRecognizer(b, a);
}

bool VLXGestureArena::requiresFailure(VLXGestureRecognizer& waiter, VLXGestureRecognizer& other) {
    for (const auto& weak : waiter.m_requiredToFail) {
        if (weak.lock().get() == &other) {
            return true;
        }
    }
    if (waiter.shouldRequireFailureOfGestureRecognizer(other) ||
        other.shouldBeRequiredToFailByGestureRecognizer(waiter)) {
        return true;
    }
    if (auto d = waiter.delegate();
        d && d->gestureRecognizerShouldRequireFailureOfGestureRecognizer(waiter, other)) {
        return true;
    }
    auto d = other.delegate();
    return d && d->gestureRecognizerShouldBeRequiredToFailByGestureRecognizer(other, waiter);
}

VLXGestureRecognizerState VLXGestureArena::arbitrate(VLXGestureRecognizer& recognizer,
                                                     VLXGestureRecognizerState requested) {
    auto keep = shared_from_this();
    const auto members = m_members;

    // A competitor that already won keeps the touches.
    for (const auto& other : members) {
        if (other.get() != &recognizer && hasRecognized(*other) && shareTouch(recognizer, *other) &&
            !canRecognizeSimultaneously(recognizer, *other) &&
            other->canPreventGestureRecognizer(recognizer) &&
            recognizer.canBePreventedByGestureRecognizer(*other)) {
            return State::Failed;
        }
    }

    // Failure requirements: members and the recognisers required by name.
    std::vector<std::shared_ptr<VLXGestureRecognizer>> required = members;
    for (const auto& weak : recognizer.m_requiredToFail) {
        if (auto other = weak.lock()) {
            required.push_back(std::move(other));
        }
    }
    bool wait = false;
    for (const auto& other : required) {
        if (other.get() == &recognizer || !requiresFailure(recognizer, *other)) {
            continue;
        }
        if (hasRecognized(*other)) {
            return State::Failed;
        }
        if (other->state() == State::Possible && isMember(*other)) {
            wait = true;
        }
    }
    if (wait) {
        return State::Possible;
    }

    if (auto d = recognizer.delegate(); d && !d->gestureRecognizerShouldBegin(recognizer)) {
        return State::Failed;
    }

    // The winner fails the competitors that may not run with it.
    ++m_arbitrating;
    for (const auto& other : members) {
        if (other.get() != &recognizer && other->state() == State::Possible &&
            shareTouch(recognizer, *other) && !canRecognizeSimultaneously(recognizer, *other) &&
            recognizer.canPreventGestureRecognizer(*other) &&
            other->canBePreventedByGestureRecognizer(recognizer)) {
            other->applyState(State::Failed);
        }
    }
    --m_arbitrating;
    return requested;
}

void VLXGestureArena::stateDidChange(VLXGestureRecognizer& recognizer) {
    auto keep = shared_from_this();
    if (m_observer) {
        m_observer(recognizer);
    }
    if (m_arbitrating > 0 || m_resuming) {
        m_resumeAgain = true;
        return;
    }
    resumeWaiters();
    settleIdle();
}

void VLXGestureArena::resumeWaiters() {
    m_resuming = true;
    do {
        m_resumeAgain = false;
        const auto members = m_members;
        for (const auto& waiter : members) {
            if (!waiter->m_waitingFor || waiter->state() != State::Possible ||
                !waiter->isEnabled()) {
                continue;
            }
            const State asked = *waiter->m_waitingFor;
            const State result = arbitrate(*waiter, asked);
            if (result != State::Possible) {
                waiter->applyState(result);
            }
        }
    } while (m_resumeAgain);
    m_resuming = false;
}

void VLXGestureArena::settleIdle() {
    const auto members = m_members;
    for (const auto& member : members) {
        if (member->touches().empty() && isTerminal(member->state())) {
            member->reset();
            leave(*member);
        }
    }
}

void VLXGestureArena::dropUndecided() {
    const auto members = m_members;
    for (const auto& member : members) {
        if (member->touches().empty() && member->state() == State::Possible &&
            !member->m_waitingFor) {
            leave(*member);
        }
    }
}

void VLXGestureArena::settle() {
    auto keep = shared_from_this();
    if (m_arbitrating == 0 && !m_resuming) {
        resumeWaiters();
    }
    settleIdle();
}
