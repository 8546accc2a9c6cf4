#include <VelmarCoreUI/Platform/Foundation/VLXRecord.h>

#include <algorithm>

#include <VelmarCoreUI/Platform/Foundation/VLXStringFormat.h>

VLXRecord::VLXRecord(std::vector<Field> fields) : m_fields(std::move(fields)) {}

std::shared_ptr<VLXRecord> VLXRecord::create(std::initializer_list<Field> fields) {
    return create(std::vector<Field>(fields));
}

std::shared_ptr<VLXRecord> VLXRecord::create(std::vector<Field> fields) {
    return makeInitialized<VLXRecord>(std::move(fields));
}

void VLXRecord::setValue(std::string_view key, VLXValue value) {
    for (auto& field : m_fields) {
        if (field.first == key) {
            field.second = std::move(value);
            return;
        }
    }
    m_fields.emplace_back(std::string(key), std::move(value));
}

bool VLXRecord::respondsToKey(std::string_view key) const {
    return std::any_of(m_fields.begin(), m_fields.end(),
                       [key](const Field& field) { return field.first == key; });
}

VLXValue VLXRecord::valueForKey(std::string_view key) const {
    for (const auto& field : m_fields) {
        if (field.first == key) {
            return field.second;
        }
    }
    return VLXValue();
}

std::string VLXRecord::description() const {
    std::string text = VLXObject::description() + " {";
    for (const auto& [name, value] : m_fields) {
        text += name + " = " + value.description() + "; ";
    }
    if (!m_fields.empty()) {
        text.pop_back();
    }
    return text + "}";
}

bool VLXRecord::isEqual(const VLXObject& other) const {
    if (this == &other) {
        return true;
    }
    const auto* record = dynamic_cast<const VLXRecord*>(&other);
    return record != nullptr && record->m_fields == m_fields;
}

VLXValue VLXRecord::encodedValue() const {
    VLXValue::Dictionary dictionary;
    for (const auto& [name, value] : m_fields) {
        dictionary.emplace(name, value);  // the first of a repeated name wins, as in lookup
    }
    return VLXValue(std::move(dictionary));
}
