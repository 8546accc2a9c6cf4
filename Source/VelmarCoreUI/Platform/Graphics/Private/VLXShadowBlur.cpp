#include <VelmarCoreUI/Platform/Graphics/Private/VLXShadowBlur.h>

#include <cmath>
#include <cstdint>
#include <vector>

namespace vlx::detail {

std::array<int, 3> VLXShadowBlur::boxSizesForSigma(double sigma) {
    if (!(sigma > 0) || !std::isfinite(sigma)) {
        return {1, 1, 1};
    }
    // Two neighbouring odd widths wl and wl + 2, using as many of the smaller as brings the
    // total variance 3 (w² − 1) / 12 closest to sigma².
    constexpr int passes = 3;
    const double variance = 12 * sigma * sigma;
    int lower = static_cast<int>(std::floor(std::sqrt(variance / passes + 1)));
    if (lower % 2 == 0) {
        --lower;
    }
    lower = lower < 1 ? 1 : lower;
    const double idealLowerCount =
        (variance - passes * lower * lower - 4.0 * passes * lower - 3.0 * passes) /
        (-4.0 * lower - 4.0);
    const long lowerCount = std::lround(idealLowerCount);
    std::array<int, 3> sizes{};
    for (int i = 0; i < passes; ++i) {
        sizes[static_cast<std::size_t>(i)] = i < lowerCount ? lower : lower + 2;
    }
    return sizes;
}

namespace {

// One box pass along rows: out[x] = mean of in[x − r … x + r], zero outside.
void boxRows(unsigned char* data, int width, int height, int stride, int radius,
             std::vector<unsigned char>& row) {
    const std::uint32_t divisor = static_cast<std::uint32_t>(2 * radius + 1);
    row.resize(static_cast<std::size_t>(width));
    for (int y = 0; y < height; ++y) {
        unsigned char* line = data + static_cast<std::ptrdiff_t>(y) * stride;
        std::uint32_t sum = 0;
        for (int x = 0; x < radius && x < width; ++x) {
            sum += line[x];
        }
        for (int x = 0; x < width; ++x) {
            if (x + radius < width) {
                sum += line[x + radius];
            }
            row[static_cast<std::size_t>(x)] =
                static_cast<unsigned char>((sum + divisor / 2) / divisor);
            if (x - radius >= 0) {
                sum -= line[x - radius];
            }
        }
        for (int x = 0; x < width; ++x) {
            line[x] = row[static_cast<std::size_t>(x)];
        }
    }
}

// One box pass along columns, walking rows so that memory is read in order.
void boxColumns(unsigned char* data, int width, int height, int stride, int radius,
                std::vector<std::uint32_t>& sums, std::vector<unsigned char>& out) {
    const std::uint32_t divisor = static_cast<std::uint32_t>(2 * radius + 1);
    sums.assign(static_cast<std::size_t>(width), 0);
    out.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    auto rowAt = [&](int y) { return data + static_cast<std::ptrdiff_t>(y) * stride; };
    for (int y = 0; y < radius && y < height; ++y) {
        const unsigned char* line = rowAt(y);
        for (int x = 0; x < width; ++x) {
            sums[static_cast<std::size_t>(x)] += line[x];
        }
    }
    for (int y = 0; y < height; ++y) {
        if (y + radius < height) {
            const unsigned char* line = rowAt(y + radius);
            for (int x = 0; x < width; ++x) {
                sums[static_cast<std::size_t>(x)] += line[x];
            }
        }
        unsigned char* target = out.data() + static_cast<std::size_t>(y) * width;
        for (int x = 0; x < width; ++x) {
            target[x] = static_cast<unsigned char>(
                (sums[static_cast<std::size_t>(x)] + divisor / 2) / divisor);
        }
        if (y - radius >= 0) {
            const unsigned char* line = rowAt(y - radius);
            for (int x = 0; x < width; ++x) {
                sums[static_cast<std::size_t>(x)] -= line[x];
            }
        }
    }
    for (int y = 0; y < height; ++y) {
        unsigned char* line = rowAt(y);
        const unsigned char* source = out.data() + static_cast<std::size_t>(y) * width;
        for (int x = 0; x < width; ++x) {
            line[x] = source[x];
        }
    }
}

}  // namespace

void VLXShadowBlur::blurAlpha(unsigned char* data, int width, int height, int stride,
                              double sigma) {
    if (data == nullptr || width <= 0 || height <= 0 || !(sigma > 0) || !std::isfinite(sigma)) {
        return;
    }
    std::vector<unsigned char> row;
    std::vector<std::uint32_t> sums;
    std::vector<unsigned char> out;
    for (int size : boxSizesForSigma(sigma)) {
        const int radius = (size - 1) / 2;
        if (radius <= 0) {
            continue;
        }
        boxRows(data, width, height, stride, radius, row);
        boxColumns(data, width, height, stride, radius, sums, out);
    }
}

}  // namespace vlx::detail
