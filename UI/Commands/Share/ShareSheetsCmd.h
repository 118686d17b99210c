#pragma once

#include "UI/Base/Command/InputControl.h"
#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

#include <memory>
#include <vector>

namespace Vu::Commands {

/// Shares a picture of the active view: a list of the available ways, each of which runs the definition with
/// its identifier as "CmdId". CommandContext::pathArgumentName() names the picture's file, a PNG; without it
/// the picture goes to a folder that suits the way, under the document's name.
class ShareSheetsCmdDef : public RowDefinition<ShareSheetsCmdDef, CommandDefinition, IListControlHandler>
{
public:
    static const CommandRow kRow;
    ShareSheetsCmdDef();
    ~ShareSheetsCmdDef() override;

    /// "CmdId": the identifier of the way.
    static const Vs::UniqueString* cmdIdArgumentName();

    void onListSelectionChanged(Info* item) override;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    CommandBase* onCreateCommand(CommandContext* context) override;
    InputControl* onInputControl() override;
    void onUpdateInputControl(CommandContext* context) override;

private:
    std::vector<Info> m_items; ///< One for each way, in its place.
    std::unique_ptr<ListControl> m_list;
};

class ShareSheetsCmd : public Vs::Implements<ShareSheetsCmd, SimpleCommand>
{
public:
    ShareSheetsCmd(ShareSheetsCmdDef* definition, CommandContext* context);

protected:
    ECommandType onCommandType() const override { return ECommandType::Nested; }
    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
