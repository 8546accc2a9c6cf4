// Display (cached custom drawing) and layout passes of layers.

#include <VelmarCoreUI/Platform/Layers/VLXLayer.h>

#include <cmath>

#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsImageContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>
#include <VelmarCoreUI/Platform/Layers/Private/VLXLayerInternal.h>

namespace {

// Roots of trees with marked layers, served by the run loop's Layout and Display phases.
struct MarkedRoots {
    std::vector<std::weak_ptr<VLXLayer>> layout;
    std::vector<std::weak_ptr<VLXLayer>> display;
    // The lists being served (kept to reuse their storage) and re-entry guards.
    std::vector<std::weak_ptr<VLXLayer>> servingLayout;
    std::vector<std::weak_ptr<VLXLayer>> servingDisplay;
    bool inLayout = false;
    bool inDisplay = false;
};

MarkedRoots& markedRoots() {
    static auto* roots = new MarkedRoots();  // as long-lived as the run loop
    return *roots;
}

std::weak_ptr<VLXLayer> weakLayer(VLXLayer* layer) {
    return std::static_pointer_cast<VLXLayer>(layer->weak_from_this().lock());
}

// Passes of `layoutIfNeeded` that find layers marked by an earlier pass; layout code that keeps
// marking itself would otherwise never stop.
constexpr int kMaximumLayoutPasses = 64;
}  // namespace

// --- display ----------------------------------------------------------------------------------

void VLXLayer::markSubtreeNeedsDisplay() {
    VLXLayer* l = this;
    VLXLayer* last = nullptr;
    for (; l && !l->m_subtreeNeedsDisplay; l = vlx::detail::coordinateParent(*l)) {
        l->m_subtreeNeedsDisplay = true;
        last = l;
    }
    if (!l && last && !last->m_queuedForDisplay) {  // a root newly marked
        last->m_queuedForDisplay = true;
        markedRoots().display.push_back(weakLayer(last));
    }
}

void VLXLayer::displayAllIfNeeded() {
    MarkedRoots& roots = markedRoots();
    if (roots.inDisplay) {
        return;
    }
    roots.inDisplay = true;
    roots.servingDisplay.swap(roots.display);
    roots.display.clear();
    for (const auto& weak : roots.servingDisplay) {
        if (auto root = weak.lock()) {
            root->m_queuedForDisplay = false;
            if (!vlx::detail::coordinateParent(*root)) {
                root->displayTreeIfNeeded();
            }
        }
    }
    roots.servingDisplay.clear();
    roots.inDisplay = false;
}

void VLXLayer::setNeedsDisplay() {
    m_needsDisplay = true;
    if (m_isPresentation) {
        return;
    }
    markSubtreeNeedsDisplay();
    didChangeAppearance();
}

void VLXLayer::displayIfNeeded() {
    if (!m_needsDisplay) {
        return;
    }
    m_needsDisplay = false;
    display();
}

void VLXLayer::displayTreeIfNeeded() {
    // Shared pointers on the stack: drawing code may edit the tree while the pass runs.
    std::vector<std::shared_ptr<VLXLayer>> stack{sharedFrom<VLXLayer>()};
    while (!stack.empty()) {
        std::shared_ptr<VLXLayer> layer = std::move(stack.back());
        stack.pop_back();
        if (!layer->m_subtreeNeedsDisplay) {
            continue;
        }
        layer->m_subtreeNeedsDisplay = false;
        layer->displayIfNeeded();
        if (layer->m_mask) {
            stack.push_back(layer->m_mask);
        }
        for (auto it = layer->m_sublayers.rbegin(); it != layer->m_sublayers.rend(); ++it) {
            stack.push_back(*it);
        }
    }
}

void VLXLayer::display() {
    m_needsDisplay = false;
    if (m_delegate && !m_isPresentation && m_delegate->displayLayer(*this)) {
        return;
    }
    const VLXRect b = VLXRectStandardize(m_bounds);
    const double scale =
        std::isfinite(m_contentsScale) && m_contentsScale > 0 ? m_contentsScale : 1;
    std::shared_ptr<VLXImage> image;
    if (b.size.width > 0 && b.size.height > 0 && std::isfinite(b.origin.x) &&
        std::isfinite(b.origin.y)) {
        // The image context refuses sizes it cannot hold (then there is no context and no
        // contents), so huge or non-finite bounds draw nothing rather than fail.
        VLXGraphicsBeginImageContextWithOptions(b.size, false, scale);
        if (VLXGraphicsContext* context = VLXGraphicsGetCurrentContext()) {
            context->clearRect(VLXRect{{0, 0}, b.size});
            context->translateCTM(-b.origin.x, -b.origin.y);
            drawInContext(*context);
            image = VLXGraphicsGetImageFromCurrentImageContext();
        }
        VLXGraphicsEndImageContext();
    }
    // Made contents replace the old ones without an action (no cross-fade of every redraw).
    m_contents = std::move(image);
    didChangeAppearance();
}

void VLXLayer::drawInContext(VLXGraphicsContext& context) {
    if (m_delegate && !m_isPresentation) {
        m_delegate->drawLayer(*this, context);
    }
}

// --- layout -----------------------------------------------------------------------------------

void VLXLayer::markSubtreeNeedsLayout() {
    VLXLayer* l = this;
    VLXLayer* last = nullptr;
    for (; l && !l->m_subtreeNeedsLayout; l = vlx::detail::coordinateParent(*l)) {
        l->m_subtreeNeedsLayout = true;
        last = l;
    }
    if (!l && last && !last->m_queuedForLayout) {
        last->m_queuedForLayout = true;
        markedRoots().layout.push_back(weakLayer(last));
    }
}

void VLXLayer::layoutAllIfNeeded() {
    MarkedRoots& roots = markedRoots();
    if (roots.inLayout) {
        return;
    }
    roots.inLayout = true;
    roots.servingLayout.swap(roots.layout);
    roots.layout.clear();
    for (const auto& weak : roots.servingLayout) {
        if (auto root = weak.lock()) {
            root->m_queuedForLayout = false;
            if (!vlx::detail::coordinateParent(*root)) {
                root->layoutIfNeeded();
                if (root->m_subtreeNeedsLayout && !root->m_queuedForLayout) {
                    // Still marked after the capped passes: again next turn.
                    root->m_queuedForLayout = true;
                    roots.layout.push_back(root);
                }
            }
        }
    }
    roots.servingLayout.clear();
    roots.inLayout = false;
}

void VLXLayer::setNeedsLayout() {
    m_needsLayout = true;
    if (!m_isPresentation) {
        markSubtreeNeedsLayout();
    }
}

void VLXLayer::layoutIfNeeded() {
    if (m_isPresentation) {
        return;
    }
    std::shared_ptr<VLXLayer> self = sharedFrom<VLXLayer>();
    std::vector<std::shared_ptr<VLXLayer>> stack;
    for (int pass = 0; pass < kMaximumLayoutPasses && m_subtreeNeedsLayout; ++pass) {
        stack.push_back(self);
        while (!stack.empty()) {
            std::shared_ptr<VLXLayer> layer = std::move(stack.back());
            stack.pop_back();
            if (!layer->m_subtreeNeedsLayout) {
                continue;
            }
            layer->m_subtreeNeedsLayout = false;
            if (layer->m_needsLayout) {
                layer->m_needsLayout = false;
                layer->layoutSublayers();
            }
            // Children are read after the parent's layout, so layers it adds or marks take part.
            if (layer->m_mask) {
                stack.push_back(layer->m_mask);
            }
            for (auto it = layer->m_sublayers.rbegin(); it != layer->m_sublayers.rend(); ++it) {
                stack.push_back(*it);
            }
        }
    }
}

void VLXLayer::layoutSublayers() {
    if (m_delegate && !m_isPresentation) {
        m_delegate->layoutSublayersOfLayer(*this);
    }
}
