#include "ViewTestSupport.h"

#include <cmath>
#include <limits>

#include <VelmarCoreUI/Platform/Layers/VLXLayer.h>

namespace {

// Records the move hooks of every view that shares the log, as "<name>:<hook>".
class HookView : public VLXView {
public:
    static std::shared_ptr<HookView> make(std::string name, std::vector<std::string>* log) {
        auto view = makeWithFrame<HookView>(VLXRectZero);
        view->m_name = std::move(name);
        view->m_log = log;
        return view;
    }
    void willMoveToSuperview(VLXView* s) override {
        note(std::string("willMoveToSuperview(") + (s ? "view" : "nil") + ")");
    }
    void didMoveToSuperview() override { note("didMoveToSuperview"); }
    void willMoveToWindow(VLXWindow* w) override {
        note(std::string("willMoveToWindow(") + (w ? "window" : "nil") + ")");
    }
    void didMoveToWindow() override { note("didMoveToWindow"); }
    void didAddSubview(VLXView&) override { note("didAddSubview"); }
    void willRemoveSubview(VLXView&) override { note("willRemoveSubview"); }

private:
    void note(const std::string& what) { m_log->push_back(m_name + ":" + what); }
    std::string m_name;
    std::vector<std::string>* m_log = nullptr;
};

// The subviews of `root` are `views` in order, and their layers sit in the same order above any
// stand-alone layers.
void expectOrder(const VLXView& root, const VLXView::Subviews& views) {
    EXPECT_EQ(root.subviews(), views);
    const auto& layers = root.layer()->sublayers();
    ASSERT_GE(layers.size(), views.size());
    for (std::size_t i = 0; i < views.size(); ++i) {
        EXPECT_EQ(layers[layers.size() - views.size() + i], views[i]->layer()) << i;
    }
}

}  // namespace

using ViewTree = ViewTest;

TEST_F(ViewTree, GeometryLivesInTheLayerAndRefusesNonFiniteValues) {
    auto view = VLXView::createWithFrame(VLXRectMake(10, 20, 30, 40));
    EXPECT_EQ(view->bounds(), VLXRectMake(0, 0, 30, 40));

    // The bounds origin scrolls the content; the frame stays.
    view->setBounds(VLXRectMake(5, 6, 30, 40));
    EXPECT_EQ(view->frame(), VLXRectMake(10, 20, 30, 40));
    view->setCenter({100, 100});
    EXPECT_EQ(view->frame(), VLXRectMake(85, 80, 30, 40));

    // A scale about the centre doubles the frame and keeps the bounds.
    view->setTransform(VLXAffineTransformMakeScale(2, 2));
    EXPECT_EQ(view->frame(), VLXRectMake(70, 60, 60, 80));
    view->setTransform(VLXAffineTransformIdentity);

    // Non-finite input leaves everything as it was; a negative size is standardised.
    const double nan = std::nan("");
    const double inf = std::numeric_limits<double>::infinity();
    view->setFrame(VLXRectMake(nan, 0, 10, 10));
    view->setFrame(VLXRectMake(0, 0, inf, 10));
    view->setCenter({inf, 0});
    view->setBounds(VLXRectMake(0, 0, nan, 1));
    view->setTransform(VLXAffineTransform{nan, 0, 0, 1, 0, 0});
    view->setAlpha(nan);
    EXPECT_EQ(view->frame(), VLXRectMake(85, 80, 30, 40));
    EXPECT_TRUE(VLXAffineTransformIsIdentity(view->transform()));
    EXPECT_EQ(view->alpha(), 1);
    view->setFrame(VLXRectMake(50, 50, -20, -10));
    EXPECT_EQ(view->frame(), VLXRectMake(30, 40, 20, 10));
    view->setAlpha(3);
    EXPECT_EQ(view->alpha(), 1);
    view->setAlpha(-1);
    EXPECT_EQ(view->alpha(), 0);
}

TEST_F(ViewTree, AddingRefusesCyclesAndMovesViewsToTheFront) {
    auto root = VLXView::create();
    auto a = VLXView::create();
    auto b = VLXView::create();
    auto child = VLXView::create();
    // A stand-alone layer added first ends up behind every view added after it.
    auto standalone = VLXLayer::create();
    root->layer()->addSublayer(standalone);
    ASSERT_TRUE(root->addSubview(a));
    ASSERT_TRUE(root->addSubview(b));
    ASSERT_TRUE(a->addSubview(child));
    expectOrder(*root, {a, b});
    EXPECT_EQ(root->layer()->sublayers().front(), standalone);

    // Self, ancestors and null are refused, nothing changes.
    EXPECT_FALSE(child->addSubview(child));
    EXPECT_FALSE(child->addSubview(a));
    EXPECT_FALSE(child->addSubview(root));
    EXPECT_FALSE(a->insertSubview(root, 0));
    EXPECT_FALSE(root->addSubview(nullptr));
    expectOrder(*root, {a, b});
    EXPECT_EQ(a->subviews(), (VLXView::Subviews{child}));
    EXPECT_EQ(root->superview(), nullptr);
    EXPECT_TRUE(child->isDescendantOfView(root.get()));
    EXPECT_FALSE(root->isDescendantOfView(child.get()));

    // Re-adding moves to the front, view and layer; reparenting detaches from the old superview.
    EXPECT_TRUE(root->addSubview(a));
    expectOrder(*root, {b, a});
    EXPECT_TRUE(b->addSubview(child));
    EXPECT_TRUE(a->layer()->sublayers().empty());
    EXPECT_EQ(child->superview(), b.get());
    EXPECT_EQ(child->layer()->superlayer(), b->layer().get());

    // Inserting puts the layer just below the layer of the view above it.
    auto c = VLXView::create();
    EXPECT_TRUE(root->insertSubview(c, 1));
    expectOrder(*root, {b, c, a});
    EXPECT_TRUE(root->insertSubviewBelow(a, b.get()));
    expectOrder(*root, {a, b, c});
    EXPECT_TRUE(root->insertSubviewAbove(a, b.get()));
    EXPECT_FALSE(root->insertSubviewAbove(a, child.get()));  // not a subview of root
    expectOrder(*root, {b, a, c});
    root->bringSubviewToFront(b.get());
    root->sendSubviewToBack(c.get());
    expectOrder(*root, {c, a, b});
    EXPECT_EQ(root->layer()->sublayers().front(), standalone);
    EXPECT_TRUE(root->insertSubview(VLXView::create(), 99));  // clamped: frontmost
    EXPECT_EQ(root->layer()->sublayers().back(), root->subviews().back()->layer());

    // Removing detaches view and layer; a second removal does nothing.
    a->removeFromSuperview();
    a->removeFromSuperview();
    EXPECT_EQ(a->layer()->superlayer(), nullptr);
    EXPECT_EQ(root->subviews().size(), 3u);

    // Tags: depth first, back to front.
    child->setTag(7);
    c->setTag(7);
    EXPECT_EQ(root->viewWithTag(7), c.get());
    EXPECT_EQ(root->viewWithTag(8), nullptr);
}

TEST_F(ViewTree, HooksAndWindowFollowTheTree) {
    std::vector<std::string> log;
    auto window = makeWindow(50, 50, 2);
    auto parent = HookView::make("parent", &log);
    auto child = HookView::make("child", &log);
    parent->addSubview(child);
    EXPECT_EQ(log, (std::vector<std::string>{"child:willMoveToSuperview(view)",
                                             "child:didMoveToSuperview", "parent:didAddSubview"}));
    EXPECT_EQ(child->window(), nullptr);
    EXPECT_EQ(child->layer()->contentsScale(), VLXScreen::mainScreen()->scale());

    log.clear();
    window->addSubview(parent);
    EXPECT_EQ(log, (std::vector<std::string>{
                       "parent:willMoveToSuperview(view)", "parent:willMoveToWindow(window)",
                       "child:willMoveToWindow(window)", "parent:didMoveToWindow",
                       "child:didMoveToWindow", "parent:didMoveToSuperview"}));
    EXPECT_EQ(child->window(), window.get());
    EXPECT_EQ(child->layer()->contentsScale(), 2);  // the window's screen scale

    log.clear();
    child->removeFromSuperview();
    EXPECT_EQ(
        log, (std::vector<std::string>{"parent:willRemoveSubview", "child:willMoveToSuperview(nil)",
                                       "child:willMoveToWindow(nil)", "child:didMoveToWindow",
                                       "child:didMoveToSuperview"}));
    EXPECT_EQ(child->window(), nullptr);

    // A new screen reaches the layers already in the window.
    auto screen = VLXScreen::create();
    screen->setScale(3);
    window->setScreen(screen);
    EXPECT_EQ(parent->layer()->contentsScale(), 3);

    // Safe-area insets: bad values become zero.
    window->setSafeAreaInsets({std::nan(""), -4, 20, std::numeric_limits<double>::infinity()});
    EXPECT_EQ(window->safeAreaInsets(), (VLXEdgeInsets{0, 0, 20, 0}));
}

TEST_F(ViewTree, ViewsDieWithoutLeavingDanglingLinks) {
    auto survivor = VLXView::create();
    {
        auto parent = VLXView::create();
        parent->addSubview(survivor);
        ASSERT_EQ(survivor->superview(), parent.get());
    }
    EXPECT_EQ(survivor->superview(), nullptr);
    EXPECT_EQ(survivor->layer()->superlayer(), nullptr);
    EXPECT_TRUE(survivor->addSubview(VLXView::create()));  // still usable

    // A very deep tree (built from the leaf up) is torn down without deep recursion.
    auto leaf = VLXView::create();
    auto root = leaf;
    for (int i = 0; i < 10000; ++i) {
        auto parent = VLXView::create();
        parent->addSubview(root);
        root = parent;
    }
    EXPECT_TRUE(leaf->isDescendantOfView(root.get()));
    leaf.reset();
    root.reset();
}

TEST_F(ViewTree, DescriptionsNameWhatDiffersFromTheDefaults) {
    auto view = VLXView::createWithFrame(VLXRectMake(10, 20, 30.5, 40));
    const std::string plain = view->description();
    EXPECT_EQ(plain.rfind("<VLXView: 0x", 0), 0u) << plain;
    EXPECT_NE(plain.find("; frame = (10 20; 30.5 40); layer = <VLXLayer: 0x"), std::string::npos)
        << plain;
    view->setHidden(true);
    view->setAlpha(0.5);
    view->setClipsToBounds(true);
    view->setUserInteractionEnabled(false);
    view->setTag(3);
    const std::string changed = view->description();
    for (const char* part : {"hidden = YES", "alpha = 0.5", "clipsToBounds = YES",
                             "userInteractionEnabled = NO", "tag = 3"}) {
        EXPECT_NE(changed.find(part), std::string::npos) << part << " in " << changed;
    }

    auto child = VLXView::create();
    auto grandchild = VLXView::create();
    auto second = VLXView::create();
    view->addSubview(child);
    child->addSubview(grandchild);
    view->addSubview(second);
    const std::string tree = view->recursiveDescription();
    const std::string expected = view->description() + "\n   | " + child->description() +
                                 "\n   |    | " + grandchild->description() + "\n   | " +
                                 second->description() + "\n";
    EXPECT_EQ(tree, expected);
}
