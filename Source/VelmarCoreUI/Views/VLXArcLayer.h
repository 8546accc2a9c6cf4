#pragma once

#include <memory>
#include <optional>
#include <string_view>

#include <VelmarCoreUI/Platform/Graphics/VLXPath.h>
#include <VelmarCoreUI/Platform/Layers/VLXLayer.h>
#include <VelmarCoreUI/VLXExport.h>

/// A self-drawing ring segment (an annulus sector) between `startAngle` and `endAngle`, with an
/// optional fill, outline and inner shadow. Changes of the angles and the thickness animate
/// (0.5 s, ease-out, from the presentation value) while `shouldAnimate` is on.
///
/// All properties but `shouldAnimate` live in the layer's key-value store, under their own
/// names, so they animate and reach presentation copies.
class VLX_EXPORT VLXArcLayer : public VLXLayer {
public:
    static std::shared_ptr<VLXArcLayer> create();

    /// Radians; 0 by default.
    double startAngle() const;
    void setStartAngle(double angle);
    double endAngle() const;
    void setEndAngle(double angle);
    /// Outline width; no outline when 0 or less (the default).
    double strokeWidth() const;
    void setStrokeWidth(double width);
    /// Radial thickness of the ring; 0 by default.
    double thickness() const;
    void setThickness(double thickness);
    std::optional<VLXColor> fillColor() const;
    void setFillColor(std::optional<VLXColor> color);
    std::optional<VLXColor> strokeColor() const;
    void setStrokeColor(std::optional<VLXColor> color);
    /// Switches the inner shadow on; the shadow itself is always black.
    std::optional<VLXColor> innerShadowColor() const;
    void setInnerShadowColor(std::optional<VLXColor> color);
    /// Blur of the inner shadow; 5 by default.
    double innerShadowRadius() const;
    void setInnerShadowRadius(double radius);
    /// Alpha of the inner shadow's fill; 0.5 by default.
    double innerShadowOpacity() const;
    void setInnerShadowOpacity(double opacity);
    /// Whether angle and thickness changes animate; on by default. A plain member, not copied
    /// into presentation layers.
    bool shouldAnimate() const { return m_shouldAnimate; }
    void setShouldAnimate(bool animate) { m_shouldAnimate = animate; }

    /// A point at `angle` on the outer edge (`edge` 1) or the inner edge (`edge` 0, the radius
    /// less `thickness`), moved outward by `radiusOffset`. The radius is half the frame's width,
    /// the centre the middle of the bounds; sine and cosine are taken in single precision.
    VLXPoint pointForArcAngle(double angle, int edge, double radiusOffset) const;
    /// The point of `edge` at the end angle (`side` 1) or at the start angle.
    VLXPoint pointForArcEdge(int edge, int side) const;

    /// Builds the segment's outline into `path` and adds it to the context's current path.
    void drawArcInContext(VLXGraphicsContext& context, VLXPath& path) const;
    /// Clips to `path` and lets the ring around it cast a black shadow inward.
    void drawInnerShadowInContext(VLXGraphicsContext& context, const VLXPath& path) const;

    /// Only when `startAngle` < `endAngle`: the segment, filled and stroked, then the inner
    /// shadow.
    void drawInContext(VLXGraphicsContext& context) override;
    /// "startAngle", "endAngle", "thickness", "fillColor", "strokeColor", "innerShadowColor",
    /// "innerShadowRadius" and "innerShadowOpacity" (not "strokeWidth"); nothing else.
    bool needsDisplayForKey(std::string_view key) const override;
    /// The angles and the thickness animate through `animationForKey` (nil while
    /// `shouldAnimate` is off); other keys as any layer.
    std::shared_ptr<VLXAnimation> actionForKey(std::string_view key) override;
    /// A factory rather than a lookup: nil without a presentation layer, else a new 0.5 s
    /// ease-out basic animation of `key` from the presentation layer's current value.
    std::shared_ptr<VLXAnimation> animationForKey(std::string_view key) const override;
    /// The base copy, then the angles, widths and colours again.
    void initWithLayer(const VLXLayer& other) override;
    std::shared_ptr<VLXLayer> newInstance() const override;

protected:
    VLXArcLayer() = default;
    void init() override;

private:
    bool m_shouldAnimate = true;
};
