#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <iosfwd>
#include <span>
#include <vector>

#include <VelmarCoreUI/Platform/Primitives/VLXAffineTransform.h>
#include <VelmarCoreUI/Platform/Primitives/VLXGeometry.h>

/// Kinds of path elements, numbered as the platform numbers them.
enum class VLXPathElementType : std::uint8_t {
    MoveToPoint = 0,          ///< 1 point
    AddLineToPoint = 1,       ///< 1 point
    AddQuadCurveToPoint = 2,  ///< 2 points: control, end
    AddCurveToPoint = 3,      ///< 3 points: control 1, control 2, end
    CloseSubpath = 4,         ///< no point
};

/// Number of points an element of `type` carries.
constexpr std::size_t VLXPathElementPointCount(VLXPathElementType type) {
    switch (type) {
        case VLXPathElementType::MoveToPoint:
        case VLXPathElementType::AddLineToPoint:
            return 1;
        case VLXPathElementType::AddQuadCurveToPoint:
            return 2;
        case VLXPathElementType::AddCurveToPoint:
            return 3;
        case VLXPathElementType::CloseSubpath:
            return 0;
    }
    return 0;
}

/// One element as seen while walking a path: its type and a view of its points (valid only
/// during the walk).
struct VLX_EXPORT VLXPathElement {
    VLXPathElementType type = VLXPathElementType::MoveToPoint;
    const VLXPoint* points = nullptr;

    std::size_t pointCount() const { return VLXPathElementPointCount(type); }
};

/// Which points count as inside a path.
enum class VLXPathFillRule {
    Winding,  ///< non-zero winding number
    EvenOdd,  ///< odd number of crossings
};

/// A 2-D path: a list of elements (move, line, quadratic and cubic curve, close), kept exactly as
/// added so that walking the path gives back what was built. Ellipses, rounded corners and arcs
/// are stored as cubic curves of at most a quarter turn each, the way the platform stores them.
///
/// Copying is a value copy. Elements are stored compactly (one type byte plus the points), so a
/// million-point polyline costs about 17 MB.
///
/// Every "add" function takes an optional transform applied to the new points only.
///
/// Rules for odd input, shared by every function:
///  * A line or curve with no current point starts a subpath at its first point, as if a move
///    had come first (the platform would warn and ignore it; continuing is friendlier).
///  * Closing an empty path or a path already closed adds nothing.
///  * Points with NaN or infinite coordinates are stored as given. Bounding boxes skip every
///    element that has one; `containsPoint` and drawing leave out the whole subpath.
///  * An arc with a NaN or infinite angle or a negative or non-finite radius adds nothing;
///    a zero radius adds a line to (or move to) the centre.
class VLX_EXPORT VLXPath {
public:
    VLXPath() = default;

    static VLXPath pathWithRect(const VLXRect& rect,
                                const VLXAffineTransform& transform = VLXAffineTransformIdentity);
    static VLXPath pathWithEllipseInRect(
        const VLXRect& rect, const VLXAffineTransform& transform = VLXAffineTransformIdentity);
    static VLXPath pathWithRoundedRect(
        const VLXRect& rect, double cornerWidth, double cornerHeight,
        const VLXAffineTransform& transform = VLXAffineTransformIdentity);

    // --- building ------------------------------------------------------------------------------

    void moveToPoint(VLXPoint point,
                     const VLXAffineTransform& transform = VLXAffineTransformIdentity);
    void addLineToPoint(VLXPoint point,
                        const VLXAffineTransform& transform = VLXAffineTransformIdentity);
    void addQuadCurveToPoint(VLXPoint control, VLXPoint end,
                             const VLXAffineTransform& transform = VLXAffineTransformIdentity);
    void addCurveToPoint(VLXPoint control1, VLXPoint control2, VLXPoint end,
                         const VLXAffineTransform& transform = VLXAffineTransformIdentity);
    void closeSubpath();

    /// A closed subpath: move to (minX, minY), lines to (maxX, minY), (maxX, maxY), (minX, maxY),
    /// close. A null rectangle adds nothing.
    void addRect(const VLXRect& rect,
                 const VLXAffineTransform& transform = VLXAffineTransformIdentity);
    /// A move to the first point, then lines to the others; an empty list adds nothing.
    void addLines(std::span<const VLXPoint> points,
                  const VLXAffineTransform& transform = VLXAffineTransformIdentity);
    /// A closed ellipse of four quarter-turn cubics, starting at (maxX, midY) and turning with
    /// increasing angle (clockwise on a y-down screen): move, four curves, close. A null
    /// rectangle adds nothing; a zero-size one adds a degenerate ellipse.
    void addEllipseInRect(const VLXRect& rect,
                          const VLXAffineTransform& transform = VLXAffineTransformIdentity);
    /// A closed rounded rectangle, starting at the end of the top-left corner and running
    /// clockwise on screen: move, then line and quarter-turn curve for each corner in turn (top
    /// right, bottom right, bottom left, top left), close. Corner sizes are clamped to half the
    /// rectangle's sides; a zero, negative or NaN corner width or height gives a plain
    /// rectangle (`addRect`). A null rectangle adds nothing.
    void addRoundedRect(const VLXRect& rect, double cornerWidth, double cornerHeight,
                        const VLXAffineTransform& transform = VLXAffineTransformIdentity);
    /// An arc of the circle around `center`, from `startAngle` to `endAngle` (radians, measured
    /// from +x towards +y). `clockwise` has the platform's drawing-space meaning: true walks
    /// towards decreasing angles, false towards increasing ones. The sweep is reduced to at
    /// most one full turn: a sweep beyond 2π draws one full turn, and a sweep in the other
    /// direction wraps round (0 to −π/2 walking towards increasing angles is three quarters; a
    /// whole number of turns the other way is a full turn). Equal angles add only the joining
    /// line. A line joins the current point to the arc's start (a move when there is no current
    /// point; nothing when the current point is already there); the arc itself is stored as
    /// n = ⌈sweep / (π/2)⌉ equal cubics with control distance 4/3·tan(θ/4)·radius for each
    /// piece of θ radians (the classic 0.5522847498 for a quarter). A full turn ends exactly on
    /// its start point.
    void addArc(VLXPoint center, double radius, double startAngle, double endAngle, bool clockwise,
                const VLXAffineTransform& transform = VLXAffineTransformIdentity);
    /// The rounded corner between the current point, `tangent1` and `tangent2`: a line to where
    /// the circle of `radius` touches the first tangent, then the arc. Collinear points or a
    /// zero radius add a line to `tangent1`; a negative or NaN radius adds nothing; without a
    /// current point it moves to `tangent1`.
    void addArcToPoint(VLXPoint tangent1, VLXPoint tangent2, double radius,
                       const VLXAffineTransform& transform = VLXAffineTransformIdentity);
    /// All elements of `path`, transformed, appended as they are (its first move starts a new
    /// subpath).
    void addPath(const VLXPath& path,
                 const VLXAffineTransform& transform = VLXAffineTransformIdentity);

    /// Removes every element.
    void removeAllPoints();
    /// Room for `elements` more elements holding `points` more points.
    void reserve(std::size_t elements, std::size_t points);

    // --- reading -------------------------------------------------------------------------------

    bool isEmpty() const { return m_types.empty(); }
    std::size_t elementCount() const { return m_types.size(); }
    /// The last point reached (the start of the subpath after a close); zero for an empty path.
    VLXPoint currentPoint() const;
    /// Walks the elements in order.
    void apply(const std::function<void(const VLXPathElement&)>& visitor) const;
    /// Raw storage, for code that walks large paths without a callback per element: the types,
    /// and all points in element order.
    std::span<const VLXPathElementType> elementTypes() const { return m_types; }
    std::span<const VLXPoint> points() const { return m_points; }

    /// The smallest rectangle holding every point, control points included; `VLXRectNull` for a
    /// path without finite points.
    VLXRect boundingBox() const;
    /// The smallest rectangle holding the drawn outline: end points (moves included) and the
    /// curves' extrema, found from the roots of their derivatives, but not control points;
    /// `VLXRectNull` for a path without finite points.
    VLXRect pathBoundingBox() const;
    /// Whether `point` (after `transform` is applied to the path) lies inside the filled path.
    /// Open subpaths count as closed by a straight line; curves are flattened adaptively, only
    /// where they pass near the point, to within 1/1000 of a point. Points exactly on an edge
    /// may count either way. Non-finite query points are outside; subpaths holding a
    /// non-finite point are left out.
    bool containsPoint(VLXPoint point, VLXPathFillRule rule = VLXPathFillRule::Winding,
                       const VLXAffineTransform& transform = VLXAffineTransformIdentity) const;

    // --- copies --------------------------------------------------------------------------------

    VLXPath copyByTransformingPath(const VLXAffineTransform& transform) const;
    /// Transforms every point in place.
    void applyTransform(const VLXAffineTransform& transform);

    /// Same elements with the same points (NaN points compare equal to NaN points).
    friend bool operator==(const VLXPath& a, const VLXPath& b);

private:
    // Appends an element through `transform`, starting a subpath first when there is no
    // current point (closes go through closeSubpath).
    void appendElement(VLXPathElementType type, std::initializer_list<VLXPoint> points,
                       const VLXAffineTransform& transform);
    // Appends an element whose points are already final (no implicit move, no transform).
    void appendRaw(VLXPathElementType type, const VLXPoint* points);
    // Cubics for an arc that starts at the current point, `sweep` radians signed (positive:
    // increasing angle), at most one full turn.
    void appendArcSegments(VLXPoint center, double radius, double startAngle, double sweep,
                           const VLXAffineTransform& transform);

    std::vector<VLXPathElementType> m_types;
    std::vector<VLXPoint> m_points;
    // Index into m_points of the current subpath's start, or -1 when there is no current point.
    std::ptrdiff_t m_subpathStart = -1;
};

/// "VLXPath(move 0 0; line 10 0; close)": one entry per element, for test failures and logs.
VLX_EXPORT std::ostream& operator<<(std::ostream& os, const VLXPath& path);
