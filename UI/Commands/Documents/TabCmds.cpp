#include "UI/Commands/Documents/TabCmds.h"

#include "Server/DataModel/AssetType.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/ByHand.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/Workspace/Workspace.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Commands/Documents/CloseDocumentCmd.h"
#include "UI/Commands/Documents/OpenDocumentsCmds.h"
#include "UI/Commands/Documents/ShowDocument.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Resources.h"
#include "UI/Commands/Shells/AssetShell.h"
#include "UI/Commands/Shells/FindShell.h"
#include "UI/Commands/TranscribedUuid.h"

#include <algorithm>
#include <set>

namespace Vu::Commands {

// clang-format off
constinit const CommandRow NewTabCmdDef::kRow = {
    .key = L"NewTabCommand", .title = "New Tab", .icon = &Resources::New, .hotkey = "ctrl+t",
    .groups = {&CommandGroup::DocumentGroup, &CommandGroup::BaseGroup}, .readonly = true, .arguments = {L"Uuid"}};

constinit const CommandRow PreviousOpenDocumentCmdDef::kRow = {
    .key = L"PreviousOpenDocumentCommand", .title = "Previous Document", .icon = &Resources::Open,
    .groups = {&CommandGroup::DocumentGroup, &CommandGroup::BaseGroup}, .readonly = true};
// clang-format on

namespace {

/// The tab that shows when that of the document goes: the next one, or the one in front of the last; null if
/// there is no other.
Vs::Document* neighbourOf(const Vs::Document* document)
{
    const std::vector<Vs::Document*> documents = documentsWithTabs();
    const auto own = std::ranges::find(documents, document);
    if (own == documents.end() || documents.size() < 2)
        return nullptr;
    return std::next(own) == documents.end() ? *std::prev(own) : *std::next(own);
}

/// The document may be gone since its close was requested.
bool isOpen(const Vs::Document* document)
{
    const std::vector<Vs::Document*> open = SessionMgr::get()->openDocuments();
    return std::ranges::find(open, document) != open.end();
}

void close(Vs::Document* document)
{
    if (!isOpen(document))
        return;
    DocumentSession* session = SessionMgr::get()->documentSession(document);
    const bool shows = SessionMgr::get()->currentDocumentSession() == session;
    Vs::Document* neighbour = neighbourOf(document);
    CommandContext context = CommandContext::activeContext();
    context.addArgument(CloseDocumentCmdDef::documentSessionArgumentName(), session);
    if (neighbour)
        context.addArgument(CloseDocumentCmdDef::documentCloseSilentlyName(), 1);
    static_cast<void>(CommandMgr::get()->executeCommand(CloseDocumentCmdDef::info()->key(), context));
    if (shows && neighbour && !isOpen(document))
        switchTo(neighbour);
}

/// A close by hand leaves to the home screen only with the last document.
const ByHand kClose(L"CloseDocumentCommand", [](const CommandContext& context) {
    const DocumentSession* session = documentSessionOf(context);
    if (!session || !neighbourOf(session->document()))
        return false;
    closeTab(session->document());
    return true;
});

} // namespace

std::vector<Vs::Document*> documentsWithTabs()
{
    const Workspace* workspace = WorkspaceMgr::activeWorkspace();
    const AssetShell* shell = workspace ? findShell<AssetShell>(workspace->shellManager()) : nullptr;
    std::set<const Vs::Document*> listed;
    if (shell)
        for (const AssetSession* session : shell->assetSessions())
            listed.insert(session->documentSession()->document());
    std::vector<Vs::Document*> documents = SessionMgr::get()->openDocuments();
    std::erase_if(documents, [&](const Vs::Document* document) { return !listed.contains(document); });
    return documents;
}

void closeTab(Vs::Document* document)
{
    Application::get()->deferredTasks()->post([document] { close(document); });
}

const Vs::UniqueString* NewTabCmdDef::uuidArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Uuid", true);
    return name;
}

void NewTabCmdDef::createCommandDef()
{
    static NewTabCmdDef definition;
}

bool NewTabCmdDef::onIsApplicable(CommandContext*) const
{
    return !UIBaseOptionGroup::get()->offlineWorkflowsDisabled();
}

NewTabCmd::NewTabCmd(NewTabCmdDef* definition, CommandContext* context) : Implements(definition, context)
{
    repeatable(false);
}

void NewTabCmd::onExecute(Vs::Status& status)
{
    if (Vs::AssetTypeMgr::get()->assetTypes() == 0) {
        status.addError(localized("NewTabNoKind", "No type of document can be created here."));
        return;
    }
    restoreWindow();
    Vs::Document* document = Vs::DocumentMgr::get()->create(Vs::AssetTypeMgr::get()->assetType(0u), status);
    if (!document)
        return;
    transcribeUuid(*commandContext(), NewTabCmdDef::uuidArgumentName(), document->identifier());
    showDocument(document, AllSessions::No);
}

void PreviousOpenDocumentCmdDef::createCommandDef()
{
    static PreviousOpenDocumentCmdDef definition;
}

PreviousOpenDocumentCmd::PreviousOpenDocumentCmd(PreviousOpenDocumentCmdDef* definition,
                                                 CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

void PreviousOpenDocumentCmd::onExecute(Vs::Status&)
{
    restoreWindow();
    const DocumentSession* session = SessionMgr::get()->currentDocumentSession();
    const std::vector<Vs::Document*> documents = SessionMgr::get()->openDocuments();
    const auto current = session ? std::ranges::find(documents, session->document()) : documents.end();
    if (current != documents.end())
        switchTo(current == documents.begin() ? documents.back() : *std::prev(current));
}

} // namespace Vu::Commands
