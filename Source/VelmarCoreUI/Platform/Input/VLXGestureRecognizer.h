#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <VelmarCoreUI/Platform/Foundation/VLXObject.h>
#include <VelmarCoreUI/Platform/Input/VLXTouch.h>
#include <VelmarCoreUI/Platform/Primitives/VLXGeometry.h>
#include <VelmarCoreUI/VLXExport.h>

class VLXEvent;
class VLXGestureArena;
class VLXGestureRecognizer;
class VLXView;

/// The states of a recogniser, with the platform's numbering. `Ended` is also "recognised".
enum class VLXGestureRecognizerState : std::uint8_t {
    Possible = 0,
    Began = 1,
    Changed = 2,
    Ended = 3,
    Cancelled = 4,
    Failed = 5,
};
inline constexpr VLXGestureRecognizerState VLXGestureRecognizerStateRecognized =
    VLXGestureRecognizerState::Ended;

/// "possible", "began", "changed", "ended", "cancelled", "failed".
VLX_EXPORT const char* VLXGestureRecognizerStateName(VLXGestureRecognizerState state);

/// What a recogniser asks of its delegate. Every method is optional; the defaults are the
/// platform's answers.
class VLX_EXPORT VLXGestureRecognizerDelegate {
public:
    virtual ~VLXGestureRecognizerDelegate();
    /// Asked when the recogniser is about to leave possible for began or recognised; NO makes
    /// it fail. YES by default.
    virtual bool gestureRecognizerShouldBegin(VLXGestureRecognizer& recognizer);
    /// Asked when a touch begins, before the recogniser sees it; NO keeps the touch from it.
    virtual bool gestureRecognizerShouldReceiveTouch(VLXGestureRecognizer& recognizer,
                                                     const VLXTouch& touch);
    /// YES lets `recognizer` and `other` recognise at the same time. Either delegate's YES is
    /// enough. NO by default.
    virtual bool gestureRecognizerShouldRecognizeSimultaneouslyWithGestureRecognizer(
        VLXGestureRecognizer& recognizer, VLXGestureRecognizer& other);
    /// YES makes `recognizer` wait until `other` has failed. NO by default.
    virtual bool gestureRecognizerShouldRequireFailureOfGestureRecognizer(
        VLXGestureRecognizer& recognizer, VLXGestureRecognizer& other);
    /// YES makes `other` wait until `recognizer` has failed. NO by default.
    virtual bool gestureRecognizerShouldBeRequiredToFailByGestureRecognizer(
        VLXGestureRecognizer& recognizer, VLXGestureRecognizer& other);
};

/// Turns the touches of one view into a gesture and tells its targets as the gesture goes.
///
/// A recogniser is added to a view (`VLXView::addGestureRecognizer`); the window then delivers
/// every touch that begins on that view or on one of its subviews to it, before the view itself
/// sees the touch. The window keeps the list of touches (`numberOfTouches`, `locationInView`)
/// and calls the four touch methods, which subclasses override to set `state`; the base
/// methods do nothing. Tests may also call the touch methods directly.
///
/// States: possible → began → changed … → ended or cancelled for continuous gestures, possible →
/// ended (recognised) for discrete ones, possible → failed. Other requests are ignored and the
/// state stays as it was; a subclass may also set failed from began or changed (a gesture that
/// turns out wrong after it began): the state reads failed and, as for every failure, no action
/// is sent. Targets hear every change to began, changed, ended and cancelled, at once, in the
/// order added; never failed or possible.
///
/// Leaving possible is arbitrated by the window (`VLXGestureArena`): the delegate may refuse
/// (`gestureRecognizerShouldBegin`), a recogniser that must wait for another to fail stays
/// possible until that one has failed (then it takes the state it asked for) or recognised (then
/// it fails), and once one begins or recognises, every other recogniser of the same touches
/// that is still possible fails unless the two may recognise together. A recogniser that asks
/// to begin while another of its touches has already begun fails.
///
/// After its last touch has ended, a recogniser in ended, cancelled or failed is `reset` to
/// possible, so each touch sequence ends in exactly one outcome; a gesture still began or
/// changed then is cancelled first (a gesture cannot outlive its touches). One still possible
/// stays so (a tap waiting for its next tap decides from a timer). Outside a window nothing
/// resets a recogniser: call `reset()`. Disabling a recogniser cancels a begun gesture, fails
/// a possible one, and keeps touches from it until enabled again; removing it from its view
/// cancels a begun gesture and resets it.
class VLX_EXPORT VLXGestureRecognizer : public VLXObject {
public:
    using Action = std::function<void(VLXGestureRecognizer&)>;
    using ActionToken = std::uint64_t;

    ~VLXGestureRecognizer() override;

    // --- targets -------------------------------------------------------------------------
    /// Calls `action` on every state change to began, changed, ended and cancelled. The action
    /// is held strongly: capture what it acts on weakly. An empty action is not added (token 0).
    ActionToken addAction(Action action);
    /// Calls `(target->*method)(*this)` while `target` lives; the target is held weakly.
    template <class T, class R>
    ActionToken addTarget(const std::shared_ptr<T>& target, void (T::*method)(R&)) {
        if (!target || !method) {
            return 0;
        }
        std::weak_ptr<T> weak = target;
        return addEntry(target.get(), [weak, method](VLXGestureRecognizer& recognizer) {
            if (auto strong = weak.lock()) {
                if (auto* typed = dynamic_cast<R*>(&recognizer)) {
                    ((*strong).*method)(*typed);
                }
            }
        });
    }
    void removeAction(ActionToken token);
    /// Removes every action added for `target` (null: every action).
    void removeTarget(const void* target);

    // --- state ---------------------------------------------------------------------------
    VLXGestureRecognizerState state() const { return m_state; }
    /// YES by default. See the class comment for what turning it off does.
    bool isEnabled() const { return m_enabled; }
    void setEnabled(bool enabled);
    /// The view this recogniser is attached to (null before and once that view has gone).
    VLXView* view() const;

    /// Held weakly.
    std::shared_ptr<VLXGestureRecognizerDelegate> delegate() const { return m_delegate.lock(); }
    void setDelegate(const std::shared_ptr<VLXGestureRecognizerDelegate>& delegate) {
        m_delegate = delegate;
    }

    /// YES by default: when this recogniser begins or recognises, the view stops getting its
    /// touches (those it saw begin get cancelled).
    bool cancelsTouchesInView() const { return m_cancelsTouchesInView; }
    void setCancelsTouchesInView(bool cancels) { m_cancelsTouchesInView = cancels; }
    /// NO by default: YES holds the view's touchesBegan back until this recogniser fails.
    bool delaysTouchesBegan() const { return m_delaysTouchesBegan; }
    void setDelaysTouchesBegan(bool delays) { m_delaysTouchesBegan = delays; }
    /// YES by default: the view's touchesEnded waits while this recogniser may still recognise.
    bool delaysTouchesEnded() const { return m_delaysTouchesEnded; }
    void setDelaysTouchesEnded(bool delays) { m_delaysTouchesEnded = delays; }

    /// Makes this recogniser wait for `other` to fail before it may begin or recognise. Held
    /// weakly; null and this recogniser itself are ignored.
    void requireGestureRecognizerToFail(const std::shared_ptr<VLXGestureRecognizer>& other);

    // --- touches -------------------------------------------------------------------------
    /// The touches this recogniser now tracks (those not ended or cancelled).
    const VLXTouchSet& touches() const { return m_touches; }
    std::size_t numberOfTouches() const { return m_touches.size(); }
    /// The centroid of the tracked touches in `view` (null: window coordinates); the last such
    /// centroid once they have gone.
    virtual VLXPoint locationInView(const VLXView* view) const;
    /// The location of tracked touch `index` in `view`; the centroid for an index out of range.
    VLXPoint locationOfTouch(std::size_t index, const VLXView* view) const;

    // --- subclass API --------------------------------------------------------------------
    /// Called by the window with the touches of this recogniser that changed, then the event.
    virtual void touchesBegan(const VLXTouchSet& touches, const VLXEvent& event);
    virtual void touchesMoved(const VLXTouchSet& touches, const VLXEvent& event);
    virtual void touchesEnded(const VLXTouchSet& touches, const VLXEvent& event);
    virtual void touchesCancelled(const VLXTouchSet& touches, const VLXEvent& event);
    /// Returns to possible, forgetting the gesture. Overrides call the base (last).
    virtual void reset();
    /// Stops delivering `touch` to this recogniser.
    void ignoreTouch(const std::shared_ptr<VLXTouch>& touch, const VLXEvent& event);

    /// Whether this recogniser's beginning may fail `other`, and may be failed by `other`'s
    /// (YES by default).
    virtual bool canPreventGestureRecognizer(const VLXGestureRecognizer& other) const;
    virtual bool canBePreventedByGestureRecognizer(const VLXGestureRecognizer& other) const;
    /// Class-level failure requirements, besides the delegate's (NO by default).
    virtual bool shouldRequireFailureOfGestureRecognizer(const VLXGestureRecognizer& other) const;
    virtual bool shouldBeRequiredToFailByGestureRecognizer(const VLXGestureRecognizer& other) const;

    std::string description() const override;

protected:
    VLXGestureRecognizer();

    /// Requests a new state; see the class comment for what is legal and what arbitration may
    /// make of it. Reads back at once (possible while it waits for another to fail).
    void setState(VLXGestureRecognizerState state);
    /// Ends the gesture once its touches are over: from possible to `ifPossible`, from began or
    /// changed to `ifBegun`; nothing in other states.
    void finishGesture(VLXGestureRecognizerState ifPossible, VLXGestureRecognizerState ifBegun);

private:
    friend class VLXGestureArena;
    friend class VLXTouchDispatch;
    friend class VLXView;

    struct Entry {
        ActionToken token;
        const void* target;
        Action action;
    };
    ActionToken addEntry(const void* target, Action action);
    // Called by VLXView when the recogniser is added to it (null when removed).
    void attachToView(VLXView* view);
    // Applies a state the arbitration allowed and tells the targets.
    void applyState(VLXGestureRecognizerState state);
    void sendActions();

    VLXGestureRecognizerState m_state = VLXGestureRecognizerState::Possible;
    std::vector<Entry> m_entries;
    ActionToken m_nextToken = 1;
    std::weak_ptr<VLXView> m_view;
    std::weak_ptr<VLXGestureRecognizerDelegate> m_delegate;
    std::vector<std::weak_ptr<VLXGestureRecognizer>> m_requiredToFail;
    VLXTouchSet m_touches;
    VLXPoint m_lastLocation{};  // window coordinates
    std::weak_ptr<VLXGestureArena> m_arena;
    std::optional<VLXGestureRecognizerState> m_waitingFor;  // the state asked for while waiting
    // Counts the decisions taken (entering ended, cancelled or failed, reset, detach), so the
    // window knows when a touch it holds back has been decided.
    std::uint64_t m_decisions = 0;
    bool m_enabled = true;
    bool m_cancelsTouchesInView = true;
    bool m_delaysTouchesBegan = false;
    bool m_delaysTouchesEnded = true;
};
