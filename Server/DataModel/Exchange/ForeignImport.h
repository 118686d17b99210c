#pragma once

#include "Server/Base/Status.h"
#include "Server/DataModel/Exchange/FileKind.h"
#include "Server/DataModel/Exchange/Worker.h"
#include "Server/DataModel/Model/FileMapping.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>

namespace Vs {
class ModelFile;
}

namespace Vs::Exchange {

class ImportCache;

/// Turns a foreign file into a model file, from the cache or by a worker.
class ForeignImport
{
public:
    explicit ForeignImport(std::wstring path) : m_path(std::move(path)) {}
    ~ForeignImport();

    /// A damaged file is refused.
    void strict(bool value) { m_isStrict = value; }

    const std::wstring& path() const { return m_path; }
    /// The model, or null if it couldn't be read or the reading was cancelled.
    const std::shared_ptr<const ModelFile>& model() const { return m_model; }
    /// At most one error, which names the file and the cause; and warnings that do.
    const Status& status() const { return m_status; }

    /// Begins to read a file for which `run` will be called, while this program does other things. One at a
    /// time: the next replaces one that nobody asked for. Main thread.
    static void expect(const std::wstring& path, ImportCache& cache);

    /// Progress of all together; returns false to cancel.
    using Watch = std::function<bool(double fraction, const std::wstring& step)>;
    /// Reads them side by side. Returns false if it was cancelled.
    static bool run(std::span<ForeignImport* const> imports, ImportCache& cache, const Watch& watch);

private:
    bool prepare(ImportCache& cache);
    bool takeExpected();
    void startWorker(ImportCache& cache);
    bool tryAgain(ImportCache& cache);
    std::wstring fault() const;
    /// Returns true if the worker must run again, in a different way.
    bool finish(ImportCache& cache);
    void keep(ImportCache& cache);
    void takeModel(std::shared_ptr<const ModelFile> model);
    void warn(const std::wstring& clause);

    std::wstring m_path;
    Format m_format = Format::Unknown;
    std::string m_key;       ///< Of the file alone.
    FileIdentity m_identity; ///< Before the key was found.
    std::filesystem::file_time_type m_started;
    uint64_t m_size = 0;
    std::string m_scratch;
    bool m_withoutAnnotations = false, m_isStrict = false;
    std::optional<std::wstring> m_firstFault; ///< While a damaged file is read again for what is intact.
    bool m_hasDied = false;                   ///< Its first reader, which may have been the kernel's fault;
    bool m_facewise = false;                  ///< and the second one too, so that the faces are tried.
    std::unique_ptr<Worker> m_worker;
    std::shared_ptr<const ModelFile> m_model;
    Status m_status;
};

} // namespace Vs::Exchange
