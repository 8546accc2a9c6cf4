// vlx-gallery: renders every capability of the toolkit into a folder of HTML pages and images.
#include <CLI/CLI.hpp>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include <VelmarCoreUI/VelmarCoreUI.h>
#include "GalleryPage.h"

namespace {

const char* kStyle = R"(
body { font-family: Inter, "DejaVu Sans", sans-serif; margin: 2rem; color: #222; background: #fafafa; }
h1, h2, h3 { font-weight: 600; }
nav a { margin-right: 1rem; }
.swatches { display: flex; flex-wrap: wrap; gap: 12px; }
.swatch { width: 150px; border: 1px solid #ccc; border-radius: 6px; overflow: hidden; background: #fff;
          font-size: 12px; }
.swatch .chip { height: 56px; }
.swatch .text { padding: 6px; font-family: monospace; word-break: break-all; }
.checker { background-image: linear-gradient(45deg, #ddd 25%, transparent 25%),
           linear-gradient(-45deg, #ddd 25%, transparent 25%),
           linear-gradient(45deg, transparent 75%, #ddd 75%),
           linear-gradient(-45deg, transparent 75%, #ddd 75%);
           background-size: 12px 12px; background-position: 0 0, 0 6px, 6px -6px, -6px 0; }
.strip { display: flex; height: 40px; border: 1px solid #ccc; margin: 4px 0 16px; }
.strip div { flex: 1; }
.legend { display: flex; align-items: stretch; margin: 8px 0 24px; }
.legend .cell { flex: 1; min-width: 24px; text-align: center; font-size: 11px; }
.legend .cell .chip { height: 28px; }
table { border-collapse: collapse; font-size: 13px; }
td, th { border: 1px solid #ddd; padding: 4px 8px; text-align: left; }
table.data td { font-family: monospace; white-space: pre-wrap; }
.columns { display: flex; flex-wrap: wrap; gap: 24px; align-items: flex-start; }
.key { display: inline-block; width: 12px; height: 12px; border: 1px solid #ccc; }
svg.figure { background: #fff; border: 1px solid #ddd; }
figure { display: inline-block; margin: 0 16px 16px 0; vertical-align: top; }
figure img { border: 1px solid #ddd; background: #fff; }
figcaption { font-size: 12px; color: #555; max-width: 640px; margin-top: 4px; }
pre { background: #fff; border: 1px solid #ddd; padding: 8px; font-size: 12px; margin: 0;
      white-space: pre-wrap; word-break: break-all; max-width: 600px; }
.grouped { background: #f2f2f7; padding: 12px 16px; width: 380px; border-radius: 10px; }
.grouped table { width: 100%; background: #fff; border-collapse: separate; border-spacing: 0;
                 border-radius: 10px; }
.grouped td { border: none; border-bottom: 1px solid #e5e5ea; padding: 10px 12px; }
.grouped .value { text-align: right; color: #8e8e93; }
.grouped .cell { font-family: monospace; font-size: 11px; color: #aaa; }
.group-title, .group-footer { color: #6d6d72; font-size: 12px; margin: 6px 12px; }
.group-title { text-transform: uppercase; }
)";

void writeFile(const std::filesystem::path& path, const std::string& text) {
    std::ofstream out(path, std::ios::binary);
    out << text;
}

std::string pageHTML(const std::string& title, const std::string& body) {
    return "<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"><title>" +
           galleryEscapeHTML(title) + " — VelmarCoreUI gallery</title><style>" + kStyle +
           "</style></head><body><nav><a href=\"index.html\">Gallery index</a></nav>\n" + body +
           "\n</body></html>\n";
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app{"VelmarCoreUI gallery: writes every component as HTML pages and images"};
    std::string output = "gallery-out";
    app.add_option("-o,--output", output, "Output folder (created when missing)");
    CLI11_PARSE(app, argc, argv);

    const std::filesystem::path directory = std::filesystem::absolute(output);
    std::error_code error;
    std::filesystem::create_directories(directory, error);
    if (error) {
        std::fprintf(stderr, "vlx-gallery: cannot create %s: %s\n", directory.c_str(),
                     error.message().c_str());
        return 1;
    }

    std::string index = "<h1>VelmarCoreUI gallery</h1>\n<p>Version " +
                        std::string(VelmarCoreUIVersionString) + "</p>\n<ul>\n";
    for (const auto& build : galleryPageBuilders()) {
        const GalleryPage page = build(directory);
        writeFile(directory / (page.id + ".html"), pageHTML(page.title, page.bodyHTML));
        index += "<li><a href=\"" + page.id + ".html\">" + galleryEscapeHTML(page.title) +
                 "</a> — " + galleryEscapeHTML(page.summary) + "</li>\n";
        std::printf("vlx-gallery: wrote %s\n", (directory / (page.id + ".html")).c_str());
    }
    index += "</ul>\n";
    writeFile(directory / "index.html", pageHTML("Index", index));
    std::printf("vlx-gallery: open %s\n", (directory / "index.html").c_str());
    return 0;
}
