#pragma once

#include <memory>

#include <VelmarCoreUI/Platform/Input/VLXGestureRecognizer.h>
#include <VelmarCoreUI/VLXExport.h>

/// A continuous two-finger pinch. It begins once the distance between the fingers has changed
/// by more than `kHysteresis` points, then reports changed; it ends when the fingers lift
/// (fails when they lift before it began).
///
/// `scale` is the current distance over the distance when the second finger came down (1 at the
/// start). While changed, one finger may lift: `numberOfTouches` drops to 1 and the scale holds
/// until a second finger is down again.
class VLX_EXPORT VLXPinchGestureRecognizer : public VLXGestureRecognizer {
public:
    /// Points the finger distance must change before the pinch begins.
    static constexpr double kHysteresis = 8.0;

    static std::shared_ptr<VLXPinchGestureRecognizer> create();
    ~VLXPinchGestureRecognizer() override;

    double scale() const { return m_scale; }
    /// Restarts the measure from the current distance at `scale` (non-finite values ignored).
    void setScale(double scale);
    /// Scale per second over the last samples.
    double velocity() const { return m_velocity; }

    void touchesBegan(const VLXTouchSet& touches, const VLXEvent& event) override;
    void touchesMoved(const VLXTouchSet& touches, const VLXEvent& event) override;
    void touchesEnded(const VLXTouchSet& touches, const VLXEvent& event) override;
    void touchesCancelled(const VLXTouchSet& touches, const VLXEvent& event) override;
    void reset() override;

protected:
    VLXPinchGestureRecognizer();

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
    double m_scale = 1.0;
    double m_velocity = 0.0;
};
