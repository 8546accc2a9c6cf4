// Counts heap allocations around keyframe evaluation: the per-frame path of a layer's attached
// animation must not allocate for numbers, and only the result's box for geometry.
#include <VelmarCoreUI/Animation/VLXSpringAnimation.h>
#include <VelmarCoreUI/Animation/VLXTransactionHelpers.h>
#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Foundation/VLXRunLoop.h>
#include <VelmarCoreUI/Platform/Layers/VLXKeyframeAnimation.h>
#include <VelmarCoreUI/Platform/Layers/VLXLayer.h>

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <cstdlib>
#include <new>
#include <string>
#include <vector>

#include "Support/CountingAllocator.h"

TEST(KeyframeEvaluation, NoAllocationPerFrame) {
    auto spring = VLXSpringAnimation::animationWithKeyPath("opacity");
    spring->setFromValue(VLXValue(0.0));
    spring->setToValue(VLXValue(1.0));
    auto attached = std::dynamic_pointer_cast<VLXKeyframeAnimation>(spring->copy());
    ASSERT_TRUE(attached);
    ASSERT_GT(attached->values().size(), 1000u);
    double sum = attached->valueAtProgress(0.5).doubleValue();  // the first use unpacks
    const long before = test_support::allocationCount.load();
    for (int i = 0; i < 1000; ++i) {
        sum += attached->valueAtProgress(i / 1000.0).doubleValue();
    }
    EXPECT_EQ(test_support::allocationCount.load() - before, 0);

    auto timed = VLXKeyframeAnimation::animationWithKeyPath("opacity");
    timed->setValues(attached->values());
    std::vector<double> times(attached->values().size());
    for (std::size_t i = 0; i < times.size(); ++i) {
        const double u = static_cast<double>(i) / static_cast<double>(times.size() - 1);
        times[i] = u * u;
    }
    timed->setKeyTimes(times);
    sum += timed->valueAtProgress(0.5).doubleValue();
    const long beforeTimed = test_support::allocationCount.load();
    for (int i = 0; i < 1000; ++i) {
        sum += timed->valueAtProgress(i / 1000.0).doubleValue();
    }
    EXPECT_EQ(test_support::allocationCount.load() - beforeTimed, 0);

    auto point = VLXSpringAnimation::animationWithKeyPath("position");
    point->setFromValue(VLXValue::valueWithPoint({0, 0}));
    point->setToValue(VLXValue::valueWithPoint({10, 10}));
    sum += point->valueAtProgress(0.5).pointValue().x;
    const long beforePoints = test_support::allocationCount.load();
    for (int i = 0; i < 100; ++i) {
        sum += point->valueAtProgress(i / 100.0 + 0.001).pointValue().x;
    }
    EXPECT_LE(test_support::allocationCount.load() - beforePoints, 100)
        << "one box per result at most";
    EXPECT_GT(test_support::allocationCount.load() - beforePoints, 0)
        << "the counter sees the boxes";
    EXPECT_TRUE(std::isfinite(sum));
}

// The layers' animation tick and the reading of presentation values after it: once the registry
// and the presentation copies exist, a frame allocates nothing.
TEST(KeyframeEvaluation, TickAndPresentationReadsAllocateNothing) {
    VLXClock::setManual(900);
    VLXRunLoop::main().runOnce();
    std::vector<std::shared_ptr<VLXLayer>> layers;
    vlx_transactionByDisablingActions([&] {
        for (int i = 0; i < 40; ++i) {
            VLXValue::Array frames;
            for (int f = 0; f < 200; ++f) {
                frames.emplace_back(std::sin(f * 0.01 * (i + 1)));
            }
            auto a = VLXKeyframeAnimation::animationWithKeyPath(i % 2 ? "opacity" : "position.x");
            a->setValues(std::move(frames));
            a->setDuration(1);
            auto layer = VLXLayer::create();
            layer->addAnimation(a, std::string("wave"));
            layers.push_back(layer);
        }
    });
    VLXRunLoop::main().runOnce();  // committed
    VLXClock::advance(0.01);
    VLXLayer::tickAnimations(VLXClock::now());  // starts them and builds the registry
    double sum = 0;
    for (const auto& layer : layers) {
        sum += layer->presentationLayer()->opacity();  // makes the copies
    }
    long ticking = 0;
    long reading = 0;
    for (int tick = 0; tick < 20; ++tick) {
        long before = test_support::allocationCount.load();
        VLXClock::advance(0.01);
        VLXLayer::tickAnimations(VLXClock::now());
        ticking += test_support::allocationCount.load() - before;
        before = test_support::allocationCount.load();
        for (const auto& layer : layers) {
            const auto p = layer->presentationLayer();
            sum += p->opacity() + p->position().x;
        }
        reading += test_support::allocationCount.load() - before;
    }
    EXPECT_EQ(ticking, 0);
    EXPECT_EQ(reading, 0);
    // The values are the curves' (not a stale or default reading).
    const auto attached =
        std::dynamic_pointer_cast<VLXKeyframeAnimation>(layers[1]->attachedAnimation("wave"));
    ASSERT_TRUE(attached);
    EXPECT_NEAR(layers[1]->presentationLayer()->opacity(),
                attached->valueAtProgress(0.21).doubleValue(), 1e-9);
    EXPECT_TRUE(std::isfinite(sum));
    layers.clear();
    VLXRunLoop::main().runOnce();
    VLXClock::setReal();
}
