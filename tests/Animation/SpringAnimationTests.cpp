#include <VelmarCoreUI/Animation/VLXSpringAnimation.h>
#include <VelmarCoreUI/Utilities/VLXValueBoxing.h>

#include <gtest/gtest.h>

#include <cmath>

#include "AnimationTestSupport.h"

namespace {

std::shared_ptr<VLXSpringAnimation> numberSpring(double from, double to) {
    auto spring = VLXSpringAnimation::animationWithKeyPath("position.x");
    spring->setFromValue(VLXValue(from));
    spring->setToValue(VLXValue(to));
    return spring;
}

}  // namespace

TEST(VLXSpringFunctions, SingleAndDoublePrecisionConstants) {
    EXPECT_EQ(VLXSpringAnimationThreshold(1), 9.999999747378752e-5);
    EXPECT_EQ(VLXSpringAnimationThreshold(-100), -100 * 9.999999747378752e-5) << "no fabs";
    EXPECT_DOUBLE_EQ(VLXAngularFrequency(300, 5, 30), std::sqrt(51.0));
    EXPECT_EQ(VLXAngularFrequency(300, 5, 1000), 0) << "over-damped";
    EXPECT_EQ(VLXAngularFrequency(300, 0, 30), 0) << "no mass";
    EXPECT_EQ(VLXRelativePosition(0, 1, 0, 30, 0, 300), 0) << "zero amplitude short-cuts";
    EXPECT_EQ(VLXRelativePosition(100, 0, 0, 30, 5, 300), 100);
    EXPECT_DOUBLE_EQ(VLXRelativePosition(100, 0.5, 0, 30, 5, 300),
                     100 * std::exp(-1.5) * std::cos(std::sqrt(51.0) * 0.5));
    EXPECT_DOUBLE_EQ(VLXRelativePosition(2, 1, 0.5, 1000, 5, 300),
                     2 * std::exp(-100) * std::cos(0.5));
    EXPECT_TRUE(VLXThresholdReached(1, 1.5, 1.5, 0.5)) << "inclusive";
    EXPECT_FALSE(VLXThresholdReached(1, 1.6, 1, 0.5));
    EXPECT_FALSE(VLXThresholdReached(1, 1, 1.6, 0.5));
    EXPECT_TRUE(VLXCalculationsAreComplete(1, 1.0009, 1, 2, 2, 2.0009, 0, 0, 0));
    EXPECT_FALSE(VLXCalculationsAreComplete(1, 1, 1, 2, 2, 2, 0, 0.0010000000474974513, 0))
        << "strict, against the single-precision 0.001";
    EXPECT_TRUE(VLXCalculationsAreComplete(1, 1, 1, 2, 2, 2, 0, 0.001, 0));
}

TEST(VLXSpringAnimation, TheFramesOfANumber) {
    // The frames below follow the default stiffness 300, damping 30 and mass 5.
    auto spring = numberSpring(0, 100);
    EXPECT_TRUE(spring->needsRecalculation());

    const auto& frames = spring->values();
    EXPECT_FALSE(spring->needsRecalculation());
    const std::size_t n = frames.size();
    // The envelope decays as e^(−3t): it is within 0.01 of the target after ln(10⁴)/3 ≈ 3.07 s,
    // and the speed (envelope × √60 at most) stays above 0.01 per millisecond until
    // ln(100 × √60 / 10)/3 ≈ 1.45 s.
    ASSERT_GT(n, 1450u);
    ASSERT_LT(n, 3100u);
    EXPECT_EQ(spring->duration(), static_cast<double>(n) * 0.0010000000474974513);
    EXPECT_EQ(frames[0].doubleValue(), 0);
    EXPECT_STREQ(frames[0].objCType(), "d");
    double highest = 0;
    double t = 0;
    for (std::size_t k = 0; k < n; ++k) {
        highest = std::max(highest, frames[k].doubleValue());
        ASSERT_NEAR(frames[k].doubleValue(), VLXAbsolutePosition(100, t, 0, 30, 5, 300, 0), 1e-9);
        t += 0.0010000000474974513;
    }
    EXPECT_GT(highest, 100) << "under-damped: it overshoots";
    // The loop stops at the first pass whose frame is within 0.01 of the previous one while that
    // one is within 0.01 of the target; no earlier pair qualifies.
    const double h = 100 * 9.999999747378752e-5;
    const double next = VLXAbsolutePosition(100, t, 0, 30, 5, 300, 0);
    EXPECT_TRUE(VLXThresholdReached(frames[n - 1].doubleValue(), next, 100, h));
    for (std::size_t k = 0; k + 1 < n; ++k) {
        ASSERT_FALSE(
            VLXThresholdReached(frames[k].doubleValue(), frames[k + 1].doubleValue(), 100, h))
            << k;
    }
    // Served from the cache until an input changes.
    EXPECT_EQ(&spring->values(), &frames);
    spring->setStiffness(600);
    EXPECT_TRUE(spring->needsRecalculation());
    EXPECT_NE(spring->values().size(), n);
}

TEST(VLXSpringAnimation, EdgeCasesOfTheFrameCount) {
    auto same = numberSpring(5, 5);
    ASSERT_EQ(same->values().size(), 1u);
    EXPECT_EQ(same->values()[0].doubleValue(), 5);
    EXPECT_EQ(same->duration(), 0.0010000000474974513);

    auto zero = numberSpring(0, 0);
    EXPECT_TRUE(zero->values().empty());
    ASSERT_TRUE(zero->interpolatedValues());
    EXPECT_EQ(zero->duration(), 0);

    // The start and end are read in single precision.
    auto narrow = numberSpring(0.1, 0.1);
    EXPECT_EQ(narrow->values()[0].doubleValue(), double(0.1f));

    // Nil ends give no duration; booleans are not numbers here.
    auto missing = VLXSpringAnimation::create();
    missing->setFromValue(VLXValue(1.0));
    EXPECT_EQ(missing->duration(), 0);
    auto flag = VLXSpringAnimation::create();
    flag->setFromValue(VLXValue(false));
    flag->setToValue(VLXValue(true));
    EXPECT_FALSE(flag->interpolatedValues());
    EXPECT_TRUE(flag->values().empty());
    EXPECT_EQ(flag->duration(), 0);
    auto text = VLXSpringAnimation::create();
    text->setFromValue(VLXValue("1"));
    text->setToValue(VLXValue("2"));
    EXPECT_FALSE(text->interpolatedValues());

    // Non-finite input or a motion that cannot settle: no frames, no hang.
    EXPECT_TRUE(numberSpring(kNaN, 1)->values().empty());
    EXPECT_TRUE(numberSpring(0, kInf)->values().empty());
    EXPECT_TRUE(numberSpring(-3e38, 3e38)->values().empty()) << "the float distance overflows";
    auto noMass = numberSpring(0, 1);
    noMass->setMass(0);
    EXPECT_TRUE(noMass->values().empty());
    EXPECT_EQ(noMass->duration(), 0);
    auto nanStiffness = numberSpring(0, 1);
    nanStiffness->setStiffness(kNaN);
    EXPECT_TRUE(nanStiffness->values().empty());
    // A spring that practically never settles ends at the frame limit.
    auto endless = numberSpring(0, 1);
    endless->setDamping(1e-12);
    EXPECT_EQ(endless->values().size(), VLXSpringAnimation::kMaximumFrames);
    // Over-damped springs approach without oscillating.
    auto heavy = numberSpring(0, 10);
    heavy->setDamping(200);
    double previous = -1;
    for (const VLXValue& v : heavy->values()) {
        ASSERT_GE(v.doubleValue(), previous);
        ASSERT_LE(v.doubleValue(), 10);
        previous = v.doubleValue();
    }
}

TEST(VLXSpringAnimation, DampingOfZeroOrLessIsRefused) {
    auto spring = numberSpring(0, 1);
    testing::internal::CaptureStderr();
    spring->setDamping(-2);
    const std::string log = testing::internal::GetCapturedStderr();
    EXPECT_EQ(spring->damping(), 1.0);
    EXPECT_EQ(log,
              "[VLXSpringAnimation] LOGIC ERROR. `damping` should be > 0.0f to avoid an infinite "
              "spring calculation\n");
    testing::internal::CaptureStderr();
    spring->setDamping(0);
    spring->setDamping(0.5);
    EXPECT_EQ(testing::internal::GetCapturedStderr().size(), log.size()) << "one line, for 0";
    EXPECT_EQ(spring->damping(), 0.5);
}

TEST(VLXSpringAnimation, EveryValueKind) {
    auto point = VLXSpringAnimation::create();
    point->setFromValue(vlx_valueWithPoint({0, 7}));
    point->setToValue(vlx_valueWithPoint({50, 7}));
    const auto& frames = point->values();
    ASSERT_FALSE(frames.empty());
    EXPECT_EQ(vlx_type(frames[0]), VLXValueTypePoint);
    for (const VLXValue& frame : frames) {
        ASSERT_EQ(frame.pointValue().y, 7) << "an unmoving component stays exact";
    }
    // The same x spring alone settles at the same frame.
    EXPECT_EQ(frames.size(), numberSpring(0, 50)->values().size());

    auto size = VLXSpringAnimation::create();
    size->setFromValue(vlx_valueWithSize({1, 1}));
    size->setToValue(vlx_valueWithSize({2, 3}));
    EXPECT_EQ(vlx_type(size->values().front()), VLXValueTypeSize);
    EXPECT_EQ(size->values().front().sizeValue(), (VLXSize{1, 1}));

    auto rect = VLXSpringAnimation::create();
    rect->setFromValue(vlx_valueWithRect({{0, 0}, {10, 10}}));
    rect->setToValue(vlx_valueWithRect({{5, 5}, {20, 20}}));
    EXPECT_EQ(vlx_type(rect->values().back()), VLXValueTypeRect);
    EXPECT_NEAR(rect->values().back().rectValue().size.width, 20, 0.002);

    auto affine = VLXSpringAnimation::create();
    affine->setFromValue(vlx_valueWithAffineTransform(VLXAffineTransformMakeScale(1, 1)));
    affine->setToValue(vlx_valueWithAffineTransform(VLXAffineTransformMakeScale(2, 2)));
    EXPECT_EQ(vlx_type(affine->values()[0]), VLXValueTypeAffineTransform);
    EXPECT_EQ(affine->values()[0].affineTransformValue(), VLXAffineTransformMakeScale(1, 1));

    // A nil end of a transform kind is all zeros, not the identity.
    auto shrink = VLXSpringAnimation::create();
    shrink->setFromValue(VLXValue::valueWithTransform3D(VLXTransform3DMakeScale(2, 2, 2)));
    ASSERT_FALSE(shrink->values().empty());
    const VLXTransform3D last = shrink->values().back().transform3DValue();
    EXPECT_NEAR(last.m11, 0, 0.001);
    EXPECT_NEAR(last.m44, 0, 0.001);
    EXPECT_EQ(shrink->duration(), 0) << "a nil end still means no duration";
}

TEST(VLXSpringAnimation, CopiesCarryTheirFrames) {
    auto spring = numberSpring(10, 20);
    spring->setMass(2);
    auto copy = std::dynamic_pointer_cast<VLXSpringAnimation>(spring->copy());
    ASSERT_TRUE(copy);
    EXPECT_FALSE(copy->needsRecalculation());
    ASSERT_TRUE(copy->interpolatedValues());
    EXPECT_EQ(copy->values().size(), spring->values().size());
    EXPECT_EQ(copy->duration(), spring->duration());
    EXPECT_EQ(copy->VLXAnimation::duration(), spring->duration()) << "the base duration too";
    EXPECT_EQ(copy->mass(), 2);
    // As a keyframe animation: the frames are the key frames, evenly spaced.
    const auto& frames = copy->values();
    EXPECT_EQ(copy->valueAtProgress(0), frames.front());
    EXPECT_EQ(copy->valueAtProgress(1), frames.back());
    const double p = 0.5;
    const auto segment = copy->segmentAtProgress(p);
    ASSERT_TRUE(segment);
    EXPECT_NEAR(segment->index + segment->fraction, p * double(frames.size() - 1), 1e-9);

    const std::string d = spring->description();
    EXPECT_NE(d.find("mass: 2.000000, damping: 30.000000, stiffness: 300.000000, keyPath: "
                     "position.x, toValue: 20, fromValue 10"),
              std::string::npos)
        << d;
    EXPECT_EQ(d.rfind("<VLXSpringAnimation: 0x", 0), 0u);
}
