#include "UI/Commands/Shells/ActiveViewAssetCmd.h"

#include "Server/DataModel/Asset.h"
#include "Server/DataModel/AssetType.h"
#include "Server/Types/Uuid.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SceneUtilities.h"
#include "UI/Base/Session/SessionTranscriptingHelper.h"
#include "UI/Base/Workspace/ToolbarManager.h"
#include "UI/Base/Workspace/Workspace.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Commands/Resources.h"
#include "UI/Commands/Shells/AssetShell.h"
#include "UI/Commands/Shells/FindShell.h"

namespace Vu::Commands {

// clang-format off
constinit const CommandRow ActiveViewAssetCmdDef::kRow = {
    .key = L"ActiveViewAssetCommand", .title = "", .icon = &Resources::ActiveAsset,
    .groups = {&CommandGroup::BaseGroup}, .arguments = {L"AssetSessionName"}};
// clang-format on

namespace {

constexpr const wchar_t* kToolbar = L"ActiveViewToolbar";

AssetShell* activeShell()
{
    Workspace* workspace = WorkspaceMgr::activeWorkspace();
    return workspace ? findShell<AssetShell>(workspace->shellManager()) : nullptr;
}

} // namespace

const Vs::UniqueString* ActiveViewAssetCmdDef::assetSessionNameArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("AssetSessionName", true);
    return name;
}

void ActiveViewAssetCmdDef::createCommandDef()
{
    static ActiveViewAssetCmdDef definition;
}

ActiveViewAssetCmdDef::ActiveViewAssetCmdDef()
{
    m_subscriptions.add(SplitViewEventSource::get(), this);
    m_subscriptions.add(SessionEventSource::get(), this);
}

bool ActiveViewAssetCmdDef::onIsApplicable(CommandContext*) const
{
    return SceneUtilities::getActiveGraphicsCanvas() != nullptr;
}

InputControl* ActiveViewAssetCmdDef::onInputControl()
{
    ++m_making;
    if (m_making == 1 && !m_list.control()) {
        m_list.make(info(), this);
        addToolbarItem();
        refresh();
    }
    --m_making;
    return m_list.control();
}

void ActiveViewAssetCmdDef::addToolbarItem()
{
    constexpr size_t kInFront = 0;
    Toolbar* toolbar = ToolbarManager::get()->toolbarById(kToolbar);
    if (!toolbar)
        return;
    if (!toolbar->findItem(m_list.control()))
        toolbar->addItem(m_list.control(), kInFront);
    m_list.control()->synchronizedWithCurrentItem(true);
    ToolbarManager::get()->updateToolbars();
    selectCurrent();
}

bool ActiveViewAssetCmdDef::onValidateAssetType(Vs::AssetType*) const
{
    return true;
}

std::wstring ActiveViewAssetCmdDef::onAssetName(const AssetSession* session) const
{
    return session->asset()->name();
}

bool ActiveViewAssetCmdDef::isSelectedListItem(const AssetSession* session)
{
    const AssetShell* shell = activeShell();
    return shell && shell->currentAssetSession() == session;
}

void ActiveViewAssetCmdDef::refresh(const AssetSession* leaving)
{
    if (!m_list.control())
        return;
    OwnedList::Items items;
    if (const AssetShell* shell = activeShell())
        for (const AssetSession* session : shell->assetSessions()) {
            const Vs::Asset* asset = session->asset();
            if (session != leaving && onValidateAssetType(asset->assetType()))
                items.push_back(
                    std::make_unique<Info>(Vs::fromUuid(asset->guid()), onAssetName(session),
                                           asset->assetType() ? asset->assetType()->icon() : nullptr));
        }
    m_list.items(std::move(items));
    selectCurrent();
}

void ActiveViewAssetCmdDef::selectCurrent()
{
    const AssetShell* shell = activeShell();
    const std::vector<AssetSession*> sessions = shell ? shell->assetSessions() : std::vector<AssetSession*>();
    const auto current = std::ranges::find_if(
        sessions, [&](const AssetSession* session) { return isSelectedListItem(session); });
    Info* selected = nullptr;
    for (const auto& item : m_list.items())
        if (current != sessions.end() && item->key() == Vs::fromUuid((*current)->asset()->guid()))
            selected = item.get();
    m_list.control()->selectedItem(selected, false);
}

void ActiveViewAssetCmdDef::sessionClosed(SessionEvent* event)
{
    refresh(event->assetSession());
}

void ActiveViewAssetCmdDef::onListSelectionChanged(Info* item)
{
    if (!item)
        return;
    CommandContext context = CommandContext::activeContext();
    context.addArgument(assetSessionNameArgumentName(), item->key());
    executeLater(context);
}

ActiveViewAssetCmd::ActiveViewAssetCmd(ActiveViewAssetCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

ECommandType ActiveViewAssetCmd::onCommandType() const
{
    return ECommandType::Nested;
}

void ActiveViewAssetCmd::onExecute(Vs::Status&)
{
    AssetShell* shell = activeShell();
    if (!shell)
        return;
    const boost::uuids::uuid wanted = SessionTranscriptingHelper::get()->actual(Vs::fromString(
        commandContext()->argumentAsString(ActiveViewAssetCmdDef::assetSessionNameArgumentName())));
    for (AssetSession* session : shell->assetSessions())
        if (session->asset()->guid() == wanted) {
            if (session != shell->currentAssetSession())
                shell->currentAssetSession(session, true, true);
            return;
        }
}

} // namespace Vu::Commands
