#pragma once

#include "UI/Design/CommandRow.h"

namespace Vu::Design {

/// "SeparateCommand": takes the patterns apart to which the components belong that the text argument
/// "Objects" names, one path a line, or that are selected. One step of undo.
class SeparateCmdDef : public RowDefinition<SeparateCmdDef>
{
public:
    static const CommandRow kRow;
    static const Vs::UniqueString* objectsArgumentName();

protected:
    bool onIsApplicable(CommandContext* context) const override;
    CommandBase* onCreateCommand(CommandContext* context) override;
    bool onAddToContextMenu() override;
};

} // namespace Vu::Design
