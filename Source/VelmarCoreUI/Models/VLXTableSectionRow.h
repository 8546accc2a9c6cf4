#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>

#include <VelmarCoreUI/Core/VLXAutoCodingObject.h>
#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>

/// One row of a grouped table: a label, the value it shows and the kind of cell that shows it.
/// The toolkit does not display rows itself; a caller's table data source reads them.
///
/// Archived properties, in order: "title", "value", "cellIdentifier". Equality is identity (the
/// base class's), so a section removes exactly the row objects it was given.
class VLX_EXPORT VLXTableSectionRow : public VLXAutoCodingObject {
public:
    static std::shared_ptr<VLXTableSectionRow> create();

    /// A new row of class `T` with title, value and cell identifier set in that order. `T`
    /// defaults to this class; a subclass asks for its own (`MyRow::rowWithTitle<MyRow>(…)`) and
    /// needs a static `create()` of its own.
    template <class T = VLXTableSectionRow>
    static std::shared_ptr<T> rowWithTitle(std::optional<std::string> title, VLXValue value,
                                           std::optional<std::string> cellIdentifier = {}) {
        static_assert(std::is_base_of_v<VLXTableSectionRow, T>,
                      "rows are VLXTableSectionRow or a subclass of it");
        std::shared_ptr<T> row = T::create();
        row->setTitle(std::move(title));
        row->setValue(std::move(value));
        row->setCellIdentifier(std::move(cellIdentifier));
        return row;
    }

    /// The row's label; nil by default.
    const std::optional<std::string>& title() const { return m_title; }
    void setTitle(std::optional<std::string> title) { m_title = std::move(title); }

    /// What the row shows: a string, a number or any object; nil by default.
    const VLXValue& value() const { return m_value; }
    void setValue(VLXValue value) { m_value = std::move(value); }

    /// Reuse identifier of the cell kind for this row; nil means the caller's default.
    const std::optional<std::string>& cellIdentifier() const { return m_cellIdentifier; }
    void setCellIdentifier(std::optional<std::string> identifier) {
        m_cellIdentifier = std::move(identifier);
    }

protected:
    VLXTableSectionRow() = default;
    void declareProperties(PropertyList& list) const override;
    std::shared_ptr<VLXAutoCodingObject> newInstance() const override;

private:
    std::optional<std::string> m_title;
    VLXValue m_value;
    std::optional<std::string> m_cellIdentifier;
};
