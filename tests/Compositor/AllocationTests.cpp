// A frame of an unchanged tree makes no heap allocations of its own (cairo's internal buffers
// aside): counted through the replaceable global operator new of this test program.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>

#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Layers/VLXShapeLayer.h>

#include "CompositorTestSupport.h"

#include "Support/CountingAllocator.h"

TEST(CompositorAllocations, SteadyFramesAllocateNothing) {
    auto root = makeLayer(VLXRectMake(0, 0, 200, 200), VLXColor::whiteColor());
    withoutActions([&] {
        for (int i = 0; i < 50; ++i) {
            auto shape = VLXShapeLayer::create();
            shape->setFrame(VLXRectMake((i % 10) * 20.0, (i / 10) * 20.0, 18, 18));
            shape->setPath(VLXPath::pathWithEllipseInRect(VLXRectMake(2, 2, 14, 14)));
            shape->setStrokeColor(VLXColor::blackColor());
            shape->setBackgroundColor(VLXColor::colorWithRed(1, 0.8, 0.8, 1));
            shape->setCornerRadius(4);
            shape->setBorderWidth(1);
            shape->setBorderColor(VLXColor::redColor());
            shape->setLineDashPattern(i % 2 == 0 ? std::vector<double>{}
                                                 : std::vector<double>{3, 1});
            root->addSublayer(shape);
        }
    });
    auto context = VLXGraphicsContext::createBitmap(VLXSize{200, 200}, 2);
    auto compositor = VLXCompositor::create();
    compositor->renderInto(*root, *context);  // warms the reused buffers
    const long before = test_support::allocationCount.load();
    compositor->renderInto(*root, *context);
    EXPECT_EQ(test_support::allocationCount.load() - before, 0);
    // The frame was really drawn: pink background in the corner, the black circle in the middle.
    auto image = context->makeImage();
    expectPixels(*image, {{2 * 3, 2 * 3, RGBA8{255, 255, 204, 204}}, {2 * 9, 2 * 9, kBlack}});
}
