#include "Server/DataModel/Exchange/ExactData.h"

#include "Server/DataModel/Exchange/Format.h"
#include "Server/DataModel/Exchange/ImportCache.h"
#include "Server/DataModel/Exchange/KnownData.h"
#include "Server/DataModel/Exchange/Private/ScratchFile.h"
#include "Server/DataModel/Exchange/Worker.h"
#include "Server/DataModel/Model/ModelFile.h"

#include <fstream>
#include <functional>
#include <future>
#include <mutex>
#include <stdexcept>
#include <utility>

namespace Vs::Exchange::ExactData {

namespace {

KnownData& knownData()
{
    static KnownData known(importCache().folder() + "/known-data");
    return known;
}

/// What is being noted. The end of the program waits for it.
class Notes
{
public:
    static Notes& get()
    {
        // What it uses must still exist.
        knownData();
        static Notes notes;
        return notes;
    }

    void begin(std::function<void()> work)
    {
        const std::lock_guard lock(m_mutex);
        m_last = std::async(std::launch::async, [before = m_last, work = std::move(work)] {
                     if (before.valid())
                         before.wait();
                     work();
                 }).share();
    }
    void wait()
    {
        const std::lock_guard lock(m_mutex);
        if (m_last.valid())
            m_last.wait();
    }

private:
    std::mutex m_mutex;
    std::shared_future<void> m_last;
};

// Exact data are dense: reading them takes longer than reading as many bytes of a foreign file.
WorkerLimits limitsFor(uint64_t bytes)
{
    constexpr uint64_t kDense = 10;
    return WorkerLimits::forFile(bytes * kDense);
}

std::shared_ptr<const ModelFile> writtenAnew(std::string_view data, const std::string& key)
{
    ImportCache& cache = importCache();
    if (auto known = cache.find(key))
        return known;
    const uint64_t room = 4 * data.size();
    const ScratchFile source(cache.scratchPath(room)), target(cache.scratchPath(room));
    std::ofstream stream(source.path(), std::ios::binary);
    stream.write(data.data(), static_cast<std::streamsize>(data.size()));
    stream.close();
    if (!stream)
        throw std::runtime_error("there is no room to read the model's exact data");
    Worker worker(workerOf(Format::Brep), {"renew", keyOf(Format::Brep), source.path(), target.path()},
                  limitsFor(data.size()));
    Worker* workers[] = {&worker};
    Worker::run(workers, {});
    if (worker.end() != Worker::End::Done)
        throw std::runtime_error("its exact data are damaged: " + worker.fault());
    return cache.store(key, target.path());
}

} // namespace

std::unique_ptr<ModelKernel> read(const ModelFile& file)
{
    const std::string_view data = file.kernelData();
    auto digest = std::async(std::launch::async, [&] { return digestOf(data); });
    ModelKernel::load();
    Notes::get().wait();
    std::shared_ptr<const ModelFile> renewed;
    if (const DataDigest found = digest.get(); !knownData().contains(found))
        renewed = writtenAnew(data, hexOf(found) + "-exact");
    auto kernel = ModelKernel::read(renewed ? renewed->kernelData() : data);
    if (!file.hasFinishes())
        kernel->forgetMaterials();
    file.file()->unneeded(data);
    return kernel;
}

void noteOwn(std::shared_ptr<const FileMapping> file, std::vector<Place> models)
{
    Notes::get().begin([file = std::move(file), models = std::move(models)] {
        for (const auto& [place, size] : models) {
            try {
                const auto model = ModelFile::open(file, place, size);
                knownData().add(digestOf(model->kernelData()));
                file->unneeded(model->kernelData());
            } catch (const std::runtime_error&) {
                // Then it is read as a stranger's.
            }
        }
    });
}

} // namespace Vs::Exchange::ExactData
