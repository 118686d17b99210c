#include "UI/Commands/Selection/SelectAllCmds.h"

#include "Server/Body/Body.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "UI/Commands/Selection/SelectedObjects.h"

#include <set>

namespace Vu::Commands {

// clang-format off
constinit const CommandRow SelectAllCmdDef::kRow       = {.key = L"SelectAllCommand", .title = "Select All", .groups = {&CommandGroup::SelectGroup}, .readonly = true};
constinit const CommandRow InvertSelectionCmdDef::kRow = {.key = L"InvertSelectionCommand", .title = "Invert Selection", .groups = {&CommandGroup::SelectGroup}, .readonly = true};
// clang-format on

namespace {

/// The visible parts at and below the component without those of `left`, or in one of them.
void collectParts(const Vs::Component& component, Vs::Asset* asset, const std::set<std::string>& left,
                  std::vector<Vs::StrongRef<Vs::Selection>>& parts)
{
    if (!component.visible || left.contains(component.id))
        return;
    if (component.body)
        parts.emplace_back(new Vs::LogicalSelection(asset, component.id, nullptr));
    for (const auto& child : component.children)
        collectParts(*child, asset, left, parts);
}

void selectWithout(const std::set<std::string>& left, CommandContext& context, Vs::SelectionMgr* manager)
{
    Vs::Asset* asset = context.asset();
    if (!asset || !manager)
        return;
    std::vector<Vs::StrongRef<Vs::Selection>> parts;
    collectParts(*asset->components(), asset, left, parts);
    manager->selectionSet().replace(parts);
}

} // namespace

WholeSelectionCmd::WholeSelectionCmd(CommandDefinition* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

void SelectAllCmdDef::createCommandDef()
{
    static SelectAllCmdDef definition;
}

void SelectAllCmd::onExecute(Vs::Status&)
{
    selectWithout({}, *commandContext(), selectionManager());
}

void InvertSelectionCmdDef::createCommandDef()
{
    static InvertSelectionCmdDef definition;
}

void InvertSelectionCmd::onExecute(Vs::Status&)
{
    std::set<std::string> selected;
    for (const auto& object : selectedObjects(selectionManager()))
        selected.insert(object->componentId());
    selectWithout(selected, *commandContext(), selectionManager());
}

} // namespace Vu::Commands
