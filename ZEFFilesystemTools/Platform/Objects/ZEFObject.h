// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/Class.h"
#include "ZEFFilesystemTools/Platform/Objects/Ref.h"

#include <atomic>
#include <concepts>
#include <cstdint>
#include <string>
#include <type_traits>

/// The root of the library's objects: a reference count, equality, a hash and a description.
///
/// An object starts with one reference, which `zef::makeRef` hands to its caller. Counting is safe
/// on any thread; everything else is as each class says.
class ZEF_EXPORT ZEFObject {
public:
    static const zef::Class classObject;

    ZEFObject(const ZEFObject&) = delete;
    ZEFObject& operator=(const ZEFObject&) = delete;

    /// Takes one more reference.
    void retain() const noexcept;

    /// Gives up one reference; the last one sends `dealloc` on the calling thread.
    void release() const noexcept;

    /// Retains the object; returns false, and does nothing, if its last reference is gone already.
    /// For tables that hold objects weakly and keep their memory from being freed meanwhile.
    [[nodiscard]] bool retainIfAlive() const noexcept;

    /// The number of references now; 4294967295 for an object that can't be freed.
    std::uint32_t retainCount() const noexcept;

    /// The class that this object was made as.
    virtual const zef::Class& objectClass() const;
    /// Returns true if the object's class is this one or inherits from it.
    bool isKindOfClass(const zef::Class&) const;

    /// Equality of what the objects stand for; identity unless a class says more. False for null.
    virtual bool isEqual(const ZEFObject* other) const;

    /// Equal for equal objects.
    virtual std::size_t hash() const;

    /// One line for people: "<ClassName: 0xADDRESS>", and more where a class says so.
    virtual std::string description() const;

    /// The object itself where a class says so; null otherwise.
    virtual zef::Ref<ZEFObject> copy();

protected:
    ZEFObject() noexcept = default;
    virtual ~ZEFObject();

    /// Called once, when the last reference goes; frees the object. A class that has to undo
    /// something while it is still whole does it here and then calls its superclass's.
    virtual void dealloc() noexcept;

    /// From now on the object is never freed: `retain` and `release` do nothing.
    void makeImmortal() noexcept;

private:
    mutable std::atomic<std::uint32_t> _retainCount{ 1 };
};

namespace zef {

/// `object` as the protocol `Protocol`; null if it doesn't conform to it or is null.
template <typename Protocol> [[nodiscard]] Protocol* protocolCast(ZEFObject* object)
{
    return dynamic_cast<Protocol*>(object);
}

/// `object`, borrowed as before, as a `T`; null if it is not an instance of `T` or of a subclass,
/// or is null. `T` needs a `classObject` of its own: a borrowed superclass's would match too much.
template <typename T, std::derived_from<ZEFObject> Object> auto* downcast(Object* object)
{
    static_assert(&T::classObject != &ZEFObject::classObject, "T has no class object");
    using Result = std::conditional_t<std::is_const_v<Object>, const T, T>;
    const bool isInstance = object && object->isKindOfClass(T::classObject);
    return isInstance ? static_cast<Result*>(object) : nullptr;
}

/// For standard containers: keys are the same if the objects that they refer to are equal.
struct ZEF_EXPORT ObjectHash {
    template <typename T> std::size_t operator()(const Ref<T>& object) const
    {
        return object->hash();
    }
};

struct ZEF_EXPORT ObjectEqual {
    template <typename T> bool operator()(const Ref<T>& left, const Ref<T>& right) const
    {
        return left->isEqual(right.get());
    }
};

} // namespace zef
