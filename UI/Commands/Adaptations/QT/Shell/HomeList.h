#pragma once

#include <QFrame>

#include <functional>
#include <string>

class QIcon;
class QToolButton;
class QVBoxLayout;

namespace Vu::Commands {

/// A card beside the tiles of the home screen: a heading with rows below it. The rows are buttons as wide as
/// the card.
class HomeList : public QFrame
{
public:
    HomeList(const QString& title, QWidget* parent);

protected:
    /// A single row; its text is elided to the card's width, and its tooltip has the full text.
    QToolButton* addRow(const QString& text, const QString& tooltip, const QIcon& icon,
                        std::function<void()> action);
    void add(QWidget* row);
    /// A row for each command of the toolbars with these contents.
    void addCommands(const std::string& contents);

private:
    QVBoxLayout* m_rows;
};

/// Learning resources: the commands of the toolbars in "HomeLearn".
class LearnList : public HomeList
{
public:
    explicit LearnList(QWidget* parent);
};

} // namespace Vu::Commands
