#pragma once

#include "Server/Base/UniqueString.h"

#include <atomic>
#include <type_traits>
#include <typeinfo>

namespace Vs {

/// Something that can be asked for an interface by name. Both operations are written once, by Implements.
class Interface
{
public:
    virtual ~Interface() = default;

    /// The name of the most derived class.
    virtual const UniqueString* getInterfaceId() const = 0;

    /// This object as the class or interface called `key`, or null if it isn't one. The result is a pointer
    /// to exactly that class; use cast<T> in place of calling this.
    virtual void* queryInterface(const UniqueString* key) const = 0;
};

/// The root of the framework's classes.
class Object : public Interface
{
public:
    Object() = default;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    static const UniqueString* interfaceId();
    const UniqueString* getInterfaceId() const override;
    void* queryInterface(const UniqueString* key) const override;
};

namespace Detail {
/// The interned, readable name of a class.
const UniqueString* classInterfaceId(const std::type_info& type);
} // namespace Detail

/// Writes the interface triple of a class: `class Fragment : public Vs::Implements<Fragment, Object, Site>`.
/// The first base is the one whose constructors are inherited; the others need a default constructor.
template <class Self, class Base = Object, class... Others>
class Implements : public Base, public Others...
{
public:
    using Base::Base;

    static const UniqueString* interfaceId()
    {
        static const UniqueString* const id = Detail::classInterfaceId(typeid(Self));
        return id;
    }
    const UniqueString* getInterfaceId() const override { return interfaceId(); }
    void* queryInterface(const UniqueString* key) const override
    {
        if (key == interfaceId())
            return const_cast<Self*>(static_cast<const Self*>(this));
        if (void* found = Base::queryInterface(key))
            return found;
        void* found = nullptr;
        ((found || (found = askOther<Others>(key))), ...);
        return found;
    }

private:
    template <class Other>
    void* askOther(const UniqueString* key) const
    {
        if constexpr (requires { Other::interfaceId(); }) {
            if (key == Other::interfaceId())
                return const_cast<Other*>(static_cast<const Other*>(this));
            // A class that writes its own operation knows more interfaces than its own; a pure interface
            // doesn't.
            if constexpr (std::is_base_of_v<Object, Other>)
                return Other::queryInterface(key);
        }
        return nullptr;
    }
};

/// `object` as a T, or null if it isn't one (or is null itself).
template <class T>
[[nodiscard]] T* cast(const Interface* object)
{
    return object ? static_cast<T*>(object->queryInterface(T::interfaceId())) : nullptr;
}

/// An object shared by StrongRefs, deleted with the last of them.
class SharedObject : public Object
{
public:
    void addRef() const { m_references.fetch_add(1, std::memory_order_relaxed); }
    void release() const
    {
        if (m_references.fetch_sub(1, std::memory_order_acq_rel) == 1)
            delete this;
    }
    /// How many StrongRefs hold this object; for tests and diagnostics.
    int references() const { return m_references.load(std::memory_order_relaxed); }

private:
    mutable std::atomic<int> m_references{0};
};

} // namespace Vs
