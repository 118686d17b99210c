// The commands by hand on each kind of server, recorded, and their lines in a run without a window.

#include "Server/Base/Strings.h"
#include "Server/DataModel/Document.h"
#include "Server/Skyvault/CloudCacheManager.h"
#include "Server/Skyvault/MeshportAuth.h"
#include "Server/Skyvault/SkyvaultUtilities.h"
#include "Tests/Support/Files.h"
#include "Tests/Support/Process.h"
#include "Tests/UI/Commands/Cloud/WithDrive.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Program/Application.h"
#include "UI/Commands/Cloud/CloudDialog.h"

#include <boost/algorithm/string/replace.hpp>
#include <boost/filesystem/operations.hpp>

using TestSupport::TestServer;
using Vu::Commands::CloudDialog;

namespace {

class CloudServersTest : public CommandsTests::WithDrive, public testing::WithParamInterface<TestServer::Kind>
{
protected:
    CloudServersTest() : WithDrive(GetParam()) {}

    /// As by a click; the user then chooses the file in the dialog, which creates its folder.
    void click(const wchar_t* command, const std::string& file = {})
    {
        const std::string folderName = file.substr(0, file.rfind('/')), name = file.substr(folderName.size());
        CloudDialog::responder([folderName, name](const CloudDialog::Request& request,
                                                  Vs::SkyvaultNodeData& node, std::wstring& chosen) {
            std::vector<boost::filesystem::path> stack;
            if (!folderName.empty())
                stack.emplace_back(folderName.substr(1));
            if (!Vs::SkyvaultUtilities::ensureCloudPath(Vs::MeshportAuth::globalInstance(), stack, node))
                return false;
            if (request.kind == CloudDialog::Kind::Document)
                node = *node.findChild(name.substr(1));
            chosen = Vs::Strings::widen(name.substr(1));
            return true;
        });
        definition(command)->executeLater(Vu::CommandContext::activeContext());
        Vu::Application::get()->flushDeferredTasks();
    }
    void expectOnDrive(const std::string& id) const
    {
        EXPECT_EQ(activeDocument()->cloudId(), id);
        EXPECT_TRUE(onDrive(id) == TestSupport::contentOf(cached(id))) << id;
        EXPECT_EQ(Vs::CloudCacheManager::getInstance()->state(cached(id)), Vs::CloudFileState::Clean) << id;
    }
};

TEST_P(CloudServersTest, WhatIsSavedAndOpenedByHandIsSoAgainByTheRecordedLinesInAnotherProfile)
{
    // Elsewhere: paths below the transcript's own folder would be recorded relative to it.
    const TestSupport::ScratchFolder folder;
    const boost::filesystem::path transcript = folder.path() / "recorded.txt";
    answer(L"Transcripting.Start " + transcript.wstring());
    answer(L"Design.New");
    change();
    click(L"CloudSaveCommand", "/wheel.vlra");
    expectOnDrive("/wheel.vlra");
    change();
    click(L"CloudSaveQATCommand");
    expectOnDrive("/wheel.vlra");
    click(L"CloudSaveAsCommand", "/parts/other.vlra");
    expectOnDrive("/parts/other.vlra");
    answer(L"Document.CloseAll");
    click(L"CloudOpenDocumentCommand", "/wheel.vlra");
    change();
    click(L"CloudSaveQATCommand");
    expectOnDrive("/wheel.vlra");
    answer(L"Transcripting.Stop");

    std::string lines = TestSupport::contentOf(transcript);
    boost::replace_all(lines, cached("/").string(), "${drive}");
    EXPECT_NE(lines.find("VuCommands.CloudSaveAsCmd \"${drive}/parts/other.vlra\""), std::string::npos)
        << lines;
    lines += "Selection.Select Box1 Box2 Box3\nDocument.CloseAll\n"
             "VuCommands.CloudOpenDocumentCmd ${drive}/parts/other.vlra\nSelection.Select Box1 Box2\n";
    for (const char* gone : {"wheel.vlra", "parts/other.vlra"})
        ASSERT_LT(m_server.request("DELETE", gone).status, 300) << gone;

    const auto replayed = folder.write("replayed.txt", lines);
    const auto token =
        folder.write("token.json", "{\"address\": \"" + m_server.address() + "\", \"user\": \"" +
                                       m_server.user() + "\", \"secret\": \"" + m_server.password() + "\"}");
    boost::filesystem::permissions(token, boost::filesystem::perms(0600));
    const auto profile = folder.path() / "profile";
    TestSupport::ProcessOptions options;
    options.environment = {"QUILLET_CLOUD_TOKEN_FILE=" + token.string()};
    const auto result = TestSupport::runQuillet(
        {"--headless", "--profile-dir", profile.string(), "--set",
         "drive=" + (profile / "cloud" / cached("/").filename()).string(), "--replay", replayed.string()},
        options);
    EXPECT_EQ(result.exitCode, 0) << result.output << result.errors;
    for (const char* id : {"/wheel.vlra", "/parts/other.vlra"})
        EXPECT_TRUE(onDrive(id).starts_with("PK")) << id << '\n' << result.errors;
}

std::string nameOf(const testing::TestParamInfo<TestServer::Kind>& kind)
{
    return TestServer::name(kind.param);
}

INSTANTIATE_TEST_SUITE_P(Servers, CloudServersTest, testing::ValuesIn(TestServer::kKinds), nameOf);

} // namespace
