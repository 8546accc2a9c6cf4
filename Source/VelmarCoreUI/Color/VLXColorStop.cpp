#include <VelmarCoreUI/Color/VLXColorStop.h>

namespace {

// Archives that name the class restore as it.
[[maybe_unused]] const bool kRegistered =
    (VLXAutoCodingObject::registerClass<VLXColorStop>(), true);

}  // namespace

std::shared_ptr<VLXColorStop> VLXColorStop::create() {
    return makeInitialized<VLXColorStop>();
}

std::shared_ptr<VLXColorStop> VLXColorStop::stopWithColor(std::optional<VLXColor> color,
                                                          double value) {
    return stopWithColor(std::move(color), 0, value, std::nullopt);
}

std::shared_ptr<VLXColorStop> VLXColorStop::stopWithColor(std::optional<VLXColor> color,
                                                          double value,
                                                          std::optional<std::string> label) {
    return stopWithColor(std::move(color), 0, value, std::move(label));
}

std::shared_ptr<VLXColorStop> VLXColorStop::stopWithColor(std::optional<VLXColor> color,
                                                          VLXUInteger steps, double value) {
    return stopWithColor(std::move(color), steps, value, std::nullopt);
}

std::shared_ptr<VLXColorStop> VLXColorStop::stopWithColor(std::optional<VLXColor> color,
                                                          VLXUInteger steps, double value,
                                                          std::optional<std::string> label) {
    auto stop = create();
    stop->setColor(std::move(color));
    stop->setValue(value);
    stop->setTotalSteps(steps);
    stop->setLabelValue(std::move(label));
    return stop;
}

void VLXColorStop::declareProperties(PropertyList& list) const {
    VLXAutoCodingObject::declareProperties(list);
    list.add("color", &VLXColorStop::color, &VLXColorStop::setColor);
    list.add("alpha", &VLXColorStop::alpha, &VLXColorStop::setAlpha);
    list.add("totalSteps", &VLXColorStop::totalSteps, &VLXColorStop::setTotalSteps);
    list.add("value", &VLXColorStop::value, &VLXColorStop::setValue);
    list.add("labelValue", &VLXColorStop::labelValue, &VLXColorStop::setLabelValue);
}

std::shared_ptr<VLXAutoCodingObject> VLXColorStop::newInstance() const {
    return create();
}
