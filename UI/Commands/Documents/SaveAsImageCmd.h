#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

namespace Vu::Commands {

class SaveAsImageCmd;

/// Renders the active view to a PNG, JPEG or TIFF file.
class SaveAsImageCmdDef : public CommandRowDefinition<SaveAsImageCmdDef, SaveAsImageCmd>
{
public:
    static const CommandRow kRow;

    /// "Width" and "Height": integers, in pixels. If either is given, no dialog is shown, and the other one
    /// is taken from the view.
    static const Vs::UniqueString* widthArgumentName();
    static const Vs::UniqueString* heightArgumentName();
    /// "Transparent" and "AntiAliasing": integers, 0 or 1.
    static const Vs::UniqueString* transparentArgumentName();
    static const Vs::UniqueString* antiAliasingArgumentName();
    /// "AsShown": 1 for a picture with all that the view shows, of its size unless another one is given.
    static const Vs::UniqueString* asShownArgumentName();

protected:
    bool onIsApplicable(CommandContext* context) const override;
};

class SaveAsImageCmd : public Vs::Implements<SaveAsImageCmd, SimpleCommand>
{
public:
    SaveAsImageCmd(SaveAsImageCmdDef* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
