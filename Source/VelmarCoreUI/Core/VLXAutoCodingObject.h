#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include <VelmarCoreUI/Platform/Foundation/VLXKeyValueObject.h>
#include <VelmarCoreUI/Platform/Foundation/VLXObject.h>
#include <VelmarCoreUI/Platform/Foundation/VLXTypeName.h>
#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>

class VLXAutoCodingObject;

/// How a property type travels through a VLXValue when archived and restored. Specialised for
/// the property types models use; `decode` leaves `out` unchanged and returns false when the
/// value is of the wrong shape.
template <class T, class Enable = void>
struct VLXValueCoding;

/// Base class of model objects that archive, restore and copy their declared properties by
/// name. A subclass lists its properties once, in `declareProperties`:
///
///     void VLXTableSection::declareProperties(PropertyList& list) const {
///         VLXAutoCodingObject::declareProperties(list);
///         list.add("title", &VLXTableSection::title, &VLXTableSection::setTitle);
///     }
///
/// and gets JSON archiving (`archivedJSON`, `restoreFromJSON`), a property-wise `copy()` and
/// key-value lookup of those properties (`valueForKey`, `setValueForKey`).
///
/// An archive is a JSON object: "$class" holds the class name, every declared property its
/// value. Nested model objects are nested archives; colours are {"model", "components"}
/// objects, dates seconds since 1970, optional values that are empty are null.
///
/// Restoring never throws and never leaves a property half-set: a
/// property whose archived value has the wrong shape keeps its value.
class VLX_EXPORT VLXAutoCodingObject : public VLXObject, public VLXKeyValueObject {
public:
    struct Property {
        std::string name;
        std::function<VLXValue(const VLXAutoCodingObject&)> get;
        /// Returns false when the value has the wrong shape; the property is then unchanged.
        std::function<bool(VLXAutoCodingObject&, const VLXValue&)> set;
    };

    class PropertyList {
    public:
        /// A property read through `getter` and written through `setter`.
        template <class C, class Get, class Set>
        void add(std::string name, Get (C::*getter)() const, void (C::*setter)(Set)) {
            using T = std::remove_cvref_t<Get>;
            m_properties.push_back(Property{
                std::move(name),
                [getter](const VLXAutoCodingObject& object) {
                    return VLXValueCoding<T>::encode((static_cast<const C&>(object).*getter)());
                },
                [setter](VLXAutoCodingObject& object, const VLXValue& value) {
                    T decoded{};
                    if (!VLXValueCoding<T>::decode(value, decoded)) {
                        return false;
                    }
                    (static_cast<C&>(object).*setter)(std::move(decoded));
                    return true;
                }});
        }
        const std::vector<Property>& properties() const { return m_properties; }

    private:
        std::vector<Property> m_properties;
    };

    /// The declared properties, base class first.
    std::vector<Property> properties() const;

    /// The archive as a dictionary value ("$class" plus every property). Model objects held by
    /// properties stay objects here; `VLXValue::toJSON` writes them as nested archives.
    VLXValue encodedValue() const override;
    /// Sets every declared property found in `archive` (a dictionary); properties that are
    /// missing or of the wrong shape keep their value. False, and nothing changed, when
    /// `archive` is no dictionary or when the archive or the restored object would nest deeper
    /// than `VLXValue::kMaxJSONDepth` levels of JSON: whatever restores archives again.
    bool restoreFromValue(const VLXValue& archive);
    /// The archive as JSON text; "" when it would nest deeper than `VLXValue::kMaxJSONDepth`
    /// (only objects built in code get there: restored ones never do).
    std::string archivedJSON() const;
    /// False (and nothing changed) for malformed JSON, JSON that is not an object, or an
    /// archive `restoreFromValue` refuses.
    bool restoreFromJSON(std::string_view json);

    /// A new object of the same class with every declared property copied (shallow: model
    /// objects held by a property are shared, as a property-wise copy does).
    std::shared_ptr<VLXAutoCodingObject> copy() const;
    template <class T>
    std::shared_ptr<T> copyAs() const {
        return std::dynamic_pointer_cast<T>(copy());
    }

    /// Registers a class so that archives naming it in "$class" restore as that class (nested
    /// objects otherwise restore as the property's declared class).
    template <class T>
    static void registerClass() {
        registerClass<T>(VLXReadableTypeName(typeid(T)));
    }
    /// The same under an explicit name, for classes that override `className()`.
    template <class T>
    static void registerClass(const std::string& className) {
        registerFactory(className,
                        [] { return std::shared_ptr<VLXAutoCodingObject>(T::create()); });
    }
    /// A new, restored object of the class the archive names; null when the class is unknown,
    /// the archive is no dictionary or the restore is refused.
    static std::shared_ptr<VLXAutoCodingObject> objectFromValue(const VLXValue& archive);
    /// `value` with every archive of a registered class in it (itself, or inside arrays and
    /// dictionaries) restored as an object; everything else unchanged. Untyped (`VLXValue`)
    /// properties restore through this, so model objects they hold come back as objects.
    static VLXValue valueByRestoringArchives(const VLXValue& value);

    bool respondsToKey(std::string_view key) const override;
    VLXValue valueForKey(std::string_view key) const override;
    /// False when there is no such property or the value has the wrong shape.
    bool setValueForKey(std::string_view key, const VLXValue& value);

    /// "<ClassName: 0x…> {name = value; …}".
    std::string description() const override;

protected:
    VLXAutoCodingObject() = default;
    /// Subclasses call the base first, then add their own properties in order.
    virtual void declareProperties(PropertyList& list) const;
    /// A fresh instance of the most-derived class, used by `copy()`.
    virtual std::shared_ptr<VLXAutoCodingObject> newInstance() const = 0;

private:
    static void registerFactory(const std::string& className,
                                std::function<std::shared_ptr<VLXAutoCodingObject>()> factory);
    /// The declared properties, built once per class and shared by its instances.
    const std::vector<Property>& declaredProperties() const;
    /// Sets the properties `archive` holds, without the depth checks of `restoreFromValue`.
    void setProperties(const VLXValue& archive);
    const Property* propertyNamed(std::string_view name) const;
};

// --- codings ----------------------------------------------------------------------------------

/// Any value: archived as it is; archives of registered model classes in it restore as objects.
/// Dates, colours and boxes held this way come back in their JSON form (numbers, dictionaries,
/// arrays), since JSON does not say what they were.
template <>
struct VLXValueCoding<VLXValue> {
    static VLXValue encode(const VLXValue& v) { return v; }
    static bool decode(const VLXValue& v, VLXValue& out) {
        out = VLXAutoCodingObject::valueByRestoringArchives(v);
        return true;
    }
};

template <>
struct VLXValueCoding<bool> {
    static VLXValue encode(bool v) { return VLXValue(v); }
    static bool decode(const VLXValue& v, bool& out) {
        if (!v.isNumber() && !v.isString()) {
            return false;
        }
        out = v.boolValue();
        return true;
    }
};

template <class T>
struct VLXValueCoding<T, std::enable_if_t<std::is_integral_v<T> && !std::is_same_v<T, bool>>> {
    static VLXValue encode(T v) {
        if constexpr (std::is_signed_v<T>) {
            return VLXValue::numberWithInteger(static_cast<VLXInteger>(v));
        } else {
            return VLXValue::numberWithUnsignedInteger(static_cast<VLXUInteger>(v));
        }
    }
    static bool decode(const VLXValue& v, T& out) {
        if (!v.isNumber()) {
            return false;
        }
        if constexpr (std::is_signed_v<T>) {
            out = static_cast<T>(v.integerValue());
        } else {
            out = static_cast<T>(v.unsignedIntegerValue());
        }
        return true;
    }
};

/// Floating-point numbers; null restores as NaN, since JSON writes NaN and infinities as null.
template <class T>
struct VLXValueCoding<T, std::enable_if_t<std::is_floating_point_v<T>>> {
    static VLXValue encode(T v) { return VLXValue(static_cast<double>(v)); }
    static bool decode(const VLXValue& v, T& out) {
        if (v.isNull()) {
            out = std::numeric_limits<T>::quiet_NaN();
            return true;
        }
        if (!v.isNumber()) {
            return false;
        }
        out = static_cast<T>(v.doubleValue());
        return true;
    }
};

template <>
struct VLXValueCoding<std::string> {
    static VLXValue encode(const std::string& v) { return VLXValue(v); }
    static bool decode(const VLXValue& v, std::string& out) {
        if (!v.isString()) {
            return false;
        }
        out = v.stringValue();
        return true;
    }
};

/// Dates archive as themselves (seconds since 1970 in JSON) and restore from a date or a number
/// (null, the JSON of NaN and infinite dates, as NaN).
template <>
struct VLXValueCoding<VLXDate> {
    static VLXValue encode(VLXDate v) { return VLXValue(v); }
    static bool decode(const VLXValue& v, VLXDate& out);
};

/// Colours restore from a colour or from the {"model", "components"} dictionary of their JSON
/// form (model "monochrome", "rgb" or "other"; 1 to 5 components, numbers or null for NaN).
template <>
struct VLXValueCoding<VLXColor> {
    static VLXValue encode(const VLXColor& v) { return VLXValue(v); }
    static bool decode(const VLXValue& v, VLXColor& out);
};

/// Empty optionals archive as null and restore from null or nil.
template <class T>
struct VLXValueCoding<std::optional<T>> {
    static VLXValue encode(const std::optional<T>& v) {
        return v ? VLXValueCoding<T>::encode(*v) : VLXValue::null();
    }
    static bool decode(const VLXValue& v, std::optional<T>& out) {
        if (v.isNil() || v.isNull()) {
            out.reset();
            return true;
        }
        T inner{};
        if (!VLXValueCoding<T>::decode(v, inner)) {
            return false;
        }
        out = std::move(inner);
        return true;
    }
};

/// Model objects are held as objects (so `copy()` shares them), archive as nested archives and
/// restore as the archived class when it is registered and derives from T, else as T.
template <class T>
struct VLXValueCoding<std::shared_ptr<T>,
                      std::enable_if_t<std::is_base_of_v<VLXAutoCodingObject, T>>> {
    static VLXValue encode(const std::shared_ptr<T>& v) {
        return v ? VLXValue(v) : VLXValue::null();
    }
    static bool decode(const VLXValue& v, std::shared_ptr<T>& out) {
        if (v.isNil() || v.isNull()) {
            out = nullptr;
            return true;
        }
        if (v.isObject()) {
            auto object = v.objectAs<T>();
            if (!object) {
                return false;
            }
            out = std::move(object);
            return true;
        }
        if (!v.isDictionary()) {
            return false;
        }
        std::shared_ptr<T> object =
            std::dynamic_pointer_cast<T>(VLXAutoCodingObject::objectFromValue(v));
        if (!object) {
            object = T::create();
            object->restoreFromValue(v);
        }
        out = std::move(object);
        return true;
    }
};

template <class T>
struct VLXValueCoding<std::vector<T>> {
    static VLXValue encode(const std::vector<T>& v) {
        VLXValue::Array array;
        array.reserve(v.size());
        for (const auto& element : v) {
            array.push_back(VLXValueCoding<T>::encode(element));
        }
        return VLXValue(std::move(array));
    }
    static bool decode(const VLXValue& v, std::vector<T>& out) {
        if (!v.isArray()) {
            return false;
        }
        std::vector<T> result;
        result.reserve(v.count());
        for (const auto& element : v.arrayValue()) {
            T decoded{};
            if (!VLXValueCoding<T>::decode(element, decoded)) {
                return false;
            }
            result.push_back(std::move(decoded));
        }
        out = std::move(result);
        return true;
    }
};
