#include "UI/Commands/Transcripts/Macros.h"

#include "Server/Base/PathInfo.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandMgr.h"
#include "UI/Base/Command/AlertController.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandGroup.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Session/RecentPaths.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Resources.h"
#include "UI/Commands/Transcripts/MacroForm.h"

#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <map>
#include <memory>

namespace Vu::Commands {
namespace {

namespace fs = boost::filesystem;

constexpr const char* kSuffix = ".txt";
/// Every run has it.
constexpr const char* kOut = "out";

std::wstring keyOf(const std::wstring& name)
{
    return L"Macro." + name;
}

class MacroCmd;

class MacroCmdDef : public Vs::Implements<MacroCmdDef, CommandDefinition>
{
public:
    MacroCmdDef(Info* info, std::wstring name) : Implements(info), m_name(std::move(name))
    {
        joinCommandGroup(CommandGroup::BaseGroup());
        // What it plays is recorded as one line.
        scriptable(false);
    }
    const std::wstring& name() const { return m_name; }

protected:
    bool onIsApplicable(CommandContext*) const override { return isThere(); }
    bool onIsVisible(CommandContext*) const override { return isThere(); }
    CommandBase* onCreateCommand(CommandContext* context) override;

private:
    bool isThere() const
    {
        boost::system::error_code error;
        return fs::exists(Macros::fileOf(m_name), error);
    }

    std::wstring m_name;
};

class MacroCmd : public Vs::Implements<MacroCmd, SimpleCommand>
{
public:
    MacroCmd(MacroCmdDef* definition, CommandContext* context)
        : Implements(definition, context), m_name(definition->name())
    {
    }

protected:
    void onExecute(Vs::Status&) override
    {
        // What it plays are commands of their own, which must find this one ended.
        Application::get()->deferredTasks()->post([name = m_name] {
            Vs::TranscriptParameters parameters;
            std::vector<MacroForm::Field> fields;
            for (const Vs::NamedParameter& each : Macros::parametersOf(name))
                fields.push_back({Vs::Strings::widen(each.name), each.otherwise, each.isRequired});
            if (!fields.empty() && !MacroForm::ask(name, fields))
                return;
            for (const MacroForm::Field& field : fields)
                parameters[Vs::Strings::narrow(field.name)] = Vs::Strings::toBytes(field.value);
            Macros::play(name, parameters);
        });
    }

private:
    std::wstring m_name;
};

CommandBase* MacroCmdDef::onCreateCommand(CommandContext* context)
{
    return new MacroCmd(this, context);
}

struct Known
{
    std::unique_ptr<Info> info;
    std::unique_ptr<MacroCmdDef> definition;
};

} // namespace

fs::path Macros::folder(bool create)
{
    fs::path folder = Vs::PathInfo::scriptsDirectory(create) / "macros";
    boost::system::error_code error;
    if (create)
        fs::create_directory(folder, error);
    return folder;
}

std::vector<std::wstring> Macros::names()
{
    std::vector<std::wstring> found;
    boost::system::error_code error;
    for (fs::directory_iterator each(folder(false), error), end; !error && each != end; each.increment(error))
        if (const std::wstring name = nameOf(each->path()); !name.empty())
            found.push_back(name);
    std::sort(found.begin(), found.end());
    return found;
}

fs::path Macros::fileOf(const std::wstring& name)
{
    return folder(false) / (name + Vs::Strings::widen(kSuffix));
}

std::wstring Macros::nameOf(const fs::path& file)
{
    const std::wstring name = file.stem().wstring();
    return file.extension() == kSuffix && file.parent_path() == folder(false) && !name.starts_with(L'.')
               ? name
               : std::wstring();
}

std::wstring Macros::whyNoName(const std::wstring& name)
{
    if (name.empty())
        return localized("MacroNameMissing", "A macro needs a name.");
    if (name.find_first_of(L"/\\\"=;") != std::wstring::npos || name.front() == L'.')
        return localizedFormat("MacroNameLetters", "\"%1%\" can't be the name of a macro.", name);
    boost::system::error_code error;
    if (fs::exists(fileOf(name), error))
        return localizedFormat("MacroNameTaken", "There is a macro \"%1%\" already.", name);
    return {};
}

std::vector<Vs::NamedParameter> Macros::parametersOf(const std::wstring& name)
{
    std::vector<Vs::NamedParameter> all;
    fs::ifstream stream(fileOf(name), std::ios::binary);
    for (std::string line; std::getline(stream, line);) {
        if (line.starts_with('#'))
            continue;
        for (Vs::NamedParameter& each : Vs::parametersIn(Vs::Strings::fromBytes(line))) {
            const auto known = std::find_if(all.begin(), all.end(), [&](const Vs::NamedParameter& other) {
                return other.name == each.name;
            });
            if (each.name == kOut)
                continue;
            if (known == all.end())
                all.push_back(std::move(each));
            else if (known->isRequired)
                *known = std::move(each);
        }
    }
    return all;
}

CommandDefinition* Macros::command(const std::wstring& name)
{
    // Never destroyed: whatever lists commands may ask for them until the process ends.
    static auto& known = *new std::map<std::wstring, Known>;
    Known& own = known[name];
    if (!own.definition) {
        own.info = std::make_unique<Info>(
            keyOf(name), localizedFormat("MacroTitle", "Macro %1%", name), Resources::ReplayTranscript(),
            ToolTipInfo(localizedFormat("MacroTooltip", "Play the macro \"%1%\"", name)));
        own.definition = std::make_unique<MacroCmdDef>(own.info.get(), name);
    }
    return own.definition.get();
}

void Macros::defineAll()
{
    for (const std::wstring& name : names())
        command(name);
}

void Macros::play(const std::wstring& name, const Vs::TranscriptParameters& parameters)
{
    const std::wstring file = fileOf(name).wstring();
    RecentPaths::scripts().add(file);
    std::wstring line = L"Transcripting.Replay " + Vs::Strings::quote(file);
    for (const auto& [parameter, value] : parameters)
        line += L' ' + Vs::Strings::quote(Vs::Strings::fromBytes(parameter + '=' + value));
    const Vs::TextCommandResult result = Vs::TextCommandMgr::get()->executeCommandWithoutOutput(line);
    if (result.first != 0)
        CommandMgr::get()->GetAlertController()->addAlert(EAlertSeverity::Error, result.second);
}

} // namespace Vu::Commands
