#include <VelmarCoreUI/Platform/Layers/VLXKeyframeAnimation.h>

#include <algorithm>
#include <atomic>
#include <cmath>

#include <VelmarCoreUI/Platform/Foundation/VLXStringFormat.h>
#include <VelmarCoreUI/Platform/Layers/Private/VLXInterpolationComponents.h>
#include <VelmarCoreUI/Platform/Layers/VLXInterpolation.h>
#include <VelmarCoreUI/Platform/Layers/VLXLayer.h>

// The frames unpacked once per animation (the layer evaluates its attached copy every frame).
struct VLXKeyframeAnimation::EvaluationCache {
    const VLXValue* framesData = nullptr;  // identity of the list this was built from
    std::size_t frameCount = 0;
    VLXInterpolationKind kind = VLXInterpolationKind::None;  // None: frames mixed or opaque
    std::size_t components = 0;
    std::vector<double> entries;                    // frameCount × components
    const std::vector<double>* keyTimes = nullptr;  // the animation's own; null: evenly spaced
};

namespace {

std::atomic<std::uint64_t> g_numberFramesDrops{0};

bool keyTimesFit(const std::vector<double>& times, std::size_t frameCount) {
    if (times.size() != frameCount) {
        return false;
    }
    double previous = 0.0;
    for (double t : times) {
        if (!(t >= previous && t <= 1.0)) {
            return false;  // NaN, a decrease or beyond the end
        }
        previous = t;
    }
    return true;
}

}  // namespace

VLXKeyframeAnimation::VLXKeyframeAnimation() = default;

VLXKeyframeAnimation::VLXKeyframeAnimation(const VLXKeyframeAnimation& other)
    : VLXPropertyAnimation(other),
      m_values(other.m_values),
      m_keyTimes(other.m_keyTimes),
      m_calculationMode(other.m_calculationMode),
      m_timingFunctions(other.m_timingFunctions) {}

VLXKeyframeAnimation::~VLXKeyframeAnimation() {
    invalidateEvaluationCache();
}

std::shared_ptr<VLXKeyframeAnimation> VLXKeyframeAnimation::create() {
    return makeInitialized<VLXKeyframeAnimation>();
}

std::shared_ptr<VLXKeyframeAnimation> VLXKeyframeAnimation::animationWithKeyPath(
    std::string keyPath) {
    auto animation = create();
    animation->setKeyPath(std::move(keyPath));
    return animation;
}

void VLXKeyframeAnimation::setValues(VLXValue::Array values) {
    m_values = std::move(values);
    invalidateEvaluationCache();
}

void VLXKeyframeAnimation::setKeyTimes(std::optional<std::vector<double>> keyTimes) {
    m_keyTimes = std::move(keyTimes);
    invalidateEvaluationCache();
}

void VLXKeyframeAnimation::invalidateEvaluationCache() const {
    if (m_cache) {
        m_cache.reset();
        g_numberFramesDrops.fetch_add(1, std::memory_order_relaxed);
    }
    m_cacheSerial = 0;
}

std::shared_ptr<VLXAnimation> VLXKeyframeAnimation::copy() const {
    return VLXMakeShared<VLXKeyframeAnimation>(*this);
}

const VLXKeyframeAnimation::EvaluationCache& VLXKeyframeAnimation::evaluationCache() const {
    const VLXValue::Array& frames = values();
    if (m_cache && m_cache->framesData == frames.data() && m_cache->frameCount == frames.size()) {
        return *m_cache;
    }
    if (m_cache) {
        g_numberFramesDrops.fetch_add(1, std::memory_order_relaxed);  // replaced below
    }
    auto cache = std::make_unique<EvaluationCache>();
    cache->framesData = frames.data();
    cache->frameCount = frames.size();
    if (m_keyTimes && keyTimesFit(*m_keyTimes, frames.size())) {
        cache->keyTimes = &*m_keyTimes;
    }
    if (!frames.empty()) {
        VLXInterpolationKind kind = VLXInterpolationKindOf(frames.front());
        double scratch[vlx::detail::kMaxInterpolationComponents];
        const std::size_t n = vlx::detail::interpolationComponents(frames.front(), kind, scratch);
        bool uniform = kind != VLXInterpolationKind::None && kind != VLXInterpolationKind::Color;
        if (uniform) {
            cache->entries.reserve(frames.size() * n);
            for (const VLXValue& frame : frames) {
                if (VLXInterpolationKindOf(frame) != kind) {
                    uniform = false;
                    break;
                }
                vlx::detail::interpolationComponents(frame, kind, scratch);
                cache->entries.insert(cache->entries.end(), scratch, scratch + n);
            }
        }
        if (uniform) {
            cache->kind = kind;
            cache->components = n;
        } else {
            cache->entries.clear();
            cache->entries.shrink_to_fit();
        }
    }
    m_cache = std::move(cache);
    // Unique across animations and threads, so a reader of old frames can never match.
    static std::atomic<std::uint64_t> serials{0};
    m_cacheSerial = ++serials;
    return *m_cache;
}

namespace {

// The segment of `progress` within the cached frames (count ≥ 1).
VLXKeyframeAnimation::Segment findSegment(std::size_t count, const std::vector<double>* keyTimes,
                                          double progress) {
    const double p = progress > 0.0 ? std::min(progress, 1.0) : 0.0;  // NaN → 0
    if (count == 1) {
        return {0, 0.0};
    }
    if (p >= 1.0) {
        return {count - 1, 0.0};
    }
    if (!keyTimes) {
        const double x = p * static_cast<double>(count - 1);  // in [0, count − 1)
        const auto index = std::min(static_cast<std::size_t>(x), count - 2);
        return {index, x - static_cast<double>(index)};
    }
    const std::vector<double>& times = *keyTimes;
    if (p < times.front()) {
        return {0, 0.0};
    }
    if (p >= times.back()) {
        return {count - 1, 0.0};
    }
    // times[index] ≤ p < times[index + 1], so the segment has a positive length.
    const auto upper = std::upper_bound(times.begin(), times.end(), p);
    const auto index = static_cast<std::size_t>(upper - times.begin()) - 1;
    return {index, (p - times[index]) / (times[index + 1] - times[index])};
}

}  // namespace

std::optional<VLXKeyframeAnimation::Segment> VLXKeyframeAnimation::segmentAtProgress(
    double progress) const {
    const EvaluationCache& cache = evaluationCache();
    if (cache.frameCount == 0) {
        return std::nullopt;
    }
    return findSegment(cache.frameCount, cache.keyTimes, progress);
}

VLXValue VLXKeyframeAnimation::valueAtProgress(double progress) const {
    // One look at the frames per evaluation: the cache checks they are still the same list.
    const EvaluationCache& cache = evaluationCache();
    if (cache.frameCount == 0) {
        return {};
    }
    const Segment segment = findSegment(cache.frameCount, cache.keyTimes, progress);
    const VLXValue* frames = cache.framesData;
    const std::size_t i = segment.index;
    if (segment.fraction == 0.0 || i + 1 >= cache.frameCount ||
        m_calculationMode == VLXAnimationCalculationMode::Discrete) {
        return frames[i];
    }
    if (cache.kind == VLXInterpolationKind::None) {
        return VLXInterpolateValues(frames[i], frames[i + 1], segment.fraction);
    }
    const std::size_t n = cache.components;
    const double* a = cache.entries.data() + i * n;
    const double* b = a + n;
    if (cache.kind == VLXInterpolationKind::Number) {
        return VLXValue(VLXInterpolateDouble(a[0], b[0], segment.fraction));
    }
    double out[vlx::detail::kMaxInterpolationComponents];
    for (std::size_t k = 0; k < n; ++k) {
        out[k] = VLXInterpolateDouble(a[k], b[k], segment.fraction);
    }
    return vlx::detail::valueFromComponents(cache.kind, out, n, frames[i]);
}

std::optional<VLXKeyframeAnimation::NumberFrames> VLXKeyframeAnimation::numberFrames() const {
    const EvaluationCache& cache = evaluationCache();
    if (cache.frameCount == 0 || cache.kind != VLXInterpolationKind::Number) {
        return std::nullopt;
    }
    return NumberFrames{cache.entries.data(), cache.frameCount,
                        cache.keyTimes ? cache.keyTimes->data() : nullptr, m_cacheSerial};
}

std::uint64_t VLXKeyframeAnimation::numberFramesDropCount() {
    return g_numberFramesDrops.load(std::memory_order_relaxed);
}

VLXValue VLXKeyframeAnimation::valueAtProgress(double progress, const VLXValue&,
                                               const VLXValue&) const {
    return valueAtProgress(progress);
}

void VLXKeyframeAnimation::applyAtProgress(VLXLayer& presentation, const VLXLayer&,
                                           double progress) const {
    if (keyPath().empty()) {
        return;
    }
    VLXValue value = valueAtProgress(progress);
    if (!value.isNil()) {
        presentation.setValueForKeyPath(value, keyPath());
    }
}

std::string VLXKeyframeAnimation::description() const {
    return VLXStringWithFormat("<%s: %p> keyPath: %s, values: %zu, duration: %g",
                               className().c_str(), static_cast<const void*>(this),
                               keyPath().c_str(), values().size(), duration());
}
