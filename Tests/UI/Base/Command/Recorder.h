#pragma once

#include "Server/Base/Task.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/InteractiveCommandBase.h"
#include "UI/Base/Command/Private/CommandHost.h"
#include "UI/Base/Command/SimpleCommand.h"

#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace CommandTest {

/// The calls to the commands of a test, in order, as one text.
class Log
{
public:
    void add(const std::string& entry);
    /// The entries since the last call, separated by blanks.
    std::string take();

private:
    std::string m_text;
};

/// Describes a command of a test, and is its definition. Additional behaviour of its commands' functions goes
/// into `during`, under the function's name.
class Definition : public Vs::Implements<Definition, Vu::CommandDefinition>
{
public:
    using Action = std::function<void(Vu::CommandBase&, Vs::Status&)>;

    Definition(Log& log, const std::string& name, bool interactive);
    /// Ends its commands, which refer to it.
    ~Definition() override;

    Definition& type(Vu::ECommandType type);
    Definition& stacking(Vu::EStackingBehavior behavior, const Vs::UniqueString* category = nullptr);
    Definition& repeatable(bool value);
    using CommandDefinition::joinCommandGroup;
    using CommandDefinition::readonly;

    std::map<std::string, Action> during;
    std::function<bool(Vu::CommandContext*)> applicable;
    bool visible = true;
    bool refuses = false;
    bool letsNestedRun = true;
    /// The present number of commands, and the latest one.
    int alive = 0;
    std::vector<Vu::CommandBase*> commands;
    Vu::CommandBase* latest = nullptr;

    Vu::ECommandType commandType = Vu::ECommandType::Exclusive;
    Vu::EStackingBehavior behavior = Vu::EStackingBehavior::ByType;
    const Vs::UniqueString* category = nullptr;
    bool isRepeatable = true;

    std::wstring environment;

    void called(Vu::CommandBase& command, const std::string& function, Vs::Status& status);

protected:
    bool onIsApplicable(Vu::CommandContext* context) const override;
    bool onIsVisible(Vu::CommandContext*) const override { return visible; }
    std::wstring onPreferredEnvironment() override { return environment; }
    Vu::CommandBase* onCreateCommand(Vu::CommandContext* context) override;

private:
    Definition(Log& log, const std::string& name, bool interactive, std::unique_ptr<Vu::Info> info);

    std::unique_ptr<Vu::Info> m_info;
    Log& m_log;
    std::string m_name;
    bool m_interactive;
};

/// A host with a queue for deferred work, and bare sessions.
class Host : public Vu::CommandHost
{
public:
    Host() : m_before(install(this)) {}
    ~Host() override { install(m_before); }

    /// A separate session for each number; only its address matters.
    static Vu::AssetSession* session(int number);

    Vu::AssetSession* active = nullptr;
    std::map<Vu::AssetSession*, Vu::CommandMgr*> managers;
    Vs::Tasks tasks;
    /// The asset of every session.
    Vs::Asset* assetOfSessions = nullptr;
    std::wstring environment;

    Vu::AssetSession* activeAssetSession() override { return active; }
    Vu::CommandMgr* commandManager(Vu::AssetSession* session) override
    {
        const auto found = managers.find(session);
        return found == managers.end() ? nullptr : found->second;
    }
    Vs::Asset* asset(const Vu::AssetSession*) override { return assetOfSessions; }
    void activateEnvironment(Vu::AssetSession*, const std::wstring& name) override { environment = name; }
    Vs::Tasks* deferredTasks() override { return &tasks; }

private:
    CommandHost* m_before;
};

/// Creates commands of one class, and keeps the latest one.
template <class Command>
class DefinitionOf : public Vs::Implements<DefinitionOf<Command>, Vu::CommandDefinition>
{
public:
    explicit DefinitionOf(Vu::Info& info)
        : Vs::Implements<DefinitionOf<Command>, Vu::CommandDefinition>(&info)
    {
    }
    Command* latest = nullptr;

protected:
    Vu::CommandBase* onCreateCommand(Vu::CommandContext* context) override
    {
        return latest = new Command(this, context);
    }
};

/// A manager without a session, whose commands are logged.
class WithManager : public testing::Test
{
protected:
    const Vs::Status& run(Definition& definition)
    {
        return m_answer = manager.executeCommand(&definition, Vu::CommandContext());
    }

    Log log;
    Host host;
    Vu::CommandMgr manager;

private:
    Vs::Status m_answer;
};

} // namespace CommandTest
