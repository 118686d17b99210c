#include "UI/Application/Testing/TestRun.h"

#include "Server/Base/ScratchFolder.h"
#include "Server/Base/Strings.h"
#include "UI/Application/CommandLine.h"
#include "UI/Application/Coverage.h"
#include "UI/Application/Testing/TestDisplay.h"
#include "UI/Application/Testing/TestHistory.h"
#include "UI/Application/Testing/TestReport.h"
#include "UI/Application/Testing/TestSelection.h"

#include <boost/algorithm/string/replace.hpp>
#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <exception>
#include <iterator>
#include <memory>
#include <optional>
#include <poll.h>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace Quillet {
namespace {

namespace fs = boost::filesystem;

/// How often the time limits are checked, in milliseconds.
constexpr int kInterval = 200;
/// In the folder of each transcript.
constexpr const char* kCoverage = "coverage.jsonl";

std::atomic<bool> s_interrupted = false;

/// Whether it measures performance, so that it must have the machine to itself.
bool measures(const fs::path& transcript)
{
    fs::ifstream stream(transcript, std::ios::binary);
    const std::string content(std::istreambuf_iterator<char>(stream), {});
    return content.find("Performance.StartPerformanceValidation") != std::string::npos;
}

/// How often a measuring transcript is tried: the best try counts.
constexpr int kMostTries = 3;

class Runner
{
public:
    Runner(const TestRun& run, const std::vector<TestFile>& files) : m_run(run)
    {
        if (m_scratch.path().empty())
            throw std::runtime_error("No folder for the runs can be made in " + m_scratch.why() + '.');
        m_options = {run.window ? "--exit" : "--headless", "--references", run.references};
        if (run.verbose)
            m_options.push_back("--verbose");
        for (const auto& [name, value] : run.parameters)
            m_options.insert(m_options.end(), {"--set", name + '=' + value});
        const auto jobs = run.jobs > 0 ? static_cast<size_t>(run.jobs)
                                       : std::max<size_t>(1, std::thread::hardware_concurrency());
        m_running.resize(std::min(jobs, files.size()));
        for (const TestFile& file : files) {
            m_transcripts.push_back(file.path);
            m_cases.push_back({file.name, file.path.string(), {}});
        }
        for (const bool alone : {false, true})
            for (size_t i = 0; i < m_transcripts.size(); ++i)
                if (measures(m_transcripts[i]) == alone)
                    m_order.push_back({i, alone});
        // Those with a window have more to open, which no copy of another process could have.
        if (!run.window && m_order.size() > 1)
            m_start = TestProcess::openLibraries();
    }

    void run()
    {
        while (!s_interrupted) {
            startSome();
            if (!anyRuns())
                return;
            wait();
            for (Job& job : m_running)
                if (job.process)
                    look(job);
        }
        m_running.clear();
        m_cases.erase(std::remove_if(m_cases.begin(), m_cases.end(),
                                     [](const TestCase& test) { return test.result.seconds == 0; }),
                      m_cases.end());
    }

    const std::vector<TestCase>& cases() const { return m_cases; }
    size_t atOnce() const { return m_running.size(); }
    /// The combined coverage of all.
    const Coverage::Runs& tried() const { return m_tried; }

private:
    struct Turn
    {
        size_t number;
        bool alone; ///< These come last, one after the other.
    };
    struct Job
    {
        std::unique_ptr<TestProcess> process;
        fs::path folder;
        Turn turn = {};
        int tries = 0;
    };

    void startSome()
    {
        for (Job& job : m_running)
            while (!job.process && m_next < m_order.size() && !(m_order[m_next].alone && anyRuns())) {
                job.turn = m_order[m_next++];
                job.tries = 0;
                start(job);
            }
    }

    void start(Job& job)
    {
        TestCase& test = m_cases[job.turn.number];
        ++job.tries;
        try {
            job.folder = fs::path(m_scratch.path()) / std::to_string(m_folders++);
            fs::create_directory(job.folder);
            std::vector<std::string> options = m_options;
            if (!m_run.coverageFile.empty())
                options.insert(options.end(), {"--coverage", (job.folder / kCoverage).string()});
            // What measures itself has nothing of another process.
            job.process = std::make_unique<TestProcess>(m_transcripts[job.turn.number], job.folder, options,
                                                        job.turn.alone ? TestProcess::Start::Anew : m_start);
        } catch (const std::exception& error) {
            test.result = {TestResult::Kind::Crashed, error.what()};
            tell(test);
        }
    }

    bool anyRuns() const
    {
        return std::any_of(m_running.begin(), m_running.end(),
                           [](const Job& job) { return job.process != nullptr; });
    }

    void wait() const
    {
        std::vector<pollfd> waiting;
        for (const Job& job : m_running)
            if (job.process)
                job.process->addDescriptors(waiting);
        poll(waiting.data(), waiting.size(), kInterval);
    }

    void look(Job& job)
    {
        if (job.process->proceed()) {
            TestCase& test = m_cases[job.turn.number];
            test.result = job.process->result();
            job.process.reset();
            const bool passed = test.result.kind == TestResult::Kind::Passed;
            const bool again = job.turn.alone && test.result.kind == TestResult::Kind::Failed;
            test.tries = job.tries;
            if (!m_run.coverageFile.empty())
                Coverage::add((job.folder / kCoverage).string(), m_tried);
            if (!passed && job.tries < std::max(m_run.retries + 1, again ? kMostTries : 1)) {
                start(job);
                return;
            }
            if (!passed)
                keepArtifacts(test, job.folder);
            tell(test);
        } else if (job.process->seconds() > m_run.secondsLimit) {
            job.process->stop(m_run.secondsLimit);
        }
    }

    /// Whatever may explain the failure. If it can't be stored, that is reported, but isn't a failure.
    void keepArtifacts(TestCase& test, const fs::path& folder)
    {
        if (m_run.artifactsDirectory.empty())
            return;
        const fs::path kept = fs::path(m_run.artifactsDirectory) / test.name;
        try {
            fs::remove_all(kept);
            fs::create_directories(kept.parent_path());
            fs::copy(folder, kept, fs::copy_options::recursive | fs::copy_options::copy_symlinks);
            // What names a file of it names the one that is kept.
            for (std::string* text : {&test.result.message, &test.result.output, &test.result.errors})
                boost::algorithm::replace_all(*text, folder.string() + '/', kept.string() + '/');
            fs::ofstream(kept / "output.txt", std::ios::binary) << test.result.output;
            fs::ofstream(kept / "errors.txt", std::ios::binary) << test.result.errors;
        } catch (const std::exception& error) {
            std::fprintf(stderr, "quillet: %s\n", Vs::Strings::forTerminal(error.what()).c_str());
        }
    }

    void tell(const TestCase& test)
    {
        static constexpr const char* kWords[] = {"passed", "FAILED", "CRASHED", "TIMED OUT"};
        const std::string tries =
            test.tries > 1 ? " (try " + std::to_string(test.tries) + ')' : std::string();
        std::printf("%*zu/%zu %-9s %7.2f s  %s%s\n", static_cast<int>(std::to_string(m_cases.size()).size()),
                    ++m_told, m_cases.size(), kWords[static_cast<int>(test.result.kind)], test.result.seconds,
                    Vs::Strings::forTerminal(test.name).c_str(), tries.c_str());
        if (!test.result.message.empty())
            std::printf("    %s\n", Vs::Strings::forTerminal(test.result.message).c_str());
        for (const std::string* more : {&test.result.details, &test.result.stack}) {
            std::istringstream lines(*more);
            for (std::string line; std::getline(lines, line);)
                std::printf("      %s\n", Vs::Strings::forTerminal(line).c_str());
        }
        std::fflush(stdout);
    }

    const TestRun& m_run;
    std::vector<fs::path> m_transcripts;
    std::vector<std::string> m_options;
    std::vector<TestCase> m_cases;
    Vs::ScratchFolder m_scratch;
    std::vector<Job> m_running; ///< Declared after the folder that the processes use.
    std::vector<Turn> m_order;
    Coverage::Runs m_tried;
    TestProcess::Start m_start = TestProcess::Start::Anew;
    size_t m_next = 0;
    size_t m_folders = 0;
    size_t m_told = 0;
};

int complain(const std::string& message)
{
    std::fprintf(stderr, "quillet: %s\n", Vs::Strings::forTerminal(message).c_str());
    return kExitUsage;
}

int runIn(const TestRun& run, const fs::path& folder)
{
    const std::vector<TestFile> all = testsIn(folder);
    if (all.empty())
        return complain(run.directory + ": There is no transcript (.txt or .py) in this folder.");
    TestHistory history(run.resultsFile);
    const std::vector<TestFile> files = chosen(all, run, history);
    if (run.list) {
        for (const TestFile& file : files)
            std::printf("%s\n", Vs::Strings::forTerminal(file.name).c_str());
        return kExitOk;
    }
    // A mistyped pattern must not pass.
    if (files.empty() && !run.filters.empty() && !run.failedOnly && run.shards == 1)
        return complain(run.directory + ": No transcript has a name like that.");
    std::optional<TestDisplay> display;
    if (run.window)
        display.emplace();
    const auto start = std::chrono::steady_clock::now();
    Runner runner(run, files);
    runner.run();
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();

    const TestCounts counts(runner.cases());
    std::printf("%zu transcripts in %.1f s: %d passed, %d failed, %d ended by crash or time limit.\n",
                runner.cases().size(), seconds, counts.passed, counts.failed, counts.errors);
    if (s_interrupted)
        std::printf("The run was interrupted.\n");
    // All parts must find the same times.
    if (run.shards == 1)
        history.write(runner.cases());
    if (!run.junitFile.empty())
        writeJUnit(run.junitFile, folder.filename().string(), seconds, runner.cases());
    if (!run.coverageFile.empty())
        Coverage::write(run.coverageFile, runner.tried());
    if (!run.tapFile.empty())
        writeTap(run.tapFile, runner.cases());
    return counts.failed + counts.errors == 0 && !s_interrupted ? kExitOk : kExitLineFailed;
}

} // namespace

int runTests(const TestRun& run)
{
    boost::system::error_code error;
    const fs::path folder = fs::canonical(run.directory, error);
    if (error || !(fs::is_directory(folder, error) || fs::is_regular_file(folder, error)))
        return complain(run.directory + ": " +
                        (error ? error.message() + '.'
                               : std::string("This is neither a transcript nor a folder of them.")));
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        std::signal(signal, [](int) { s_interrupted = true; });
    try {
        return runIn(run, folder);
    } catch (const std::exception& failure) {
        return complain(failure.what());
    }
}

} // namespace Quillet
