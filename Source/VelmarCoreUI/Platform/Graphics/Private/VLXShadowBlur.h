#pragma once

#include <array>

namespace vlx::detail {

/// Internal to the graphics context: the blur behind shadows. Three box-blur passes (each
/// horizontal then vertical) approximate a Gaussian; a box blur costs the same for any radius,
/// so large shadows stay cheap.
class VLXShadowBlur {
public:
    /// Widths (odd, at least 1) of three successive boxes whose combined variance is closest to
    /// sigma² (a width w contributes (w² − 1) / 12). Sigma ≤ 0 or NaN gives {1, 1, 1}.
    static std::array<int, 3> boxSizesForSigma(double sigma);

    /// Blurs an 8-bit alpha bitmap in place (`stride` bytes per row); pixels beyond the edges
    /// count as transparent. Nothing happens for sigma ≤ 0 or NaN or an empty bitmap.
    static void blurAlpha(unsigned char* data, int width, int height, int stride, double sigma);
};

}  // namespace vlx::detail
