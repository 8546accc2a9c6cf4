#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <VelmarCoreUI/Platform/Foundation/VLXCache.h>
#include <VelmarCoreUI/Platform/Foundation/VLXTypes.h>
#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>
#include <VelmarCoreUI/Platform/Primitives/VLXColor.h>
#include <VelmarCoreUI/Platform/Primitives/VLXGeometry.h>

/// Image helpers for host applications: a process-wide cache of drawn images keyed by
/// identifier, a small catalogue of vector icons drawn on demand and cached per size and
/// colour, and four adjustments (scaling, desaturation, tinting, average colour).
///
/// Images are made in image contexts (`VLXGraphicsBeginImageContextWithOptions`), never
/// opaque. Drawing code given to these functions draws into `VLXGraphicsGetCurrentContext()`.
/// Sizes that an image context refuses (negative, NaN, infinite, too large) give nil images,
/// and nil images are never cached.

// --- drawing cache -----------------------------------------------------------------------------

using VLXImageCache = VLXCache<std::string, std::shared_ptr<VLXImage>>;

/// The shared cache of drawn images: made on first use, kept for the life of the process, safe
/// to use from several threads. It has no limits unless the host sets them.
VLX_EXPORT std::shared_ptr<VLXImageCache> drawingCache();

/// Drawing code run with an image context current.
using VLXImageDrawing = std::function<void()>;

/// Loads "name.ext" from the main bundle (`VLXBundle::mainBundle()`), reading the file whole
/// and not caching it. The text is split at its last ".": the part before is the resource name,
/// the part after its type ("icon" without a dot looks for a file "icon"). Nil when the bundle
/// has no such file or it is not a readable PNG.
VLX_EXPORT std::shared_ptr<VLXImage> vlx_uncachedImageNamed(std::string_view fileNameWithExtension);

/// Begins an image context of `size` points (not opaque, the main screen's scale), runs
/// `drawing` when it is given, and returns what was drawn. An empty `drawing` gives a
/// transparent image; a zero width or height an image of zero size; a size the image context
/// refuses gives nil without running `drawing` (it would have no context to draw into).
VLX_EXPORT std::shared_ptr<VLXImage> vlx_imageWithSize(VLXSize size,
                                                       const VLXImageDrawing& drawing);

/// The image cached under `identifier`; when there is none, `vlx_imageWithSize(size, drawing)`,
/// stored under `identifier` when it gave an image. A nil identifier finds nothing and stores
/// nothing, so the image is drawn on every call.
VLX_EXPORT std::shared_ptr<VLXImage> vlx_imageWithIdentifier(
    const std::optional<std::string>& identifier, VLXSize size, const VLXImageDrawing& drawing);
/// The image cached under `identifier`, or nil (always nil for a nil identifier).
VLX_EXPORT std::shared_ptr<VLXImage> vlx_imageWithIdentifier(
    const std::optional<std::string>& identifier);
/// Stores `image` under `identifier`, replacing what was there; nothing when either is nil.
VLX_EXPORT void vlx_cacheImage(const std::shared_ptr<VLXImage>& image,
                               const std::optional<std::string>& identifier);
/// Removes the image cached under `identifier` (nothing for nil).
VLX_EXPORT void vlx_removeImageWithIdentifier(const std::optional<std::string>& identifier);
/// Empties the drawing cache.
VLX_EXPORT void vlx_removeAllImages();

// --- icons -------------------------------------------------------------------------------------

/// The icon types of the catalogue. Functions take any `VLXUInteger`: other values are unknown
/// types, with no name, a zero default size and no drawing.
enum : VLXUInteger {
    VLXIconTypePlay = 0,  ///< "play": a triangle pointing right, 20 × 30 points
    VLXIconTypeStop = 1,  ///< "stop": a square, 30 × 30 points
};

/// "VLXIcon_<name>_<width>x<height>_<colour>": the icon's name, the width and height truncated
/// to whole numbers (printed with "%li"; NaN reads 0 and values beyond the range of a long
/// saturate) and the colour's `vlx_hexValue` (six digits without alpha, so colours that differ
/// only in alpha share identifiers; "" for colours of another model). A nil colour prints as
/// "(null)": "VLXIcon_play_20x30_(null)". Nil for an unknown type.
VLX_EXPORT std::optional<std::string> vlx_identifierForIcon(VLXUInteger type, VLXSize size,
                                                            const std::optional<VLXColor>& color);

/// The size the icon is drawn at: 20 × 30 for play, 30 × 30 for stop, zero for unknown types.
VLX_EXPORT VLXSize vlx_defaultSizeForIcon(VLXUInteger type);

/// Draws the icon at its default size into the current context with the context's fill colour:
/// play fills the closed triangle (0, 0) → (0, 30) → (20, 15) (miter limit 4), stop fills the
/// rectangle (0, 0, 30, 30). Nothing for unknown types or without a current context.
VLX_EXPORT void vlx_drawIcon(VLXUInteger type);

/// The icon at `size`, tinted with `color` when one is given.
///
/// The icon is drawn in black at its default size and cached under the identifier of the
/// default size and the requested colour; when `size` differs, that drawing is scaled and the
/// scaled black image cached under the identifier of `size`. Tinting is applied on every call
/// and its result not cached, so two colours share the black drawings but return differently
/// coloured images. An unknown type has a nil identifier: nothing is cached, the drawing is an
/// image of zero size, and for a non-zero `size` the result is a transparent image of that size.
/// Nil when `size` is one an image context refuses.
VLX_EXPORT std::shared_ptr<VLXImage> vlx_iconWithType(VLXUInteger type, VLXSize size,
                                                      const std::optional<VLXColor>& color);
/// The icon `width` wide, its height keeping the default proportions: roundf(default height ×
/// (width ÷ default width)) in single precision (the stop icon at width 15 is 15 high).
/// Unknown types (zero default size) give a NaN height and so a nil image.
VLX_EXPORT std::shared_ptr<VLXImage> vlx_iconWithTypeWidth(VLXUInteger type, double width,
                                                           const std::optional<VLXColor>& color);
/// The icon `height` high, width roundf(default width × (height ÷ default height)) in single
/// precision (the play icon at height 15 is 10 wide).
VLX_EXPORT std::shared_ptr<VLXImage> vlx_iconWithTypeHeight(VLXUInteger type, double height,
                                                            const std::optional<VLXColor>& color);

// --- adjustments ---------------------------------------------------------------------------------

/// The image drawn into (0, 0, size) of a new image of `size` points at the image's own scale
/// (stretched, not cropped). Nil for sizes an image context refuses.
VLX_EXPORT std::shared_ptr<VLXImage> vlx_imageScaledToSize(const VLXImage& image, VLXSize size);

/// The image with its colours replaced by greys of the same luminosity: black filled over the
/// whole image with the saturation blend mode (luminosity 0.3 R + 0.59 G + 0.11 B, as PDF
/// blending defines it). A blend mode covers source and destination, so the result is opaque:
/// transparent areas turn black and half-transparent ones darker, as on the platform. Same
/// size and scale as the image, orientation up.
VLX_EXPORT std::shared_ptr<VLXImage> vlx_desaturatedImage(const VLXImage& image);

/// The image with `color` filled over it with the source-atop blend mode: opaque pixels take
/// the colour (mixed by its alpha), transparent ones stay transparent, partly transparent ones
/// keep their alpha. Same size and scale as the image, orientation up.
VLX_EXPORT std::shared_ptr<VLXImage> vlx_imageTintedWithColor(const VLXImage& image,
                                                              const VLXColor& color);

/// The mean colour of the image, read from the image drawn into a single pixel.
///
/// The pixel holds premultiplied bytes R, G, B, A. When A > 0 the result is the RGB colour
/// (R, G, B) × A ÷ 255 ÷ 255 with alpha A ÷ 255 — the premultiplied components are multiplied
/// by the alpha once more, so a half-transparent white averages to (0.25, 0.25, 0.25, 0.5).
/// When A = 0 (a fully transparent or empty image) it is (R, G, B) ÷ 255 with alpha 0.
/// Every pixel counts equally, whatever the image's size.
VLX_EXPORT VLXColor vlx_averageColor(const VLXImage& image);
