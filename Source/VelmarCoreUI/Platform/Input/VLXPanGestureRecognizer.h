#pragma once

#include <cstdint>
#include <limits>
#include <memory>

#include <VelmarCoreUI/Platform/Input/VLXGestureRecognizer.h>
#include <VelmarCoreUI/Platform/Primitives/VLXGeometry.h>
#include <VelmarCoreUI/VLXExport.h>

/// A continuous drag of between `minimumNumberOfTouches` and `maximumNumberOfTouches` fingers.
///
/// It begins once the centroid has moved more than `kHysteresis` points from where it started,
/// then reports changed on every move and ends when the last finger lifts (fails when they lift
/// before it began). `translationInView` is the centroid's movement since the start, the
/// hysteresis included; fingers added or lifted mid-drag do not make it jump.
class VLX_EXPORT VLXPanGestureRecognizer : public VLXGestureRecognizer {
public:
    /// Points the centroid must move before the drag begins.
    static constexpr double kHysteresis = 10.0;

    static std::shared_ptr<VLXPanGestureRecognizer> create();
    ~VLXPanGestureRecognizer() override;

    /// 1 by default; 0 is stored as 1.
    std::uint32_t minimumNumberOfTouches() const { return m_minimumTouches; }
    void setMinimumNumberOfTouches(std::uint32_t touches);
    /// Unlimited by default.
    std::uint32_t maximumNumberOfTouches() const { return m_maximumTouches; }
    void setMaximumNumberOfTouches(std::uint32_t touches) { m_maximumTouches = touches; }

    /// The movement since the start (or since `setTranslation`), in `view`'s coordinate
    /// directions (null: the window's).
    virtual VLXPoint translationInView(const VLXView* view) const;
    /// Makes the current translation read `translation` in `view`'s coordinates.
    void setTranslation(VLXPoint translation, const VLXView* view);
    /// Points per second in `view`'s coordinate directions, over the last samples.
    virtual VLXPoint velocityInView(const VLXView* view) const;

    void touchesBegan(const VLXTouchSet& touches, const VLXEvent& event) override;
    void touchesMoved(const VLXTouchSet& touches, const VLXEvent& event) override;
    void touchesEnded(const VLXTouchSet& touches, const VLXEvent& event) override;
    void touchesCancelled(const VLXTouchSet& touches, const VLXEvent& event) override;
    void reset() override;

protected:
    VLXPanGestureRecognizer();

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
    std::uint32_t m_minimumTouches = 1;
    std::uint32_t m_maximumTouches = std::numeric_limits<std::uint32_t>::max();
};
