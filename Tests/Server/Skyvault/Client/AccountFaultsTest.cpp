// Whatever goes wrong with any one request of a chunked upload, or of a comment: the drive holds the old or
// the new content, and the next save succeeds.

#include "Tests/Server/Skyvault/Client/AccountDrive.h"
#include "Tests/Server/Skyvault/Servers/Faults.h"

using namespace AccountDrives;

namespace {

const std::string kAgain = contentOfSize(5 * kMiB + 1); // One chunk.

class AccountFaultsTest : public AccountDrive
{
protected:
    void disturb(const std::function<void()>& prepare, const std::function<DriveResult()>& run,
                 const std::function<void(bool isDone)>& check)
    {
        prepare();
        m_proxy.forgetRequests();
        ASSERT_EQ(run().detail, "");
        const auto requests = m_proxy.requests();
        for (const FaultProxy::Request& request : requests) {
            // Requests that only read are disturbed on other servers.
            if (request.method == "PROPFIND")
                continue;
            for (const FaultCase& one : faults()) {
                if (one.forListings)
                    continue;
                SCOPED_TRACE(std::string(one.name) + " at " + request.method + ' ' + request.target +
                             ", the request " + std::to_string(request.number));
                prepare();
                disturbOnce(m_proxy, *m_drive, request.number, one);
                const DriveResult result = run();
                endDisturbance(m_proxy, *m_drive);
                expectClear(result, one, "sesame");
                check(result.isOk());
                // If a network's page is taken for an answer, the chunk seems to have arrived.
                if (one.name == std::string("a network's own page"))
                    m_server.order("forgive");
                EXPECT_EQ(state("refusals"), "[]");
                if (HasFailure())
                    return;
            }
        }
    }
};

int countOf(const std::string& part, const std::string& text)
{
    int count = 0;
    for (size_t at = text.find(part); at != text.npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

} // namespace

TEST_F(AccountFaultsTest, AVersionInChunksIsTheOldOrTheNewOneAndTheNextSaveGetsThrough)
{
    const std::string source = m_local.write("source", kAgain).string();
    const auto sizes = [](size_t size) { return "{\"wheel\":" + std::to_string(size) + '}'; };
    DriveEntry before;
    const auto upload = [&] {
        return m_drive->upload({.path = "/wheel", .source = source, .known = before.etag}, m_entry, {});
    };
    disturb(
        [&] {
            putOther();
            ASSERT_EQ(m_drive->find("/wheel", before).detail, "");
        },
        upload,
        [&](bool isDone) {
            const std::string there = state("files");
            EXPECT_TRUE(there == sizes(kAgain.size()) || (!isDone && there == sizes(kOther.size()))) << there;
            if (there == sizes(kOther.size())) {
                EXPECT_EQ(upload().detail, "");
            }
            EXPECT_EQ(state("files"), sizes(kAgain.size()));
            EXPECT_EQ(state("uploads"), "{}");
        });
}

TEST_F(AccountFaultsTest, ACommentIsKeptOnceOrNotAtAll)
{
    ASSERT_EQ(save(kOther).detail, "");
    int number = 0;
    std::string id, text;
    disturb([&] { text = "Remark " + std::to_string(++number) + '.'; },
            [&] { return m_drive->comment("/wheel", text, id); },
            [&](bool isDone) {
                const std::string kept =
                    state("comments") + ask({"-X", "PROPFIND", "-H", "Depth: 0"}, "/remote.php/webdav/wheel");
                EXPECT_LE(countOf(text, kept), 1) << kept;
                EXPECT_TRUE(countOf(text, kept) == 1 || !isDone) << kept;
                EXPECT_EQ(contentOnServer(), kOther);
            });
}
