#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <vector>

#include <VelmarCoreUI/Platform/Primitives/VLXGeometry.h>

class VLXValue;

/// Rectangle and point helpers used to move and resize frames (callouts, tooltips, arrows).
///
/// Every rectangle function returns a new rectangle and reads its argument only through the
/// standardising accessors (minX, minY, width, height), so the result is standardised even for
/// a rectangle stored with a negative size. Values taken directly from an argument (an origin,
/// a width, a size, the two points of `VLXRectFromPoints`) are stored as given, negative or not.
/// Only the two centring functions round; nothing else does.

/// (0, 0, size.width, size.height).
VLX_EXPORT VLXRect VLXRectMakeFromSize(VLXSize size);
/// (x, minY, width, height).
VLX_EXPORT VLXRect VLXRectSetOriginX(VLXRect r, double x);
/// (minX, y, width, height).
VLX_EXPORT VLXRect VLXRectSetOriginY(VLXRect r, double y);
/// (origin.x, origin.y, width, height).
VLX_EXPORT VLXRect VLXRectSetOrigin(VLXRect r, VLXPoint origin);
/// Moves the rectangle so its right edge is at `maxX`: (maxX − width, minY, width, height).
VLX_EXPORT VLXRect VLXRectSetMaxX(VLXRect r, double maxX);
/// Moves the rectangle so its bottom edge is at `maxY`: (minX, maxY − height, width, height).
VLX_EXPORT VLXRect VLXRectSetMaxY(VLXRect r, double maxY);
/// Centres the rectangle horizontally on `centerX`. The new x is computed in double, then
/// rounded in single precision with halves away from zero (so above 2^24 it loses precision);
/// NaN stays NaN and values beyond the float range become ±infinity.
VLX_EXPORT VLXRect VLXRectSetCenterX(VLXRect r, double centerX);
/// The vertical counterpart of `VLXRectSetCenterX`, with the same single-precision rounding.
VLX_EXPORT VLXRect VLXRectSetCenterY(VLXRect r, double centerY);
/// (minX, minY, width, height) with the width as given.
VLX_EXPORT VLXRect VLXRectSetWidth(VLXRect r, double width);
/// (minX, minY, width, height) with the height as given.
VLX_EXPORT VLXRect VLXRectSetHeight(VLXRect r, double height);
/// (minX, minY, size.width, size.height).
VLX_EXPORT VLXRect VLXRectSetSize(VLXRect r, VLXSize size);
/// Grows the width by `amount` (negative shrinks) towards the right edge, or equally on both
/// sides when `centered`.
VLX_EXPORT VLXRect VLXRectStretchWidth(VLXRect r, double amount, bool centered);
/// Grows the height by `amount` towards the bottom edge, or equally on both sides when
/// `centered`.
VLX_EXPORT VLXRect VLXRectStretchHeight(VLXRect r, double amount, bool centered);
/// (minX + dx, minY, width, height).
VLX_EXPORT VLXRect VLXRectShiftOriginX(VLXRect r, double dx);
/// (minX, minY + dy, width, height).
VLX_EXPORT VLXRect VLXRectShiftOriginY(VLXRect r, double dy);
/// The rectangle's size centred in `container`, unrounded. A rectangle larger than its
/// container starts before the container's origin.
VLX_EXPORT VLXRect VLXRectCenteredInRect(VLXRect r, VLXRect container);
/// (p1.x, p1.y, p2.x − p1.x, p2.y − p1.y), not standardised: p2 left of p1 gives a negative
/// width.
VLX_EXPORT VLXRect VLXRectFromPoints(VLXPoint p1, VLXPoint p2);

/// The point halfway between `a` and `b`.
VLX_EXPORT VLXPoint CGPointGetMidpoint(VLXPoint a, VLXPoint b);
/// The mean of the boxed points, summed in order. Each element is read with `pointValue()`, so
/// an element that boxes no point counts as (0, 0). An empty array divides 0 by 0 and gives
/// (NaN, NaN).
VLX_EXPORT VLXPoint CGPointCentroidOfPoints(const std::vector<VLXValue>& points);
/// The same for plain points.
VLX_EXPORT VLXPoint CGPointCentroidOfPoints(const std::vector<VLXPoint>& points);
/// The direction from `from` to `to` in radians, in [0, 2π): atan2 of the differences, plus 2π
/// when negative (a tiny negative angle may round up to exactly 2π). NaN in gives NaN. With y
/// growing downward, angles turn clockwise on screen (a point straight above gives 3π/2). Equal
/// points give 0.
VLX_EXPORT double VLXPointGetAngle(VLXPoint from, VLXPoint to);
/// The Euclidean distance between `a` and `b`.
VLX_EXPORT double CGPointGetDistance(VLXPoint a, VLXPoint b);
