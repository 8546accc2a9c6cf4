// vlx-bench-spring-keyframe-table: one frame of a spring keyframe animation (about a thousand key
// frames) attached to a thousand layers. Each case evaluates every layer's animation at its own
// time through the keyframe animation and compares with a plain loop that interpolates the same
// frames from a vector of doubles. Prints
// "case <name> ours_ms <x> baseline_ms <y> ratio <r>" per case.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <functional>
#include <memory>
#include <vector>

#include <VelmarCoreUI/Animation/VLXSpringAnimation.h>
#include <VelmarCoreUI/Platform/Layers/VLXKeyframeAnimation.h>

#include "TableCase.h"

namespace {

constexpr int kLayers = 1000;

volatile double g_sink;

// The layers' animations: copies of one spring, as adding to layers makes them.
std::vector<std::shared_ptr<VLXKeyframeAnimation>> attachedCopies(const VLXAnimation& spring) {
    std::vector<std::shared_ptr<VLXKeyframeAnimation>> copies;
    for (int i = 0; i < kLayers; ++i) {
        copies.push_back(std::dynamic_pointer_cast<VLXKeyframeAnimation>(spring.copy()));
    }
    return copies;
}

double progressOf(int layer, int frame) {
    return std::fmod(0.37 * layer + 0.013 * frame, 1.0);
}

}  // namespace

int main() {
    auto spring = VLXSpringAnimation::animationWithKeyPath("opacity");
    spring->setFromValue(VLXValue(0.0));
    spring->setToValue(VLXValue(1.0));
    spring->setDamping(45);  // settles after about a thousand frames
    const auto copies = attachedCopies(*spring);
    const std::size_t frameCount = spring->values().size();
    std::fprintf(stderr, "%zu key frames, %d layers\n", frameCount, kLayers);
    std::fflush(stderr);

    // The plain loop's data: the same frames as doubles.
    std::vector<std::vector<double>> plain(kLayers);
    for (auto& frames : plain) {
        for (const VLXValue& v : spring->values()) {
            frames.push_back(v.doubleValue());
        }
    }
    for (const auto& a : copies) {
        g_sink = a->valueAtProgress(0.5).doubleValue();  // unpacked once, as on the first frame
    }

    int tick = 0;
    // Our side: every layer's attached animation asked for its number at this tick's progress.
    auto oursOver = [&](const std::vector<std::shared_ptr<VLXKeyframeAnimation>>& animations) {
        return [&tick, &animations] {
            double sum = 0;
            ++tick;
            for (int i = 0; i < kLayers; ++i) {
                sum += animations[static_cast<std::size_t>(i)]
                           ->valueAtProgress(progressOf(i, tick))
                           .doubleValue();
            }
            g_sink = sum;
        };
    };
    auto evenOurs = oursOver(copies);
    auto evenBaseline = [&] {
        double sum = 0;
        ++tick;
        for (int i = 0; i < kLayers; ++i) {
            const auto& f = plain[static_cast<std::size_t>(i)];
            const double x = progressOf(i, tick) * static_cast<double>(f.size() - 1);
            const std::size_t k = std::min(static_cast<std::size_t>(x), f.size() - 2);
            sum += f[k] + (f[k + 1] - f[k]) * (x - static_cast<double>(k));
        }
        g_sink = sum;
    };
    table::printCase("spring_1000_layers_even", table::bestMilliseconds(evenOurs, 200),
                     table::bestMilliseconds(evenBaseline, 200));

    // With key times: a binary search per layer on both sides.
    std::vector<double> times(frameCount);
    for (std::size_t i = 0; i < frameCount; ++i) {
        const double u = static_cast<double>(i) / static_cast<double>(frameCount - 1);
        times[i] = u * u;
    }
    // Each layer's animation holds its own key times, so the plain loop gets its own copies too.
    const std::vector<std::vector<double>> plainTimes(kLayers, times);
    std::vector<std::shared_ptr<VLXKeyframeAnimation>> timed;
    for (int i = 0; i < kLayers; ++i) {
        auto a = VLXKeyframeAnimation::animationWithKeyPath("opacity");
        a->setValues(spring->values());
        a->setKeyTimes(times);
        g_sink = a->valueAtProgress(0.5).doubleValue();
        timed.push_back(a);
    }
    auto timedOurs = oursOver(timed);
    auto timedBaseline = [&] {
        double sum = 0;
        ++tick;
        for (int i = 0; i < kLayers; ++i) {
            const auto& f = plain[static_cast<std::size_t>(i)];
            const double p = progressOf(i, tick);
            const auto upper = std::upper_bound(times.begin(), times.end(), p);
            const std::size_t k =
                std::min(static_cast<std::size_t>(upper - times.begin()) - 1, f.size() - 2);
            const double fraction = (p - times[k]) / (times[k + 1] - times[k]);
            sum += f[k] + (f[k + 1] - f[k]) * fraction;
        }
        g_sink = sum;
    };
    table::printCase("spring_1000_layers_key_times", table::bestMilliseconds(timedOurs, 200),
                     table::bestMilliseconds(timedBaseline, 200));

    // Points: the result is boxed, which costs one allocation per layer.
    auto pointSpring = VLXSpringAnimation::animationWithKeyPath("position");
    pointSpring->setFromValue(VLXValue::valueWithPoint({0, 0}));
    pointSpring->setToValue(VLXValue::valueWithPoint({100, 50}));
    pointSpring->setDamping(45);
    const auto pointCopies = attachedCopies(*pointSpring);
    std::vector<VLXPoint> points;
    for (const VLXValue& v : pointSpring->values()) {
        points.push_back(v.pointValue());
    }
    const std::vector<std::vector<VLXPoint>> plainPoints(kLayers, points);
    for (const auto& a : pointCopies) {
        g_sink = a->valueAtProgress(0.5).pointValue().x;
    }
    auto pointOurs = [&] {
        double sum = 0;
        ++tick;
        for (int i = 0; i < kLayers; ++i) {
            sum += pointCopies[static_cast<std::size_t>(i)]
                       ->valueAtProgress(progressOf(i, tick))
                       .pointValue()
                       .x;
        }
        g_sink = sum;
    };
    auto pointBaseline = [&] {
        double sum = 0;
        ++tick;
        for (int i = 0; i < kLayers; ++i) {
            const auto& q = plainPoints[static_cast<std::size_t>(i)];
            const double x = progressOf(i, tick) * static_cast<double>(q.size() - 1);
            const std::size_t k = std::min(static_cast<std::size_t>(x), q.size() - 2);
            const double f = x - static_cast<double>(k);
            const VLXPoint p{q[k].x + (q[k + 1].x - q[k].x) * f,
                             q[k].y + (q[k + 1].y - q[k].y) * f};
            sum += p.x;
        }
        g_sink = sum;
    };
    table::printCase("spring_1000_layers_points", table::bestMilliseconds(pointOurs, 200),
                     table::bestMilliseconds(pointBaseline, 200));
    // The same with the plain loop boxing its point too, as handing it to a layer needs.
    auto pointBoxedBaseline = [&] {
        double sum = 0;
        ++tick;
        for (int i = 0; i < kLayers; ++i) {
            const auto& q = plainPoints[static_cast<std::size_t>(i)];
            const double x = progressOf(i, tick) * static_cast<double>(q.size() - 1);
            const std::size_t k = std::min(static_cast<std::size_t>(x), q.size() - 2);
            const double f = x - static_cast<double>(k);
            const VLXValue boxed = VLXValue::valueWithPoint(
                {q[k].x + (q[k + 1].x - q[k].x) * f, q[k].y + (q[k + 1].y - q[k].y) * f});
            sum += boxed.pointValue().x;
        }
        g_sink = sum;
    };
    table::printCase("spring_1000_layers_points_boxed", table::bestMilliseconds(pointOurs, 200),
                     table::bestMilliseconds(pointBoxedBaseline, 200));
    return 0;
}
