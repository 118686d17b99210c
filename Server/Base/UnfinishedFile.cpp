#include "Server/Base/UnfinishedFile.h"

#include <mutex>
#include <set>
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
    // Outlives everything: it is asked at the very end.
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

} // namespace Vs
