#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

// Pango's own declaration of its font description, so the text code can reach it without this
// header pulling in pango.h.
typedef struct _PangoFontDescription PangoFontDescription;

/// A font: a family (or a list of families tried in order), a weight, a style and a size in
/// points, with its metrics. Text is laid out with Pango at 72 dpi (one point is one pixel of
/// a scale-1 bitmap) with unhinted metrics, so every measurement is fractional and the same on
/// every machine with the same fonts installed.
///
/// A value type: copies share one immutable record (the Pango font description and the
/// metrics, computed once when the font is made), so copying and passing fonts is cheap.
/// Fonts of the same family list, weight, style and size share a record process-wide.
///
/// Sizes: a NaN, infinite, zero or negative size means the default size, 12 points (the size a
/// font gets when the caller gives none); finite positive sizes are clamped to 0.01 … 10 000
/// points. `pointSize()` reports the size actually used.
class VLX_EXPORT VLXFont {
public:
    /// The size fonts get when none (or an unusable one) is given: 12 points.
    static constexpr double defaultPointSize = 12;

    /// The 12-point system font.
    VLXFont();

    /// The system font: family "Inter", falling back to "DejaVu Sans" where Inter is missing
    /// (both are in the description's family list, so the fallback also covers glyphs Inter
    /// lacks). Regular weight, upright.
    static VLXFont systemFontOfSize(double size);
    /// The system font in bold weight.
    static VLXFont boldSystemFontOfSize(double size);
    /// The font called `name`: a font-config family name ("DejaVu Sans", "Inter"; compared
    /// without regard to case, as font-config compares them) or a PostScript name
    /// ("Inter-Bold", "DejaVuSans-Oblique", which selects that face's family, weight and
    /// style). Nil when no installed font has that name: a missing family is never silently
    /// replaced by another. Nil also for an empty name and names with NUL bytes or invalid
    /// UTF-8. Lookups are cached for the life of the process.
    static std::optional<VLXFont> fontWithName(std::string_view name, double size);

    /// The same family, weight and style at another size (normalised as above).
    VLXFont fontWithSize(double size) const;

    /// The family of the face the font resolves to ("Inter"), which is the first installed
    /// family of the list.
    const std::string& familyName() const;
    /// The PostScript name of the face the font resolves to ("Inter-Regular", "Inter-Bold").
    const std::string& fontName() const;
    /// The size in points, after normalisation.
    double pointSize() const;
    /// True for weights of semi-bold and heavier.
    bool isBold() const;
    /// True for italic and oblique styles.
    bool isItalic() const;

    /// Distance from the baseline up to the top of the line, positive.
    double ascender() const;
    /// Distance from the baseline down to the bottom of the line, negative (the platform's
    /// convention: baseline-relative, y up).
    double descender() const;
    /// The font's line gap: extra space between lines, never negative (0 for Inter and DejaVu
    /// Sans, whose designs put all spacing in the ascender and descender).
    double leading() const;
    /// Height of one line: ascender − descender + leading.
    double lineHeight() const;
    /// Height of capital letters above the baseline (read from the font's tables, or measured
    /// from the glyphs of fonts without them).
    double capHeight() const;
    /// Height of lowercase letters without ascenders above the baseline.
    double xHeight() const;

    /// `<VLXFont: font-family: "Inter"; font-weight: normal; font-style: normal; font-size:
    /// 12.00pt>`.
    std::string description() const;

    /// Equal when made from the same family list, weight and style at the same size (so the
    /// system font and `fontWithName("Inter", …)` differ even though both draw with Inter).
    friend bool operator==(const VLXFont& a, const VLXFont& b);

    /// The Pango description of the font (owned by the shared record, never null, not to be
    /// changed), for the text code.
    const PangoFontDescription* pangoFontDescription() const;

    /// The shared immutable state (defined with the implementation).
    struct Record;

private:
    explicit VLXFont(std::shared_ptr<const Record> record) : m_record(std::move(record)) {}
    std::shared_ptr<const Record> m_record;
};

VLX_EXPORT std::ostream& operator<<(std::ostream& os, const VLXFont& font);
