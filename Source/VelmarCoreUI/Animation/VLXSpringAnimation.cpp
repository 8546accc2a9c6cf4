#include <VelmarCoreUI/Animation/VLXSpringAnimation.h>

#include <cmath>
#include <cstdio>
#include <vector>

#include <VelmarCoreUI/Platform/Foundation/VLXStringFormat.h>
#include <VelmarCoreUI/Utilities/VLXValueBoxing.h>

namespace {

// The single-precision constants of the model, widened.
constexpr double kThresholdFactor = double(0.0001f);
constexpr double kFrameInterval = double(0.001f);
constexpr double kCompletionTolerance = double(0.001f);

}  // namespace

double VLXSpringAnimationThreshold(double distance) {
    return distance * kThresholdFactor;
}

double VLXAngularFrequency(double stiffness, double mass, double damping) {
    const double w0 = std::sqrt(stiffness / mass);
    const double frequency = std::sqrt(w0 * w0 + damping * damping / (mass * mass * -4));
    return std::isnan(frequency) ? 0.0 : frequency;
}

double VLXRelativePosition(double amplitude, double time, double phase, double damping, double mass,
                           double stiffness) {
    if (amplitude == 0) {
        return amplitude;
    }
    const double frequency = VLXAngularFrequency(stiffness, mass, damping);
    return amplitude * std::exp(-damping / (2 * mass) * time) * std::cos(frequency * time + phase);
}

double VLXAbsolutePosition(double amplitude, double time, double phase, double damping, double mass,
                           double stiffness, double startPosition) {
    return startPosition + amplitude -
           VLXRelativePosition(amplitude, time, phase, damping, mass, stiffness);
}

bool VLXThresholdReached(double previous, double current, double target, double threshold) {
    return std::fabs(current - previous) <= threshold && std::fabs(previous - target) <= threshold;
}

bool VLXCalculationsAreComplete(double previous1, double current1, double target1, double previous2,
                                double current2, double target2, double previous3, double current3,
                                double target3) {
    auto close = [](double previous, double current, double target) {
        return std::fabs(current - previous) < kCompletionTolerance &&
               std::fabs(previous - target) < kCompletionTolerance;
    };
    return close(previous1, current1, target1) && close(previous2, current2, target2) &&
           close(previous3, current3, target3);
}

// --- VLXSpringAnimation ----------------------------------------------------------------------

std::shared_ptr<VLXSpringAnimation> VLXSpringAnimation::create() {
    return makeInitialized<VLXSpringAnimation>();
}

std::shared_ptr<VLXSpringAnimation> VLXSpringAnimation::animationWithKeyPath(std::string keyPath) {
    auto animation = create();
    animation->setKeyPath(std::move(keyPath));
    return animation;
}

void VLXSpringAnimation::init() {
    VLXKeyframeAnimation::init();
    // Stored directly: the setters would ask for a recalculation.
    m_stiffness = 300.0;
    m_damping = 30.0;
    m_mass = 5.0;
    m_needsRecalculation = false;
}

VLXSpringAnimation::VLXSpringAnimation(const VLXSpringAnimation& other)
    : VLXKeyframeAnimation(other) {
    m_interpolatedValues = other.interpolatedValues();
    const std::size_t frames = m_interpolatedValues ? m_interpolatedValues->size() : 0;
    VLXAnimation::setDuration(static_cast<double>(frames) * kFrameInterval);
    setFromValue(other.m_fromValue);
    setStiffness(other.m_stiffness);
    setToValue(other.m_toValue);
    setDamping(other.m_damping);
    setMass(other.m_mass);
    // The setters asked for a recalculation; the copied frames are current.
    m_needsRecalculation = false;
}

std::shared_ptr<VLXAnimation> VLXSpringAnimation::copy() const {
    return VLXMakeShared<VLXSpringAnimation>(*this);
}

void VLXSpringAnimation::setStiffness(double stiffness) {
    m_stiffness = stiffness;
    m_needsRecalculation = true;
}

void VLXSpringAnimation::setDamping(double damping) {
    if (damping <= 0.0) {
        std::fprintf(stderr,
                     "[%s] LOGIC ERROR. `damping` should be > 0.0f to avoid an infinite spring "
                     "calculation\n",
                     className().c_str());
        damping = 1.0;
    }
    m_damping = damping;
    m_needsRecalculation = true;
}

void VLXSpringAnimation::setMass(double mass) {
    m_mass = mass;
    m_needsRecalculation = true;
}

void VLXSpringAnimation::setFromValue(VLXValue fromValue) {
    m_fromValue = std::move(fromValue);
    m_needsRecalculation = true;
}

void VLXSpringAnimation::setToValue(VLXValue toValue) {
    m_toValue = std::move(toValue);
    m_needsRecalculation = true;
}

void VLXSpringAnimation::setInterpolatedValues(std::optional<VLXValue::Array> values) {
    m_interpolatedValues = std::move(values);
    invalidateEvaluationCache();
}

const std::optional<VLXValue::Array>& VLXSpringAnimation::interpolatedValues() const {
    if (m_needsRecalculation || !m_interpolatedValues) {
        calculateInterpolatedValues();
    }
    return m_interpolatedValues;
}

const VLXValue::Array& VLXSpringAnimation::values() const {
    static const VLXValue::Array kEmpty;
    const auto& frames = interpolatedValues();
    return frames ? *frames : kEmpty;
}

double VLXSpringAnimation::duration() const {
    if (m_fromValue.isNil() || m_toValue.isNil()) {
        return 0.0;
    }
    const auto& frames = interpolatedValues();
    return static_cast<double>(frames ? frames->size() : 0) * kFrameInterval;
}

namespace {

VLXValue::Array numbersOf(const double* components, std::size_t count) {
    VLXValue::Array numbers;
    numbers.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        numbers.emplace_back(components[i]);
    }
    return numbers;
}

}  // namespace

void VLXSpringAnimation::calculateInterpolatedValues() const {
    const VLXValueType kind = vlx_type(m_fromValue);
    (void)vlx_type(m_toValue);  // read, as the kind of the end is never compared

    VLXValue::Array from;
    VLXValue::Array to;
    std::function<VLXValue(const double*, std::size_t)> map;
    switch (kind) {
        case VLXValueTypeNumber:
            from = {m_fromValue};
            to = {m_toValue};
            map = [](const double* c, std::size_t) { return VLXValue(c[0]); };
            break;
        case VLXValueTypePoint: {
            const VLXPoint a = vlx_pointValue(m_fromValue);
            const VLXPoint b = vlx_pointValue(m_toValue);
            const double fa[] = {a.x, a.y};
            const double fb[] = {b.x, b.y};
            from = numbersOf(fa, 2);
            to = numbersOf(fb, 2);
            map = [](const double* c, std::size_t) { return vlx_valueWithPoint({c[0], c[1]}); };
            break;
        }
        case VLXValueTypeSize: {
            const VLXSize a = vlx_sizeValue(m_fromValue);
            const VLXSize b = vlx_sizeValue(m_toValue);
            const double fa[] = {a.width, a.height};
            const double fb[] = {b.width, b.height};
            from = numbersOf(fa, 2);
            to = numbersOf(fb, 2);
            map = [](const double* c, std::size_t) { return vlx_valueWithSize({c[0], c[1]}); };
            break;
        }
        case VLXValueTypeRect: {
            const VLXRect a = vlx_rectValue(m_fromValue);
            const VLXRect b = vlx_rectValue(m_toValue);
            const double fa[] = {a.origin.x, a.origin.y, a.size.width, a.size.height};
            const double fb[] = {b.origin.x, b.origin.y, b.size.width, b.size.height};
            from = numbersOf(fa, 4);
            to = numbersOf(fb, 4);
            map = [](const double* c, std::size_t) {
                return vlx_valueWithRect({{c[0], c[1]}, {c[2], c[3]}});
            };
            break;
        }
        case VLXValueTypeAffineTransform: {
            // A nil transform counts as all zeros (not the identity).
            auto entries = [](const VLXValue& v) {
                if (v.isNil()) {
                    return numbersOf(std::vector<double>(6, 0.0).data(), 6);
                }
                const VLXAffineTransform t = vlx_affineTransformValue(v);
                const double e[] = {t.a, t.b, t.c, t.d, t.tx, t.ty};
                return numbersOf(e, 6);
            };
            from = entries(m_fromValue);
            to = entries(m_toValue);
            map = [](const double* c, std::size_t) {
                return vlx_valueWithAffineTransform({c[0], c[1], c[2], c[3], c[4], c[5]});
            };
            break;
        }
        case VLXValueTypeTransform3D: {
            auto entries = [](const VLXValue& v) {
                if (v.isNil()) {
                    return numbersOf(std::vector<double>(16, 0.0).data(), 16);
                }
                const VLXTransform3D t = v.transform3DValue();
                const double e[] = {t.m11, t.m12, t.m13, t.m14, t.m21, t.m22, t.m23, t.m24,
                                    t.m31, t.m32, t.m33, t.m34, t.m41, t.m42, t.m43, t.m44};
                return numbersOf(e, 16);
            };
            from = entries(m_fromValue);
            to = entries(m_toValue);
            map = [](const double* c, std::size_t) {
                VLXTransform3D t;
                t.m11 = c[0], t.m12 = c[1], t.m13 = c[2], t.m14 = c[3];
                t.m21 = c[4], t.m22 = c[5], t.m23 = c[6], t.m24 = c[7];
                t.m31 = c[8], t.m32 = c[9], t.m33 = c[10], t.m34 = c[11];
                t.m41 = c[12], t.m42 = c[13], t.m43 = c[14], t.m44 = c[15];
                return VLXValue::valueWithTransform3D(t);
            };
            break;
        }
        default:
            m_interpolatedValues.reset();
            m_needsRecalculation = false;
            invalidateEvaluationCache();
            return;
    }
    m_interpolatedValues = valuesFromNumbers(from, to, map);
    m_needsRecalculation = false;
    invalidateEvaluationCache();
}

VLXValue::Array VLXSpringAnimation::valuesFromNumbers(
    const VLXValue::Array& fromNumbers, const VLXValue::Array& toNumbers,
    const std::function<VLXValue(const double*, std::size_t)>& map) const {
    const std::size_t n = fromNumbers.size();
    if (n == 0 || !map) {
        return {};
    }
    const double damping = this->damping();
    const double mass = this->mass();
    const double stiffness = this->stiffness();
    // Motions that would never settle (or are not numbers at all) produce no frames.
    if (!std::isfinite(damping) || !std::isfinite(mass) || !std::isfinite(stiffness) ||
        !(mass > 0.0) || !(damping > 0.0)) {
        return {};
    }
    std::vector<double> start(n), target(n), distance(n), threshold(n);
    for (std::size_t i = 0; i < n; ++i) {
        const float s = fromNumbers[i].floatValue();
        const float e = i < toNumbers.size() ? toNumbers[i].floatValue() : 0.0f;
        start[i] = s;
        target[i] = e;
        distance[i] = static_cast<double>(e - s);  // a float difference, widened
        threshold[i] = VLXSpringAnimationThreshold(std::fabs(distance[i]));
        if (!std::isfinite(start[i]) || !std::isfinite(target[i]) || !std::isfinite(distance[i])) {
            return {};
        }
    }
    std::vector<double> previous(n, 0.0);
    std::vector<double> current(n, 0.0);
    VLXValue::Array frames;
    double t = 0;
    while (frames.size() < kMaximumFrames) {
        bool settled = true;
        for (std::size_t i = 0; i < n; ++i) {
            current[i] = start[i] + distance[i] -
                         VLXRelativePosition(distance[i], t, 0, damping, mass, stiffness);
            // Once one component fails, the others are computed but no longer tested.
            if (settled && !VLXThresholdReached(previous[i], current[i], target[i], threshold[i])) {
                settled = false;
            }
        }
        if (settled) {
            break;
        }
        previous = current;
        frames.push_back(map(previous.data(), n));
        t += kFrameInterval;
    }
    return frames;
}

std::string VLXSpringAnimation::description() const {
    return VLXStringWithFormat(
        "<%s: %p> mass: %f, damping: %f, stiffness: %f, keyPath: %s, toValue: %s, fromValue %s",
        className().c_str(), static_cast<const void*>(this), m_mass, m_damping, m_stiffness,
        keyPath().empty() ? "(null)" : keyPath().c_str(), m_toValue.description().c_str(),
        m_fromValue.description().c_str());
}
