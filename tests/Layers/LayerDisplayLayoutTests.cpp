#include <gtest/gtest.h>

#include "LayerTestSupport.h"

#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>
#include <VelmarCoreUI/Platform/Layers/VLXBasicAnimation.h>

namespace {

// Fills the left `level` fraction of its bounds in red; "level" redraws, "tint" does not.
class BarLayer : public VLXLayer {
public:
    static std::shared_ptr<BarLayer> create() { return makeInitialized<BarLayer>(); }
    int draws = 0;
    double level() const { return storedDouble("level"); }
    void setLevel(double v) { setValue(VLXValue(v), "level"); }
    bool needsDisplayForKey(std::string_view key) const override {
        return key == "level" || VLXLayer::needsDisplayForKey(key);
    }
    void drawInContext(VLXGraphicsContext& context) override {
        ++draws;
        const VLXRect b = bounds();
        context.setFillColor(VLXColor::redColor());
        context.fillRect({b.origin, {b.size.width * level(), b.size.height}});
    }
    std::shared_ptr<VLXLayer> newInstance() const override { return VLXMakeShared<BarLayer>(); }
};

class Painter : public VLXLayerDelegate {
public:
    void drawLayer(VLXLayer& layer, VLXGraphicsContext& context) override {
        context.setFillColor(VLXColor::blueColor());
        context.fillRect(layer.bounds());
    }
};

// Logs layout calls by layer name, and may mark other layers while laying out.
class LayoutLog : public VLXLayerDelegate {
public:
    std::vector<std::string> log;
    std::function<void(VLXLayer&)> hook;
    void layoutSublayersOfLayer(VLXLayer& layer) override {
        log.push_back(layer.name().value_or("?"));
        if (hook) {
            hook(layer);
        }
    }
};

// Horizontal extent of the painted pixels of row `y`, as [first, last], or {-1, -1}.
std::pair<int, int> paintedSpan(const VLXImage& image, int y) {
    int first = -1, last = -1;
    for (int x = 0; x < image.pixelWidth(); ++x) {
        if ((image.pixels()[static_cast<std::size_t>(y) * image.pixelWidth() + x] >> 24) != 0) {
            first = first < 0 ? x : first;
            last = x;
        }
    }
    return {first, last};
}

}  // namespace

TEST(LayerDisplay, DrawsIntoCachedContentsOnlyWhenMarked) {
    ManualClock clock;
    VLXTransaction::begin();
    VLXTransaction::setDisableActions(true);
    auto bar = BarLayer::create();
    bar->setBounds({{10, 10}, {40, 20}});
    bar->setContentsScale(2);
    bar->setLevel(0.5);  // marks: level redraws
    EXPECT_TRUE(bar->needsDisplay());
    bar->displayIfNeeded();
    EXPECT_FALSE(bar->needsDisplay());
    ASSERT_NE(bar->contents(), nullptr);
    EXPECT_EQ(bar->contents()->pixelWidth(), 80);  // bounds × contentsScale
    EXPECT_EQ(bar->contents()->pixelHeight(), 40);
    // Drawn in bounds coordinates: the left half, from the bounds' origin.
    EXPECT_EQ(paintedSpan(*bar->contents(), 20), (std::pair<int, int>{0, 39}));
    EXPECT_EQ(bar->contents()->colorAtPixel(10, 10), VLXColor::colorWithRed(1, 0, 0, 1));

    bar->displayIfNeeded();  // not marked: nothing drawn
    EXPECT_EQ(bar->draws, 1);
    bar->setValue(VLXValue(VLXColor::greenColor()), "tint");  // not a display key
    EXPECT_FALSE(bar->needsDisplay());
    bar->setLevel(1);
    bar->displayIfNeeded();
    EXPECT_EQ(bar->draws, 2);
    EXPECT_EQ(paintedSpan(*bar->contents(), 0), (std::pair<int, int>{0, 79}));

    // A plain layer draws nothing until asked; then through its delegate.
    auto plain = VLXLayer::create();
    plain->setBounds({{0, 0}, {4, 4}});
    EXPECT_FALSE(plain->needsDisplay());
    plain->displayTreeIfNeeded();
    EXPECT_EQ(plain->contents(), nullptr);
    Painter painter;
    plain->setDelegate(&painter);
    plain->setNeedsDisplay();
    plain->displayTreeIfNeeded();
    ASSERT_NE(plain->contents(), nullptr);
    EXPECT_EQ(plain->contents()->colorAtPixel(3, 3), VLXColor::colorWithRed(0, 0, 1, 1));
    plain->setDelegate(nullptr);

    // Empty or absurd bounds give no contents and no failure.
    plain->setBounds({{0, 0}, {0, 10}});
    plain->display();
    EXPECT_EQ(plain->contents(), nullptr);
    plain->setBounds({{0, 0}, {1e9, 1e9}});
    plain->display();
    EXPECT_EQ(plain->contents(), nullptr);
    VLXTransaction::commit();
}

TEST(LayerDisplay, AnimatedDisplayKeysRedrawThePresentation) {
    ManualClock clock;
    auto bar = BarLayer::create();
    bar->setBounds({{0, 0}, {100, 10}});
    clock.turn();
    EXPECT_FALSE(bar->presentationNeedsRedraw());

    auto animation = VLXBasicAnimation::animationWithKeyPath("level");
    animation->setFromValue(VLXValue(0.0));
    animation->setToValue(VLXValue(1.0));
    animation->setDuration(1);
    bar->addAnimation(animation, std::string("fill"));
    bar->addAnimation(VLXBasicAnimation::animationWithKeyPath("opacity"), std::nullopt);
    EXPECT_TRUE(bar->presentationNeedsRedraw());
    clock.turn();
    clock.step(0.25);
    auto presentation = bar->presentationLayer();
    EXPECT_NEAR(presentation->storedDouble("level"), 0.25, 1e-9);
    presentation->display();
    ASSERT_NE(presentation->contents(), nullptr);
    EXPECT_EQ(paintedSpan(*presentation->contents(), 5), (std::pair<int, int>{0, 24}));
    clock.step(1);
    EXPECT_FALSE(bar->presentationNeedsRedraw());  // removed on completion

    // Animating a key that does not redraw needs no redraw.
    bar->addAnimation(VLXBasicAnimation::animationWithKeyPath("opacity"), std::string("o"));
    EXPECT_FALSE(bar->presentationNeedsRedraw());
}

TEST(LayerLayout, TopDownIncludingLayersMarkedDuringThePass) {
    VLXTransaction::begin();
    VLXTransaction::setDisableActions(true);
    LayoutLog log;
    auto root = named("root", &log);
    auto a = named("a", &log);
    auto b = named("b", &log);
    auto a1 = named("a1", &log);
    root->addSublayer(a);
    root->addSublayer(b);
    a->addSublayer(a1);
    root->layoutIfNeeded();
    // Adding sublayers marked the parents; children come after their parent.
    EXPECT_EQ(log.log, (std::vector<std::string>{"root", "a"}));

    log.log.clear();
    root->layoutIfNeeded();
    EXPECT_TRUE(log.log.empty());

    // A bounds size change marks; a move does not.
    b->setPosition({5, 5});
    root->layoutIfNeeded();
    EXPECT_TRUE(log.log.empty());
    a1->setBounds({{0, 0}, {3, 3}});
    b->setBounds({{0, 0}, {3, 3}});
    root->setNeedsLayout();
    EXPECT_TRUE(b->needsLayout());
    root->layoutIfNeeded();
    EXPECT_EQ(log.log, (std::vector<std::string>{"root", "a1", "b"}));

    // Layout that marks children (laid out in the same pass) and a parent (a later pass).
    log.log.clear();
    log.hook = [&](VLXLayer& layer) {
        if (layer.name() == "root") {
            b->setBounds({{0, 0}, {7, 7}});
        }
        if (layer.name() == "b" && root->bounds().size.width == 0) {
            root->setBounds({{0, 0}, {1, 1}});
        }
    };
    root->setNeedsLayout();
    root->layoutIfNeeded();
    EXPECT_EQ(log.log, (std::vector<std::string>{"root", "b", "root"}));
    EXPECT_FALSE(root->needsLayout());
    EXPECT_FALSE(b->needsLayout());

    // Layout that keeps marking itself stops after a bounded number of passes.
    log.log.clear();
    log.hook = [](VLXLayer& layer) { layer.setNeedsLayout(); };
    a->setNeedsLayout();
    root->layoutIfNeeded();
    EXPECT_EQ(log.log.size(), 64u);
    log.hook = nullptr;
    root->layoutIfNeeded();  // the leftover mark is served by the next call
    EXPECT_FALSE(a->needsLayout());
    for (auto* l : {root.get(), a.get(), b.get(), a1.get()}) {
        l->setDelegate(nullptr);
    }
    VLXTransaction::commit();
}

TEST(LayerLayout, TheRunLoopServesMarkedTrees) {
    ManualClock clock;
    LayoutLog log;
    auto root = named("root", &log);
    auto child = BarLayer::create();
    child->setBounds({{0, 0}, {10, 10}});
    root->addSublayer(child);
    clock.turn();  // adding marked the root; the turn lays it out and displays nothing
    EXPECT_EQ(log.log, (std::vector<std::string>{"root"}));
    EXPECT_EQ(child->draws, 0);

    child->setNeedsDisplay();
    child->setNeedsLayout();
    // Moved to another tree before the turn: the new root's pass serves it.
    auto other = VLXLayer::create();
    other->addSublayer(child);
    clock.turn();
    EXPECT_EQ(child->draws, 1);
    EXPECT_FALSE(child->needsLayout());
    ASSERT_NE(child->contents(), nullptr);
    root->setDelegate(nullptr);
}
