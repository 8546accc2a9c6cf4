#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <span>
#include <vector>

#include <VelmarCoreUI/Platform/Foundation/VLXTypes.h>
#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>
#include <VelmarCoreUI/Platform/Graphics/VLXBezierPath.h>

/// Arrows and smoothing for bezier paths.
///
/// An arrow is seven points. Along +x from the origin, with total length L, tail width tw, head
/// width hw and head length hl, and t = L − hl:
///   0 (0, tw/2)   1 (t, tw/2)   2 (t, hw/2)   3 (L, 0) the tip
///   4 (t, −hw/2)  5 (t, −tw/2)  6 (0, −tw/2)
/// Between two points the arrow is this shape turned and moved so that it starts at the start
/// and its tip lies on the end. The length is the single-precision hypotenuse (`hypotf`) of the
/// difference, so it matches the platform bit for bit. Start equal to end divides by a zero
/// length: the points come out NaN (nothing crashes; drawing leaves such a path out).

/// Number of points in an arrow.
inline constexpr std::size_t VLXArrowPointCount = 7;

/// Writes the seven points of the axis-aligned arrow of `length` into `points[0 … 6]`. A buffer
/// smaller than seven points is left untouched (nothing is written).
VLX_EXPORT void vlx_getAxisAlignedArrowPoints(std::span<VLXPoint> points, double length,
                                              double tailWidth, double headWidth,
                                              double headLength);

/// Fills `points` with the arrow from `start` to `end`: the seven axis-aligned points are
/// written, then the first `count` entries are turned and moved in place (x′ = start.x +
/// (c·x − s·y), y′ = start.y + (s·x + c·y), with c and s the direction's cosine and sine).
/// `count` is clamped to the buffer's size, so entries after the seventh are mapped in place as
/// they were. A buffer smaller than seven points is left untouched.
VLX_EXPORT void vlx_pointsForArrowFromPoint(VLXPoint start, VLXPoint end, double tailWidth,
                                            double headWidth, double headLength,
                                            std::span<VLXPoint> points, VLXUInteger count);

/// A new closed path of the arrow from `start` to `end` (move, six lines, close), with default
/// drawing attributes. The points are the axis-aligned ones under the affine transform
/// [c, s, −s, c, start.x, start.y].
VLX_EXPORT VLXBezierPath vlx_bezierPathWithArrowFromPoint(VLXPoint start, VLXPoint end,
                                                          double tailWidth, double headWidth,
                                                          double headLength);

/// Largest granularity `vlx_smoothedPathWithGranularity` uses; larger values are clamped.
inline constexpr VLXInteger VLXSmoothingMaximumGranularity = 10000;
/// Largest number of interpolated points one smoothing call produces: for longer inputs the
/// granularity is lowered until (segments × (granularity − 1)) fits, so huge data cannot exhaust
/// memory (about 17 bytes per point).
inline constexpr VLXUInteger VLXSmoothingMaximumInterpolatedPoints = 20'000'000;

/// A copy of `path` (its drawing attributes kept) whose points are joined by a uniform
/// Catmull-Rom spline, for line-graph series.
///
/// The points are those of `pointsFromBezierPath` (control points count as vertices; several
/// subpaths run together as one polyline). Three points or fewer: an unchanged copy. Otherwise
/// the first and last points are doubled, and between each pair of neighbours
/// `granularity − 1` points are interpolated at t = (1/g)·j, computed in single precision as the
/// platform does. Interpolated y values are clamped to the data's y range (NaN values are
/// ignored when finding it), so the curve never overshoots, and an interpolated point is kept
/// only when its x lies right of the segment's preceding data point. The result is a move to
/// the first point, lines through the rest, and a final repeated line to the last point.
///
/// A granularity below 2 (negative included) interpolates nothing: the points joined by
/// straight lines. Granularities above `VLXSmoothingMaximumGranularity` are clamped, and the
/// granularity is lowered further when the output would exceed
/// `VLXSmoothingMaximumInterpolatedPoints`.
VLX_EXPORT VLXBezierPath vlx_smoothedPathWithGranularity(const VLXBezierPath& path,
                                                         VLXInteger granularity);

/// The points of `path`'s elements in order, boxed (`vlx_valueWithPoint`): one for a move or
/// line, two for a quadratic curve (control, end), three for a cubic (both controls, end),
/// none for a close.
VLX_EXPORT std::vector<VLXValue> pointsFromBezierPath(const VLXBezierPath& path);

/// The element visitor behind `pointsFromBezierPath`: appends `element`'s points, boxed, to
/// `points`. A close (or an element without a point array) appends nothing.
VLX_EXPORT void getPointsFromBezier(std::vector<VLXValue>& points, const VLXPathElement& element);
