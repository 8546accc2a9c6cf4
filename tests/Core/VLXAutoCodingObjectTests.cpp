#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <VelmarCoreUI/Core/VLXAutoCodingObject.h>

// A model with one property of each kind archives support.
class CodingTestModel : public VLXAutoCodingObject {
public:
    static std::shared_ptr<CodingTestModel> create() {
        auto model = VLXMakeShared<CodingTestModel>();
        model->init();
        return model;
    }
    const std::string& title() const { return m_title; }
    void setTitle(std::string title) { m_title = std::move(title); }
    std::optional<std::string> subtitle() const { return m_subtitle; }
    void setSubtitle(std::optional<std::string> subtitle) { m_subtitle = std::move(subtitle); }
    double ratio() const { return m_ratio; }
    void setRatio(double ratio) { m_ratio = ratio; }
    bool isEnabled() const { return m_enabled; }
    void setEnabled(bool enabled) { m_enabled = enabled; }
    int count() const { return m_count; }
    void setCount(int count) { m_count = count; }
    VLXColor tint() const { return m_tint; }
    void setTint(VLXColor tint) { m_tint = tint; }
    std::optional<VLXColor> highlight() const { return m_highlight; }
    void setHighlight(std::optional<VLXColor> highlight) { m_highlight = highlight; }
    VLXDate created() const { return m_created; }
    void setCreated(VLXDate created) { m_created = created; }
    std::shared_ptr<CodingTestModel> child() const { return m_child; }
    void setChild(std::shared_ptr<CodingTestModel> child) { m_child = std::move(child); }
    std::vector<std::shared_ptr<CodingTestModel>> children() const { return m_children; }
    void setChildren(std::vector<std::shared_ptr<CodingTestModel>> c) { m_children = std::move(c); }
    VLXValue payload() const { return m_payload; }
    void setPayload(VLXValue payload) { m_payload = std::move(payload); }

protected:
    void declareProperties(PropertyList& list) const override {
        VLXAutoCodingObject::declareProperties(list);
        list.add("title", &CodingTestModel::title, &CodingTestModel::setTitle);
        list.add("subtitle", &CodingTestModel::subtitle, &CodingTestModel::setSubtitle);
        list.add("ratio", &CodingTestModel::ratio, &CodingTestModel::setRatio);
        list.add("enabled", &CodingTestModel::isEnabled, &CodingTestModel::setEnabled);
        list.add("count", &CodingTestModel::count, &CodingTestModel::setCount);
        list.add("tint", &CodingTestModel::tint, &CodingTestModel::setTint);
        list.add("highlight", &CodingTestModel::highlight, &CodingTestModel::setHighlight);
        list.add("created", &CodingTestModel::created, &CodingTestModel::setCreated);
        list.add("child", &CodingTestModel::child, &CodingTestModel::setChild);
        list.add("children", &CodingTestModel::children, &CodingTestModel::setChildren);
        list.add("payload", &CodingTestModel::payload, &CodingTestModel::setPayload);
    }
    std::shared_ptr<VLXAutoCodingObject> newInstance() const override { return create(); }

private:
    std::string m_title;
    std::optional<std::string> m_subtitle;
    double m_ratio = 0;
    bool m_enabled = false;
    int m_count = 0;
    VLXColor m_tint;
    std::optional<VLXColor> m_highlight;
    VLXDate m_created;
    std::shared_ptr<CodingTestModel> m_child;
    std::vector<std::shared_ptr<CodingTestModel>> m_children;
    VLXValue m_payload;
};

class DerivedCodingTestModel : public CodingTestModel {
public:
    static std::shared_ptr<DerivedCodingTestModel> create() {
        auto model = VLXMakeShared<DerivedCodingTestModel>();
        model->init();
        return model;
    }
    const std::string& note() const { return m_note; }
    void setNote(std::string note) { m_note = std::move(note); }

protected:
    void declareProperties(PropertyList& list) const override {
        CodingTestModel::declareProperties(list);
        list.add("note", &DerivedCodingTestModel::note, &DerivedCodingTestModel::setNote);
    }
    std::shared_ptr<VLXAutoCodingObject> newInstance() const override { return create(); }

private:
    std::string m_note;
};

namespace {

std::shared_ptr<CodingTestModel> makeSample() {
    VLXAutoCodingObject::registerClass<DerivedCodingTestModel>();
    auto model = CodingTestModel::create();
    model->setTitle("Säle \"Q1\"");
    model->setRatio(0.1 + 0.2);
    model->setEnabled(true);
    model->setCount(-7);
    model->setTint(VLXColor::colorWithRed(0.1, 0.2, 0.3, 0.4));
    model->setCreated(VLXDate::dateWithTimeIntervalSince1970(1.5e9 + 0.25));
    auto child = DerivedCodingTestModel::create();
    child->setNote("inner");
    child->setTint(VLXColor(VLXColorSpaceModel::Other, {0.1, 0.2, 0.3, 0.4, 1}));
    model->setChild(child);
    auto plain = CodingTestModel::create();
    plain->setSubtitle("");
    model->setChildren({plain, child});
    auto boxed = DerivedCodingTestModel::create();
    boxed->setNote("in payload");
    model->setPayload(VLXValue::Array{1, boxed});
    return model;
}

}  // namespace

TEST(VLXAutoCodingObject, ArchivesRoundTripExactlyThroughJSON) {
    const auto model = makeSample();
    EXPECT_EQ(model->className(), "CodingTestModel");
    EXPECT_EQ(model->child()->className(), "DerivedCodingTestModel");

    const std::string json = model->archivedJSON();
    const VLXValue parsed = VLXValue::fromJSON(json);
    EXPECT_EQ(parsed.valueForKey("$class"), VLXValue("CodingTestModel"));
    EXPECT_EQ(parsed.valueForKeyPath("child.$class"), VLXValue("DerivedCodingTestModel"));
    EXPECT_EQ(parsed.valueForKeyPath("tint.model"), VLXValue("rgb"));
    EXPECT_TRUE(parsed.valueForKey("subtitle").isNull());

    const auto restored = CodingTestModel::create();
    ASSERT_TRUE(restored->restoreFromJSON(json));
    EXPECT_EQ(restored->archivedJSON(), json);
    EXPECT_EQ(restored->title(), model->title());
    EXPECT_EQ(restored->ratio(), 0.1 + 0.2);
    EXPECT_TRUE(restored->isEnabled());
    EXPECT_EQ(restored->count(), -7);
    EXPECT_EQ(restored->tint(), model->tint());
    EXPECT_FALSE(restored->highlight().has_value());
    EXPECT_EQ(restored->created(), model->created());
    EXPECT_FALSE(restored->subtitle().has_value());

    const auto child = std::dynamic_pointer_cast<DerivedCodingTestModel>(restored->child());
    ASSERT_NE(child, nullptr);  // restored as the archived class
    EXPECT_EQ(child->note(), "inner");
    EXPECT_EQ(child->tint(), model->child()->tint());
    ASSERT_EQ(restored->children().size(), 2u);
    EXPECT_EQ(restored->children()[0]->subtitle(), std::optional<std::string>(""));
    EXPECT_NE(std::dynamic_pointer_cast<DerivedCodingTestModel>(restored->children()[1]), nullptr);
    const auto inPayload = restored->payload().objectAtIndex(1).objectAs<DerivedCodingTestModel>();
    ASSERT_NE(inPayload, nullptr);
    EXPECT_EQ(inPayload->note(), "in payload");
}

TEST(VLXAutoCodingObject, CopyIsShallowAndOfTheSameClass) {
    const auto model = makeSample();
    const auto copy = model->copyAs<CodingTestModel>();
    ASSERT_NE(copy, nullptr);
    EXPECT_NE(copy, model);
    EXPECT_EQ(copy->child(), model->child());  // shared, not copied
    EXPECT_EQ(copy->archivedJSON(), model->archivedJSON());
    copy->setTitle("changed");
    EXPECT_NE(model->title(), "changed");

    const auto derivedCopy = model->child()->copyAs<DerivedCodingTestModel>();
    ASSERT_NE(derivedCopy, nullptr);
    EXPECT_EQ(derivedCopy->note(), "inner");
}

TEST(VLXAutoCodingObject, BadArchivesLeaveTheObjectUnchanged) {
    const auto model = makeSample();
    const std::string before = model->archivedJSON();
    for (const char* bad : {"{bad", "[1, 2]", "", "42", "null"}) {
        EXPECT_FALSE(model->restoreFromJSON(bad)) << bad;
    }
    EXPECT_FALSE(model->restoreFromValue(VLXValue("x")));
    EXPECT_EQ(model->archivedJSON(), before);

    // Wrong shapes keep each property's value; well-formed ones still apply.
    EXPECT_TRUE(model->restoreFromJSON(R"({"title": 5, "count": "x", "enabled": [],
        "tint": {"model": "hsv", "components": [1, 1]}, "created": "yesterday",
        "children": [1], "child": 3, "ratio": 2})"));
    EXPECT_EQ(model->ratio(), 2.0);
    model->setRatio(0.1 + 0.2);
    EXPECT_EQ(model->archivedJSON(), before);
    for (const char* tint :
         {R"({"model": "rgb", "components": []})",
          R"({"model": "rgb", "components": [1, 2, 3, 4, 5, 6]})",
          R"({"model": "rgb", "components": [1, "x", 1, 1]})", R"({"components": [1, 1]})"}) {
        EXPECT_FALSE(model->setValueForKey("tint", VLXValue::fromJSON(tint))) << tint;
    }
    EXPECT_EQ(model->tint(), VLXColor::colorWithRed(0.1, 0.2, 0.3, 0.4));

    EXPECT_EQ(VLXAutoCodingObject::objectFromValue(VLXValue::fromJSON(R"({"$class": "Nope"})")),
              nullptr);
    EXPECT_EQ(VLXAutoCodingObject::objectFromValue(VLXValue(3)), nullptr);
}

TEST(VLXAutoCodingObject, PropertiesAreReadableByKey) {
    const auto model = makeSample();
    EXPECT_TRUE(model->respondsToKey("count"));
    EXPECT_FALSE(model->respondsToKey("note"));
    EXPECT_TRUE(model->child()->respondsToKey("note"));
    EXPECT_EQ(model->valueForKey("count"), VLXValue(-7));
    EXPECT_TRUE(model->setValueForKey("count", VLXValue(12)));
    EXPECT_EQ(model->count(), 12);
    EXPECT_FALSE(model->setValueForKey("count", VLXValue("twelve")));
    EXPECT_FALSE(model->setValueForKey("missing", VLXValue(1)));
    EXPECT_EQ(VLXValue(model).valueForKeyPath("child.note"), VLXValue("inner"));
    EXPECT_NE(model->description().find("count = 12;"), std::string::npos);
}

namespace {

// An archive of `depth` models, each the "child" of the one before: `depth` levels of JSON.
std::string nestedArchive(int depth) {
    std::string text;
    for (int i = 1; i < depth; ++i) {
        text += R"({"title": "level )" + std::to_string(i) + R"(", "child": )";
    }
    text += R"({"title": "innermost"})";
    return text + std::string(static_cast<std::size_t>(depth - 1), '}');
}

std::string innermostTitle(std::shared_ptr<CodingTestModel> model) {
    while (model && model->child()) {
        model = model->child();
    }
    return model ? model->title() : "(none)";
}

}  // namespace

TEST(VLXAutoCodingObject, RestoringAndArchivingAgreeOnTheDepthLimit) {
    // Each model's tint adds two levels below it ({"components": [...]}), so a chain restores
    // while its innermost tint stays within the JSON limit, and archives again losing nothing.
    const int deepest = VLXValue::kMaxJSONDepth - 2;
    for (int depth : {300, deepest}) {
        const auto model = CodingTestModel::create();
        ASSERT_TRUE(model->restoreFromJSON(nestedArchive(depth))) << depth;
        EXPECT_EQ(innermostTitle(model), "innermost");
        const std::string archive = model->archivedJSON();
        ASSERT_FALSE(archive.empty()) << depth;
        const auto again = CodingTestModel::create();
        ASSERT_TRUE(again->restoreFromJSON(archive)) << depth;
        EXPECT_EQ(innermostTitle(again), "innermost") << depth;
        EXPECT_EQ(again->archivedJSON(), archive);
    }

    // One model more: the text itself is readable, but the restored object could not be
    // archived, so the restore fails visibly and changes nothing.
    const auto model = makeSample();
    const std::string before = model->archivedJSON();
    ASSERT_TRUE(VLXValue::fromJSON(nestedArchive(deepest + 1)).isDictionary());
    EXPECT_FALSE(model->restoreFromJSON(nestedArchive(deepest + 1)));
    EXPECT_FALSE(model->restoreFromValue(VLXValue::fromJSON(nestedArchive(deepest + 1))));
    EXPECT_EQ(model->archivedJSON(), before);

    // Objects built in code deeper than that refuse to archive instead of dropping a level.
    auto chain = CodingTestModel::create();
    for (int i = 0; i < deepest + 1; ++i) {
        auto parent = CodingTestModel::create();
        parent->setChild(chain);
        chain = parent;
    }
    EXPECT_EQ(chain->archivedJSON(), "");
}

TEST(VLXAutoCodingObject, NonFiniteNumbersArchiveAsNullAndRestoreAsNaN) {
    // JSON has no NaN or infinity: they are written as null, and null restores as NaN, so an
    // archive restores to an object that archives to the same text.
    const double inf = std::numeric_limits<double>::infinity();
    const auto model = CodingTestModel::create();
    model->setRatio(inf);
    model->setTint(VLXColor::colorWithRed(inf, 0, 0, 1));
    model->setCreated(VLXDate::dateWithTimeIntervalSince1970(-inf));
    const std::string archive = model->archivedJSON();
    const auto restored = CodingTestModel::create();
    restored->setRatio(5);
    ASSERT_TRUE(restored->restoreFromJSON(archive));
    EXPECT_TRUE(std::isnan(restored->ratio()));
    EXPECT_TRUE(std::isnan(restored->tint().components()[0]));
    EXPECT_EQ(restored->tint().components()[1], 0.0);
    EXPECT_TRUE(std::isnan(restored->created().timeIntervalSince1970()));
    EXPECT_EQ(restored->archivedJSON(), archive);
}
