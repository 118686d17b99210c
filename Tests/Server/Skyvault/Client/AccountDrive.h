#pragma once

#include "Server/Skyvault/Client/Transport.h"
#include "Tests/Server/Skyvault/Client/ScriptedServer.h"
#include "Tests/Support/Files.h"
#include "Tests/Support/Process.h"
#include "Tests/Support/Servers/FaultProxy.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>

#include <algorithm>
#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// Drives that offer chunked uploads, comments and more besides WebDAV, by a strict stand-in: no real one is
/// available here.
namespace AccountDrives {

using namespace Vs;
using namespace Vs::Cloud;
using TestSupport::Fault;
using TestSupport::FaultProxy;

constexpr size_t kMiB = size_t(1) << 20;
const std::string kUploads = "/remote.php/dav/uploads/ada/";
const std::string kOther = "another's work";

/// No two parts of it are the same.
inline std::string contentOfSize(size_t size)
{
    std::string content;
    content.reserve(size + 16);
    for (size_t i = 0; content.size() < size; ++i)
        content += std::to_string(i) + ' ';
    content.resize(size);
    return content;
}

const std::string kLarge = contentOfSize(21 * kMiB);

/// A server of accounts, a proxy before it, and a client behind that.
class AccountDrive : public testing::Test
{
protected:
    void SetUp() override
    {
        m_drive = quilletDriveTransport()->drive(
            m_proxy.address() + "remote.php/webdav",
            {.kind = DriveCredentials::Kind::Password, .user = "ada", .secret = "sesame"});
        m_drive->patience(std::chrono::seconds(10));
        const DriveTraits known{.locks = false,
                                .refusesExisting = true,
                                .refusesStale = true,
                                .weakEtags = false,
                                .keepsOldOnBreak = true,
                                .movesOntoExisting = true,
                                .etagAfterPut = true,
                                .etagFromPropfind = true,
                                .etagsDifferInOneTick = true,
                                .properties = true,
                                .probed = std::chrono::system_clock::now()};
        const DriveResult connected = m_drive->connect(known, {});
        ASSERT_TRUE(connected.isOk()) << connected.detail;
    }

    /// The client has sent the server nothing that it may not send.
    void TearDown() override { EXPECT_EQ(state("refusals"), "[]"); }

    DriveResult save(const std::string& content, const std::optional<std::string>& known = {},
                     const DriveWatch& watch = {})
    {
        m_proxy.forgetRequests();
        const std::string source = m_local.write("source", content).string();
        return m_drive->upload({.path = "/wheel", .source = source, .known = known}, m_entry, watch);
    }

    /// By somebody else, bypassing the proxy.
    std::string ask(const std::vector<std::string>& arguments, const std::string& path)
    {
        std::vector<std::string> all{"-s", "-m", "20", "--noproxy", "*", "-u", "ada:sesame"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        all.push_back(m_server.address() + path.substr(1));
        return TestSupport::runProcess("/usr/bin/curl", all).output;
    }
    void putOther() { ask({"-X", "PUT", "--data-binary", kOther}, "/remote.php/webdav/wheel"); }
    std::string state(const char* name)
    {
        const auto all = QJsonDocument::fromJson(QByteArray::fromStdString(ask({}, "/state"))).object();
        const QJsonValue value = all[QLatin1String(name)];
        const QJsonDocument text =
            value.isArray() ? QJsonDocument(value.toArray()) : QJsonDocument(value.toObject());
        return text.toJson(QJsonDocument::Compact).toStdString();
    }
    std::string contentOnServer()
    {
        const std::string target = (m_local.path() / "read").string();
        DriveEntry entry;
        const DriveResult read = m_drive->download("/wheel", target, entry, {});
        return read.isOk() ? TestSupport::contentOf(target) : read.detail;
    }

    /// "MKCOL PUT 00001 PUT 00002 MOVE .file": the requests of uploads since the last save began.
    std::string requestsOfUploads() const
    {
        std::string text;
        for (const auto& request : m_proxy.requests()) {
            if (!request.target.starts_with(kUploads))
                continue;
            text += (text.empty() ? "" : " ") + request.method;
            const size_t slash = request.target.find('/', kUploads.size());
            if (slash < request.target.size() - 1) // Not the folder itself.
                text += ' ' + request.target.substr(slash + 1);
        }
        return text;
    }
    int requestsOf(const char* method) const
    {
        const auto requests = m_proxy.requests();
        return int(std::count_if(requests.begin(), requests.end(),
                                 [&](const auto& each) { return each.method == method; }));
    }

    ScriptedServer m_server{"account_drive.py"};
    FaultProxy m_proxy{QUrl(QString::fromStdString(m_server.address())).port()};
    TestSupport::ScratchFolder m_local;
    std::unique_ptr<Drive> m_drive;
    DriveEntry m_entry;
};

} // namespace AccountDrives
