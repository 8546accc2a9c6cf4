#include <VelmarCoreUI/Platform/Layers/VLXBasicAnimation.h>

#include <VelmarCoreUI/Platform/Foundation/VLXStringFormat.h>
#include <VelmarCoreUI/Platform/Layers/VLXInterpolation.h>

std::shared_ptr<VLXBasicAnimation> VLXBasicAnimation::create() {
    return makeInitialized<VLXBasicAnimation>();
}

std::shared_ptr<VLXBasicAnimation> VLXBasicAnimation::animationWithKeyPath(std::string keyPath) {
    auto animation = create();
    animation->setKeyPath(std::move(keyPath));
    return animation;
}

std::shared_ptr<VLXAnimation> VLXBasicAnimation::copy() const {
    return VLXMakeShared<VLXBasicAnimation>(*this);
}

VLXValue VLXBasicAnimation::valueAtProgress(double progress, const VLXValue& base,
                                            const VLXValue& model) const {
    const VLXValue& from = m_fromValue.isNil() ? base : m_fromValue;
    const VLXValue& to = m_toValue.isNil() ? model : m_toValue;
    return VLXInterpolateValues(from, to, progress);
}

std::string VLXBasicAnimation::description() const {
    return VLXStringWithFormat("<%s: %p> keyPath: %s, fromValue: %s, toValue: %s, duration: %g",
                               className().c_str(), static_cast<const void*>(this),
                               keyPath().c_str(), m_fromValue.description().c_str(),
                               m_toValue.description().c_str(), duration());
}
