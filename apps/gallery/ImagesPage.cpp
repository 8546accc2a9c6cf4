// Gallery page for the image utilities: the icon catalogue at several sizes and tints, the
// four adjustments applied to a generated photo-like picture, and what the drawing cache holds
// afterwards. Every image is written as the library produced it.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <VelmarCoreUI/Color/VLXColorUtilities.h>
#include <VelmarCoreUI/Platform/Device/VLXScreen.h>
#include <VelmarCoreUI/Platform/Foundation/VLXNumerics.h>
#include <VelmarCoreUI/Platform/Foundation/VLXStringFormat.h>
#include <VelmarCoreUI/Platform/Graphics/VLXBezierPath.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>
#include <VelmarCoreUI/Utilities/VLXImageUtilities.h>
#include "GalleryPage.h"

namespace {

std::string formatNumber(double value) {
    return VLXStringWithFormat("%g", value);
}

std::string sizeText(VLXSize size) {
    return formatNumber(size.width) + " × " + formatNumber(size.height);
}

std::string colorName(const std::optional<VLXColor>& color) {
    if (!color) {
        return "nil";
    }
    return "#" + vlx_hexValueWithAlpha(*color, true).value_or("?");
}

std::string cssColor(const VLXColor& color) {
    auto channel = [](double c) {
        return std::isfinite(c) ? std::round(std::clamp(c, 0.0, 1.0) * 255.0) : 0.0;
    };
    const double alpha =
        std::isfinite(vlx_alpha(color)) ? std::clamp(vlx_alpha(color), 0.0, 1.0) : 0.0;
    return VLXStringWithFormat("rgba(%.0f, %.0f, %.0f, %.3f)", channel(vlx_red(color)),
                               channel(vlx_green(color)), channel(vlx_blue(color)), alpha);
}

// Writes the image as a PNG and returns an <img> over the checkerboard at its size in points.
std::string imageTag(const std::filesystem::path& directory, const std::string& fileName,
                     const std::shared_ptr<VLXImage>& image) {
    if (!image) {
        return "<span>nil</span>";
    }
    if (image->pixelWidth() == 0 || image->pixelHeight() == 0) {
        return "<span>empty image (" + sizeText(image->size()) + ")</span>";
    }
    if (!image->writePNG(directory / fileName)) {
        return "<span>" + galleryEscapeHTML(fileName) + " could not be written</span>";
    }
    const VLXSize size = image->size();
    return VLXStringWithFormat(
        "<div class=\"checker\" style=\"display:inline-block;line-height:0\"><img src=\"%s\" "
        "width=\"%g\" height=\"%g\" style=\"background:transparent;border:none\" alt=\"\"></div>",
        galleryEscapeHTML(fileName).c_str(), size.width, size.height);
}

std::string figure(const std::filesystem::path& directory, const std::string& fileName,
                   const std::shared_ptr<VLXImage>& image, const std::string& caption) {
    return "<figure>" + imageTag(directory, fileName, image) + "<figcaption>" +
           galleryEscapeHTML(caption) + "</figcaption></figure>\n";
}

// --- icons ---------------------------------------------------------------------------------------

struct IconRequest {
    VLXUInteger type;
    const char* how;  // "size", "width" or "height"
    double a;
    double b;
};

std::shared_ptr<VLXImage> requestIcon(const IconRequest& request,
                                      const std::optional<VLXColor>& color) {
    const std::string how = request.how;
    if (how == "width") {
        return vlx_iconWithTypeWidth(request.type, request.a, color);
    }
    if (how == "height") {
        return vlx_iconWithTypeHeight(request.type, request.a, color);
    }
    return vlx_iconWithType(request.type, VLXSizeMake(request.a, request.b), color);
}

std::string requestText(const IconRequest& request) {
    const std::string type = request.type == VLXIconTypePlay ? "play" : "stop";
    const std::string how = request.how;
    if (how == "size") {
        return type + " size " + formatNumber(request.a) + "×" + formatNumber(request.b);
    }
    return type + " " + how + " " + formatNumber(request.a);
}

const std::vector<IconRequest>& iconRequests() {
    static const std::vector<IconRequest> requests = {
        {VLXIconTypePlay, "size", 20, 30},  {VLXIconTypePlay, "width", 40, 0},
        {VLXIconTypePlay, "height", 15, 0}, {VLXIconTypeStop, "size", 30, 30},
        {VLXIconTypeStop, "width", 15, 0},  {VLXIconTypeStop, "height", 60, 0},
    };
    return requests;
}

const std::vector<std::optional<VLXColor>>& iconTints() {
    static const std::vector<std::optional<VLXColor>> tints = {
        std::nullopt,
        VLXColor::colorWithRed(0.86, 0.16, 0.16, 1),
        VLXColor::colorWithRed(0.12, 0.35, 0.9, 1),
        VLXColor::colorWithRed(0.1, 0.65, 0.3, 1),
        VLXColor::colorWithRed(0.86, 0.16, 0.16, 0.4),
    };
    return tints;
}

std::string iconsSection(const std::filesystem::path& directory) {
    std::string html =
        "<h2>Icons</h2>\n<p>Each cell asks the catalogue for an icon by size, by width or by "
        "height (the other side keeps the default proportions, rounded) and tints it with the "
        "row's colour; nil returns the cached black drawing itself. The last row's tint is 40 % "
        "opaque: source-atop mixes it with the black drawing and keeps the icon opaque.</p>\n"
        "<table><tr><th>tint</th>";
    for (const auto& request : iconRequests()) {
        html += "<th>" + galleryEscapeHTML(requestText(request)) + "</th>";
    }
    html += "</tr>\n";
    int row = 0;
    for (const auto& tint : iconTints()) {
        html += "<tr><td><code>" + galleryEscapeHTML(colorName(tint)) + "</code></td>";
        int column = 0;
        for (const auto& request : iconRequests()) {
            auto icon = requestIcon(request, tint);
            const std::string file = VLXStringWithFormat("images-icon-%d-%d.png", row, column);
            html += "<td style=\"text-align:center\">" + imageTag(directory, file, icon);
            if (icon) {
                html += "<br><small>" + galleryEscapeHTML(sizeText(icon->size())) + "</small>";
            }
            html += "</td>";
            ++column;
        }
        html += "</tr>\n";
        ++row;
    }
    return html + "</table>\n";
}

// --- the test picture ----------------------------------------------------------------------------

// A deterministic hash of a pixel position, 0…1.
double hashNoise(std::uint32_t x, std::uint32_t y, std::uint32_t seed) {
    std::uint32_t h = x * 374761393U + y * 668265263U + seed * 2246822519U;
    h = (h ^ (h >> 13)) * 1274126177U;
    h ^= h >> 16;
    return static_cast<double>(h & 0xFFFFU) / 65535.0;
}

VLXColor mix(const VLXColor& a, const VLXColor& b, double t) {
    return vlx_interpolatedToColor(a, b, t);
}

// A sunset: gradient sky with a few stars, a glowing sun, two ranges of hills, a lake with the
// sun's reflection, and fine grain so scaling and averaging have texture to work on.
std::shared_ptr<VLXImage> makeSunset() {
    const VLXSize size = VLXSizeMake(320, 200);
    const double scale = 2;
    auto context = VLXGraphicsContext::createBitmap(size, scale);
    if (!context) {
        return nullptr;
    }
    const VLXColor zenith = VLXColor::colorWithRed(0.09, 0.1, 0.3, 1);
    const VLXColor dusk = VLXColor::colorWithRed(0.62, 0.27, 0.45, 1);
    const VLXColor horizon = VLXColor::colorWithRed(1.0, 0.72, 0.36, 1);
    const double horizonY = 140;
    for (double y = 0; y < horizonY; y += 0.5) {
        const double t = y / horizonY;
        context->setFillColor(t < 0.55 ? mix(zenith, dusk, t / 0.55)
                                       : mix(dusk, horizon, (t - 0.55) / 0.45));
        context->fillRect(VLXRectMake(0, y, size.width, 0.5));
    }
    for (std::uint32_t i = 0; i < 40; ++i) {
        const double x = hashNoise(i, 1, 7) * size.width;
        const double y = hashNoise(i, 2, 7) * 50;
        const double r = 0.3 + hashNoise(i, 3, 7) * 0.5;
        context->setFillColor(VLXColor::colorWithWhite(1, 0.4 + 0.5 * hashNoise(i, 4, 7)));
        context->fillEllipseInRect(VLXRectMake(x - r, y - r, 2 * r, 2 * r));
    }
    const VLXPoint sun{212, 118};
    for (int k = 16; k >= 1; --k) {
        const double r = 24 + k * 3.5;
        context->setFillColor(VLXColor::colorWithRed(1, 0.85, 0.55, 0.04));
        context->fillEllipseInRect(VLXRectMake(sun.x - r, sun.y - r, 2 * r, 2 * r));
    }
    context->setFillColor(VLXColor::colorWithRed(1, 0.95, 0.75, 1));
    context->fillEllipseInRect(VLXRectMake(sun.x - 24, sun.y - 24, 48, 48));

    // The lake below the horizon, then the reflection as broken horizontal strokes.
    const VLXColor shore = VLXColor::colorWithRed(0.62, 0.42, 0.52, 1);
    const VLXColor deep = VLXColor::colorWithRed(0.2, 0.16, 0.34, 1);
    for (double y = horizonY; y < size.height; y += 0.5) {
        context->setFillColor(mix(shore, deep, (y - horizonY) / (size.height - horizonY)));
        context->fillRect(VLXRectMake(0, y, size.width, 0.5));
    }
    for (int i = 0; i < 14; ++i) {
        const double y = horizonY + 3 + i * 3.2;
        const double half = 26 - i * 1.4 + 6 * hashNoise(static_cast<std::uint32_t>(i), 5, 3);
        context->setFillColor(VLXColor::colorWithRed(1, 0.82, 0.5, 0.75 - i * 0.045));
        context->fillRect(VLXRectMake(sun.x - half, y, 2 * half, 1.2));
    }

    VLXBezierPath far;
    far.moveToPoint({0, 128});
    far.addCurveToPoint({120, 112}, {40, 104}, {80, 100});
    far.addCurveToPoint({320, 122}, {190, 126}, {250, 98});
    far.addLineToPoint({320, horizonY});
    far.addLineToPoint({0, horizonY});
    far.closePath();
    context->setFillColor(VLXColor::colorWithRed(0.27, 0.15, 0.3, 1));
    context->fillBezierPath(far);

    VLXBezierPath near;
    near.moveToPoint({0, 150});
    near.addCurveToPoint({95, 168}, {30, 136}, {60, 140});
    near.addCurveToPoint({0, 200}, {60, 190}, {20, 200});
    near.closePath();
    VLXBezierPath right;
    right.moveToPoint({320, 156});
    right.addCurveToPoint({250, 182}, {300, 150}, {270, 158});
    right.addCurveToPoint({320, 200}, {235, 200}, {300, 200});
    right.closePath();
    context->setFillColor(VLXColor::colorWithRed(0.1, 0.1, 0.16, 1));
    context->fillBezierPath(near);
    context->fillBezierPath(right);

    auto drawn = context->makeImage();
    if (!drawn) {
        return nullptr;
    }
    // Grain: ±5 per channel, the same on every run. The picture is opaque, so adding to the
    // premultiplied bytes is adding to the colour.
    std::vector<std::uint32_t> pixels(drawn->pixels().begin(), drawn->pixels().end());
    for (int y = 0; y < drawn->pixelHeight(); ++y) {
        for (int x = 0; x < drawn->pixelWidth(); ++x) {
            std::uint32_t& word = pixels[static_cast<std::size_t>(y * drawn->pixelWidth() + x)];
            const int delta = static_cast<int>(std::lround(
                hashNoise(static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(y), 1) * 10.0 -
                5.0));
            std::uint32_t out = word & 0xFF000000U;
            for (int shift = 0; shift <= 16; shift += 8) {
                const int channel = static_cast<int>((word >> shift) & 0xFFU) + delta;
                out |= static_cast<std::uint32_t>(std::clamp(channel, 0, 255)) << shift;
            }
            word = out;
        }
    }
    return VLXImage::imageWithPixels(drawn->pixelWidth(), drawn->pixelHeight(), std::move(pixels),
                                     scale);
}

// The picture inside a rounded rectangle with a half-transparent round window: alpha for the
// tint and the average to work with.
std::shared_ptr<VLXImage> makeMasked(const VLXImage& picture) {
    const VLXSize size = picture.size();
    auto context = VLXGraphicsContext::createBitmap(size, picture.scale());
    if (!context) {
        return nullptr;
    }
    context->clipToBezierPath(
        VLXBezierPath::bezierPathWithRoundedRect(VLXRectMake(0, 0, size.width, size.height), 40));
    context->drawImage(picture, VLXRectMake(0, 0, size.width, size.height));
    context->setBlendMode(VLXBlendMode::DestinationOut);
    context->setFillColor(VLXColor::colorWithWhite(0, 0.6));
    context->fillEllipseInRect(VLXRectMake(30, 30, 80, 80));
    return context->makeImage();
}

std::string swatch(const VLXColor& color, const std::string& caption) {
    return "<figure><div class=\"checker\" style=\"display:inline-block\"><div style=\"width:"
           "120px;height:80px;background:" +
           cssColor(color) + "\"></div></div><figcaption>" + galleryEscapeHTML(caption) +
           "<br><code>#" + galleryEscapeHTML(vlx_hexValueWithAlpha(color, true).value_or("?")) +
           "</code></figcaption></figure>\n";
}

std::string adjustmentsSection(const std::filesystem::path& directory) {
    auto picture = makeSunset();
    if (!picture) {
        return "<h2>Adjustments</h2><p>The test picture could not be drawn.</p>\n";
    }
    auto masked = makeMasked(*picture);
    std::string html =
        "<h2>Adjustments</h2>\n<p>A generated 320 × 200 point picture at scale 2 and what the "
        "adjustments make of it. Scaling stretches into the new size at the image's scale; "
        "desaturation keeps each pixel's luminosity; tinting fills source-atop, so only where "
        "the image has alpha does the colour land — see the rounded corners and the "
        "half-transparent window of the masked copy. Desaturation is a blend over the whole "
        "rectangle, so the masked copy's transparent parts turn black, as on the platform.</p>\n";
    html += "<div class=\"columns\">\n";
    html += figure(directory, "images-picture.png", picture, "original, 320 × 200 @2x");
    html += figure(directory, "images-scaled-small.png",
                   vlx_imageScaledToSize(*picture, VLXSizeMake(80, 50)), "scaled to 80 × 50");
    html += figure(directory, "images-scaled-large.png",
                   vlx_imageScaledToSize(*picture, VLXSizeMake(480, 300)), "scaled to 480 × 300");
    html +=
        figure(directory, "images-desaturated.png", vlx_desaturatedImage(*picture), "desaturated");
    html += "</div>\n<div class=\"columns\">\n";
    if (masked) {
        html +=
            figure(directory, "images-masked.png", masked, "rounded mask, window at 40 % alpha");
        const VLXColor teal = VLXColor::colorWithRed(0.1, 0.55, 0.75, 0.55);
        const VLXColor sepia = VLXColor::colorWithRed(0.55, 0.38, 0.2, 0.7);
        html += figure(directory, "images-tinted-teal.png", vlx_imageTintedWithColor(*masked, teal),
                       "tinted " + colorName(teal));
        html += figure(directory, "images-tinted-sepia.png",
                       vlx_imageTintedWithColor(*masked, sepia), "tinted " + colorName(sepia));
        html += figure(directory, "images-masked-desaturated.png", vlx_desaturatedImage(*masked),
                       "masked copy desaturated");
    }
    html +=
        "</div>\n<h3>Average colour</h3>\n<p>The picture drawn into one pixel. For images "
        "with transparency the premultiplied components are multiplied by alpha once more, "
        "so the masked copy's average comes out darker than its visible colours.</p>\n"
        "<div class=\"columns\">\n";
    html += swatch(vlx_averageColor(*picture), "average of the picture");
    if (masked) {
        html += swatch(vlx_averageColor(*masked), "average of the masked copy");
    }
    html += swatch(vlx_averageColor(*vlx_desaturatedImage(*picture)), "average of the grey copy");
    return html + "</div>\n";
}

// --- the cache -----------------------------------------------------------------------------------

std::string cacheCell(const std::optional<std::string>& identifier) {
    if (!identifier) {
        return "<td>nil</td><td>—</td>";
    }
    auto cached = vlx_imageWithIdentifier(identifier);
    std::string cell = "<td>" + galleryEscapeHTML(*identifier) + "</td><td>";
    if (cached) {
        cell += galleryEscapeHTML(
            sizeText(cached->size()) + " @" + formatNumber(cached->scale()) + "x, pixel colour " +
            colorName(cached->colorAtPixel(cached->pixelWidth() / 4, cached->pixelHeight() / 2)));
    } else {
        cell += "not cached";
    }
    return cell + "</td>";
}

std::string cacheSection() {
    std::string html =
        "<h2>Drawing cache</h2>\n<p>After the icons above: for each request, the identifier of "
        "the requested size and of the default size (both naming the requested colour) and what "
        "the cache holds under them. Cached icons are always the black drawing; the tint is "
        "applied on every call. The pixel is read at a quarter of the width, half the height. "
        "Entries in the cache: " +
        std::to_string(drawingCache()->count()) +
        ".</p>\n<table class=\"data\"><tr><th>request</th><th>tint</th><th>identifier</th>"
        "<th>cached</th><th>default-size identifier</th><th>cached</th></tr>\n";
    for (const auto& tint : iconTints()) {
        for (const auto& request : iconRequests()) {
            const VLXSize defaultSize = vlx_defaultSizeForIcon(request.type);
            VLXSize size = VLXSizeMake(request.a, request.b);
            const std::string how = request.how;
            if (how == "width") {
                size.height = vlx::roundf32(defaultSize.height * (request.a / defaultSize.width));
            } else if (how == "height") {
                size = VLXSizeMake(
                    vlx::roundf32(defaultSize.width * (request.a / defaultSize.height)), request.a);
            }
            html += "<tr><td>" + galleryEscapeHTML(requestText(request)) + "</td><td>" +
                    galleryEscapeHTML(colorName(tint)) + "</td>" +
                    cacheCell(vlx_identifierForIcon(request.type, size, tint)) +
                    cacheCell(vlx_identifierForIcon(request.type, defaultSize, tint)) + "</tr>\n";
        }
    }
    html += "<tr><td>type 7 (unknown), 20×20</td><td>nil</td>" +
            cacheCell(vlx_identifierForIcon(7, VLXSizeMake(20, 20), std::nullopt)) +
            cacheCell(vlx_identifierForIcon(7, VLXSizeZero, std::nullopt)) + "</tr>\n";
    return html + "</table>\n";
}

}  // namespace

GalleryPage makeImagesPage(const std::filesystem::path& outputDirectory) {
    // Icons are drawn at the screen's scale; 2 keeps the files small and the edges crisp.
    auto screen = VLXScreen::mainScreen();
    const double savedScale = screen->scale();
    screen->setScale(2);
    vlx_removeAllImages();

    std::string body =
        "<h1>Images and icons</h1>\n<p>The image utilities: a process-wide cache of drawn "
        "images, vector icons drawn on demand and cached per size and colour, and four "
        "adjustments (scaling, desaturation, tinting, average colour). Images sit on a "
        "checkerboard so that transparency shows.</p>\n";
    body += iconsSection(outputDirectory);
    body += cacheSection();
    body += adjustmentsSection(outputDirectory);

    vlx_removeAllImages();
    screen->setScale(savedScale);
    return GalleryPage{"images", "Images and icons",
                       "Icons by size, width and height in several tints, the drawing cache, and "
                       "scaling, desaturation, tinting and average colour of a test picture.",
                       body};
}
