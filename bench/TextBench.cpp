// Text measurement as axis labels and legends use it: thousands of short strings per layout
// pass. The library reuses one Pango context and layout per thread and the fonts' descriptions;
// the baseline does what a first attempt would, a fresh layout and font description per string.
#include <benchmark/benchmark.h>
#include <pango/pangocairo.h>

#include <cstdio>
#include <string>
#include <vector>

#include <VelmarCoreUI/Platform/Graphics/Private/VLXTextEngine.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXStringDrawing.h>
#include <VelmarCoreUI/Utilities/VLXFontUtilities.h>
#include "BenchRatio.h"

namespace {

constexpr int kStrings = 10000;

std::vector<std::string> labels(int distinct) {
    std::vector<std::string> result;
    result.reserve(kStrings);
    char text[32];
    for (int i = 0; i < kStrings; ++i) {
        std::snprintf(text, sizeof text, "Label %04d", i % distinct);
        result.emplace_back(text);
    }
    return result;
}

// A context like the library's (72 dpi, unhinted), made once: the baseline pays per string
// only for what naive code makes per string.
PangoContext* baselineContext() {
    static PangoContext* context = [] {
        PangoFontMap* fontMap = pango_cairo_font_map_new();
        pango_cairo_font_map_set_resolution(PANGO_CAIRO_FONT_MAP(fontMap), 72);
        PangoContext* made = pango_font_map_create_context(fontMap);
        cairo_font_options_t* options = cairo_font_options_create();
        cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
        cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
        pango_cairo_context_set_font_options(made, options);
        cairo_font_options_destroy(options);
        pango_context_set_round_glyph_positions(made, FALSE);
        g_object_unref(fontMap);
        return made;
    }();
    return context;
}

void naiveMeasure(const std::string& text, double width) {
    PangoFontDescription* description = pango_font_description_from_string("Inter,DejaVu Sans");
    pango_font_description_set_absolute_size(description, 12 * PANGO_SCALE);
    PangoLayout* layout = pango_layout_new(baselineContext());
    pango_layout_set_font_description(layout, description);
    pango_layout_set_text(layout, text.data(), static_cast<int>(text.size()));
    pango_layout_set_width(layout, pango_units_from_double(width));
    pango_layout_set_wrap(layout, PANGO_WRAP_WORD_CHAR);
    PangoRectangle logical;
    pango_layout_get_extents(layout, nullptr, &logical);
    benchmark::DoNotOptimize(logical);
    g_object_unref(layout);
    pango_font_description_free(description);
}

void measureAgainstNaive(benchmark::State& state, int distinct) {
    const std::vector<std::string> strings = labels(distinct);
    const VLXFont font = VLXFont::systemFontOfSize(12);
    vlx_sizeNeededForString(font, std::string("warm-up"), 200);
    const auto before = vlx::detail::textEngineCounters();
    runAgainstBaseline(
        state, "vlx_sizeNeededForString",
        [&] {
            for (const std::string& text : strings) {
                benchmark::DoNotOptimize(vlx_sizeNeededForString(font, text, 200));
            }
        },
        [&] {
            for (const std::string& text : strings) {
                naiveMeasure(text, 200);
            }
        });
    const auto after = vlx::detail::textEngineCounters();
    // Stays 0: measuring makes no font maps, descriptions or layouts once warmed up.
    state.counters["objects_made"] =
        static_cast<double>((after.fontMapsCreated - before.fontMapsCreated) +
                            (after.fontDescriptionsCreated - before.fontDescriptionsCreated) +
                            (after.layoutsCreated - before.layoutsCreated));
}

// 10 000 distinct labels: the result cache cannot help, this is the layout path itself.
void BM_Measure10000DistinctLabels(benchmark::State& state) {
    measureAgainstNaive(state, kStrings);
}
BENCHMARK(BM_Measure10000DistinctLabels)->Unit(benchmark::kMillisecond)->Iterations(5);

// 10 000 measurements of 50 labels, as a graph re-measuring its axis on every layout pass.
void BM_Measure50RepeatedLabels(benchmark::State& state) {
    measureAgainstNaive(state, 50);
}
BENCHMARK(BM_Measure50RepeatedLabels)->Unit(benchmark::kMillisecond)->Iterations(5);

// What the per-thread engine saves: a font map (and so fonts) made afresh per string, as code
// that creates a Pango context per call does. 200 strings, as the baseline is slow.
void BM_Measure200LabelsVsFreshFontMap(benchmark::State& state) {
    const std::vector<std::string> strings = labels(200);
    const VLXFont font = VLXFont::systemFontOfSize(12);
    runAgainstBaseline(
        state, "vlx_sizeNeededForString",
        [&] {
            for (int i = 0; i < 200; ++i) {
                benchmark::DoNotOptimize(vlx_sizeNeededForString(font, strings[i] + "x", 200));
            }
        },
        [&] {
            for (int i = 0; i < 200; ++i) {
                PangoFontMap* fontMap = pango_cairo_font_map_new();
                PangoContext* context = pango_font_map_create_context(fontMap);
                PangoFontDescription* description =
                    pango_font_description_from_string("Inter,DejaVu Sans 12");
                PangoLayout* layout = pango_layout_new(context);
                pango_layout_set_font_description(layout, description);
                pango_layout_set_text(layout, strings[i].data(), -1);
                PangoRectangle logical;
                pango_layout_get_extents(layout, nullptr, &logical);
                benchmark::DoNotOptimize(logical);
                g_object_unref(layout);
                pango_font_description_free(description);
                g_object_unref(context);
                g_object_unref(fontMap);
            }
        });
}
BENCHMARK(BM_Measure200LabelsVsFreshFontMap)->Unit(benchmark::kMillisecond)->Iterations(3);

// A paragraph that wraps, different text each time so the result cache does not answer.
void BM_BoundingRectWrappedParagraph(benchmark::State& state) {
    VLXTextAttributes attributes;
    attributes.font = VLXFont::systemFontOfSize(13);
    char text[128];
    int i = 0;
    for (auto _ : state) {
        std::snprintf(text, sizeof text,
                      "Wrapped paragraph number %d with enough words to need several lines.", i++);
        benchmark::DoNotOptimize(VLXStringBoundingRect(
            text, {160, 1e6}, VLXStringDrawingUsesLineFragmentOrigin, attributes));
    }
}
BENCHMARK(BM_BoundingRectWrappedParagraph);

void BM_DrawLabel(benchmark::State& state) {
    auto context = VLXGraphicsContext::createBitmap({200, 40}, 2);
    VLXTextAttributes attributes;
    attributes.font = VLXFont::systemFontOfSize(12);
    for (auto _ : state) {
        VLXStringDrawWithRect(*context, "Label 1234", VLXRectMake(4, 4, 190, 30),
                              VLXStringDrawingUsesLineFragmentOrigin, attributes);
    }
}
BENCHMARK(BM_DrawLabel);

}  // namespace
