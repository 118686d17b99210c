#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/TextRows.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Selection/SelectCmd.h"

namespace Vu::Commands {
namespace {

constexpr DirectTextRow kRow = {L"Transcripting",
                                L"RecordSelectMouseEvent",
                                L"[/on][/off] Record the mouse event while the selcet command is activated.",
                                "",
                                false,
                                false};

/// Only the flag switches it on, in upper case or, as in the help, lower case.
class TextCmdTranscriptingRecordSelectMouseEvent : public DirectTextCommand<kRow>
{
public:
    Vs::TextCommandResult execute(const Vs::TextCommandParameters& parameters) override
    {
        auto* definition = Vs::cast<SelectCmdDef>(
            CommandDefinitionMgr::get()->findCommandDefinitionById(SelectCmdDef::info()->key()));
        if (!definition)
            return {1, localized("SelectCommandMissing", "Cannot find the select command definition.")};
        definition->recordMouseEvent(parameters.hasFlag(L"On") || parameters.hasFlag(L"on"));
        return {0, definition->recordMouseEvent()
                       ? localized("RecordSelectMouse", "Record mouse events of select command.")
                       : localized("NotRecordSelectMouse", "Not record mouse events of select command.")};
    }
};

TextCmdTranscriptingRecordSelectMouseEvent kCommand;

} // namespace
} // namespace Vu::Commands
