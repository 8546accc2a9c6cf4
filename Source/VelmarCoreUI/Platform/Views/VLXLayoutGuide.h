#pragma once

#include <memory>
#include <optional>
#include <string>

#include <VelmarCoreUI/Platform/Foundation/VLXObject.h>
#include <VelmarCoreUI/Platform/Primitives/VLXGeometry.h>
#include <VelmarCoreUI/VLXExport.h>

class VLXLayoutAnchor;
class VLXView;

namespace vlx::detail {
struct LayoutGuideAccess;
}

/// A rectangle of a view that constraints can refer to without a view of its own.
///
/// Without a layout solver a guide's frame is derived, not solved: the safe-area guide of a
/// view (`VLXView::safeAreaLayoutGuide()`) is the view's bounds inset by its safe-area insets,
/// a view controller's legacy top guide is the strip of the bounds above the safe area and its
/// bottom guide the strip below it. A guide made with `create()` belongs to no view and its
/// frame is zero. The owning view is held weakly (the view owns its guides).
class VLX_EXPORT VLXLayoutGuide : public VLXObject {
public:
    static std::shared_ptr<VLXLayoutGuide> create();
    ~VLXLayoutGuide() override;

    /// The view whose coordinates `layoutFrame` is in; nil for a free guide or once it is gone.
    std::shared_ptr<VLXView> owningView() const { return m_owningView.lock(); }
    /// In the owning view's bounds coordinates; zero without an owning view, and zero when the
    /// view's geometry is not finite.
    VLXRect layoutFrame() const;

    /// "VLXViewSafeAreaLayoutGuide", "VLXViewControllerTopLayoutGuide",
    /// "VLXViewControllerBottomLayoutGuide"; "" for a guide made with `create()` unless set.
    const std::string& identifier() const { return m_identifier; }
    void setIdentifier(std::string identifier) { m_identifier = std::move(identifier); }

    std::shared_ptr<VLXLayoutAnchor> topAnchor() const;
    std::shared_ptr<VLXLayoutAnchor> leftAnchor() const;
    std::shared_ptr<VLXLayoutAnchor> bottomAnchor() const;
    std::shared_ptr<VLXLayoutAnchor> rightAnchor() const;
    std::shared_ptr<VLXLayoutAnchor> centerXAnchor() const;
    std::shared_ptr<VLXLayoutAnchor> centerYAnchor() const;
    std::shared_ptr<VLXLayoutAnchor> widthAnchor() const;
    std::shared_ptr<VLXLayoutAnchor> heightAnchor() const;

    /// "<VLXLayoutGuide: 0x…; identifier = …; layoutFrame = {{x, y}, {w, h}}>".
    std::string description() const override;

protected:
    VLXLayoutGuide() = default;

private:
    friend struct vlx::detail::LayoutGuideAccess;
    enum class Role { Free, SafeArea, TopLayout, BottomLayout };

    std::weak_ptr<VLXView> m_owningView;
    std::string m_identifier;
    Role m_role = Role::Free;
};
