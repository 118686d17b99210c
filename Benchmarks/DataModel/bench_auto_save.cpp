// How long the main thread stands still for a recovery file, beside writing the same file by itself; and what
// a step costs while the child writes, beside the same step without.
//
//     bench_auto_save PROFILE [BOXES | FILE]...

#include "Benchmarks/Measure.h"
#include "Server/Base/PathInfo.h"
#include "Server/Base/Strings.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/AssetType.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/DocumentOpener.h"
#include "Server/DataModel/ModelBuilder.h"
#include "Server/DataModel/Recovery/AutoSaveController.h"
#include "Server/DataModel/Transaction.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

using namespace Vs;
using Benchmarks::milliseconds;

namespace {

constexpr int kRounds = 5, kSteps = 40;
DocumentType documentType("BenchDocType", L"Design", L".bdsn");
AssetType assetType("BenchAssetType", L"Design", "BenchDocType");

[[noreturn]] void fail(const Status& status)
{
    std::fprintf(stderr, "bench_auto_save: %s\n", Strings::narrow(status.toString()).c_str());
    std::exit(1);
}

Document* boxes(size_t count)
{
    Status status;
    Document* document = DocumentMgr::get()->create(&assetType, status);
    Transaction transaction(document->activeAsset(), L"Boxes");
    ModelBuilder builder(document->activeAsset());
    for (size_t i = 0; i < count; ++i)
        builder.box(1, 1, 1, {GkMatrix3d::translation({2.0 * double(i), 0, 0}), L"Box", {}}, status);
    transaction.commit();
    if (status.isError())
        fail(status);
    return document;
}

Document* opened(const std::string& path)
{
    Status status;
    DocumentOpener opener({path});
    opener.open(status, 1);
    if (opener.documentsOpened() == 0)
        fail(status);
    return opener.documentOpened(0);
}

double step(Document& document)
{
    static double size = 1;
    Status status;
    const double begin = milliseconds();
    ModelBuilder(document.activeAsset()).box(size += 0.001, 1, 1, {}, status);
    return milliseconds() - begin;
}

struct Times
{
    std::vector<double> values;
    void tell(const char* what)
    {
        if (values.empty())
            return;
        std::sort(values.begin(), values.end());
        const size_t last = values.size() - 1;
        std::printf("  %-34s median %7.2f   p99 %7.2f   worst %7.2f ms   (%zu)\n", what, values[last / 2],
                    values[last * 99 / 100], values[last], values.size());
    }
};

void rest(int milliseconds)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

// What the main loop notices of the files that earlier runs left: calls between which it does what it likes.
void look()
{
    AutoSaveController* controller = AutoSaveController::get();
    Times calls;
    const double begin = milliseconds();
    controller->lookForFiles();
    for (bool more = true; more; rest(1)) {
        const double called = milliseconds();
        more = controller->work();
        calls.values.push_back(milliseconds() - called);
    }
    const double known = milliseconds() - begin;
    std::vector<AutoSavedFileInfo> files;
    const double asked = milliseconds();
    controller->getAllRecoverFiles(files);
    std::printf("%zu recovery files, all known after %.0f ms, and told in %.1f ms\n", files.size(), known,
                milliseconds() - asked);
    calls.tell("standing still while looking");
    std::fflush(stdout);
}

void measure(const char* name, Document& document)
{
    AutoSaveController* controller = AutoSaveController::get();
    Times alone, meanwhile, fork, safe, byItself;
    step(document); // Loads the kernel, and reads the model.
    for (int i = 0; i < kSteps; ++i)
        alone.values.push_back(step(document));
    controller->writeAll();
    for (int round = 0; round < kRounds; ++round) {
        step(document);
        const double changed = milliseconds();
        // Idle calls until one of them forks: it is the one that takes longest by far.
        double longest = 0;
        bool more = true;
        for (const double end = changed + 60000; more && milliseconds() < end; rest(1)) {
            const double begin = milliseconds();
            more = controller->work();
            const double took = milliseconds() - begin;
            if (took > 0.2 && longest == 0) {
                longest = took;
                // The child has the pages in common with this process, which copies those that it writes to.
                for (int i = 0; i < 20; ++i)
                    meanwhile.values.push_back(step(document));
            }
        }
        fork.values.push_back(longest);
    }
    for (int round = 0; round < kRounds; ++round) {
        step(document);
        const double begin = milliseconds();
        controller->writeAll();
        safe.values.push_back(milliseconds() - begin);
        Status status;
        const std::wstring path = (PathInfo::temporaryDirectory(true) / "bench_auto_save.bdsn").wstring();
        step(document);
        const double written = milliseconds();
        if (!document.saveAs(path, status))
            fail(status);
        byItself.values.push_back(milliseconds() - written);
    }
    std::printf("%s\n", name);
    alone.tell("a step");
    meanwhile.tell("a step right after the fork");
    fork.tell("standing still for the fork");
    byItself.tell("writing by itself (a save)");
    safe.tell("until the file is safe");
    std::fflush(stdout);
}

} // namespace

int main(int count, char** arguments)
{
    if (count < 2) {
        std::fprintf(stderr, "usage: bench_auto_save PROFILE [BOXES | FILE]...\n");
        return 2;
    }
    PathInfo::profileDirectory(arguments[1]);
    DocumentMgr::get()->registerDocumentType(&documentType);
    AssetTypeMgr::get()->registerType(&assetType);
    AutoSaveController::get()->start();
    look();
    for (int i = 2; i < count; ++i) {
        const size_t parts = std::strtoul(arguments[i], nullptr, 10);
        Document* document = parts > 0 ? boxes(parts) : opened(arguments[i]);
        measure(arguments[i], *document);
        DocumentMgr::get()->close(document);
    }
    AutoSaveController::get()->end();
    std::_Exit(0);
}
