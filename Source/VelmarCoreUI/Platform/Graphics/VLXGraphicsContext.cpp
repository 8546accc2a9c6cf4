#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>

#include <cairo-pdf.h>
#include <cairo-svg.h>
#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

#include <VelmarCoreUI/Platform/Graphics/Private/VLXDevicePath.h>
#include <VelmarCoreUI/Platform/Graphics/Private/VLXPolylineReduction.h>
#include <VelmarCoreUI/Platform/Graphics/Private/VLXPolylineStroker.h>
#include <VelmarCoreUI/Platform/Graphics/Private/VLXShadowBlur.h>
#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>

namespace {

using vlx::detail::DevicePath;
using vlx::detail::DeviceWindow;
using vlx::detail::Subpath;
using vlx::detail::VLXPolylineStroker;
using vlx::detail::VLXShadowBlur;

constexpr double kMaximumPixelsPerSide = 32767;  // cairo's limit for image surfaces
constexpr double kMaximumPixels = double(1 << 28);
// Pixels per point outside this range make no sense, and the far ends give cairo base matrices
// it cannot invert.
constexpr double kMinimumScale = 1.0 / 1024;
constexpr double kMaximumScale = 1024;
// A pen wider than this covers any surface cairo can make; wider ones only cost time.
constexpr double kMaximumDeviceLineWidth = 1 << 20;
// Shadows blur by at most this many device pixels (sigma); beyond it they are invisible anyway.
constexpr double kMaximumShadowSigma = 200;
// Wider blurs are computed on a mask scaled down to this width and stretched back: a wide blur
// has no detail to lose, and its cost then stays that of the small mask.
constexpr double kExactShadowSigma = 16;
// Strokes with more line segments than this (in subpaths made of lines only) go through the
// piecewise stroker; below it cairo's own single stroke is as fast and exact by definition.
constexpr std::size_t kLongStrokeSegments = 2000;
// A dashed stroke draws its dashes only while they average at most this many per device pixel
// of path (and there are at most kMaximumDashes of them); finer patterns cannot be seen as
// dashes and are drawn as a solid line thinned to the pattern's duty cycle, so that no pattern
// costs more than the pixels its path covers.
constexpr double kMaximumDashesPerPixel = 2;
constexpr double kMaximumDashes = 4e6;
// Device pixels around a bitmap that fills and clips are cut to: beyond the surface nothing
// shows, and cairo then only ever sees coordinates near it.
constexpr double kWindowMargin = 4;
// Image rectangles thinner than cairo's coordinate grid (1/256 px) on the device cover no
// sample; they draw nothing rather than give cairo a matrix it cannot invert.
constexpr double kMinimumImageDeviceSide = 1.0 / 256;
// Stored image pixels per device pixel beyond which images are averaged down before drawing
// (pixman's 16.16 matrices end at 32 768).
constexpr double kMaximumImageMinification = 4096;

struct RGBA {
    double r = 0, g = 0, b = 0, a = 1;
};

double unitInterval(double value) {
    if (std::isnan(value)) {
        return 0;
    }
    return std::clamp(value, 0.0, 1.0);
}

// Monochrome and RGB colours convert exactly; any other model (or a malformed colour) draws as
// black with the colour's alpha, since there is no colour management behind the toolkit.
RGBA toRGBA(const VLXColor& color) {
    double r = 0, g = 0, b = 0, a = 1;
    if (color.getRed(&r, &g, &b, &a)) {
        return {unitInterval(r), unitInterval(g), unitInterval(b), unitInterval(a)};
    }
    return {0, 0, 0, color.numberOfComponents() > 0 ? unitInterval(color.alpha()) : 0};
}

cairo_operator_t operatorFor(VLXBlendMode mode) {
    switch (mode) {
        case VLXBlendMode::Normal:
            return CAIRO_OPERATOR_OVER;
        case VLXBlendMode::Multiply:
            return CAIRO_OPERATOR_MULTIPLY;
        case VLXBlendMode::Screen:
            return CAIRO_OPERATOR_SCREEN;
        case VLXBlendMode::Overlay:
            return CAIRO_OPERATOR_OVERLAY;
        case VLXBlendMode::Darken:
        case VLXBlendMode::PlusDarker:
            return CAIRO_OPERATOR_DARKEN;
        case VLXBlendMode::Lighten:
            return CAIRO_OPERATOR_LIGHTEN;
        case VLXBlendMode::ColorDodge:
            return CAIRO_OPERATOR_COLOR_DODGE;
        case VLXBlendMode::ColorBurn:
            return CAIRO_OPERATOR_COLOR_BURN;
        case VLXBlendMode::SoftLight:
            return CAIRO_OPERATOR_SOFT_LIGHT;
        case VLXBlendMode::HardLight:
            return CAIRO_OPERATOR_HARD_LIGHT;
        case VLXBlendMode::Difference:
            return CAIRO_OPERATOR_DIFFERENCE;
        case VLXBlendMode::Exclusion:
            return CAIRO_OPERATOR_EXCLUSION;
        case VLXBlendMode::Hue:
            return CAIRO_OPERATOR_HSL_HUE;
        case VLXBlendMode::Saturation:
            return CAIRO_OPERATOR_HSL_SATURATION;
        case VLXBlendMode::Color:
            return CAIRO_OPERATOR_HSL_COLOR;
        case VLXBlendMode::Luminosity:
            return CAIRO_OPERATOR_HSL_LUMINOSITY;
        case VLXBlendMode::Clear:
            return CAIRO_OPERATOR_CLEAR;
        case VLXBlendMode::Copy:
            return CAIRO_OPERATOR_SOURCE;
        case VLXBlendMode::SourceIn:
            return CAIRO_OPERATOR_IN;
        case VLXBlendMode::SourceOut:
            return CAIRO_OPERATOR_OUT;
        case VLXBlendMode::SourceAtop:
            return CAIRO_OPERATOR_ATOP;
        case VLXBlendMode::DestinationOver:
            return CAIRO_OPERATOR_DEST_OVER;
        case VLXBlendMode::DestinationIn:
            return CAIRO_OPERATOR_DEST_IN;
        case VLXBlendMode::DestinationOut:
            return CAIRO_OPERATOR_DEST_OUT;
        case VLXBlendMode::DestinationAtop:
            return CAIRO_OPERATOR_DEST_ATOP;
        case VLXBlendMode::XOR:
            return CAIRO_OPERATOR_XOR;
        case VLXBlendMode::PlusLighter:
            return CAIRO_OPERATOR_ADD;
    }
    return CAIRO_OPERATOR_OVER;
}

// Usable for drawing: finite and comfortably invertible, so that cairo never sees a matrix it
// rejects and pens stay bounded.
bool isUsableMatrix(const VLXAffineTransform& m) {
    if (!(std::isfinite(m.a) && std::isfinite(m.b) && std::isfinite(m.c) && std::isfinite(m.d) &&
          std::isfinite(m.tx) && std::isfinite(m.ty))) {
        return false;
    }
    const double det = m.a * m.d - m.b * m.c;
    return std::isfinite(det) && std::fabs(det) >= 1e-14;
}

// The largest factor by which the matrix stretches a vector.
double largestStretch(const VLXAffineTransform& m) {
    const double sum = m.a * m.a + m.b * m.b + m.c * m.c + m.d * m.d;
    const double det = m.a * m.d - m.b * m.c;
    const double root = std::sqrt(std::max(0.0, sum * sum - 4 * det * det));
    return std::sqrt((sum + root) / 2);
}

cairo_matrix_t cairoMatrix(const VLXAffineTransform& m) {
    cairo_matrix_t matrix;
    cairo_matrix_init(&matrix, m.a, m.b, m.c, m.d, m.tx, m.ty);
    return matrix;
}

// Dash lengths cairo accepts, or none, into `dash` (its storage reused): a negative or non-finite
// length, or only zeros, means a solid line.
void assignSanitizedDash(std::span<const double> lengths, std::vector<double>& dash) {
    dash.clear();
    bool anyPositive = false;
    for (double length : lengths) {
        if (!std::isfinite(length) || length < 0) {
            return;
        }
        anyPositive = anyPositive || length > 0;
    }
    if (anyPositive) {
        dash.assign(lengths.begin(), lengths.end());
    }
}

cairo_status_t appendToString(void* closure, const unsigned char* data, unsigned int length) {
    static_cast<std::string*>(closure)->append(reinterpret_cast<const char*>(data), length);
    return CAIRO_STATUS_SUCCESS;
}

std::size_t linesOnlySegments(const std::vector<Subpath>& subpaths) {
    std::size_t segments = 0;
    for (const Subpath& subpath : subpaths) {
        if (subpath.finite && subpath.linesOnly) {
            segments += subpath.pointEnd - subpath.pointBegin - 1 + (subpath.closed ? 1 : 0);
        }
    }
    return segments;
}

// A non-owning reference to a drawing callable, so that every fill and stroke does not allocate
// a std::function; only valid during the call it is passed to.
class DrawingRef {
public:
    template <class F>
    DrawingRef(const F& function)  // NOLINT: implicit on purpose, like std::function
        : m_object(&function), m_call([](const void* object, cairo_t* target, double opacity) {
              (*static_cast<const F*>(object))(target, opacity);
          }) {}
    void operator()(cairo_t* target, double opacity) const { m_call(m_object, target, opacity); }

private:
    const void* m_object;
    void (*m_call)(const void*, cairo_t*, double);
};

// Premultiplied pixels averaged over boxes of boxWidth × boxHeight (smaller at the right and
// bottom edges), giving width × height pixels.
std::vector<std::uint32_t> averagedBoxes(std::span<const std::uint32_t> pixels, int pixelWidth,
                                         int pixelHeight, int boxWidth, int boxHeight, int width,
                                         int height) {
    std::vector<std::uint32_t> result(static_cast<std::size_t>(width) * height);
    std::vector<std::uint64_t> sums(static_cast<std::size_t>(width) * 4);
    for (int by = 0; by < height; ++by) {
        std::fill(sums.begin(), sums.end(), 0);
        const int top = by * boxHeight, bottom = std::min(pixelHeight, top + boxHeight);
        for (int y = top; y < bottom; ++y) {
            const std::uint32_t* row = pixels.data() + static_cast<std::size_t>(y) * pixelWidth;
            for (int bx = 0; bx < width; ++bx) {
                std::uint64_t* sum = &sums[static_cast<std::size_t>(bx) * 4];
                const int end = std::min(pixelWidth, (bx + 1) * boxWidth);
                for (int x = bx * boxWidth; x < end; ++x) {
                    const std::uint32_t word = row[x];
                    sum[0] += word & 0xff;
                    sum[1] += (word >> 8) & 0xff;
                    sum[2] += (word >> 16) & 0xff;
                    sum[3] += word >> 24;
                }
            }
        }
        for (int bx = 0; bx < width; ++bx) {
            const std::uint64_t count = static_cast<std::uint64_t>(bottom - top) *
                                        (std::min(pixelWidth, (bx + 1) * boxWidth) - bx * boxWidth);
            std::uint32_t word = 0;
            for (int channel = 0; channel < 4; ++channel) {
                const std::uint64_t sum = sums[static_cast<std::size_t>(bx) * 4 + channel];
                word |= static_cast<std::uint32_t>((sum + count / 2) / count) << (channel * 8);
            }
            result[static_cast<std::size_t>(by) * width + bx] = word;
        }
    }
    return result;
}

struct IntRect {
    int x = 0, y = 0, width = 0, height = 0;
    bool isEmpty() const { return width <= 0 || height <= 0; }
};

}  // namespace

struct VLXGraphicsContext::State {
    VLXAffineTransform ctm = VLXAffineTransformIdentity;
    VLXColor fillColor;
    VLXColor strokeColor;
    double lineWidth = 1;
    VLXLineCap lineCap = VLXLineCap::Butt;
    VLXLineJoin lineJoin = VLXLineJoin::Miter;
    double miterLimit = 10;
    std::vector<double> dash;
    double dashPhase = 0;
    double alpha = 1;
    VLXBlendMode blendMode = VLXBlendMode::Normal;
    bool shadowOn = false;
    VLXSize shadowOffset;
    double shadowBlur = 0;
    RGBA shadowColor{0, 0, 0, 1.0 / 3.0};
    bool antialias = true;
};

struct VLXGraphicsContext::Impl {
    cairo_t* cr = nullptr;
    cairo_surface_t* surface = nullptr;
    VLXGraphicsContextKind kind = VLXGraphicsContextKind::Bitmap;
    double scale = 1;
    bool opaque = false;
    int deviceWidth = 0;
    int deviceHeight = 0;
    bool failed = false;
    bool finished = false;
    std::string document;
    State state;
    std::vector<State> saved;
    DevicePath path;
    DevicePath reduced;                   // reused by thin long strokes
    std::vector<Subpath> fillSubpaths;    // reused by every fill and clip
    std::vector<Subpath> strokeSubpaths;  // reused by every stroke
    std::vector<VLXPoint> scratch;
    std::vector<VLXPoint> clipped;  // reused by fills cut to the window

    ~Impl() {
        if (cr != nullptr) {
            if (kind != VLXGraphicsContextKind::Bitmap && !finished) {
                finishDocument();
            }
            cairo_destroy(cr);
        }
        if (surface != nullptr) {
            cairo_surface_destroy(surface);  // finishes documents, writing into `document`
        }
    }

    bool canDraw() const { return cr != nullptr && !failed && !finished; }

    // The page is shown before finishing: cairo 1.16's SVG surface leaks the groups of a page
    // that only its finish emits.
    void finishDocument() {
        finished = true;
        cairo_show_page(cr);
        cairo_surface_finish(surface);
    }

    void check() {
        if (cr != nullptr && (cairo_status(cr) != CAIRO_STATUS_SUCCESS ||
                              cairo_surface_status(surface) != CAIRO_STATUS_SUCCESS)) {
            failed = true;
        }
    }

    VLXAffineTransform deviceMatrix() const {
        return VLXAffineTransformConcat(state.ctm, VLXAffineTransformMakeScale(scale, scale));
    }

    // Cairo's own matrix follows the CTM whenever it is usable, for hosts drawing straight into
    // the cairo context; our own drawing sets what it needs.
    void syncMatrix() {
        if (cr == nullptr || failed) {
            return;
        }
        const VLXAffineTransform m = deviceMatrix();
        if (isUsableMatrix(m)) {
            const cairo_matrix_t matrix = cairoMatrix(m);
            cairo_set_matrix(cr, &matrix);
        } else {
            cairo_identity_matrix(cr);
            cairo_scale(cr, scale, scale);
        }
    }

    VLXPoint toDevice(VLXPoint p) const { return VLXPointApplyAffineTransform(p, deviceMatrix()); }

    // What can still show on the device: a bitmap with a small margin; for documents, the
    // coordinate range every path is kept within.
    DeviceWindow window() const {
        if (kind == VLXGraphicsContextKind::Bitmap) {
            return DeviceWindow{-kWindowMargin, -kWindowMargin, deviceWidth + kWindowMargin,
                                deviceHeight + kWindowMargin};
        }
        constexpr double limit = vlx::detail::kDeviceCoordinateLimit;
        return DeviceWindow{-limit, -limit, limit, limit};
    }

    // The current path as an area (fill or clip), cut to the window.
    void emitPath(cairo_t* c) { emitArea(c, path); }

    void emitArea(cairo_t* c, const DevicePath& area) {
        cairo_new_path(c);
        subpathsOf(area, fillSubpaths);
        const DeviceWindow w = window();
        for (const Subpath& subpath : fillSubpaths) {
            if (subpath.finite) {
                vlx::detail::emitFillSubpath(c, area, subpath, w, scratch, clipped);
            }
        }
    }

    // The clip's extent in device pixels, within the surface.
    IntRect clipRegion() {
        double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
        cairo_save(cr);
        cairo_identity_matrix(cr);
        cairo_clip_extents(cr, &x1, &y1, &x2, &y2);
        cairo_restore(cr);
        auto clampTo = [](double v, int limit) {
            return std::isnan(v) ? 0.0 : std::clamp(v, 0.0, static_cast<double>(limit));
        };
        const double left = std::floor(clampTo(x1, deviceWidth));
        const double top = std::floor(clampTo(y1, deviceHeight));
        const double right = std::ceil(clampTo(x2, deviceWidth));
        const double bottom = std::ceil(clampTo(y2, deviceHeight));
        return IntRect{static_cast<int>(left), static_cast<int>(top),
                       static_cast<int>(right - left), static_cast<int>(bottom - top)};
    }

    // Content composited over its shadow, as a new pattern.
    cairo_pattern_t* addShadow(cairo_pattern_t* content) {
        const IntRect region = clipRegion();
        const double dx = state.shadowOffset.width * scale;
        const double dy = state.shadowOffset.height * scale;
        const double sigma = std::min(kMaximumShadowSigma, state.shadowBlur / 2 * scale);
        const int margin = sigma > 0 ? static_cast<int>(std::ceil(3 * sigma)) + 2 : 0;
        const bool visible = !region.isEmpty() && std::fabs(dx) < deviceWidth + 2.0 * margin &&
                             std::fabs(dy) < deviceHeight + 2.0 * margin;
        const double reduction = shadowMaskReduction(sigma);
        cairo_surface_t* mask =
            visible ? offscreen(CAIRO_FORMAT_A8, region, margin, reduction) : nullptr;
        if (mask == nullptr) {
            return cairo_pattern_reference(content);
        }
        cairo_t* maskContext = cairo_create(mask);
        cairo_set_source(maskContext, content);
        cairo_paint(maskContext);
        cairo_destroy(maskContext);
        cairo_surface_flush(mask);
        VLXShadowBlur::blurAlpha(cairo_image_surface_get_data(mask),
                                 cairo_image_surface_get_width(mask),
                                 cairo_image_surface_get_height(mask),
                                 cairo_image_surface_get_stride(mask), sigma * reduction);
        cairo_surface_mark_dirty(mask);

        cairo_push_group(cr);
        cairo_set_operator(cr, CAIRO_OPERATOR_OVER);
        const RGBA& c = state.shadowColor;
        cairo_set_source_rgba(cr, c.r, c.g, c.b, c.a);
        cairo_mask_surface(cr, mask, dx, dy);
        cairo_set_source(cr, content);
        cairo_paint(cr);
        cairo_pattern_t* result = cairo_pop_group(cr);
        cairo_surface_destroy(mask);
        return result;
    }

    // The scale of a shadow mask for a blur of `sigma` pixels: 1 up to kExactShadowSigma, then
    // smaller so that the mask's own blur stays at that width.
    static double shadowMaskReduction(double sigma) {
        return sigma > kExactShadowSigma ? kExactShadowSigma / sigma : 1;
    }

    // A surface for drawing in device space off the target: `c` draws into it with the same
    // coordinates (through the device offset), at `resolution` pixels per device unit.
    static cairo_surface_t* offscreen(cairo_format_t format, const IntRect& area, int margin,
                                      double resolution) {
        cairo_surface_t* surface = cairo_image_surface_create(
            format, static_cast<int>(std::ceil((area.width + 2 * margin) * resolution)),
            static_cast<int>(std::ceil((area.height + 2 * margin) * resolution)));
        if (cairo_surface_status(surface) != CAIRO_STATUS_SUCCESS) {
            cairo_surface_destroy(surface);
            return nullptr;
        }
        cairo_surface_set_device_scale(surface, resolution, resolution);
        cairo_surface_set_device_offset(surface, -(area.x - margin) * resolution,
                                        -(area.y - margin) * resolution);
        return surface;
    }

    using Drawing = DrawingRef;

    // Documents: shadows and opacity without cairo groups. Cairo 1.16's SVG surface leaks what
    // a group replays (and corrupts later documents' groups), so the shadow mask is drawn
    // offscreen, the drawing then goes straight onto the page (alpha and blend mode apply to
    // the shadow and the drawing one after the other), and a drawing that cannot fold the alpha
    // in is rasterised at four pixels per point.
    void performInDocument(const Drawing& draw, bool foldsOpacity, cairo_operator_t op) {
        const IntRect region = clipRegion();
        if (region.isEmpty()) {
            return;
        }
        if (state.shadowOn) {
            // Two pixels per point, fewer for wide blurs (see shadowMaskReduction).
            const double fullSigma = std::min(kMaximumShadowSigma, state.shadowBlur / 2 * 2);
            const double resolution = 2 * shadowMaskReduction(fullSigma);
            const double sigma = fullSigma * shadowMaskReduction(fullSigma);
            const int margin =
                sigma > 0 ? static_cast<int>(std::ceil((3 * sigma + 2) / resolution)) : 0;
            // A shadow offset off the page costs its whole blur and shows nothing.
            const double ox = state.shadowOffset.width, oy = state.shadowOffset.height;
            const bool visible =
                region.x - margin + ox < deviceWidth && region.x + region.width + margin + ox > 0 &&
                region.y - margin + oy < deviceHeight && region.y + region.height + margin + oy > 0;
            cairo_surface_t* mask =
                visible ? offscreen(CAIRO_FORMAT_A8, region, margin, resolution) : nullptr;
            if (mask != nullptr) {
                cairo_t* maskContext = cairo_create(mask);
                draw(maskContext, 1);
                cairo_destroy(maskContext);
                cairo_surface_flush(mask);
                VLXShadowBlur::blurAlpha(cairo_image_surface_get_data(mask),
                                         cairo_image_surface_get_width(mask),
                                         cairo_image_surface_get_height(mask),
                                         cairo_image_surface_get_stride(mask), sigma);
                cairo_surface_mark_dirty(mask);
                const RGBA& color = state.shadowColor;
                cairo_set_operator(cr, op);
                cairo_set_source_rgba(cr, color.r, color.g, color.b, color.a * state.alpha);
                cairo_mask_surface(cr, mask, state.shadowOffset.width, state.shadowOffset.height);
                cairo_surface_destroy(mask);
            }
        }
        cairo_set_operator(cr, op);
        if (state.alpha >= 1 || foldsOpacity) {
            draw(cr, state.alpha);
            return;
        }
        constexpr double resolution = 4;
        if (cairo_surface_t* layer = offscreen(CAIRO_FORMAT_ARGB32, region, 0, resolution)) {
            cairo_t* layerContext = cairo_create(layer);
            draw(layerContext, 1);
            cairo_destroy(layerContext);
            cairo_set_source_surface(cr, layer, 0, 0);
            cairo_paint_with_alpha(cr, state.alpha);
            cairo_surface_destroy(layer);
        }
    }

    // One drawing operation with the state's alpha, blend mode and shadow. `draw` draws into the
    // cairo context it is given, in device space (identity matrix), compositing with the
    // operator already set; it gets the opacity to fold into its colours (1 inside a group).
    // When it cannot fold opacity (`foldsOpacity` false) a group is used whenever the alpha is
    // below 1.
    void perform(const Drawing& draw, bool foldsOpacity) {
        cairo_identity_matrix(cr);
        cairo_new_path(cr);
        const cairo_operator_t op = operatorFor(state.blendMode);
        const bool grouped = state.shadowOn || (state.alpha < 1 && !foldsOpacity);
        if (!grouped) {
            cairo_set_operator(cr, op);
            draw(cr, state.alpha);
        } else if (kind != VLXGraphicsContextKind::Bitmap) {
            performInDocument(draw, foldsOpacity, op);
        } else {
            cairo_push_group(cr);
            cairo_set_operator(cr, CAIRO_OPERATOR_OVER);
            draw(cr, 1);
            cairo_pattern_t* content = cairo_pop_group(cr);
            if (state.shadowOn) {
                cairo_pattern_t* shadowed = addShadow(content);
                cairo_pattern_destroy(content);
                content = shadowed;
            }
            cairo_set_operator(cr, op);
            cairo_set_source(cr, content);
            cairo_paint_with_alpha(cr, state.alpha);
            cairo_pattern_destroy(content);
        }
        cairo_set_operator(cr, CAIRO_OPERATOR_OVER);
        cairo_new_path(cr);
        syncMatrix();
        check();
    }

    void setSource(cairo_t* c, const RGBA& color, double opacity) {
        cairo_set_source_rgba(c, color.r, color.g, color.b, color.a * opacity);
    }

    void fill(cairo_t* c, VLXPathFillRule rule, double opacity) {
        emitPath(c);
        cairo_set_fill_rule(c, rule == VLXPathFillRule::EvenOdd ? CAIRO_FILL_RULE_EVEN_ODD
                                                                : CAIRO_FILL_RULE_WINDING);
        setSource(c, toRGBA(state.fillColor), opacity);
        cairo_fill(c);
    }

    // Sets line width, join and miter limit for stroking with `m`; false when nothing can be
    // drawn.
    bool prepareStroke(cairo_t* c, const VLXAffineTransform& m) {
        double width = state.lineWidth;
        const double stretch = largestStretch(m);
        if (width * stretch > kMaximumDeviceLineWidth) {
            width = kMaximumDeviceLineWidth / stretch;
        }
        cairo_set_line_width(c, width);
        cairo_set_line_join(c, state.lineJoin == VLXLineJoin::Round   ? CAIRO_LINE_JOIN_ROUND
                               : state.lineJoin == VLXLineJoin::Bevel ? CAIRO_LINE_JOIN_BEVEL
                                                                      : CAIRO_LINE_JOIN_MITER);
        cairo_set_miter_limit(c, state.miterLimit);
        return width > 0;
    }

    cairo_line_cap_t cairoCap() const {
        return state.lineCap == VLXLineCap::Round    ? CAIRO_LINE_CAP_ROUND
               : state.lineCap == VLXLineCap::Square ? CAIRO_LINE_CAP_SQUARE
                                                     : CAIRO_LINE_CAP_BUTT;
    }

    // The fraction of a dash pattern that is "on" when its dashes are finer than a person can
    // see on this path (see kMaximumDashesPerPixel), else nothing.
    std::optional<double> subPixelDashDuty(const DevicePath& devicePath,
                                           const std::vector<Subpath>& subpaths,
                                           const VLXAffineTransform& m) {
        if (state.dash.empty()) {
            return std::nullopt;
        }
        // Each dash covers its length plus the caps' reach (round and square caps add half the
        // line width at each end); an odd pattern repeats with on and off swapped, so it counts
        // twice.
        const std::size_t count = state.dash.size() * (state.dash.size() % 2 == 1 ? 2 : 1);
        const double capReach = state.lineCap == VLXLineCap::Butt ? 0 : state.lineWidth;
        double period = 0, on = 0;
        for (std::size_t i = 0; i < count; ++i) {
            const double length = state.dash[i % state.dash.size()];
            period += length;
            on += i % 2 == 0 ? length + capReach : 0;
        }
        const double duty = period > 0 ? std::min(1.0, on / period) : 1.0;
        if (!std::isfinite(period)) {
            return duty;
        }
        // User-space length of the path (curves by their control polygons, an upper bound) and
        // its device length, both over the coordinates cairo gets.
        double userLength = 0, deviceLength = 0;
        for (const Subpath& subpath : subpaths) {
            if (!subpath.finite) {
                continue;
            }
            std::span<const VLXPoint> points{devicePath.points.data() + subpath.pointBegin,
                                             subpath.pointEnd - subpath.pointBegin};
            if (std::any_of(points.begin(), points.end(), [](VLXPoint p) {
                    return std::fabs(p.x) > vlx::detail::kDeviceCoordinateLimit ||
                           std::fabs(p.y) > vlx::detail::kDeviceCoordinateLimit;
                })) {
                scratch.resize(points.size());
                std::transform(points.begin(), points.end(), scratch.begin(), [](VLXPoint p) {
                    return VLXPoint{vlx::detail::clampCoordinate(p.x),
                                    vlx::detail::clampCoordinate(p.y)};
                });
                points = scratch;
            }
            userLength += VLXPolylineStroker::userSpaceLength(points, subpath.closed, m);
            for (std::size_t i = 1; i < points.size(); ++i) {
                deviceLength +=
                    std::hypot(points[i].x - points[i - 1].x, points[i].y - points[i - 1].y);
            }
            if (subpath.closed && points.size() > 1) {
                deviceLength += std::hypot(points.back().x - points.front().x,
                                           points.back().y - points.front().y);
            }
        }
        const double dashes = userLength / period * static_cast<double>(count);
        if (!(dashes <= kMaximumDashes) || dashes > kMaximumDashesPerPixel * deviceLength + 16) {
            return duty;
        }
        return std::nullopt;
    }

    // Strokes the given subpaths as one cairo path, with cairo dashing (`dash` empty: solid).
    void strokePlain(cairo_t* c, const DevicePath& devicePath, const std::vector<Subpath>& subpaths,
                     const VLXAffineTransform& m, bool onlyWithCurves,
                     std::span<const double> dash) {
        cairo_new_path(c);
        bool any = false;
        for (const Subpath& subpath : subpaths) {
            if (subpath.finite && (!onlyWithCurves || !subpath.linesOnly)) {
                emitSubpath(c, devicePath, subpath);
                any = true;
            }
        }
        if (!any) {
            return;
        }
        cairo_set_line_cap(c, cairoCap());
        cairo_set_dash(c, dash.data(), static_cast<int>(dash.size()),
                       dash.empty() ? 0 : state.dashPhase);
        const cairo_matrix_t matrix = cairoMatrix(m);
        cairo_set_matrix(c, &matrix);
        cairo_stroke(c);
        cairo_identity_matrix(c);
        cairo_set_dash(c, nullptr, 0, 0);
    }

    void stroke(cairo_t* c, double opacity) {
        const VLXAffineTransform m = deviceMatrix();
        if (!prepareStroke(c, m)) {
            return;
        }
        std::vector<Subpath>& subpaths = strokeSubpaths;
        subpathsOf(path, subpaths);
        std::size_t lineSegments = linesOnlySegments(subpaths);
        // Dashes finer than a person can see draw as a solid line thinned to their duty cycle.
        std::span<const double> dash = state.dash;
        if (const std::optional<double> duty = subPixelDashDuty(path, subpaths, m)) {
            dash = {};
            opacity *= *duty;
        }
        // Thin solid lines lose nothing visible when the vertices within one pixel column shrink
        // to their extremes (see VLXPolylineReduction.h). Not with miter joins: the spikes of
        // dropped vertices would vanish and the kept extremes grow new ones.
        const DevicePath* source = &path;
        if (kind == VLXGraphicsContextKind::Bitmap && dash.empty() &&
            state.lineJoin != VLXLineJoin::Miter && lineSegments > kLongStrokeSegments &&
            vlx::detail::polylineReductionEnabled() &&
            state.lineWidth * largestStretch(m) <= vlx::detail::kReductionMaximumDeviceWidth &&
            vlx::detail::reduceDevicePath(path, subpaths, kLongStrokeSegments,
                                          vlx::detail::kReductionColumnWidth, reduced,
                                          scratch) > 0) {
            source = &reduced;
            subpathsOf(reduced, subpaths);
            lineSegments = linesOnlySegments(subpaths);
        }
        bool piecewise =
            kind == VLXGraphicsContextKind::Bitmap && lineSegments > kLongStrokeSegments;
        const RGBA color = toRGBA(state.strokeColor);
        if (!piecewise) {
            setSource(c, color, opacity);
            strokePlain(c, *source, subpaths, m, false, dash);
            return;
        }
        // The pieces' coverage is collected in an alpha group, where they add up to exactly one
        // stroke's coverage, and the colour is painted through it once.
        cairo_push_group_with_content(c, CAIRO_CONTENT_ALPHA);
        cairo_set_operator(c, CAIRO_OPERATOR_ADD);
        cairo_set_source_rgba(c, 0, 0, 0, 1);
        strokePlain(c, *source, subpaths, m, true, dash);
        VLXPolylineStroker stroker(c, m, cairo_get_line_width(c), state.lineCap, dash,
                                   state.dashPhase);
        for (const Subpath& subpath : subpaths) {
            if (subpath.finite && subpath.linesOnly) {
                stroker.addSubpath(polylineOf(*source, subpath, scratch), subpath.closed);
            }
        }
        stroker.finish();
        cairo_pattern_t* coverage = cairo_pop_group(c);
        setSource(c, color, opacity);
        cairo_mask(c, coverage);
        cairo_pattern_destroy(coverage);
    }
};

// --- creation ------------------------------------------------------------------------------------

std::shared_ptr<VLXGraphicsContext> VLXGraphicsContext::createBitmap(VLXSize size, double scale,
                                                                     bool opaque) {
    if (!(std::isfinite(size.width) && std::isfinite(size.height) && size.width >= 0 &&
          size.height >= 0 && scale >= kMinimumScale && scale <= kMaximumScale)) {
        return nullptr;
    }
    // A hair of tolerance so that 10.000000001 points at scale 1 stay 10 pixels.
    const double pixelWidth = std::max(0.0, std::ceil(size.width * scale - 1e-9));
    const double pixelHeight = std::max(0.0, std::ceil(size.height * scale - 1e-9));
    if (!(pixelWidth <= kMaximumPixelsPerSide && pixelHeight <= kMaximumPixelsPerSide &&
          pixelWidth * pixelHeight <= kMaximumPixels)) {
        return nullptr;
    }
    auto context = makeInitialized<VLXGraphicsContext>();
    auto impl = std::make_unique<Impl>();
    impl->kind = VLXGraphicsContextKind::Bitmap;
    impl->scale = scale;
    impl->opaque = opaque;
    impl->deviceWidth = static_cast<int>(pixelWidth);
    impl->deviceHeight = static_cast<int>(pixelHeight);
    impl->surface = cairo_image_surface_create(opaque ? CAIRO_FORMAT_RGB24 : CAIRO_FORMAT_ARGB32,
                                               impl->deviceWidth, impl->deviceHeight);
    if (cairo_surface_status(impl->surface) != CAIRO_STATUS_SUCCESS) {
        return nullptr;
    }
    impl->cr = cairo_create(impl->surface);
    if (cairo_status(impl->cr) != CAIRO_STATUS_SUCCESS) {
        return nullptr;
    }
    context->m_cairo = impl->cr;
    context->m_kind = VLXGraphicsContextKind::Bitmap;
    context->m_size = size;
    context->m_scale = scale;
    context->m_impl = std::move(impl);
    context->m_impl->syncMatrix();
    return context;
}

namespace {

template <class Create>
std::shared_ptr<VLXGraphicsContext> makeDocument(VLXSize size, Create create) {
    if (!(std::isfinite(size.width) && std::isfinite(size.height) && size.width > 0 &&
          size.height > 0 && size.width <= vlx::detail::kDeviceCoordinateLimit &&
          size.height <= vlx::detail::kDeviceCoordinateLimit)) {
        return nullptr;
    }
    return create();
}

}  // namespace

std::shared_ptr<VLXGraphicsContext> VLXGraphicsContext::createSVG(VLXSize size) {
    return makeDocument(size, [&]() {
        auto context = makeInitialized<VLXGraphicsContext>();
        context->m_impl = std::make_unique<Impl>();
        Impl& impl = *context->m_impl;
        impl.surface = cairo_svg_surface_create_for_stream(appendToString, &impl.document,
                                                           size.width, size.height);
        return context->finishDocumentSetup(size, VLXGraphicsContextKind::SVG) ? context : nullptr;
    });
}

std::shared_ptr<VLXGraphicsContext> VLXGraphicsContext::createPDF(VLXSize size) {
    return makeDocument(size, [&]() {
        auto context = makeInitialized<VLXGraphicsContext>();
        context->m_impl = std::make_unique<Impl>();
        Impl& impl = *context->m_impl;
        impl.surface = cairo_pdf_surface_create_for_stream(appendToString, &impl.document,
                                                           size.width, size.height);
        return context->finishDocumentSetup(size, VLXGraphicsContextKind::PDF) ? context : nullptr;
    });
}

bool VLXGraphicsContext::finishDocumentSetup(VLXSize size, VLXGraphicsContextKind kind) {
    Impl& impl = *m_impl;
    if (cairo_surface_status(impl.surface) != CAIRO_STATUS_SUCCESS) {
        return false;
    }
    impl.cr = cairo_create(impl.surface);
    if (cairo_status(impl.cr) != CAIRO_STATUS_SUCCESS) {
        return false;
    }
    impl.kind = kind;
    impl.scale = 1;
    impl.deviceWidth = static_cast<int>(std::ceil(size.width));
    impl.deviceHeight = static_cast<int>(std::ceil(size.height));
    m_cairo = impl.cr;
    m_kind = kind;
    m_size = size;
    m_scale = 1;
    return true;
}

VLXGraphicsContext::~VLXGraphicsContext() = default;

bool VLXGraphicsContext::isValid() const {
    return m_impl && m_impl->cr != nullptr && !m_impl->failed;
}

// --- graphics state ------------------------------------------------------------------------------

void VLXGraphicsContext::saveGState() {
    if (!m_impl->canDraw()) {
        return;
    }
    m_impl->saved.push_back(m_impl->state);
    cairo_save(m_cairo);
}

void VLXGraphicsContext::restoreGState() {
    if (!m_impl->canDraw() || m_impl->saved.empty()) {
        return;
    }
    // Copied, not moved: the current dash keeps its storage for the next dashed stroke.
    m_impl->state = m_impl->saved.back();
    m_impl->saved.pop_back();
    cairo_restore(m_cairo);
    m_impl->syncMatrix();
    m_impl->check();
}

void VLXGraphicsContext::translateCTM(double tx, double ty) {
    m_impl->state.ctm = VLXAffineTransformTranslate(m_impl->state.ctm, tx, ty);
    m_impl->syncMatrix();
}

void VLXGraphicsContext::scaleCTM(double sx, double sy) {
    m_impl->state.ctm = VLXAffineTransformScale(m_impl->state.ctm, sx, sy);
    m_impl->syncMatrix();
}

void VLXGraphicsContext::rotateCTM(double angle) {
    m_impl->state.ctm = VLXAffineTransformRotate(m_impl->state.ctm, angle);
    m_impl->syncMatrix();
}

void VLXGraphicsContext::concatCTM(const VLXAffineTransform& transform) {
    m_impl->state.ctm = VLXAffineTransformConcat(transform, m_impl->state.ctm);
    m_impl->syncMatrix();
}

VLXAffineTransform VLXGraphicsContext::CTM() const {
    return m_impl->state.ctm;
}

void VLXGraphicsContext::setFillColor(const VLXColor& color) {
    m_impl->state.fillColor = color;
}

void VLXGraphicsContext::setStrokeColor(const VLXColor& color) {
    m_impl->state.strokeColor = color;
}

VLXColor VLXGraphicsContext::fillColor() const {
    return m_impl->state.fillColor;
}

VLXColor VLXGraphicsContext::strokeColor() const {
    return m_impl->state.strokeColor;
}

void VLXGraphicsContext::setLineWidth(double width) {
    if (std::isfinite(width) && width >= 0) {
        m_impl->state.lineWidth = width;
    }
}

void VLXGraphicsContext::setLineCap(VLXLineCap cap) {
    m_impl->state.lineCap = cap;
}

void VLXGraphicsContext::setLineJoin(VLXLineJoin join) {
    m_impl->state.lineJoin = join;
}

void VLXGraphicsContext::setMiterLimit(double limit) {
    if (std::isfinite(limit) && limit >= 0) {
        m_impl->state.miterLimit = limit;
    }
}

void VLXGraphicsContext::setLineDash(double phase, std::span<const double> lengths) {
    assignSanitizedDash(lengths, m_impl->state.dash);
    m_impl->state.dashPhase = std::isfinite(phase) ? phase : 0;
}

void VLXGraphicsContext::setAlpha(double alpha) {
    if (!std::isnan(alpha)) {
        m_impl->state.alpha = std::clamp(alpha, 0.0, 1.0);
    }
}

void VLXGraphicsContext::setBlendMode(VLXBlendMode mode) {
    m_impl->state.blendMode = mode;
}

VLXBlendMode VLXGraphicsContext::blendMode() const {
    return m_impl->state.blendMode;
}

void VLXGraphicsContext::setShadow(VLXSize offset, double blur, std::optional<VLXColor> color) {
    State& state = m_impl->state;
    state.shadowColor = color ? toRGBA(*color) : RGBA{0, 0, 0, 1.0 / 3.0};
    state.shadowOffset = offset;
    state.shadowBlur = std::isnan(blur) ? 0 : std::max(0.0, blur);
    state.shadowOn = state.shadowColor.a > 0 && std::isfinite(offset.width) &&
                     std::isfinite(offset.height) &&
                     (offset.width != 0 || offset.height != 0 || state.shadowBlur > 0);
}

void VLXGraphicsContext::setShouldAntialias(bool antialias) {
    m_impl->state.antialias = antialias;
    if (m_impl->canDraw()) {
        cairo_set_antialias(m_cairo, antialias ? CAIRO_ANTIALIAS_DEFAULT : CAIRO_ANTIALIAS_NONE);
    }
}

// --- current path --------------------------------------------------------------------------------

void VLXGraphicsContext::beginPath() {
    m_impl->path.clear();
}

void VLXGraphicsContext::addPath(const VLXPath& path) {
    const auto types = path.elementTypes();
    const auto points = path.points();
    DevicePath& target = m_impl->path;
    target.ops.reserve(target.ops.size() + types.size());
    target.points.reserve(target.points.size() + points.size());
    const VLXAffineTransform m = m_impl->deviceMatrix();
    auto at = [&](std::size_t i) { return VLXPointApplyAffineTransform(points[i], m); };
    std::size_t p = 0;
    for (const VLXPathElementType type : types) {
        const std::size_t count = VLXPathElementPointCount(type);
        if (p + count > points.size()) {
            break;  // storage out of step with the types: keep what was consistent
        }
        switch (type) {
            case VLXPathElementType::MoveToPoint:
                target.moveTo(at(p));
                break;
            case VLXPathElementType::AddLineToPoint:
                target.lineTo(at(p));
                break;
            case VLXPathElementType::AddQuadCurveToPoint:
                target.quadTo(at(p), at(p + 1));
                break;
            case VLXPathElementType::AddCurveToPoint:
                target.curveTo(at(p), at(p + 1), at(p + 2));
                break;
            case VLXPathElementType::CloseSubpath:
                target.close();
                break;
        }
        p += count;
    }
}

void VLXGraphicsContext::moveToPoint(VLXPoint point) {
    m_impl->path.moveTo(m_impl->toDevice(point));
}

void VLXGraphicsContext::addLineToPoint(VLXPoint point) {
    m_impl->path.lineTo(m_impl->toDevice(point));
}

void VLXGraphicsContext::addCurveToPoint(VLXPoint control1, VLXPoint control2, VLXPoint end) {
    m_impl->path.curveTo(m_impl->toDevice(control1), m_impl->toDevice(control2),
                         m_impl->toDevice(end));
}

void VLXGraphicsContext::addQuadCurveToPoint(VLXPoint control, VLXPoint end) {
    m_impl->path.quadTo(m_impl->toDevice(control), m_impl->toDevice(end));
}

void VLXGraphicsContext::addRect(const VLXRect& rect) {
    if (rect.isNull()) {
        return;
    }
    const VLXRect r = rect.standardized();
    const double minX = r.origin.x, minY = r.origin.y;
    const double maxX = minX + r.size.width, maxY = minY + r.size.height;
    moveToPoint(VLXPointMake(minX, minY));
    addLineToPoint(VLXPointMake(maxX, minY));
    addLineToPoint(VLXPointMake(maxX, maxY));
    addLineToPoint(VLXPointMake(minX, maxY));
    closePath();
}

void VLXGraphicsContext::addEllipseInRect(const VLXRect& rect) {
    if (rect.isNull()) {
        return;
    }
    const VLXRect r = rect.standardized();
    // Four quarter turns from (maxX, midY), with the usual cubic circle constant.
    constexpr double kappa = 0.5522847498307936;
    const double cx = r.origin.x + r.size.width / 2, cy = r.origin.y + r.size.height / 2;
    const double rx = r.size.width / 2, ry = r.size.height / 2;
    const double kx = rx * kappa, ky = ry * kappa;
    moveToPoint(VLXPointMake(cx + rx, cy));
    addCurveToPoint(VLXPointMake(cx + rx, cy + ky), VLXPointMake(cx + kx, cy + ry),
                    VLXPointMake(cx, cy + ry));
    addCurveToPoint(VLXPointMake(cx - kx, cy + ry), VLXPointMake(cx - rx, cy + ky),
                    VLXPointMake(cx - rx, cy));
    addCurveToPoint(VLXPointMake(cx - rx, cy - ky), VLXPointMake(cx - kx, cy - ry),
                    VLXPointMake(cx, cy - ry));
    addCurveToPoint(VLXPointMake(cx + kx, cy - ry), VLXPointMake(cx + rx, cy - ky),
                    VLXPointMake(cx + rx, cy));
    closePath();
}

void VLXGraphicsContext::closePath() {
    m_impl->path.close();
}

bool VLXGraphicsContext::isPathEmpty() const {
    return m_impl->path.ops.empty();
}

// --- painting ------------------------------------------------------------------------------------

void VLXGraphicsContext::fillPath(VLXPathFillRule rule) {
    drawPath(rule == VLXPathFillRule::EvenOdd ? VLXPathDrawingMode::EOFill
                                              : VLXPathDrawingMode::Fill);
}

void VLXGraphicsContext::strokePath() {
    drawPath(VLXPathDrawingMode::Stroke);
}

void VLXGraphicsContext::drawPath(VLXPathDrawingMode mode) {
    Impl& impl = *m_impl;
    if (!impl.canDraw() || impl.path.ops.empty()) {
        impl.path.clear();
        return;
    }
    const bool fills = mode != VLXPathDrawingMode::Stroke;
    const VLXPathFillRule rule =
        mode == VLXPathDrawingMode::EOFill || mode == VLXPathDrawingMode::EOFillStroke
            ? VLXPathFillRule::EvenOdd
            : VLXPathFillRule::Winding;
    // Strokes need the CTM for their pen: while it is singular they are skipped.
    const bool strokes = mode == VLXPathDrawingMode::Stroke ||
                         mode == VLXPathDrawingMode::FillStroke ||
                         mode == VLXPathDrawingMode::EOFillStroke;
    const bool canStroke = strokes && isUsableMatrix(impl.deviceMatrix());
    if (fills || canStroke) {
        // Filling and stroking overlap, so an alpha below 1 needs one group for both (documents
        // fold it into each instead).
        impl.perform(
            [&](cairo_t* target, double opacity) {
                if (fills) {
                    impl.fill(target, rule, opacity);
                }
                if (canStroke) {
                    impl.stroke(target, opacity);
                }
            },
            !(fills && canStroke) || m_kind != VLXGraphicsContextKind::Bitmap);
    }
    impl.path.clear();
}

void VLXGraphicsContext::clip(VLXPathFillRule rule) {
    Impl& impl = *m_impl;
    if (!impl.canDraw()) {
        impl.path.clear();
        return;
    }
    cairo_identity_matrix(m_cairo);
    impl.emitPath(m_cairo);
    cairo_set_fill_rule(m_cairo, rule == VLXPathFillRule::EvenOdd ? CAIRO_FILL_RULE_EVEN_ODD
                                                                  : CAIRO_FILL_RULE_WINDING);
    cairo_clip(m_cairo);
    impl.path.clear();
    impl.syncMatrix();
    impl.check();
}

namespace {

// Runs `body` on a fresh current path, putting the caller's path back afterwards.
template <class Body>
void withTemporaryPath(DevicePath& path, Body body) {
    DevicePath kept;
    std::swap(kept, path);
    body();
    std::swap(kept, path);
}

}  // namespace

void VLXGraphicsContext::fillRect(const VLXRect& rect) {
    withTemporaryPath(m_impl->path, [&] {
        addRect(rect);
        fillPath();
    });
}

void VLXGraphicsContext::strokeRect(const VLXRect& rect) {
    withTemporaryPath(m_impl->path, [&] {
        addRect(rect);
        strokePath();
    });
}

void VLXGraphicsContext::clearRect(const VLXRect& rect) {
    Impl& impl = *m_impl;
    if (!impl.canDraw()) {
        return;
    }
    withTemporaryPath(impl.path, [&] {
        addRect(rect);
        cairo_save(m_cairo);
        cairo_identity_matrix(m_cairo);
        impl.emitPath(m_cairo);
        cairo_set_operator(m_cairo, CAIRO_OPERATOR_CLEAR);
        cairo_fill(m_cairo);
        cairo_restore(m_cairo);
        impl.check();
    });
}

void VLXGraphicsContext::fillEllipseInRect(const VLXRect& rect) {
    withTemporaryPath(m_impl->path, [&] {
        addEllipseInRect(rect);
        fillPath();
    });
}

void VLXGraphicsContext::strokeEllipseInRect(const VLXRect& rect) {
    withTemporaryPath(m_impl->path, [&] {
        addEllipseInRect(rect);
        strokePath();
    });
}

void VLXGraphicsContext::clipToRect(const VLXRect& rect) {
    withTemporaryPath(m_impl->path, [&] {
        addRect(rect);
        clip();
    });
}

void VLXGraphicsContext::fillBezierPath(const VLXBezierPath& path) {
    withTemporaryPath(m_impl->path, [&] {
        addPath(path.CGPath());
        fillPath(path.fillRule());
    });
}

void VLXGraphicsContext::strokeBezierPath(const VLXBezierPath& path) {
    State& state = m_impl->state;
    const State kept = state;
    setLineWidth(path.lineWidth());
    setLineCap(path.lineCapStyle());
    setLineJoin(path.lineJoinStyle());
    setMiterLimit(path.miterLimit());
    setLineDash(path.lineDashPhase(), path.lineDashPattern());
    withTemporaryPath(m_impl->path, [&] {
        addPath(path.CGPath());
        strokePath();
    });
    state = kept;
}

void VLXGraphicsContext::clipToBezierPath(const VLXBezierPath& path) {
    withTemporaryPath(m_impl->path, [&] {
        addPath(path.CGPath());
        clip(path.fillRule());
    });
}

// --- images --------------------------------------------------------------------------------------

void VLXGraphicsContext::drawImage(const VLXImage& image, const VLXRect& rect) {
    Impl& impl = *m_impl;
    const VLXAffineTransform m = impl.deviceMatrix();
    const double rw = rect.size.width, rh = rect.size.height;
    if (!impl.canDraw() || !isUsableMatrix(m) || image.pixelWidth() <= 0 ||
        image.pixelHeight() <= 0 || !std::isfinite(rect.origin.x) ||
        !std::isfinite(rect.origin.y) || !std::isfinite(rw) || !std::isfinite(rh) || rw == 0 ||
        rh == 0) {
        return;
    }
    // Display position (u, v) in 0…1 across the rectangle → stored pixel position, per
    // orientation: x / W = cu·u + cv·v + c0, y / H = du·u + dv·v + d0.
    double cu = 1, cv = 0, c0 = 0, du = 0, dv = 1, d0 = 0;
    switch (image.imageOrientation()) {
        case VLXImageOrientation::Up:
            break;
        case VLXImageOrientation::Down:
            cu = -1, c0 = 1, dv = -1, d0 = 1;
            break;
        case VLXImageOrientation::Left:
            cu = 0, cv = -1, c0 = 1, du = 1, dv = 0;
            break;
        case VLXImageOrientation::Right:
            cu = 0, cv = 1, du = -1, dv = 0, d0 = 1;
            break;
        case VLXImageOrientation::UpMirrored:
            cu = -1, c0 = 1;
            break;
        case VLXImageOrientation::DownMirrored:
            dv = -1, d0 = 1;
            break;
        case VLXImageOrientation::LeftMirrored:
            cu = 0, cv = 1, du = 1, dv = 0;
            break;
        case VLXImageOrientation::RightMirrored:
            cu = 0, cv = -1, c0 = 1, du = -1, dv = 0, d0 = 1;
            break;
    }
    // Work on the device: the rectangle is the parallelogram p + u·U + v·V (u, v in 0…1), in
    // long double so that huge finite rectangles neither overflow nor lose the visible part.
    using Real = long double;
    const Real ux = Real(m.a) * rw, uy = Real(m.b) * rw;
    const Real vx = Real(m.c) * rh, vy = Real(m.d) * rh;
    const Real px = Real(m.a) * rect.origin.x + Real(m.c) * rect.origin.y + m.tx;
    const Real py = Real(m.b) * rect.origin.x + Real(m.d) * rect.origin.y + m.ty;
    const Real det = ux * vy - uy * vx;
    if (std::hypot(ux, uy) < kMinimumImageDeviceSide ||
        std::hypot(vx, vy) < kMinimumImageDeviceSide || !(std::fabs(det) > 0) ||
        !std::isfinite(det)) {
        return;  // thinner than cairo's grid: it covers no sample
    }
    // The visible part: the window cut by the parallelogram's four sides, each side's
    // half-plane measured by a cross product (positive inside when det > 0). Working from the
    // window keeps every point small whatever the size of the rectangle.
    const DeviceWindow w = impl.window();
    const Real sign = det > 0 ? 1 : -1;
    auto side = [&](int edge, VLXPoint d) -> Real {
        const Real dx = d.x - px, dy = d.y - py;
        switch (edge) {
            case 0:  // u ≥ 0
                return sign * (dx * vy - dy * vx);
            case 1:  // u ≤ 1
                return sign * ((ux - dx) * vy - (uy - dy) * vx);
            case 2:  // v ≥ 0
                return sign * (ux * dy - uy * dx);
            default:  // v ≤ 1
                return sign * (ux * (vy - dy) - uy * (vx - dx));
        }
    };
    std::vector<VLXPoint> polygon{VLXPoint{w.minX, w.minY}, VLXPoint{w.maxX, w.minY},
                                  VLXPoint{w.maxX, w.maxY}, VLXPoint{w.minX, w.maxY}};
    std::vector<VLXPoint> next;
    for (int edge = 0; edge < 4 && !polygon.empty(); ++edge) {
        next.clear();
        VLXPoint previous = polygon.back();
        Real previousSide = side(edge, previous);
        for (const VLXPoint& current : polygon) {
            const Real currentSide = side(edge, current);
            if ((currentSide >= 0) != (previousSide >= 0)) {
                const Real t = previousSide / (previousSide - currentSide);
                next.push_back(
                    VLXPoint{static_cast<double>(previous.x + t * (Real(current.x) - previous.x)),
                             static_cast<double>(previous.y + t * (Real(current.y) - previous.y))});
            }
            if (currentSide >= 0) {
                next.push_back(current);
            }
            previous = current;
            previousSide = currentSide;
        }
        std::swap(polygon, next);
    }
    if (polygon.size() < 3) {
        return;  // nothing of it reaches the device
    }
    DevicePath area;
    for (const VLXPoint& q : polygon) {
        area.lineTo(q);
    }
    area.close();

    // Device → stored pixel: (u, v) of a device point, then the orientation's mapping.
    auto uvAt = [&](VLXPoint d) {
        const Real dx = d.x - px, dy = d.y - py;
        return std::pair<Real, Real>{(dx * vy - dy * vx) / det, (ux * dy - uy * dx) / det};
    };
    const Real ax = vy / det, ay = -vx / det, bx = -uy / det, by = ux / det;
    // Plain variables rather than a structured binding: the lambda below captures them, which
    // clang 14 (the fuzzing build) does not allow for bindings.
    const std::pair<Real, Real> uvZero = uvAt(VLXPoint{0, 0});
    const Real uZero = uvZero.first, vZero = uvZero.second;
    double iw = image.pixelWidth(), ih = image.pixelHeight();
    Real xa = 0, xb = 0, ya = 0, yb = 0, x0 = 0, y0 = 0;
    auto mapTo = [&](double width, double height) {
        iw = width, ih = height;
        xa = iw * (cu * ax + cv * bx), xb = iw * (cu * ay + cv * by);
        ya = ih * (du * ax + dv * bx), yb = ih * (du * ay + dv * by);
        x0 = iw * (cu * uZero + cv * vZero + c0), y0 = ih * (du * uZero + dv * vZero + d0);
    };
    mapTo(iw, ih);
    // Pixman holds pattern matrices in 16.16 fixed point: an image shrunk so far that one
    // device pixel spans more than kMaximumImageMinification stored pixels is first averaged
    // down in boxes of about one device pixel (cairo's filter would sample it anyway).
    const std::span<const std::uint32_t> original = image.pixels();
    std::vector<std::uint32_t> reducedPixels;
    const std::uint32_t* pixels = original.data();
    auto boxFor = [](Real perDevicePixel) -> Real {
        return perDevicePixel > kMaximumImageMinification ? std::ceil(perDevicePixel) : 1;
    };
    const Real kx = boxFor(std::fabs(xa) + std::fabs(xb));
    const Real ky = boxFor(std::fabs(ya) + std::fabs(yb));
    if (kx > 1 || ky > 1) {
        const int boxWidth = static_cast<int>(std::clamp<Real>(kx, 1, image.pixelWidth()));
        const int boxHeight = static_cast<int>(std::clamp<Real>(ky, 1, image.pixelHeight()));
        const int width = (image.pixelWidth() + boxWidth - 1) / boxWidth;
        const int height = (image.pixelHeight() + boxHeight - 1) / boxHeight;
        reducedPixels = averagedBoxes(original, image.pixelWidth(), image.pixelHeight(), boxWidth,
                                      boxHeight, width, height);
        pixels = reducedPixels.data();
        mapTo(width, height);
    }
    // When the whole window sees less than a sliver of one pixel, that pixel's colour fills it:
    // cairo could not invert so strong a magnification.
    const Real span = std::max({std::fabs(xa), std::fabs(xb), std::fabs(ya), std::fabs(yb)}) *
                      (Real(w.maxX) - w.minX + w.maxY - w.minY);
    cairo_matrix_t patternMatrix;
    cairo_matrix_init(&patternMatrix, static_cast<double>(xa), static_cast<double>(ya),
                      static_cast<double>(xb), static_cast<double>(yb), static_cast<double>(x0),
                      static_cast<double>(y0));
    cairo_matrix_t inverse = patternMatrix;
    const bool magnified = span < 1.0 / 64 || std::fabs(x0) > 1e9 || std::fabs(y0) > 1e9 ||
                           cairo_matrix_invert(&inverse) != CAIRO_STATUS_SUCCESS;

    const int pixelWidth = static_cast<int>(iw), pixelHeight = static_cast<int>(ih);
    auto* data = reinterpret_cast<unsigned char*>(const_cast<std::uint32_t*>(pixels));
    cairo_surface_t* surface = cairo_image_surface_create_for_data(
        data, CAIRO_FORMAT_ARGB32, pixelWidth, pixelHeight, pixelWidth * 4);
    cairo_pattern_t* pattern = nullptr;
    if (magnified) {
        const auto [cx, cy] = uvAt(polygon.front());
        auto index = [](Real value, double size) {
            return std::isfinite(value)
                       ? static_cast<int>(std::clamp<Real>(std::floor(value), 0, size - 1))
                       : 0;
        };
        const int sx = index(iw * (cu * cx + cv * cy + c0), iw);
        const int sy = index(ih * (du * cx + dv * cy + d0), ih);
        const std::uint32_t word = pixels[static_cast<std::size_t>(sy) * pixelWidth + sx];
        // The words are premultiplied; cairo takes straight colour.
        const double alpha = (word >> 24) / 255.0;
        auto straight = [&](int shift) {
            return alpha > 0 ? std::min(1.0, ((word >> shift) & 0xff) / 255.0 / alpha) : 0.0;
        };
        pattern = cairo_pattern_create_rgba(straight(16), straight(8), straight(0), alpha);
    } else {
        pattern = cairo_pattern_create_for_surface(surface);
        cairo_pattern_set_matrix(pattern, &patternMatrix);
        cairo_pattern_set_filter(pattern, CAIRO_FILTER_GOOD);
        cairo_pattern_set_extend(pattern, CAIRO_EXTEND_PAD);
    }
    if (cairo_pattern_status(pattern) == CAIRO_STATUS_SUCCESS) {
        impl.perform(
            [&](cairo_t* target, double opacity) {
                cairo_save(target);
                cairo_identity_matrix(target);
                impl.emitArea(target, area);
                cairo_clip(target);
                cairo_set_source(target, pattern);
                cairo_paint_with_alpha(target, opacity);
                cairo_restore(target);
            },
            true);
    }
    cairo_pattern_destroy(pattern);
    cairo_surface_destroy(surface);
}

void VLXGraphicsContext::drawWithEffects(const std::function<void(cairo_t*)>& draw) {
    Impl& impl = *m_impl;
    const VLXAffineTransform m = impl.deviceMatrix();
    if (!draw || !impl.canDraw() || !isUsableMatrix(m)) {
        return;
    }
    impl.perform(
        [&](cairo_t* target, double) {
            cairo_save(target);
            const cairo_matrix_t matrix = cairoMatrix(m);
            cairo_set_matrix(target, &matrix);
            cairo_new_path(target);
            draw(target);
            cairo_restore(target);
            cairo_new_path(target);
        },
        false);
}

// --- results -------------------------------------------------------------------------------------

std::shared_ptr<VLXImage> VLXGraphicsContext::makeImage() {
    Impl& impl = *m_impl;
    if (m_kind != VLXGraphicsContextKind::Bitmap || impl.failed) {
        return nullptr;
    }
    const int width = impl.deviceWidth, height = impl.deviceHeight;
    if (width == 0 || height == 0) {
        return VLXImage::imageWithoutPixels(width, height, m_scale);
    }
    cairo_surface_flush(impl.surface);
    const unsigned char* data = cairo_image_surface_get_data(impl.surface);
    const int stride = cairo_image_surface_get_stride(impl.surface);
    if (data == nullptr) {
        return nullptr;
    }
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width) *
                                      static_cast<std::size_t>(height));
    // An opaque bitmap leaves the top byte undefined.
    const std::uint32_t opaqueBits = impl.opaque ? 0xff000000U : 0;
    for (int y = 0; y < height; ++y) {
        const auto* row =
            reinterpret_cast<const std::uint32_t*>(data + static_cast<std::ptrdiff_t>(y) * stride);
        std::uint32_t* out = pixels.data() + static_cast<std::size_t>(y) * width;
        for (int x = 0; x < width; ++x) {
            out[x] = row[x] | opaqueBits;
        }
    }
    return VLXImage::imageWithPixels(width, height, std::move(pixels), m_scale);
}

std::string VLXGraphicsContext::documentData() {
    Impl& impl = *m_impl;
    if (m_kind == VLXGraphicsContextKind::Bitmap || impl.cr == nullptr) {
        return {};
    }
    if (!impl.finished) {
        impl.finishDocument();
    }
    return impl.document;
}
