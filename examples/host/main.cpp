// A host program: prints the intervals of a colour ramp, then draws a small chart of them to
// PNG and SVG with the same drawing calls. Writes into the folder given as its argument (default
// the working folder) and exits non-zero when something could not be made.
#include <VelmarCoreUI/VelmarCoreUI.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

void drawRamp(VLXGraphicsContext& context, VLXColorRamp& ramp, VLXSize size) {
    context.setFillColor(*vlx_colorWithHex("#ffffff"));
    context.fillRect({{0, 0}, size});
    const auto& intervals = ramp.intervals();
    const double width = size.width / double(intervals.size());
    for (std::size_t i = 0; i < intervals.size(); ++i) {
        // The last interval of a ramp may have no colour: draw it as a grey outline.
        const VLXRect swatch{{double(i) * width + 4, 8}, {width - 8, size.height - 40}};
        if (const auto& color = intervals[i]->color()) {
            context.setFillColor(*color);
            context.fillRect(swatch);
        } else {
            context.setStrokeColor(*vlx_colorWithHex("#999999"));
            context.strokeRect(swatch);
        }
        VLXTextAttributes attributes;
        attributes.font = VLXFont::systemFontOfSize(11);
        VLXStringDrawAtPoint(context, intervals[i]->label().value_or("-"),
                             {double(i) * width + 6, size.height - 28}, attributes);
    }
    auto arc =
        VLXBezierPath::bezierPathWithArcCenter({size.width / 2, size.height / 2}, 14, 0, 4.5, true);
    arc.setLineWidth(3);
    context.setStrokeColor(*vlx_colorWithHex("#333333"));
    context.strokeBezierPath(arc);
}

}  // namespace

int main(int argc, char** argv) {
    const std::filesystem::path folder = argc > 1 ? argv[1] : ".";

    auto ramp = VLXColorRamp::create();
    ramp->addStopWithColor(vlx_colorWithHex("#2166ac"), 0, 0.0);
    ramp->addStopWithColor(vlx_colorWithHex("#b2182b"), 4, 10.0);
    for (const auto& interval : ramp->intervals()) {
        const auto& color = interval->color();
        std::printf("%-4s %s\n", interval->label().value_or("").c_str(),
                    color ? ("#" + vlx_hexValue(*color)).c_str() : "(no colour)");
    }

    const VLXSize size{320, 120};
    auto bitmap = VLXGraphicsContext::createBitmap(size, 2);
    auto svg = VLXGraphicsContext::createSVG(size);
    if (!bitmap || !svg) {
        std::fprintf(stderr, "host: could not create the drawing contexts\n");
        return 1;
    }
    drawRamp(*bitmap, *ramp, size);
    drawRamp(*svg, *ramp, size);

    auto image = bitmap->makeImage();
    if (!image || !image->writePNG(folder / "ramp.png")) {
        std::fprintf(stderr, "host: could not write ramp.png\n");
        return 1;
    }
    std::ofstream(folder / "ramp.svg", std::ios::binary) << svg->documentData();
    std::printf("wrote %s and ramp.svg (%d x %d px)\n", (folder / "ramp.png").c_str(),
                image->pixelWidth(), image->pixelHeight());
    return 0;
}
