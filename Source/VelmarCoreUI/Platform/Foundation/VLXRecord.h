#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <VelmarCoreUI/Platform/Foundation/VLXKeyValueObject.h>
#include <VelmarCoreUI/Platform/Foundation/VLXObject.h>
#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>

/// A host data object made of named fields in a fixed order, the quickest thing to hand a
/// series: `VLXRecord::create({{"date", VLXDate…}, {"value", 12.5}})`. Lookup is a linear scan
/// of the fields, which beats hashing for the handful of fields a data point has. When a name
/// appears twice in the initial fields, the first one is found.
class VLX_EXPORT VLXRecord : public VLXObject, public VLXKeyValueObject {
public:
    using Field = std::pair<std::string, VLXValue>;

    static std::shared_ptr<VLXRecord> create(std::initializer_list<Field> fields = {});
    static std::shared_ptr<VLXRecord> create(std::vector<Field> fields);

    /// Replaces the field's value, or appends the field when the record has no such name.
    void setValue(std::string_view key, VLXValue value);
    const std::vector<Field>& fields() const { return m_fields; }

    bool respondsToKey(std::string_view key) const override;
    VLXValue valueForKey(std::string_view key) const override;

    /// "<VLXRecord: 0x…> {date = …; value = 12.5;}", fields in order.
    std::string description() const override;
    /// Records with the same fields, in the same order, are equal.
    bool isEqual(const VLXObject& other) const override;
    /// The fields as a dictionary, so a record is written to JSON as an object.
    VLXValue encodedValue() const override;

protected:
    explicit VLXRecord(std::vector<Field> fields);

private:
    std::vector<Field> m_fields;
};
