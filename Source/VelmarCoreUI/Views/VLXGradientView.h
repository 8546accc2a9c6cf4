#pragma once

#include <memory>
#include <optional>
#include <vector>

#include <VelmarCoreUI/Platform/Primitives/VLXColor.h>
#include <VelmarCoreUI/Platform/Views/VLXView.h>
#include <VelmarCoreUI/VLXExport.h>

class VLXGradientLayer;

/// A view backed by a gradient layer, configured from an explicit list of colours (with
/// optional locations) or else from a top and a bottom colour.
///
/// The configuration is pushed to the layer in the display pass (`drawRect`), so it takes effect
/// at the next frame of a view with a non-empty size. Setters request that pass only when the
/// value changes (colours compare by value).
///
/// Locations left nil for a non-empty `colors` are filled in at the next display as
/// 0, 1/n, …, (n−1)/n (so the last colour's band is solid) and kept: colours added later
/// without clearing `locations` reuse the old stops, and the layer then leaves out the colours
/// that have no stop.
class VLX_EXPORT VLXGradientView : public VLXView {
public:
    static std::shared_ptr<VLXGradientView> create();
    static std::shared_ptr<VLXGradientView> createWithFrame(const VLXRect& frame);

    /// A `VLXGradientLayer`.
    std::shared_ptr<VLXLayer> layerClass() const override;
    VLXGradientLayer& gradientLayer() const;

    /// First and second colour of the two-colour gradient (used when `colors` is empty).
    const std::optional<VLXColor>& topColor() const { return m_topColor; }
    void setTopColor(std::optional<VLXColor> color);
    const std::optional<VLXColor>& bottomColor() const { return m_bottomColor; }
    void setBottomColor(std::optional<VLXColor> color);
    /// Explicit colours, top to bottom; they take precedence when not empty.
    const std::vector<VLXColor>& colors() const { return m_colors; }
    void setColors(std::vector<VLXColor> colors);
    /// Stops for `colors` (0 … 1); nil until set or filled in.
    const std::optional<std::vector<double>>& locations() const { return m_locations; }
    void setLocations(std::optional<std::vector<double>> locations);

    /// Configures the layer (it draws nothing itself): `colors` with `locations` (filled in when
    /// nil); else `topColor` and `bottomColor` at 0 and 1 when both are set; else the layer is
    /// left as it is.
    void drawRect(const VLXRect& rect, VLXGraphicsContext& context) override;

protected:
    VLXGradientView() = default;

private:
    std::optional<VLXColor> m_topColor;
    std::optional<VLXColor> m_bottomColor;
    std::vector<VLXColor> m_colors;
    std::optional<std::vector<double>> m_locations;
};
