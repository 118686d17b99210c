#pragma once

#include "UI/Base/Command/InputControl.h"

#include <QToolButton>

class QMenu;

namespace Vu {

class CommandDefinition;
struct ToolbarItem;

/// Draws the control of one command in a toolbar or HUD.
class CommandButton : public QToolButton, private InputControlSite
{
public:
    /// `picture` is the folder of a set of pictures, in place of the command's own icon; without either, the
    /// title is shown.
    CommandButton(CommandDefinition* definition, const std::wstring& picture, QWidget* parent);
    ~CommandButton() override;

    CommandDefinition* definition() const { return m_definition; }
    /// Asks the definition whether the command can run now.
    void refresh();
    /// Whether the command should be visible, whether or not there is room for it.
    bool isWanted() const;
    /// A button that doesn't fit is hidden.
    void fits(bool value);

    /// A list whose text shows what is chosen is as wide as its longest entry, so that its neighbours don't
    /// move.
    QSize sizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void inputControlChanged(InputControl* control) override;
    void inputControlDestroyed(InputControl* control) override;
    void draw();
    QString title() const;
    QString spokenName() const;

    CommandDefinition* m_definition;
    QIcon m_picture;
    InputControl* m_control;
    QMenu* m_menu = nullptr;
    bool m_fits = true;
};

/// The button of an item: of a command, or of a menu. Null for a separator and for an unregistered command.
/// That of a command is appended to `buttons`.
QToolButton* makeToolbarItem(const ToolbarItem& item, QWidget* parent, std::vector<CommandButton*>& buttons);

/// Adds the items to a bar that lays out in a row: buttons, menus, separators. Items of unknown commands are
/// left out. The buttons are appended to `buttons`.
void addToolbarItems(const std::vector<ToolbarItem>& items, QWidget* bar,
                     std::vector<CommandButton*>& buttons);

} // namespace Vu
