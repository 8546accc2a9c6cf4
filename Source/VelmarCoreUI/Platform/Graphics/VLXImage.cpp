#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>

#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <fstream>
#include <limits>
#include <sstream>

#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsImageContext.h>
#include <VelmarCoreUI/Platform/Primitives/Private/VLXNumberPrinting.h>

namespace {

bool isValidScale(double scale) {
    return std::isfinite(scale) && scale > 0;
}

// Files larger than this are not read: no PNG the toolkit draws comes close, and reading an
// arbitrary file whole must not exhaust memory.
constexpr std::uintmax_t kMaximumFileSize = std::uintmax_t{1} << 30;

struct ReadCursor {
    std::string_view data;
    std::size_t offset = 0;
};

cairo_status_t readFromMemory(void* closure, unsigned char* out, unsigned int length) {
    auto* cursor = static_cast<ReadCursor*>(closure);
    if (cursor->data.size() - cursor->offset < length) {
        return CAIRO_STATUS_READ_ERROR;
    }
    std::memcpy(out, cursor->data.data() + cursor->offset, length);
    cursor->offset += length;
    return CAIRO_STATUS_SUCCESS;
}

cairo_status_t writeToString(void* closure, const unsigned char* data, unsigned int length) {
    static_cast<std::string*>(closure)->append(reinterpret_cast<const char*>(data), length);
    return CAIRO_STATUS_SUCCESS;
}

// A surface over the pixels for one use (encoding, drawing). Cairo surfaces are not meant to be
// used from several threads at once, and images are shared freely, so the kept surface of
// `cairoSurface()` is left to hosts.
cairo_surface_t* temporarySurface(const VLXImage& image) {
    if (image.pixelWidth() <= 0 || image.pixelHeight() <= 0) {
        return nullptr;
    }
    // Never drawn into: the const_cast only satisfies cairo's signature.
    auto* data =
        reinterpret_cast<unsigned char*>(const_cast<std::uint32_t*>(image.pixels().data()));
    cairo_surface_t* surface = cairo_image_surface_create_for_data(
        data, CAIRO_FORMAT_ARGB32, image.pixelWidth(), image.pixelHeight(), image.pixelWidth() * 4);
    if (cairo_surface_status(surface) != CAIRO_STATUS_SUCCESS) {
        cairo_surface_destroy(surface);
        return nullptr;
    }
    return surface;
}

}  // namespace

VLXImage::VLXImage(int pixelWidth, int pixelHeight, std::vector<std::uint32_t> pixels, double scale,
                   VLXImageOrientation orientation)
    : m_pixelWidth(pixelWidth),
      m_pixelHeight(pixelHeight),
      m_pixels(std::move(pixels)),
      m_scale(scale),
      m_orientation(orientation) {}

VLXImage::~VLXImage() {
    if (m_surface != nullptr) {
        cairo_surface_destroy(m_surface);
    }
}

std::shared_ptr<VLXImage> VLXImage::imageWithPixels(int pixelWidth, int pixelHeight,
                                                    std::vector<std::uint32_t> pixels, double scale,
                                                    VLXImageOrientation orientation) {
    if (pixelWidth <= 0 || pixelHeight <= 0 || !isValidScale(scale) ||
        static_cast<std::uint64_t>(pixelWidth) * static_cast<std::uint64_t>(pixelHeight) !=
            pixels.size()) {
        return nullptr;
    }
    // Cairo addresses rows with an int stride; larger bitmaps could not be drawn.
    if (pixelWidth > std::numeric_limits<int>::max() / 4) {
        return nullptr;
    }
    return makeInitialized<VLXImage>(pixelWidth, pixelHeight, std::move(pixels), scale,
                                     orientation);
}

std::shared_ptr<VLXImage> VLXImage::imageWithoutPixels(int pixelWidth, int pixelHeight,
                                                       double scale) {
    if (pixelWidth < 0 || pixelHeight < 0 || (pixelWidth != 0 && pixelHeight != 0) ||
        !isValidScale(scale)) {
        return nullptr;
    }
    return makeInitialized<VLXImage>(pixelWidth, pixelHeight, std::vector<std::uint32_t>{}, scale,
                                     VLXImageOrientation::Up);
}

std::shared_ptr<VLXImage> VLXImage::imageWithData(std::string_view pngData, double scale) {
    if (!isValidScale(scale) || pngData.size() < 8) {
        return nullptr;
    }
    ReadCursor cursor{pngData, 0};
    cairo_surface_t* surface = cairo_image_surface_create_from_png_stream(readFromMemory, &cursor);
    if (cairo_surface_status(surface) != CAIRO_STATUS_SUCCESS) {
        cairo_surface_destroy(surface);
        return nullptr;
    }
    cairo_surface_flush(surface);
    const cairo_format_t format = cairo_image_surface_get_format(surface);
    const int width = cairo_image_surface_get_width(surface);
    const int height = cairo_image_surface_get_height(surface);
    const int stride = cairo_image_surface_get_stride(surface);
    const unsigned char* data = cairo_image_surface_get_data(surface);
    std::shared_ptr<VLXImage> image;
    if ((format == CAIRO_FORMAT_ARGB32 || format == CAIRO_FORMAT_RGB24) && data != nullptr &&
        width > 0 && height > 0) {
        std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width) *
                                          static_cast<std::size_t>(height));
        // RGB24 leaves the top byte undefined: those pixels are opaque.
        const std::uint32_t opaqueBits = format == CAIRO_FORMAT_RGB24 ? 0xff000000U : 0;
        for (int y = 0; y < height; ++y) {
            const auto* row =
                reinterpret_cast<const std::uint32_t*>(data + static_cast<std::size_t>(y) * stride);
            std::uint32_t* out = pixels.data() + static_cast<std::size_t>(y) * width;
            for (int x = 0; x < width; ++x) {
                out[x] = row[x] | opaqueBits;
            }
        }
        image = imageWithPixels(width, height, std::move(pixels), scale);
    }
    cairo_surface_destroy(surface);
    return image;
}

std::shared_ptr<VLXImage> VLXImage::imageWithContentsOfFile(const std::filesystem::path& path) {
    std::error_code error;
    const std::uintmax_t fileSize = std::filesystem::file_size(path, error);
    if (error || fileSize > kMaximumFileSize) {
        return nullptr;
    }
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        return nullptr;
    }
    std::string bytes(static_cast<std::size_t>(fileSize), '\0');
    in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (static_cast<std::uintmax_t>(in.gcount()) != fileSize) {
        return nullptr;
    }
    const std::string stem = path.stem().string();
    double scale = 1;
    if (stem.size() >= 3 && stem.compare(stem.size() - 3, 3, "@2x") == 0) {
        scale = 2;
    } else if (stem.size() >= 3 && stem.compare(stem.size() - 3, 3, "@3x") == 0) {
        scale = 3;
    }
    return imageWithData(bytes, scale);
}

std::shared_ptr<VLXImage> VLXImage::imageWithImage(const VLXImage& image, double scale,
                                                   VLXImageOrientation orientation) {
    if (image.m_pixels.empty()) {
        auto empty = imageWithoutPixels(image.m_pixelWidth, image.m_pixelHeight, scale);
        if (empty) {
            empty->m_orientation = orientation;
        }
        return empty;
    }
    return imageWithPixels(image.m_pixelWidth, image.m_pixelHeight, image.m_pixels, scale,
                           orientation);
}

VLXSize VLXImage::size() const {
    const double width = m_pixelWidth / m_scale;
    const double height = m_pixelHeight / m_scale;
    switch (m_orientation) {
        case VLXImageOrientation::Left:
        case VLXImageOrientation::Right:
        case VLXImageOrientation::LeftMirrored:
        case VLXImageOrientation::RightMirrored:
            return VLXSizeMake(height, width);
        default:
            return VLXSizeMake(width, height);
    }
}

VLXColor VLXImage::colorAtPixel(int x, int y) const {
    if (x < 0 || y < 0 || x >= m_pixelWidth || y >= m_pixelHeight || m_pixels.empty()) {
        return VLXColor::clearColor();
    }
    const std::uint32_t pixel =
        m_pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(m_pixelWidth) +
                 static_cast<std::size_t>(x)];
    const unsigned alpha = pixel >> 24;
    if (alpha == 0) {
        return VLXColor::colorWithRed(0, 0, 0, 0);
    }
    auto channel = [&](unsigned shift) {
        return std::min(1.0, static_cast<double>((pixel >> shift) & 0xffU) / alpha);
    };
    return VLXColor::colorWithRed(channel(16), channel(8), channel(0), alpha / 255.0);
}

std::string VLXImage::PNGRepresentation() const {
    cairo_surface_t* surface = temporarySurface(*this);
    if (surface == nullptr) {
        return {};
    }
    std::string bytes;
    const cairo_status_t status = cairo_surface_write_to_png_stream(surface, writeToString, &bytes);
    cairo_surface_destroy(surface);
    if (status != CAIRO_STATUS_SUCCESS) {
        return {};
    }
    return bytes;
}

bool VLXImage::writePNG(const std::filesystem::path& path) const {
    const std::string bytes = PNGRepresentation();
    if (bytes.empty()) {
        return false;
    }
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return static_cast<bool>(out);
}

void VLXImage::drawAtPoint(VLXPoint point) const {
    const VLXSize displaySize = size();
    drawInRect(VLXRectMake(point.x, point.y, displaySize.width, displaySize.height));
}

void VLXImage::drawInRect(const VLXRect& rect) const {
    if (VLXGraphicsContext* context = VLXGraphicsGetCurrentContext()) {
        context->drawImage(*this, rect);
    }
}

void VLXImage::drawInRect(const VLXRect& rect, VLXBlendMode blendMode, double alpha) const {
    VLXGraphicsContext* context = VLXGraphicsGetCurrentContext();
    if (context == nullptr) {
        return;
    }
    context->saveGState();
    context->setBlendMode(blendMode);
    context->setAlpha(alpha);
    context->drawImage(*this, rect);
    context->restoreGState();
}

cairo_surface_t* VLXImage::cairoSurface() const {
    std::call_once(m_surfaceOnce, [this] { m_surface = temporarySurface(*this); });
    return m_surface;
}

std::string VLXImage::description() const {
    std::ostringstream text;
    text << "<VLXImage: " << static_cast<const void*>(this) << "; size = " << size()
         << "; scale = ";
    vlx::detail::printNumber(text, m_scale);
    text << '>';
    return text.str();
}

std::string VLXImagePNGRepresentation(const std::shared_ptr<VLXImage>& image) {
    return image ? image->PNGRepresentation() : std::string{};
}
