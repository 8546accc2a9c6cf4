#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include <VelmarCoreUI/Platform/Foundation/VLXObject.h>
#include <VelmarCoreUI/Platform/Foundation/VLXTypes.h>
#include <VelmarCoreUI/VLXExport.h>

class VLXLayoutConstraint;

/// The attribute of an item that a constraint relates, with the platform's values.
enum VLXLayoutAttribute : VLXInteger {
    VLXLayoutAttributeNotAnAttribute = 0,
    VLXLayoutAttributeLeft = 1,
    VLXLayoutAttributeRight = 2,
    VLXLayoutAttributeTop = 3,
    VLXLayoutAttributeBottom = 4,
    VLXLayoutAttributeWidth = 7,
    VLXLayoutAttributeHeight = 8,
    VLXLayoutAttributeCenterX = 9,
    VLXLayoutAttributeCenterY = 10,
};

/// Which anchors can be related to each other: only anchors of the same axis.
enum class VLXLayoutAnchorAxis {
    None,       ///< not an attribute
    X,          ///< left, right, centre x
    Y,          ///< top, bottom, centre y
    Dimension,  ///< width, height
};

/// The axis `attribute` belongs to.
VLX_EXPORT VLXLayoutAnchorAxis VLXLayoutAttributeAxis(VLXLayoutAttribute attribute);
/// "left", "top", "centerX", "width" …; "notAnAttribute" for anything else.
VLX_EXPORT std::string VLXLayoutAttributeName(VLXLayoutAttribute attribute);

/// One attribute of one item (a view or a layout guide), for building constraints.
///
/// The item is held weakly: an anchor never keeps its view alive, and once the item is gone
/// `item()` is nil and no constraint can be built from the anchor. Anchors are made on demand
/// (`VLXView::topAnchor()` …), so two calls give two objects that are equal (`isEqual`, `hash`)
/// because they name the same item and attribute.
class VLX_EXPORT VLXLayoutAnchor : public VLXObject {
public:
    /// An anchor for `attribute` of `item`; nil for `VLXLayoutAttributeNotAnAttribute` or a
    /// value outside the enumeration, and when `item` does not live in a `shared_ptr`.
    static std::shared_ptr<VLXLayoutAnchor> anchorWithItem(const VLXObject& item,
                                                           VLXLayoutAttribute attribute);
    ~VLXLayoutAnchor() override;

    /// The view or layout guide, or nil once it is gone.
    std::shared_ptr<VLXObject> item() const { return m_item.lock(); }
    VLXLayoutAttribute attribute() const { return m_attribute; }
    VLXLayoutAnchorAxis axis() const { return VLXLayoutAttributeAxis(m_attribute); }

    /// "this = anchor": a new, inactive constraint; nil when `anchor` is nil, of another axis,
    /// when either item is gone, or when `constant` is not finite.
    std::shared_ptr<VLXLayoutConstraint> constraintEqualToAnchor(
        const std::shared_ptr<VLXLayoutAnchor>& anchor) const;
    std::shared_ptr<VLXLayoutConstraint> constraintEqualToAnchor(
        const std::shared_ptr<VLXLayoutAnchor>& anchor, double constant) const;
    /// "this = constant", for width and height anchors only (nil for others, for a non-finite
    /// constant and once the item is gone).
    std::shared_ptr<VLXLayoutConstraint> constraintEqualToConstant(double constant) const;

    /// Same item (even once it is gone) and the same attribute.
    bool isEqual(const VLXObject& other) const override;
    std::size_t hash() const override;
    /// "<VLXLayoutAnchor: 0x…; VLXView:0x….top>".
    std::string description() const override;
    /// "VLXView:0x….top", as constraint descriptions show it ("nil.top" once the item is gone).
    std::string itemDescription() const;

protected:
    VLXLayoutAnchor(std::weak_ptr<VLXObject> item, const void* itemAddress,
                    VLXLayoutAttribute attribute);

private:
    std::weak_ptr<VLXObject> m_item;
    const void* m_itemAddress;
    VLXLayoutAttribute m_attribute;
};
