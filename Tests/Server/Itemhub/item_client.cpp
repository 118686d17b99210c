// A run of the client alone, which tests kill, or start in a separate session.
//
//     item_client PROFILE new COUNT              creates that many items, and prints the path of each one's
//     file item_client PROFILE queue FILE CONTENT...  saves the contents, one after the other, without
//     signing in item_client PROFILE save FILE CONTENT...   the same, signed in, and waits until all have
//     arrived item_client PROFILE wait                   waits until all have arrived item_client PROFILE
//     maps                   prints which network libraries are mapped before a sign-in item_client PROFILE
//     keep ADDRESS TOKEN     signs in and keeps the token in the keyring item_client PROFILE browser ADDRESS
//     prints the page for signing in, and then who is signed in item_client PROFILE resume continues that
//     session, and prints who is signed in item_client PROFILE leave                  the same, and signs out

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

int tellAccount()
{
    std::cout << (hub().isAuthenticated() ? Vs::Strings::narrow(hub().accountName()) : "nobody")
              << (hub().isKept() ? " kept" : "") << (hub().isOnline() ? " online" : "") << std::endl;
    return 0;
}

/// Like each start of the program: titles and applicability ask whether somebody is signed in.
int tellNetwork()
{
    std::cout << (hub().isAuthenticated() || hub().ItemhubDisabled() || !hub().getFavorites().empty()
                      ? "signed in\n"
                      : "");
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);)
        for (const char* library : {"Qt6Network", "libcurl", "libssl", "VsNetwork10", "VsItemhubClient10"})
            if (line.find(library) != std::string::npos)
                std::cout << line << '\n';
    return 0;
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
        // As the program has it at its start.
        std::ignore = hub().itemOf(words[2]);
        // A tracer counts the calls between the two.
        std::raise(SIGSTOP);
        save(words[2], contents);
        std::raise(SIGSTOP);
        return 0;
    }
    if (words[1] == "maps")
        return tellNetwork();
    if (words[1] == "browser") {
        hub().signInByBrowser(words[2], "acme", false, [](const std::string& page) {
            std::cout << page << std::endl;
            return true;
        });
        return tellAccount();
    }
    if (words[1] == "keep") {
        Vs::Itemhub::Access access;
        access.address = words[2];
        access.customer = "acme";
        access.token = words[3];
        hub().signIn(access, true);
        return tellAccount();
    }
    if (!hub().resume())
        return words[1] == "resume" ? tellAccount() : 2;
    if (words[1] == "resume")
        return tellAccount();
    if (words[1] == "leave")
        return hub().signOut(), tellAccount();
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
