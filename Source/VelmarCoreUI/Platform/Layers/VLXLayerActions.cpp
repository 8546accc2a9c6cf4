// The action search of layers and their implicit animations.

#include <VelmarCoreUI/Platform/Layers/VLXLayer.h>

#include <array>

#include <VelmarCoreUI/Platform/Layers/VLXBasicAnimation.h>
#include <VelmarCoreUI/Platform/Layers/VLXTransaction.h>

namespace {
constexpr std::array<std::string_view, 10> kImplicitlyAnimatableKeys{
    "bounds",       "position",    "anchorPoint", "opacity",   "backgroundColor",
    "cornerRadius", "borderColor", "borderWidth", "transform", "contents"};
}  // namespace

bool VLXLayer::isImplicitlyAnimatableKey(std::string_view key) {
    for (std::string_view k : kImplicitlyAnimatableKeys) {
        if (k == key) {
            return true;
        }
    }
    return false;
}

std::shared_ptr<VLXAnimation> VLXLayer::actionForKey(std::string_view key) {
    if (m_delegate) {
        if (VLXLayerActionAnswer answer = m_delegate->actionForLayer(*this, key)) {
            return *answer;  // null: the delegate's "no action" ends the search
        }
    }
    if (const auto it = m_actions.find(key); it != m_actions.end()) {
        return it->second;
    }
    // Nothing of a layer that was never committed is on screen yet: its set-up (frame, colours
    // …) appears at once instead of growing from zero.
    if (!isCommitted()) {
        return nullptr;
    }
    return defaultActionForKey(key);
}

std::shared_ptr<VLXAnimation> VLXLayer::defaultActionForKey(std::string_view key) {
    if (!isImplicitlyAnimatableKey(key)) {
        return nullptr;
    }
    auto animation = VLXBasicAnimation::animationWithKeyPath(std::string(key));
    animation->setDuration(VLXTransaction::animationDuration());
    animation->setTimingFunction(VLXTransaction::animationTimingFunction());
    return animation;
}

bool VLXLayer::needsDisplayForKey(std::string_view) const {
    return false;
}
