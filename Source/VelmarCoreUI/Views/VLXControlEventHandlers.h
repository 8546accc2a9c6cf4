#pragma once

#include <functional>

#include <VelmarCoreUI/Platform/Views/VLXControl.h>
#include <VelmarCoreUI/VLXExport.h>

class VLXObject;

/// A callback run for control events, given the sender.
using VLXControlEventHandler = std::function<void(VLXObject* sender)>;

/// Attaches `handler` to `control` for `events`, instead of a target and an action.
///
/// A control holds at most one handler, for all its events: the handler is copied into the
/// control (as an associated object under one key shared by every control) and replaces any
/// earlier one, so a second call for other events makes every registered event call the newest
/// handler. The control then registers itself (weakly, so nothing is kept alive by it) as
/// target of its own `vlx_callActionHandler` action for `events`; a pair already registered for
/// an event is not added twice. An empty handler clears the stored one: the events still
/// arrive and do nothing.
VLX_EXPORT void vlx_addEventHandler(VLXControl& control, VLXControlEventHandler handler,
                                    VLXControlEvents events);

/// Runs the control's handler with `sender`; nothing when it has none.
VLX_EXPORT void vlx_callActionHandler(VLXControl& control, VLXObject* sender);

/// The action `vlx_addEventHandler` registers ("vlx_callActionHandler:"), so callers can find
/// or remove it with the control's target–action calls.
VLX_EXPORT const VLXControlAction& vlx_callActionHandlerAction();
