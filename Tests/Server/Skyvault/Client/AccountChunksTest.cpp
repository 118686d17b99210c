// Uploads in chunks.

#include "Tests/Server/Skyvault/Client/AccountDrive.h"

#include <thread>

using namespace AccountDrives;

namespace {

using AccountChunksTest = AccountDrive;

/// Whether it is an upload's chunk, by its number, or its last request.
bool isAt(const FaultProxy::Request& request, const std::string& end)
{
    return request.target.starts_with(kUploads) && request.target.ends_with('/' + end) &&
           (request.method == "PUT" || request.method == "MOVE");
}

} // namespace

TEST_F(AccountChunksTest, ALargeFileGoesInChunksAndASmallOneAtOnce)
{
    ASSERT_EQ(save(kLarge).detail, "");
    EXPECT_EQ(requestsOfUploads(), "MKCOL PUT 00001 PUT 00002 PUT 00003 MOVE .file");
    EXPECT_EQ(requestsOf("GET"), 0); // The server reports which version it has made from it.
    EXPECT_EQ(m_entry.size, kLarge.size());
    DriveEntry there;
    ASSERT_EQ(m_drive->find("/wheel", there).detail, "");
    EXPECT_EQ(m_entry.etag, there.etag);
    EXPECT_EQ(contentOnServer(), kLarge);

    // The same content over itself is a version, too, and the smallest chunk is as large as the threshold.
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

TEST_F(AccountChunksTest, ABrokenUploadIsGoneOnWithAndNotBegunAnew)
{
    m_proxy.onRequest([](const FaultProxy::Request& request) {
        return isAt(request, "00002") ? std::optional(Fault::cutRequest(6 * kMiB)) : std::nullopt;
    });
    EXPECT_EQ(save(kLarge).state, CloudErrorState::Unreachable);
    m_proxy.onRequest({});
    EXPECT_EQ(state("files"), "{}");
    // The server keeps the half of the second that it received, once it has noticed that no more comes.
    const auto hasHalf = [&] { return state("uploads").find("[\"00001\",\"00002\"]") != std::string::npos; };
    for (int tries = 0; tries < 100 && !hasHalf(); ++tries)
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_TRUE(hasHalf()) << state("uploads");

    ASSERT_EQ(save(kLarge).detail, "");
    EXPECT_EQ(requestsOfUploads(), "MKCOL PROPFIND PUT 00002 PUT 00003 MOVE .file");
    EXPECT_EQ(contentOnServer(), kLarge);
    EXPECT_EQ(state("uploads"), "{}");
}

TEST_F(AccountChunksTest, AnUploadThatTheServerForgetsMeanwhileIsBegunAnew)
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

TEST_F(AccountChunksTest, WhatAnotherWritesDuringAnUploadInChunksIsNotWrittenOver)
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
        EXPECT_EQ(m_entry.size, kOther.size()); // It reports the other's.
        EXPECT_EQ(state("uploads"), "{}");
    };
    write(".file", std::nullopt);
    write(".file", m_entry.etag);
    // If the server ignores conditions, the client has still checked.
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

TEST_F(AccountChunksTest, ACancelledUploadInChunksLeavesNothing)
{
    ASSERT_EQ(save(kOther).detail, "");
    const DriveWatch watch{[](std::uint64_t done, std::uint64_t) { return done < 12 * kMiB; }};
    EXPECT_EQ(save(kLarge, m_entry.etag, watch).state, CloudErrorState::Cancelled);
    EXPECT_EQ(contentOnServer(), kOther);
    EXPECT_EQ(state("uploads"), "{}");
}

TEST_F(AccountChunksTest, AnUploadInChunksWhoseLastAnswerIsLostIsLookedUp)
{
    m_proxy.onRequest([](const FaultProxy::Request& request) {
        return isAt(request, ".file") ? std::optional(Fault::loseAnswer()) : std::nullopt;
    });
    ASSERT_EQ(save(kLarge).detail, "");
    EXPECT_EQ(requestsOf("MOVE"), 1);
    EXPECT_EQ(contentOnServer(), kLarge);

    // A gateway that times out: nothing is taken away from a server that may be assembling the chunks.
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
