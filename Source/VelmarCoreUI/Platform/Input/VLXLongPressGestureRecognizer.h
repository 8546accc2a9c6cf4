#pragma once

#include <cstdint>
#include <memory>

#include <VelmarCoreUI/Platform/Input/VLXGestureRecognizer.h>
#include <VelmarCoreUI/VLXExport.h>

/// A continuous gesture: `numberOfTouchesRequired` fingers held still for
/// `minimumPressDuration` (a run-loop timer) begin it; moves are changed; the lift ends it.
///
/// Before it begins it fails when a finger moves more than `allowableMovement` from where it
/// went down, lifts early, or another finger comes down. Once begun, any movement is allowed.
class VLX_EXPORT VLXLongPressGestureRecognizer : public VLXGestureRecognizer {
public:
    static std::shared_ptr<VLXLongPressGestureRecognizer> create();
    ~VLXLongPressGestureRecognizer() override;

    /// 0.5 s by default; NaN or negative values are stored as 0.
    double minimumPressDuration() const { return m_minimumPressDuration; }
    void setMinimumPressDuration(double seconds);
    /// 10 points by default; NaN or negative values are stored as 0.
    double allowableMovement() const { return m_allowableMovement; }
    void setAllowableMovement(double points);
    /// 1 by default; 0 is stored as 1.
    std::uint32_t numberOfTouchesRequired() const { return m_touchesRequired; }
    void setNumberOfTouchesRequired(std::uint32_t touches);
    /// Taps before the press (0 by default). Stored only: presses are recognised as with 0.
    std::uint32_t numberOfTapsRequired() const { return m_tapsRequired; }
    void setNumberOfTapsRequired(std::uint32_t taps) { m_tapsRequired = taps; }

    void touchesBegan(const VLXTouchSet& touches, const VLXEvent& event) override;
    void touchesMoved(const VLXTouchSet& touches, const VLXEvent& event) override;
    void touchesEnded(const VLXTouchSet& touches, const VLXEvent& event) override;
    void touchesCancelled(const VLXTouchSet& touches, const VLXEvent& event) override;
    void reset() override;

protected:
    VLXLongPressGestureRecognizer();

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
    double m_minimumPressDuration = 0.5;
    double m_allowableMovement = 10.0;
    std::uint32_t m_touchesRequired = 1;
    std::uint32_t m_tapsRequired = 0;
};
