#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include <VelmarCoreUI/Platform/Primitives/VLXGeometry.h>

typedef struct _cairo cairo_t;

// Internal to the graphics context: its current path, kept in device coordinates.
namespace vlx::detail {

// Cairo stores coordinates as 24.8 fixed point (±8 million); points beyond this are clamped so
// that nothing wraps around.
inline constexpr double kDeviceCoordinateLimit = 1 << 20;

enum class PathOp : std::uint8_t { Move, Line, Curve, Close };

// The current path in device coordinates: points are transformed by the CTM (and the pixel
// scale) as they are added, as the platform does. Every subpath starts with an explicit move;
// quadratic curves are stored as the equivalent cubics.
struct DevicePath {
    std::vector<PathOp> ops;
    std::vector<VLXPoint> points;
    bool hasCurrentPoint = false;
    bool needsMove = false;  // after a close, the next segment starts at the subpath's start
    VLXPoint currentPoint;
    VLXPoint subpathStart;

    void clear();
    /// Consecutive moves collapse into the last one.
    void moveTo(VLXPoint p);
    /// Segments without a current point start a subpath at their first point.
    void lineTo(VLXPoint p);
    void curveTo(VLXPoint c1, VLXPoint c2, VLXPoint end);
    void quadTo(VLXPoint control, VLXPoint end);
    /// Nothing without a current point or right after a close.
    void close();

private:
    // Starts the subpath a segment needs; false when the segment's first point became a move.
    bool beginSegment(VLXPoint first);
};

/// One subpath of a device path: its ranges of ops and points and what kind of stroke it needs.
struct Subpath {
    std::size_t opBegin = 0, opEnd = 0;
    std::size_t pointBegin = 0, pointEnd = 0;
    bool closed = false;
    bool linesOnly = true;
    bool finite = true;
};

std::vector<Subpath> subpathsOf(const DevicePath& path);
/// The same into `result` (cleared first), reusing its storage.
void subpathsOf(const DevicePath& path, std::vector<Subpath>& result);
double clampCoordinate(double value);
/// Appends the subpath to cairo's current path, coordinates clamped.
void emitSubpath(cairo_t* cr, const DevicePath& path, const Subpath& subpath);
/// The polyline points of a lines-only subpath, clamped like every emitted coordinate
/// (`scratch` holds them when clamping was needed).
std::span<const VLXPoint> polylineOf(const DevicePath& path, const Subpath& subpath,
                                     std::vector<VLXPoint>& scratch);

/// The part of device space that can still show: the surface (or page) with a small margin.
struct DeviceWindow {
    double minX = 0, minY = 0, maxX = 0, maxY = 0;
    bool contains(VLXPoint p) const {
        return p.x >= minX && p.x <= maxX && p.y >= minY && p.y <= maxY;
    }
};

/// Appends the subpath as an area to fill, cut to `window`: a subpath lying inside is emitted
/// as it is (curves included); any other is flattened (only where it can reach the window) and
/// clipped to the window as a closed polygon, which keeps every winding number inside the
/// window and so both fill rules. Runs of points along one window edge collapse, so a huge path
/// around the window costs about as much as its part inside. `scratch` and `clipped` are reused.
void emitFillSubpath(cairo_t* cr, const DevicePath& path, const Subpath& subpath,
                     const DeviceWindow& window, std::vector<VLXPoint>& scratch,
                     std::vector<VLXPoint>& clipped);

}  // namespace vlx::detail
