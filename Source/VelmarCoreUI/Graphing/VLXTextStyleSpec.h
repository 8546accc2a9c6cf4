#pragma once

#include <memory>
#include <optional>

#include <VelmarCoreUI/Core/VLXAutoCodingObject.h>
#include <VelmarCoreUI/Platform/Foundation/VLXTypes.h>
#include <VelmarCoreUI/Platform/Graphics/VLXFont.h>
#include <VelmarCoreUI/Platform/Graphics/VLXTextAttributes.h>
#include <VelmarCoreUI/Platform/Primitives/VLXColor.h>
#include <VelmarCoreUI/Platform/Primitives/VLXGeometry.h>
#include <VelmarCoreUI/VLXExport.h>

class VLXLabel;

/// The text attributes of a label (font, colours, alignment, shadow, shrink-to-fit) bundled so
/// that many labels can be styled alike. Only the attributes that are set reach a label.
///
/// Archived by property name: "backgroundColor", "font" ({"fontName", "pointSize"}, plus
/// "systemWeight": "regular" or "bold" for the system fonts), "textColor", "textAlignment" (the
/// platform's integer), "shadowColor", "shadowOffset" ([width, height]),
/// "adjustsFontSizeToFitWidth", "minimumScaleFactor". A font archive naming a font that is not
/// installed leaves the font as it was.
class VLX_EXPORT VLXTextStyleSpec : public VLXAutoCodingObject {
public:
    /// Everything nil or zero, except `minimumScaleFactor` 0.8.
    static std::shared_ptr<VLXTextStyleSpec> create();

    const std::optional<VLXColor>& backgroundColor() const { return m_backgroundColor; }
    void setBackgroundColor(std::optional<VLXColor> color) { m_backgroundColor = std::move(color); }
    const std::optional<VLXFont>& font() const { return m_font; }
    void setFont(std::optional<VLXFont> font) { m_font = std::move(font); }
    const std::optional<VLXColor>& textColor() const { return m_textColor; }
    void setTextColor(std::optional<VLXColor> color) { m_textColor = std::move(color); }
    /// Left (0) by default, and left is never written to a label: it keeps its own alignment.
    VLXTextAlignment textAlignment() const { return m_textAlignment; }
    void setTextAlignment(VLXTextAlignment alignment) { m_textAlignment = alignment; }
    const std::optional<VLXColor>& shadowColor() const { return m_shadowColor; }
    void setShadowColor(std::optional<VLXColor> color) { m_shadowColor = std::move(color); }
    /// {0, 0} by default, which is never written to a label.
    VLXSize shadowOffset() const { return m_shadowOffset; }
    void setShadowOffset(VLXSize offset) { m_shadowOffset = offset; }
    bool adjustsFontSizeToFitWidth() const { return m_adjustsFontSizeToFitWidth; }
    void setAdjustsFontSizeToFitWidth(bool adjusts) { m_adjustsFontSizeToFitWidth = adjusts; }
    /// 0.8 by default; written to a label only together with shrinking on.
    double minimumScaleFactor() const { return m_minimumScaleFactor; }
    void setMinimumScaleFactor(double factor) { m_minimumScaleFactor = factor; }

    /// Writes, in order and each only when set: background colour, font, text colour, alignment
    /// (not left), shadow colour, shadow offset (not {0, 0}); then always
    /// `adjustsFontSizeToFitWidth`, and `minimumScaleFactor` only when that is on.
    void applyToLabel(VLXLabel& label) const;
    /// `applyToLabel(label)`, then the label's font (the style's, or the label's own when the
    /// style has none) at `fontSize`.
    void applyToLabel(VLXLabel& label, double fontSize) const;

protected:
    VLXTextStyleSpec() = default;
    void declareProperties(PropertyList& list) const override;
    std::shared_ptr<VLXAutoCodingObject> newInstance() const override;

private:
    // Archive forms of the properties that have no coding of their own.
    VLXValue fontArchive() const;
    void setFontArchive(VLXValue archive);
    VLXInteger textAlignmentNumber() const;
    void setTextAlignmentNumber(VLXInteger alignment);
    VLXValue shadowOffsetArchive() const;
    void setShadowOffsetArchive(VLXValue archive);

    std::optional<VLXColor> m_backgroundColor;
    std::optional<VLXFont> m_font;
    std::optional<VLXColor> m_textColor;
    VLXTextAlignment m_textAlignment = VLXTextAlignment::Left;
    std::optional<VLXColor> m_shadowColor;
    VLXSize m_shadowOffset{0, 0};
    bool m_adjustsFontSizeToFitWidth = false;
    double m_minimumScaleFactor = 0.8;
};
