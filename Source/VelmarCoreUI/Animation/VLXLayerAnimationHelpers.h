#pragma once

#include <memory>
#include <optional>
#include <string>

#include <VelmarCoreUI/VLXExport.h>

class VLXLayer;
class VLXAnimation;

/// Adds `animation` to `layer` under `key`, then brings the model up to date so that the layer
/// keeps the final state once the animation is removed: a basic animation with a `toValue`
/// sets the layer's value at its key path to it; a group does the same for each member that is
/// such a basic animation, in the group's order. Other animations (keyframes, springs) are only
/// added. The model changes with actions enabled as the transaction has them, so a stand-alone
/// layer may add its implicit animation for the key as well (it comes after, and wins).
/// Null animations are ignored.
VLX_EXPORT void vlx_addAnimation(VLXLayer& layer, const std::shared_ptr<VLXAnimation>& animation,
                                 std::optional<std::string> key);
