// Frames, hit testing and conversions between layer coordinate spaces.

#include <VelmarCoreUI/Platform/Layers/VLXLayer.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include <VelmarCoreUI/Platform/Layers/Private/VLXLayerInternal.h>

using vlx::detail::coordinateParent;
using vlx::detail::VLXLayerHomography;

namespace vlx::detail {

std::optional<VLXLayerHomography> VLXLayerHomography::inverted() const {
    const auto& a = m;
    const double c00 = a[1][1] * a[2][2] - a[1][2] * a[2][1];
    const double c01 = a[1][2] * a[2][0] - a[1][0] * a[2][2];
    const double c02 = a[1][0] * a[2][1] - a[1][1] * a[2][0];
    const double det = a[0][0] * c00 + a[0][1] * c01 + a[0][2] * c02;
    if (det == 0 || !std::isfinite(det)) {
        return std::nullopt;
    }
    VLXLayerHomography r;
    r.m[0][0] = c00 / det;
    r.m[0][1] = (a[0][2] * a[2][1] - a[0][1] * a[2][2]) / det;
    r.m[0][2] = (a[0][1] * a[1][2] - a[0][2] * a[1][1]) / det;
    r.m[1][0] = c01 / det;
    r.m[1][1] = (a[0][0] * a[2][2] - a[0][2] * a[2][0]) / det;
    r.m[1][2] = (a[0][2] * a[1][0] - a[0][0] * a[1][2]) / det;
    r.m[2][0] = c02 / det;
    r.m[2][1] = (a[0][1] * a[2][0] - a[0][0] * a[2][1]) / det;
    r.m[2][2] = (a[0][0] * a[1][1] - a[0][1] * a[1][0]) / det;
    return r;
}

VLXLayerHomography layerToParent(const VLXLayer& layer) {
    return layerToParent(layer.bounds(), layer.anchorPoint(), layer.transform(), layer.position());
}

VLXLayerHomography layerToParent(const VLXRect& b, VLXPoint anchor, const VLXTransform3D& t,
                                 VLXPoint p) {
    const double ax = VLXRectGetMinX(b) + anchor.x * VLXRectGetWidth(b);
    const double ay = VLXRectGetMinY(b) + anchor.y * VLXRectGetHeight(b);
    // (x − a) · T + p, keeping only the rows and columns that act on the z = 0 plane.
    VLXLayerHomography h;
    h.m[0][0] = t.m11;
    h.m[0][1] = t.m12;
    h.m[0][2] = t.m14;
    h.m[1][0] = t.m21;
    h.m[1][1] = t.m22;
    h.m[1][2] = t.m24;
    h.m[2][0] = t.m41 - ax * t.m11 - ay * t.m21;
    h.m[2][1] = t.m42 - ax * t.m12 - ay * t.m22;
    h.m[2][2] = t.m44 - ax * t.m14 - ay * t.m24;
    // Adding the position after the projection: [X Y W] → [X + pW, Y + pW, W].
    for (int i = 0; i < 3; ++i) {
        h.m[i][0] += h.m[i][2] * p.x;
        h.m[i][1] += h.m[i][2] * p.y;
    }
    return h;
}

}  // namespace vlx::detail

namespace {

// The bounding box of a rectangle's four corners mapped through `map`; NaN when one maps to NaN.
template <class Map>
VLXRect boundingBoxOfMappedCorners(const VLXRect& rect, Map map) {
    if (VLXRectIsNull(rect)) {
        return VLXRectNull;
    }
    const double x0 = VLXRectGetMinX(rect), x1 = VLXRectGetMaxX(rect);
    const double y0 = VLXRectGetMinY(rect), y1 = VLXRectGetMaxY(rect);
    const VLXPoint corners[4] = {map(VLXPoint{x0, y0}), map(VLXPoint{x1, y0}),
                                 map(VLXPoint{x0, y1}), map(VLXPoint{x1, y1})};
    double minX = corners[0].x, maxX = corners[0].x, minY = corners[0].y, maxY = corners[0].y;
    for (const VLXPoint& c : corners) {
        if (std::isnan(c.x) || std::isnan(c.y)) {
            return VLXRect{{NAN, NAN}, {NAN, NAN}};
        }
        minX = std::min(minX, c.x);
        maxX = std::max(maxX, c.x);
        minY = std::min(minY, c.y);
        maxY = std::max(maxY, c.y);
    }
    return VLXRect{{minX, minY}, {maxX - minX, maxY - minY}};
}

VLXRect boundingBoxOfCorners(const VLXRect& rect, const VLXLayerHomography& h) {
    return boundingBoxOfMappedCorners(rect, [&](VLXPoint p) { return h.apply(p); });
}

std::size_t depthOf(const VLXLayer* layer) {
    std::size_t depth = 0;
    for (; layer; layer = coordinateParent(*layer)) {
        ++depth;
    }
    return depth;
}

// Own coordinates of `layer` → coordinates of `ancestor` (null: the root's superlayer).
VLXLayerHomography mapUpTo(const VLXLayer* layer, const VLXLayer* ancestor) {
    VLXLayerHomography h;
    for (; layer && layer != ancestor; layer = coordinateParent(*layer)) {
        h = h.then(vlx::detail::layerToParent(*layer));
    }
    return h;
}

// Maps `point` from `from`'s coordinates to `to`'s through their nearest common ancestor
// (exactness for siblings: no detour through the root).
VLXPoint convert(VLXPoint point, const VLXLayer* from, const VLXLayer* to) {
    if (from == to) {
        return point;
    }
    const VLXLayer* a = from;
    const VLXLayer* b = to;
    std::size_t da = depthOf(a), db = depthOf(b);
    while (da > db) {
        a = coordinateParent(*a);
        --da;
    }
    while (db > da) {
        b = coordinateParent(*b);
        --db;
    }
    while (a != b) {
        a = coordinateParent(*a);
        b = coordinateParent(*b);
    }
    const VLXLayer* common = a;  // null when the trees differ: both roots' superlayer space
    const VLXPoint up = mapUpTo(from, common).apply(point);
    const auto down = mapUpTo(to, common).inverted();
    if (!down) {
        return {NAN, NAN};
    }
    return down->apply(up);
}

VLXRect convertRect(const VLXRect& rect, const VLXLayer* from, const VLXLayer* to) {
    return boundingBoxOfMappedCorners(rect, [&](VLXPoint p) { return convert(p, from, to); });
}

// `point` in the superlayer's coordinates → the layer's own; NaN when the transform is singular.
VLXPoint intoLayer(const VLXLayer& layer, VLXPoint point) {
    const VLXTransform3D& t = layer.transform();
    if (VLXTransform3DIsAffine(t)) {
        // The common case without the projective inverse: p = (l − a) · M + position + t.
        const VLXRect b = layer.bounds();
        const VLXPoint anchor = layer.anchorPoint();
        const double ax = VLXRectGetMinX(b) + anchor.x * VLXRectGetWidth(b);
        const double ay = VLXRectGetMinY(b) + anchor.y * VLXRectGetHeight(b);
        const double dx = point.x - layer.position().x - t.m41;
        const double dy = point.y - layer.position().y - t.m42;
        const double det = t.m11 * t.m22 - t.m12 * t.m21;
        if (t.m11 == 1 && t.m22 == 1 && t.m12 == 0 && t.m21 == 0) {  // translation only
            return {dx + ax, dy + ay};
        }
        if (det == 0 || !std::isfinite(det)) {
            return {NAN, NAN};
        }
        return {(dx * t.m22 - dy * t.m21) / det + ax, (dy * t.m11 - dx * t.m12) / det + ay};
    }
    const auto inverse = vlx::detail::layerToParent(layer).inverted();
    return inverse ? inverse->apply(point) : VLXPoint{NAN, NAN};
}

}  // namespace

// The frame does not depend on the bounds origin (the anchor moves with it): leaving it out
// keeps a non-finite origin from spoiling frames.
VLXRect VLXLayer::frame() const {
    const VLXRect sized{{0, 0}, m_bounds.size};
    return boundingBoxOfCorners(
        sized, vlx::detail::layerToParent(sized, m_anchorPoint, m_transform, m_position));
}

void VLXLayer::setFrame(const VLXRect& frame) {
    const VLXRect f = VLXRectStandardize(frame);
    VLXSize size = f.size;
    if (!VLXTransform3DIsIdentity(m_transform)) {
        // The transformed bounding box of a w × h box is (|a|w + |c|h, |b|w + |d|h): solve it
        // for w and h; when that is singular (a quarter-turn mix), divide by the axis scales.
        const double a = std::fabs(m_transform.m11), b = std::fabs(m_transform.m12);
        const double c = std::fabs(m_transform.m21), d = std::fabs(m_transform.m22);
        const double det = a * d - b * c;
        if (det != 0 && std::isfinite(det) && std::fabs(det) > 1e-9 * (a * d + b * c)) {
            size = {(d * f.size.width - c * f.size.height) / det,
                    (a * f.size.height - b * f.size.width) / det};
        } else {
            const double sx = std::hypot(a, b), sy = std::hypot(c, d);
            size = {sx > 0 ? f.size.width / sx : f.size.width,
                    sy > 0 ? f.size.height / sy : f.size.height};
        }
    }
    setBounds(VLXRect{m_bounds.origin, size});
    // The frame moves with the position one to one: place it so that the origins meet.
    const VLXRect sized{{0, 0}, m_bounds.size};
    const VLXRect atZero = boundingBoxOfCorners(
        sized, vlx::detail::layerToParent(sized, m_anchorPoint, m_transform, VLXPointZero));
    setPosition(VLXPoint{f.origin.x - atZero.origin.x, f.origin.y - atZero.origin.y});
}

bool VLXLayer::containsPoint(VLXPoint point) const {
    return VLXRectContainsPoint(VLXRectStandardize(m_bounds), point);
}

std::shared_ptr<VLXLayer> VLXLayer::hitTest(VLXPoint point) const {
    if (m_hidden) {
        return nullptr;
    }
    VLXPoint local = intoLayer(*this, point);
    if (!containsPoint(local)) {
        return nullptr;
    }
    // Descend into the front-most sublayer that contains the point, as long as there is one:
    // no recursion, so deep trees are fine.
    const VLXLayer* hit = this;
    std::vector<std::pair<double, std::size_t>> order;
    for (;;) {
        const auto& subs = hit->m_sublayers;
        const VLXLayer* next = nullptr;
        VLXPoint nextLocal{};
        auto tryLayer = [&](const VLXLayer* s) {
            if (s->m_hidden) {
                return false;
            }
            const VLXPoint p = intoLayer(*s, local);
            if (!s->containsPoint(p)) {
                return false;
            }
            next = s;
            nextLocal = p;
            return true;
        };
        bool layered = false;
        for (const auto& s : subs) {
            layered = layered || (s->m_zPosition != 0 && !std::isnan(s->m_zPosition));
        }
        if (!layered) {
            for (auto it = subs.rbegin(); it != subs.rend() && !tryLayer(it->get()); ++it) {
            }
        } else {
            // Front-most first: higher zPosition, then later in the list (NaN counts as 0).
            order.clear();
            for (std::size_t i = 0; i < subs.size(); ++i) {
                const double z = std::isnan(subs[i]->m_zPosition) ? 0 : subs[i]->m_zPosition;
                order.emplace_back(z, i);
            }
            std::sort(order.begin(), order.end(), [](const auto& x, const auto& y) {
                return x.first != y.first ? x.first > y.first : x.second > y.second;
            });
            for (const auto& entry : order) {
                if (tryLayer(subs[entry.second].get())) {
                    break;
                }
            }
        }
        if (!next) {
            break;
        }
        hit = next;
        local = nextLocal;
    }
    return std::const_pointer_cast<VLXLayer>(
        std::static_pointer_cast<const VLXLayer>(hit->shared_from_this()));
}

VLXPoint VLXLayer::convertPointFromLayer(VLXPoint point, const VLXLayer* layer) const {
    return convert(point, layer, this);
}

VLXPoint VLXLayer::convertPointToLayer(VLXPoint point, const VLXLayer* layer) const {
    return convert(point, this, layer);
}

VLXRect VLXLayer::convertRectFromLayer(const VLXRect& rect, const VLXLayer* layer) const {
    return convertRect(rect, layer, this);
}

VLXRect VLXLayer::convertRectToLayer(const VLXRect& rect, const VLXLayer* layer) const {
    return convertRect(rect, this, layer);
}
