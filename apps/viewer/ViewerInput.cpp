#include "ViewerInput.h"

#include <algorithm>
#include <cmath>

#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Input/VLXEvent.h>
#include <VelmarCoreUI/Platform/Input/VLXTapGestureRecognizer.h>
#include <VelmarCoreUI/Platform/Views/VLXWindow.h>

ViewerInput::ViewerInput(std::shared_ptr<VLXWindow> window) : m_window(std::move(window)) {}

ViewerInput::~ViewerInput() {
    cancelAll();
}

void ViewerInput::setWindow(std::shared_ptr<VLXWindow> window) {
    cancelAll();
    m_window = std::move(window);
}

void ViewerInput::setZoom(double zoom) {
    if (std::isfinite(zoom) && zoom > 0) {
        m_zoom = zoom;
    }
}

std::size_t ViewerInput::activeTouchCount() const {
    return m_fingers.size() + (m_mouse ? 1 : 0) + (m_mirror ? 1 : 0);
}

bool ViewerInput::handleEvent(const SDL_Event& event) {
    switch (event.type) {
        case SDL_MOUSEBUTTONDOWN:
            return event.button.which != SDL_TOUCH_MOUSEID && mouseDown(event.button);
        case SDL_MOUSEMOTION:
            return event.motion.which != SDL_TOUCH_MOUSEID &&
                   mouseMoved(mousePoint(event.motion.x, event.motion.y));
        case SDL_MOUSEBUTTONUP:
            return event.button.which != SDL_TOUCH_MOUSEID &&
                   event.button.button == SDL_BUTTON_LEFT &&
                   mouseUp(mousePoint(event.button.x, event.button.y));
        case SDL_FINGERDOWN:
            return event.tfinger.touchId != SDL_MOUSE_TOUCHID && fingerDown(event.tfinger);
        case SDL_FINGERMOTION:
            return event.tfinger.touchId != SDL_MOUSE_TOUCHID && fingerMoved(event.tfinger);
        case SDL_FINGERUP:
            return event.tfinger.touchId != SDL_MOUSE_TOUCHID && fingerUp(event.tfinger);
        case SDL_WINDOWEVENT:
            if (event.window.event == SDL_WINDOWEVENT_FOCUS_LOST && activeTouchCount() > 0) {
                cancelAll();
                return true;
            }
            return false;
        default:
            return false;
    }
}

void ViewerInput::cancelAll() {
    const double now = VLXClock::now();
    auto cancel = [&](const std::shared_ptr<VLXTouch>& touch) {
        if (touch) {
            touch->update(touch->locationInView(nullptr), now, VLXTouchPhase::Cancelled);
            m_changed.push_back(touch);
        }
    };
    cancel(m_mouse);
    cancel(m_mirror);
    for (auto& [id, touch] : m_fingers) {
        cancel(touch);
    }
    if (!m_changed.empty()) {
        send();
    }
}

VLXSize ViewerInput::windowSize() const {
    if (auto window = m_window.lock()) {
        return window->bounds().size;
    }
    return {};
}

bool ViewerInput::inside(VLXPoint point) const {
    const VLXSize size = windowSize();
    return point.x >= 0 && point.y >= 0 && point.x <= size.width && point.y <= size.height;
}

VLXPoint ViewerInput::clampToWindow(VLXPoint point) const {
    const VLXSize size = windowSize();
    return {std::clamp(point.x, 0.0, std::max(size.width, 0.0)),
            std::clamp(point.y, 0.0, std::max(size.height, 0.0))};
}

VLXPoint ViewerInput::mousePoint(int x, int y) const {
    return {x / m_zoom, y / m_zoom};
}

VLXPoint ViewerInput::fingerPoint(float x, float y) const {
    const VLXSize size = windowSize();
    // SDL's normalised coordinates; a bad reading lands at the origin rather than anywhere.
    const double nx = std::isfinite(x) ? x : 0.0;
    const double ny = std::isfinite(y) ? y : 0.0;
    return {nx * size.width, ny * size.height};
}

std::shared_ptr<VLXTouch> ViewerInput::newTouch(VLXPoint location) {
    const double now = VLXClock::now();
    // A quick touch near the last lift continues its series, as the tap recogniser expects.
    const double dx = location.x - m_lastLiftPoint.x, dy = location.y - m_lastLiftPoint.y;
    const bool series = now - m_lastLiftTime <= VLXTapGestureRecognizer::kMaximumTapInterval &&
                        std::hypot(dx, dy) <= VLXTapGestureRecognizer::kMaximumMovement;
    const std::uint32_t tapCount = series ? m_lastTapCount + 1 : 1;
    auto touch = VLXTouch::create(location, now, VLXTouchPhase::Began, tapCount);
    m_changed.push_back(touch);
    return touch;
}

bool ViewerInput::mouseDown(const SDL_MouseButtonEvent& button) {
    if (button.button != SDL_BUTTON_LEFT || m_mouse || m_window.expired()) {
        return false;
    }
    const VLXPoint p = mousePoint(button.x, button.y);
    if (!inside(p)) {
        return false;
    }
    if ((SDL_GetModState() & KMOD_CTRL) != 0) {
        m_pressPoint = p;
        m_mouse = newTouch(clampToWindow({p.x + kPinchHalfSpread, p.y}));
        m_mirror = newTouch(clampToWindow({p.x - kPinchHalfSpread, p.y}));
    } else {
        m_mouse = newTouch(p);
    }
    send();
    return true;
}

bool ViewerInput::mouseMoved(VLXPoint location) {
    if (!m_mouse) {
        return false;
    }
    const double now = VLXClock::now();
    std::vector<std::pair<std::shared_ptr<VLXTouch>, VLXPoint>> moves;
    if (m_mirror) {
        const double dx = location.x - m_pressPoint.x, dy = location.y - m_pressPoint.y;
        moves.emplace_back(m_mouse,
                           VLXPoint{m_pressPoint.x + kPinchHalfSpread + dx, m_pressPoint.y + dy});
        moves.emplace_back(m_mirror,
                           VLXPoint{m_pressPoint.x - kPinchHalfSpread - dx, m_pressPoint.y - dy});
    } else {
        moves.emplace_back(m_mouse, location);
    }
    // One finger off the window lifts them all: a pinch cut in half is no pinch.
    const bool leaving = std::any_of(moves.begin(), moves.end(),
                                     [&](const auto& move) { return !inside(move.second); });
    for (auto& [touch, point] : moves) {
        touch->update(clampToWindow(point), now,
                      leaving ? VLXTouchPhase::Ended : VLXTouchPhase::Moved);
        m_changed.push_back(touch);
    }
    send();
    return true;
}

bool ViewerInput::mouseUp(VLXPoint location) {
    if (!m_mouse) {
        return false;
    }
    const double now = VLXClock::now();
    if (m_mirror) {
        // The mirror lifts where it last was: the release point may differ from the last motion.
        m_mirror->update(m_mirror->locationInView(nullptr), now, VLXTouchPhase::Ended);
        m_changed.push_back(m_mirror);
        m_mouse->update(m_mouse->locationInView(nullptr), now, VLXTouchPhase::Ended);
    } else {
        m_mouse->update(clampToWindow(location), now, VLXTouchPhase::Ended);
    }
    m_changed.push_back(m_mouse);
    send();
    return true;
}

bool ViewerInput::fingerDown(const SDL_TouchFingerEvent& finger) {
    if (m_window.expired() || m_fingers.count(finger.fingerId) != 0) {
        return false;
    }
    const VLXPoint p = fingerPoint(finger.x, finger.y);
    if (!inside(p)) {
        return false;
    }
    m_fingers[finger.fingerId] = newTouch(p);
    send();
    return true;
}

bool ViewerInput::fingerMoved(const SDL_TouchFingerEvent& finger) {
    auto found = m_fingers.find(finger.fingerId);
    if (found == m_fingers.end()) {
        return false;
    }
    const VLXPoint p = fingerPoint(finger.x, finger.y);
    const VLXTouchPhase phase = inside(p) ? VLXTouchPhase::Moved : VLXTouchPhase::Ended;
    found->second->update(clampToWindow(p), VLXClock::now(), phase);
    m_changed.push_back(found->second);
    send();
    return true;
}

bool ViewerInput::fingerUp(const SDL_TouchFingerEvent& finger) {
    auto found = m_fingers.find(finger.fingerId);
    if (found == m_fingers.end()) {
        return false;
    }
    found->second->update(clampToWindow(fingerPoint(finger.x, finger.y)), VLXClock::now(),
                          VLXTouchPhase::Ended);
    m_changed.push_back(found->second);
    send();
    return true;
}

void ViewerInput::send() {
    VLXTouchSet all = m_changed;
    auto addStationary = [&](const std::shared_ptr<VLXTouch>& touch) {
        if (touch && std::find(m_changed.begin(), m_changed.end(), touch) == m_changed.end()) {
            touch->setPhase(VLXTouchPhase::Stationary);
            all.push_back(touch);
        }
    };
    addStationary(m_mouse);
    addStationary(m_mirror);
    for (auto& [id, touch] : m_fingers) {
        addStationary(touch);
    }
    m_changed.clear();
    const double now = VLXClock::now();
    // Forget finished touches before sending, so that a window that calls back into this
    // object sees the new state.
    auto finished = [](const std::shared_ptr<VLXTouch>& touch) {
        return touch && touch->isFinished();
    };
    for (const auto& touch : all) {
        if (touch->phase() == VLXTouchPhase::Ended) {
            m_lastLiftPoint = touch->locationInView(nullptr);
            m_lastLiftTime = now;
            m_lastTapCount = touch->tapCount();
        }
    }
    if (finished(m_mouse)) {
        m_mouse.reset();
    }
    if (finished(m_mirror)) {
        m_mirror.reset();
    }
    std::erase_if(m_fingers, [&](const auto& entry) { return finished(entry.second); });
    auto window = m_window.lock();
    if (!window || all.empty()) {
        return;
    }
    auto event = VLXEvent::create(std::move(all), now);
    if (event) {
        window->sendEvent(*event);
    }
}
