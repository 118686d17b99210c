#include "UI/Application/Testing/TestRun.h"

#include "Server/Base/Strings.h"
#include "UI/Application/CommandLine.h"
#include "UI/Application/Testing/TestReport.h"

#include <boost/algorithm/string/case_conv.hpp>
#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <exception>
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

bool isTranscript(const fs::path& file)
{
    const std::string suffix = boost::algorithm::to_lower_copy(file.extension().string());
    return (suffix == ".txt" || suffix == ".py") && !file.filename().string().starts_with("_");
}

/// Sorted by name, so that every machine has the same parts.
std::vector<fs::path> transcriptsIn(const fs::path& folder)
{
    std::vector<fs::path> found;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder))
        if (isTranscript(entry.path()) && fs::is_regular_file(entry.status()))
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

class Runner
{
public:
    Runner(const TestRun& run, fs::path folder, std::vector<fs::path> transcripts)
        : m_run(run), m_folder(std::move(folder)), m_transcripts(std::move(transcripts))
    {
        for (const auto& [name, value] : run.parameters)
            m_settings.push_back(name + '=' + value);
        const auto jobs = run.jobs > 0 ? static_cast<size_t>(run.jobs)
                                       : std::max<size_t>(1, std::thread::hardware_concurrency());
        m_running.resize(std::min(jobs, m_transcripts.size()));
        for (const fs::path& transcript : m_transcripts)
            m_cases.push_back({fs::relative(transcript, m_folder).string(), {}});
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
    struct Job
    {
        std::unique_ptr<TestProcess> process;
        size_t number = 0;
    };

    void startSome()
    {
        for (Job& job : m_running)
            while (!job.process && m_next < m_transcripts.size()) {
                job.number = m_next++;
                try {
                    job.process = std::make_unique<TestProcess>(m_transcripts[job.number],
                                                                m_scratch.folder(job.number), m_settings);
                } catch (const std::exception& error) {
                    m_cases[job.number].result = {TestResult::Kind::Crashed, error.what()};
                    tell(m_cases[job.number]);
                }
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
            m_cases[job.number].result = job.process->result();
            tell(m_cases[job.number]);
            job.process.reset();
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
    std::vector<std::string> m_settings;
    std::vector<TestCase> m_cases;
    ScratchFolder m_scratch;
    std::vector<Job> m_running; ///< Behind the folder that the processes use.
    size_t m_next = 0;
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
