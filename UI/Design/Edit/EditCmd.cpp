#include "UI/Design/Edit/EditCmd.h"

#include "Server/DataModel/Edit/EditRequest.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandGroup.h"
#include "UI/Base/Command/Info.h"
#include "UI/Design/Environments.h"

namespace Vu::Design {

EditCmdDefBase::EditCmdDefBase(Info* info) : Implements(info)
{
    // The keys of its inputs, which the command itself validates.
    info->arguments(std::nullopt);
    joinCommandGroup(CommandGroup::VeloraSolidGroup());
}

bool EditCmdDefBase::onIsApplicable(CommandContext* context) const
{
    return context->assetSession() != nullptr;
}

std::wstring EditCmdDefBase::onPreferredEnvironment()
{
    return ModellingEnvironment::kId;
}

PreviewedCmd::OwnedRequest EditCmd::onMakeRequest(Vs::Asset& asset)
{
    auto* request = Vs::EditRequest::make(&asset, commandDefinition()->info()->name(), onMakeEdit(asset));
    OwnedRequest owned(request);
    request->groupAdded(onMakesGroup());
    return owned;
}

} // namespace Vu::Design
