// Creation, geometry, appearance, layout, drawing, conversion, hit testing and description of
// views. The tree lives in VLXViewTree.cpp, animations in VLXViewAnimation.cpp.

#include <VelmarCoreUI/Platform/Views/VLXView.h>

#include <algorithm>
#include <cmath>

#include <VelmarCoreUI/Platform/Device/VLXScreen.h>
#include <VelmarCoreUI/Platform/Foundation/VLXStringFormat.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsImageContext.h>
#include <VelmarCoreUI/Platform/Input/VLXGestureRecognizer.h>
#include <VelmarCoreUI/Platform/Views/Private/VLXViewInternal.h>
#include <VelmarCoreUI/Platform/Views/VLXWindow.h>

namespace {

bool isFinite(double v) {
    return std::isfinite(v);
}

bool finiteRect(const VLXRect& r) {
    return isFinite(r.origin.x) && isFinite(r.origin.y) && isFinite(r.size.width) &&
           isFinite(r.size.height);
}

bool finiteTransform(const VLXAffineTransform& t) {
    return isFinite(t.a) && isFinite(t.b) && isFinite(t.c) && isFinite(t.d) && isFinite(t.tx) &&
           isFinite(t.ty);
}

}  // namespace

// --- creation ---------------------------------------------------------------------------------

VLXView::VLXView() = default;

VLXView::~VLXView() {
    if (m_layer && m_layer->delegate() == this) {
        m_layer->setDelegate(nullptr);
    }
    VLXViewAccess::releaseSubviews(*this);
}

std::shared_ptr<VLXView> VLXView::create() {
    return makeWithFrame<VLXView>(VLXRectZero);
}

std::shared_ptr<VLXView> VLXView::createWithFrame(const VLXRect& frame) {
    return makeWithFrame<VLXView>(frame);
}

std::shared_ptr<VLXLayer> VLXView::layerClass() const {
    return VLXLayer::create();
}

void VLXView::initWithFrame(const VLXRect& frame) {
    VLXObject::init();
    m_layer = layerClass();
    if (!m_layer) {  // a subclass that answers nil still gets a layer to stand on
        m_layer = VLXLayer::create();
    }
    m_layer->setDelegate(this);
    m_layer->setContentsScale(VLXScreen::mainScreen()->scale());
    if (m_drawsContent) {
        // Drawn content follows the size instead of being stretched (there are no content modes).
        m_layer->setNeedsDisplayOnBoundsChange(true);
        m_layer->setNeedsDisplay();
    }
    setFrame(frame);
}

// --- geometry ---------------------------------------------------------------------------------

VLXRect VLXView::frame() const {
    return m_layer->frame();
}

void VLXView::setFrame(const VLXRect& frame) {
    // A frame that is not finite has no place on screen: it is ignored, the view keeps its own.
    if (finiteRect(frame)) {
        m_layer->setFrame(frame);
    }
}

VLXRect VLXView::bounds() const {
    return m_layer->bounds();
}

void VLXView::setBounds(const VLXRect& bounds) {
    if (finiteRect(bounds)) {
        m_layer->setBounds(bounds);
    }
}

VLXPoint VLXView::center() const {
    return m_layer->position();
}

void VLXView::setCenter(VLXPoint center) {
    if (isFinite(center.x) && isFinite(center.y)) {
        m_layer->setPosition(center);
    }
}

VLXAffineTransform VLXView::transform() const {
    return m_layer->affineTransform();
}

void VLXView::setTransform(const VLXAffineTransform& transform) {
    if (finiteTransform(transform)) {
        m_layer->setAffineTransform(transform);
    }
}

// --- appearance -------------------------------------------------------------------------------

double VLXView::alpha() const {
    return m_layer->opacity();
}

void VLXView::setAlpha(double alpha) {
    if (!std::isnan(alpha)) {
        m_layer->setOpacity(std::clamp(alpha, 0.0, 1.0));
    }
}

bool VLXView::isHidden() const {
    return m_layer->isHidden();
}

void VLXView::setHidden(bool hidden) {
    m_layer->setHidden(hidden);
}

std::optional<VLXColor> VLXView::backgroundColor() const {
    return m_layer->backgroundColor();
}

void VLXView::setBackgroundColor(std::optional<VLXColor> color) {
    m_layer->setBackgroundColor(std::move(color));
}

bool VLXView::clipsToBounds() const {
    return m_layer->masksToBounds();
}

void VLXView::setClipsToBounds(bool clips) {
    m_layer->setMasksToBounds(clips);
}

// --- layout -----------------------------------------------------------------------------------

void VLXView::setNeedsLayout() {
    m_layer->setNeedsLayout();
}

bool VLXView::needsLayout() const {
    return m_layer->needsLayout();
}

void VLXView::layoutIfNeeded() {
    // Held: a layoutSubviews below may remove this view from its superview.
    std::shared_ptr<VLXLayer> layer = m_layer;
    layer->layoutIfNeeded();
}

void VLXView::layoutSubviews() {}

VLXSize VLXView::sizeThatFits(VLXSize) const {
    return bounds().size;
}

void VLXView::sizeToFit() {
    VLXSize size = sizeThatFits(bounds().size);
    if (!isFinite(size.width) || !isFinite(size.height)) {
        return;
    }
    VLXRect f = frame();
    f.size = size;
    setFrame(f);
}

void VLXView::layoutSublayersOfLayer(VLXLayer& layer) {
    if (&layer != m_layer.get()) {
        return;
    }
    // Kept alive while its own layout runs: layoutSubviews may remove it from its superview.
    auto self = sharedFrom<VLXView>();
    layoutSubviews();
}

// --- drawing ----------------------------------------------------------------------------------

void VLXView::setNeedsDisplay() {
    if (m_drawsContent) {
        m_layer->setNeedsDisplay();
    }
}

void VLXView::drawRect(const VLXRect&, VLXGraphicsContext&) {}

void VLXView::drawLayer(VLXLayer& layer, VLXGraphicsContext& context) {
    if (!m_drawsContent || &layer != m_layer.get()) {
        return;
    }
    auto self = sharedFrom<VLXView>();
    VLXGraphicsPushContext(context);
    // The pop must happen even when the drawing code throws, or the context stack would keep a
    // context that is about to die.
    struct Pop {
        ~Pop() { VLXGraphicsPopContext(); }
    } pop;
    drawRect(layer.bounds(), context);
}

// --- conversion and hit testing ---------------------------------------------------------------

namespace {
// The layer whose coordinates a null view stands for: the window's, else the root's superlayer.
const VLXLayer* targetLayer(const VLXView& from, const VLXView* view) {
    if (view) {
        return view->layer().get();
    }
    if (VLXWindow* window = from.window()) {
        return window->layer().get();
    }
    return nullptr;
}
}  // namespace

VLXPoint VLXView::convertPointToView(VLXPoint point, const VLXView* view) const {
    return m_layer->convertPointToLayer(point, targetLayer(*this, view));
}

VLXPoint VLXView::convertPointFromView(VLXPoint point, const VLXView* view) const {
    return m_layer->convertPointFromLayer(point, targetLayer(*this, view));
}

VLXRect VLXView::convertRectToView(const VLXRect& rect, const VLXView* view) const {
    return m_layer->convertRectToLayer(rect, targetLayer(*this, view));
}

VLXRect VLXView::convertRectFromView(const VLXRect& rect, const VLXView* view) const {
    return m_layer->convertRectFromLayer(rect, targetLayer(*this, view));
}

std::shared_ptr<VLXView> VLXView::hitTest(VLXPoint point) {
    // `!(alpha >= 0.01)` also skips a NaN opacity set on the layer directly.
    if (isHidden() || !m_userInteractionEnabled || !(alpha() >= 0.01) || !pointInside(point)) {
        return nullptr;
    }
    auto self = sharedFrom<VLXView>();
    // A copy: an override of hitTest or pointInside may edit the tree.
    const Subviews subviews = m_subviews;
    for (auto it = subviews.rbegin(); it != subviews.rend(); ++it) {
        const VLXPoint local = (*it)->m_layer->convertPointFromLayer(point, m_layer.get());
        if (auto hit = (*it)->hitTest(local)) {
            return hit;
        }
    }
    return self;
}

bool VLXView::pointInside(VLXPoint point) const {
    return m_layer->containsPoint(point);
}

// --- touches ----------------------------------------------------------------------------------

// Without a responder chain beyond views, unhandled touches go up the view tree.
void VLXView::touchesBegan(const Touches& touches, const VLXEvent& event) {
    if (m_superview) {
        m_superview->touchesBegan(touches, event);
    }
}

void VLXView::touchesMoved(const Touches& touches, const VLXEvent& event) {
    if (m_superview) {
        m_superview->touchesMoved(touches, event);
    }
}

void VLXView::touchesEnded(const Touches& touches, const VLXEvent& event) {
    if (m_superview) {
        m_superview->touchesEnded(touches, event);
    }
}

void VLXView::touchesCancelled(const Touches& touches, const VLXEvent& event) {
    if (m_superview) {
        m_superview->touchesCancelled(touches, event);
    }
}

// --- gesture recognisers ----------------------------------------------------------------------

void VLXView::addGestureRecognizer(std::shared_ptr<VLXGestureRecognizer> recognizer) {
    if (!recognizer || std::find(m_gestureRecognizers.begin(), m_gestureRecognizers.end(),
                                 recognizer) != m_gestureRecognizers.end()) {
        return;
    }
    if (auto* previous = recognizer->view()) {
        previous->removeGestureRecognizer(recognizer.get());
    }
    m_gestureRecognizers.push_back(recognizer);
    recognizer->attachToView(this);
}

void VLXView::removeGestureRecognizer(const VLXGestureRecognizer* recognizer) {
    auto it = std::find_if(m_gestureRecognizers.begin(), m_gestureRecognizers.end(),
                           [recognizer](const auto& r) { return r.get() == recognizer; });
    if (it == m_gestureRecognizers.end()) {
        return;
    }
    auto removed = *it;
    m_gestureRecognizers.erase(it);
    removed->attachToView(nullptr);
}

// --- description ------------------------------------------------------------------------------

std::string VLXView::description() const {
    const VLXRect f = frame();
    std::string text = VLXStringWithFormat("<%s: %p; frame = (%g %g; %g %g)", className().c_str(),
                                           static_cast<const void*>(this), f.origin.x, f.origin.y,
                                           f.size.width, f.size.height);
    const VLXAffineTransform t = transform();
    if (!VLXAffineTransformIsIdentity(t)) {
        text += VLXStringWithFormat("; transform = [%g, %g, %g, %g, %g, %g]", t.a, t.b, t.c, t.d,
                                    t.tx, t.ty);
    }
    if (clipsToBounds()) {
        text += "; clipsToBounds = YES";
    }
    if (isHidden()) {
        text += "; hidden = YES";
    }
    if (alpha() != 1) {
        text += VLXStringWithFormat("; alpha = %g", alpha());
    }
    if (m_tag != 0) {
        text += VLXStringWithFormat("; tag = %lld", static_cast<long long>(m_tag));
    }
    if (!m_userInteractionEnabled) {
        text += "; userInteractionEnabled = NO";
    }
    text += VLXStringWithFormat("; layer = <%s: %p>>", m_layer->className().c_str(),
                                static_cast<const void*>(m_layer.get()));
    return text;
}

std::string VLXView::recursiveDescription() const {
    std::string text;
    // Iterative, depth first, back to front: deep trees print without deep recursion.
    std::vector<std::pair<const VLXView*, std::size_t>> stack{{this, 0}};
    while (!stack.empty()) {
        auto [view, depth] = stack.back();
        stack.pop_back();
        for (std::size_t i = 0; i < depth; ++i) {
            text += "   | ";
        }
        text += view->description();
        text += '\n';
        for (auto it = view->m_subviews.rbegin(); it != view->m_subviews.rend(); ++it) {
            stack.emplace_back(it->get(), depth + 1);
        }
    }
    return text;
}
