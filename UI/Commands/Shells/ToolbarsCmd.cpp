#include "UI/Commands/Shells/ToolbarsCmd.h"

#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/Environment.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/Workspace/Area.h"
#include "UI/Base/Workspace/ToolbarManager.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"
#include "UI/Commands/Localized.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace Vu::Commands {

// clang-format off
constinit const CommandRow ToolbarsCmdDef::kRow = {
    .key = L"ToolbarsCommand", .title = "Toolbars",
    .groups = {&CommandGroup::BaseGroup}, .readonly = true, .arguments = {L"Toolbar", L"Visible"}};
// clang-format on

namespace {

/// Those of the window as it is: of the present layout and environment, also if they are hidden.
std::vector<const Toolbar*> toolbarsOfWindow()
{
    const WorkspaceWindow* window = WorkspaceWindow::activeWorkspaceWindow();
    Area* root = window ? window->area() : nullptr;
    const AssetSession* session = SessionMgr::get()->activeAssetSession();
    const EnvironmentDefinition* environment = session ? session->activeEnvironment() : nullptr;
    std::vector<const Toolbar*> found;
    for (const Toolbar& toolbar : ToolbarManager::get()->toolbars()) {
        std::vector<Area*> areas;
        if (root)
            root->childrenByContents(Vs::UniqueString::find(toolbar.contents), areas);
        Toolbar shown = toolbar;
        shown.visible = true;
        if (!areas.empty() && shown.standsIn(environment ? environment->id() : std::wstring()))
            found.push_back(&toolbar);
    }
    return found;
}

} // namespace

void ToolbarsCmdDef::createCommandDef()
{
    static ToolbarsCmdDef definition;
}

const Vs::UniqueString* ToolbarsCmdDef::toolbarArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Toolbar", true);
    return name;
}

const Vs::UniqueString* ToolbarsCmdDef::visibleArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Visible", true);
    return name;
}

bool ToolbarsCmdDef::onIsApplicable(CommandContext*) const
{
    return !toolbarsOfWindow().empty();
}

InputControl* ToolbarsCmdDef::onInputControl()
{
    if (!m_menu) {
        m_menu.reset(MenuControl::make(info(), this));
        fill();
    }
    return m_menu.get();
}

void ToolbarsCmdDef::onUpdateInputControl(CommandContext* context)
{
    CommandDefinition::onUpdateInputControl(context);
    fill();
}

void ToolbarsCmdDef::fill()
{
    const std::vector<const Toolbar*> toolbars = toolbarsOfWindow();
    const bool same =
        std::equal(toolbars.begin(), toolbars.end(), m_records.begin(), m_records.end(),
                   [](const Toolbar* toolbar, const auto& record) { return toolbar->id == record->key(); });
    if (!same) {
        const auto records = std::exchange(m_records, {});
        const auto items = std::exchange(m_items, {});
        std::vector<MenuItem*> shown;
        for (const Toolbar* toolbar : toolbars) {
            m_records.push_back(std::make_unique<Info>(toolbar->id, toolbar->title, nullptr));
            m_items.push_back(std::make_unique<MenuItem>(m_records.back().get()));
            shown.push_back(m_items.back().get());
        }
        m_menu->items(shown);
    }
    for (size_t i = 0; i < toolbars.size(); ++i)
        if (m_items[i]->checked() != toolbars[i]->visible)
            m_menu->selectItem(m_items[i].get(), toolbars[i]->visible, false);
}

void ToolbarsCmdDef::onMenuSelectionChanged(MenuItem* item)
{
    if (!item)
        return;
    CommandContext context = CommandContext::activeContext();
    context.addArgument(toolbarArgumentName(), item->info()->key());
    context.addArgument(visibleArgumentName(), item->checked() ? 1 : 0);
    executeLater(context);
}

void ToolbarsCmd::onExecute(Vs::Status& status)
{
    const std::wstring id = commandContext()->argumentAsString(ToolbarsCmdDef::toolbarArgumentName());
    ToolbarManager* manager = ToolbarManager::get();
    const Toolbar* toolbar = manager->toolbarById(id);
    if (!toolbar) {
        status.addError(localizedFormat("NoSuchToolbar", "There is no toolbar \"%1%\".", id));
        return;
    }
    int visible = toolbar->visible ? 0 : 1;
    std::ignore = commandContext()->argument(ToolbarsCmdDef::visibleArgumentName(),
                                             CommandContext::EArgType::Int, &visible);
    const bool show = visible != 0;
    std::vector<std::wstring> hidden = UIBaseOptionGroup::get()->hiddenToolbars();
    std::erase(hidden, id);
    if (!show)
        hidden.push_back(id);
    show ? manager->showToolbar(id) : manager->hideToolbar(id);
    UIBaseOptionGroup::get()->hiddenToolbars(hidden);
}

} // namespace Vu::Commands
