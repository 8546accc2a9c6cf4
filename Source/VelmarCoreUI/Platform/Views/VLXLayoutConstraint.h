#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <VelmarCoreUI/Platform/Foundation/VLXObject.h>
#include <VelmarCoreUI/Platform/Foundation/VLXTypes.h>
#include <VelmarCoreUI/Platform/Views/VLXLayoutAnchor.h>
#include <VelmarCoreUI/VLXExport.h>

/// How the two sides of a constraint compare, with the platform's values.
enum VLXLayoutRelation : VLXInteger {
    VLXLayoutRelationLessThanOrEqual = -1,
    VLXLayoutRelationEqual = 0,
    VLXLayoutRelationGreaterThanOrEqual = 1,
};

/// Priorities run from 1 to 1000; 1000 is required.
using VLXLayoutPriority = double;
inline constexpr VLXLayoutPriority VLXLayoutPriorityRequired = 1000;
inline constexpr VLXLayoutPriority VLXLayoutPriorityDefaultHigh = 750;
inline constexpr VLXLayoutPriority VLXLayoutPriorityDefaultLow = 250;

/// "first = second × multiplier + constant", or "first = constant" without a second anchor.
///
/// Constraints are made by the anchors (`constraintEqualToAnchor` …). They are records: there
/// is no layout solver, so `active` is only stored (NO at creation) and never moves a view.
/// The anchors are held strongly and hold their items weakly, so a constraint keeps no view
/// alive; its items read nil once they are gone.
class VLX_EXPORT VLXLayoutConstraint : public VLXObject {
public:
    /// The constraint the anchors build; nil for a nil first anchor, anchors of different axes,
    /// a second anchor missing for a position attribute, or a non-finite constant.
    static std::shared_ptr<VLXLayoutConstraint> constraintWithAnchors(
        std::shared_ptr<VLXLayoutAnchor> firstAnchor, std::shared_ptr<VLXLayoutAnchor> secondAnchor,
        double constant);
    ~VLXLayoutConstraint() override;

    std::shared_ptr<VLXObject> firstItem() const { return m_firstAnchor->item(); }
    const std::shared_ptr<VLXLayoutAnchor>& firstAnchor() const { return m_firstAnchor; }
    VLXLayoutAttribute firstAttribute() const { return m_firstAnchor->attribute(); }
    VLXLayoutRelation relation() const { return VLXLayoutRelationEqual; }
    /// Nil for a constraint to a constant.
    std::shared_ptr<VLXObject> secondItem() const;
    const std::shared_ptr<VLXLayoutAnchor>& secondAnchor() const { return m_secondAnchor; }
    /// `VLXLayoutAttributeNotAnAttribute` for a constraint to a constant.
    VLXLayoutAttribute secondAttribute() const;
    double multiplier() const { return 1; }

    double constant() const { return m_constant; }
    /// Non-finite values are ignored.
    void setConstant(double constant);
    /// 1000 (required) by default.
    VLXLayoutPriority priority() const { return m_priority; }
    /// Values outside 1 … 1000 are clamped into it; NaN is ignored.
    void setPriority(VLXLayoutPriority priority);
    /// NO at creation; stored only.
    bool isActive() const { return m_active; }
    void setActive(bool active) { m_active = active; }
    /// Shown in the description when set.
    const std::optional<std::string>& identifier() const { return m_identifier; }
    void setIdentifier(std::optional<std::string> identifier) {
        m_identifier = std::move(identifier);
    }

    /// Set `active` on each (nil entries are skipped).
    static void activateConstraints(const std::vector<std::shared_ptr<VLXLayoutConstraint>>& list);
    static void deactivateConstraints(
        const std::vector<std::shared_ptr<VLXLayoutConstraint>>& list);

    /// "<VLXLayoutConstraint: 0x…; VLXView:0x….top == VLXView:0x….top + 8 (inactive)>", with
    /// the identifier in quotes before the equation and "@750" after it when not required.
    std::string description() const override;
    /// The equation alone: "VLXView:0x….width == 40".
    std::string equationDescription() const;

protected:
    VLXLayoutConstraint(std::shared_ptr<VLXLayoutAnchor> firstAnchor,
                        std::shared_ptr<VLXLayoutAnchor> secondAnchor, double constant);

private:
    std::shared_ptr<VLXLayoutAnchor> m_firstAnchor;
    std::shared_ptr<VLXLayoutAnchor> m_secondAnchor;
    std::optional<std::string> m_identifier;
    double m_constant;
    VLXLayoutPriority m_priority = VLXLayoutPriorityRequired;
    bool m_active = false;
};
