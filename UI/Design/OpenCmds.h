#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Design/CommandRow.h"

namespace Vu::Design {

/// Opens a native or foreign file as a document and shows it. Open documents stay open.
class VeloraOpenDocumentCmdDef : public RowDefinition<VeloraOpenDocumentCmdDef>
{
public:
    static const CommandRow kRow;
    /// Whether a damaged file is refused, rather than read as far as it is intact.
    static const Vs::UniqueString* strictArgumentName();

protected:
    bool onIsApplicable(CommandContext* context) const override;
    CommandBase* onCreateCommand(CommandContext* context) override;
};

class VeloraOpenDocumentCmd : public Vs::Implements<VeloraOpenDocumentCmd, SimpleCommand>
{
protected:
    friend class VeloraOpenDocumentCmdDef;
    VeloraOpenDocumentCmd(VeloraOpenDocumentCmdDef* definition, CommandContext* context);

    void onExecute(Vs::Status& status) override;
};

/// Inserts the parts of a foreign file into the active design.
class VeloraImportCmdDef : public RowDefinition<VeloraImportCmdDef>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    CommandBase* onCreateCommand(CommandContext* context) override;
};

class VeloraImportCmd : public Vs::Implements<VeloraImportCmd, SimpleCommand>
{
protected:
    friend class VeloraImportCmdDef;
    VeloraImportCmd(VeloraImportCmdDef* definition, CommandContext* context);

    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Design
