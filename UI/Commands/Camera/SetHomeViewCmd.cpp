#include "UI/Commands/Camera/SetHomeViewCmd.h"

#include "Server/CommonData/CommonDataAssetSettings.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/AssetAdapter.h"
#include "Server/DataModel/Request.h"
#include "Server/Scene/Camera.h"
#include "UI/Commands/Camera/ActiveView.h"
#include "UI/Commands/Localized.h"

namespace Vu::Commands {

constinit const CommandRow SetHomeViewCmdDef::kRow = {.key = L"SetHomeViewCommand",
                                                      .title = "Set Current View as Home"};

namespace {

using Vs::CommonData::CommonDataAssetSettings;

class SetHomeRequest : public Vs::Implements<SetHomeRequest, Vs::Request>
{
public:
    explicit SetHomeRequest(const CommonDataAssetSettings::HomeView& view)
        : Implements(SetHomeViewCmdDef::info()->name()), m_view(view)
    {
    }

protected:
    void onExecute(Vs::Asset& asset, Vs::Status& status) override
    {
        Vs::AssetAdapter* adapter = asset.adapter();
        auto* settings = Vs::cast<CommonDataAssetSettings>(adapter ? adapter->assetSettings() : nullptr);
        if (!settings || !settings->homeView(m_view))
            status.addError(localized("SetHomeImpossible", "The view has no direction to keep."));
    }

private:
    CommonDataAssetSettings::HomeView m_view;
};

} // namespace

void SetHomeViewCmdDef::createCommandDef()
{
    static SetHomeViewCmdDef definition;
}

SetHomeViewCmd::SetHomeViewCmd(SetHomeViewCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
}

ECommandType SetHomeViewCmd::onCommandType() const
{
    return ECommandType::Nested;
}

void SetHomeViewCmd::onExecute(Vs::Status& status)
{
    const Vs::Scene::Camera* camera = settledCamera();
    if (!camera)
        return;
    SetHomeRequest request({-camera->direction(), camera->screenUp()});
    executeRequest(&request, false, {}, status);
}

} // namespace Vu::Commands
