#include "UI/Base/Window/WindowSearch.h"

#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Window/CommandBox.h"
#include "UI/Base/Window/CommandMenu.h"
#include "UI/Base/Window/MainWindow.h"
#include "UI/Base/Window/SearchPalette.h"

#include <QLineEdit>
#include <QMenu>

#include <tuple>

namespace Vu {
namespace {

constexpr const wchar_t* kShowLinesCommand = L"ShowTextCommandsCommand";

void start(MainWindow& window, CommandDefinition& definition)
{
    if (makeOnlyKind(definition))
        return;
    if (!opensMenu(definition)) {
        definition.runByHand(ECommandAccessPoint::HotKey);
        return;
    }
    auto* menu = new QMenu(&window);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    fillWithEntriesOf(menu, &definition);
    const QPoint middle(window.width() / 2 - menu->sizeHint().width() / 2, window.height() / 4);
    menu->popup(window.mapToGlobal(middle));
}

void fillIn(MainWindow& window, const QString& line)
{
    CommandBox* box = window.commandBox();
    CommandDefinition* show = CommandDefinitionMgr::get()->findCommandDefinitionById(kShowLinesCommand);
    if (!box->isVisible() && show) {
        std::ignore = show->executeCommand(CommandContext::activeContext());
        window.rebuild();
    }
    box->edit()->setText(line);
    box->edit()->setFocus(Qt::ShortcutFocusReason);
}

} // namespace

void toggleSearch(MainWindow* window)
{
    SearchPalette::toggle(window, {[window](CommandDefinition& definition) { start(*window, definition); },
                                   [window](const QString& line) { fillIn(*window, line); }});
}

} // namespace Vu
