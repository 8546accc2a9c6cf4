#pragma once

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include <VelmarCoreUI/Platform/Graphics/VLXBezierPath.h>
#include <VelmarCoreUI/Platform/Graphics/VLXPath.h>
#include <VelmarCoreUI/Platform/Layers/VLXLayer.h>
#include <VelmarCoreUI/VLXExport.h>

/// An immutable path as a reference object, so that a path can live in a layer's key-value store
/// (shared by presentation copies without copying the points). Equal when the paths are equal.
class VLX_EXPORT VLXPathObject : public VLXObject {
public:
    static std::shared_ptr<VLXPathObject> create(VLXPath path);
    const VLXPath& path() const { return m_path; }
    bool isEqual(const VLXObject& other) const override;
    std::size_t hash() const override;

protected:
    explicit VLXPathObject(VLXPath path) : m_path(std::move(path)) {}

private:
    const VLXPath m_path;
};

/// A layer that draws a path: filled first, then stroked (dash, cap, join), in the layer's bounds
/// coordinates. The path is not clipped to the bounds, and the bounds do not follow the path.
///
/// Every property lives in the key-value store ("path", "fillColor", "strokeColor", "lineWidth",
/// "lineDashPattern", "lineDashPhase", "fillRule", "lineCap", "lineJoin", "strokeStart",
/// "strokeEnd", "miterLimit"), so they animate, copy into presentation layers and answer
/// `valueForKey`. Fill rule, cap and join are enums (identity is equality); through key-value
/// they are their integer values.
///
/// Implicit actions (no delegate): "path", "fillColor", "strokeColor", "strokeStart",
/// "strokeEnd", "lineWidth", "miterLimit" and "lineDashPhase", besides the base keys.
class VLX_EXPORT VLXShapeLayer : public VLXLayer {
public:
    static std::shared_ptr<VLXShapeLayer> create();

    /// A copy of the path; nil draws nothing.
    std::optional<VLXPath> path() const;
    /// Shared storage of the current path (no copy of the points); null when nil.
    std::shared_ptr<VLXPathObject> pathObject() const;
    void setPath(std::optional<VLXPath> path);

    /// Opaque black by default; nil: no fill. (Through key-value, storing nil restores the
    /// default; the null object means no fill.)
    std::optional<VLXColor> fillColor() const;
    void setFillColor(std::optional<VLXColor> color);
    /// Nil by default: no stroke.
    std::optional<VLXColor> strokeColor() const;
    void setStrokeColor(std::optional<VLXColor> color);
    /// 1 by default.
    double lineWidth() const;
    void setLineWidth(double width);
    /// 10 by default.
    double miterLimit() const;
    void setMiterLimit(double limit);
    /// Lengths in points, nil (empty) for solid; numbers of any encoding (integers included).
    /// Entries that are not numbers read 0.
    std::vector<double> lineDashPattern() const;
    void setLineDashPattern(const std::vector<double>& pattern);
    double lineDashPhase() const;
    void setLineDashPhase(double phase);
    VLXPathFillRule fillRule() const;
    void setFillRule(VLXPathFillRule rule);
    VLXLineCap lineCap() const;
    void setLineCap(VLXLineCap cap);
    VLXLineJoin lineJoin() const;
    void setLineJoin(VLXLineJoin join);
    /// The stretch of the path's total length that is stroked, as fractions (0 and 1 by
    /// default). Values are clamped to 0…1; nothing is stroked when start ≥ end.
    double strokeStart() const;
    void setStrokeStart(double start);
    double strokeEnd() const;
    void setStrokeEnd(double end);

    /// Fills, then strokes the path into `context` (in bounds coordinates, CTM set by the
    /// caller). The compositor calls it; a host may too.
    void drawShape(VLXGraphicsContext& context) const;

    VLXValue defaultValueForKey(std::string_view key) const override;
    std::shared_ptr<VLXAnimation> defaultActionForKey(std::string_view key) override;
    std::shared_ptr<VLXLayer> newInstance() const override;

    /// The keys this class adds to the implicit actions.
    static bool isShapeAnimatableKey(std::string_view key);

protected:
    VLXShapeLayer() = default;
    void appendTreeTextAttributes(std::string& line) const override;
};
