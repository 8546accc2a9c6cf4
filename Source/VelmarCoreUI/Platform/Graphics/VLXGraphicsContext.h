#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include <VelmarCoreUI/Platform/Foundation/VLXObject.h>
#include <VelmarCoreUI/Platform/Graphics/VLXBezierPath.h>
#include <VelmarCoreUI/Platform/Graphics/VLXPath.h>
#include <VelmarCoreUI/Platform/Primitives/VLXAffineTransform.h>
#include <VelmarCoreUI/Platform/Primitives/VLXColor.h>
#include <VelmarCoreUI/Platform/Primitives/VLXGeometry.h>

// cairo's own declarations of its handle types, so hosts can reach the cairo context without
// this header pulling in cairo.h.
typedef struct _cairo cairo_t;
typedef struct _cairo_surface cairo_surface_t;

class VLXImage;

/// How a colour combines with what is already drawn, numbered as the platform numbers them.
/// Every mode maps onto a cairo operator (`Normal` OVER, `Copy` SOURCE, `SourceIn` IN …,
/// `PlusLighter` ADD); `PlusDarker` has none and draws as `Darken`.
///
///  * Every mode composites as cairo (and PDF blending) defines it, in bitmaps and documents
///    alike: for the blend modes, `Hue` … `Luminosity` included, the result's alpha is the union
///    of source and destination, so filling black with `Saturation` over an image greys the
///    image and makes its transparent parts opaque black, as on the platform.
///  * `SourceIn`, `SourceOut`, `DestinationIn` and `DestinationAtop` also clear what lies outside
///    the shape (within the clip).
enum class VLXBlendMode {
    Normal = 0,
    Multiply = 1,
    Screen = 2,
    Overlay = 3,
    Darken = 4,
    Lighten = 5,
    ColorDodge = 6,
    ColorBurn = 7,
    SoftLight = 8,
    HardLight = 9,
    Difference = 10,
    Exclusion = 11,
    Hue = 12,
    Saturation = 13,
    Color = 14,
    Luminosity = 15,
    Clear = 16,
    Copy = 17,
    SourceIn = 18,
    SourceOut = 19,
    SourceAtop = 20,
    DestinationOver = 21,
    DestinationIn = 22,
    DestinationOut = 23,
    DestinationAtop = 24,
    XOR = 25,
    PlusDarker = 26,
    PlusLighter = 27,
};

/// What `drawPath` does with the current path.
enum class VLXPathDrawingMode {
    Fill = 0,
    EOFill = 1,
    Stroke = 2,
    FillStroke = 3,
    EOFillStroke = 4
};

/// What a context draws into.
enum class VLXGraphicsContextKind {
    Bitmap,  ///< premultiplied ARGB pixels, readable as an image
    SVG,     ///< an SVG document, one page
    PDF,     ///< a PDF document, one page
};

/// A drawing destination with the platform's drawing model, over a cairo context.
///
/// Coordinates are points, origin at the top left, y growing downward; a bitmap context of
/// scale s has s × s pixels per point. The graphics state (CTM, colours, line attributes, dash,
/// clip, alpha, blend mode, shadow) is saved and restored as a whole.
///
/// Colours: monochrome and RGB colours draw as their components (clamped to 0…1, NaN as 0); a
/// colour of another model draws as black with its alpha.
///
/// Paths follow the platform: points are transformed by the CTM when they are added, painting
/// consumes the path, and the path is not part of the saved state.
///
/// Odd input never puts the context into an error state: while the CTM is singular (a zero
/// scale) or not finite, strokes, images and `drawWithEffects` are skipped (fills of a path
/// built earlier still work); subpaths with NaN or infinite points are left out; coordinates
/// beyond about a million pixels are clamped (which bends lines that reach that far); negative
/// or non-finite widths, miter limits and alphas are ignored; a bad dash draws solid; restoring
/// more often than saving is ignored. Fills, clips and images are cut to the surface before
/// cairo sees them, so huge or tiny device geometry costs what its visible part costs; dash
/// patterns finer than about two dashes per device pixel draw as a solid line thinned to the
/// pattern's duty cycle. Once cairo itself reports an error (out of memory) the context stops
/// drawing and `isValid()` turns false; other contexts are unaffected.
///
/// Long polylines (more than 2 000 line segments in a bitmap) are stroked in pieces, since cairo
/// slows down super-linearly with the length of one path; the pixels match a single stroke up
/// to anti-aliasing noise at the cuts. Thin solid ones (at most 2 device pixels wide, round or
/// bevel joins) first keep only the first, lowest, highest and last vertex of each run within a
/// quarter-pixel column, which leaves their pixels within a few levels of the full stroke. The
/// caller's path is never changed.
class VLX_EXPORT VLXGraphicsContext : public VLXObject {
public:
    /// A bitmap of ceil(size × scale) pixels (at most 32 767 per side), transparent; an
    /// `opaque` bitmap has no alpha and starts black, as the platform's opaque bitmaps do.
    /// Nil for negative, NaN or infinite sizes, too many pixels, or a scale outside
    /// 1/1024 … 1024 (NaN included); zero sizes give a valid context without pixels.
    static std::shared_ptr<VLXGraphicsContext> createBitmap(VLXSize size, double scale,
                                                            bool opaque = false);
    /// A one-page SVG or PDF document of `size` points, kept in memory until `documentData()`.
    /// Nil for sizes that are not finite and positive (or above a million points).
    ///
    /// Documents draw without cairo groups: shadows are embedded as images of two pixels per
    /// point, painted before the drawing (alpha and blend mode apply to each in turn rather than
    /// to the two together), and `drawWithEffects` with an alpha below 1 is embedded as an image
    /// of four pixels per point.
    static std::shared_ptr<VLXGraphicsContext> createSVG(VLXSize size);
    static std::shared_ptr<VLXGraphicsContext> createPDF(VLXSize size);

    ~VLXGraphicsContext() override;

    VLXGraphicsContextKind kind() const { return m_kind; }
    /// Size in points, as created.
    VLXSize size() const { return m_size; }
    /// Pixels per point (1 for documents).
    double scale() const { return m_scale; }
    /// False once cairo reported an error; the context then ignores all drawing.
    bool isValid() const;

    // --- graphics state ------------------------------------------------------------------------

    /// Pushes the whole graphics state: CTM, colours, line attributes, dash, alpha, blend mode,
    /// shadow, antialiasing and clip.
    void saveGState();
    /// Pops what the last `saveGState` pushed; ignored when nothing was saved.
    void restoreGState();

    // Each step applies before the current CTM (in the current user space). Singular or
    // non-finite results are kept: drawing that needs the CTM is skipped until a restore.
    void translateCTM(double tx, double ty);
    void scaleCTM(double sx, double sy);
    /// Radians; positive turns clockwise on the y-down screen.
    void rotateCTM(double angle);
    void concatCTM(const VLXAffineTransform& transform);
    /// User space to the context's point space (the pixel scale is not included).
    VLXAffineTransform CTM() const;

    /// Fill and stroke colours start as opaque black; they read back exactly as set.
    void setFillColor(const VLXColor& color);
    void setStrokeColor(const VLXColor& color);
    VLXColor fillColor() const;
    VLXColor strokeColor() const;

    /// In user space at the time of stroking; starts at 1. Negative or non-finite widths are
    /// ignored; zero draws nothing.
    void setLineWidth(double width);
    /// Starts butt.
    void setLineCap(VLXLineCap cap);
    /// Starts miter.
    void setLineJoin(VLXLineJoin join);
    /// Starts at 10; negative or non-finite limits are ignored.
    void setMiterLimit(double limit);
    /// Dash lengths with a phase; an empty list (or one whose lengths are all zero, negative or
    /// non-finite) draws solid lines.
    void setLineDash(double phase, std::span<const double> lengths);
    /// Global alpha multiplied into everything drawn (fills, strokes, images and whatever goes
    /// through `drawWithEffects`), clamped to 0…1; NaN is ignored.
    void setAlpha(double alpha);
    /// How drawing combines with what is there (see `VLXBlendMode`); starts `Normal`.
    void setBlendMode(VLXBlendMode mode);
    VLXBlendMode blendMode() const;
    /// A shadow under everything drawn from now on: `offset` in points (positive height goes
    /// down, not affected by the CTM), `blur` in points (three box blurs approximating a
    /// Gaussian of sigma blur / 2; negative or NaN blur is 0, sigma is capped at 200 pixels),
    /// `color` nil for the default black at 1/3 alpha. A transparent colour, a non-finite
    /// offset, or zero offset with zero blur turns shadows off.
    ///
    /// Each drawing operation is rendered apart, its alpha blurred and painted in the shadow
    /// colour at the offset, then the drawing itself on top; alpha and blend mode apply to the
    /// two together. Only what lies inside the clip casts a shadow. With a shadow (and, for
    /// `drawWithEffects`, with an alpha below 1) the modes that clear outside the shape clear
    /// the whole clip.
    void setShadow(VLXSize offset, double blur, std::optional<VLXColor> color = std::nullopt);
    /// Starts on.
    void setShouldAntialias(bool antialias);

    // --- current path --------------------------------------------------------------------------
    // A line or curve without a current point starts a subpath at its first point; after a
    // close, the next segment starts at the closed subpath's start.

    /// Empties the current path.
    void beginPath();
    /// Appends `path`'s elements, transformed by the CTM (the path itself is not changed).
    void addPath(const VLXPath& path);
    void moveToPoint(VLXPoint point);
    void addLineToPoint(VLXPoint point);
    void addCurveToPoint(VLXPoint control1, VLXPoint control2, VLXPoint end);
    void addQuadCurveToPoint(VLXPoint control, VLXPoint end);
    /// A closed subpath around the standardised rectangle; nothing for the null rectangle.
    void addRect(const VLXRect& rect);
    /// Four quarter-turn cubics from (maxX, midY), clockwise on screen, closed.
    void addEllipseInRect(const VLXRect& rect);
    /// Ignored without a subpath or right after another close.
    void closePath();
    bool isPathEmpty() const;

    // Painting consumes the current path.
    void fillPath(VLXPathFillRule rule = VLXPathFillRule::Winding);
    void strokePath();
    /// Fill, stroke or both (fill first) as one drawing operation, so that one shadow falls
    /// under both.
    void drawPath(VLXPathDrawingMode mode);
    /// Intersects the clip with the current path (consumed). An empty path clips everything.
    void clip(VLXPathFillRule rule = VLXPathFillRule::Winding);

    // Conveniences that leave the current path alone.
    void fillRect(const VLXRect& rect);
    void strokeRect(const VLXRect& rect);
    /// Makes the rectangle transparent (or black in an opaque bitmap), ignoring alpha, blend
    /// mode and shadow; the clip applies.
    void clearRect(const VLXRect& rect);
    void fillEllipseInRect(const VLXRect& rect);
    void strokeEllipseInRect(const VLXRect& rect);
    void clipToRect(const VLXRect& rect);
    /// Fills or strokes a path with the attributes a bezier path carries (line width, cap, join,
    /// miter, dash, fill rule), leaving the context's own attributes as they were.
    void fillBezierPath(const VLXBezierPath& path);
    void strokeBezierPath(const VLXBezierPath& path);
    void clipToBezierPath(const VLXBezierPath& path);

    /// Draws the image upright into `rect` (scaled to fill it with cairo's good filter, edges
    /// kept sharp), honouring its orientation, the alpha, blend mode, clip and shadow. A negative
    /// width or height mirrors it; an empty or non-finite rectangle, one thinner than 1/256 of a
    /// device pixel, a zero-size image or an unusable CTM draws nothing. Magnified so far that
    /// the surface sees less than a sliver of one image pixel, that pixel's colour is drawn.
    void drawImage(const VLXImage& image, const VLXRect& rect);

    /// Runs `draw` as one drawing operation with this context's effects: global alpha, blend
    /// mode and shadow apply to whatever it draws as a whole. For code that draws with cairo
    /// directly (text). `draw` gets the cairo context with the matrix set to user space (CTM and
    /// pixel scale), an empty path and the source-over operator; it sets its own source, and
    /// whatever it changes in the cairo state is undone afterwards. Not called while the CTM is
    /// singular or not finite, or when the context cannot draw.
    void drawWithEffects(const std::function<void(cairo_t*)>& draw);

    // --- results -------------------------------------------------------------------------------

    /// A copy of a bitmap context's pixels as an image: ceil(size × scale) pixels with the
    /// context's scale (opaque bitmaps give opaque pixels). Nil for documents and invalid
    /// contexts; a bitmap without pixels gives a zero-size image.
    std::shared_ptr<VLXImage> makeImage();
    /// Finishes an SVG or PDF document and returns its bytes; later drawing is ignored. Empty
    /// for bitmap contexts.
    std::string documentData();

    /// The cairo context, for hosts and for the text and image code. Its matrix follows the CTM
    /// (with the pixel scale) while that is usable. Drawing straight into it bypasses alpha,
    /// blend mode and shadow; `drawWithEffects` applies them.
    cairo_t* cairoContext() const { return m_cairo; }

protected:
    VLXGraphicsContext() = default;

private:
    bool finishDocumentSetup(VLXSize size, VLXGraphicsContextKind kind);

    struct State;
    struct Impl;
    std::unique_ptr<Impl> m_impl;
    cairo_t* m_cairo = nullptr;
    VLXGraphicsContextKind m_kind = VLXGraphicsContextKind::Bitmap;
    VLXSize m_size;
    double m_scale = 1;
};
