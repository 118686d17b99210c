#include "Server/DataModel/Recovery/Private/FolderCalls.h"

#include "Server/Base/SystemCalls.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <stdexcept>
#include <vector>

namespace Vs::Recovery {

namespace fs = std::filesystem;

bool FolderCalls::remove(const std::string& path, Native::FileCalls& calls)
{
    return persistent([&] { return calls.remove(path.c_str()); }) == 0;
}

void FolderCalls::removeAll(const std::string& folder, Native::FileCalls& calls)
{
    std::error_code error;
    std::vector<fs::directory_entry> entries;
    for (auto entry = fs::directory_iterator(folder, error); !error && entry != fs::directory_iterator();
         entry.increment(error))
        entries.push_back(*entry);
    for (const fs::directory_entry& entry : entries)
        if (entry.symlink_status(error).type() == fs::file_type::directory)
            removeAll(entry.path().string(), calls);
        else
            remove(entry.path().string(), calls);
    remove(folder, calls);
}

void FolderCalls::rename(const std::string& from, const std::string& to, Native::FileCalls& calls)
{
    if (persistent([&] { return calls.rename(from.c_str(), to.c_str()); }) != 0)
        throw std::runtime_error(std::strerror(errno));
}

void FolderCalls::flush(const std::string& folder, Native::FileCalls& calls)
{
    const int descriptor =
        persistent([&] { return calls.open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC, 0); });
    if (descriptor < 0)
        return;
    persistent([&] { return calls.flush(descriptor); });
    calls.close(descriptor);
}

} // namespace Vs::Recovery
