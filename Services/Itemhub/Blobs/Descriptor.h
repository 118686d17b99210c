#pragma once

#include <cstdint>
#include <unistd.h>
#include <utility>

namespace Itemhub::Blobs {

/// An open file, closed on destruction.
class Descriptor
{
public:
    explicit Descriptor(int descriptor = -1) : m_descriptor(descriptor) {}
    ~Descriptor()
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }
    Descriptor(Descriptor&& other) noexcept : m_descriptor(std::exchange(other.m_descriptor, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(m_descriptor, other.m_descriptor);
        return *this;
    }

    [[nodiscard]] bool isValid() const { return m_descriptor >= 0; }
    [[nodiscard]] int get() const { return m_descriptor; }
    /// In bytes; -1 if it isn't valid.
    [[nodiscard]] int64_t size() const { return ::lseek(m_descriptor, 0, SEEK_END); }
    /// Passes ownership to the caller.
    [[nodiscard]] int release() { return std::exchange(m_descriptor, -1); }

private:
    int m_descriptor;
};

} // namespace Itemhub::Blobs
