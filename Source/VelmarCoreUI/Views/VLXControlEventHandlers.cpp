#include <VelmarCoreUI/Views/VLXControlEventHandlers.h>

#include <VelmarCoreUI/Platform/Foundation/VLXObject.h>
#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>

namespace {

// The one association key of every control's handler, whatever its events.
const char kEventHandlerKey = 0;

// The handler's own copy, held by the control as an associated object.
class VLXControlEventHandlerBox : public VLXObject {
public:
    static std::shared_ptr<VLXControlEventHandlerBox> create(VLXControlEventHandler handler) {
        auto box = makeInitialized<VLXControlEventHandlerBox>();
        box->m_handler = std::move(handler);
        return box;
    }
    const VLXControlEventHandler& handler() const { return m_handler; }

protected:
    VLXControlEventHandlerBox() = default;

private:
    VLXControlEventHandler m_handler;
};

}  // namespace

const VLXControlAction& vlx_callActionHandlerAction() {
    static const VLXControlAction action(
        "vlx_callActionHandler:", [](VLXObject& target, VLXObject* sender) {
            if (auto* control = dynamic_cast<VLXControl*>(&target)) {
                vlx_callActionHandler(*control, sender);
            }
        });
    return action;
}

void vlx_addEventHandler(VLXControl& control, VLXControlEventHandler handler,
                         VLXControlEvents events) {
    if (handler) {
        control.setAssociatedObject(&kEventHandlerKey,
                                    VLXValue(VLXControlEventHandlerBox::create(std::move(handler))),
                                    VLXAssociationPolicy::Retain);
    } else {
        control.setAssociatedObject(&kEventHandlerKey, VLXValue());
    }
    control.addTarget(control.sharedFrom<VLXObject>(), vlx_callActionHandlerAction(), events);
}

void vlx_callActionHandler(VLXControl& control, VLXObject* sender) {
    const auto box = std::dynamic_pointer_cast<VLXControlEventHandlerBox>(
        control.associatedObject(&kEventHandlerKey).objectValue());
    if (!box || !box->handler()) {
        return;
    }
    // Hold the box: the handler may replace itself while it runs.
    box->handler()(sender);
}
