#include "GalleryPage.h"

const std::vector<GalleryPageBuilder>& galleryPageBuilders() {
    static const std::vector<GalleryPageBuilder> builders = {
        makeColorPage,
        makeFoundationPage,
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
