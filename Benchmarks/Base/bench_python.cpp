// What a text command costs when a script calls it, beside the same command by a plain line and Python's own
// call of a function that is written in C. Prints the time of one call of each.
//
//   bench_python [OTHER...]
//
// OTHER is a command whose output is printed beside: a program that times its own console.

#include "Server/Base/PythonManager.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandMgr.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <tuple>

namespace {

constexpr int kCalls = 200000;
constexpr int kRounds = 5;

class Area : public Vs::PythonEntry<Area, Vs::TextCommandSubjectArea>
{
public:
    Area() : PythonEntry(L"Bench", L"Lines of the benchmark", true) {}
};

class Empty : public Vs::PythonEntry<Empty, Vs::TextCommand>
{
public:
    Empty() : PythonEntry(L"Bench", L"Empty", L"Does nothing.", "", false, true) {}
    Vs::TextCommandResult execute(const Vs::TextCommandParameters&) override { return {0, {}}; }
};

Area theArea;
Empty theEmpty;

double seconds()
{
    using namespace std::chrono;
    return duration<double>(steady_clock::now().time_since_epoch()).count();
}

/// Microseconds for one call of the plain line, the best of some rounds.
double plainLine(const std::wstring& line)
{
    double best = 1e9;
    for (int round = 0; round < kRounds; ++round) {
        const double start = seconds();
        for (int i = 0; i < kCalls; ++i)
            std::ignore = Vs::TextCommandMgr::get()->executeCommandWithoutOutput(line);
        best = std::min(best, (seconds() - start) / kCalls * 1e6);
    }
    return best;
}

/// The same for a call in Python, without the loop around it.
double pythonCall(const std::string& call)
{
    const std::string code =
        "import Bench, quillet, timeit\n"
        "n = " +
        std::to_string(kCalls) +
        "\n"
        "best = lambda code: min(timeit.repeat(code, globals=globals(), number=n, repeat=" +
        std::to_string(kRounds) +
        "))\n"
        "result = (best('" +
        call + "') - best('pass')) / n * 1e6\n";
    Vs::Status status;
    const std::wstring result = Vs::PythonManager::get()->runString(Vs::Strings::widen(code), status);
    if (status.isError()) {
        std::fprintf(stderr, "%s\n", Vs::Strings::narrow(status.toString()).c_str());
        std::exit(1);
    }
    return std::stod(result);
}

void print(const char* what, double microseconds, double plain)
{
    std::printf("%-44s %6.3f us   %+6.3f us to the plain line\n", what, microseconds, microseconds - plain);
}

} // namespace

int main(int count, char** arguments)
{
    const double plain = plainLine(L"Bench.Empty");
    print("the plain line", plain, plain);
    print("Python's call of a function in C, abs(1)", pythonCall("abs(1)"), plain);
    print("Bench.Empty()", pythonCall("Bench.Empty()"), plain);
    const double withParameters = plainLine(L"Bench.Empty text 1 2.5 /Flag");
    print("the plain line with parameters", withParameters, withParameters);
    print("Bench.Empty('text', 1, 2.5, Flag=True)", pythonCall("Bench.Empty(\"text\", 1, 2.5, Flag=True)"),
          withParameters);
    print("quillet.run('Bench.Empty')", pythonCall("quillet.run(\"Bench.Empty\")"), plain);
    Vs::PythonManager::get()->shutdown();
    std::fflush(stdout);
    for (int i = 1; i < count; ++i)
        if (std::system(arguments[i]) != 0)
            std::fprintf(stderr, "%s failed.\n", arguments[i]);
}
