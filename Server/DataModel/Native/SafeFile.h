#pragma once

#include "Server/Base/UnfinishedFile.h"
#include "Server/DataModel/Native/FileCalls.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace Vs::Native {

/// A file that is written next to its final place and moved there only when it is complete and on the disk:
/// whatever fails, an existing file stays as it was, byte by byte. Every operation throws std::runtime_error
/// with the cause.
///
/// The unfinished file has one name per target, and is locked. So a second program that saves the same file
/// is noticed, and the next save removes what a program that died left behind.
class SafeFile
{
public:
    SafeFile(const std::string& path, FileCalls& calls);
    /// Removes the unfinished file.
    ~SafeFile();
    SafeFile(const SafeFile&) = delete;
    SafeFile& operator=(const SafeFile&) = delete;

    /// Where the file will be: `path`, after resolving symbolic links.
    const std::string& target() const { return m_target; }

    void append(const void* data, size_t size);
    /// Overwrites what was written before.
    void writeAt(uint64_t place, const void* data, size_t size);
    /// Appends a piece of another file; false, with nothing appended, if the two can't be copied between, and
    /// the bytes must be passed to `append`.
    [[nodiscard]] bool copy(int descriptor, uint64_t place, uint64_t size);
    uint64_t position() const { return m_position; }

    /// Called with the unfinished file's path once its content is on the disk; if it throws, the file isn't
    /// moved to its place.
    using Look = std::function<void(const std::string& scratch)>;
    /// Flushes the content, moves the file to its place and flushes the folder. If only the last of these
    /// fails, `inPlace` is nevertheless true.
    void commit(const Look& beforeRename = {});
    bool inPlace() const { return m_inPlace; }

private:
    void openScratch();
    bool isOurs(int descriptor);
    [[noreturn]] void abandon(int cause, bool remove);
    void takeRights();
    void takeAttributes();
    void flushFolder();

    FileCalls& m_calls;
    std::string m_target;
    std::string m_scratch;
    std::optional<UnfinishedFile> m_unfinished;
    int m_descriptor = -1;
    uint64_t m_position = 0;
    bool m_inPlace = false;
};

} // namespace Vs::Native
