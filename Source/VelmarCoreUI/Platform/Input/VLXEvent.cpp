#include <VelmarCoreUI/Platform/Input/VLXEvent.h>

#include <algorithm>
#include <cmath>

#include <VelmarCoreUI/Platform/Foundation/VLXStringFormat.h>
#include <VelmarCoreUI/Platform/Input/VLXGestureRecognizer.h>

VLXEvent::VLXEvent() = default;
VLXEvent::~VLXEvent() = default;

std::shared_ptr<VLXEvent> VLXEvent::create(VLXTouchSet touches, double timestamp) {
    auto event = makeInitialized<VLXEvent>();
    for (auto& touch : touches) {
        if (touch && std::find(event->m_touches.begin(), event->m_touches.end(), touch) ==
                         event->m_touches.end()) {
            event->m_touches.push_back(std::move(touch));
        }
    }
    if (!std::isfinite(timestamp)) {
        timestamp = 0;
        for (const auto& touch : event->m_touches) {
            timestamp = std::max(timestamp, touch->timestamp());
        }
    }
    event->m_timestamp = timestamp;
    return event;
}

VLXTouchSet VLXEvent::touchesForView(const VLXView* view) const {
    VLXTouchSet result;
    for (const auto& touch : m_touches) {
        if (view && touch->view() == view) {
            result.push_back(touch);
        }
    }
    return result;
}

VLXTouchSet VLXEvent::touchesForGestureRecognizer(const VLXGestureRecognizer* recognizer) const {
    VLXTouchSet result;
    if (!recognizer) {
        return result;
    }
    for (const auto& touch : m_touches) {
        const auto& tracked = recognizer->touches();
        if (std::find(tracked.begin(), tracked.end(), touch) != tracked.end()) {
            result.push_back(touch);
        }
    }
    return result;
}

std::string VLXEvent::description() const {
    return VLXStringWithFormat("<%s: %p; timestamp = %g; touches = %zu>", className().c_str(),
                               static_cast<const void*>(this), m_timestamp, m_touches.size());
}
