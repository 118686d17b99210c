// What transcripts cost: an empty command with and without a recording, in both forms, and while commands are
// measured; a line of a replay beside the same line called directly; and the memory over a million lines of a
// replay.

#include "Benchmarks/Command/EmptyCommand.h"
#include "Server/Base/TextCommandMgr.h"
#include "Server/Base/TranscriptReplay.h"
#include "UI/Base/Command/Private/TranscriptRecorder.h"
#include "UI/Base/Validation/MetricProbe.h"

#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <tuple>

namespace {

using namespace Benchmarks;
namespace fs = boost::filesystem;

constexpr long kLines = 1000000;
constexpr int kRounds = 5;

/// The best of several rounds is the cost; the rest is what the machine did meanwhile.
template <class Work>
double bestNanoseconds(long lines, const Work& work)
{
    double best = 1e30;
    for (int round = 0; round < kRounds; ++round) {
        const auto start = std::chrono::steady_clock::now();
        work();
        const std::chrono::duration<double, std::nano> took = std::chrono::steady_clock::now() - start;
        best = std::min(best, took.count() / double(lines));
    }
    return best;
}

void callDirectly()
{
    for (long i = 0; i < kLines / 10; ++i)
        std::ignore = Vs::TextCommandMgr::get()->executeCommandWithoutOutput(L"Bench.EmptyCmd");
}

void tell(const char* what, double nanoseconds, double direct)
{
    std::printf("%-28s %7.0f ns a line, %+6.0f ns beyond the command, %.2f times\n", what, nanoseconds,
                nanoseconds - direct, nanoseconds / direct);
}

} // namespace

int main()
{
    Host host;
    CommandHost::install(&host);
    CommandMgr session(host.activeAssetSession());
    host.manager = &session;
    Area area;
    TextCmdEmpty emptyCmd;
    Definition<EmptyCmd> empty(&emptyInfo);
    TranscriptRecorder recorder;
    CommandMgr::addObserver(&recorder);
    Vs::TextCommandMgr::get()->observer(&recorder);
    Vs::TranscriptMgr* transcripts = Vs::TranscriptMgr::get();
    const fs::path folder = fs::temp_directory_path() / fs::unique_path("quillet-bench-%%%%%%");
    fs::create_directory(folder);

    callDirectly();
    const double direct = bestNanoseconds(kLines / 10, callDirectly);
    std::printf("%-28s %7.0f ns a line\n", "called directly", direct);
    for (const char* name : {"recorded.txt", "recorded.py"}) {
        const std::wstring path = (folder / name).wstring();
        transcripts->startRecording(path, Vs::TranscriptMgr::typeOf(path));
        tell(name, bestNanoseconds(kLines / 10, callDirectly), direct);
        transcripts->endRecording();
    }
    {
        const auto probe = MetricProbe::make(EMetricType::CommandInteractivity);
        tell("measured", bestNanoseconds(kLines / 10, callDirectly), direct);
    }

    const std::wstring path = (folder / "long.txt").wstring();
    {
        fs::ofstream stream{fs::path(path)};
        for (long i = 0; i < kLines; ++i)
            stream << "Bench.EmptyCmd\n";
    }
    transcripts->replay(path, Vs::kTextTranscript, {}); // Fills what stays filled.
    const long before = residentKilobytes();
    tell("replayed", bestNanoseconds(kLines, [&] { transcripts->replay(path, Vs::kTextTranscript, {}); }),
         direct);
    std::printf("%ld lines replayed %d times: memory %+ld kB; %ld executions\n", kLines, kRounds,
                residentKilobytes() - before, executions);
    fs::remove_all(folder);
    Vs::TextCommandMgr::get()->observer(nullptr);
    CommandMgr::removeObserver(&recorder);
    CommandHost::install(nullptr);
}
