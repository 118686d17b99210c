#include "UI/Commands/Documents/RecentDocumentsCmd.h"

#include "Server/Base/PathInfo.h"
#include "Server/DataModel/Document.h"
#include "Server/Skyvault/MeshportAuth.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/MessageBox.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Session/ReplacingDocument.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Commands/Documents/OpenDocumentCmd.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Resources.h"

#include <boost/filesystem/path.hpp>

namespace Vu::Commands {

// clang-format off
constinit const CommandRow RecentDocumentsCmdDef::kRow = {
    .key = L"RecentDocumentsCommand", .title = "Recent Documents", .icon = &Resources::Open,
    .groups = {&CommandGroup::DocumentGroup, &CommandGroup::BaseGroup}, .readonly = true};
// clang-format on

namespace {

constexpr int kShownDocuments = 6;
constexpr int kListAccessPoint = 11;
constexpr const wchar_t* kEmptyItem = L"emptyRecentItems";
constexpr const wchar_t* kClearItem = L"clearRecentItems";
constexpr const wchar_t* kCloudOpenCommand = L"CloudOpenDocumentCommand";

std::wstring clearTitle()
{
    return localized("clearRecentItems", "Clear Recent");
}

bool hasAnySession(const Vs::Document& document)
{
    for (unsigned i = 0; i < document.assets(); ++i)
        if (SessionMgr::get()->getOpenAssetSession(document.asset(i)))
            return true;
    return false;
}

} // namespace

RecentDocumentsCmdDef::RecentDocumentsCmdDef()
{
    m_subscriptions.add(Vs::DocumentEventSource::get(), this);
    m_subscriptions.add(RecentDocumentMgr::get(), this);
}

bool RecentDocumentsCmdDef::onIsApplicable(CommandContext*) const
{
    return true;
}

InputControl* RecentDocumentsCmdDef::onInputControl()
{
    if (!m_list.control()) {
        m_list.make(info(), this);
        refresh();
    }
    return m_list.control();
}

void RecentDocumentsCmdDef::refresh()
{
    std::vector<RecentDocument*> documents;
    if (m_list.control())
        RecentDocumentMgr::get()->recentDocuments(documents, kShownDocuments);
    updateListControl(documents);
}

void RecentDocumentsCmdDef::updateListControl(const std::vector<RecentDocument*>& documents)
{
    if (!m_list.control())
        return;
    OwnedList::Items items;
    if (documents.empty()) {
        items.push_back(std::make_unique<Info>(kEmptyItem, localized("emptyRecentItems", "Empty"), nullptr));
    } else {
        for (auto document = documents.rbegin(); document != documents.rend(); ++document) {
            const std::wstring& path = (*document)->path();
            items.push_back(std::make_unique<Info>(
                path, boost::filesystem::path(path).filename().wstring(),
                Vs::PathInfo::isNamedInCloudCache(path) ? Resources::Cloud() : nullptr));
        }
        items.push_back(std::make_unique<Info>(ListControl::kSeparator, ListControl::kSeparator, nullptr));
        items.push_back(std::make_unique<Info>(kClearItem, clearTitle(), nullptr));
    }
    m_list.items(std::move(items));
}

void RecentDocumentsCmdDef::onListSelectionChanged(Info* item)
{
    if (!item || item->key() == kEmptyItem)
        return;
    if (item->name() == clearTitle()) {
        // The change of the list rebuilds the control.
        RecentDocumentMgr::get()->clearRecent();
        return;
    }
    if (UIBaseOptionGroup::get()->offlineWorkflowsDisabled()) {
        MessageBox::error(localized("disableOpenFromMRU", "Opening of local files not supported!!"));
        return;
    }
    const std::wstring path = item->key();
    CommandContext context = CommandContext::activeContext();
    context.addArgument(CommandContext::pathArgumentName(), path);
    context.accessPoint(kListAccessPoint);
    const bool isCloud =
        !Vs::MeshportAuth::globalInstance()->cloudDisabled() && Vs::PathInfo::isNamedInCloudCache(path);
    CommandDefinition* open = CommandDefinitionMgr::get()->findCommandDefinitionById(
        isCloud ? kCloudOpenCommand : OpenDocumentCmdDef::info()->key());
    if (open)
        ReplacingDocument::executeLater(open, context);
}

void RecentDocumentsCmdDef::documentClosed(Vs::DocumentEvent* event)
{
    if (Application::testing())
        return;
    const Vs::Document* document = event->document();
    if (document->isOnDisk() && hasAnySession(*document) && !isDocPathInListControl(document->path()))
        refresh();
}

RecentDocumentsCmd::RecentDocumentsCmd(RecentDocumentsCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

} // namespace Vu::Commands
