// Anchors, constraints and the constraint builders of views.
#include <cmath>
#include <limits>
#include <memory>
#include <unordered_set>

#include <gtest/gtest.h>

#include <VelmarCoreUI/Platform/Views/VLXLayoutAnchor.h>
#include <VelmarCoreUI/Platform/Views/VLXLayoutConstraint.h>
#include <VelmarCoreUI/Platform/Views/VLXLayoutGuide.h>
#include <VelmarCoreUI/Platform/Views/VLXView.h>
#include <VelmarCoreUI/Utilities/VLXViewLayoutHelpers.h>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// Checks one constraint of a builder: "first.a == second.b + constant", inactive.
void expectConstraint(const std::shared_ptr<VLXLayoutConstraint>& c, const VLXView& first,
                      VLXLayoutAttribute firstAttribute, const VLXView* second,
                      VLXLayoutAttribute secondAttribute, double constant) {
    ASSERT_NE(c, nullptr);
    EXPECT_EQ(c->firstItem().get(), &first);
    EXPECT_EQ(c->firstAttribute(), firstAttribute);
    EXPECT_EQ(c->secondItem().get(), second);
    EXPECT_EQ(c->secondAttribute(), secondAttribute);
    EXPECT_EQ(c->relation(), VLXLayoutRelationEqual);
    EXPECT_EQ(c->multiplier(), 1);
    EXPECT_EQ(c->constant(), constant);
    EXPECT_EQ(c->priority(), 1000);
    EXPECT_FALSE(c->isActive());
}

}  // namespace

TEST(LayoutAnchor, EqualityIsItemAndAttribute) {
    auto a = VLXView::create();
    auto b = VLXView::create();
    // Two calls make two objects that are equal and hash alike.
    auto top1 = a->topAnchor();
    auto top2 = a->topAnchor();
    ASSERT_NE(top1, top2);
    EXPECT_TRUE(top1->isEqual(*top2));
    EXPECT_EQ(top1->hash(), top2->hash());
    EXPECT_FALSE(top1->isEqual(*a->bottomAnchor()));
    EXPECT_FALSE(top1->isEqual(*b->topAnchor()));
    EXPECT_FALSE(top1->isEqual(*a));
    // The safe-area guide is an item of its own, not the view.
    EXPECT_FALSE(top1->isEqual(*a->safeAreaLayoutGuide()->topAnchor()));

    // Each getter names its own attribute.
    std::unordered_set<VLXInteger> seen;
    for (const auto& anchor :
         {a->leftAnchor(), a->rightAnchor(), a->centerXAnchor(), a->topAnchor(), a->bottomAnchor(),
          a->centerYAnchor(), a->widthAnchor(), a->heightAnchor()}) {
        EXPECT_EQ(anchor->item().get(), a.get());
        seen.insert(anchor->attribute());
    }
    EXPECT_EQ(seen.size(), 8u);
    EXPECT_EQ(VLXLayoutAnchor::anchorWithItem(*a, VLXLayoutAttributeNotAnAttribute), nullptr);
    EXPECT_EQ(VLXLayoutAnchor::anchorWithItem(*a, static_cast<VLXLayoutAttribute>(42)), nullptr);
}

TEST(LayoutAnchor, AnchorsNeverKeepTheirItemAndRefuseOnceItIsGone) {
    auto view = VLXView::create();
    auto other = VLXView::create();
    auto top = view->topAnchor();
    auto width = view->widthAnchor();
    auto constraint = top->constraintEqualToAnchor(other->topAnchor(), 4);
    ASSERT_NE(constraint, nullptr);
    std::weak_ptr<VLXView> watch = view;
    view.reset();
    EXPECT_TRUE(watch.expired()) << "an anchor or constraint kept its view alive";
    EXPECT_EQ(top->item(), nullptr);
    EXPECT_EQ(constraint->firstItem(), nullptr);
    EXPECT_NE(constraint->description().find("nil.top"), std::string::npos);
    // Nothing can be built from or to an anchor whose item is gone.
    EXPECT_EQ(top->constraintEqualToAnchor(other->topAnchor()), nullptr);
    EXPECT_EQ(other->topAnchor()->constraintEqualToAnchor(top), nullptr);
    EXPECT_EQ(width->constraintEqualToConstant(10), nullptr);
    // An anchor of the dead item does not equal a new view's anchor.
    EXPECT_FALSE(top->isEqual(*VLXView::create()->topAnchor()));
}

TEST(LayoutAnchor, OnlyAnchorsOfOneAxisRelate) {
    auto a = VLXView::create();
    auto b = VLXView::create();
    EXPECT_EQ(a->leftAnchor()->constraintEqualToAnchor(b->topAnchor()), nullptr);
    EXPECT_EQ(a->centerXAnchor()->constraintEqualToAnchor(b->centerYAnchor()), nullptr);
    EXPECT_EQ(a->widthAnchor()->constraintEqualToAnchor(b->leftAnchor()), nullptr);
    EXPECT_EQ(a->topAnchor()->constraintEqualToAnchor(b->heightAnchor()), nullptr);
    EXPECT_EQ(a->topAnchor()->constraintEqualToAnchor(nullptr), nullptr);
    // Constants alone size things; a position needs another anchor.
    EXPECT_EQ(a->topAnchor()->constraintEqualToConstant(10), nullptr);
    EXPECT_EQ(a->centerXAnchor()->constraintEqualToConstant(10), nullptr);
    // Within an axis any pair relates, a view's guide included.
    EXPECT_NE(a->leftAnchor()->constraintEqualToAnchor(b->centerXAnchor()), nullptr);
    EXPECT_NE(a->widthAnchor()->constraintEqualToAnchor(b->heightAnchor()), nullptr);
    EXPECT_NE(a->bottomAnchor()->constraintEqualToAnchor(a->safeAreaLayoutGuide()->bottomAnchor()),
              nullptr);
    // Non-finite constants are refused; zero and negative ones are fine.
    for (double bad : {kNaN, kInfinity, -kInfinity}) {
        EXPECT_EQ(a->topAnchor()->constraintEqualToAnchor(b->topAnchor(), bad), nullptr);
        EXPECT_EQ(a->widthAnchor()->constraintEqualToConstant(bad), nullptr);
    }
    auto negative = a->widthAnchor()->constraintEqualToConstant(-5);
    expectConstraint(negative, *a, VLXLayoutAttributeWidth, nullptr,
                     VLXLayoutAttributeNotAnAttribute, -5);
    EXPECT_EQ(negative->secondAnchor(), nullptr);
}

TEST(LayoutConstraint, StoredPropertiesAndDescription) {
    auto a = VLXView::create();
    auto b = VLXView::create();
    auto c = a->topAnchor()->constraintEqualToAnchor(b->bottomAnchor(), 8);
    expectConstraint(c, *a, VLXLayoutAttributeTop, b.get(), VLXLayoutAttributeBottom, 8);

    const std::string text = c->description();
    for (const char* part : {".top == ", ".bottom + 8", "(inactive)"}) {
        EXPECT_NE(text.find(part), std::string::npos) << text;
    }
    c->setConstant(-3);
    c->setConstant(kNaN);  // ignored
    EXPECT_EQ(c->constant(), -3);
    EXPECT_NE(c->description().find(".bottom - 3"), std::string::npos) << c->description();

    c->setPriority(5000);
    EXPECT_EQ(c->priority(), 1000);
    c->setPriority(-1);
    c->setPriority(kNaN);  // ignored
    EXPECT_EQ(c->priority(), 1);
    EXPECT_NE(c->description().find("@1"), std::string::npos);

    VLXLayoutConstraint::activateConstraints({c, nullptr});
    EXPECT_NE(c->description().find("(active)"), std::string::npos);
    // Activation is stored only: nothing moves.
    EXPECT_EQ(a->frame(), VLXRectZero);
}

TEST(ViewLayoutHelpers, CenteringPinningAndSizing) {
    auto view = VLXView::create();
    auto other = VLXView::createWithFrame(VLXRectMake(0, 0, 100, 80));
    const VLXView* o = other.get();
    // Each built constraint relates the view's attribute to the same one of `second` (or to a
    // constant when there is none), in this order.
    const auto check = [&](const VLXLayoutConstraints& built,
                           const std::vector<VLXLayoutAttribute>& attributes, const VLXView* second,
                           const std::vector<double>& constants) {
        ASSERT_EQ(built.size(), attributes.size());
        for (std::size_t i = 0; i < built.size(); ++i) {
            expectConstraint(built[i], *view, attributes[i], second,
                             second ? attributes[i] : VLXLayoutAttributeNotAnAttribute,
                             constants[i]);
        }
    };
    const std::vector<VLXLayoutAttribute> edges = {VLXLayoutAttributeTop, VLXLayoutAttributeLeft,
                                                   VLXLayoutAttributeBottom,
                                                   VLXLayoutAttributeRight};
    check(vlx_constraintsByCenteringInView(*view, o),
          {VLXLayoutAttributeCenterX, VLXLayoutAttributeCenterY}, o, {0, 0});
    // Each inset added as it is: positive bottom and right insets reach outside the other view.
    check(vlx_constraintsByPinningToEdgesOfView(*view, o, VLXEdgeInsetsMake(1, 2, 3, 4)), edges, o,
          {1, 2, 3, 4});
    check(vlx_constraintsByPinningToEdgesOfView(*view, o, -6.5), edges, o,
          {-6.5, -6.5, -6.5, -6.5});
    check(vlx_constraintsByPinningToEdgesOfView(*view, o), edges, o, {0, 0, 0, 0});
    check(vlx_constraintsBySettingDimensionsToSize(*view, VLXSizeMake(30, 20)),
          {VLXLayoutAttributeWidth, VLXLayoutAttributeHeight}, nullptr, {30, 20});

    // The builders touch neither view.
    EXPECT_TRUE(view->translatesAutoresizingMaskIntoConstraints());
    EXPECT_EQ(view->frame(), VLXRectZero);
    EXPECT_EQ(view->superview(), nullptr);

    // All or nothing for bad input.
    EXPECT_TRUE(vlx_constraintsByCenteringInView(*view, nullptr).empty());
    EXPECT_TRUE(vlx_constraintsByPinningToEdgesOfView(*view, nullptr).empty());
    EXPECT_TRUE(
        vlx_constraintsByPinningToEdgesOfView(*view, o, VLXEdgeInsetsMake(0, 0, kNaN, 0)).empty());
    EXPECT_TRUE(vlx_constraintsByPinningToEdgesOfView(*view, o, kInfinity).empty());
    EXPECT_TRUE(vlx_constraintsBySettingDimensionsToSize(*view, VLXSizeMake(10, kNaN)).empty());
    // A view may be related to itself; nothing refuses it without a solver.
    EXPECT_EQ(vlx_constraintsByCenteringInView(*view, view.get()).size(), 2u);
}
