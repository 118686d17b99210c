#include "UI/Base/Session/DesignFeed.h"

#include "Server/DataModel/Document.h"
#include "Tests/UI/Commands/CommandsProgram.h"
#include "UI/Base/Program/Application.h"

using namespace Vu;

namespace {

class DesignFeedTest : public CommandsTests::WithProgram
{
};

class Comments : public FeedSource
{
    void addEntries(Vs::Document&, std::vector<FeedEntry>& entries) override
    {
        entries.push_back(
            {.time = std::chrono::system_clock::now(), .title = L"Looks good", .origin = L"Ann"});
    }
};

} // namespace

TEST_F(DesignFeedTest, TheFeedTellsWhatWasDoneByWhatAndLeadsBackAndForth)
{
    const auto feed = [] { return DesignFeed::get()->entries(*activeDocument()); };
    const auto titles = [&] {
        std::wstring text;
        for (const FeedEntry& entry : feed())
            text += entry.title + (entry.kind == FeedEntry::Kind::Present ? L"* " : L" ");
        return text;
    };
    answer(L"Design.New");
    EXPECT_EQ(titles(), L"");
    answer(L"Design.Box 1 2 3");
    answer(L"Commands.Start CylinderCommand Radius=5 Height=7");
    run(L"Commands.Commit");
    ASSERT_EQ(titles(), L"Cylinder* Box Before these steps ");
    EXPECT_EQ(feed()[0].origin, L"Cylinder");
    EXPECT_GE(feed()[0].time, feed()[1].time);
    EXPECT_LT(std::chrono::system_clock::now() - feed()[1].time, std::chrono::hours(1));
    EXPECT_FALSE(feed()[0].action) << "nothing leads to where one is";

    feed()[2].action();
    Application::get()->flushDeferredTasks();
    EXPECT_EQ(titles(), L"Cylinder Box Before these steps* ");
    EXPECT_EQ(feed()[0].kind, FeedEntry::Kind::Undone);
    feed()[1].action();
    Application::get()->flushDeferredTasks();
    EXPECT_EQ(titles(), L"Cylinder Box* Before these steps ");
    const auto forward = feed()[0].action;
    answer(L"Design.New");
    forward(); // Another document is shown.
    Application::get()->flushDeferredTasks();
    EXPECT_EQ(titles(), L"");

    Comments comments;
    DesignFeed::get()->add(&comments);
    EXPECT_EQ(titles(), L"Looks good ");
    DesignFeed::get()->remove(&comments);
    EXPECT_EQ(titles(), L"");
}
