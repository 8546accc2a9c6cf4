#pragma once

#include <memory>
#include <vector>

#include <VelmarCoreUI/Platform/Input/VLXTouch.h>

class VLXEvent;
class VLXGestureArena;
class VLXGestureRecognizer;
class VLXView;
class VLXWindow;

/// A window's touch delivery: hit testing at touch-down, the recognisers each touch goes to,
/// and the view deliveries that recognisers hold back or cancel.
class VLXTouchDispatch {
public:
    explicit VLXTouchDispatch(VLXWindow& window);
    ~VLXTouchDispatch();

    void sendEvent(const VLXEvent& event);
    /// The arbiter of this window's recognisers.
    const std::shared_ptr<VLXGestureArena>& arena() const { return m_arena; }

private:
    struct HeldDelivery;

    void beginTouch(const std::shared_ptr<VLXTouch>& touch);
    void deliverToRecognizers(const VLXEvent& event);
    void deliverToViews(const VLXEvent& event);
    // Sends the view deliveries that recognisers no longer hold back.
    void releaseHeldDeliveries(const VLXEvent& event);
    void forgetFinishedTouches();

    VLXWindow& m_window;
    std::shared_ptr<VLXGestureArena> m_arena;
    VLXTouchSet m_live;  // touches between began and their end, in the order they began
    std::vector<HeldDelivery> m_held;
};
