#include <VelmarCoreUI/Platform/Layers/VLXAnimationGroup.h>
#include <VelmarCoreUI/Platform/Layers/VLXBasicAnimation.h>
#include <VelmarCoreUI/Platform/Layers/VLXKeyframeAnimation.h>

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "AnimationTestSupport.h"

namespace {

struct SilentDelegate : VLXAnimationDelegate {};

VLXValue::Array numbers(std::initializer_list<double> list) {
    VLXValue::Array values;
    for (double v : list) {
        values.emplace_back(v);
    }
    return values;
}

// The reference the binary search must agree with: scan every key time.
std::pair<std::size_t, double> linearSegment(const std::vector<double>& times, double p) {
    if (p >= times.back()) {
        return {times.size() - 1, 0.0};
    }
    if (p < times.front()) {
        return {0, 0.0};
    }
    std::size_t i = 0;
    while (i + 1 < times.size() && times[i + 1] <= p) {
        ++i;
    }
    return {i, (p - times[i]) / (times[i + 1] - times[i])};
}

}  // namespace

TEST(VLXAnimation, ProgressThroughFillModesAndOddDurations) {
    auto a = VLXAnimation::create();
    a->setDuration(2);
    EXPECT_EQ(*a->progressAtTime(0), 0);
    EXPECT_EQ(*a->progressAtTime(0.5), 0.25);
    EXPECT_FALSE(a->progressAtTime(-0.1)) << "not yet started, no backwards fill";
    EXPECT_FALSE(a->progressAtTime(2)) << "the span is half-open";
    EXPECT_FALSE(a->progressAtTime(kNaN));

    a->setFillMode(VLXFillMode::Backwards);
    EXPECT_EQ(*a->progressAtTime(-5), 0);
    EXPECT_FALSE(a->progressAtTime(3));
    a->setFillMode(VLXFillMode::Forwards);
    EXPECT_FALSE(a->progressAtTime(-5));
    EXPECT_EQ(*a->progressAtTime(3), 1);
    EXPECT_EQ(*a->progressAtTime(kInf), 1);
    a->setFillMode(VLXFillMode::Both);
    EXPECT_EQ(*a->progressAtTime(-kInf), 0);
    EXPECT_EQ(*a->progressAtTime(9), 1);

    a->setTimingFunction(
        VLXMediaTimingFunction::functionWithName(VLXMediaTimingFunctionName::EaseIn));
    EXPECT_LT(*a->progressAtTime(0.5), 0.25);
    EXPECT_EQ(*a->progressAtTime(9), 1);

    // Odd durations: NaN and negative run for the default; an endless one holds its start.
    a->setTimingFunction(nullptr);
    a->setFillMode(VLXFillMode::Removed);
    for (double d : {kNaN, -1.0, 0.0}) {
        a->setDuration(d);
        EXPECT_EQ(a->activeDuration(), 0.25);
        EXPECT_EQ(*a->progressAtTime(0.125), 0.5);
    }
    a->setDuration(kInf);
    EXPECT_EQ(*a->progressAtTime(1e9), 0);
    a->setDuration(1e-7);
    EXPECT_TRUE(a->progressAtTime(0));
    EXPECT_FALSE(a->progressAtTime(1e-7));

    EXPECT_EQ(a->resolvedBeginTime(12), 12);
    a->setBeginTime(30);
    EXPECT_EQ(a->resolvedBeginTime(12), 30);
    a->setBeginTime(kNaN);
    EXPECT_EQ(a->resolvedBeginTime(12), 12);
}

TEST(VLXAnimation, CopiesCarryEverything) {
    auto delegate = std::make_shared<SilentDelegate>();
    auto basic = VLXBasicAnimation::animationWithKeyPath("opacity");
    basic->setFromValue(VLXValue(0.0));
    basic->setToValue(VLXValue(1.0));
    basic->setDuration(0.4);
    basic->setBeginTime(3);
    basic->setFillMode(VLXFillMode::Backwards);
    basic->setRemovedOnCompletion(false);
    basic->setDelegate(delegate);
    basic->setValue(VLXValue(true), "presenting");
    basic->setValue(VLXValue(1), "gone");
    basic->setValue(VLXValue(), "gone");
    EXPECT_TRUE(basic->valueForKey("gone").isNil()) << "nil removes";

    auto copy = std::dynamic_pointer_cast<VLXBasicAnimation>(basic->copy());
    ASSERT_TRUE(copy);
    EXPECT_EQ(copy->keyPath(), "opacity");
    EXPECT_EQ(copy->toValue(), VLXValue(1.0));
    EXPECT_EQ(copy->duration(), 0.4);
    EXPECT_EQ(copy->beginTime(), 3);
    EXPECT_EQ(copy->fillMode(), VLXFillMode::Backwards);
    EXPECT_FALSE(copy->isRemovedOnCompletion());
    EXPECT_EQ(copy->delegate(), delegate);
    EXPECT_EQ(copy->valueForKey("presenting"), VLXValue(true));
    // The copy is independent of the original.
    basic->setToValue(VLXValue(5.0));
    basic->setValue(VLXValue(false), "presenting");
    EXPECT_EQ(copy->toValue(), VLXValue(1.0));
    EXPECT_EQ(copy->valueForKey("presenting"), VLXValue(true));

    auto keyframe = VLXKeyframeAnimation::animationWithKeyPath("position.x");
    keyframe->setValues(numbers({0, 10}));
    keyframe->setKeyTimes(std::vector<double>{0, 1});
    keyframe->setCalculationMode(VLXAnimationCalculationMode::Discrete);
    auto keyframeCopy = std::dynamic_pointer_cast<VLXKeyframeAnimation>(keyframe->copy());
    ASSERT_TRUE(keyframeCopy);
    EXPECT_EQ(keyframeCopy->values().size(), 2u);
    EXPECT_EQ(keyframeCopy->calculationMode(), VLXAnimationCalculationMode::Discrete);
    EXPECT_TRUE(keyframeCopy->keyTimes());

    auto group = VLXAnimationGroup::create();
    group->setAnimations({basic, nullptr, keyframe});
    ASSERT_EQ(group->animations().size(), 2u) << "null members are dropped";
    auto groupCopy = std::dynamic_pointer_cast<VLXAnimationGroup>(group->copy());
    ASSERT_TRUE(groupCopy);
    ASSERT_EQ(groupCopy->animations().size(), 2u);
    EXPECT_NE(groupCopy->animations()[0], basic) << "members are copied";
    EXPECT_EQ(std::dynamic_pointer_cast<VLXBasicAnimation>(groupCopy->animations()[0])->toValue(),
              VLXValue(5.0));
}

TEST(VLXBasicAnimation, MissingEndsComeFromTheLayer) {
    const VLXValue base(10.0);
    const VLXValue model(30.0);
    auto a = VLXBasicAnimation::animationWithKeyPath("opacity");
    EXPECT_EQ(a->valueAtProgress(0.5, base, model).doubleValue(), 20) << "old value → model";
    a->setToValue(VLXValue(0.0));
    EXPECT_EQ(a->valueAtProgress(0.5, base, model).doubleValue(), 5) << "on screen → to";
    a->setFromValue(VLXValue(2.0));
    EXPECT_EQ(a->valueAtProgress(0.5, base, model).doubleValue(), 1) << "from → to";
    a->setToValue(VLXValue());
    EXPECT_EQ(a->valueAtProgress(0.5, base, model).doubleValue(), 16) << "from → model";
    EXPECT_EQ(a->valueAtProgress(1, base, model).doubleValue(), 30);
    EXPECT_TRUE(a->valueAtProgress(1, VLXValue(), VLXValue()) == VLXValue(2.0));
}

TEST(VLXKeyframeAnimation, SegmentsAgreeWithALinearSearch) {
    std::mt19937 random(42);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    for (std::size_t count : {2u, 3u, 7u, 100u, 1000u}) {
        std::vector<double> times(count);
        for (double& t : times) {
            t = unit(random);
        }
        std::sort(times.begin(), times.end());
        times.front() = 0;
        if (count > 3) {
            times[2] = times[1];  // a zero-length segment
        }
        VLXValue::Array values;
        for (std::size_t i = 0; i < count; ++i) {
            values.emplace_back(static_cast<double>(i * i));
        }
        auto a = VLXKeyframeAnimation::animationWithKeyPath("opacity");
        a->setValues(values);
        a->setKeyTimes(times);
        for (int k = 0; k < 2000; ++k) {
            const double p = k < 1000 ? unit(random) : times[static_cast<std::size_t>(k) % count];
            const auto segment = a->segmentAtProgress(p);
            ASSERT_TRUE(segment);
            const auto expected = linearSegment(times, p);
            ASSERT_EQ(segment->index, expected.first) << "p = " << p;
            ASSERT_DOUBLE_EQ(segment->fraction, expected.second);
            const double value = a->valueAtProgress(p).doubleValue();
            const std::size_t i = expected.first;
            const double reference =
                i + 1 < count
                    ? values[i].doubleValue() +
                          (values[i + 1].doubleValue() - values[i].doubleValue()) * expected.second
                    : values[i].doubleValue();
            ASSERT_NEAR(value, reference, 1e-9 * (1 + std::fabs(reference)));
        }
    }
}

TEST(VLXKeyframeAnimation, EvenSpacingDiscreteAndOddLists) {
    auto a = VLXKeyframeAnimation::animationWithKeyPath("position");
    EXPECT_FALSE(a->segmentAtProgress(0.5));
    EXPECT_TRUE(a->valueAtProgress(0.5).isNil()) << "no frames, no value";

    a->setValues({VLXValue::valueWithPoint({0, 0}), VLXValue::valueWithPoint({10, 20}),
                  VLXValue::valueWithPoint({30, 20})});
    EXPECT_EQ(a->valueAtProgress(0.25).pointValue(), (VLXPoint{5, 10}));
    EXPECT_EQ(a->valueAtProgress(0.75).pointValue(), (VLXPoint{20, 20}));
    EXPECT_EQ(a->valueAtProgress(1).pointValue(), (VLXPoint{30, 20}));
    EXPECT_EQ(a->valueAtProgress(7).pointValue(), (VLXPoint{30, 20})) << "clamped";
    EXPECT_EQ(a->valueAtProgress(kNaN).pointValue(), (VLXPoint{0, 0}));

    // Key times that do not fit fall back to even spacing.
    for (const std::vector<double>& bad : std::vector<std::vector<double>>{
             {0, 1}, {0, 0.7, 0.5}, {0, kNaN, 1}, {0, 0.5, 1.5}, {-0.1, 0.5, 1}}) {
        a->setKeyTimes(bad);
        EXPECT_EQ(a->valueAtProgress(0.25).pointValue(), (VLXPoint{5, 10}));
    }
    a->setKeyTimes(std::vector<double>{0, 0.9, 1});
    EXPECT_EQ(a->valueAtProgress(0.45).pointValue(), (VLXPoint{5, 10}));

    a->setCalculationMode(VLXAnimationCalculationMode::Discrete);
    EXPECT_EQ(a->valueAtProgress(0.89).pointValue(), (VLXPoint{0, 0}));
    EXPECT_EQ(a->valueAtProgress(0.95).pointValue(), (VLXPoint{10, 20}));

    // A single frame holds; mixed kinds interpolate pairwise with the step rule.
    auto single = VLXKeyframeAnimation::animationWithKeyPath("opacity");
    single->setValues(numbers({0.3}));
    EXPECT_EQ(single->valueAtProgress(0.6).doubleValue(), 0.3);
    auto mixed = VLXKeyframeAnimation::animationWithKeyPath("opacity");
    mixed->setValues({VLXValue(0.0), VLXValue(10.0), VLXValue("x"), VLXValue(kNaN)});
    EXPECT_DOUBLE_EQ(mixed->valueAtProgress(1.0 / 6).doubleValue(), 5);
    EXPECT_EQ(mixed->valueAtProgress(0.4), VLXValue(10.0));
    EXPECT_EQ(mixed->valueAtProgress(0.6), VLXValue("x"));
    EXPECT_TRUE(std::isnan(mixed->valueAtProgress(1).doubleValue()));

    // Changing the frames is seen by the next evaluation.
    single->setValues(numbers({1, 3}));
    EXPECT_EQ(single->valueAtProgress(0.5).doubleValue(), 2);
}

TEST(VLXAnimationGroup, MemberDurationsNoCyclesAndBoundedNesting) {
    // Members without a duration last the group.
    auto group = VLXAnimationGroup::create();
    auto fade = VLXBasicAnimation::animationWithKeyPath("opacity");
    auto slide = VLXBasicAnimation::animationWithKeyPath("position.x");
    slide->setDuration(0.1);
    group->setAnimations({fade, slide});
    EXPECT_EQ(group->durationOfMember(*fade), 0.25) << "the group's own default";
    group->setDuration(0.4);
    EXPECT_EQ(group->durationOfMember(*fade), 0.4);
    EXPECT_EQ(group->durationOfMember(*slide), 0.1);
    slide->setDuration(kNaN);
    EXPECT_EQ(group->durationOfMember(*slide), 0.25);

    auto outer = VLXAnimationGroup::create();
    auto inner = VLXAnimationGroup::create();
    outer->setAnimations({inner});
    inner->setAnimations({outer, VLXAnimation::create()});
    EXPECT_EQ(inner->animations().size(), 1u) << "a member holding the group is dropped";
    outer->setAnimations({outer});
    EXPECT_TRUE(outer->animations().empty());

    // A chain deeper than the limit copies down to the limit only.
    auto top = VLXAnimationGroup::create();
    auto level = top;
    for (int i = 0; i < 200; ++i) {
        auto next = VLXAnimationGroup::create();
        level->setAnimations({next});
        level = next;
    }
    auto copy = std::dynamic_pointer_cast<VLXAnimationGroup>(top->copy());
    int depth = 0;
    for (auto g = copy; g && !g->animations().empty();
         g = std::dynamic_pointer_cast<VLXAnimationGroup>(g->animations()[0])) {
        ++depth;
    }
    EXPECT_EQ(depth, VLXAnimationGroup::kMaximumNesting);
}
