#include "Server/Base/PathInfo.h"
#include "Server/Base/SoftwareVersion.h"
#include "Server/Base/TextCommandMgr.h"
#include "Tests/UI/Commands/CommandsProgram.h"
#include "Tests/UI/Commands/WithEdition.h"
#include "UI/Base/Command/AlertController.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Program/Notifications.h"
#include "UI/Base/Program/Private/FileEdition.h"
#include "UI/Base/Program/ProgressBar.h"
#include "UI/Base/Session/WelcomeScreen.h"
#include "UI/Commands/Help/SubscriptionCmd.h"

#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>

#include <chrono>
#include <thread>

namespace fs = boost::filesystem;

namespace {

using Vu::Application;
using Vu::Commands::SubscriptionCmdDef;

/// A run without a window prints the address that a window would open.
class HelpCommandsTest : public CommandsTests::WithProgram
{
protected:
    void SetUp() override
    {
        WithProgram::SetUp();
        alerts()->clearAllAlerts();
    }
    void TearDown() override
    {
        alerts()->clearAllAlerts();
        for (Vs::Notification* notification : Vs::NotificationCenter::get()->notifications())
            Vs::NotificationCenter::get()->remove(notification);
        WithProgram::TearDown();
    }

    static Vu::AlertController* alerts() { return Vu::CommandMgr::get()->GetAlertController(); }

    /// The line's message; empty if there was none.
    static std::wstring told(const std::wstring& line)
    {
        alerts()->clearAllAlerts();
        answer(line);
        return alerts()->alerts().empty() ? L"" : alerts()->alerts().back().text;
    }

    static bool visible(const std::wstring& id)
    {
        Vu::CommandContext context = Vu::CommandContext::activeContext();
        return definition(id)->isVisible(&context);
    }

    static std::wstring file(const std::wstring& name, const std::string& content)
    {
        const std::wstring path = scratch(name);
        fs::ofstream(fs::path(path)) << content;
        return path;
    }

    static std::vector<Vs::Notification*> updateNotifications()
    {
        std::vector<Vs::Notification*> found;
        Vs::NotificationCenter::get()->notificationsByClientID(SubscriptionCmdDef::notificationClientID(),
                                                               found);
        return found;
    }

    static SubscriptionCmdDef* subscription()
    {
        return Vs::cast<SubscriptionCmdDef>(definition(L"SubscriptionCommand"));
    }

    /// Until the reading thread has delivered its result.
    static void waitFor(const std::function<bool()>& done)
    {
        for (int i = 0; i < 500 && !done(); ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
            Application::get()->flushDeferredTasks();
        }
        ASSERT_TRUE(done());
    }
};

} // namespace

TEST_F(HelpCommandsTest, EachLinkOpensTheAddressThatTheEditionBrings)
{
    const CommandsTests::WithEdition edition(
        {.help = L"https://help.example/",
         .feedback = L"us@mail.example",
         .discussion = L"https://talk.example/",
         .videos = L"https://videos.example/",
         .suggestbox = {{L"Portal", L"https://wishes.example/"}, {L"Other", L"https://other.example/"}}});
    EXPECT_EQ(told(L"VuCommands.HelpCmd"), L"https://help.example/");
    EXPECT_EQ(told(L"VuCommands.FeedbackCmd"), L"mailto:us@mail.example");
    EXPECT_EQ(told(L"VuCommands.JoinDiscussionCmd"), L"https://talk.example/");
    EXPECT_EQ(told(L"VuCommands.VideosCmd"), L"https://videos.example/");
    EXPECT_EQ(told(L"VuCommands.SuggestboxCmd"), L"https://wishes.example/") << "the first of the list";
    EXPECT_EQ(told(L"VuCommands.OpenWebBrowserCmd https://a.example/?q=1"), L"https://a.example/?q=1");
    EXPECT_EQ(told(L"Commands.Start VideosCommand Address=https://videos.example/3"),
              L"https://videos.example/3")
        << "an entry of a list of videos carries its own";
    for (const wchar_t* id :
         {L"FeedbackCommand", L"JoinDiscussionCommand", L"VideosCommand", L"SuggestboxCommand"})
        EXPECT_TRUE(visible(id));
}

TEST_F(HelpCommandsTest, WhatAnEditionDoesNotHaveIsNotShownAndSaysSo)
{
    const CommandsTests::WithEdition edition({});
    for (const wchar_t* id : {L"FeedbackCommand", L"JoinDiscussionCommand", L"VideosCommand",
                              L"SuggestboxCommand", L"SubscriptionCommand"})
        EXPECT_FALSE(visible(id));
    EXPECT_NE(failure(L"VuCommands.FeedbackCmd").find(L"no address"), std::wstring::npos);
    EXPECT_NE(failure(L"VuCommands.VideosCmd").find(L"no address"), std::wstring::npos);
    EXPECT_NE(failure(L"VuCommands.SubscriptionCmd").find(L"updates"), std::wstring::npos);
    EXPECT_EQ(told(L"VuCommands.SuggestboxCmd"), L"") << "does nothing";
    EXPECT_NE(failure(L"Options.TourGuide").find(L"no tour"), std::wstring::npos);
    EXPECT_EQ(told(L"VuCommands.ProductTourGuideCmd"), L"") << "the line's answer is dropped";
}

TEST_F(HelpCommandsTest, OnlyAddressesOfTheWebAndOfMailAreOpened)
{
    const std::wstring document = file(L"a.html", "<p>");
    for (const std::wstring& bad :
         {std::wstring(L"file:///etc/passwd"), document, std::wstring(L"javascript:alert(1)"),
          std::wstring(L"http://"), std::wstring(L"--help"), std::wstring(L"relative/page")}) {
        const std::wstring why = failure(L"VuCommands.OpenWebBrowserCmd \"" + bad + L'"');
        EXPECT_NE(why.find(bad), std::wstring::npos);
        EXPECT_NE(why.find(L"http"), std::wstring::npos);
    }
    const CommandsTests::WithEdition edition({.help = document});
    EXPECT_EQ(told(L"VuCommands.HelpCmd"), document) << "an edition may bring its manual as a file";
}

TEST_F(HelpCommandsTest, TheProgramsOwnEditionNamesAManualAndATourThatAreThere)
{
    const fs::path manual = told(L"VuCommands.HelpCmd");
    EXPECT_TRUE(fs::is_regular_file(manual));
    // While a tool runs, its own page; without one, even if a session rests in a command, the manual.
    answer(L"Design.New");
    EXPECT_EQ(fs::path(told(L"VuCommands.HelpCmd")), manual);
    answer(L"Commands.Start MeasureCommand");
    const fs::path page = told(L"VuCommands.HelpCmd");
    EXPECT_EQ(page, manual.parent_path() / "commands/MeasureCommand.html");
    EXPECT_TRUE(fs::is_regular_file(page));
    EXPECT_EQ(answer(L"Commands.Cancel"), L"") << "the tool went on meanwhile";
    const std::wstring tour = answer(L"Options.TourGuide");
    EXPECT_NE(tour.find(L"Browser: "), std::wstring::npos);
    EXPECT_NE(tour.find(L"Command line: "), std::wstring::npos);
}

TEST_F(HelpCommandsTest, ATourThatIsNotWellWrittenIsRefusedWithItsLine)
{
    for (const char* broken : {"<tour><step contents='a'>", "<tour>\n<step title='a'/></tour>",
                               "<tour>\n<stop contents='a'/></tour>", "<walk/>", ""}) {
        const std::wstring path = file(L"tour.xml", broken);
        const CommandsTests::WithEdition edition({.tour = path});
        EXPECT_NE(failure(L"Options.TourGuide").find(path), std::wstring::npos) << broken;
    }
}

TEST_F(HelpCommandsTest, AnEditionsFileThatIsWrongIsPassedOverInParts)
{
    const auto edition = [](const std::string& content) {
        return std::make_unique<Vu::FileEdition>(fs::path(file(L"Edition.json", content)));
    };
    EXPECT_EQ(edition("{")->productWikiHelpURL(), L"");
    EXPECT_EQ(Vu::FileEdition(scratch(L"none.json")).productWikiHelpURL(), L"");
    const auto partly = edition(R"({"help": 7, "videos": "https://v.example/", "tour": "a/tour.xml",
                                    "suggestbox": [{"title": "none"}, 3,
                                                   {"title": "Box", "address": "https://b.example/"}]})");
    EXPECT_EQ(partly->productWikiHelpURL(), L"");
    EXPECT_EQ(partly->productVideosURL(), L"https://v.example/");
    EXPECT_EQ(partly->tourGuideXmlPath(), (Vs::PathInfo::rootDirectory() / "a/tour.xml").wstring());
    ASSERT_EQ(partly->suggestboxLinks().size(), 1u);
    EXPECT_EQ(partly->suggestboxLinks()[0].title, L"Box");
}

TEST_F(HelpCommandsTest, UpdatesAreToldTogetherAndNoneTellsNothing)
{
    subscription()->clearAllUpdates();
    subscription()->notifyUpdatesAvailable();
    EXPECT_TRUE(updateNotifications().empty());
    subscription()->addUpdate(L"One");
    subscription()->addUpdate(L"Two");
    subscription()->clearUpdate(L"One");
    EXPECT_TRUE(updateNotifications().empty()) << "adding one by one doesn't tell yet";
    subscription()->addUpdates({L"Three"});
    ASSERT_EQ(updateNotifications().size(), 1u);
    EXPECT_EQ(updateNotifications()[0]->title(), L"Updates Available");
    EXPECT_EQ(updateNotifications()[0]->text(), L"Updates Available: \nTwo\nThree\n");
    subscription()->clearAllUpdates();
}

TEST_F(HelpCommandsTest, ANewerVersionInTheEditionsFileIsTold)
{
    {
        const CommandsTests::WithEdition edition({.newestVersion = file(L"newest", " 99.1.0 \nmore")});
        answer(L"VuCommands.SubscriptionCmd");
        waitFor([] { return !updateNotifications().empty(); });
        EXPECT_EQ(updateNotifications()[0]->text(), L"Updates Available: \nQuillet 99.1.0\n");
    }
    const std::string current = Vs::SoftwareVersion::currentSoftwareVersion();
    for (const auto& [content, word] : {std::pair<std::string, const wchar_t*>{current, L"newest version."},
                                        {"<html>", L"doesn't say"},
                                        {"", L"doesn't say"}}) {
        alerts()->clearAllAlerts();
        const CommandsTests::WithEdition edition({.newestVersion = file(L"newest", content)});
        answer(L"VuCommands.SubscriptionCmd");
        waitFor([] { return !alerts()->alerts().empty(); });
        EXPECT_NE(alerts()->alerts().back().text.find(word), std::wstring::npos) << content;
    }
    EXPECT_EQ(updateNotifications().size(), 1u);
}

TEST_F(HelpCommandsTest, TheInvolvementProgramQuietsTheProgressBarForTheMomentAlone)
{
    std::ignore = Vs::TextCommandMgr::get()->executeCommandWithoutOutput(L"VuCommands.CIPCmd");
    EXPECT_FALSE(Vu::ProgressBar::get()->enabled());
    Application::get()->flushDeferredTasks();
    EXPECT_TRUE(Vu::ProgressBar::get()->enabled()) << "what follows shows its progress and can be cancelled";
}

TEST_F(HelpCommandsTest, TheWelcomeScreenComesBeforeTheDocuments)
{
    answer(L"Design.New");
    EXPECT_FALSE(Vu::WelcomeScreen::dialogExists());
    answer(L"VuCommands.WelcomeScreenCmd");
    EXPECT_TRUE(Vu::WelcomeScreen::dialogExists());
    EXPECT_EQ(documents(), 1u);
}
