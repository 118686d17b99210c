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
/// If a list of things to create offers a single kind, that kind: a press then creates it without opening the
/// list. Null otherwise.
Info* onlyKind(CommandDefinition& definition);
/// Has the list create it; false if the command offers more than one kind, or something else.
bool makeOnlyKind(CommandDefinition& definition);

/// Title and icon of a described menu.
struct MenuHead
{
    QString title;
    QIcon icon;
};
MenuHead headOf(const ToolbarItem& item);

/// A menu of commands. Its entries are created when it first opens and updated each time it does: enabled,
/// checked, shortcuts. Commands that no one has registered are left out.
class CommandMenu : public QMenu
{
public:
    /// `point` is the call point passed to its commands.
    CommandMenu(std::vector<ToolbarItem> items, QWidget* parent,
                ECommandAccessPoint point = ECommandAccessPoint::Toolbar);
    ~CommandMenu() override;

    /// Creates the entries now, so that the caller can add others after them.
    void prepare() { open(); }

    /// Replaces its entries.
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
        std::wstring name; ///< Of the command at that time.
    };

    std::vector<ToolbarItem> m_items;
    ECommandAccessPoint m_point;
    std::vector<Entry> m_entries;
    bool m_filled = false;
};

/// Gives each entry without a mnemonic one, in every language.
void markLetters(QMenu& menu);

/// The current entries of a command that is a list or a menu.
void fillWithEntriesOf(QMenu* menu, CommandDefinition* definition);

} // namespace Vu
