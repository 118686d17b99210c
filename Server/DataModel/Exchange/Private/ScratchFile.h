#pragma once

#include "Server/DataModel/Model/PlainFile.h"

#include <filesystem>
#include <string>
#include <system_error>
#include <unistd.h>

namespace Vs::Exchange {

/// An empty file, accessible only to this user, for others to write to; removed with this object.
class ScratchFile
{
public:
    /// Throws std::runtime_error with the cause.
    explicit ScratchFile(std::string path) : m_path(std::move(path)) { close(createPrivateFile(m_path)); }
    ~ScratchFile()
    {
        std::error_code ignored;
        std::filesystem::remove(m_path, ignored);
    }
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;

    const std::string& path() const { return m_path; }

private:
    std::string m_path;
};

} // namespace Vs::Exchange
