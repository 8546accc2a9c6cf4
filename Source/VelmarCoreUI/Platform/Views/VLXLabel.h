#pragma once

#include <memory>
#include <optional>
#include <string>

#include <VelmarCoreUI/Platform/Foundation/VLXTypes.h>
#include <VelmarCoreUI/Platform/Graphics/VLXFont.h>
#include <VelmarCoreUI/Platform/Graphics/VLXTextAttributes.h>
#include <VelmarCoreUI/Platform/Primitives/VLXColor.h>
#include <VelmarCoreUI/Platform/Primitives/VLXGeometry.h>
#include <VelmarCoreUI/Platform/Views/VLXView.h>
#include <VelmarCoreUI/VLXExport.h>

/// A view that draws a read-only text in one font and colour.
///
/// The text is drawn vertically centred in the bounds, aligned horizontally per
/// `textAlignment`, on as many lines as `numberOfLines` allows (0: as many as fit) and cut per
/// `lineBreakMode`. With `adjustsFontSizeToFitWidth`, a one-line text too wide for the bounds
/// is drawn in a smaller size, down to `minimumScaleFactor` × the font size, before it is
/// truncated.
///
/// The laid-out text (the font size used, the lines' box, the part of the text that can be
/// seen) is kept until a property or the bounds size changes, so drawing an unchanged label
/// again lays nothing out. Texts of any length are cut to what the bounds can show before they
/// reach the text engine, so a million-character text costs no more than a screenful.
///
/// Not interactive by default; the background is clear.
class VLX_EXPORT VLXLabel : public VLXView {
public:
    static std::shared_ptr<VLXLabel> create();
    static std::shared_ptr<VLXLabel> createWithFrame(const VLXRect& frame);
    ~VLXLabel() override;

    /// Nil by default; nil and "" are told apart (the getter returns what was set), both draw
    /// nothing.
    const std::optional<std::string>& text() const { return m_text; }
    void setText(std::optional<std::string> text);

    /// The 17-point system font by default; nil restores it.
    const VLXFont& font() const { return m_font; }
    void setFont(std::optional<VLXFont> font);

    /// Black by default; nil restores it.
    const VLXColor& textColor() const { return m_textColor; }
    void setTextColor(std::optional<VLXColor> color);

    /// Left (0) by default; centre is 1, right 2 (the platform's numbering).
    VLXTextAlignment textAlignment() const { return m_textAlignment; }
    void setTextAlignment(VLXTextAlignment alignment);

    /// Nil (no shadow) by default. The offset is (0, −1) by default; a positive height moves the
    /// shadow down. Non-finite offsets count as 0.
    const std::optional<VLXColor>& shadowColor() const { return m_shadowColor; }
    void setShadowColor(std::optional<VLXColor> color);
    VLXSize shadowOffset() const { return m_shadowOffset; }
    void setShadowOffset(VLXSize offset);

    /// NO by default. `minimumScaleFactor` (0 by default) is stored as given; it only matters
    /// while shrinking is on, and values outside [0, 1] or NaN act as 0 there.
    bool adjustsFontSizeToFitWidth() const { return m_adjustsFontSizeToFitWidth; }
    void setAdjustsFontSizeToFitWidth(bool adjusts);
    double minimumScaleFactor() const { return m_minimumScaleFactor; }
    void setMinimumScaleFactor(double factor);

    /// 1 by default; 0 means no limit. Negative values count as 0.
    VLXInteger numberOfLines() const { return m_numberOfLines; }
    void setNumberOfLines(VLXInteger lines);

    /// Truncating the tail by default.
    VLXLineBreakMode lineBreakMode() const { return m_lineBreakMode; }
    void setLineBreakMode(VLXLineBreakMode mode);

    /// The text's size on one line ((0, 0) for nil or ""); with `numberOfLines` other than 1,
    /// the size of the text wrapped at `size.width` (no limit when that is not finite and
    /// positive), at most `numberOfLines` lines. Never smaller than the text needs in height,
    /// and never rounded.
    VLXSize sizeThatFits(VLXSize size) const override;

    void drawRect(const VLXRect& rect, VLXGraphicsContext& context) override;

    /// How many times the label laid its text out (measuring for drawing), for tests and
    /// benchmarks that check that unchanged labels are not laid out again.
    std::uint64_t textLayoutCount() const { return m_textLayoutCount; }

    std::string description() const override;

protected:
    VLXLabel();
    void initWithFrame(const VLXRect& frame) override;

private:
    struct TextLayout;

    // Forgets the cached layout and marks the label for display.
    void invalidateText();
    // The layout for the current bounds size, made when missing.
    const TextLayout& textLayout(VLXSize boundsSize);

    std::optional<std::string> m_text;
    VLXFont m_font;
    VLXColor m_textColor;
    VLXTextAlignment m_textAlignment = VLXTextAlignment::Left;
    std::optional<VLXColor> m_shadowColor;
    VLXSize m_shadowOffset{0, -1};
    bool m_adjustsFontSizeToFitWidth = false;
    double m_minimumScaleFactor = 0;
    VLXInteger m_numberOfLines = 1;
    VLXLineBreakMode m_lineBreakMode = VLXLineBreakMode::ByTruncatingTail;
    std::unique_ptr<TextLayout> m_layout;
    std::uint64_t m_textLayoutCount = 0;
};
