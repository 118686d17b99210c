#pragma once

#include <QFrame>
#include <QPointer>

#include <functional>

class QLabel;
class QLineEdit;
class QTreeView;

namespace Vu {

class CommandDefinition;
class FoundModel;

/// A field over the window in which commands and lines are found by anything that they are called. The arrows
/// choose, Enter starts the command or puts the line into the command line, Escape closes; so does a click
/// elsewhere. What can't start now is faint, and Enter says so.
class SearchPalette : public QFrame
{
public:
    /// What Enter does; called once the palette is gone and the keyboard is back where it was.
    struct Actions
    {
        std::function<void(CommandDefinition&)> start;
        std::function<void(const QString& line)> fillIn;
    };
    /// Shows it, or closes the one that shows.
    static void toggle(QWidget* window, Actions actions);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    SearchPalette(QWidget* window, Actions actions);
    ~SearchPalette() override;
    bool key(int key);
    void find();
    void choose(int row);
    void accept();
    void tellRow();
    void place();
    void leave(bool giveBack);

    Actions m_actions;
    FoundModel* m_found;
    QLineEdit* m_edit;
    QTreeView* m_list;
    QLabel* m_note;
    QPointer<QWidget> m_before; ///< Which had the keyboard.
};

} // namespace Vu
