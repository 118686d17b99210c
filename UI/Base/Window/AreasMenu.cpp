#include "UI/Base/Window/AreasMenu.h"

#include "Server/Base/UniqueString.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Workspace/Area.h"
#include "UI/Base/Workspace/ToolbarManager.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <QAction>
#include <QMenu>

namespace Vu {
namespace {

/// The area of the active window with these contents; null if its layout has none.
Area* areaOf(const char* contents)
{
    const WorkspaceWindow* window = WorkspaceWindow::activeWorkspaceWindow();
    Area* root = window ? window->area() : nullptr;
    std::vector<Area*> found;
    if (root)
        root->childrenByContents(Vs::UniqueString::find(contents, true), found);
    return found.empty() ? nullptr : found.front();
}

void addToolbars(QMenu* menu)
{
    for (const Toolbar& toolbar : ToolbarManager::get()->toolbars()) {
        if (toolbar.title.empty() || !areaOf(toolbar.contents.c_str()))
            continue;
        QAction* action = menu->addAction(QString::fromStdWString(toolbar.title));
        action->setCheckable(true);
        action->setChecked(toolbar.visible);
        QObject::connect(action, &QAction::triggered, menu, [id = toolbar.id](bool on) {
            on ? ToolbarManager::get()->showToolbar(id) : ToolbarManager::get()->hideToolbar(id);
        });
    }
}

void addArea(QMenu* menu, const char* contents, const std::wstring& title, Vs::Option<bool>& wish)
{
    const Area* area = areaOf(contents);
    if (!area)
        return;
    QAction* action = menu->addAction(QString::fromStdWString(title));
    action->setCheckable(true);
    action->setChecked(area->visible());
    QObject::connect(action, &QAction::triggered, menu, [contents, &wish](bool on) {
        wish(on);
        if (Area* there = areaOf(contents))
            there->visible(on);
    });
}

void fill(QMenu* menu)
{
    menu->clear();
    UIBaseOptionGroup* options = UIBaseOptionGroup::get();
    addToolbars(menu);
    menu->addSeparator();
    addArea(menu, "Browser", localized("AreaBrowser", "Browser"), options->wantToShowBrowser);
    addArea(menu, "TextCommands", localized("AreaTextCommands", "Command Line"),
            options->wantToShowTextCommands);
}

} // namespace

void addAreas(QMenu* menu)
{
    QMenu* areas = menu->addMenu(QString::fromStdWString(localized("MenuToolbars", "Toolbars")));
    areas->setObjectName(QStringLiteral("areas"));
    QObject::connect(areas, &QMenu::aboutToShow, areas, [areas] { fill(areas); });
}

} // namespace Vu
