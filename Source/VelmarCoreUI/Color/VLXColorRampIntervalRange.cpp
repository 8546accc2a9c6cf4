#include <VelmarCoreUI/Color/VLXColorRampIntervalRange.h>

#include <algorithm>
#include <limits>
#include <string>

#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>

namespace {

double singlePrecisionValue(std::string_view text) {
    return static_cast<double>(VLXValue(text).floatValue());
}

// Archives that name the class restore as it.
[[maybe_unused]] const bool kRegistered =
    (VLXAutoCodingObject::registerClass<VLXColorRampIntervalRange>(), true);

}  // namespace

std::shared_ptr<VLXColorRampIntervalRange> VLXColorRampIntervalRange::create() {
    return makeInitialized<VLXColorRampIntervalRange>();
}

std::shared_ptr<VLXColorRampIntervalRange> VLXColorRampIntervalRange::rangeFromValue(
    double minValue, double maxValue, double interval) {
    auto range = create();
    range->setMinValue(minValue);
    range->setMaxValue(maxValue);
    range->setInterval(interval);
    return range;
}

std::shared_ptr<VLXColorRampIntervalRange> VLXColorRampIntervalRange::rangeFromString(
    std::string_view text) {
    auto range = create();
    range->setMinValue(std::numeric_limits<double>::min());
    range->setMaxValue(std::numeric_limits<double>::max());
    range->setInterval(1.0);
    std::string_view intervalText;
    switch (std::count(text.begin(), text.end(), ':')) {
        case 0:
            intervalText = text;
            break;
        case 1: {
            const std::size_t colon = text.find(':');
            range->setMaxValue(singlePrecisionValue(text.substr(0, colon)));
            intervalText = text.substr(colon + 1);
            break;
        }
        default:
            return range;
    }
    range->setInterval(singlePrecisionValue(intervalText));
    range->setIsEvery(!intervalText.empty() && intervalText.front() == '~');
    return range;
}

std::vector<std::shared_ptr<VLXColorRampIntervalRange>>
VLXColorRampIntervalRange::arrayOfRangesFromString(std::string_view text) {
    std::vector<std::shared_ptr<VLXColorRampIntervalRange>> ranges;
    std::size_t start = 0;
    while (true) {
        const std::size_t comma = text.find(',', start);
        const std::string_view part = comma == std::string_view::npos
                                          ? text.substr(start)
                                          : text.substr(start, comma - start);
        if (auto range = rangeFromString(part)) {
            ranges.push_back(std::move(range));
        }
        if (comma == std::string_view::npos) {
            break;
        }
        start = comma + 1;
    }
    return ranges;
}

bool VLXColorRampIntervalRange::containsValue(double x) const {
    return x == m_maxValue || (m_minValue <= x && x < m_maxValue);
}

void VLXColorRampIntervalRange::declareProperties(PropertyList& list) const {
    VLXAutoCodingObject::declareProperties(list);
    list.add("minValue", &VLXColorRampIntervalRange::minValue,
             &VLXColorRampIntervalRange::setMinValue);
    list.add("maxValue", &VLXColorRampIntervalRange::maxValue,
             &VLXColorRampIntervalRange::setMaxValue);
    list.add("interval", &VLXColorRampIntervalRange::interval,
             &VLXColorRampIntervalRange::setInterval);
    list.add("isEvery", &VLXColorRampIntervalRange::isEvery,
             &VLXColorRampIntervalRange::setIsEvery);
}

std::shared_ptr<VLXAutoCodingObject> VLXColorRampIntervalRange::newInstance() const {
    return create();
}
