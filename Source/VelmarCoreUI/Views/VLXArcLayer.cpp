#include <VelmarCoreUI/Views/VLXArcLayer.h>

#include <array>
#include <cmath>

#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Layers/VLXBasicAnimation.h>
#include <VelmarCoreUI/Platform/Layers/VLXMediaTimingFunction.h>

namespace {

constexpr std::string_view kStartAngle = "startAngle";
constexpr std::string_view kEndAngle = "endAngle";
constexpr std::string_view kStrokeWidth = "strokeWidth";
constexpr std::string_view kThickness = "thickness";
constexpr std::string_view kFillColor = "fillColor";
constexpr std::string_view kStrokeColor = "strokeColor";
constexpr std::string_view kInnerShadowColor = "innerShadowColor";
constexpr std::string_view kInnerShadowRadius = "innerShadowRadius";
constexpr std::string_view kInnerShadowOpacity = "innerShadowOpacity";

// How far the ring casting the inner shadow reaches beyond the segment.
constexpr double kShadowRingMargin = 42;

VLXValue colorValue(const std::optional<VLXColor>& color) {
    return color ? VLXValue(*color) : VLXValue();
}

}  // namespace

std::shared_ptr<VLXArcLayer> VLXArcLayer::create() {
    return makeInitialized<VLXArcLayer>();
}

std::shared_ptr<VLXLayer> VLXArcLayer::newInstance() const {
    return VLXMakeShared<VLXArcLayer>();
}

void VLXArcLayer::init() {
    VLXLayer::init();
    setStoredValueWithoutAction(kInnerShadowOpacity, VLXValue(0.5));
    setStoredValueWithoutAction(kInnerShadowRadius, VLXValue(5.0));
    m_shouldAnimate = true;
}

void VLXArcLayer::initWithLayer(const VLXLayer& other) {
    VLXLayer::initWithLayer(other);
    if (dynamic_cast<const VLXArcLayer*>(&other) != nullptr) {
        for (std::string_view key : {kStartAngle, kEndAngle, kStrokeWidth, kThickness, kFillColor,
                                     kStrokeColor, kInnerShadowColor}) {
            setStoredValueWithoutAction(key, other.storedValue(key));
        }
    }
}

double VLXArcLayer::startAngle() const {
    return storedDouble(kStartAngle);
}
void VLXArcLayer::setStartAngle(double angle) {
    setValue(VLXValue(angle), kStartAngle);
}
double VLXArcLayer::endAngle() const {
    return storedDouble(kEndAngle);
}
void VLXArcLayer::setEndAngle(double angle) {
    setValue(VLXValue(angle), kEndAngle);
}
double VLXArcLayer::strokeWidth() const {
    return storedDouble(kStrokeWidth);
}
void VLXArcLayer::setStrokeWidth(double width) {
    setValue(VLXValue(width), kStrokeWidth);
}
double VLXArcLayer::thickness() const {
    return storedDouble(kThickness);
}
void VLXArcLayer::setThickness(double thickness) {
    setValue(VLXValue(thickness), kThickness);
}
std::optional<VLXColor> VLXArcLayer::fillColor() const {
    return storedColor(kFillColor);
}
void VLXArcLayer::setFillColor(std::optional<VLXColor> color) {
    setValue(colorValue(color), kFillColor);
}
std::optional<VLXColor> VLXArcLayer::strokeColor() const {
    return storedColor(kStrokeColor);
}
void VLXArcLayer::setStrokeColor(std::optional<VLXColor> color) {
    setValue(colorValue(color), kStrokeColor);
}
std::optional<VLXColor> VLXArcLayer::innerShadowColor() const {
    return storedColor(kInnerShadowColor);
}
void VLXArcLayer::setInnerShadowColor(std::optional<VLXColor> color) {
    setValue(colorValue(color), kInnerShadowColor);
}
double VLXArcLayer::innerShadowRadius() const {
    return storedDouble(kInnerShadowRadius, 5);
}
void VLXArcLayer::setInnerShadowRadius(double radius) {
    setValue(VLXValue(radius), kInnerShadowRadius);
}
double VLXArcLayer::innerShadowOpacity() const {
    return storedDouble(kInnerShadowOpacity, 0.5);
}
void VLXArcLayer::setInnerShadowOpacity(double opacity) {
    setValue(VLXValue(opacity), kInnerShadowOpacity);
}

bool VLXArcLayer::needsDisplayForKey(std::string_view key) const {
    // Deliberately not the base's answer, and not the stroke width.
    static constexpr std::array<std::string_view, 8> keys{
        kStartAngle,  kEndAngle,         kThickness,         kFillColor,
        kStrokeColor, kInnerShadowColor, kInnerShadowRadius, kInnerShadowOpacity};
    for (std::string_view k : keys) {
        if (k == key) {
            return true;
        }
    }
    return false;
}

std::shared_ptr<VLXAnimation> VLXArcLayer::actionForKey(std::string_view key) {
    if (key == kStartAngle || key == kEndAngle || key == kThickness) {
        if (!m_shouldAnimate) {
            return nullptr;
        }
        return animationForKey(key);
    }
    return VLXLayer::actionForKey(key);
}

std::shared_ptr<VLXAnimation> VLXArcLayer::animationForKey(std::string_view key) const {
    const auto presentation = presentationLayer();
    if (!presentation) {
        return nullptr;
    }
    auto animation = VLXBasicAnimation::animationWithKeyPath(std::string(key));
    animation->setFromValue(presentation->valueForKey(key));
    animation->setTimingFunction(
        VLXMediaTimingFunction::functionWithName(VLXMediaTimingFunctionName::EaseOut));
    animation->setDuration(0.5);
    return animation;
}

VLXPoint VLXArcLayer::pointForArcAngle(double angle, int edge, double radiusOffset) const {
    double radius = frame().size.width / 2;
    if (edge == 0) {
        radius -= thickness();
    }
    radius += radiusOffset;
    const VLXRect b = bounds();
    const VLXPoint center{b.midX(), b.midY()};
    const float a = static_cast<float>(angle);
    return {radius * static_cast<double>(std::cos(a)) + center.x,
            radius * static_cast<double>(std::sin(a)) + center.y};
}

VLXPoint VLXArcLayer::pointForArcEdge(int edge, int side) const {
    return pointForArcAngle(side == 1 ? endAngle() : startAngle(), edge, 0);
}

void VLXArcLayer::drawArcInContext(VLXGraphicsContext& context, VLXPath& path) const {
    const VLXRect b = bounds();
    const VLXPoint center{b.midX(), b.midY()};
    double radius = b.size.width * 0.5;
    const double start = startAngle(), end = endAngle();
    path.addArc(center, radius, start, end, false);
    path.addLineToPoint(pointForArcEdge(0, 1));
    radius -= thickness();
    path.addArc(center, radius, end, start, true);
    path.addLineToPoint(pointForArcEdge(1, 0));
    path.closeSubpath();
    context.addPath(path);
}

void VLXArcLayer::drawInnerShadowInContext(VLXGraphicsContext& context, const VLXPath& path) const {
    const VLXRect ring = VLXRectInset(path.boundingBox(), -kShadowRingMargin, -kShadowRingMargin);
    VLXPath outer;
    outer.addRect(ring);
    outer.addPath(path);
    outer.closeSubpath();

    context.addPath(path);
    context.clip();
    // Our contexts blur only what lies inside the clip, so the ring and its shadow are drawn
    // apart, unclipped, and the result is painted through the clip: the ring itself falls
    // outside the segment, its shadow reaches in.
    const double scale = context.kind() == VLXGraphicsContextKind::Bitmap ? context.scale() : 2;
    auto shadowed = VLXGraphicsContext::createBitmap(ring.size, scale);
    if (!shadowed) {
        return;
    }
    shadowed->translateCTM(-ring.origin.x, -ring.origin.y);
    // Always black: the colour property only switches the shadow on.
    shadowed->setShadow(VLXSize{0, 0}, innerShadowRadius(), VLXColor::blackColor());
    shadowed->setFillColor(VLXColor::colorWithWhite(0.0, innerShadowOpacity()));
    shadowed->addPath(outer);
    shadowed->fillPath(VLXPathFillRule::EvenOdd);
    if (auto image = shadowed->makeImage()) {
        context.drawImage(*image, ring);
    }
}

void VLXArcLayer::drawInContext(VLXGraphicsContext& context) {
    if (!(startAngle() < endAngle())) {
        return;
    }
    VLXPath path;
    drawArcInContext(context, path);
    const auto fill = fillColor();
    if (fill) {
        context.setFillColor(*fill);
    }
    const auto stroke = strokeColor();
    const double width = strokeWidth();
    if (stroke && width > 0) {
        context.setStrokeColor(*stroke);
        context.setLineWidth(width);
        context.drawPath(VLXPathDrawingMode::FillStroke);
    } else {
        context.setLineWidth(0);
        if (fill) {
            context.drawPath(VLXPathDrawingMode::FillStroke);
        }
    }
    if (innerShadowColor()) {
        drawInnerShadowInContext(context, path);
    }
}
