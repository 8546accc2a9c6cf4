// Gallery page for the colour utilities and colour ramps: every swatch, strip and legend is
// drawn from values the library computed, so the page doubles as a visual check of parsing,
// blending and ramp generation.
#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include <VelmarCoreUI/Color/VLXColorRamp.h>
#include <VelmarCoreUI/Color/VLXColorUtilities.h>
#include <VelmarCoreUI/Platform/Foundation/VLXStringFormat.h>
#include "GalleryPage.h"

namespace {

// CSS channel 0…255 from a 0…1 component; CSS clamps anyway, but NaN must not reach the text.
double cssChannel(double component) {
    if (std::isnan(component)) {
        return 0;
    }
    return std::round(std::fmin(std::fmax(component, 0.0), 1.0) * 255.0);
}

std::string cssColor(const VLXColor& color) {
    double alpha = vlx_alpha(color);
    alpha = std::isnan(alpha) ? 0.0 : std::fmin(std::fmax(alpha, 0.0), 1.0);
    return VLXStringWithFormat("rgba(%.0f, %.0f, %.0f, %.3f)", cssChannel(vlx_red(color)),
                               cssChannel(vlx_green(color)), cssChannel(vlx_blue(color)), alpha);
}

std::string hexText(const std::optional<VLXColor>& color) {
    const std::optional<std::string> hex =
        color ? vlx_hexValueWithAlpha(*color, true) : std::nullopt;
    return hex ? "#" + *hex : "nil";
}

// A chip over the checkerboard so that alpha shows.
std::string chip(const std::optional<VLXColor>& color, const std::string& extraStyle = "") {
    if (!color) {
        return "<div class=\"chip\" style=\"background:#eee;display:flex;align-items:center;"
               "justify-content:center;color:#999\">nil</div>";
    }
    return "<div class=\"checker\"><div class=\"chip\" style=\"background:" + cssColor(*color) +
           ";" + extraStyle + "\"></div></div>";
}

std::string swatch(const std::string& input, const std::string& parser,
                   const std::optional<VLXColor>& color) {
    std::string html = "<div class=\"swatch\">" + chip(color) + "<div class=\"text\">";
    html += "<b>" + galleryEscapeHTML(parser) + "</b>(\"" + galleryEscapeHTML(input) + "\")<br>";
    html += "→ " + galleryEscapeHTML(hexText(color));
    if (color) {
        html += "<br>" + galleryEscapeHTML(color->description());
    }
    return html + "</div></div>\n";
}

std::string parsingSection() {
    struct Sample {
        const char* parser;
        const char* input;
    };
    const std::vector<Sample> samples = {
        {"hex", "#ff8800"},
        {"hex", "#0af"},
        {"hex", "0x33cc99"},
        {"hex", "#12ab9c80"},
        {"hex", "0Xffffff"},
        {"hex", "#3z9"},
        {"rgb", "rgba(255, 128, 0, 0.5)"},
        {"rgb", "rgb(30,144,255)"},
        {"rgb", "200, 60, 90"},
        {"rgb", "rgba(0, 0, 0, 0.1)"},
        {"hsl", "hsla(120, 50%, 40%, 1)"},
        {"hsl", "hsl(170, 100, 0.45)"},
        {"hex", "#ffff"},
        {"hex", ""},
        {"rgb", "rgba(1,2)"},
        {"hsl", "hsla(10)"},
    };
    std::string html =
        "<h2>Parsing</h2>\n<p>Each string parsed by the library; the caption shows the colour "
        "written back as hex with alpha, and its model and components. Malformed strings give "
        "nil.</p>\n<div class=\"swatches\">\n";
    for (const auto& sample : samples) {
        const std::string parser = sample.parser;
        std::optional<VLXColor> color;
        std::string function;
        if (parser == "hex") {
            color = vlx_colorWithHex(sample.input);
            function = "vlx_colorWithHex";
        } else if (parser == "rgb") {
            color = vlx_colorWithRGB(sample.input);
            function = "vlx_colorWithRGB";
        } else {
            color = vlx_colorWithHSL(sample.input);
            function = "vlx_colorWithHSL";
        }
        html += swatch(sample.input, function, color);
    }
    return html + "</div>\n";
}

std::string interpolationSection() {
    struct Pair {
        const char* name;
        VLXColor from;
        VLXColor to;
    };
    const std::vector<Pair> pairs = {
        {"red → blue", VLXColor::redColor(), VLXColor::blueColor()},
        {"white → black", VLXColor::whiteColor(), VLXColor::blackColor()},
        {"clear → green", VLXColor::clearColor(), VLXColor::colorWithRed(0, 0.6, 0.3, 1)},
        {"grey (monochrome) → orange", VLXColor::grayColor(), VLXColor::orangeColor()},
        {"#1e3c72 → #f9d423", *vlx_colorWithHex("#1e3c72"), *vlx_colorWithHex("#f9d423")},
    };
    std::string html =
        "<h2>Interpolation</h2>\n<p>11 steps, positions 0, 0.1 … 1, linear in RGBA. Hover a cell "
        "for its hex.</p>\n";
    for (const auto& pair : pairs) {
        html += "<h3>" + galleryEscapeHTML(pair.name) + "</h3>\n<div class=\"strip checker\">";
        for (int step = 0; step <= 10; ++step) {
            const VLXColor color = vlx_interpolatedToColor(pair.from, pair.to, step / 10.0);
            html += "<div title=\"" + galleryEscapeHTML(hexText(color)) +
                    "\" style=\"background:" + cssColor(color) + "\"></div>";
        }
        html += "</div>\n";
    }
    return html;
}

std::string brightnessSection() {
    const std::vector<std::pair<std::string, VLXColor>> bases = {
        {"orange (RGB)", VLXColor::orangeColor()},
        {"#3a7bd5", *vlx_colorWithHex("#3a7bd5")},
        {"grey 0.5 (monochrome)", VLXColor::grayColor()},
        {"other model", VLXColor(VLXColorSpaceModel::Other, {0.2, 0.4, 0.6, 0, 1})},
    };
    const std::vector<double> factors = {0.4, 0.6, 0.8, 1.0, 1.2, 1.4, 1.6};
    std::string html =
        "<h2>Brightness and grey</h2>\n<p>vlx_adjustBrightness with factors 0.4 … 1.6, then "
        "vlx_grayscale of the base. The caption colour follows vlx_isLightColor.</p>\n"
        "<table><tr><th>base</th>";
    for (double factor : factors) {
        html += VLXStringWithFormat("<th>× %.1f</th>", factor);
    }
    html += "<th>grayscale</th></tr>\n";
    auto cell = [](const std::optional<VLXColor>& color) {
        if (!color) {
            return std::string("<td style=\"color:#999\">nil</td>");
        }
        const char* text = vlx_isLightColor(*color) ? "#000" : "#fff";
        return "<td style=\"background:" + cssColor(*color) + ";color:" + text +
               ";font-family:monospace\">" + galleryEscapeHTML(hexText(color)) + "</td>";
    };
    for (const auto& [name, base] : bases) {
        html += "<tr><td>" + galleryEscapeHTML(name) + "</td>";
        for (double factor : factors) {
            html += cell(vlx_adjustBrightness(base, factor));
        }
        html += cell(vlx_grayscale(base)) + "</tr>\n";
    }
    return html + "</table>\n";
}

std::string legend(VLXColorRamp& ramp) {
    std::string html = "<div class=\"legend\">";
    for (const auto& interval : ramp.intervals()) {
        const std::string value = VLXStringWithFormat("%g", interval->value());
        html += "<div class=\"cell\" title=\"" +
                galleryEscapeHTML(value + " " + hexText(interval->color())) + "\">" +
                chip(interval->color()) + "<div>" +
                (interval->label() ? galleryEscapeHTML(*interval->label()) : "&nbsp;") +
                "</div></div>";
    }
    return html + "</div>\n";
}

std::string intervalTable(VLXColorRamp& ramp) {
    std::string html = "<table><tr><th>value</th><th>label</th><th>colour</th></tr>\n";
    for (const auto& interval : ramp.intervals()) {
        html += VLXStringWithFormat("<tr><td>%.17g</td>", interval->value()) + "<td>" +
                galleryEscapeHTML(interval->label().value_or("nil")) + "</td><td>" +
                galleryEscapeHTML(hexText(interval->color())) + "</td></tr>\n";
    }
    return html + "</table>\n";
}

std::string rampSection() {
    std::string html = "<h2>Colour ramps</h2>\n";

    auto plain = VLXColorRamp::create();
    plain->addStopWithColor(*vlx_colorWithHex("#2c7bb6"), 0, 0);
    plain->addStopWithColor(*vlx_colorWithHex("#ffffbf"), 4, 10);
    plain->addStopWithColor(*vlx_colorWithHex("#d7191c"), 4, 20);
    html += VLXStringWithFormat("<h3>Plain: 0 → 10 → 20, 4 steps each (%lld intervals)</h3>\n",
                                static_cast<long long>(plain->totalIntervals()));
    html += legend(*plain);

    const char* colorRanges = "10:0.5,100:5,1000:50";
    const char* labelRanges = "10:2.5,100:~3,1000:250";
    auto ranged = VLXColorRamp::create();
    ranged->addStopWithColor(*vlx_colorWithHex("#081d58"), 0, 0);
    ranged->addStopWithColor(*vlx_colorWithHex("#41b6c4"), 9, 10);
    ranged->addStopWithColor(*vlx_colorWithHex("#ffffcc"), 8, 100);
    ranged->addStopWithColor(*vlx_colorWithHex("#e31a1c"), 8, 1000);
    ranged->setColorIntervalRanges(VLXColorRampIntervalRange::arrayOfRangesFromString(colorRanges));
    ranged->setLabelIntervalRanges(VLXColorRampIntervalRange::arrayOfRangesFromString(labelRanges));
    html += "<h3>With interval ranges: colour \"" + galleryEscapeHTML(colorRanges) +
            "\", label \"" + galleryEscapeHTML(labelRanges) + "\"</h3>\n";
    html +=
        "<p>Stops 0, 10, 100, 1000 with 9, 8 and 8 steps (spacing 1, 10, 100). Values snap to "
        "the colour range's interval; labels appear where the label range's interval divides "
        "the value. A \"~\" range counts intervals instead, but its text reads as interval 0 "
        "(the tilde is not a number), so it labels nothing; 0 lies below every parsed "
        "range.</p>\n";
    html += legend(*ranged);
    html += intervalTable(*ranged);
    return html;
}

}  // namespace

GalleryPage makeColorPage(const std::filesystem::path& /*outputDirectory*/) {
    GalleryPage page;
    page.id = "color";
    page.title = "Colour";
    page.summary = "hex / rgba / hsla parsing, interpolation, brightness, grey and colour ramps";
    page.bodyHTML = "<h1>Colour</h1>\n" + parsingSection() + interpolationSection() +
                    brightnessSection() + rampSection();
    return page;
}
