#pragma once

#include <cstddef>

#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>
#include <VelmarCoreUI/Platform/Layers/VLXInterpolation.h>

// Values taken apart into plain numbers and put back together: the interpolation of every kind
// works on these, and keyframe animations keep their frames unpacked this way.
namespace vlx::detail {

inline constexpr std::size_t kMaxInterpolationComponents = 16;

/// Writes the entries of `value` (of kind `kind`) into `out` and returns how many; 0 for
/// `None`. Colours write their components (alpha last).
std::size_t interpolationComponents(const VLXValue& value, VLXInterpolationKind kind, double* out);

/// A value of `kind` from `count` entries. Colours take the model of `colorModel` (a colour
/// value) when it is one.
VLXValue valueFromComponents(VLXInterpolationKind kind, const double* components, std::size_t count,
                             const VLXValue& colorModel);

}  // namespace vlx::detail
