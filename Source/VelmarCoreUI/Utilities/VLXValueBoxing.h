#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <VelmarCoreUI/Platform/Foundation/VLXTypes.h>
#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>

/// What kind of value a boxed VLXValue holds, read from its type encoding.
enum VLXValueType : VLXInteger {
    VLXValueTypeNumber = 0,           ///< "i", "s", "l", "q", "I", "S", "L", "Q", "f" or "d"
    VLXValueTypePoint = 1,            ///< "{CGPoint=dd}"
    VLXValueTypeSize = 2,             ///< "{CGSize=dd}"
    VLXValueTypeRect = 3,             ///< "{CGRect={CGPoint=dd}{CGSize=dd}}"
    VLXValueTypeAffineTransform = 4,  ///< "{CGAffineTransform=dddddd}"
    VLXValueTypeTransform3D = 5,      ///< "{CATransform3D=dddddddddddddddd}"
    VLXValueTypeUnknown = 6,          ///< anything else
};

/// The kind code of `value`: its `objCType()` compared as a whole string with the encodings
/// above, numbers first in the listed order. Booleans and chars ("c", "C"), ranges, strings and
/// other objects ("@") are unknown, and so is nil, whose encoding is empty.
VLX_EXPORT VLXValueType vlx_type(const VLXValue& value);

// Unboxing; the zero value when `value` boxes something else (nil included).
VLX_EXPORT VLXRect vlx_rectValue(const VLXValue& value);
VLX_EXPORT VLXSize vlx_sizeValue(const VLXValue& value);
VLX_EXPORT VLXPoint vlx_pointValue(const VLXValue& value);
VLX_EXPORT VLXAffineTransform vlx_affineTransformValue(const VLXValue& value);

// Boxing, with the platform's type encodings.
VLX_EXPORT VLXValue vlx_valueWithRect(VLXRect rect);
VLX_EXPORT VLXValue vlx_valueWithPoint(VLXPoint point);
VLX_EXPORT VLXValue vlx_valueWithSize(VLXSize size);
VLX_EXPORT VLXValue vlx_valueWithAffineTransform(VLXAffineTransform transform);
