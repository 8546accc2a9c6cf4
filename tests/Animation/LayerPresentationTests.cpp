#include <VelmarCoreUI/Animation/VLXKeyframeAnimationBuilders.h>
#include <VelmarCoreUI/Animation/VLXLayerAnimationHelpers.h>
#include <VelmarCoreUI/Animation/VLXSpringAnimation.h>
#include <VelmarCoreUI/Platform/Layers/VLXAnimationGroup.h>
#include <VelmarCoreUI/Platform/Layers/VLXBasicAnimation.h>
#include <VelmarCoreUI/Platform/Layers/VLXTransaction.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "AnimationTestSupport.h"

namespace {

double presentedOpacity(const VLXLayer& layer) {
    return layer.presentationLayer()->opacity();
}

}  // namespace

TEST(AnimationPresentation, AddedAnimationsSetTheModelAndShowOnTheClock) {
    ManualClock clock(500);
    auto layer = committedLayer(1, {0, 0});
    auto fade = VLXBasicAnimation::animationWithKeyPath("opacity");
    fade->setFromValue(VLXValue(1.0));
    fade->setToValue(VLXValue(0.0));
    fade->setDuration(2);
    vlx_transactionByDisablingActions([&] { vlx_addAnimation(*layer, fade, "fade"); });
    EXPECT_EQ(layer->opacity(), 0) << "the model takes the end value";
    EXPECT_EQ(presentedOpacity(*layer), 1) << "not yet committed: its start shows";
    clock.turn();  // commits at 500: begin time
    clock.at(500.5);
    EXPECT_DOUBLE_EQ(presentedOpacity(*layer), 0.75);
    clock.step(2);  // 502.5: finished and removed
    EXPECT_FALSE(layer->hasAnimations());
    EXPECT_EQ(presentedOpacity(*layer), 0);

    // To only: starts from what was on screen when added, although the model moves at once.
    auto toOnly = VLXBasicAnimation::animationWithKeyPath("opacity");
    toOnly->setToValue(VLXValue(0.4));
    toOnly->setDuration(1);
    vlx_transactionByDisablingActions([&] { vlx_addAnimation(*layer, toOnly, "grow"); });
    clock.turn();
    clock.at(VLXClock::now() + 0.5);
    EXPECT_DOUBLE_EQ(presentedOpacity(*layer), 0.2);
    clock.step(1);

    // A keyframe animation leaves the model alone and snaps back after its end.
    auto frames = vlx_animationWithKeyPath("opacity", 0.0, 1.0, VLXEasingQuadIn);
    frames->setDuration(1);
    vlx_addAnimation(*layer, frames, "frames");
    EXPECT_EQ(layer->opacity(), 0.4);
    clock.turn();
    clock.at(VLXClock::now() + 0.5);
    EXPECT_NEAR(presentedOpacity(*layer), frames->valueAtProgress(0.5).doubleValue(), 1e-12);
    clock.step(0.6);
    EXPECT_EQ(presentedOpacity(*layer), 0.4);

    // From only: ends at the current model value, read while it runs.
    auto fromOnly = VLXBasicAnimation::animationWithKeyPath("position.x");
    fromOnly->setFromValue(VLXValue(100.0));
    fromOnly->setDuration(1);
    vlx_addAnimation(*layer, fromOnly, "x");
    clock.turn();
    clock.at(VLXClock::now() + 0.25);
    EXPECT_DOUBLE_EQ(layer->presentationLayer()->position().x, 75);
    vlx_transactionByDisablingActions([&] { layer->setPosition({200, 0}); });
    EXPECT_DOUBLE_EQ(layer->presentationLayer()->position().x, 125);
    clock.step(1);

    // Transform sub-keys set and animate over the model transform.
    auto scale = VLXBasicAnimation::animationWithKeyPath("transform.scale");
    scale->setToValue(VLXValue(2.0));
    scale->setDuration(0.2);
    vlx_transactionByDisablingActions([&] { vlx_addAnimation(*layer, scale, "scale"); });
    EXPECT_DOUBLE_EQ(layer->transform().m11, 2);
    clock.turn();
    clock.at(VLXClock::now() + 0.1);
    EXPECT_NEAR(layer->presentationLayer()->transform().m11, 1.5, 1e-9);
}

TEST(AnimationPresentation, GroupsFillModesAndSprings) {
    ManualClock clock;
    auto layer = committedLayer(1, {10, 10});
    std::vector<std::string> log;
    // The tooltip's pair: members without a duration last the group's 0.4 s, eased out.
    auto opacity = VLXBasicAnimation::animationWithKeyPath("opacity");
    opacity->setFromValue(VLXValue(0.0));
    opacity->setToValue(VLXValue(1.0));
    auto slide = VLXBasicAnimation::animationWithKeyPath("transform.translation.y");
    slide->setFromValue(VLXValue(-20.0));
    slide->setToValue(VLXValue(0.0));
    const auto easeOut =
        VLXMediaTimingFunction::functionWithName(VLXMediaTimingFunctionName::EaseOut);
    opacity->setTimingFunction(easeOut);
    slide->setTimingFunction(easeOut);
    auto group = VLXAnimationGroup::create();
    group->setAnimations({opacity, slide});
    group->setDuration(0.4);
    group->setFillMode(VLXFillMode::Backwards);
    group->setBeginTime(VLXClock::now() + 1);  // a delayed start
    group->setDelegate(std::make_shared<RecordingAnimationDelegate>(&log));
    group->setValue(VLXValue("present"), "name");
    layer->addAnimation(group, "present");
    clock.turn();
    EXPECT_TRUE(log.empty()) << "not started before its begin time";
    auto shown = layer->presentationLayer();
    EXPECT_EQ(shown->opacity(), 0) << "filling backwards";
    EXPECT_EQ(shown->transform().m42, -20);
    clock.step(1.2);
    EXPECT_EQ(log, std::vector<std::string>{"start:present"});
    shown = layer->presentationLayer();
    EXPECT_NEAR(shown->opacity(), easeOut->y(0.5), 1e-12);
    EXPECT_NEAR(shown->transform().m42, -20 + 20 * easeOut->y(0.5), 1e-9);
    clock.step(0.25);
    EXPECT_EQ(log, (std::vector<std::string>{"start:present", "stop:present:1"}));
    EXPECT_EQ(presentedOpacity(*layer), 1);

    // A spring: the presentation follows its frames, one per millisecond.
    auto spring = VLXSpringAnimation::animationWithKeyPath("position");
    spring->setFromValue(VLXValue::valueWithPoint({10, 10}));
    spring->setToValue(VLXValue::valueWithPoint({110, 10}));
    layer->addAnimation(spring, "spring");
    auto attached =
        std::dynamic_pointer_cast<VLXSpringAnimation>(layer->attachedAnimation("spring"));
    ASSERT_TRUE(attached);
    EXPECT_NE(attached, spring);
    EXPECT_FALSE(attached->needsRecalculation());
    const double duration = attached->duration();
    const std::size_t frames = attached->values().size();
    EXPECT_DOUBLE_EQ(duration, frames * double(0.001f));
    clock.turn();
    const double begin = VLXClock::now();
    clock.at(begin + 100 * (duration / (frames - 1)));
    EXPECT_NEAR(layer->presentationLayer()->position().x, attached->values()[100].pointValue().x,
                1e-6);
    clock.step(duration + 0.01);
    EXPECT_FALSE(layer->attachedAnimation("spring"));
    EXPECT_EQ(layer->presentationLayer()->position(), (VLXPoint{10, 10}))
        << "the model was never changed";
}

TEST(AnimationPresentation, TransactionHelpers) {
    ManualClock clock;
    auto layer = committedLayer(1, {0, 0});
    // The completion waits for the animations added in the transaction.
    int completions = 0;
    vlx_performTransaction(
        [&] {
            auto a = VLXBasicAnimation::animationWithKeyPath("opacity");
            a->setToValue(VLXValue(1.0));
            a->setDuration(0.5);
            layer->addAnimation(a, "a");
        },
        [&] { ++completions; });
    clock.turn();
    EXPECT_EQ(completions, 0);
    clock.step(0.6);
    EXPECT_EQ(completions, 1);

    // Beginning with a completion leaves the transaction open until the caller commits.
    const int depth = VLXTransaction::explicitDepth();
    vlx_beginTransactionWithCompletionBlock([&] { ++completions; });
    EXPECT_EQ(VLXTransaction::explicitDepth(), depth + 1);
    VLXTransaction::commit();
    clock.turn();
    EXPECT_EQ(completions, 2);
    vlx_performTransaction(nullptr, nullptr);  // empty blocks are skipped
    vlx_beginTransactionWithCompletionBlock(nullptr);
    VLXTransaction::commit();
    clock.turn();
    EXPECT_EQ(VLXTransaction::explicitDepth(), depth);
}
