#include "Server/DataModel/DocumentOpener.h"

#include "Server/Base/PathInfo.h"
#include "Server/Base/Progress.h"
#include "Server/Base/Require.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/Exchange/ForeignImport.h"
#include "Server/DataModel/Exchange/ForeignTranslator.h"
#include "Server/DataModel/Exchange/ImportCache.h"
#include "Server/DataModel/Native/DocumentBuild.h"
#include "Server/DataModel/Private/ProgressText.h"
#include "Server/DataModel/TranslatorFileRecognizer.h"

#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <atomic>
#include <optional>
#include <semaphore>
#include <system_error>
#include <thread>

namespace Vs {

namespace {

struct NativeJob
{
    size_t index;
    std::wstring path;
    std::optional<Native::NativeLoad> load;
    Status status;
};

// What is open already, or isn't there, is left to DocumentMgr::open.
std::vector<NativeJob> nativeJobs(const std::vector<boost::filesystem::path>& paths,
                                  const std::vector<std::unique_ptr<Exchange::ForeignImport>>& imports)
{
    std::vector<NativeJob> jobs;
    const DocumentMgr* manager = DocumentMgr::get();
    for (size_t i = 0; i < paths.size(); ++i) {
        const std::wstring path = PathInfo::absolute(paths[i]).wstring();
        boost::system::error_code error;
        if (!imports[i] && boost::filesystem::is_regular_file(paths[i], error) && !manager->document(path) &&
            manager->isNative(path))
            jobs.push_back({i, path, std::nullopt, {}});
    }
    return jobs;
}

void readAll(std::vector<NativeJob>& jobs)
{
    if (jobs.empty())
        return;
    ProgressScope progress(ProgressText::openingFiles(jobs.size()));
    std::atomic<size_t> next = 0;
    std::atomic<bool> goOn = true;
    std::counting_semaphore<> done(0);
    std::vector<std::thread> threads;
    const auto read = [&] {
        for (size_t k = next++; k < jobs.size(); k = next++) {
            jobs[k].load = DocumentBuild::read(
                jobs[k].path, [&](double) { return goOn.load(); }, jobs[k].status);
            done.release();
        }
    };
    const size_t most = std::max(std::thread::hardware_concurrency(), 1u);
    try {
        while (threads.size() < std::min(most, jobs.size()))
            threads.emplace_back(read);
    } catch (const std::system_error&) {
        // Where the system gives no more threads, the existing ones read, or this one.
        if (threads.empty())
            read();
    }
    for (size_t i = 0; i < jobs.size(); ++i) {
        done.acquire();
        if (!progress.update(double(i + 1) / double(jobs.size())))
            goOn = false;
    }
    for (std::thread& thread : threads)
        thread.join();
}

Document* take(NativeJob& job, Status& status)
{
    status.merge(job.status);
    // The same file may be named twice.
    if (Document* open = DocumentMgr::get()->document(job.path))
        return open;
    return job.load ? DocumentBuild::build(std::move(*job.load), job.path, status) : nullptr;
}

} // namespace

void DocumentOpener::expect(const boost::filesystem::path& path)
{
    Exchange::ForeignImport::expect(PathInfo::absolute(path).wstring(), Exchange::importCache());
}

void DocumentOpener::open(Status& status, int option)
{
    assertMainThread();
    constexpr int kStopAtFirstError = 0;
    TranslatorFileRecognizer recognizer("", false);
    recognizer.recognize();
    std::vector<std::unique_ptr<Exchange::ForeignImport>> imports(m_paths.size());
    std::vector<Exchange::ForeignImport*> running;
    for (size_t i = 0; i < m_paths.size(); ++i) {
        const std::wstring path = PathInfo::absolute(m_paths[i]).wstring();
        if (!recognizer.translator(path))
            continue;
        imports[i] = std::make_unique<Exchange::ForeignImport>(path);
        running.push_back(imports[i].get());
    }
    if (!running.empty()) {
        ProgressScope progress(ProgressText::openingFiles(running.size()));
        Exchange::ForeignImport::run(
            running, Exchange::importCache(),
            [&](double fraction, const std::wstring& step) { return progress.update(fraction, step); });
    }
    std::vector<NativeJob> jobs = nativeJobs(m_paths, imports);
    readAll(jobs);
    size_t job = 0;
    for (size_t i = 0; i < m_paths.size(); ++i) {
        Status own;
        Document* document = nullptr;
        if (job < jobs.size() && jobs[job].index == i) {
            document = take(jobs[job++], own);
        } else if (!imports[i]) {
            document = DocumentMgr::get()->open(m_paths[i].wstring(), own);
        } else {
            own.merge(imports[i]->status());
            if (imports[i]->model())
                document = DocumentMgr::get()->createFromModel(imports[i]->path(), imports[i]->model(), own);
        }
        if (document)
            m_opened.push_back(document);
        status.merge(own);
        if (own.isError() && option == kStopAtFirstError)
            return;
    }
}

} // namespace Vs
