#include <VelmarCoreUI/Utilities/VLXValueBoxing.h>

#include <cstring>

namespace {

struct Encoding {
    const char* text;
    VLXValueType type;
};

// Checked in this order; the first exact match decides.
constexpr Encoding kEncodings[] = {
    {"i", VLXValueTypeNumber},
    {"s", VLXValueTypeNumber},
    {"l", VLXValueTypeNumber},
    {"q", VLXValueTypeNumber},
    {"I", VLXValueTypeNumber},
    {"S", VLXValueTypeNumber},
    {"L", VLXValueTypeNumber},
    {"Q", VLXValueTypeNumber},
    {"f", VLXValueTypeNumber},
    {"d", VLXValueTypeNumber},
    {"{CGPoint=dd}", VLXValueTypePoint},
    {"{CGSize=dd}", VLXValueTypeSize},
    {"{CGRect={CGPoint=dd}{CGSize=dd}}", VLXValueTypeRect},
    {"{CGAffineTransform=dddddd}", VLXValueTypeAffineTransform},
    {"{CATransform3D=dddddddddddddddd}", VLXValueTypeTransform3D},
};

}  // namespace

VLXValueType vlx_type(const VLXValue& value) {
    const char* encoding = value.objCType();
    if (encoding == nullptr) {
        return VLXValueTypeUnknown;
    }
    for (const Encoding& candidate : kEncodings) {
        if (std::strcmp(encoding, candidate.text) == 0) {
            return candidate.type;
        }
    }
    return VLXValueTypeUnknown;
}

VLXRect vlx_rectValue(const VLXValue& value) {
    return value.rectValue();
}
VLXSize vlx_sizeValue(const VLXValue& value) {
    return value.sizeValue();
}
VLXPoint vlx_pointValue(const VLXValue& value) {
    return value.pointValue();
}
VLXAffineTransform vlx_affineTransformValue(const VLXValue& value) {
    return value.affineTransformValue();
}

VLXValue vlx_valueWithRect(VLXRect rect) {
    return VLXValue::valueWithRect(rect);
}
VLXValue vlx_valueWithPoint(VLXPoint point) {
    return VLXValue::valueWithPoint(point);
}
VLXValue vlx_valueWithSize(VLXSize size) {
    return VLXValue::valueWithSize(size);
}
VLXValue vlx_valueWithAffineTransform(VLXAffineTransform transform) {
    return VLXValue::valueWithAffineTransform(transform);
}
