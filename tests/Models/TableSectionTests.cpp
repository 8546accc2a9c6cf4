#include <gtest/gtest.h>

#include <VelmarCoreUI/Models/VLXTableSection.h>

namespace {

class DetailRow : public VLXTableSectionRow {
public:
    static std::shared_ptr<DetailRow> create() {
        auto row = VLXMakeShared<DetailRow>();
        row->init();
        return row;
    }
    std::string className() const override { return "DetailRow"; }

protected:
    DetailRow() = default;
    std::shared_ptr<VLXAutoCodingObject> newInstance() const override { return create(); }
};

class GroupSection : public VLXTableSection {};

}  // namespace

TEST(TableSection, RowConstructors) {
    auto row = VLXTableSectionRow::rowWithTitle("Name", VLXValue("Ada"));
    EXPECT_EQ(row->title(), "Name");
    EXPECT_EQ(row->value(), VLXValue("Ada"));
    EXPECT_FALSE(row->cellIdentifier().has_value());

    auto detail = DetailRow::rowWithTitle<DetailRow>(std::nullopt, VLXValue(3), "detail");
    static_assert(std::is_same_v<decltype(detail), std::shared_ptr<DetailRow>>);
    EXPECT_EQ(detail->className(), "DetailRow");
    EXPECT_FALSE(detail->title().has_value());
    EXPECT_EQ(detail->cellIdentifier(), "detail");

    // The section's constructor always gives the base class.
    auto section = GroupSection::sectionWithTitle("Group");
    EXPECT_EQ(section->className(), "VLXTableSection");
    EXPECT_EQ(section->title(), "Group");
    EXPECT_FALSE(section->footerTitle().has_value());
    EXPECT_EQ(section->rowCount(), 0u);
}

TEST(TableSection, RowsAreCopiedAndIndexedSafely) {
    VLXTableSection::Rows source = {VLXTableSectionRow::rowWithTitle("a", VLXValue(1)), nullptr,
                                    VLXTableSectionRow::rowWithTitle("b", VLXValue(2))};
    auto section = VLXTableSection::sectionWithTitle("S", source);
    source.clear();
    ASSERT_EQ(section->rowCount(), 2u);  // the null entry is skipped
    EXPECT_EQ(section->rowAtIndex(1)->title(), "b");
    EXPECT_EQ(section->rowAtIndex(2), nullptr);
    EXPECT_EQ(section->rowAtIndex(VLXNotFound), nullptr);

    auto snapshot = section->rows();
    auto added = section->addRowWithTitle("c", VLXValue("three"));
    EXPECT_EQ(snapshot.size(), 2u);
    EXPECT_EQ(section->rowAtIndex(2), added);
    EXPECT_FALSE(added->cellIdentifier().has_value());
}

TEST(TableSection, RemovingTakesEveryEqualRow) {
    auto section = VLXTableSection::create();
    auto a = VLXTableSectionRow::rowWithTitle("a", VLXValue(1));
    auto b = VLXTableSectionRow::rowWithTitle("b", VLXValue(2));
    auto lookalike = VLXTableSectionRow::rowWithTitle("a", VLXValue(1));
    section->addRows({a, b, a, lookalike});
    section->addRow(nullptr);
    EXPECT_EQ(section->rowCount(), 4u);

    section->removeRow(a);  // identity: the look-alike stays
    EXPECT_EQ(section->rows(), (VLXTableSection::Rows{b, lookalike}));
    section->addRows({a, a});
    section->removeRows({lookalike, a, nullptr});
    EXPECT_EQ(section->rows(), VLXTableSection::Rows{b});
    // A row held only by the section survives being passed to its own removal.
    section->removeRow(section->rowAtIndex(0));
    EXPECT_EQ(section->rowCount(), 0u);

    section->addRows({a, b});
    section->removeRows(section->mutableRows());
    EXPECT_EQ(section->rowCount(), 0u);
    section->addRow(a);
    section->removeAllRows();
    EXPECT_EQ(section->rowCount(), 0u);
}

TEST(TableSection, ArchivesRoundTrip) {
    auto section = VLXTableSection::sectionWithTitle("Settings");
    section->setFooterTitle("Footer");
    section->addRowWithTitle("Volume", VLXValue(0.75));
    section->addRow(VLXTableSectionRow::rowWithTitle(std::nullopt, VLXValue("on"), "switch"));

    auto restored = VLXTableSection::create();
    ASSERT_TRUE(restored->restoreFromJSON(section->archivedJSON()));
    EXPECT_EQ(restored->title(), "Settings");
    EXPECT_EQ(restored->footerTitle(), "Footer");
    ASSERT_EQ(restored->rowCount(), 2u);
    EXPECT_EQ(restored->rowAtIndex(0)->title(), "Volume");
    EXPECT_EQ(restored->rowAtIndex(0)->value(), VLXValue(0.75));
    EXPECT_FALSE(restored->rowAtIndex(1)->title().has_value());
    EXPECT_EQ(restored->rowAtIndex(1)->value(), VLXValue("on"));
    EXPECT_EQ(restored->rowAtIndex(1)->cellIdentifier(), "switch");
    // Fresh objects, not the originals.
    EXPECT_NE(restored->rowAtIndex(0), section->rowAtIndex(0));

    EXPECT_FALSE(restored->restoreFromJSON("{ not json"));
    EXPECT_EQ(restored->rowCount(), 2u);
}
