#pragma once

#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/SimpleCommand.h"

namespace Vu::Design {

/// Writes the active design as a file of any format that a translator writes; the name's suffix chooses.
class VeloraExportCmdDef : public Vs::Implements<VeloraExportCmdDef, CommandDefinition>
{
public:
    static constexpr const wchar_t* kKey = L"VeloraExportCommand";

    VeloraExportCmdDef();
    static Info* info();

    /// Integers, all optional. Non-zero: all parts are written as one.
    static const Vs::UniqueString* combineArgumentName();
    /// Non-zero: lengths are written in the unit in which they are shown, where the format has any choice.
    static const Vs::UniqueString* displayUnitArgumentName();
    /// A text: the four numbers of Vs::TranslatorRefinement, separated by commas; what is left out at the end
    /// stays as usual.
    static const Vs::UniqueString* refinementArgumentName();

protected:
    bool onIsApplicable(CommandContext* context) const override;
    CommandBase* onCreateCommand(CommandContext* context) override;
};

class VeloraExportCmd : public Vs::Implements<VeloraExportCmd, SimpleCommand>
{
protected:
    friend class VeloraExportCmdDef;
    VeloraExportCmd(VeloraExportCmdDef* definition, CommandContext* context);

    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Design
