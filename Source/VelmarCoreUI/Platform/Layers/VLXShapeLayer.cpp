#include <VelmarCoreUI/Platform/Layers/VLXShapeLayer.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <span>

#include <VelmarCoreUI/Platform/Foundation/VLXStringFormat.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Layers/VLXBasicAnimation.h>
#include <VelmarCoreUI/Platform/Layers/VLXTransaction.h>

namespace {

constexpr std::string_view kPath = "path";
constexpr std::string_view kFillColor = "fillColor";
constexpr std::string_view kStrokeColor = "strokeColor";
constexpr std::string_view kLineWidth = "lineWidth";
constexpr std::string_view kMiterLimit = "miterLimit";
constexpr std::string_view kLineDashPattern = "lineDashPattern";
constexpr std::string_view kLineDashPhase = "lineDashPhase";
constexpr std::string_view kFillRule = "fillRule";
constexpr std::string_view kLineCap = "lineCap";
constexpr std::string_view kLineJoin = "lineJoin";
constexpr std::string_view kStrokeStart = "strokeStart";
constexpr std::string_view kStrokeEnd = "strokeEnd";

// More on-intervals than this in a trimmed dash are not worth building: the trim is dropped.
constexpr std::size_t kMaximumTrimIntervals = 100000;

VLXValue optionalColorValue(const std::optional<VLXColor>& color) {
    return color ? VLXValue(*color) : VLXValue::null();
}

double finiteOr(double value, double fallback) {
    return std::isfinite(value) ? value : fallback;
}

// Arc length of the path in its own coordinates, curves flattened into 16 chords each (close
// enough for placing the ends of a trimmed stroke).
double pathLength(const VLXPath& path) {
    double length = 0;
    VLXPoint current{0, 0}, start{0, 0};
    auto add = [&](VLXPoint a, VLXPoint b) {
        const double d = std::hypot(b.x - a.x, b.y - a.y);
        if (std::isfinite(d)) {
            length += d;
        }
    };
    const auto types = path.elementTypes();
    const auto points = path.points();
    std::size_t p = 0;
    for (VLXPathElementType type : types) {
        switch (type) {
            case VLXPathElementType::MoveToPoint:
                current = start = points[p];
                break;
            case VLXPathElementType::AddLineToPoint:
                add(current, points[p]);
                current = points[p];
                break;
            case VLXPathElementType::AddQuadCurveToPoint:
            case VLXPathElementType::AddCurveToPoint: {
                const bool quad = type == VLXPathElementType::AddQuadCurveToPoint;
                const VLXPoint c1 = points[p];
                const VLXPoint c2 = quad ? points[p] : points[p + 1];
                const VLXPoint end = quad ? points[p + 1] : points[p + 2];
                VLXPoint previous = current;
                for (int i = 1; i <= 16; ++i) {
                    const double t = i / 16.0, u = 1 - t;
                    VLXPoint q;
                    if (quad) {
                        q = {u * u * current.x + 2 * u * t * c1.x + t * t * end.x,
                             u * u * current.y + 2 * u * t * c1.y + t * t * end.y};
                    } else {
                        q = {u * u * u * current.x + 3 * u * u * t * c1.x + 3 * u * t * t * c2.x +
                                 t * t * t * end.x,
                             u * u * u * current.y + 3 * u * u * t * c1.y + 3 * u * t * t * c2.y +
                                 t * t * t * end.y};
                    }
                    add(previous, q);
                    previous = q;
                }
                current = end;
                break;
            }
            case VLXPathElementType::CloseSubpath:
                add(current, start);
                current = start;
                break;
        }
        p += VLXPathElementPointCount(type);
    }
    return length;
}

// The dash (lengths and phase) that strokes only [from, to] of a path `length` long, combined
// with the layer's own dash. False when nothing is to be stroked.
bool trimmedDash(double length, double from, double to, std::span<const double> dash, double phase,
                 std::vector<double>& outLengths, double& outPhase) {
    std::vector<std::pair<double, double>> on;
    double period = 0;
    for (double d : dash) {
        period += d;
    }
    if (dash.empty() || !(period > 0)) {
        on.emplace_back(from, to);
    } else {
        // Walk the pattern from the phase: position 0 of the path is `phase` into the pattern.
        double offset = std::fmod(phase, period);
        if (offset < 0) {
            offset += period;
        }
        double position = -offset;
        std::size_t index = 0;
        while (position < to && on.size() < kMaximumTrimIntervals) {
            const double next = position + dash[index];
            if (index % 2 == 0) {
                const double a = std::max(position, from), b = std::min(next, to);
                if (b > a || (dash[index] == 0 && position >= from && position <= to)) {
                    on.emplace_back(a, std::max(a, b));
                }
            }
            position = next;
            index = (index + 1) % dash.size();
        }
        if (on.size() >= kMaximumTrimIntervals) {
            return false;
        }
    }
    if (on.empty()) {
        return false;
    }
    outLengths.clear();
    for (std::size_t i = 0; i < on.size(); ++i) {
        outLengths.push_back(on[i].second - on[i].first);
        const double gapEnd = i + 1 < on.size() ? on[i + 1].first : on[0].first + length + 1;
        outLengths.push_back(gapEnd - on[i].second);
    }
    double total = 0;
    for (double d : outLengths) {
        total += d;
    }
    // At distance on[0].first the pattern must be at its start.
    outPhase = total - on[0].first;
    return true;
}

// The path's subpaths as separate paths.
std::vector<VLXPath> subpathsOf(const VLXPath& path) {
    std::vector<VLXPath> result;
    const auto points = path.points();
    std::size_t p = 0;
    for (VLXPathElementType type : path.elementTypes()) {
        if (type == VLXPathElementType::MoveToPoint || result.empty()) {
            result.emplace_back();
        }
        VLXPath& current = result.back();
        switch (type) {
            case VLXPathElementType::MoveToPoint:
                current.moveToPoint(points[p]);
                break;
            case VLXPathElementType::AddLineToPoint:
                current.addLineToPoint(points[p]);
                break;
            case VLXPathElementType::AddQuadCurveToPoint:
                current.addQuadCurveToPoint(points[p], points[p + 1]);
                break;
            case VLXPathElementType::AddCurveToPoint:
                current.addCurveToPoint(points[p], points[p + 1], points[p + 2]);
                break;
            case VLXPathElementType::CloseSubpath:
                current.closeSubpath();
                break;
        }
        p += VLXPathElementPointCount(type);
    }
    return result;
}

}  // namespace

// --- VLXPathObject
// --------------------------------------------------------------------------------

std::shared_ptr<VLXPathObject> VLXPathObject::create(VLXPath path) {
    return VLXMakeShared<VLXPathObject>(std::move(path));
}

bool VLXPathObject::isEqual(const VLXObject& other) const {
    if (this == &other) {
        return true;
    }
    const auto* path = dynamic_cast<const VLXPathObject*>(&other);
    return path != nullptr && path->m_path == m_path;
}

std::size_t VLXPathObject::hash() const {
    return m_path.elementCount();
}

// --- VLXShapeLayer
// --------------------------------------------------------------------------------

std::shared_ptr<VLXShapeLayer> VLXShapeLayer::create() {
    return makeInitialized<VLXShapeLayer>();
}

std::shared_ptr<VLXLayer> VLXShapeLayer::newInstance() const {
    return VLXMakeShared<VLXShapeLayer>();
}

VLXValue VLXShapeLayer::defaultValueForKey(std::string_view key) const {
    if (key == kFillColor) {
        static const VLXValue black(VLXColor::blackColor());  // made once: read every frame
        return black;
    }
    if (key == kLineWidth) {
        return VLXValue(1.0);
    }
    if (key == kMiterLimit) {
        return VLXValue(10.0);
    }
    if (key == kStrokeEnd) {
        return VLXValue(1.0);
    }
    if (key == kLineDashPhase || key == kStrokeStart) {
        return VLXValue(0.0);
    }
    if (key == kFillRule || key == kLineCap || key == kLineJoin) {
        return VLXValue(0);
    }
    return VLXLayer::defaultValueForKey(key);
}

bool VLXShapeLayer::isShapeAnimatableKey(std::string_view key) {
    static constexpr std::array<std::string_view, 8> keys{kPath,        kFillColor,    kStrokeColor,
                                                          kStrokeStart, kStrokeEnd,    kLineWidth,
                                                          kMiterLimit,  kLineDashPhase};
    return std::find(keys.begin(), keys.end(), key) != keys.end();
}

std::shared_ptr<VLXAnimation> VLXShapeLayer::defaultActionForKey(std::string_view key) {
    if (!isShapeAnimatableKey(key)) {
        return VLXLayer::defaultActionForKey(key);
    }
    auto animation = VLXBasicAnimation::animationWithKeyPath(std::string(key));
    animation->setDuration(VLXTransaction::animationDuration());
    animation->setTimingFunction(VLXTransaction::animationTimingFunction());
    return animation;
}

std::shared_ptr<VLXPathObject> VLXShapeLayer::pathObject() const {
    return storedValue(kPath).objectAs<VLXPathObject>();
}

std::optional<VLXPath> VLXShapeLayer::path() const {
    if (auto object = pathObject()) {
        return object->path();
    }
    return std::nullopt;
}

void VLXShapeLayer::setPath(std::optional<VLXPath> path) {
    setValue(path ? VLXValue(VLXPathObject::create(std::move(*path))) : VLXValue(), kPath);
}

std::optional<VLXColor> VLXShapeLayer::fillColor() const {
    return storedColor(kFillColor);
}

void VLXShapeLayer::setFillColor(std::optional<VLXColor> color) {
    setValue(optionalColorValue(color), kFillColor);
}

std::optional<VLXColor> VLXShapeLayer::strokeColor() const {
    return storedColor(kStrokeColor);
}

void VLXShapeLayer::setStrokeColor(std::optional<VLXColor> color) {
    setValue(color ? VLXValue(*color) : VLXValue(), kStrokeColor);
}

double VLXShapeLayer::lineWidth() const {
    return storedDouble(kLineWidth, 1);
}

void VLXShapeLayer::setLineWidth(double width) {
    setValue(VLXValue(width), kLineWidth);
}

double VLXShapeLayer::miterLimit() const {
    return storedDouble(kMiterLimit, 10);
}

void VLXShapeLayer::setMiterLimit(double limit) {
    setValue(VLXValue(limit), kMiterLimit);
}

std::vector<double> VLXShapeLayer::lineDashPattern() const {
    std::vector<double> pattern;
    const VLXValue value = storedValue(kLineDashPattern);
    if (value.isArray()) {
        for (const VLXValue& entry : value.arrayValue()) {
            pattern.push_back(entry.isNumber() ? entry.doubleValue() : 0);
        }
    }
    return pattern;
}

void VLXShapeLayer::setLineDashPattern(const std::vector<double>& pattern) {
    if (pattern.empty()) {
        setValue(VLXValue(), kLineDashPattern);
        return;
    }
    VLXValue::Array values;
    values.reserve(pattern.size());
    for (double length : pattern) {
        values.emplace_back(length);
    }
    setValue(VLXValue(std::move(values)), kLineDashPattern);
}

double VLXShapeLayer::lineDashPhase() const {
    return storedDouble(kLineDashPhase, 0);
}

void VLXShapeLayer::setLineDashPhase(double phase) {
    setValue(VLXValue(phase), kLineDashPhase);
}

VLXPathFillRule VLXShapeLayer::fillRule() const {
    return storedDouble(kFillRule) == 1 ? VLXPathFillRule::EvenOdd : VLXPathFillRule::Winding;
}

void VLXShapeLayer::setFillRule(VLXPathFillRule rule) {
    setValue(VLXValue(rule == VLXPathFillRule::EvenOdd ? 1 : 0), kFillRule);
}

VLXLineCap VLXShapeLayer::lineCap() const {
    const double v = storedDouble(kLineCap);
    return v == 1 ? VLXLineCap::Round : v == 2 ? VLXLineCap::Square : VLXLineCap::Butt;
}

void VLXShapeLayer::setLineCap(VLXLineCap cap) {
    setValue(VLXValue(static_cast<int>(cap)), kLineCap);
}

VLXLineJoin VLXShapeLayer::lineJoin() const {
    const double v = storedDouble(kLineJoin);
    return v == 1 ? VLXLineJoin::Round : v == 2 ? VLXLineJoin::Bevel : VLXLineJoin::Miter;
}

void VLXShapeLayer::setLineJoin(VLXLineJoin join) {
    setValue(VLXValue(static_cast<int>(join)), kLineJoin);
}

double VLXShapeLayer::strokeStart() const {
    return storedDouble(kStrokeStart, 0);
}

void VLXShapeLayer::setStrokeStart(double start) {
    setValue(VLXValue(start), kStrokeStart);
}

double VLXShapeLayer::strokeEnd() const {
    return storedDouble(kStrokeEnd, 1);
}

void VLXShapeLayer::setStrokeEnd(double end) {
    setValue(VLXValue(end), kStrokeEnd);
}

void VLXShapeLayer::drawShape(VLXGraphicsContext& context) const {
    const auto object = pathObject();
    if (!object || object->path().isEmpty()) {
        return;
    }
    const VLXPath& path = object->path();
    if (const auto fill = fillColor()) {
        context.setFillColor(*fill);
        context.addPath(path);
        context.fillPath(fillRule());
    }
    const auto stroke = strokeColor();
    const double width = lineWidth();
    if (!stroke || !(width > 0) || !std::isfinite(width)) {
        return;
    }
    const double from = std::clamp(finiteOr(strokeStart(), 0), 0.0, 1.0);
    const double to = std::clamp(finiteOr(strokeEnd(), 1), 0.0, 1.0);
    if (!(from < to)) {
        return;
    }
    // The dash lengths without a vector of their own for the common short patterns: strokes run
    // every frame.
    std::array<double, 16> shortDash{};
    std::vector<double> longDash;
    std::span<const double> dash;
    const VLXValue dashValue = storedValue(kLineDashPattern);
    if (dashValue.isArray()) {
        const auto& entries = dashValue.arrayValue();
        double* out = shortDash.data();
        if (entries.size() > shortDash.size()) {
            longDash.resize(entries.size());
            out = longDash.data();
        }
        for (std::size_t i = 0; i < entries.size(); ++i) {
            out[i] = entries[i].isNumber() ? entries[i].doubleValue() : 0;
        }
        dash = std::span<const double>(out, entries.size());
    }
    const double phase = finiteOr(lineDashPhase(), 0);
    context.saveGState();
    context.setStrokeColor(*stroke);
    context.setLineWidth(width);
    context.setMiterLimit(miterLimit());
    context.setLineCap(lineCap());
    context.setLineJoin(lineJoin());
    if (from <= 0 && to >= 1) {
        context.setLineDash(phase, dash);
        context.addPath(path);
        context.strokePath();
        context.restoreGState();
        return;
    }
    // A trimmed stroke is a dash over the whole length; cairo restarts dashes at every subpath,
    // so each subpath is stroked with the phase of the distance where it begins.
    const std::vector<VLXPath> pieces = subpathsOf(path);
    std::vector<double> lengths(pieces.size());
    double total = 0;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        lengths[i] = pathLength(pieces[i]);
        total += lengths[i];
    }
    std::vector<double> trimmed;
    double trimmedPhase = 0;
    if (total > 0 && std::isfinite(total) &&
        trimmedDash(total, from * total, to * total, dash, phase, trimmed, trimmedPhase)) {
        double distance = 0;
        for (std::size_t i = 0; i < pieces.size(); ++i) {
            context.setLineDash(trimmedPhase + distance, trimmed);
            context.addPath(pieces[i]);
            context.strokePath();
            distance += lengths[i];
        }
    }
    context.restoreGState();
}

void VLXShapeLayer::appendTreeTextAttributes(std::string& line) const {
    if (const auto object = pathObject()) {
        const VLXRect box = object->path().boundingBox();
        line += VLXStringWithFormat(" path = {{%g, %g}, {%g, %g}}", box.origin.x, box.origin.y,
                                    box.size.width, box.size.height);
    }
}
