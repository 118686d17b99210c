#include "UI/Application/Testing/TestRun.h"

#include "Server/Base/Strings.h"
#include "Server/Base/TranscriptReplay.h"
#include "UI/Application/CommandLine.h"
#include "UI/Application/Testing/TestReport.h"

#include <boost/algorithm/string/case_conv.hpp>
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
#include <poll.h>
#include <thread>

namespace Quillet {
namespace {

namespace fs = boost::filesystem;

/// The time limits are looked at this often, in milliseconds.
constexpr int kInterval = 200;

std::atomic<bool> s_interrupted = false;

/// Removes itself with everything in it.
class ScratchFolder
{
public:
    ScratchFolder() : m_path(fs::temp_directory_path() / fs::unique_path("quillet-tests-%%%%%%%%%%%%"))
    {
        fs::create_directories(m_path);
    }
    ~ScratchFolder()
    {
        boost::system::error_code ignored;
        fs::remove_all(m_path, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    /// Makes a folder in it.
    fs::path folder(size_t number) const
    {
        const fs::path made = m_path / std::to_string(number);
        fs::create_directories(made);
        return made;
    }

private:
    fs::path m_path;
};

/// Other texts lie beside transcripts as well.
bool isTranscript(const fs::path& file)
{
    const std::string suffix = boost::algorithm::to_lower_copy(file.extension().string());
    return !file.filename().string().starts_with("_") &&
           (suffix == ".py" || (suffix == ".txt" && Vs::looksLikeTextTranscript(file.wstring())));
}

/// Sorted by name, so that every machine has the same parts.
std::vector<fs::path> transcriptsIn(const fs::path& folder)
{
    std::vector<fs::path> found;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder))
        if (fs::is_regular_file(entry.status()) && isTranscript(entry.path()))
            found.push_back(entry.path());
    std::sort(found.begin(), found.end());
    return found;
}

/// Every `shards`-th one, so that neighbours, which often take alike long, are spread.
std::vector<fs::path> part(const std::vector<fs::path>& all, int shard, int shards)
{
    std::vector<fs::path> own;
    for (auto i = static_cast<size_t>(shard - 1); i < all.size(); i += static_cast<size_t>(shards))
        own.push_back(all[i]);
    return own;
}

/// Whether it measures how fast something is, so that it must have the machine for itself.
bool measures(const fs::path& transcript)
{
    fs::ifstream stream(transcript, std::ios::binary);
    const std::string content(std::istreambuf_iterator<char>(stream), {});
    return content.find("Performance.StartPerformanceValidation") != std::string::npos;
}

/// How often what measures is tried: the best counts.
constexpr int kMostTries = 3;

class Runner
{
public:
    Runner(const TestRun& run, fs::path folder, std::vector<fs::path> transcripts)
        : m_run(run), m_folder(std::move(folder)), m_transcripts(std::move(transcripts))
    {
        m_options = {"--references", run.references};
        for (const auto& [name, value] : run.parameters)
            m_options.insert(m_options.end(), {"--set", name + '=' + value});
        const auto jobs = run.jobs > 0 ? static_cast<size_t>(run.jobs)
                                       : std::max<size_t>(1, std::thread::hardware_concurrency());
        m_running.resize(std::min(jobs, m_transcripts.size()));
        for (const fs::path& transcript : m_transcripts)
            m_cases.push_back({fs::relative(transcript, m_folder).string(), {}});
        for (const bool alone : {false, true})
            for (size_t i = 0; i < m_transcripts.size(); ++i)
                if (measures(m_transcripts[i]) == alone)
                    m_order.push_back({i, alone});
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

private:
    struct Turn
    {
        size_t number;
        bool alone; ///< These come last, one after the other.
    };
    struct Job
    {
        std::unique_ptr<TestProcess> process;
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
            job.process = std::make_unique<TestProcess>(m_transcripts[job.turn.number],
                                                        m_scratch.folder(m_folders++), m_options);
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
            if (job.turn.alone && test.result.kind == TestResult::Kind::Failed && job.tries < kMostTries)
                start(job);
            else
                tell(test);
        } else if (job.process->seconds() > m_run.secondsLimit) {
            job.process->stop(m_run.secondsLimit);
        }
    }

    void tell(const TestCase& test)
    {
        static constexpr const char* kWords[] = {"passed", "FAILED", "CRASHED", "TIMED OUT"};
        std::printf("%*zu/%zu %-9s %7.2f s  %s\n", static_cast<int>(std::to_string(m_cases.size()).size()),
                    ++m_told, m_cases.size(), kWords[static_cast<int>(test.result.kind)], test.result.seconds,
                    Vs::Strings::forTerminal(test.name).c_str());
        if (!test.result.message.empty())
            std::printf("    %s\n", Vs::Strings::forTerminal(test.result.message).c_str());
        std::fflush(stdout);
    }

    const TestRun& m_run;
    fs::path m_folder;
    std::vector<fs::path> m_transcripts;
    std::vector<std::string> m_options;
    std::vector<TestCase> m_cases;
    ScratchFolder m_scratch;
    std::vector<Job> m_running; ///< Behind the folder that the processes use.
    std::vector<Turn> m_order;
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
    std::vector<fs::path> all = transcriptsIn(folder);
    if (all.empty())
        return complain(run.directory + ": There is no transcript (.txt or .py) in this folder.");
    const auto start = std::chrono::steady_clock::now();
    Runner runner(run, folder, part(all, run.shard, run.shards));
    runner.run();
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();

    const TestCounts counts(runner.cases());
    std::printf("%zu transcripts in %.1f s: %d passed, %d failed, %d ended by crash or time limit.\n",
                runner.cases().size(), seconds, counts.passed, counts.failed, counts.errors);
    if (s_interrupted)
        std::printf("The run was interrupted.\n");
    if (!run.junitFile.empty())
        writeJUnit(run.junitFile, folder.filename().string(), seconds, runner.cases());
    return counts.failed + counts.errors == 0 && !s_interrupted ? kExitOk : kExitLineFailed;
}

} // namespace

int runTests(const TestRun& run)
{
    boost::system::error_code error;
    const fs::path folder = fs::canonical(run.directory, error);
    if (error || !fs::is_directory(folder, error))
        return complain(
            run.directory + ": " +
            (error ? error.message() + '.' : std::string("This is not a folder of transcripts.")));
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        std::signal(signal, [](int) { s_interrupted = true; });
    try {
        return runIn(run, folder);
    } catch (const std::exception& failure) {
        return complain(failure.what());
    }
}

} // namespace Quillet
