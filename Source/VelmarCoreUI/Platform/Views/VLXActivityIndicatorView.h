#pragma once

#include <memory>
#include <optional>
#include <string>

#include <VelmarCoreUI/Platform/Foundation/VLXTypes.h>
#include <VelmarCoreUI/Platform/Primitives/VLXColor.h>
#include <VelmarCoreUI/Platform/Primitives/VLXGeometry.h>
#include <VelmarCoreUI/Platform/Views/VLXView.h>
#include <VelmarCoreUI/VLXExport.h>

class VLXLayer;
class VLXTimer;

/// Looks of the activity indicator, with the platform's numbers.
enum class VLXActivityIndicatorViewStyle : VLXInteger {
    WhiteLarge = 0,  ///< white, 37 points
    White = 1,       ///< white, 20 points
    Gray = 2,        ///< grey, 20 points
};

/// A spinning wheel of twelve spokes that shows that work is going on.
///
/// The wheel is drawn at the style's size, centred in the bounds whatever their size, in a
/// sublayer of the view's layer. While animating, a timer on the main run loop turns it a
/// twelfth of a turn every twelfth of a second; the angle is read from the clock
/// (`VLXClock::now()`), so frames at different times differ and a frame depends only on the
/// time since `startAnimating`. With `hidesWhenStopped` (the default) the view is hidden
/// while it is stopped.
class VLX_EXPORT VLXActivityIndicatorView : public VLXView {
public:
    static std::shared_ptr<VLXActivityIndicatorView> create();
    static std::shared_ptr<VLXActivityIndicatorView> createWithFrame(const VLXRect& frame);
    /// Sized to the style's wheel, at the origin.
    static std::shared_ptr<VLXActivityIndicatorView> createWithStyle(
        VLXActivityIndicatorViewStyle style);
    ~VLXActivityIndicatorView() override;

    /// White (1) by default. Values out of range are stored as white.
    VLXActivityIndicatorViewStyle activityIndicatorViewStyle() const { return m_style; }
    void setActivityIndicatorViewStyle(VLXActivityIndicatorViewStyle style);
    /// The spokes' colour: the style's (white or grey) unless set; nil restores it.
    VLXColor color() const;
    void setColor(std::optional<VLXColor> color);

    /// Starts turning (and shows the view); nothing when already animating.
    void startAnimating();
    /// Stops turning (and hides the view when `hidesWhenStopped`); nothing when stopped.
    void stopAnimating();
    bool isAnimating() const { return m_animating; }
    /// YES by default.
    bool hidesWhenStopped() const { return m_hidesWhenStopped; }
    void setHidesWhenStopped(bool hides);

    /// The wheel's size (37 × 37 or 20 × 20), whatever is proposed.
    VLXSize sizeThatFits(VLXSize size) const override;
    void layoutSubviews() override;

    /// The wheel's side in points for a style.
    static double wheelSizeForStyle(VLXActivityIndicatorViewStyle style);

protected:
    VLXActivityIndicatorView();
    void initWithFrame(const VLXRect& frame) override;

private:
    // Redraws the wheel image (style or colour changed) and re-centres it.
    void updateWheel();
    // Turns the wheel to the step of the current time and centres it.
    void updateRotation();

    VLXActivityIndicatorViewStyle m_style = VLXActivityIndicatorViewStyle::White;
    std::optional<VLXColor> m_color;
    std::shared_ptr<VLXLayer> m_wheel;
    std::shared_ptr<VLXTimer> m_timer;
    double m_startTime = 0;
    bool m_animating = false;
    bool m_hidesWhenStopped = true;
};
