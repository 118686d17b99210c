#include "UI/Commands/Documents/CloseDocumentCmd.h"

#include "Server/DataModel/Asset.h"
#include "Server/DataModel/AutoSaveDisabler.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/IDocMgmtHandler.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/Workspace/Workspace.h"
#include "UI/Commands/Documents/DocumentSets.h"
#include "UI/Commands/Resources.h"
#include "UI/Commands/Shells/AssetShell.h"
#include "UI/Commands/Shells/FindShell.h"

namespace Vu::Commands {

// clang-format off
constinit const CommandRow CloseDocumentCmdDef::kRow = {
    .key = L"CloseDocumentCommand", .title = "Close", .icon = &Resources::Close, .hotkey = "ctrl+w",
    .groups = {&CommandGroup::DocumentGroup, &CommandGroup::BaseGroup}, .readonly = true, .arguments = {L"DocumentSession", L"DocumentCloseSilently"}};

constinit const CommandRow CloseAllDocumentsCmdDef::kRow = {
    .key = L"CloseAllDocumentsCommand", .title = "Close All", .icon = &Resources::CloseAll,
    .groups = {&CommandGroup::DocumentGroup, &CommandGroup::BaseGroup}, .readonly = true, .arguments = {L"DocumentSession", L"DocumentCloseSilently"}};

constinit const CommandRow CloseWndCmdDef::kRow = {
    .key = L"CloseWndCommand", .title = "Close Document",
    .groups = {&CommandGroup::DocumentGroup, &CommandGroup::BaseGroup}, .readonly = true, .arguments = {L"DocumentSession"}};
// clang-format on

namespace {

/// Takes the sessions of `assets` out of the shell until the document is gone. Returns whether it is: a
/// document without a path is never seen as gone.
class DocumentRemoval
{
public:
    DocumentRemoval(Vs::Document* document, AssetShell* shell, bool prompt)
        : m_path(document->path()), m_shell(shell), m_prompt(prompt)
    {
    }

    bool remove(Vs::Asset* asset)
    {
        AssetSession* session = SessionMgr::get()->assetSession(asset);
        if (session && m_shell->has(session)) {
            m_shell->remove(session, m_prompt);
            return gone();
        }
        return false;
    }

    bool gone() const { return !m_path.empty() && !Vs::DocumentMgr::get()->document(m_path); }

private:
    std::wstring m_path;
    AssetShell* m_shell;
    bool m_prompt;
};

/// Returns true if the document was seen to be gone after its visible or hidden assets were removed.
bool removeSessions(Vs::Document* document, AssetShell* shell, bool prompt)
{
    DocumentRemoval removal(document, shell, prompt);
    const unsigned assets = document->assets();
    for (unsigned i = 0; i < assets; ++i)
        if (removal.remove(document->asset(i)))
            break;
    if (removal.gone())
        return true;
    const unsigned hidden = document->hiddenAssets();
    for (unsigned i = 0; i < hidden; ++i)
        if (removal.remove(document->hiddenAsset(i)))
            break;
    if (removal.gone())
        return true;
    if (hidden == 0)
        return false;
    std::vector<Vs::Asset*> unreferenced;
    Vs::DocumentMgr::get()->getUnreferencedAssets(unreferenced);
    for (Vs::Asset* asset : unreferenced)
        if (asset->document() == document && removal.remove(asset))
            break;
    return false;
}

AssetShell* assetShellOf(CommandContext* context)
{
    Workspace* workspace = context->workspace();
    return workspace ? findShell<AssetShell>(workspace->shellManager()) : nullptr;
}

} // namespace

const Vs::UniqueString* CloseDocumentCmdDef::documentSessionArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("DocumentSession", true);
    return name;
}

const Vs::UniqueString* CloseDocumentCmdDef::documentCloseSilentlyName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("DocumentCloseSilently", true);
    return name;
}

Vs::Document* CloseDocumentCmdDef::docToClose(CommandContext* context)
{
    DocumentSession* session = documentSessionOf(*context);
    return session ? session->document() : nullptr;
}

DocumentSession* documentSessionOf(const CommandContext& context)
{
    if (auto* given =
            Vs::cast<DocumentSession>(context.argument(CloseDocumentCmdDef::documentSessionArgumentName())))
        return given;
    const AssetSession* session = context.assetSession();
    return session ? session->documentSession() : nullptr;
}

bool CloseDocumentCmdDef::onIsApplicable(CommandContext* context) const
{
    return hasAssetSession(context);
}

CommandBase* CloseDocumentCmdDef::onCreateCommand(CommandContext* context)
{
    if (Vs::Document* document = docToClose(context))
        if (!closingAgreed({document}))
            return nullptr;
    return new CloseDocumentCmd(this, context);
}

CloseDocumentCmd::CloseDocumentCmd(CloseDocumentCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

ECommandType CloseDocumentCmd::onCommandType() const
{
    return ECommandType::Exclusive;
}

EStackingBehavior CloseDocumentCmd::onStackingBehavior() const
{
    return EStackingBehavior::OverNothing;
}

void CloseDocumentCmd::onExecute(Vs::Status&)
{
    closeDocument(commandContext());
}

bool CloseDocumentCmd::closeDocument(CommandContext* context)
{
    AssetShell* shell = assetShellOf(context);
    Vs::Document* document = CloseDocumentCmdDef::docToClose(context);
    int silently = -1;
    const bool silent = context->argument(CloseDocumentCmdDef::documentCloseSilentlyName(),
                                          CommandContext::EArgType::Int, &silently) &&
                        silently == 1;
    if (shell && document)
        removeSessions(document, shell, !silent);
    return true;
}

void closeSilently(DocumentSession* session)
{
    CommandContext context = CommandContext::activeContext();
    context.addArgument(CloseDocumentCmdDef::documentCloseSilentlyName(), 1);
    context.addArgument(CloseDocumentCmdDef::documentSessionArgumentName(), session);
    CloseDocumentCmd::closeDocument(&context);
}

const Vs::UniqueString* CloseAllDocumentsCmdDef::documentSessionArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("DocumentSession", true);
    return name;
}

bool WindowControllerCmdDef::onIsApplicable(CommandContext* context) const
{
    return hasAssetSession(context);
}

CommandBase* WindowControllerCmdDef::onCreateCommand(CommandContext* context)
{
    if (Vs::Document* document = CloseDocumentCmdDef::docToClose(context))
        if (!closingAgreed({document}))
            return nullptr;
    return onCreateController(context);
}

WindowControllerCmd::WindowControllerCmd(WindowControllerCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

ECommandType WindowControllerCmd::onCommandType() const
{
    return ECommandType::Exclusive;
}

EStackingBehavior WindowControllerCmd::onStackingBehavior() const
{
    return EStackingBehavior::OverNothing;
}

CommandBase* CloseWndCmdDef::onCreateController(CommandContext* context)
{
    return new CloseWndCmd(this, context);
}

void CloseWndCmd::onExecute(Vs::Status&)
{
    CloseDocumentCmd::closeDocument(commandContext());
}

bool CloseAllDocumentsCmdDef::onIsApplicable(CommandContext* context) const
{
    return hasAssetSession(context);
}

CommandBase* CloseAllDocumentsCmdDef::onCreateCommand(CommandContext* context)
{
    if (!closingAgreed(allDocuments()))
        return nullptr;
    return new CloseAllDocumentsCmd(this, context);
}

CloseAllDocumentsCmd::CloseAllDocumentsCmd(CloseAllDocumentsCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

ECommandType CloseAllDocumentsCmd::onCommandType() const
{
    return ECommandType::Exclusive;
}

EStackingBehavior CloseAllDocumentsCmd::onStackingBehavior() const
{
    return EStackingBehavior::OverNothing;
}

void CloseAllDocumentsCmd::onExecute(Vs::Status&)
{
    CloseAllDocuments(commandContext());
}

bool CloseAllDocumentsCmd::CloseAllDocuments(CommandContext* context)
{
    const Vs::AutoSaveDisabler noAutoSave(nullptr);
    AssetShell* shell = assetShellOf(context);
    SessionMgr* sessions = SessionMgr::get();
    std::vector<DocumentSession*> open;
    for (Vs::Document* document : sessions->openDocuments())
        open.push_back(sessions->documentSession(document));
    for (auto session = open.rbegin(); session != open.rend(); ++session) {
        if (!shell || !sessions->isOpen(*session))
            continue;
        // Ending the whole operation with the first document that is seen to be gone is settled behaviour:
        // the close of a document is deferred, so that it isn't seen while this runs.
        if (removeSessions((*session)->document(), shell, true))
            return true;
    }
    return true;
}

} // namespace Vu::Commands
