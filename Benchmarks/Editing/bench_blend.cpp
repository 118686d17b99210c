// What the OK of an editing command takes once its preview is there, beside the preview itself: that holds
// the kernel's operation, which the OK isn't to do again.
//
//     bench_blend FILE RADIUS EDGE...      for example linkrods.step 0.5 <component>/Edge1

#include "Benchmarks/Measure.h"
#include "Server/AddInMgr/AddInMgr.h"
#include "Server/Base/PathInfo.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandMgr.h"
#include "UI/Base/Host.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"

#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

using Benchmarks::milliseconds;

namespace {

/// What the line took, with what it put off.
double run(const std::string& line)
{
    const double start = milliseconds();
    const Vs::TextCommandResult answer =
        Vs::TextCommandMgr::get()->executeCommandWithoutOutput(Vs::Strings::widen(line));
    Vu::Application::get()->flushDeferredTasks();
    if (answer.first != 0) {
        std::fprintf(stderr, "%s: %s\n", line.c_str(), Vs::Strings::narrow(answer.second).c_str());
        std::exit(1);
    }
    return milliseconds() - start;
}

double median(std::vector<double> times)
{
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

} // namespace

int main(int count, char** arguments)
{
    if (count < 4) {
        std::fprintf(stderr, "Usage: bench_blend FILE RADIUS EDGE...\n");
        return 2;
    }
    std::string edges;
    for (int i = 3; i < count; ++i)
        edges += (edges.empty() ? "" : "|") + std::string(arguments[i]);
    const boost::filesystem::path profile =
        boost::filesystem::temp_directory_path() / boost::filesystem::unique_path();
    Vs::PathInfo::profileDirectory(profile);
    Vu::installHost();
    Vu::Application::initialize(count, arguments, true);
    Vs::Status status;
    Vs::AddInMgr::get()->loadAddIns(status);
    Vu::WorkspaceMgr::get()->create();
    run("Document.Open \"" + std::string(arguments[1]) + '"');

    constexpr int kRounds = 7;
    std::vector<double> previews, kept;
    for (int i = 0; i < kRounds; ++i) {
        run("Commands.Start FilletCommand");
        run("Commands.SetInput Edges \"" + edges + '"');
        // Another size each time, which nothing is known of.
        previews.push_back(run("Commands.SetInput Radius " + std::string(arguments[2]) + "*(1+" +
                               std::to_string(i + 1) + "/1000)"));
        kept.push_back(run("Commands.Commit"));
        run("VuCommands.UndoCmd");
    }
    std::printf("preview %.2f ms, OK %.2f ms: %.3f\n", median(previews), median(kept),
                median(kept) / median(previews));
    boost::filesystem::remove_all(profile);
    std::fflush(stdout);
    std::_Exit(0); // without asking whether to save
}
