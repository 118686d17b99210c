#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace Vs {

/// A regular file that is open for reading. A pipe or a device of that name is refused without waiting for
/// it. What was read is in this program's own memory: unlike a mapped file, it may shrink meanwhile.
class PlainFile
{
public:
    /// Throws std::runtime_error with the cause.
    explicit PlainFile(const std::string& path);
    /// Takes ownership of the descriptor.
    explicit PlainFile(int descriptor);
    ~PlainFile();
    PlainFile(const PlainFile&) = delete;
    PlainFile& operator=(const PlainFile&) = delete;

    int descriptor() const { return m_descriptor; }
    /// As it was when it was opened; reading ends there, even if more is written meanwhile.
    uint64_t size() const { return m_size; }
    /// Reads on. Returns how much was read, 0 at the end. Throws std::runtime_error with the cause.
    size_t read(void* target, size_t size);

private:
    int m_descriptor;
    uint64_t m_size = 0;
    uint64_t m_given = 0;
};

/// Creates an empty file that only this user may read, or truncates an existing one. Returns its descriptor,
/// open for writing; throws std::runtime_error with the cause.
int createPrivateFile(const std::string& path);

} // namespace Vs
