#pragma once

#include <memory>
#include <optional>

#include <VelmarCoreUI/Platform/Primitives/VLXColor.h>
#include <VelmarCoreUI/Platform/Views/VLXView.h>
#include <VelmarCoreUI/VLXExport.h>

class VLXCircularLayer;

/// Progress as a circle: a border of `strokeWidth` in `strokeColor` and a wedge of the same
/// colour growing clockwise from twelve o'clock, drawn by a `VLXCircularLayer` sublayer that is
/// laid out `strokeWidth` smaller than the view and centred in it.
///
/// `progress()` reads the layer. `setProgress(p)` only stores the view's own value, which
/// nothing reads: the way to change what is shown is `setProgress(p, animated)`, which sets the
/// current transaction's `disableActions` to `!animated` (for the rest of that transaction) and
/// then the layer's progress, animating with the transaction's duration and curve.
///
/// `progressColor` and `fillColor` are stored only.
class VLX_EXPORT VLXCircularProgressView : public VLXView {
public:
    /// 37 × 37 at the origin.
    static std::shared_ptr<VLXCircularProgressView> create();
    static std::shared_ptr<VLXCircularProgressView> createWithFrame(const VLXRect& frame);

    /// The layer's progress (0 for a new view).
    double progress() const;
    /// Stores the view's own value only; nothing on screen changes.
    void setProgress(double progress) { m_progress = progress; }
    void setProgress(double progress, bool animated);

    /// Nil by default; stored only.
    const std::optional<VLXColor>& progressColor() const { return m_progressColor; }
    void setProgressColor(std::optional<VLXColor> color) { m_progressColor = std::move(color); }
    /// White by default; stored only.
    const std::optional<VLXColor>& fillColor() const { return m_fillColor; }
    void setFillColor(std::optional<VLXColor> color) { m_fillColor = std::move(color); }
    /// White by default: the border and the wedge.
    const std::optional<VLXColor>& strokeColor() const { return m_strokeColor; }
    void setStrokeColor(std::optional<VLXColor> color);
    /// 1 by default: the border's width, and how much smaller than the view the layer is.
    double strokeWidth() const { return m_strokeWidth; }
    void setStrokeWidth(double width);

    const std::shared_ptr<VLXCircularLayer>& circularLayer() const { return m_circularLayer; }
    void setCircularLayer(std::shared_ptr<VLXCircularLayer> layer) {
        m_circularLayer = std::move(layer);
    }

    /// The layer's bounds become the frame's size less `strokeWidth`, centred in the bounds.
    void layoutSubviews() override;

protected:
    VLXCircularProgressView() = default;
    void initWithFrame(const VLXRect& frame) override;

private:
    std::shared_ptr<VLXCircularLayer> m_circularLayer;
    std::optional<VLXColor> m_progressColor;
    std::optional<VLXColor> m_fillColor;
    std::optional<VLXColor> m_strokeColor;
    double m_strokeWidth = 0;
    double m_progress = 0;
};
