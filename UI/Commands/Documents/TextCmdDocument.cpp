#include "Server/Base/PathInfo.h"
#include "Server/Base/SerializableObject.h"
#include "Server/Base/SoftwareVersion.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandMgr.h"
#include "Server/Base/TranscriptMgr.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/AssetType.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/Recovery/AutoSaveController.h"
#include "UI/Base/Command/TextRows.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Commands/Documents/CloseDocumentCmd.h"
#include "UI/Commands/Documents/NewDocumentCmd.h"
#include "UI/Commands/Documents/ShowDocument.h"

#include <boost/filesystem/operations.hpp>
#include <boost/format.hpp>

#include <algorithm>

namespace Vu::Commands {
namespace {

using Vs::TextCommandParameters;
using Vs::TextCommandResult;
namespace fs = boost::filesystem;

constexpr const wchar_t* kNoActiveDocument = L"There is no active document";

// clang-format off
constexpr const wchar_t* kArea = L"Document";
constexpr DirectTextRow kOpen    = {kArea, L"Open", L"<filename> Opens a document and activates a view on its active asset"};
constexpr DirectTextRow kCreate  = {kArea, L"Create", L"<AssetTypeId> Creates a document with an active asset of the passed type and activates a view on that asset"};
constexpr DirectTextRow kClose   = {kArea, L"Close", L"/CloseLast [<document-path>] Closes the active/specified document"};
constexpr DirectTextRow kCloseAll= {kArea, L"CloseAll", L"Close current all opened documents in program"};
constexpr DirectTextRow kPath    = {kArea, L"Path", L"Gets the document path for the active document"};
constexpr DirectTextRow kActivate= {kArea, L"Activate", L"<path> Activates the document with the passed path or filename"};
constexpr DirectTextRow kVersion = {kArea, L"SoftwareVersion", L"Get the last saved software version."};
constexpr DirectTextRow kExample = {kArea, L"ExampleDoc", L"<AssetTypeId> Creates a example document to initialize graphics global environment before running unit test, \tand then make sure each unit test has steady object counts before and after each regression test", "", false};
constexpr DirectTextRow kRename  = {kArea, L"Rename", L"<NewDocName> Changes the document's display name", "", false};
constexpr DirectTextRow kRootName= {kArea, L"UpdateRootComponentName", L"[<path>] Names the root component after the active document, or the passed file, unless somebody has given it a name", "", false};
// clang-format on

bool isFile(const fs::path& path)
{
    boost::system::error_code error;
    return fs::is_regular_file(path, error);
}

Vs::Document* activeDocument()
{
    DocumentSession* session = SessionMgr::get()->activeDocumentSession();
    return session ? session->document() : nullptr;
}

class TextCmdDocumentOpen : public DirectTextCommand<kOpen>
{
public:
    std::wstring usage() const override { return L"<filename> [/Strict] Opens a document"; }

    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        if (parameters.parameters() == 0)
            return {1, L"No filename specific as parameter"};
        fs::path path(Vs::TranscriptMgr::get()->locate(parameters[0]));
        UIBaseOptionGroup* options = UIBaseOptionGroup::get();
        if (!isFile(path)) {
            const fs::path other = fs::path(options->lastDirectory()) / parameters[0];
            if (!isFile(other))
                return {1, L"Filename not found"};
            path = other;
        }
        const fs::path whole = Vs::PathInfo::absolute(path);
        if (!Vs::AutoSaveController::isRecoveryFile(whole.wstring()))
            options->lastDirectory(whole.parent_path().wstring());
        CommandContext context = CommandContext::emptyContext();
        context.addArgument(CommandContext::pathArgumentName(), path.wstring());
        if (parameters.hasFlag(L"Strict"))
            context.addArgument(Vs::UniqueString::find("Strict", true), true);
        return runDefinition(L"VeloraOpenDocumentCommand", context, parameters);
    }
};

TextCommandResult create(const std::string& assetType, const TextCommandParameters& parameters)
{
    CommandContext context = CommandContext::emptyContext();
    context.addArgument(NewDocumentCmdDef::assetTypeArgumentName(),
                        Vs::UniqueStringObject::get(Vs::UniqueString::find(assetType, true)));
    return runDefinition(NewDocumentCmdDef::info()->key(), context, parameters);
}

class TextCmdDocumentCreate : public DirectTextCommand<kCreate>
{
public:
    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        if (parameters.parameters() == 0)
            return {1, L"No asset type specified as parameter"};
        const std::string identifier = Vs::Strings::narrow(parameters[0]);
        if (!Vs::AssetTypeMgr::get()->assetType(identifier))
            return {1, L"Invalid asset type identifier specified as parameter; see AssetMgt.AssetTypes for "
                       L"more info"};
        return create(identifier, parameters);
    }
};

bool isOpen(const DocumentSession* session)
{
    return SessionMgr::get()->isOpen(session);
}

TextCommandResult closeSession(DocumentSession* session, CommandContext context,
                               const TextCommandParameters& parameters)
{
    context.addArgument(CloseDocumentCmdDef::documentSessionArgumentName(), session);
    TextCommandResult result = runDefinition(CloseDocumentCmdDef::info()->key(), context, parameters);
    // A line of the command box has only queued the close. The definition is silent where somebody refused.
    if (result.first != 0 || parameters.viaUI() || !isOpen(session))
        return result;
    const Vs::Document* document = session->document();
    return {1, L"\"" + document->displayName() + L"\" " +
                   (document->isDirty(false) ? L"has changes that are not saved, and was not closed"
                                             : L"was not closed")};
}

/// The session of the newest document; null if none is open.
DocumentSession* lastSession()
{
    const std::vector<Vs::Document*> documents = SessionMgr::get()->openDocuments();
    return documents.empty() ? nullptr : SessionMgr::get()->documentSession(documents.back());
}

/// Null if none is open there, or if it is leaving.
Vs::Document* openDocument(const std::wstring& path)
{
    const Vs::DocumentMgr* documents = Vs::DocumentMgr::get();
    Vs::Document* document = documents->document(path);
    if (!document)
        document = documents->document(Vs::TranscriptMgr::get()->locate(path));
    return SessionMgr::get()->isLeaving(document) ? nullptr : document;
}

class TextCmdDocumentClose : public DirectTextCommand<kClose>
{
public:
    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        DocumentSession* session = SessionMgr::get()->activeDocumentSession();
        if (parameters.hasFlag(L"CloseLast")) {
            session = lastSession();
        } else if (parameters.parameters() > 0) {
            Vs::Document* document = openDocument(parameters[0]);
            if (!document)
                return {1, L"There is no document UI associated with the given path"};
            session = SessionMgr::get()->documentSession(document);
        }
        if (!session)
            return {1, kNoActiveDocument};
        return closeSession(session, CommandContext::activeContext(), parameters);
    }
};

class TextCmdDocumentCloseAll : public DirectTextCommand<kCloseAll>
{
public:
    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        // Closing changes the list.
        const std::vector<DocumentSession*> sessions = SessionMgr::get()->documentSessions();
        if (sessions.empty())
            return {1, L"There is no document for closing"};
        // One that stays open keeps none of the others.
        TextCommandResult answer{0, {}};
        // Like the menu's command, so that a list of thousands isn't erased from its front.
        for (auto session = sessions.rbegin(); session != sessions.rend(); ++session) {
            if (!isOpen(*session))
                continue;
            const TextCommandResult result =
                closeSession(*session, CommandContext::activeContext(), parameters);
            if (answer.first == 0)
                answer = result;
        }
        return answer;
    }
};

class TextCmdDocumentPath : public DirectTextCommand<kPath>
{
public:
    TextCommandResult execute(const TextCommandParameters&) override
    {
        const Vs::Document* document = activeDocument();
        if (!document)
            return {0, {}};
        const std::wstring best = document->bestPath();
        return {0, document->path().empty() ? best : Vs::Strings::quote(best)};
    }
};

class TextCmdDocumentActivate : public DirectTextCommand<kActivate>
{
public:
    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        if (parameters.parameters() == 0)
            return {1, L"No path or filename specific as parameter"};
        Vs::Document* document = openDocument(parameters[0]);
        if (!document)
            return {1, L"No document matches the specified path or filename"};
        if (!SessionMgr::get()->documentSession(document) || !showDocument(document, AllSessions::No))
            return {1, L"There is no UI associated with the document"};
        return {0, {}};
    }
};

class TextCmdDocumentSoftwareVersion : public DirectTextCommand<kVersion>
{
public:
    TextCommandResult execute(const TextCommandParameters&) override
    {
        const Vs::Document* document = activeDocument();
        if (!document)
            return {1, kNoActiveDocument};
        const unsigned saved = document->lastSavedSoftwareVersion();
        const std::string version = saved != 0 ? Vs::SoftwareVersion::versionString(saved)
                                               : Vs::SoftwareVersion::currentSoftwareVersion();
        boost::wformat number(L", version number: %1%");
        number % Vs::SoftwareVersion::versionInfo(version);
        return {0, Vs::Strings::widen(version) + number.str()};
    }
};

class TextCmdDocumentExampleDoc : public DirectTextCommand<kExample>
{
public:
    TextCommandResult execute(const TextCommandParameters&) override
    {
        const Vs::AssetType* type = firstOfAddIns();
        if (!type)
            return {1, L"Invalid asset type error"};
        const TextCommandParameters atOnce;
        TextCommandResult made = create(type->identifier(), atOnce);
        if (made.first != 0)
            return made;
        DocumentSession* session = lastSession();
        if (!session)
            return {1, L"Get document session via document error."};
        return closeSession(session, CommandContext::activeContext(), atOnce);
    }

private:
    static const Vs::AssetType* firstOfAddIns()
    {
        const Vs::AssetTypeMgr* types = Vs::AssetTypeMgr::get();
        for (unsigned i = 0; i < types->assetTypes(); ++i)
            if (!types->assetType(i)->isBuiltIn())
                return types->assetType(i);
        return nullptr;
    }
};

class TextCmdDocumentRename : public DirectTextCommand<kRename>
{
public:
    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        if (parameters.parameters() == 0)
            return {1, L"No name specific as parameter"};
        Vs::Document* document = activeDocument();
        if (!document)
            return {1, kNoActiveDocument};
        document->displayName(parameters[0]);
        return {0, {}};
    }
};

class TextCmdDocumentUpdateRootComponentName : public DirectTextCommand<kRootName>
{
public:
    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        const Vs::Document* document = activeDocument();
        Vs::Asset* asset = document ? document->activeAsset() : nullptr;
        if (!asset)
            return {1, kNoActiveDocument};
        const std::wstring name =
            parameters.parameters() > 0 ? fs::path(parameters[0]).stem().wstring() : document->displayName();
        if (!name.empty() && isUnnamed(*asset))
            asset->name(name);
        return {0, {}};
    }

private:
    // Until somebody names it, the root is named after what it is.
    static bool isUnnamed(const Vs::Asset& asset)
    {
        return asset.name().empty() || (asset.assetType() && asset.name() == asset.assetType()->name());
    }
};

TextCmdDocumentOpen theOpen;
TextCmdDocumentCreate theCreate;
TextCmdDocumentClose theClose;
TextCmdDocumentCloseAll theCloseAll;
TextCmdDocumentPath thePath;
TextCmdDocumentActivate theActivate;
TextCmdDocumentSoftwareVersion theSoftwareVersion;
TextCmdDocumentExampleDoc theExampleDoc;
TextCmdDocumentRename theRename;
TextCmdDocumentUpdateRootComponentName theUpdateRootComponentName;

} // namespace
} // namespace Vu::Commands
