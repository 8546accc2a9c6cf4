#include <VelmarCoreUI/Animation/VLXKeyframeAnimationBuilders.h>

#include <VelmarCoreUI/Platform/Layers/VLXKeyframeAnimation.h>

namespace {

double lerp(double from, double to, double e) {
    return from + (to - from) * e;
}

VLXRect lerpRect(const VLXRect& a, const VLXRect& b, double e) {
    return {{lerp(a.origin.x, b.origin.x, e), lerp(a.origin.y, b.origin.y, e)},
            {lerp(a.size.width, b.size.width, e), lerp(a.size.height, b.size.height, e)}};
}

VLXValue rectValueFunction(const VLXValue& from, const VLXValue& to, double e) {
    return VLXValue::valueWithRect(lerpRect(from.rectValue(), to.rectValue(), e));
}

std::shared_ptr<VLXKeyframeAnimation> build(std::string keyPath, const VLXValue& from,
                                            const VLXValue& to, VLXEasing easing,
                                            const VLXKeyframeValueFunction& valueFunction) {
    const VLXEasingFunction timeFunction = vlx_animationBlockForEasing(easing);
    if (!timeFunction) {
        return nullptr;
    }
    return vlx_animationWithKeyPath(std::move(keyPath), from, to, timeFunction, valueFunction);
}

}  // namespace

std::shared_ptr<VLXKeyframeAnimation> vlx_animationWithKeyPath(
    std::string keyPath, const VLXValue& fromValue, const VLXValue& toValue,
    const VLXKeyframeTimeFunction& timeFunction, const VLXKeyframeValueFunction& valueFunction) {
    if (!timeFunction || !valueFunction) {
        return nullptr;
    }
    auto animation = VLXKeyframeAnimation::animationWithKeyPath(std::move(keyPath));
    animation->setCalculationMode(VLXAnimationCalculationMode::Linear);
    VLXValue::Array values;
    values.reserve(VLXKeyframeSampleCount);
    // The step is added up rather than multiplied, so the samples carry its rounding.
    double t = 0;
    for (int i = 0; i < VLXKeyframeSampleCount; ++i) {
        const double e = timeFunction(t);
        values.push_back(valueFunction(fromValue, toValue, e));
        t += 1.0 / VLXKeyframeSampleCount;
    }
    animation->setValues(std::move(values));
    animation->setFillMode(VLXFillMode::Backwards);
    return animation;
}

std::shared_ptr<VLXKeyframeAnimation> vlx_animationWithKeyPath(std::string keyPath,
                                                               double fromDouble, double toDouble,
                                                               VLXEasing easing) {
    return build(std::move(keyPath), VLXValue(fromDouble), VLXValue(toDouble), easing,
                 [](const VLXValue& from, const VLXValue& to, double e) {
                     return VLXValue(lerp(from.doubleValue(), to.doubleValue(), e));
                 });
}

std::shared_ptr<VLXKeyframeAnimation> vlx_animationFromPoint(VLXPoint fromPoint, VLXPoint toPoint,
                                                             VLXEasing easing) {
    return build("position", VLXValue::valueWithPoint(fromPoint), VLXValue::valueWithPoint(toPoint),
                 easing, [](const VLXValue& from, const VLXValue& to, double e) {
                     const VLXPoint a = from.pointValue();
                     const VLXPoint b = to.pointValue();
                     return VLXValue::valueWithPoint({lerp(a.x, b.x, e), lerp(a.y, b.y, e)});
                 });
}

std::shared_ptr<VLXKeyframeAnimation> vlx_animationFromSize(VLXSize fromSize, VLXSize toSize,
                                                            VLXEasing easing) {
    return build("bounds", VLXValue::valueWithRect({{0, 0}, fromSize}),
                 VLXValue::valueWithRect({{0, 0}, toSize}), easing, rectValueFunction);
}

std::shared_ptr<VLXKeyframeAnimation> vlx_animationFromRect(VLXRect fromRect, VLXRect toRect,
                                                            VLXEasing easing) {
    return build("frame", VLXValue::valueWithRect(fromRect), VLXValue::valueWithRect(toRect),
                 easing, rectValueFunction);
}

std::shared_ptr<VLXKeyframeAnimation> vlx_animationFromColor(const std::optional<VLXColor>&,
                                                             const std::optional<VLXColor>&,
                                                             VLXEasing) {
    return nullptr;
}

std::shared_ptr<VLXKeyframeAnimation> vlx_animationFromTransform(
    const VLXTransform3D& fromTransform, const VLXTransform3D& toTransform, VLXEasing easing) {
    return build("transform", VLXValue::valueWithTransform3D(fromTransform),
                 VLXValue::valueWithTransform3D(toTransform), easing,
                 [](const VLXValue& from, const VLXValue& to, double e) {
                     const VLXTransform3D a = from.transform3DValue();
                     const VLXTransform3D b = to.transform3DValue();
                     VLXTransform3D r;
                     r.m11 = lerp(a.m11, b.m11, e);
                     r.m12 = lerp(a.m12, b.m12, e);
                     r.m13 = lerp(a.m13, b.m13, e);
                     r.m14 = lerp(a.m14, b.m14, e);
                     r.m21 = lerp(a.m21, b.m21, e);
                     r.m22 = lerp(a.m22, b.m22, e);
                     r.m23 = lerp(a.m23, b.m23, e);
                     r.m24 = lerp(a.m24, b.m24, e);
                     r.m31 = lerp(a.m31, b.m31, e);
                     r.m32 = lerp(a.m32, b.m32, e);
                     r.m33 = lerp(a.m33, b.m33, e);
                     r.m34 = lerp(a.m34, b.m34, e);
                     r.m41 = lerp(a.m41, b.m41, e);
                     r.m42 = lerp(a.m42, b.m42, e);
                     r.m43 = lerp(a.m43, b.m43, e);
                     r.m44 = lerp(a.m44, b.m44, e);
                     return VLXValue::valueWithTransform3D(r);
                 });
}

std::shared_ptr<VLXKeyframeAnimation> animationWithAnimations(
    const std::vector<std::shared_ptr<VLXKeyframeAnimation>>& animations) {
    std::shared_ptr<VLXKeyframeAnimation> first;
    double duration = 0;
    VLXValue::Array values;
    for (const auto& animation : animations) {
        if (!animation) {
            continue;
        }
        if (!first) {
            first = animation;
        }
        duration += animation->duration();
        const VLXValue::Array& part = animation->values();
        values.insert(values.end(), part.begin(), part.end());
    }
    if (!first) {
        return nullptr;
    }
    auto joined = VLXKeyframeAnimation::animationWithKeyPath(first->keyPath());
    joined->setCalculationMode(first->calculationMode());
    joined->setDuration(duration);
    joined->setValues(std::move(values));
    joined->setFillMode(VLXFillMode::Backwards);
    return joined;
}
