// Frames of layer trees read back pixel by pixel, one rendering rule at a time.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Layers/VLXBasicAnimation.h>

#include "CompositorTestSupport.h"

TEST(Compositor, GeometryTransformAndBoundsOrigin) {
    auto root = makeLayer(VLXRectMake(0, 0, 100, 100));
    // Anchor at the top-left corner: the layer's origin sits at `position`.
    auto box = makeLayer(VLXRectMake(0, 0, 20, 10), VLXColor::redColor());
    withoutActions([&] {
        box->setAnchorPoint(VLXPointMake(0, 0));
        box->setPosition(VLXPointMake(30, 40));
    });
    root->addSublayer(box);
    auto image = renderOnce(*root, 100, 100);
    ASSERT_TRUE(image);
    expectPixels(*image, {{31, 41, kRed}, {48, 48, kRed}, {51, 45, kClear}, {29, 41, kClear}});

    // A quarter turn about the middle anchor: the 20 × 10 box becomes 10 × 20 around the same
    // centre (60, 50).
    auto turned = makeLayer(VLXRectMake(50, 45, 20, 10), VLXColor::colorWithRed(0, 0, 1, 1));
    withoutActions([&] { turned->setAffineTransform(VLXAffineTransformMakeRotation(M_PI / 2)); });
    auto root2 = makeLayer(VLXRectMake(0, 0, 100, 100));
    root2->addSublayer(turned);
    image = renderOnce(*root2, 100, 100);
    // Above the centre (60, 42) is inside now, left of it (53, 50) outside.
    expectPixels(*image, {{60, 42, kBlue}, {53, 50, kClear}, {60, 58, kBlue}});

    // At scale 2 the same point lands on twice the pixel coordinates.
    image = renderOnce(*root2, 100, 100, 2);
    ASSERT_EQ(image->pixelWidth(), 200);
    expectPixels(*image, {{120, 84, kBlue}, {106, 100, kClear}});

    // The bounds origin scrolls the content: a sublayer at (10, 10) in a parent whose bounds
    // start at (10, 10) shows at the parent's top-left.
    auto scroller = makeLayer(VLXRectMake(0, 0, 50, 50));
    auto child = makeLayer(VLXRectMake(10, 10, 5, 5), VLXColor::redColor());
    withoutActions([&] { scroller->setBounds(VLXRectMake(10, 10, 50, 50)); });
    scroller->addSublayer(child);
    image = renderOnce(*scroller, 50, 50);
    expectPixels(*image, {{2, 2, kRed}, {12, 12, kClear}});
}

TEST(Compositor, HiddenOpacityAndGroups) {
    auto root = makeLayer(VLXRectMake(0, 0, 60, 20));
    auto hidden = makeLayer(VLXRectMake(0, 0, 20, 20), VLXColor::redColor());
    auto hiddenChild = makeLayer(VLXRectMake(0, 0, 5, 5), VLXColor::redColor());
    hidden->addSublayer(hiddenChild);
    withoutActions([&] { hidden->setHidden(true); });
    // Half opacity over two overlapping children: drawn as one group, so the overlap is no
    // darker than the rest.
    auto group = makeLayer(VLXRectMake(20, 0, 40, 20));
    auto a = makeLayer(VLXRectMake(0, 0, 30, 20), VLXColor::blackColor());
    auto b = makeLayer(VLXRectMake(10, 0, 30, 20), VLXColor::blackColor());
    group->addSublayer(a);
    group->addSublayer(b);
    withoutActions([&] { group->setOpacity(0.5); });
    root->addSublayer(hidden);
    root->addSublayer(group);
    auto image = renderOnce(*root, 60, 20);
    EXPECT_TRUE(near(pixelAt(*image, 2, 2), kClear));  // the hidden subtree draws nothing
    const RGBA8 single = pixelAt(*image, 22, 10);
    const RGBA8 overlap = pixelAt(*image, 35, 10);
    EXPECT_NEAR(single.a, 128, 2);
    EXPECT_EQ(single, overlap);

    // Opacity multiplies down the tree: 0.5 inside 0.5 gives a quarter.
    withoutActions([&] {
        group->setOpacity(1);
        a->setOpacity(0.5);
        root->setOpacity(0.5);
    });
    image = renderOnce(*root, 60, 20);
    EXPECT_NEAR(pixelAt(*image, 22, 10).a, 64, 2);
    // Fully transparent draws nothing at all.
    withoutActions([&] { root->setOpacity(0); });
    image = renderOnce(*root, 60, 20);
    EXPECT_TRUE(near(pixelAt(*image, 45, 10), kClear));
}

TEST(Compositor, BackgroundCornersMaskingAndBorder) {
    auto root = makeLayer(VLXRectMake(0, 0, 100, 100));
    auto card = makeLayer(VLXRectMake(10, 10, 80, 80), VLXColor::redColor());
    auto overhang = makeLayer(VLXRectMake(60, 60, 40, 40), VLXColor::colorWithRed(0, 1, 0, 1));
    card->addSublayer(overhang);
    withoutActions([&] {
        card->setCornerRadius(20);
        card->setBorderWidth(4);
        card->setBorderColor(VLXColor::colorWithRed(0, 0, 1, 1));
    });
    root->addSublayer(card);
    auto image = renderOnce(*root, 100, 100);
    // Rounded corner: the very corner of the bounds (11, 11) stays empty; the border (50, 11) is
    // drawn over the green sublayer (88, 75), and without masking the sublayer overhangs the
    // card (95, 95).
    expectPixels(*image, {{11, 11, kClear},
                          {50, 50, kRed},
                          {50, 11, kBlue},
                          {88, 75, kBlue},
                          {80, 80, kGreen},
                          {95, 95, kGreen}});

    withoutActions([&] { card->setMasksToBounds(true); });
    image = renderOnce(*root, 100, 100);
    // Clipped now (95, 95), by the rounded corner too (86, 86).
    expectPixels(*image, {{95, 95, kClear}, {86, 86, kClear}, {80, 80, kGreen}});
}

TEST(Compositor, MaskAlphaAndSiblingOrder) {
    auto root = makeLayer(VLXRectMake(0, 0, 40, 20), VLXColor::redColor());
    // The mask covers the left half at full alpha and the right half at a quarter.
    auto mask = makeLayer(VLXRectMake(0, 0, 20, 20), VLXColor::blackColor());
    auto faint = makeLayer(VLXRectMake(20, 0, 20, 20), VLXColor::colorWithWhite(0, 0.25));
    auto maskRoot = makeLayer(VLXRectMake(0, 0, 40, 20));
    maskRoot->addSublayer(mask);
    maskRoot->addSublayer(faint);
    ASSERT_TRUE(root->setMask(maskRoot));
    auto image = renderOnce(*root, 40, 20);
    EXPECT_TRUE(near(pixelAt(*image, 5, 10), kRed));
    EXPECT_NEAR(pixelAt(*image, 30, 10).a, 64, 2);
    EXPECT_NEAR(pixelAt(*image, 30, 10).r, 64, 2);

    // zPosition orders siblings: the first-added sublayer comes out on top.
    auto stack = makeLayer(VLXRectMake(0, 0, 10, 10));
    auto first = makeLayer(VLXRectMake(0, 0, 10, 10), VLXColor::redColor());
    auto second = makeLayer(VLXRectMake(0, 0, 10, 10), VLXColor::colorWithRed(0, 0, 1, 1));
    stack->addSublayer(first);
    stack->addSublayer(second);
    EXPECT_TRUE(near(pixelAt(*renderOnce(*stack, 10, 10), 5, 5), kBlue));
    withoutActions([&] { first->setZPosition(1); });
    EXPECT_TRUE(near(pixelAt(*renderOnce(*stack, 10, 10), 5, 5), kRed));
}

TEST(Compositor, UnchangedFramesAreReused) {
    auto root = makeLayer(VLXRectMake(0, 0, 30, 30), VLXColor::redColor());
    auto child = makeLayer(VLXRectMake(0, 0, 10, 10), VLXColor::colorWithRed(0, 0, 1, 1));
    root->addSublayer(child);
    auto compositor = VLXCompositor::create();
    auto first = compositor->renderFrame(*root, VLXSize{30, 30}, 1);
    auto second = compositor->renderFrame(*root, VLXSize{30, 30}, 1);
    EXPECT_EQ(first, second);  // the same image object
    EXPECT_EQ(compositor->framesRendered(), 1u);
    EXPECT_EQ(compositor->framesReused(), 1u);

    // A change anywhere in the tree renders again; so does another scale.
    withoutActions([&] { child->setBackgroundColor(VLXColor::colorWithRed(0, 1, 0, 1)); });
    auto third = compositor->renderFrame(*root, VLXSize{30, 30}, 1);
    EXPECT_NE(third, second);
    EXPECT_TRUE(near(pixelAt(*third, 5, 5), kGreen));
    EXPECT_TRUE(near(pixelAt(*first, 5, 5), kBlue));  // earlier frames are untouched
    auto doubled = compositor->renderFrame(*root, VLXSize{30, 30}, 2);
    EXPECT_EQ(doubled->pixelWidth(), 60);
    EXPECT_EQ(compositor->framesRendered(), 3u);

    // While an animation runs, frames follow the clock; a frame at the same instant is reused.
    VLXClock::setManual(100);
    auto animation = VLXBasicAnimation::animationWithKeyPath("opacity");
    animation->setFromValue(VLXValue(0.0));
    animation->setToValue(VLXValue(1.0));
    animation->setDuration(1);
    commitPending();
    VLXTransaction::begin();
    child->addAnimation(animation, std::string("fade"));
    VLXTransaction::commit();
    auto atStart = compositor->renderFrame(*root, VLXSize{30, 30}, 1);
    auto again = compositor->renderFrame(*root, VLXSize{30, 30}, 1);
    EXPECT_EQ(atStart, again);
    VLXClock::advance(0.5);
    auto halfway = compositor->renderFrame(*root, VLXSize{30, 30}, 1);
    EXPECT_NE(halfway, atStart);
    // Half-faded green over red.
    const RGBA8 mixed = pixelAt(*halfway, 5, 5);
    EXPECT_NEAR(mixed.g, 128, 6);
    EXPECT_NEAR(mixed.r, 128, 6);
    child->removeAllAnimations();
}

TEST(Compositor, DocumentsAndOddInput) {
    auto root = makeLayer(VLXRectMake(0, 0, 50, 40), VLXColor::redColor());
    auto child = makeLayer(VLXRectMake(5, 5, 20, 20), VLXColor::colorWithRed(0, 0, 1, 1));
    withoutActions([&] {
        child->setOpacity(0.5);
        child->setCornerRadius(4);
        child->setBorderWidth(1);
    });
    root->addSublayer(child);
    const std::string svg = VLXCompositor::renderSVG(*root, VLXSize{50, 40});
    ASSERT_FALSE(svg.empty());
    EXPECT_NE(svg.find("<svg"), std::string::npos);
    EXPECT_NE(svg.find("</svg>"), std::string::npos);
    EXPECT_NE(svg.find("width=\"50"), std::string::npos);
    const std::string pdf = VLXCompositor::renderPDF(*root, VLXSize{50, 40});
    ASSERT_GT(pdf.size(), 100u);
    EXPECT_EQ(pdf.rfind("%PDF-", 0), 0u);
    EXPECT_NE(pdf.find("%%EOF"), std::string::npos);
    EXPECT_TRUE(VLXCompositor::renderSVG(*root, VLXSize{0, 10}).empty());

    // Non-finite geometry and a singular transform draw nothing for that layer, nothing else
    // breaks.
    withoutActions([&] {
        child->setPosition(VLXPointMake(NAN, 3));
        child->setAffineTransform(VLXAffineTransformMakeScale(0, 0));
        child->setOpacity(NAN);
    });
    auto image = renderOnce(*root, 50, 40);
    ASSERT_TRUE(image);
    EXPECT_TRUE(near(pixelAt(*image, 45, 35), kRed));
    EXPECT_EQ(renderOnce(*root, -1, 10), nullptr);
    EXPECT_EQ(renderOnce(*root, 10, 10, NAN), nullptr);
}

TEST(Compositor, DeepTreesNeedNoRecursion) {
    // 10 000 nested layers, each offset by a hundredth of a point: the innermost one sits 100
    // points from the root.
    auto root = makeLayer(VLXRectMake(0, 0, 120, 20));
    VLXLayer* parent = root.get();
    std::shared_ptr<VLXLayer> innermost;
    withoutActions([&] {
        for (int i = 0; i < 10000; ++i) {
            auto layer = VLXLayer::create();
            layer->setAnchorPoint(VLXPointMake(0, 0));
            layer->setBounds(VLXRectMake(0, 0, 4, 4));
            layer->setPosition(VLXPointMake(0.01, 0));
            parent->addSublayer(layer);
            parent = layer.get();
            innermost = layer;
        }
        innermost->setBackgroundColor(VLXColor::redColor());
    });
    auto image = renderOnce(*root, 120, 20);
    ASSERT_TRUE(image);
    expectPixels(*image, {{101, 2, kRed, 4}, {98, 2, kClear}});
    EXPECT_FALSE(VLXCompositor::renderSVG(*root, VLXSize{120, 20}).empty());

    // Translucent levels that each paint two things would each need a group: nesting stops at a
    // bounded depth (alpha folded in below it), and the opacities still multiply.
    withoutActions([&] {
        for (VLXLayer* layer = root->sublayers().front().get();;) {
            layer->setOpacity(0.9999);
            layer->setBorderWidth(0.001);
            if (layer->sublayers().empty()) {
                break;
            }
            layer = layer->sublayers().front().get();
        }
    });
    image = renderOnce(*root, 120, 20);
    ASSERT_TRUE(image);
    EXPECT_NEAR(pixelAt(*image, 101, 2).a, 255 * std::pow(0.9999, 10000), 4);
    // Take the chain apart from the bottom so that no destructor recurses 10 000 deep either.
    std::vector<std::shared_ptr<VLXLayer>> chain;
    for (VLXLayer* layer = root.get(); !layer->sublayers().empty();) {
        chain.push_back(layer->sublayers().front());
        layer = chain.back().get();
    }
    for (auto it = chain.rbegin(); it != chain.rend(); ++it) {
        (*it)->removeFromSuperlayer();
    }
}

namespace {

// Draws another layer tree through the compositor from inside its own drawing.
class SnapshotLayer : public VLXLayer {
public:
    static std::shared_ptr<SnapshotLayer> create() { return makeInitialized<SnapshotLayer>(); }
    std::shared_ptr<VLXLayer> source;
    void drawInContext(VLXGraphicsContext& context) override {
        if (source) {
            VLXCompositor::render(*source, context);
        }
    }
};

}  // namespace

TEST(Compositor, DrawingMayRenderAnotherTree) {
    auto inner = makeLayer(VLXRectMake(0, 0, 10, 10), VLXColor::colorWithRed(0, 0, 1, 1));
    auto snapshot = makeLayer<SnapshotLayer>(VLXRectMake(10, 0, 10, 10));
    snapshot->source = inner;
    snapshot->setNeedsDisplay();
    auto root = makeLayer(VLXRectMake(0, 0, 30, 10), VLXColor::redColor());
    auto after = makeLayer(VLXRectMake(20, 0, 10, 10), VLXColor::colorWithRed(0, 1, 0, 1));
    root->addSublayer(snapshot);
    root->addSublayer(after);
    commitPending();
    // The static walk is re-entered from the snapshot's display: both walks finish intact.
    auto context = VLXGraphicsContext::createBitmap(VLXSize{30, 10}, 1);
    VLXCompositor::render(*root, *context);
    auto image = context->makeImage();
    expectPixels(*image, {{5, 5, kRed}, {15, 5, kBlue}, {25, 5, kGreen}});
}

namespace {

// Counts its drawings; draws a half-point red bar at the top of its bounds.
class CountingLayer : public VLXLayer {
public:
    static std::shared_ptr<CountingLayer> create() { return makeInitialized<CountingLayer>(); }
    int draws = 0;
    void drawInContext(VLXGraphicsContext& context) override {
        ++draws;
        context.setFillColor(VLXColor::redColor());
        context.fillRect(VLXRectMake(0, 0, bounds().size.width, 0.5));
    }
};

}  // namespace

TEST(Compositor, CachedContentsAtTheirScale) {
    auto root = makeLayer(VLXRectMake(0, 0, 20, 10));
    auto drawn = makeLayer<CountingLayer>(VLXRectMake(0, 0, 10, 10));
    auto sibling = makeLayer(VLXRectMake(10, 0, 10, 10), VLXColor::colorWithRed(0, 0, 1, 1));
    withoutActions([&] { drawn->setContentsScale(2); });
    drawn->setNeedsDisplay();
    root->addSublayer(drawn);
    root->addSublayer(sibling);
    commitPending();
    auto compositor = VLXCompositor::create();
    auto image = compositor->renderFrame(*root, VLXSize{20, 10}, 2);
    EXPECT_EQ(drawn->draws, 1);
    // Contents made at 2 px/pt keep the half-point bar one full pixel high at scale 2.
    expectPixels(*image, {{5, 0, kRed}, {5, 1, kClear}});

    // Another layer's change renders a new frame, but this layer's contents are reused.
    withoutActions([&] { sibling->setBackgroundColor(VLXColor::colorWithRed(0, 1, 0, 1)); });
    image = compositor->renderFrame(*root, VLXSize{20, 10}, 2);
    EXPECT_EQ(compositor->framesRendered(), 2u);
    EXPECT_EQ(drawn->draws, 1);
    expectPixels(*image, {{30, 5, kGreen}, {5, 0, kRed}});
    drawn->setNeedsDisplay();
    compositor->renderFrame(*root, VLXSize{20, 10}, 2);
    EXPECT_EQ(drawn->draws, 2);
}
