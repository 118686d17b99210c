#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace Vs {

class MappingGuard;
class PlainFile;

/// What distinguishes one content of a file from another without reading it.
struct FileIdentity
{
    uint64_t device = 0;
    uint64_t inode = 0;
    uint64_t size = 0;
    int64_t modified = 0; ///< Nanoseconds.

    bool operator==(const FileIdentity&) const = default;

    /// Of a file by name, or of an open one. All zero if there is none.
    static FileIdentity of(const std::string& path);
    static FileIdentity of(int descriptor);
};

/// A whole file mapped for reading. It stays readable when the file is removed or replaced by another.
class FileMapping
{
public:
    /// Throws std::runtime_error with the cause.
    static std::shared_ptr<const FileMapping> open(const std::string& path);
    /// The same for a file that others may write into while it is open: what was mapped stays as it is.
    static std::shared_ptr<const FileMapping> openGuarded(const std::string& path);
    /// Takes ownership of the descriptor; for a file without a name.
    static std::shared_ptr<const FileMapping> adopt(int descriptor);
    ~FileMapping();
    FileMapping(const FileMapping&) = delete;
    FileMapping& operator=(const FileMapping&) = delete;

    std::string_view bytes() const { return {m_data, m_size}; }
    /// A descriptor of the file for the caller, who closes it; -1 if no file of that name is this one any
    /// more.
    int reopen() const;
    /// Hints that a range won't be needed soon: its memory is given back until it is read again.
    void unneeded(std::string_view stretch) const;
    /// As it was when it was mapped.
    const FileIdentity& identity() const { return m_identity; }

private:
    FileMapping() = default;
    static std::shared_ptr<const FileMapping> map(const PlainFile& file, std::string path, bool guarded);

    const char* m_data = nullptr;
    size_t m_size = 0;
    std::string m_path;
    FileIdentity m_identity;
    std::unique_ptr<MappingGuard> m_guard;
};

} // namespace Vs
