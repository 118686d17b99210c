#pragma once

#include <cstddef>
#include <utility>

namespace Vs {

/// Shares ownership of an intrusively reference-counted object (see SharedObject).
template <class T>
class [[nodiscard]] StrongRef
{
public:
    StrongRef() = default;
    StrongRef(std::nullptr_t) {}
    StrongRef(T* object) : m_object(object)
    {
        if (m_object)
            m_object->addRef();
    }
    StrongRef(const StrongRef& other) : StrongRef(other.m_object) {}
    StrongRef(StrongRef&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
    template <class U>
    StrongRef(const StrongRef<U>& other) : StrongRef(other.get())
    {
    }
    ~StrongRef() { reset(); }

    StrongRef& operator=(StrongRef other) noexcept
    {
        std::swap(m_object, other.m_object);
        return *this;
    }

    void reset()
    {
        if (T* object = std::exchange(m_object, nullptr))
            object->release();
    }

    T* get() const { return m_object; }
    T* operator->() const { return m_object; }
    T& operator*() const { return *m_object; }
    explicit operator bool() const { return m_object != nullptr; }

    friend bool operator==(const StrongRef& a, const StrongRef& b) { return a.m_object == b.m_object; }
    friend bool operator==(const StrongRef& a, const T* b) { return a.m_object == b; }

private:
    T* m_object = nullptr;
};

template <class T, class... Arguments>
StrongRef<T> makeStrong(Arguments&&... arguments)
{
    return StrongRef<T>(new T(std::forward<Arguments>(arguments)...));
}

} // namespace Vs
