#pragma once

#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/Private/CommandHost.h"
#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Base/Command/TranscriptedCommandTextCommand.h"

#include <fstream>
#include <unistd.h>

namespace Benchmarks {

using namespace Vu;

inline long executions = 0;

class EmptyCmd : public SimpleCommand
{
public:
    EmptyCmd(CommandDefinition* definition, CommandContext* context) : SimpleCommand(definition, context) {}
    void onExecute(Vs::Status&) override { ++executions; }
    ECommandType onCommandType() const override { return ECommandType::Nested; }
};

inline Info emptyInfo(L"EmptyCommand", L"Empty", nullptr);

template <class Cmd>
class Definition : public CommandDefinition
{
public:
    explicit Definition(Info* info) : CommandDefinition(info) {}

protected:
    CommandBase* onCreateCommand(CommandContext* context) override { return new Cmd(this, context); }
};

class Area : public Vs::PythonEntry<Area, Vs::TextCommandSubjectArea>
{
public:
    Area() : PythonEntry(L"Bench", L"Lines of the benchmark", true) {}
};

class TextCmdEmpty : public Vs::PythonEntry<TextCmdEmpty, TranscriptedCommandTextCommand>
{
public:
    TextCmdEmpty() : PythonEntry(L"Bench", L"EmptyCmd", L"Does nothing.", "", false, L"EmptyCommand") {}
};

/// One session that is always active, as in the running program.
class Host : public CommandHost
{
public:
    AssetSession* activeAssetSession() override { return reinterpret_cast<AssetSession*>(this); }
    CommandMgr* commandManager(AssetSession*) override { return manager; }
    CommandMgr* manager = nullptr;
};

inline long residentKilobytes()
{
    long pages = 0, resident = 0;
    std::ifstream("/proc/self/statm") >> pages >> resident;
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

} // namespace Benchmarks
