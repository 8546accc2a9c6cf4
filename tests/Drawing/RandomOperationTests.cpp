// A seeded, bounded stream of random drawing operations with hostile values. After every round
// the state is restored and a plain fill must still draw its colour.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "DrawingTestSupport.h"

namespace {

class HostileValues {
public:
    explicit HostileValues(unsigned seed) : m_random(seed) {}

    double any() {
        static const double special[] = {std::numeric_limits<double>::quiet_NaN(),
                                         std::numeric_limits<double>::infinity(),
                                         -std::numeric_limits<double>::infinity(),
                                         1e300,
                                         -1e300,
                                         1e-300,
                                         0,
                                         -0.0,
                                         std::numeric_limits<double>::max(),
                                         1e12,
                                         1e-9};
        switch (next(4)) {
            case 0:
                return special[next(std::size(special))];
            case 1:
                return std::pow(10.0, uniform(-12, 12)) * (next(2) == 0 ? 1 : -1);
            default:
                return uniform(-80, 80);
        }
    }
    double uniform(double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(m_random);
    }
    unsigned next(std::size_t bound) { return static_cast<unsigned>(m_random() % bound); }
    VLXPoint point() { return VLXPointMake(any(), any()); }
    VLXRect rect() { return VLXRectMake(any(), any(), any(), any()); }

private:
    std::mt19937 m_random;
};

void randomOperation(VLXGraphicsContext& context, HostileValues& values, const VLXImage& image,
                     int& depth) {
    switch (values.next(16)) {
        case 0:
            context.scaleCTM(values.any(), values.any());
            break;
        case 1:
            context.rotateCTM(values.any());
            break;
        case 2:
            context.translateCTM(values.any(), values.any());
            break;
        case 3:
            context.concatCTM(VLXAffineTransform{values.any(), values.any(), values.any(),
                                                 values.any(), values.any(), values.any()});
            break;
        case 4: {
            std::vector<double> dash(values.next(4) + 1);
            for (double& length : dash) {
                length = values.next(3) == 0 ? values.any() : std::fabs(values.any());
            }
            context.setLineDash(values.any(), dash);
            break;
        }
        case 5:
            context.setLineWidth(std::fabs(values.any()));
            context.setLineJoin(static_cast<VLXLineJoin>(values.next(3)));
            context.setLineCap(static_cast<VLXLineCap>(values.next(3)));
            break;
        case 6:
        case 7: {
            const int count = static_cast<int>(values.next(6)) + 1;
            context.moveToPoint(values.point());
            for (int i = 0; i < count; ++i) {
                if (values.next(3) == 0) {
                    context.addCurveToPoint(values.point(), values.point(), values.point());
                } else {
                    context.addLineToPoint(values.point());
                }
            }
            if (values.next(2) == 0) {
                context.closePath();
            }
            const unsigned what = values.next(4);
            if (what == 0) {
                context.clip(values.next(2) == 0 ? VLXPathFillRule::EvenOdd
                                                 : VLXPathFillRule::Winding);
            } else {
                context.drawPath(static_cast<VLXPathDrawingMode>(values.next(5)));
            }
            break;
        }
        case 8:
            context.fillRect(values.rect());
            break;
        case 9:
            context.strokeEllipseInRect(values.rect());
            break;
        case 10:
        case 11:
            context.drawImage(image, values.rect());
            break;
        case 12:
            context.setShadow(VLXSizeMake(values.any(), values.any()), values.any());
            break;
        case 13:
            context.setAlpha(values.any());
            context.setBlendMode(static_cast<VLXBlendMode>(values.next(28)));
            break;
        case 14:
            context.saveGState();
            ++depth;
            break;
        case 15:
            if (depth > 0) {
                context.restoreGState();
                --depth;
            }
            break;
    }
}

void runRandomOperations(VLXGraphicsContext& context, unsigned seed, int rounds) {
    HostileValues values(seed);
    auto image = VLXImage::imageWithPixels(3, 2, std::vector<std::uint32_t>(6, 0xff00ff00U));
    ASSERT_NE(image, nullptr);
    const VLXSize size = context.size();
    for (int round = 0; round < rounds; ++round) {
        context.saveGState();
        int depth = 0;
        for (int i = 0; i < 8; ++i) {
            randomOperation(context, values, *image, depth);
        }
        for (; depth >= 0; --depth) {
            context.restoreGState();
        }
        context.beginPath();
        ASSERT_TRUE(context.isValid()) << "seed " << seed << " round " << round;
        if (context.kind() != VLXGraphicsContextKind::Bitmap) {
            continue;
        }
        context.setFillColor(VLXColor::colorWithRed(1, 0, 0, 1));
        context.fillRect(VLXRectMake(0, 0, size.width / 2, size.height));
        Pixels pixels(context);
        ASSERT_TRUE(pixels.valid());
        ASSERT_EQ(pixels.at(pixels.width() / 4, pixels.height() / 2), (Pixel{255, 255, 0, 0}))
            << "seed " << seed << " round " << round;
        context.clearRect(VLXRectMake(0, 0, size.width, size.height));
    }
}

}  // namespace

TEST(RandomDrawing, HostileOperationsLeaveContextsDrawing) {
    for (unsigned seed : {1U, 2U, 3U}) {
        auto bitmap = makeBitmap(32, 24, seed == 1 ? 1.0 : seed == 2 ? 2.0 : 0.25);
        ASSERT_NE(bitmap, nullptr);
        runRandomOperations(*bitmap, seed, 100);
        auto svg = VLXGraphicsContext::createSVG(VLXSize{32, 24});
        ASSERT_NE(svg, nullptr);
        runRandomOperations(*svg, seed + 100, 100);
        EXPECT_FALSE(svg->documentData().empty());
    }
}
