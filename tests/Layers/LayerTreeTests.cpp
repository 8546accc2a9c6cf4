#include <algorithm>

#include <gtest/gtest.h>

#include <VelmarCoreUI/Platform/Layers/VLXLayer.h>
#include <VelmarCoreUI/Platform/Layers/VLXTransaction.h>

#include "LayerTestSupport.h"

namespace {

std::vector<std::string> names(const VLXLayer& layer) {
    std::vector<std::string> result;
    for (const auto& s : layer.sublayers()) {
        result.push_back(s->name().value_or("?"));
    }
    return result;
}

using Names = std::vector<std::string>;

}  // namespace

TEST(LayerTree, EditsKeepOrderAndParents) {
    auto root = named("root");
    auto a = named("a"), b = named("b"), c = named("c"), d = named("d");
    EXPECT_TRUE(root->addSublayer(a));
    EXPECT_TRUE(root->addSublayer(b));
    EXPECT_EQ(names(*root), (Names{"a", "b"}));
    EXPECT_EQ(a->superlayer(), root.get());

    EXPECT_TRUE(root->insertSublayer(c, 0));  // backmost
    EXPECT_EQ(names(*root), (Names{"c", "a", "b"}));
    EXPECT_TRUE(root->insertSublayer(d, 99));  // clamped to the end
    EXPECT_EQ(names(*root), (Names{"c", "a", "b", "d"}));
    // Moving within the parent counts the index without the layer.
    EXPECT_TRUE(root->insertSublayer(c, 3));
    EXPECT_EQ(names(*root), (Names{"a", "b", "d", "c"}));

    EXPECT_TRUE(root->insertSublayerBelow(c, a.get()));
    EXPECT_EQ(names(*root), (Names{"c", "a", "b", "d"}));
    EXPECT_TRUE(root->insertSublayerAbove(c, b.get()));
    EXPECT_EQ(names(*root), (Names{"a", "b", "c", "d"}));
    EXPECT_TRUE(root->insertSublayerAbove(a, nullptr));  // frontmost
    EXPECT_EQ(names(*root), (Names{"b", "c", "d", "a"}));
    auto stranger = named("x");
    EXPECT_FALSE(root->insertSublayerBelow(named("y"), stranger.get()));

    // Adding to another parent moves it.
    auto other = named("other");
    other->addSublayer(b);
    EXPECT_EQ(names(*root), (Names{"c", "d", "a"}));
    EXPECT_EQ(b->superlayer(), other.get());

    EXPECT_TRUE(root->replaceSublayer(d.get(), b));
    EXPECT_EQ(names(*root), (Names{"c", "b", "a"}));
    EXPECT_EQ(d->superlayer(), nullptr);
    EXPECT_TRUE(other->sublayers().empty());
    EXPECT_FALSE(root->replaceSublayer(d.get(), named("z")));  // no longer a sublayer
    EXPECT_TRUE(root->replaceSublayer(b.get(), nullptr));
    EXPECT_EQ(names(*root), (Names{"c", "a"}));

    a->removeFromSuperlayer();
    a->removeFromSuperlayer();  // no parent: nothing
    EXPECT_EQ(names(*root), (Names{"c"}));
    EXPECT_EQ(a->superlayer(), nullptr);

    // A layer held only by its parent survives its own removal call.
    std::weak_ptr<VLXLayer> weak;
    {
        auto only = named("only");
        weak = only;
        root->addSublayer(only);
    }
    weak.lock()->removeFromSuperlayer();
    EXPECT_TRUE(weak.expired());
}

TEST(LayerTree, CyclesAreRefusedAndLeaveTheTreeUnchanged) {
    auto root = named("root"), mid = named("mid"), leaf = named("leaf");
    root->addSublayer(mid);
    mid->addSublayer(leaf);
    const std::string before = root->layerTreeAsText();

    EXPECT_FALSE(root->addSublayer(root));
    EXPECT_FALSE(leaf->addSublayer(root));
    EXPECT_FALSE(leaf->insertSublayer(mid, 0));
    EXPECT_FALSE(leaf->insertSublayerAbove(root, nullptr));
    EXPECT_FALSE(mid->replaceSublayer(leaf.get(), root));
    EXPECT_FALSE(root->addSublayer(nullptr));
    EXPECT_EQ(root->layerTreeAsText(), before);
    EXPECT_EQ(mid->superlayer(), root.get());

    // Masks count as ownership: no cycles through them either.
    EXPECT_FALSE(leaf->setMask(root));
    EXPECT_FALSE(leaf->setMask(leaf));
    auto mask = named("mask");
    EXPECT_TRUE(leaf->setMask(mask));
    EXPECT_EQ(mask->maskOwner(), leaf.get());
    EXPECT_FALSE(mask->addSublayer(root));
    EXPECT_TRUE(mask->isDescendantOf(root.get()));
    // Adding a mask as a sublayer takes it off its owner.
    root->addSublayer(mask);
    EXPECT_EQ(leaf->mask(), nullptr);
    EXPECT_EQ(mask->maskOwner(), nullptr);
    // Setting a sublayer as a mask takes it out of the tree.
    EXPECT_TRUE(leaf->setMask(mask));
    EXPECT_EQ(mask->superlayer(), nullptr);
    EXPECT_EQ(names(*root), (Names{"mid"}));
}

TEST(LayerTree, TenThousandLevelsDoNotOverflowTheStack) {
    constexpr int kDepth = 10000;
    std::weak_ptr<VLXLayer> deepest;
    VLXTransaction::begin();
    VLXTransaction::setDisableActions(true);
    {
        auto root = VLXLayer::create();
        root->setFrame({{0, 0}, {100, 100}});
        VLXLayer* parent = root.get();
        for (int i = 0; i < kDepth; ++i) {
            auto child = VLXLayer::create();
            child->setFrame({{0, 0}, {100, 100}});
            parent->addSublayer(child);
            parent = child.get();
            deepest = child;
        }
        // Walks: hit test, conversion, layout, display, text, ancestry.
        EXPECT_EQ(root->hitTest({50, 50}), deepest.lock());
        EXPECT_EQ(root->hitTest({150, 50}), nullptr);
        deepest.lock()->setBounds({{-3, 0}, {100, 100}});
        EXPECT_EQ(deepest.lock()->convertPointToLayer({0, 2}, root.get()), (VLXPoint{3, 2}));
        EXPECT_TRUE(deepest.lock()->isDescendantOf(root.get()));
        EXPECT_FALSE(deepest.lock()->addSublayer(root));
        deepest.lock()->setNeedsLayout();
        deepest.lock()->setNeedsDisplay();
        root->layoutIfNeeded();
        root->displayTreeIfNeeded();
        EXPECT_FALSE(deepest.lock()->needsLayout());
        EXPECT_FALSE(deepest.lock()->needsDisplay());
        const std::string text = root->layerTreeAsText();
        EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), kDepth + 1);
        // Also a long mask chain.
        auto chain = VLXLayer::create();
        VLXLayer* owner = chain.get();
        for (int i = 0; i < kDepth; ++i) {
            auto mask = VLXLayer::create();
            owner->setMask(mask);
            owner = mask.get();
        }
        root->addSublayer(chain);
    }
    VLXTransaction::commit();
    EXPECT_TRUE(deepest.expired());  // the whole tree went, iteratively
}
