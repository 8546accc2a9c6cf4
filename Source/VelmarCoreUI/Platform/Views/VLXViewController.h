#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <VelmarCoreUI/Platform/Foundation/VLXObject.h>
#include <VelmarCoreUI/Platform/Foundation/VLXTypes.h>
#include <VelmarCoreUI/VLXExport.h>

class VLXLayoutGuide;
class VLXNavigationController;
class VLXTabBarController;
class VLXView;

/// Manages one view (made on first use) and takes part in two trees: containment
/// (`parentViewController`, `childViewControllers`) and presentation
/// (`presentingViewController`, `presentedViewController`).
///
/// The view: `view()` calls `loadView()` (which subclasses override to make their own view; the
/// base makes a plain view of the main screen's bounds) and then `viewDidLoad()`, once. A
/// `loadView` that sets no view gets the plain one.
///
/// Presentation: `presentViewController` links the two controllers at once (there are no
/// transitions): this one holds the presented controller strongly, the presented one holds
/// this one weakly. Children of a presented container answer the container's presenter, and
/// a controller whose ancestor presented something answers that (both as on the platform).
/// Presenting is refused (false, nothing changes) for nil, for this controller itself, when this
/// controller already presents one, when the other is already presented or is a child, and when
/// it would close a loop (the other is this controller's ancestor or presenter, directly or
/// further up).
///
/// Containment: a parent holds its children strongly; a child's parent is a raw pointer the
/// parent clears when it dies. Adding moves a child from its old parent; adding an ancestor or a
/// presenter of this controller, or a presented controller, is refused.
///
/// Main thread only, like the views.
class VLX_EXPORT VLXViewController : public VLXObject {
public:
    using ViewControllers = std::vector<std::shared_ptr<VLXViewController>>;

    static std::shared_ptr<VLXViewController> create();
    ~VLXViewController() override;

    // --- view ----------------------------------------------------------------------------
    /// The view, loaded on first use. Nil only when asked from inside `loadView` before it set
    /// one.
    const std::shared_ptr<VLXView>& view();
    /// The view if loaded, else nil (never loads).
    const std::shared_ptr<VLXView>& viewIfLoaded() const { return m_view; }
    /// Replaces the view without calling `viewDidLoad`; nil unloads it, so the next `view()`
    /// loads again.
    void setView(std::shared_ptr<VLXView> view);
    bool isViewLoaded() const { return m_view != nullptr; }
    void loadViewIfNeeded() { view(); }
    /// Makes the view and sets it with `setView`. The base makes a plain view with the main
    /// screen's bounds; overrides need not call it.
    virtual void loadView();
    /// Called once the view has been loaded; empty by default.
    virtual void viewDidLoad();

    const std::optional<std::string>& title() const { return m_title; }
    void setTitle(std::optional<std::string> title) { m_title = std::move(title); }

    // --- legacy layout guides ------------------------------------------------------------
    /// The strip of the view's bounds above its safe area (made on first use; loads the view).
    /// Its bottom anchor is where content began before safe-area guides existed.
    const std::shared_ptr<VLXLayoutGuide>& topLayoutGuide();
    /// The strip of the view's bounds below its safe area; content ended at its top anchor.
    const std::shared_ptr<VLXLayoutGuide>& bottomLayoutGuide();

    // --- presentation --------------------------------------------------------------------
    /// Presents `viewController` from this one; false (nothing changes) when refused (above).
    bool presentViewController(std::shared_ptr<VLXViewController> viewController);
    /// Dismisses what this controller presents (with everything that presents in turn); when it
    /// presents nothing, asks its presenter to dismiss it. False when there is nothing to
    /// dismiss.
    bool dismissViewController();
    /// What this controller presents, else what its nearest presenting ancestor presents.
    std::shared_ptr<VLXViewController> presentedViewController() const;
    /// Who presents this controller, else who presents its nearest presented ancestor.
    std::shared_ptr<VLXViewController> presentingViewController() const;

    // --- containment ---------------------------------------------------------------------
    VLXViewController* parentViewController() const { return m_parent; }
    const ViewControllers& childViewControllers() const { return m_children; }
    /// Appends `child` (moving it from its old parent). True when it is (or already was) a
    /// child of this controller; false for nil, this controller, an ancestor or presenter of
    /// this controller, or a presented controller.
    bool addChildViewController(std::shared_ptr<VLXViewController> child);
    /// Detaches this controller from its parent; nothing when it has none.
    void removeFromParentViewController();
    /// The nearest ancestor (parent, its parent …) that is a navigation controller, or null.
    VLXNavigationController* navigationController() const;
    /// The nearest ancestor that is a tab bar controller, or null.
    VLXTabBarController* tabBarController() const;

    // --- system version ------------------------------------------------------------------
    /// The platform version that version-dependent code asks ("17.0" unless set). Tests and
    /// hosts that stand for an older system set it; "" restores the default.
    static void setSystemVersion(std::string version);
    static std::string systemVersion();
    /// True when `systemVersion()` is at least major.minor.patch, compared number by number
    /// (missing or unreadable parts count as 0: "10" is 10.0.0, "x" is 0.0.0).
    static bool isSystemVersionAtLeast(VLXInteger major, VLXInteger minor = 0,
                                       VLXInteger patch = 0);

protected:
    VLXViewController() = default;
    /// Called after a child was added or removed (the containers keep their state through it).
    virtual void didChangeChildViewControllers();

private:
    bool isAncestorOrPresenterOf(const VLXViewController& controller) const;
    void detachChild(VLXViewController& child);

    std::shared_ptr<VLXView> m_view;
    std::shared_ptr<VLXLayoutGuide> m_topLayoutGuide;
    std::shared_ptr<VLXLayoutGuide> m_bottomLayoutGuide;
    std::optional<std::string> m_title;
    VLXViewController* m_parent = nullptr;
    ViewControllers m_children;
    std::shared_ptr<VLXViewController> m_presented;
    std::weak_ptr<VLXViewController> m_presenting;
    bool m_loadingView = false;
};

/// Sets the system version for as long as it lives, then restores the previous one.
class VLX_EXPORT VLXScopedSystemVersion {
public:
    explicit VLXScopedSystemVersion(std::string version);
    ~VLXScopedSystemVersion();
    VLXScopedSystemVersion(const VLXScopedSystemVersion&) = delete;
    VLXScopedSystemVersion& operator=(const VLXScopedSystemVersion&) = delete;

private:
    std::string m_previous;
};
