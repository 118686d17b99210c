#include "UI/Base/Command/Private/DeferredRuns.h"

#include "Server/Base/Task.h"
#include "Server/Base/TranscriptMgr.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/Private/CommandHost.h"

#include <memory>
#include <utility>
#include <vector>

namespace Vu {

namespace {

class RunTask;

unsigned long s_added = 0;

std::vector<RunTask*>& waiting()
{
    static std::vector<RunTask*>* const tasks = new std::vector<RunTask*>;
    return *tasks;
}

class RunTask : public Vs::Implements<RunTask, Vs::Task>
{
public:
    RunTask(CommandMgr* manager, CommandDefinition* definition, const CommandContext& context)
        : m_manager(manager), m_definition(definition), m_context(context)
    {
        waiting().push_back(this);
    }
    ~RunTask() override { std::erase(waiting(), this); }

    bool run() override
    {
        CommandMgr* manager = std::exchange(m_manager, nullptr);
        if (manager && !m_context.hasLostObject())
            manager->executeDeferred(m_definition, m_context);
        return true;
    }

    void dropIf(const CommandMgr* manager, const AssetSession* session)
    {
        if (m_manager == manager || (session && m_context.assetSession() == session))
            m_manager = nullptr;
    }
    void dropIf(const CommandDefinition* definition)
    {
        if (m_definition == definition)
            m_manager = nullptr;
    }

private:
    CommandMgr* m_manager;
    CommandDefinition* m_definition;
    CommandContext m_context;
};

} // namespace

unsigned long DeferredRuns::added()
{
    return s_added;
}

bool DeferredRuns::add(CommandMgr* manager, CommandDefinition* definition, const CommandContext& context)
{
    Vs::Tasks* tasks = CommandHost::get()->deferredTasks();
    if (!tasks)
        return false;
    // A run inside something that is recorded as a whole is not recorded separately.
    if (!context.partOfCaller() && Vs::TranscriptMgr::get()->takesEntries())
        ++s_added;
    tasks->add(std::make_unique<RunTask>(manager, definition, context));
    return true;
}

void DeferredRuns::drop(const CommandMgr* manager, const AssetSession* session)
{
    for (RunTask* task : waiting())
        task->dropIf(manager, session);
}

void DeferredRuns::drop(const CommandDefinition* definition)
{
    for (RunTask* task : waiting())
        task->dropIf(definition);
}

} // namespace Vu
