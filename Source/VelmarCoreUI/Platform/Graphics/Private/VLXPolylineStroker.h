#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include <VelmarCoreUI/Platform/Graphics/VLXBezierPath.h>
#include <VelmarCoreUI/Platform/Primitives/VLXAffineTransform.h>
#include <VelmarCoreUI/Platform/Primitives/VLXGeometry.h>

typedef struct _cairo cairo_t;

namespace vlx::detail {

/// Internal to the graphics context: strokes polylines through cairo without handing it one
/// huge path. Cairo's rasteriser slows down super-linearly with the number of edges in a single
/// stroke (every scanline sorts every edge that crosses it), so a million-point line as one path
/// takes ~20× longer than the same points in 1 000-segment strokes. Smaller pieces are faster
/// still: on dense and on wide-ranging noisy lines 100-segment strokes took 0.3–0.8× the time of
/// 1 000-segment ones, while the per-stroke overhead stays negligible.
///
/// Polylines come in device coordinates. Short ones are batched into strokes of at most
/// `kPieceSegments` segments with the real caps. Longer ones are cut into pieces of about that
/// many segments, each cut in the middle of a segment and both sides stroked with butt caps, so
/// that the two flat ends meet exactly on one line and every join lies whole inside one piece.
/// The real caps of a cut polyline are filled separately as the shapes beyond its flat ends
/// (a half disc, a half square). Dashes are cut here (lengths measured in user space, the phase
/// carried along the whole polyline; a closed subpath that is "on" at both ends of the pattern
/// joins there, as cairo does) and each dash is then an open polyline.
///
/// Everything is drawn with the operator the caller set, meant to be ADD into an alpha-only
/// group: pieces and caps that meet edge to edge then sum to exactly the coverage of one stroke,
/// and overlaps saturate instead of darkening. The caller paints its colour through the group.
///
/// The caller sets source, operator, join, miter limit and antialias; the stroker sets the line
/// width, cap and matrix. It emits paths with the identity matrix, strokes with `userToDevice` (so
/// the pen has the user-space line width) and leaves the identity matrix set.
class VLXPolylineStroker {
public:
    static constexpr std::size_t kPieceSegments = 100;

    /// `userToDevice` must be invertible and `lineWidth` (user space) positive. `dash` holds
    /// valid lengths, at least one positive (empty: solid).
    VLXPolylineStroker(cairo_t* cairo, const VLXAffineTransform& userToDevice, double lineWidth,
                       VLXLineCap cap, std::span<const double> dash, double dashPhase);
    VLXPolylineStroker(const VLXPolylineStroker&) = delete;
    VLXPolylineStroker& operator=(const VLXPolylineStroker&) = delete;

    /// Adds one subpath of finite device points (at least one).
    void addSubpath(std::span<const VLXPoint> points, bool closed);
    /// Strokes and fills what is still batched. Call once after the last subpath.
    void finish();

    /// Length in user space of the polyline (closing segment included when `closed`).
    static double userSpaceLength(std::span<const VLXPoint> points, bool closed,
                                  const VLXAffineTransform& userToDevice);

private:
    struct Cap {
        VLXPoint end;        // device
        VLXPoint direction;  // device, pointing away from the line
        bool whole;          // a zero-length dash: the cap shape on both sides
    };

    void addSolid(std::span<const VLXPoint> points, bool closed);
    void addCut(std::span<const VLXPoint> sequence);
    void addCap(VLXPoint end, VLXPoint direction, bool whole);
    void addDashed(std::span<const VLXPoint> points, bool closed);
    void emit(VLXPoint first, std::span<const VLXPoint> middle, VLXPoint last);
    void strokeBatch();
    void fillCaps();
    void strokeEmitted(VLXLineCap cap);

    cairo_t* m_cairo;
    VLXAffineTransform m_userToDevice;
    double m_lineWidth;
    VLXLineCap m_cap;
    std::vector<double> m_dash;
    double m_dashPhase = 0;
    std::size_t m_batchSegments = 0;
    bool m_batchEmpty = true;
    std::vector<Cap> m_caps;
    std::vector<VLXPoint> m_scratch;
};

}  // namespace vlx::detail
