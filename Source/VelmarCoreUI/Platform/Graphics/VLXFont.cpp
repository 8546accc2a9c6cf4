#include <VelmarCoreUI/Platform/Graphics/Private/VLXTextEngine.h>
#include <VelmarCoreUI/Platform/Graphics/VLXFont.h>

#include <fontconfig/fontconfig.h>
#include <hb-ot.h>
#include <pango/pangocairo.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <map>
#include <mutex>
#include <ostream>
#include <tuple>

struct VLXFont::Record {
    std::string families;  // the description's family list, "Inter,DejaVu Sans"
    int weight = PANGO_WEIGHT_NORMAL;
    int style = PANGO_STYLE_NORMAL;
    double pointSize = VLXFont::defaultPointSize;
    PangoFontDescription* description = nullptr;

    std::string familyName;
    std::string fontName;
    double ascender = 0;
    double descender = 0;
    double leading = 0;
    double lineHeight = 0;
    double capHeight = 0;
    double xHeight = 0;

    Record() = default;
    Record(const Record&) = delete;
    Record& operator=(const Record&) = delete;
    ~Record() {
        if (description != nullptr) {
            pango_font_description_free(description);
        }
    }
};

namespace {

constexpr const char* kSystemFamilies = "Inter,DejaVu Sans";
constexpr double kMinimumPointSize = 0.01;
constexpr double kMaximumPointSize = 10000;
// Past this many distinct fonts the shared table starts afresh; fonts in use keep their records.
constexpr std::size_t kRecordTableLimit = 512;

std::atomic<std::uint64_t> gFontMapsCreated{0};
std::atomic<std::uint64_t> gFontDescriptionsCreated{0};
std::atomic<std::uint64_t> gLayoutsCreated{0};

double normalizedPointSize(double size) {
    if (!std::isfinite(size) || size <= 0) {
        return VLXFont::defaultPointSize;
    }
    return std::clamp(size, kMinimumPointSize, kMaximumPointSize);
}

// One measuring context per thread: Pango objects are not thread-safe, and a private font map
// keeps the fixed resolution from touching the host's default font map.
struct ThreadEngine {
    PangoFontMap* fontMap = nullptr;
    PangoContext* context = nullptr;

    ThreadEngine() {
        // Load font-config's configuration once, here, rather than letting the first font map
        // load it on Pango's helper thread while this thread may be listing fonts: two threads
        // racing to load it each build (and one throws away) a whole configuration.
        static std::once_flag configured;
        std::call_once(configured, [] { FcInit(); });
        fontMap = pango_cairo_font_map_new();
        if (fontMap == nullptr) {
            return;
        }
        ++gFontMapsCreated;
        pango_cairo_font_map_set_resolution(PANGO_CAIRO_FONT_MAP(fontMap), 72);
        context = pango_font_map_create_context(fontMap);
        cairo_font_options_t* options = cairo_font_options_create();
        cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
        cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
        pango_cairo_context_set_font_options(context, options);
        cairo_font_options_destroy(options);
        pango_context_set_round_glyph_positions(context, FALSE);
        // A fixed language, so the locale of the machine cannot change font choice or metrics.
        pango_context_set_language(context, pango_language_from_string("en-us"));
    }
    ~ThreadEngine() {
        if (context != nullptr) {
            g_object_unref(context);
        }
        if (fontMap != nullptr) {
            g_object_unref(fontMap);
        }
    }
    ThreadEngine(const ThreadEngine&) = delete;
    ThreadEngine& operator=(const ThreadEngine&) = delete;
};

double hbMetric(hb_font_t* font, hb_ot_metrics_tag_t tag, double pointSize) {
    hb_position_t position = 0;
    hb_ot_metrics_get_position_with_fallback(font, tag, &position);
    int xScale = 0;
    int yScale = 0;
    hb_font_get_scale(font, &xScale, &yScale);
    if (yScale == 0) {
        return 0;
    }
    return static_cast<double>(position) * pointSize / static_cast<double>(yScale);
}

std::shared_ptr<const VLXFont::Record> makeRecord(const std::string& families, int weight,
                                                  int style, double pointSize) {
    auto record = std::make_shared<VLXFont::Record>();
    record->families = families;
    record->weight = weight;
    record->style = style;
    record->pointSize = pointSize;
    record->description = pango_font_description_new();
    ++gFontDescriptionsCreated;
    pango_font_description_set_family(record->description, families.c_str());
    pango_font_description_set_weight(record->description, static_cast<PangoWeight>(weight));
    pango_font_description_set_style(record->description, static_cast<PangoStyle>(style));
    pango_font_description_set_absolute_size(record->description, pointSize * PANGO_SCALE);

    PangoContext* context = vlx::detail::threadPangoContext();
    if (context == nullptr) {
        record->familyName = families.substr(0, families.find(','));
        return record;
    }
    PangoFontMetrics* metrics = pango_context_get_metrics(context, record->description, nullptr);
    const double ascent = pango_font_metrics_get_ascent(metrics) / double(PANGO_SCALE);
    const double descent = pango_font_metrics_get_descent(metrics) / double(PANGO_SCALE);
    const double height = pango_font_metrics_get_height(metrics) / double(PANGO_SCALE);
    pango_font_metrics_unref(metrics);
    record->ascender = ascent;
    record->descender = -descent;
    record->leading = std::max(0.0, height - (ascent + descent));
    record->lineHeight = ascent + descent + record->leading;

    if (PangoFont* font = pango_context_load_font(context, record->description)) {
        PangoFontDescription* described = pango_font_describe(font);
        if (const char* family = pango_font_description_get_family(described)) {
            record->familyName = family;
        }
        pango_font_description_free(described);
        if (hb_font_t* hbFont = pango_font_get_hb_font(font)) {
            record->capHeight = hbMetric(hbFont, HB_OT_METRICS_TAG_CAP_HEIGHT, pointSize);
            record->xHeight = hbMetric(hbFont, HB_OT_METRICS_TAG_X_HEIGHT, pointSize);
            char name[256];
            unsigned length = sizeof name;
            hb_ot_name_get_utf8(hb_font_get_face(hbFont), HB_OT_NAME_ID_POSTSCRIPT_NAME,
                                HB_LANGUAGE_INVALID, &length, name);
            record->fontName.assign(name, length);
        }
        g_object_unref(font);
    }
    if (record->familyName.empty()) {
        record->familyName = families.substr(0, families.find(','));
    }
    return record;
}

struct RecordTable {
    std::mutex mutex;
    std::map<std::tuple<std::string, int, int, double>, std::shared_ptr<const VLXFont::Record>>
        records;
    // Resolved names: family list, weight, style; nil for names no installed font has.
    std::map<std::string, std::optional<std::tuple<std::string, int, int>>, std::less<>> names;
};

RecordTable& recordTable() {
    static RecordTable* table = new RecordTable;  // outlives fonts held by other statics
    return *table;
}

std::shared_ptr<const VLXFont::Record> sharedRecord(const std::string& families, int weight,
                                                    int style, double size) {
    const double pointSize = normalizedPointSize(size);
    auto key = std::make_tuple(families, weight, style, pointSize);
    RecordTable& table = recordTable();
    {
        std::lock_guard lock(table.mutex);
        auto found = table.records.find(key);
        if (found != table.records.end()) {
            return found->second;
        }
    }
    // Made outside the lock: loading a font takes a while and uses only this thread's context.
    auto record = makeRecord(families, weight, style, pointSize);
    std::lock_guard lock(table.mutex);
    if (table.records.size() >= kRecordTableLimit) {
        table.records.clear();
    }
    return table.records.emplace(std::move(key), std::move(record)).first->second;
}

int pangoWeightFromFontconfig(int fcWeight) {
    const int weight = FcWeightToOpenType(fcWeight);
    return weight > 0 ? weight : PANGO_WEIGHT_NORMAL;
}

int pangoStyleFromFontconfig(int slant) {
    if (slant == FC_SLANT_ITALIC) {
        return PANGO_STYLE_ITALIC;
    }
    if (slant == FC_SLANT_OBLIQUE) {
        return PANGO_STYLE_OBLIQUE;
    }
    return PANGO_STYLE_NORMAL;
}

// Family names as font-config compares them: ASCII case and blanks do not count.
bool sameFamilyName(std::string_view a, std::string_view b) {
    auto next = [](std::string_view text, std::size_t& i) {
        while (i < text.size() && text[i] == ' ') {
            ++i;
        }
        return i < text.size() ? g_ascii_tolower(text[i++]) : '\0';
    };
    std::size_t i = 0;
    std::size_t j = 0;
    for (;;) {
        const char x = next(a, i);
        const char y = next(b, j);
        if (x != y) {
            return false;
        }
        if (x == '\0') {
            return true;
        }
    }
}

// Asks font-config for installed faces whose `object` (family or PostScript name) is `name`.
std::optional<std::tuple<std::string, int, int>> resolveName(const std::string& name) {
    vlx::detail::threadPangoContext();  // font-config configured (see ThreadEngine)
    auto list = [&](const char* object) {
        FcPattern* pattern = FcPatternCreate();
        FcPatternAddString(pattern, object, reinterpret_cast<const FcChar8*>(name.c_str()));
        FcObjectSet* objects = FcObjectSetBuild(FC_FAMILY, FC_WEIGHT, FC_SLANT, nullptr);
        FcFontSet* fonts = FcFontList(nullptr, pattern, objects);
        FcObjectSetDestroy(objects);
        FcPatternDestroy(pattern);
        return fonts;
    };

    if (FcFontSet* fonts = list(FC_FAMILY)) {
        std::optional<std::tuple<std::string, int, int>> result;
        if (fonts->nfont > 0) {
            // The family as font-config spells it, so "dejavu sans" describes "DejaVu Sans".
            std::string family = name;
            FcChar8* value = nullptr;
            for (int i = 0;
                 FcPatternGetString(fonts->fonts[0], FC_FAMILY, i, &value) == FcResultMatch; ++i) {
                if (sameFamilyName(reinterpret_cast<const char*>(value), name)) {
                    family = reinterpret_cast<const char*>(value);
                    break;
                }
            }
            result = std::make_tuple(family, int(PANGO_WEIGHT_NORMAL), int(PANGO_STYLE_NORMAL));
        }
        FcFontSetDestroy(fonts);
        if (result) {
            return result;
        }
    }
    if (FcFontSet* fonts = list(FC_POSTSCRIPT_NAME)) {
        std::optional<std::tuple<std::string, int, int>> result;
        if (fonts->nfont > 0) {
            FcPattern* face = fonts->fonts[0];
            FcChar8* family = nullptr;
            int weight = FC_WEIGHT_REGULAR;
            int slant = FC_SLANT_ROMAN;
            FcPatternGetInteger(face, FC_WEIGHT, 0, &weight);
            FcPatternGetInteger(face, FC_SLANT, 0, &slant);
            if (FcPatternGetString(face, FC_FAMILY, 0, &family) == FcResultMatch) {
                result = std::make_tuple(std::string(reinterpret_cast<const char*>(family)),
                                         pangoWeightFromFontconfig(weight),
                                         pangoStyleFromFontconfig(slant));
            }
        }
        FcFontSetDestroy(fonts);
        return result;
    }
    return std::nullopt;
}

}  // namespace

// --- VLXFont -----------------------------------------------------------------------------------

VLXFont::VLXFont() {
    static const std::shared_ptr<const Record> record =
        sharedRecord(kSystemFamilies, PANGO_WEIGHT_NORMAL, PANGO_STYLE_NORMAL, defaultPointSize);
    m_record = record;
}

VLXFont VLXFont::systemFontOfSize(double size) {
    return VLXFont(sharedRecord(kSystemFamilies, PANGO_WEIGHT_NORMAL, PANGO_STYLE_NORMAL, size));
}

VLXFont VLXFont::boldSystemFontOfSize(double size) {
    return VLXFont(sharedRecord(kSystemFamilies, PANGO_WEIGHT_BOLD, PANGO_STYLE_NORMAL, size));
}

std::optional<VLXFont> VLXFont::fontWithName(std::string_view name, double size) {
    if (name.empty() || name.find('\0') != std::string_view::npos ||
        !g_utf8_validate(name.data(), static_cast<gssize>(name.size()), nullptr)) {
        return std::nullopt;
    }
    RecordTable& table = recordTable();
    std::optional<std::tuple<std::string, int, int>> resolved;
    bool known = false;
    {
        std::lock_guard lock(table.mutex);
        auto found = table.names.find(name);
        if (found != table.names.end()) {
            resolved = found->second;
            known = true;
        }
    }
    if (!known) {
        std::string key(name);
        resolved = resolveName(key);
        std::lock_guard lock(table.mutex);
        if (table.names.size() >= kRecordTableLimit) {
            table.names.clear();
        }
        table.names.emplace(std::move(key), resolved);
    }
    if (!resolved) {
        return std::nullopt;
    }
    const auto& [family, weight, style] = *resolved;
    return VLXFont(sharedRecord(family, weight, style, size));
}

VLXFont VLXFont::fontWithSize(double size) const {
    return VLXFont(sharedRecord(m_record->families, m_record->weight, m_record->style, size));
}

const std::string& VLXFont::familyName() const {
    return m_record->familyName;
}

const std::string& VLXFont::fontName() const {
    return m_record->fontName;
}

double VLXFont::pointSize() const {
    return m_record->pointSize;
}

bool VLXFont::isBold() const {
    return m_record->weight >= PANGO_WEIGHT_SEMIBOLD;
}

bool VLXFont::isItalic() const {
    return m_record->style != PANGO_STYLE_NORMAL;
}

double VLXFont::ascender() const {
    return m_record->ascender;
}

double VLXFont::descender() const {
    return m_record->descender;
}

double VLXFont::leading() const {
    return m_record->leading;
}

double VLXFont::lineHeight() const {
    return m_record->lineHeight;
}

double VLXFont::capHeight() const {
    return m_record->capHeight;
}

double VLXFont::xHeight() const {
    return m_record->xHeight;
}

const PangoFontDescription* VLXFont::pangoFontDescription() const {
    return m_record->description;
}

std::string VLXFont::description() const {
    char size[64];
    std::snprintf(size, sizeof size, "%.2f", m_record->pointSize);
    return "<VLXFont: font-family: \"" + m_record->familyName +
           "\"; font-weight: " + (isBold() ? "bold" : "normal") +
           "; font-style: " + (isItalic() ? "italic" : "normal") + "; font-size: " + size + "pt>";
}

bool operator==(const VLXFont& a, const VLXFont& b) {
    if (a.m_record == b.m_record) {
        return true;
    }
    const VLXFont::Record& x = *a.m_record;
    const VLXFont::Record& y = *b.m_record;
    return x.families == y.families && x.weight == y.weight && x.style == y.style &&
           x.pointSize == y.pointSize;
}

std::ostream& operator<<(std::ostream& os, const VLXFont& font) {
    return os << font.description();
}

// --- engine ------------------------------------------------------------------------------------

PangoContext* vlx::detail::threadPangoContext() {
    thread_local ThreadEngine engine;
    return engine.context;
}

vlx::detail::VLXTextEngineCounters vlx::detail::textEngineCounters() {
    return VLXTextEngineCounters{gFontMapsCreated.load(), gFontDescriptionsCreated.load(),
                                 gLayoutsCreated.load()};
}

void vlx::detail::countLayoutCreated() {
    ++gLayoutsCreated;
}
