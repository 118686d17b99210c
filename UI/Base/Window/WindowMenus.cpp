#include "UI/Base/Window/WindowMenus.h"

#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Window/CommandMenu.h"
#include "UI/Base/Workspace/MenuBar.h"

#include <QMainWindow>
#include <QMenuBar>
#include <QShortcut>

#include <boost/algorithm/string/join.hpp>

namespace Vu {

std::wstring addMenus(QMainWindow& window)
{
    QMenuBar* bar = window.menuBar();
    // In the window, not in the desktop's panel, which would need the entries before they are created.
    bar->setNativeMenuBar(false);
    for (const ToolbarItem& item : MenuBar::get()->menus()) {
        auto* menu = new CommandMenu(item.menu, bar);
        menu->setObjectName(QString::fromStdWString(item.id));
        menu->setTitle(QString::fromStdWString(item.title));
        bar->addMenu(menu);
    }
    auto* key = new QShortcut(QKeySequence(Qt::Key_F10), &window);
    QObject::connect(key, &QShortcut::activated, bar, [bar] {
        if (!bar->actions().isEmpty())
            bar->setActiveAction(bar->actions().first());
    });
    std::wstring problems = MenuBar::get()->problems().toString();
    const std::vector<std::wstring> unknown = MenuBar::get()->unknownCommands();
    if (!unknown.empty())
        problems += (problems.empty() ? L"" : L"\n") +
                    localizedFormat("MenusUnknownCommands", "Menus name commands that do not exist: %1%",
                                    boost::algorithm::join(unknown, L", "));
    return problems;
}

} // namespace Vu
