#pragma once

#include <unistd.h>
#include <utility>

namespace Vs {

/// A file descriptor that closes itself; -1 for none.
class [[nodiscard]] Descriptor
{
public:
    explicit Descriptor(int number = -1) : m_number(number) {}
    ~Descriptor()
    {
        if (m_number >= 0)
            close(m_number);
    }
    Descriptor(Descriptor&& other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(m_number, other.m_number);
        return *this;
    }

    int get() const { return m_number; }
    explicit operator bool() const { return m_number >= 0; }

private:
    int m_number;
};

} // namespace Vs
