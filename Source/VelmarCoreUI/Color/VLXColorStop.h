#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <limits>
#include <memory>
#include <optional>
#include <string>

#include <VelmarCoreUI/Core/VLXAutoCodingObject.h>
#include <VelmarCoreUI/Platform/Foundation/VLXTypes.h>
#include <VelmarCoreUI/Platform/Primitives/VLXColor.h>

/// The value of a stop whose value was never set: the most negative finite double.
inline constexpr double VLXColorStopNilValue = -std::numeric_limits<double>::max();

/// One stop of a colour ramp: a colour at a value, with the number of intermediate steps
/// between the previous stop and this one. Archived by property name ("color", "alpha",
/// "totalSteps", "value", "labelValue").
class VLX_EXPORT VLXColorStop : public VLXAutoCodingObject {
public:
    /// A stop with no colour, alpha 1, no steps, the value `VLXColorStopNilValue`, no label.
    static std::shared_ptr<VLXColorStop> create();

    /// A stop with the colour and value; no steps and no label.
    static std::shared_ptr<VLXColorStop> stopWithColor(std::optional<VLXColor> color, double value);
    static std::shared_ptr<VLXColorStop> stopWithColor(std::optional<VLXColor> color, double value,
                                                       std::optional<std::string> label);
    static std::shared_ptr<VLXColorStop> stopWithColor(std::optional<VLXColor> color,
                                                       VLXUInteger steps, double value);
    static std::shared_ptr<VLXColorStop> stopWithColor(std::optional<VLXColor> color,
                                                       VLXUInteger steps, double value,
                                                       std::optional<std::string> label);

    /// The colour at this stop; nil when none was given.
    const std::optional<VLXColor>& color() const { return m_color; }
    void setColor(std::optional<VLXColor> color) { m_color = std::move(color); }
    /// Stored for clients; interval generation does not read it.
    double alpha() const { return m_alpha; }
    void setAlpha(double alpha) { m_alpha = alpha; }
    /// Intermediate intervals between the previous stop and this one.
    VLXUInteger totalSteps() const { return m_totalSteps; }
    void setTotalSteps(VLXUInteger totalSteps) { m_totalSteps = totalSteps; }
    double value() const { return m_value; }
    void setValue(double value) { m_value = value; }
    /// Stored for clients; interval generation does not read it.
    const std::optional<std::string>& labelValue() const { return m_labelValue; }
    void setLabelValue(std::optional<std::string> labelValue) {
        m_labelValue = std::move(labelValue);
    }

protected:
    VLXColorStop() = default;
    void declareProperties(PropertyList& list) const override;
    std::shared_ptr<VLXAutoCodingObject> newInstance() const override;

private:
    std::optional<VLXColor> m_color;
    double m_alpha = 1.0;
    VLXUInteger m_totalSteps = 0;
    double m_value = VLXColorStopNilValue;
    std::optional<std::string> m_labelValue;
};
