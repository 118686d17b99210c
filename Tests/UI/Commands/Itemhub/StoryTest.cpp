// Everything a user does with items, as lines: recorded, and replayed by another process, under another
// account.

#include "Server/Base/Strings.h"
#include "Server/DataModel/Document.h"
#include "Server/Itemhub/ItemhubOptionGroup.h"
#include "Tests/Support/Files.h"
#include "Tests/Support/Process.h"
#include "Tests/UI/Commands/Itemhub/WithItems.h"

#include <boost/algorithm/string/join.hpp>

namespace {

class ItemStoryTest : public CommandsTests::WithItems
{
};

TEST_F(ItemStoryTest, IsPlayedAgainWithATokenThatTheRecordingDoesNotHold)
{
    const int wheel = newItem(L"Story wheel");
    hub().signOut();
    answer(L"Document.CloseAll");

    record(L"story.txt");
    answer(signInLine());
    answer(L"Dashboard.NewItemCmd 1 \"Story car\" " + std::to_wstring(wheel) + L" 1 VeloraAssetType");
    answer(L"Design.Box 40 20 10");
    answer(L"Commands.Start ItemhubSaveCommand ItemhubSaveLabel=\"With a body\"");
    answer(L"Itemhub.Insert " + std::to_wstring(wheel));
    answer(L"Document.Save");
    answer(L"Itemhub.Wait");
    const int car = itemOfShown();
    EXPECT_NE(answer(L"Itemhub.Search story").find(L"Story car"), std::wstring::npos);
    answer(L"Itemhub.Favourite " + std::to_wstring(wheel));
    answer(L"Itemhub.Comment " + std::to_wstring(wheel) + L" \"Sharper <b>edges</b>, please\"");
    stop();
    const std::string transcript = boost::algorithm::join(linesOf(L"story.txt"), "\n");
    EXPECT_EQ(transcript.find(token()), std::string::npos) << transcript;
    EXPECT_NE(transcript.find("Dashboard.AuthenticateWithTokenCmd " + service().address() +
                              " ${ITEMHUB_TOKEN} acme"),
              std::string::npos)
        << transcript;
    EXPECT_EQ(labels(car).size(), 3u) << transcript;

    const std::string other = service().token("bob", "writer");
    const auto played =
        TestSupport::runQuillet({"--headless", "--echo", "--replay", Vs::Strings::narrow(file(L"story.txt")),
                                 "--set", "ITEMHUB_TOKEN=" + other},
                                {.secondsLimit = 120});
    EXPECT_EQ(played.exitCode, 0) << played.output << played.errors << transcript;
    EXPECT_EQ(played.output.find(other), std::string::npos) << "an echo keeps secrets as well";
    std::vector<int> cars;
    for (const auto& item : hub().search(L"Story car"))
        if (item.createdBy() == "bob")
            cars.push_back(static_cast<int>(item.id()));
    ASSERT_EQ(cars.size(), 1u);
    EXPECT_EQ(labels(cars[0]), labels(car));
    EXPECT_EQ(hub().getComments(hub().getItemById(wheel)).size(), 2u);

    // Without one, or with a wrong one, it stops where it can't continue, and nothing is created.
    const auto refused = TestSupport::runQuillet(
        {"--headless", "--replay", Vs::Strings::narrow(file(L"story.txt"))}, {.secondsLimit = 120});
    EXPECT_NE(refused.exitCode, 0);
    EXPECT_EQ(hub().search(L"Story car").size(), 2u);
}

TEST_F(ItemStoryTest, LinesTellWhatTheServiceHasAndWhyTheyFail)
{
    const int item = newItem(L"A\tb <i>x</i>");
    const std::wstring number = std::to_wstring(item);
    EXPECT_NE(answer(L"Itemhub.Workspaces").find(L"1\t"), std::wstring::npos);
    EXPECT_NE(answer(L"Itemhub.Items 1").find(number + L"\tA b <i>x</i>\t" + Vs::Strings::widen(account())),
              std::wstring::npos)
        << "a caption stays in its column";
    EXPECT_NE(answer(L"Itemhub.Attachments " + number).find(L"VeloraDocType"), std::wstring::npos);
    EXPECT_NE(answer(L"Itemhub.Versions " + number).find(L"Document created"), std::wstring::npos);
    EXPECT_EQ(answer(L"Itemhub.Pending"), L"");
    answer(L"Document.CloseAll");
    answer(L"Itemhub.Open " + number);
    EXPECT_EQ(documents(), 1u);
    EXPECT_EQ(answer(L"Itemhub.Account").find(Vs::Strings::widen(account())), 0u);

    failure(L"Itemhub.Items none");
    failure(L"Itemhub.Items");
    failure(L"Itemhub.Open 4711");
    failure(L"Itemhub.Favourite 4711");
    failure(L"Itemhub.Comment " + number);
    failure(L"Itemhub.Wait soon");
    failure(L"Itemhub.SignIn http://127.0.0.1:1/");
    EXPECT_TRUE(hub().isAuthenticated());
    answer(L"Itemhub.SignOut");
    EXPECT_NE(failure(L"Itemhub.Items 1"), L"");
    EXPECT_EQ(documents(), 1u);

    // A user who has never signed in anywhere has a private service, which starts with the first line.
    auto* options = Vs::ItemhubOptionGroup::get();
    options->service(L"");
    options->account(L"");
    EXPECT_EQ(answer(L"Itemhub.Pending"), L"");
    EXPECT_FALSE(hub().isAuthenticated()) << "the disk has the answer";
    EXPECT_NE(answer(L"Itemhub.Workspaces").find(L"Designs\tadmin"), std::wstring::npos);
    EXPECT_TRUE(hub().isOwnService());
}

TEST_F(ItemStoryTest, ASharedPictureIsAttachedToTheItemOfItsDocument)
{
    const int item = newItem(L"Story lamp");
    const size_t versions = labels(item).size();
    const std::wstring share = L"Commands.Start ShareSheetsCommand CmdId=ShareToItemCommand";
    answer(share);
    const std::wstring attachments = answer(L"Itemhub.Attachments " + std::to_wstring(item));
    EXPECT_NE(attachments.find(L"Story lamp.png"), std::wstring::npos) << Vs::Strings::narrow(attachments);
    EXPECT_EQ(labels(item).size(), versions + 1) << "one of the picture, and none of the design";
    hub().signOut();
    EXPECT_NE(failure(share).find(L"belongs to no item"), std::wstring::npos);
}

} // namespace
