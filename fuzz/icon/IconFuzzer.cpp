// Icon identifiers and icons: any type, size and colour. Identifiers exist exactly for the known
// types and say what they were made from; icons come back at the size asked for (or nil for
// sizes an image context refuses); the drawing cache answers under any identifier text.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include <VelmarCoreUI/Color/VLXColorUtilities.h>
#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>
#include <VelmarCoreUI/Utilities/VLXImageUtilities.h>

#include "FuzzSupport.h"

namespace {

// Rendering mid-sized icons only costs time; tiny, refused and odd sizes are what matter.
bool cheapToDraw(VLXSize size) {
    const auto cheap = [](double side) {
        return !std::isfinite(side) || std::fabs(side) <= 64.0 || std::fabs(side) > 1e6;
    };
    return cheap(size.width) && cheap(size.height);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static const bool kLimited = (drawingCache()->setCountLimit(32), true);
    (void)kLimited;
    FuzzedDataProvider data(bytes, size);
    const VLXUInteger type = data.ConsumeBool() ? data.ConsumeIntegralInRange<VLXUInteger>(0, 2)
                                                : data.ConsumeIntegral<VLXUInteger>();
    const VLXSize iconSize{vlxfuzz::edgyDouble(data), vlxfuzz::edgyDouble(data)};
    std::optional<VLXColor> color;
    if (data.ConsumeBool()) {
        color = VLXColor::colorWithRed(vlxfuzz::edgyDouble(data), vlxfuzz::edgyDouble(data),
                                       vlxfuzz::edgyDouble(data), vlxfuzz::edgyDouble(data));
    }
    const bool known = type == VLXIconTypePlay || type == VLXIconTypeStop;

    const std::optional<std::string> identifier = vlx_identifierForIcon(type, iconSize, color);
    VLX_FUZZ_CHECK(identifier.has_value() == known, std::to_string(type));
    if (identifier) {
        const std::string prefix = type == VLXIconTypePlay ? "VLXIcon_play_" : "VLXIcon_stop_";
        VLX_FUZZ_CHECK(identifier->rfind(prefix, 0) == 0, *identifier);
        const std::string colorText = color ? vlx_hexValue(*color) : "(null)";
        VLX_FUZZ_CHECK(identifier->size() >= colorText.size() &&
                           identifier->compare(identifier->size() - colorText.size(),
                                               colorText.size(), colorText) == 0,
                       *identifier);
    }
    const VLXSize defaultSize = vlx_defaultSizeForIcon(type);
    VLX_FUZZ_CHECK(known ? defaultSize.width > 0 && defaultSize.height > 0
                         : defaultSize.width == 0 && defaultSize.height == 0,
                   std::to_string(type));

    if (cheapToDraw(iconSize)) {
        const auto icon = vlx_iconWithType(type, iconSize, color);
        if (icon && icon->pixelWidth() > 0) {
            // Bitmaps have whole pixels, so a drawing comes out within a pixel of the request;
            // the cache keys sizes by their whole numbers, so a cached icon may be one drawn for
            // another size with the same whole numbers: within a point and a pixel.
            const double slack = 1.0 + 1.0 / icon->scale();
            const VLXSize got = icon->size();
            VLX_FUZZ_CHECK(std::fabs(got.width - iconSize.width) < slack &&
                               std::fabs(got.height - iconSize.height) < slack,
                           icon->description() + " for " + std::to_string(iconSize.width) + " × " +
                               std::to_string(iconSize.height));
        }
        (void)vlx_iconWithTypeWidth(type, iconSize.width, color);
        (void)vlx_iconWithTypeHeight(type, iconSize.height, color);
    }

    // Any text is a usable cache key.
    const std::string key = data.ConsumeRemainingBytesAsString();
    const auto image = VLXImage::imageWithPixels(1, 1, {0xff00ff00u});
    vlx_cacheImage(image, key);
    VLX_FUZZ_CHECK(vlx_imageWithIdentifier(key) == image, key);
    vlx_removeImageWithIdentifier(key);
    VLX_FUZZ_CHECK(vlx_imageWithIdentifier(key) == nullptr, key);
    return 0;
}
