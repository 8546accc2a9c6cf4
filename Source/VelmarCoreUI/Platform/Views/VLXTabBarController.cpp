#include <VelmarCoreUI/Platform/Views/VLXTabBarController.h>

#include <algorithm>

#include <VelmarCoreUI/Platform/Views/Private/VLXContainerViews.h>
#include <VelmarCoreUI/Platform/Views/VLXView.h>

std::shared_ptr<VLXTabBarController> VLXTabBarController::create() {
    return makeInitialized<VLXTabBarController>();
}

VLXTabBarController::~VLXTabBarController() = default;

void VLXTabBarController::setViewControllers(const ViewControllers& viewControllers) {
    // Copies first: the list may be our own children, which removing changes.
    const ViewControllers incoming = viewControllers;
    const ViewControllers outgoing = childViewControllers();
    for (const auto& child : outgoing) {
        child->removeFromParentViewController();
    }
    for (const auto& child : incoming) {
        if (child && child->parentViewController() != this) {
            addChildViewController(child);
        }
    }
    m_selected.reset();
    showSelected();
}

std::shared_ptr<VLXViewController> VLXTabBarController::selectedViewController() const {
    auto selected = m_selected.lock();
    if (selected && selected->parentViewController() == this) {
        return selected;
    }
    return viewControllers().empty() ? nullptr : viewControllers().front();
}

bool VLXTabBarController::setSelectedViewController(
    const std::shared_ptr<VLXViewController>& viewController) {
    if (!viewController || viewController->parentViewController() != this) {
        return false;
    }
    m_selected = viewController;
    showSelected();
    return true;
}

VLXUInteger VLXTabBarController::selectedIndex() const {
    auto selected = selectedViewController();
    if (!selected) {
        return VLXNotFound;
    }
    const auto& children = viewControllers();
    return static_cast<VLXUInteger>(std::find(children.begin(), children.end(), selected) -
                                    children.begin());
}

bool VLXTabBarController::setSelectedIndex(VLXUInteger index) {
    if (index >= viewControllers().size()) {
        return false;
    }
    return setSelectedViewController(viewControllers()[index]);
}

void VLXTabBarController::showSelected() {
    vlx::detail::showChildView(*this, selectedViewController().get(), m_shownView);
}

void VLXTabBarController::loadView() {
    VLXViewController::loadView();
    showSelected();
}

void VLXTabBarController::didChangeChildViewControllers() {
    VLXViewController::didChangeChildViewControllers();
    showSelected();
}
