#include "Server/Itemhub/Private/OwnService.h"

#include "Server/Base/OwnFiles.h"
#include "Server/Base/PathInfo.h"
#include "Server/Itemhub/Private/Places.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <boost/filesystem/path.hpp>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>
#include <utility>

namespace Vs::Itemhub {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kPipeOfService = 3;
/// The first start creates a database, which takes a while on a slow disk.
constexpr std::chrono::seconds kPatience{60};
constexpr int kLook = 100;
constexpr size_t kLongestLine = 65536;
constexpr std::chrono::seconds kPatienceAtEnd{5};

[[noreturn]] void failed(const std::string& why)
{
    throw Web::ItemhubException(Web::ItemhubException::Kind::Local,
                                "The program's own lifecycle service did not start: " + why);
}

/// The line that the service prints about itself.
std::string readLine(int pipe, const Watch& watch)
{
    std::string line;
    const auto end = Clock::now() + kPatience;
    while (line.find('\n') == std::string::npos) {
        if (!watch.goesOn())
            throw ItemStore::Cancelled();
        if (Clock::now() > end || line.size() > kLongestLine)
            failed("it did not say where it can be reached");
        pollfd entry{pipe, POLLIN, 0};
        if (poll(&entry, 1, kLook) <= 0)
            continue;
        char bytes[4096];
        const ssize_t count = read(pipe, bytes, sizeof bytes);
        if (count == 0)
            failed("it ended at once; its error output says why");
        if (count > 0)
            line.append(bytes, static_cast<size_t>(count));
    }
    return line;
}

} // namespace

OwnService& OwnService::get()
{
    // Never destroyed: whatever stops it may itself be destroyed after statics that are initialized as
    // late as this.
    static auto* const service = new OwnService;
    return *service;
}

void OwnService::launch()
{
    if (isAlive())
        return;
    stop();
    const boost::filesystem::path folder = Places::ownService();
    OwnFiles::makeFolder(folder);
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        failed(std::strerror(errno));
    m_pipe = ends[0];
    // It leads its own process group, since Ctrl+C in a terminal should end the program, which then still
    // has to talk to its service.
    const std::string program = (PathInfo::rootDirectory() / "bin" / "quillet-itemhub").string();
    const int error =
        m_process.start({.program = program,
                         .arguments = {"--local", folder.string(), "--pipe", std::to_string(kPipeOfService)},
                         .descriptors = {{ends[1], kPipeOfService}}});
    close(ends[1]);
    if (error != 0) {
        stop();
        failed(program + ": " + std::strerror(error));
    }
}

Access OwnService::start(const Watch& watch)
{
    launch();
    if (m_access.token.empty())
        m_access = readAccess(watch);
    return m_access;
}

Access OwnService::readAccess(const Watch& watch)
try {
    const QJsonObject said =
        QJsonDocument::fromJson(QByteArray::fromStdString(readLine(m_pipe, watch))).object();
    Access access;
    access.isOwn = true;
    access.address = said["url"].toString().toStdString() + '/';
    access.customer = said["customer"].toString().toStdString();
    access.token = said["token"].toString().toStdString();
    if (!said["url"].isString() || access.token.empty())
        failed("it did not say where it can be reached");
    return access;
} catch (...) {
    stop();
    throw;
}

bool OwnService::isAlive()
{
    if (!m_process.exists())
        return false;
    if (!m_process.endsWithin({}))
        return true;
    m_process.collect();
    return false;
}

void OwnService::stop()
{
    if (m_pipe >= 0)
        close(std::exchange(m_pipe, -1));
    m_access = {};
    if (!m_process.exists())
        return;
    // Everything it has acknowledged is on disk.
    if (!m_process.endsWithin(kPatienceAtEnd))
        m_process.kill();
    m_process.collect();
}

} // namespace Vs::Itemhub
