#include "UI/Commands/Documents/OpenDocumentsCmds.h"

#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/DocumentType.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Commands/Documents/ShowDocument.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Resources.h"
#include "UI/Commands/Shells/ShellCmds.h"

namespace Vu::Commands {

// clang-format off
constinit const CommandRow CurrentlyOpenDocumentsCmdDef::kRow = {
    .key = L"CurrentlyOpenDocumentsCommand", .title = "Currently Open Documents", .icon = &Resources::Open,
    .groups = {&CommandGroup::DocumentGroup, &CommandGroup::BaseGroup}, .readonly = true};

constinit const CommandRow CycleOpenDocumentsCmdDef::kRow = {
    .key = L"CycleOpenDocumentsCommand", .title = "Cycle Open Documents", .icon = &Resources::Open,
    .groups = {&CommandGroup::DocumentGroup, &CommandGroup::BaseGroup}, .readonly = true};
// clang-format on

namespace {

constexpr int kListAccessPoint = 11;
constexpr const wchar_t* kEmptyItem = L"emptyCurrentItems";

CommandDefinition* assetShellDefinition()
{
    return CommandDefinitionMgr::get()->findCommandDefinitionById(AssetShellCmdDef::info()->key());
}

/// Adds what shows the document to the context. False if it has nothing to show.
bool addSession(Vs::Document* document, CommandContext& context)
{
    Vs::Asset* active = document ? document->activeAsset() : nullptr;
    AssetSession* session = active ? SessionMgr::get()->assetSession(active) : nullptr;
    if (!session)
        return false;
    context.addArgument(AssetShellCmdDef::assetSessionArgumentName(), session);
    context.accessPoint(kListAccessPoint);
    return true;
}

/// Shows the document once the current event is over.
void switchTo(Vs::Document* document)
{
    CommandContext context = CommandContext::activeContext();
    CommandDefinition* definition = assetShellDefinition();
    if (definition && addSession(document, context))
        definition->executeLater(context);
}

std::wstring keyOf(const Vs::Document& document)
{
    return document.path().empty() ? document.displayName() : document.path();
}

std::wstring titleOf(const Vs::Document& document)
{
    if (!document.displayName().empty() || !document.activeAsset())
        return document.displayName();
    return document.activeAsset()->assetTypeName();
}

/// The document of a key: by the session that it names, else the first unsaved one of that name, since names
/// of unsaved documents may repeat.
Vs::Document* documentOf(const std::wstring& key)
{
    if (const DocumentSession* session = SessionMgr::get()->documentSession(key))
        return session->document();
    const Vs::DocumentMgr* documents = Vs::DocumentMgr::get();
    for (unsigned i = 0; i < documents->documents(); ++i) {
        Vs::Document* document = documents->document(i);
        if (document->path().empty() && document->displayName() == key)
            return document;
    }
    return nullptr;
}

} // namespace

Info* CurrentlyOpenDocumentsCmdDef::info()
{
    static Info record = makeInfo(kRow);
    return &record;
}

CurrentlyOpenDocumentsCmdDef::CurrentlyOpenDocumentsCmdDef(Info* info) : Implements(info)
{
    joinCommandGroup(CommandGroup::DocumentGroup());
    joinCommandGroup(CommandGroup::BaseGroup());
    readonly(true);
    SessionEventSource::get()->subscribe(this);
    Vs::DocumentEventSource::get()->subscribe(this);
}

CurrentlyOpenDocumentsCmdDef::~CurrentlyOpenDocumentsCmdDef()
{
    Vs::DocumentEventSource::get()->unsubscribe(this);
    SessionEventSource::get()->unsubscribe(this);
}

bool CurrentlyOpenDocumentsCmdDef::onIsApplicable(CommandContext*) const
{
    return true;
}

bool CurrentlyOpenDocumentsCmdDef::onIsVisible(CommandContext*) const
{
    return true;
}

CommandBase* CurrentlyOpenDocumentsCmdDef::onCreateCommand(CommandContext* context)
{
    return new CurrentlyOpenDocumentsCmd(this, context);
}

InputControl* CurrentlyOpenDocumentsCmdDef::onInputControl()
{
    if (!m_list.control()) {
        m_list.make(CommandDefinition::info(), this);
        updateListControl();
    }
    return m_list.control();
}

bool CurrentlyOpenDocumentsCmdDef::passes(const Vs::Document& document) const
{
    return !m_filter || document.documentType()->identifier() == *m_filter;
}

bool CurrentlyOpenDocumentsCmdDef::hasOpenDocuments() const
{
    return currentDocumentFiltered() != nullptr;
}

bool CurrentlyOpenDocumentsCmdDef::isDocumentOfCurrentType() const
{
    const DocumentSession* session = SessionMgr::get()->currentDocumentSession();
    return session && passes(*session->document());
}

Vs::Document* CurrentlyOpenDocumentsCmdDef::currentDocumentFiltered() const
{
    const Vs::DocumentMgr* documents = Vs::DocumentMgr::get();
    if (!m_filter)
        return documents->documents() > 0 ? documents->document(0) : nullptr;
    for (unsigned i = documents->documents(); i-- > 0;)
        if (passes(*documents->document(i)))
            return documents->document(i);
    return nullptr;
}

CommandBase* CurrentlyOpenDocumentsCmdDef::createCommandForSwitchingDocument(Vs::Document* document,
                                                                             CommandContext* context)
{
    CommandDefinition* definition = assetShellDefinition();
    return definition && addSession(document, *context) ? definition->createCommand(context) : nullptr;
}

void CurrentlyOpenDocumentsCmdDef::updateListControl()
{
    if (!m_list.control())
        return;
    OwnedList::Items items;
    const Vs::DocumentMgr* documents = Vs::DocumentMgr::get();
    if (documents->documents() == 0)
        items.push_back(std::make_unique<Info>(kEmptyItem, localized("emptyCurrentItems", "Empty"), nullptr));
    const DocumentSession* session = SessionMgr::get()->currentDocumentSession();
    const Vs::Document* current = session ? session->document() : nullptr;
    for (unsigned i = 0; i < documents->documents(); ++i) {
        const Vs::Document& document = *documents->document(i);
        if (!passes(document))
            continue;
        auto item =
            std::make_unique<Info>(keyOf(document), titleOf(document), Resources::DeselectedListItem());
        if (current && document.path() == current->path() &&
            (!document.path().empty() || document.displayName() == current->displayName()))
            item->changeAppearance(item->name(), Resources::SelectedListItem());
        items.push_back(std::move(item));
    }
    m_list.items(std::move(items));
}

void CurrentlyOpenDocumentsCmdDef::documentClosed(Vs::DocumentEvent* event)
{
    // Before, the document is still among the open ones.
    if (event->timing() == Vs::Timing::After)
        updateListControl();
}

void CurrentlyOpenDocumentsCmdDef::onListSelectionChanged(Info* item)
{
    if (item)
        switchTo(documentOf(item->key()));
}

CurrentlyOpenDocumentsCmd::CurrentlyOpenDocumentsCmd(CurrentlyOpenDocumentsCmdDef* definition,
                                                     CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

void CurrentlyOpenDocumentsCmd::onExecute(Vs::Status&)
{
    if (auto* definition = Vs::cast<CurrentlyOpenDocumentsCmdDef>(commandDefinition()))
        definition->updateListControl();
}

bool CycleOpenDocumentsCmdDef::onIsApplicable(CommandContext*) const
{
    return true;
}

CycleOpenDocumentsCmd::CycleOpenDocumentsCmd(CycleOpenDocumentsCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

void CycleOpenDocumentsCmd::onExecute(Vs::Status&)
{
    restoreWindow();
    const DocumentSession* session = SessionMgr::get()->currentDocumentSession();
    const Vs::DocumentMgr* documents = Vs::DocumentMgr::get();
    const unsigned count = documents->documents();
    for (unsigned i = count; i-- > 0;)
        if (session && documents->document(i) == session->document())
            switchTo(documents->document((i + 1) % count));
}

} // namespace Vu::Commands
