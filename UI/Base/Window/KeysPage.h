#pragma once

#include <QKeySequence>
#include <QWidget>

class QKeySequenceEdit;
class QLabel;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace Vu {

class CommandDefinition;

/// The commands with their shortcuts, for editing. A shortcut of another command is reported, and taken from
/// it only with the user's consent.
class KeysPage : public QWidget
{
public:
    explicit KeysPage(QWidget* parent);

    /// Keeps the commands whose title, identifier or shortcuts contain the text; false if there is none.
    bool filter(const QString& text);
    void refresh();

private:
    const CommandDefinition* current() const;
    void showCurrent();
    void entered();
    void take();
    void showConflict(const QString& text);
    void add(const CommandDefinition& definition);

    QTreeWidget* m_list;
    QKeySequenceEdit* m_edit;
    QPushButton* m_none;
    QPushButton* m_usual;
    QPushButton* m_take;
    QLabel* m_conflict;
    QKeySequence m_wanted; ///< Which another command has.
};

} // namespace Vu
