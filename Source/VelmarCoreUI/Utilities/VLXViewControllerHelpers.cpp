#include <VelmarCoreUI/Utilities/VLXViewControllerHelpers.h>

#include <VelmarCoreUI/Platform/Views/VLXLayoutAnchor.h>
#include <VelmarCoreUI/Platform/Views/VLXLayoutGuide.h>
#include <VelmarCoreUI/Platform/Views/VLXNavigationController.h>
#include <VelmarCoreUI/Platform/Views/VLXTabBarController.h>
#include <VelmarCoreUI/Platform/Views/VLXView.h>
#include <VelmarCoreUI/Platform/Views/VLXViewController.h>

namespace {

// The first system whose views have safe-area guides.
constexpr VLXInteger kSafeAreaMajorVersion = 11;

}  // namespace

std::shared_ptr<VLXLayoutAnchor> vlx_topSafeAreaLayoutGuideWithFallback(
    VLXViewController& viewController) {
    if (VLXViewController::isSystemVersionAtLeast(kSafeAreaMajorVersion, 0)) {
        const auto& view = viewController.view();
        return view ? view->safeAreaLayoutGuide()->topAnchor() : nullptr;
    }
    const auto& guide = viewController.topLayoutGuide();
    return guide ? guide->bottomAnchor() : nullptr;
}

std::shared_ptr<VLXLayoutAnchor> vlx_bottomSafeAreaLayoutGuideWithFallback(
    VLXViewController& viewController) {
    if (VLXViewController::isSystemVersionAtLeast(kSafeAreaMajorVersion, 0)) {
        const auto& view = viewController.view();
        return view ? view->safeAreaLayoutGuide()->bottomAnchor() : nullptr;
    }
    const auto& guide = viewController.bottomLayoutGuide();
    return guide ? guide->topAnchor() : nullptr;
}

bool vlx_isModal(const VLXViewController& viewController) {
    auto presenting = viewController.presentingViewController();
    if (presenting && presenting->presentedViewController().get() == &viewController) {
        return true;
    }
    if (const VLXNavigationController* navigation = viewController.navigationController()) {
        auto navigationPresenting = navigation->presentingViewController();
        if (navigationPresenting &&
            navigationPresenting->presentedViewController().get() == navigation) {
            return true;
        }
    }
    if (const VLXTabBarController* tabBar = viewController.tabBarController()) {
        if (dynamic_cast<const VLXTabBarController*>(tabBar->presentingViewController().get())) {
            return true;
        }
    }
    return false;
}
