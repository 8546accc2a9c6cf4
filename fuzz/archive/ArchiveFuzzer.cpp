// Model archives from hosts. An archive that restores must archive again, and that archive must
// restore into a fresh object that archives to the same JSON (restoring and archiving agree,
// also at the nesting limit). The model below holds every kind of property models use.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <VelmarCoreUI/Color/VLXColorStop.h>
#include <VelmarCoreUI/Core/VLXAutoCodingObject.h>
#include <VelmarCoreUI/Models/VLXTableSection.h>

#include "FuzzSupport.h"

class FuzzModel : public VLXAutoCodingObject {
public:
    static std::shared_ptr<FuzzModel> create() { return makeInitialized<FuzzModel>(); }

    std::string title() const { return m_title; }
    void setTitle(std::string title) { m_title = std::move(title); }
    std::optional<std::string> subtitle() const { return m_subtitle; }
    void setSubtitle(std::optional<std::string> subtitle) { m_subtitle = std::move(subtitle); }
    double ratio() const { return m_ratio; }
    void setRatio(double ratio) { m_ratio = ratio; }
    float weight() const { return m_weight; }
    void setWeight(float weight) { m_weight = weight; }
    bool isEnabled() const { return m_enabled; }
    void setEnabled(bool enabled) { m_enabled = enabled; }
    int count() const { return m_count; }
    void setCount(int count) { m_count = count; }
    unsigned long long total() const { return m_total; }
    void setTotal(unsigned long long total) { m_total = total; }
    std::optional<VLXColor> tint() const { return m_tint; }
    void setTint(std::optional<VLXColor> tint) { m_tint = std::move(tint); }
    VLXDate created() const { return m_created; }
    void setCreated(VLXDate created) { m_created = created; }
    std::shared_ptr<FuzzModel> child() const { return m_child; }
    void setChild(std::shared_ptr<FuzzModel> child) { m_child = std::move(child); }
    std::vector<std::shared_ptr<FuzzModel>> children() const { return m_children; }
    void setChildren(std::vector<std::shared_ptr<FuzzModel>> c) { m_children = std::move(c); }
    VLXValue payload() const { return m_payload; }
    void setPayload(VLXValue payload) { m_payload = std::move(payload); }

protected:
    FuzzModel() = default;
    void declareProperties(PropertyList& list) const override {
        VLXAutoCodingObject::declareProperties(list);
        list.add("title", &FuzzModel::title, &FuzzModel::setTitle);
        list.add("subtitle", &FuzzModel::subtitle, &FuzzModel::setSubtitle);
        list.add("ratio", &FuzzModel::ratio, &FuzzModel::setRatio);
        list.add("weight", &FuzzModel::weight, &FuzzModel::setWeight);
        list.add("enabled", &FuzzModel::isEnabled, &FuzzModel::setEnabled);
        list.add("count", &FuzzModel::count, &FuzzModel::setCount);
        list.add("total", &FuzzModel::total, &FuzzModel::setTotal);
        list.add("tint", &FuzzModel::tint, &FuzzModel::setTint);
        list.add("created", &FuzzModel::created, &FuzzModel::setCreated);
        list.add("child", &FuzzModel::child, &FuzzModel::setChild);
        list.add("children", &FuzzModel::children, &FuzzModel::setChildren);
        list.add("payload", &FuzzModel::payload, &FuzzModel::setPayload);
    }
    std::shared_ptr<VLXAutoCodingObject> newInstance() const override { return create(); }

private:
    std::string m_title;
    std::optional<std::string> m_subtitle;
    double m_ratio = 0;
    float m_weight = 0;
    bool m_enabled = false;
    int m_count = 0;
    unsigned long long m_total = 0;
    std::optional<VLXColor> m_tint;
    VLXDate m_created;
    std::shared_ptr<FuzzModel> m_child;
    std::vector<std::shared_ptr<FuzzModel>> m_children;
    VLXValue m_payload;
};

namespace {

const bool kRegistered = (VLXAutoCodingObject::registerClass<FuzzModel>(), true);

template <class Model>
void roundTrip(std::string_view text) {
    const auto model = Model::create();
    if (!model->restoreFromJSON(text)) {
        return;
    }
    const std::string archive = model->archivedJSON();
    VLX_FUZZ_CHECK(!archive.empty(), "a restored object does not archive: " + std::string(text));
    const auto again = Model::create();
    VLX_FUZZ_CHECK(again->restoreFromJSON(archive), archive);
    const std::string second = again->archivedJSON();
    VLX_FUZZ_CHECK(second == archive, archive + "\n≠ " + second);
    const auto copy = model->copy();
    VLX_FUZZ_CHECK(copy && copy->archivedJSON() == archive, archive);
    (void)model->description();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    (void)kRegistered;
    const std::string_view text(reinterpret_cast<const char*>(bytes), size);
    roundTrip<FuzzModel>(text);
    roundTrip<VLXColorStop>(text);
    roundTrip<VLXTableSection>(text);
    const VLXValue value = VLXValue::fromJSON(text);
    if (auto object = VLXAutoCodingObject::objectFromValue(value)) {
        const std::string archive = object->archivedJSON();
        VLX_FUZZ_CHECK(!archive.empty(), std::string(text));
        const auto again = VLXAutoCodingObject::objectFromValue(VLXValue::fromJSON(archive));
        VLX_FUZZ_CHECK(again && again->archivedJSON() == archive, archive);
    }
    return 0;
}
