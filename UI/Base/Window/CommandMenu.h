#pragma once

#include "UI/Base/Command/CommandTypes.h"

#include <QIcon>
#include <QMenu>

#include <vector>

namespace Vu {

class CommandDefinition;
class Info;
class InputControl;
struct ToolbarItem;

/// Whether a command is a list or a menu, which opens instead of running.
bool opensMenu(CommandDefinition& definition);
/// What a list of the kinds that can be made offers, if it is one kind alone: then a press makes that, and no
/// list opens. Null for all others.
Info* onlyKind(CommandDefinition& definition);
/// Has the list make it; false if the command offers more than one kind, or something else.
bool makeOnlyKind(CommandDefinition& definition);

/// Title and picture of a menu that was described.
struct MenuHead
{
    QString title;
    QIcon icon;
};
MenuHead headOf(const ToolbarItem& item);

/// A menu of commands. Its entries are made when it opens first; each time, they are brought up to date:
/// which can run, what is ticked, what keys they have. Commands that nobody has are left out.
class CommandMenu : public QMenu
{
public:
    /// `point` is how its commands are called.
    CommandMenu(std::vector<ToolbarItem> items, QWidget* parent,
                ECommandAccessPoint point = ECommandAccessPoint::Toolbar);
    ~CommandMenu() override;

    /// Makes the entries now, for who adds others behind them.
    void prepare() { open(); }

    /// Instead of those that it has.
    void items(std::vector<ToolbarItem> items);

private:
    void open();
    void fill();
    void addCommand(CommandDefinition* definition, const ToolbarItem& item);
    bool isOutOfDate() const;
    void refresh();

    struct Entry
    {
        QAction* action;
        std::wstring command, off;
        std::wstring name; ///< Which the command had then.
    };

    std::vector<ToolbarItem> m_items;
    ECommandAccessPoint m_point;
    std::vector<Entry> m_entries;
    bool m_filled = false;
};

/// Gives each entry that has none a letter by which it is chosen, in every language.
void markLetters(QMenu& menu);

/// The entries of a command that is a list or a menu, as they are now.
void fillWithEntriesOf(QMenu* menu, CommandDefinition* definition);

} // namespace Vu
