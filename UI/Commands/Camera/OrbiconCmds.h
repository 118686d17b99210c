#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

namespace Vu::Commands {

/// Shows the orbicon, the cube that tells how the model is turned.
class ShowOrbiconCmdDef : public RowDefinition<ShowOrbiconCmdDef>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    CommandBase* onCreateCommand(CommandContext* context) override;
};

/// Hides it.
class HideOrbiconCmdDef : public RowDefinition<HideOrbiconCmdDef>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    CommandBase* onCreateCommand(CommandContext* context) override;
};

class ShowOrbiconCmd : public Vs::Implements<ShowOrbiconCmd, SimpleCommand>
{
protected:
    friend class ShowOrbiconCmdDef;
    ShowOrbiconCmd(ShowOrbiconCmdDef* definition, CommandContext* context);

    ECommandType onCommandType() const override;
    void onExecute(Vs::Status& status) override;
};

class HideOrbiconCmd : public Vs::Implements<HideOrbiconCmd, SimpleCommand>
{
protected:
    friend class HideOrbiconCmdDef;
    HideOrbiconCmd(HideOrbiconCmdDef* definition, CommandContext* context);

    ECommandType onCommandType() const override;
    void onExecute(Vs::Status& status) override;
};

/// The head of the view menu: gives the menu its title and picture, and does nothing by itself.
class ViewWidgetCmdDef : public RowDefinition<ViewWidgetCmdDef>
{
public:
    static const CommandRow kRow;

protected:
    CommandBase* onCreateCommand(CommandContext* context) override;
};

class ViewWidgetCmd : public Vs::Implements<ViewWidgetCmd, SimpleCommand>
{
protected:
    friend class ViewWidgetCmdDef;
    ViewWidgetCmd(ViewWidgetCmdDef* definition, CommandContext* context);

    ECommandType onCommandType() const override;
    void onExecute(Vs::Status&) override {}
};

} // namespace Vu::Commands
