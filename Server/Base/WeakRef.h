#pragma once

#include <memory>

namespace Vs {

/// The target of WeakRefs. Has to be a base of the object. A copy is a new object, to which nobody refers
/// yet.
class WeakTarget
{
public:
    WeakTarget() = default;
    WeakTarget(const WeakTarget&) {}
    // NOLINTNEXTLINE(bugprone-unhandled-self-assignment): the assigned object stays who it is.
    WeakTarget& operator=(const WeakTarget&) { return *this; }

protected:
    ~WeakTarget() = default;

private:
    template <class T>
    friend class WeakRef;
    /// Destroyed with the object; most objects never need one.
    mutable std::shared_ptr<const void> m_life;

    const std::shared_ptr<const void>& life() const
    {
        if (!m_life)
            m_life = std::make_shared<char>();
        return m_life;
    }
};

/// Refers to an object that belongs to somebody else, and knows when it is gone. Main thread only.
template <class T>
class WeakRef
{
public:
    WeakRef() = default;
    WeakRef(T* object) : m_object(object)
    {
        if (object)
            m_life = static_cast<const WeakTarget*>(object)->life();
    }

    /// Null if the object is gone, or none was given.
    T* get() const { return m_life.expired() ? nullptr : m_object; }
    /// Whether there was an object, and it is gone.
    bool lost() const { return m_object && m_life.expired(); }

private:
    T* m_object = nullptr;
    std::weak_ptr<const void> m_life;
};

} // namespace Vs
