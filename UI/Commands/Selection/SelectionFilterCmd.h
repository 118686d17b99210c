#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

#include <memory>
#include <vector>

namespace Vs {
class SelectionCategory;
}

namespace Vu {
class BoolValueCommandInput;
class MenuControl;
} // namespace Vu

namespace Vu::Commands {

/// The menu in which the user chooses what kinds of things can be picked: a check mark for each category of
/// the input that takes the clicks. Changing a mark runs the command, which gives the categories the state of
/// the menu.
class SelectionFilterCmdDef
    : public RowDefinition<SelectionFilterCmdDef, CommandDefinition, IMenuControlHandler>
{
public:
    static const CommandRow kRow;
    static Info* selectAllInfo();
    static Info* selectVisibleInfo();
    /// "Marked": the entries to be checked, by the ids of categories and the key of "Select Visible",
    /// separated by commas. Without it the menu is taken as it is.
    static const Vs::UniqueString* markedArgumentName();

    SelectionFilterCmdDef();
    ~SelectionFilterCmdDef() override;

    /// Those in the menu, not owned; they are destroyed with the running command.
    const std::vector<Vs::SelectionCategory*>& categories() const { return m_categories; }
    std::vector<MenuItem*> menuItems() const;

    void onMenuSelectionChanged(MenuItem* item) override;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    CommandBase* onCreateCommand(CommandContext* context) override;
    InputControl* onInputControl() override;

private:
    friend class SelectionFilterCmd;
    struct Entry;

    void findCategories();
    bool menuNeedsUpdating();
    void updateMenuControl();
    void addEntry(Info* info, bool checked);
    void markAll(const MenuItem& selectAll);
    void mark(const std::wstring& marked);
    std::wstring marked() const;

    std::vector<Vs::SelectionCategory*> m_categories;
    std::vector<std::unique_ptr<Entry>> m_entries;
    std::unique_ptr<MenuControl> m_menuControl;
    bool m_updating = false;
};

class SelectionFilterCmd : public Vs::Implements<SelectionFilterCmd, SimpleCommand>
{
protected:
    friend class SelectionFilterCmdDef;
    SelectionFilterCmd(SelectionFilterCmdDef* definition, CommandContext* context);

    void onExecute(Vs::Status& status) override;
    ECommandType onCommandType() const override { return ECommandType::Exclusive; }
    EStackingBehavior onStackingBehavior() const override { return EStackingBehavior::OverCategory; }
    const Vs::UniqueString* onStackingCategory() const override;

private:
    void onCreateCommandInputs();
    void updateCategories();

    SelectionFilterCmdDef& m_definition;
    std::vector<BoolValueCommandInput*> m_categoryInputs;
    bool m_activeCommandIsSelect = false;
};

} // namespace Vu::Commands
