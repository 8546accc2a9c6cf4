#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <VelmarCoreUI/Platform/Foundation/VLXObject.h>
#include <VelmarCoreUI/Platform/Primitives/VLXGeometry.h>
#include <VelmarCoreUI/Platform/Views/VLXView.h>
#include <VelmarCoreUI/VLXExport.h>

/// Control events, a bit set with the platform's values.
using VLXControlEvents = std::uint64_t;
inline constexpr VLXControlEvents VLXControlEventTouchDown = 1 << 0;
inline constexpr VLXControlEvents VLXControlEventTouchDownRepeat = 1 << 1;
inline constexpr VLXControlEvents VLXControlEventTouchDragInside = 1 << 2;
inline constexpr VLXControlEvents VLXControlEventTouchDragOutside = 1 << 3;
inline constexpr VLXControlEvents VLXControlEventTouchDragEnter = 1 << 4;
inline constexpr VLXControlEvents VLXControlEventTouchDragExit = 1 << 5;
inline constexpr VLXControlEvents VLXControlEventTouchUpInside = 1 << 6;
inline constexpr VLXControlEvents VLXControlEventTouchUpOutside = 1 << 7;
inline constexpr VLXControlEvents VLXControlEventTouchCancel = 1 << 8;
inline constexpr VLXControlEvents VLXControlEventValueChanged = 1 << 12;
inline constexpr VLXControlEvents VLXControlEventPrimaryActionTriggered = 1 << 13;
inline constexpr VLXControlEvents VLXControlEventEditingDidBegin = 1 << 16;
inline constexpr VLXControlEvents VLXControlEventEditingChanged = 1 << 17;
inline constexpr VLXControlEvents VLXControlEventEditingDidEnd = 1 << 18;
inline constexpr VLXControlEvents VLXControlEventEditingDidEndOnExit = 1 << 19;
inline constexpr VLXControlEvents VLXControlEventAllTouchEvents = 0x00000FFF;
inline constexpr VLXControlEvents VLXControlEventAllEditingEvents = 0x000F0000;
inline constexpr VLXControlEvents VLXControlEventApplicationReserved = 0x0F000000;
inline constexpr VLXControlEvents VLXControlEventSystemReserved = 0xF0000000;
inline constexpr VLXControlEvents VLXControlEventAllEvents = 0xFFFFFFFF;

/// An action a control sends to a target: a name that is its identity (two actions with the
/// same name are the same action, as two uses of one method name are) and the call it makes.
///
/// `VLXControlAction::method<T>("valueChanged:", &T::valueChanged)` calls a member function of
/// the target taking the sender; targets that are not a T are skipped.
class VLX_EXPORT VLXControlAction {
public:
    using Invoke = std::function<void(VLXObject& target, VLXObject* sender)>;

    VLXControlAction(std::string name, Invoke invoke);

    template <class T>
    static VLXControlAction method(std::string name, void (T::*function)(VLXObject* sender)) {
        return VLXControlAction(std::move(name), [function](VLXObject& target, VLXObject* sender) {
            if (auto* typed = dynamic_cast<T*>(&target)) {
                (typed->*function)(sender);
            }
        });
    }

    const std::string& name() const { return m_name; }
    /// Calls the action on `target` with `sender` (nothing when the call is empty).
    void operator()(VLXObject& target, VLXObject* sender) const;

    /// Same identity: same name.
    friend bool operator==(const VLXControlAction& a, const VLXControlAction& b) {
        return a.m_name == b.m_name;
    }

private:
    std::string m_name;
    Invoke m_invoke;
};

/// The base of views that turn touches into events for targets (buttons, switches, sliders).
///
/// Target–action: `addTarget(target, action, events)` registers the pair for each event of the
/// mask; the same (target, action) pair for an event it already has is ignored. Targets are not
/// owned: one that has gone is skipped and dropped when events are sent. Null targets are
/// refused (there is no responder chain to send them up).
///
/// Touches: an enabled control tracks the first touch that begins on it (later fingers are
/// ignored until it lifts). Down sends TouchDown (plus TouchDownRepeat for a tap count above
/// one) and highlights the control; moves send TouchDragInside or TouchDragOutside, with
/// TouchDragEnter / TouchDragExit when the touch crosses the tracking area, and follow it with
/// the highlight; the lift sends TouchUpInside or TouchUpOutside; a cancel sends TouchCancel.
/// The tracking area is the bounds grown by `kTrackingMargin` on every side, so a finger may
/// stray a little before the control counts it as outside.
class VLX_EXPORT VLXControl : public VLXView {
public:
    static std::shared_ptr<VLXControl> create();
    static std::shared_ptr<VLXControl> createWithFrame(const VLXRect& frame);
    ~VLXControl() override;

    /// Registers (target, action) for every event in `events`, keeping the existing order and
    /// ignoring events the pair already has.
    void addTarget(const std::shared_ptr<VLXObject>& target, const VLXControlAction& action,
                   VLXControlEvents events);
    /// Removes the pair for the events in `events`; a null `target` matches every target and
    /// a null `action` name ("" ) every action.
    void removeTarget(const VLXObject* target, const std::string& actionName,
                      VLXControlEvents events);
    /// Calls every pair registered for an event in `mask`, in the order they were added, with
    /// this control as the sender. Pairs added or removed by an action take effect from the
    /// next send.
    void sendActionsForControlEvents(VLXControlEvents mask);
    /// Calls `action` on `target` with this control as the sender (the hook every send goes
    /// through; subclasses may override it to watch or filter).
    virtual void sendAction(const VLXControlAction& action, VLXObject& target);

    /// The live targets, each once, in the order first added.
    std::vector<std::shared_ptr<VLXObject>> allTargets() const;
    /// The union of the events with at least one pair whose target is alive.
    VLXControlEvents allControlEvents() const;
    /// The names of the actions `target` has for any event in `events` (each once).
    std::vector<std::string> actionsForTarget(const VLXObject* target,
                                              VLXControlEvents events) const;

    /// YES by default. A disabled control tracks no touches (events sent by code still go out).
    bool isEnabled() const { return m_enabled; }
    virtual void setEnabled(bool enabled);
    /// NO by default.
    bool isSelected() const { return m_selected; }
    virtual void setSelected(bool selected);
    bool isHighlighted() const { return m_highlighted; }
    virtual void setHighlighted(bool highlighted);

    /// Points around the bounds that still count as inside while a touch is tracked.
    static constexpr double kTrackingMargin = 70.0;
    /// True while a touch that began on the control is down.
    bool isTracking() const { return m_trackedTouch != nullptr; }
    /// Whether the tracked touch is inside the tracking area (last known).
    bool isTouchInside() const { return m_touchInside; }

    void touchesBegan(const Touches& touches, const VLXEvent& event) override;
    void touchesMoved(const Touches& touches, const VLXEvent& event) override;
    void touchesEnded(const Touches& touches, const VLXEvent& event) override;
    void touchesCancelled(const Touches& touches, const VLXEvent& event) override;

protected:
    VLXControl();

private:
    struct Entry {
        std::weak_ptr<VLXObject> target;
        const VLXObject* targetAddress;
        VLXControlAction action;
        VLXControlEvents events;
    };
    // Drops entries whose target has gone.
    void dropGoneTargets();
    // The tracked touch among `touches`, or null.
    const VLXTouch* trackedAmong(const Touches& touches) const;
    bool isInTrackingArea(const VLXTouch& touch) const;

    std::vector<Entry> m_entries;
    bool m_enabled = true;
    bool m_selected = false;
    bool m_highlighted = false;
    const VLXTouch* m_trackedTouch = nullptr;  // identity only: the window owns the touch
    bool m_touchInside = false;
};
