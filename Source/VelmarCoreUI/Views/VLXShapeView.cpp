#include <VelmarCoreUI/Views/VLXShapeView.h>

#include <VelmarCoreUI/Platform/Foundation/VLXNumerics.h>
#include <VelmarCoreUI/Platform/Layers/VLXShapeLayer.h>

namespace {

// Only the three styles the layer knows are passed on; anything else keeps the layer's setting.
std::optional<VLXLineCap> knownCap(VLXLineCap cap) {
    switch (cap) {
        case VLXLineCap::Butt:
        case VLXLineCap::Round:
        case VLXLineCap::Square:
            return cap;
    }
    return std::nullopt;
}

std::optional<VLXLineJoin> knownJoin(VLXLineJoin join) {
    switch (join) {
        case VLXLineJoin::Miter:
        case VLXLineJoin::Round:
        case VLXLineJoin::Bevel:
            return join;
    }
    return std::nullopt;
}

}  // namespace

std::shared_ptr<VLXShapeView> VLXShapeView::create() {
    return createWithFrame(VLXRectZero);
}

std::shared_ptr<VLXShapeView> VLXShapeView::createWithFrame(const VLXRect& frame) {
    return makeWithFrame<VLXShapeView>(frame);
}

std::shared_ptr<VLXLayer> VLXShapeView::layerClass() const {
    return VLXShapeLayer::create();
}

VLXShapeLayer& VLXShapeView::shapeLayer() const {
    return layerAs<VLXShapeLayer>();
}

VLXBezierPath VLXShapeView::path() const {
    const VLXShapeLayer& layer = shapeLayer();
    VLXBezierPath path;
    if (const auto object = layer.pathObject()) {
        path = VLXBezierPath::bezierPathWithCGPath(object->path());
    }
    path.setLineWidth(layer.lineWidth());
    if (layer.fillRule() == VLXPathFillRule::EvenOdd) {
        path.setUsesEvenOddFillRule(true);
    }
    path.setMiterLimit(layer.miterLimit());
    if (const auto cap = knownCap(layer.lineCap())) {
        path.setLineCapStyle(*cap);
    }
    if (const auto join = knownJoin(layer.lineJoin())) {
        path.setLineJoinStyle(*join);
    }
    std::vector<double> dashes = layer.lineDashPattern();
    for (double& length : dashes) {
        length = vlx::f32(length);
    }
    path.setLineDash(dashes, layer.lineDashPhase());
    return path;
}

void VLXShapeView::setPath(std::optional<VLXBezierPath> path) {
    m_shapePath = path;
    VLXShapeLayer& layer = shapeLayer();
    if (!path) {
        // What the layer gets from a request that answers zero for everything.
        layer.setPath(std::nullopt);
        layer.setFillRule(VLXPathFillRule::Winding);
        layer.setLineWidth(0);
        layer.setMiterLimit(0);
        layer.setLineCap(VLXLineCap::Butt);
        layer.setLineJoin(VLXLineJoin::Miter);
        layer.setLineDashPattern({});
        layer.setLineDashPhase(0);
        return;
    }
    layer.setPath(path->CGPath());
    layer.setFillRule(path->usesEvenOddFillRule() ? VLXPathFillRule::EvenOdd
                                                  : VLXPathFillRule::Winding);
    layer.setLineWidth(path->lineWidth());
    layer.setMiterLimit(path->miterLimit());
    if (const auto cap = knownCap(path->lineCapStyle())) {
        layer.setLineCap(*cap);
    }
    if (const auto join = knownJoin(path->lineJoinStyle())) {
        layer.setLineJoin(*join);
    }
    std::vector<double> pattern;
    double phase = 0;
    path->getLineDash(&pattern, &phase);
    layer.setLineDashPattern(pattern);
    layer.setLineDashPhase(phase);
}

std::optional<VLXColor> VLXShapeView::fillColor() const {
    return shapeLayer().fillColor();
}

void VLXShapeView::setFillColor(std::optional<VLXColor> color) {
    shapeLayer().setFillColor(std::move(color));
}

std::optional<VLXColor> VLXShapeView::strokeColor() const {
    return shapeLayer().strokeColor();
}

void VLXShapeView::setStrokeColor(std::optional<VLXColor> color) {
    shapeLayer().setStrokeColor(std::move(color));
}

double VLXShapeView::strokeStart() const {
    return shapeLayer().strokeStart();
}

void VLXShapeView::setStrokeStart(double start) {
    shapeLayer().setStrokeStart(start);
}

double VLXShapeView::strokeEnd() const {
    return shapeLayer().strokeEnd();
}

void VLXShapeView::setStrokeEnd(double end) {
    shapeLayer().setStrokeEnd(end);
}

double VLXShapeView::lineWidth() const {
    return shapeLayer().lineWidth();
}

void VLXShapeView::setLineWidth(double width) {
    shapeLayer().setLineWidth(width);
}

void VLXShapeView::setMiterLimit(double limit) {
    shapeLayer().setMiterLimit(limit);
}

void VLXShapeView::setLineCap(VLXLineCap cap) {
    shapeLayer().setLineCap(cap);
}

void VLXShapeView::setLineJoin(VLXLineJoin join) {
    shapeLayer().setLineJoin(join);
}

void VLXShapeView::setLineDashPhase(double) {
    // Dashes come from the path given to setPath only.
}

void VLXShapeView::setLineDashPattern(const std::vector<double>&) {
    // Dashes come from the path given to setPath only.
}

bool VLXShapeView::pointInside(VLXPoint point) const {
    const bool inside = VLXView::pointInside(point);
    if (!m_hitTestUsingPath) {
        return inside;
    }
    return inside && path().containsPoint(point);
}
