#include "Server/Base/UnfinishedFile.h"

#include <cstdlib>
#include <fstream>
#include <mutex>
#include <set>
#include <string_view>
#include <unistd.h>
#include <utility>

namespace Vs {
namespace {

struct Register
{
    std::mutex mutex;
    std::multiset<std::string> paths;
};

Register& theRegister()
{
    // Outlives everything: it is used at the very end.
    static auto* const made = new Register;
    return *made;
}

} // namespace

UnfinishedFile::UnfinishedFile(std::string path) : m_path(std::move(path))
{
    const std::lock_guard lock(theRegister().mutex);
    theRegister().paths.insert(m_path);
}

UnfinishedFile::~UnfinishedFile()
{
    const std::lock_guard lock(theRegister().mutex);
    theRegister().paths.erase(theRegister().paths.find(m_path));
}

void UnfinishedFile::removeAll()
{
    const std::lock_guard lock(theRegister().mutex);
    for (const std::string& path : theRegister().paths)
        unlink(path.c_str());
}

mode_t permissionsOfNewFiles()
{
    constexpr unsigned long kForAll = 0666, kUsualMask = 022;
    constexpr std::string_view kName = "Umask:";
    std::ifstream state("/proc/self/status");
    for (std::string line; std::getline(state, line);)
        if (line.starts_with(kName))
            return static_cast<mode_t>(kForAll & ~std::strtoul(line.c_str() + kName.size(), nullptr, 8));
    return kForAll & ~kUsualMask;
}

} // namespace Vs
