#pragma once

#include "Services/Itemhub/Blobs/Descriptor.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Itemhub::Blobs {

/// An upload's file while one request writes to it; nobody else can meanwhile, in no process.
class UploadWriter
{
public:
    UploadWriter(Descriptor file, uint64_t offset) : m_file(std::move(file)), m_offset(offset) {}

    [[nodiscard]] int descriptor() const { return m_file.get(); }
    /// How many bytes there are.
    [[nodiscard]] uint64_t offset() const { return m_offset; }
    void append(std::string_view data); ///< @throws std::system_error; what was written stays
    void cutBack(uint64_t offset);      ///< Forgets what lies behind.
    void flush();                       ///< To the disk. @throws std::system_error

private:
    Descriptor m_file; ///< Locked; the lock goes when it's closed.
    uint64_t m_offset;
};

/// Files that clients are sending. What a file has is how far its upload is: no process needs to remember it.
class UploadFiles
{
public:
    explicit UploadFiles(std::string folder);

    void make(const std::string& id); ///< @throws std::system_error
    /// @returns nothing if another request is writing to it. @throws std::system_error if there is no such
    /// file
    [[nodiscard]] std::optional<UploadWriter> write(const std::string& id) const;
    /// Bytes, or -1 if there is no such file.
    [[nodiscard]] int64_t size(const std::string& id) const;
    [[nodiscard]] std::string pathOf(const std::string& id) const;
    void remove(const std::string& id);

private:
    std::string m_folder;
};

} // namespace Itemhub::Blobs
