#include <VelmarCoreUI/Platform/Primitives/VLXColor.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ostream>

namespace {

// NaN is treated as 0 so that the conversion below never meets an unordered value.
double clampUnit(double value) {
    if (std::isnan(value)) {
        return 0.0;
    }
    return std::clamp(value, 0.0, 1.0);
}

// Hue is an angle: wrap it into [0, 1). Non-finite hues have no angle and read as 0 (red).
double wrapHue(double hue) {
    if (!std::isfinite(hue)) {
        return 0.0;
    }
    double wrapped = hue - std::floor(hue);
    // hue - floor(hue) can round up to exactly 1 for tiny negative hues.
    if (wrapped >= 1.0) {
        wrapped = 0.0;
    }
    return wrapped;
}

// The shortest of "%.15g" and "%.17g" that reads back as the same double: "0.1", not
// "0.10000000000000001", yet distinct values never print alike.
std::string shortestText(double value) {
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "%.15g", value);
    if (std::isfinite(value) && std::strtod(buffer, nullptr) != value) {
        std::snprintf(buffer, sizeof buffer, "%.17g", value);
    }
    return buffer;
}

bool sameComponent(double a, double b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}

}  // namespace

VLXColor::VLXColor() = default;

VLXColor::VLXColor(VLXColorSpaceModel model, std::initializer_list<double> components)
    : m_model(model), m_count(0), m_components{0, 0, 0, 0, 0} {
    for (double component : components) {
        if (m_count == kMaxComponents) {
            break;
        }
        m_components[m_count++] = component;
    }
    if (m_count == 0) {
        m_count = 1;  // alpha only, 0: transparent
    }
}

VLXColor VLXColor::colorWithRed(double red, double green, double blue, double alpha) {
    return VLXColor(VLXColorSpaceModel::RGB, {red, green, blue, alpha});
}

VLXColor VLXColor::colorWithWhite(double white, double alpha) {
    return VLXColor(VLXColorSpaceModel::Monochrome, {white, alpha});
}

VLXColor VLXColor::colorWithHue(double hue, double saturation, double brightness, double alpha) {
    const double h = wrapHue(hue) * 6.0;
    const double s = clampUnit(saturation);
    const double v = clampUnit(brightness);
    // h is in [0, 6), so the sector index is 0…5 and the cast is defined.
    const int sector = std::min(static_cast<int>(h), 5);
    const double f = h - sector;
    const double p = v * (1.0 - s);
    const double q = v * (1.0 - s * f);
    const double t = v * (1.0 - s * (1.0 - f));
    switch (sector) {
        case 0:
            return colorWithRed(v, t, p, alpha);
        case 1:
            return colorWithRed(q, v, p, alpha);
        case 2:
            return colorWithRed(p, v, t, alpha);
        case 3:
            return colorWithRed(p, q, v, alpha);
        case 4:
            return colorWithRed(t, p, v, alpha);
        default:
            return colorWithRed(v, p, q, alpha);
    }
}

VLXColor VLXColor::blackColor() {
    return colorWithWhite(0.0, 1.0);
}
VLXColor VLXColor::darkGrayColor() {
    return colorWithWhite(1.0 / 3.0, 1.0);
}
VLXColor VLXColor::lightGrayColor() {
    return colorWithWhite(2.0 / 3.0, 1.0);
}
VLXColor VLXColor::whiteColor() {
    return colorWithWhite(1.0, 1.0);
}
VLXColor VLXColor::grayColor() {
    return colorWithWhite(0.5, 1.0);
}
VLXColor VLXColor::clearColor() {
    return colorWithWhite(0.0, 0.0);
}
VLXColor VLXColor::redColor() {
    return colorWithRed(1.0, 0.0, 0.0, 1.0);
}
VLXColor VLXColor::greenColor() {
    return colorWithRed(0.0, 1.0, 0.0, 1.0);
}
VLXColor VLXColor::blueColor() {
    return colorWithRed(0.0, 0.0, 1.0, 1.0);
}
VLXColor VLXColor::cyanColor() {
    return colorWithRed(0.0, 1.0, 1.0, 1.0);
}
VLXColor VLXColor::yellowColor() {
    return colorWithRed(1.0, 1.0, 0.0, 1.0);
}
VLXColor VLXColor::magentaColor() {
    return colorWithRed(1.0, 0.0, 1.0, 1.0);
}
VLXColor VLXColor::orangeColor() {
    return colorWithRed(1.0, 0.5, 0.0, 1.0);
}
VLXColor VLXColor::purpleColor() {
    return colorWithRed(0.5, 0.0, 0.5, 1.0);
}
VLXColor VLXColor::brownColor() {
    return colorWithRed(0.6, 0.4, 0.2, 1.0);
}

double VLXColor::alpha() const {
    return m_components[m_count - 1];
}

bool VLXColor::getRed(double* red, double* green, double* blue, double* alpha) const {
    double r = 0;
    double g = 0;
    double b = 0;
    switch (m_model) {
        case VLXColorSpaceModel::Monochrome:
            if (m_count != 2) {
                return false;
            }
            r = g = b = m_components[0];
            break;
        case VLXColorSpaceModel::RGB:
            if (m_count != 4) {
                return false;
            }
            r = m_components[0];
            g = m_components[1];
            b = m_components[2];
            break;
        default:
            return false;
    }
    if (red)
        *red = r;
    if (green)
        *green = g;
    if (blue)
        *blue = b;
    if (alpha)
        *alpha = this->alpha();
    return true;
}

bool VLXColor::getWhite(double* white, double* alpha) const {
    if (m_model != VLXColorSpaceModel::Monochrome || m_count != 2) {
        return false;
    }
    if (white)
        *white = m_components[0];
    if (alpha)
        *alpha = m_components[1];
    return true;
}

bool VLXColor::getHue(double* hue, double* saturation, double* brightness, double* alpha) const {
    if (m_model != VLXColorSpaceModel::RGB || m_count != 4) {
        return false;
    }
    const double r = m_components[0];
    const double g = m_components[1];
    const double b = m_components[2];
    const double maximum = std::max({r, g, b});
    const double minimum = std::min({r, g, b});
    const double delta = maximum - minimum;
    double h = 0.0;
    if (delta > 0.0) {
        if (maximum == r) {
            h = (g - b) / delta;
        } else if (maximum == g) {
            h = 2.0 + (b - r) / delta;
        } else {
            h = 4.0 + (r - g) / delta;
        }
        h /= 6.0;
        if (h < 0.0) {
            h += 1.0;
        }
    }
    if (hue)
        *hue = h;
    if (saturation)
        *saturation = maximum != 0.0 ? delta / maximum : 0.0;
    if (brightness)
        *brightness = maximum;
    if (alpha)
        *alpha = m_components[3];
    return true;
}

VLXColor VLXColor::colorWithAlphaComponent(double alpha) const {
    VLXColor copy = *this;
    copy.m_components[copy.m_count - 1] = alpha;
    return copy;
}

std::string VLXColor::description() const {
    std::string text = "VLXColor(";
    switch (m_model) {
        case VLXColorSpaceModel::Monochrome:
            text += "white";
            break;
        case VLXColorSpaceModel::RGB:
            text += "rgb";
            break;
        default:
            text += "other";
            break;
    }
    for (std::size_t i = 0; i < m_count; ++i) {
        text += ' ';
        text += shortestText(m_components[i]);
    }
    text += ")";
    return text;
}

bool operator==(const VLXColor& a, const VLXColor& b) {
    if (a.m_model != b.m_model || a.m_count != b.m_count) {
        return false;
    }
    for (std::size_t i = 0; i < a.m_count; ++i) {
        if (!sameComponent(a.m_components[i], b.m_components[i])) {
            return false;
        }
    }
    return true;
}

std::ostream& operator<<(std::ostream& os, const VLXColor& color) {
    return os << color.description();
}
