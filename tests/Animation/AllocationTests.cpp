// Counts heap allocations around keyframe evaluation: the per-frame path of a layer's attached
// animation must not allocate for numbers, and only the result's box for geometry.
#include <VelmarCoreUI/Animation/VLXSpringAnimation.h>
#include <VelmarCoreUI/Platform/Layers/VLXKeyframeAnimation.h>

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <cstdlib>
#include <new>
#include <vector>

namespace {
std::atomic<long> g_allocations{0};
}  // namespace

void* operator new(std::size_t size) {
    ++g_allocations;
    if (void* p = std::malloc(size ? size : 1)) {
        return p;
    }
    throw std::bad_alloc();
}
void operator delete(void* p) noexcept {
    std::free(p);
}
void operator delete(void* p, std::size_t) noexcept {
    std::free(p);
}

TEST(KeyframeEvaluation, NoAllocationPerFrame) {
    auto spring = VLXSpringAnimation::animationWithKeyPath("opacity");
    spring->setFromValue(VLXValue(0.0));
    spring->setToValue(VLXValue(1.0));
    auto attached = std::dynamic_pointer_cast<VLXKeyframeAnimation>(spring->copy());
    ASSERT_TRUE(attached);
    ASSERT_GT(attached->values().size(), 1000u);
    double sum = attached->valueAtProgress(0.5).doubleValue();  // the first use unpacks
    const long before = g_allocations.load();
    for (int i = 0; i < 1000; ++i) {
        sum += attached->valueAtProgress(i / 1000.0).doubleValue();
    }
    EXPECT_EQ(g_allocations.load() - before, 0);

    auto timed = VLXKeyframeAnimation::animationWithKeyPath("opacity");
    timed->setValues(attached->values());
    std::vector<double> times(attached->values().size());
    for (std::size_t i = 0; i < times.size(); ++i) {
        const double u = static_cast<double>(i) / static_cast<double>(times.size() - 1);
        times[i] = u * u;
    }
    timed->setKeyTimes(times);
    sum += timed->valueAtProgress(0.5).doubleValue();
    const long beforeTimed = g_allocations.load();
    for (int i = 0; i < 1000; ++i) {
        sum += timed->valueAtProgress(i / 1000.0).doubleValue();
    }
    EXPECT_EQ(g_allocations.load() - beforeTimed, 0);

    auto point = VLXSpringAnimation::animationWithKeyPath("position");
    point->setFromValue(VLXValue::valueWithPoint({0, 0}));
    point->setToValue(VLXValue::valueWithPoint({10, 10}));
    sum += point->valueAtProgress(0.5).pointValue().x;
    const long beforePoints = g_allocations.load();
    for (int i = 0; i < 100; ++i) {
        sum += point->valueAtProgress(i / 100.0 + 0.001).pointValue().x;
    }
    EXPECT_LE(g_allocations.load() - beforePoints, 100) << "one box per result at most";
    EXPECT_GT(g_allocations.load() - beforePoints, 0) << "the counter sees the boxes";
    EXPECT_TRUE(std::isfinite(sum));
}
