// The animation tick: values evaluated once per tick into presentation state, read back through
// presentation copies that are filled again rather than made anew.
#include <VelmarCoreUI/Platform/Layers/VLXAnimationGroup.h>
#include <VelmarCoreUI/Platform/Layers/VLXBasicAnimation.h>
#include <VelmarCoreUI/Platform/Layers/VLXKeyframeAnimation.h>

#include <gtest/gtest.h>

#include <cmath>

#include "AnimationTestSupport.h"

namespace {

std::shared_ptr<VLXKeyframeAnimation> ramp(const std::string& keyPath, double from, double to,
                                           double duration = 1) {
    auto a = VLXKeyframeAnimation::animationWithKeyPath(keyPath);
    a->setValues({VLXValue(from), VLXValue((from + to) / 2), VLXValue(to)});
    a->setDuration(duration);
    return a;
}

}  // namespace

TEST(AnimationTick, PresentationShowsTickedValuesInTheOrderAdded) {
    ManualClock clock;
    auto layer = committedLayer();
    // A number keyframe animation (evaluated by the tick), then a group over the same key
    // (applied to the copy): the later one wins while it applies.
    addCommitted(*layer, ramp("opacity", 0, 1), "ramp");
    auto fade = VLXBasicAnimation::animationWithKeyPath("opacity");
    fade->setFromValue(VLXValue(0.9));
    fade->setToValue(VLXValue(0.1));
    auto group = VLXAnimationGroup::create();
    group->setAnimations({fade});
    group->setDuration(0.5);
    addCommitted(*layer, group, "group");
    // A number basic animation on a component of a built-in key and one on a store key, with
    // explicit key times (the searched path).
    auto slide = VLXBasicAnimation::animationWithKeyPath("position.x");
    slide->setFromValue(VLXValue(0.0));
    slide->setToValue(VLXValue(100.0));
    slide->setDuration(1);
    addCommitted(*layer, slide, "slide");
    auto angle = ramp("endAngle", 0, 4);
    angle->setKeyTimes(std::vector<double>{0, 0.8, 1});
    addCommitted(*layer, angle, "angle");

    const double begin = VLXClock::now();
    VLXClock::setManual(begin + 0.25);
    VLXLayer::tickAnimations(VLXClock::now());
    auto p = layer->presentationLayer();
    EXPECT_DOUBLE_EQ(p->opacity(), 0.5) << "the group (half way through 0.9 → 0.1) wins";
    EXPECT_DOUBLE_EQ(p->position().x, 25);
    EXPECT_DOUBLE_EQ(p->position().y, 5) << "the other component keeps the model's value";
    EXPECT_DOUBLE_EQ(p->storedDouble("endAngle"), 2 * 0.25 / 0.8);
    EXPECT_EQ(layer->opacity(), 1) << "the model is untouched";

    // After the group's end the keyframes show again; the tick and a read without a tick agree.
    VLXClock::setManual(begin + 0.75);
    VLXLayer::tickAnimations(VLXClock::now());
    const double ticked = layer->presentationLayer()->opacity();
    EXPECT_DOUBLE_EQ(ticked, 0.75);
    VLXClock::setManual(begin + 0.9);  // no tick at this time: evaluated when asked
    EXPECT_NEAR(layer->presentationLayer()->opacity(), 0.9, 1e-9);
    EXPECT_NEAR(layer->presentationLayer()->storedDouble("endAngle"), 3, 1e-9);
}

TEST(AnimationTick, ChangesAfterATickShowAtTheSameTime) {
    ManualClock clock;
    auto layer = committedLayer();
    addCommitted(*layer, ramp("opacity", 0, 1), "ramp");
    VLXClock::advance(0.5);
    VLXLayer::tickAnimations(VLXClock::now());
    EXPECT_DOUBLE_EQ(layer->presentationLayer()->opacity(), 0.5);

    // The model changes after the tick: the copy is made from the new model.
    vlx_transactionByDisablingActions([&] { layer->setPosition({40, 50}); });
    EXPECT_EQ(layer->presentationLayer()->position(), (VLXPoint{40, 50}));
    EXPECT_DOUBLE_EQ(layer->presentationLayer()->opacity(), 0.5);

    // An animation added after the tick (not yet committed: its start) overrides at once;
    // one removed after the tick no longer applies.
    vlx_transactionByDisablingActions(
        [&] { layer->addAnimation(ramp("opacity", 0.2, 0.4), std::string("late")); });
    EXPECT_DOUBLE_EQ(layer->presentationLayer()->opacity(), 0.2);
    layer->removeAnimationForKey("late");
    layer->removeAnimationForKey("ramp");
    EXPECT_EQ(layer->presentationLayer()->opacity(), 1);

    // Frames replaced on the attached copy after the tick (callers should not, but may): the
    // new frames show, nothing reads the old ones.
    addCommitted(*layer, ramp("opacity", 0, 1), "again");
    VLXClock::advance(0.5);
    VLXLayer::tickAnimations(VLXClock::now());
    auto attached =
        std::dynamic_pointer_cast<VLXKeyframeAnimation>(layer->attachedAnimation("again"));
    ASSERT_TRUE(attached);
    attached->setValues({VLXValue(3.0), VLXValue(5.0)});
    VLXClock::advance(0.25);
    EXPECT_DOUBLE_EQ(layer->presentationLayer()->opacity(), 4.5);
    VLXLayer::tickAnimations(VLXClock::now());
    EXPECT_DOUBLE_EQ(layer->presentationLayer()->opacity(), 4.5);

    // Odd times: NaN and −∞ start and stop nothing; +∞ is past every end.
    VLXLayer::tickAnimations(NAN);
    VLXLayer::tickAnimations(-INFINITY);
    EXPECT_TRUE(layer->hasAnimations());
    EXPECT_DOUBLE_EQ(layer->presentationLayer()->opacity(), 4.5);
    VLXLayer::tickAnimations(INFINITY);
    EXPECT_FALSE(layer->hasAnimations());
    EXPECT_EQ(layer->presentationLayer()->opacity(), 1);
}

TEST(AnimationTick, CopiesAreReusedOnlyWhenNobodyHoldsThem) {
    ManualClock clock;
    auto layer = committedLayer();
    addCommitted(*layer, ramp("opacity", 0, 1), "ramp");
    VLXClock::advance(0.25);
    auto held = layer->presentationLayer();
    const VLXLayer* first = held.get();
    EXPECT_DOUBLE_EQ(held->opacity(), 0.25);

    VLXClock::advance(0.25);
    auto second = layer->presentationLayer();
    EXPECT_NE(second.get(), first) << "a held copy is a snapshot";
    EXPECT_DOUBLE_EQ(held->opacity(), 0.25);
    EXPECT_DOUBLE_EQ(second->opacity(), 0.5);

    const VLXLayer* reusable = second.get();
    second.reset();
    VLXClock::advance(0.25);
    auto third = layer->presentationLayer();
    EXPECT_EQ(third.get(), reusable) << "filled again";
    EXPECT_DOUBLE_EQ(third->opacity(), 0.75);
    EXPECT_TRUE(third->isPresentationLayer());
    EXPECT_EQ(third->modelLayer(), layer);

    // A copy changed by someone is made again from the model, not just given new numbers.
    third->setValue(VLXValue(7.0), "extra");
    third.reset();
    VLXClock::advance(0.05);
    EXPECT_TRUE(layer->presentationLayer()->valueForKey("extra").isNil());
    EXPECT_NEAR(layer->presentationLayer()->opacity(), 0.8, 1e-9);
}

TEST(AnimationTick, ValuesThatStopApplyingGiveBackTheModel) {
    ManualClock clock;
    auto layer = committedLayer();
    auto kept = ramp("opacity", 0, 1);
    kept->setRemovedOnCompletion(false);  // stays attached, applies only while active
    addCommitted(*layer, kept, "kept");
    auto delayed = VLXBasicAnimation::animationWithKeyPath("position.x");
    delayed->setFromValue(VLXValue(100.0));
    delayed->setToValue(VLXValue(200.0));
    delayed->setDuration(2);
    delayed->setBeginTime(VLXClock::now() + 0.5);
    addCommitted(*layer, delayed, "delayed");
    const double begin = VLXClock::now();
    const auto read = [&](double t, double opacity, double x) {
        VLXClock::setManual(begin + t);
        VLXLayer::tickAnimations(VLXClock::now());
        const auto p = layer->presentationLayer();
        EXPECT_NEAR(p->opacity(), opacity, 1e-9) << "at " << t;
        EXPECT_NEAR(p->position().x, x, 1e-9) << "at " << t;
    };
    read(0.25, 0.25, 5);  // the delayed one does not apply yet: the model's x
    read(0.75, 0.75, 112.5);
    read(1.5, 1, 150);    // the kept one has ended: the model's opacity again
    read(0.25, 0.25, 5);  // back in time: the delayed one no longer applies
}

TEST(AnimationTick, RectsPointsAndMismatchedKinds) {
    ManualClock clock;
    // A frame animation moves the position and resizes the bounds; the model stays.
    auto framed = committedLayer();  // frame {{0, 0}, {10, 10}}
    auto frame = VLXKeyframeAnimation::animationWithKeyPath("frame");
    frame->setValues({VLXValue::valueWithRect({{0, 0}, {10, 10}}),
                      VLXValue::valueWithRect({{100, 200}, {30, 40}})});
    frame->setDuration(1);
    addCommitted(*framed, frame, "frame");

    auto layer = committedLayer();  // position (5, 5), anchor (0.5, 0.5)
    auto move = VLXBasicAnimation::animationWithKeyPath("position");
    move->setToValue(VLXValue::valueWithPoint({105, 55}));  // from what is on screen
    move->setDuration(1);
    addCommitted(*layer, move, "move");
    auto anchor = VLXBasicAnimation::animationWithKeyPath("anchorPoint");
    anchor->setFromValue(VLXValue::valueWithPoint({0, 0}));
    anchor->setToValue(VLXValue::valueWithPoint({1, 2}));
    anchor->setDuration(1);
    addCommitted(*layer, anchor, "anchor");
    // Numbers on a point key and a point on a number key change nothing.
    addCommitted(*layer, ramp("position", 7, 9), "numbers");
    auto wrong = VLXBasicAnimation::animationWithKeyPath("opacity");
    wrong->setFromValue(VLXValue::valueWithPoint({0, 0}));
    wrong->setToValue(VLXValue::valueWithPoint({1, 1}));
    addCommitted(*layer, wrong, "wrong");
    VLXClock::advance(0.5);
    VLXLayer::tickAnimations(VLXClock::now());
    EXPECT_EQ(framed->presentationLayer()->frame(), (VLXRect{{50, 100}, {20, 25}}));
    EXPECT_EQ(framed->presentationLayer()->position(), (VLXPoint{60, 112.5}));
    EXPECT_EQ(framed->frame(), (VLXRect{{0, 0}, {10, 10}}));
    for (int pass = 0; pass < 2; ++pass) {  // filled, then filled again with new numbers
        VLXLayer::tickAnimations(VLXClock::now());
        const auto p = layer->presentationLayer();
        EXPECT_NEAR(p->position().x, 5 + 100 * (0.5 + pass * 0.1), 1e-9);
        EXPECT_NEAR(p->position().y, 5 + 50 * (0.5 + pass * 0.1), 1e-9);
        EXPECT_NEAR(p->anchorPoint().y, 2 * (0.5 + pass * 0.1), 1e-9);
        EXPECT_EQ(p->opacity(), 1);
        VLXClock::advance(0.1);
    }
}
