#include "UI/Base/Script/ScriptedCommands.h"

#include "Server/Base/Exception.h"
#include "Server/Base/ResourceMgr.h"
#include "Server/Base/TranscriptMgr.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/CommandGroup.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Base/Command/TranscriptedCommandTextCommand.h"
#include "UI/Base/Program/Application.h"

#include <map>
#include <memory>
#include <utility>

namespace Vu {

namespace {

constexpr const wchar_t* kArea = L"Scripts";

/// Runs the function once the command is over, so that it can run commands itself.
void runLater(const std::wstring& title, const std::function<void()>& run)
{
    Application::get()->deferredTasks()->post([title, run] {
        // A recording has the command's own line.
        const Vs::TranscriptMgr::Unrecorded unrecorded;
        const Vs::TranscriptMgr::Run script;
        try {
            run();
        } catch (const Vs::Exception& error) {
            Vs::TranscriptMgr::get()->lineFails(title + L": " + error.message());
        }
    });
}

class ScriptedCommandDef;

class ScriptedCommand : public Vs::Implements<ScriptedCommand, SimpleCommand>
{
public:
    ScriptedCommand(ScriptedCommandDef* definition, CommandContext* context);
    void onExecute(Vs::Status& status) override;

private:
    std::wstring m_title;
    std::function<void()> m_run;
};

class ScriptedCommandDef : public Vs::Implements<ScriptedCommandDef, CommandDefinition>
{
public:
    explicit ScriptedCommandDef(Info* info) : Implements(info)
    {
        joinCommandGroup(CommandGroup::ScriptGroup());
    }

    std::function<void()> run;

protected:
    CommandBase* onCreateCommand(CommandContext* context) override
    {
        return new ScriptedCommand(this, context);
    }
};

ScriptedCommand::ScriptedCommand(ScriptedCommandDef* definition, CommandContext* context)
    : Implements(definition, context), m_title(definition->info()->name()), m_run(definition->run)
{
}

void ScriptedCommand::onExecute(Vs::Status&)
{
    runLater(m_title, m_run);
}

class ScriptsArea : public Vs::TextCommandSubjectArea
{
public:
    ScriptsArea() : TextCommandSubjectArea(kArea, L"Commands that scripts bring", false) {}
    Checks checks() const override { return Checks::Everything; }
    Vs::PythonModuleInit pythonEntry() override { return nullptr; }
};

class ScriptedLine : public TranscriptedCommandTextCommand
{
public:
    ScriptedLine(const std::wstring& name, const std::wstring& help, const std::wstring& key)
        : TranscriptedCommandTextCommand(kArea, name, help, "", false, key)
    {
    }
    Vs::PythonFunction pythonEntry() override { return nullptr; }
};

struct Known
{
    std::unique_ptr<Info> info;
    std::unique_ptr<ScriptedCommandDef> definition;
    std::unique_ptr<ScriptedLine> line;
};

/// A picture has one record, which the window uses as the key for what it has read of it.
Vs::ImageSetResource* iconAt(const std::wstring& path)
{
    static auto& known = *new std::map<std::wstring, Vs::ImageSetResource>;
    return path.empty() ? nullptr : &known.try_emplace(path, path).first->second;
}

} // namespace

void ScriptedCommands::define(Vs::ScriptModel::Command command)
{
    // Never destroyed: whatever lists commands may ask for them until the process ends.
    static auto& known = *new std::map<std::wstring, Known>;
    static const auto* const area = new ScriptsArea;
    static_cast<void>(area);
    Known& own = known[command.name];
    if (!own.definition) {
        const std::wstring key = L"Script." + command.name;
        if (CommandDefinitionMgr::get()->findCommandDefinitionById(key))
            throw Vs::Exception(
                localizedFormat("ScriptCommandTaken", "There is a command \"%1%\" already.", key));
        own.info = std::make_unique<Info>(key, command.title, nullptr, ToolTipInfo(command.description),
                                          command.key, HotKeyBinding::EHotKeyMode::Standard);
        own.definition = std::make_unique<ScriptedCommandDef>(own.info.get());
        own.line = std::make_unique<ScriptedLine>(command.name, command.description, key);
    }
    own.info->changeAppearance(command.title, iconAt(command.icon));
    own.info->tooltip(ToolTipInfo(command.description));
    own.definition->run = std::move(command.run);
}

} // namespace Vu
