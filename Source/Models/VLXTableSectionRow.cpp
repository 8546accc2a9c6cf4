#include "Models/VLXTableSectionRow.h"

std::shared_ptr<VLXTableSectionRow> VLXTableSectionRow::create() {
    // Lets archives naming "VLXTableSectionRow" restore as rows wherever they are nested.
    static const bool registered = [] {
        registerClass<VLXTableSectionRow>("VLXTableSectionRow");
        return true;
    }();
    (void)registered;
    auto row = VLXMakeShared<VLXTableSectionRow>();
    row->init();
    return row;
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
