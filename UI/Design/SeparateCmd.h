#pragma once

#include "UI/Base/Command/CommandDefinition.h"

namespace Vu::Design {

/// "SeparateCommand": takes the patterns apart to which the components belong that the text argument
/// "Objects" names, one path a line, or that are selected. One step of undo.
class SeparateCmdDef : public Vs::Implements<SeparateCmdDef, CommandDefinition>
{
public:
    SeparateCmdDef();
    static Info* info();
    static const Vs::UniqueString* objectsArgumentName();

protected:
    bool onIsApplicable(CommandContext* context) const override;
    CommandBase* onCreateCommand(CommandContext* context) override;
    bool onAddToContextMenu() override;
};

} // namespace Vu::Design
