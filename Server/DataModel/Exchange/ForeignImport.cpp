#include "Server/DataModel/Exchange/ForeignImport.h"

#include "Server/Base/Require.h"
#include "Server/Base/Strings.h"
#include "Server/DataModel/Exchange/ImportCache.h"
#include "Server/DataModel/Model/ModelFile.h"
#include "Server/DataModel/Private/ProgressText.h"

#include <algorithm>
#include <filesystem>
#include <stdexcept>

namespace Vs::Exchange {

namespace {

std::unique_ptr<ForeignImport> s_expected;

std::string folderOf(const std::wstring& path)
{
    return std::filesystem::path(Strings::toBytes(path)).parent_path().string();
}

/// Whether its reader can tell what is sound of a damaged file.
bool canBeSalvaged(Format format)
{
    return format == Format::Step || format == Format::Iges;
}

} // namespace

ForeignImport::~ForeignImport()
{
    if (!m_worker || m_worker->end() != Worker::End::Running)
        return;
    m_worker.reset();
    std::error_code ignored;
    std::filesystem::remove(m_scratch, ignored);
}

void ForeignImport::expect(const std::wstring& path, ImportCache& cache)
{
    assertMainThread();
    s_expected = std::make_unique<ForeignImport>(path);
    if (s_expected->prepare(cache))
        s_expected->m_worker->start();
}

// Continues what was begun for this file.
bool ForeignImport::takeExpected()
{
    if (!s_expected || s_expected.get() == this || s_expected->m_path != m_path || !s_expected->m_worker)
        return false;
    m_format = s_expected->m_format;
    m_key = std::move(s_expected->m_key);
    m_identity = s_expected->m_identity;
    m_started = s_expected->m_started;
    m_size = s_expected->m_size;
    m_scratch = std::move(s_expected->m_scratch);
    m_worker = std::move(s_expected->m_worker);
    s_expected.reset();
    return true;
}

void ForeignImport::warn(const std::wstring& clause)
{
    m_status.addWarning(L"\"" + m_path + L"\" " + clause + L".");
}

void ForeignImport::takeModel(std::shared_ptr<const ModelFile> model)
{
    m_model = std::move(model);
    for (const std::wstring& warning : m_model->warnings())
        warn(warning);
    if (m_withoutAnnotations)
        warn(L"has annotations that can't be read");
}

// Returns true if a worker is needed.
bool ForeignImport::prepare(ImportCache& cache)
{
    if (takeExpected())
        return true;
    m_format = recognise(m_path, m_status);
    if (m_format == Format::Unknown)
        return false;
    const std::string path = Strings::toBytes(m_path);
    m_identity = FileIdentity::of(path);
    const auto key = ImportCache::keyOf(path, keyOf(m_format));
    if (!key) {
        m_status.addError(L"\"" + m_path + L"\" can't be read.");
        return false;
    }
    m_key = *key;
    if (auto known = cache.find(cache.fullKey(m_key, folderOf(m_path)))) {
        takeModel(std::move(known));
        return false;
    }
    std::error_code error;
    const uintmax_t size = std::filesystem::file_size(path, error);
    m_size = error ? 0 : size; // The worker tells what is wrong with it.
    startWorker(cache);
    return true;
}

void ForeignImport::startWorker(ImportCache& cache)
{
    // Most models are shorter than the files that they were read from; meshes of few surfaces may be longer.
    constexpr uint64_t kLonger = 4, kLeast = uint64_t(16) << 20;
    m_scratch = cache.scratchPath(std::max(m_size * kLonger, kLeast));
    m_started = std::filesystem::file_time_type::clock::now();
    std::vector<std::string> arguments{"import", keyOf(m_format), Strings::toBytes(m_path), m_scratch};
    if (m_withoutAnnotations)
        arguments.push_back("--no-annotations");
    if (m_firstFault)
        arguments.push_back(m_facewise ? "--facewise" : "--salvage");
    else if (m_isStrict)
        arguments.push_back("--strict");
    // What a damaged file holds isn't kept as sound.
    if (m_format == Format::Step && !m_firstFault)
        arguments.push_back("--pieces=" + cache.pieces());
    m_worker =
        std::make_unique<Worker>(workerOf(m_format), std::move(arguments), WorkerLimits::forFile(m_size));
}

// Takes the model, and stores it in the cache if a key can tell when it is the right one again.
void ForeignImport::keep(ImportCache& cache)
{
    std::error_code ignored;
    const std::vector<std::string>& others = m_worker->others();
    // Nor is the key of any use if the file was written meanwhile.
    const bool same = FileIdentity::of(Strings::toBytes(m_path)) == m_identity;
    const bool known = same && std::all_of(others.begin(), others.end(), [&](const std::string& other) {
                           // A file that changed while it was read may have been read in its old state.
                           const auto changed = std::filesystem::last_write_time(other, ignored);
                           return !other.empty() && (ignored || changed < m_started);
                       });
    // The next kernel may read the annotations that this one can't.
    if (m_withoutAnnotations || !known) {
        auto model = ModelFile::open(m_scratch);
        std::filesystem::remove(m_scratch, ignored);
        takeModel(std::move(model));
        return;
    }
    if (!others.empty())
        cache.noteOthers(m_key, folderOf(m_path), others);
    takeModel(cache.store(cache.fullKey(m_key, folderOf(m_path)), m_scratch));
}

/// Whether there is another way to read it; if so, it is begun.
bool ForeignImport::tryAgain(ImportCache& cache)
{
    const Worker::End end = m_worker->end();
    const bool died = end == Worker::End::Crashed || end == Worker::End::Stalled;
    if (died && !m_withoutAnnotations && m_worker->step().find("annotations") != std::string::npos) {
        m_withoutAnnotations = true;
    } else if ((died || end == Worker::End::Failed) && canBeSalvaged(m_format) && !m_isStrict &&
               !m_firstFault) {
        m_firstFault = fault();
        m_hasDied = died;
    } else if (m_firstFault && !m_facewise && (died || (m_hasDied && end == Worker::End::Failed))) {
        m_facewise = true;
    } else {
        return false;
    }
    std::error_code ignored;
    std::filesystem::remove(m_scratch, ignored);
    startWorker(cache);
    return true;
}

/// What the worker died of or reported, with the file's name.
std::wstring ForeignImport::fault() const
{
    const std::wstring clause = Strings::widen(m_worker->fault());
    const bool isClause = m_worker->end() == Worker::End::Failed;
    return L"\"" + m_path + L"\" " + (isClause ? clause : L"can't be read: " + clause) + L".";
}

bool ForeignImport::finish(ImportCache& cache)
{
    if (m_worker->end() == Worker::End::Done) {
        try {
            keep(cache);
        } catch (const std::runtime_error& error) {
            m_status.addError(L"\"" + m_path + L"\" was read, but its model can't be used: " +
                              Strings::widen(error.what()));
        }
        return false;
    }
    if (tryAgain(cache))
        return true;
    if (m_worker->end() != Worker::End::Cancelled)
        m_status.addError(m_firstFault.value_or(fault()));
    std::error_code ignored;
    std::filesystem::remove(m_scratch, ignored);
    return false;
}

bool ForeignImport::run(std::span<ForeignImport* const> imports, ImportCache& cache, const Watch& watch)
{
    std::vector<ForeignImport*> active;
    for (ForeignImport* import : imports)
        if (import->prepare(cache))
            active.push_back(import);
    bool cancelled = false;
    while (!active.empty()) {
        std::vector<Worker*> workers;
        for (ForeignImport* import : active)
            workers.push_back(import->m_worker.get());
        Worker::run(workers, [&] {
            double sum = 0;
            const Worker* slowest = workers.front();
            for (const Worker* worker : workers) {
                sum += worker->end() == Worker::End::Running ? worker->fraction() : 1.0;
                if (worker->end() == Worker::End::Running && worker->fraction() < slowest->fraction())
                    slowest = worker;
            }
            const bool goOn =
                !watch || watch(sum / double(workers.size()), ProgressText::step(slowest->step()));
            cancelled |= !goOn;
            return goOn;
        });
        std::erase_if(active, [&](ForeignImport* import) { return !import->finish(cache) || cancelled; });
    }
    return !cancelled;
}

} // namespace Vs::Exchange
