#include "Server/Base/Private/PythonBackend.h"

#include "Server/Base/Exception.h"
#include "Server/Base/PathInfo.h"

#include <dlfcn.h>
#include <utility>

namespace Vs {

namespace {

// Never destroyed: shutdown() ends it at the right time, since a script's objects must not outlive Python.
PythonBackend* s_backend = nullptr;
bool s_adopted = false;

PythonBackend* load()
{
    const auto library = PathInfo::rootDirectory() / "lib" / "libVsPython10.so";
    // Python's own extension modules find its symbols only if these are global.
    void* handle = dlopen(library.c_str(), RTLD_NOW | RTLD_GLOBAL);
    void* entry = handle ? dlsym(handle, kPythonBackendEntry) : nullptr;
    if (!entry)
        throw Exception(std::string("Python cannot be started: ") + dlerror() + '.');
    return reinterpret_cast<PythonBackendEntry>(entry)();
}

} // namespace

PythonBackend& PythonBackend::get()
{
    if (!s_backend)
        s_backend = load();
    return *s_backend;
}

PythonBackend* PythonBackend::running()
{
    return s_backend;
}

void PythonBackend::shutdown()
{
    if (!s_adopted)
        delete std::exchange(s_backend, nullptr);
}

void PythonBackend::adopt(PythonBackend* backend)
{
    s_backend = backend;
    s_adopted = true;
}

} // namespace Vs
