// What the tests of the queue kill: a program that has items' files and saves them.
//
//     queues_saves PROFILE new COUNT             makes so many items, and prints the path of each one's file
//     queues_saves PROFILE queue FILE CONTENT... saves the contents, one after the other, without signing in
//     queues_saves PROFILE save FILE CONTENT...  the same, signed in, and waits until all have arrived
//     queues_saves PROFILE wait                  waits until all have arrived

#include "Server/Base/PathInfo.h"
#include "Server/Base/Strings.h"
#include "Server/DataModel/AssetType.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentEvents.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/Itemhub/ItemhubUtilities.h"

#include <QCoreApplication>

#include <boost/filesystem/operations.hpp>

#include <csignal>
#include <fstream>
#include <iostream>

namespace {

using Words = std::vector<std::string>;

Vs::DocumentType& documentType()
{
    static Vs::DocumentType type("VeloraDocType", L"Design", L".vlra");
    return type;
}

Vs::ItemhubUtilities& hub()
{
    return *Vs::ItemhubUtilities::get();
}

int makeItems(int count)
{
    for (int i = 0; i < count; ++i)
        std::cout << Vs::Strings::narrow(hub().addNewItem(&documentType(), 1, 0, 0, L"Wheel", L""))
                  << std::endl;
    return 0;
}

void save(const std::string& file, const Words& contents)
{
    static Vs::AssetType assetType("ItemhubAssetType", L"Design", "VeloraDocType");
    Vs::AssetTypeMgr::get()->registerType(&assetType);
    Vs::Status status;
    Vs::Document* document = Vs::DocumentMgr::get()->create(&assetType, status);
    document->path(Vs::Strings::widen(file));
    for (const std::string& content : contents) {
        std::ofstream(file + ".new") << content;
        boost::filesystem::rename(file + ".new", file);
        Vs::DocumentEvent event(document);
        Vs::DocumentEventSource::get()->fireDocumentSaved(&event);
    }
    Vs::DocumentMgr::get()->close(document);
}

int waitForAll()
{
    return hub().waitForUploads(std::chrono::seconds(60)) ? 0 : 1;
}

int run(const Words& words)
{
    Vs::PathInfo::profileDirectory(words[0]);
    Vs::DocumentMgr::get()->registerDocumentType(&documentType());
    const Words contents(words.begin() + std::min<long>(3, long(words.size())), words.end());
    if (words[1] == "queue") {
        // Loads what it needs first; whoever traces it counts from here.
        std::ignore = hub().itemOf(words[2]);
        std::raise(SIGSTOP);
        save(words[2], contents);
        return 0;
    }
    if (!hub().resume())
        return 2;
    if (words[1] == "new")
        return makeItems(std::stoi(words[2]));
    if (words[1] == "save")
        save(words[2], contents);
    return waitForAll();
}

} // namespace

int main(int count, char** words)
{
    QCoreApplication application(count, words);
    try {
        const int code = run(Words(words + 1, words + count));
        hub().stop();
        return code;
    } catch (const std::exception& error) {
        std::cerr << error.what() << std::endl;
        return 3;
    }
}
