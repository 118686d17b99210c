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
    /// Whether another request waits to go on in the place of this one.
    [[nodiscard]] bool isWanted() const;

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
    /// Waits a moment for a request that is writing to it and may make room, see UploadWriter::isWanted.
    /// @returns nothing if it goes on. @throws std::system_error if there is no such file
    [[nodiscard]] std::optional<UploadWriter> write(const std::string& id) const;
    /// Waits a moment for a request that is writing to the file, if there is one, and may make room.
    void settle(const std::string& id) const;
    /// Bytes, or -1 if there is no such file.
    [[nodiscard]] int64_t size(const std::string& id) const;
    [[nodiscard]] std::string pathOf(const std::string& id) const;
    void remove(const std::string& id);

private:
    std::string m_folder;
};

} // namespace Itemhub::Blobs
