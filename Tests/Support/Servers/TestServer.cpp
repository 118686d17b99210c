#include "Tests/Support/Servers/TestServer.h"

#include "Tests/Support/Files.h"
#include "Tests/Support/Process.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>
#include <boost/algorithm/string/trim.hpp>
#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <iostream>
#include <poll.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace TestSupport {

namespace fs = boost::filesystem;

namespace {

constexpr int kMillisecondsForAnOrder = 30000;
constexpr size_t kShownOfTheLog = 4000;

const char* word(TestServer::Kind kind)
{
    switch (kind) {
    case TestServer::Kind::Apache:
        return "apache";
    case TestServer::Kind::Subversion:
        return "svn";
    case TestServer::Kind::Nginx:
        return "nginx";
    case TestServer::Kind::Lighttpd:
        return "lighttpd";
    case TestServer::Kind::Rclone:
        return "rclone";
    case TestServer::Kind::Sabre:
        return "sabre";
    }
    return "";
}

/// The names that servers keep their own data under, beside the user's.
bool isOfTheServer(const std::string& name)
{
    return name == ".DAV" || name == ".sabredav";
}

} // namespace

/// The script that runs a server. It ends with its standard input, so with this process in any case.
class TestServer::Process
{
public:
    explicit Process(std::vector<std::string> arguments)
    {
        // The script runs as another user, so what it is started by is everybody's to read.
        arguments.insert(arguments.begin(), {QUILLET_TEST_SUPPORT "/as_plain_user.sh", QUILLET_PYTHON, "-B",
                                             QUILLET_TEST_SUPPORT "/Servers/servers.py"});
        std::vector<char*> argv;
        for (std::string& argument : arguments)
            argv.push_back(argument.data());
        argv.push_back(nullptr);

        int input[2], output[2];
        if (pipe2(input, O_CLOEXEC) != 0 || pipe2(output, O_CLOEXEC) != 0)
            throw std::runtime_error("cannot make a pipe");
        m_id = fork();
        if (m_id == 0) {
            dup2(input[0], 0);
            dup2(output[1], 1);
            setpgid(0, 0); // Ctrl-C is the test's, whose end it waits for.
            execv(argv[0], argv.data());
            _exit(127);
        }
        close(input[0]);
        close(output[1]);
        m_input = input[1];
        m_output = output[0];
        if (m_id < 0)
            throw std::runtime_error("cannot fork");
    }

    ~Process()
    {
        close(m_input);
        waitpid(m_id, nullptr, 0);
        close(m_output);
    }

    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    void write(const std::string& line) const
    {
        if (::write(m_input, line.data(), line.size()) != ssize_t(line.size()))
            throw std::runtime_error("the server's script has ended");
    }

    std::string readLine() const
    {
        std::string line;
        for (char c = 0; c != '\n'; line += c) {
            pollfd waiting{m_output, POLLIN, 0};
            if (poll(&waiting, 1, kMillisecondsForAnOrder) != 1 || read(m_output, &c, 1) != 1)
                throw std::runtime_error("no answer from the server's script: " + line);
        }
        line.pop_back();
        return line;
    }

private:
    pid_t m_id = -1;
    int m_input = -1, m_output = -1;
};

std::string TestServer::name(Kind kind)
{
    std::string name = word(kind);
    name[0] = char(std::toupper(name[0]));
    return name;
}

TestServer::TestServer(Kind kind, const Options& options) : m_kind(kind), m_hasDigest(options.digest)
{
    std::signal(SIGPIPE, SIG_IGN);
    std::vector<std::string> arguments{word(kind)};
    if (options.tls)
        arguments.emplace_back("--tls");
    if (options.digest)
        arguments.emplace_back("--digest");
    m_process = std::make_unique<Process>(arguments);
    const std::string line = m_process->readLine();
    if (line.starts_with("missing\t"))
        m_missing = line.substr(std::strlen("missing\t"));
    else
        readReady(line);
}

TestServer::~TestServer()
{
    if (!testing::Test::HasFailure() || !m_missing.empty())
        return;
    const std::string log = contentOf(this->log());
    std::cout << "The log of " << word(m_kind) << " ends with:\n"
              << log.substr(log.size() - std::min(log.size(), kShownOfTheLog)) << '\n';
}

void TestServer::readReady(const std::string& line)
{
    std::vector<std::string> fields;
    boost::split(fields, line, boost::is_any_of("\t"));
    if (fields.size() != 5 || fields[0] != "ready")
        throw std::runtime_error(line);
    m_address = fields[1];
    m_user = fields[2];
    m_password = fields[3];
    m_home = fields[4];
}

std::string TestServer::order(const char* order)
{
    m_process->write(std::string(order) + '\n');
    return m_process->readLine();
}

void TestServer::stop()
{
    order("stop");
}

void TestServer::kill()
{
    order("kill");
}

void TestServer::start()
{
    readReady(order("start"));
}

int TestServer::port() const
{
    return std::stoi(m_address.substr(m_address.rfind(':') + 1));
}

fs::path TestServer::folder() const
{
    return m_home / (m_kind == Kind::Subversion ? "repository" : "drive");
}

TestServer::Answer TestServer::request(const std::string& method, const std::string& path,
                                       const std::string& body, const std::vector<std::string>& headers) const
{
    return requestAt(m_address + path, method, body, headers);
}

TestServer::Answer TestServer::requestAt(const std::string& url, const std::string& method,
                                         const std::string& body, const std::vector<std::string>& headers,
                                         double seconds) const
{
    const ScratchFolder scratch;
    const fs::path answered = scratch.path() / "headers";
    const fs::path config = scratch.write("config", "user = \"" + m_user + ':' + m_password + "\"\n");
    std::vector<std::string> arguments{"-sSk",
                                       m_hasDigest ? "--digest" : "--basic",
                                       "--noproxy",
                                       "*",
                                       "--path-as-is",
                                       "-K",
                                       config.string(),
                                       "-m",
                                       std::to_string(seconds),
                                       "-D",
                                       answered.string(),
                                       "-X",
                                       method,
                                       "-w",
                                       "\n%{http_code}"};
    if (!body.empty() || method == "PUT")
        arguments.insert(arguments.end(), {"--data-binary", "@-"});
    if (headers.empty()) // Or it says that the body comes from a form.
        arguments.insert(arguments.end(), {"-H", "Content-Type:"});
    if (method == "HEAD")
        arguments.emplace_back("-I");
    for (const std::string& header : headers)
        arguments.insert(arguments.end(), {"-H", header});
    arguments.push_back(url);
    const ProcessResult run = runProcess("/usr/bin/curl", arguments, {.input = body});

    Answer answer{.failure = run.exitCode};
    const size_t last = run.output.rfind('\n');
    answer.status = last == std::string::npos ? 0 : std::atoi(run.output.c_str() + last);
    answer.body = run.output.substr(0, last);
    if (fs::exists(answered))
        answer.headers = contentOf(answered);
    return answer;
}

std::optional<std::string> TestServer::content(const std::string& path) const
{
    Answer answer = request("GET", path);
    if (answer.status != 200)
        return std::nullopt;
    return std::move(answer.body);
}

std::vector<std::string> TestServer::names(const std::string& folder) const
{
    std::vector<std::string> names;
    if (m_kind == Kind::Subversion) {
        const std::string listed =
            runProcess("/usr/bin/svn", {"ls", "file://" + this->folder().string() + '/' + folder}).output;
        boost::split(names, boost::trim_copy(listed), boost::is_any_of("\n"));
        for (std::string& name : names)
            boost::trim_right_if(name, boost::is_any_of("/"));
        std::erase(names, std::string());
    } else {
        for (const fs::directory_entry& entry : fs::directory_iterator(this->folder() / folder))
            names.push_back(entry.path().filename().string());
    }
    std::erase_if(names, isOfTheServer);
    std::sort(names.begin(), names.end());
    return names;
}

bool TestServer::isLocked(const std::string& path) const
{
    static const std::string kLock = "<lockinfo xmlns='DAV:'><lockscope><exclusive/></lockscope>"
                                     "<locktype><write/></locktype></lockinfo>";
    const Answer answer =
        request("LOCK", path, kLock, {"Content-Type: application/xml", "Timeout: Second-60"});
    if (answer.status == 423)
        return true;
    if (answer.status >= 300 || answer.status == 0)
        throw std::runtime_error("LOCK was answered with " + std::to_string(answer.status));
    std::vector<std::string> lines;
    boost::split(lines, answer.headers, boost::is_any_of("\r\n"));
    for (const std::string& line : lines)
        if (strncasecmp(line.c_str(), "Lock-Token:", 11) == 0)
            request("UNLOCK", path, {}, {line});
    return false;
}

bool serversAreRequired()
{
    const char* const value = std::getenv("QUILLET_SERVERS");
    return value && std::strcmp(value, "required") == 0;
}

} // namespace TestSupport
