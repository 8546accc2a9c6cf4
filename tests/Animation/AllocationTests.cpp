// Counts heap allocations around keyframe evaluation: the per-frame path of a layer's attached
// animation must not allocate for numbers, and only the result's box for geometry.
#include <VelmarCoreUI/Animation/VLXSpringAnimation.h>
#include <VelmarCoreUI/Platform/Layers/VLXKeyframeAnimation.h>

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "AnimationTestSupport.h"
#include "Support/CountingAllocator.h"

namespace {

template <class F>
long allocationsDuring(F&& f) {
    const long before = test_support::allocationCount.load();
    f();
    return test_support::allocationCount.load() - before;
}

}  // namespace

TEST(KeyframeEvaluation, NoAllocationPerFrame) {
    auto spring = VLXSpringAnimation::animationWithKeyPath("opacity");
    spring->setFromValue(VLXValue(0.0));
    spring->setToValue(VLXValue(1.0));
    auto attached = std::dynamic_pointer_cast<VLXKeyframeAnimation>(spring->copy());
    ASSERT_TRUE(attached);
    ASSERT_GT(attached->values().size(), 1000u);
    // The same frames at uneven key times take the searched path.
    auto timed = VLXKeyframeAnimation::animationWithKeyPath("opacity");
    timed->setValues(attached->values());
    std::vector<double> times(attached->values().size());
    for (std::size_t i = 0; i < times.size(); ++i) {
        const double u = static_cast<double>(i) / static_cast<double>(times.size() - 1);
        times[i] = u * u;
    }
    timed->setKeyTimes(times);
    double sum = 0;
    for (const auto& a : {attached, timed}) {
        sum += a->valueAtProgress(0.5).doubleValue();  // the first use unpacks
        EXPECT_EQ(allocationsDuring([&] {
                      for (int i = 0; i < 1000; ++i) {
                          sum += a->valueAtProgress(i / 1000.0).doubleValue();
                      }
                  }),
                  0);
    }

    auto point = VLXSpringAnimation::animationWithKeyPath("position");
    point->setFromValue(VLXValue::valueWithPoint({0, 0}));
    point->setToValue(VLXValue::valueWithPoint({10, 10}));
    sum += point->valueAtProgress(0.5).pointValue().x;
    const long boxes = allocationsDuring([&] {
        for (int i = 0; i < 100; ++i) {
            sum += point->valueAtProgress(i / 100.0 + 0.001).pointValue().x;
        }
    });
    EXPECT_LE(boxes, 100) << "one box per result at most";
    EXPECT_GT(boxes, 0) << "the counter sees the boxes";
    EXPECT_TRUE(std::isfinite(sum));
}

// The layers' animation tick and the reading of presentation values after it: once the registry
// and the presentation copies exist, a frame allocates nothing.
TEST(KeyframeEvaluation, TickAndPresentationReadsAllocateNothing) {
    ManualClock time(900);
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
            layers.push_back(VLXLayer::create());
            layers.back()->addAnimation(a, std::string("wave"));
        }
    });
    time.turn();  // committed
    VLXClock::advance(0.01);
    VLXLayer::tickAnimations(VLXClock::now());  // starts them and builds the registry
    double sum = 0;
    for (const auto& layer : layers) {
        sum += layer->presentationLayer()->opacity();  // makes the copies
    }
    long ticking = 0;
    long reading = 0;
    for (int tick = 0; tick < 20; ++tick) {
        VLXClock::advance(0.01);
        ticking += allocationsDuring([] { VLXLayer::tickAnimations(VLXClock::now()); });
        reading += allocationsDuring([&] {
            for (const auto& layer : layers) {
                const auto p = layer->presentationLayer();
                sum += p->opacity() + p->position().x;
            }
        });
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
}
