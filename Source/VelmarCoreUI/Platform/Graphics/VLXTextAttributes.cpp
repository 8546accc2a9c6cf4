#include <VelmarCoreUI/Platform/Graphics/VLXTextAttributes.h>

const VLXParagraphStyle& VLXParagraphStyle::defaultParagraphStyle() {
    static const VLXParagraphStyle style;
    return style;
}
