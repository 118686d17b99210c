#pragma once

#include "Server/DataModel/Selection/Selection.h"
#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

#include <vector>

namespace Vu::Commands {

class CutCmd;

/// Puts the selection on the clipboard, to be moved from its place when it is pasted.
class CutCmdDef : public CommandRowDefinition<CutCmdDef, CutCmd>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    /// Whether the whole selection can be cut.
    bool onAddToContextMenu() override;
};

class CutCmd : public Vs::Implements<CutCmd, SimpleCommand>
{
public:
    using Implements::Implements;

protected:
    ECommandType onCommandType() const override { return ECommandType::Nested; }
    void onExecute(Vs::Status& status) override;
};

class CopyToClipboardCmd;

/// Puts the selection on the clipboard and, in a window, a picture of the view on the desktop's clipboard for
/// other programs.
class CopyToClipboardCmdDef : public CommandRowDefinition<CopyToClipboardCmdDef, CopyToClipboardCmd>
{
public:
    static const CommandRow kRow;

    /// Creates the only definition of this class at the first call. It isn't among the add-in's members.
    static void createCommandDef();

protected:
    bool onIsApplicable(CommandContext* context) const override;
    bool onAddToContextMenu() override { return true; }
};

class CopyToClipboardCmd : public Vs::Implements<CopyToClipboardCmd, SimpleCommand>
{
public:
    using Implements::Implements;

protected:
    ECommandType onCommandType() const override { return ECommandType::Nested; }
    void onExecute(Vs::Status& status) override;
};

class PasteCmd;

/// Pastes the clipboard into the active asset and selects the result. What was cut is removed from its
/// original place, in a separate step if that is another asset, and can be pasted once.
class PasteCmdDef : public CommandRowDefinition<PasteCmdDef, PasteCmd>
{
public:
    static const CommandRow kRow;

    /// Creates the only definition of this class at the first call. It isn't among the add-in's members.
    static void createCommandDef();

protected:
    bool onIsApplicable(CommandContext* context) const override;
    bool onAddToContextMenu() override { return true; }
};

class PasteCmd : public Vs::Implements<PasteCmd, SimpleCommand>
{
public:
    using Implements::Implements;

protected:
    void onExecute(Vs::Status& status) override;

private:
    using Objects = std::vector<Vs::StrongRef<Vs::LogicalSelection>>;

    std::vector<Vs::StrongRef<Vs::Selection>> paste(Objects objects, bool cut, Vs::Status& status);
    void deleteFrom(Objects objects, Vs::Status& status);
};

} // namespace Vu::Commands
