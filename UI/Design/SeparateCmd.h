#pragma once

#include "UI/Design/CommandRow.h"

namespace Vu::Design {

/// "SeparateCommand": dissolves the patterns that contain the components named by the text argument
/// "Objects", one path per line, or the selected ones. One step of undo.
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
