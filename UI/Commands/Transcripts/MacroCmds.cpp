#include "UI/Commands/Transcripts/MacroCmds.h"

#include "Server/Base/ScriptDebugger.h"
#include "Server/Base/TranscriptMgr.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/InputControl.h"
#include "UI/Base/Program/Preferences.h"
#include "UI/Base/Session/RecentPaths.h"
#include "UI/Base/Session/SessionTranscriptingHelper.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Resources.h"
#include "UI/Commands/Shells/AreaCmds.h"
#include "UI/Commands/Transcripts/MacroForm.h"
#include "UI/Commands/Transcripts/Macros.h"

#include <algorithm>
#include <memory>
#include <tuple>

namespace Vu::Commands {

// clang-format off
constinit const CommandRow RecordMacroCmdDef::kRow = {.key = L"RecordMacroCommand", .title = "Record Macro...", .icon = &Resources::StartTranscripting, .groups = {&CommandGroup::BaseGroup}, .scriptable = false, .arguments = {L"Name"}};
constinit const CommandRow kPlayRow                = {.key = L"PlayMacroCommand", .title = "Play Macro", .icon = &Resources::ReplayTranscript};
constinit const CommandRow kRecentRow              = {.key = L"RecentMacrosCommand", .title = "Recent Macros"};
constinit const CommandRow kEditRow                = {.key = L"EditMacroCommand", .title = "Edit Macro"};
constinit const CommandRow kKeyRow                 = {.key = L"MacroKeyCommand", .title = "Assign Key to Macro"};
// clang-format on

namespace {

constexpr const wchar_t* kEmptyItem = L"noMacros";
constexpr size_t kMostRecent = 9;

std::vector<std::wstring> recentNames()
{
    std::vector<std::wstring> names;
    boost::system::error_code error;
    for (const RecentPaths::Entry& entry : RecentPaths::scripts().entries())
        if (const std::wstring name = Macros::nameOf(entry.path); !name.empty() && names.size() < kMostRecent)
            names.push_back(name);
    std::erase_if(names, [all = Macros::names()](const std::wstring& name) {
        return std::find(all.begin(), all.end(), name) == all.end();
    });
    return names;
}

void play(const std::wstring& name)
{
    Macros::command(name)->runByHand(ECommandAccessPoint::Toolbar);
}

void edit(const std::wstring& name)
{
    // While a script runs, the panel shows that one.
    std::ignore = Vs::ScriptDebugger::get()->load(Macros::fileOf(name).wstring());
    CommandDefinitionMgr::get()
        ->findCommandDefinitionById(ShowScriptPanelCmdDef::info()->key())
        ->runByHand(ECommandAccessPoint::Toolbar);
}

void chooseKey(const std::wstring& name)
{
    Preferences::show(Macros::command(name)->id());
}

/// Does nothing: the list is the command.
class MacroListCmd : public Vs::Implements<MacroListCmd, SimpleCommand>
{
public:
    MacroListCmd(CommandDefinition* definition, CommandContext* context) : Implements(definition, context)
    {
        repeatable(false);
    }

protected:
    void onExecute(Vs::Status&) override {}
};

} // namespace

const Vs::UniqueString* RecordMacroCmdDef::nameArgument()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Name", true);
    return name;
}

void RecordMacroCmdDef::onUpdateInputControl(CommandContext*)
{
    if (InputControl* control = inputControl())
        control->enabled(!Vs::TranscriptMgr::get()->recording());
}

RecordMacroCmd::RecordMacroCmd(CommandDefinition* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

void RecordMacroCmd::onExecute(Vs::Status& status)
{
    std::wstring name = commandContext()->argumentAsString(RecordMacroCmdDef::nameArgument());
    std::vector<MacroForm::Field> fields = {{localized("MacroName", "Name"), name, true}};
    const auto check = [](const std::vector<MacroForm::Field>& given) {
        return Macros::whyNoName(given.front().value);
    };
    if (name.empty() && !MacroForm::ask(localized("MacroRecord", "Record a Macro"), fields, check))
        return;
    name = fields.front().value;
    if (const std::wstring why = Macros::whyNoName(name); !why.empty()) {
        status.addError(why);
        return;
    }
    Macros::folder(true);
    const std::wstring file = Macros::fileOf(name).wstring();
    SessionTranscriptingHelper::get()->nextStartsAnywhere(true);
    const bool started =
        Vs::TranscriptMgr::get()->startRecording(file, Vs::TranscriptMgr::typeOf(file), status);
    SessionTranscriptingHelper::get()->nextStartsAnywhere(false);
    if (!started)
        return;
    RecentPaths::scripts().add(file);
    Macros::command(name);
}

MacroListCmdDef::MacroListCmdDef(Info* info, Names names, Choose choose)
    : Implements(info), m_names(names), m_choose(choose)
{
    joinCommandGroup(CommandGroup::BaseGroup());
    scriptable(false);
}

MacroListCmdDef::~MacroListCmdDef() = default;

InputControl* MacroListCmdDef::onInputControl()
{
    if (!m_list.control()) {
        m_list.make(info(), this);
        refresh();
    }
    return m_list.control();
}

void MacroListCmdDef::onUpdateInputControl(CommandContext* context)
{
    CommandDefinition::onUpdateInputControl(context);
    refresh();
}

void MacroListCmdDef::refresh()
{
    if (!m_list.control())
        return;
    OwnedList::Items items;
    for (const std::wstring& name : m_names())
        items.push_back(std::make_unique<Info>(name, name, nullptr));
    if (items.empty())
        items.push_back(std::make_unique<Info>(kEmptyItem, localized("noMacros", "No Macros"), nullptr));
    m_list.items(std::move(items));
}

void MacroListCmdDef::onListSelectionChanged(Info* item)
{
    if (item && item->key() != kEmptyItem)
        m_choose(std::wstring(item->key()));
}

CommandBase* MacroListCmdDef::onCreateCommand(CommandContext* context)
{
    return new MacroListCmd(this, context);
}

void createMacroCommandDefs()
{
    static Info playInfo = makeInfo(kPlayRow), recentInfo = makeInfo(kRecentRow),
                editInfo = makeInfo(kEditRow), keyInfo = makeInfo(kKeyRow);
    static RecordMacroCmdDef record;
    static MacroListCmdDef play(&playInfo, &Macros::names, &Commands::play);
    static MacroListCmdDef recent(&recentInfo, &recentNames, &Commands::play);
    static MacroListCmdDef edit(&editInfo, &Macros::names, &Commands::edit);
    static MacroListCmdDef key(&keyInfo, &Macros::names, &Commands::chooseKey);
}

} // namespace Vu::Commands
