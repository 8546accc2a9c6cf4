// vlx-bench-polyline-table: strokes noisy polylines of 10⁴, 10⁵ and 10⁶ points into a 1280 × 720
// bitmap three ways and prints one row per size: the graphics context, raw cairo with one path,
// raw cairo in 1000-segment pieces, and the ratios. `--quick` skips the million-point one-path
// run (about 20 s).
#include <chrono>
#include <cstdio>
#include <cstring>
#include <functional>

#include "../PolylineWorkload.h"

#include "TableCase.h"

int main(int argc, char** argv) {
    const bool quick = argc > 1 && std::strcmp(argv[1], "--quick") == 0;
    auto context =
        VLXGraphicsContext::createBitmap(VLXSizeMake(polyline::kWidth, polyline::kHeight), 1);
    polyline::RawCairo raw;
    std::printf("%9s %12s %16s %14s %14s %14s\n", "N", "ours ms", "raw one path ms",
                "raw pieces ms", "ours/one", "ours/pieces");
    for (const std::size_t count :
         {std::size_t{10000}, std::size_t{100000}, std::size_t{1000000}}) {
        const auto points = polyline::noisyLine(count);
        const int repeats = count >= 1000000 ? 1 : 3;
        const double ours = table::bestMilliseconds(
            [&] { polyline::strokeWithContext(*context, points); }, repeats);
        const double pieces = table::bestMilliseconds([&] { raw.strokePieces(points); }, repeats);
        const bool skipOne = quick && count >= 1000000;
        const double one =
            skipOne ? 0 : table::bestMilliseconds([&] { raw.strokeOnePath(points); }, repeats);
        if (skipOne) {
            std::printf("%9zu %12.1f %16s %14.1f %14s %14.2f\n", count, ours, "skipped", pieces,
                        "-", ours / pieces);
        } else {
            std::printf("%9zu %12.1f %16.1f %14.1f %14.3f %14.2f\n", count, ours, one, pieces,
                        ours / one, ours / pieces);
        }
        std::fflush(stdout);
    }
    return 0;
}
