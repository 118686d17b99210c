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

/// A field over the window that finds commands and lines by any of their names. The arrows choose, Enter
/// starts the command or puts the line into the command line; Escape or a click elsewhere closes it. Entries
/// that can't start now are faint, and Enter says so.
class SearchPalette : public QFrame
{
public:
    /// What Enter does; called once the palette is gone and the focus is back where it was.
    struct Actions
    {
        std::function<void(CommandDefinition&)> start;
        std::function<void(const QString& line)> fillIn;
    };
    /// Opens it, or closes the open one.
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
    QPointer<QWidget> m_before; ///< Which had the focus.
};

} // namespace Vu
