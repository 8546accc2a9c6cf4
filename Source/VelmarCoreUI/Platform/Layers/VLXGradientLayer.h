#pragma once

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include <VelmarCoreUI/Platform/Layers/VLXLayer.h>
#include <VelmarCoreUI/VLXExport.h>

/// A layer filled with an axial gradient across its bounds, below its contents and sublayers.
///
/// `colors` are colour values taken as given (entries that are not colours are skipped);
/// `locations` are numbers (integers accepted) from 0 to 1, nil meaning evenly spread from 0 to 1;
/// when there are fewer locations than colours the colours beyond them are left out. The
/// gradient runs from `startPoint` to `endPoint`, in unit coordinates of the bounds
/// ((0.5, 0) to (0.5, 1): top to bottom); the first and last colours extend beyond the first and
/// last stops. One colour fills the bounds; none draws nothing.
///
/// The properties live in the key-value store ("colors", "locations", "startPoint", "endPoint");
/// all four have implicit actions.
class VLX_EXPORT VLXGradientLayer : public VLXLayer {
public:
    static std::shared_ptr<VLXGradientLayer> create();

    /// An array value of colours; nil by default.
    VLXValue colors() const;
    void setColors(VLXValue colors);
    /// An array value of numbers, or nil.
    VLXValue locations() const;
    void setLocations(VLXValue locations);
    VLXPoint startPoint() const;
    void setStartPoint(VLXPoint point);
    VLXPoint endPoint() const;
    void setEndPoint(VLXPoint point);

    /// Paints the gradient over the bounds into `context` (bounds coordinates).
    void drawGradient(VLXGraphicsContext& context) const;

    VLXValue defaultValueForKey(std::string_view key) const override;
    std::shared_ptr<VLXAnimation> defaultActionForKey(std::string_view key) override;
    std::shared_ptr<VLXLayer> newInstance() const override;

    static bool isGradientAnimatableKey(std::string_view key);

    /// The stops drawn for the current colours and locations: (location, colour) pairs.
    std::vector<std::pair<double, VLXColor>> resolvedStops() const;

protected:
    VLXGradientLayer() = default;
};
