#include <VelmarCoreUI/Animation/VLXEasing.h>

#include <array>
#include <cmath>
#include <numbers>

#include <VelmarCoreUI/Platform/Layers/VLXMediaTimingFunction.h>

double zef_bezier(double t, double a, double b, double c) {
    return ((t * a + b) * t + c) * t;
}

double zef_bezier_der(double t, double a, double b, double c) {
    return (t * 3 * a + 2 * b) * t + c;
}

double zef_xForTime(double x, double x1, double x2) {
    const double cx = 3 * x1;
    const double bx = 3 * (x2 - x1) - cx;
    const double ax = 1 - cx - bx;
    double t = x;
    for (int i = 0; i < 5; ++i) {
        const double err = t * (cx + t * (bx + ax * t)) - x;
        if (std::fabs(err) < 0.001) {
            break;
        }
        t = t - err / (cx + t * (2 * bx + 3 * ax * t));
    }
    return t;
}

namespace {

double bezierEvaluate(double x, double x1, double y1, double x2, double y2) {
    const double cy = 3 * y1;
    const double by = 3 * (y2 - y1) - cy;
    const double ay = 1 - cy - by;
    const double t = zef_xForTime(x, x1, x2);
    return t * (cy + t * (by + ay * t));
}

constexpr double kPi = std::numbers::pi;
constexpr double kHalfPi = std::numbers::pi / 2;

// The bounce-out curve, four parabolas of decreasing height.
double bounce(double t) {
    if (t < 1 / 2.75) {
        return 7.5625 * t * t;
    }
    if (t < 2 / 2.75) {
        const double u = t - 1.5 / 2.75;
        return 7.5625 * u * u + 0.75;
    }
    if (t < 2.5 / 2.75) {
        const double u = t - 2.25 / 2.75;
        return 7.5625 * u * u + 0.9375;
    }
    const double u = t - 2.625 / 2.75;
    return 7.5625 * u * u + 0.984375;
}

double easeIn(double t) {
    return bezierEvaluate(t, 0.42, 0, 1, 1);
}
double easeOut(double t) {
    return bezierEvaluate(t, 0, 0, 0.58, 1);
}
double easeInOut(double t) {
    return bezierEvaluate(t, 0.42, 0, 0.58, 1);
}
double quadIn(double t) {
    return t * t;
}
double quadOut(double t) {
    return 1 - (1 - t) * (1 - t);
}
double quadInOut(double t) {
    const double u = 2 * t;
    if (u < 1) {
        return 0.5 * u * u;
    }
    return 0.5 * (2 - (2 - u) * (2 - u));
}
double cubicIn(double t) {
    return t * t * t;
}
double cubicOut(double t) {
    const double u = 1 - t;
    return 1 - u * u * u;
}
double cubicInOut(double t) {
    const double u = 2 * t;
    if (u < 1) {
        return 0.5 * u * u * u;
    }
    const double v = u - 2;
    return 0.5 * v * v * v + 1;
}
double quartIn(double t) {
    return t * t * t * t;
}
double quartOut(double t) {
    const double u = 1 - t;
    return 1 - u * u * u * u;
}
double quartInOut(double t) {
    const double u = 2 * t;
    if (u < 1) {
        return 0.5 * u * u * u * u;
    }
    const double v = u - 2;
    return -0.5 * v * v * v * v + 1;
}
double quintIn(double t) {
    return t * t * t * t * t;
}
double quintOut(double t) {
    const double u = 1 - t;
    return 1 - u * u * u * u * u;
}
double quintInOut(double t) {
    const double u = 2 * t;
    if (u < 1) {
        return 0.5 * u * u * u * u * u;
    }
    const double v = u - 2;
    return 0.5 * v * v * v * v * v + 1;
}
double sineIn(double t) {
    return 1 - std::cos(t * kHalfPi);
}
double sineOut(double t) {
    return std::sin(t * kHalfPi);
}
double sineInOut(double t) {
    return -0.5 * (std::cos(kPi * t) - 1);
}
double expoIn(double t) {
    return t == 0 ? 0 : std::pow(2.0, 10 * (t - 1));
}
double expoOut(double t) {
    return t == 1 ? 1 : 1 - std::pow(2.0, -10 * t);
}
double expoInOut(double t) {
    if (t == 0) {
        return 0;
    }
    if (t == 1) {
        return 1;
    }
    const double v = 2 * t - 1;
    if (2 * t < 1) {
        return 0.5 * std::pow(2.0, 10 * v);
    }
    return 0.5 * (2 - std::pow(2.0, -10 * v));
}
double circIn(double t) {
    return 1 - std::sqrt(1 - t * t);
}
double circOut(double t) {
    return std::sqrt(1 - (t - 1) * (t - 1));
}
double circInOut(double t) {
    const double u = 2 * t;
    if (u < 1) {
        return -0.5 * (std::sqrt(1 - u * u) - 1);
    }
    return 0.5 * (std::sqrt(1 - (u - 2) * (u - 2)) + 1);
}
// Period 0.3, shifted by a quarter period (0.075).
double elasticIn(double t) {
    if (t <= 0) {
        return 0;
    }
    if (t >= 1) {
        return 1;
    }
    return std::pow(2.0, 10 * (t - 1)) * std::sin(-2 * kPi * ((t - 1) - 0.075) / 0.3);
}
double elasticOut(double t) {
    if (t <= 0) {
        return 0;
    }
    if (t >= 1) {
        return 1;
    }
    return std::pow(2.0, -10 * t) * std::sin(2 * kPi * (t - 0.075) / 0.3) + 1;
}
double bounceIn(double t) {
    return 1 - bounce(1 - t);
}
double bounceOut(double t) {
    return bounce(t);
}
double bounceInOut(double t) {
    if (t < 0.5) {
        return 0.5 * (1 - bounce(1 - 2 * t));
    }
    return 0.5 * (bounce(2 * t - 1) + 1);
}
double smoothOut(double t) {
    return bezierEvaluate(t, 0.4027, 0, 0.2256, 1);
}

constexpr std::array<VLXEasingFunction, 35> kExactFunctions = {
    nullptr,   easeIn,     easeOut,    easeInOut, quadIn,    quadOut,     quadInOut,
    cubicIn,   cubicOut,   cubicInOut, quartIn,   quartOut,  quartInOut,  quintIn,
    quintOut,  quintInOut, sineIn,     sineOut,   sineInOut, expoIn,      expoOut,
    expoInOut, circIn,     circOut,    circInOut, elasticIn, elasticOut,  nullptr,
    nullptr,   nullptr,    nullptr,    bounceIn,  bounceOut, bounceInOut, smoothOut,
};

struct ControlPoints {
    VLXEasing code;
    float x1, y1, x2, y2;
};

constexpr ControlPoints kControlPoints[] = {
    {VLXEasingQuadIn, 0.55f, 0.085f, 0.68f, 0.53f},
    {VLXEasingQuadOut, 0.25f, 0.46f, 0.45f, 0.94f},
    {VLXEasingQuadInOut, 0.455f, 0.03f, 0.515f, 0.955f},
    {VLXEasingCubicIn, 0.55f, 0.055f, 0.675f, 0.19f},
    {VLXEasingCubicOut, 0.215f, 0.61f, 0.355f, 1.0f},
    {VLXEasingCubicInOut, 0.645f, 0.045f, 0.355f, 1.0f},
    {VLXEasingQuartIn, 0.895f, 0.03f, 0.685f, 0.22f},
    {VLXEasingQuartOut, 0.165f, 0.84f, 0.44f, 1.0f},
    {VLXEasingQuartInOut, 0.77f, 0.0f, 0.175f, 1.0f},
    {VLXEasingQuintIn, 0.755f, 0.05f, 0.855f, 0.06f},
    {VLXEasingQuintOut, 0.23f, 1.0f, 0.32f, 1.0f},
    {VLXEasingQuintInOut, 0.86f, 0.0f, 0.07f, 1.0f},
    {VLXEasingSineIn, 0.47f, 0.0f, 0.745f, 0.715f},
    {VLXEasingSineOut, 0.39f, 0.575f, 0.565f, 1.0f},
    {VLXEasingSineInOut, 0.445f, 0.05f, 0.55f, 0.95f},
    {VLXEasingExpoIn, 0.95f, 0.05f, 0.795f, 0.035f},
    {VLXEasingExpoOut, 0.19f, 1.0f, 0.22f, 1.0f},
    {VLXEasingExpoInOut, 1.0f, 0.0f, 0.0f, 1.0f},
    {VLXEasingCircIn, 0.6f, 0.04f, 0.98f, 0.335f},
    {VLXEasingCircOut, 0.075f, 0.82f, 0.165f, 1.0f},
    {VLXEasingCircInOut, 0.785f, 0.135f, 0.15f, 0.86f},
    {VLXEasingSmoothOut, 0.4027f, 0.0f, 0.2256f, 1.0f},
};

}  // namespace

const VLXBezierEvaluatorFunction VLXBezierEvaluator = &bezierEvaluate;

std::shared_ptr<VLXMediaTimingFunction> vlx_functionWithEasing(VLXEasing easing) {
    // Built on first use and kept for the life of the process, so callers get the same objects.
    static const auto table = [] {
        std::array<std::shared_ptr<VLXMediaTimingFunction>, 35> functions;
        for (const ControlPoints& p : kControlPoints) {
            functions[static_cast<std::size_t>(p.code)] =
                VLXMediaTimingFunction::functionWithControlPoints(p.x1, p.y1, p.x2, p.y2);
        }
        return functions;
    }();
    if (easing < 0 || easing >= static_cast<VLXEasing>(table.size())) {
        return nullptr;
    }
    return table[static_cast<std::size_t>(easing)];
}

VLXEasingFunction vlx_animationBlockForEasing(VLXEasing easing) {
    if (easing < 0 || easing >= static_cast<VLXEasing>(kExactFunctions.size())) {
        return nullptr;
    }
    return kExactFunctions[static_cast<std::size_t>(easing)];
}
