#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <string_view>

#include <VelmarCoreUI/Platform/Graphics/VLXTextAttributes.h>
#include <VelmarCoreUI/Platform/Primitives/VLXGeometry.h>

class VLXGraphicsContext;

/// Measuring and drawing UTF-8 text with attributes.
///
/// Text is laid out with Pango in points at 72 dpi with unhinted metrics: results are
/// fractional (multiples of 1/1024 point) and identical on every machine with the same fonts.
/// Invalid UTF-8 and NUL bytes are replaced by U+FFFD before layout. Paragraphs end at "\n",
/// "\r\n", "\r" and U+2029. Empty text measures as a zero rectangle and draws nothing.
///
/// Layout rules shared by measuring and drawing:
///  * A width or height that is NaN, infinite, zero or negative is no limit.
///  * Each line is as tall as the font (ascender − descender, plus the font's leading with
///    `VLXStringDrawingUsesFontLeading`), taller where fallback fonts on it reach further; the
///    paragraph style's line spacing separates lines. The measured width is the widest line's,
///    trailing spaces of wrapped lines left out.
///  * When the height limits the text, only lines that fit entirely count, but the first line
///    always does. With `VLXStringDrawingTruncatesLastVisibleLine` and lines cut off, the last
///    visible line holds the rest of its paragraph truncated at the tail with "…" (and ends in
///    "…" when only later paragraphs were cut off).
///
/// Measuring repeats no expensive work: each thread keeps one Pango context and reusable
/// layouts, fonts keep their Pango descriptions, and recent results are remembered per thread.

/// The size of the text laid out without a width limit (one line per paragraph).
VLX_EXPORT VLXSize VLXStringSizeWithAttributes(std::string_view text,
                                               const VLXTextAttributes& attributes = {});

/// The rectangle the text occupies when laid out for `size` with `options`
/// (`VLXStringDrawingOptions` or-ed together; unknown bits are ignored).
///
/// With `VLXStringDrawingUsesLineFragmentOrigin` the text is broken into lines for
/// `size.width` per the paragraph style; the rectangle starts at (0, 0) and is as tall as the
/// visible lines and as wide as the widest of them. Without it the size is ignored, each
/// paragraph is one line, and the rectangle is relative to the first baseline: its origin is
/// (0, −ascent of the first line). With `VLXStringDrawingUsesDeviceMetrics` the rectangle
/// bounds the glyphs' ink instead (in the same coordinates). Results are not rounded.
VLX_EXPORT VLXRect VLXStringBoundingRect(std::string_view text, VLXSize size, unsigned options,
                                         const VLXTextAttributes& attributes = {});

/// Draws the text with the top-left corner of its first line at `point`, one line per
/// paragraph (aligned per the paragraph style within the widest line), into the current
/// graphics context (nothing when there is none).
VLX_EXPORT void VLXStringDrawAtPoint(std::string_view text, VLXPoint point,
                                     const VLXTextAttributes& attributes = {});
VLX_EXPORT void VLXStringDrawAtPoint(VLXGraphicsContext& context, std::string_view text,
                                     VLXPoint point, const VLXTextAttributes& attributes = {});

/// Draws the text laid out as `VLXStringBoundingRect` lays it out for `rect.size`, placed at
/// `rect.origin` (the top-left corner with `VLXStringDrawingUsesLineFragmentOrigin`, else the
/// first baseline), into the current graphics context (nothing when there is none).
///
/// Lines are aligned within the rectangle's width (or within the widest line when the width
/// is no limit) per the paragraph style; the clipping line-break mode clips to the rectangle.
/// The foreground colour fills the glyphs (colours of the other model draw black); the shadow
/// attribute becomes the context's shadow while the text draws, and the context's alpha,
/// blend mode, clip and shadow apply as to any drawing. A non-finite origin draws nothing, and
/// neither does text whose glyphs would be taller than 32 768 device pixels.
VLX_EXPORT void VLXStringDrawWithRect(std::string_view text, const VLXRect& rect, unsigned options,
                                      const VLXTextAttributes& attributes = {});
VLX_EXPORT void VLXStringDrawWithRect(VLXGraphicsContext& context, std::string_view text,
                                      const VLXRect& rect, unsigned options,
                                      const VLXTextAttributes& attributes = {});

/// `VLXStringDrawWithRect` with `VLXStringDrawingUsesLineFragmentOrigin`: the text wrapped
/// into the rectangle.
VLX_EXPORT void VLXStringDrawInRect(std::string_view text, const VLXRect& rect,
                                    const VLXTextAttributes& attributes = {});
VLX_EXPORT void VLXStringDrawInRect(VLXGraphicsContext& context, std::string_view text,
                                    const VLXRect& rect, const VLXTextAttributes& attributes = {});
