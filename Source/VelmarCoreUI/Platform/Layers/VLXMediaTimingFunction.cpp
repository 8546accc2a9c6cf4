#include <VelmarCoreUI/Platform/Layers/VLXMediaTimingFunction.h>

#include <algorithm>
#include <array>
#include <cmath>

#include <VelmarCoreUI/Platform/Foundation/VLXStringFormat.h>

namespace {

double clampUnit(double v) {
    return std::clamp(v, 0.0, 1.0);
}

}  // namespace

VLXMediaTimingFunction::VLXMediaTimingFunction(float x1, float y1, float x2, float y2)
    : m_x1(x1), m_y1(y1), m_x2(x2), m_y2(y2) {
    m_linear = !(std::isfinite(x1) && std::isfinite(y1) && std::isfinite(x2) && std::isfinite(y2));
    // Clamped x keeps x(t) monotonic on [0, 1], so every x has exactly one t.
    const double px1 = m_linear ? 0.0 : clampUnit(x1);
    const double px2 = m_linear ? 1.0 : clampUnit(x2);
    const double py1 = m_linear ? 0.0 : double(y1);
    const double py2 = m_linear ? 1.0 : double(y2);
    m_cx = 3.0 * px1;
    m_bx = 3.0 * (px2 - px1) - m_cx;
    m_ax = 1.0 - m_cx - m_bx;
    m_cy = 3.0 * py1;
    m_by = 3.0 * (py2 - py1) - m_cy;
    m_ay = 1.0 - m_cy - m_by;
}

std::shared_ptr<VLXMediaTimingFunction> VLXMediaTimingFunction::functionWithName(
    VLXMediaTimingFunctionName name) {
    // One shared instance per name: the curves are immutable.
    static const std::array<std::shared_ptr<VLXMediaTimingFunction>, 5> functions = {
        functionWithControlPoints(0.0f, 0.0f, 1.0f, 1.0f),
        functionWithControlPoints(0.42f, 0.0f, 1.0f, 1.0f),
        functionWithControlPoints(0.0f, 0.0f, 0.58f, 1.0f),
        functionWithControlPoints(0.42f, 0.0f, 0.58f, 1.0f),
        functionWithControlPoints(0.25f, 0.1f, 0.25f, 1.0f),
    };
    const auto index = static_cast<std::size_t>(name);
    return index < functions.size() ? functions[index] : functions[0];
}

std::shared_ptr<VLXMediaTimingFunction> VLXMediaTimingFunction::functionWithControlPoints(
    float x1, float y1, float x2, float y2) {
    return makeInitialized<VLXMediaTimingFunction>(x1, y1, x2, y2);
}

VLXPoint VLXMediaTimingFunction::getControlPointAtIndex(std::size_t index) const {
    switch (index) {
        case 0:
            return {0, 0};
        case 1:
            return {m_x1, m_y1};
        case 2:
            return {m_x2, m_y2};
        case 3:
            return {1, 1};
        default:
            return {0, 0};
    }
}

double VLXMediaTimingFunction::y(double x) const {
    if (!(x > 0.0)) {
        return 0.0;  // NaN too
    }
    if (x >= 1.0) {
        return 1.0;
    }
    if (m_linear) {
        return x;
    }
    auto sampleX = [this](double t) { return ((m_ax * t + m_bx) * t + m_cx) * t; };
    auto sampleDX = [this](double t) { return (3.0 * m_ax * t + 2.0 * m_bx) * t + m_cx; };
    constexpr double kEpsilon = 1e-9;

    // Newton's method first (fast for well-behaved curves), bisection when it stalls.
    double t = x;
    bool solved = false;
    for (int i = 0; i < 8; ++i) {
        const double err = sampleX(t) - x;
        if (std::fabs(err) < kEpsilon) {
            solved = true;
            break;
        }
        const double d = sampleDX(t);
        if (std::fabs(d) < 1e-6) {
            break;
        }
        t -= err / d;
        if (!(t >= 0.0 && t <= 1.0)) {
            break;
        }
    }
    if (!solved) {
        double lo = 0.0;
        double hi = 1.0;
        t = x;
        for (int i = 0; i < 64; ++i) {
            const double value = sampleX(t);
            if (std::fabs(value - x) < kEpsilon) {
                break;
            }
            if (value < x) {
                lo = t;
            } else {
                hi = t;
            }
            t = 0.5 * (lo + hi);
        }
    }
    return ((m_ay * t + m_by) * t + m_cy) * t;
}

std::string VLXMediaTimingFunction::description() const {
    return VLXStringWithFormat("<%s: %p> (%g, %g, %g, %g)", className().c_str(),
                               static_cast<const void*>(this), double(m_x1), double(m_y1),
                               double(m_x2), double(m_y2));
}
