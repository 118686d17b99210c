// What it costs to go from one tab to another, up to the first picture: two documents of 10,000 parts each,
// beside a picture of the one that shows already; then the same, and a change of what shows, with more
// documents open. By the processor time of all threads, which a busy machine disturbs less than the clock.
// Beside it, what the properties panel does for a selection of all parts, and what showing and hiding an area
// of the window costs. Needs a display.
//
//     bench_tabs PROFILE

#include "Benchmarks/InProgram.h"
#include "Benchmarks/Measure.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandMgr.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/ModelBuilder.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Server/DataModel/Transaction.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/Window/PropertyValues.h"
#include "UI/Base/Workspace/Workspace.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <QApplication>
#include <QTabBar>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <tuple>
#include <vector>

namespace {

constexpr size_t kParts = 10000;
constexpr int kRounds = 9;
constexpr double kShown = 2000;

/// Of all threads, in milliseconds.
double processorTime()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return 1e3 * double(time.tv_sec) + 1e-6 * double(time.tv_nsec);
}

void runLine(const wchar_t* line)
{
    const Vs::TextCommandResult answer = Vs::TextCommandMgr::get()->executeCommandWithoutOutput(line);
    if (answer.first != 0) {
        std::fprintf(stderr, "bench_tabs: %s\n", Vs::Strings::narrow(answer.second).c_str());
        std::exit(1);
    }
    Vu::Application::get()->flushDeferredTasks();
}

void settle()
{
    Vu::Application::get()->flushDeferredTasks();
    QApplication::processEvents();
}

void make(size_t parts)
{
    runLine(L"Design.New");
    Vs::Asset* asset = Vu::SessionMgr::get()->activeAssetSession()->asset();
    Vs::Status status;
    Vs::Transaction transaction(asset, L"Boxes");
    Vs::ModelBuilder builder(asset);
    for (size_t i = 0; i < parts; ++i) {
        const GkVector3d place(2.0 * double(i % 100), 2.0 * double(i / 100), 0);
        if (!builder.box(1, 1, 1, {GkMatrix3d::translation(place), L"Box", {}}, status))
            std::exit(1);
    }
    transaction.commit();
    runLine(L"Commands.Start FitCommand");
    settle();
}

template <class Work>
double median(Work work)
{
    std::vector<double> times;
    for (int i = 0; i < kRounds; ++i) {
        const double begin = processorTime();
        work(i);
        times.push_back(processorTime() - begin);
    }
    return Benchmarks::median(std::move(times));
}

struct Figures
{
    double frame, change, first, all;
};

/// The large documents are the first two.
Figures measure(QTabBar& tabs)
{
    tabs.setCurrentIndex(0);
    settle();
    const double frame = median([](int) {
        Vu::WorkspaceWindow::invalidate(Vu::kInvalidateAll);
        settle();
    });
    const double change = median([](int) {
        runLine(L"Design.Box 1 1 1");
        Vu::WorkspaceWindow::activeWorkspaceWindow()->settleLayout();
    });
    // The command draws the first picture itself; what is put off to the end of the event comes after it.
    std::vector<double> first;
    const double all = median([&](int i) {
        const double begin = processorTime();
        tabs.setCurrentIndex(i % 2 == 0 ? 1 : 0);
        Vu::Application::get()->flushDeferredTasks();
        first.push_back(processorTime() - begin);
        settle();
    });
    return {frame, change, Benchmarks::median(std::move(first)), all};
}

void measureProperties()
{
    runLine(L"Commands.Start SelectAllCommand");
    settle();
    const Vu::AssetSession* session = Vu::SessionMgr::get()->activeAssetSession();
    const double read = median(
        [&](int) { static_cast<void>(Vu::valuesOf(*session->selectionManager(), *session->asset())); });
    std::printf("properties of %zu selected parts: %.2f ms\n", kParts, read);
}

/// Of the document that shows, which has all the parts.
void measureAreas()
{
    const double frame = median([](int) {
        Vu::WorkspaceWindow::invalidate(Vu::kInvalidateAll);
        settle();
    });
    for (const auto& [name, hide, show] :
         {std::tuple("browser", L"Commands.Start HideBrowserCommand", L"Commands.Start ShowBrowserCommand"),
          std::tuple("toolbar", L"Commands.Start HideCommandToolbarCommand",
                     L"Commands.Start ShowCommandToolbarCommand"),
          std::tuple("cube", L"Commands.Start HideOrbiconCommand", L"Commands.Start ShowOrbiconCommand"),
          std::tuple("text commands", L"Commands.Start ShowTextCommandsCommand",
                     L"Commands.Start HideTextCommandsCommand"),
          std::tuple("navigation bar", L"Commands.Start HideNavigationToolbarCommand",
                     L"Commands.Start ShowNavigationToolbarCommand")}) {
        const double change = median([&](int i) {
            runLine(i % 2 == 0 ? hide : show);
            settle();
        });
        runLine(show); // There were an odd number of rounds.
        settle();
        std::printf("%-16s %8.1f ms, %5.2f pictures\n", name, change, change / frame);
    }
}

void measureAll()
{
    Vu::WorkspaceWindow* window = Vu::WorkspaceMgr::get()->create()->window();
    window->show();
    // Nothing is drawn before the window system shows the window.
    for (const double begin = Benchmarks::milliseconds(); Benchmarks::milliseconds() - begin < kShown;)
        settle();
    make(kParts);
    make(kParts);
    settle();
    measureAreas();
    auto* tabs = window->widget()->findChild<QTabBar*>(QStringLiteral("documentTabs"));
    if (!tabs || tabs->count() != 2)
        std::exit(1);
    std::printf("%10s %12s %14s %14s %14s %10s\n", "documents", "picture ms", "changed ms", "first ms",
                "all ms", "pictures");
    for (const int open : {2, 10, 50, 200}) {
        while (tabs->count() < open)
            make(1);
        const Figures figures = measure(*tabs);
        std::printf("%10d %12.1f %14.2f %14.1f %14.1f %10.2f\n", open, figures.frame, figures.change,
                    figures.first, figures.all, figures.first / figures.frame);
        std::fflush(stdout);
    }
    measureProperties();
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2)
        return 2;
    Benchmarks::inProgram(argv[1], argc, argv, false, measureAll);
}
