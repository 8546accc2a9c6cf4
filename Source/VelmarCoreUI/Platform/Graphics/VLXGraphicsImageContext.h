#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <memory>

#include <VelmarCoreUI/Platform/Primitives/VLXGeometry.h>

class VLXGraphicsContext;
class VLXImage;

/// The current-context stack: drawing code that takes no context (bezier paths, images, text)
/// draws into the context on top. One stack per thread.

/// Pushes a new bitmap context of `size` points. `scale` 0 (or any value that is not finite and
/// positive) means the main screen's scale. A negative, NaN, infinite or too large size, or a
/// positive scale outside 1/1024 … 1024, pushes an empty entry, so that begin / end stay paired:
/// the current context is then nil and so is the image. A zero width or height gives a context
/// without pixels whose image has zero size.
VLX_EXPORT void VLXGraphicsBeginImageContextWithOptions(VLXSize size, bool opaque, double scale);
/// Not opaque, scale 1.
VLX_EXPORT void VLXGraphicsBeginImageContext(VLXSize size);
/// The context on top of the stack, or nil.
VLX_EXPORT VLXGraphicsContext* VLXGraphicsGetCurrentContext();
/// The current image context's pixels as an image (its size in points and scale), or nil when
/// the top of the stack is not an image context.
VLX_EXPORT std::shared_ptr<VLXImage> VLXGraphicsGetImageFromCurrentImageContext();
/// Pops the top entry if it was pushed by `VLXGraphicsBeginImageContext…`; otherwise nothing.
VLX_EXPORT void VLXGraphicsEndImageContext();

/// Makes `context` current until the matching pop (the caller keeps it alive meanwhile).
VLX_EXPORT void VLXGraphicsPushContext(VLXGraphicsContext& context);
/// Pops the top entry if it was pushed by `VLXGraphicsPushContext`; otherwise nothing.
VLX_EXPORT void VLXGraphicsPopContext();
