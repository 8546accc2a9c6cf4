#pragma once

#include <memory>

#include <VelmarCoreUI/Platform/Foundation/VLXTypes.h>
#include <VelmarCoreUI/Platform/Input/VLXPanGestureRecognizer.h>
#include <VelmarCoreUI/Platform/Primitives/VLXGeometry.h>
#include <VelmarCoreUI/VLXExport.h>

/// The edge a swipe must start at. Stored in an unsigned integer (`side`), so other values can
/// be set: they expect a rightward movement and accept a start anywhere.
enum VLXEdgeSwipeSide : VLXUInteger {
    VLXEdgeSwipeSideLeft = 0,
    VLXEdgeSwipeSideRight = 1,
    VLXEdgeSwipeSideTop = 2,
    VLXEdgeSwipeSideBottom = 3,
};

/// A one-finger swipe that starts within `margin` points of one edge of its view and moves away
/// from it, within 45 degrees of the perpendicular.
///
/// The touch handling is its own (the pan's is not used): a touch-down outside the band, or
/// with more than one finger, fails; after more than `minimumDistance` points of movement the
/// direction decides between began and failed; later moves are changed, the lift ends it and a
/// cancel fails it. Translation and velocity come from the recorded points, the velocity from
/// the last two samples only.
class VLX_EXPORT VLXEdgeSwipeGestureRecognizer : public VLXPanGestureRecognizer {
public:
    static std::shared_ptr<VLXEdgeSwipeGestureRecognizer> create();
    /// With `action` already added.
    static std::shared_ptr<VLXEdgeSwipeGestureRecognizer> create(Action action);
    ~VLXEdgeSwipeGestureRecognizer() override;

    /// `VLXEdgeSwipeSideLeft` by default.
    VLXUInteger side() const { return m_side; }
    void setSide(VLXUInteger side) { m_side = side; }
    /// Points the finger travels before the direction is judged (5 by default).
    double minimumDistance() const { return m_minimumDistance; }
    void setMinimumDistance(double distance) { m_minimumDistance = distance; }
    /// Width in points of the band along the edge where the touch must start (20 by default).
    double margin() const { return m_margin; }
    void setMargin(double margin) { m_margin = margin; }

    /// Where the touch began, in the recogniser's view.
    VLXPoint startPoint() const { return m_startPoint; }
    void setStartPoint(VLXPoint point) { m_startPoint = point; }
    /// The latest touch location, in the view.
    VLXPoint currentPoint() const { return m_currentPoint; }
    void setCurrentPoint(VLXPoint point) { m_currentPoint = point; }
    /// The location before the latest.
    VLXPoint previousPoint() const { return m_previousPoint; }
    void setPreviousPoint(VLXPoint point) { m_previousPoint = point; }
    /// Timestamp (seconds) of the latest touch event, and of the one before.
    double currentPointTime() const { return m_currentPointTime; }
    void setCurrentPointTime(double time) { m_currentPointTime = time; }
    double previousPointTime() const { return m_previousPointTime; }
    void setPreviousPointTime(double time) { m_previousPointTime = time; }

    /// Whether `angle` (radians, y downward) lies strictly within 45 degrees of the side's
    /// direction. For sides other than left, negative angles are first taken once around.
    bool isAngleCloseEnough(double angle) const;

    /// `currentPoint` minus `startPoint`, both converted from the recogniser's view into `view`.
    VLXPoint translationInView(const VLXView* view) const override;
    /// The last two samples' movement per second in `view`; (0, 0) when their times are equal.
    VLXPoint velocityInView(const VLXView* view) const override;

    void touchesBegan(const VLXTouchSet& touches, const VLXEvent& event) override;
    void touchesMoved(const VLXTouchSet& touches, const VLXEvent& event) override;
    void touchesEnded(const VLXTouchSet& touches, const VLXEvent& event) override;
    void touchesCancelled(const VLXTouchSet& touches, const VLXEvent& event) override;

protected:
    VLXEdgeSwipeGestureRecognizer();
    void init() override;

private:
    // `point` of the recogniser's view in `view`'s coordinates.
    VLXPoint convertToView(VLXPoint point, const VLXView* view) const;

    VLXUInteger m_side = VLXEdgeSwipeSideLeft;
    double m_minimumDistance = 5.0;
    double m_margin = 20.0;
    VLXPoint m_startPoint{};
    VLXPoint m_currentPoint{};
    VLXPoint m_previousPoint{};
    double m_currentPointTime = 0;
    double m_previousPointTime = 0;
};
