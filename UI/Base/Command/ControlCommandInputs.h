#pragma once

#include "UI/Base/Command/CommandInput.h"
#include "UI/Base/Command/InputControl.h"

namespace Vu {

/// An input that is a list of which one item, or none, is chosen.
class ListCommandInput : public Vs::Implements<ListCommandInput, CommandInputBase, IListControlHandler>
{
public:
    static ListCommandInput* make(CommandInputSet* set, int number, Info* info);

    /// Holds the items and the choice. A choice made there with notification is reported as a new value.
    ListControl* control() { return &m_control; }
    /// Null for none.
    Info* value() const { return m_control.selectedItem(); }

    /// The key of the chosen item; empty for none.
    std::wstring valueAsString() const override;
    bool valueFromString(const std::wstring& text) override;

    void onListSelectionChanged(Info* item) override;

private:
    ListCommandInput(CommandInputSet* set, int number, Info* info);

    ListControl m_control;
};

/// An input that is a menu of items, each with a mark of its own.
class MenuCommandInput : public Vs::Implements<MenuCommandInput, CommandInputBase, IMenuControlHandler>
{
public:
    static MenuCommandInput* make(CommandInputSet* set, int number, Info* info);

    /// Holds the items and their marks. A mark set there with notification is reported as a new value.
    MenuControl* control() { return &m_control; }

    /// The keys of the items that have a mark, with bars between them.
    std::wstring valueAsString() const override;
    bool valueFromString(const std::wstring& text) override;

    void onMenuSelectionChanged(MenuItem* item) override;

private:
    MenuCommandInput(CommandInputSet* set, int number, Info* info);

    MenuControl m_control;
};

/// A button in a panel. It has no value; being pressed is reported as a new one.
class ButtonCommandInput : public Vs::Implements<ButtonCommandInput, CommandInputBase, IButtonControlHandler>
{
public:
    static ButtonCommandInput* make(CommandInputSet* set, int number, Info* info);

    ButtonControl* control() { return &m_control; }

    /// Empty; the empty text presses the button.
    std::wstring valueAsString() const override { return {}; }
    bool valueFromString(const std::wstring& text) override;

    void onClicked() override;

private:
    ButtonCommandInput(CommandInputSet* set, int number, Info* info);

    ButtonControl m_control;
};

} // namespace Vu
