#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <VelmarCoreUI/Animation/VLXEasing.h>
#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>
#include <VelmarCoreUI/Platform/Primitives/VLXColor.h>
#include <VelmarCoreUI/Platform/Primitives/VLXGeometry.h>
#include <VelmarCoreUI/Platform/Primitives/VLXTransform3D.h>
#include <VelmarCoreUI/VLXExport.h>

class VLXKeyframeAnimation;

/// Number of key frames the builders sample.
inline constexpr int VLXKeyframeSampleCount = 101;

/// The eased fraction for a time fraction.
using VLXKeyframeTimeFunction = std::function<double(double t)>;
/// A key frame between two values at an eased fraction.
using VLXKeyframeValueFunction =
    std::function<VLXValue(const VLXValue& from, const VLXValue& to, double fraction)>;

/// The general builder: a linear keyframe animation of `keyPath` whose 101 values are
/// `valueFunction(from, to, timeFunction(t))` for t = 0, 1/101, 2/101 … (t grows by adding
/// 1/101, so the last sample is taken at t ≈ 100/101, not 1). Fill mode backwards; the duration
/// is left to the caller. Nil when either function is empty.
VLX_EXPORT std::shared_ptr<VLXKeyframeAnimation> vlx_animationWithKeyPath(
    std::string keyPath, const VLXValue& fromValue, const VLXValue& toValue,
    const VLXKeyframeTimeFunction& timeFunction, const VLXKeyframeValueFunction& valueFunction);

// The typed builders use the exact function of `easing` (`vlx_animationBlockForEasing`) and
// interpolate every component as from + (to − from) × e. An easing code without an exact
// function gives nil.

/// Numbers (doubles) for `keyPath`.
VLX_EXPORT std::shared_ptr<VLXKeyframeAnimation> vlx_animationWithKeyPath(std::string keyPath,
                                                                          double fromDouble,
                                                                          double toDouble,
                                                                          VLXEasing easing);
/// Points for "position".
VLX_EXPORT std::shared_ptr<VLXKeyframeAnimation> vlx_animationFromPoint(VLXPoint fromPoint,
                                                                        VLXPoint toPoint,
                                                                        VLXEasing easing);
/// Rectangles at the origin with the sizes, for "bounds".
VLX_EXPORT std::shared_ptr<VLXKeyframeAnimation> vlx_animationFromSize(VLXSize fromSize,
                                                                       VLXSize toSize,
                                                                       VLXEasing easing);
/// Rectangles for "frame". Layers have no animatable "frame" property: such an animation can be
/// built, copied and joined, but attached to a layer it changes nothing that is drawn.
VLX_EXPORT std::shared_ptr<VLXKeyframeAnimation> vlx_animationFromRect(VLXRect fromRect,
                                                                       VLXRect toRect,
                                                                       VLXEasing easing);
/// Colour animations are not provided: always nil.
VLX_EXPORT std::shared_ptr<VLXKeyframeAnimation> vlx_animationFromColor(
    const std::optional<VLXColor>& fromColor, const std::optional<VLXColor>& toColor,
    VLXEasing easing);
/// 3-D transforms for "transform", each of the 16 entries interpolated.
VLX_EXPORT std::shared_ptr<VLXKeyframeAnimation> vlx_animationFromTransform(
    const VLXTransform3D& fromTransform, const VLXTransform3D& toTransform, VLXEasing easing);

/// One keyframe animation playing `animations` one after the other: the first one's key path
/// and calculation mode, the sum of the durations, all values in order, fill mode backwards.
/// No key times, so the joined frames are evenly spaced over the whole duration. Null entries
/// are skipped; nil when none is left.
VLX_EXPORT std::shared_ptr<VLXKeyframeAnimation> animationWithAnimations(
    const std::vector<std::shared_ptr<VLXKeyframeAnimation>>& animations);
