#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <VelmarCoreUI/Platform/Foundation/VLXTypes.h>

/// A run of indexes: `location` and `length`, both unsigned.
struct VLX_EXPORT VLXRange {
    VLXUInteger location = 0;
    VLXUInteger length = 0;

    constexpr VLXUInteger maxRange() const { return location + length; }
    constexpr bool contains(VLXUInteger index) const {
        return index >= location && index - location < length;
    }
    friend constexpr bool operator==(const VLXRange&, const VLXRange&) = default;
};

constexpr VLXRange VLXMakeRange(VLXUInteger location, VLXUInteger length) {
    return VLXRange{location, length};
}
