#include <VelmarCoreUI/Platform/Views/VLXNavigationController.h>

#include <VelmarCoreUI/Platform/Views/Private/VLXContainerViews.h>
#include <VelmarCoreUI/Platform/Views/VLXView.h>

std::shared_ptr<VLXNavigationController> VLXNavigationController::create() {
    return makeInitialized<VLXNavigationController>();
}

std::shared_ptr<VLXNavigationController> VLXNavigationController::createWithRootViewController(
    std::shared_ptr<VLXViewController> root) {
    auto navigation = create();
    navigation->pushViewController(std::move(root));
    return navigation;
}

VLXNavigationController::~VLXNavigationController() = default;

std::shared_ptr<VLXViewController> VLXNavigationController::rootViewController() const {
    return viewControllers().empty() ? nullptr : viewControllers().front();
}

std::shared_ptr<VLXViewController> VLXNavigationController::topViewController() const {
    return viewControllers().empty() ? nullptr : viewControllers().back();
}

std::shared_ptr<VLXViewController> VLXNavigationController::visibleViewController() const {
    auto top = topViewController();
    if (top) {
        if (auto presented = top->presentedViewController()) {
            return presented;
        }
    }
    return top;
}

bool VLXNavigationController::pushViewController(
    std::shared_ptr<VLXViewController> viewController) {
    if (!viewController || viewController->parentViewController() == this) {
        return false;
    }
    return addChildViewController(std::move(viewController));
}

std::shared_ptr<VLXViewController> VLXNavigationController::popViewController() {
    if (viewControllers().size() < 2) {
        return nullptr;
    }
    auto top = viewControllers().back();
    top->removeFromParentViewController();
    return top;
}

VLXViewController::ViewControllers VLXNavigationController::popToRootViewController() {
    ViewControllers popped;
    if (viewControllers().size() < 2) {
        return popped;
    }
    popped.assign(viewControllers().begin() + 1, viewControllers().end());
    for (auto it = popped.rbegin(); it != popped.rend(); ++it) {
        (*it)->removeFromParentViewController();
    }
    return popped;
}

void VLXNavigationController::loadView() {
    VLXViewController::loadView();
    vlx::detail::showChildView(*this, topViewController().get(), m_shownView);
}

void VLXNavigationController::didChangeChildViewControllers() {
    VLXViewController::didChangeChildViewControllers();
    vlx::detail::showChildView(*this, topViewController().get(), m_shownView);
}
