#include "UI/Base/Window/CommandMenu.h"

#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/InputControl.h"
#include "UI/Base/Window/ColourMenu.h"
#include "UI/Base/Window/KeyTable.h"
#include "UI/Base/Window/PropertyEdits.h"
#include "UI/Base/Window/QtIcon.h"
#include "UI/Base/Window/TickMenu.h"
#include "UI/Base/Workspace/MenuBar.h"
#include "UI/Base/Workspace/ToolbarManager.h"

#include <QAction>

#include <algorithm>

namespace Vu {
namespace {

/// An "&" in a name, which may come from a file, isn't a mnemonic.
QString menuText(const std::wstring& name)
{
    return QString::fromStdWString(name).replace(QLatin1Char('&'), QLatin1String("&&"));
}

/// The mnemonic of a title; null without one.
QChar markOf(const QString& title)
{
    for (qsizetype i = title.indexOf(QLatin1Char('&')); i >= 0 && i + 1 < title.size();
         i = title.indexOf(QLatin1Char('&'), i + 2))
        if (title[i + 1] != QLatin1Char('&'))
            return title[i + 1].toLower();
    return {};
}

/// The title with a mnemonic at the first letter still free, preferably at the beginning of a word.
QString marked(QString title, QString& taken)
{
    if (!markOf(title).isNull())
        return title;
    const auto isFree = [&](qsizetype i) {
        return title[i].isLetter() && !taken.contains(title[i].toLower());
    };
    qsizetype found = -1;
    for (qsizetype i = 0; i < title.size() && found < 0; ++i)
        if (isFree(i) && (i == 0 || title[i - 1].isSpace()))
            found = i;
    for (qsizetype i = 0; i < title.size() && found < 0; ++i)
        if (isFree(i))
            found = i;
    if (found < 0)
        return title;
    taken += title[found].toLower();
    return title.insert(found, QLatin1Char('&'));
}

constexpr std::wstring_view kColourCommand = L"ColourCommand";
/// Other lists contain things, of which there may happen to be only one.
constexpr std::wstring_view kListsOfKinds[] = {L"NewDocumentCommand", L"InsertAssetCommand"};

CommandDefinition* definitionOf(const std::wstring& command)
{
    return CommandDefinitionMgr::get()->findCommandDefinitionById(command);
}

bool applies(const CommandDefinition* definition)
{
    CommandContext context = CommandContext::activeContext();
    return definition && definition->isApplicable(&context);
}

void addItems(QMenu* menu, ListControl* list)
{
    for (Info* item : list->items()) {
        if (item->key() == ListControl::kSeparator) {
            menu->addSeparator();
            continue;
        }
        QAction* action = menu->addAction(iconOf(item->icon()), menuText(item->name()));
        action->setCheckable(item == list->selectedItem());
        action->setChecked(item == list->selectedItem());
        QObject::connect(action, &QAction::triggered, menu, [list, item] { list->selectedItem(item, true); });
    }
}

} // namespace

bool opensMenu(CommandDefinition& definition)
{
    const InputControl* control = definition.inputControl();
    return (Vs::cast<ListControl>(control) || Vs::cast<MenuControl>(control)) && !onlyKind(definition);
}

Info* onlyKind(CommandDefinition& definition)
{
    if (std::ranges::find(kListsOfKinds, definition.id()) == std::end(kListsOfKinds))
        return nullptr;
    const auto* list = Vs::cast<ListControl>(definition.inputControl());
    return list && list->items().size() == 1 ? list->items().front() : nullptr;
}

bool makeOnlyKind(CommandDefinition& definition)
{
    Info* kind = onlyKind(definition);
    if (kind)
        Vs::cast<ListControl>(definition.inputControl())->selectedItem(kind, true);
    return kind != nullptr;
}

MenuHead headOf(const ToolbarItem& item)
{
    const CommandDefinition* definition = definitionOf(item.command);
    const std::wstring& title = item.title.empty() && definition ? definition->info()->name() : item.title;
    return {QString::fromStdWString(title), definition && definition->info()->icon()
                                                ? iconOf(definition->info()->icon())
                                                : iconAt(item.picture)};
}

void markLetters(QMenu& menu)
{
    QString taken;
    for (const QAction* action : menu.actions())
        if (const QChar letter = markOf(action->text()); !letter.isNull())
            taken += letter;
    for (QAction* action : menu.actions())
        if (!action->isSeparator())
            action->setText(marked(action->text(), taken));
}

void fillWithEntriesOf(QMenu* menu, CommandDefinition* definition)
{
    menu->clear();
    CommandContext context = CommandContext::activeContext();
    InputControl* control = definition->inputControl();
    definition->updateInputControl(&context);
    if (auto* list = Vs::cast<ListControl>(control))
        addItems(menu, list);
    else if (Vs::cast<MenuControl>(control))
        fillWithTicks(menu, [definition] { return Vs::cast<MenuControl>(definition->inputControl()); });
}

CommandMenu::CommandMenu(std::vector<ToolbarItem> items, QWidget* parent, ECommandAccessPoint point)
    : QMenu(parent), m_items(std::move(items)), m_point(point)
{
    connect(this, &QMenu::aboutToShow, this, &CommandMenu::open);
}

CommandMenu::~CommandMenu() = default;

void CommandMenu::items(std::vector<ToolbarItem> items)
{
    clear();
    qDeleteAll(findChildren<QMenu*>(Qt::FindDirectChildrenOnly));
    m_entries.clear();
    m_filled = false;
    m_items = std::move(items);
}

/// Whether a command has another name now, as "Sign Out" does with the name of the user.
bool CommandMenu::isOutOfDate() const
{
    return std::any_of(m_entries.begin(), m_entries.end(), [](const Entry& entry) {
        const CommandDefinition* definition = definitionOf(entry.command);
        return definition && definition->info()->name() != entry.name;
    });
}

void CommandMenu::open()
{
    if (isOutOfDate())
        items(std::vector(m_items));
    if (!m_filled) {
        fill();
        markLetters(*this);
    }
    m_filled = true;
    refresh();
}

void CommandMenu::fill()
{
    for (const ToolbarItem& item : m_items) {
        if (item.isPlace)
            continue;
        if (item.separator()) {
            addSeparator();
        } else if (item.isMenu()) {
            const MenuHead head = headOf(item);
            auto* menu = new CommandMenu(item.menu, this, m_point);
            menu->setTitle(head.title);
            menu->setIcon(head.icon);
            addMenu(menu);
        } else if (CommandDefinition* definition = definitionOf(item.command)) {
            addCommand(definition, item);
        }
    }
}

void CommandMenu::addCommand(CommandDefinition* definition, const ToolbarItem& item)
{
    const Info& info = *definition->info();
    const QString title = item.title.empty() ? menuText(info.name()) : QString::fromStdWString(item.title);
    const std::wstring command = item.command;
    const QIcon icon = info.icon()
                           ? iconOf(info.icon())
                           : iconAt(item.picture.empty() ? MenuBar::get()->pictureOf(command) : item.picture);
    QAction* action = nullptr;
    if (command == kColourCommand && m_point == ECommandAccessPoint::ContextMenu) {
        auto* colours = new ColourMenu([](const std::wstring& code) { PropertyEdits::colour(code); },
                                       PropertyEdits::presentColour, this);
        colours->setIcon(icon);
        colours->setTitle(title);
        action = addMenu(colours);
    } else if (opensMenu(*definition)) {
        QMenu* entries = addMenu(icon, title);
        connect(entries, &QMenu::aboutToShow, entries, [entries, command] {
            if (CommandDefinition* found = definitionOf(command))
                fillWithEntriesOf(entries, found);
        });
        action = entries->menuAction();
    } else {
        action = addAction(icon, title);
        connect(action, &QAction::triggered, this, [command, off = item.off, point = m_point] {
            CommandDefinition* opposite = definitionOf(off);
            CommandDefinition* found = applies(opposite) ? opposite : definitionOf(command);
            if (found && !makeOnlyKind(*found))
                found->runByHand(point);
        });
    }
    action->setObjectName(QString::fromStdWString(command));
    // Its shortcut is displayed, and read out by assistive technology, but bound by the window (HotKeys).
    action->setShortcutContext(Qt::WidgetShortcut);
    action->setShortcutVisibleInContextMenu(true);
    m_entries.push_back({action, command, item.off, info.name()});
}

void CommandMenu::refresh()
{
    for (const Entry& entry : m_entries) {
        CommandDefinition* definition = definitionOf(entry.command);
        if (!definition) {
            entry.action->setVisible(false);
            continue;
        }
        CommandContext context = CommandContext::activeContext();
        const bool on = applies(definitionOf(entry.off));
        entry.action->setVisible(on || definition->isVisible(&context));
        entry.action->setEnabled(on || definition->isApplicable(&context));
        if (entry.action->menu())
            continue;
        definition->updateInputControl(&context);
        const InputControl* control = definition->inputControl();
        // A control may be disabled although the command could run, such as one that stops something not
        // running.
        if (control && !on && !control->enabled())
            entry.action->setEnabled(false);
        const auto* button = Vs::cast<ButtonControl>(control);
        const bool lit = on || (control && (control->active() || (button && button->checked())));
        entry.action->setCheckable(lit);
        entry.action->setChecked(lit);
        entry.action->setShortcut(KeyTable::get()->keysOf(*definition).value(0));
    }
}

} // namespace Vu
