#include "UI/Application/Testing/TestProcess.h"

#include "Server/Base/SiblingLibrary.h"
#include "Server/Base/TranscriptKind.h"
#include "UI/Application/RunCommandLine.h"
#include "UI/Application/Testing/ReadableStack.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sstream>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace Quillet {
namespace {

/// A transcript that prints endlessly must not use up all memory.
constexpr size_t kLongestText = 1 << 18;
/// From the polite request to the kill.
constexpr double kSecondsToStop = 5;

[[noreturn]] void fail(int error, const std::string& what)
{
    throw std::system_error(error, std::generic_category(), what);
}

std::string signalName(int signal)
{
    const char* name = sigabbrev_np(signal);
    const char* meaning = sigdescr_np(signal);
    return name && meaning ? std::string("SIG") + name + " (" + meaning + ')'
                           : "signal " + std::to_string(signal);
}

/// The first line that begins with `beginning`, or else the last non-empty one.
std::string tellingLine(const std::string& text, const std::string& beginning)
{
    std::istringstream lines(text);
    std::string last;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(beginning))
            return line;
        if (!line.empty())
            last = line;
    }
    return last;
}

/// The lines that follow this one and are set in from it.
std::string detailsAfter(const std::string& text, const std::string& line)
{
    constexpr size_t kIndent = 4;
    const size_t at = text.find(line + '\n');
    std::istringstream lines(at == std::string::npos ? std::string() : text.substr(at + line.size() + 1));
    std::string details;
    for (std::string next; std::getline(lines, next) && next.starts_with(std::string(kIndent - 1, ' '));)
        details += next.substr(next.find_first_not_of(' ')) + '\n';
    return details;
}

/// The last echoed line, which is the one that was running at the end.
std::string lastEcho(const std::string& output)
{
    const size_t found = output.rfind("\n> ");
    const size_t start = found != std::string::npos ? found + 3
                         : output.starts_with("> ") ? 2
                                                    : output.size();
    return output.substr(start, output.find('\n', start) - start);
}

} // namespace

TestProcess::Stream::~Stream()
{
    if (m_descriptor >= 0)
        close(m_descriptor);
}

int TestProcess::Stream::open()
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        fail(errno, "A pipe cannot be made");
    m_descriptor = ends[0];
    fcntl(m_descriptor, F_SETFL, O_NONBLOCK);
    return ends[1];
}

void TestProcess::Stream::read()
{
    char buffer[1 << 16];
    ssize_t count = 0;
    while (m_descriptor >= 0 && (count = ::read(m_descriptor, buffer, sizeof buffer)) > 0) {
        m_text.append(buffer, static_cast<size_t>(count));
        if (m_text.size() > 2 * kLongestText)
            m_text.erase(0, m_text.size() - kLongestText);
    }
    if (m_descriptor >= 0 && count == 0) {
        close(m_descriptor);
        m_descriptor = -1;
    }
}

TestProcess::TestProcess(const boost::filesystem::path& transcript, const boost::filesystem::path& folder,
                         const std::vector<std::string>& options, Start start)
    : m_transcript(transcript)
{
    std::vector<std::string> words = {"--no-autorun",  "--echo",
                                      "--profile-dir", (folder / "profile").string(),
                                      "--set",         "out=" + folder.string()};
    words.insert(words.end(), options.begin(), options.end());
    words.insert(words.end(),
                 {Vs::isTranscript(transcript.wstring()) ? "--replay" : "--script", transcript.string()});
    this->start(std::move(words), start);
}

TestProcess::Start TestProcess::openLibraries()
{
    // Copies have this stream as it is once it was written to; their last line has to be seen.
    std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
    try {
        for (const char* library : {"libVuCommands10.so", "libVuDesign10.so", "libVsModelKernel10.so"})
            const Vs::SiblingLibrary opened(library);
    } catch (const std::exception&) {
        return Start::Anew; // Which tells what is wrong.
    }
    return Start::Copied;
}

void TestProcess::start(std::vector<std::string> words, Start start)
{
    const int output = m_output.open();
    const int errors = m_errors.open();
    Vs::ChildSetup setup{.program = "/proc/self/exe",
                         .arguments = std::move(words),
                         .name = "quillet",
                         .folder = m_transcript.parent_path().string(),
                         .descriptors = {{output, 1}, {errors, 2}}};
    const int error = start == Start::Copied
                          ? m_process.fork(setup, [&] { return runCommandLine(setup.name, setup.arguments); })
                          : m_process.start(std::move(setup));
    close(output);
    close(errors);
    if (error != 0)
        fail(error, "The process cannot be started");
    // Debian's header of its wrapper can't be used from C++.
    m_descriptor = static_cast<int>(syscall(SYS_pidfd_open, m_process.id(), 0));
}

TestProcess::~TestProcess()
{
    if (m_descriptor >= 0)
        close(m_descriptor);
}

void TestProcess::addDescriptors(std::vector<pollfd>& waiting) const
{
    for (const int descriptor : {m_output.descriptor(), m_errors.descriptor(), m_descriptor})
        if (descriptor >= 0)
            waiting.push_back({descriptor, POLLIN, 0});
}

bool TestProcess::proceed()
{
    const bool ended = m_process.endsWithin({});
    m_output.read();
    m_errors.read();
    if (ended) {
        m_seconds = seconds();
        // Processes that it left behind are killed with it.
        m_process.kill();
        m_state = m_process.collect().value_or(0);
    }
    return ended;
}

double TestProcess::seconds() const
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - m_start).count();
}

void TestProcess::stop(double secondsLimit)
{
    if (m_stopAsked == 0) {
        m_stopAsked = seconds();
        m_secondsLimit = secondsLimit;
        m_process.signal(SIGINT);
    } else if (seconds() > m_stopAsked + kSecondsToStop) {
        m_process.kill();
    }
}

std::string TestProcess::failure() const
{
    std::string line = tellingLine(m_errors.text(), m_transcript.string() + ':');
    return line.empty() ? "It failed without a message." : line;
}

TestResult TestProcess::result() const
{
    TestResult result{TestResult::Kind::Passed, {}, m_seconds, {}, {}, m_output.text(), m_errors.text()};
    const std::string at = lastEcho(m_output.text());
    // A script has a single line, which says no more than its name.
    const std::string during = at.empty() || at == m_transcript.string() ? "." : ", in the line: " + at;
    if (m_stopAsked > 0) {
        std::ostringstream limit;
        limit << m_secondsLimit;
        result.kind = TestResult::Kind::TimedOut;
        result.message = m_transcript.string() + ": It did not end within " + limit.str() + " s" + during;
    } else if (WIFSIGNALED(m_state)) {
        result.kind = TestResult::Kind::Crashed;
        result.message =
            m_transcript.string() + ": The program was ended by " + signalName(WTERMSIG(m_state)) + during;
        result.stack = readableStack(m_errors.text());
    } else if (WEXITSTATUS(m_state) != 0) {
        // A script may end with any number, and reports it.
        const bool said = m_errors.text().find(m_transcript.string() + ':') != std::string::npos;
        result.kind =
            WEXITSTATUS(m_state) == 1 || said ? TestResult::Kind::Failed : TestResult::Kind::Crashed;
        result.message = failure();
        result.details = detailsAfter(m_errors.text(), result.message);
    }
    return result;
}

} // namespace Quillet
