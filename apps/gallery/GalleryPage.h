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

// Page builders, one file each.
GalleryPage makeColorPage(const std::filesystem::path& outputDirectory);
GalleryPage makeFoundationPage(const std::filesystem::path& outputDirectory);
