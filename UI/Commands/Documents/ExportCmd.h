#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

namespace Vu::Commands {

class ExportCmd;

/// Writes the active asset as STL.
class ExportCmdDef : public CommandRowDefinition<ExportCmdDef, ExportCmd>
{
public:
    static const CommandRow kRow;

    /// "CombineObjects": an integer; non-zero writes all bodies as one mesh.
    static const Vs::UniqueString* combineObjectsArgumentName();
    /// "Tesselletion": an integer; 1 coarse, 2 medium, 3 (the default) as fine as the view.
    static const Vs::UniqueString* tessellationArgumentName();

protected:
    bool onIsApplicable(CommandContext* context) const override;
    bool onIsVisible(CommandContext* context) const override;
};

class ExportCmd : public Vs::Implements<ExportCmd, SimpleCommand>
{
public:
    ExportCmd(ExportCmdDef* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
    void onEnd(ETerminationReason reason) override;

private:
    bool m_refused = false; ///< A message box has told the user, and the command ends like any other.
};

class ExportAsCmd;

/// Writes the active asset in an exchange format of the user's choice.
class ExportAsCmdDef : public CommandRowDefinition<ExportAsCmdDef, ExportAsCmd>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    bool onIsVisible(CommandContext* context) const override;
};

class ExportAsCmd : public Vs::Implements<ExportAsCmd, SimpleCommand>
{
public:
    ExportAsCmd(ExportAsCmdDef* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
    void onEnd(ETerminationReason reason) override;

private:
    bool m_refused = false; ///< A message box has told the user, and the command ends like any other.
};

} // namespace Vu::Commands
