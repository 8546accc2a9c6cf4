#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <cstdint>
#include <iosfwd>
#include <span>
#include <utility>
#include <vector>

#include <VelmarCoreUI/Platform/Graphics/VLXPath.h>

/// How the ends of open strokes look.
enum class VLXLineCap { Butt = 0, Round = 1, Square = 2 };
/// How stroke segments meet.
enum class VLXLineJoin { Miter = 0, Round = 1, Bevel = 2 };

/// Corners of a rectangle, combinable.
enum VLXRectCorner : unsigned {
    VLXRectCornerTopLeft = 1U << 0,
    VLXRectCornerTopRight = 1U << 1,
    VLXRectCornerBottomLeft = 1U << 2,
    VLXRectCornerBottomRight = 1U << 3,
    VLXRectCornerAllCorners = 0xFU,
};

/// A path with the attributes used to draw it: line width, cap, join, miter limit, dash and the
/// fill rule. A value type; copies carry every attribute.
///
/// Angles follow the drawing convention of a y-down screen: `clockwise` arcs walk towards
/// increasing angles and look clockwise on screen.
///
/// `fill()`, `stroke()` and `addClip()` draw into the current graphics context
/// (`VLXGraphicsGetCurrentContext()`) and do nothing when there is none.
class VLX_EXPORT VLXBezierPath {
public:
    /// An empty path with line width 1, butt caps, miter joins, miter limit 10, flatness 0.6,
    /// no dash and the non-zero fill rule.
    VLXBezierPath() = default;

    static VLXBezierPath bezierPath() { return {}; }
    /// The rectangle as one closed subpath (see `VLXPath::addRect`).
    static VLXBezierPath bezierPathWithRect(const VLXRect& rect);
    static VLXBezierPath bezierPathWithOvalInRect(const VLXRect& rect);
    /// All four corners rounded with `cornerRadius`, clamped to half the shorter side
    /// (`VLXPath::addRoundedRect`); zero, negative or NaN gives a plain rectangle.
    static VLXBezierPath bezierPathWithRoundedRect(const VLXRect& rect, double cornerRadius);
    /// Only `corners` rounded, each with the radii of `cornerRadii` (width clamped to half the
    /// width, height to half the height). Runs clockwise on screen from the top-left corner's
    /// end; square corners are plain vertices. No corner, or a zero, negative or NaN radius,
    /// gives `bezierPathWithRect`. A null rectangle gives an empty path.
    static VLXBezierPath bezierPathWithRoundedRect(const VLXRect& rect, unsigned corners,
                                                   VLXSize cornerRadii);
    /// An arc as `VLXPath::addArc` draws it, with `clockwise` in the screen sense (true walks
    /// increasing angles).
    static VLXBezierPath bezierPathWithArcCenter(VLXPoint center, double radius, double startAngle,
                                                 double endAngle, bool clockwise);
    /// A path around a copy of `path`, with default attributes.
    static VLXBezierPath bezierPathWithCGPath(const VLXPath& path);

    /// The underlying path; setting it keeps the drawing attributes.
    const VLXPath& CGPath() const { return m_path; }
    void setCGPath(const VLXPath& path) { m_path = path; }
    /// Takes over `path`'s storage (no copy of its elements).
    void setCGPath(VLXPath&& path) { m_path = std::move(path); }

    // --- building ------------------------------------------------------------------------------

    void moveToPoint(VLXPoint point);
    void addLineToPoint(VLXPoint point);
    /// Curve to `end` with two control points (the platform's argument order).
    void addCurveToPoint(VLXPoint end, VLXPoint controlPoint1, VLXPoint controlPoint2);
    void addQuadCurveToPoint(VLXPoint end, VLXPoint controlPoint);
    void addArcWithCenter(VLXPoint center, double radius, double startAngle, double endAngle,
                          bool clockwise);
    void closePath();
    /// Removes every element; the drawing attributes stay.
    void removeAllPoints();
    /// Appends the other path's elements (not its attributes).
    void appendPath(const VLXBezierPath& other);
    void applyTransform(const VLXAffineTransform& transform);

    // --- reading -------------------------------------------------------------------------------

    bool isEmpty() const { return m_path.isEmpty(); }
    /// The control-point bounding box (`VLXPath::boundingBox`); `VLXRectNull` when empty.
    VLXRect bounds() const { return m_path.boundingBox(); }
    VLXPoint currentPoint() const { return m_path.currentPoint(); }
    /// Inside the filled path, using this path's fill rule.
    bool containsPoint(VLXPoint point) const;

    // --- drawing attributes --------------------------------------------------------------------

    double lineWidth() const { return m_lineWidth; }
    void setLineWidth(double width) { m_lineWidth = width; }
    VLXLineCap lineCapStyle() const { return m_lineCap; }
    void setLineCapStyle(VLXLineCap cap) { m_lineCap = cap; }
    VLXLineJoin lineJoinStyle() const { return m_lineJoin; }
    void setLineJoinStyle(VLXLineJoin join) { m_lineJoin = join; }
    double miterLimit() const { return m_miterLimit; }
    void setMiterLimit(double limit) { m_miterLimit = limit; }
    double flatness() const { return m_flatness; }
    void setFlatness(double flatness) { m_flatness = flatness; }
    bool usesEvenOddFillRule() const { return m_usesEvenOddFillRule; }
    void setUsesEvenOddFillRule(bool evenOdd) { m_usesEvenOddFillRule = evenOdd; }
    VLXPathFillRule fillRule() const {
        return m_usesEvenOddFillRule ? VLXPathFillRule::EvenOdd : VLXPathFillRule::Winding;
    }

    /// Sets the dash: lengths of alternating painted and blank stretches, and how far into the
    /// pattern the stroke starts. The pattern is copied. An empty pattern removes the dash (the
    /// phase is still stored). Values are kept as given; the context decides how to draw odd
    /// ones.
    void setLineDash(std::span<const double> pattern, double phase);
    /// Writes the pattern and the phase through the non-null pointers.
    void getLineDash(std::vector<double>* pattern, double* phase) const;
    const std::vector<double>& lineDashPattern() const { return m_dashPattern; }
    double lineDashPhase() const { return m_dashPhase; }

    // --- drawing into the current context ------------------------------------------------------

    /// Fills with the context's fill colour and this path's fill rule.
    void fill() const;
    /// Strokes with the context's stroke colour and this path's line attributes.
    void stroke() const;
    /// Intersects the context's clip with this path (its fill rule).
    void addClip() const;

    /// Same elements and the same attributes.
    friend bool operator==(const VLXBezierPath& a, const VLXBezierPath& b);

private:
    VLXPath m_path;
    double m_lineWidth = 1;
    VLXLineCap m_lineCap = VLXLineCap::Butt;
    VLXLineJoin m_lineJoin = VLXLineJoin::Miter;
    double m_miterLimit = 10;
    double m_flatness = 0.6;
    bool m_usesEvenOddFillRule = false;
    std::vector<double> m_dashPattern;
    double m_dashPhase = 0;
};

VLX_EXPORT std::ostream& operator<<(std::ostream& os, const VLXBezierPath& path);
