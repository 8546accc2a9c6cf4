#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <vector>

#include <VelmarCoreUI/Platform/Input/VLXEvent.h>
#include <VelmarCoreUI/Platform/Input/VLXTouch.h>
#include <VelmarCoreUI/Platform/Primitives/VLXGeometry.h>
#include <VelmarCoreUI/VLXExport.h>

class VLXWindow;

/// Plays touch sequences into a window as a finger would, so that tests, the gallery and hosts
/// drive real interaction end to end.
///
/// Fingers are numbered by the caller. `touchDown`, `moveTo`, `lift` and `cancel` each send one
/// event at the clock's reading holding every finger that is down (the others stationary).
/// The gestures are built from them: between steps they run the main run loop up to the next
/// step's time (`VLXRunLoop::runUntil`), so timers such as a long press's delay fire at their
/// dates. On the manual clock a whole gesture is instant and deterministic; on the real clock
/// it takes its real time. Moves are sent every `kStepInterval` seconds.
///
/// Points are in window coordinates. Calls for a finger that is not down (or already down) do
/// nothing, and a synthesiser whose window has gone sends nothing.
///
/// Every gesture ends with `kSettleDuration` of waiting after its last lift, so that the
/// recognisers' timeouts (a tap waiting for a second tap, say) have run out and the next gesture
/// starts fresh. Gestures use the lowest finger numbers not down. Waits and gesture durations
/// that are NaN or negative count as 0; longer ones than `kMaximumDuration` (infinity too) are
/// cut to it. Fingers still down when
/// the synthesiser is destroyed are cancelled.
class VLX_EXPORT VLXTouchSynthesizer {
public:
    /// Seconds between the move events of a drag or pinch (60 per second).
    static constexpr double kStepInterval = 1.0 / 60.0;
    /// How long a tap's finger stays down.
    static constexpr double kTapDuration = 0.05;
    /// The pause between the taps of a double tap.
    static constexpr double kTapGap = 0.1;
    /// How long fingers rest after a gesture, so that tap timeouts run out before the next.
    static constexpr double kSettleDuration = 0.5;
    /// The longest wait or gesture duration taken (longer ones are cut to it).
    static constexpr double kMaximumDuration = 60.0;

    /// Called after every event sent, with the event (the gallery draws the fingers from it).
    using EventObserver = std::function<void(const VLXEvent&)>;

    explicit VLXTouchSynthesizer(const std::shared_ptr<VLXWindow>& window);
    ~VLXTouchSynthesizer();

    // --- single events -----------------------------------------------------------------------
    void touchDown(int finger, VLXPoint location, std::uint32_t tapCount = 1);
    void moveTo(int finger, VLXPoint location);
    void lift(int finger);
    /// Cancels every finger that is down.
    void cancelAll();
    /// Runs the run loop for `seconds` (fingers stay where they are).
    void wait(double seconds);
    /// The fingers that are down.
    std::size_t activeTouchCount() const { return m_touches.size(); }

    // --- gestures ----------------------------------------------------------------------------
    void tap(VLXPoint location);
    void doubleTap(VLXPoint location);
    /// Two fingers `spread` points apart around `centre`, down and up together.
    void twoFingerTap(VLXPoint centre, double spread = 30.0);
    /// Down, held for `duration`, up.
    void longPress(VLXPoint location, double duration = 0.8);
    /// Down, moved in a straight line to `to` over `duration`, up.
    void drag(VLXPoint from, VLXPoint to, double duration = 0.3);
    /// Down, held for `hold`, then dragged to `to` over `duration`, up.
    void pressAndDrag(VLXPoint from, VLXPoint to, double hold = 0.8, double duration = 0.5);
    /// Two fingers on a horizontal line through `centre`, from `startDistance` apart to
    /// `endDistance` apart over `duration`, then up (a pinch out when the distance grows).
    void pinch(VLXPoint centre, double startDistance, double endDistance, double duration = 0.5);

    void setEventObserver(EventObserver observer) { m_observer = std::move(observer); }

private:
    // Sends one event of every finger down: `changed` keep their phase, the others turn
    // stationary. Fingers that lifted or were cancelled are dropped afterwards.
    void send(const std::vector<int>& changed);
    // Lowest finger numbers not down.
    std::vector<int> freeFingers(std::size_t count) const;
    // Puts `fingers` down (or moves or lifts them) in one event.
    void downTogether(const std::vector<int>& fingers, const std::vector<VLXPoint>& locations,
                      std::uint32_t tapCount = 1);
    void moveTogether(const std::vector<int>& fingers, const std::vector<VLXPoint>& locations);
    void liftTogether(const std::vector<int>& fingers);
    // Moves `fingers` in steps of `kStepInterval` from `from` to `to` over `duration`.
    void stepTogether(const std::vector<int>& fingers, const std::vector<VLXPoint>& from,
                      const std::vector<VLXPoint>& to, double duration);

    std::weak_ptr<VLXWindow> m_window;
    std::map<int, std::shared_ptr<VLXTouch>> m_touches;
    EventObserver m_observer;
};
