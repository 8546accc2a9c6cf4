#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <array>
#include <cstddef>
#include <initializer_list>
#include <iosfwd>
#include <span>
#include <string>

/// Colour-space model of a colour, numbered as the platform numbers them.
enum class VLXColorSpaceModel : int {
    Monochrome = 0,  ///< components: white, alpha
    RGB = 1,         ///< components: red, green, blue, alpha
    Other = 2,  ///< anything else (CMYK, pattern …): the colour utilities treat it as unknown
};

/// A colour value: its colour-space model and its components, the last one always alpha.
/// Components are stored as given (no clamping), as the platform's extended-range colours are;
/// NaN and infinite components are kept too and never make an operation misbehave.
/// Copying is cheap; equality is exact (same model, same components to the last bit; a NaN
/// component equals a NaN component, so every colour equals itself).
class VLX_EXPORT VLXColor {
public:
    /// Opaque black in the monochrome model.
    VLXColor();
    /// A colour of any model from its components (alpha last). At most 5 components; extra
    /// ones are dropped, and an empty list gives a transparent colour with only an alpha.
    VLXColor(VLXColorSpaceModel model, std::initializer_list<double> components);

    static VLXColor colorWithRed(double red, double green, double blue, double alpha);
    static VLXColor colorWithWhite(double white, double alpha);
    /// HSB in 0…1 converted to an RGB colour (alpha stored as given). Out-of-range input: the
    /// hue is an angle and wraps into [0, 1) (1.25 → 0.25, -0.25 → 0.75; NaN or infinite → 0);
    /// saturation and brightness are clamped to [0, 1] before conversion (NaN → 0), so a
    /// negative saturation gives the grey of that brightness.
    static VLXColor colorWithHue(double hue, double saturation, double brightness, double alpha);

    // Named colours, with the models the platform gives them.
    static VLXColor blackColor();      ///< monochrome 0
    static VLXColor darkGrayColor();   ///< monochrome 1/3
    static VLXColor lightGrayColor();  ///< monochrome 2/3
    static VLXColor whiteColor();      ///< monochrome 1
    static VLXColor grayColor();       ///< monochrome 0.5
    static VLXColor clearColor();      ///< monochrome 0, alpha 0
    static VLXColor redColor();        ///< RGB 1, 0, 0
    static VLXColor greenColor();      ///< RGB 0, 1, 0
    static VLXColor blueColor();       ///< RGB 0, 0, 1
    static VLXColor cyanColor();       ///< RGB 0, 1, 1
    static VLXColor yellowColor();     ///< RGB 1, 1, 0
    static VLXColor magentaColor();    ///< RGB 1, 0, 1
    static VLXColor orangeColor();     ///< RGB 1, 0.5, 0
    static VLXColor purpleColor();     ///< RGB 0.5, 0, 0.5
    static VLXColor brownColor();      ///< RGB 0.6, 0.4, 0.2

    VLXColorSpaceModel colorSpaceModel() const { return m_model; }
    std::size_t numberOfComponents() const { return m_count; }
    std::span<const double> components() const { return {m_components.data(), m_count}; }
    /// The last component, whatever the model.
    double alpha() const;

    // The getters write only through non-null pointers and leave them untouched on failure.
    // A colour whose component count does not fit its model (built with the generic
    // constructor) answers none of them.

    /// Red, green, blue and alpha; succeeds for monochrome (white three times) and RGB colours.
    bool getRed(double* red, double* green, double* blue, double* alpha) const;
    /// White and alpha; succeeds for monochrome colours only.
    bool getWhite(double* white, double* alpha) const;
    /// Hue, saturation, brightness and alpha; succeeds for RGB colours only. Computed from the
    /// stored components (brightness = the largest of red, green, blue; saturation = 0 when
    /// that is 0); for components within 0…1 all results are within 0…1, hue in [0, 1).
    bool getHue(double* hue, double* saturation, double* brightness, double* alpha) const;

    /// The same colour with another alpha, in the same model.
    VLXColor colorWithAlphaComponent(double alpha) const;

    /// "VLXColor(rgb 1 0 0.5 1)", "VLXColor(white 0.5 1)", "VLXColor(other …)": the model and
    /// the components, each as the shortest text that reads back exactly.
    std::string description() const;

    friend bool operator==(const VLXColor& a, const VLXColor& b);

private:
    static constexpr std::size_t kMaxComponents = 5;
    VLXColorSpaceModel m_model = VLXColorSpaceModel::Monochrome;
    std::size_t m_count = 2;
    std::array<double, kMaxComponents> m_components{0, 1, 0, 0, 0};
};

VLX_EXPORT std::ostream& operator<<(std::ostream& os, const VLXColor& color);
