#include <VelmarCoreUI/Platform/Input/VLXTouch.h>

#include <cmath>

#include <VelmarCoreUI/Platform/Foundation/VLXStringFormat.h>
#include <VelmarCoreUI/Platform/Input/VLXGestureRecognizer.h>
#include <VelmarCoreUI/Platform/Views/VLXWindow.h>

namespace {

bool isFinite(VLXPoint p) {
    return std::isfinite(p.x) && std::isfinite(p.y);
}

const char* phaseName(VLXTouchPhase phase) {
    switch (phase) {
        case VLXTouchPhase::Began:
            return "began";
        case VLXTouchPhase::Moved:
            return "moved";
        case VLXTouchPhase::Stationary:
            return "stationary";
        case VLXTouchPhase::Ended:
            return "ended";
        case VLXTouchPhase::Cancelled:
            return "cancelled";
    }
    return "unknown";
}

}  // namespace

VLXTouch::VLXTouch() = default;
VLXTouch::~VLXTouch() = default;

std::shared_ptr<VLXTouch> VLXTouch::create(VLXPoint location, double timestamp, VLXTouchPhase phase,
                                           std::uint32_t tapCount) {
    auto touch = makeInitialized<VLXTouch>();
    touch->m_location = isFinite(location) ? location : VLXPoint{};
    touch->m_previousLocation = touch->m_location;
    touch->m_timestamp = std::isfinite(timestamp) ? timestamp : 0;
    touch->m_phase = phase;
    touch->m_tapCount = tapCount;
    return touch;
}

void VLXTouch::update(VLXPoint location, double timestamp, VLXTouchPhase phase) {
    m_previousLocation = m_location;
    if (isFinite(location)) {
        m_location = location;
    }
    if (std::isfinite(timestamp) && timestamp > m_timestamp) {
        m_timestamp = timestamp;
    }
    m_phase = phase;
}

VLXPoint VLXTouch::locationInView(const VLXView* view) const {
    return view ? view->convertPointFromView(m_location, window()) : m_location;
}

VLXPoint VLXTouch::previousLocationInView(const VLXView* view) const {
    return view ? view->convertPointFromView(m_previousLocation, window()) : m_previousLocation;
}

VLXView* VLXTouch::view() const {
    return m_view.lock().get();
}

VLXWindow* VLXTouch::window() const {
    return static_cast<VLXWindow*>(m_window.lock().get());
}

std::vector<std::shared_ptr<VLXGestureRecognizer>> VLXTouch::gestureRecognizers() const {
    std::vector<std::shared_ptr<VLXGestureRecognizer>> alive;
    for (const auto& weak : m_recognizers) {
        if (auto recognizer = weak.lock()) {
            alive.push_back(std::move(recognizer));
        }
    }
    return alive;
}

std::string VLXTouch::description() const {
    return VLXStringWithFormat(
        "<%s: %p; phase = %s; tapCount = %u; location = (%g %g); "
        "timestamp = %g>",
        className().c_str(), static_cast<const void*>(this), phaseName(m_phase), m_tapCount,
        m_location.x, m_location.y, m_timestamp);
}
