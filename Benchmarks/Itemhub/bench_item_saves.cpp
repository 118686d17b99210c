// What a save of an item's document costs the program, with its own service:
//     bench_item_saves PROFILE FILE COUNT
// saves the file COUNT times as an item's document, and prints as JSON the milliseconds of each report of a
// save, until it returned; the seconds until all had arrived; and those until the first sign-in was done.

#include "Server/Base/PathInfo.h"
#include "Server/Base/Strings.h"
#include "Server/DataModel/AssetType.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentEvents.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/Itemhub/ItemhubUtilities.h"

#include <QCoreApplication>

#include <boost/filesystem/operations.hpp>

#include <chrono>
#include <cstdio>
#include <string>

namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point begin)
{
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

Vs::Document* documentAt(const std::wstring& path)
{
    static Vs::DocumentType documentType("VeloraDocType", L"Design", L".vlra");
    static Vs::AssetType assetType("VeloraAssetType", L"Design", "VeloraDocType");
    Vs::DocumentMgr::get()->registerDocumentType(&documentType);
    Vs::AssetTypeMgr::get()->registerType(&assetType);
    Vs::Status status;
    Vs::Document* document = Vs::DocumentMgr::get()->create(&assetType, status);
    document->path(path);
    return document;
}

} // namespace

int main(int count, char** arguments)
{
    QCoreApplication application(count, arguments);
    if (count != 4) {
        std::fputs("bench_item_saves PROFILE FILE COUNT\n", stderr);
        return 2;
    }
    Vs::PathInfo::profileDirectory(arguments[1]);
    Vs::ItemhubUtilities* hub = Vs::ItemhubUtilities::get();
    const Clock::time_point begin = Clock::now();
    hub->signInToOwnService();
    const double signIn = secondsSince(begin);
    Vs::DocumentType type("VeloraDocType", L"Design", L".vlra");
    const std::wstring path = hub->addNewItem(&type, 0, 0, 0, L"Wheel", L"");
    Vs::Document* document = documentAt(path);
    std::printf("{\"signIn\": %.4f, \"saves\": [", signIn);
    const Clock::time_point first = Clock::now();
    for (int i = 0; i < std::atoi(arguments[3]); ++i) {
        // The save itself, which is the same without the service.
        const std::string beside = Vs::Strings::narrow(path) + ".new";
        boost::filesystem::copy_file(arguments[2], beside);
        boost::filesystem::rename(beside, path);
        const Clock::time_point reported = Clock::now();
        Vs::DocumentEvent event(document);
        Vs::DocumentEventSource::get()->fireDocumentSaved(&event);
        std::printf("%s%.3f", i == 0 ? "" : ", ", 1000 * secondsSince(reported));
    }
    const bool arrived = hub->waitForUploads(std::chrono::minutes(5));
    std::printf("], \"arrived\": %.3f}\n", arrived ? secondsSince(first) : -1);
    hub->stop();
    return arrived ? 0 : 1;
}
