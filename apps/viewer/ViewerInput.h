#pragma once

// Turns SDL mouse and touch-finger events into touches sent to a VLXWindow.

#include <SDL.h>

#include <cstddef>
#include <map>
#include <memory>

#include <VelmarCoreUI/Platform/Input/VLXTouch.h>
#include <VelmarCoreUI/Platform/Primitives/VLXGeometry.h>

class VLXWindow;

/// The viewer's input: the mouse is one finger (the left button down is the finger down);
/// holding Ctrl while pressing puts two fingers down instead, `kPinchHalfSpread` points either
/// side of the press point, and moving the mouse moves them mirrored around that point (a
/// pinch). SDL finger events map by finger id, their normalised coordinates times the window's
/// size. Every SDL event that changes a touch becomes one `VLXEvent` holding every touch that is
/// down (the unchanged ones stationary), stamped with `VLXClock::now()`.
///
/// A finger or mouse that leaves the window's bounds lifts there: the touch ends at the edge
/// point, and later moves of it are ignored until it comes down again. Losing the focus
/// cancels every touch. Moves and lifts of fingers that are not down, mouse events that SDL
/// made up from touches, and buttons other than the left are ignored.
class ViewerInput {
public:
    /// Half the distance between the two fingers of a Ctrl-press, in points.
    static constexpr double kPinchHalfSpread = 40;

    explicit ViewerInput(std::shared_ptr<VLXWindow> window = nullptr);
    ~ViewerInput();
    ViewerInput(const ViewerInput&) = delete;
    ViewerInput& operator=(const ViewerInput&) = delete;

    /// Cancels every touch that is down in the old window, then sends to `window`.
    void setWindow(std::shared_ptr<VLXWindow> window);
    /// SDL mouse units per window point (1 by default; 2 when the window is shown zoomed).
    /// Non-finite or non-positive values are ignored.
    void setZoom(double zoom);
    double zoom() const { return m_zoom; }

    /// Handles one SDL event; true when it changed a touch (an event was sent).
    bool handleEvent(const SDL_Event& event);
    /// Cancels every touch that is down.
    void cancelAll();
    /// The touches that are down (mouse fingers included).
    std::size_t activeTouchCount() const;

private:
    bool mouseDown(const SDL_MouseButtonEvent& button);
    bool mouseMoved(VLXPoint location);
    bool mouseUp(VLXPoint location);
    bool fingerDown(const SDL_TouchFingerEvent& finger);
    bool fingerMoved(const SDL_TouchFingerEvent& finger);
    bool fingerUp(const SDL_TouchFingerEvent& finger);
    VLXPoint mousePoint(int x, int y) const;
    VLXPoint fingerPoint(float x, float y) const;
    VLXSize windowSize() const;
    bool inside(VLXPoint point) const;
    VLXPoint clampToWindow(VLXPoint point) const;
    std::shared_ptr<VLXTouch> newTouch(VLXPoint location);
    // Marks every active touch that did not change stationary, sends one event with all of
    // them, and forgets those that finished.
    void send();

    std::weak_ptr<VLXWindow> m_window;
    double m_zoom = 1;
    // Mouse fingers: the first follows the pointer; the second mirrors it during a pinch.
    std::shared_ptr<VLXTouch> m_mouse;
    std::shared_ptr<VLXTouch> m_mirror;
    VLXPoint m_pressPoint{};
    std::map<SDL_FingerID, std::shared_ptr<VLXTouch>> m_fingers;
    VLXTouchSet m_changed;  // touches changed since the last event
    // For tap counts: where and when the last touch lifted, and its count.
    VLXPoint m_lastLiftPoint{};
    double m_lastLiftTime = -1e9;
    std::uint32_t m_lastTapCount = 0;
};
