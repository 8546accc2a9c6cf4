#pragma once

#include <functional>
#include <memory>
#include <vector>

#include <VelmarCoreUI/Platform/Input/VLXGestureRecognizer.h>

/// Arbitration between the recognisers of one window: which of them may leave possible, which
/// must wait for others to fail, and which fail because another won.
///
/// Members are the recognisers that got touches of the window since the current sequence
/// began (or, between sequences, since the last one) and have not yet decided. Two members compete
/// when they share a touch. When a member asks to begin or to recognise:
///   1. it fails if a competitor has already begun or recognised and the two may not run
///      together (and that one may prevent it);
///   2. it waits (stays possible) while a recogniser it must wait for is still possible and a
///      member; it fails if that one has begun or recognised;
///   3. it fails if its delegate's `gestureRecognizerShouldBegin` says NO;
///   4. otherwise it takes the state, and every competitor still possible that may not run
///      with it fails.
/// Every change of state then re-examines the waiting members, in the order they joined, until
/// nothing changes, and reports the change to the window (`onStateChange`).
class VLXGestureArena : public std::enable_shared_from_this<VLXGestureArena> {
public:
    using StateObserver = std::function<void(VLXGestureRecognizer&)>;

    /// Makes `recognizer` a member (once) and links it to this arena.
    void join(VLXGestureRecognizer& recognizer);
    /// Removes `recognizer` (no longer waiting, no touches, or detached from its view).
    void leave(VLXGestureRecognizer& recognizer);
    const std::vector<std::shared_ptr<VLXGestureRecognizer>>& members() const { return m_members; }

    /// What a request of `recognizer` to leave possible for `requested` comes to: `requested`,
    /// failed, or possible (it waits).
    VLXGestureRecognizerState arbitrate(VLXGestureRecognizer& recognizer,
                                        VLXGestureRecognizerState requested);
    /// Called after `recognizer` took a new state.
    void stateDidChange(VLXGestureRecognizer& recognizer);
    /// Resumes waiting members, then resets and drops those whose touches are over in ended,
    /// cancelled or failed. Members still possible stay: they may decide later (a tap waiting
    /// for its next tap fails from a timer).
    void settle();
    /// Drops members that hold no touches, are possible and do not wait: called when a new
    /// touch sequence starts, so that only recognisers it reaches take part.
    void dropUndecided();

    /// Told of every state change of a member (the window releases and cancels view touches).
    void setStateObserver(StateObserver observer) { m_observer = std::move(observer); }

    /// Either delegate allows the pair to recognise together.
    static bool canRecognizeSimultaneously(VLXGestureRecognizer& a, VLXGestureRecognizer& b);
    /// `waiter` must wait for `other` to fail: a static requirement, a class-level answer of
    /// either, or either delegate's.
    static bool requiresFailure(VLXGestureRecognizer& waiter, VLXGestureRecognizer& other);

private:
    bool isMember(const VLXGestureRecognizer& recognizer) const;
    void resumeWaiters();
    // Resets and drops the members whose touches are over and which have decided.
    void settleIdle();

    std::vector<std::shared_ptr<VLXGestureRecognizer>> m_members;
    StateObserver m_observer;
    int m_arbitrating = 0;
    bool m_resuming = false;
    bool m_resumeAgain = false;
};
