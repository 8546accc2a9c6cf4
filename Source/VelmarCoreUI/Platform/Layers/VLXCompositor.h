#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <VelmarCoreUI/Platform/Foundation/VLXObject.h>
#include <VelmarCoreUI/Platform/Primitives/VLXGeometry.h>
#include <VelmarCoreUI/VLXExport.h>

class VLXGraphicsContext;
class VLXImage;
class VLXLayer;

/// Renders a layer tree into a graphics context: bitmaps at any scale, SVG and PDF, all from one
/// walk.
///
/// What is drawn is the presentation of each layer (its `presentationLayer()` while animations
/// are attached, else the model itself), in the context's current user space, which plays the
/// root's superlayer. Per layer, in order: hidden layers (and fully transparent ones) are
/// skipped with their subtree; the transform applies about the anchor point at `position`; the
/// bounds origin shifts the layer's own content; the background fills the bounds, rounded by
/// `cornerRadius`; `masksToBounds` clips contents and sublayers to that shape; then the contents
/// image (made by `display` at `contentsScale`, or by hand), a shape or gradient layer's
/// drawing, the sublayers back to front (ordered by `zPosition`, stable), and the border last.
/// A mask layer's alpha masks the whole result.
///
/// Opacity below 1 draws the layer through a group when it paints more than one thing (so
/// overlapping parts do not show through each other); a single thing simply gets the alpha.
/// Documents use no groups: the opacity multiplies into each drawing of the subtree, and a mask
/// clips to its frame instead of masking by alpha.
///
/// Layers marked `needsDisplay` are displayed when reached (normally the run loop has done so);
/// a layer animating a key that redraws it is drawn from a fresh display of its presentation
/// copy. The walk keeps its own stack, so trees of any depth render without recursion, and its
/// buffers are reused from frame to frame.
class VLX_EXPORT VLXCompositor : public VLXObject {
public:
    static std::shared_ptr<VLXCompositor> create();
    ~VLXCompositor() override;

    /// One walk of `root` into `context`, with a compositor of its own (buffers reused per
    /// thread).
    static void render(const VLXLayer& root, VLXGraphicsContext& context);
    /// `root` as a one-page SVG or PDF document of `size` points ("" when the size is unusable).
    static std::string renderSVG(const VLXLayer& root, VLXSize size);
    static std::string renderPDF(const VLXLayer& root, VLXSize size);

    /// Renders into `context` with this compositor's buffers.
    void renderInto(const VLXLayer& root, VLXGraphicsContext& context);

    /// A frame of `size` points at `scale` pixels per point, transparent where nothing is drawn.
    /// When nothing changed since the last frame of the same root, size and scale (no model,
    /// tree or contents change anywhere, and no animation running), the last image itself is
    /// returned without rendering. When something changed but no animation runs, a walk that
    /// paints nothing first finds the layers that appeared, disappeared, moved or changed (their
    /// own or an ancestor's generation); if their pixels cover at most half the frame, only
    /// those pixels are cleared and drawn again over the previous frame. Nil when the size or scale
    /// cannot make a bitmap, and when called from a drawing inside this compositor's own walk.
    std::shared_ptr<VLXImage> renderFrame(const VLXLayer& root, VLXSize size, double scale);

    /// Frames rasterised and frames answered with the previous image. Of the rasterised frames,
    /// those that redrew only the pixels of what changed (see `renderFrame`).
    std::uint64_t framesRendered() const { return m_framesRendered; }
    std::uint64_t framesReused() const { return m_framesReused; }
    std::uint64_t framesPartlyRendered() const { return m_framesPartlyRendered; }
    /// Forgets the last frame, so the next one renders.
    void invalidate();

protected:
    VLXCompositor();

private:
    struct Walker;
    struct DamageBox;
    struct LayerRecord;
    static DamageBox damageBetween(const std::vector<LayerRecord>& previous,
                                   std::vector<LayerRecord>& current, VLXSize size, double scale);

    std::unique_ptr<Walker> m_walker;
    std::vector<LayerRecord> m_records;     // the last frame's, sorted by layer
    std::vector<LayerRecord> m_newRecords;  // reused for the next
    std::shared_ptr<VLXGraphicsContext> m_context;
    std::shared_ptr<VLXImage> m_lastImage;
    const VLXLayer* m_lastRoot = nullptr;
    std::weak_ptr<const VLXObject> m_lastRootLifetime;
    VLXSize m_lastSize{};
    double m_lastScale = 0;
    double m_lastTime = 0;
    std::uint64_t m_lastChangeCount = 0;
    std::uint64_t m_framesRendered = 0;
    std::uint64_t m_framesReused = 0;
    std::uint64_t m_framesPartlyRendered = 0;
};
