#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <VelmarCoreUI/Core/VLXAutoCodingObject.h>
#include <VelmarCoreUI/Models/VLXTableSectionRow.h>
#include <VelmarCoreUI/Platform/Foundation/VLXTypes.h>

/// A section of a grouped table: header and footer text and an ordered list of rows. The same
/// row may appear more than once.
///
/// Archived properties, in order: "title", "footerTitle", "mutableRows" (an array of row
/// archives), so a section with its rows round-trips through `archivedJSON` /
/// `restoreFromJSON`.
class VLX_EXPORT VLXTableSection : public VLXAutoCodingObject {
public:
    using Rows = std::vector<std::shared_ptr<VLXTableSectionRow>>;

    /// An empty section without titles.
    static std::shared_ptr<VLXTableSection> create();

    /// A new section with this title and no rows. Always a plain VLXTableSection, whichever
    /// class it is called through (unlike the row's constructor).
    static std::shared_ptr<VLXTableSection> sectionWithTitle(std::optional<std::string> title);
    /// A new section with this title holding a copy of `rows` (null entries are skipped).
    static std::shared_ptr<VLXTableSection> sectionWithTitle(std::optional<std::string> title,
                                                             Rows rows);

    /// Header text; nil by default.
    const std::optional<std::string>& title() const { return m_title; }
    void setTitle(std::optional<std::string> title) { m_title = std::move(title); }

    /// Footer text; nil by default.
    const std::optional<std::string>& footerTitle() const { return m_footerTitle; }
    void setFooterTitle(std::optional<std::string> title) { m_footerTitle = std::move(title); }

    /// The backing store of rows, in order, for callers that edit it in place.
    Rows& mutableRows() { return m_rows; }
    /// Replaces the rows (null entries are skipped).
    void setMutableRows(Rows rows);

    /// A snapshot of the rows in order; later changes to the section do not affect it.
    Rows rows() const { return m_rows; }
    VLXUInteger rowCount() const { return m_rows.size(); }

    /// Appends a row; a null row is ignored.
    void addRow(std::shared_ptr<VLXTableSectionRow> row);
    /// Appends every row in order; null rows are ignored.
    void addRows(const Rows& rows);
    /// Makes a plain row with this title and value (no cell identifier), appends and returns it.
    std::shared_ptr<VLXTableSectionRow> addRowWithTitle(std::optional<std::string> title,
                                                        VLXValue value);
    /// The row at `index`, or null when `index` is not below the row count.
    std::shared_ptr<VLXTableSectionRow> rowAtIndex(VLXUInteger index) const;
    /// Removes every row equal (`isEqual`) to `row`; nothing for null.
    void removeRow(std::shared_ptr<VLXTableSectionRow> row);
    /// Removes every row equal to any of `rows`.
    void removeRows(const Rows& rows);
    void removeAllRows() { m_rows.clear(); }

protected:
    VLXTableSection() = default;
    void declareProperties(PropertyList& list) const override;
    std::shared_ptr<VLXAutoCodingObject> newInstance() const override;

private:
    std::optional<std::string> m_title;
    std::optional<std::string> m_footerTitle;
    Rows m_rows;
};
