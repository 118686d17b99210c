// What the text surface and the small services cost by themselves, without any command's work.

#include "Server/Base/ResourceMgr.h"
#include "Server/Base/StringTable.h"
#include "Server/Base/TextCommandMgr.h"
#include "Server/Base/TranscriptReplay.h"

#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>

#include <chrono>
#include <cstdio>
#include <deque>
#include <fstream>
#include <unistd.h>

namespace {

class Area : public Vs::TextCommandSubjectArea
{
public:
    explicit Area(const std::wstring& name) : TextCommandSubjectArea(name, L"Empty commands", true) {}
    Vs::PythonModuleInit pythonEntry() override { return nullptr; }
};

class Empty : public Vs::TextCommand
{
public:
    Empty(std::wstring area, std::wstring name, std::string format)
        : TextCommand(std::move(area), std::move(name), L"Does nothing.", std::move(format), false, true)
    {
    }
    Vs::TextCommandResult execute(const Vs::TextCommandParameters&) override { return {0u, {}}; }
    Vs::PythonFunction pythonEntry() override { return nullptr; }
};

template <class Work>
void measure(const char* what, int times, Work work)
{
    using Nanoseconds = std::chrono::duration<double, std::nano>;
    double best = 1e18;
    // The least of several rounds is the cost; the rest is what the machine did meanwhile.
    for (int round = 0; round < 7; ++round) {
        const auto start = std::chrono::steady_clock::now();
        for (int i = 0; i < times; ++i)
            work();
        best = std::min(best, Nanoseconds(std::chrono::steady_clock::now() - start).count() / times);
    }
    std::printf("%-52s %8.0f ns\n", what, best);
}

double residentMegabytes()
{
    size_t total = 0, resident = 0;
    std::ifstream("/proc/self/statm") >> total >> resident;
    return double(resident) * double(sysconf(_SC_PAGESIZE)) / (1 << 20);
}

void replay()
{
    constexpr int kLines = 1000000;
    const boost::filesystem::path file =
        boost::filesystem::temp_directory_path() / boost::filesystem::unique_path("quillet-bench-%%%%%%.txt");
    boost::filesystem::ofstream stream(file);
    for (int i = 0; i < kLines; ++i)
        stream << "Area3.Command7 \"some text\" 12.5 /Flag\n";
    stream.close();
    Vs::TranscriptMgr::get()->replay(file.wstring(), Vs::kTextTranscript, {}); // Fills what stays filled.
    const double before = residentMegabytes();
    const auto start = std::chrono::steady_clock::now();
    const Vs::ReplayResult result = Vs::TranscriptMgr::get()->replay(file.wstring(), Vs::kTextTranscript, {});
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    std::printf("%zu lines of a transcript: %.0f ns each, memory %+.2f MiB\n", result.lines,
                seconds / kLines * 1e9, residentMegabytes() - before);
    boost::filesystem::remove(file);
}

} // namespace

int main()
{
    std::deque<Area> areas;
    std::deque<Empty> commands;
    for (int a = 0; a < 12; ++a) {
        const std::wstring area = L"Area" + std::to_wstring(a);
        areas.emplace_back(area);
        for (int c = 0; c < 15; ++c)
            commands.emplace_back(area, L"Command" + std::to_wstring(c), c == 7 ? "%s%f" : "");
    }
    auto* manager = Vs::TextCommandMgr::get();
    const auto line = [&](const wchar_t* text) {
        return [=] { std::ignore = manager->executeCommandWithoutOutput(text); };
    };
    measure("a line without parameters", 200000, line(L"Area9.Command14"));
    measure("a line with a path and a flag", 200000,
            line(L"Area9.Command14 /home/someone/models/part.step /Hidden"));
    measure("a line with checked parameters and quotes", 200000, line(L"Area3.Command7 \"some text\" 12.5"));
    measure("a line with an unknown name, and a suggestion", 20000, line(L"Area9.Comand14"));
    measure("a comment", 200000, line(L"# nothing to do"));
    const std::wstring longest = L"Area9.Command14 " + std::wstring(1000000, L'x');
    measure("a line of a million characters", 5,
            [&] { std::ignore = manager->executeCommandWithoutOutput(longest); });
    measure("a text for people", 200000, [] {
        std::ignore = Vs::StringTable::getLocalizedString(L"Bench", "SaveCommand", "Save the document");
    });
    measure("an interned identifier", 200000,
            [] { std::ignore = Vs::UniqueString::find("DocumentSession"); });
    replay();
    return 0;
}
