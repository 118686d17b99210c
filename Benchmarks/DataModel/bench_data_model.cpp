// Documents and their native files, without a window. Each run prints one line of JSON with its own times and
// its peak memory; Benchmarks/store.py lays them beside the bare kernel.
//
//     bench_data_model make IN.step OUT.tdsn PROFILE
//         opens a foreign file, saves it, and saves it again in three ways
//     bench_data_model reopen IN.tdsn [PROFILE]
//         opens a native file, looks at all of it, and measures one part
//     bench_data_model close FOLDER COUNT
//         makes, saves and closes that many documents

#include "Benchmarks/Measure.h"
#include "Server/Base/PathInfo.h"
#include "Server/Base/Require.h"
#include "Server/Base/Strings.h"
#include "Server/Body/Body.h"
#include "Server/Body/BodyProperties.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/AssetType.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/ModelBuilder.h"
#include "Server/DataModel/Translator.h"
#include "Server/DataModel/TranslatorFileRecognizer.h"

#include <cstdio>
#include <set>
#include <string>

using namespace Vs;
using Benchmarks::milliseconds, Benchmarks::peakKiB;

namespace {

[[noreturn]] void fail(const Status& status)
{
    std::fprintf(stderr, "bench_data_model: %s\n", Strings::narrow(status.toString()).c_str());
    std::exit(1);
}

/// Milliseconds of work that must succeed.
template <class Work>
double timed(Work&& work)
{
    Status status;
    const double start = milliseconds();
    if (!work(status))
        fail(status);
    return milliseconds() - start;
}

bool openForeign(const std::wstring& path, Status& status)
{
    TranslatorFileRecognizer recognizer("", false);
    recognizer.recognize();
    Translator* translator = recognizer.translator(path);
    if (!translator)
        return false;
    const auto options = translator->createOpenOptions();
    options->fileName(path);
    TranslatorContext context;
    return translator->open(*options, context, status);
}

void collect(const Component& component, std::set<const Body*>& bodies)
{
    if (component.body)
        bodies.insert(component.body.get());
    for (const auto& child : component.children)
        collect(*child, bodies);
}

size_t trianglesOf(const Asset& asset)
{
    std::set<const Body*> bodies;
    collect(*asset.components(), bodies);
    size_t sum = 0;
    for (const Body* body : bodies)
        sum += body->mesh()->triangles.size() / 3;
    return sum;
}

int make(const std::wstring& source, const std::wstring& target)
{
    const double cold = timed([&](Status& status) { return openForeign(source, status); });
    Document* document = DocumentMgr::get()->document(0u);
    const double first = timed([&](Status& status) { return document->saveAs(target, status); });
    const double unchanged = timed([&](Status& status) { return document->save(status); });
    // A second, small asset changes while the large one stays.
    Asset* small = Asset::create(document, L"Small", document->activeAsset()->assetType());
    timed([&](Status& status) { return ModelBuilder(small).box(1, 2, 3, {}, status) != nullptr; });
    const double oneChanged = timed([&](Status& status) { return document->save(status); });
    timed([&](Status& status) {
        return ModelBuilder(document->activeAsset()).box(1, 2, 3, {}, status) != nullptr;
    });
    const double allChanged = timed([&](Status& status) { return document->save(status); });
    std::printf("{\"cold_ms\": %.2f, \"save_ms\": %.2f, \"unchanged_ms\": %.2f, \"one_changed_ms\": %.2f, "
                "\"changed_ms\": %.2f, \"peak_kib\": %ld}\n",
                cold, first, unchanged, oneChanged, allChanged, peakKiB());
    return 0;
}

int reopen(const std::wstring& path)
{
    const double opened =
        timed([&](Status& status) { return DocumentMgr::get()->open(path, status) != nullptr; });
    const Asset& asset = *DocumentMgr::get()->document(0u)->activeAsset();
    size_t triangles = 0;
    const double looked = timed([&](Status&) { return (triangles = trianglesOf(asset)) > 0; });
    const long shown = peakKiB();
    std::set<const Body*> bodies;
    collect(*asset.components(), bodies);
    const double measured =
        timed([&](Status& status) { return bodyProperties(**bodies.begin(), status).has_value(); });
    std::printf(
        "{\"open_ms\": %.2f, \"look_ms\": %.2f, \"kernel_ms\": %.2f, \"shown_kib\": %ld, \"peak_kib\": "
        "%ld, \"triangles\": %zu}\n",
        opened, looked, measured, shown, peakKiB(), triangles);
    return 0;
}

int closeMany(const std::wstring& folder, int count, AssetType& type)
{
    DocumentMgr* manager = DocumentMgr::get();
    const double made = timed([&](Status& status) {
        for (int i = 0; i < count; ++i) {
            Document* document = manager->create(&type, status);
            const std::wstring path = folder + L"/" + std::to_wstring(i) + L".tdsn";
            if (!document || !document->saveAs(path, status))
                return false;
        }
        return true;
    });
    const double closed = timed([&](Status&) {
        while (manager->documents() > 0) {
            // As the close command does: it asks by path whether the document is still there.
            Document* last = manager->document(manager->documents() - 1);
            const std::wstring path = last->path();
            manager->close(last);
            if (manager->document(path))
                return false;
        }
        return true;
    });
    std::printf("{\"made_ms\": %.2f, \"closed_ms\": %.3f}\n", made, closed);
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    DocumentType documentType("BenchDocType", L"Bench", L".tdsn");
    AssetType assetType("BenchAssetType", L"Bench", "BenchDocType");
    require(DocumentMgr::get()->registerDocumentType(&documentType), "the kinds are new");
    require(AssetTypeMgr::get()->registerType(&assetType), "the kinds are new");
    const std::string what = argc > 1 ? argv[1] : "";
    if (what == "make" && argc == 5) {
        PathInfo::profileDirectory(Strings::widen(argv[4]));
        return make(Strings::widen(argv[2]), Strings::widen(argv[3]));
    }
    if (what == "reopen" && (argc == 3 || argc == 4)) {
        if (argc == 4)
            PathInfo::profileDirectory(Strings::widen(argv[3]));
        return reopen(Strings::widen(argv[2]));
    }
    if (what == "close" && argc == 4) {
        PathInfo::profileDirectory(Strings::widen(argv[2]) + L"/profile");
        return closeMany(Strings::widen(argv[2]), std::atoi(argv[3]), assetType);
    }
    std::fprintf(stderr, "usage: bench_data_model make IN.step OUT.tdsn PROFILE | reopen IN.tdsn [PROFILE] | "
                         "close FOLDER COUNT\n");
    return 2;
}
