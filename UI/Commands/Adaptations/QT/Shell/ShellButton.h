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
    ShellButton(CommandDefinition* definition, QWidget* parent);
    ~ShellButton() override;

private:
    void inputControlChanged(InputControl*) override { draw(); }
    void inputControlDestroyed(InputControl*) override;
    void draw();
    void fillMenu();

    CommandDefinition* m_definition;
    InputControl* m_control;
};

/// The buttons of the toolbars that stand in the area "HomeButtons".
QWidget* makeShellButtons(QWidget* parent);

} // namespace Vu::Commands
