#include <VelmarCoreUI/Platform/Input/VLXTouchSynthesizer.h>

#include <algorithm>
#include <cmath>

#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Foundation/VLXRunLoop.h>
#include <VelmarCoreUI/Platform/Views/VLXWindow.h>

namespace {

double usableDuration(double seconds) {
    if (!(seconds > 0)) {  // NaN too
        return 0;
    }
    return std::min(seconds, VLXTouchSynthesizer::kMaximumDuration);
}

VLXPoint interpolate(VLXPoint a, VLXPoint b, double t) {
    return {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t};
}

}  // namespace

VLXTouchSynthesizer::VLXTouchSynthesizer(const std::shared_ptr<VLXWindow>& window)
    : m_window(window) {}

VLXTouchSynthesizer::~VLXTouchSynthesizer() {
    // A window that outlives us must not keep fingers that will never lift.
    if (!m_touches.empty()) {
        cancelAll();
    }
}

// --- single events ----------------------------------------------------------------------------

void VLXTouchSynthesizer::send(const std::vector<int>& changed) {
    VLXTouchSet touches;
    touches.reserve(m_touches.size());
    for (auto& [finger, touch] : m_touches) {
        if (std::find(changed.begin(), changed.end(), finger) == changed.end() &&
            !touch->isFinished()) {
            touch->setPhase(VLXTouchPhase::Stationary);
        }
        touches.push_back(touch);
    }
    const auto event = VLXEvent::create(touches, VLXClock::now());
    // Dropped before delivery, so an observer or action that starts a new finger sees the
    // right count.
    std::erase_if(m_touches, [](const auto& entry) { return entry.second->isFinished(); });
    if (auto window = m_window.lock()) {
        window->sendEvent(*event);
        if (m_observer) {
            m_observer(*event);
        }
    }
}

void VLXTouchSynthesizer::touchDown(int finger, VLXPoint location, std::uint32_t tapCount) {
    downTogether({finger}, {location}, tapCount);
}

void VLXTouchSynthesizer::moveTo(int finger, VLXPoint location) {
    moveTogether({finger}, {location});
}

void VLXTouchSynthesizer::lift(int finger) {
    liftTogether({finger});
}

void VLXTouchSynthesizer::cancelAll() {
    if (m_touches.empty()) {
        return;
    }
    std::vector<int> fingers;
    const double now = VLXClock::now();
    for (auto& [finger, touch] : m_touches) {
        touch->update(touch->locationInView(nullptr), now, VLXTouchPhase::Cancelled);
        fingers.push_back(finger);
    }
    send(fingers);
}

void VLXTouchSynthesizer::wait(double seconds) {
    VLXRunLoop::main().runUntil(VLXClock::now() + usableDuration(seconds));
}

void VLXTouchSynthesizer::downTogether(const std::vector<int>& fingers,
                                       const std::vector<VLXPoint>& locations,
                                       std::uint32_t tapCount) {
    if (m_window.expired()) {
        return;
    }
    std::vector<int> changed;
    const double now = VLXClock::now();
    for (std::size_t i = 0; i < fingers.size() && i < locations.size(); ++i) {
        if (m_touches.count(fingers[i]) != 0) {
            continue;
        }
        m_touches[fingers[i]] = VLXTouch::create(locations[i], now, VLXTouchPhase::Began,
                                                 std::max<std::uint32_t>(tapCount, 1));
        changed.push_back(fingers[i]);
    }
    if (!changed.empty()) {
        send(changed);
    }
}

void VLXTouchSynthesizer::moveTogether(const std::vector<int>& fingers,
                                       const std::vector<VLXPoint>& locations) {
    std::vector<int> changed;
    const double now = VLXClock::now();
    for (std::size_t i = 0; i < fingers.size() && i < locations.size(); ++i) {
        const auto it = m_touches.find(fingers[i]);
        if (it == m_touches.end()) {
            continue;
        }
        it->second->update(locations[i], now, VLXTouchPhase::Moved);
        changed.push_back(fingers[i]);
    }
    if (!changed.empty()) {
        send(changed);
    }
}

void VLXTouchSynthesizer::liftTogether(const std::vector<int>& fingers) {
    std::vector<int> changed;
    const double now = VLXClock::now();
    for (int finger : fingers) {
        const auto it = m_touches.find(finger);
        if (it == m_touches.end()) {
            continue;
        }
        it->second->update(it->second->locationInView(nullptr), now, VLXTouchPhase::Ended);
        changed.push_back(finger);
    }
    if (!changed.empty()) {
        send(changed);
    }
}

std::vector<int> VLXTouchSynthesizer::freeFingers(std::size_t count) const {
    std::vector<int> fingers;
    for (int finger = 0; fingers.size() < count; ++finger) {
        if (m_touches.count(finger) == 0) {
            fingers.push_back(finger);
        }
    }
    return fingers;
}

void VLXTouchSynthesizer::stepTogether(const std::vector<int>& fingers,
                                       const std::vector<VLXPoint>& from,
                                       const std::vector<VLXPoint>& to, double duration) {
    duration = usableDuration(duration);
    // Whole steps of at most kStepInterval, so the last move lands exactly at the end.
    const double steps = std::max(1.0, std::ceil(duration / kStepInterval - 1e-9));
    const int count = static_cast<int>(steps);
    const double dt = duration / steps;
    std::vector<VLXPoint> locations(fingers.size());
    for (int step = 1; step <= count; ++step) {
        wait(dt);
        const double t = double(step) / steps;
        for (std::size_t i = 0; i < fingers.size(); ++i) {
            locations[i] = interpolate(from[i], to[i], t);
        }
        moveTogether(fingers, locations);
    }
}

// --- gestures ---------------------------------------------------------------------------------

void VLXTouchSynthesizer::tap(VLXPoint location) {
    const int finger = freeFingers(1)[0];
    touchDown(finger, location);
    wait(kTapDuration);
    lift(finger);
    wait(kSettleDuration);
}

void VLXTouchSynthesizer::doubleTap(VLXPoint location) {
    const int finger = freeFingers(1)[0];
    touchDown(finger, location, 1);
    wait(kTapDuration);
    lift(finger);
    wait(kTapGap);
    touchDown(finger, location, 2);
    wait(kTapDuration);
    lift(finger);
    wait(kSettleDuration);
}

void VLXTouchSynthesizer::twoFingerTap(VLXPoint centre, double spread) {
    const auto fingers = freeFingers(2);
    const double half = std::isfinite(spread) ? spread / 2 : 0;
    downTogether(fingers, {{centre.x - half, centre.y}, {centre.x + half, centre.y}});
    wait(kTapDuration);
    liftTogether(fingers);
    wait(kSettleDuration);
}

void VLXTouchSynthesizer::longPress(VLXPoint location, double duration) {
    const int finger = freeFingers(1)[0];
    touchDown(finger, location);
    wait(duration);
    lift(finger);
    wait(kSettleDuration);
}

void VLXTouchSynthesizer::drag(VLXPoint from, VLXPoint to, double duration) {
    pressAndDrag(from, to, 0, duration);
}

void VLXTouchSynthesizer::pressAndDrag(VLXPoint from, VLXPoint to, double hold, double duration) {
    const std::vector<int> fingers = freeFingers(1);
    touchDown(fingers[0], from);
    wait(hold);
    stepTogether(fingers, {from}, {to}, duration);
    // The lift comes with the last move, so a fling keeps its speed.
    liftTogether(fingers);
    wait(kSettleDuration);
}

void VLXTouchSynthesizer::pinch(VLXPoint centre, double startDistance, double endDistance,
                                double duration) {
    const auto fingers = freeFingers(2);
    const double a = std::isfinite(startDistance) ? startDistance / 2 : 0;
    const double b = std::isfinite(endDistance) ? endDistance / 2 : a;
    const std::vector<VLXPoint> from{{centre.x - a, centre.y}, {centre.x + a, centre.y}};
    const std::vector<VLXPoint> to{{centre.x - b, centre.y}, {centre.x + b, centre.y}};
    downTogether(fingers, from);
    stepTogether(fingers, from, to, duration);
    liftTogether(fingers);
    wait(kSettleDuration);
}
