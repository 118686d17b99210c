#include "Server/Base/PathInfo.h"
#include "Server/Base/SoftwareVersion.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandMgr.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "UI/Base/DocumentSession.h"
#include "UI/Base/SessionMgr.h"
#include "UI/Base/UIBaseOptionGroup.h"
#include "UI/Commands/Documents/CloseDocumentCmd.h"
#include "UI/Commands/Documents/ShowDocument.h"
#include "UI/Commands/Text/DirectTextCommand.h"

#include <boost/filesystem/operations.hpp>
#include <boost/format.hpp>

namespace Vu::Commands {
namespace {

using Vs::TextCommandParameters;
using Vs::TextCommandResult;
namespace fs = boost::filesystem;

constexpr const wchar_t* kNoActiveDocument = L"There is no active document";

// clang-format off
constexpr const wchar_t* kArea = L"Document";
constexpr DirectTextRow kOpen    = {kArea, L"Open", L"<filename> Opens a document and activates a view on its active asset"};
constexpr DirectTextRow kClose   = {kArea, L"Close", L"/CloseLast [<document-path>] Closes the active/specified document"};
constexpr DirectTextRow kCloseAll= {kArea, L"CloseAll", L"Close current all opened documents in program"};
constexpr DirectTextRow kPath    = {kArea, L"Path", L"Gets the document path for the active document"};
constexpr DirectTextRow kActivate= {kArea, L"Activate", L"<path> Activates the document with the passed path or filename"};
constexpr DirectTextRow kVersion = {kArea, L"SoftwareVersion", L"Get the last saved software version."};
constexpr DirectTextRow kRename  = {kArea, L"Rename", L"<NewDocName> Changes the document's display name", "", false};
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
    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        if (parameters.parameters() == 0)
            return {1, L"No filename specific as parameter"};
        fs::path path(parameters[0]);
        UIBaseOptionGroup* options = UIBaseOptionGroup::get();
        if (!isFile(path)) {
            const fs::path other = fs::path(options->lastDirectory()) / path;
            if (!isFile(other))
                return {1, L"Filename not found"};
            path = other;
        }
        options->lastDirectory(fs::absolute(path).parent_path().wstring());
        CommandContext context = CommandContext::emptyContext();
        context.addArgument(CommandContext::pathArgumentName(), path.wstring());
        return runDefinition(L"VeloraOpenDocumentCommand", context, parameters);
    }
};

TextCommandResult closeSession(DocumentSession* session, CommandContext context,
                               const TextCommandParameters& parameters)
{
    context.addArgument(CloseDocumentCmdDef::documentSessionArgumentName(), session);
    return runDefinition(CloseDocumentCmdDef::info()->key(), context, parameters);
}

class TextCmdDocumentClose : public DirectTextCommand<kClose>
{
public:
    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        Vs::DocumentMgr* documents = Vs::DocumentMgr::get();
        DocumentSession* session = SessionMgr::get()->activeDocumentSession();
        if (parameters.hasFlag(L"CloseLast")) {
            session =
                documents->documents() > 0
                    ? SessionMgr::get()->documentSession(documents->document(documents->documents() - 1))
                    : nullptr;
        } else if (parameters.parameters() > 0) {
            Vs::Document* document = documents->document(parameters[0]);
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
        for (DocumentSession* session : sessions) {
            const TextCommandResult result =
                closeSession(session, CommandContext::activeContext(), parameters);
            if (result.first != 0)
                return result;
        }
        return {0, {}};
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
        Vs::Document* document = Vs::DocumentMgr::get()->document(parameters[0]);
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

TextCmdDocumentOpen theOpen;
TextCmdDocumentClose theClose;
TextCmdDocumentCloseAll theCloseAll;
TextCmdDocumentPath thePath;
TextCmdDocumentActivate theActivate;
TextCmdDocumentSoftwareVersion theSoftwareVersion;
TextCmdDocumentRename theRename;

} // namespace
} // namespace Vu::Commands
