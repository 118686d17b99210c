#pragma once

#include "UI/Base/Command/InputControl.h"
#include "UI/Base/Workspace/ToolbarManager.h"

#include <QToolButton>

namespace Vu {

/// A toolbar button that opens a menu. If it is headed by a command, it always looks like that command.
class MenuButton : public QToolButton, private InputControlSite
{
public:
    MenuButton(const ToolbarItem& item, QWidget* parent);
    ~MenuButton() override;

private:
    void inputControlChanged(InputControl*) override { draw(); }
    void inputControlDestroyed(InputControl*) override { m_control = nullptr; }
    void draw();

    ToolbarItem m_item; ///< Without the entries.
    InputControl* m_control = nullptr;
};

} // namespace Vu
