// Interval-range strings of colour ramps ("100:10,~2,25"). Every part gives one range; a range
// contains its maximum, its minimum when that lies below the maximum, and nothing below its
// minimum other than the maximum; ranges with finite fields archive and restore unchanged.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include <VelmarCoreUI/Color/VLXColorRampIntervalRange.h>

#include "FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(bytes), size);
    const auto ranges = VLXColorRampIntervalRange::arrayOfRangesFromString(text);
    const auto parts = static_cast<std::size_t>(std::count(text.begin(), text.end(), ',')) + 1;
    VLX_FUZZ_CHECK(ranges.size() == parts, std::string(text));

    std::size_t start = 0;
    for (const auto& range : ranges) {
        const std::size_t comma = text.find(',', start);
        const std::string_view part = text.substr(start, comma - start);
        start = comma + 1;
        const std::string detail = std::string(part) + " → " + range->description();

        VLX_FUZZ_CHECK(range->minValue() == std::numeric_limits<double>::min(), detail);
        VLX_FUZZ_CHECK(!std::isnan(range->maxValue()) && !std::isnan(range->interval()), detail);
        VLX_FUZZ_CHECK(range->containsValue(range->maxValue()), detail);
        if (range->minValue() < range->maxValue()) {
            VLX_FUZZ_CHECK(range->containsValue(range->minValue()), detail);
            const double inside = range->minValue() + (range->maxValue() - range->minValue()) / 2;
            VLX_FUZZ_CHECK(range->containsValue(inside), detail);
        }
        if (range->maxValue() > 0) {
            VLX_FUZZ_CHECK(!range->containsValue(0.0) && !range->containsValue(-1.0), detail);
        }
        const auto colons = std::count(part.begin(), part.end(), ':');
        if (colons == 1) {
            const std::string_view maxText = part.substr(0, part.find(':'));
            VLX_FUZZ_CHECK(range->maxValue() == static_cast<double>(VLXValue(maxText).floatValue()),
                           detail);
        } else {
            VLX_FUZZ_CHECK(range->maxValue() == std::numeric_limits<double>::max(), detail);
        }
        if (colons <= 1) {
            const std::string_view intervalText =
                colons == 1 ? part.substr(part.find(':') + 1) : part;
            VLX_FUZZ_CHECK(range->isEvery() == (!intervalText.empty() && intervalText[0] == '~'),
                           detail);
        }

        if (std::isfinite(range->maxValue()) && std::isfinite(range->interval())) {
            const auto restored = VLXColorRampIntervalRange::create();
            VLX_FUZZ_CHECK(restored->restoreFromJSON(range->archivedJSON()), detail);
            VLX_FUZZ_CHECK(restored->archivedJSON() == range->archivedJSON(),
                           detail + " ≠ " + restored->description());
        }
    }
    return 0;
}
