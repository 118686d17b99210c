#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

namespace Vu::Commands {

/// Renders the active view to a PNG, JPEG or TIFF file.
class SaveAsImageCmdDef : public RowDefinition<SaveAsImageCmdDef>
{
public:
    static const CommandRow kRow;

    /// "Width" and "Height": integers, in pixels. With one of them no dialog is shown; the other one then is
    /// that of the view.
    static const Vs::UniqueString* widthArgumentName();
    static const Vs::UniqueString* heightArgumentName();
    /// "Transparent" and "AntiAliasing": integers, 0 or 1.
    static const Vs::UniqueString* transparentArgumentName();
    static const Vs::UniqueString* antiAliasingArgumentName();

protected:
    bool onIsApplicable(CommandContext* context) const override;
    CommandBase* onCreateCommand(CommandContext* context) override;
};

class SaveAsImageCmd : public Vs::Implements<SaveAsImageCmd, SimpleCommand>
{
protected:
    friend class SaveAsImageCmdDef;
    SaveAsImageCmd(SaveAsImageCmdDef* definition, CommandContext* context);

    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
