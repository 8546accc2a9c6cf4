#include <VelmarCoreUI/Color/VLXColorRampInterval.h>

namespace {

// Archives that name the class restore as it.
[[maybe_unused]] const bool kRegistered =
    (VLXAutoCodingObject::registerClass<VLXColorRampInterval>(), true);

}  // namespace

std::shared_ptr<VLXColorRampInterval> VLXColorRampInterval::create() {
    return makeInitialized<VLXColorRampInterval>();
}

std::shared_ptr<VLXColorRampInterval> VLXColorRampInterval::create(
    double value, std::optional<VLXColor> color, std::optional<std::string> label) {
    auto interval = VLXMakeShared<VLXColorRampInterval>();
    interval->initWithValue(value, std::move(color), std::move(label));
    return interval;
}

void VLXColorRampInterval::initWithValue(double value, std::optional<VLXColor> color,
                                         std::optional<std::string> label) {
    init();
    m_value = value;
    m_color = std::move(color);
    m_label = std::move(label);
    m_labelAlignment = 1;
}

void VLXColorRampInterval::declareProperties(PropertyList& list) const {
    VLXAutoCodingObject::declareProperties(list);
    list.add("value", &VLXColorRampInterval::value, &VLXColorRampInterval::setValue);
    list.add("label", &VLXColorRampInterval::label, &VLXColorRampInterval::setLabel);
    list.add("labelAlignment", &VLXColorRampInterval::labelAlignment,
             &VLXColorRampInterval::setLabelAlignment);
    list.add("color", &VLXColorRampInterval::color, &VLXColorRampInterval::setColor);
}

std::shared_ptr<VLXAutoCodingObject> VLXColorRampInterval::newInstance() const {
    return create();
}
