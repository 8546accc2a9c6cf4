#pragma once

// Representation details of VLXValue shared by the files that implement it; not for other
// modules.

#include <variant>

#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>

struct VLXValue::Box {
    // Alternatives in the order of vlx::detail::kBoxInfo.
    std::variant<VLXPoint, VLXSize, VLXRect, VLXAffineTransform, VLXTransform3D, VLXRange> data;
};

namespace vlx::detail {

// What the platform calls each kind of box: its type encoding and its description's prefix.
struct BoxInfo {
    const char* encoding;
    const char* descriptionPrefix;
};

inline constexpr BoxInfo kBoxInfo[] = {
    {"{CGPoint=dd}", "NSPoint"},
    {"{CGSize=dd}", "NSSize"},
    {"{CGRect={CGPoint=dd}{CGSize=dd}}", "NSRect"},
    {"{CGAffineTransform=dddddd}", "CGAffineTransform"},
    {"{CATransform3D=dddddddddddddddd}", "CATransform3D"},
    {"{_NSRange=QQ}", "NSRange"},
};

// How a number's encoding stores its value in `VLXValue::Number`.
enum class NumberClass { Signed, Unsigned, Floating };

inline NumberClass numberClass(char encoding) {
    switch (encoding) {
        case 'c':
        case 'i':
        case 's':
        case 'l':
        case 'q':
            return NumberClass::Signed;
        case 'C':
        case 'I':
        case 'S':
        case 'L':
        case 'Q':
            return NumberClass::Unsigned;
        default:
            return NumberClass::Floating;
    }
}

}  // namespace vlx::detail
