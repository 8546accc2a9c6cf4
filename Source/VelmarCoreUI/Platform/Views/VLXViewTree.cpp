// The view tree: adding, inserting, reordering and removing subviews with their layers, the
// move hooks, window lookup and teardown.

#include <VelmarCoreUI/Platform/Views/VLXView.h>

#include <algorithm>
#include <limits>

#include <VelmarCoreUI/Platform/Device/VLXScreen.h>
#include <VelmarCoreUI/Platform/Views/Private/VLXViewInternal.h>
#include <VelmarCoreUI/Platform/Views/VLXWindow.h>

namespace {

// The views of a subtree, parents first, held so that hooks may edit the tree meanwhile.
std::vector<std::shared_ptr<VLXView>> subtreeOf(VLXView& root) {
    std::vector<std::shared_ptr<VLXView>> result;
    std::vector<std::shared_ptr<VLXView>> stack{root.sharedFrom<VLXView>()};
    while (!stack.empty()) {
        auto view = std::move(stack.back());
        stack.pop_back();
        const auto& subviews = view->subviews();
        for (auto it = subviews.rbegin(); it != subviews.rend(); ++it) {
            stack.push_back(*it);
        }
        result.push_back(std::move(view));
    }
    return result;
}

std::size_t indexOf(const VLXView::Subviews& subviews, const VLXView* view) {
    const auto it = std::find_if(subviews.begin(), subviews.end(),
                                 [view](const auto& v) { return v.get() == view; });
    return static_cast<std::size_t>(it - subviews.begin());
}

constexpr std::size_t kFront = std::numeric_limits<std::size_t>::max();

}  // namespace

// --- VLXViewAccess ----------------------------------------------------------------------------

void VLXViewAccess::releaseSubviews(VLXView& view) {
    std::vector<std::shared_ptr<VLXView>> pending;
    auto release = [&pending](VLXView& v) {
        for (auto& subview : v.m_subviews) {
            subview->m_superview = nullptr;
            if (subview.use_count() > 1) {
                // It lives on elsewhere, detached: its layer leaves ours.
                if (v.m_layer && subview->m_layer->superlayer() == v.m_layer.get()) {
                    subview->m_layer->removeFromSuperlayer();
                }
            } else {
                pending.push_back(std::move(subview));
            }
        }
        v.m_subviews.clear();
    };
    release(view);
    while (!pending.empty()) {
        std::shared_ptr<VLXView> v = std::move(pending.back());
        pending.pop_back();
        release(*v);  // v then dies with no subviews left to walk
    }
}

void VLXViewAccess::willMoveToWindow(VLXView& root, VLXWindow* newWindow) {
    for (const auto& view : subtreeOf(root)) {
        view->willMoveToWindow(newWindow);
    }
}

void VLXViewAccess::applyContentsScale(VLXView& root, double scale) {
    for (const auto& view : subtreeOf(root)) {
        if (view->m_layer->contentsScale() != scale) {
            view->m_layer->setContentsScale(scale);
            if (view->m_drawsContent) {
                view->m_layer->setNeedsDisplay();
            }
        }
    }
}

void VLXViewAccess::didMoveToWindow(VLXView& root, VLXWindow* newWindow) {
    const std::shared_ptr<VLXScreen> screen =
        newWindow && newWindow->screen() ? newWindow->screen() : VLXScreen::mainScreen();
    applyContentsScale(root, screen->scale());
    for (const auto& view : subtreeOf(root)) {
        view->didMoveToWindow();
    }
}

// --- queries ----------------------------------------------------------------------------------

VLXWindow* VLXView::window() const {
    for (const VLXView* v = this; v; v = v->m_superview) {
        if (v->m_isWindow) {
            return static_cast<VLXWindow*>(const_cast<VLXView*>(v));
        }
    }
    return nullptr;
}

bool VLXView::isDescendantOfView(const VLXView* view) const {
    if (!view) {
        return false;
    }
    for (const VLXView* v = this; v; v = v->m_superview) {
        if (v == view) {
            return true;
        }
    }
    return false;
}

VLXView* VLXView::viewWithTag(std::int64_t tag) {
    std::vector<VLXView*> stack{this};
    while (!stack.empty()) {
        VLXView* view = stack.back();
        stack.pop_back();
        if (view->m_tag == tag) {
            return view;
        }
        for (auto it = view->m_subviews.rbegin(); it != view->m_subviews.rend(); ++it) {
            stack.push_back(it->get());
        }
    }
    return nullptr;
}

// --- hooks ------------------------------------------------------------------------------------

void VLXView::willMoveToSuperview(VLXView*) {}
void VLXView::didMoveToSuperview() {}
void VLXView::willMoveToWindow(VLXWindow*) {}
void VLXView::didMoveToWindow() {}
void VLXView::didAddSubview(VLXView&) {}
void VLXView::willRemoveSubview(VLXView&) {}

// --- editing ----------------------------------------------------------------------------------

namespace {
// Puts the layer of the subview at `index` just below the layer of the subview above it, or in
// front of every sublayer when it is frontmost.
void placeLayer(VLXLayer& layer, const VLXView::Subviews& subviews, std::size_t index) {
    const std::shared_ptr<VLXLayer>& sublayer = subviews[index]->layer();
    if (index + 1 < subviews.size()) {
        const VLXLayer* above = subviews[index + 1]->layer().get();
        if (above->superlayer() == &layer && layer.insertSublayerBelow(sublayer, above)) {
            return;
        }
    }
    layer.addSublayer(sublayer);
}
}  // namespace

bool VLXView::addSubview(std::shared_ptr<VLXView> view) {
    return insertSubview(std::move(view), kFront);
}

bool VLXView::insertSubview(std::shared_ptr<VLXView> view, std::size_t index) {
    if (!view || isDescendantOfView(view.get())) {
        return false;  // null, this view or one of its ancestors
    }
    auto self = sharedFrom<VLXView>();
    if (view->m_superview != this) {
        VLXView* oldSuperview = view->m_superview;
        VLXWindow* oldWindow = view->window();
        VLXWindow* newWindow = window();
        if (oldSuperview) {
            oldSuperview->willRemoveSubview(*view);
        }
        view->willMoveToSuperview(this);
        if (oldWindow != newWindow) {
            VLXViewAccess::willMoveToWindow(*view, newWindow);
        }
        // The hooks may have edited the tree: check again.
        if (isDescendantOfView(view.get())) {
            return false;
        }
        if (view->m_superview && view->m_superview != this) {
            VLXView* from = view->m_superview;
            from->m_subviews.erase(from->m_subviews.begin() + static_cast<std::ptrdiff_t>(indexOf(
                                                                  from->m_subviews, view.get())));
            view->m_superview = nullptr;
        }
        if (view->m_superview != this) {
            index = std::min(index, m_subviews.size());
            m_subviews.insert(m_subviews.begin() + static_cast<std::ptrdiff_t>(index), view);
            view->m_superview = this;
            placeLayer(*m_layer, m_subviews, index);
            newWindow = window();
            if (oldWindow != newWindow) {
                VLXViewAccess::didMoveToWindow(*view, newWindow);
            }
            view->didMoveToSuperview();
            didAddSubview(*view);
            view->setNeedsLayout();
            setNeedsLayout();
            return true;
        }
        // A hook added it here already: what is left is the move to `index`.
    }
    const std::size_t from = indexOf(m_subviews, view.get());
    m_subviews.erase(m_subviews.begin() + static_cast<std::ptrdiff_t>(from));
    index = std::min(index, m_subviews.size());
    m_subviews.insert(m_subviews.begin() + static_cast<std::ptrdiff_t>(index), view);
    placeLayer(*m_layer, m_subviews, index);
    view->setNeedsLayout();
    setNeedsLayout();
    return true;
}

bool VLXView::insertSubviewAbove(std::shared_ptr<VLXView> view, const VLXView* sibling) {
    if (!view || !sibling || sibling->m_superview != this) {
        return false;
    }
    if (view.get() == sibling) {
        return true;  // already where it is asked to be
    }
    std::size_t index = indexOf(m_subviews, sibling);
    if (view->m_superview == this && indexOf(m_subviews, view.get()) < index) {
        --index;  // counted once the view left its place
    }
    return insertSubview(std::move(view), index + 1);
}

bool VLXView::insertSubviewBelow(std::shared_ptr<VLXView> view, const VLXView* sibling) {
    if (!view || !sibling || sibling->m_superview != this) {
        return false;
    }
    if (view.get() == sibling) {
        return true;
    }
    std::size_t index = indexOf(m_subviews, sibling);
    if (view->m_superview == this && indexOf(m_subviews, view.get()) < index) {
        --index;
    }
    return insertSubview(std::move(view), index);
}

void VLXView::bringSubviewToFront(const VLXView* view) {
    if (view && view->m_superview == this) {
        insertSubview(m_subviews[indexOf(m_subviews, view)], kFront);
    }
}

void VLXView::sendSubviewToBack(const VLXView* view) {
    if (view && view->m_superview == this) {
        insertSubview(m_subviews[indexOf(m_subviews, view)], 0);
    }
}

void VLXView::removeFromSuperview() {
    if (!m_superview) {
        return;
    }
    auto self = sharedFrom<VLXView>();
    auto superview = m_superview->sharedFrom<VLXView>();
    VLXWindow* oldWindow = window();
    superview->willRemoveSubview(*this);
    willMoveToSuperview(nullptr);
    if (oldWindow) {
        VLXViewAccess::willMoveToWindow(*this, nullptr);
    }
    if (m_superview) {  // a hook may have removed it already
        VLXView* parent = m_superview;
        parent->m_subviews.erase(parent->m_subviews.begin() +
                                 static_cast<std::ptrdiff_t>(indexOf(parent->m_subviews, this)));
        m_superview = nullptr;
        if (m_layer->superlayer() == parent->m_layer.get()) {
            m_layer->removeFromSuperlayer();
        }
    }
    if (oldWindow && !window()) {
        VLXViewAccess::didMoveToWindow(*this, nullptr);
    }
    didMoveToSuperview();
}
