#include <VelmarCoreUI/Platform/Views/VLXLayoutConstraint.h>

#include <algorithm>
#include <cmath>

#include <VelmarCoreUI/Platform/Foundation/VLXStringFormat.h>

VLXLayoutConstraint::VLXLayoutConstraint(std::shared_ptr<VLXLayoutAnchor> firstAnchor,
                                         std::shared_ptr<VLXLayoutAnchor> secondAnchor,
                                         double constant)
    : m_firstAnchor(std::move(firstAnchor)),
      m_secondAnchor(std::move(secondAnchor)),
      m_constant(constant) {}

VLXLayoutConstraint::~VLXLayoutConstraint() = default;

std::shared_ptr<VLXLayoutConstraint> VLXLayoutConstraint::constraintWithAnchors(
    std::shared_ptr<VLXLayoutAnchor> firstAnchor, std::shared_ptr<VLXLayoutAnchor> secondAnchor,
    double constant) {
    if (!firstAnchor || !std::isfinite(constant) || !firstAnchor->item()) {
        return nullptr;
    }
    if (secondAnchor) {
        // Positions relate only along their own axis, and a size only to a size.
        if (secondAnchor->axis() != firstAnchor->axis() || !secondAnchor->item()) {
            return nullptr;
        }
    } else if (firstAnchor->axis() != VLXLayoutAnchorAxis::Dimension) {
        return nullptr;
    }
    return makeInitialized<VLXLayoutConstraint>(std::move(firstAnchor), std::move(secondAnchor),
                                                constant);
}

std::shared_ptr<VLXObject> VLXLayoutConstraint::secondItem() const {
    return m_secondAnchor ? m_secondAnchor->item() : nullptr;
}

VLXLayoutAttribute VLXLayoutConstraint::secondAttribute() const {
    return m_secondAnchor ? m_secondAnchor->attribute() : VLXLayoutAttributeNotAnAttribute;
}

void VLXLayoutConstraint::setConstant(double constant) {
    if (std::isfinite(constant)) {
        m_constant = constant;
    }
}

void VLXLayoutConstraint::setPriority(VLXLayoutPriority priority) {
    if (!std::isnan(priority)) {
        m_priority = std::clamp(priority, 1.0, VLXLayoutPriorityRequired);
    }
}

void VLXLayoutConstraint::activateConstraints(
    const std::vector<std::shared_ptr<VLXLayoutConstraint>>& list) {
    for (const auto& constraint : list) {
        if (constraint) {
            constraint->setActive(true);
        }
    }
}

void VLXLayoutConstraint::deactivateConstraints(
    const std::vector<std::shared_ptr<VLXLayoutConstraint>>& list) {
    for (const auto& constraint : list) {
        if (constraint) {
            constraint->setActive(false);
        }
    }
}

std::string VLXLayoutConstraint::equationDescription() const {
    std::string text = m_firstAnchor->itemDescription() + " == ";
    if (!m_secondAnchor) {
        return text + VLXStringWithFormat("%g", m_constant);
    }
    text += m_secondAnchor->itemDescription();
    if (m_constant > 0) {
        text += VLXStringWithFormat(" + %g", m_constant);
    } else if (m_constant < 0) {
        text += VLXStringWithFormat(" - %g", -m_constant);
    }
    return text;
}

std::string VLXLayoutConstraint::description() const {
    std::string text =
        VLXStringWithFormat("<%s: %p; ", className().c_str(), static_cast<const void*>(this));
    if (m_identifier) {
        text += "'" + *m_identifier + "' ";
    }
    text += equationDescription();
    if (m_priority != VLXLayoutPriorityRequired) {
        text += VLXStringWithFormat(" @%g", m_priority);
    }
    return text + (m_active ? " (active)>" : " (inactive)>");
}
