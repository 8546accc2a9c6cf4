#include <VelmarCoreUI/Platform/Views/VLXLayoutAnchor.h>

#include <cmath>
#include <functional>

#include <VelmarCoreUI/Platform/Foundation/VLXStringFormat.h>
#include <VelmarCoreUI/Platform/Views/VLXLayoutConstraint.h>
#include <VelmarCoreUI/Platform/Views/VLXLayoutGuide.h>

VLXLayoutAnchorAxis VLXLayoutAttributeAxis(VLXLayoutAttribute attribute) {
    switch (attribute) {
        case VLXLayoutAttributeLeft:
        case VLXLayoutAttributeRight:
        case VLXLayoutAttributeCenterX:
            return VLXLayoutAnchorAxis::X;
        case VLXLayoutAttributeTop:
        case VLXLayoutAttributeBottom:
        case VLXLayoutAttributeCenterY:
            return VLXLayoutAnchorAxis::Y;
        case VLXLayoutAttributeWidth:
        case VLXLayoutAttributeHeight:
            return VLXLayoutAnchorAxis::Dimension;
        default:
            return VLXLayoutAnchorAxis::None;
    }
}

std::string VLXLayoutAttributeName(VLXLayoutAttribute attribute) {
    switch (attribute) {
        case VLXLayoutAttributeLeft:
            return "left";
        case VLXLayoutAttributeRight:
            return "right";
        case VLXLayoutAttributeTop:
            return "top";
        case VLXLayoutAttributeBottom:
            return "bottom";
        case VLXLayoutAttributeWidth:
            return "width";
        case VLXLayoutAttributeHeight:
            return "height";
        case VLXLayoutAttributeCenterX:
            return "centerX";
        case VLXLayoutAttributeCenterY:
            return "centerY";
        default:
            return "notAnAttribute";
    }
}

VLXLayoutAnchor::VLXLayoutAnchor(std::weak_ptr<VLXObject> item, const void* itemAddress,
                                 VLXLayoutAttribute attribute)
    : m_item(std::move(item)), m_itemAddress(itemAddress), m_attribute(attribute) {}

VLXLayoutAnchor::~VLXLayoutAnchor() = default;

std::shared_ptr<VLXLayoutAnchor> VLXLayoutAnchor::anchorWithItem(const VLXObject& item,
                                                                 VLXLayoutAttribute attribute) {
    if (VLXLayoutAttributeAxis(attribute) == VLXLayoutAnchorAxis::None) {
        return nullptr;
    }
    // Anchors are handed out by const getters; the item itself is not const, only the getter.
    auto shared = std::const_pointer_cast<VLXObject>(item.weak_from_this().lock());
    if (!shared) {
        return nullptr;
    }
    return makeInitialized<VLXLayoutAnchor>(std::weak_ptr<VLXObject>(shared),
                                            static_cast<const void*>(&item), attribute);
}

std::shared_ptr<VLXLayoutConstraint> VLXLayoutAnchor::constraintEqualToAnchor(
    const std::shared_ptr<VLXLayoutAnchor>& anchor) const {
    return constraintEqualToAnchor(anchor, 0);
}

std::shared_ptr<VLXLayoutConstraint> VLXLayoutAnchor::constraintEqualToAnchor(
    const std::shared_ptr<VLXLayoutAnchor>& anchor, double constant) const {
    if (!anchor) {
        return nullptr;
    }
    auto self = std::const_pointer_cast<VLXLayoutAnchor>(
        std::static_pointer_cast<const VLXLayoutAnchor>(shared_from_this()));
    return VLXLayoutConstraint::constraintWithAnchors(std::move(self), anchor, constant);
}

std::shared_ptr<VLXLayoutConstraint> VLXLayoutAnchor::constraintEqualToConstant(
    double constant) const {
    auto self = std::const_pointer_cast<VLXLayoutAnchor>(
        std::static_pointer_cast<const VLXLayoutAnchor>(shared_from_this()));
    return VLXLayoutConstraint::constraintWithAnchors(std::move(self), nullptr, constant);
}

bool VLXLayoutAnchor::isEqual(const VLXObject& other) const {
    const auto* anchor = dynamic_cast<const VLXLayoutAnchor*>(&other);
    if (!anchor || anchor->m_attribute != m_attribute) {
        return false;
    }
    // Compared by owner, so anchors of an item that has gone stay equal to each other and never
    // equal an anchor of a new object that happens to reuse its address.
    return !m_item.owner_before(anchor->m_item) && !anchor->m_item.owner_before(m_item);
}

std::size_t VLXLayoutAnchor::hash() const {
    return std::hash<const void*>()(m_itemAddress) * 31 +
           static_cast<std::size_t>(static_cast<VLXInteger>(m_attribute));
}

std::string VLXLayoutAnchor::itemDescription() const {
    const std::string attribute = VLXLayoutAttributeName(m_attribute);
    auto item = m_item.lock();
    if (!item) {
        return "nil." + attribute;
    }
    std::string text = VLXStringWithFormat("%s:%p", item->className().c_str(),
                                           static_cast<const void*>(item.get()));
    if (const auto* guide = dynamic_cast<const VLXLayoutGuide*>(item.get());
        guide && !guide->identifier().empty()) {
        text += "'" + guide->identifier() + "'";
    }
    return text + "." + attribute;
}

std::string VLXLayoutAnchor::description() const {
    return VLXStringWithFormat("<%s: %p; %s>", className().c_str(), static_cast<const void*>(this),
                               itemDescription().c_str());
}
