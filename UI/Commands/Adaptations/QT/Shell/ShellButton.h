#pragma once

#include "UI/Base/Command/InputControl.h"

#include <QToolButton>

class QLayout;

namespace Vu {
class CommandDefinition;
}

namespace Vu::Commands {

/// A large button of the home screen, with icon and title; a command with a list of items opens it as a menu.
class ShellButton : public QToolButton, private InputControlSite
{
public:
    /// `picture` is the folder of a set of pictures, for a command that has none of its own.
    ShellButton(CommandDefinition* definition, const std::wstring& picture, QWidget* parent);
    ~ShellButton() override;

    /// Text to show instead of the command's own title; empty to keep the title.
    void title(const std::wstring& text);

private:
    void inputControlChanged(InputControl*) override { draw(); }
    void inputControlDestroyed(InputControl*) override;
    void draw();
    /// A list with a single kind to create creates it.
    void press(bool makesKind);
    void fillMenu();

    CommandDefinition* m_definition;
    std::wstring m_title;
    QIcon m_picture;
    InputControl* m_control;
};

/// Adds the buttons of the toolbars with the contents "HomeButtons": those at the far end, or the others.
void addShellButtons(QLayout& layout, QWidget* parent, bool atEnd);

/// The row of buttons that start something, with the search beside them.
QWidget* makeShellButtons(QWidget* parent);

} // namespace Vu::Commands
