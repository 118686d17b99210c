#pragma once

#include "Server/Base/Require.h"
#include "Server/Base/UniqueString.h"

#include <utility>

namespace Vs {

/// Something that a named lock can keep open: a document, an asset.
class Lockable
{
public:
    virtual ~Lockable() = default;
    virtual void addLock(const UniqueString* source) = 0;
    virtual void releaseLock(const UniqueString* source) = 0;
};

/// Holds one named lock on a target for as long as it lives. Giving it a new target takes the new lock after
/// the old one is released.
class [[nodiscard]] LockBase
{
public:
    explicit LockBase(const UniqueString* source, Lockable* target = nullptr) : m_source(source)
    {
        require(source != nullptr, "a lock has a name");
        this->target(target);
    }
    LockBase(const LockBase& other) : LockBase(other.m_source, other.m_target) {}
    LockBase(LockBase&& other) noexcept
        : m_source(other.m_source), m_target(std::exchange(other.m_target, nullptr))
    {
    }
    LockBase& operator=(const LockBase& other)
    {
        if (this != &other)
            target(other.m_target);
        return *this;
    }
    ~LockBase() { target(nullptr); }

    Lockable* target() const { return m_target; }
    void target(Lockable* next)
    {
        if (Lockable* old = std::exchange(m_target, nullptr))
            old->releaseLock(m_source);
        if (next)
            next->addLock(m_source);
        m_target = next;
    }

private:
    const UniqueString* m_source;
    Lockable* m_target = nullptr;
};

} // namespace Vs
