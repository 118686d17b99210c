#include "UI/Base/Window/ContextMenu.h"

#include "Server/Base/UniqueString.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Window/QtIcon.h"
#include "UI/Base/Workspace/MenuBar.h"

#include <QAction>
#include <QMenu>

#include <algorithm>
#include <iterator>
#include <vector>

namespace Vu {
namespace {

constexpr std::wstring_view kDeleteCommand = L"DeleteCommand";
constexpr std::wstring_view kOfClipboard[] = {L"CutCommand", L"CopyToClipboardCommand", L"PasteCommand"};

} // namespace

void runFromContextMenu(std::wstring_view key, const std::map<const char*, std::wstring>& arguments)
{
    CommandDefinition* definition = CommandDefinitionMgr::get()->findCommandDefinitionById(key);
    CommandContext context = CommandContext::activeContext();
    context.accessPoint(ECommandAccessPoint::ContextMenu);
    // Whether a command can run depends on what it would work on.
    for (const auto& [name, value] : arguments)
        context.addArgument(Vs::UniqueString::find(name, true), value);
    if (definition && definition->isAvailable(&context))
        definition->executeLater(context);
}

void addContextCommand(QMenu& menu, const CommandDefinition& definition)
{
    const Info& info = *definition.info();
    const QIcon icon = info.icon() ? iconOf(info.icon()) : iconAt(MenuBar::get()->pictureOf(definition.id()));
    const QAction* action = menu.addAction(icon, QString::fromStdWString(info.name()));
    QObject::connect(action, &QAction::triggered, &menu,
                     [key = definition.id()] { runFromContextMenu(key); });
}

void addContextCommands(QMenu& menu, MarkingMenuEventSource::ESource source)
{
    const MarkingMenuEventSource::Opening opening(source);
    const CommandDefinitionMgr* definitions = CommandDefinitionMgr::get();
    CommandContext context = CommandContext::activeContext();
    QStringList known;
    for (const QAction* action : menu.actions())
        known << action->objectName();
    const auto isKnown = [&](const CommandDefinition& definition) {
        return known.contains(QString::fromStdWString(definition.id()));
    };
    std::vector<CommandDefinition*> offered;
    for (CommandDefinition* definition : definitions->commandDefinitions())
        if (!isKnown(*definition) && definition->addToContextMenu() && definition->isAvailable(&context))
            offered.push_back(definition);
    // Wherever they were registered, these are grouped where every user expects them.
    std::stable_partition(offered.begin(), offered.end(), [](const CommandDefinition* definition) {
        return std::find(std::begin(kOfClipboard), std::end(kOfClipboard), definition->id()) !=
               std::end(kOfClipboard);
    });
    for (const CommandDefinition* definition : offered)
        addContextCommand(menu, *definition);
    const CommandDefinition* remove = definitions->findCommandDefinitionById(kDeleteCommand);
    if (remove && !isKnown(*remove) && remove->isAvailable(&context))
        addContextCommand(menu, *remove);
}

} // namespace Vu
