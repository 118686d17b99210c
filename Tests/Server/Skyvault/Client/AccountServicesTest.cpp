// What a server with accounts offers besides chunked uploads, and how its clock counts.

#include "Tests/Server/Skyvault/Client/AccountDrive.h"

#include <set>

using namespace AccountDrives;

namespace {

using AccountServicesTest = AccountDrive;

} // namespace

TEST_F(AccountServicesTest, ProbingSeesWhatTheServerOffers)
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

TEST_F(AccountServicesTest, WhatIsKeptOtherwiseThanItWasSentIsNotTakenForSaved)
{
    ASSERT_EQ(save(kOther).detail, "");
    const std::string known = m_entry.etag;
    m_server.order("corrupt");
    const DriveResult small = save("another's play", known);
    EXPECT_EQ(small.state, CloudErrorState::NotKept);
    EXPECT_NE(small.detail.find("checksum"), std::string::npos) << small.detail;
    DriveEntry there;
    ASSERT_EQ(m_drive->find("/wheel", there).detail, "");
    EXPECT_EQ(save(kLarge, there.etag).state, CloudErrorState::NotKept);
}

TEST_F(AccountServicesTest, WhereTheServerKeepsVersionsNoCopyIsMadeOfWhatNobodyHasSeen)
{
    putOther();
    m_server.order("versions");
    ASSERT_EQ(m_drive->connect(m_drive->traits(), {}).detail, "");
    EXPECT_TRUE(m_drive->traits().versions);
    const std::string source = m_local.write("source", kLarge.substr(0, 100)).string();
    const DriveUpload upload{.path = "/wheel", .source = source, .known = {}, .keepOther = true};
    EXPECT_EQ(m_drive->upload(upload, m_entry, {}).detail, "");
    EXPECT_EQ(state("files"), "{\"wheel\":100}");
    EXPECT_EQ(state("versions"), "{\"wheel\":[\"" + kOther + "\"]}");
}

TEST_F(AccountServicesTest, ACommentIsKeptOnceAndWithoutCommentsItIsAProperty)
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

TEST_F(AccountServicesTest, ALongFolderThatHasNotChangedIsNotListedAgain)
{
    std::vector<DriveEntry> entries;
    std::set<std::string> wanted{"/many/deep"};
    const auto list = [&](const std::string& depths) {
        m_proxy.forgetRequests();
        EXPECT_EQ(m_drive->list("/many", entries, {}).detail, "");
        std::string asked;
        for (const auto& request : m_proxy.requests())
            asked += request.headers.at("depth");
        EXPECT_EQ(asked, depths);
        std::set<std::string> paths;
        for (const DriveEntry& entry : entries)
            paths.insert(entry.path);
        EXPECT_EQ(paths, wanted);
    };
    ASSERT_EQ(m_drive->makeFolders("/many/deep").detail, "");
    list("1");
    list("1"); // A short one is read as quickly as asked about.
    for (int i = 0; i < 120; ++i)
        wanted.insert("/many/" + std::to_string(i));
    ask({"-X", "PUT", "--data-binary", "x"}, "/remote.php/webdav/many/[0-119]");
    list("1");
    list("0");
    ask({"-X", "DELETE"}, "/remote.php/webdav/many/7");
    wanted.erase("/many/7");
    list("01");
    ask({"-X", "PUT", "--data-binary", "x"}, "/remote.php/webdav/many/deep/a");
    list("01");
    list("0");
    // What this client changes itself needs no request.
    DriveEntry made;
    const std::string source = m_local.write("source", kOther).string();
    ASSERT_EQ(m_drive->upload({.path = "/many/7", .source = source}, made, {}).detail, "");
    wanted.insert("/many/7");
    list("1");
    list("0");
}

/// By how many seconds the server's clock is ahead of the client's.
class OtherClockTest : public AccountServicesTest, public testing::WithParamInterface<int>
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
    // A date at which it accepts uploads again: neither an hour from now nor an hour ago.
    m_server.order("busy 3");
    ASSERT_EQ(save(kLarge, m_entry.etag).detail, "");
    EXPECT_LE(requestsOf("MKCOL"), 5); // It waited rather than asked again and again.
    const std::string known = m_entry.etag;
    putOther();
    EXPECT_EQ(save(kLarge, known).state, CloudErrorState::Changed);
    EXPECT_EQ(contentOnServer(), kOther);
    std::string id;
    EXPECT_EQ(m_drive->comment("/wheel", "An hour off", id).detail, "");
    EXPECT_EQ(id, "100");
}
