// Image data from hosts (PNG bytes). A decoded image encodes again, and the encoding decodes to
// the same pixels; the image utilities work on whatever decodes.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>
#include <VelmarCoreUI/Utilities/VLXImageUtilities.h>

#include "FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    if (size < 1) {
        return 0;
    }
    // The first byte picks the scale, including ones that must be refused.
    static constexpr double kScales[] = {1, 2, 3, 0.5, 0, -1, 1e-300, 1e300};
    const double scale = kScales[bytes[0] % std::size(kScales)];
    const std::string_view png(reinterpret_cast<const char*>(bytes + 1), size - 1);
    const auto image = VLXImage::imageWithData(png, scale);
    if (!image) {
        return 0;
    }
    VLX_FUZZ_CHECK(image->pixelWidth() > 0 && image->pixelHeight() > 0, image->description());
    VLX_FUZZ_CHECK(image->pixels().size() == static_cast<std::size_t>(image->pixelWidth()) *
                                                 static_cast<std::size_t>(image->pixelHeight()),
                   image->description());
    const std::string encoded = image->PNGRepresentation();
    VLX_FUZZ_CHECK(!encoded.empty(), image->description());
    const auto decoded = VLXImage::imageWithData(encoded, image->scale());
    VLX_FUZZ_CHECK(decoded && decoded->pixelWidth() == image->pixelWidth() &&
                       decoded->pixelHeight() == image->pixelHeight(),
                   image->description());
    VLX_FUZZ_CHECK(
        std::equal(decoded->pixels().begin(), decoded->pixels().end(), image->pixels().begin()),
        image->description());

    (void)image->colorAtPixel(0, 0);
    (void)vlx_averageColor(*image);
    if (image->pixelWidth() <= 256 && image->pixelHeight() <= 256) {
        (void)vlx_desaturatedImage(*image);
        (void)vlx_imageTintedWithColor(*image, VLXColor::redColor());
        (void)vlx_imageScaledToSize(*image, VLXSize{7, 3});
    }
    return 0;
}
