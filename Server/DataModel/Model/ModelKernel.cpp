#include "Server/DataModel/Model/ModelKernel.h"

#include "Server/Base/SiblingLibrary.h"

namespace Vs {

namespace {

struct KernelLibrary
{
    ModelKernel* (*make)();
    ModelKernel* (*read)(const char*, size_t);
};

const KernelLibrary& kernelLibrary()
{
    static const KernelLibrary library = [] {
        const SiblingLibrary found("libVsModelKernel10.so");
        return KernelLibrary{found.function<decltype(KernelLibrary::make)>("quilletMakeModel"),
                             found.function<decltype(KernelLibrary::read)>("quilletReadModel")};
    }();
    return library;
}

} // namespace

void ModelKernel::load()
{
    kernelLibrary();
}

std::unique_ptr<ModelKernel> ModelKernel::create()
{
    return std::unique_ptr<ModelKernel>(kernelLibrary().make());
}

std::unique_ptr<ModelKernel> ModelKernel::read(std::string_view bytes)
{
    return std::unique_ptr<ModelKernel>(kernelLibrary().read(bytes.data(), bytes.size()));
}

} // namespace Vs
