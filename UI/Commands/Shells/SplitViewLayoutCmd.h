#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"
#include "UI/Commands/OwnedList.h"

namespace Vu::Commands {

class SplitViewLayoutCmd;

/// The list of ways to divide the canvas among several views; it shows the present one, and choosing another
/// applies it.
class SplitViewLayoutCmdDef : public CommandRowDefinition<SplitViewLayoutCmdDef, SplitViewLayoutCmd,
                                                          CommandDefinition, IListControlHandler>
{
public:
    static const CommandRow kRow;

    /// Creates the only definition of this class at the first call. It isn't among the add-in's members.
    static void createCommandDef();

    /// "Layout": the form of the layout, as text; kOneView for the ordinary one.
    static const Vs::UniqueString* layoutArgumentName();
    static constexpr const wchar_t* kOneView = L"OneView";

    void onListSelectionChanged(Info* item) override;

protected:
    /// Whether there is a view to divide.
    bool onIsApplicable(CommandContext* context) const override;
    InputControl* onInputControl() override;
    void onUpdateInputControl(CommandContext* context) override;

private:
    OwnedList m_list;
};

class SplitViewLayoutCmd : public Vs::Implements<SplitViewLayoutCmd, SimpleCommand>
{
public:
    SplitViewLayoutCmd(SplitViewLayoutCmdDef* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
    ECommandType onCommandType() const override { return ECommandType::Nested; }
};

} // namespace Vu::Commands
