// What the service's page requests from the program, which is this process; curl plays the page.

#include "Server/Base/Strings.h"
#include "Server/Base/Warning.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/Itemhub/ItemhubOptionGroup.h"
#include "Tests/Support/Process.h"
#include "Tests/Support/Servers/TestServer.h"
#include "Tests/UI/Commands/Itemhub/WithItems.h"
#include "UI/Base/Program/MessageBox.h"
#include "UI/Base/Program/ProgramLink.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <boost/algorithm/string/join.hpp>

#include <algorithm>
#include <future>

namespace {

enum { kAllow, kAlways, kRefuse };

class DashboardRequestsTest : public CommandsTests::WithItems
{
protected:
    void SetUp() override
    {
        WithItems::SetUp();
        says(kAllow);
    }
    void TearDown() override
    {
        Vu::MessageBox::responder(nullptr);
        Vs::ItemhubOptionGroup::get()->dashboards({});
        WithItems::TearDown();
    }

    /// The user's answer from now on.
    void says(int answer)
    {
        Vu::MessageBox::responder([this, answer](const Vu::MessageBox& box) {
            questions.push_back(box.text());
            if (activeDocument())
                mostParts = std::max(mostParts, parts());
            return answer;
        });
    }
    QJsonObject asPage(const std::string& method, const std::string& path, const QJsonObject& body = {}) const
    {
        std::vector<std::string> words{"-s", "-X", method, "-H", "Authorization: Bearer " + token()};
        if (method != "GET")
            words.insert(words.end(), {"-H", "Content-Type: application/json", "-d",
                                       QJsonDocument(body).toJson(QJsonDocument::Compact).toStdString()});
        words.push_back(service().address() + path);
        return QJsonDocument::fromJson(
                   QByteArray::fromStdString(TestSupport::runProcess("/usr/bin/curl", words).output))
            .object();
    }
    QJsonObject ask(const char* command, const QJsonObject& arguments) const
    {
        return asPage("POST", "program/requests", {{"name", command}, {"args", arguments}});
    }
    /// What the page is finally told: the state, and why it failed.
    std::string outcome(const QJsonObject& request) const
    {
        QJsonObject told;
        const std::string path = "program/requests/" + std::to_string(request["id"].toInteger());
        EXPECT_TRUE(until([&] {
            told = asPage("GET", path);
            return told["state"] != "waiting" && told["state"] != "taken";
        })) << QJsonDocument(told).toJson().constData();
        return told["state"].toString().toStdString();
    }
    std::string outcome(const char* command, const QJsonObject& arguments) const
    {
        return outcome(ask(command, arguments));
    }
    static QJsonObject addressArgument(int item)
    {
        return {{"fileUri", QString::fromStdWString(addressOf(item))}};
    }
    static size_t parts() { return activeDocument()->activeAsset()->components()->children.size(); }

    std::vector<std::wstring> questions;
    size_t mostParts = 0; ///< Of the document shown at any question.
};

TEST_F(DashboardRequestsTest, ADocumentOpensIfThePersonAllowsItAndAlwaysAsksNoMore)
{
    const QJsonObject wheel = addressArgument(newItem(L"Wheel"));
    answer(L"Document.CloseAll");
    const char* const open = "ItemhubOpenAttachmentCommand";
    says(kRefuse);
    EXPECT_EQ(outcome(open, wheel), "refused");
    EXPECT_EQ(documents(), 0u);
    ASSERT_EQ(questions.size(), 1u);
    EXPECT_EQ(questions[0].find(L"127.0.0.1:"), 0u) << "who asks stands first";
    EXPECT_NE(questions[0].find(L"\"Wheel.vlra\" in Quillet"), std::wstring::npos)
        << Vs::Strings::narrow(questions[0]);

    says(kAllow);
    EXPECT_EQ(outcome(open, wheel), "done");
    EXPECT_EQ(activeDocument()->displayName(), L"Wheel");
    answer(L"Document.CloseAll");
    says(kAlways);
    EXPECT_EQ(outcome(open, wheel), "done");
    EXPECT_EQ(questions.size(), 3u) << "what was allowed once is asked for again";
    answer(L"Document.CloseAll");
    EXPECT_EQ(outcome(open, wheel), "done");
    EXPECT_EQ(documents(), 1u);
    EXPECT_EQ(questions.size(), 3u);
}

TEST_F(DashboardRequestsTest, WhatNoPageMayAskForIsNeverAskedNorDone)
{
    const QString address = QString::fromStdWString(addressOf(newItem(L"Wheel")));
    const unsigned before = documents();
    const QString foreign = "https://evil.example/attachments/1";
    for (const auto& [command, arguments] : std::initializer_list<std::pair<const char*, QJsonObject>>{
             {"ExitApplicationCommand", {}},
             {"RunScriptCommand", {{"Path", "/tmp/x.py"}}},
             {"ItemhubOpenAttachmentCommand", {}},
             {"ItemhubOpenAttachmentCommand", {{"fileUri", foreign}}},
             {"ItemhubOpenAttachmentCommand", {{"fileUri", "file:///etc/passwd"}}},
             {"ItemhubOpenAttachmentCommand", {{"fileUri", address}, {"Path", "/etc/passwd"}}},
             {"ItemhubInsertComponentCommand",
              {{"ItemhubWorkspaceId", 1}, {"ItemhubItemId", "1 2"}, {"ItemhubDocType", "x"}}},
             {"ItemhubInsertComponentCommand",
              {{"ItemhubWorkspaceId", 1}, {"ItemhubDocType", "VeloraDocType"}}},
             {"ItemhubSaveCommand", {{"ItemhubSaveLabel", "x"}}},
             {"ItemhubSaveCommand",
              {{"ItemhubSaveLabel", "x"}, {"ItemhubItemId", 1}, {"Path", "/tmp/x.vlra"}}},
             {"ItemhubCreateCommentID", {{"postID", "1"}, {"postUrl", "javascript:alert(1)"}}}})
        EXPECT_EQ(outcome(command, arguments), "failed") << command;
    EXPECT_TRUE(questions.empty());
    EXPECT_EQ(documents(), before);
    // Something that doesn't exist fails where it is looked up.
    EXPECT_EQ(outcome("ItemhubOpenAttachmentCommand", {{"fileUri", address + "4711"}}), "failed");
    EXPECT_TRUE(questions.empty());
}

TEST_F(DashboardRequestsTest, ComponentsItemsAndVersionsAreMadeAsByLines)
{
    const int wheel = newItem(L"Wheel");
    EXPECT_EQ(outcome("ItemhubNewItemCommand", {{"ItemhubWorkspaceId", 1},
                                                {"ItemhubItemName", "Car <b>"},
                                                {"ItemhubItemDescription", "Red"}}),
              "done");
    ASSERT_TRUE(arrives());
    const int car = itemOfShown();
    EXPECT_EQ(hub().getItemById(car).caption(), "Car <b>");
    EXPECT_EQ(hub().getItemById(car).description(), "Red");
    answer(L"Design.Box 1 1 1");
    EXPECT_EQ(
        outcome("ItemhubInsertComponentCommand",
                {{"ItemhubWorkspaceId", 1}, {"ItemhubItemId", wheel}, {"ItemhubDocType", "VeloraDocType"}}),
        "done");
    EXPECT_EQ(parts(), 2u);
    const QJsonObject mark{{"ItemhubSaveLabel", "From the page"}, {"ItemhubItemId", car}};
    EXPECT_EQ(outcome("ItemhubSaveCommand", {{"ItemhubSaveLabel", "x"}, {"ItemhubItemId", wheel}}), "failed")
        << "another item's document shows";
    EXPECT_EQ(outcome("ItemhubSaveCommand", mark), "done");
    ASSERT_TRUE(arrives());
    EXPECT_EQ(labels(car).front(), "From the page");
    EXPECT_EQ(outcome("ItemhubSaveCommand", mark), "failed") << "nothing has changed";
}

TEST_F(DashboardRequestsTest, ATokenComesByThatRoadAndIsRecordedWithoutItsSecret)
{
    record(L"token.txt");
    EXPECT_EQ(outcome("ItemhubAuthenticateWithTokenCommand", {}), "done");
    EXPECT_EQ(hub().accountName(), Vs::Strings::widen(account()));
    stop();
    const std::string transcript = boost::algorithm::join(linesOf(L"token.txt"), "\n");
    EXPECT_NE(transcript.find("${ITEMHUB_TOKEN}"), std::string::npos) << transcript;
    // With the old token the program could no longer ask.
    const std::int64_t first = asPage("GET", "session")["tokenId"].toInteger();
    EXPECT_TRUE(asPage("DELETE", "tokens/" + std::to_string(first)).isEmpty());
    EXPECT_EQ(hub().getWorkspaceById(1).id(), 1);
}

TEST_F(DashboardRequestsTest, ALinkIsFollowedOnceAndOnlyIfItIsOne)
{
    const QJsonObject wheel = addressArgument(newItem(L"Wheel"));
    answer(L"Document.CloseAll");
    const auto follow = [](const std::string& link) { Vu::ProgramLink::follow(link); };
    // A listening program takes it before the link does; so there must be none.
    service().proxy().onRequest([](const TestSupport::FaultProxy::Request& request) {
        return (request.target.find("/take") != std::string::npos)
                   ? std::optional(TestSupport::Fault::answer(404, "{}"))
                   : std::nullopt;
    });
    const QJsonObject asked = ask("ItemhubOpenAttachmentCommand", wheel);
    const std::string link = asked["ticket"].toString().toStdString();
    follow(link);
    EXPECT_EQ(outcome(asked), "done");
    EXPECT_EQ(documents(), 1u);
    answer(L"Document.CloseAll");

    std::vector<std::string> bad{link,
                                 "quillet:",
                                 "quillet:ticket/",
                                 link + " --script /tmp/x.py",
                                 link + "\n",
                                 "quillet:ticket/../../etc/passwd",
                                 "quillet:open?file=/etc/passwd",
                                 "quillet:ticket/" + std::string(43, 'A'),
                                 "quillet:ticket/" + std::string(1 << 20, 'A')};
    for (size_t i = 0; i < bad.size(); ++i) {
        follow(bad[i]);
        EXPECT_TRUE(until([&] { return told().size() == i + 1; })) << bad[i].substr(0, 80);
    }
    EXPECT_EQ(documents(), 0u);
    EXPECT_EQ(questions.size(), 1u);
    hub().signOut();
    Vs::ItemhubOptionGroup::get()->kept(false);
    follow(ask("ItemhubOpenAttachmentCommand", wheel)["ticket"].toString().toStdString());
    EXPECT_TRUE(until([&] { return told().size() == bad.size() + 1; })) << "nobody is signed in";
    EXPECT_EQ(documents(), 0u);
}

TEST_F(DashboardRequestsTest, AllThatClicksInABrowserDoIsOneTranscriptThatAnotherAccountPlays)
{
    const int wheel = newItem(L"Wheel"), car = newItem(L"Car");
    answer(L"Document.CloseAll");
    record(L"clicks.txt");
    constexpr int kNoBrowser = 77;
    constexpr double kPatience = 120;
    const std::vector<std::string> words{"-B", CLICKS, hub().dashboardAddress(), std::to_string(car),
                                         std::to_string(wheel)};
    auto clicks = std::async(std::launch::async, [&] {
        return TestSupport::runProcess("/usr/bin/python3", words, {.secondsLimit = kPatience});
    });
    // The program keeps running meanwhile.
    while (!until([&] { return clicks.wait_for(std::chrono::seconds(0)) == std::future_status::ready; })) {
    }
    const TestSupport::ProcessResult result = clicks.get();
    if (result.exitCode == kNoBrowser && !TestSupport::serversAreRequired())
        GTEST_SKIP() << "NOTICE: not installed: " << result.output;
    ASSERT_EQ(result.exitCode, 0) << result.output << result.errors;
    EXPECT_EQ(questions.size(), 5u);
    EXPECT_EQ(activeDocument()->displayName(), L"By a click");
    ASSERT_TRUE(arrives());
    EXPECT_EQ(labels(itemOfShown()), std::vector<std::string>{"Document created"});
    EXPECT_EQ(mostParts, 2u) << "what shows before the new item is the car with a wheel";
    answer(L"Itemhub.Wait");
    stop();
    ASSERT_FALSE(labels(car).empty());
    EXPECT_EQ(labels(car)[0], "With a wheel");
    EXPECT_EQ(hub().getFavorites().size(), 1u);
    EXPECT_EQ(hub().getComments(hub().getItemById(car)).size(), 1u);

    const std::string transcript = boost::algorithm::join(linesOf(L"clicks.txt"), "\n");
    EXPECT_NE(transcript.find("${ITEMHUB_TOKEN}"), std::string::npos) << transcript;
    EXPECT_EQ(transcript.find(token()), std::string::npos);
    const auto before = labels(car);
    const auto played =
        TestSupport::runQuillet({"--headless", "--replay", Vs::Strings::narrow(file(L"clicks.txt")), "--set",
                                 "ITEMHUB_TOKEN=" + service().token("bob", "writer")},
                                {.secondsLimit = kPatience});
    EXPECT_EQ(played.exitCode, 0) << played.output << played.errors << transcript;
    EXPECT_EQ(labels(car).size(), before.size() + 1);
    EXPECT_EQ(labels(car)[0], "With a wheel");
    const auto made = hub().search(L"By a click");
    EXPECT_EQ(std::ranges::count(made, "bob", [](const auto& item) { return item.createdBy(); }), 1);
}

TEST_F(DashboardRequestsTest, ThePageIsOpenedByALinkThatServesOnce)
{
    std::wstring address;
    {
        const Vs::WarningHandler handler([&](const std::wstring& text) { address = text; });
        answer(L"Commands.Start ItemhubDashboardCommand");
    }
    EXPECT_EQ(address.find(Vs::Strings::widen(service().address()) + L"dashboard/enter?code="), 0u)
        << Vs::Strings::narrow(address);
    const auto status = [&] {
        return TestSupport::runProcess("/usr/bin/curl", {"-s", "-o", "/dev/null", "-w", "%{http_code}",
                                                         Vs::Strings::narrow(address)})
            .output;
    };
    EXPECT_EQ(status(), "303");
    EXPECT_EQ(status(), "410");
    hub().signOut();
    answer(L"Commands.Start ItemhubDashboardCommand");
    EXPECT_EQ(told().size(), 1u) << "nobody is signed in";
}

} // namespace
