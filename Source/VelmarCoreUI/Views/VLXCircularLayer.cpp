#include <VelmarCoreUI/Views/VLXCircularLayer.h>

#include <cmath>

#include <VelmarCoreUI/Platform/Foundation/VLXNumerics.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXPath.h>
#include <VelmarCoreUI/Platform/Layers/VLXBasicAnimation.h>
#include <VelmarCoreUI/Platform/Layers/VLXTransaction.h>

namespace {
constexpr std::string_view kProgress = "progress";
}  // namespace

std::shared_ptr<VLXCircularLayer> VLXCircularLayer::create() {
    return makeInitialized<VLXCircularLayer>();
}

std::shared_ptr<VLXLayer> VLXCircularLayer::newInstance() const {
    return VLXMakeShared<VLXCircularLayer>();
}

double VLXCircularLayer::progress() const {
    return storedDouble(kProgress);
}

void VLXCircularLayer::setProgress(double progress) {
    setValue(VLXValue(progress), kProgress);
}

VLXValue VLXCircularLayer::defaultValueForKey(std::string_view key) const {
    return key == kProgress ? VLXValue(0.0) : VLXLayer::defaultValueForKey(key);
}

bool VLXCircularLayer::needsDisplayForKey(std::string_view key) const {
    return key == kProgress || VLXLayer::needsDisplayForKey(key);
}

std::shared_ptr<VLXAnimation> VLXCircularLayer::actionForKey(std::string_view key) {
    if (key != kProgress) {
        return VLXLayer::actionForKey(key);
    }
    auto animation = VLXBasicAnimation::animationWithKeyPath(std::string(kProgress));
    if (const auto presentation = presentationLayer()) {
        animation->setFromValue(presentation->valueForKey(kProgress));
    }
    animation->setDuration(VLXTransaction::animationDuration());
    animation->setTimingFunction(VLXTransaction::animationTimingFunction());
    return animation;
}

void VLXCircularLayer::layoutSublayers() {
    VLXLayer::layoutSublayers();
    setCornerRadius(vlx::roundf32(bounds().size.width * 0.5));
}

void VLXCircularLayer::drawInContext(VLXGraphicsContext& context) {
    const VLXRect b = bounds();
    const VLXPoint center{b.midX(), b.midY()};
    const double start = -M_PI_2;
    const double end = 2 * progress() * M_PI + start;
    VLXPath path;
    path.moveToPoint(center);
    path.addArc(center, center.x, start, end, false);
    path.closeSubpath();
    if (const auto& color = borderColor()) {
        context.setFillColor(*color);
        context.addPath(path);
        context.fillPath();
    }
}
