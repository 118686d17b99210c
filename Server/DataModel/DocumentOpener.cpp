#include "Server/DataModel/DocumentOpener.h"

#include "Server/Base/Progress.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/Exchange/ForeignImport.h"
#include "Server/DataModel/Exchange/ForeignTranslator.h"
#include "Server/DataModel/Exchange/ImportCache.h"
#include "Server/DataModel/Exchange/WorkerProcess.h"
#include "Server/DataModel/TranslatorFileRecognizer.h"

#include <boost/filesystem/operations.hpp>

namespace Vs {

void DocumentOpener::expect(const boost::filesystem::path& path)
{
    Exchange::ForeignImport::expect(boost::filesystem::absolute(path).wstring(), Exchange::importCache());
}

void DocumentOpener::standby(const std::string& program, const Exchange::WorkerProcess& worker)
{
    Exchange::StandbyWorker::offer(program, worker);
}

void DocumentOpener::dropStandby()
{
    Exchange::StandbyWorker::drop();
}

void DocumentOpener::open(Status& status, int option)
{
    constexpr int kStopAtFirstError = 0;
    TranslatorFileRecognizer recognizer("", false);
    recognizer.recognize();
    std::vector<std::unique_ptr<Exchange::ForeignImport>> imports(m_paths.size());
    std::vector<Exchange::ForeignImport*> running;
    for (size_t i = 0; i < m_paths.size(); ++i) {
        const std::wstring path = boost::filesystem::absolute(m_paths[i]).wstring();
        if (!recognizer.translator(path))
            continue;
        imports[i] = std::make_unique<Exchange::ForeignImport>(path);
        running.push_back(imports[i].get());
    }
    if (!running.empty()) {
        ProgressScope progress(L"Opening " + std::to_wstring(running.size()) + L" files");
        Exchange::ForeignImport::run(
            running, Exchange::importCache(),
            [&](double fraction, const std::wstring& step) { return progress.update(fraction, step); });
    }
    for (size_t i = 0; i < m_paths.size(); ++i) {
        Status own;
        Document* document = nullptr;
        if (!imports[i]) {
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
