#pragma once

#include <memory>

#include <VelmarCoreUI/Platform/Foundation/VLXTypes.h>
#include <VelmarCoreUI/Platform/Views/VLXViewController.h>
#include <VelmarCoreUI/VLXExport.h>

/// A row of view controllers of which one is selected; they are the controller's children.
/// Once the view is loaded it shows the selected controller's view over its whole bounds.
/// There is no bar.
class VLX_EXPORT VLXTabBarController : public VLXViewController {
public:
    static std::shared_ptr<VLXTabBarController> create();
    ~VLXTabBarController() override;

    const ViewControllers& viewControllers() const { return childViewControllers(); }
    /// Replaces the children by `viewControllers` (entries that cannot become children, and
    /// repeats, are skipped) and selects the first.
    void setViewControllers(const ViewControllers& viewControllers);

    /// The selected child: the one chosen last while it is still a child, else the first; nil
    /// without children.
    std::shared_ptr<VLXViewController> selectedViewController() const;
    /// False (nothing changes) when `viewController` is not a child.
    bool setSelectedViewController(const std::shared_ptr<VLXViewController>& viewController);
    /// The selected child's index, `VLXNotFound` without children.
    VLXUInteger selectedIndex() const;
    /// False (nothing changes) for an index past the last child.
    bool setSelectedIndex(VLXUInteger index);

protected:
    VLXTabBarController() = default;
    void loadView() override;
    void didChangeChildViewControllers() override;

private:
    void showSelected();

    std::weak_ptr<VLXViewController> m_selected;
    std::weak_ptr<VLXView> m_shownView;
};
