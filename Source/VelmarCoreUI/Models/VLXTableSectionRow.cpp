#include <VelmarCoreUI/Models/VLXTableSectionRow.h>

namespace {

// Archives that name the class restore as it, wherever they are nested.
[[maybe_unused]] const bool kRegistered =
    (VLXAutoCodingObject::registerClass<VLXTableSectionRow>(), true);

}  // namespace

std::shared_ptr<VLXTableSectionRow> VLXTableSectionRow::create() {
    return makeInitialized<VLXTableSectionRow>();
}

void VLXTableSectionRow::declareProperties(PropertyList& list) const {
    VLXAutoCodingObject::declareProperties(list);
    list.add("title", &VLXTableSectionRow::title, &VLXTableSectionRow::setTitle);
    list.add("value", &VLXTableSectionRow::value, &VLXTableSectionRow::setValue);
    list.add("cellIdentifier", &VLXTableSectionRow::cellIdentifier,
             &VLXTableSectionRow::setCellIdentifier);
}

std::shared_ptr<VLXAutoCodingObject> VLXTableSectionRow::newInstance() const {
    return create();
}
