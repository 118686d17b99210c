#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

namespace Vu::Commands {

class ShowOrbiconCmd;

/// Shows the orbicon, the cube that shows how the model is turned.
class ShowOrbiconCmdDef : public CommandRowDefinition<ShowOrbiconCmdDef, ShowOrbiconCmd>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
};

class HideOrbiconCmd;

/// Hides it.
class HideOrbiconCmdDef : public CommandRowDefinition<HideOrbiconCmdDef, HideOrbiconCmd>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
};

class ShowOrbiconCmd : public Vs::Implements<ShowOrbiconCmd, SimpleCommand>
{
public:
    ShowOrbiconCmd(ShowOrbiconCmdDef* definition, CommandContext* context);

protected:
    ECommandType onCommandType() const override;
    void onExecute(Vs::Status& status) override;
};

class HideOrbiconCmd : public Vs::Implements<HideOrbiconCmd, SimpleCommand>
{
public:
    HideOrbiconCmd(HideOrbiconCmdDef* definition, CommandContext* context);

protected:
    ECommandType onCommandType() const override;
    void onExecute(Vs::Status& status) override;
};

class ViewWidgetCmd;

/// The head of the view menu: gives the menu its title and picture, and does nothing by itself.
class ViewWidgetCmdDef : public CommandRowDefinition<ViewWidgetCmdDef, ViewWidgetCmd>
{
public:
    static const CommandRow kRow;
};

class ViewWidgetCmd : public Vs::Implements<ViewWidgetCmd, SimpleCommand>
{
public:
    ViewWidgetCmd(ViewWidgetCmdDef* definition, CommandContext* context);

protected:
    ECommandType onCommandType() const override;
    void onExecute(Vs::Status&) override {}
};

} // namespace Vu::Commands
