#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

namespace Vu::Commands {

class PrintCmd;

/// Prints the active view on a printer, or into a PDF file. Asks with a preview, unless an argument says
/// where.
class PrintCmdDef : public CommandRowDefinition<PrintCmdDef, PrintCmd>
{
public:
    static const CommandRow kRow;

    /// The name of a printer; the usual path argument names a PDF file instead.
    static const Vs::UniqueString* printerArgumentName();
    /// "Print": "View", "Model" or "Drawing"; "View" if it isn't given.
    static const Vs::UniqueString* whatArgumentName();
    /// The name of a Paper; A4 if it isn't given.
    static const Vs::UniqueString* paperArgumentName();
    /// 1 to print upright.
    static const Vs::UniqueString* portraitArgumentName();
    /// Around a picture, in millimetres.
    static const Vs::UniqueString* marginArgumentName();

protected:
    bool onIsApplicable(CommandContext* context) const override;
};

class PrintCmd : public Vs::Implements<PrintCmd, SimpleCommand>
{
public:
    PrintCmd(PrintCmdDef* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
