// View loading, containment, presentation, the containers, the system version and the
// controller helpers built on them.
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include <VelmarCoreUI/Platform/Device/VLXScreen.h>
#include <VelmarCoreUI/Platform/Views/VLXLayoutAnchor.h>
#include <VelmarCoreUI/Platform/Views/VLXLayoutGuide.h>
#include <VelmarCoreUI/Platform/Views/VLXNavigationController.h>
#include <VelmarCoreUI/Platform/Views/VLXTabBarController.h>
#include <VelmarCoreUI/Platform/Views/VLXView.h>
#include <VelmarCoreUI/Platform/Views/VLXViewController.h>
#include <VelmarCoreUI/Utilities/VLXViewControllerHelpers.h>

// Counts the loading hooks; its loadView makes a view of its own unless told not to, and may
// ask for the view while loading it.
class CountingController : public VLXViewController {
public:
    static std::shared_ptr<CountingController> create() {
        return makeInitialized<CountingController>();
    }
    int loads = 0;
    int didLoads = 0;
    bool makesView = true;
    bool asksForViewWhileLoading = false;
    bool viewWasNilWhileLoading = false;

    void loadView() override {
        ++loads;
        if (asksForViewWhileLoading) {
            viewWasNilWhileLoading = view() == nullptr;
        }
        if (makesView) {
            setView(VLXView::createWithFrame(VLXRectMake(0, 0, 12, 34)));
        }
    }
    void viewDidLoad() override {
        VLXViewController::viewDidLoad();
        ++didLoads;
        EXPECT_TRUE(isViewLoaded());
    }
};

TEST(ViewController, ViewLoadsOnFirstUseOnce) {
    auto plain = VLXViewController::create();
    EXPECT_EQ(plain->viewIfLoaded(), nullptr);
    const auto& view = plain->view();
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(view->frame(), VLXScreen::mainScreen()->bounds());
    EXPECT_EQ(plain->viewIfLoaded().get(), view.get());

    auto counting = CountingController::create();
    EXPECT_EQ(counting->loads, 0);
    counting->loadViewIfNeeded();
    EXPECT_EQ(counting->view()->frame(), VLXRectMake(0, 0, 12, 34));
    EXPECT_EQ(counting->loads, 1);
    EXPECT_EQ(counting->didLoads, 1);

    // Unloading makes the next use load again.
    counting->setView(nullptr);
    EXPECT_FALSE(counting->isViewLoaded());
    counting->view();
    EXPECT_EQ(counting->loads, 2);
    EXPECT_EQ(counting->didLoads, 2);

    // A loadView that sets nothing gets a plain view; asking for the view inside loadView
    // answers nil instead of recursing.
    auto lazy = CountingController::create();
    lazy->makesView = false;
    lazy->asksForViewWhileLoading = true;
    ASSERT_NE(lazy->view(), nullptr);
    EXPECT_TRUE(lazy->viewWasNilWhileLoading);
    EXPECT_EQ(lazy->didLoads, 1);
}

TEST(ViewController, ContainmentRefusesLoopsAndFindsContainers) {
    auto root = VLXViewController::create();
    auto child = VLXViewController::create();
    auto grandchild = VLXViewController::create();
    EXPECT_TRUE(root->addChildViewController(child));
    EXPECT_TRUE(child->addChildViewController(grandchild));
    EXPECT_TRUE(root->addChildViewController(child));  // already there: unchanged
    EXPECT_EQ(root->childViewControllers().size(), 1u);

    EXPECT_FALSE(root->addChildViewController(nullptr));
    EXPECT_FALSE(root->addChildViewController(root));
    EXPECT_FALSE(grandchild->addChildViewController(root));  // an ancestor
    EXPECT_FALSE(grandchild->addChildViewController(child));

    // Moving to another parent leaves the old one.
    auto other = VLXViewController::create();
    EXPECT_TRUE(other->addChildViewController(grandchild));
    EXPECT_TRUE(child->childViewControllers().empty());
    EXPECT_EQ(grandchild->parentViewController(), other.get());
    grandchild->removeFromParentViewController();
    grandchild->removeFromParentViewController();  // nothing
    EXPECT_TRUE(other->childViewControllers().empty());

    // The nearest container of each kind, looking through plain controllers.
    auto tabs = VLXTabBarController::create();
    auto navigation = VLXNavigationController::createWithRootViewController(child);
    EXPECT_EQ(child->parentViewController(), navigation.get());
    EXPECT_TRUE(root->childViewControllers().empty());
    EXPECT_TRUE(child->addChildViewController(grandchild));
    tabs->setViewControllers({navigation});
    EXPECT_EQ(grandchild->navigationController(), navigation.get());
    EXPECT_EQ(grandchild->tabBarController(), tabs.get());
    EXPECT_EQ(navigation->navigationController(), nullptr);  // ancestors only, not itself
    EXPECT_EQ(root->tabBarController(), nullptr);

    // A child outlives a parent that dies, with no dangling parent.
    auto orphan = VLXViewController::create();
    {
        auto parent = VLXViewController::create();
        parent->addChildViewController(orphan);
    }
    EXPECT_EQ(orphan->parentViewController(), nullptr);
    EXPECT_EQ(orphan->navigationController(), nullptr);
}

TEST(ViewController, PresentationLinksAndRefusals) {
    auto a = VLXViewController::create();
    auto b = VLXViewController::create();
    auto c = VLXViewController::create();
    EXPECT_TRUE(a->presentViewController(b));
    EXPECT_EQ(a->presentedViewController(), b);
    EXPECT_EQ(b->presentingViewController(), a);

    EXPECT_FALSE(a->presentViewController(c));  // already presenting
    EXPECT_FALSE(c->presentViewController(b));  // already presented
    EXPECT_FALSE(b->presentViewController(a));  // a loop
    EXPECT_FALSE(b->presentViewController(b));
    EXPECT_TRUE(b->presentViewController(c));
    EXPECT_FALSE(c->presentViewController(a));   // a longer loop
    EXPECT_FALSE(b->addChildViewController(c));  // presented controllers are not children
    EXPECT_FALSE(c->addChildViewController(a));  // nor are presenters

    // Children answer for their presented ancestor; a controller whose ancestor presents
    // something answers that.
    auto inner = VLXViewController::create();
    EXPECT_TRUE(c->addChildViewController(inner));
    EXPECT_EQ(inner->presentingViewController(), b);
    auto childOfA = VLXViewController::create();
    EXPECT_TRUE(a->addChildViewController(childOfA));
    EXPECT_EQ(childOfA->presentedViewController(), b);
    EXPECT_FALSE(inner->presentViewController(a));  // through the parent and presenters
    EXPECT_FALSE(VLXViewController::create()->presentViewController(inner));  // a child

    // Dismissing from the middle takes what is above too; from a presented child, the presenter
    // of its container dismisses the container.
    EXPECT_TRUE(inner->dismissViewController());
    EXPECT_EQ(b->presentedViewController(), nullptr);
    EXPECT_EQ(c->presentingViewController(), nullptr);
    EXPECT_EQ(a->presentedViewController(), b);
    EXPECT_TRUE(b->presentViewController(c));
    EXPECT_TRUE(a->dismissViewController());
    EXPECT_EQ(a->presentedViewController(), nullptr);
    EXPECT_EQ(c->presentingViewController(), nullptr);
    EXPECT_FALSE(a->dismissViewController());  // nothing left
    EXPECT_FALSE(c->dismissViewController());

    // The presenter holds what it presents; the presented holds its presenter weakly.
    std::weak_ptr<VLXViewController> watch;
    {
        auto shown = VLXViewController::create();
        watch = shown;
        a->presentViewController(shown);
    }
    EXPECT_FALSE(watch.expired());
    a->presentedViewController()->dismissViewController();
    EXPECT_TRUE(watch.expired());
    {
        auto presenter = VLXViewController::create();
        presenter->presentViewController(c);
    }
    EXPECT_EQ(c->presentingViewController(), nullptr);
    EXPECT_TRUE(a->presentViewController(c));  // presentable again
}

TEST(ViewController, NavigationAndTabBarContainers) {
    auto root = VLXViewController::create();
    auto second = VLXViewController::create();
    auto third = VLXViewController::create();
    auto navigation = VLXNavigationController::createWithRootViewController(root);
    EXPECT_TRUE(navigation->pushViewController(second));
    EXPECT_FALSE(navigation->pushViewController(second));
    EXPECT_FALSE(navigation->pushViewController(navigation));
    EXPECT_TRUE(navigation->pushViewController(third));
    EXPECT_EQ(navigation->viewControllers(),
              (VLXViewController::ViewControllers{root, second, third}));

    // The loaded container shows the top controller's view over its bounds.
    const auto& container = navigation->view();
    EXPECT_EQ(container->subviews(), (VLXView::Subviews{third->view()}));
    EXPECT_EQ(third->view()->frame(), container->bounds());

    auto modal = VLXViewController::create();
    third->presentViewController(modal);
    EXPECT_EQ(navigation->visibleViewController(), modal);
    third->dismissViewController();

    EXPECT_EQ(navigation->popViewController(), third);
    EXPECT_EQ(container->subviews(), (VLXView::Subviews{second->view()}));
    EXPECT_TRUE(navigation->pushViewController(third));
    EXPECT_EQ(navigation->popToRootViewController(),
              (VLXViewController::ViewControllers{second, third}));
    EXPECT_EQ(navigation->popViewController(), nullptr);  // the root stays
    // A child leaving on its own leaves the stack.
    root->removeFromParentViewController();
    EXPECT_EQ(navigation->topViewController(), nullptr);
    EXPECT_TRUE(container->subviews().empty());

    auto tabs = VLXTabBarController::create();
    EXPECT_EQ(tabs->selectedIndex(), VLXNotFound);
    tabs->setViewControllers({root, second, root, nullptr, third});
    EXPECT_EQ(tabs->viewControllers(), (VLXViewController::ViewControllers{root, second, third}));
    EXPECT_EQ(tabs->selectedIndex(), 0u);
    EXPECT_TRUE(tabs->setSelectedIndex(2));
    EXPECT_EQ(tabs->selectedViewController(), third);
    EXPECT_FALSE(tabs->setSelectedIndex(3));
    EXPECT_FALSE(tabs->setSelectedViewController(modal));
    EXPECT_EQ(tabs->view()->subviews().at(0), third->view());
    // The selected child leaving selects the first again.
    third->removeFromParentViewController();
    EXPECT_EQ(tabs->selectedIndex(), 0u);
    EXPECT_EQ(tabs->view()->subviews().at(0), root->view());
}

TEST(ViewController, SystemVersionComparesNumberByNumber) {
    EXPECT_EQ(VLXViewController::systemVersion(), "17.0");
    EXPECT_TRUE(VLXViewController::isSystemVersionAtLeast(11, 0));
    {
        VLXScopedSystemVersion old("10.3.1");
        EXPECT_FALSE(VLXViewController::isSystemVersionAtLeast(11));
        EXPECT_TRUE(VLXViewController::isSystemVersionAtLeast(10, 3, 1));
        EXPECT_FALSE(VLXViewController::isSystemVersionAtLeast(10, 3, 2));
        VLXViewController::setSystemVersion("9.10");  // not "9.1": numbers, not text
        EXPECT_TRUE(VLXViewController::isSystemVersionAtLeast(9, 2));
        VLXViewController::setSystemVersion("11");
        EXPECT_TRUE(VLXViewController::isSystemVersionAtLeast(11, 0, 0));
        VLXViewController::setSystemVersion("beta");
        EXPECT_FALSE(VLXViewController::isSystemVersionAtLeast(0, 0, 1));
        VLXViewController::setSystemVersion("99999999999999999999999.1");
        EXPECT_TRUE(VLXViewController::isSystemVersionAtLeast(11));
        VLXViewController::setSystemVersion("");
        EXPECT_EQ(VLXViewController::systemVersion(), "17.0");
        VLXViewController::setSystemVersion("8.4");
    }
    EXPECT_EQ(VLXViewController::systemVersion(), "17.0");
}

TEST(ViewControllerHelpers, SafeAreaAnchorsFallBackBeforeEleven) {
    auto controller = VLXViewController::create();
    auto top = vlx_topSafeAreaLayoutGuideWithFallback(*controller);
    auto bottom = vlx_bottomSafeAreaLayoutGuideWithFallback(*controller);
    ASSERT_NE(top, nullptr);
    ASSERT_NE(bottom, nullptr);
    const auto& safe = controller->view()->safeAreaLayoutGuide();
    EXPECT_TRUE(top->isEqual(*safe->topAnchor()));
    EXPECT_TRUE(bottom->isEqual(*safe->bottomAnchor()));

    VLXScopedSystemVersion old("10.3");
    top = vlx_topSafeAreaLayoutGuideWithFallback(*controller);
    bottom = vlx_bottomSafeAreaLayoutGuideWithFallback(*controller);
    ASSERT_NE(top, nullptr);
    ASSERT_NE(bottom, nullptr);
    EXPECT_TRUE(top->isEqual(*controller->topLayoutGuide()->bottomAnchor()));
    EXPECT_TRUE(bottom->isEqual(*controller->bottomLayoutGuide()->topAnchor()));
    // The fallback loads the view like the modern path does.
    auto fresh = VLXViewController::create();
    EXPECT_NE(vlx_topSafeAreaLayoutGuideWithFallback(*fresh), nullptr);
    EXPECT_TRUE(fresh->isViewLoaded());
}

TEST(ViewControllerHelpers, IsModalInEachBranch) {
    auto presenter = VLXViewController::create();
    auto alone = VLXViewController::create();
    EXPECT_FALSE(vlx_isModal(*alone));

    // Presented itself.
    ASSERT_TRUE(presenter->presentViewController(alone));
    EXPECT_TRUE(vlx_isModal(*alone));
    EXPECT_FALSE(vlx_isModal(*presenter));
    presenter->dismissViewController();
    EXPECT_FALSE(vlx_isModal(*alone));

    // Inside a presented navigation controller, at any depth of the stack.
    auto root = VLXViewController::create();
    auto pushed = VLXViewController::create();
    auto navigation = VLXNavigationController::createWithRootViewController(root);
    navigation->pushViewController(pushed);
    EXPECT_FALSE(vlx_isModal(*pushed));
    ASSERT_TRUE(presenter->presentViewController(navigation));
    EXPECT_TRUE(vlx_isModal(*root));
    EXPECT_TRUE(vlx_isModal(*pushed));
    EXPECT_TRUE(vlx_isModal(*navigation));
    presenter->dismissViewController();
    EXPECT_FALSE(vlx_isModal(*pushed));

    // Inside a tab bar controller: only when a tab bar controller presented it.
    auto tab = VLXViewController::create();
    auto tabs = VLXTabBarController::create();
    tabs->setViewControllers({tab});
    ASSERT_TRUE(presenter->presentViewController(tabs));
    EXPECT_TRUE(vlx_isModal(*tabs));
    EXPECT_FALSE(vlx_isModal(*tab));
    presenter->dismissViewController();
    auto outerTabs = VLXTabBarController::create();
    ASSERT_TRUE(outerTabs->presentViewController(tabs));
    EXPECT_TRUE(vlx_isModal(*tab));
    // A navigation controller inside those tabs that was not presented still answers through
    // its tab bar controller.
    auto nested = VLXViewController::create();
    auto innerNavigation = VLXNavigationController::createWithRootViewController(nested);
    tabs->setViewControllers({innerNavigation});
    EXPECT_TRUE(vlx_isModal(*nested));
    outerTabs->dismissViewController();
    EXPECT_FALSE(vlx_isModal(*nested));
}
