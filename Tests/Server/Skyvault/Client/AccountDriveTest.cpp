// Drives that have uploads in chunks and comments beside WebDAV, by a strict stand-in: none can be had here.

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
#include <gtest/gtest.h>
#include <thread>

using namespace Vs;
using namespace Vs::Cloud;
using TestSupport::Fault;
using TestSupport::FaultProxy;

namespace {

constexpr size_t kMiB = size_t(1) << 20;
const std::string kUploads = "/remote.php/dav/uploads/ada/";
const std::string kOther = "another's work";

/// No two parts of it are the same.
std::string contentOfSize(size_t size)
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
class AccountDriveTest : public testing::Test
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

    /// The server has seen nothing that a client may not do.
    void TearDown() override { EXPECT_EQ(state("refusals"), "[]"); }

    DriveResult save(const std::string& content, const std::optional<std::string>& known = {},
                     const DriveWatch& watch = {})
    {
        m_proxy.forgetRequests();
        const std::string source = m_local.write("source", content).string();
        return m_drive->upload({.path = "/wheel", .source = source, .known = known}, m_entry, watch);
    }

    /// By somebody else, past the proxy.
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

    /// "MKCOL PUT 00001 PUT 00002 MOVE .file": what was asked of uploads since the last save began.
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

/// Whether it is an upload's chunk, by its number, or its last request.
bool isAt(const FaultProxy::Request& request, const std::string& end)
{
    return request.target.starts_with(kUploads) && request.target.ends_with('/' + end) &&
           (request.method == "PUT" || request.method == "MOVE");
}

} // namespace

TEST_F(AccountDriveTest, ProbingSeesWhatTheServerOffers)
{
    ASSERT_EQ(m_drive->connect(std::nullopt, {}).detail, "");
    const DriveTraits& traits = m_drive->traits();
    EXPECT_TRUE(traits.isKnown());
    EXPECT_TRUE(traits.chunkedUpload);
    EXPECT_TRUE(traits.checksums);
    EXPECT_TRUE(traits.refusesExisting && traits.refusesStale && traits.keepsOldOnBreak && traits.properties);
    EXPECT_FALSE(traits.locks);
    EXPECT_EQ(m_drive->userName(), "Ada L.");
    EXPECT_EQ(state("files"), "{}");
}

TEST_F(AccountDriveTest, ALargeFileGoesInChunksAndASmallOneAtOnce)
{
    ASSERT_EQ(save(kLarge).detail, "");
    EXPECT_EQ(requestsOfUploads(), "MKCOL PUT 00001 PUT 00002 PUT 00003 MOVE .file");
    EXPECT_EQ(requestsOf("GET"), 0); // The server says which version it has made of it.
    EXPECT_EQ(m_entry.size, kLarge.size());
    DriveEntry there;
    ASSERT_EQ(m_drive->find("/wheel", there).detail, "");
    EXPECT_EQ(m_entry.etag, there.etag);
    EXPECT_EQ(contentOnServer(), kLarge);

    // The same content over itself is a version, too, and a chunk's least size is the threshold.
    ASSERT_EQ(save(kLarge, there.etag).detail, "");
    EXPECT_NE(m_entry.etag, there.etag);
    for (const size_t size : {5 * kMiB, 5 * kMiB + 1}) {
        const std::string content = kLarge.substr(0, size);
        ASSERT_EQ(save(content, m_entry.etag).detail, "");
        EXPECT_EQ(requestsOfUploads(), size == 5 * kMiB ? "" : "MKCOL PUT 00001 MOVE .file");
        EXPECT_EQ(m_entry.size, size);
        EXPECT_EQ(contentOnServer(), content);
    }
    EXPECT_EQ(state("uploads"), "{}");
}

TEST_F(AccountDriveTest, ABrokenUploadIsGoneOnWithAndNotBegunAnew)
{
    m_proxy.onRequest([](const FaultProxy::Request& request) {
        return isAt(request, "00002") ? std::optional(Fault::cutRequest(6 * kMiB)) : std::nullopt;
    });
    EXPECT_EQ(save(kLarge).state, CloudErrorState::Unreachable);
    m_proxy.onRequest({});
    EXPECT_EQ(state("files"), "{}");
    // The server keeps the half of the second that it got, once it has seen that no more comes.
    const auto hasHalf = [&] { return state("uploads").find("[\"00001\",\"00002\"]") != std::string::npos; };
    for (int tries = 0; tries < 100 && !hasHalf(); ++tries)
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_TRUE(hasHalf()) << state("uploads");

    ASSERT_EQ(save(kLarge).detail, "");
    EXPECT_EQ(requestsOfUploads(), "MKCOL PROPFIND PUT 00002 PUT 00003 MOVE .file");
    EXPECT_EQ(contentOnServer(), kLarge);
    EXPECT_EQ(state("uploads"), "{}");
}

TEST_F(AccountDriveTest, AnUploadThatTheServerForgetsMeanwhileIsBegunAnew)
{
    bool isForgotten = false;
    m_proxy.onRequest([&](const FaultProxy::Request& request) -> std::optional<Fault> {
        if (!isForgotten && isAt(request, "00003")) {
            const std::string folder = request.target.substr(0, request.target.rfind('/'));
            ask({"-X", "DELETE", "-H", "Destination: /remote.php/dav/files/ada/wheel"}, folder);
            isForgotten = true;
        }
        return std::nullopt;
    });
    ASSERT_EQ(save(kLarge).detail, "");
    EXPECT_EQ(requestsOfUploads(), "MKCOL PUT 00001 PUT 00002 PUT 00003 "
                                   "MKCOL PUT 00001 PUT 00002 PUT 00003 MOVE .file");
    EXPECT_EQ(contentOnServer(), kLarge);
}

TEST_F(AccountDriveTest, WhatAnotherWritesDuringAnUploadInChunksIsNotWrittenOver)
{
    const auto write = [&](const std::string& at, const std::optional<std::string>& known) {
        m_proxy.onRequest([this, at](const FaultProxy::Request& request) -> std::optional<Fault> {
            if (isAt(request, at))
                putOther();
            return std::nullopt;
        });
        const DriveResult result = save(kLarge, known);
        m_proxy.onRequest({});
        EXPECT_EQ(result.state, CloudErrorState::Changed) << result.detail;
        EXPECT_EQ(contentOnServer(), kOther);
        EXPECT_EQ(m_entry.size, kOther.size()); // It tells of the other's.
        EXPECT_EQ(state("uploads"), "{}");
    };
    write(".file", std::nullopt);
    write(".file", m_entry.etag);
    // Where the server looks at no condition, the client has still looked.
    m_server.order("forgetful");
    write("00002", m_entry.etag);

    const std::string source = m_local.write("source", kLarge).string();
    const DriveResult kept = m_drive->upload(
        {.path = "/wheel", .source = source, .known = std::string("\"old\""), .keepOther = true}, m_entry,
        {});
    EXPECT_EQ(kept.detail, "");
    EXPECT_EQ(contentOnServer(), kLarge);
    EXPECT_NE(state("files").find("\":" + std::to_string(kOther.size())), std::string::npos)
        << state("files");
}

TEST_F(AccountDriveTest, ACancelledUploadInChunksLeavesNothing)
{
    ASSERT_EQ(save(kOther).detail, "");
    const DriveWatch watch{[](std::uint64_t done, std::uint64_t) { return done < 12 * kMiB; }};
    EXPECT_EQ(save(kLarge, m_entry.etag, watch).state, CloudErrorState::Cancelled);
    EXPECT_EQ(contentOnServer(), kOther);
    EXPECT_EQ(state("uploads"), "{}");
}

TEST_F(AccountDriveTest, AnUploadInChunksWhoseLastAnswerIsLostIsLookedUp)
{
    m_proxy.onRequest([](const FaultProxy::Request& request) {
        return isAt(request, ".file") ? std::optional(Fault::loseAnswer()) : std::nullopt;
    });
    ASSERT_EQ(save(kLarge).detail, "");
    EXPECT_EQ(requestsOf("MOVE"), 1);
    EXPECT_EQ(contentOnServer(), kLarge);

    // A gateway that waits no longer: nothing is taken from under a server that may be putting them together.
    m_proxy.onRequest([](const FaultProxy::Request& request) {
        return isAt(request, ".file") ? std::optional(Fault::answer(504)) : std::nullopt;
    });
    const std::string next = kLarge.substr(1), known = m_entry.etag;
    EXPECT_EQ(save(next, known).state, CloudErrorState::ServerError);
    EXPECT_EQ(requestsOf("DELETE"), 0);
    m_proxy.onRequest({});
    ASSERT_EQ(save(next, known).detail, "");
    EXPECT_EQ(requestsOfUploads(), "MKCOL PROPFIND MOVE .file");
    EXPECT_EQ(contentOnServer(), next);
}

TEST_F(AccountDriveTest, ACommentIsKeptOnceAndWithoutCommentsItIsAProperty)
{
    ASSERT_EQ(save(kOther).detail, "");
    std::string id;
    ASSERT_EQ(m_drive->comment("/wheel", "Too \"thin\" <here>, größer!", id).detail, "");
    EXPECT_EQ(id, "100");
    m_proxy.onRequest([](const FaultProxy::Request& request) {
        return request.method == "POST" ? std::optional(Fault::loseAnswer()) : std::nullopt;
    });
    id.clear();
    EXPECT_EQ(m_drive->comment("/wheel", "Done. ", id).detail, "");
    EXPECT_EQ(id, "101");
    m_proxy.onRequest([](const FaultProxy::Request& request) {
        return request.method == "POST" ? std::optional(Fault::reset()) : std::nullopt;
    });
    EXPECT_EQ(m_drive->comment("/wheel", "Never heard", id).state, CloudErrorState::Unreachable);
    m_proxy.onRequest({});
    const auto kept = QJsonDocument::fromJson(QByteArray::fromStdString(state("comments"))).array();
    ASSERT_EQ(kept.size(), 2);
    EXPECT_EQ(kept[0].toObject()["message"].toString(), QString::fromUtf8("Too \"thin\" <here>, größer!"));
    EXPECT_EQ(kept[1].toObject()["message"].toString(), "Done.");

    m_server.order("mute");
    id.clear();
    EXPECT_EQ(m_drive->comment("/wheel", "Without <comments>", id).detail, "");
    EXPECT_EQ(id, "");
    const std::string listed = ask({"-X", "PROPFIND", "-H", "Depth: 0"}, "/remote.php/webdav/wheel");
    EXPECT_NE(listed.find("Ada L.: Without &lt;comments&gt;"), std::string::npos) << listed;
}

/// By seconds that the server's clock is ahead of the client's.
class OtherClockTest : public AccountDriveTest, public testing::WithParamInterface<int>
{
};

INSTANTIATE_TEST_SUITE_P(AnHour, OtherClockTest, testing::Values(-3600, 3600),
                         [](const auto& info) { return info.param < 0 ? "Behind" : "Ahead"; });

TEST_P(OtherClockTest, SavesCommentsAndWaitsGoByTheServersTimes)
{
    m_server.order("clock " + std::to_string(GetParam()));
    ASSERT_EQ(m_drive->connect(std::nullopt, {}).detail, "");
    EXPECT_TRUE(m_drive->traits().isKnown());
    // What was found out before the client's clock was set counts, unless that was set by days.
    for (const int factor : {1, 24 * 40}) {
        DriveTraits known = m_drive->traits();
        known.probed += std::chrono::seconds(GetParam()) * factor;
        m_proxy.forgetRequests();
        ASSERT_EQ(m_drive->connect(known, {}).detail, "");
        EXPECT_EQ(requestsOf("MKCOL"), factor == 1 ? 0 : 1);
    }
    ASSERT_EQ(save("small").detail, "");
    // A date at which it takes uploads again: neither an hour from now nor an hour ago.
    m_server.order("busy 3");
    ASSERT_EQ(save(kLarge, m_entry.etag).detail, "");
    EXPECT_LE(requestsOf("MKCOL"), 5); // It has waited rather than asked again and again.
    const std::string known = m_entry.etag;
    putOther();
    EXPECT_EQ(save(kLarge, known).state, CloudErrorState::Changed);
    EXPECT_EQ(contentOnServer(), kOther);
    std::string id;
    EXPECT_EQ(m_drive->comment("/wheel", "An hour off", id).detail, "");
    EXPECT_EQ(id, "100");
}
