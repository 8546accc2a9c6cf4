#include <VelmarCoreUI/Platform/Views/VLXLabel.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string_view>

#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXStringDrawing.h>

namespace {

constexpr double kDefaultFontSize = 17;
// Measuring draws every glyph of the text; beyond this many characters a size counts only the
// first ones (nothing that long can be shown on one screen anyway).
constexpr std::size_t kMaxMeasuredCharacters = 5000;
// No glyph that shows is narrower than this fraction of the font size, so a line of width w
// shows at most w / (fraction × size) characters.
constexpr double kNarrowestGlyph = 0.2;
constexpr unsigned kDrawingOptions =
    VLXStringDrawingUsesLineFragmentOrigin | VLXStringDrawingTruncatesLastVisibleLine;

bool isFinitePositive(double v) {
    return std::isfinite(v) && v > 0;
}

// Byte offset of the start of the `count`-th code point of `text` (its size when shorter).
std::size_t byteOffsetOfCharacter(std::string_view text, std::size_t count) {
    std::size_t seen = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80) {
            if (seen == count) {
                return i;
            }
            ++seen;
        }
    }
    return text.size();
}

// Byte offset where the last `count` code points of `text` begin (0 when it is shorter).
std::size_t byteOffsetOfLastCharacters(std::string_view text, std::size_t count) {
    std::size_t seen = 0;
    for (std::size_t i = text.size(); i-- > 0;) {
        if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80) {
            if (++seen == count) {
                return i;
            }
        }
    }
    return 0;
}

// The part of `text` that `budget` characters can show for the break mode: the start for
// the tail and wrapping modes, the end for head truncation, both ends for middle truncation
// (their seam falls inside the "…").
std::string boundedText(std::string_view text, std::size_t budget, VLXLineBreakMode mode) {
    if (text.size() <= budget) {
        return std::string(text);  // fewer bytes than the budget: fewer characters too
    }
    const std::size_t head = byteOffsetOfCharacter(text, budget);
    if (head == text.size()) {
        return std::string(text);
    }
    switch (mode) {
        case VLXLineBreakMode::ByTruncatingHead:
            return std::string(text.substr(byteOffsetOfLastCharacters(text, budget)));
        case VLXLineBreakMode::ByTruncatingMiddle: {
            std::string result(text.substr(0, byteOffsetOfCharacter(text, budget / 2)));
            result += text.substr(byteOffsetOfLastCharacters(text, budget - budget / 2));
            return result;
        }
        default:
            return std::string(text.substr(0, head));
    }
}

// The mode the text engine lays the label out with. Several lines always wrap (the truncating
// modes then cut the last visible line); one line never does (a wrapping mode shows its first
// line, clipped).
VLXLineBreakMode layoutMode(VLXLineBreakMode mode, VLXInteger numberOfLines) {
    const bool wraps =
        mode == VLXLineBreakMode::ByWordWrapping || mode == VLXLineBreakMode::ByCharWrapping;
    if (numberOfLines == 1) {
        return wraps ? VLXLineBreakMode::ByClipping : mode;
    }
    return wraps ? mode : VLXLineBreakMode::ByWordWrapping;
}

double sanitizedScaleFactor(double factor) {
    return std::isfinite(factor) && factor > 0 && factor <= 1 ? factor : 0;
}

}  // namespace

struct VLXLabel::TextLayout {
    VLXSize boundsSize{};
    std::string text;  // what can be seen of the label's text
    VLXTextAttributes attributes;
    VLXRect rect{};  // where the lines go, in bounds coordinates
};

VLXLabel::VLXLabel()
    : m_font(VLXFont::systemFontOfSize(kDefaultFontSize)), m_textColor(VLXColor::blackColor()) {}

VLXLabel::~VLXLabel() = default;

std::shared_ptr<VLXLabel> VLXLabel::create() {
    return makeWithFrame<VLXLabel>(VLXRect{});
}

std::shared_ptr<VLXLabel> VLXLabel::createWithFrame(const VLXRect& frame) {
    return makeWithFrame<VLXLabel>(frame);
}

void VLXLabel::initWithFrame(const VLXRect& frame) {
    VLXView::initWithFrame(frame);
    setUserInteractionEnabled(false);
    setBackgroundColor(VLXColor::clearColor());
}

void VLXLabel::invalidateText() {
    m_layout.reset();
    setNeedsDisplay();
}

void VLXLabel::setText(std::optional<std::string> text) {
    if (text == m_text) {
        return;
    }
    m_text = std::move(text);
    invalidateText();
}

void VLXLabel::setFont(std::optional<VLXFont> font) {
    VLXFont resolved = font ? *font : VLXFont::systemFontOfSize(kDefaultFontSize);
    if (resolved == m_font) {
        return;
    }
    m_font = std::move(resolved);
    invalidateText();
}

void VLXLabel::setTextColor(std::optional<VLXColor> color) {
    VLXColor resolved = color ? *color : VLXColor::blackColor();
    if (resolved == m_textColor) {
        return;
    }
    m_textColor = resolved;
    invalidateText();
}

void VLXLabel::setTextAlignment(VLXTextAlignment alignment) {
    if (alignment == m_textAlignment) {
        return;
    }
    m_textAlignment = alignment;
    invalidateText();
}

void VLXLabel::setShadowColor(std::optional<VLXColor> color) {
    if (color == m_shadowColor) {
        return;
    }
    m_shadowColor = color;
    invalidateText();
}

void VLXLabel::setShadowOffset(VLXSize offset) {
    offset.width = std::isfinite(offset.width) ? offset.width : 0;
    offset.height = std::isfinite(offset.height) ? offset.height : 0;
    if (offset.width == m_shadowOffset.width && offset.height == m_shadowOffset.height) {
        return;
    }
    m_shadowOffset = offset;
    invalidateText();
}

void VLXLabel::setAdjustsFontSizeToFitWidth(bool adjusts) {
    if (adjusts == m_adjustsFontSizeToFitWidth) {
        return;
    }
    m_adjustsFontSizeToFitWidth = adjusts;
    invalidateText();
}

void VLXLabel::setMinimumScaleFactor(double factor) {
    if (factor == m_minimumScaleFactor ||
        (std::isnan(factor) && std::isnan(m_minimumScaleFactor))) {
        return;
    }
    m_minimumScaleFactor = factor;
    invalidateText();
}

void VLXLabel::setNumberOfLines(VLXInteger lines) {
    lines = std::max<VLXInteger>(lines, 0);
    if (lines == m_numberOfLines) {
        return;
    }
    m_numberOfLines = lines;
    invalidateText();
}

void VLXLabel::setLineBreakMode(VLXLineBreakMode mode) {
    if (mode == m_lineBreakMode) {
        return;
    }
    m_lineBreakMode = mode;
    invalidateText();
}

VLXSize VLXLabel::sizeThatFits(VLXSize size) const {
    if (!m_text || m_text->empty()) {
        return {0, 0};
    }
    const std::string text =
        boundedText(*m_text, kMaxMeasuredCharacters, layoutMode(m_lineBreakMode, m_numberOfLines));
    VLXTextAttributes attributes;
    attributes.font = m_font;
    VLXParagraphStyle style;
    style.alignment = m_textAlignment;
    style.lineBreakMode = layoutMode(m_lineBreakMode, m_numberOfLines);
    attributes.paragraphStyle = style;
    double width = 0;
    double height = 0;
    if (m_numberOfLines != 1) {
        const double limit = m_numberOfLines > 0
                                 ? m_font.lineHeight() * static_cast<double>(std::min<VLXInteger>(
                                                             m_numberOfLines, 1 << 20)) +
                                       0.5
                                 : 0;
        const VLXRect rect =
            VLXStringBoundingRect(text, {isFinitePositive(size.width) ? size.width : 0, limit},
                                  kDrawingOptions, attributes);
        width = rect.size.width;
        height = rect.size.height;
    } else {
        // One line: the first paragraph only, never wrapped.
        const std::size_t end = text.find_first_of("\r\n");
        const VLXRect rect = VLXStringBoundingRect(std::string_view(text).substr(0, end), {0, 0},
                                                   kDrawingOptions, attributes);
        width = rect.size.width;
        height = std::max(rect.size.height, m_font.ascender() - m_font.descender());
    }
    return {std::ceil(width * 1024) / 1024, std::ceil(height * 1024) / 1024};
}

const VLXLabel::TextLayout& VLXLabel::textLayout(VLXSize boundsSize) {
    if (m_layout && m_layout->boundsSize.width == boundsSize.width &&
        m_layout->boundsSize.height == boundsSize.height) {
        return *m_layout;
    }
    ++m_textLayoutCount;
    auto layout = std::make_unique<TextLayout>();
    layout->boundsSize = boundsSize;

    VLXFont font = m_font;
    const double lineHeight = font.ascender() - font.descender();
    const double width = boundsSize.width;
    const double height = boundsSize.height;
    // Lines that can show: those the label allows, within the bounds (the first always shows).
    double visibleLines = std::max(1.0, std::floor(height / std::max(lineHeight, 0.01)) + 1);
    if (m_numberOfLines > 0) {
        visibleLines = std::min(visibleLines, static_cast<double>(m_numberOfLines));
    }
    const double perLine = std::ceil(width / (kNarrowestGlyph * font.pointSize())) + 8;
    const double budget = std::min(visibleLines * perLine, 4.0 * kMaxMeasuredCharacters);
    layout->text = boundedText(*m_text, static_cast<std::size_t>(budget),
                               layoutMode(m_lineBreakMode, m_numberOfLines));

    VLXParagraphStyle style;
    style.alignment = m_textAlignment;
    style.lineBreakMode = layoutMode(m_lineBreakMode, m_numberOfLines);
    VLXTextAttributes attributes;
    attributes.font = font;
    attributes.foregroundColor = m_textColor;
    attributes.paragraphStyle = style;
    if (m_shadowColor) {
        VLXShadow shadow;
        shadow.shadowOffset = m_shadowOffset;
        shadow.shadowBlurRadius = 0;
        shadow.shadowColor = m_shadowColor;
        attributes.shadow = shadow;
    }

    if (m_adjustsFontSizeToFitWidth && m_numberOfLines == 1 && isFinitePositive(width)) {
        // Shrink in proportion to the overflow; widths grow nearly linearly with the size, so a
        // second step catches what rounding of the metrics left over.
        const double minimumSize = sanitizedScaleFactor(m_minimumScaleFactor) * m_font.pointSize();
        for (int step = 0; step < 2; ++step) {
            const double textWidth = VLXStringSizeWithAttributes(layout->text, attributes).width;
            if (!(textWidth > width)) {
                break;
            }
            const double size = std::max(minimumSize, font.pointSize() * width / textWidth * 0.999);
            if (!(size < font.pointSize()) || !(size > 0)) {
                break;
            }
            font = font.fontWithSize(size);
            attributes.font = font;
        }
    }

    const double fontLineHeight = font.ascender() - font.descender();
    const double limit = m_numberOfLines > 0 ? std::min(fontLineHeight * visibleLines + 0.5,
                                                        std::max(height, fontLineHeight + 0.5))
                                             : std::max(height, fontLineHeight + 0.5);
    const VLXRect measured =
        VLXStringBoundingRect(layout->text, {width, limit}, kDrawingOptions, attributes);
    const double textHeight = measured.size.height;
    layout->rect = {{0, (height - textHeight) / 2}, {width, textHeight + 0.01}};
    layout->attributes = std::move(attributes);
    m_layout = std::move(layout);
    return *m_layout;
}

void VLXLabel::drawRect(const VLXRect& rect, VLXGraphicsContext& context) {
    (void)rect;
    if (!m_text || m_text->empty()) {
        return;
    }
    const VLXSize size = bounds().size;
    if (!isFinitePositive(size.width) || !isFinitePositive(size.height)) {
        return;
    }
    const TextLayout& layout = textLayout(size);
    VLXStringDrawWithRect(context, layout.text, layout.rect, kDrawingOptions, layout.attributes);
}

std::string VLXLabel::description() const {
    std::string result = VLXView::description();
    if (!result.empty() && result.back() == '>') {
        result.pop_back();
        result += "; text = ";
        if (m_text) {
            std::string shown = m_text->substr(0, byteOffsetOfCharacter(*m_text, 40));
            result += "'" + shown + (shown.size() < m_text->size() ? "…'" : "'");
        } else {
            result += "(null)";
        }
        result += ">";
    }
    return result;
}
