// Wrong answers of a service, and what networks do to answers.

#include "Server/Base/Strings.h"
#include "Tests/Server/Itemhub/Fixture.h"
#include "Tests/Support/Files.h"

#include <boost/filesystem/operations.hpp>

namespace {

using TestSupport::Fault;
using TestSupport::FaultProxy;
namespace Web = Corvane::Itemstore::WebServices;
using Kind = Web::ItemhubException::Kind;

class AnswersTest : public ItemhubTest
{
protected:
    void SetUp() override { signIn(); }

    /// From now on, requests to such an address end like this.
    static void disturb(const std::string& part, const Fault& fault)
    {
        service().proxy().onRequest([=](const FaultProxy::Request& request) -> std::optional<Fault> {
            return request.target.find(part) != std::string::npos ? std::optional(fault) : std::nullopt;
        });
    }
    static void answerWith(const std::string& body, int status = 200)
    {
        disturb("/items/", Fault::answer(status, body, {"Content-Type: application/json"}));
    }
    static std::string ask()
    {
        try {
            std::ignore = hub().getItemById(7);
        } catch (const Web::PayloadException&) {
            return "payload";
        } catch (const Web::ConnectionException&) {
            return "connection";
        } catch (const Web::ItemhubException&) {
            return "service";
        }
        return "answered";
    }
};

constexpr const char* kItem =
    R"({"id": 7, "workspaceId": 1, "caption": "c", "description": "d", "revision": 1, "createdBy": "a",)"
    R"( "createdAt": "2026-01-31T12:00:00.000Z", "changedAt": "2026-01-31T12:00:00.000Z", "favourite": false})";

TEST_F(AnswersTest, WhatIsNotAsItShouldBeIsAPayloadException)
{
    answerWith(kItem);
    EXPECT_EQ(ask(), "answered");
    const auto with = [](const std::string& from, const std::string& to) {
        std::string text = kItem;
        return text.replace(text.find(from), from.size(), to);
    };
    for (const std::string& body :
         {std::string(), std::string("<html>Sign in to the network</html>"), std::string("[]"),
          std::string("null"), std::string("{}"), std::string("{\"id\": 7"),
          with("\"id\": 7", "\"id\": \"7\""), with("\"id\": 7", "\"id\": 7.5"),
          with("\"id\": 7", "\"id\": 0"), with("\"id\": 7", "\"id\": 1e300"), with("\"id\": 7", "\"id\": -7"),
          with("\"caption\": \"c\"", "\"caption\": null"),
          with("\"caption\": \"c\"", "\"caption\": {\"text\": \"c\"}"), with("false", "\"no\""),
          std::string(20'000'000, '['), "{\"caption\": \"" + std::string(17'000'000, 'x') + "\"}"}) {
        answerWith(body);
        EXPECT_EQ(ask(), "payload") << body.substr(0, 80);
    }
    for (const int status : {204, 304, 302}) {
        answerWith({}, status);
        EXPECT_NE(ask(), "answered") << status;
    }
}

TEST_F(AnswersTest, LostAndCutAnswersAreConnectionExceptionsUnlessAskingAgainHelps)
{
    for (const Fault& fault :
         {Fault::reset(), Fault::loseAnswer(), Fault::cutAnswer(0), Fault::cutAnswer(40)}) {
        disturb("/items/", fault);
        EXPECT_EQ(ask(), "connection");
        EXPECT_FALSE(hub().isOnline());
        // Once it is the only one, it is asked again.
        int count = 0;
        service().proxy().onRequest([&](const FaultProxy::Request& request) -> std::optional<Fault> {
            return request.target.find("/workspaces/1") != std::string::npos && count++ == 0
                       ? std::optional(Fault::reset())
                       : std::nullopt;
        });
        EXPECT_EQ(hub().getWorkspaceById(1).name(), "Designs");
        EXPECT_TRUE(hub().isOnline());
    }
    disturb("/workspaces/", Fault::delay(0.5));
    EXPECT_EQ(hub().getWorkspaceById(1).name(), "Designs") << "slow is well";
}

TEST_F(AnswersTest, TheServicesReasonIsToldWithoutMarkupOrLineBreaks)
{
    answerWith(R"({"status": 403, "code": "role", "detail": "Not\nyou \u001b[31m)" + std::string(5000, 'y') +
                   "\"}",
               403);
    try {
        std::ignore = hub().getItemById(7);
        FAIL();
    } catch (const Web::ItemhubException& error) {
        EXPECT_EQ(error.kind(), Kind::Forbidden);
        EXPECT_NE(error.message().find(L"Reading the item 7"), std::wstring::npos);
        EXPECT_EQ(error.message().find_first_of(L"\n\u001b"), std::wstring::npos);
        EXPECT_LT(error.message().size(), 600u);
    }
}

TEST_F(AnswersTest, ADownloadIsWholeOrNotThere)
{
    const std::string content = [] {
        std::string text;
        for (int i = 0; text.size() < 2'000'000; ++i)
            text += std::to_string(i) + ' ';
        return text;
    }();
    const Path file = newItem(L"Wheel");
    save(file, content);
    ASSERT_TRUE(arrive());
    const std::wstring uri = Vs::Strings::widen(attachmentOf(file).uri());
    hub().signOut();
    // Another account sees nothing of it.
    std::ignore = service().token("other" + account(), "writer");
    const auto signInAnew = [&] {
        ASSERT_TRUE(hub().signInWithPassword(service().address(), "acme", "other" + account(),
                                             TestSupport::ItemService::password(), false));
    };
    signInAnew();
    const auto filesBelow = [] {
        size_t count = 0;
        for (const auto& entry :
             boost::filesystem::recursive_directory_iterator(Vs::ItemhubUtilities::folder() / "accounts"))
            count += entry.path().string().find("other") != std::string::npos &&
                     boost::filesystem::is_regular_file(entry.path()) &&
                     boost::filesystem::file_size(entry.path()) > 1000;
        return count;
    };
    disturb("/content", Fault::answer(200, "something else", {"Content-Type: application/octet-stream"}));
    EXPECT_THROW(std::ignore = hub().downloadAttachment(uri), Web::PayloadException);
    disturb("/content", Fault::answer(200, content + "more", {}));
    EXPECT_THROW(std::ignore = hub().downloadAttachment(uri), Web::PayloadException);
    disturb("/content", Fault::reset());
    EXPECT_THROW(std::ignore = hub().downloadAttachment(uri), Web::ConnectionException);
    disturb("/content",
            Fault::answer(500, R"({"status": 500, "code": "content_missing", "detail": "Gone."})", {}));
    EXPECT_EQ(kindOf([&] { std::ignore = hub().downloadAttachment(uri); }), Kind::Damaged);
    for (const char* xml :
         {"", "<attachment", "<other/>", "<attachment id=\"1\"/>",
          "<!DOCTYPE a [<!ENTITY b \"bbbbbbbbbb\"><!ENTITY c \"&b;&b;&b;\">]><attachment>&c;</attachment>"}) {
        disturb(".xml", Fault::answer(200, xml, {"Content-Type: application/xml"}));
        EXPECT_THROW(std::ignore = hub().downloadAttachment(uri), Web::PayloadException) << xml;
    }
    EXPECT_EQ(filesBelow(), 0u);

    // Interrupted again and again, it continues where it was.
    int parts = 0;
    service().proxy().onRequest([&](const FaultProxy::Request& request) -> std::optional<Fault> {
        if (request.target.find("/content") == std::string::npos)
            return std::nullopt;
        return ++parts < 4 ? std::optional(Fault::cutAnswer(400'000)) : std::nullopt;
    });
    EXPECT_EQ(TestSupport::contentOf(hub().downloadAttachment(uri)), content);
    EXPECT_EQ(parts, 4);
}

} // namespace
