#include <VelmarCoreUI/Platform/Layers/VLXLayer.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include <VelmarCoreUI/Platform/Foundation/VLXStringFormat.h>
#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>
#include <VelmarCoreUI/Platform/Layers/Private/VLXLayerInternal.h>
#include <VelmarCoreUI/Platform/Layers/VLXAnimation.h>
#include <VelmarCoreUI/Platform/Layers/VLXTransaction.h>

using vlx::detail::sameDouble;
using vlx::detail::sameRect;
using vlx::detail::sameValue;

namespace {
std::uint64_t g_globalChangeCount = 0;
}  // namespace

// --- delegate ---------------------------------------------------------------------------------

VLXLayerDelegate::~VLXLayerDelegate() = default;

VLXLayerActionAnswer VLXLayerDelegate::actionForLayer(VLXLayer&, std::string_view) {
    return std::nullopt;
}

void VLXLayerDelegate::drawLayer(VLXLayer&, VLXGraphicsContext&) {}

void VLXLayerDelegate::layoutSublayersOfLayer(VLXLayer&) {}

bool VLXLayerDelegate::displayLayer(VLXLayer&) {
    return false;
}

// --- life cycle -------------------------------------------------------------------------------

VLXLayer::VLXLayer() : m_borderColor(VLXColor::blackColor()) {}

std::shared_ptr<VLXLayer> VLXLayer::create() {
    return makeInitialized<VLXLayer>();
}

void VLXLayer::init() {
    VLXObject::init();
    // A new layer belongs to the transaction of its creation: it counts as committed (and gets
    // a presentation layer) once that transaction commits.
    VLXTransaction::ensureImplicitTransaction();
    m_createdAtCommit = vlx::detail::layerCommitCount();
    ++g_globalChangeCount;
}

VLXLayer::~VLXLayer() {
    if (m_animationState) {
        vlx::detail::timelineLayerGone(*this);
    }
    // Tear the subtree down iteratively: a 10 000-level tree must not recurse 10 000 deep.
    // A sublayer we own alone hands its own sublayers (and mask) to the list before it dies, so
    // its destructor finds nothing left to walk.
    std::vector<std::shared_ptr<VLXLayer>> pending;
    // A presentation copy shares its model's mask without owning it: only links that point
    // back at the dying layer are cleared.
    auto release = [&pending](VLXLayer& layer) {
        for (auto& sublayer : layer.m_sublayers) {
            if (sublayer->m_superlayer == &layer) {
                sublayer->m_superlayer = nullptr;
            }
            pending.push_back(std::move(sublayer));
        }
        layer.m_sublayers.clear();
        if (layer.m_mask) {
            if (layer.m_mask->m_maskOwner == &layer) {
                layer.m_mask->m_maskOwner = nullptr;
            }
            pending.push_back(std::move(layer.m_mask));
        }
    };
    release(*this);
    while (!pending.empty()) {
        std::shared_ptr<VLXLayer> layer = std::move(pending.back());
        pending.pop_back();
        if (layer.use_count() == 1) {
            release(*layer);
        }
    }
}

std::shared_ptr<VLXLayer> VLXLayer::newInstance() const {
    return VLXMakeShared<VLXLayer>();
}

void VLXLayer::initWithLayer(const VLXLayer& other) {
    m_bounds = other.m_bounds;
    m_position = other.m_position;
    m_anchorPoint = other.m_anchorPoint;
    m_zPosition = other.m_zPosition;
    m_transform = other.m_transform;
    m_opacity = other.m_opacity;
    m_hidden = other.m_hidden;
    m_masksToBounds = other.m_masksToBounds;
    m_needsDisplayOnBoundsChange = other.m_needsDisplayOnBoundsChange;
    m_backgroundColor = other.m_backgroundColor;
    m_cornerRadius = other.m_cornerRadius;
    m_borderWidth = other.m_borderWidth;
    m_borderColor = other.m_borderColor;
    m_contentsScale = other.m_contentsScale;
    m_contents = other.m_contents;
    m_name = other.m_name;
    m_mask = other.m_mask;  // shared, not owned as a mask: the copy is detached
    m_store = other.m_store;
    m_actions = other.m_actions;
    ++m_generation;
}

std::string VLXLayer::description() const {
    const VLXRect f = frame();
    return VLXStringWithFormat("<%s: %p; frame = {{%g, %g}, {%g, %g}}>", className().c_str(),
                               static_cast<const void*>(this), f.origin.x, f.origin.y, f.size.width,
                               f.size.height);
}

// --- change tracking --------------------------------------------------------------------------

std::uint64_t VLXLayer::globalChangeCount() {
    return g_globalChangeCount;
}

void VLXLayer::didChangeAppearance() {
    ++m_generation;
    if (!m_isPresentation) {
        ++g_globalChangeCount;
    }
}

void VLXLayer::willChangeValueForKey(std::string_view key) {
    if (m_isPresentation) {
        return;
    }
    // One call on the hot path of every setter: opens the implicit transaction and answers
    // whether actions run.
    if (!vlx::detail::layerChangeRunsActions()) {
        return;
    }
    if (auto action = actionForKey(key)) {
        addAnimation(action, std::string(key));
    }
}

void VLXLayer::didChangeValueForKey(std::string_view key) {
    if (!m_isPresentation && needsDisplayForKey(key)) {
        setNeedsDisplay();
    }
    didChangeAppearance();
}

// --- geometry and appearance setters ----------------------------------------------------------

template <class T>
bool VLXLayer::changeProperty(T& member, T value, std::string_view key) {
    if (sameValue(value, member)) {
        return false;
    }
    willChangeValueForKey(key);
    member = std::move(value);
    didChangeValueForKey(key);
    return true;
}

void VLXLayer::setBounds(const VLXRect& bounds) {
    if (sameRect(bounds, m_bounds)) {
        return;
    }
    willChangeValueForKey("bounds");
    const bool sizeChanged = !sameDouble(bounds.size.width, m_bounds.size.width) ||
                             !sameDouble(bounds.size.height, m_bounds.size.height);
    m_bounds = bounds;
    if (sizeChanged && !m_isPresentation) {
        setNeedsLayout();
        if (m_needsDisplayOnBoundsChange) {
            setNeedsDisplay();
        }
    }
    didChangeValueForKey("bounds");
}

void VLXLayer::setPosition(VLXPoint position) {
    changeProperty(m_position, position, "position");
}

void VLXLayer::setAnchorPoint(VLXPoint anchorPoint) {
    changeProperty(m_anchorPoint, anchorPoint, "anchorPoint");
}

void VLXLayer::setZPosition(double zPosition) {
    if (changeProperty(m_zPosition, zPosition, "zPosition") && m_superlayer && !m_isPresentation) {
        m_superlayer->didChangeAppearance();  // the drawing order of the siblings changed
    }
}

void VLXLayer::setTransform(const VLXTransform3D& transform) {
    changeProperty(m_transform, transform, "transform");
}

VLXAffineTransform VLXLayer::affineTransform() const {
    return VLXTransform3DGetAffineTransform(m_transform);
}

void VLXLayer::setAffineTransform(const VLXAffineTransform& transform) {
    setTransform(VLXTransform3DMakeAffineTransform(transform));
}

void VLXLayer::setOpacity(double opacity) {
    changeProperty(m_opacity, opacity, "opacity");
}

void VLXLayer::setHidden(bool hidden) {
    changeProperty(m_hidden, hidden, "hidden");
}

void VLXLayer::setBackgroundColor(std::optional<VLXColor> color) {
    changeProperty(m_backgroundColor, std::move(color), "backgroundColor");
}

void VLXLayer::setCornerRadius(double radius) {
    changeProperty(m_cornerRadius, radius, "cornerRadius");
}

void VLXLayer::setBorderWidth(double width) {
    changeProperty(m_borderWidth, width, "borderWidth");
}

void VLXLayer::setBorderColor(std::optional<VLXColor> color) {
    changeProperty(m_borderColor, std::move(color), "borderColor");
}

void VLXLayer::setMasksToBounds(bool masks) {
    changeProperty(m_masksToBounds, masks, "masksToBounds");
}

void VLXLayer::setContentsScale(double scale) {
    if (std::isfinite(scale) && scale > 0) {
        changeProperty(m_contentsScale, scale, "contentsScale");
    }
}

void VLXLayer::setContents(std::shared_ptr<VLXImage> contents) {
    changeProperty(m_contents, std::move(contents), "contents");
}

void VLXLayer::setName(std::optional<std::string> name) {
    if (name == m_name) {
        return;
    }
    m_name = std::move(name);
    didChangeAppearance();
}

bool VLXLayer::setMask(std::shared_ptr<VLXLayer> mask) {
    if (mask == m_mask) {
        return true;
    }
    if (mask && !canAdopt(mask.get())) {
        return false;
    }
    willChangeValueForKey("mask");
    if (mask) {
        mask->detachFromParent();
        mask->m_maskOwner = this;
    }
    std::shared_ptr<VLXLayer> old = std::move(m_mask);
    if (old && old->m_maskOwner == this) {
        old->m_maskOwner = nullptr;
    }
    m_mask = std::move(mask);
    didChangeValueForKey("mask");
    return true;
}

// --- tree -------------------------------------------------------------------------------------

bool VLXLayer::isDescendantOf(const VLXLayer* layer) const {
    if (!layer) {
        return false;
    }
    for (const VLXLayer* l = this; l; l = vlx::detail::coordinateParent(*l)) {
        if (l == layer) {
            return true;
        }
    }
    return false;
}

bool VLXLayer::canAdopt(const VLXLayer* layer) const {
    // Adopting this layer or an ancestor would make the tree a cycle. Presentation copies are
    // detached snapshots and never form trees.
    if (!layer || m_isPresentation || layer->m_isPresentation) {
        return false;
    }
    // A layer without sublayers or mask can only be an ancestor of itself: building a deep
    // tree top-down then costs no walk up per level.
    if (layer->m_sublayers.empty() && !layer->m_mask) {
        return layer != this;
    }
    return !isDescendantOf(layer);
}

void VLXLayer::detachFromParent() {
    if (m_superlayer) {
        VLXLayer* parent = m_superlayer;
        auto& siblings = parent->m_sublayers;
        auto it = std::find_if(siblings.begin(), siblings.end(),
                               [this](const auto& s) { return s.get() == this; });
        m_superlayer = nullptr;
        if (it != siblings.end()) {
            // Keep this layer alive while it leaves: the caller may hold only a raw pointer.
            std::shared_ptr<VLXLayer> keep = std::move(*it);
            siblings.erase(it);
            parent->noteTreeChange();
        }
    } else if (m_maskOwner) {
        VLXLayer* owner = m_maskOwner;
        m_maskOwner = nullptr;
        std::shared_ptr<VLXLayer> keep = std::move(owner->m_mask);
        owner->didChangeAppearance();
    }
}

void VLXLayer::noteTreeChange() {
    VLXTransaction::ensureImplicitTransaction();
    setNeedsLayout();
    didChangeAppearance();
}

void VLXLayer::insertAdopted(std::shared_ptr<VLXLayer> layer, std::size_t index) {
    VLXLayer* raw = layer.get();
    raw->detachFromParent();
    index = std::min(index, m_sublayers.size());
    m_sublayers.insert(m_sublayers.begin() + static_cast<std::ptrdiff_t>(index), std::move(layer));
    raw->m_superlayer = this;
    noteTreeChange();
    // Marks below the new child must be reachable from the root's passes.
    if (raw->m_subtreeNeedsLayout) {
        raw->m_subtreeNeedsLayout = false;
        raw->markSubtreeNeedsLayout();
    }
    if (raw->m_subtreeNeedsDisplay) {
        raw->m_subtreeNeedsDisplay = false;
        raw->markSubtreeNeedsDisplay();
    }
}

bool VLXLayer::addSublayer(std::shared_ptr<VLXLayer> layer) {
    return insertSublayer(std::move(layer), m_sublayers.size());
}

bool VLXLayer::insertSublayer(std::shared_ptr<VLXLayer> layer, std::size_t index) {
    if (!canAdopt(layer.get())) {
        return false;
    }
    // The index counts the sublayers without `layer`, as if it had left first.
    if (layer->m_superlayer == this) {
        std::size_t current = 0;
        while (m_sublayers[current] != layer) {
            ++current;
        }
        const std::size_t target = std::min(index, m_sublayers.size() - 1);
        if (current == target) {
            return true;
        }
    }
    insertAdopted(std::move(layer), index);
    return true;
}

bool VLXLayer::insertSublayerBelow(std::shared_ptr<VLXLayer> layer, const VLXLayer* sibling) {
    if (!sibling) {
        return insertSublayer(std::move(layer), 0);
    }
    if (sibling->m_superlayer != this || !canAdopt(layer.get())) {
        return false;
    }
    if (layer.get() == sibling) {
        return true;
    }
    layer->detachFromParent();
    const auto it = std::find_if(m_sublayers.begin(), m_sublayers.end(),
                                 [sibling](const auto& s) { return s.get() == sibling; });
    insertAdopted(std::move(layer), static_cast<std::size_t>(it - m_sublayers.begin()));
    return true;
}

bool VLXLayer::insertSublayerAbove(std::shared_ptr<VLXLayer> layer, const VLXLayer* sibling) {
    if (!sibling) {
        return insertSublayer(std::move(layer), m_sublayers.size());
    }
    if (sibling->m_superlayer != this || !canAdopt(layer.get())) {
        return false;
    }
    if (layer.get() == sibling) {
        return true;
    }
    layer->detachFromParent();
    const auto it = std::find_if(m_sublayers.begin(), m_sublayers.end(),
                                 [sibling](const auto& s) { return s.get() == sibling; });
    insertAdopted(std::move(layer), static_cast<std::size_t>(it - m_sublayers.begin()) + 1);
    return true;
}

bool VLXLayer::replaceSublayer(const VLXLayer* oldLayer, std::shared_ptr<VLXLayer> newLayer) {
    if (!oldLayer || oldLayer->m_superlayer != this) {
        return false;
    }
    if (newLayer.get() == oldLayer) {
        return true;
    }
    if (newLayer && !canAdopt(newLayer.get())) {
        return false;
    }
    if (newLayer) {
        newLayer->detachFromParent();
    }
    const auto it = std::find_if(m_sublayers.begin(), m_sublayers.end(),
                                 [oldLayer](const auto& s) { return s.get() == oldLayer; });
    const auto index = static_cast<std::size_t>(it - m_sublayers.begin());
    std::shared_ptr<VLXLayer> keep = m_sublayers[index];
    keep->detachFromParent();
    if (newLayer) {
        insertAdopted(std::move(newLayer), index);
    }
    return true;
}

void VLXLayer::removeFromSuperlayer() {
    if (!m_superlayer && !m_maskOwner) {
        return;
    }
    // Hold ourselves: the parent may own the last reference.
    std::shared_ptr<VLXLayer> keep = sharedFrom<VLXLayer>();
    detachFromParent();
}
