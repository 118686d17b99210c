#include "UI/Commands/Documents/OpenDocumentsCmds.h"

#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentType.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Commands/Documents/ShowDocument.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Resources.h"
#include "UI/Commands/Shells/ShellCmds.h"

#include <algorithm>

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
    for (Vs::Document* document : SessionMgr::get()->openDocuments())
        if (document->path().empty() && document->displayName() == key)
            return document;
    return nullptr;
}

} // namespace

void switchTo(Vs::Document* document)
{
    CommandContext context = CommandContext::activeContext();
    CommandDefinition* definition = assetShellDefinition();
    if (definition && addSession(document, context))
        definition->executeLater(context);
}

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
    m_subscriptions.add(SessionEventSource::get(), this);
    m_subscriptions.add(Vs::DocumentEventSource::get(), this);
    m_subscriptions.add(DocumentOrder::get(), this);
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
    const std::vector<Vs::Document*> documents = SessionMgr::get()->openDocuments();
    if (!m_filter)
        return documents.empty() ? nullptr : documents.front();
    const auto last =
        std::find_if(documents.rbegin(), documents.rend(), [&](const auto* each) { return passes(*each); });
    return last == documents.rend() ? nullptr : *last;
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
    const std::vector<Vs::Document*> documents = SessionMgr::get()->openDocuments();
    if (documents.empty())
        items.push_back(std::make_unique<Info>(kEmptyItem, localized("emptyCurrentItems", "Empty"), nullptr));
    const DocumentSession* session = SessionMgr::get()->currentDocumentSession();
    const Vs::Document* current = session ? session->document() : nullptr;
    for (const Vs::Document* document : documents) {
        if (!passes(*document))
            continue;
        auto item =
            std::make_unique<Info>(keyOf(*document), titleOf(*document), Resources::DeselectedListItem());
        if (current && document->path() == current->path() &&
            (!document->path().empty() || document->displayName() == current->displayName()))
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
    const std::vector<Vs::Document*> documents = SessionMgr::get()->openDocuments();
    const auto current =
        session ? std::find(documents.begin(), documents.end(), session->document()) : documents.end();
    if (current != documents.end())
        switchTo(std::next(current) == documents.end() ? documents.front() : *std::next(current));
}

} // namespace Vu::Commands
