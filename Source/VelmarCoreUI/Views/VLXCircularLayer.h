#pragma once

#include <memory>
#include <string_view>

#include <VelmarCoreUI/Platform/Layers/VLXLayer.h>
#include <VelmarCoreUI/VLXExport.h>

/// The drawing layer of a circular progress view: a pie wedge in the border colour growing
/// clockwise from twelve o'clock, inside a circular border (the corner radius follows the width).
class VLX_EXPORT VLXCircularLayer : public VLXLayer {
public:
    static std::shared_ptr<VLXCircularLayer> create();

    /// 0 … 1 expected, 0 until set; not clamped (above 1 the wedge wraps beyond a full turn).
    double progress() const;
    void setProgress(double progress);
    /// 0 for "progress" (so the first animation starts from an empty wedge), else the base's.
    VLXValue defaultValueForKey(std::string_view key) const override;

    /// "progress", else what any layer answers.
    bool needsDisplayForKey(std::string_view key) const override;
    /// For "progress": a new basic animation from the presentation value, with the current
    /// transaction's duration and timing function. Other keys as any layer.
    std::shared_ptr<VLXAnimation> actionForKey(std::string_view key) override;
    /// Then `cornerRadius` = half the width, rounded in single precision.
    void layoutSublayers() override;
    /// The wedge from −π/2 to 2π × progress − π/2 around the bounds' middle, radius the
    /// middle's x, filled with `borderColor`.
    void drawInContext(VLXGraphicsContext& context) override;
    std::shared_ptr<VLXLayer> newInstance() const override;

protected:
    VLXCircularLayer() = default;
};
