// Key-value access of layers: built-in keys, key paths into structures and the open store.

#include <VelmarCoreUI/Platform/Layers/VLXLayer.h>

#include <array>
#include <cmath>
#include <cstring>

#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>
#include <VelmarCoreUI/Platform/Layers/Private/VLXLayerInternal.h>

namespace {

enum BuiltInKey : int {
    kBounds,
    kPosition,
    kAnchorPoint,
    kZPosition,
    kTransform,
    kAffineTransform,
    kFrame,
    kOpacity,
    kHidden,
    kBackgroundColor,
    kCornerRadius,
    kBorderWidth,
    kBorderColor,
    kMasksToBounds,
    kMask,
    kContentsScale,
    kContents,
    kName,
    kNeedsDisplayOnBoundsChange,
    kBuiltInKeyCount
};

constexpr std::array<std::string_view, kBuiltInKeyCount> kBuiltInKeyNames{
    "bounds",
    "position",
    "anchorPoint",
    "zPosition",
    "transform",
    "affineTransform",
    "frame",
    "opacity",
    "hidden",
    "backgroundColor",
    "cornerRadius",
    "borderWidth",
    "borderColor",
    "masksToBounds",
    "mask",
    "contentsScale",
    "contents",
    "name",
    "needsDisplayOnBoundsChange"};

int builtInKeyIndex(std::string_view key) {
    for (int i = 0; i < kBuiltInKeyCount; ++i) {
        if (kBuiltInKeyNames[static_cast<std::size_t>(i)] == key) {
            return i;
        }
    }
    return -1;
}

bool hasType(const VLXValue& value, const char* type) {
    return value.isBoxed() && std::strcmp(value.objCType(), type) == 0;
}
const char* const kPointType = "{CGPoint=dd}";
const char* const kSizeType = "{CGSize=dd}";
const char* const kRectType = "{CGRect={CGPoint=dd}{CGSize=dd}}";
const char* const kTransformType = "{CATransform3D=dddddddddddddddd}";
const char* const kAffineType = "{CGAffineTransform=dddddd}";

std::string_view firstSegment(std::string_view path, std::string_view* rest) {
    const auto dot = path.find('.');
    if (dot == std::string_view::npos) {
        *rest = {};
        return path;
    }
    *rest = path.substr(dot + 1);
    return path.substr(0, dot);
}

// --- transforms as components -----------------------------------------------------------------

struct Decomposed {
    double sx = 1, sy = 1, sz = 1;
    double rx = 0, ry = 0, rz = 0;
    double tx = 0, ty = 0, tz = 0;
};

Decomposed decompose(const VLXTransform3D& t) {
    Decomposed d;
    d.tx = t.m41;
    d.ty = t.m42;
    d.tz = t.m43;
    d.sx = std::hypot(t.m11, t.m12, t.m13);
    d.rz = std::atan2(t.m12, t.m11);
    // The y scale keeps the sign of the x-y determinant, so a flip survives a round trip.
    const double xy = std::hypot(t.m11, t.m12);
    d.sy = xy != 0 ? (t.m11 * t.m22 - t.m12 * t.m21) / xy : std::hypot(t.m21, t.m22, t.m23);
    d.sz = std::copysign(std::hypot(t.m31, t.m32, t.m33), t.m33);
    d.rx = std::atan2(t.m23, t.m33);
    d.ry = std::atan2(-t.m13, std::hypot(t.m23, t.m33));
    return d;
}

VLXTransform3D compose(const Decomposed& d) {
    VLXTransform3D t = VLXTransform3DMakeScale(d.sx, d.sy, d.sz);
    if (d.rx != 0) {
        t = VLXTransform3DConcat(t, VLXTransform3DMakeRotation(d.rx, 1, 0, 0));
    }
    if (d.ry != 0) {
        t = VLXTransform3DConcat(t, VLXTransform3DMakeRotation(d.ry, 0, 1, 0));
    }
    if (d.rz != 0) {
        t = VLXTransform3DConcat(t, VLXTransform3DMakeRotation(d.rz, 0, 0, 1));
    }
    t.m41 = d.tx;
    t.m42 = d.ty;
    t.m43 = d.tz;
    return t;
}

VLXValue transformComponent(const VLXTransform3D& t, std::string_view path) {
    const Decomposed d = decompose(t);
    if (path == "scale") {
        return VLXValue((d.sx + d.sy + d.sz) / 3);
    }
    if (path == "scale.x") {
        return VLXValue(d.sx);
    }
    if (path == "scale.y") {
        return VLXValue(d.sy);
    }
    if (path == "scale.z") {
        return VLXValue(d.sz);
    }
    if (path == "rotation" || path == "rotation.z") {
        return VLXValue(d.rz);
    }
    if (path == "rotation.x") {
        return VLXValue(d.rx);
    }
    if (path == "rotation.y") {
        return VLXValue(d.ry);
    }
    if (path == "translation") {
        return VLXValue::valueWithSize({d.tx, d.ty});
    }
    if (path == "translation.x") {
        return VLXValue(d.tx);
    }
    if (path == "translation.y") {
        return VLXValue(d.ty);
    }
    if (path == "translation.z") {
        return VLXValue(d.tz);
    }
    return VLXValue();
}

std::optional<VLXTransform3D> withTransformComponent(const VLXTransform3D& t, std::string_view path,
                                                     const VLXValue& value) {
    if (path == "translation") {
        if (!hasType(value, kSizeType)) {
            return std::nullopt;
        }
        // Translation alone keeps the rest of the matrix exactly.
        VLXTransform3D r = t;
        r.m41 = value.sizeValue().width;
        r.m42 = value.sizeValue().height;
        return r;
    }
    if (!value.isNumber()) {
        return std::nullopt;
    }
    const double v = value.doubleValue();
    if (path == "translation.x" || path == "translation.y" || path == "translation.z") {
        VLXTransform3D r = t;
        (path.back() == 'x' ? r.m41 : path.back() == 'y' ? r.m42 : r.m43) = v;
        return r;
    }
    Decomposed d = decompose(t);
    if (path == "scale") {
        d.sx = d.sy = d.sz = v;
    } else if (path == "scale.x") {
        d.sx = v;
    } else if (path == "scale.y") {
        d.sy = v;
    } else if (path == "scale.z") {
        d.sz = v;
    } else if (path == "rotation" || path == "rotation.z") {
        d.rz = v;
    } else if (path == "rotation.x") {
        d.rx = v;
    } else if (path == "rotation.y") {
        d.ry = v;
    } else {
        return std::nullopt;
    }
    return compose(d);
}

// --- structures as components -----------------------------------------------------------------

VLXValue componentOf(VLXValue value, std::string_view path) {
    while (!path.empty()) {
        if (hasType(value, kTransformType)) {
            return transformComponent(value.transform3DValue(), path);
        }
        std::string_view rest;
        const std::string_view key = firstSegment(path, &rest);
        if (hasType(value, kPointType)) {
            const VLXPoint p = value.pointValue();
            value = key == "x" ? VLXValue(p.x) : key == "y" ? VLXValue(p.y) : VLXValue();
        } else if (hasType(value, kSizeType)) {
            const VLXSize s = value.sizeValue();
            value = key == "width"    ? VLXValue(s.width)
                    : key == "height" ? VLXValue(s.height)
                                      : VLXValue();
        } else if (hasType(value, kRectType)) {
            const VLXRect r = value.rectValue();
            value = key == "origin"   ? VLXValue::valueWithPoint(r.origin)
                    : key == "size"   ? VLXValue::valueWithSize(r.size)
                    : key == "x"      ? VLXValue(r.origin.x)
                    : key == "y"      ? VLXValue(r.origin.y)
                    : key == "width"  ? VLXValue(r.size.width)
                    : key == "height" ? VLXValue(r.size.height)
                                      : VLXValue();
        } else if (value.isDictionary()) {
            value = value.valueForKey(key);
        } else {
            return VLXValue();
        }
        if (value.isNil()) {
            return value;
        }
        path = rest;
    }
    return value;
}

constexpr int kMaximumComponentDepth = 64;

std::optional<VLXValue> withComponent(const VLXValue& base, std::string_view path,
                                      const VLXValue& value, int depth = 0) {
    if (path.empty()) {
        return value;
    }
    if (depth > kMaximumComponentDepth) {
        return std::nullopt;
    }
    if (hasType(base, kTransformType)) {
        auto t = withTransformComponent(base.transform3DValue(), path, value);
        return t ? std::optional<VLXValue>(VLXValue::valueWithTransform3D(*t)) : std::nullopt;
    }
    std::string_view rest;
    const std::string_view key = firstSegment(path, &rest);
    const bool leafNumber = rest.empty() && value.isNumber();
    const double v = value.doubleValue();
    if (hasType(base, kPointType)) {
        VLXPoint p = base.pointValue();
        if (!leafNumber || (key != "x" && key != "y")) {
            return std::nullopt;
        }
        (key == "x" ? p.x : p.y) = v;
        return VLXValue::valueWithPoint(p);
    }
    if (hasType(base, kSizeType)) {
        VLXSize s = base.sizeValue();
        if (!leafNumber || (key != "width" && key != "height")) {
            return std::nullopt;
        }
        (key == "width" ? s.width : s.height) = v;
        return VLXValue::valueWithSize(s);
    }
    if (hasType(base, kRectType)) {
        VLXRect r = base.rectValue();
        if (key == "origin" || key == "size") {
            const VLXValue part = key == "origin" ? VLXValue::valueWithPoint(r.origin)
                                                  : VLXValue::valueWithSize(r.size);
            const auto changed = withComponent(part, rest, value, depth + 1);
            if (!changed || !hasType(*changed, key == "origin" ? kPointType : kSizeType)) {
                return std::nullopt;
            }
            if (key == "origin") {
                r.origin = changed->pointValue();
            } else {
                r.size = changed->sizeValue();
            }
            return VLXValue::valueWithRect(r);
        }
        if (!leafNumber) {
            return std::nullopt;
        }
        if (key == "x") {
            r.origin.x = v;
        } else if (key == "y") {
            r.origin.y = v;
        } else if (key == "width") {
            r.size.width = v;
        } else if (key == "height") {
            r.size.height = v;
        } else {
            return std::nullopt;
        }
        return VLXValue::valueWithRect(r);
    }
    if (base.isDictionary()) {
        VLXValue::Dictionary d = base.dictionaryValue();
        const auto it = d.find(key);
        const VLXValue inner = it != d.end() ? it->second : VLXValue();
        auto changed = withComponent(inner, rest, value, depth + 1);
        if (!changed) {
            return std::nullopt;
        }
        if (changed->isNil()) {
            d.erase(std::string(key));
        } else {
            d.insert_or_assign(std::string(key), std::move(*changed));
        }
        return VLXValue(std::move(d));
    }
    return std::nullopt;
}

}  // namespace

bool VLXLayer::isBuiltInKey(std::string_view key) {
    return builtInKeyIndex(key) >= 0;
}

VLXValue VLXLayer::valueForKey(std::string_view key) const {
    switch (builtInKeyIndex(key)) {
        case kBounds:
            return VLXValue::valueWithRect(m_bounds);
        case kPosition:
            return VLXValue::valueWithPoint(m_position);
        case kAnchorPoint:
            return VLXValue::valueWithPoint(m_anchorPoint);
        case kZPosition:
            return VLXValue(m_zPosition);
        case kTransform:
            return VLXValue::valueWithTransform3D(m_transform);
        case kAffineTransform:
            return VLXValue::valueWithAffineTransform(affineTransform());
        case kFrame:
            return VLXValue::valueWithRect(frame());
        case kOpacity:
            return VLXValue(m_opacity);
        case kHidden:
            return VLXValue(m_hidden);
        case kBackgroundColor:
            return VLXValue(m_backgroundColor);
        case kCornerRadius:
            return VLXValue(m_cornerRadius);
        case kBorderWidth:
            return VLXValue(m_borderWidth);
        case kBorderColor:
            return VLXValue(m_borderColor);
        case kMasksToBounds:
            return VLXValue(m_masksToBounds);
        case kMask:
            return VLXValue(m_mask);
        case kContentsScale:
            return VLXValue(m_contentsScale);
        case kContents:
            return VLXValue(m_contents);
        case kName:
            return VLXValue(m_name);
        case kNeedsDisplayOnBoundsChange:
            return VLXValue(m_needsDisplayOnBoundsChange);
        default:
            return storedValue(key);
    }
}

void VLXLayer::setValue(const VLXValue& value, std::string_view key) {
    const int index = builtInKeyIndex(key);
    if (index >= 0) {
        setBuiltInValue(index, value, key);
    } else {
        setStored(key, value, true);
    }
}

void VLXLayer::setBuiltInValue(int keyIndex, const VLXValue& value, std::string_view) {
    const bool number = value.isNumber();
    switch (keyIndex) {
        case kBounds:
            if (hasType(value, kRectType)) {
                setBounds(value.rectValue());
            }
            break;
        case kFrame:
            if (hasType(value, kRectType)) {
                setFrame(value.rectValue());
            }
            break;
        case kPosition:
            if (hasType(value, kPointType)) {
                setPosition(value.pointValue());
            }
            break;
        case kAnchorPoint:
            if (hasType(value, kPointType)) {
                setAnchorPoint(value.pointValue());
            }
            break;
        case kZPosition:
            if (number) {
                setZPosition(value.doubleValue());
            }
            break;
        case kTransform:
        case kAffineTransform:
            if (hasType(value, kTransformType)) {
                setTransform(value.transform3DValue());
            } else if (hasType(value, kAffineType)) {
                setAffineTransform(value.affineTransformValue());
            }
            break;
        case kOpacity:
            if (number) {
                setOpacity(value.doubleValue());
            }
            break;
        case kHidden:
            if (number) {
                setHidden(value.boolValue());
            }
            break;
        case kBackgroundColor:
            if (value.isNil() || value.isColor()) {
                setBackgroundColor(value.colorValue());
            }
            break;
        case kCornerRadius:
            if (number) {
                setCornerRadius(value.doubleValue());
            }
            break;
        case kBorderWidth:
            if (number) {
                setBorderWidth(value.doubleValue());
            }
            break;
        case kBorderColor:
            if (value.isNil() || value.isColor()) {
                setBorderColor(value.colorValue());
            }
            break;
        case kMasksToBounds:
            if (number) {
                setMasksToBounds(value.boolValue());
            }
            break;
        case kMask:
            if (value.isNil()) {
                setMask(nullptr);
            } else if (auto layer = value.objectAs<VLXLayer>()) {
                setMask(std::move(layer));
            }
            break;
        case kContentsScale:
            if (number) {
                setContentsScale(value.doubleValue());
            }
            break;
        case kContents:
            if (value.isNil()) {
                setContents(nullptr);
            } else if (auto image = value.objectAs<VLXImage>()) {
                setContents(std::move(image));
            }
            break;
        case kName:
            if (value.isNil()) {
                setName(std::nullopt);
            } else if (value.isString()) {
                setName(value.stringValue());
            }
            break;
        case kNeedsDisplayOnBoundsChange:
            if (number) {
                setNeedsDisplayOnBoundsChange(value.boolValue());
            }
            break;
        default:
            break;
    }
}

VLXValue VLXLayer::valueForKeyPath(std::string_view keyPath) const {
    std::string_view rest;
    const std::string_view key = firstSegment(keyPath, &rest);
    if (rest.empty()) {
        return valueForKey(key);
    }
    return componentOf(valueForKey(key), rest);
}

void VLXLayer::setValueForKeyPath(const VLXValue& value, std::string_view keyPath) {
    std::string_view rest;
    const std::string_view key = firstSegment(keyPath, &rest);
    if (rest.empty()) {
        setValue(value, key);
        return;
    }
    if (key == "frame") {  // a derived rectangle: its parts are set through setFrame
        if (auto changed = withComponent(VLXValue::valueWithRect(frame()), rest, value)) {
            setFrame(changed->rectValue());
        }
        return;
    }
    if (auto changed = withComponent(valueForKey(key), rest, value)) {
        setValue(*changed, key);
    }
}

// --- store ------------------------------------------------------------------------------------

VLXValue VLXLayer::defaultValueForKey(std::string_view) const {
    return VLXValue();
}

VLXValue VLXLayer::storedValue(std::string_view key) const {
    const auto it = m_store.find(key);
    return it != m_store.end() ? it->second : defaultValueForKey(key);
}

double VLXLayer::storedDouble(std::string_view key, double defaultValue) const {
    const VLXValue v = storedValue(key);
    return v.isNumber() ? v.doubleValue() : defaultValue;
}

bool VLXLayer::storedBool(std::string_view key, bool defaultValue) const {
    const VLXValue v = storedValue(key);
    return v.isNumber() ? v.boolValue() : defaultValue;
}

std::optional<VLXColor> VLXLayer::storedColor(std::string_view key) const {
    return storedValue(key).colorValue();
}

VLXPoint VLXLayer::storedPoint(std::string_view key, VLXPoint defaultValue) const {
    const VLXValue v = storedValue(key);
    return hasType(v, kPointType) ? v.pointValue() : defaultValue;
}

void VLXLayer::setStoredValueWithoutAction(std::string_view key, VLXValue value) {
    if (isBuiltInKey(key)) {
        return;
    }
    setStored(key, std::move(value), false);
}

void VLXLayer::setStored(std::string_view key, VLXValue value, bool runAction) {
    {
        const auto it = m_store.find(key);
        if (it == m_store.end() ? value.isNil() : it->second == value) {
            return;
        }
    }
    if (runAction) {
        willChangeValueForKey(key);
    }
    // Looked up again: the action search may have run arbitrary code.
    if (value.isNil()) {
        const auto it = m_store.find(key);
        if (it != m_store.end()) {
            m_store.erase(it);
        }
    } else {
        m_store.insert_or_assign(std::string(key), std::move(value));
    }
    didChangeValueForKey(key);
}
