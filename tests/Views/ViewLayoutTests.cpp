#include "ViewTestSupport.h"

#include <algorithm>
#include <functional>

namespace {

// Logs its layout passes; an optional action runs inside layoutSubviews.
class LayoutView : public VLXView {
public:
    static std::shared_ptr<LayoutView> make(std::string name, std::vector<std::string>* log,
                                            VLXRect frame = VLXRectMake(0, 0, 100, 100)) {
        auto view = makeWithFrame<LayoutView>(frame);
        view->m_name = std::move(name);
        view->m_log = log;
        return view;
    }
    std::function<void(LayoutView&)> onLayout;
    void layoutSubviews() override {
        VLXView::layoutSubviews();
        m_log->push_back(m_name);
        if (onLayout) {
            onLayout(*this);
        }
    }
    VLXSize sizeThatFits(VLXSize size) const override { return {std::min(size.width, 42.0), 17}; }

private:
    std::string m_name;
    std::vector<std::string>* m_log = nullptr;
};

// Answers only inside the circle inscribed in its bounds (origin at zero).
class RoundView : public VLXView {
public:
    using VLXView::makeWithFrame;
    bool pointInside(VLXPoint p) const override {
        const double r = bounds().size.width / 2;
        return (p.x - r) * (p.x - r) + (p.y - r) * (p.y - r) <= r * r;
    }
};

}  // namespace

using ViewLayout = ViewTest;

TEST_F(ViewLayout, ParentsLayOutBeforeChildrenInOnePass) {
    std::vector<std::string> log;
    auto root = LayoutView::make("root", &log);
    auto child = LayoutView::make("child", &log);
    auto grandchild = LayoutView::make("grandchild", &log);
    root->addSubview(child);
    child->addSubview(grandchild);
    root->layoutIfNeeded();
    EXPECT_EQ(log, (std::vector<std::string>{"root", "child", "grandchild"}));

    // Nothing marked: nothing runs.
    log.clear();
    root->layoutIfNeeded();
    EXPECT_TRUE(log.empty());

    // The root resizes the grandchild during its pass: the grandchild (marked by its new size) is
    // laid out in the same pass, after its parents; the child, unmarked, is skipped.
    root->onLayout = [&](LayoutView&) { grandchild->setFrame(VLXRectMake(0, 0, 10, 10)); };
    root->setNeedsLayout();
    root->layoutIfNeeded();
    EXPECT_EQ(log, (std::vector<std::string>{"root", "grandchild"}));

    // A child marks its parent while laid out: the next pass of the same call serves it.
    log.clear();
    root->onLayout = nullptr;
    int rounds = 0;
    child->onLayout = [&](LayoutView&) {
        if (++rounds == 1) {
            root->setNeedsLayout();
        }
    };
    child->setNeedsLayout();
    root->layoutIfNeeded();
    EXPECT_EQ(log, (std::vector<std::string>{"child", "root"}));

    // Window trees are laid out by the turn.
    log.clear();
    auto window = makeWindow(100, 100);
    window->addSubview(root);
    turn();
    EXPECT_EQ(log, (std::vector<std::string>{"root"}));
    root->sizeToFit();  // the override: 42 × 17, origin kept
    EXPECT_EQ(root->frame(), VLXRectMake(0, 0, 42, 17));
}

TEST_F(ViewLayout, ViewsRemovedDuringLayoutAreSafe) {
    std::vector<std::string> log;
    auto root = LayoutView::make("root", &log);
    auto first = LayoutView::make("first", &log);
    auto second = LayoutView::make("second", &log);
    std::weak_ptr<LayoutView> weakFirst = first;
    root->addSubview(first);
    root->addSubview(second);
    // The root drops its first subview; the second removes itself inside its own pass.
    root->onLayout = [&](LayoutView&) {
        if (auto f = weakFirst.lock()) {
            f->removeFromSuperview();
        }
    };
    second->onLayout = [](LayoutView& self) { self.removeFromSuperview(); };
    first.reset();
    second.reset();
    root->layoutIfNeeded();
    EXPECT_TRUE(root->subviews().empty());
    EXPECT_TRUE(weakFirst.expired());
    EXPECT_EQ(log.front(), "root");
}

TEST_F(ViewLayout, ConversionsIncludeBoundsOriginsAndTransforms) {
    auto window = makeWindow(300, 300);
    auto container = VLXView::createWithFrame(VLXRectMake(10, 20, 200, 200));
    auto scrolled = VLXView::createWithFrame(VLXRectMake(5, 5, 100, 100));
    auto inner = VLXView::createWithFrame(VLXRectMake(30, 40, 10, 10));
    auto other = VLXView::createWithFrame(VLXRectMake(100, 0, 50, 50));
    window->addSubview(container);
    container->addSubview(scrolled);
    scrolled->addSubview(inner);
    window->addSubview(other);
    scrolled->setBounds(VLXRectMake(20, 10, 100, 100));  // content scrolled by (20, 10)

    // inner's (0, 0) sits at scrolled (30, 40) → container (5 + 30 − 20, 5 + 40 − 10).
    EXPECT_EQ(inner->convertPointToView({0, 0}, container.get()), (VLXPoint{15, 35}));
    EXPECT_EQ(inner->convertPointToView({0, 0}, nullptr), (VLXPoint{25, 55}));
    EXPECT_EQ(other->convertPointFromView({0, 0}, inner.get()), (VLXPoint{-75, 55}));
    EXPECT_EQ(inner->convertRectToView(VLXRectMake(1, 2, 3, 4), window.get()),
              VLXRectMake(26, 57, 3, 4));
    EXPECT_EQ(container->convertRectFromView(VLXRectMake(0, 0, 10, 10), inner.get()),
              VLXRectMake(15, 35, 10, 10));

    // A scale of 2 about the container's centre (110, 120 in the window).
    container->setTransform(VLXAffineTransformMakeScale(2, 2));
    const VLXPoint p = container->convertPointToView({0, 0}, nullptr);
    EXPECT_DOUBLE_EQ(p.x, 110 - 200);
    EXPECT_DOUBLE_EQ(p.y, 120 - 200);
    EXPECT_NEAR(container->convertPointFromView(p, nullptr).x, 0, 1e-9);

    // Trees without a window convert as if their roots shared a superview.
    auto loose = VLXView::createWithFrame(VLXRectMake(7, 8, 10, 10));
    EXPECT_EQ(loose->convertPointToView({1, 1}, nullptr), (VLXPoint{8, 9}));
    EXPECT_EQ(loose->convertPointToView({0, 0}, other.get()), (VLXPoint{-93, 8}));
}

TEST_F(ViewLayout, HitTestsSkipHiddenFadedAndInertViews) {
    auto root = VLXView::createWithFrame(VLXRectMake(0, 0, 200, 200));
    auto back = VLXView::createWithFrame(VLXRectMake(0, 0, 100, 100));
    auto front = VLXView::createWithFrame(VLXRectMake(50, 50, 100, 100));
    auto deep = VLXView::createWithFrame(VLXRectMake(10, 10, 20, 20));
    auto outside = VLXView::createWithFrame(VLXRectMake(90, 0, 40, 10));  // sticks out of back
    root->addSubview(back);
    root->addSubview(front);
    front->addSubview(deep);
    back->addSubview(outside);

    EXPECT_EQ(root->hitTest({75, 75}), deep);  // front to back, deepest first
    EXPECT_EQ(root->hitTest({120, 120}), front);
    EXPECT_EQ(root->hitTest({25, 25}), back);
    EXPECT_EQ(root->hitTest({195, 195}), root);
    EXPECT_EQ(root->hitTest({250, 10}), nullptr);
    EXPECT_EQ(root->hitTest({110, 5}), root);  // outside back: its subviews are not asked

    front->setHidden(true);
    EXPECT_EQ(root->hitTest({75, 75}), back);
    front->setHidden(false);
    front->setAlpha(0.005);
    EXPECT_EQ(root->hitTest({75, 75}), back);
    front->setAlpha(0.01);
    front->setUserInteractionEnabled(false);
    EXPECT_EQ(root->hitTest({65, 65}), back);  // the whole subtree is skipped
    front->setUserInteractionEnabled(true);

    // Model values decide, and the bounds origin counts.
    deep->setBounds(VLXRectMake(100, 100, 20, 20));
    EXPECT_EQ(root->hitTest({65, 65}), deep);
    EXPECT_EQ(deep->hitTest({5, 5}), nullptr);
    EXPECT_EQ(deep->hitTest({105, 105}), deep);

    // pointInside overrides shape the answer.
    auto round = RoundView::makeWithFrame<RoundView>(VLXRectMake(0, 0, 40, 40));
    root->addSubview(round);
    EXPECT_EQ(root->hitTest({2, 2}), back);  // the corner is outside the circle
    EXPECT_EQ(root->hitTest({20, 20}), round);
}
