#pragma once

#include <cmath>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <VelmarCoreUI/Platform/Layers/VLXLayer.h>

class VLXTransactionToken;

// One attached animation of a layer's timeline.
struct VLXLayerAnimationEntry {
    std::optional<std::string> key;
    std::shared_ptr<VLXAnimation> animation;
    // Held until the stop callback has been delivered, so the transaction's completion waits.
    std::shared_ptr<VLXTransactionToken> token;
    double beginTime = 0;    // resolved at the commit
    bool committed = false;  // begin time resolved
    bool started = false;    // start callback queued
    bool stopped = false;    // stop callback queued (kept attached when not removed)
    // The tick's evaluation of a number animation: its index among the timeline's evaluated
    // values (valid while the timeline's registry is up to date), −1 for the general path.
    std::int32_t slot = -1;
};

struct VLXLayer::AnimationState {
    std::vector<VLXLayerAnimationEntry> entries;
    bool hasGeneralEntries = false;  // some entry needs the general path (set by the registry)
    bool registered = false;         // listed in the timeline's animated layers
    bool pending = false;            // listed in the timeline's layers awaiting a commit
};

namespace vlx::detail {

// Same value, NaN included (a NaN setter argument must not count as a change every time).
inline bool sameDouble(double a, double b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}
inline bool samePoint(VLXPoint a, VLXPoint b) {
    return sameDouble(a.x, b.x) && sameDouble(a.y, b.y);
}
inline bool sameRect(const VLXRect& a, const VLXRect& b) {
    return samePoint(a.origin, b.origin) && sameDouble(a.size.width, b.size.width) &&
           sameDouble(a.size.height, b.size.height);
}
inline bool sameTransform(const VLXTransform3D& a, const VLXTransform3D& b) {
    const double* x = &a.m11;
    const double* y = &b.m11;
    for (int i = 0; i < 16; ++i) {
        if (!sameDouble(x[i], y[i])) {
            return false;
        }
    }
    return true;
}
// What a setter compares with: the NaN-aware helpers above for numbers and geometry, == else.
inline bool sameValue(double a, double b) {
    return sameDouble(a, b);
}
inline bool sameValue(VLXPoint a, VLXPoint b) {
    return samePoint(a, b);
}
inline bool sameValue(const VLXRect& a, const VLXRect& b) {
    return sameRect(a, b);
}
inline bool sameValue(const VLXTransform3D& a, const VLXTransform3D& b) {
    return sameTransform(a, b);
}
template <class T>
bool sameValue(const T& a, const T& b) {
    return a == b;
}

// A plane projective map in the row-vector convention: [x y 1] · m = [X Y W], point (X/W, Y/W).
// A layer's own coordinates map to its superlayer's through one of these (the z = 0 plane of
// its 3-D transform, projected).
struct VLXLayerHomography {
    double m[3][3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};

    VLXPoint apply(VLXPoint p) const {
        const double X = p.x * m[0][0] + p.y * m[1][0] + m[2][0];
        const double Y = p.x * m[0][1] + p.y * m[1][1] + m[2][1];
        const double W = p.x * m[0][2] + p.y * m[1][2] + m[2][2];
        if (W == 1) {
            return {X, Y};
        }
        if (!(W > 0)) {  // behind the viewer (or degenerate): no image
            return {NAN, NAN};
        }
        return {X / W, Y / W};
    }
    // this, then other.
    VLXLayerHomography then(const VLXLayerHomography& other) const {
        VLXLayerHomography r;
        for (int i = 0; i < 3; ++i) {
            for (int j = 0; j < 3; ++j) {
                r.m[i][j] =
                    m[i][0] * other.m[0][j] + m[i][1] * other.m[1][j] + m[i][2] * other.m[2][j];
            }
        }
        return r;
    }
    // Nothing when singular or not finite.
    std::optional<VLXLayerHomography> inverted() const;
};

// Own coordinates → superlayer coordinates (for a mask: → its owner's coordinates).
VLXLayerHomography layerToParent(const VLXLayer& layer);
// The map of a layer with these properties.
VLXLayerHomography layerToParent(const VLXRect& bounds, VLXPoint anchorPoint,
                                 const VLXTransform3D& transform, VLXPoint position);
// The parent in the coordinate chain: the superlayer, or the layer masked by it.
inline VLXLayer* coordinateParent(const VLXLayer& layer) {
    return layer.superlayer() ? layer.superlayer() : layer.maskOwner();
}

// Opens the implicit transaction when none is open and tells whether the current transaction
// lets actions run (`!VLXTransaction::disableActions()`), in one call (VLXTransaction.cpp).
bool layerChangeRunsActions();

// Timeline hooks (VLXLayerAnimations.cpp).
// Commits of outermost transactions seen since the first layer was made.
std::uint64_t layerCommitCount();
// The layer dies with animations attached: their stop callbacks go out (finished = false).
void timelineLayerGone(VLXLayer& layer);

}  // namespace vlx::detail
