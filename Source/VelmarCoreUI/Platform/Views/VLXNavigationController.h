#pragma once

#include <memory>

#include <VelmarCoreUI/Platform/Views/VLXViewController.h>
#include <VelmarCoreUI/VLXExport.h>

/// A stack of view controllers, root first; the stack is the controller's children, so a child
/// that removes itself leaves the stack. Once the view is loaded it shows the top controller's
/// view over its whole bounds. There are no bars and no transitions.
class VLX_EXPORT VLXNavigationController : public VLXViewController {
public:
    static std::shared_ptr<VLXNavigationController> create();
    /// A stack holding `root` (empty when `root` cannot become a child).
    static std::shared_ptr<VLXNavigationController> createWithRootViewController(
        std::shared_ptr<VLXViewController> root);
    ~VLXNavigationController() override;

    /// Root first.
    const ViewControllers& viewControllers() const { return childViewControllers(); }
    std::shared_ptr<VLXViewController> rootViewController() const;
    std::shared_ptr<VLXViewController> topViewController() const;
    /// What the top controller presents, else the top controller.
    std::shared_ptr<VLXViewController> visibleViewController() const;

    /// Pushes on top; false for a controller already in the stack or one that cannot become a
    /// child (`addChildViewController`).
    bool pushViewController(std::shared_ptr<VLXViewController> viewController);
    /// Removes and returns the top controller; nil (nothing changes) when only the root is left.
    std::shared_ptr<VLXViewController> popViewController();
    /// Pops everything above the root; returns them bottom first.
    ViewControllers popToRootViewController();

protected:
    VLXNavigationController() = default;
    void loadView() override;
    void didChangeChildViewControllers() override;

private:
    std::weak_ptr<VLXView> m_shownView;
};
