#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include <VelmarCoreUI/Platform/Primitives/VLXGeometry.h>

namespace vlx::detail {

struct DevicePath;
struct Subpath;

/// Internal to the graphics context: shrinks long, thin, solid polylines at device resolution
/// before they are stroked.
///
/// Consecutive vertices whose x falls into one column (`columnWidth` device pixels wide) are
/// replaced by the first, the lowest, the highest and the last of them, in their original order.
/// Within the column the thin stroke of the replaced run covers the span from its lowest to its
/// highest point, and so does the stroke through the four kept points; the segments between
/// columns are kept exactly. A dense line (hundreds of points per pixel) shrinks to four points
/// per column, whatever its length.
///
/// Appends the reduced points of `points` to `out`. Fewer than three points are copied.
void reducePolylineByColumn(std::span<const VLXPoint> points, double columnWidth,
                            std::vector<VLXPoint>& out);

}  // namespace vlx::detail

namespace vlx::detail {

/// Device line widths up to this many pixels count as thin.
inline constexpr double kReductionMaximumDeviceWidth = 2;
/// Width of a reduction column in device pixels. Whole-pixel columns lose the horizontal spread
/// of a dense run under anti-aliasing (its coverage fills the pixel, four points cover a band
/// of the line width), which changed pixels by up to 60 % on noisy data; quarter columns keep
/// the bands of neighbouring columns overlapping and stay within a few levels of the full stroke.
inline constexpr double kReductionColumnWidth = 0.25;

/// Process-wide switch, on by default; tests turn it off to draw the unreduced reference.
void setPolylineReductionEnabled(bool enabled);
bool polylineReductionEnabled();

/// Copies `path` into `out` with every lines-only, finite subpath of more than `minimumSegments`
/// segments reduced by column; other subpaths are copied as they are. `scratch` is reused.
/// Returns the number of points removed.
std::size_t reduceDevicePath(const DevicePath& path, std::span<const Subpath> subpaths,
                             std::size_t minimumSegments, double columnWidth, DevicePath& out,
                             std::vector<VLXPoint>& scratch);

}  // namespace vlx::detail
