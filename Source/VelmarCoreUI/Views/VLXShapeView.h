#pragma once

#include <memory>
#include <optional>
#include <vector>

#include <VelmarCoreUI/Platform/Graphics/VLXBezierPath.h>
#include <VelmarCoreUI/Platform/Graphics/VLXPath.h>
#include <VelmarCoreUI/Platform/Primitives/VLXColor.h>
#include <VelmarCoreUI/Platform/Views/VLXView.h>
#include <VelmarCoreUI/VLXExport.h>

class VLXShapeLayer;

/// A view backed by a shape layer: its outline is a `VLXBezierPath` whose drawing attributes
/// (fill rule, line width, miter limit, cap, join, dash) configure the layer, and touches can be
/// limited to the inside of that outline (`hitTestUsingPath`).
///
/// `path()` is read back from the layer, not the path last given (`shapePath()` keeps that).
/// Dashes reach the layer only through `setPath`: `setLineDashPattern` and `setLineDashPhase`
/// are accepted and ignored. `setMiterLimit`, `setLineCap` and `setLineJoin` write the layer
/// only, so their getters (like `fillRule()`, `lineDashPhase()` and `lineDashPattern()`) report
/// the view's own storage, which those setters never fill: read the layer or `path()` for what is
/// drawn.
class VLX_EXPORT VLXShapeView : public VLXView {
public:
    static std::shared_ptr<VLXShapeView> create();
    static std::shared_ptr<VLXShapeView> createWithFrame(const VLXRect& frame);

    /// A `VLXShapeLayer`.
    std::shared_ptr<VLXLayer> layerClass() const override;
    VLXShapeLayer& shapeLayer() const;

    /// The last path given to `setPath` (nil until then).
    const std::optional<VLXBezierPath>& shapePath() const { return m_shapePath; }
    void setShapePath(std::optional<VLXBezierPath> path) { m_shapePath = std::move(path); }

    /// A new path made from the layer's outline (empty when the layer has none) carrying the
    /// layer's line width, fill rule, miter limit, cap, join and dash (lengths read in single
    /// precision).
    VLXBezierPath path() const;
    /// Stores `path` as `shapePath` and configures the layer from it. A nil path clears the
    /// layer's outline and sets what an empty request reads as zero: the non-zero rule, line
    /// width 0, miter limit 0, butt caps, miter joins, no dash. Cap and join values outside the
    /// three known styles leave the layer's cap / join as they were.
    void setPath(std::optional<VLXBezierPath> path);

    std::optional<VLXColor> fillColor() const;
    void setFillColor(std::optional<VLXColor> color);
    std::optional<VLXColor> strokeColor() const;
    void setStrokeColor(std::optional<VLXColor> color);
    /// Read and written on the layer.
    double strokeStart() const;
    void setStrokeStart(double start);
    double strokeEnd() const;
    void setStrokeEnd(double end);
    double lineWidth() const;
    void setLineWidth(double width);

    /// Stored by the view only (the layer's rule comes from `setPath`); nil by default.
    const std::optional<VLXPathFillRule>& fillRule() const { return m_fillRule; }
    void setFillRule(std::optional<VLXPathFillRule> rule) { m_fillRule = rule; }
    /// The setters write the layer; the getters read the view's storage (0 / nil).
    double miterLimit() const { return m_miterLimit; }
    void setMiterLimit(double limit);
    const std::optional<VLXLineCap>& lineCap() const { return m_lineCap; }
    void setLineCap(VLXLineCap cap);
    const std::optional<VLXLineJoin>& lineJoin() const { return m_lineJoin; }
    void setLineJoin(VLXLineJoin join);
    /// The setters do nothing; the getters give 0 and an empty pattern.
    double lineDashPhase() const { return m_lineDashPhase; }
    void setLineDashPhase(double phase);
    const std::vector<double>& lineDashPattern() const { return m_lineDashPattern; }
    void setLineDashPattern(const std::vector<double>& pattern);

    /// False by default: hit tests use the bounds only.
    bool hitTestUsingPath() const { return m_hitTestUsingPath; }
    void setHitTestUsingPath(bool usePath) { m_hitTestUsingPath = usePath; }

    /// The bounds test, and, with `hitTestUsingPath`, also `path().containsPoint(point)`.
    bool pointInside(VLXPoint point) const override;

protected:
    VLXShapeView() = default;

private:
    std::optional<VLXBezierPath> m_shapePath;
    std::optional<VLXPathFillRule> m_fillRule;
    double m_miterLimit = 0;
    std::optional<VLXLineCap> m_lineCap;
    std::optional<VLXLineJoin> m_lineJoin;
    double m_lineDashPhase = 0;
    std::vector<double> m_lineDashPattern;
    bool m_hitTestUsingPath = false;
};
