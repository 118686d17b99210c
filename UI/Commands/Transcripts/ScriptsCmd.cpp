#include "UI/Commands/Transcripts/ScriptsCmd.h"

#include "Server/Base/OS.h"
#include "Server/Base/PathInfo.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Resources.h"
#include "UI/Commands/Transcripts/RunScriptCmd.h"

#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <tuple>
#include <vector>

namespace Vu::Commands {

// clang-format off
constinit const CommandRow ScriptsCmdDef::kRow = {
    .key = L"ScriptsCommand", .title = "Scripts", .icon = &Resources::RunScript,
    .groups = {&CommandGroup::BaseGroup}, .readonly = true};
// clang-format on

namespace {

namespace fs = boost::filesystem;

constexpr const wchar_t* kFolderItem = L"openScriptsFolder";
/// Scripts beyond these have better places than a menu.
constexpr size_t kMostScripts = 60;

/// The scripts of the user's folder and of its folders, but for those that run by themselves and helpers of
/// others.
std::vector<fs::path> scriptsOf(const fs::path& folder)
{
    std::vector<fs::path> found;
    boost::system::error_code error;
    for (fs::recursive_directory_iterator each(folder, error), end; !error && each != end;
         each.increment(error)) {
        const fs::path& path = each->path();
        const std::wstring name = path.filename().wstring();
        const bool isHelper = name.starts_with(L'_') || name.starts_with(L'.');
        boost::system::error_code ignored;
        if (fs::is_directory(path, ignored)) {
            if (isHelper || name == L"autorun" || each.depth() >= 2)
                each.disable_recursion_pending();
        } else if (!isHelper && path.extension() == ".py" && fs::is_regular_file(path, ignored)) {
            found.push_back(path);
        }
    }
    std::sort(found.begin(), found.end());
    found.resize(std::min(found.size(), kMostScripts));
    return found;
}

std::unique_ptr<Info> separator()
{
    return std::make_unique<Info>(ListControl::kSeparator, ListControl::kSeparator, nullptr);
}

} // namespace

void ScriptsCmdDef::createCommandDef()
{
    static ScriptsCmdDef definition;
}

InputControl* ScriptsCmdDef::onInputControl()
{
    if (!m_list.control()) {
        m_list.make(info(), this);
        refresh();
    }
    return m_list.control();
}

void ScriptsCmdDef::onUpdateInputControl(CommandContext* context)
{
    CommandDefinition::onUpdateInputControl(context);
    refresh();
}

void ScriptsCmdDef::refresh()
{
    if (!m_list.control())
        return;
    OwnedList::Items items;
    for (const CommandDefinition* command :
         CommandDefinitionMgr::get()->commandDefinitionsOfGroup(CommandGroup::ScriptGroup()))
        items.push_back(
            std::make_unique<Info>(command->id(), command->info()->name(), command->info()->icon()));
    const fs::path folder = Vs::PathInfo::scriptsDirectory(false);
    const std::vector<fs::path> scripts = scriptsOf(folder);
    if (!items.empty() && !scripts.empty())
        items.push_back(separator());
    for (const fs::path& script : scripts)
        items.push_back(std::make_unique<Info>(
            script.wstring(), script.lexically_relative(folder).replace_extension().wstring(), nullptr));
    if (!items.empty())
        items.push_back(separator());
    items.push_back(std::make_unique<Info>(
        kFolderItem, localized("openScriptsFolder", "Open the Folder of Scripts"), nullptr));
    m_list.items(std::move(items));
}

void ScriptsCmdDef::onListSelectionChanged(Info* item)
{
    if (!item)
        return;
    const std::wstring key = item->key();
    if (key == kFolderItem) {
        std::ignore = Vs::OS::platformShellOpen(Vs::PathInfo::scriptsDirectory(true).wstring());
        return;
    }
    if (CommandDefinition* command = CommandDefinitionMgr::get()->findCommandDefinitionById(key)) {
        command->runByHand(ECommandAccessPoint::Toolbar);
        return;
    }
    CommandContext context = CommandContext::activeContext();
    context.addArgument(CommandContext::pathArgumentName(), key);
    if (CommandDefinition* run =
            CommandDefinitionMgr::get()->findCommandDefinitionById(RunScriptCmdDef::info()->key()))
        run->executeLater(context);
}

ScriptsCmd::ScriptsCmd(ScriptsCmdDef* definition, CommandContext* context) : Implements(definition, context)
{
    repeatable(false);
}

} // namespace Vu::Commands
