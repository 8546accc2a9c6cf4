#include <VelmarCoreUI/Platform/Foundation/VLXObject.h>

#include <functional>
#include <unordered_map>

#include <VelmarCoreUI/Platform/Foundation/VLXKeyValueObject.h>
#include <VelmarCoreUI/Platform/Foundation/VLXStringFormat.h>
#include <VelmarCoreUI/Platform/Foundation/VLXTypeName.h>
#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>

// Most objects never get an associated value, so the table is allocated on first use.
struct VLXObject::Associations {
    struct Entry {
        VLXValue strong;                // Retain, or Assign of a non-object value
        std::weak_ptr<VLXObject> weak;  // Assign of an object value
        bool isWeak = false;
    };
    std::unordered_map<const void*, Entry> entries;
};

VLXObject::VLXObject() = default;

VLXObject::~VLXObject() = default;

std::shared_ptr<VLXObject> VLXObject::create() {
    return makeInitialized<VLXObject>();
}

std::string VLXObject::className() const {
    return VLXReadableTypeName(typeid(*this));
}

std::string VLXObject::description() const {
    return VLXStringWithFormat("<%s: %p>", className().c_str(), static_cast<const void*>(this));
}

bool VLXObject::isEqual(const VLXObject& other) const {
    return this == &other;
}

std::size_t VLXObject::hash() const {
    return std::hash<const void*>()(this);
}

VLXValue VLXObject::encodedValue() const {
    return VLXValue();
}

void VLXObject::setAssociatedObject(const void* key, const VLXValue& value,
                                    VLXAssociationPolicy policy) {
    if (value.isNil()) {
        if (m_associations) {
            m_associations->entries.erase(key);
        }
        return;
    }
    if (!m_associations) {
        m_associations = std::make_unique<Associations>();
    }
    Associations::Entry entry;
    if (policy == VLXAssociationPolicy::Assign && value.isObject()) {
        entry.weak = value.objectValue();
        entry.isWeak = true;
    } else {
        entry.strong = value;
    }
    // Move the old entry out first: releasing its value may run arbitrary destructors, which
    // must not see the table half-updated.
    Associations::Entry previous;
    auto& slot = m_associations->entries[key];
    previous = std::move(slot);
    slot = std::move(entry);
}

VLXValue VLXObject::associatedObject(const void* key) const {
    if (!m_associations) {
        return VLXValue();
    }
    auto it = m_associations->entries.find(key);
    if (it == m_associations->entries.end()) {
        return VLXValue();
    }
    if (it->second.isWeak) {
        return VLXValue(it->second.weak.lock());
    }
    return it->second.strong;
}

void VLXObject::removeAssociatedObjects() {
    // Detach the table before it dies so that destructors of the released values may safely
    // touch this object's associations again.
    std::unique_ptr<Associations> released = std::move(m_associations);
}

const VLXKeyValueObject* VLXObject::keyValueObject() const {
    if (m_keyValueObjectResolved.load(std::memory_order_acquire)) {
        return m_keyValueObject.load(std::memory_order_relaxed);
    }
    // Racing first calls compute the same answer, so the double store is harmless.
    const auto* keyValue = dynamic_cast<const VLXKeyValueObject*>(this);
    m_keyValueObject.store(keyValue, std::memory_order_relaxed);
    m_keyValueObjectResolved.store(true, std::memory_order_release);
    return keyValue;
}
