// Gallery page for text: wrapped paragraphs inside their measured rectangles at several widths
// and reader text sizes, alignment, truncation, a shadow, and the metrics of the fonts in use.
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include <VelmarCoreUI/Platform/Graphics/VLXFont.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXStringDrawing.h>
#include <VelmarCoreUI/Utilities/VLXFontUtilities.h>
#include "GalleryPage.h"

namespace {

const char* const kParagraph =
    "Measured text: every rectangle below is the size the layout reported, drawn before the "
    "text, so wrapped lines should sit exactly inside it.";

std::string number(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", value);
    return text;
}

void fillBackground(VLXGraphicsContext& context) {
    context.setFillColor(VLXColor::whiteColor());
    context.fillRect(VLXRectMake(0, 0, context.size().width, context.size().height));
}

VLXTextAttributes attributesWith(const VLXFont& font,
                                 std::optional<VLXParagraphStyle> style = std::nullopt,
                                 VLXColor color = VLXColor::colorWithWhite(0.1, 1)) {
    VLXTextAttributes attributes;
    attributes.font = font;
    attributes.foregroundColor = color;
    attributes.paragraphStyle = style;
    return attributes;
}

void outline(VLXGraphicsContext& context, const VLXRect& rect, const VLXColor& color) {
    context.setStrokeColor(color);
    context.setLineWidth(0.5);
    context.strokeRect(rect);
}

// A paragraph at `origin`, wrapped to `width`, inside its measured rectangle (blue) and the
// width it was given (grey). Returns the measured size.
VLXSize measuredParagraph(VLXGraphicsContext& context, VLXPoint origin, double width,
                          const VLXFont& font) {
    const VLXSize needed = vlx_sizeNeededForString(font, std::string(kParagraph), width);
    const VLXRect exact = VLXStringBoundingRect(
        kParagraph, {width, 1e6}, VLXStringDrawingUsesLineFragmentOrigin, attributesWith(font));
    outline(context, VLXRectMake(origin.x, origin.y, width, needed.height),
            VLXColor::colorWithWhite(0.75, 1));
    outline(context, VLXRectOffset(exact, origin.x, origin.y),
            VLXColor::colorWithRed(0.1, 0.4, 0.9, 1));
    VLXStringDrawWithRect(context, kParagraph, VLXRectMake(origin.x, origin.y, width, 1e6),
                          VLXStringDrawingUsesLineFragmentOrigin, attributesWith(font));
    return needed;
}

std::string widthsFigure(const std::filesystem::path& directory) {
    auto context = VLXGraphicsContext::createBitmap({720, 175}, 2);
    if (!context) {
        return "<p>bitmap context unavailable</p>";
    }
    fillBackground(*context);
    const VLXFont font = VLXFont::systemFontOfSize(13);
    std::string sizes;
    double x = 20;
    for (double width : {120.0, 200.0, 320.0}) {
        const VLXSize needed = measuredParagraph(*context, {x, 20}, width, font);
        sizes += (sizes.empty() ? "" : ", ") + number(width) + " → " + number(needed.width) +
                 " × " + number(needed.height);
        x += width + 20;
    }
    return galleryFigure(directory, "text-widths.png", *context,
                         "Inter 13 pt wrapped to 120, 200 and 320 points. Grey: the width given "
                         "and the needed height rounded up; blue: the exact fractional bounding "
                         "rectangle. Needed sizes (width → w × h): " +
                             sizes + ".");
}

std::string contentSizesFigure(const std::filesystem::path& directory) {
    auto context = VLXGraphicsContext::createBitmap({560, 310}, 2);
    if (!context) {
        return "<p>bitmap context unavailable</p>";
    }
    fillBackground(*context);
    struct Step {
        VLXContentSizeCategory category;
        const char* name;
    };
    const Step steps[] = {{VLXContentSizeCategoryExtraSmall, "XS"},
                          {VLXContentSizeCategoryLarge, "L"},
                          {VLXContentSizeCategoryExtraExtraExtraLarge, "XXXL"},
                          {VLXContentSizeCategoryAccessibilityExtraExtraExtraLarge, "AXXXL"}};
    const double base = 13;
    double y = 16;
    std::string caption;
    for (const Step& step : steps) {
        const double size = base * vlx_fontScaleForContentSize(step.category, base);
        const VLXFont font = VLXFont::systemFontOfSize(size);
        const std::string label = std::string(step.name) + ": " + number(size) + " pt";
        VLXStringDrawAtPoint(*context, label, {20, y},
                             attributesWith(VLXFont::boldSystemFontOfSize(11), std::nullopt,
                                            VLXColor::colorWithRed(0.7, 0.2, 0.1, 1)));
        y += 16;
        const VLXSize needed = measuredParagraph(*context, {20, y}, 520, font);
        y += needed.height + 14;
        caption += (caption.empty() ? "" : ", ") + label;
    }
    return galleryFigure(directory, "text-content-sizes.png", *context,
                         "The same paragraph at 13 pt scaled for four reader text sizes (" +
                             caption + "), wrapped to 520 points.");
}

std::string alignmentFigure(const std::filesystem::path& directory) {
    auto context = VLXGraphicsContext::createBitmap({500, 200}, 2);
    if (!context) {
        return "<p>bitmap context unavailable</p>";
    }
    fillBackground(*context);
    const VLXFont font = VLXFont::systemFontOfSize(11);
    struct Case {
        VLXTextAlignment alignment;
        const char* name;
    };
    const Case cases[] = {{VLXTextAlignment::Left, "Left"},
                          {VLXTextAlignment::Center, "Center"},
                          {VLXTextAlignment::Right, "Right"},
                          {VLXTextAlignment::Justified, "Justified"}};
    for (int i = 0; i < 4; ++i) {
        VLXParagraphStyle style;
        style.alignment = cases[i].alignment;
        const VLXRect rect = VLXRectMake(20 + (i % 2) * 240, 12 + (i / 2) * 95, 220, 80);
        outline(*context, rect, VLXColor::colorWithWhite(0.75, 1));
        VLXStringDrawInRect(*context, std::string(cases[i].name) + ". " + kParagraph, rect,
                            attributesWith(font, style));
    }
    return galleryFigure(directory, "text-alignment.png", *context,
                         "Left, centred, right and justified paragraphs in 220 × 80 point boxes "
                         "(grey). Justified lines fill the width except the last of the "
                         "paragraph; lines that do not fit the height are left out.");
}

std::string truncationFigure(const std::filesystem::path& directory) {
    auto context = VLXGraphicsContext::createBitmap({460, 190}, 2);
    if (!context) {
        return "<p>bitmap context unavailable</p>";
    }
    fillBackground(*context);
    const VLXFont font = VLXFont::systemFontOfSize(13);
    const std::string line = "A single line far too long for the box it is drawn in";
    struct Case {
        VLXLineBreakMode mode;
        const char* name;
    };
    const Case cases[] = {{VLXLineBreakMode::ByTruncatingHead, "head"},
                          {VLXLineBreakMode::ByTruncatingMiddle, "middle"},
                          {VLXLineBreakMode::ByTruncatingTail, "tail"},
                          {VLXLineBreakMode::ByClipping, "clipping"}};
    double y = 14;
    for (const Case& c : cases) {
        VLXParagraphStyle style;
        style.lineBreakMode = c.mode;
        const VLXRect rect = VLXRectMake(90, y, 200, font.lineHeight());
        outline(*context, rect, VLXColor::colorWithWhite(0.75, 1));
        VLXStringDrawInRect(*context, line, rect, attributesWith(font, style));
        VLXStringDrawAtPoint(*context, c.name, {20, y},
                             attributesWith(font, std::nullopt, VLXColor::grayColor()));
        y += 28;
    }
    // A wrapped paragraph cut to three lines, with and without the ellipsis.
    const double height = 3 * font.lineHeight() + 4;
    for (int i = 0; i < 2; ++i) {
        const VLXRect rect = VLXRectMake(20 + i * 220, y + 6, 200, height);
        outline(*context, rect, VLXColor::colorWithWhite(0.75, 1));
        const unsigned options = VLXStringDrawingUsesLineFragmentOrigin |
                                 (i == 1 ? unsigned(VLXStringDrawingTruncatesLastVisibleLine) : 0u);
        VLXStringDrawWithRect(*context, kParagraph, rect, options, attributesWith(font));
    }
    return galleryFigure(directory, "text-truncation.png", *context,
                         "One paragraph per line, truncated at the head, middle and tail, and "
                         "clipped, in 200-point boxes. Below: a paragraph in a box three lines "
                         "high, without and with truncation of the last visible line.");
}

std::string shadowFigure(const std::filesystem::path& directory) {
    auto context = VLXGraphicsContext::createBitmap({460, 110}, 2);
    if (!context) {
        return "<p>bitmap context unavailable</p>";
    }
    fillBackground(*context);
    VLXTextAttributes soft = attributesWith(VLXFont::boldSystemFontOfSize(34), std::nullopt,
                                            VLXColor::colorWithRed(0.95, 0.55, 0.1, 1));
    soft.shadow = VLXShadow{{3, 4}, 4, VLXColor::colorWithWhite(0, 0.5)};
    VLXStringDrawAtPoint(*context, "Soft shadow", {20, 14}, soft);
    VLXTextAttributes platform = attributesWith(VLXFont::systemFontOfSize(20));
    platform.shadow = VLXShadow{};
    VLXStringDrawAtPoint(*context, "Default shadow: 3 points up, no blur", {20, 70}, platform);
    return galleryFigure(directory, "text-shadow.png", *context,
                         "Bold 34 pt with a shadow offset (3, 4) and blur 4 in half-transparent "
                         "black; below, the default shadow (offset (0, −3), black at one third).");
}

std::string vectorFigure(const std::filesystem::path& directory) {
    auto context = VLXGraphicsContext::createSVG({460, 70});
    if (!context) {
        return "<p>SVG context unavailable</p>";
    }
    fillBackground(*context);
    VLXParagraphStyle centred;
    centred.alignment = VLXTextAlignment::Center;
    VLXStringDrawInRect(
        *context,
        "The same text code drawing into an SVG document: glyph outlines stay sharp at any zoom.",
        VLXRectMake(20, 12, 420, 50), attributesWith(VLXFont::systemFontOfSize(15), centred));
    return galleryFigure(directory, "text-vector.svg", *context, "SVG, centred, 15 pt.");
}

std::string metricsTable() {
    std::vector<std::pair<std::string, VLXFont>> fonts = {
        {"systemFontOfSize(12)", VLXFont::systemFontOfSize(12)},
        {"boldSystemFontOfSize(12)", VLXFont::boldSystemFontOfSize(12)},
        {"systemFontOfSize(17)", VLXFont::systemFontOfSize(17)},
    };
    if (auto dejaVu = VLXFont::fontWithName("DejaVu Sans", 14)) {
        fonts.emplace_back("fontWithName(\"DejaVu Sans\", 14)", *dejaVu);
    }
    if (auto light = VLXFont::fontWithName("Inter-Light", 20)) {
        fonts.emplace_back("fontWithName(\"Inter-Light\", 20)", *light);
    }
    std::string html =
        "<table><tr><th>Font</th><th>family</th><th>name</th><th>size</th><th>ascender</th>"
        "<th>descender</th><th>leading</th><th>line height</th><th>cap height</th>"
        "<th>x-height</th></tr>\n";
    for (const auto& [call, font] : fonts) {
        html += "<tr><td><code>" + galleryEscapeHTML(call) + "</code></td><td>" +
                galleryEscapeHTML(font.familyName()) + "</td><td>" +
                galleryEscapeHTML(font.fontName()) + "</td><td>" + number(font.pointSize()) +
                "</td><td>" + number(font.ascender()) + "</td><td>" + number(font.descender()) +
                "</td><td>" + number(font.leading()) + "</td><td>" + number(font.lineHeight()) +
                "</td><td>" + number(font.capHeight()) + "</td><td>" + number(font.xHeight()) +
                "</td></tr>\n";
    }
    const bool missing = !VLXFont::fontWithName("No Such Family", 12).has_value();
    html += "</table>\n<p><code>fontWithName(\"No Such Family\", 12)</code> is " +
            std::string(missing ? "nil" : "not nil (unexpected)") + ".</p>\n";
    return html;
}

}  // namespace

GalleryPage makeTextPage(const std::filesystem::path& outputDirectory) {
    std::string body;
    body += "<h2>Wrapping at several widths</h2>\n" + widthsFigure(outputDirectory);
    body += "<h2>Reader text sizes</h2>\n" + contentSizesFigure(outputDirectory);
    body += "<h2>Alignment</h2>\n" + alignmentFigure(outputDirectory);
    body += "<h2>Truncation</h2>\n" + truncationFigure(outputDirectory);
    body += "<h2>Shadow</h2>\n" + shadowFigure(outputDirectory);
    body += "<h2>Vector output</h2>\n" + vectorFigure(outputDirectory);
    body +=
        "<h2>Font metrics</h2>\n<p>Points at 72 dpi, unhinted; the descender is negative "
        "(measured upward from the baseline).</p>\n" +
        metricsTable();
    return GalleryPage{"text", "Text measurement",
                       "Fonts, wrapping, alignment, truncation and shadows on Pango.", body};
}
