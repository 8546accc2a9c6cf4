#include "GalleryPage.h"

#include <fstream>

#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>

GalleryPage makeDataPage(const std::filesystem::path& outputDirectory);

const std::vector<GalleryPageBuilder>& galleryPageBuilders() {
    static const std::vector<GalleryPageBuilder> builders = {
        makeColorPage,     makeFoundationPage,  makeDrawingPage,    makePathsPage,
        makeImagesPage,    makeTextPage,        makeDataPage,       makeLayersPage,
        makeEasingPage,    makeSpringsPage,     makeCompositorPage, makeArcsPage,
        makeViewsPage,     makeControlsPage,    makeWidgetsPage,    makeControllersPage,
        makeScrollingPage, makeInteractionPage,
    };
    return builders;
}

std::string galleryEscapeHTML(const std::string& text) {
    std::string out;
    out.reserve(text.size());
    for (char c : text) {
        switch (c) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '"':
                out += "&quot;";
                break;
            default:
                out += c;
        }
    }
    return out;
}

std::string galleryFigure(const std::filesystem::path& outputDirectory, const std::string& fileName,
                          VLXGraphicsContext& context, const std::string& caption) {
    const std::filesystem::path file = outputDirectory / fileName;
    bool written = false;
    if (context.kind() == VLXGraphicsContextKind::Bitmap) {
        auto image = context.makeImage();
        written = image && image->writePNG(file);
    } else {
        const std::string data = context.documentData();
        std::ofstream out(file, std::ios::binary);
        out.write(data.data(), static_cast<std::streamsize>(data.size()));
        written = !data.empty() && out.good();
    }
    const std::string name = galleryEscapeHTML(fileName);
    const std::string text = galleryEscapeHTML(caption);
    if (!written) {
        return "<figure><p>" + name + " could not be written</p><figcaption>" + text +
               "</figcaption></figure>\n";
    }
    if (context.kind() == VLXGraphicsContextKind::PDF) {
        return "<figure><a href=\"" + name + "\">" + name + "</a><figcaption>" + text +
               "</figcaption></figure>\n";
    }
    const long width = static_cast<long>(context.size().width);
    return "<figure><img src=\"" + name + "\" width=\"" + std::to_string(width) + "\" alt=\"" +
           text + "\"><figcaption>" + text + "</figcaption></figure>\n";
}
