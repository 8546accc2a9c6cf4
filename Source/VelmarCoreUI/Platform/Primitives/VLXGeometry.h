#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <iosfwd>
#include <limits>

/// Points, sizes, rectangles, edge insets and offsets in points: origin at the top left, y
/// growing downward. Plain aggregates compared exactly (`==`), as the platform's structs are.
///
/// Edge semantics, shared by every helper below:
///  * A rectangle may be stored with a negative width or height. Everything that reads a
///    rectangle standardises it first (the origin moves to the smaller edge, the size becomes
///    positive), so `minX()` is always the left edge and `width()` never negative.
///  * The null rectangle (`VLXRectNull`) has an infinite origin and zero size; it stands for
///    "no rectangle" (the intersection of disjoint rectangles). Every rectangle with a +∞ origin
///    coordinate counts as null. Helpers return it unchanged, and `VLXRectUnion` ignores it.
///  * The infinite rectangle (`VLXRectInfinite`) covers the whole plane: origin −DBL_MAX/2, size
///    DBL_MAX, so that its maximum edges stay finite.
///  * Containment of points is half-open: the minimum edges belong to a rectangle, the maximum
///    edges do not. Empty rectangles contain no point.
///  * NaN components are carried through arithmetic and make comparisons false; nothing is ever
///    converted to an integer, so NaN and infinities are always safe to pass.
struct VLX_EXPORT VLXPoint {
    double x = 0;
    double y = 0;
    friend constexpr bool operator==(const VLXPoint&, const VLXPoint&) = default;
};

struct VLX_EXPORT VLXSize {
    double width = 0;
    double height = 0;
    friend constexpr bool operator==(const VLXSize&, const VLXSize&) = default;
};

/// A rectangle as stored: its size may be negative. The accessors standardise first (a negative
/// width or height counts as positive, with the origin at the smaller edge), so `minX()` is
/// always the left edge and `width()` never negative. The null rectangle has infinite origin.
struct VLX_EXPORT VLXRect {
    VLXPoint origin;
    VLXSize size;

    double minX() const;
    double midX() const;
    double maxX() const;
    double minY() const;
    double midY() const;
    double maxY() const;
    double width() const;
    double height() const;
    /// The same area with a non-negative size; the null rectangle stays null.
    VLXRect standardized() const;
    /// True for the null rectangle and for rectangles with zero width or height.
    bool isEmpty() const;
    /// True when either origin coordinate is +∞ (the null rectangle).
    bool isNull() const;
    /// True only for `VLXRectInfinite` exactly.
    bool isInfinite() const;

    friend constexpr bool operator==(const VLXRect&, const VLXRect&) = default;
};

struct VLX_EXPORT VLXEdgeInsets {
    double top = 0;
    double left = 0;
    double bottom = 0;
    double right = 0;
    friend constexpr bool operator==(const VLXEdgeInsets&, const VLXEdgeInsets&) = default;
};

struct VLX_EXPORT VLXOffset {
    double horizontal = 0;
    double vertical = 0;
    friend constexpr bool operator==(const VLXOffset&, const VLXOffset&) = default;
};

inline constexpr VLXPoint VLXPointZero{};
inline constexpr VLXSize VLXSizeZero{};
inline constexpr VLXRect VLXRectZero{};
inline constexpr VLXEdgeInsets VLXEdgeInsetsZero{};
inline constexpr VLXOffset VLXOffsetZero{};

/// "No rectangle": origin (+∞, +∞), size zero.
inline constexpr VLXRect VLXRectNull{
    {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity()}, {0, 0}};
/// The whole plane.
inline constexpr VLXRect VLXRectInfinite{
    {-std::numeric_limits<double>::max() / 2, -std::numeric_limits<double>::max() / 2},
    {std::numeric_limits<double>::max(), std::numeric_limits<double>::max()}};

constexpr VLXPoint VLXPointMake(double x, double y) {
    return VLXPoint{x, y};
}
constexpr VLXSize VLXSizeMake(double width, double height) {
    return VLXSize{width, height};
}
constexpr VLXRect VLXRectMake(double x, double y, double width, double height) {
    return VLXRect{{x, y}, {width, height}};
}
constexpr VLXEdgeInsets VLXEdgeInsetsMake(double top, double left, double bottom, double right) {
    return VLXEdgeInsets{top, left, bottom, right};
}
constexpr VLXOffset VLXOffsetMake(double horizontal, double vertical) {
    return VLXOffset{horizontal, vertical};
}

// --- accessors (standardising) -----------------------------------------------------------------

inline double VLXRectGetMinX(const VLXRect& r) {
    return r.minX();
}
inline double VLXRectGetMidX(const VLXRect& r) {
    return r.midX();
}
inline double VLXRectGetMaxX(const VLXRect& r) {
    return r.maxX();
}
inline double VLXRectGetMinY(const VLXRect& r) {
    return r.minY();
}
inline double VLXRectGetMidY(const VLXRect& r) {
    return r.midY();
}
inline double VLXRectGetMaxY(const VLXRect& r) {
    return r.maxY();
}
inline double VLXRectGetWidth(const VLXRect& r) {
    return r.width();
}
inline double VLXRectGetHeight(const VLXRect& r) {
    return r.height();
}
inline VLXRect VLXRectStandardize(const VLXRect& r) {
    return r.standardized();
}
inline bool VLXRectIsNull(const VLXRect& r) {
    return r.isNull();
}
inline bool VLXRectIsEmpty(const VLXRect& r) {
    return r.isEmpty();
}
inline bool VLXRectIsInfinite(const VLXRect& r) {
    return r.isInfinite();
}

// --- comparison --------------------------------------------------------------------------------

/// Exact comparison of the components (NaN never equals anything).
inline bool VLXPointEqualToPoint(const VLXPoint& a, const VLXPoint& b) {
    return a == b;
}
inline bool VLXSizeEqualToSize(const VLXSize& a, const VLXSize& b) {
    return a == b;
}
/// Compares the standardised rectangles, so (10, 0, −10, 5) equals (0, 0, 10, 5). Any two null
/// rectangles are equal.
VLX_EXPORT bool VLXRectEqualToRect(const VLXRect& a, const VLXRect& b);
inline bool VLXEdgeInsetsEqualToEdgeInsets(const VLXEdgeInsets& a, const VLXEdgeInsets& b) {
    return a == b;
}

// --- containment and intersection --------------------------------------------------------------

/// Half-open: minX <= x < maxX and minY <= y < maxY. False for null and empty rectangles.
VLX_EXPORT bool VLXRectContainsPoint(const VLXRect& r, const VLXPoint& p);
/// True when `inner` lies within `outer`, edges included. A null `inner` is contained in every
/// rectangle; a null `outer` contains nothing else. Empty rectangles count by their position.
VLX_EXPORT bool VLXRectContainsRect(const VLXRect& outer, const VLXRect& inner);
/// True when the two rectangles share an area of positive size: rectangles that only touch
/// along an edge, and empty or null rectangles, intersect nothing.
VLX_EXPORT bool VLXRectIntersectsRect(const VLXRect& a, const VLXRect& b);
/// The common part, standardised. Null when either is null or they are apart; rectangles that
/// touch along an edge give an empty rectangle on that edge.
VLX_EXPORT VLXRect VLXRectIntersection(const VLXRect& a, const VLXRect& b);
/// The smallest rectangle containing both. The null rectangle is the identity (the union with
/// null is the other rectangle, standardised); empty rectangles take part by their position.
VLX_EXPORT VLXRect VLXRectUnion(const VLXRect& a, const VLXRect& b);

// --- derived rectangles ------------------------------------------------------------------------

/// Standardised, then moved in by dx on the left and right and dy on the top and bottom
/// (negative values grow it). Null when the result would have a negative size, and for null.
VLX_EXPORT VLXRect VLXRectInset(const VLXRect& r, double dx, double dy);
/// Standardised and moved; null stays null.
VLX_EXPORT VLXRect VLXRectOffset(const VLXRect& r, double dx, double dy);
/// The smallest rectangle with whole-number edges containing `r` (origin floored, maximum edges
/// ceiled). Null and infinite rectangles are returned unchanged; non-finite components stay.
VLX_EXPORT VLXRect VLXRectIntegral(const VLXRect& r);

/// Which edge `VLXRectDivide` cuts from.
enum VLXRectEdge { VLXRectEdgeMinX = 0, VLXRectEdgeMinY, VLXRectEdgeMaxX, VLXRectEdgeMaxY };

/// Cuts `amount` (clamped to 0 … the rectangle's extent; NaN counts as 0) off the standardised
/// `r` from `edge` into `slice`; the rest goes to `remainder`. A null `r` gives null for both.
VLX_EXPORT void VLXRectDivide(const VLXRect& r, VLXRect& slice, VLXRect& remainder, double amount,
                              VLXRectEdge edge);

/// The rectangle moved in by the insets: origin + (left, top), size − (left + right, top +
/// bottom). The arithmetic is done on the stored fields, without standardising, and the size may
/// come out negative (negative insets grow it).
constexpr VLXRect VLXEdgeInsetsInsetRect(const VLXRect& r, const VLXEdgeInsets& insets) {
    return VLXRect{{r.origin.x + insets.left, r.origin.y + insets.top},
                   {r.size.width - (insets.left + insets.right),
                    r.size.height - (insets.top + insets.bottom)}};
}

// gtest prints these through PrintTo / operator<< in failure messages, in the platform's
// "{{x, y}, {w, h}}" notation with enough digits to tell values apart.
VLX_EXPORT std::ostream& operator<<(std::ostream& os, const VLXPoint& p);
VLX_EXPORT std::ostream& operator<<(std::ostream& os, const VLXSize& s);
VLX_EXPORT std::ostream& operator<<(std::ostream& os, const VLXRect& r);
VLX_EXPORT std::ostream& operator<<(std::ostream& os, const VLXEdgeInsets& e);
VLX_EXPORT std::ostream& operator<<(std::ostream& os, const VLXOffset& o);
