// The arc and circular progress layers: what they draw, what redraws them, how they animate.
#include <gtest/gtest.h>

#include <cmath>

#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Layers/VLXBasicAnimation.h>
#include <VelmarCoreUI/Views/VLXArcLayer.h>
#include <VelmarCoreUI/Views/VLXCircularLayer.h>

#include "CompositorTestSupport.h"

namespace {

// A 100 × 100 arc layer at the origin, ring 20 thick.
std::shared_ptr<VLXArcLayer> makeArc(double start, double end) {
    auto arc = makeLayer<VLXArcLayer>(VLXRectMake(0, 0, 100, 100));
    withoutActions([&] {
        arc->setStartAngle(start);
        arc->setEndAngle(end);
        arc->setThickness(20);
    });
    return arc;
}

}  // namespace

TEST(ArcLayer, DrawsTheRingSegment) {
    // A quarter from 0 to π/2: y grows downward, so it covers the lower right of the ring.
    auto arc = makeArc(0, M_PI / 2);
    withoutActions([&] { arc->setFillColor(VLXColor::redColor()); });
    auto image = renderOnce(*arc, 100, 100);
    const double mid = M_PI / 4;
    const int x = static_cast<int>(50 + 40 * std::cos(mid)),
              y = static_cast<int>(50 + 40 * std::sin(mid));
    // Not the hole (50, 50), nor the ring's left (10, 50) or top (50, 10).
    expectPixels(*image, {{x, y, kRed}, {50, 50, kClear}, {10, 50, kClear}, {50, 10, kClear}});

    // pointForArcAngle: outer radius is half the frame width; the inner edge less thickness.
    const VLXPoint outer = arc->pointForArcEdge(1, 1);
    EXPECT_NEAR(outer.x, 50, 1e-5);
    EXPECT_NEAR(outer.y, 100, 1e-5);
    const VLXPoint inner = arc->pointForArcEdge(0, 0);
    EXPECT_NEAR(inner.x, 80, 1e-5);
    EXPECT_NEAR(inner.y, 50, 1e-5);

    // A stroke colour without a fill colour fills with the context's default black as well.
    withoutActions([&] {
        arc->setFillColor(std::nullopt);
        arc->setStrokeColor(VLXColor::colorWithRed(0, 0, 1, 1));
        arc->setStrokeWidth(2);
        arc->setNeedsDisplay();
    });
    image = renderOnce(*arc, 100, 100);
    // The outline at the outer edge (99, 50).
    expectPixels(*image, {{x, y, kBlack}, {99, 50, kBlue, 40}});

    // Equal angles (or an end before the start) draw nothing, not even the shadow.
    withoutActions([&] {
        arc->setInnerShadowColor(VLXColor::blackColor());
        arc->setEndAngle(0);
    });
    EXPECT_EQ(paintedCount(*renderOnce(*arc, 100, 100)), 0);
    withoutActions([&] { arc->setEndAngle(-1); });
    EXPECT_EQ(paintedCount(*renderOnce(*arc, 100, 100)), 0);
}

TEST(ArcLayer, InnerShadowDarkensTheEdgesInside) {
    auto arc = makeArc(0, M_PI);
    withoutActions([&] {
        arc->setFillColor(VLXColor::whiteColor());
        arc->setThickness(30);
    });
    auto plain = renderOnce(*arc, 100, 100);
    withoutActions([&] { arc->setInnerShadowColor(VLXColor::redColor()); });
    auto shaded = renderOnce(*arc, 100, 100);
    // Just inside the outer edge at the bottom: darker with the shadow, and grey (the colour
    // only switches it on). Mid-ring it stays nearly white; outside nothing is drawn.
    const RGBA8 edge = pixelAt(*shaded, 50, 97);
    EXPECT_TRUE(near(pixelAt(*plain, 50, 97), RGBA8{255, 255, 255, 255}));
    EXPECT_LT(edge.r, 235);
    EXPECT_EQ(edge.r, edge.g);
    EXPECT_GT(pixelAt(*shaded, 50, 85).r, edge.r);
    EXPECT_TRUE(near(pixelAt(*shaded, 50, 30), kClear));
}

TEST(ArcLayer, RedrawKeysAndAnimations) {
    auto arc = makeArc(0, 1);
    arc->displayIfNeeded();
    EXPECT_TRUE(arc->needsDisplayForKey("startAngle"));
    EXPECT_TRUE(arc->needsDisplayForKey("innerShadowOpacity"));
    EXPECT_FALSE(arc->needsDisplayForKey("strokeWidth"));
    EXPECT_FALSE(arc->needsDisplayForKey("opacity"));
    withoutActions([&] { arc->setStrokeWidth(3); });
    EXPECT_FALSE(arc->needsDisplay());
    withoutActions([&] { arc->setEndAngle(2); });
    EXPECT_TRUE(arc->needsDisplay());

    // Presentation copies carry every stored property, the shadow's radius and opacity too.
    withoutActions([&] { arc->setInnerShadowRadius(9); });
    auto copy = std::static_pointer_cast<VLXArcLayer>(arc->newInstance());
    copy->initWithLayer(*arc);
    EXPECT_EQ(copy->endAngle(), 2);
    EXPECT_EQ(copy->strokeWidth(), 3);
    EXPECT_EQ(copy->innerShadowRadius(), 9);
    EXPECT_EQ(copy->innerShadowOpacity(), 0.5);

    // With animation off an angle change takes effect at once.
    arc->setShouldAnimate(false);
    VLXTransaction::begin();
    arc->setStartAngle(0.5);
    VLXTransaction::commit();
    EXPECT_TRUE(arc->animationKeys().empty());
    EXPECT_EQ(arc->startAngle(), 0.5);

    // With it on (and once a presentation exists) it animates 0.5 s, ease-out, from the
    // presentation value.
    arc->setShouldAnimate(true);
    commitPending();
    ASSERT_TRUE(arc->presentationLayer());
    VLXClock::setManual(50);
    VLXTransaction::begin();
    arc->setStartAngle(1.5);
    VLXTransaction::commit();
    auto animation =
        std::dynamic_pointer_cast<VLXBasicAnimation>(arc->attachedAnimation("startAngle"));
    ASSERT_TRUE(animation);
    EXPECT_EQ(animation->duration(), 0.5);
    EXPECT_EQ(animation->fromValue(), VLXValue(0.5));
    EXPECT_EQ(animation->timingFunction(),
              VLXMediaTimingFunction::functionWithName(VLXMediaTimingFunctionName::EaseOut));
    EXPECT_EQ(arc->startAngle(), 1.5);  // the model holds the new value at once
    VLXClock::advance(0.25);
    const double shown =
        std::static_pointer_cast<VLXArcLayer>(arc->presentationLayer())->startAngle();
    EXPECT_GT(shown, 1.0);  // ease-out: past the linear halfway point
    EXPECT_LT(shown, 1.5);
    arc->removeAllAnimations();
}

TEST(CircularLayer, WedgeLayoutAndAction) {
    auto layer = makeLayer<VLXCircularLayer>(VLXRectMake(0, 0, 36, 36));
    withoutActions([&] {
        layer->setBorderColor(VLXColor::redColor());
        layer->setBorderWidth(1);
        layer->setProgress(0.25);
    });
    layer->layoutSublayers();
    EXPECT_EQ(layer->cornerRadius(), 18);
    withoutActions([&] { layer->setBounds(VLXRectMake(0, 0, 37, 37)); });
    layer->layoutSublayers();
    EXPECT_EQ(layer->cornerRadius(), 19);  // 18.5 rounds away from zero
    withoutActions([&] { layer->setBounds(VLXRectMake(0, 0, 36, 36)); });

    EXPECT_TRUE(layer->needsDisplayForKey("progress"));
    EXPECT_FALSE(layer->needsDisplayForKey("opacity"));
    layer->setNeedsDisplay();
    auto image = renderOnce(*layer, 36, 36);
    // A quarter: the wedge from twelve to three o'clock.
    // The border ring at the top (18, 0).
    expectPixels(*image, {{24, 10, kRed}, {10, 24, kClear}, {24, 24, kClear}, {18, 0, kRed, 60}});

    // Full progress is a disc.
    withoutActions([&] { layer->setProgress(1); });
    image = renderOnce(*layer, 36, 36);
    expectPixels(*image, {{10, 24, kRed}, {24, 24, kRed}});

    // Its own action for "progress", with the transaction's duration.
    VLXTransaction::begin();
    VLXTransaction::setAnimationDuration(0.7);
    auto action = std::dynamic_pointer_cast<VLXBasicAnimation>(layer->actionForKey("progress"));
    VLXTransaction::commit();
    ASSERT_TRUE(action);
    EXPECT_EQ(action->keyPath(), "progress");
    EXPECT_EQ(action->duration(), 0.7);
}
