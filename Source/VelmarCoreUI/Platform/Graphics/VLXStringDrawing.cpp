#include <VelmarCoreUI/Platform/Graphics/VLXStringDrawing.h>

#include <pango/pangocairo.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <VelmarCoreUI/Platform/Graphics/Private/VLXTextEngine.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsImageContext.h>

namespace {

constexpr double kNoLimit = std::numeric_limits<double>::infinity();
// Pango counts in ints of 1/1024 point; wider limits than this are no limit.
constexpr double kLargestPangoWidth = double(INT_MAX / 4) / PANGO_SCALE;
// Pango takes int lengths; text beyond this many bytes is cut at a character boundary.
constexpr std::size_t kLargestText = std::size_t(1) << 30;
// Heights are sums of multiples of 1/1024, so this only absorbs the caller's rounding.
constexpr double kFitTolerance = 1e-7;
constexpr const char* kEllipsis = "\u2026";

double fromPango(int units) {
    return static_cast<double>(units) / PANGO_SCALE;
}

// Widths and heights that limit nothing (NaN, infinite, zero, negative) become kNoLimit.
double limitOf(double value) {
    return std::isfinite(value) && value > 0 ? value : kNoLimit;
}

// The text as valid UTF-8 Pango accepts: the input itself, or a repaired copy in `storage`.
std::string_view validText(std::string_view text, std::string& storage) {
    if (text.size() > kLargestText) {
        const char* cut = g_utf8_find_prev_char(text.data(), text.data() + kLargestText + 1);
        text = text.substr(0, cut != nullptr ? static_cast<std::size_t>(cut - text.data()) : 0);
    }
    if (g_utf8_validate_len(text.data(), text.size(), nullptr)) {
        return text;
    }
    gchar* repaired = g_utf8_make_valid(text.data(), static_cast<gssize>(text.size()));
    storage = repaired;
    g_free(repaired);
    return storage;
}

// Two reusable layouts per thread: one for the text, one for a truncated last line.
struct ThreadLayouts {
    PangoLayout* main = nullptr;
    PangoLayout* lastLine = nullptr;

    ThreadLayouts() {
        if (PangoContext* context = vlx::detail::threadPangoContext()) {
            main = pango_layout_new(context);
            lastLine = pango_layout_new(context);
            vlx::detail::countLayoutCreated();
            vlx::detail::countLayoutCreated();
        }
    }
    ~ThreadLayouts() {
        if (main != nullptr) {
            g_object_unref(main);
        }
        if (lastLine != nullptr) {
            g_object_unref(lastLine);
        }
    }
    ThreadLayouts(const ThreadLayouts&) = delete;
    ThreadLayouts& operator=(const ThreadLayouts&) = delete;
};

ThreadLayouts& threadLayouts() {
    thread_local ThreadLayouts layouts;
    return layouts;
}

struct PlacedLine {
    PangoLayoutLine* line = nullptr;
    double x = 0;         // left edge of the line's logical box
    double top = 0;       // top of the line box
    double baseline = 0;  // baseline, from the top of the block
    double width = 0;
    double height = 0;  // including leading when asked for
    double ascent = 0;
    PangoRectangle ink{};
    PangoRectangle logical{};
};

struct TextBlock {
    std::vector<PlacedLine> lines;
    double width = 0;
    double height = 0;
};

struct LayoutRequest {
    const VLXFont& font;
    const VLXParagraphStyle& style;
    double width = kNoLimit;   // wrapping / alignment width
    double height = kNoLimit;  // visible-lines limit
    unsigned options = 0;
};

bool isTruncating(VLXLineBreakMode mode) {
    return mode == VLXLineBreakMode::ByTruncatingHead ||
           mode == VLXLineBreakMode::ByTruncatingTail ||
           mode == VLXLineBreakMode::ByTruncatingMiddle;
}

// A line is at least as tall as the font, above and below the baseline, so a line of only
// fallback glyphs (from a font with smaller metrics) does not shrink.
void measureLine(PlacedLine& placed, const VLXFont& font, double leading) {
    pango_layout_line_get_extents(placed.line, &placed.ink, &placed.logical);
    placed.width = fromPango(placed.logical.width);
    placed.ascent = std::max(-fromPango(placed.logical.y), font.ascender());
    const double descent =
        std::max(fromPango(placed.logical.height + placed.logical.y), -font.descender());
    placed.height = placed.ascent + descent + leading;
}

// Sets up `layout` for one paragraph style and width. Pango never decides alignment here: lines
// are placed by `placeLines`, so the last-line layout lines up with the main one.
void configure(PangoLayout* layout, const LayoutRequest& request, std::string_view text, bool wraps,
               bool breaksAtWidth = true) {
    pango_layout_set_font_description(layout, request.font.pangoFontDescription());
    pango_layout_set_text(layout, text.data(), static_cast<int>(text.size()));
    const VLXLineBreakMode mode = request.style.lineBreakMode;
    const bool limited = request.width <= kLargestPangoWidth;
    // Clipped lines are laid out unbroken; only wrapping and truncation use the width.
    const bool usesWidth = breaksAtWidth && limited && mode != VLXLineBreakMode::ByClipping;
    pango_layout_set_width(layout, usesWidth ? pango_units_from_double(request.width) : -1);
    pango_layout_set_wrap(
        layout, mode == VLXLineBreakMode::ByCharWrapping ? PANGO_WRAP_CHAR : PANGO_WRAP_WORD_CHAR);
    PangoEllipsizeMode ellipsize = PANGO_ELLIPSIZE_NONE;
    if (!wraps) {
        ellipsize = PANGO_ELLIPSIZE_END;
    } else if (mode == VLXLineBreakMode::ByTruncatingHead) {
        ellipsize = PANGO_ELLIPSIZE_START;
    } else if (mode == VLXLineBreakMode::ByTruncatingTail) {
        ellipsize = PANGO_ELLIPSIZE_END;
    } else if (mode == VLXLineBreakMode::ByTruncatingMiddle) {
        ellipsize = PANGO_ELLIPSIZE_MIDDLE;
    }
    // With an ellipsis mode and the default height of −1, Pango keeps each paragraph on one
    // line, which is what the truncating modes (and a truncated last line) need.
    pango_layout_set_ellipsize(layout, ellipsize);
    pango_layout_set_justify(layout, wraps && usesWidth &&
                                         request.style.alignment == VLXTextAlignment::Justified &&
                                         !isTruncating(mode));
}

double alignmentFactor(VLXTextAlignment alignment, const PangoLayoutLine* line) {
    switch (alignment) {
        case VLXTextAlignment::Left:
            return 0;
        case VLXTextAlignment::Center:
            return 0.5;
        case VLXTextAlignment::Right:
            return 1;
        case VLXTextAlignment::Justified:
        case VLXTextAlignment::Natural:
            break;
    }
    return line->resolved_dir == PANGO_DIRECTION_RTL ? 1 : 0;
}

// Replaces the last visible line by the rest of its paragraph on one line ending in "…".
void truncateLastLine(ThreadLayouts& layouts, const LayoutRequest& request, std::string_view text,
                      TextBlock& block, GSList* following, double leading) {
    PlacedLine& last = block.lines.back();
    const auto start = static_cast<std::size_t>(last.line->start_index);
    std::size_t end = start + static_cast<std::size_t>(last.line->length);
    bool endsParagraph = true;
    for (; following != nullptr; following = following->next) {
        auto* line = static_cast<PangoLayoutLine*>(following->data);
        if (line->is_paragraph_start) {
            break;
        }
        endsParagraph = false;
        end = static_cast<std::size_t>(line->start_index + line->length);
    }
    bool moreFollows = false;
    for (; following != nullptr; following = following->next) {
        if (static_cast<PangoLayoutLine*>(following->data)->length > 0) {
            moreFollows = true;
            break;
        }
    }
    if (endsParagraph && !moreFollows) {
        return;  // only empty paragraphs were cut off: nothing to mark
    }
    std::string rest(text.substr(start, end - start));
    if (moreFollows) {
        rest += kEllipsis;
    }
    configure(layouts.lastLine, request, rest, false);
    last.line = pango_layout_get_line_readonly(layouts.lastLine, 0);
    if (last.line != nullptr) {
        measureLine(last, request.font, leading);
    }
}

// Lays the text out into `block`: lines, their boxes and positions. Empty text gives no lines.
void layOut(std::string_view text, const LayoutRequest& request, TextBlock& block) {
    block.lines.clear();
    block.width = 0;
    block.height = 0;
    ThreadLayouts& layouts = threadLayouts();
    if (text.empty() || layouts.main == nullptr) {
        return;
    }
    const bool fragments = (request.options & VLXStringDrawingUsesLineFragmentOrigin) != 0;
    const double leading =
        (request.options & VLXStringDrawingUsesFontLeading) != 0 ? request.font.leading() : 0;
    const double spacing =
        std::isfinite(request.style.lineSpacing) ? std::max(0.0, request.style.lineSpacing) : 0;

    // Breaking lines at a width costs a good part of the layout. Text that evidently fits (a
    // short label in a wide box) is laid out unbroken first; only if that turns out wider than
    // the width is it laid out again. Unbroken lines that fit are exactly the lines the width
    // would give: nothing wraps, is truncated or justified.
    const bool tryUnbroken = request.width <= kLargestPangoWidth &&
                             0.75 * double(text.size()) * request.font.pointSize() <= request.width;
    configure(layouts.main, request, text, true, !tryUnbroken);
    if (tryUnbroken) {
        int unbrokenWidth = 0;
        pango_layout_get_size(layouts.main, &unbrokenWidth, nullptr);
        if (unbrokenWidth > pango_units_from_double(request.width)) {
            configure(layouts.main, request, text, true);
        }
    }
    GSList* lines = pango_layout_get_lines_readonly(layouts.main);
    double top = 0;
    GSList* item = lines;
    for (; item != nullptr; item = item->next) {
        PlacedLine placed;
        placed.line = static_cast<PangoLayoutLine*>(item->data);
        measureLine(placed, request.font, leading);
        if (!block.lines.empty() && top + placed.height > request.height + kFitTolerance) {
            break;
        }
        placed.top = top;
        top += placed.height + spacing;
        block.lines.push_back(placed);
    }
    if (item != nullptr && fragments &&
        (request.options & VLXStringDrawingTruncatesLastVisibleLine) != 0) {
        truncateLastLine(layouts, request, text, block, item, leading);
    }

    for (const PlacedLine& line : block.lines) {
        block.width = std::max(block.width, line.width);
    }
    const double alignWidth = request.width <= kLargestPangoWidth ? request.width : block.width;
    for (PlacedLine& line : block.lines) {
        line.baseline = line.top + line.ascent;
        line.x = alignmentFactor(request.style.alignment, line.line) * (alignWidth - line.width);
    }
    const PlacedLine& last = block.lines.back();
    block.height = last.top + last.height;
}

LayoutRequest makeRequest(const VLXFont& font, const VLXTextAttributes& attributes, VLXSize size,
                          unsigned options) {
    LayoutRequest request{font, attributes.resolvedParagraphStyle()};
    request.options = options;
    if ((options & VLXStringDrawingUsesLineFragmentOrigin) != 0) {
        request.width = limitOf(size.width);
        request.height = limitOf(size.height);
    }
    return request;
}

VLXRect blockRect(const TextBlock& block, unsigned options) {
    if (block.lines.empty()) {
        return VLXRectZero;
    }
    const double originY =
        (options & VLXStringDrawingUsesLineFragmentOrigin) != 0 ? 0 : -block.lines.front().baseline;
    if ((options & VLXStringDrawingUsesDeviceMetrics) == 0) {
        return VLXRectMake(0, originY, block.width, block.height);
    }
    VLXRect ink = VLXRectNull;
    for (const PlacedLine& line : block.lines) {
        if (line.ink.width <= 0 || line.ink.height <= 0) {
            continue;
        }
        ink = VLXRectUnion(ink, VLXRectMake(line.x + fromPango(line.ink.x - line.logical.x),
                                            line.baseline + fromPango(line.ink.y) + originY,
                                            fromPango(line.ink.width), fromPango(line.ink.height)));
    }
    return ink.isNull() ? VLXRectMake(0, originY, 0, 0) : ink;
}

// Recent measurements per thread, two-way set-associative: a label measured again costs a hash
// and a compare, and two labels sharing a set do not evict each other. Entries keep their font
// alive so a description address is never reused under them.
struct CachedMeasurement {
    std::optional<VLXFont> font;
    std::string text;
    double width = 0;
    double height = 0;
    unsigned options = 0;
    VLXParagraphStyle style;
    VLXRect result;
};
struct CacheSet {
    std::array<CachedMeasurement, 2> ways;
    std::size_t lastUsed = 0;
};
constexpr std::size_t kCacheSets = 512;
constexpr std::size_t kLargestCachedText = 256;

std::size_t measurementHash(std::string_view text, const VLXFont& font,
                            const LayoutRequest& request) {
    std::size_t hash = std::hash<std::string_view>{}(text);
    auto mix = [&hash](std::size_t value) {
        hash ^= value + 0x9e3779b97f4a7c15ull + (hash << 6) + (hash >> 2);
    };
    mix(std::hash<const void*>{}(font.pangoFontDescription()));
    mix(std::hash<double>{}(request.width));
    mix(std::hash<double>{}(request.height));
    mix(request.options);
    mix(static_cast<std::size_t>(request.style.lineBreakMode) * 8 +
        static_cast<std::size_t>(request.style.alignment));
    mix(std::hash<double>{}(request.style.lineSpacing));
    return hash;
}

VLXRect measure(std::string_view rawText, VLXSize size, unsigned options,
                const VLXTextAttributes& attributes) {
    std::string storage;
    const std::string_view text = validText(rawText, storage);
    if (text.empty()) {
        return VLXRectZero;
    }
    const VLXFont font = attributes.resolvedFont();
    const LayoutRequest request = makeRequest(font, attributes, size, options);

    CachedMeasurement* slot = nullptr;
    if (text.size() <= kLargestCachedText) {
        thread_local std::array<CacheSet, kCacheSets> cache;
        CacheSet& set = cache[measurementHash(text, font, request) % kCacheSets];
        for (std::size_t way = 0; way < set.ways.size(); ++way) {
            const CachedMeasurement& entry = set.ways[way];
            if (entry.font && entry.font->pangoFontDescription() == font.pangoFontDescription() &&
                entry.text == text && entry.width == request.width &&
                entry.height == request.height && entry.options == request.options &&
                entry.style == request.style) {
                set.lastUsed = way;
                return entry.result;
            }
        }
        set.lastUsed = 1 - set.lastUsed;
        slot = &set.ways[set.lastUsed];
    }
    thread_local TextBlock block;
    layOut(text, request, block);
    const VLXRect result = blockRect(block, options);
    if (slot != nullptr) {
        slot->font = font;
        slot->text.assign(text);
        slot->width = request.width;
        slot->height = request.height;
        slot->options = request.options;
        slot->style = request.style;
        slot->result = result;
    }
    return result;
}

double unitComponent(double value) {
    return std::isfinite(value) ? std::clamp(value, 0.0, 1.0) : 0.0;
}

// Glyphs taller than this many device pixels are not drawn: they cover any surface a context can
// have, and cairo 1.16 leaks the scaled fonts it fails to make at such sizes.
constexpr double kMaximumDeviceFontSize = 32768;

// The font's size in device pixels under cairo's current matrix (the larger of both axes).
double deviceFontSize(cairo_t* cr, double pointSize) {
    double xx = pointSize, xy = 0, yx = 0, yy = pointSize;
    cairo_user_to_device_distance(cr, &xx, &xy);
    cairo_user_to_device_distance(cr, &yx, &yy);
    return std::max(std::hypot(xx, xy), std::hypot(yx, yy));
}

void drawText(VLXGraphicsContext& context, std::string_view rawText, const VLXRect& rect,
              unsigned options, const VLXTextAttributes& attributes) {
    if (!context.isValid() || !std::isfinite(rect.origin.x) || !std::isfinite(rect.origin.y)) {
        return;
    }
    std::string storage;
    const std::string_view text = validText(rawText, storage);
    if (text.empty()) {
        return;
    }
    const VLXFont font = attributes.resolvedFont();
    const LayoutRequest request = makeRequest(font, attributes, rect.size, options);
    thread_local TextBlock block;
    layOut(text, request, block);
    if (block.lines.empty()) {
        return;
    }

    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;
    if (attributes.foregroundColor &&
        !attributes.foregroundColor->getRed(&red, &green, &blue, &alpha)) {
        red = green = blue = 0;
        alpha = 1;
    }
    const bool fragments = (options & VLXStringDrawingUsesLineFragmentOrigin) != 0;
    const double originX = rect.origin.x;
    const double originY = fragments ? rect.origin.y : rect.origin.y - block.lines.front().baseline;
    // The clipping mode cuts lines off at the rectangle's left and right edges; lines that do
    // not fit the height are already left out.
    const bool clips = request.style.lineBreakMode == VLXLineBreakMode::ByClipping && fragments &&
                       request.width <= kLargestPangoWidth;
    constexpr double kClipMargin = 1e4;

    auto paint = [&](cairo_t* cr) {
        if (!(deviceFontSize(cr, font.pointSize()) <= kMaximumDeviceFontSize)) {
            return;
        }
        cairo_save(cr);
        if (clips) {
            cairo_rectangle(cr, rect.origin.x, originY - kClipMargin, request.width,
                            block.height + 2 * kClipMargin);
            cairo_clip(cr);
        }
        cairo_set_source_rgba(cr, unitComponent(red), unitComponent(green), unitComponent(blue),
                              unitComponent(alpha));
        for (const PlacedLine& line : block.lines) {
            cairo_move_to(cr, originX + line.x - fromPango(line.logical.x),
                          originY + line.baseline);
            pango_cairo_show_layout_line(cr, line.line);
        }
        cairo_restore(cr);
    };

    if (attributes.shadow) {
        const VLXShadow& shadow = *attributes.shadow;
        const double blur =
            std::isfinite(shadow.shadowBlurRadius) ? std::max(0.0, shadow.shadowBlurRadius) : 0.0;
        const VLXSize offset{
            std::isfinite(shadow.shadowOffset.width) ? shadow.shadowOffset.width : 0.0,
            std::isfinite(shadow.shadowOffset.height) ? shadow.shadowOffset.height : 0.0};
        context.saveGState();
        context.setShadow(offset, blur, shadow.shadowColor);
        context.drawWithEffects(paint);
        context.restoreGState();
    } else {
        context.drawWithEffects(paint);
    }
}

}  // namespace

VLXSize VLXStringSizeWithAttributes(std::string_view text, const VLXTextAttributes& attributes) {
    return measure(text, VLXSizeZero, 0, attributes).size;
}

VLXRect VLXStringBoundingRect(std::string_view text, VLXSize size, unsigned options,
                              const VLXTextAttributes& attributes) {
    return measure(text, size, options, attributes);
}

void VLXStringDrawAtPoint(std::string_view text, VLXPoint point,
                          const VLXTextAttributes& attributes) {
    if (VLXGraphicsContext* context = VLXGraphicsGetCurrentContext()) {
        VLXStringDrawAtPoint(*context, text, point, attributes);
    }
}

void VLXStringDrawAtPoint(VLXGraphicsContext& context, std::string_view text, VLXPoint point,
                          const VLXTextAttributes& attributes) {
    drawText(context, text, VLXRect{point, VLXSizeZero}, VLXStringDrawingUsesLineFragmentOrigin,
             attributes);
}

void VLXStringDrawWithRect(std::string_view text, const VLXRect& rect, unsigned options,
                           const VLXTextAttributes& attributes) {
    if (VLXGraphicsContext* context = VLXGraphicsGetCurrentContext()) {
        VLXStringDrawWithRect(*context, text, rect, options, attributes);
    }
}

void VLXStringDrawWithRect(VLXGraphicsContext& context, std::string_view text, const VLXRect& rect,
                           unsigned options, const VLXTextAttributes& attributes) {
    drawText(context, text, rect, options, attributes);
}

void VLXStringDrawInRect(std::string_view text, const VLXRect& rect,
                         const VLXTextAttributes& attributes) {
    VLXStringDrawWithRect(text, rect, VLXStringDrawingUsesLineFragmentOrigin, attributes);
}

void VLXStringDrawInRect(VLXGraphicsContext& context, std::string_view text, const VLXRect& rect,
                         const VLXTextAttributes& attributes) {
    drawText(context, text, rect, VLXStringDrawingUsesLineFragmentOrigin, attributes);
}
