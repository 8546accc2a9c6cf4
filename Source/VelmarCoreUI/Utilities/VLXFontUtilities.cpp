#include <VelmarCoreUI/Utilities/VLXFontUtilities.h>

#include <cmath>
#include <limits>
#include <utility>

#include <VelmarCoreUI/Platform/Graphics/VLXStringDrawing.h>

VLXSize vlx_sizeNeededForString(const VLXFont& font, const std::optional<std::string>& string,
                                double maxWidth) {
    return vlx_sizeNeededForString(font, string, maxWidth, VLXLineBreakMode::ByWordWrapping);
}

VLXSize vlx_sizeNeededForString(const VLXFont& font, const std::optional<std::string>& string,
                                double maxWidth, VLXLineBreakMode) {
    VLXParagraphStyle style = VLXParagraphStyle::defaultParagraphStyle();
    style.lineBreakMode = VLXLineBreakMode::ByWordWrapping;
    return vlx_sizeNeededForString(
        font, string, VLXSizeMake(maxWidth, std::numeric_limits<double>::max()), style);
}

VLXSize vlx_sizeNeededForString(const VLXFont& font, const std::optional<std::string>& string,
                                VLXSize maxSize,
                                const std::optional<VLXParagraphStyle>& paragraphStyle) {
    if (!string) {
        return VLXSizeZero;
    }
    VLXTextAttributes attributes;
    attributes.font = font;
    attributes.paragraphStyle = paragraphStyle;
    const VLXRect rect = VLXStringBoundingRect(*string, maxSize,
                                               VLXStringDrawingUsesLineFragmentOrigin |
                                                   VLXStringDrawingUsesFontLeading |
                                                   VLXStringDrawingTruncatesLastVisibleLine,
                                               attributes);
    return VLXSizeMake(std::ceil(rect.size.width), std::ceil(rect.size.height));
}

double vlx_fontScaleForContentSize(VLXContentSizeCategory category, double fontSize) {
    static constexpr std::pair<VLXContentSizeCategory, double> kDeltas[] = {
        {VLXContentSizeCategoryAccessibilityExtraExtraExtraLarge, 8},
        {VLXContentSizeCategoryAccessibilityExtraExtraLarge, 7},
        {VLXContentSizeCategoryAccessibilityExtraLarge, 5},
        {VLXContentSizeCategoryAccessibilityLarge, 6},
        {VLXContentSizeCategoryAccessibilityMedium, 4},
        {VLXContentSizeCategoryExtraExtraExtraLarge, 3},
        {VLXContentSizeCategoryExtraExtraLarge, 2},
        {VLXContentSizeCategoryExtraLarge, 1},
        {VLXContentSizeCategoryLarge, 0},
        {VLXContentSizeCategoryMedium, -1},
        {VLXContentSizeCategorySmall, -2},
        {VLXContentSizeCategoryExtraSmall, -3},
    };
    double delta = 0;
    for (const auto& [known, knownDelta] : kDeltas) {
        if (category == known) {
            delta = knownDelta;
            break;
        }
    }
    return (fontSize + delta) / fontSize;
}
