// The drawing context and paths: the input is decoded into a sequence of context operations
// (random geometry, transforms, scales, dash patterns, images, clips, shadows) played on a small
// bitmap and on an SVG document. Nothing may crash or poison the context: after the sequence a
// both contexts are still valid. Run with libFuzzer's -timeout= as the per-input time bound.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>
#include <VelmarCoreUI/Platform/Graphics/VLXPath.h>

#include "FuzzSupport.h"

namespace {

constexpr int kMaxOperations = 64;

VLXPoint point(FuzzedDataProvider& data) {
    return {vlxfuzz::edgyDouble(data), vlxfuzz::edgyDouble(data)};
}

VLXRect rect(FuzzedDataProvider& data) {
    return {{vlxfuzz::edgyDouble(data), vlxfuzz::edgyDouble(data)},
            {vlxfuzz::edgyDouble(data), vlxfuzz::edgyDouble(data)}};
}

const std::shared_ptr<VLXImage>& sampleImage() {
    static const std::shared_ptr<VLXImage> image =
        VLXImage::imageWithPixels(2, 2, {0xffff0000u, 0xff00ff00u, 0x800000ffu, 0x00000000u}, 2.0);
    return image;
}

void play(VLXGraphicsContext& context, FuzzedDataProvider& data) {
    VLXPath path;
    for (int step = 0; step < kMaxOperations && data.remaining_bytes() > 0; ++step) {
        switch (data.ConsumeIntegralInRange<int>(0, 27)) {
            case 0:
                context.saveGState();
                break;
            case 1:
                context.restoreGState();
                break;
            case 2:
                context.translateCTM(vlxfuzz::edgyDouble(data), vlxfuzz::edgyDouble(data));
                break;
            case 3:
                context.scaleCTM(vlxfuzz::edgyDouble(data), vlxfuzz::edgyDouble(data));
                break;
            case 4:
                context.rotateCTM(vlxfuzz::edgyDouble(data));
                break;
            case 5:
                context.concatCTM({vlxfuzz::edgyDouble(data), vlxfuzz::edgyDouble(data),
                                   vlxfuzz::edgyDouble(data), vlxfuzz::edgyDouble(data),
                                   vlxfuzz::edgyDouble(data), vlxfuzz::edgyDouble(data)});
                break;
            case 6:
                context.setFillColor(VLXColor::colorWithRed(vlxfuzz::edgyDouble(data), 0.5,
                                                            vlxfuzz::edgyDouble(data),
                                                            vlxfuzz::edgyDouble(data)));
                break;
            case 7:
                context.setLineWidth(vlxfuzz::edgyDouble(data));
                break;
            case 8: {
                std::vector<double> lengths(data.ConsumeIntegralInRange<std::size_t>(0, 6));
                for (double& length : lengths) {
                    length = vlxfuzz::edgyDouble(data);
                }
                context.setLineDash(vlxfuzz::edgyDouble(data), lengths);
                break;
            }
            case 9:
                context.setAlpha(vlxfuzz::edgyDouble(data));
                break;
            case 10:
                context.setBlendMode(
                    static_cast<VLXBlendMode>(data.ConsumeIntegralInRange<int>(0, 27)));
                break;
            case 11:
                context.setShadow({vlxfuzz::edgyDouble(data), vlxfuzz::edgyDouble(data)},
                                  vlxfuzz::edgyDouble(data), VLXColor::blackColor());
                break;
            case 12:
                context.setLineCap(static_cast<VLXLineCap>(data.ConsumeIntegralInRange<int>(0, 2)));
                break;
            case 13:
                context.setLineJoin(
                    static_cast<VLXLineJoin>(data.ConsumeIntegralInRange<int>(0, 2)));
                break;
            case 14:
                context.setMiterLimit(vlxfuzz::edgyDouble(data));
                break;
            case 15:
                context.moveToPoint(point(data));
                break;
            case 16:
                context.addLineToPoint(point(data));
                break;
            case 17:
                context.addCurveToPoint(point(data), point(data), point(data));
                break;
            case 18:
                context.addRect(rect(data));
                break;
            case 19:
                context.addEllipseInRect(rect(data));
                break;
            case 20:
                context.closePath();
                break;
            case 21:
                context.drawPath(
                    static_cast<VLXPathDrawingMode>(data.ConsumeIntegralInRange<int>(0, 4)));
                break;
            case 22:
                context.clip(data.ConsumeBool() ? VLXPathFillRule::EvenOdd
                                                : VLXPathFillRule::Winding);
                break;
            case 23:
                context.fillRect(rect(data));
                break;
            case 24:
                context.clipToRect(rect(data));
                break;
            case 25:
                context.drawImage(*sampleImage(), rect(data));
                break;
            case 26: {
                path.moveToPoint(point(data));
                path.addLineToPoint(point(data));
                path.addArc(point(data), vlxfuzz::edgyDouble(data), vlxfuzz::edgyDouble(data),
                            vlxfuzz::edgyDouble(data), data.ConsumeBool());
                (void)path.boundingBox();
                (void)path.pathBoundingBox();
                (void)path.containsPoint(point(data));
                break;
            }
            default:
                context.addPath(path);
                break;
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
    play(*bitmap, forBitmap);
    play(*svg, forSVG);

    // Odd input never reaches cairo as an error: both contexts stay valid.
    VLX_FUZZ_CHECK(bitmap->isValid() && svg->isValid(), "a context turned invalid");
    (void)svg->documentData();
    return 0;
}
