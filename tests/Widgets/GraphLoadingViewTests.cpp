#include <cmath>
#include <limits>

#include <VelmarCoreUI/Graphing/VLXGraphLoadingView.h>
#include <VelmarCoreUI/Platform/Views/VLXActivityIndicatorView.h>
#include "Widgets/WidgetTestSupport.h"

namespace {

using GraphLoadingViewTest = WidgetTest;

double presentedAlpha(const VLXView& view) {
    const auto presentation = view.layer()->presentationLayer();
    return presentation ? presentation->opacity() : view.alpha();
}

TEST_F(GraphLoadingViewTest, NewOverlayIsVisibleWithAStoppedGreySpinnerOverItsBounds) {
    auto view = VLXGraphLoadingView::createWithFrame({{10, 20}, {200, 100}});
    EXPECT_EQ(view->alpha(), 1);
    const auto& indicator = view->indicatorView();
    ASSERT_TRUE(indicator);
    EXPECT_EQ(indicator->activityIndicatorViewStyle(), VLXActivityIndicatorViewStyle::Gray);
    EXPECT_EQ(indicator->frame(), (VLXRect{{0, 0}, {200, 100}}));
    EXPECT_FALSE(indicator->isAnimating());

    // The spinner follows every resize, down to nothing.
    view->setFrame({{5, 5}, {0, 0}});
    view->layoutIfNeeded();
    EXPECT_EQ(indicator->frame(), (VLXRect{{0, 0}, {0, 0}}));
    view->setFrame({{0, 0}, {std::numeric_limits<double>::quiet_NaN(), 10}});
    view->layoutIfNeeded();
    view->showLoading(true);
    EXPECT_TRUE(indicator->isAnimating());
}

TEST_F(GraphLoadingViewTest, ShowLoadingFadesOverAFifthOfASecond) {
    auto window = makeWindow(100, 100);
    auto view = VLXGraphLoadingView::createWithFrame({{0, 0}, {100, 100}});
    window->addSubview(view);
    VLXTransaction::flush();

    view->showLoading(false);
    EXPECT_FALSE(view->indicatorView()->isAnimating());
    EXPECT_EQ(view->alpha(), 0);
    VLXTransaction::flush();
    VLXClock::advance(0.1);
    const double halfway = presentedAlpha(*view);
    EXPECT_GT(halfway, 0.2);
    EXPECT_LT(halfway, 0.8);
    VLXClock::advance(0.15);
    EXPECT_EQ(presentedAlpha(*view), 0);
    // Faded out, the overlay lets touches through to what lies below.
    EXPECT_EQ(window->hitTest({50, 50}), window);

    view->showLoading(true);
    EXPECT_TRUE(view->indicatorView()->isAnimating());
    VLXTransaction::flush();
    VLXClock::advance(0.1);
    EXPECT_LT(presentedAlpha(*view), 0.8);
    VLXClock::advance(0.15);
    EXPECT_EQ(presentedAlpha(*view), 1);
    const auto hit = window->hitTest({50, 50});
    ASSERT_TRUE(hit);
    EXPECT_TRUE(hit->isDescendantOfView(view.get()));

    // While isLoadingState is set, asking to show hides instead.
    view->setIsLoadingState(true);
    view->showLoading(true);
    EXPECT_FALSE(view->indicatorView()->isAnimating());
    EXPECT_EQ(view->alpha(), 0);
}

TEST_F(GraphLoadingViewTest, OverlayWhitensWhatLiesBelow) {
    auto window = makeWindow(100, 100);
    window->setBackgroundColor(VLXColor::redColor());
    auto view = VLXGraphLoadingView::createWithFrame({{0, 0}, {100, 50}});
    window->addSubview(view);
    auto image = window->snapshot();
    ASSERT_TRUE(image);
    // White at 0.7 over red: (1, 0.7, 0.7).
    EXPECT_TRUE(pixelNear(*image, 5, 5, RGBA8{255, 255, 178, 178}, 3));
    EXPECT_TRUE(pixelNear(*image, 5, 75, kOpaqueRed));
}

}  // namespace
