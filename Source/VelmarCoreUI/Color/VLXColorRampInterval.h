#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <memory>
#include <optional>
#include <string>

#include <VelmarCoreUI/Core/VLXAutoCodingObject.h>
#include <VelmarCoreUI/Platform/Foundation/VLXTypes.h>
#include <VelmarCoreUI/Platform/Primitives/VLXColor.h>

/// One entry of a generated colour ramp: a value, its colour and, where the labelling rules
/// allow, its label. Archived by property name ("value", "label", "labelAlignment", "color").
class VLX_EXPORT VLXColorRampInterval : public VLXAutoCodingObject {
public:
    /// Value 0, no label, alignment 0, no colour.
    static std::shared_ptr<VLXColorRampInterval> create();
    /// The given value, colour and label, with `labelAlignment` 1.
    static std::shared_ptr<VLXColorRampInterval> create(double value, std::optional<VLXColor> color,
                                                        std::optional<std::string> label);

    double value() const { return m_value; }
    void setValue(double value) { m_value = value; }
    const std::optional<std::string>& label() const { return m_label; }
    void setLabel(std::optional<std::string> label) { m_label = std::move(label); }
    /// Free for clients to interpret; the ramp itself only sets the default 1.
    VLXInteger labelAlignment() const { return m_labelAlignment; }
    void setLabelAlignment(VLXInteger labelAlignment) { m_labelAlignment = labelAlignment; }
    const std::optional<VLXColor>& color() const { return m_color; }
    void setColor(std::optional<VLXColor> color) { m_color = std::move(color); }

protected:
    VLXColorRampInterval() = default;
    virtual void initWithValue(double value, std::optional<VLXColor> color,
                               std::optional<std::string> label);
    void declareProperties(PropertyList& list) const override;
    std::shared_ptr<VLXAutoCodingObject> newInstance() const override;

private:
    double m_value = 0.0;
    std::optional<std::string> m_label;
    VLXInteger m_labelAlignment = 0;
    std::optional<VLXColor> m_color;
};
