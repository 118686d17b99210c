#pragma once

#include "Services/Itemhub/Blobs/Descriptor.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Itemhub::Blobs {

/// An upload's file while one request writes to it, to the exclusion of all others in any process.
class UploadWriter
{
public:
    UploadWriter(Descriptor file, uint64_t offset) : m_file(std::move(file)), m_offset(offset) {}

    [[nodiscard]] int descriptor() const { return m_file.get(); }
    /// The number of bytes present.
    [[nodiscard]] uint64_t offset() const { return m_offset; }
    void append(std::string_view data); ///< @throws std::system_error; what was written stays
    void cutBack(uint64_t offset);      ///< Truncates the file.
    void flush();                       ///< To the disk. @throws std::system_error
    /// Whether another request is waiting to take over from this one.
    [[nodiscard]] bool isWanted() const;

private:
    Descriptor m_file; ///< Locked; the lock is released when it is closed.
    uint64_t m_offset;
};

/// Files that clients are sending. The size of a file is the progress of its upload, so no process has to
/// keep track of it.
class UploadFiles
{
public:
    explicit UploadFiles(std::string folder);

    void make(const std::string& id); ///< @throws std::system_error
    /// If another request is writing to it, waits a moment for it to give way; see UploadWriter::isWanted.
    /// @returns nothing if the other one continues. @throws std::system_error if there is no such file
    [[nodiscard]] std::optional<UploadWriter> write(const std::string& id) const;
    /// If a request is writing to the file, waits a moment for it to give way.
    void settle(const std::string& id) const;
    /// In bytes; -1 if there is no such file.
    [[nodiscard]] int64_t size(const std::string& id) const;
    [[nodiscard]] std::string pathOf(const std::string& id) const;
    void remove(const std::string& id);

private:
    std::string m_folder;
};

} // namespace Itemhub::Blobs
