#pragma once

#include "Server/Base/UnfinishedFile.h"

#include <optional>
#include <string>

namespace Vs::Exchange {

/// A file that is written beside its final place and takes it only when it is complete: whatever fails, an
/// old file of that name stays as it was.
class [[nodiscard]] NewFile
{
public:
    /// Throws std::runtime_error with the cause if nothing can be written there.
    explicit NewFile(const std::wstring& path);
    /// Removes the unfinished file.
    ~NewFile();
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    /// Where to write; exists, and is empty.
    const std::string& scratch() const { return m_scratch; }
    /// Puts the file in its place; flushes it to the disk before, if it replaces another. Throws
    /// std::runtime_error.
    void commit();

private:
    std::string m_path;
    std::string m_scratch;
    std::optional<UnfinishedFile> m_unfinished;
};

} // namespace Vs::Exchange
