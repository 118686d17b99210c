#include "Server/DataModel/Model/ModelSource.h"

#include "Server/DataModel/Exchange/ExactData.h"

#include <stdexcept>

namespace Vs {

namespace {

std::unique_ptr<ModelKernel> readKernel(const ModelFile& file)
{
    const std::string_view data = file.kernelData();
    auto kernel = ModelKernel::read(data);
    if (!file.hasFinishes())
        kernel->forgetMaterials();
    file.file()->unneeded(data);
    return kernel;
}

} // namespace

// What can't be read is not tried again by each body that is asked.
ModelKernel& ModelSource::kernel()
{
    if (!m_fault.empty())
        throw std::runtime_error(m_fault);
    if (m_kernel)
        return *m_kernel;
    try {
        if (!file)
            m_kernel = ModelKernel::create();
        else
            m_kernel = isNative ? Exchange::ExactData::read(*file) : readKernel(*file);
    } catch (const std::runtime_error& error) {
        m_fault = error.what();
        throw;
    }
    m_isLoaded = true;
    return *m_kernel;
}

void ModelSource::readAhead()
{
    if (!file || kernelLoaded() || m_ahead.valid())
        return;
    m_ahead = std::async(std::launch::async, [this] {
        try {
            withKernel([](ModelKernel&) {});
        } catch (const std::runtime_error&) {
            // Who asks for it gets the fault.
        }
    });
}

} // namespace Vs
