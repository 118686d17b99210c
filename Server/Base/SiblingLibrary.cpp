#include "Server/Base/SiblingLibrary.h"

#include <dlfcn.h>
#include <filesystem>
#include <stdexcept>

namespace Vs {

namespace {

// An address in this library, by which the system finds its file.
const char here = 0;

} // namespace

SiblingLibrary::SiblingLibrary(const std::string& fileName, Open open) : m_open(open)
{
    Dl_info info;
    dladdr(&here, &info);
    m_path = (std::filesystem::path(info.dli_fname).parent_path() / fileName).string();
    m_handle = dlopen(m_path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!m_handle)
        throw std::runtime_error(std::string("a part of the program can't be loaded: ") + dlerror());
}

SiblingLibrary::~SiblingLibrary()
{
    if (m_open == Open::WhileThisLives)
        dlclose(m_handle);
}

void* SiblingLibrary::find(const char* name) const
{
    void* found = dlsym(m_handle, name);
    if (!found)
        throw std::runtime_error(m_path + " isn't that of this program");
    return found;
}

} // namespace Vs
