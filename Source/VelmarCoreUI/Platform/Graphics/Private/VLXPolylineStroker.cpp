#include <VelmarCoreUI/Platform/Graphics/Private/VLXPolylineStroker.h>

#include <cairo.h>

#include <algorithm>
#include <cmath>

namespace vlx::detail {

namespace {

// How far before the nominal cut the stroker looks for a long segment to cut in the middle of:
// cutting a segment shorter than cairo's 1/256-pixel grid would lose its direction.
constexpr std::size_t kCutSearch = 16;
// Dash ends closer than this to a vertex are moved out to it (a sixty-fourth of a pixel changes
// no pixel): on cairo's grid a shorter end segment would collapse, taking the join at the vertex
// and the direction of the flat end with it.
constexpr double kShortestEndSegment = 1.0 / 64;
// Cairo's rounding allowance for dash boundaries (half a 24.8 fixed-point step).
constexpr double kDashSnap = 1.0 / 512;
// Cap shapes filled in one go.
constexpr std::size_t kCapBatch = 1000;

VLXPoint midpoint(VLXPoint a, VLXPoint b) {
    return VLXPoint{(a.x + b.x) / 2, (a.y + b.y) / 2};
}

VLXPoint lerp(VLXPoint a, VLXPoint b, double t) {
    return VLXPoint{a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t};
}

// Cairo keeps coordinates in 24.8 fixed point and measures its dashes between those rounded
// points; along a zigzag the rounding errors add up instead of cancelling, so dashes measured on
// exact points drift from cairo's by a fraction of a pixel. Measuring on the same grid keeps long
// and short dashed paths alike.
VLXPoint onCairoGrid(VLXPoint p) {
    return VLXPoint{std::round(p.x * 256) / 256, std::round(p.y * 256) / 256};
}

double squaredDistance(VLXPoint a, VLXPoint b) {
    return (b.x - a.x) * (b.x - a.x) + (b.y - a.y) * (b.y - a.y);
}

VLXPoint linearInverse(const VLXAffineTransform& m, VLXPoint v) {
    const double det = m.a * m.d - m.b * m.c;
    return VLXPoint{(v.x * m.d - v.y * m.c) / det, (v.y * m.a - v.x * m.b) / det};
}

double userLength(const VLXAffineTransform& m, VLXPoint from, VLXPoint to) {
    const VLXPoint u = linearInverse(m, VLXPoint{to.x - from.x, to.y - from.y});
    return std::hypot(u.x, u.y);
}

cairo_line_cap_t cairoCap(VLXLineCap cap) {
    return cap == VLXLineCap::Round    ? CAIRO_LINE_CAP_ROUND
           : cap == VLXLineCap::Square ? CAIRO_LINE_CAP_SQUARE
                                       : CAIRO_LINE_CAP_BUTT;
}

}  // namespace

VLXPolylineStroker::VLXPolylineStroker(cairo_t* cairo, const VLXAffineTransform& userToDevice,
                                       double lineWidth, VLXLineCap cap,
                                       std::span<const double> dash, double dashPhase)
    : m_cairo(cairo),
      m_userToDevice(userToDevice),
      m_lineWidth(lineWidth),
      m_cap(cap),
      m_dash(dash.begin(), dash.end()) {
    // An odd pattern repeats with on and off swapped, as PostScript and cairo read it.
    if (m_dash.size() % 2 == 1) {
        m_dash.insert(m_dash.end(), dash.begin(), dash.end());
    }
    m_dashPhase = std::isfinite(dashPhase) ? dashPhase : 0;
    cairo_new_path(m_cairo);
    cairo_identity_matrix(m_cairo);
    cairo_set_line_width(m_cairo, m_lineWidth);
}

double VLXPolylineStroker::userSpaceLength(std::span<const VLXPoint> points, bool closed,
                                           const VLXAffineTransform& userToDevice) {
    double length = 0;
    for (std::size_t i = 1; i < points.size(); ++i) {
        length += userLength(userToDevice, points[i - 1], points[i]);
    }
    if (closed && points.size() > 1) {
        length += userLength(userToDevice, points.back(), points.front());
    }
    return length;
}

void VLXPolylineStroker::addSubpath(std::span<const VLXPoint> points, bool closed) {
    if (points.empty() || (points.size() == 1 && !closed)) {
        return;  // a lone move draws nothing
    }
    if (m_dash.empty()) {
        addSolid(points, closed);
    } else {
        addDashed(points, closed);
    }
}

void VLXPolylineStroker::finish() {
    strokeBatch();
    fillCaps();
}

void VLXPolylineStroker::emit(VLXPoint first, std::span<const VLXPoint> middle, VLXPoint last) {
    cairo_move_to(m_cairo, first.x, first.y);
    for (const VLXPoint& p : middle) {
        cairo_line_to(m_cairo, p.x, p.y);
    }
    cairo_line_to(m_cairo, last.x, last.y);
}

void VLXPolylineStroker::strokeEmitted(VLXLineCap cap) {
    cairo_set_line_cap(m_cairo, cairoCap(cap));
    cairo_matrix_t matrix;
    cairo_matrix_init(&matrix, m_userToDevice.a, m_userToDevice.b, m_userToDevice.c,
                      m_userToDevice.d, m_userToDevice.tx, m_userToDevice.ty);
    cairo_set_matrix(m_cairo, &matrix);
    cairo_stroke(m_cairo);
    cairo_identity_matrix(m_cairo);
}

void VLXPolylineStroker::strokeBatch() {
    if (!m_batchEmpty) {
        strokeEmitted(m_cap);
    }
    m_batchEmpty = true;
    m_batchSegments = 0;
}

void VLXPolylineStroker::addSolid(std::span<const VLXPoint> points, bool closed) {
    const std::size_t segments = points.size() - 1 + (closed ? 1 : 0);
    if (segments <= kPieceSegments) {
        if (!m_batchEmpty && m_batchSegments + segments > kPieceSegments) {
            strokeBatch();
        }
        cairo_move_to(m_cairo, points.front().x, points.front().y);
        for (std::size_t i = 1; i < points.size(); ++i) {
            cairo_line_to(m_cairo, points[i].x, points[i].y);
        }
        if (closed) {
            cairo_close_path(m_cairo);
        }
        m_batchSegments += std::max<std::size_t>(segments, 1);
        m_batchEmpty = false;
        return;
    }
    if (closed) {
        // Start and end in the middle of the longest of the first segments, so that the two
        // flat ends meet there and every corner, the first one included, is an ordinary join.
        m_scratch.assign(points.begin(), points.end());
        m_scratch.push_back(points.front());
        std::size_t best = 0;
        for (std::size_t i = 1; i < kCutSearch && i + 1 < m_scratch.size(); ++i) {
            if (squaredDistance(m_scratch[i], m_scratch[i + 1]) >
                squaredDistance(m_scratch[best], m_scratch[best + 1])) {
                best = i;
            }
        }
        const VLXPoint middle = midpoint(m_scratch[best], m_scratch[best + 1]);
        std::rotate(m_scratch.begin(), m_scratch.begin() + static_cast<std::ptrdiff_t>(best) + 1,
                    m_scratch.end() - 1);
        // Now: p[best+1] … p[n], p[0] … p[best], and the closing copy of p[0] to drop.
        m_scratch.back() = middle;
        m_scratch.insert(m_scratch.begin(), middle);
        addCut(m_scratch);
        return;
    }
    std::size_t first = 1;
    while (first < points.size() && points[first] == points[0]) {
        ++first;
    }
    if (first == points.size()) {
        addSolid(points.first(2), false);  // every point the same: a dot, as cairo draws it
        return;
    }
    addCut(points);
    if (m_cap != VLXLineCap::Butt) {
        std::size_t beforeLast = points.size() - 2;
        while (points[beforeLast] == points.back()) {
            --beforeLast;  // stops at `first - 1` at the latest, whose point differs
        }
        addCap(points.front(),
               VLXPoint{points.front().x - points[first].x, points.front().y - points[first].y},
               false);
        addCap(points.back(),
               VLXPoint{points.back().x - points[beforeLast].x,
                        points.back().y - points[beforeLast].y},
               false);
    }
}

void VLXPolylineStroker::addCut(std::span<const VLXPoint> sequence) {
    strokeBatch();
    const std::size_t last = sequence.size() - 1;
    std::size_t start = 0;
    VLXPoint startPoint = sequence.front();
    while (last - start > kPieceSegments) {
        const std::size_t nominal = start + kPieceSegments;
        std::size_t cut = nominal;
        for (std::size_t i = nominal; i + kCutSearch > nominal && i > start; --i) {
            if (squaredDistance(sequence[i], sequence[i + 1]) >
                squaredDistance(sequence[cut], sequence[cut + 1])) {
                cut = i;
            }
        }
        const VLXPoint middle = midpoint(sequence[cut], sequence[cut + 1]);
        emit(startPoint, sequence.subspan(start + 1, cut - start), middle);
        strokeEmitted(VLXLineCap::Butt);
        start = cut;
        startPoint = middle;
    }
    emit(startPoint, sequence.subspan(start + 1, last - start - 1), sequence[last]);
    strokeEmitted(VLXLineCap::Butt);
}

void VLXPolylineStroker::addCap(VLXPoint end, VLXPoint direction, bool whole) {
    if (m_cap == VLXLineCap::Butt) {
        return;
    }
    m_caps.push_back(Cap{end, direction, whole});
    if (m_caps.size() >= kCapBatch) {
        strokeBatch();
        fillCaps();
    }
}

void VLXPolylineStroker::fillCaps() {
    if (m_caps.empty()) {
        return;
    }
    // Built in user space, where the pen is round (or square) with the line width.
    cairo_matrix_t matrix;
    cairo_matrix_init(&matrix, m_userToDevice.a, m_userToDevice.b, m_userToDevice.c,
                      m_userToDevice.d, m_userToDevice.tx, m_userToDevice.ty);
    cairo_set_matrix(m_cairo, &matrix);
    cairo_new_path(m_cairo);
    const double half = m_lineWidth / 2;
    for (const Cap& cap : m_caps) {
        double ux = 0, uy = 0;
        double cx = cap.end.x, cy = cap.end.y;
        cairo_device_to_user(m_cairo, &cx, &cy);
        ux = cap.direction.x, uy = cap.direction.y;
        cairo_device_to_user_distance(m_cairo, &ux, &uy);
        const double length = std::hypot(ux, uy);
        if (!(length > 0)) {
            continue;
        }
        ux /= length, uy /= length;
        const double nx = -uy, ny = ux;
        const double back = cap.whole ? half : 0;
        if (m_cap == VLXLineCap::Round) {
            const double angle = std::atan2(uy, ux);
            cairo_new_sub_path(m_cairo);
            if (cap.whole) {
                cairo_arc(m_cairo, cx, cy, half, 0, 2 * M_PI);
            } else {
                cairo_arc(m_cairo, cx, cy, half, angle - M_PI / 2, angle + M_PI / 2);
            }
        } else {
            cairo_move_to(m_cairo, cx + nx * half - ux * back, cy + ny * half - uy * back);
            cairo_line_to(m_cairo, cx + nx * half + ux * half, cy + ny * half + uy * half);
            cairo_line_to(m_cairo, cx - nx * half + ux * half, cy - ny * half + uy * half);
            cairo_line_to(m_cairo, cx - nx * half - ux * back, cy - ny * half - uy * back);
        }
        cairo_close_path(m_cairo);
    }
    cairo_set_fill_rule(m_cairo, CAIRO_FILL_RULE_WINDING);
    cairo_fill(m_cairo);
    cairo_identity_matrix(m_cairo);
    m_caps.clear();
}

void VLXPolylineStroker::addDashed(std::span<const VLXPoint> points, bool closed) {
    const std::size_t count = m_dash.size();
    double total = 0;
    for (double length : m_dash) {
        total += length;
    }
    double phase = std::fmod(m_dashPhase, total);
    if (phase < 0) {
        phase += total;
    }
    std::size_t index = 0;
    for (std::size_t guard = 0; guard < 2 * count && phase >= m_dash[index]; ++guard) {
        phase -= m_dash[index];
        index = (index + 1) % count;
    }
    double remaining = std::max(0.0, m_dash[index] - phase);
    bool on = index % 2 == 0;
    const bool startsOn = on;

    std::vector<VLXPoint> current;
    std::vector<VLXPoint> firstDash;
    bool holdingFirst = closed && startsOn;
    bool finishedAny = false;
    if (on) {
        current.push_back(onCairoGrid(points.front()));
    }
    VLXPoint startDirection{1, 0};
    // Keeps the first and last segments of a dash that turns at a vertex long enough for cairo.
    auto lengthenEnds = [&](VLXPoint endDirection) {
        if (current.size() < 3) {
            return;
        }
        auto pushOut = [](VLXPoint& end, VLXPoint from, VLXPoint direction) {
            const double length = std::hypot(direction.x, direction.y);
            if (squaredDistance(end, from) < kShortestEndSegment * kShortestEndSegment &&
                length > 0) {
                end = VLXPoint{from.x + direction.x / length * kShortestEndSegment,
                               from.y + direction.y / length * kShortestEndSegment};
            }
        };
        pushOut(current.back(), current[current.size() - 2], endDirection);
        pushOut(current.front(), current[1], VLXPoint{-startDirection.x, -startDirection.y});
    };
    auto finishDash = [&](VLXPoint direction) {
        finishedAny = true;
        lengthenEnds(direction);
        if (holdingFirst) {
            firstDash = std::move(current);
            holdingFirst = false;
            current.clear();
            return;
        }
        const bool degenerate = std::all_of(current.begin(), current.end(),
                                            [&](VLXPoint p) { return p == current[0]; });
        if (!degenerate) {
            addSolid(current, false);
        } else if (!current.empty()) {
            addCap(current[0], direction, true);  // a zero-length dash still shows its caps
        }
        current.clear();
    };

    const std::size_t segments = points.size() - 1 + (closed ? 1 : 0);
    VLXPoint lastDirection{1, 0};
    for (std::size_t k = 0; k < segments; ++k) {
        const VLXPoint from = onCairoGrid(points[k]);
        const VLXPoint to = onCairoGrid(k + 1 < points.size() ? points[k + 1] : points.front());
        const double length = userLength(m_userToDevice, from, to);
        if (!(length > 0)) {
            continue;
        }
        lastDirection = VLXPoint{to.x - from.x, to.y - from.y};
        double travelled = 0;
        while (length - travelled > remaining) {
            travelled += remaining;
            const VLXPoint cut = lerp(from, to, travelled / length);
            if (on) {
                current.push_back(cut);
                finishDash(lastDirection);
            } else {
                current.assign(1, cut);
                startDirection = lastDirection;
            }
            index = (index + 1) % count;
            remaining = m_dash[index];
            on = !on;
        }
        remaining -= length - travelled;
        if (on) {
            current.push_back(to);
        }
        // Like cairo, a dash boundary within half a grid step of a vertex falls on the vertex.
        // A dash ending there stops flat; a dash starting there begins with the join, so it
        // starts a hair back on the segment just walked.
        if (remaining < kDashSnap) {
            if (on) {
                finishDash(lastDirection);
            } else {
                const double step =
                    kShortestEndSegment / std::hypot(lastDirection.x, lastDirection.y);
                current.assign(
                    1, VLXPoint{to.x - lastDirection.x * step, to.y - lastDirection.y * step});
                current.push_back(to);
                startDirection = lastDirection;
            }
            index = (index + 1) % count;
            remaining += m_dash[index];
            on = !on;
        }
    }

    if (closed && startsOn && on) {
        if (!finishedAny) {
            addSolid(points, true);  // "on" all the way round: an unbroken closed outline
            return;
        }
        // The dash running through the start point continues into the first one.
        current.insert(current.end(), firstDash.begin() + 1, firstDash.end());
        finishDash(lastDirection);
        return;
    }
    if (!firstDash.empty()) {
        std::vector<VLXPoint> last = std::move(current);
        current = std::move(firstDash);
        finishDash(lastDirection);
        current = std::move(last);
    }
    if (on && current.size() > 1) {
        finishDash(lastDirection);
    }
}

}  // namespace vlx::detail
