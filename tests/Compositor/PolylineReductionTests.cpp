// Thin long polylines are reduced to the extremes of each device column before they are stroked;
// these tests compare the pixels with cairo's own single stroke of all the points.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <vector>

#include <VelmarCoreUI/Platform/Graphics/Private/VLXPolylineReduction.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>

#include "CompositorTestSupport.h"

namespace {

// Largest difference of any channel (0…255) allowed between the reduced and the full stroke.
constexpr int kReductionTolerance = 8;

// Dense, x-monotone data: 15 000 points over 390 pixels (about 38 per pixel column).
std::vector<VLXPoint> denseCurve(int kind) {
    std::vector<VLXPoint> points;
    const int n = 15000;
    for (int i = 0; i < n; ++i) {
        const double t = static_cast<double>(i) / (n - 1);
        const double x = 5 + t * 390;
        const double y =
            kind == 0 ? 100 + std::sin(t * 40) * 70 : 100 + std::sin(t * t * 120) * 80 * (1 - t);
        points.push_back(VLXPointMake(x, y));
    }
    return points;
}

std::shared_ptr<VLXImage> stroke(const std::vector<VLXPoint>& points, double width, double scale,
                                 VLXLineJoin join, bool reduce) {
    auto context = VLXGraphicsContext::createBitmap(VLXSizeMake(400, 200), scale);
    context->setStrokeColor(VLXColor::colorWithRed(0.1, 0.2, 0.8, 1));
    context->setLineWidth(width);
    context->setLineJoin(join);
    context->setLineCap(VLXLineCap::Round);
    VLXPath path;
    if (reduce) {
        path.addLines(points);
    } else {
        // A subpath holding a curve is never reduced nor cut into pieces: cairo strokes it whole,
        // the exact reference. The curve is the straight first segment.
        path.moveToPoint(points[0]);
        path.addCurveToPoint(points[0], points[1], points[1]);
        for (std::size_t i = 2; i < points.size(); ++i) {
            path.addLineToPoint(points[i]);
        }
    }
    context->addPath(path);
    context->strokePath();
    return context->makeImage();
}

int largestChannelDifference(const VLXImage& a, const VLXImage& b) {
    int largest = 0;
    for (std::size_t i = 0; i < a.pixels().size(); ++i) {
        for (int shift = 0; shift < 32; shift += 8) {
            const int d = std::abs(static_cast<int>((a.pixels()[i] >> shift) & 0xff) -
                                   static_cast<int>((b.pixels()[i] >> shift) & 0xff));
            largest = std::max(largest, d);
        }
    }
    return largest;
}

}  // namespace

TEST(PolylineReduction, KeepsFirstExtremesAndLastOfEachColumnInOrder) {
    using vlx::detail::reducePolylineByColumn;
    std::vector<VLXPoint> out;
    // One column: the highest comes before the lowest; both kept in that order.
    reducePolylineByColumn({{{0.1, 5}, {0.2, 9}, {0.3, 1}, {0.4, 4}, {0.5, 6}, {1.5, 3}}}, 1, out);
    const std::vector<VLXPoint> expected{{0.1, 5}, {0.2, 9}, {0.3, 1}, {0.5, 6}, {1.5, 3}};
    EXPECT_EQ(out, expected);

    // Extremes that are the run's ends are not repeated; short input is copied.
    out.clear();
    reducePolylineByColumn({{{0.1, 0}, {0.2, 1}, {0.3, 2}, {0.4, 3}}}, 1, out);
    EXPECT_EQ(out, (std::vector<VLXPoint>{{0.1, 0}, {0.4, 3}}));
    out.clear();
    reducePolylineByColumn({{{0.1, 0}, {0.2, 1}}}, 1, out);
    EXPECT_EQ(out.size(), 2u);

    // A line going back and forth across columns keeps every vertex.
    out.clear();
    const std::vector<VLXPoint> zigzag{{0.5, 0}, {1.5, 1}, {0.5, 2}, {1.5, 3}, {0.5, 4}};
    reducePolylineByColumn(zigzag, 1, out);
    EXPECT_EQ(out, zigzag);

    // An unusable column width copies the points.
    out.clear();
    reducePolylineByColumn({{{0.1, 5}, {0.2, 9}, {0.3, 1}, {0.4, 4}}}, std::nan(""), out);
    EXPECT_EQ(out.size(), 4u);
}

TEST(PolylineReduction, ThinStrokesKeepTheirPixels) {
    for (int kind = 0; kind < 2; ++kind) {
        const std::vector<VLXPoint> points = denseCurve(kind);
        for (double scale : {1.0, 2.0}) {
            for (double width : {0.5, 1.0}) {
                for (VLXLineJoin join : {VLXLineJoin::Round, VLXLineJoin::Bevel}) {
                    const auto reduced = stroke(points, width, scale, join, true);
                    const auto full = stroke(points, width, scale, join, false);
                    ASSERT_TRUE(reduced && full);
                    ASSERT_GT(paintedCount(*full), 1000);
                    EXPECT_LE(largestChannelDifference(*reduced, *full), kReductionTolerance)
                        << "curve " << kind << " scale " << scale << " width " << width << " join "
                        << static_cast<int>(join);
                }
            }
        }
    }
}

TEST(PolylineReduction, AppliesOnlyWhereItIsExact) {
    // Miter joins, dashes and wide lines are stroked from every point: switching the reduction
    // off changes nothing. With a round join and a thin line it does change the stroke's pieces.
    const std::vector<VLXPoint> points = denseCurve(1);
    auto draw = [&](VLXLineJoin join, double width, bool dashed, bool reduce) {
        vlx::detail::setPolylineReductionEnabled(reduce);
        auto context = VLXGraphicsContext::createBitmap(VLXSizeMake(400, 200), 1);
        context->setLineJoin(join);
        context->setLineWidth(width);
        if (dashed) {
            const double dash[] = {4, 2};
            context->setLineDash(0, dash);
        }
        VLXPath path;
        path.addLines(points);
        context->addPath(path);
        context->strokePath();
        vlx::detail::setPolylineReductionEnabled(true);
        return context->makeImage();
    };
    EXPECT_EQ(largestChannelDifference(*draw(VLXLineJoin::Miter, 1, false, true),
                                       *draw(VLXLineJoin::Miter, 1, false, false)),
              0);
    EXPECT_EQ(largestChannelDifference(*draw(VLXLineJoin::Round, 1, true, true),
                                       *draw(VLXLineJoin::Round, 1, true, false)),
              0);
    EXPECT_EQ(largestChannelDifference(*draw(VLXLineJoin::Round, 3, false, true),
                                       *draw(VLXLineJoin::Round, 3, false, false)),
              0);
    EXPECT_GT(largestChannelDifference(*draw(VLXLineJoin::Round, 1, false, true),
                                       *draw(VLXLineJoin::Round, 1, false, false)),
              0);
}
