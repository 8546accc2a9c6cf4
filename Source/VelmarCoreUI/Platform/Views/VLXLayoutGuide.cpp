#include <VelmarCoreUI/Platform/Views/VLXLayoutGuide.h>

#include <algorithm>
#include <cmath>
#include <sstream>

#include <VelmarCoreUI/Platform/Foundation/VLXStringFormat.h>
#include <VelmarCoreUI/Platform/Views/Private/VLXLayoutGuideAccess.h>
#include <VelmarCoreUI/Platform/Views/VLXLayoutAnchor.h>
#include <VelmarCoreUI/Platform/Views/VLXView.h>

namespace {

bool isFiniteRect(const VLXRect& r) {
    return std::isfinite(r.origin.x) && std::isfinite(r.origin.y) && std::isfinite(r.size.width) &&
           std::isfinite(r.size.height);
}

}  // namespace

namespace vlx::detail {

std::shared_ptr<VLXView> sharedView(const VLXView& view) {
    return std::const_pointer_cast<VLXView>(
        std::static_pointer_cast<const VLXView>(view.weak_from_this().lock()));
}

std::shared_ptr<VLXLayoutGuide> LayoutGuideAccess::make(const VLXView& owner,
                                                        VLXLayoutGuide::Role role,
                                                        const char* identifier) {
    auto guide = VLXLayoutGuide::create();
    guide->m_owningView = sharedView(owner);
    guide->m_role = role;
    guide->m_identifier = identifier;
    return guide;
}

std::shared_ptr<VLXLayoutGuide> LayoutGuideAccess::makeSafeAreaGuide(const VLXView& owner) {
    return make(owner, VLXLayoutGuide::Role::SafeArea, "VLXViewSafeAreaLayoutGuide");
}

std::shared_ptr<VLXLayoutGuide> LayoutGuideAccess::makeTopLayoutGuide(const VLXView& owner) {
    return make(owner, VLXLayoutGuide::Role::TopLayout, "VLXViewControllerTopLayoutGuide");
}

std::shared_ptr<VLXLayoutGuide> LayoutGuideAccess::makeBottomLayoutGuide(const VLXView& owner) {
    return make(owner, VLXLayoutGuide::Role::BottomLayout, "VLXViewControllerBottomLayoutGuide");
}

}  // namespace vlx::detail

std::shared_ptr<VLXLayoutGuide> VLXLayoutGuide::create() {
    return makeInitialized<VLXLayoutGuide>();
}

VLXLayoutGuide::~VLXLayoutGuide() = default;

VLXRect VLXLayoutGuide::layoutFrame() const {
    auto view = m_owningView.lock();
    if (!view || m_role == Role::Free) {
        return VLXRectZero;
    }
    const VLXRect bounds = view->bounds();
    const VLXEdgeInsets insets = view->safeAreaInsets();
    if (!isFiniteRect(bounds)) {
        return VLXRectZero;
    }
    switch (m_role) {
        case Role::SafeArea:
            return VLXEdgeInsetsInsetRect(bounds, insets);
        case Role::TopLayout:
            return VLXRectMake(bounds.origin.x, bounds.origin.y, bounds.size.width, insets.top);
        case Role::BottomLayout:
            return VLXRectMake(bounds.origin.x,
                               bounds.origin.y + bounds.size.height - insets.bottom,
                               bounds.size.width, insets.bottom);
        case Role::Free:
            break;
    }
    return VLXRectZero;
}

std::shared_ptr<VLXLayoutAnchor> VLXLayoutGuide::topAnchor() const {
    return VLXLayoutAnchor::anchorWithItem(*this, VLXLayoutAttributeTop);
}
std::shared_ptr<VLXLayoutAnchor> VLXLayoutGuide::leftAnchor() const {
    return VLXLayoutAnchor::anchorWithItem(*this, VLXLayoutAttributeLeft);
}
std::shared_ptr<VLXLayoutAnchor> VLXLayoutGuide::bottomAnchor() const {
    return VLXLayoutAnchor::anchorWithItem(*this, VLXLayoutAttributeBottom);
}
std::shared_ptr<VLXLayoutAnchor> VLXLayoutGuide::rightAnchor() const {
    return VLXLayoutAnchor::anchorWithItem(*this, VLXLayoutAttributeRight);
}
std::shared_ptr<VLXLayoutAnchor> VLXLayoutGuide::centerXAnchor() const {
    return VLXLayoutAnchor::anchorWithItem(*this, VLXLayoutAttributeCenterX);
}
std::shared_ptr<VLXLayoutAnchor> VLXLayoutGuide::centerYAnchor() const {
    return VLXLayoutAnchor::anchorWithItem(*this, VLXLayoutAttributeCenterY);
}
std::shared_ptr<VLXLayoutAnchor> VLXLayoutGuide::widthAnchor() const {
    return VLXLayoutAnchor::anchorWithItem(*this, VLXLayoutAttributeWidth);
}
std::shared_ptr<VLXLayoutAnchor> VLXLayoutGuide::heightAnchor() const {
    return VLXLayoutAnchor::anchorWithItem(*this, VLXLayoutAttributeHeight);
}

std::string VLXLayoutGuide::description() const {
    std::ostringstream frame;
    frame << layoutFrame();
    return VLXStringWithFormat("<%s: %p; identifier = %s; layoutFrame = %s>", className().c_str(),
                               static_cast<const void*>(this), m_identifier.c_str(),
                               frame.str().c_str());
}
