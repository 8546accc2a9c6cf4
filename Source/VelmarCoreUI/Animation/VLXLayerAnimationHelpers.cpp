#include <VelmarCoreUI/Animation/VLXLayerAnimationHelpers.h>

#include <VelmarCoreUI/Platform/Layers/VLXAnimationGroup.h>
#include <VelmarCoreUI/Platform/Layers/VLXBasicAnimation.h>
#include <VelmarCoreUI/Platform/Layers/VLXLayer.h>

namespace {

void updateModel(VLXLayer& layer, const VLXAnimation& animation) {
    if (auto basic = dynamic_cast<const VLXBasicAnimation*>(&animation)) {
        if (!basic->toValue().isNil()) {
            layer.setValueForKeyPath(basic->toValue(), basic->keyPath());
        }
    }
}

}  // namespace

void vlx_addAnimation(VLXLayer& layer, const std::shared_ptr<VLXAnimation>& animation,
                      std::optional<std::string> key) {
    if (!animation) {
        return;
    }
    layer.addAnimation(animation, std::move(key));
    if (auto group = dynamic_cast<const VLXAnimationGroup*>(animation.get())) {
        for (const auto& member : group->animations()) {
            updateModel(layer, *member);
        }
    } else {
        updateModel(layer, *animation);
    }
}
