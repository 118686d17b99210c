#pragma once

#include "UI/Base/Command/InputControl.h"

#include <QToolButton>

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

private:
    void inputControlChanged(InputControl*) override { draw(); }
    void inputControlDestroyed(InputControl*) override;
    void draw();
    void fillMenu();

    CommandDefinition* m_definition;
    QIcon m_picture;
    InputControl* m_control;
};

/// The buttons of the toolbars that stand in the area "HomeButtons".
QWidget* makeShellButtons(QWidget* parent);

} // namespace Vu::Commands
