#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <atomic>
#include <cstddef>
#include <memory>
#include <string>
#include <utility>

class VLXKeyValueObject;
class VLXValue;

/// How an associated object is held by its owner.
enum class VLXAssociationPolicy {
    Assign,  ///< not retained: an object value is held weakly and reads back nil once it is gone
    Retain,  ///< held strongly until replaced, removed or the owner dies
};

/// Root of the reference types. Instances live in `std::shared_ptr` and are made by each class's
/// static `create(...)`, which runs the virtual initialiser chain after construction so that
/// overrides of the most-derived class take part and `shared_from_this()` already works.
class VLX_EXPORT VLXObject : public std::enable_shared_from_this<VLXObject> {
public:
    virtual ~VLXObject();
    VLXObject(const VLXObject&) = delete;
    VLXObject& operator=(const VLXObject&) = delete;

    static std::shared_ptr<VLXObject> create();

    /// The class name as the host sees it ("VLXObject", "VLXColorStop" …): by default the
    /// readable C++ name of the most-derived class, so subclasses rarely override it.
    virtual std::string className() const;
    /// "<VLXObject: 0x…>" by default; subclasses describe their state.
    virtual std::string description() const;
    /// Identity by default; value-like subclasses compare their state.
    virtual bool isEqual(const VLXObject& other) const;
    virtual std::size_t hash() const;
    /// The value that stands for this object in JSON (`VLXValue::toJSON`): model objects give
    /// their archive, records their fields. Nil by default, and the object is then written as
    /// its description.
    virtual VLXValue encodedValue() const;

    /// Associated objects: extra values stored on any object under an address used as key.
    /// Storing nil removes the entry. With `Assign`, an object value is held weakly; other
    /// values are immutable and are simply kept.
    void setAssociatedObject(const void* key, const VLXValue& value,
                             VLXAssociationPolicy policy = VLXAssociationPolicy::Retain);
    /// The value stored under `key`, or nil (also once a weakly held object has gone).
    VLXValue associatedObject(const void* key) const;
    void removeAssociatedObjects();

    /// This object as a `VLXKeyValueObject` when its class implements that interface, else
    /// null. Resolved once per object: key-value lookup runs for every data point a series
    /// reads, and a cross-cast each time would dominate it.
    const VLXKeyValueObject* keyValueObject() const;

    template <class T>
    std::shared_ptr<T> sharedFrom() {
        return std::static_pointer_cast<T>(shared_from_this());
    }

protected:
    VLXObject();
    /// First link of the initialiser chain; overrides call the base first.
    virtual void init() {}

    /// The common `create()`: constructs a T with `args` and runs the initialiser chain from
    /// `init()`, dispatching to the most-derived override.
    template <class T, class... Args>
    static std::shared_ptr<T> makeInitialized(Args&&... args);

private:
    struct Associations;
    std::unique_ptr<Associations> m_associations;
    mutable std::atomic<const VLXKeyValueObject*> m_keyValueObject{nullptr};
    mutable std::atomic<bool> m_keyValueObjectResolved{false};
};

namespace vlx::detail {
// Gives make_shared access to protected constructors without making them public.
template <class T>
struct Constructible final : T {
    template <class... Args>
    explicit Constructible(Args&&... args) : T(std::forward<Args>(args)...) {}
};
}  // namespace vlx::detail

/// Constructs a T (whose constructor may be protected) in a shared_ptr. It does not run the
/// initialiser chain: `create` functions call it, then `init…`.
template <class T, class... Args>
std::shared_ptr<T> VLXMakeShared(Args&&... args) {
    return std::make_shared<vlx::detail::Constructible<T>>(std::forward<Args>(args)...);
}

template <class T, class... Args>
std::shared_ptr<T> VLXObject::makeInitialized(Args&&... args) {
    auto object = VLXMakeShared<T>(std::forward<Args>(args)...);
    // Called through the base so that a protected override in T is still reached virtually.
    static_cast<VLXObject&>(*object).init();
    return object;
}
