#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <optional>

#include <VelmarCoreUI/Platform/Graphics/VLXFont.h>
#include <VelmarCoreUI/Platform/Primitives/VLXColor.h>
#include <VelmarCoreUI/Platform/Primitives/VLXGeometry.h>

/// How text that does not fit the width is broken or cut, numbered as the platform numbers
/// them.
///
/// The wrapping modes lay a paragraph out on as many lines as it needs. The others keep each
/// paragraph on one line: clipping draws it whole and cuts it off at the rectangle's edge
/// (measurements report its full width), the truncating modes replace the part that does not
/// fit by "…" at the head, the tail or the middle.
enum class VLXLineBreakMode {
    ByWordWrapping = 0,  ///< break between words; a word wider than the line breaks anywhere
    ByCharWrapping = 1,  ///< break between any two characters
    ByClipping = 2,
    ByTruncatingHead = 3,
    ByTruncatingTail = 4,
    ByTruncatingMiddle = 5,
};

/// Horizontal placement of lines within the layout width, numbered as the platform numbers
/// them. `Left` and `Right` are absolute; `Natural` follows each paragraph's writing direction
/// (left for left-to-right text); `Justified` stretches every line but a paragraph's last to
/// the full width and places that last line naturally.
enum class VLXTextAlignment {
    Left = 0,
    Center = 1,
    Right = 2,
    Justified = 3,
    Natural = 4,
};

/// How paragraphs are laid out.
struct VLX_EXPORT VLXParagraphStyle {
    VLXLineBreakMode lineBreakMode = VLXLineBreakMode::ByWordWrapping;
    VLXTextAlignment alignment = VLXTextAlignment::Natural;
    /// Extra space in points between one line's bottom and the next line's top (not after the
    /// last line). NaN, infinite and negative values count as 0.
    double lineSpacing = 0;

    /// Word wrapping, natural alignment, no extra spacing.
    static const VLXParagraphStyle& defaultParagraphStyle();

    friend bool operator==(const VLXParagraphStyle&, const VLXParagraphStyle&) = default;
};

/// A shadow under drawn text, with the platform's defaults.
struct VLX_EXPORT VLXShadow {
    /// Offset in points; a positive height moves the shadow down. The default (0, −3) puts it
    /// above the text, as the platform's default shadow is.
    VLXSize shadowOffset{0, -3};
    /// Blur radius in points; NaN and negative values count as 0.
    double shadowBlurRadius = 0;
    /// Nil for the default: black at one third opacity.
    std::optional<VLXColor> shadowColor;

    friend bool operator==(const VLXShadow&, const VLXShadow&) = default;
};

/// Attributes of a run of text. Each absent attribute takes its default: the 12-point system
/// font, opaque black, the default paragraph style, no shadow.
struct VLX_EXPORT VLXTextAttributes {
    std::optional<VLXFont> font;
    std::optional<VLXColor> foregroundColor;
    std::optional<VLXParagraphStyle> paragraphStyle;
    std::optional<VLXShadow> shadow;

    /// The font in effect (the given one, or the 12-point system font).
    VLXFont resolvedFont() const { return font ? *font : VLXFont(); }
    /// The paragraph style in effect.
    const VLXParagraphStyle& resolvedParagraphStyle() const {
        return paragraphStyle ? *paragraphStyle : VLXParagraphStyle::defaultParagraphStyle();
    }
};

/// Options of `VLXStringBoundingRect` and `VLXStringDrawWithRect`, numbered as the platform
/// numbers them (so 35 is line-fragment origin + font leading + truncation).
enum VLXStringDrawingOptions : unsigned {
    /// Lay the text out in the rectangle's width from its top-left corner (wrapping per the
    /// paragraph style). Without it the text is one line per paragraph whose first baseline
    /// sits at the origin.
    VLXStringDrawingUsesLineFragmentOrigin = 1u << 0,
    /// Add the font's leading to every line's height.
    VLXStringDrawingUsesFontLeading = 1u << 1,
    /// Measure the glyphs' ink instead of their typographic boxes.
    VLXStringDrawingUsesDeviceMetrics = 1u << 3,
    /// When the height cuts lines off, end the last visible line with "…".
    VLXStringDrawingTruncatesLastVisibleLine = 1u << 5,
};
