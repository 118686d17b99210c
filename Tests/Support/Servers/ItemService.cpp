#include "Tests/Support/Servers/ItemService.h"

#include "Tests/Support/Files.h"
#include "Tests/Support/Process.h"

#include <boost/filesystem/operations.hpp>

#include <arpa/inet.h>
#include <chrono>
#include <csignal>
#include <netinet/in.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace TestSupport {
namespace {

constexpr std::chrono::seconds kPatience{30};

sockaddr_in atPort(int port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<uint16_t>(port));
    return address;
}

int freePort()
{
    const int made = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = atPort(0);
    socklen_t size = sizeof address;
    auto* const any = reinterpret_cast<sockaddr*>(&address);
    const bool isBound = bind(made, any, size) == 0 && getsockname(made, any, &size) == 0;
    close(made);
    if (!isBound)
        throw std::runtime_error("no port is free");
    return ntohs(address.sin_port);
}

bool answers(int port)
{
    const int made = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_in address = atPort(port);
    const bool isThere = connect(made, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    close(made);
    return isThere;
}

/// As the plain user, where that is possible.
std::vector<std::string> asPlainUser(std::vector<std::string> words)
{
    if (!mayBeOthers())
        return words;
    const std::string user = std::to_string(kSomebody);
    words.insert(words.begin(), {"/usr/bin/setpriv", "--reuid=" + user, "--regid=" + user, "--clear-groups"});
    return words;
}

} // namespace

ItemService::ItemService() : m_port(freePort()), m_proxy(std::make_unique<FaultProxy>(m_port))
{
    const boost::filesystem::path data = m_folder.path() / "data";
    boost::filesystem::create_directory(data);
    if (mayBeOthers() && chown(data.c_str(), kSomebody, kSomebody) != 0)
        throw std::runtime_error("the service's folder can't be given away");
    m_configuration = (m_folder.path() / "itemhub.json").string();
    overwrite(m_configuration, "{\"database\": {\"name\": \"" + (data / "items.sqlite").string() +
                                   "\"}, \"blobs\": \"" + (data / "blobs").string() +
                                   "\", \"server\": {\"port\": " + std::to_string(m_port) + ", \"url\": \"" +
                                   address().substr(0, address().size() - 1) +
                                   "\"}, \"limits\": {\"requestsPerSecond\": 0}}");
    admin({"customer", "add", "acme"});
    admin({"workspace", "add", "acme", "Designs"});
    start();
}

ItemService::~ItemService()
{
    stop(SIGKILL);
}

std::string ItemService::program() const
{
    return (runningTree() / "bin/quillet-itemhub").string();
}

void ItemService::start()
{
    std::vector<std::string> words = asPlainUser({program(), "--serve", m_configuration});
    m_process = fork();
    if (m_process == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        // A connection of the proxy's that the service had as well would stand after the proxy has closed it,
        // and its client would wait for nothing.
        close_range(3, ~0U, 0);
        std::vector<char*> arguments;
        for (std::string& word : words)
            arguments.push_back(word.data());
        arguments.push_back(nullptr);
        execvp(arguments[0], arguments.data());
        _exit(127);
    }
    const auto end = std::chrono::steady_clock::now() + kPatience;
    while (!answers(m_port)) {
        if (std::chrono::steady_clock::now() > end || waitpid(m_process, nullptr, WNOHANG) != 0)
            throw std::runtime_error("the service doesn't start");
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

void ItemService::stop(int signal)
{
    if (m_process < 0)
        return;
    kill(m_process, signal);
    waitpid(m_process, nullptr, 0);
    m_process = -1;
}

std::string ItemService::admin(const std::vector<std::string>& words, const std::string& input) const
{
    std::vector<std::string> arguments = asPlainUser({program(), "admin", m_configuration});
    arguments.insert(arguments.end(), words.begin(), words.end());
    const std::string first = arguments.front();
    arguments.erase(arguments.begin());
    ProcessOptions options;
    options.input = input;
    const ProcessResult result = runProcess(first, arguments, options);
    if (result.exitCode != 0)
        throw std::runtime_error("admin " + words.front() + ": " + result.errors);
    return result.output.substr(0, result.output.find_last_not_of('\n') + 1);
}

const std::string& ItemService::password()
{
    static const std::string password = "correct horse battery";
    return password;
}

std::string ItemService::signInWithBrowser(const std::string& page, const std::string& account)
{
    // The page's other fields are those of its address.
    constexpr const char* kBrowser = R"sh(
curl -sf -o /dev/null "$1" &&
    curl -sfL -d "${1#*\?}" --data-urlencode "account=$2" --data-urlencode "password=$3" "${1%%\?*}"
)sh";
    const ProcessResult shown = runProcess("/bin/sh", {"-c", kBrowser, "sh", page, account, password()});
    return shown.output + shown.errors;
}

std::string ItemService::token(const std::string& account, const std::string& role,
                               const std::string& customer, const std::string& scope) const
{
    try {
        admin({"account", "add", customer, account}, password() + '\n');
    } catch (const std::runtime_error&) {
        // It is there already; what is wrong otherwise is found below.
    }
    admin({"member", "set", customer, account, "all", role});
    return admin({"token", "add", customer, account, scope, "1"});
}

} // namespace TestSupport
