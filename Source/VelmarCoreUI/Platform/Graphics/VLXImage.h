#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <VelmarCoreUI/Platform/Foundation/VLXObject.h>
#include <VelmarCoreUI/Platform/Primitives/VLXColor.h>
#include <VelmarCoreUI/Platform/Primitives/VLXGeometry.h>

typedef struct _cairo_surface cairo_surface_t;

enum class VLXBlendMode;

/// How the stored pixels are turned before display, numbered as the platform numbers them.
enum class VLXImageOrientation {
    Up = 0,
    Down = 1,           ///< turned 180°
    Left = 2,           ///< turned 90° counter-clockwise
    Right = 3,          ///< turned 90° clockwise
    UpMirrored = 4,     ///< flipped horizontally
    DownMirrored = 5,   ///< flipped vertically
    LeftMirrored = 6,   ///< flipped horizontally, then turned 90° counter-clockwise
    RightMirrored = 7,  ///< flipped horizontally, then turned 90° clockwise
};

/// An immutable bitmap: premultiplied ARGB pixels (32-bit words, alpha in the top byte, rows
/// `pixelWidth()` words apart), a scale (pixels per point) and an orientation.
///
/// Images are shared, never changed after creation; every adjustment makes a new image.
///
/// An image normally has at least one pixel. The one exception is an image context of zero
/// width or height (`VLXGraphicsBeginImageContext…` / `VLXGraphicsContext::makeImage`): its image
/// has zero size and no pixels, draws nothing, encodes to no PNG bytes and has no cairo surface.
class VLX_EXPORT VLXImage : public VLXObject {
public:
    /// An image from premultiplied ARGB words (`pixelWidth × pixelHeight` of them). Nil when the
    /// count does not match, a side is zero or negative, or the scale is not finite and
    /// positive.
    static std::shared_ptr<VLXImage> imageWithPixels(
        int pixelWidth, int pixelHeight, std::vector<std::uint32_t> pixels, double scale = 1,
        VLXImageOrientation orientation = VLXImageOrientation::Up);
    /// Decodes PNG bytes; nil for anything that is not a readable PNG (or a bad scale).
    static std::shared_ptr<VLXImage> imageWithData(std::string_view pngData, double scale = 1);
    /// Reads a PNG file whole; the scale comes from an "@2x" / "@3x" suffix of the file stem,
    /// else 1. Nil when the file cannot be read or decoded.
    static std::shared_ptr<VLXImage> imageWithContentsOfFile(const std::filesystem::path& path);
    /// The same pixels with another scale and orientation (nil when the scale is not finite and
    /// positive); a zero-size image stays zero-size.
    static std::shared_ptr<VLXImage> imageWithImage(const VLXImage& image, double scale,
                                                    VLXImageOrientation orientation);

    /// Size in points: pixel size ÷ scale, width and height swapped for the turned
    /// orientations (left, right and their mirrors).
    VLXSize size() const;
    double scale() const { return m_scale; }
    VLXImageOrientation imageOrientation() const { return m_orientation; }

    /// The stored bitmap, before orientation.
    int pixelWidth() const { return m_pixelWidth; }
    int pixelHeight() const { return m_pixelHeight; }
    std::span<const std::uint32_t> pixels() const { return m_pixels; }
    /// The stored pixel at (x, y), un-premultiplied, as an RGB colour; clear outside the bitmap.
    VLXColor colorAtPixel(int x, int y) const;

    /// PNG bytes of the stored bitmap (orientation not applied; empty on failure and for a
    /// zero-size image).
    std::string PNGRepresentation() const;
    /// Writes `PNGRepresentation()` to `path`; false when there are no bytes or writing fails.
    bool writePNG(const std::filesystem::path& path) const;

    // Drawing into the current graphics context (nothing when there is none), upright and
    // honouring the orientation, through `VLXGraphicsContext::drawImage`.

    /// At `point` with the image's size in points.
    void drawAtPoint(VLXPoint point) const;
    /// Scaled to fill `rect`.
    void drawInRect(const VLXRect& rect) const;
    /// Scaled to fill `rect`, with `blendMode` and `alpha` for this drawing only (the context's
    /// own blend mode and alpha are restored afterwards).
    void drawInRect(const VLXRect& rect, VLXBlendMode blendMode, double alpha) const;

    /// A cairo ARGB32 image surface over the stored pixels, made on first use and kept until the
    /// image dies (not to be drawn into). Nil for a zero-size image.
    cairo_surface_t* cairoSurface() const;

    ~VLXImage() override;

    /// "<VLXImage: 0x…; size = {20, 30}; scale = 2>".
    std::string description() const override;

protected:
    VLXImage(int pixelWidth, int pixelHeight, std::vector<std::uint32_t> pixels, double scale,
             VLXImageOrientation orientation);

private:
    friend class VLXGraphicsContext;
    // The zero-size image of an image context without pixels (one side zero).
    static std::shared_ptr<VLXImage> imageWithoutPixels(int pixelWidth, int pixelHeight,
                                                        double scale);

    int m_pixelWidth = 0;
    int m_pixelHeight = 0;
    std::vector<std::uint32_t> m_pixels;
    double m_scale = 1;
    VLXImageOrientation m_orientation = VLXImageOrientation::Up;
    mutable std::once_flag m_surfaceOnce;
    mutable cairo_surface_t* m_surface = nullptr;
};

/// PNG bytes of `image`; empty for nil.
VLX_EXPORT std::string VLXImagePNGRepresentation(const std::shared_ptr<VLXImage>& image);
