#include "Server/DataModel/Model/ModelSource.h"

namespace Vs {

namespace {

std::unique_ptr<ModelKernel> readKernel(const ModelFile& file)
{
    const std::string_view data = file.kernelData();
    auto kernel = ModelKernel::read(data);
    file.file()->unneeded(data);
    return kernel;
}

} // namespace

ModelKernel& ModelSource::kernel()
{
    if (!m_kernel)
        m_kernel = file ? readKernel(*file) : ModelKernel::create();
    return *m_kernel;
}

} // namespace Vs
