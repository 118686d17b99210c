#include "Server/DataModel/Model/ModelKernel.h"

#include <dlfcn.h>
#include <filesystem>
#include <stdexcept>

namespace Vs {

namespace {

using Make = ModelKernel* (*)();
using Read = ModelKernel* (*)(const char*, size_t);

struct KernelLibrary
{
    Make make;
    Read read;
};

// The kernel's library stands beside this one.
const KernelLibrary& kernelLibrary()
{
    static const KernelLibrary library = [] {
        Dl_info here;
        dladdr(reinterpret_cast<void*>(&kernelLibrary), &here);
        const std::filesystem::path path =
            std::filesystem::path(here.dli_fname).parent_path() / "libVsModelKernel10.so";
        // The handle is kept for ever: objects of the kernel may outlive any owner that we could name.
        void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (!handle)
            throw std::runtime_error(std::string("The geometry kernel can't be loaded: ") + dlerror());
        const KernelLibrary found{reinterpret_cast<Make>(dlsym(handle, "quilletMakeModel")),
                                  reinterpret_cast<Read>(dlsym(handle, "quilletReadModel"))};
        if (!found.make || !found.read)
            throw std::runtime_error(path.string() + " isn't the geometry kernel of this program.");
        return found;
    }();
    return library;
}

} // namespace

std::unique_ptr<ModelKernel> ModelKernel::create()
{
    return std::unique_ptr<ModelKernel>(kernelLibrary().make());
}

std::unique_ptr<ModelKernel> ModelKernel::read(std::string_view bytes)
{
    return std::unique_ptr<ModelKernel>(kernelLibrary().read(bytes.data(), bytes.size()));
}

} // namespace Vs
