// The constraint and safe-area members of VLXView.
#include <VelmarCoreUI/Platform/Views/VLXView.h>

#include <algorithm>
#include <cmath>

#include <VelmarCoreUI/Platform/Views/Private/VLXLayoutGuideAccess.h>
#include <VelmarCoreUI/Platform/Views/VLXLayoutAnchor.h>
#include <VelmarCoreUI/Platform/Views/VLXLayoutGuide.h>
#include <VelmarCoreUI/Platform/Views/VLXWindow.h>

std::shared_ptr<VLXLayoutAnchor> VLXView::topAnchor() const {
    return VLXLayoutAnchor::anchorWithItem(*this, VLXLayoutAttributeTop);
}
std::shared_ptr<VLXLayoutAnchor> VLXView::leftAnchor() const {
    return VLXLayoutAnchor::anchorWithItem(*this, VLXLayoutAttributeLeft);
}
std::shared_ptr<VLXLayoutAnchor> VLXView::bottomAnchor() const {
    return VLXLayoutAnchor::anchorWithItem(*this, VLXLayoutAttributeBottom);
}
std::shared_ptr<VLXLayoutAnchor> VLXView::rightAnchor() const {
    return VLXLayoutAnchor::anchorWithItem(*this, VLXLayoutAttributeRight);
}
std::shared_ptr<VLXLayoutAnchor> VLXView::centerXAnchor() const {
    return VLXLayoutAnchor::anchorWithItem(*this, VLXLayoutAttributeCenterX);
}
std::shared_ptr<VLXLayoutAnchor> VLXView::centerYAnchor() const {
    return VLXLayoutAnchor::anchorWithItem(*this, VLXLayoutAttributeCenterY);
}
std::shared_ptr<VLXLayoutAnchor> VLXView::widthAnchor() const {
    return VLXLayoutAnchor::anchorWithItem(*this, VLXLayoutAttributeWidth);
}
std::shared_ptr<VLXLayoutAnchor> VLXView::heightAnchor() const {
    return VLXLayoutAnchor::anchorWithItem(*this, VLXLayoutAttributeHeight);
}

namespace {

bool isFinite(const VLXRect& r) {
    return std::isfinite(r.origin.x) && std::isfinite(r.origin.y) && std::isfinite(r.size.width) &&
           std::isfinite(r.size.height);
}

// How far an unsafe strip [stripStart, stripEnd) reaches into the span [start, end) from its
// near edge: the distance from the span's start to the strip's end when they overlap.
double reach(double start, double end, double stripStart, double stripEnd) {
    if (stripEnd <= stripStart || stripEnd <= start || stripStart >= end) {
        return 0;
    }
    return std::min(stripEnd, end) - start;
}

}  // namespace

VLXEdgeInsets VLXView::safeAreaInsets() const {
    const VLXWindow* window = this->window();
    if (!window) {
        return VLXEdgeInsetsZero;
    }
    const VLXRect windowBounds = VLXRectStandardize(window->bounds());
    const VLXRect rect = VLXRectStandardize(convertRectToView(bounds(), window));
    if (!isFinite(windowBounds) || !isFinite(rect) || rect.size.width <= 0 ||
        rect.size.height <= 0) {
        return VLXEdgeInsetsZero;
    }
    // The window stores only finite, non-negative insets; each one is the strip along its edge.
    const VLXEdgeInsets insets = window->safeAreaInsets();
    const double wx0 = windowBounds.origin.x;
    const double wy0 = windowBounds.origin.y;
    const double wx1 = wx0 + windowBounds.size.width;
    const double wy1 = wy0 + windowBounds.size.height;
    const double x0 = rect.origin.x;
    const double y0 = rect.origin.y;
    const double x1 = x0 + rect.size.width;
    const double y1 = y0 + rect.size.height;
    // A strip counts only where the view lies across it (it spans the window's whole width or
    // height).
    const bool acrossX = x0 < wx1 && x1 > wx0;
    const bool acrossY = y0 < wy1 && y1 > wy0;
    VLXEdgeInsets result{};
    if (acrossX) {
        result.top = reach(y0, y1, wy0, wy0 + insets.top);
        // Mirrored: measured from the view's bottom edge upwards.
        result.bottom = reach(-y1, -y0, -wy1, -(wy1 - insets.bottom));
    }
    if (acrossY) {
        result.left = reach(x0, x1, wx0, wx0 + insets.left);
        result.right = reach(-x1, -x0, -wx1, -(wx1 - insets.right));
    }
    return result;
}

const std::shared_ptr<VLXLayoutGuide>& VLXView::safeAreaLayoutGuide() const {
    if (!m_safeAreaLayoutGuide) {
        m_safeAreaLayoutGuide = vlx::detail::LayoutGuideAccess::makeSafeAreaGuide(*this);
    }
    return m_safeAreaLayoutGuide;
}
