// What a command costs beside its own work: a line of text through the wrapper, the definition, the manager's
// stack and the command's whole life, and back with the answer. Prints the time of one line of several kinds,
// and by how much the memory of the process grew over them.

#include "Benchmarks/Command/EmptyCommand.h"
#include "Server/Base/TextCommandMgr.h"
#include "UI/Base/Command/InteractiveCommandBase.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <tuple>

namespace {

using namespace Vu;
using namespace Benchmarks;

class ToolCmd : public InteractiveCommandBase
{
public:
    ToolCmd(CommandDefinition* definition, CommandContext* context)
        : InteractiveCommandBase(definition, context)
    {
    }
};

Info toolInfo(L"ToolCommand", L"Tool", nullptr);

class TextCmdPath : public Vs::PythonEntry<TextCmdPath, TranscriptedCommandTextCommand>
{
public:
    TextCmdPath()
        : PythonEntry(L"Bench", L"PathCmd", L"<filename> Does nothing.", "%s", false, L"EmptyCommand")
    {
    }

protected:
    void fillContext(const Vs::TextCommandParameters& parameters, CommandContext& context) override
    {
        context.addArgument(CommandContext::pathArgumentName(), parameters[0]);
    }
};

void measure(const char* what, const std::wstring& line, long count)
{
    Vs::TextCommandMgr* lines = Vs::TextCommandMgr::get();
    for (long i = 0; i < count / 100 + 1; ++i)
        if (lines->executeCommandWithoutOutput(line).first != 0) {
            std::fprintf(stderr, "The line failed: %ls\n", line.c_str());
            std::exit(1);
        }
    // The best of five: what the line costs, not what else the machine did.
    double best = 1e30;
    const long before = residentKilobytes();
    for (int round = 0; round < 5; ++round) {
        const auto start = std::chrono::steady_clock::now();
        for (long i = 0; i < count / 5; ++i)
            std::ignore = lines->executeCommandWithoutOutput(line);
        const std::chrono::duration<double, std::nano> took = std::chrono::steady_clock::now() - start;
        best = std::min(best, took.count() / double(count / 5));
    }
    std::printf("%-36s %7.0f ns a line, memory +%ld kB over %ld lines\n", what, best,
                residentKilobytes() - before, count);
}

} // namespace

int main(int argc, char** argv)
{
    const long count = argc > 1 ? std::max(5L, std::atol(argv[1])) : 1000000;
    Host host;
    CommandHost::install(&host);
    CommandMgr session(host.activeAssetSession());
    host.manager = &session;
    Area area;
    TextCmdEmpty emptyCmd;
    TextCmdPath pathCmd;
    Definition<EmptyCmd> empty(&emptyInfo);
    Definition<ToolCmd> tool(&toolInfo);

    measure("comment", L"# nothing", count);
    measure("empty command", L"Bench.EmptyCmd", count);
    measure("command with a path", L"Bench.PathCmd \"/home/someone/parts/left bracket.step\"", count);
    measure("Commands.Start with two arguments", L"Commands.Start EmptyCommand Width=1920 Name=front", count);
    std::ignore = session.executeCommand(&tool, CommandContext());
    measure("empty command, inside a tool", L"Bench.EmptyCmd", count);
    measure("a tool in the place of another", L"Commands.Start ToolCommand", count);
    std::printf("%ld executions\n", executions);
    session.terminateAll(ETerminationReason::Cancel);
    CommandHost::install(nullptr);
}
