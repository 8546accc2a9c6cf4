// Long polylines are stroked in pieces (see VLXPolylineStroker); these tests compare that road
// with cairo's single stroke of the same points. A subpath holding a curve always takes the
// single stroke, so the reference is the same polyline whose first segment is a straight cubic.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "DrawingTestSupport.h"

namespace {

// An Archimedean spiral zigzagging by ±1.5 pixels, so that every vertex is a sharp join (but
// never so sharp that rounding could tip a miter over its limit). Its arms, 8 pixels apart,
// never touch: the only differences the pieces may make are at their seams.
std::vector<VLXPoint> spiral(int count) {
    std::vector<VLXPoint> points;
    for (int i = 0; i < count; ++i) {
        const double t = static_cast<double>(i) / (count - 1);
        const double angle = t * 18 * 2 * M_PI;
        const double radius = 40 + 150 * t + (i % 2 == 0 ? 1.5 : -1.5);
        points.push_back(
            VLXPointMake(200 + radius * std::cos(angle), 200 + radius * std::sin(angle)));
    }
    return points;
}

VLXPath polyline(const std::vector<VLXPoint>& points, bool curveFirst, bool closed = false) {
    VLXPath path;
    path.moveToPoint(points[0]);
    if (curveFirst) {
        const VLXPoint a = points[0], b = points[1];
        path.addCurveToPoint(VLXPointMake(a.x + (b.x - a.x) / 3, a.y + (b.y - a.y) / 3),
                             VLXPointMake(a.x + 2 * (b.x - a.x) / 3, a.y + 2 * (b.y - a.y) / 3), b);
    } else {
        path.addLineToPoint(points[1]);
    }
    for (std::size_t i = 2; i < points.size(); ++i) {
        path.addLineToPoint(points[i]);
    }
    if (closed) {
        path.closeSubpath();
    }
    return path;
}

struct StrokeSetup {
    VLXLineCap cap = VLXLineCap::Butt;
    VLXLineJoin join = VLXLineJoin::Miter;
    double width = 2.5;
    double alpha = 1;
    std::vector<double> dash;
};

Pixels stroked(const VLXPath& path, const StrokeSetup& setup, double scale = 1) {
    auto context = makeBitmap(400, 400, scale);
    context->setStrokeColor(VLXColor::colorWithRed(0.1, 0.3, 0.9, setup.alpha));
    context->setLineWidth(setup.width);
    context->setLineCap(setup.cap);
    context->setLineJoin(setup.join);
    context->setLineDash(3, setup.dash);
    context->addPath(path);
    context->strokePath();
    return Pixels(*context);
}

}  // namespace

TEST(LongStroke, PiecesDrawWhatOneStrokeDraws) {
    const std::vector<VLXPoint> points = spiral(5000);
    const VLXPath path = polyline(points, false);
    const VLXPath reference = polyline(points, true);
    const VLXPath copy = path;

    const std::vector<StrokeSetup> setups = {
        {},
        {VLXLineCap::Round, VLXLineJoin::Round, 3, 0.5, {}},
        {VLXLineCap::Square, VLXLineJoin::Bevel, 2, 1, {}},
        {VLXLineCap::Butt, VLXLineJoin::Miter, 2.5, 1, {12, 5}},
        {VLXLineCap::Round, VLXLineJoin::Miter, 2, 0.6, {9, 4, 0.5, 4}},
    };
    for (std::size_t i = 0; i < setups.size(); ++i) {
        const Pixels ours = stroked(path, setups[i]);
        const Pixels theirs = stroked(reference, setups[i]);
        const int painted = theirs.countPainted();
        ASSERT_GT(painted, 20000) << i;
        // Seams may shift anti-aliased edge pixels slightly; anything visible (a gap at a cut,
        // a lost cap or join, a dash out of phase) changes several pixels by far more.
        EXPECT_LE(ours.countAlphaDifferences(theirs, 40), 3) << "setup " << i;
        EXPECT_LE(ours.countAlphaDifferences(theirs, 4), painted / 100) << "setup " << i;
    }
    EXPECT_EQ(path, copy);  // the caller's path is a value and stays as it was

    // Closed: the closing segment and the join at the start are drawn, no caps.
    const std::vector<VLXPoint> ring = [] {
        std::vector<VLXPoint> wavy;
        for (int i = 0; i < 2400; ++i) {
            const double angle = i * 2 * M_PI / 2400;
            const double radius = 150 + 4 * std::sin(12 * angle);
            wavy.push_back(
                VLXPointMake(200 + radius * std::cos(angle), 200 + radius * std::sin(angle)));
        }
        return wavy;
    }();
    const StrokeSetup thin{VLXLineCap::Square, VLXLineJoin::Miter, 3, 1, {}};
    const Pixels ours = stroked(polyline(ring, false, true), thin, 2);
    const Pixels theirs = stroked(polyline(ring, true, true), thin, 2);
    EXPECT_LE(ours.countAlphaDifferences(theirs, 40), 3);
}

TEST(LongStroke, TranslucentPiecesNeverDoubleUp) {
    // A noisy line crossing itself everywhere, in a translucent colour: however often the
    // pieces overlap, no pixel gets more than the colour's alpha, and no column is skipped.
    std::vector<VLXPoint> points;
    unsigned seed = 12345;
    for (int i = 0; i < 20000; ++i) {
        seed = seed * 1103515245U + 12345U;
        const double noise = static_cast<double>((seed >> 8) % 1000) / 1000.0;
        points.push_back(VLXPointMake(2 + 396.0 * i / 19999, 100 + 200 * noise));
    }
    const StrokeSetup setup{VLXLineCap::Butt, VLXLineJoin::Miter, 1.5, 0.5, {}};
    const Pixels pixels = stroked(polyline(points, false), setup);
    int highest = 0;
    for (int x = 0; x < 400; ++x) {
        int columnHighest = 0;
        for (int y = 0; y < 400; ++y) {
            columnHighest = std::max(columnHighest, pixels.alpha(x, y));
        }
        highest = std::max(highest, columnHighest);
        if (x >= 3 && x <= 396) {
            EXPECT_GE(columnHighest, 120) << x;
        }
    }
    EXPECT_LE(highest, 128);
}
