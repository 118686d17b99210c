// The lines Document.Save and Document.SaveAs.

#include "Server/Base/PathInfo.h"
#include "Server/Base/TranscriptMgr.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentType.h"
#include "UI/Base/Command/TextRows.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Commands/Documents/CloseDocumentCmd.h"
#include "UI/Commands/Documents/FileSetAside.h"
#include "UI/Commands/Documents/MoreSaveCmds.h"
#include "UI/Commands/Documents/SaveDocumentCmd.h"

#include <boost/filesystem/operations.hpp>

#include <memory>

namespace Vu::Commands {
namespace {

using Vs::TextCommandParameters;
using Vs::TextCommandResult;
namespace fs = boost::filesystem;

constexpr const wchar_t* kNoDocument = L"There is no active document to save";
constexpr const wchar_t* kNoName = L"You need to specify a filename as a parameter";

/// Whether the text is the name of a file, not merely that of a folder.
bool namesFile(const std::wstring& text)
{
    const std::wstring name = fs::path(text).filename().wstring();
    return !name.empty() && name != L"." && name != L"..";
}

TextCommandResult noFileIn(const std::wstring& text)
{
    return {1, L"\"" + text + L"\" is not the name of a file"};
}

// clang-format off
constexpr const wchar_t* kArea = L"Document";
constexpr DirectTextRow kSave   = {kArea, L"Save", L"[<filename>] Saves the active document"};
constexpr DirectTextRow kSaveAs = {kArea, L"SaveAs", L"[<filename>] Saves the active document as a new document"};
constexpr DirectTextRow kSaveCopy = {kArea, L"SaveCopy", L"<filename> Writes a copy of the active document, which stays as it is"};
constexpr DirectTextRow kSaveAll  = {kArea, L"SaveAll", L"Saves all documents that were changed"};
constexpr DirectTextRow kRevert   = {kArea, L"Revert", L"[<document-path>] Reads the file of the active/specified document again, also a foreign one"};
// clang-format on

/// The file that a name means: with the type's extension if it has none, and in the last folder if it names
/// none. That folder is remembered.
fs::path fileOf(const std::wstring& name, const Vs::DocumentType& type)
{
    fs::path path(name);
    if (path.extension().empty() || path.extension() == ".")
        path.replace_extension(type.extension());
    path = Vs::TranscriptMgr::get()->locate(path.wstring());
    UIBaseOptionGroup* options = UIBaseOptionGroup::get();
    boost::system::error_code error;
    if (!path.has_parent_path() && fs::is_directory(options->lastDirectory(), error))
        path = fs::path(options->lastDirectory()) / path;
    path = Vs::PathInfo::absolute(path);
    options->lastDirectory(path.parent_path().wstring());
    return path;
}

TextCommandResult runSave(const std::wstring& id, DocumentSession* session, const std::wstring& path,
                          const TextCommandParameters& parameters)
{
    CommandContext context = CommandContext::activeContext();
    context.addArgument(CloseDocumentCmdDef::documentSessionArgumentName(), session);
    context.addArgument(CommandContext::pathArgumentName(), path);
    return runDefinition(id, context, parameters);
}

/// Has a definition write the active document to the file that the first parameter names.
TextCommandResult saveElsewhere(const std::wstring& id, const TextCommandParameters& parameters)
{
    DocumentSession* session = SessionMgr::get()->activeDocumentSession();
    if (!session)
        return {1, kNoDocument};
    if (!namesFile(parameters[0]))
        return noFileIn(parameters[0]);
    const fs::path file = fileOf(parameters[0], *session->document()->documentType());
    return runSave(id, session, file.wstring(), parameters);
}

class TextCmdDocumentSave : public DirectTextCommand<kSave>
{
public:
    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        DocumentSession* session = SessionMgr::get()->activeDocumentSession();
        if (!session)
            return {1, kNoDocument};
        const Vs::Document* document = session->document();
        if (parameters.parameters() == 0)
            return document->isOnDisk() ? save(session, document->path(), parameters)
                                        : TextCommandResult{1, kNoName};
        if (!namesFile(parameters[0]))
            return noFileIn(parameters[0]);
        const fs::path file = fileOf(parameters[0], *document->documentType());
        // A document that has a file of its own is saved there, whatever the name; nothing is in its way.
        std::shared_ptr<FileSetAside> aside;
        if (!document->isOnDisk())
            aside = std::make_shared<FileSetAside>(file);
        TextCommandResult result = save(session, file.wstring(), parameters);
        // A line of the command box has only queued the save.
        if (parameters.viaUI())
            Application::get()->deferredTasks()->post([aside] {});
        return result;
    }

private:
    /// The command succeeds even if the save fails; a line that did not save must not count as successful.
    static TextCommandResult save(DocumentSession* session, const std::wstring& path,
                                  const TextCommandParameters& parameters)
    {
        if (parameters.viaUI())
            return runSave(SaveDocumentCmdDef::info()->key(), session, path, parameters);
        const SaveFailures failures;
        TextCommandResult result = runSave(SaveDocumentCmdDef::info()->key(), session, path, parameters);
        if (result.first == 0 && !failures.reason().empty())
            return {1, failures.reason()};
        return result;
    }
};

class TextCmdDocumentSaveAs : public DirectTextCommand<kSaveAs>
{
public:
    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        if (parameters.parameters() == 0)
            return {1, kNoName};
        return saveElsewhere(SaveDocumentAsCmdDef::info()->key(), parameters);
    }
};

class TextCmdDocumentSaveCopy : public DirectTextCommand<kSaveCopy>
{
public:
    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        if (parameters.parameters() != 1)
            return {1, kNoName};
        return saveElsewhere(SaveDocumentCopyCmdDef::info()->key(), parameters);
    }
};

class TextCmdDocumentSaveAll : public DirectTextCommand<kSaveAll>
{
public:
    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        if (parameters.parameters() != 0)
            return {1, std::wstring(L"Usage: Document.SaveAll. ") + kSaveAll.help};
        return runDefinition(SaveAllDocumentsCmdDef::info()->key(), CommandContext::activeContext(),
                             parameters);
    }
};

class TextCmdDocumentRevert : public DirectTextCommand<kRevert>
{
public:
    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        DocumentSession* session = parameters.parameters() > 0
                                       ? SessionMgr::get()->documentSession(parameters[0])
                                       : SessionMgr::get()->activeDocumentSession();
        if (!session)
            return {1, parameters.parameters() > 0 ? L"No document matches the specified path or filename"
                                                   : L"There is no active document"};
        CommandContext context = CommandContext::activeContext();
        context.addArgument(CloseDocumentCmdDef::documentSessionArgumentName(), session);
        return runDefinition(RevertDocumentCmdDef::info()->key(), context, parameters);
    }
};

TextCmdDocumentSave theSave;
TextCmdDocumentSaveAs theSaveAs;
TextCmdDocumentSaveCopy theSaveCopy;
TextCmdDocumentSaveAll theSaveAll;
TextCmdDocumentRevert theRevert;

} // namespace
} // namespace Vu::Commands
