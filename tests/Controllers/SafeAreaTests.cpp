// Safe-area insets of views inside windows, the safe-area guide and the legacy guides.
#include <limits>
#include <memory>

#include <gtest/gtest.h>

#include <VelmarCoreUI/Platform/Views/VLXLayoutAnchor.h>
#include <VelmarCoreUI/Platform/Views/VLXLayoutGuide.h>
#include <VelmarCoreUI/Platform/Views/VLXView.h>
#include <VelmarCoreUI/Platform/Views/VLXViewController.h>
#include <VelmarCoreUI/Platform/Views/VLXWindow.h>

namespace {

// A 400 × 800 window with a notch-like top, a home-indicator bottom and side insets.
std::shared_ptr<VLXWindow> makeWindow() {
    auto window = VLXWindow::createWithFrame(VLXRectMake(0, 0, 400, 800));
    window->setSafeAreaInsets(VLXEdgeInsetsMake(40, 10, 30, 20));
    return window;
}

std::shared_ptr<VLXView> addView(VLXView& parent, VLXRect frame) {
    auto view = VLXView::createWithFrame(frame);
    parent.addSubview(view);
    return view;
}

}  // namespace

TEST(SafeArea, InsetsAreThePartOfTheWindowsInsetsOverTheView) {
    auto window = makeWindow();
    // The window itself and a view covering it get the whole insets.
    EXPECT_EQ(static_cast<VLXView&>(*window).safeAreaInsets(), VLXEdgeInsetsMake(40, 10, 30, 20));
    auto full = addView(*window, VLXRectMake(0, 0, 400, 800));
    EXPECT_EQ(full->safeAreaInsets(), VLXEdgeInsetsMake(40, 10, 30, 20));

    // A view that starts 15 pt down is covered by the last 25 pt of the top inset; it ends
    // 100 pt above the bottom inset and clear of the sides.
    auto upper = addView(*window, VLXRectMake(50, 15, 300, 200));
    EXPECT_EQ(upper->safeAreaInsets(), VLXEdgeInsetsMake(25, 0, 0, 0));
    // Inside the safe area: nothing.
    EXPECT_EQ(addView(*window, VLXRectMake(50, 100, 300, 200))->safeAreaInsets(),
              VLXEdgeInsetsZero);
    // Across the bottom right corner: 10 pt of the bottom inset, 5 of the right one.
    auto corner = addView(*window, VLXRectMake(300, 700, 85, 80));
    EXPECT_EQ(corner->safeAreaInsets(), VLXEdgeInsetsMake(0, 0, 10, 5));
    // An inset never exceeds the view: a 10 pt bar at the very top is all unsafe.
    EXPECT_EQ(addView(*window, VLXRectMake(0, 0, 400, 10))->safeAreaInsets(),
              VLXEdgeInsetsMake(10, 10, 0, 20));

    // Nested views are placed through their ancestors (their window coordinates count).
    auto nested = addView(*upper, VLXRectMake(-50, -15, 40, 60));  // at the window's corner
    EXPECT_EQ(nested->safeAreaInsets(), VLXEdgeInsetsMake(40, 10, 0, 0));

    // Outside a window there is nothing, and the answer follows the view when it moves.
    auto loose = VLXView::createWithFrame(VLXRectMake(0, 0, 400, 800));
    EXPECT_EQ(loose->safeAreaInsets(), VLXEdgeInsetsZero);
    window->addSubview(loose);
    EXPECT_EQ(loose->safeAreaInsets(), VLXEdgeInsetsMake(40, 10, 30, 20));
    window->setSafeAreaInsets(VLXEdgeInsetsZero);
    EXPECT_EQ(loose->safeAreaInsets(), VLXEdgeInsetsZero);
    loose->removeFromSuperview();
    EXPECT_EQ(loose->safeAreaInsets(), VLXEdgeInsetsZero);

    // Unusable geometry gives none: views refuse non-finite frames, so NaN goes to the layer.
    window->setSafeAreaInsets(VLXEdgeInsetsMake(40, 10, 30, 20));
    full->layer()->setPosition(VLXPointMake(std::numeric_limits<double>::quiet_NaN(), 400));
    EXPECT_EQ(full->safeAreaInsets(), VLXEdgeInsetsZero);
    EXPECT_EQ(full->safeAreaLayoutGuide()->layoutFrame(), VLXRectMake(0, 0, 400, 800));
    full->setFrame(VLXRectMake(5000, 5000, 10, 10));
    EXPECT_EQ(full->safeAreaInsets(), VLXEdgeInsetsZero);
}

TEST(SafeArea, GuideFrameIsTheBoundsInsetBySafeArea) {
    auto window = makeWindow();
    auto view = addView(*window, VLXRectMake(0, 0, 400, 800));
    const auto& guide = view->safeAreaLayoutGuide();
    ASSERT_NE(guide, nullptr);
    EXPECT_EQ(&view->safeAreaLayoutGuide(), &guide);  // made once, kept
    EXPECT_EQ(guide->owningView().get(), view.get());
    EXPECT_EQ(guide->layoutFrame(), VLXRectMake(10, 40, 370, 730));

    // In bounds coordinates: a scrolled view's guide moves with its bounds origin.
    view->setBounds(VLXRectMake(0, 100, 400, 800));
    EXPECT_EQ(guide->layoutFrame(), VLXRectMake(10, 140, 370, 730));

    // The guide follows the insets; the guide's anchors name the guide.
    window->setSafeAreaInsets(VLXEdgeInsetsMake(0, 0, 50, 0));
    EXPECT_EQ(guide->layoutFrame(), VLXRectMake(0, 100, 400, 750));
    EXPECT_EQ(guide->topAnchor()->item().get(), guide.get());
    EXPECT_NE(guide->description().find("VLXViewSafeAreaLayoutGuide"), std::string::npos);

    // The guide does not keep its view alive, and a free guide has no frame.
    auto heldGuide = view->safeAreaLayoutGuide();
    view->removeFromSuperview();
    view.reset();
    EXPECT_EQ(heldGuide->owningView(), nullptr);
    EXPECT_EQ(heldGuide->layoutFrame(), VLXRectZero);
    EXPECT_EQ(VLXLayoutGuide::create()->layoutFrame(), VLXRectZero);
}

TEST(SafeArea, LegacyGuidesAreTheStripsAboveAndBelow) {
    auto window = makeWindow();
    auto controller = VLXViewController::create();
    controller->view()->setFrame(VLXRectMake(0, 0, 400, 800));
    window->addSubview(controller->view());

    const auto& top = controller->topLayoutGuide();
    const auto& bottom = controller->bottomLayoutGuide();
    ASSERT_NE(top, nullptr);
    ASSERT_NE(bottom, nullptr);
    EXPECT_EQ(top->layoutFrame(), VLXRectMake(0, 0, 400, 40));
    EXPECT_EQ(bottom->layoutFrame(), VLXRectMake(0, 770, 400, 30));
    // Where the strips meet the safe area is where the safe-area guide begins and ends.
    const VLXRect safe = controller->view()->safeAreaLayoutGuide()->layoutFrame();
    EXPECT_EQ(VLXRectGetMaxY(top->layoutFrame()), VLXRectGetMinY(safe));
    EXPECT_EQ(VLXRectGetMinY(bottom->layoutFrame()), VLXRectGetMaxY(safe));

    // A new view gets new guides.
    auto replacement = VLXView::createWithFrame(VLXRectMake(0, 0, 100, 100));
    controller->setView(replacement);
    EXPECT_EQ(controller->topLayoutGuide()->owningView().get(), replacement.get());
}
