#include <VelmarCoreUI/Color/VLXColorRamp.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include <VelmarCoreUI/Color/VLXColorUtilities.h>
#include <VelmarCoreUI/Platform/Foundation/VLXNumerics.h>
#include <VelmarCoreUI/Platform/Foundation/VLXStringFormat.h>

namespace {

// A missing colour reads 0, as a message to nil answers.
double component(const std::optional<VLXColor>& color, VLXUInteger index) {
    return color ? vlx_getComponentAtIndex(*color, index) : 0.0;
}

// The first range that holds x; null when none does.
const VLXColorRampIntervalRange* rangeContaining(const VLXColorRamp::Ranges& ranges, double x) {
    for (const auto& range : ranges) {
        if (range && range->containsValue(x)) {
            return range.get();
        }
    }
    return nullptr;
}

std::optional<std::string> labelFor(double x) {
    if (x == 0.0) {
        return VLXStringWithFormat("%.0f", x);
    }
    const double magnitude = std::fabs(x);
    if (magnitude < 0.1) {
        return VLXStringWithFormat("%.2f", x);
    }
    if (magnitude >= 10.0 || std::floor(x) == x) {
        return VLXStringWithFormat("%.0f", vlx::roundf32(x));
    }
    return VLXStringWithFormat("%.1f", x);
}

}  // namespace

std::shared_ptr<VLXColorRamp> VLXColorRamp::create() {
    return makeInitialized<VLXColorRamp>();
}

std::shared_ptr<VLXColorRamp> VLXColorRamp::create(Stops colorStops) {
    auto ramp = VLXMakeShared<VLXColorRamp>();
    ramp->initWithColorStops(std::move(colorStops));
    return ramp;
}

void VLXColorRamp::init() {
    VLXObject::init();
    m_mutableStops.clear();
    m_includeValueLabels = true;
}

void VLXColorRamp::initWithColorStops(Stops colorStops) {
    init();
    setMutableStops(std::move(colorStops));
}

void VLXColorRamp::addStop(std::shared_ptr<VLXColorStop> stop) {
    if (stop) {
        m_mutableStops.push_back(std::move(stop));
    }
}

void VLXColorRamp::addStops(const Stops& stops) {
    for (const auto& stop : stops) {
        addStop(stop);
    }
}

void VLXColorRamp::removeStop(const std::shared_ptr<VLXColorStop>& stop) {
    std::erase(m_mutableStops, stop);
}

void VLXColorRamp::removeAllStops() {
    m_mutableStops.clear();
}

std::shared_ptr<VLXColorStop> VLXColorRamp::addStopWithColor(std::optional<VLXColor> color,
                                                             VLXUInteger steps, double value) {
    return addStopWithColor(std::move(color), steps, value, std::nullopt, 1.0);
}

std::shared_ptr<VLXColorStop> VLXColorRamp::addStopWithColor(std::optional<VLXColor> color,
                                                             VLXUInteger steps, double value,
                                                             std::optional<std::string> label) {
    auto stop = VLXColorStop::stopWithColor(std::move(color), value, std::move(label));
    stop->setTotalSteps(steps);
    addStop(stop);
    return stop;
}

std::shared_ptr<VLXColorStop> VLXColorRamp::addStopWithColor(std::optional<VLXColor> color,
                                                             VLXUInteger steps, double value,
                                                             std::optional<std::string> label,
                                                             double alpha) {
    auto stop = VLXColorStop::stopWithColor(std::move(color), steps, value, std::move(label));
    stop->setAlpha(alpha);
    addStop(stop);
    return stop;
}

void VLXColorRamp::setMutableStops(Stops stops) {
    std::erase(stops, nullptr);
    m_mutableStops = std::move(stops);
}

const VLXColorRamp::Intervals& VLXColorRamp::intervals() {
    if (m_cachedIntervals.empty()) {
        m_cachedIntervals = generateIntervalsFromStops();
    }
    return m_cachedIntervals;
}

VLXInteger VLXColorRamp::totalIntervals() const {
    constexpr auto kLimit = static_cast<VLXUInteger>(std::numeric_limits<VLXInteger>::max());
    VLXUInteger total = m_mutableStops.size();
    for (std::size_t i = 1; i < m_mutableStops.size(); ++i) {
        const VLXUInteger steps = m_mutableStops[i]->totalSteps();
        total = steps > kLimit - total ? kLimit : total + steps;
    }
    return static_cast<VLXInteger>(std::min(total, kLimit));
}

VLXColorRamp::Intervals VLXColorRamp::generateIntervalsFromStops() const {
    if (m_mutableStops.size() < 2 ||
        static_cast<VLXUInteger>(totalIntervals()) > VLXColorRampMaximumIntervals) {
        return {};
    }
    Intervals intervals;
    intervals.reserve(static_cast<std::size_t>(totalIntervals()));
    // Counts emitted intervals across all pairs; "every"-labels test it instead of the value.
    double counter = 0.0;
    for (std::size_t i = 1; i < m_mutableStops.size(); ++i) {
        const VLXColorStop& previous = *m_mutableStops[i - 1];
        const VLXColorStop& stop = *m_mutableStops[i];
        // The total is bounded above, so n + 1 cannot wrap.
        const VLXUInteger n = stop.totalSteps();
        const double divisions = static_cast<double>(n + 1);
        const double step = (stop.value() - previous.value()) / divisions;
        // The first value of a later pair is the last of the pair before.
        for (VLXUInteger k = i >= 2 ? 1 : 0; k <= n + 1; ++k) {
            const double kd = static_cast<double>(k);
            std::optional<VLXColor> color =
                k < n + 1 ? std::optional<VLXColor>(interpolatedColorFromColor(
                                previous.color(), stop.color(), kd / divisions))
                          : stop.color();
            double x = previous.value() + kd * step;

            double roundingInterval = 1.0;
            if (const auto* range = rangeContaining(m_colorIntervalRanges, x)) {
                roundingInterval = range->interval();
                counter = 1.0;  // on every match, not only when the range changes
            }
            double labelInterval = 1.0;
            bool every = false;
            if (const auto* range = rangeContaining(m_labelIntervalRanges, x)) {
                labelInterval = range->interval();
                every = range->isEvery();
            }

            if (roundingInterval < 1.0 || std::fabs(x) < 1.0 || labelInterval < 1.0) {
                const double multiplier = roundingInterval <= 0.1 ? 1000.0 : 100.0;
                x = vlx::roundf32(x * multiplier) / multiplier;
            }
            if (roundingInterval > 0.0) {
                const double remainder = std::fmod(x, roundingInterval);
                if (remainder != 0.0) {
                    // Values just above a multiple snap down to it; values well past it stay.
                    const double snapped = x - remainder;
                    if (roundingInterval < 1.0 && remainder <= 0.055 && snapped > 0.0) {
                        x = snapped;
                    } else if (roundingInterval >= 1.0 && remainder <= 0.55 && snapped > 0.0) {
                        x = snapped;
                    }
                }
            }

            const double testValue = every ? counter : x;
            std::optional<std::string> label;
            if (m_includeValueLabels && std::fmod(testValue, labelInterval) == 0.0) {
                label = labelFor(x);
            }
            intervals.push_back(
                VLXColorRampInterval::create(x, std::move(color), std::move(label)));
            counter += 1.0;
        }
    }
    return intervals;
}

VLXColor VLXColorRamp::interpolatedColorFromColor(const std::optional<VLXColor>& from,
                                                  const std::optional<VLXColor>& to,
                                                  double position) const {
    double rgb[3];
    for (VLXUInteger index = 0; index < 3; ++index) {
        const double a = component(from, index);
        const double b = component(to, index);
        if (position == 0.0) {
            rgb[index] = a;
        } else if (position == 1.0) {
            rgb[index] = b;
        } else {
            rgb[index] = a < b ? a + position * (b - a) : b + (1.0 - position) * (a - b);
        }
    }
    return vlx_colorWithRed(rgb[0] * 255.0, rgb[1] * 255.0, rgb[2] * 255.0, 1.0);
}

std::string VLXColorRamp::description() const {
    return VLXStringWithFormat("<VLXColorRamp: %p> {stops = %zu; intervals = %zu}",
                               static_cast<const void*>(this), m_mutableStops.size(),
                               m_cachedIntervals.size());
}
