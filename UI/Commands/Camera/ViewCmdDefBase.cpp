#include "UI/Commands/Camera/ViewCmdDefBase.h"

#include "Server/CommonData/CommonDataAssetSettings.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/AssetAdapter.h"
#include "Server/Scene/ViewFragment.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Commands/Camera/ActiveView.h"
#include "UI/Commands/Camera/ViewCmd.h"

#include <algorithm>
#include <tuple>

namespace Vu::Commands {

ViewState ViewState::active()
{
    ViewState state;
    AssetSession* session = SessionMgr::get()->activeAssetSession();
    if (!session)
        return state;
    if (Vs::Scene::ViewFragment* model = fragmentNamed(graphicsViewOf(session), "Model")) {
        state.render = Vs::Scene::viewFragmentNodeData(model->viewFragmentNode())->renderParams(0);
        state.camera = model->camera();
    }
    if (Vs::AssetAdapter* adapter = session->asset()->adapter())
        state.settings = Vs::cast<Vs::CommonData::CommonDataAssetSettings>(adapter->assetSettings());
    return state;
}

ViewCmdDefBase::~ViewCmdDefBase() = default;

const Vs::UniqueString* ViewCmdDefBase::cmdIdArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("CmdId", true);
    return name;
}

CommandBase* ViewCmdDefBase::onCreateCommand(CommandContext* context)
{
    return new ViewCmd(this, context);
}

InputControl* ViewCmdDefBase::onInputControl()
{
    if (!m_list) {
        m_list.reset(ListControl::make(info(), this));
        std::vector<Info*> items;
        onSetupListItems(items);
        // Where every value has a picture, the button shows the current one's.
        m_list->synchronizedWithCurrentItem(std::ranges::all_of(items, &Info::icon));
        m_list->items(std::move(items));
    }
    return m_list.get();
}

void ViewCmdDefBase::onUpdateInputControl(CommandContext* context)
{
    if (!m_list)
        return;
    CommandDefinition::onUpdateInputControl(context);
    if (!isApplicable(context))
        return;
    const ViewState state = ViewState::active();
    if (!state.render)
        return;
    Info* const current = onSelectedItem(m_list->items(), state);
    if (current == m_list->selectedItem())
        return;
    m_updating = true;
    m_list->selectedItem(current, true);
    m_updating = false;
}

void ViewCmdDefBase::onListSelectionChanged(Info* item)
{
    if (m_updating || !item)
        return;
    CommandContext context = CommandContext::activeContext();
    if (!isAvailable(&context))
        return;
    context.addArgument(cmdIdArgumentName(), item->key());
    std::ignore = executeCommand(context);
}

} // namespace Vu::Commands
