#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <string_view>

class VLXValue;

/// What a host data object implements so that key-value lookup (`VLXValue::valueForKey`,
/// series items reading x and y by property name) can read it.
class VLX_EXPORT VLXKeyValueObject {
public:
    virtual ~VLXKeyValueObject() = default;
    /// True when the object has a property of exactly this name.
    virtual bool respondsToKey(std::string_view key) const = 0;
    /// The property's value; nil when there is none.
    virtual VLXValue valueForKey(std::string_view key) const = 0;
};
