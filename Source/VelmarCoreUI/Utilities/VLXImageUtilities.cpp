#include <VelmarCoreUI/Utilities/VLXImageUtilities.h>

#include <climits>
#include <cmath>
#include <cstdint>

#include <VelmarCoreUI/Color/VLXColorUtilities.h>
#include <VelmarCoreUI/Platform/Foundation/VLXBundle.h>
#include <VelmarCoreUI/Platform/Foundation/VLXNumerics.h>
#include <VelmarCoreUI/Platform/Foundation/VLXStringFormat.h>
#include <VelmarCoreUI/Platform/Graphics/VLXBezierPath.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsImageContext.h>

namespace {

// Ends the image context even when drawing code throws, so the context stack stays paired.
class ImageContextScope {
public:
    ImageContextScope(VLXSize size, double scale) {
        VLXGraphicsBeginImageContextWithOptions(size, false, scale);
    }
    ~ImageContextScope() { VLXGraphicsEndImageContext(); }
    ImageContextScope(const ImageContextScope&) = delete;
    ImageContextScope& operator=(const ImageContextScope&) = delete;
};

struct IconDescription {
    const char* name;
    VLXSize defaultSize;
    void (*draw)();
};

void drawPlayIcon() {
    VLXBezierPath path;
    path.moveToPoint({0, 0});
    path.addLineToPoint({0, 30});
    path.addLineToPoint({20, 15});
    path.addLineToPoint({0, 0});
    path.closePath();
    path.setMiterLimit(4);
    path.fill();
}

void drawStopIcon() {
    VLXBezierPath::bezierPathWithRect(VLXRectMake(0, 0, 30, 30)).fill();
}

// The catalogue, indexed by icon type; built on first use and kept.
const IconDescription* iconDescription(VLXUInteger type) {
    static const IconDescription icons[] = {
        {"play", VLXSizeMake(20, 30), drawPlayIcon},
        {"stop", VLXSizeMake(30, 30), drawStopIcon},
    };
    return type < std::size(icons) ? &icons[type] : nullptr;
}

// What a C conversion to long gives on the platforms that saturate (NaN reads 0); a plain cast
// would be undefined for these values.
long truncatedLong(double value) {
    if (std::isnan(value)) {
        return 0;
    }
    if (value >= static_cast<double>(LONG_MAX)) {
        return LONG_MAX;
    }
    if (value <= static_cast<double>(LONG_MIN)) {
        return LONG_MIN;
    }
    return static_cast<long>(value);
}

// The largest shrink factor per side for which cairo's filter still sees every source pixel.
constexpr int kMaxReduction = 16;

VLXRect boundsOf(VLXSize size) {
    return VLXRectMake(0, 0, size.width, size.height);
}

// An image without pixels draws nothing; skipping it keeps a degenerate pattern scale away from
// the context.
void drawImageInRect(const VLXImage& image, const VLXRect& rect) {
    if (image.pixelWidth() > 0 && image.pixelHeight() > 0) {
        image.drawInRect(rect);
    }
}

}  // namespace

std::shared_ptr<VLXImageCache> drawingCache() {
    static const std::shared_ptr<VLXImageCache> cache = VLXImageCache::create();
    return cache;
}

std::shared_ptr<VLXImage> vlx_uncachedImageNamed(std::string_view fileNameWithExtension) {
    const std::size_t dot = fileNameWithExtension.rfind('.');
    const std::string_view name = fileNameWithExtension.substr(0, dot);
    const std::string_view type =
        dot == std::string_view::npos ? std::string_view() : fileNameWithExtension.substr(dot + 1);
    const std::optional<std::string> path = VLXBundle::mainBundle()->pathForResource(name, type);
    if (!path) {
        return nullptr;
    }
    return VLXImage::imageWithContentsOfFile(*path);
}

std::shared_ptr<VLXImage> vlx_imageWithSize(VLXSize size, const VLXImageDrawing& drawing) {
    ImageContextScope scope(size, 0);
    if (drawing && VLXGraphicsGetCurrentContext() != nullptr) {
        drawing();
    }
    return VLXGraphicsGetImageFromCurrentImageContext();
}

std::shared_ptr<VLXImage> vlx_imageWithIdentifier(const std::optional<std::string>& identifier,
                                                  VLXSize size, const VLXImageDrawing& drawing) {
    if (auto cached = vlx_imageWithIdentifier(identifier)) {
        return cached;
    }
    auto image = vlx_imageWithSize(size, drawing);
    vlx_cacheImage(image, identifier);
    return image;
}

std::shared_ptr<VLXImage> vlx_imageWithIdentifier(const std::optional<std::string>& identifier) {
    if (!identifier) {
        return nullptr;
    }
    return drawingCache()->objectForKey(*identifier).value_or(nullptr);
}

void vlx_cacheImage(const std::shared_ptr<VLXImage>& image,
                    const std::optional<std::string>& identifier) {
    if (image && identifier) {
        drawingCache()->setObject(image, *identifier);
    }
}

void vlx_removeImageWithIdentifier(const std::optional<std::string>& identifier) {
    if (identifier) {
        drawingCache()->removeObjectForKey(*identifier);
    }
}

void vlx_removeAllImages() {
    drawingCache()->removeAllObjects();
}

std::optional<std::string> vlx_identifierForIcon(VLXUInteger type, VLXSize size,
                                                 const std::optional<VLXColor>& color) {
    const IconDescription* icon = iconDescription(type);
    if (icon == nullptr) {
        return std::nullopt;
    }
    // "(null)" is what the platform's formatter writes for a missing object.
    const std::string colorText = color ? vlx_hexValue(*color) : std::string("(null)");
    return VLXStringWithFormat("VLXIcon_%s_%lix%li_%s", icon->name, truncatedLong(size.width),
                               truncatedLong(size.height), colorText.c_str());
}

VLXSize vlx_defaultSizeForIcon(VLXUInteger type) {
    const IconDescription* icon = iconDescription(type);
    return icon != nullptr ? icon->defaultSize : VLXSizeZero;
}

void vlx_drawIcon(VLXUInteger type) {
    const IconDescription* icon = iconDescription(type);
    if (icon != nullptr) {
        icon->draw();
    }
}

std::shared_ptr<VLXImage> vlx_iconWithType(VLXUInteger type, VLXSize size,
                                           const std::optional<VLXColor>& color) {
    // Identifiers keep whole numbers only, so NaN and small negative sizes would find the icon
    // cached for a small positive one: refuse them first, as an image context would.
    const auto refused = [](double side) { return !std::isfinite(side) || side < 0; };
    if (refused(size.width) || refused(size.height)) {
        return nullptr;
    }
    const std::optional<std::string> identifier = vlx_identifierForIcon(type, size, color);
    std::shared_ptr<VLXImage> image = vlx_imageWithIdentifier(identifier);
    if (!image) {
        const VLXSize defaultSize = vlx_defaultSizeForIcon(type);
        const std::optional<std::string> defaultIdentifier =
            vlx_identifierForIcon(type, defaultSize, color);
        image = vlx_imageWithIdentifier(defaultIdentifier, defaultSize, [type] {
            VLXGraphicsContext* context = VLXGraphicsGetCurrentContext();
            context->setFillColor(VLXColor::blackColor());
            context->setStrokeColor(VLXColor::blackColor());
            vlx_drawIcon(type);
        });
        if (image && !VLXSizeEqualToSize(size, defaultSize)) {
            image = vlx_imageScaledToSize(*image, size);
            vlx_cacheImage(image, identifier);
        }
    }
    if (image && color) {
        return vlx_imageTintedWithColor(*image, *color);
    }
    return image;
}

std::shared_ptr<VLXImage> vlx_iconWithTypeWidth(VLXUInteger type, double width,
                                                const std::optional<VLXColor>& color) {
    const VLXSize defaultSize = vlx_defaultSizeForIcon(type);
    const double height = vlx::roundf32(defaultSize.height * (width / defaultSize.width));
    return vlx_iconWithType(type, VLXSizeMake(width, height), color);
}

std::shared_ptr<VLXImage> vlx_iconWithTypeHeight(VLXUInteger type, double height,
                                                 const std::optional<VLXColor>& color) {
    const VLXSize defaultSize = vlx_defaultSizeForIcon(type);
    const double width = vlx::roundf32(defaultSize.width * (height / defaultSize.height));
    return vlx_iconWithType(type, VLXSizeMake(width, height), color);
}

std::shared_ptr<VLXImage> vlx_imageScaledToSize(const VLXImage& image, VLXSize size) {
    ImageContextScope scope(size, image.scale());
    if (VLXGraphicsGetCurrentContext() == nullptr) {
        return nullptr;
    }
    drawImageInRect(image, boundsOf(size));
    return VLXGraphicsGetImageFromCurrentImageContext();
}

std::shared_ptr<VLXImage> vlx_desaturatedImage(const VLXImage& image) {
    const VLXSize size = image.size();
    ImageContextScope scope(size, image.scale());
    VLXGraphicsContext* context = VLXGraphicsGetCurrentContext();
    if (context == nullptr) {
        return nullptr;
    }
    drawImageInRect(image, boundsOf(size));
    context->setFillColor(VLXColor::blackColor());
    context->setBlendMode(VLXBlendMode::Saturation);
    context->fillRect(boundsOf(size));
    return VLXGraphicsGetImageFromCurrentImageContext();
}

std::shared_ptr<VLXImage> vlx_imageTintedWithColor(const VLXImage& image, const VLXColor& color) {
    const VLXSize size = image.size();
    std::shared_ptr<VLXImage> tinted;
    {
        ImageContextScope scope(size, image.scale());
        VLXGraphicsContext* context = VLXGraphicsGetCurrentContext();
        if (context == nullptr) {
            return nullptr;
        }
        drawImageInRect(image, boundsOf(size));
        context->setFillColor(color);
        context->setBlendMode(VLXBlendMode::SourceAtop);
        context->fillRect(boundsOf(size));
        tinted = VLXGraphicsGetImageFromCurrentImageContext();
    }
    if (!tinted) {
        return nullptr;
    }
    return VLXImage::imageWithImage(*tinted, image.scale(), VLXImageOrientation::Up);
}

VLXColor vlx_averageColor(const VLXImage& image) {
    // cairo's box filter widens to at most 16 source pixels per output pixel: a single 1 × 1
    // draw of a larger image would average only the pixels near its centre. Shrinking by at
    // most 16 per side per step keeps every pixel in the average.
    std::shared_ptr<VLXImage> reduced;
    const VLXImage* current = &image;
    while (current->pixelWidth() > kMaxReduction || current->pixelHeight() > kMaxReduction) {
        const VLXSize size = VLXSizeMake(std::ceil(current->pixelWidth() / double(kMaxReduction)),
                                         std::ceil(current->pixelHeight() / double(kMaxReduction)));
        auto step = VLXGraphicsContext::createBitmap(size, 1);
        if (!step) {
            break;
        }
        step->drawImage(*current, boundsOf(size));
        reduced = step->makeImage();
        if (!reduced) {
            break;
        }
        current = reduced.get();
    }

    auto context = VLXGraphicsContext::createBitmap(VLXSizeMake(1, 1), 1);
    std::uint32_t pixel = 0;
    if (context) {
        if (current->pixelWidth() > 0 && current->pixelHeight() > 0) {
            context->drawImage(*current, VLXRectMake(0, 0, 1, 1));
        }
        if (auto drawn = context->makeImage(); drawn && !drawn->pixels().empty()) {
            pixel = drawn->pixels()[0];
        }
    }
    // Premultiplied bytes, read as they are.
    const double red = (pixel >> 16) & 0xFF;
    const double green = (pixel >> 8) & 0xFF;
    const double blue = pixel & 0xFF;
    const double alpha = (pixel >> 24) & 0xFF;
    if (alpha > 0) {
        const double multiplier = (alpha / 255.0) / 255.0;
        return VLXColor::colorWithRed(red * multiplier, green * multiplier, blue * multiplier,
                                      alpha / 255.0);
    }
    return VLXColor::colorWithRed(red / 255.0, green / 255.0, blue / 255.0, 0);
}
