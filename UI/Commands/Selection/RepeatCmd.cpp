#include "UI/Commands/Selection/RepeatCmd.h"

#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/InputControl.h"

namespace Vu::Commands {

// clang-format off
constinit const CommandRow RepeatCmdDef::kRow = {
    .key = L"RepeatCommand", .title = "Repeat", .groups = {&CommandGroup::BaseGroup}};
// clang-format on

namespace {

CommandDefinition* lastOf(const CommandContext& context)
{
    const CommandMgr* manager = hasAssetSession(&context) ? context.commandManager() : nullptr;
    return manager ? manager->lastCommandDef() : nullptr;
}

} // namespace

bool RepeatCmdDef::onIsApplicable(CommandContext* context) const
{
    const CommandDefinition* last = lastOf(*context);
    return last && last->isApplicable(context);
}

void RepeatCmdDef::onUpdateInputControl(CommandContext* context)
{
    RowDefinition::onUpdateInputControl(context);
    static const std::wstring baseTitle = info()->name();
    if (isApplicable(context)) {
        const Info& last = *lastOf(*context)->info();
        info()->changeAppearance(baseTitle + L" " + last.name(), last.icon());
    } else {
        info()->changeAppearance(baseTitle + L"...", nullptr);
    }
    inputControl()->info(info());
}

RepeatCmd::RepeatCmd(RepeatCmdDef* definition, CommandContext* context) : Implements(definition, context)
{
    repeatable(false);
}

void RepeatCmd::onExecute(Vs::Status&)
{
    CommandDefinition* last = commandManager() ? commandManager()->lastCommandDef() : nullptr;
    if (!last)
        return;
    CommandContext context = *commandContext();
    context.accessPoint(ECommandAccessPoint::Repeat);
    commandManager()->executeLater(last, context);
}

} // namespace Vu::Commands
