#pragma once

#include <cstdint>
#include <memory>
#include <utility>
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
    // A view delivery (began or ended) that a recogniser holds back until it decides.
    struct HeldDelivery {
        std::shared_ptr<VLXTouch> touch;
        std::shared_ptr<const VLXEvent> event;
        VLXTouchPhase phase;
        // The undecided recognisers and their decision counts when the delivery was held.
        std::vector<std::pair<std::weak_ptr<VLXGestureRecognizer>, std::uint64_t>> waitingOn;
    };

    // Hit-tests a new touch and fixes its view and recognisers; false when it hit nothing.
    bool beginTouch(const std::shared_ptr<VLXTouch>& touch);
    void deliverToRecognizers(const VLXEvent& event, const VLXTouchSet& changed);
    void deliverToViews(const std::shared_ptr<const VLXEvent>& event, const VLXTouchSet& changed);
    // Holds `touch`'s `phase` delivery when one of its recognisers that delays it is undecided.
    bool hold(const std::shared_ptr<VLXTouch>& touch, const std::shared_ptr<const VLXEvent>& event,
              VLXTouchPhase phase);
    // Sends the held deliveries whose recognisers have all decided (or all of them), in order.
    void releaseHeldDeliveries(bool all = false);
    // A recogniser changed state: a win takes its touches from their views.
    void recognizerDidChange(VLXGestureRecognizer& recognizer);
    // The current event, or one made of the live touches for changes outside a delivery.
    std::shared_ptr<const VLXEvent> currentEvent();

    VLXWindow& m_window;
    std::shared_ptr<VLXGestureArena> m_arena;
    VLXTouchSet m_live;  // touches between began and their end, in the order they began
    std::vector<HeldDelivery> m_held;
    std::shared_ptr<const VLXEvent> m_event;  // while an event is being delivered
};
