#include <VelmarCoreUI/Platform/Layers/VLXGradientLayer.h>

#include <cairo.h>

#include <algorithm>
#include <array>
#include <cmath>

#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Layers/VLXBasicAnimation.h>
#include <VelmarCoreUI/Platform/Layers/VLXTransaction.h>

namespace {

constexpr std::string_view kColors = "colors";
constexpr std::string_view kLocations = "locations";
constexpr std::string_view kStartPoint = "startPoint";
constexpr std::string_view kEndPoint = "endPoint";

double unit(double value) {
    return std::isnan(value) ? 0 : std::clamp(value, 0.0, 1.0);
}

}  // namespace

std::shared_ptr<VLXGradientLayer> VLXGradientLayer::create() {
    return makeInitialized<VLXGradientLayer>();
}

std::shared_ptr<VLXLayer> VLXGradientLayer::newInstance() const {
    return VLXMakeShared<VLXGradientLayer>();
}

VLXValue VLXGradientLayer::defaultValueForKey(std::string_view key) const {
    if (key == kStartPoint) {
        return VLXValue::valueWithPoint(VLXPointMake(0.5, 0));
    }
    if (key == kEndPoint) {
        return VLXValue::valueWithPoint(VLXPointMake(0.5, 1));
    }
    return VLXLayer::defaultValueForKey(key);
}

bool VLXGradientLayer::isGradientAnimatableKey(std::string_view key) {
    return key == kColors || key == kLocations || key == kStartPoint || key == kEndPoint;
}

std::shared_ptr<VLXAnimation> VLXGradientLayer::defaultActionForKey(std::string_view key) {
    if (!isGradientAnimatableKey(key)) {
        return VLXLayer::defaultActionForKey(key);
    }
    auto animation = VLXBasicAnimation::animationWithKeyPath(std::string(key));
    animation->setDuration(VLXTransaction::animationDuration());
    animation->setTimingFunction(VLXTransaction::animationTimingFunction());
    return animation;
}

VLXValue VLXGradientLayer::colors() const {
    return storedValue(kColors);
}

void VLXGradientLayer::setColors(VLXValue colors) {
    setValue(colors, kColors);
}

VLXValue VLXGradientLayer::locations() const {
    return storedValue(kLocations);
}

void VLXGradientLayer::setLocations(VLXValue locations) {
    setValue(locations, kLocations);
}

VLXPoint VLXGradientLayer::startPoint() const {
    return storedPoint(kStartPoint, VLXPointMake(0.5, 0));
}

void VLXGradientLayer::setStartPoint(VLXPoint point) {
    setValue(VLXValue::valueWithPoint(point), kStartPoint);
}

VLXPoint VLXGradientLayer::endPoint() const {
    return storedPoint(kEndPoint, VLXPointMake(0.5, 1));
}

void VLXGradientLayer::setEndPoint(VLXPoint point) {
    setValue(VLXValue::valueWithPoint(point), kEndPoint);
}

std::vector<std::pair<double, VLXColor>> VLXGradientLayer::resolvedStops() const {
    std::vector<std::pair<double, VLXColor>> stops;
    const VLXValue colorList = colors();
    if (!colorList.isArray()) {
        return stops;
    }
    const VLXValue locationList = locations();
    const bool explicitLocations = locationList.isArray();
    const auto& entries = colorList.arrayValue();
    const std::size_t count = explicitLocations
                                  ? std::min(entries.size(), locationList.arrayValue().size())
                                  : entries.size();
    for (std::size_t i = 0; i < count; ++i) {
        const auto color = entries[i].colorValue();
        if (!color) {
            continue;
        }
        double location = 0;
        if (explicitLocations) {
            const VLXValue& number = locationList.arrayValue()[i];
            location = number.isNumber() ? unit(number.doubleValue()) : 0;
        } else {
            location = count > 1 ? static_cast<double>(i) / static_cast<double>(count - 1) : 0;
        }
        stops.emplace_back(location, *color);
    }
    return stops;
}

void VLXGradientLayer::drawGradient(VLXGraphicsContext& context) const {
    const auto stops = resolvedStops();
    const VLXRect rect = bounds();
    if (stops.empty() || !(rect.width() > 0 && rect.height() > 0)) {
        return;
    }
    if (stops.size() == 1) {
        context.setFillColor(stops.front().second);
        context.fillRect(rect);
        return;
    }
    VLXPoint start = startPoint(), end = endPoint();
    auto place = [&](VLXPoint unitPoint) {
        const double x = std::isfinite(unitPoint.x) ? unitPoint.x : 0;
        const double y = std::isfinite(unitPoint.y) ? unitPoint.y : 0;
        return VLXPointMake(rect.minX() + std::clamp(x, -1e6, 1e6) * rect.width(),
                            rect.minY() + std::clamp(y, -1e6, 1e6) * rect.height());
    };
    start = place(start);
    end = place(end);
    context.drawWithEffects([&](cairo_t* cr) {
        cairo_pattern_t* pattern = cairo_pattern_create_linear(start.x, start.y, end.x, end.y);
        for (const auto& [location, color] : stops) {
            double r = 0, g = 0, b = 0, a = 1;
            if (!color.getRed(&r, &g, &b, &a)) {
                r = g = b = 0;
                a = color.numberOfComponents() > 0 ? color.alpha() : 0;
            }
            cairo_pattern_add_color_stop_rgba(pattern, location, unit(r), unit(g), unit(b),
                                              unit(a));
        }
        // The end colours extend beyond the first and last stops.
        cairo_pattern_set_extend(pattern, CAIRO_EXTEND_PAD);
        cairo_rectangle(cr, rect.minX(), rect.minY(), rect.width(), rect.height());
        cairo_set_source(cr, pattern);
        cairo_fill(cr);
        cairo_pattern_destroy(pattern);
    });
}
