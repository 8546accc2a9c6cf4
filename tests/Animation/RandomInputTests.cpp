#include <VelmarCoreUI/Animation/VLXEasing.h>
#include <VelmarCoreUI/Animation/VLXKeyframeAnimationBuilders.h>
#include <VelmarCoreUI/Animation/VLXSpringAnimation.h>
#include <VelmarCoreUI/Platform/Layers/VLXAnimationGroup.h>
#include <VelmarCoreUI/Platform/Layers/VLXBasicAnimation.h>
#include <VelmarCoreUI/Platform/Layers/VLXInterpolation.h>
#include <VelmarCoreUI/Platform/Layers/VLXKeyframeAnimation.h>
#include <VelmarCoreUI/Platform/Layers/VLXMediaTimingFunction.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "AnimationTestSupport.h"

namespace {

// Doubles with a good share of the values that break arithmetic.
double oddDouble(std::mt19937& random) {
    static const double kSpecial[] = {0.0,   -0.0,     1.0,    -1.0,   std::nan(""), kInf,
                                      -kInf, 1.79e308, 5e-324, 1e-300, 1e300};
    std::uniform_int_distribution<int> pick(0, 19);
    const int k = pick(random);
    if (k < 11) {
        return kSpecial[k];
    }
    return std::uniform_real_distribution<double>(-2, 2)(random);
}

VLXValue oddValue(std::mt19937& random) {
    std::uniform_int_distribution<int> kind(0, 9);
    const double a = oddDouble(random);
    const double b = oddDouble(random);
    switch (kind(random)) {
        case 0:
            return VLXValue();
        case 1:
            return VLXValue(a);
        case 2:
            return VLXValue::valueWithPoint({a, b});
        case 3:
            return VLXValue::valueWithSize({a, b});
        case 4:
            return VLXValue::valueWithRect({{a, b}, {b, a}});
        case 5:
            return VLXValue::valueWithAffineTransform({a, b, a, b, a, b});
        case 6:
            return VLXValue::valueWithTransform3D(VLXTransform3DMakeScale(a, b, a));
        case 7:
            return VLXValue(VLXColor::colorWithRed(a, b, a, b));
        case 8:
            return VLXValue(a > 0);
        default:
            return VLXValue("text");
    }
}

}  // namespace

// Random odd input through every entry point: nothing may crash, hang or trip the sanitizers,
// and the documented invariants hold.
TEST(AnimationRandomInput, OddValuesTimesAndCurves) {
    std::mt19937 random(7);
    for (int round = 0; round < 300; ++round) {
        const float x1 = static_cast<float>(oddDouble(random));
        const float y1 = static_cast<float>(oddDouble(random));
        const float x2 = static_cast<float>(oddDouble(random));
        const float y2 = static_cast<float>(oddDouble(random));
        auto timing = VLXMediaTimingFunction::functionWithControlPoints(x1, y1, x2, y2);
        ASSERT_EQ(timing->y(0), 0.0);
        ASSERT_EQ(timing->y(1), 1.0);
        const double x = oddDouble(random);
        const double y = timing->y(x);
        if (std::isfinite(y1) && std::isfinite(y2) && std::fabs(y1) < 1e30 &&
            std::fabs(y2) < 1e30) {
            ASSERT_FALSE(std::isnan(y)) << x1 << " " << y1 << " " << x2 << " " << y2 << " " << x;
        }

        const VLXValue from = oddValue(random);
        const VLXValue to = oddValue(random);
        const VLXValue mid = VLXInterpolateValues(from, to, oddDouble(random));
        ASSERT_TRUE(!mid.isNil() || (from.isNil() && to.isNil()));

        auto keyframes = VLXKeyframeAnimation::animationWithKeyPath("opacity");
        VLXValue::Array values;
        std::vector<double> times;
        const int count = std::uniform_int_distribution<int>(0, 6)(random);
        for (int i = 0; i < count; ++i) {
            values.push_back(oddValue(random));
            times.push_back(oddDouble(random));
        }
        keyframes->setValues(values);
        if (round % 2) {
            keyframes->setKeyTimes(times);
        }
        keyframes->setTimingFunction(timing);
        keyframes->setDuration(oddDouble(random));
        keyframes->setFillMode(static_cast<VLXFillMode>(round % 4));
        if (auto progress = keyframes->progressAtTime(oddDouble(random))) {
            // Nil only without frames (or where a frame itself is nil).
            const VLXValue v = keyframes->valueAtProgress(*progress);
            if (v.isNil()) {
                ASSERT_TRUE(values.empty() ||
                            std::any_of(values.begin(), values.end(),
                                        [](const VLXValue& f) { return f.isNil(); }));
            }
        }
        if (auto segment = keyframes->segmentAtProgress(oddDouble(random))) {
            ASSERT_LT(segment->index, values.size());
            ASSERT_GE(segment->fraction, 0.0);
            ASSERT_LE(segment->fraction, 1.0);
        } else {
            ASSERT_TRUE(values.empty());
        }

        auto group = VLXAnimationGroup::create();
        auto basic = VLXBasicAnimation::animationWithKeyPath("position");
        basic->setFromValue(from);
        basic->setToValue(to);
        basic->setDuration(oddDouble(random));
        basic->setBeginTime(oddDouble(random));
        group->setAnimations({basic, keyframes});
        group->setDuration(oddDouble(random));
        ASSERT_TRUE(group->copy());
        const double memberDuration = group->durationOfMember(*basic);
        ASSERT_FALSE(std::isnan(memberDuration));
        ASSERT_GT(memberDuration, 0.0);
    }
}

TEST(AnimationRandomInput, OddSpringsAndBuilders) {
    std::mt19937 random(11);
    for (int round = 0; round < 60; ++round) {
        auto spring = VLXSpringAnimation::create();
        spring->setFromValue(oddValue(random));
        spring->setToValue(oddValue(random));
        spring->setMass(oddDouble(random));
        spring->setStiffness(oddDouble(random));
        testing::internal::CaptureStderr();
        spring->setDamping(oddDouble(random));
        testing::internal::GetCapturedStderr();
        const double duration = spring->duration();
        ASSERT_GE(duration, 0.0);
        ASSERT_LE(spring->values().size(), VLXSpringAnimation::kMaximumFrames);
        ASSERT_TRUE(spring->copy());

        const VLXEasing code = std::uniform_int_distribution<VLXEasing>(-5, 40)(random);
        if (auto builder =
                vlx_animationWithKeyPath("x", oddDouble(random), oddDouble(random), code)) {
            ASSERT_EQ(builder->values().size(), 101u);
        } else {
            ASSERT_FALSE(vlx_animationBlockForEasing(code));
        }
    }
}
