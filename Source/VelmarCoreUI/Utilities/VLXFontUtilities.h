#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <optional>
#include <string>

#include <VelmarCoreUI/Platform/Graphics/VLXFont.h>
#include <VelmarCoreUI/Platform/Graphics/VLXTextAttributes.h>
#include <VelmarCoreUI/Platform/Primitives/VLXGeometry.h>
#include <VelmarCoreUI/Platform/Views/VLXContentSizeCategory.h>

/// Text measurement and text-size scaling on fonts.

/// The size `string` needs in `font` when wrapped at word boundaries to `maxWidth`, with no
/// height limit: the `maxSize` form with (maxWidth, the largest finite double) and the default
/// paragraph style. A NaN, infinite, zero or negative width does not wrap.
VLX_EXPORT VLXSize vlx_sizeNeededForString(const VLXFont& font,
                                           const std::optional<std::string>& string,
                                           double maxWidth);
/// As above. `lineBreakMode` is accepted for compatibility and not used: the text is always
/// measured with word wrapping, so every mode gives the same size.
VLX_EXPORT VLXSize vlx_sizeNeededForString(const VLXFont& font,
                                           const std::optional<std::string>& string,
                                           double maxWidth, VLXLineBreakMode lineBreakMode);
/// The size `string` needs in `font` (with `paragraphStyle` when given, else the default
/// style) laid out in `maxSize`: its bounding rectangle with line-fragment origin, font leading
/// and last-line truncation (options 35), width and height each rounded up to a whole point.
/// Only lines that fit `maxSize.height` count (the first always does). Nil gives (0, 0), as
/// does the empty string.
VLX_EXPORT VLXSize vlx_sizeNeededForString(const VLXFont& font,
                                           const std::optional<std::string>& string,
                                           VLXSize maxSize,
                                           const std::optional<VLXParagraphStyle>& paragraphStyle);

/// The factor that scales `fontSize` for the reader's text-size `category`:
/// (fontSize + delta) ÷ fontSize, with delta in points
///
///     ExtraSmall −3, Small −2, Medium −1, Large 0, ExtraLarge +1, ExtraExtraLarge +2,
///     ExtraExtraExtraLarge +3, AccessibilityMedium +4, AccessibilityLarge +6,
///     AccessibilityExtraLarge +5, AccessibilityExtraExtraLarge +7,
///     AccessibilityExtraExtraExtraLarge +8, anything else 0.
///
/// (AccessibilityExtraLarge is one point below AccessibilityLarge: the table is kept as it has
/// always been.) Categories are matched by their text. The division is done as written: size 0
/// gives ±infinity, or NaN when the delta is 0; NaN sizes give NaN.
VLX_EXPORT double vlx_fontScaleForContentSize(VLXContentSizeCategory category, double fontSize);
