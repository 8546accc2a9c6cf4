#include <cmath>
#include <limits>

#include <VelmarCoreUI/Views/VLXCircularLayer.h>
#include <VelmarCoreUI/Views/VLXCircularProgressView.h>
#include "Widgets/WidgetTestSupport.h"

namespace {

using CircularProgressViewTest = WidgetTest;

TEST_F(CircularProgressViewTest, LayerIsStrokeWidthSmallerAndRound) {
    auto view = VLXCircularProgressView::create();
    EXPECT_EQ(view->frame(), (VLXRect{{0, 0}, {37, 37}}));
    VLXCircularLayer& layer = *view->circularLayer();
    EXPECT_EQ(layer.superlayer(), view->layer().get());

    view->layoutIfNeeded();
    layer.layoutIfNeeded();
    EXPECT_EQ(layer.bounds(), (VLXRect{{0, 0}, {36, 36}}));
    EXPECT_EQ(layer.position(), (VLXPoint{18.5, 18.5}));
    EXPECT_EQ(layer.cornerRadius(), 18);

    // A wider stroke shrinks the layer by its width.
    view->setStrokeWidth(5);
    view->setFrame({{0, 0}, {60, 40}});
    view->layoutIfNeeded();
    EXPECT_EQ(layer.bounds(), (VLXRect{{0, 0}, {55, 35}}));
    EXPECT_EQ(layer.position(), (VLXPoint{30, 20}));
}

TEST_F(CircularProgressViewTest, OnlyTheAnimatedSetterReachesTheLayer) {
    auto view = VLXCircularProgressView::create();
    VLXTransaction::flush();
    view->setProgress(0.5);
    EXPECT_EQ(view->progress(), 0);
    EXPECT_EQ(view->circularLayer()->progress(), 0);

    VLXTransaction::begin();
    VLXTransaction::setAnimationDuration(1);
    view->setProgress(0.8, true);
    VLXTransaction::commit();
    EXPECT_EQ(view->progress(), 0.8);
    const auto& layer = view->circularLayer();
    ASSERT_TRUE(layer->attachedAnimation("progress"));
    VLXClock::advance(0.5);
    const double halfway = layer->presentationLayer()->valueForKey("progress").doubleValue();
    EXPECT_GT(halfway, 0.05);
    EXPECT_LT(halfway, 0.75);
    VLXClock::advance(0.6);
    EXPECT_EQ(layer->presentationLayer()->valueForKey("progress").doubleValue(), 0.8);

    // Not animated: no animation, the new value shows at once, and actions stay off for the
    // rest of the transaction.
    layer->removeAllAnimations();
    VLXTransaction::begin();
    view->setProgress(0.3, false);
    EXPECT_TRUE(VLXTransaction::disableActions());
    VLXTransaction::commit();
    EXPECT_FALSE(layer->attachedAnimation("progress"));
    EXPECT_EQ(layer->presentationLayer()->valueForKey("progress").doubleValue(), 0.3);
}

TEST_F(CircularProgressViewTest, DrawsBorderAndWedgeInTheStrokeColour) {
    auto window = makeWindow(41, 41);
    auto view = VLXCircularProgressView::createWithFrame({{0, 0}, {41, 41}});
    window->addSubview(view);
    view->setStrokeColor(VLXColor::redColor());
    view->setStrokeWidth(2);
    // Laid out before the commit, as a run-loop turn does, so the layer's first frame does not
    // animate in.
    window->layoutIfNeeded();
    VLXTransaction::begin();
    view->setProgress(0.25, false);
    VLXTransaction::commit();
    auto image = window->snapshot();
    ASSERT_TRUE(image);
    // Layer 39 × 39 centred at (20.5, 20.5): the wedge fills the top-right quarter only.
    EXPECT_TRUE(pixelNear(*image, 28, 12, kOpaqueRed));
    EXPECT_TRUE(pixelNear(*image, 12, 12, kOpaqueWhite));
    EXPECT_TRUE(pixelNear(*image, 28, 28, kOpaqueWhite));
    // The border is a circle: the left edge's middle is red, the corner stays white.
    EXPECT_TRUE(pixelNear(*image, 2, 20, kOpaqueRed, 10));
    EXPECT_TRUE(pixelNear(*image, 1, 1, kOpaqueWhite));

    // Unusable widths and values draw nothing odd and do not crash.
    const double nan = std::numeric_limits<double>::quiet_NaN();
    view->setStrokeWidth(nan);
    VLXTransaction::begin();
    view->setProgress(std::numeric_limits<double>::infinity(), false);
    VLXTransaction::commit();
    EXPECT_TRUE(window->snapshot());
    view->setStrokeWidth(100);
    view->setProgress(nan, true);
    EXPECT_TRUE(window->snapshot());
    EXPECT_TRUE(std::isnan(view->progress()));
}

}  // namespace
