#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <VelmarCoreUI/Platform/Foundation/VLXObject.h>
#include <VelmarCoreUI/Platform/Primitives/VLXGeometry.h>
#include <VelmarCoreUI/VLXExport.h>

class VLXGestureRecognizer;
class VLXView;
class VLXWindow;

/// Where a touch is in its life, with the platform's numbering.
enum class VLXTouchPhase : std::uint8_t {
    Began = 0,
    Moved = 1,
    Stationary = 2,
    Ended = 3,
    Cancelled = 4,
};

/// One finger on the screen, from the moment it comes down until it lifts or is cancelled: the
/// same object is updated for every event of that finger.
///
/// Hosts (and `VLXTouchSynthesizer`) make touches with `create` and move them with `update`;
/// the window fills in `view()` (the view hit when the touch began, fixed for its life) and the
/// recognisers it goes to. Locations are kept in window coordinates; non-finite coordinates or
/// timestamps are replaced by the previous ones (0 for a new touch), so a bad reading never
/// reaches a recogniser.
class VLX_EXPORT VLXTouch : public VLXObject {
public:
    /// A touch at `location` (window coordinates) at `timestamp` (clock seconds), in `phase`.
    static std::shared_ptr<VLXTouch> create(VLXPoint location, double timestamp,
                                            VLXTouchPhase phase = VLXTouchPhase::Began,
                                            std::uint32_t tapCount = 1);
    ~VLXTouch() override;

    /// The location in `view`'s coordinates; a null view means window coordinates.
    VLXPoint locationInView(const VLXView* view) const;
    /// The location before the last `update` (the same as the location for a new touch).
    VLXPoint previousLocationInView(const VLXView* view) const;
    /// Clock seconds of the latest update.
    double timestamp() const { return m_timestamp; }
    VLXTouchPhase phase() const { return m_phase; }
    /// Taps of a quick series at about one place (1 for a single touch).
    std::uint32_t tapCount() const { return m_tapCount; }
    /// The view hit when the touch began (null before delivery, and once that view has gone).
    VLXView* view() const;
    /// The window the touch was sent to (null before delivery and once it has gone).
    VLXWindow* window() const;
    /// The recognisers the touch is delivered to, fixed when it began (those still alive).
    std::vector<std::shared_ptr<VLXGestureRecognizer>> gestureRecognizers() const;

    /// Moves the touch to `location` (window coordinates) at `timestamp` in `phase`; the old
    /// location becomes the previous one. A timestamp that goes backwards is kept at the last one.
    void update(VLXPoint location, double timestamp, VLXTouchPhase phase);
    void setPhase(VLXTouchPhase phase) { m_phase = phase; }
    void setTapCount(std::uint32_t count) { m_tapCount = count; }

    /// True once the touch ended or was cancelled.
    bool isFinished() const {
        return m_phase == VLXTouchPhase::Ended || m_phase == VLXTouchPhase::Cancelled;
    }

    std::string description() const override;

protected:
    VLXTouch();

private:
    friend class VLXGestureRecognizer;
    friend class VLXTouchDispatch;

    VLXPoint m_location{};
    VLXPoint m_previousLocation{};
    double m_timestamp = 0;
    VLXTouchPhase m_phase = VLXTouchPhase::Began;
    std::uint32_t m_tapCount = 1;
    std::weak_ptr<VLXView> m_view;
    std::weak_ptr<VLXView> m_window;
    std::vector<std::weak_ptr<VLXGestureRecognizer>> m_recognizers;
    // Set by the window: the view's touch methods have seen the touch begin / no longer get it.
    bool m_deliveredToView = false;
    bool m_withheldFromView = false;
};

/// A set of touches, in the order they were added to the event.
using VLXTouchSet = std::vector<std::shared_ptr<VLXTouch>>;
