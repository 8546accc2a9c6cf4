#include <VelmarCoreUI/Views/VLXGradientView.h>

#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>
#include <VelmarCoreUI/Platform/Layers/VLXGradientLayer.h>

namespace {

// Redraws are requested only for a different value; NaN components count as equal to
// themselves, so a NaN colour set twice does not redraw again.
bool sameColor(const std::optional<VLXColor>& a, const std::optional<VLXColor>& b) {
    return VLXValue(a) == VLXValue(b);
}

bool sameColors(const std::vector<VLXColor>& a, const std::vector<VLXColor>& b) {
    if (a.size() != b.size()) {
        return false;
    }
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (!(VLXValue(a[i]) == VLXValue(b[i]))) {
            return false;
        }
    }
    return true;
}

bool sameLocations(const std::optional<std::vector<double>>& a,
                   const std::optional<std::vector<double>>& b) {
    if (a.has_value() != b.has_value()) {
        return false;
    }
    if (!a) {
        return true;
    }
    if (a->size() != b->size()) {
        return false;
    }
    for (std::size_t i = 0; i < a->size(); ++i) {
        if (!(VLXValue((*a)[i]) == VLXValue((*b)[i]))) {
            return false;
        }
    }
    return true;
}

}  // namespace

std::shared_ptr<VLXGradientView> VLXGradientView::create() {
    return createWithFrame(VLXRectZero);
}

std::shared_ptr<VLXGradientView> VLXGradientView::createWithFrame(const VLXRect& frame) {
    return makeWithFrame<VLXGradientView>(frame);
}

std::shared_ptr<VLXLayer> VLXGradientView::layerClass() const {
    return VLXGradientLayer::create();
}

VLXGradientLayer& VLXGradientView::gradientLayer() const {
    return layerAs<VLXGradientLayer>();
}

void VLXGradientView::setTopColor(std::optional<VLXColor> color) {
    if (sameColor(color, m_topColor)) {
        return;
    }
    m_topColor = std::move(color);
    setNeedsDisplay();
}

void VLXGradientView::setBottomColor(std::optional<VLXColor> color) {
    if (sameColor(color, m_bottomColor)) {
        return;
    }
    m_bottomColor = std::move(color);
    setNeedsDisplay();
}

void VLXGradientView::setColors(std::vector<VLXColor> colors) {
    if (sameColors(colors, m_colors)) {
        return;
    }
    m_colors = std::move(colors);
    setNeedsDisplay();
}

void VLXGradientView::setLocations(std::optional<std::vector<double>> locations) {
    if (sameLocations(locations, m_locations)) {
        return;
    }
    m_locations = std::move(locations);
    setNeedsDisplay();
}

void VLXGradientView::drawRect(const VLXRect&, VLXGraphicsContext&) {
    VLXGradientLayer& layer = gradientLayer();
    if (!m_colors.empty()) {
        if (!m_locations) {
            // Divided by the count, not the count less one: the last colour gets a solid band.
            const auto n = static_cast<double>(m_colors.size());
            std::vector<double> computed;
            computed.reserve(m_colors.size());
            for (std::size_t i = 0; i < m_colors.size(); ++i) {
                computed.push_back(static_cast<double>(i) / n);
            }
            // Stored without asking for another display: this one pushes them already.
            m_locations = std::move(computed);
        }
        VLXValue::Array colors(m_colors.begin(), m_colors.end());
        VLXValue::Array locations;
        locations.reserve(m_locations->size());
        for (double location : *m_locations) {
            locations.emplace_back(location);
        }
        layer.setColors(VLXValue(std::move(colors)));
        layer.setLocations(VLXValue(std::move(locations)));
        return;
    }
    if (m_topColor && m_bottomColor) {
        layer.setColors(VLXValue(VLXValue::Array{VLXValue(*m_topColor), VLXValue(*m_bottomColor)}));
        layer.setLocations(VLXValue(VLXValue::Array{VLXValue(0), VLXValue(1)}));
    }
}
