#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

namespace Vu::Commands {

/// Writes the active asset as STL.
class ExportCmdDef : public RowDefinition<ExportCmdDef>
{
public:
    static const CommandRow kRow;

    /// "CombineObjects": an integer, non-zero to write all bodies as one mesh.
    static const Vs::UniqueString* combineObjectsArgumentName();
    /// "Tesselletion": an integer, 1 coarse, 2 medium, 3 (the default) as fine as the view.
    static const Vs::UniqueString* tessellationArgumentName();

protected:
    bool onIsApplicable(CommandContext* context) const override;
    bool onIsVisible(CommandContext* context) const override;
    CommandBase* onCreateCommand(CommandContext* context) override;
};

class ExportCmd : public Vs::Implements<ExportCmd, SimpleCommand>
{
protected:
    friend class ExportCmdDef;
    ExportCmd(ExportCmdDef* definition, CommandContext* context);

    void onExecute(Vs::Status& status) override;
    void onEnd(ETerminationReason reason) override;

private:
    bool m_refused = false; ///< The user was told in a box, after which the command ends like any other.
};

/// Writes the active asset in an exchange format of the user's choice.
class ExportAsCmdDef : public RowDefinition<ExportAsCmdDef>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    bool onIsVisible(CommandContext* context) const override;
    CommandBase* onCreateCommand(CommandContext* context) override;
};

class ExportAsCmd : public Vs::Implements<ExportAsCmd, SimpleCommand>
{
protected:
    friend class ExportAsCmdDef;
    ExportAsCmd(ExportAsCmdDef* definition, CommandContext* context);

    void onExecute(Vs::Status& status) override;
    void onEnd(ETerminationReason reason) override;

private:
    bool m_refused = false; ///< The user was told in a box, after which the command ends like any other.
};

} // namespace Vu::Commands
