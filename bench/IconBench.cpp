// Icon lookups through the drawing cache against drawing the icon afresh each time: what the
// cache saves for a plain icon, and what tinting (done on every call) costs on top of a hit.
#include <benchmark/benchmark.h>

#include <optional>

#include <VelmarCoreUI/Platform/Device/VLXScreen.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsImageContext.h>
#include <VelmarCoreUI/Utilities/VLXImageUtilities.h>
#include "BenchRatio.h"

namespace {

constexpr int kLookups = 200;

// The icon drawn afresh at the requested size, as code without the cache would do it.
std::shared_ptr<VLXImage> freshIcon(VLXUInteger type, VLXSize size) {
    const VLXSize defaultSize = vlx_defaultSizeForIcon(type);
    return vlx_imageWithSize(size, [&] {
        VLXGraphicsContext* context = VLXGraphicsGetCurrentContext();
        context->scaleCTM(size.width / defaultSize.width, size.height / defaultSize.height);
        context->setFillColor(VLXColor::blackColor());
        vlx_drawIcon(type);
    });
}

void runIconLookups(benchmark::State& state, const std::optional<VLXColor>& color,
                    const char* name) {
    vlx_removeAllImages();
    const VLXSize sizes[] = {{20, 30}, {40, 60}, {30, 30}, {15, 15}};
    for (const VLXSize& size : sizes) {  // warm the cache
        vlx_iconWithType(VLXIconTypePlay, size, color);
        vlx_iconWithType(VLXIconTypeStop, size, color);
    }
    runAgainstBaseline(
        state, name,
        [&] {
            for (int i = 0; i < kLookups; ++i) {
                const VLXUInteger type = i % 2 == 0 ? VLXIconTypePlay : VLXIconTypeStop;
                benchmark::DoNotOptimize(vlx_iconWithType(type, sizes[(i / 2) % 4], color));
            }
        },
        [&] {
            for (int i = 0; i < kLookups; ++i) {
                const VLXUInteger type = i % 2 == 0 ? VLXIconTypePlay : VLXIconTypeStop;
                benchmark::DoNotOptimize(freshIcon(type, sizes[(i / 2) % 4]));
            }
        });
    state.SetItemsProcessed(state.iterations() * kLookups);
}

// Pure cache hits: the cached image itself is returned.
void BM_IconCacheHitVsFreshDrawing(benchmark::State& state) {
    VLXScreen::mainScreen()->setScale(static_cast<double>(state.range(0)));
    runIconLookups(state, std::nullopt, "cached_icon");
}
BENCHMARK(BM_IconCacheHitVsFreshDrawing)->Arg(1)->Arg(3)->Unit(benchmark::kMillisecond);

// A hit followed by the tint, which makes a new image every call.
void BM_TintedIconVsFreshDrawing(benchmark::State& state) {
    VLXScreen::mainScreen()->setScale(static_cast<double>(state.range(0)));
    runIconLookups(state, VLXColor::colorWithRed(0.9, 0.2, 0.1, 1), "tinted_icon");
}
BENCHMARK(BM_TintedIconVsFreshDrawing)->Arg(1)->Arg(3)->Unit(benchmark::kMillisecond);

}  // namespace
