#include "Server/Base/Strings.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/Skyvault/CloudOptionGroup.h"
#include "Server/Skyvault/MeshportAuth.h"
#include "Server/Skyvault/SkyvaultCollaboration.h"
#include "Server/Skyvault/SkyvaultComment.h"
#include "Server/Skyvault/SkyvaultUtilities.h"
#include "Tests/Support/Files.h"
#include "Tests/Support/Process.h"
#include "Tests/UI/Commands/Cloud/WithDrive.h"
#include "Tests/UI/Commands/WithEdition.h"
#include "UI/Base/Command/AlertController.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/Info.h"
#include "UI/Commands/Cloud/CloudSessionCmds.h"
#include "UI/Commands/Cloud/ShareCmd.h"
#include "UI/Commands/Resources.h"

#include <boost/filesystem/operations.hpp>

using Vs::MeshportAuth;
using namespace Vu::Commands;

namespace {

class CloudSessionTest : public CommandsTests::WithDrive
{
protected:
    ~CloudSessionTest() override { Vs::CloudLoginDialog::asker(nullptr); }
};

TEST_F(CloudSessionTest, TitlesAndApplicabilityFollowTheSession)
{
    EXPECT_EQ(definition(L"CloudSaveAsCommand")->info()->name(), L"Save As in Skyvault");
    EXPECT_FALSE(applicable(L"CloudLoginCommand"));
    EXPECT_TRUE(applicable(L"CloudLogoutCommand"));
    const std::wstring user = Vs::Strings::widen(m_server.user());
    EXPECT_EQ(ShareCmdDef::info()->name(), user);
    EXPECT_EQ(ShareCmdDef::info()->icon(), Vu::Commands::Resources::ShareLoggedIn());
    answer(L"VuCommands.CloudLoginCmd");
    EXPECT_EQ(CloudLogoutCmdDef::info()->name(), L"Log off " + user);
    answer(L"VuCommands.CloudLogoutCmd");
    EXPECT_EQ(ShareCmdDef::info()->name(), L"Sign In");
    EXPECT_EQ(ShareCmdDef::info()->icon(), Vu::Commands::Resources::Share());
    EXPECT_EQ(CloudLogoutCmdDef::info()->name(), L"Log off " + user) << "until the next sign-in";
    EXPECT_TRUE(applicable(L"CloudLoginCommand"));
    EXPECT_FALSE(applicable(L"CloudLogoutCommand"));
}

TEST_F(CloudSessionTest, AnAddressWithASlashAtItsEndIsTheSameDrive)
{
    ASSERT_TRUE(m_server.address().ends_with('/'));
    saveNew("/wheel.vlra");
    const boost::filesystem::path file = cached("/wheel.vlra");
    std::string address = m_server.address();
    address.pop_back();
    const Vs::Cloud::DriveCredentials credentials{
        Vs::Cloud::DriveCredentials::Kind::Password, m_server.user(), m_server.password(), {}};
    ASSERT_TRUE(MeshportAuth::globalInstance()->signIn(address, credentials, false).isOk());
    EXPECT_EQ(cached("/wheel.vlra"), file);
    change();
    answer(L"VuCommands.CloudSaveQATCmd");
    EXPECT_TRUE(onDrive("/wheel.vlra") == TestSupport::contentOf(file));
}

TEST_F(CloudSessionTest, OnlyALineWithUserAndPasswordAsksNobody)
{
    answer(L"VuCommands.CloudLogoutCmd");
    int asked = 0;
    Vs::CloudLoginDialog::asker([&](Vs::CloudLoginDialog::ELoginMode) {
        ++asked;
        return false;
    });
    answer(L"VuCommands.CloudLoginCmd anna secret");
    EXPECT_EQ(asked, 0);
    answer(L"VuCommands.CloudLoginCmd anna");
    EXPECT_EQ(asked, 1);
    answer(L"VuCommands.ShareCmd");
    EXPECT_EQ(asked, 2);
    EXPECT_FALSE(MeshportAuth::globalInstance()->isLoggedIn());
    // A user who isn't signed in is told once what can't be done.
    answerBoxes(0);
    answer(L"Design.New");
    answer(L"VuCommands.CloudSaveCmd");
    EXPECT_EQ(asked, 3);
    ASSERT_EQ(boxes().size(), 1u);
    EXPECT_EQ(boxes()[0].find(L"You are not signed in to the cloud drive."), 0u);
    EXPECT_FALSE(activeDocument()->isOnDisk());
}

TEST_F(CloudSessionTest, WithTheDriveDisabledNoneOfItsCommandsIsApplicable)
{
    saveNew("/wheel.vlra");
    const wchar_t* const commands[] = {
        L"CloudCommand",       L"CloudLogoutCommand",       L"CloudManageCommand",
        L"CloudUploadCommand", L"CloudSaveCommand",         L"CloudSaveQATCommand",
        L"CloudSaveAsCommand", L"CloudOpenDocumentCommand", L"CloudListFilesCommand"};
    for (const wchar_t* command : commands)
        EXPECT_TRUE(applicable(command)) << Vs::Strings::narrow(command);
    const auto expectNone = [&](const char* by) {
        SCOPED_TRACE(by);
        for (const wchar_t* command : commands)
            EXPECT_FALSE(applicable(command)) << Vs::Strings::narrow(command);
        EXPECT_FALSE(applicable(L"CloudLoginCommand"));
        EXPECT_TRUE(applicable(L"ShareCommand"));
    };
    Vs::CloudOptionGroup::get()->cloudDisabled(true);
    expectNone("the option");
    Vs::CloudOptionGroup::get()->cloudDisabled(false);
    {
        const CommandsTests::WithEdition edition({.cloudDisabled = true});
        expectNone("the edition");
    }
    EXPECT_TRUE(applicable(L"CloudSaveCommand"));
}

TEST_F(CloudSessionTest, ManagingOpensTheDrivesPage)
{
    auto* alerts = Vu::CommandMgr::get()->GetAlertController();
    alerts->clearAllAlerts();
    answer(L"VuCommands.CloudManageCmd");
    ASSERT_FALSE(alerts->alerts().empty());
    EXPECT_EQ(alerts->alerts().back().text, Vs::Strings::widen(m_server.address()));
    alerts->clearAllAlerts();
}

TEST_F(CloudSessionTest, ACommentIsKeptWhereTheServerCan)
{
    saveNew("/wheel.vlra");
    Vs::SkyvaultComment request("Sharper edges, please."), kept;
    std::wstring error;
    const auto post = [&](const Vs::Document* document) {
        return Vs::SkyvaultCollaboration::createComment(MeshportAuth::globalInstance(), document, request,
                                                        kept, error);
    };
    if (post(Vs::DocumentMgr::get()->document(cached("/wheel.vlra").wstring()))) {
        EXPECT_EQ(kept.body(), request.body());
        EXPECT_FALSE(kept.author().empty());
        EXPECT_TRUE(error.empty());
    } else {
        EXPECT_TRUE(
            error.starts_with(Vs::SkyvaultUtilities::getErrorString(Vs::CloudErrorState::Unsupported)))
            << Vs::Strings::narrow(error);
    }
    error.clear();
    EXPECT_FALSE(post(nullptr)) << "no document is of no drive";
    EXPECT_FALSE(error.empty());
}

TEST_F(CloudSessionTest, ARunWithoutAWindowTakesTheTokenFileOnlyWhereNobodyElseCanReadIt)
{
    const TestSupport::ScratchFolder folder;
    const auto token =
        folder.write("token.json", "{\"address\": \"" + m_server.address() + "\", \"user\": \"" +
                                       m_server.user() + "\", \"secret\": \"" + m_server.password() + "\"}");
    const auto run = [&](boost::filesystem::perms permissions) {
        boost::filesystem::permissions(token, permissions);
        TestSupport::ProcessOptions options;
        options.environment = {"QUILLET_CLOUD_TOKEN_FILE=" + token.string()};
        return TestSupport::runQuillet(
            {"--headless", "--command", "Design.New", "--command", "Commands.Start CloudUploadCommand"},
            options);
    };
    const auto refused = run(boost::filesystem::perms(0644));
    EXPECT_NE((refused.output + refused.errors).find("must be 0600"), std::string::npos)
        << refused.output << refused.errors;
    const auto taken = run(boost::filesystem::perms(0600));
    EXPECT_NE((taken.output + taken.errors).find("The document has no file yet."), std::string::npos)
        << taken.output << taken.errors;
    for (const auto& result : {refused, taken})
        EXPECT_EQ((result.output + result.errors).find(m_server.password()), std::string::npos);
}

} // namespace
