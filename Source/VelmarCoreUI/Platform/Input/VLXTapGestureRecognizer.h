#pragma once

#include <cstdint>
#include <memory>

#include <VelmarCoreUI/Platform/Input/VLXGestureRecognizer.h>
#include <VelmarCoreUI/VLXExport.h>

/// A discrete gesture: `numberOfTapsRequired` taps of `numberOfTouchesRequired` fingers,
/// recognised (ended) when the fingers of the last tap lift.
///
/// It fails when a finger moves more than `kMaximumMovement` from where it went down, when more
/// fingers come down than required, when fewer than required were down together by the lift,
/// or when the next tap of a series does not come down within `kMaximumTapInterval` of the
/// last lift (a run-loop timer).
class VLX_EXPORT VLXTapGestureRecognizer : public VLXGestureRecognizer {
public:
    /// Points a finger may move from where it went down before the tap fails.
    static constexpr double kMaximumMovement = 10.0;
    /// Seconds allowed between a lift and the next touch-down of a series of taps.
    static constexpr double kMaximumTapInterval = 0.35;

    static std::shared_ptr<VLXTapGestureRecognizer> create();
    ~VLXTapGestureRecognizer() override;

    /// 1 by default; 0 is stored as 1.
    std::uint32_t numberOfTapsRequired() const { return m_tapsRequired; }
    void setNumberOfTapsRequired(std::uint32_t taps);
    /// 1 by default; 0 is stored as 1.
    std::uint32_t numberOfTouchesRequired() const { return m_touchesRequired; }
    void setNumberOfTouchesRequired(std::uint32_t touches);

    /// The centroid of the tracked touches; once they have all lifted, the centroid of where the
    /// fingers of the last tap lifted (so a two-finger tap reads between its fingers).
    VLXPoint locationInView(const VLXView* view) const override;

    void touchesBegan(const VLXTouchSet& touches, const VLXEvent& event) override;
    void touchesMoved(const VLXTouchSet& touches, const VLXEvent& event) override;
    void touchesEnded(const VLXTouchSet& touches, const VLXEvent& event) override;
    void touchesCancelled(const VLXTouchSet& touches, const VLXEvent& event) override;
    void reset() override;

protected:
    VLXTapGestureRecognizer();

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
    std::uint32_t m_tapsRequired = 1;
    std::uint32_t m_touchesRequired = 1;
};
