#include "UI/Commands/Documents/FileSetAside.h"

#include <boost/filesystem/operations.hpp>

#include <unistd.h>
#include <utility>

namespace Vu::Commands {

namespace fs = boost::filesystem;

FileSetAside::FileSetAside(fs::path path) : m_path(std::move(path))
{
    boost::system::error_code error;
    const fs::file_status file = fs::symlink_status(m_path, error);
    constexpr auto kWritable = fs::owner_write | fs::group_write | fs::others_write;
    if (!fs::is_regular_file(file) ||
        ((file.permissions() & kWritable) != 0 && access(m_path.c_str(), W_OK) == 0))
        return;
    const fs::path aside = fs::unique_path(m_path.parent_path() / ".%%%%-%%%%-%%%%.old", error);
    if (error)
        return;
    fs::rename(m_path, aside, error);
    if (!error)
        m_aside = aside;
}

FileSetAside::~FileSetAside()
{
    if (m_aside.empty())
        return;
    boost::system::error_code error;
    if (fs::exists(m_path, error))
        fs::remove(m_aside, error);
    else
        fs::rename(m_aside, m_path, error);
}

} // namespace Vu::Commands
