#pragma once

#include <memory>
#include <string>

#include <VelmarCoreUI/Platform/Foundation/VLXObject.h>
#include <VelmarCoreUI/Platform/Input/VLXTouch.h>
#include <VelmarCoreUI/VLXExport.h>

/// One moment of touch input: every finger on the screen at `timestamp`, each in the phase it has
/// now (the touches that began, moved, ended or were cancelled since the last event, and the
/// stationary ones). `VLXWindow::sendEvent` delivers it.
class VLX_EXPORT VLXEvent : public VLXObject {
public:
    /// Null touches are dropped; a touch listed twice counts once. A non-finite timestamp is
    /// taken from the latest touch.
    static std::shared_ptr<VLXEvent> create(VLXTouchSet touches, double timestamp);
    ~VLXEvent() override;

    const VLXTouchSet& allTouches() const { return m_touches; }
    /// The touches whose hit view is `view`.
    VLXTouchSet touchesForView(const VLXView* view) const;
    /// The touches delivered to `recognizer`.
    VLXTouchSet touchesForGestureRecognizer(const VLXGestureRecognizer* recognizer) const;
    double timestamp() const { return m_timestamp; }

    std::string description() const override;

protected:
    VLXEvent();

private:
    VLXTouchSet m_touches;
    double m_timestamp = 0;
};
