#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

/// One page of the gallery: an HTML body fragment plus whatever files it wrote beside it.
struct GalleryPage {
    std::string id;     ///< file stem: the page is written as <id>.html
    std::string title;  ///< shown in the index
    std::string summary;
    std::string bodyHTML;
};

/// A page builder gets the output folder so that raster pages can write their images there.
using GalleryPageBuilder = std::function<GalleryPage(const std::filesystem::path& outputDirectory)>;

/// The pages in the order the index lists them.
const std::vector<GalleryPageBuilder>& galleryPageBuilders();

/// Escapes &, <, >, " for HTML text and attributes.
std::string galleryEscapeHTML(const std::string& text);

class VLXGraphicsContext;

/// Writes what `context` drew into the output folder as `fileName` (a bitmap as PNG, an SVG or
/// PDF document as its bytes) and returns a <figure> showing it at its size in points, with
/// `caption` below. A PDF is linked rather than shown.
std::string galleryFigure(const std::filesystem::path& outputDirectory, const std::string& fileName,
                          VLXGraphicsContext& context, const std::string& caption);

// Page builders, one file each.
GalleryPage makeColorPage(const std::filesystem::path& outputDirectory);
GalleryPage makeFoundationPage(const std::filesystem::path& outputDirectory);
GalleryPage makeDrawingPage(const std::filesystem::path& outputDirectory);
GalleryPage makePathsPage(const std::filesystem::path& outputDirectory);
GalleryPage makeImagesPage(const std::filesystem::path& outputDirectory);
GalleryPage makeTextPage(const std::filesystem::path& outputDirectory);
GalleryPage makeLayersPage(const std::filesystem::path& outputDirectory);
GalleryPage makeEasingPage(const std::filesystem::path& outputDirectory);
GalleryPage makeSpringsPage(const std::filesystem::path& outputDirectory);
GalleryPage makeCompositorPage(const std::filesystem::path& outputDirectory);
GalleryPage makeArcsPage(const std::filesystem::path& outputDirectory);
GalleryPage makeViewsPage(const std::filesystem::path& outputDirectory);
GalleryPage makeControlsPage(const std::filesystem::path& outputDirectory);
GalleryPage makeControllersPage(const std::filesystem::path& outputDirectory);
GalleryPage makeWidgetsPage(const std::filesystem::path& outputDirectory);
GalleryPage makeScrollingPage(const std::filesystem::path& outputDirectory);
GalleryPage makeInteractionPage(const std::filesystem::path& outputDirectory);
