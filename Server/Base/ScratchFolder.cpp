#include "Server/Base/ScratchFolder.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>

namespace Vs {

namespace fs = std::filesystem;

namespace {

/// The usual one where the environment names one that doesn't exist.
std::string temporaryFolder()
{
    std::error_code error;
    const fs::path folder = fs::temp_directory_path(error);
    return error ? "/tmp" : folder.string();
}

} // namespace

ScratchFolder::ScratchFolder() : ScratchFolder(temporaryFolder()) {}

ScratchFolder::ScratchFolder(const std::string& parent) : m_path(parent + "/quillet-XXXXXX")
{
    if (mkdtemp(m_path.data()))
        return;
    m_why = parent + ": " + std::strerror(errno);
    m_path.clear();
}

ScratchFolder::~ScratchFolder()
{
    std::error_code ignored;
    if (!m_path.empty())
        fs::remove_all(m_path, ignored);
}

} // namespace Vs
