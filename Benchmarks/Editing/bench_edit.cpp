// What a change of one part costs among 10,000, beside the same among 10: renaming, hiding, moving, deleting,
// undoing and redoing. First as commands of the whole program, by lines, then as requests to the model with
// its scene alone. Then the memory of a thousand undos and redos.
//
//     bench_edit

#include "Benchmarks/Measure.h"
#include "Server/AddInMgr/AddInMgr.h"
#include "Server/Base/PathInfo.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandMgr.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Edit/EditRequest.h"
#include "Server/DataModel/ModelBuilder.h"
#include "Server/DataModel/Selection/Private/DeleteRequest.h"
#include "Server/DataModel/Selection/RenameRequest.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Server/DataModel/Selection/VisibilityRequest.h"
#include "Server/DataModel/Transaction.h"
#include "UI/Base/Host.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"

#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <string>
#include <utility>

using namespace Vs;
using Benchmarks::milliseconds;

namespace {

constexpr size_t kFew = 10, kMany = 10000;
constexpr int kRounds = 200;
enum Kind { Rename, Hide, Move, Delete, Undo, UndoDelete, Redo };
constexpr std::array kKinds = {"rename", "hide", "move", "delete", "undo", "undo of delete", "redo"};
using Times = std::array<std::vector<double>, kKinds.size()>;

void check(bool well, const Status& status)
{
    if (well)
        return;
    std::fprintf(stderr, "bench_edit: %s\n", Strings::narrow(status.toString()).c_str());
    std::exit(1);
}

/// As a user would: something is selected, a line runs, and what it put off is done as well.
void runLine(const wchar_t* line)
{
    Status status;
    const TextCommandResult answer = TextCommandMgr::get()->executeCommandWithoutOutput(line);
    if (answer.first != 0)
        status.addError(answer.second);
    check(status.isOk(), status);
    Vu::Application::get()->flushDeferredTasks();
}

void fill(Asset* asset, size_t parts)
{
    Status status;
    Transaction transaction(asset, L"Boxes");
    ModelBuilder builder(asset);
    for (size_t i = 0; i < parts; ++i)
        check(builder.box(1, 1, 1, {GkMatrix3d::translation({2.0 * double(i), 0, 0}), L"Box", {}}, status),
              status);
    transaction.commit();
}

/// In a document of its own, which is shown.
Vu::AssetSession& makeModel(size_t parts)
{
    runLine(L"Design.New");
    Vu::AssetSession* session = Vu::SessionMgr::get()->currentAssetSession();
    fill(session->asset(), parts);
    return *session;
}

/// The same each time, among few as among many, since how much the processor's cache holds isn't the
/// question.
std::string middle(const Asset& asset)
{
    const auto& parts = asset.components()->children;
    return parts[parts.size() / 2]->id;
}

template <class Work>
void add(std::vector<double>& times, Work&& work)
{
    const double start = milliseconds();
    work();
    times.push_back(milliseconds() - start);
}

void run(Request* request, Asset* asset)
{
    Status status;
    check(request->execute(asset, status), status);
    request->destroy();
}

/// The way back of the change of that kind, and forth, and back: the model is as before then.
template <class Step>
void walk(Kind kind, Times& times, Step&& undo, Step&& redo)
{
    const Kind back = kind == Delete ? UndoDelete : Undo;
    add(times[back], undo);
    add(times[Redo], redo);
    add(times[back], undo);
}

void roundOfLines(Vu::AssetSession& session, int number, Times& times)
{
    const std::wstring rename = L"VuCommands.RenameCommand \"Name " + std::to_wstring(number) + L'"';
    const std::pair<Kind, const wchar_t*> lines[] = {
        {Rename, rename.c_str()}, {Hide, L"Design.Hide"}, {Delete, L"Commands.Start DeleteCommand"}};
    SelectionSet& selected = session.selectionManager()->selectionSet();
    for (const auto& [kind, line] : lines) {
        selected.clear();
        selected.add(
            StrongRef<Selection>(new LogicalSelection(session.asset(), middle(*session.asset()), nullptr)));
        add(times[kind], [&] { runLine(line); });
        walk(
            kind, times, +[] { runLine(L"VuCommands.UndoCmd"); }, +[] { runLine(L"VuCommands.RedoCmd"); });
    }
}

void round(Asset* asset, int number, Times& times)
{
    const auto change = [&](Kind kind, auto&& makeRequest) {
        const std::string id = middle(*asset);
        add(times[kind], [&] { run(makeRequest(id), asset); });
        walk(kind, times, std::function([&] { Transaction::undo(asset); }),
             std::function([&] { Transaction::redo(asset); }));
    };
    change(Rename, [&](const std::string& id) {
        return RenameRequest::make(asset, {{id}}, L"Name " + std::to_wstring(number));
    });
    change(Hide, [&](const std::string& id) { return VisibilityRequest::make({{id}}, false); });
    change(Move, [&](const std::string& id) {
        return EditRequest::make(asset, L"Move", MoveEdit{{id}, GkMatrix3d::translation({0, 1, 0})});
    });
    change(Delete, [&](const std::string& id) { return DeleteRequest::make(asset, {{id}}); });
}

double median(std::vector<double> times)
{
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

long residentKiB()
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("VmRSS:"))
            return std::stol(line.substr(6));
    return 0;
}

void printMemory(Asset* asset)
{
    constexpr int kSteps = 50, kWalks = 20;
    const std::string id = middle(*asset);
    const auto walk = [&] {
        for (int i = 0; i < kSteps; ++i)
            Transaction::undo(asset);
        for (int i = 0; i < kSteps; ++i)
            Transaction::redo(asset);
    };
    for (int i = 0; i < kSteps; ++i)
        run(RenameRequest::make(asset, {{id}}, L"Step " + std::to_wstring(i)), asset);
    walk();
    const long before = residentKiB();
    for (int i = 0; i < kWalks; ++i)
        walk();
    std::printf("memory: %+ld KiB in %d undos and redos\n", residentKiB() - before, kSteps * kWalks);
}

template <class Round>
Times measured(Round&& round)
{
    Times times;
    for (int i = 0; i < 3; ++i) // the first do what is done once
        round(i, times);
    times = {};
    for (int i = 3; i < kRounds; ++i)
        round(i, times);
    return times;
}

void print(const char* what, const Times& few, const Times& many)
{
    std::printf("%s\n", what);
    for (size_t kind = 0; kind < kKinds.size(); ++kind) {
        if (few[kind].empty())
            continue;
        const double a = median(few[kind]), b = median(many[kind]);
        std::printf("  %-14s %8.1f us among %zu, %8.1f us among %zu: %.2f\n", kKinds[kind], a * 1000, kFew,
                    b * 1000, kMany, b / a);
    }
}

} // namespace

int main(int count, char** arguments)
{
    const boost::filesystem::path profile =
        boost::filesystem::temp_directory_path() / boost::filesystem::unique_path();
    PathInfo::profileDirectory(profile);
    Vu::installHost();
    Vu::Application::initialize(count, arguments, true);
    Status status;
    AddInMgr::get()->loadAddIns(status);
    check(status.isOk(), status);
    Vu::WorkspaceMgr::get()->create();

    Times lines[2], requests[2];
    Asset* asset = nullptr;
    for (const bool large : {false, true}) {
        Vu::AssetSession& session = makeModel(large ? kMany : kFew);
        asset = session.asset();
        lines[large] = measured([&](int i, Times& times) { roundOfLines(session, i, times); });
        requests[large] = measured([&](int i, Times& times) { round(asset, i, times); });
    }
    print("By lines of the program", lines[0], lines[1]);
    print("The model and its scene", requests[0], requests[1]);
    printMemory(asset);
    boost::filesystem::remove_all(profile);
    std::fflush(stdout);
    std::_Exit(0); // without asking whether to save
}
