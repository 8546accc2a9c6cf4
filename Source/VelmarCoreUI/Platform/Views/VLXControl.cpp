#include <VelmarCoreUI/Platform/Views/VLXControl.h>

#include <algorithm>

#include <VelmarCoreUI/Platform/Input/VLXTouch.h>

VLXControlAction::VLXControlAction(std::string name, Invoke invoke)
    : m_name(std::move(name)), m_invoke(std::move(invoke)) {}

void VLXControlAction::operator()(VLXObject& target, VLXObject* sender) const {
    if (m_invoke) {
        m_invoke(target, sender);
    }
}

VLXControl::VLXControl() = default;
VLXControl::~VLXControl() = default;

std::shared_ptr<VLXControl> VLXControl::create() {
    return makeWithFrame<VLXControl>(VLXRect{});
}

std::shared_ptr<VLXControl> VLXControl::createWithFrame(const VLXRect& frame) {
    return makeWithFrame<VLXControl>(frame);
}

void VLXControl::dropGoneTargets() {
    std::erase_if(m_entries, [](const Entry& entry) { return entry.target.expired(); });
}

void VLXControl::addTarget(const std::shared_ptr<VLXObject>& target, const VLXControlAction& action,
                           VLXControlEvents events) {
    if (!target || events == 0) {
        return;
    }
    dropGoneTargets();
    for (Entry& entry : m_entries) {
        if (entry.targetAddress == target.get() && entry.action == action) {
            entry.events |= events;
            return;
        }
    }
    m_entries.push_back(Entry{target, target.get(), action, events});
}

void VLXControl::removeTarget(const VLXObject* target, const std::string& actionName,
                              VLXControlEvents events) {
    dropGoneTargets();
    for (Entry& entry : m_entries) {
        if ((!target || entry.targetAddress == target) &&
            (actionName.empty() || entry.action.name() == actionName)) {
            entry.events &= ~events;
        }
    }
    std::erase_if(m_entries, [](const Entry& entry) { return entry.events == 0; });
}

void VLXControl::sendActionsForControlEvents(VLXControlEvents mask) {
    dropGoneTargets();
    // Actions may add or remove pairs (or drop the last owner of this control): work from a
    // copy and keep the control alive until the round is over.
    const auto self = sharedFrom<VLXControl>();
    std::vector<std::pair<std::shared_ptr<VLXObject>, VLXControlAction>> calls;
    for (const Entry& entry : m_entries) {
        if ((entry.events & mask) == 0) {
            continue;
        }
        if (auto target = entry.target.lock()) {
            calls.emplace_back(std::move(target), entry.action);
        }
    }
    for (auto& [target, action] : calls) {
        sendAction(action, *target);
    }
}

void VLXControl::sendAction(const VLXControlAction& action, VLXObject& target) {
    action(target, this);
}

std::vector<std::shared_ptr<VLXObject>> VLXControl::allTargets() const {
    std::vector<std::shared_ptr<VLXObject>> targets;
    for (const Entry& entry : m_entries) {
        auto target = entry.target.lock();
        if (target && std::find(targets.begin(), targets.end(), target) == targets.end()) {
            targets.push_back(std::move(target));
        }
    }
    return targets;
}

VLXControlEvents VLXControl::allControlEvents() const {
    VLXControlEvents events = 0;
    for (const Entry& entry : m_entries) {
        if (!entry.target.expired()) {
            events |= entry.events;
        }
    }
    return events;
}

std::vector<std::string> VLXControl::actionsForTarget(const VLXObject* target,
                                                      VLXControlEvents events) const {
    std::vector<std::string> names;
    for (const Entry& entry : m_entries) {
        if (entry.targetAddress == target && !entry.target.expired() &&
            (entry.events & events) != 0 &&
            std::find(names.begin(), names.end(), entry.action.name()) == names.end()) {
            names.push_back(entry.action.name());
        }
    }
    return names;
}

void VLXControl::setEnabled(bool enabled) {
    if (enabled == m_enabled) {
        return;
    }
    m_enabled = enabled;
    setNeedsDisplay();
}

void VLXControl::setSelected(bool selected) {
    if (selected == m_selected) {
        return;
    }
    m_selected = selected;
    setNeedsDisplay();
}

void VLXControl::setHighlighted(bool highlighted) {
    if (highlighted == m_highlighted) {
        return;
    }
    m_highlighted = highlighted;
    setNeedsDisplay();
}

// --- touch tracking -----------------------------------------------------------------------------

const VLXTouch* VLXControl::trackedAmong(const Touches& touches) const {
    for (const auto& touch : touches) {
        if (touch.get() == m_trackedTouch) {
            return touch.get();
        }
    }
    return nullptr;
}

bool VLXControl::isInTrackingArea(const VLXTouch& touch) const {
    const VLXRect area = VLXRectInset(bounds(), -kTrackingMargin, -kTrackingMargin);
    return VLXRectContainsPoint(area, touch.locationInView(this));
}

void VLXControl::touchesBegan(const Touches& touches, const VLXEvent&) {
    if (!m_enabled || m_trackedTouch || touches.empty()) {
        return;
    }
    const auto self = sharedFrom<VLXControl>();
    const VLXTouch& touch = *touches.front();
    m_trackedTouch = &touch;
    m_touchInside = true;
    setHighlighted(true);
    VLXControlEvents events = VLXControlEventTouchDown;
    if (touch.tapCount() > 1) {
        events |= VLXControlEventTouchDownRepeat;
    }
    sendActionsForControlEvents(events);
}

void VLXControl::touchesMoved(const Touches& touches, const VLXEvent&) {
    const VLXTouch* touch = trackedAmong(touches);
    if (!touch) {
        return;
    }
    const auto self = sharedFrom<VLXControl>();
    const bool inside = isInTrackingArea(*touch);
    VLXControlEvents events =
        inside ? VLXControlEventTouchDragInside : VLXControlEventTouchDragOutside;
    if (inside != m_touchInside) {
        events |= inside ? VLXControlEventTouchDragEnter : VLXControlEventTouchDragExit;
    }
    m_touchInside = inside;
    setHighlighted(inside);
    sendActionsForControlEvents(events);
}

void VLXControl::touchesEnded(const Touches& touches, const VLXEvent&) {
    const VLXTouch* touch = trackedAmong(touches);
    if (!touch) {
        return;
    }
    const auto self = sharedFrom<VLXControl>();
    const bool inside = isInTrackingArea(*touch);
    m_trackedTouch = nullptr;
    m_touchInside = false;
    setHighlighted(false);
    sendActionsForControlEvents(inside ? VLXControlEventTouchUpInside
                                       : VLXControlEventTouchUpOutside);
}

void VLXControl::touchesCancelled(const Touches& touches, const VLXEvent&) {
    if (!trackedAmong(touches)) {
        return;
    }
    const auto self = sharedFrom<VLXControl>();
    m_trackedTouch = nullptr;
    m_touchInside = false;
    setHighlighted(false);
    sendActionsForControlEvents(VLXControlEventTouchCancel);
}
