#include "Server/DataModel/Model/ModelData.h"

#include "Server/Base/Require.h"
#include "Server/DataModel/Model/ModelBody.h"

#include <algorithm>
#include <exception>
#include <ostream>
#include <sstream>

namespace Vs {

ModelData::ModelData(const std::wstring& name)
    : m_source(std::make_shared<ModelSource>()), m_tree(m_source, name), m_history(*m_source, m_settings)
{
}

ModelData::~ModelData() = default;

void ModelData::load(std::shared_ptr<const ModelFile> file)
{
    require(isEmpty(), "a file is read into a model that is empty");
    const PartTree tree = file->tree();
    m_stored = StoredPart{file->file(), file->place(), file->size(), file->hash(), std::nullopt};
    m_source->file = std::move(file);
    m_tree.load(tree);
}

void ModelData::stored(StoredPart part)
{
    if (part.size != 0)
        m_stored = std::move(part);
}

namespace {

constexpr double kMeshesShare = 0.5; // of the time that writing takes

// The kernel writes to a stream in which it goes back and forth, and hears of trouble only by the stream's
// state; what the trouble was is kept for the one who asked.
class KernelBuffer : public std::stringbuf
{
public:
    explicit KernelBuffer(const ModelData::Watch& watch) : std::stringbuf(std::ios_base::out), m_watch(watch)
    {
    }

    void rethrow() const
    {
        if (m_trouble)
            std::rethrow_exception(m_trouble);
    }

private:
    std::streamsize xsputn(const char* data, std::streamsize size) override
    {
        constexpr std::streamsize kStep = 1 << 20;
        try {
            m_written += size;
            if (m_written - m_told > kStep) {
                m_told = m_written;
                m_watch(kMeshesShare);
            }
            return std::stringbuf::xsputn(data, size);
        } catch (...) {
            m_trouble = std::current_exception();
            return 0;
        }
    }

    const ModelData::Watch& m_watch;
    std::streamsize m_written = 0, m_told = 0;
    std::exception_ptr m_trouble;
};

} // namespace

uint64_t ModelData::write(ModelSink& sink, const Watch& watch)
{
    const PartTree tree = m_source->withKernel([](ModelKernel& kernel) { return kernel.tree(); });
    ModelFileWriter writer(sink);
    for (size_t i = 0; i < tree.bodies.size(); ++i) {
        watch(kMeshesShare * double(i) / double(tree.bodies.size()));
        writer.addMesh(m_tree.bodyOf(tree, i)->mesh().get());
    }
    writer.writeIndex(tree, {});
    KernelBuffer buffer(watch);
    std::ostream stream(&buffer);
    try {
        m_source->withKernel([&](ModelKernel& kernel) { kernel.write(stream); });
    } catch (const std::runtime_error&) {
        buffer.rethrow();
        throw;
    }
    buffer.rethrow();
    writer.addKernelData(buffer.view());
    return writer.finish();
}

} // namespace Vs
