// The drawing context and paths: the input is decoded into a sequence of context operations
// (random geometry, transforms, scales, dash patterns, images, clips, shadows) played on a small
// bitmap and on an SVG document. Nothing may crash or poison the context: after the sequence a
// both contexts are still valid. Run with libFuzzer's -timeout= as the per-input time bound.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>
#include <VelmarCoreUI/Platform/Graphics/VLXPath.h>

#include "FuzzSupport.h"

namespace {

constexpr int kMaxOperations = 64;

// The numbers of one operation, kept so that VLX_FUZZ_TRACE=1 can print what an input does.
struct Numbers {
    FuzzedDataProvider& data;
    std::vector<double> read;
    double operator()() { return read.emplace_back(vlxfuzz::edgyDouble(data)); }
    int choice(int last) {
        return static_cast<int>(read.emplace_back(data.ConsumeIntegralInRange<int>(0, last)));
    }
};

VLXPoint point(Numbers& number) {
    const double x = number();
    return {x, number()};
}

VLXRect rect(Numbers& number) {
    const double x = number();
    const double y = number();
    const double width = number();
    return {{x, y}, {width, number()}};
}

constexpr const char* kOperationNames[] = {
    "saveGState",
    "restoreGState",
    "translateCTM",
    "scaleCTM",
    "rotateCTM",
    "concatCTM",
    "setFillColor",
    "setLineWidth",
    "setLineDash",
    "setAlpha",
    "setBlendMode",
    "setShadow",
    "setLineCap",
    "setLineJoin",
    "setMiterLimit",
    "moveToPoint",
    "addLineToPoint",
    "addCurveToPoint",
    "addRect",
    "addEllipseInRect",
    "closePath",
    "drawPath",
    "clip (1: even-odd)",
    "fillRect",
    "clipToRect",
    "drawImage",
    "path: move, line, addArc (last: clockwise), bounds, containsPoint",
    "addPath"};

const std::shared_ptr<VLXImage>& sampleImage() {
    static const std::shared_ptr<VLXImage> image =
        VLXImage::imageWithPixels(2, 2, {0xffff0000u, 0xff00ff00u, 0x800000ffu, 0x00000000u}, 2.0);
    return image;
}

void play(VLXGraphicsContext& context, FuzzedDataProvider& data, bool trace) {
    VLXPath path;
    for (int step = 0; step < kMaxOperations && data.remaining_bytes() > 0; ++step) {
        Numbers number{data, {}};
        const int operation = data.ConsumeIntegralInRange<int>(0, 27);
        switch (operation) {
            case 0:
                context.saveGState();
                break;
            case 1:
                context.restoreGState();
                break;
            case 2:
                context.translateCTM(number(), number());
                break;
            case 3:
                context.scaleCTM(number(), number());
                break;
            case 4:
                context.rotateCTM(number());
                break;
            case 5:
                context.concatCTM({number(), number(), number(), number(), number(), number()});
                break;
            case 6:
                context.setFillColor(VLXColor::colorWithRed(number(), 0.5, number(), number()));
                break;
            case 7:
                context.setLineWidth(number());
                break;
            case 8: {
                std::vector<double> lengths(data.ConsumeIntegralInRange<std::size_t>(0, 6));
                for (double& length : lengths) {
                    length = number();
                }
                context.setLineDash(number(), lengths);
                break;
            }
            case 9:
                context.setAlpha(number());
                break;
            case 10:
                context.setBlendMode(static_cast<VLXBlendMode>(number.choice(27)));
                break;
            case 11:
                context.setShadow({number(), number()}, number(), VLXColor::blackColor());
                break;
            case 12:
                context.setLineCap(static_cast<VLXLineCap>(number.choice(2)));
                break;
            case 13:
                context.setLineJoin(static_cast<VLXLineJoin>(number.choice(2)));
                break;
            case 14:
                context.setMiterLimit(number());
                break;
            case 15:
                context.moveToPoint(point(number));
                break;
            case 16:
                context.addLineToPoint(point(number));
                break;
            case 17:
                context.addCurveToPoint(point(number), point(number), point(number));
                break;
            case 18:
                context.addRect(rect(number));
                break;
            case 19:
                context.addEllipseInRect(rect(number));
                break;
            case 20:
                context.closePath();
                break;
            case 21:
                context.drawPath(static_cast<VLXPathDrawingMode>(number.choice(4)));
                break;
            case 22:
                context.clip(number.choice(1) == 1 ? VLXPathFillRule::EvenOdd
                                                   : VLXPathFillRule::Winding);
                break;
            case 23:
                context.fillRect(rect(number));
                break;
            case 24:
                context.clipToRect(rect(number));
                break;
            case 25:
                context.drawImage(*sampleImage(), rect(number));
                break;
            case 26: {
                path.moveToPoint(point(number));
                path.addLineToPoint(point(number));
                path.addArc(point(number), number(), number(), number(), number.choice(1) == 1);
                (void)path.boundingBox();
                (void)path.pathBoundingBox();
                (void)path.containsPoint(point(number));
                break;
            }
            default:
                context.addPath(path);
                break;
        }
        if (trace) {
            std::fprintf(stderr, "%2d %s", step, kOperationNames[operation]);
            for (double value : number.read) {
                std::fprintf(stderr, " %.17g", value);
            }
            std::fprintf(stderr, "\n");
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    FuzzedDataProvider data(bytes, size);
    static constexpr double kScales[] = {1, 2, 3, 0.25, 1.0 / 1024, 7.5};
    const double scale =
        kScales[data.ConsumeIntegralInRange<std::size_t>(0, std::size(kScales) - 1)];
    const auto bitmap = VLXGraphicsContext::createBitmap({16, 16}, scale);
    const auto svg = VLXGraphicsContext::createSVG({16, 16});
    VLX_FUZZ_CHECK(bitmap && svg, "contexts");
    const std::vector<std::uint8_t> script(bytes + (size - data.remaining_bytes()), bytes + size);
    FuzzedDataProvider forBitmap(script.data(), script.size());
    FuzzedDataProvider forSVG(script.data(), script.size());
    static const bool trace = std::getenv("VLX_FUZZ_TRACE") != nullptr;
    if (trace) {
        std::fprintf(stderr, "bitmap 16 × 16 at scale %g\n", scale);
    }
    play(*bitmap, forBitmap, trace);
    play(*svg, forSVG, false);

    // Odd input never reaches cairo as an error: both contexts stay valid.
    VLX_FUZZ_CHECK(bitmap->isValid() && svg->isValid(), "a context turned invalid");
    (void)svg->documentData();
    return 0;
}
