#include <VelmarCoreUI/Core/VLXAutoCodingObject.h>

#include <limits>
#include <map>
#include <mutex>
#include <typeindex>
#include <unordered_map>

namespace {

constexpr std::string_view kClassKey = "$class";

std::mutex& registryMutex() {
    static std::mutex mutex;
    return mutex;
}

std::map<std::string, std::function<std::shared_ptr<VLXAutoCodingObject>()>, std::less<>>&
registry() {
    static std::map<std::string, std::function<std::shared_ptr<VLXAutoCodingObject>()>, std::less<>>
        factories;
    return factories;
}

std::function<std::shared_ptr<VLXAutoCodingObject>()> factoryNamed(std::string_view name) {
    std::lock_guard lock(registryMutex());
    const auto it = registry().find(name);
    return it != registry().end() ? it->second : nullptr;
}

template <class T>
struct PerClassCache {
    std::mutex mutex;
    std::unordered_map<std::type_index, std::shared_ptr<const T>> entries;

    template <class Make>
    const T& get(const std::type_info& type, Make make) {
        {
            std::lock_guard lock(mutex);
            const auto it = entries.find(type);
            if (it != entries.end()) {
                return *it->second;
            }
        }
        // Built outside the lock: building may run subclass code.
        auto built = std::make_shared<const T>(make());
        std::lock_guard lock(mutex);
        return *entries.emplace(type, std::move(built)).first->second;
    }
};

constexpr int kMaxRestoreDepth = VLXValue::kMaxJSONDepth;

// Restores running on this thread: objects nested in an archive are restored while the outermost
// restore is running, and only that one checks the depth of the whole.
thread_local int t_restoreNesting = 0;

struct NestingScope {
    NestingScope() { ++t_restoreNesting; }
    ~NestingScope() { --t_restoreNesting; }
    NestingScope(const NestingScope&) = delete;
    NestingScope& operator=(const NestingScope&) = delete;
};

// Returns nil when nothing in `value` needed restoring, so unchanged values stay shared.
VLXValue restoreArchives(const VLXValue& value, int depth) {
    if (depth > kMaxRestoreDepth) {
        return VLXValue();
    }
    if (value.isDictionary()) {
        if (auto object = VLXAutoCodingObject::objectFromValue(value)) {
            return VLXValue(std::move(object));
        }
        VLXValue::Dictionary restored;
        bool changed = false;
        for (const auto& [key, element] : value.dictionaryValue()) {
            VLXValue replacement = restoreArchives(element, depth + 1);
            changed = changed || !replacement.isNil();
            restored.emplace(key, replacement.isNil() ? element : std::move(replacement));
        }
        return changed ? VLXValue(std::move(restored)) : VLXValue();
    }
    if (value.isArray()) {
        VLXValue::Array restored;
        restored.reserve(value.count());
        bool changed = false;
        for (const auto& element : value.arrayValue()) {
            VLXValue replacement = restoreArchives(element, depth + 1);
            changed = changed || !replacement.isNil();
            restored.push_back(replacement.isNil() ? element : std::move(replacement));
        }
        return changed ? VLXValue(std::move(restored)) : VLXValue();
    }
    return VLXValue();
}

}  // namespace

// --- properties -------------------------------------------------------------------------------

void VLXAutoCodingObject::declareProperties(PropertyList&) const {}

const std::vector<VLXAutoCodingObject::Property>& VLXAutoCodingObject::declaredProperties() const {
    static PerClassCache<std::vector<Property>> cache;
    return cache.get(typeid(*this), [this] {
        PropertyList list;
        declareProperties(list);
        return list.properties();
    });
}

const VLXAutoCodingObject::Property* VLXAutoCodingObject::propertyNamed(
    std::string_view name) const {
    for (const auto& property : declaredProperties()) {
        if (property.name == name) {
            return &property;
        }
    }
    return nullptr;
}

std::vector<VLXAutoCodingObject::Property> VLXAutoCodingObject::properties() const {
    return declaredProperties();
}

// --- archiving --------------------------------------------------------------------------------

VLXValue VLXAutoCodingObject::encodedValue() const {
    VLXValue::Dictionary archive;
    archive.emplace(kClassKey, className());
    for (const auto& property : declaredProperties()) {
        archive.insert_or_assign(property.name, property.get(*this));
    }
    return VLXValue(std::move(archive));
}

void VLXAutoCodingObject::setProperties(const VLXValue& archive) {
    const auto& entries = archive.dictionaryValue();
    for (const auto& property : declaredProperties()) {
        const auto it = entries.find(property.name);
        if (it != entries.end()) {
            property.set(*this, it->second);
        }
    }
}

bool VLXAutoCodingObject::restoreFromValue(const VLXValue& archive) {
    if (!archive.isDictionary()) {
        return false;
    }
    if (t_restoreNesting > 0) {  // an object inside an archive: the outermost call checks
        NestingScope scope;
        setProperties(archive);
        return true;
    }
    // Restoring and archiving share one depth limit, the JSON reader's. Properties the archive
    // lacks keep their values and may add levels of their own (an empty list is one), so the
    // result is built aside and kept only when it archives again.
    if (archive.jsonDepth() > VLXValue::kMaxJSONDepth) {
        return false;
    }
    NestingScope scope;
    const std::shared_ptr<VLXAutoCodingObject> trial = copy();
    if (!trial) {
        return false;
    }
    trial->setProperties(archive);
    if (trial->encodedValue().jsonDepth() > VLXValue::kMaxJSONDepth) {
        return false;
    }
    for (const auto& property : declaredProperties()) {
        property.set(*this, property.get(*trial));
    }
    return true;
}

std::string VLXAutoCodingObject::archivedJSON() const {
    return encodedValue().toJSON();
}

bool VLXAutoCodingObject::restoreFromJSON(std::string_view json) {
    const VLXValue archive = VLXValue::fromJSON(json);
    if (!archive.isDictionary()) {
        return false;
    }
    return restoreFromValue(archive);
}

std::shared_ptr<VLXAutoCodingObject> VLXAutoCodingObject::copy() const {
    std::shared_ptr<VLXAutoCodingObject> copy = newInstance();
    if (!copy) {
        return nullptr;
    }
    for (const auto& property : declaredProperties()) {
        property.set(*copy, property.get(*this));
    }
    return copy;
}

// --- class registry ---------------------------------------------------------------------------

void VLXAutoCodingObject::registerFactory(
    const std::string& className, std::function<std::shared_ptr<VLXAutoCodingObject>()> factory) {
    std::lock_guard lock(registryMutex());
    registry().insert_or_assign(className, std::move(factory));
}

std::shared_ptr<VLXAutoCodingObject> VLXAutoCodingObject::objectFromValue(const VLXValue& archive) {
    const VLXValue name = archive.valueForKey(kClassKey);
    if (!archive.isDictionary() || !name.isString()) {
        return nullptr;
    }
    const auto factory = factoryNamed(name.stringValue());
    if (!factory) {
        return nullptr;
    }
    std::shared_ptr<VLXAutoCodingObject> object = factory();
    if (!object || !object->restoreFromValue(archive)) {
        return nullptr;
    }
    return object;
}

VLXValue VLXAutoCodingObject::valueByRestoringArchives(const VLXValue& value) {
    VLXValue restored = restoreArchives(value, 0);
    return restored.isNil() ? value : restored;
}

// --- key-value lookup -------------------------------------------------------------------------

bool VLXAutoCodingObject::respondsToKey(std::string_view key) const {
    return propertyNamed(key) != nullptr;
}

VLXValue VLXAutoCodingObject::valueForKey(std::string_view key) const {
    const Property* property = propertyNamed(key);
    return property != nullptr ? property->get(*this) : VLXValue();
}

bool VLXAutoCodingObject::setValueForKey(std::string_view key, const VLXValue& value) {
    const Property* property = propertyNamed(key);
    return property != nullptr && property->set(*this, value);
}

// --- description ------------------------------------------------------------------------------

std::string VLXAutoCodingObject::description() const {
    std::string text = VLXObject::description() + " {";
    const auto& properties = declaredProperties();
    for (const auto& property : properties) {
        text += property.name + " = " + property.get(*this).description() + "; ";
    }
    if (!properties.empty()) {
        text.pop_back();
    }
    return text + "}";
}

// --- codings ----------------------------------------------------------------------------------

bool VLXValueCoding<VLXDate>::decode(const VLXValue& v, VLXDate& out) {
    if (v.isNull()) {  // JSON writes NaN and infinite dates as null
        out = VLXDate::dateWithTimeIntervalSince1970(std::numeric_limits<double>::quiet_NaN());
        return true;
    }
    if (const auto date = v.dateValue()) {
        out = *date;
        return true;
    }
    if (!v.isNumber()) {
        return false;
    }
    out = VLXDate::dateWithTimeIntervalSince1970(v.doubleValue());
    return true;
}

bool VLXValueCoding<VLXColor>::decode(const VLXValue& v, VLXColor& out) {
    if (const auto color = v.colorValue()) {
        out = *color;
        return true;
    }
    const VLXValue modelName = v.valueForKey("model");
    const VLXValue components = v.valueForKey("components");
    if (!v.isDictionary() || !modelName.isString() || !components.isArray()) {
        return false;
    }
    VLXColorSpaceModel model;
    const std::string name = modelName.stringValue();
    if (name == "monochrome") {
        model = VLXColorSpaceModel::Monochrome;
    } else if (name == "rgb") {
        model = VLXColorSpaceModel::RGB;
    } else if (name == "other") {
        model = VLXColorSpaceModel::Other;
    } else {
        return false;
    }
    double c[5] = {};
    const auto& list = components.arrayValue();
    if (list.empty() || list.size() > 5) {
        return false;
    }
    for (std::size_t i = 0; i < list.size(); ++i) {
        if (list[i].isNull()) {  // JSON writes NaN and infinite components as null
            c[i] = std::numeric_limits<double>::quiet_NaN();
        } else if (list[i].isNumber()) {
            c[i] = list[i].doubleValue();
        } else {
            return false;
        }
    }
    switch (list.size()) {
        case 1:
            out = VLXColor(model, {c[0]});
            break;
        case 2:
            out = VLXColor(model, {c[0], c[1]});
            break;
        case 3:
            out = VLXColor(model, {c[0], c[1], c[2]});
            break;
        case 4:
            out = VLXColor(model, {c[0], c[1], c[2], c[3]});
            break;
        default:
            out = VLXColor(model, {c[0], c[1], c[2], c[3], c[4]});
            break;
    }
    return true;
}
