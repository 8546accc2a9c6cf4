#include <VelmarCoreUI/Models/VLXTableSection.h>

#include <algorithm>
#include <utility>

namespace {

// Archives that name the class restore as it, wherever they are nested.
[[maybe_unused]] const bool kRegistered =
    (VLXAutoCodingObject::registerClass<VLXTableSection>(), true);

bool isEqualRow(const std::shared_ptr<VLXTableSectionRow>& a, const VLXTableSectionRow& b) {
    return a && a->isEqual(b);
}

}  // namespace

std::shared_ptr<VLXTableSection> VLXTableSection::create() {
    return makeInitialized<VLXTableSection>();
}

std::shared_ptr<VLXTableSection> VLXTableSection::sectionWithTitle(
    std::optional<std::string> title) {
    auto section = create();
    section->setTitle(std::move(title));
    return section;
}

std::shared_ptr<VLXTableSection> VLXTableSection::sectionWithTitle(std::optional<std::string> title,
                                                                   Rows rows) {
    auto section = sectionWithTitle(std::move(title));
    section->setMutableRows(std::move(rows));
    return section;
}

void VLXTableSection::setMutableRows(Rows rows) {
    std::erase(rows, nullptr);
    m_rows = std::move(rows);
}

void VLXTableSection::addRow(std::shared_ptr<VLXTableSectionRow> row) {
    if (row) {
        m_rows.push_back(std::move(row));
    }
}

void VLXTableSection::addRows(const Rows& rows) {
    for (const auto& row : rows) {
        addRow(row);
    }
}

std::shared_ptr<VLXTableSectionRow> VLXTableSection::addRowWithTitle(
    std::optional<std::string> title, VLXValue value) {
    auto row = VLXTableSectionRow::rowWithTitle(std::move(title), std::move(value));
    m_rows.push_back(row);
    return row;
}

std::shared_ptr<VLXTableSectionRow> VLXTableSection::rowAtIndex(VLXUInteger index) const {
    if (index >= m_rows.size()) {
        return nullptr;
    }
    return m_rows[static_cast<std::size_t>(index)];
}

void VLXTableSection::removeRow(std::shared_ptr<VLXTableSectionRow> row) {
    // `row` is held by value: it may be one of the entries being erased.
    if (!row) {
        return;
    }
    std::erase_if(m_rows, [&](const auto& candidate) { return isEqualRow(candidate, *row); });
}

void VLXTableSection::removeRows(const Rows& rows) {
    // Copied first: `rows` may be this section's own storage.
    const Rows toRemove = rows;
    std::erase_if(m_rows, [&](const auto& candidate) {
        return std::any_of(toRemove.begin(), toRemove.end(),
                           [&](const auto& row) { return row && isEqualRow(candidate, *row); });
    });
}

void VLXTableSection::declareProperties(PropertyList& list) const {
    VLXAutoCodingObject::declareProperties(list);
    list.add("title", &VLXTableSection::title, &VLXTableSection::setTitle);
    list.add("footerTitle", &VLXTableSection::footerTitle, &VLXTableSection::setFooterTitle);
    list.add("mutableRows", &VLXTableSection::rows, &VLXTableSection::setMutableRows);
}

std::shared_ptr<VLXAutoCodingObject> VLXTableSection::newInstance() const {
    return create();
}
