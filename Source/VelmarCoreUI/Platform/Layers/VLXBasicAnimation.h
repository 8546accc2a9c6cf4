#pragma once

#include <memory>
#include <string>

#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>
#include <VelmarCoreUI/Platform/Layers/VLXAnimation.h>
#include <VelmarCoreUI/VLXExport.h>

/// A property animation between two values.
///
/// Ends left nil are filled in as the platform fills them:
/// * from and to set: from → to;
/// * to only: the value that was on screen (the presentation value captured when the animation
///   was added, see `prepareForLayer`) → to;
/// * from only: from → the layer's current model value;
/// * neither: the value that was on screen → the current model value.
/// Values interpolate with `VLXInterpolateValues` (numbers, points, sizes, rectangles, affine
/// and 3-D transforms entry by entry, colours component by component).
class VLX_EXPORT VLXBasicAnimation : public VLXPropertyAnimation {
public:
    static std::shared_ptr<VLXBasicAnimation> create();
    static std::shared_ptr<VLXBasicAnimation> animationWithKeyPath(std::string keyPath);

    const VLXValue& fromValue() const { return m_fromValue; }
    void setFromValue(VLXValue fromValue) { m_fromValue = std::move(fromValue); }
    const VLXValue& toValue() const { return m_toValue; }
    void setToValue(VLXValue toValue) { m_toValue = std::move(toValue); }
    /// Stored and copied only: relative animations are not evaluated.
    const VLXValue& byValue() const { return m_byValue; }
    void setByValue(VLXValue byValue) { m_byValue = std::move(byValue); }

    std::shared_ptr<VLXAnimation> copy() const override;

    /// The interpolation of the resolved ends (see the class comment) at `progress`.
    VLXValue valueAtProgress(double progress, const VLXValue& base,
                             const VLXValue& model) const override;

    std::string description() const override;

protected:
    VLXBasicAnimation() = default;
    VLXBasicAnimation(const VLXBasicAnimation& other) = default;

private:
    VLXValue m_fromValue;
    VLXValue m_toValue;
    VLXValue m_byValue;
};
