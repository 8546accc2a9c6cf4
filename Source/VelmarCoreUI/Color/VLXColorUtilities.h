#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <optional>
#include <string>
#include <string_view>

#include <VelmarCoreUI/Platform/Foundation/VLXTypes.h>
#include <VelmarCoreUI/Platform/Primitives/VLXColor.h>

/// Colour construction, parsing and conversion used by the whole toolkit: hexadecimal, rgba and
/// hsla text, components, interpolation, brightness, grey and lightness. These are the one
/// definition of colour parsing; colour ramps, animations, tooltips and graph styles call them.
///
/// Components are on a 0…1 scale unless a function says otherwise. Nothing here clamps unless
/// stated, and nothing throws: bad input gives nil, -1.0, 0 or the unchanged colour, as noted.

// --- strings ---------------------------------------------------------------------------------

/// Reads `text` the way the C scan "%lx" does: optional leading white space, an optional sign,
/// an optional "0x"/"0X", then hexadecimal digits of either case up to the first other
/// character. 0 when no digit can be read. A value too large for 64 bits saturates at
/// UINT64_MAX, and a "-" negates modulo 2^64, as the C library's conversion does.
VLX_EXPORT VLXUInteger vlx_hexValue(std::string_view text);

// --- construction ----------------------------------------------------------------------------

/// An RGB colour from red, green and blue on a 0…255 scale and alpha on 0…1. Not clamped.
VLX_EXPORT VLXColor vlx_colorWithRed(double red, double green, double blue, double alpha);

/// Parses 'rgba(255, 128, 0, 0.5)', 'rgb(255,128,0)' or '255,128,0'. The text is lowercased and
/// the characters of "rgba( )" are trimmed from both ends; the rest must split at "," into 3 or
/// 4 components (else nil). Each reads as a single-precision number (leading blanks skipped,
/// trailing text ignored, 0 when unreadable); a fourth one is alpha, otherwise alpha is 1.
VLX_EXPORT std::optional<VLXColor> vlx_colorWithRGB(std::string_view text);

/// An RGB colour from hue on a 0…255 scale (the divisor is 255, not 360), saturation and
/// brightness on 0…100 and alpha on 0…1. Out-of-range values are handled by
/// `VLXColor::colorWithHue`: the hue wraps, saturation and brightness are clamped to 0…1.
VLX_EXPORT VLXColor vlx_colorWithHue(double hue, double saturation, double brightness,
                                     double alpha);

/// Parses 'hsla(120, 50%, 40%, 1)' (3 or 4 components, else nil) after lowercasing and trimming
/// the characters of "hsla(% )" from both ends. The toolkit's own mapping to HSB is used:
/// brightness = L, saturation = S × (L when L < 0.5, else 1 − L), the test made in single
/// precision on the raw 0…100 value of L. So percent input with L ≥ 0.5 gives a negative
/// saturation, which `VLXColor::colorWithHue` clamps to 0: 'hsla(120, 50%, 40%, 1)' is the
/// grey of brightness 0.4.
VLX_EXPORT std::optional<VLXColor> vlx_colorWithHSL(std::string_view text);

/// Parses "#rgb", "#rrggbb", "#rrggbbaa" (or without the "#", or with a lowercase "0x").
/// Lengths are counted in UTF-16 code units after dropping one prefix; any length other than 3,
/// 6 or 8 gives nil. Each pair is read with `vlx_hexValue` (so 'zz' reads 0 and '3z' reads 3),
/// then divided by 255 in single precision.
VLX_EXPORT std::optional<VLXColor> vlx_colorWithHex(std::string_view text);

// --- comparison and blending -----------------------------------------------------------------

/// Exact equality after rebuilding greys as RGB (white, white, white, alpha): a grey equals the
/// RGB colour with three equal components. Colours of another model are compared as they are.
VLX_EXPORT bool vlx_isEqualToColor(const VLXColor& color, const VLXColor& other);

/// Linear RGBA interpolation from `color` (position 0) to `to` (position 1), the position
/// clamped to 0…1 (NaN reads as 0). Components are read with `vlx_red`… and `vlx_alpha`, so a
/// colour of another model contributes -1.0 for red, green and blue. Always an RGB colour.
VLX_EXPORT VLXColor vlx_interpolatedToColor(const VLXColor& color, const VLXColor& to,
                                            double position);

// --- hexadecimal output ----------------------------------------------------------------------

/// Six lowercase hexadecimal digits, no "#"; "" when `vlx_hexValueWithAlpha` gives nil.
VLX_EXPORT std::string vlx_hexValue(const VLXColor& color);

/// "rrggbb" (4 components) or "wwwwww" (2 components), plus "aa" when `withAlpha`; nil for any
/// other component count. Each component × 255 is truncated toward zero and printed with
/// "%02lx", so 0.5 gives "7f" and an unclamped 2.0 gives "1fe". A NaN or negative product
/// prints as 00; one beyond 64 bits (including +∞) as ffffffffffffffff.
VLX_EXPORT std::optional<std::string> vlx_hexValueWithAlpha(const VLXColor& color, bool withAlpha);

// --- derived colours -------------------------------------------------------------------------

/// Brightness multiplied by `factor`, then clamped to 0…1 (a NaN result reads 0). RGB colours
/// go through HSB and come back as RGB; greys scale their white and stay grey; nil for colours
/// of another model.
VLX_EXPORT std::optional<VLXColor> vlx_adjustBrightness(const VLXColor& color, double factor);

/// The grey (monochrome) of luma 0.299 R + 0.587 G + 0.114 B with the same alpha; a colour of
/// another model is returned unchanged.
VLX_EXPORT VLXColor vlx_grayscale(const VLXColor& color);

/// True when (299 R + 587 G + 114 B) / 1000 is at least 0.55 (above the midpoint on purpose).
VLX_EXPORT bool vlx_isLightColor(const VLXColor& color);

/// An RGB colour of `vlx_red`, `vlx_green`, `vlx_blue` and the given alpha.
VLX_EXPORT VLXColor vlx_adjustAlpha(const VLXColor& color, double alpha);

// --- components ------------------------------------------------------------------------------

VLX_EXPORT double vlx_red(const VLXColor& color);    ///< `vlx_getComponentAtIndex(color, 0)`
VLX_EXPORT double vlx_green(const VLXColor& color);  ///< `vlx_getComponentAtIndex(color, 1)`
VLX_EXPORT double vlx_blue(const VLXColor& color);   ///< `vlx_getComponentAtIndex(color, 2)`
/// The alpha (last component), whatever the model.
VLX_EXPORT double vlx_alpha(const VLXColor& color);

/// Greys: the white for index 0…2, the alpha for 3 and above. RGB: the component for 0…2.
/// Everything else (RGB index 3 and above, other models, colours whose component count does
/// not fit their model) gives -1.0; read alpha through `vlx_alpha`.
VLX_EXPORT double vlx_getComponentAtIndex(const VLXColor& color, VLXUInteger index);
