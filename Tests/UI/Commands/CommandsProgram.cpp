#include "Tests/UI/Commands/CommandsProgram.h"

#include "Server/AddInMgr/AddInMgr.h"
#include "Server/Base/PathInfo.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandMgr.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Tests/Support/Process.h"
#include "Tests/UI/Restore.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Host.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/FileDialog.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/View/MouseEvents.h"
#include "UI/Base/Workspace/ShellMgr.h"
#include "UI/Base/Workspace/ToolbarManager.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <boost/filesystem/operations.hpp>

namespace CommandsTests {
namespace {

TestSupport::ScratchFolder& scratchFolder()
{
    static TestSupport::ScratchFolder folder;
    return folder;
}

boost::filesystem::path profile()
{
    return scratchFolder().path() / "profile";
}

class Program : public ::testing::Environment
{
public:
    void SetUp() override
    {
        static int count = 1;
        static char name[] = "test_commands";
        static char* arguments[] = {name, nullptr};
        Vs::PathInfo::profileDirectory(profile());
        Vu::installHost();
        Vu::Application::initialize(count, arguments, true);
        Vu::Application::testing(true);
        Vs::Status status;
        Vs::AddInMgr::get()->loadAddIns(status);
        ASSERT_TRUE(status.isOk()) << status.matchingError("");
        Vu::WorkspaceMgr::get()->create();
    }
    void TearDown() override
    {
        Vu::WorkspaceMgr::get()->closeAll();
        Vs::AddInMgr::get()->unloadAddIns();
    }
};

const auto* const theProgram = ::testing::AddGlobalTestEnvironment(new Program);

void closeEverything()
{
    Vs::DocumentMgr* manager = Vs::DocumentMgr::get();
    while (manager->documents() > 0)
        manager->close(manager->document(manager->documents() - 1));
    Vu::Application::get()->flushDeferredTasks();
}

} // namespace

void WithProgram::SetUp()
{
    m_boxes.clear();
}

void WithProgram::TearDown()
{
    Vu::FileDialog::responder(nullptr);
    Vu::MessageBox::responder(nullptr);
    Vu::MouseEventSource::get()->mouseLeft(Vu::MouseEventSource::get()->canvas());
    // The sessions leave the shell as they do for a user, so that no shell remembers a session that is gone.
    Vu::MessageBox::responder([](const Vu::MessageBox&) { return 1; });
    if (documents() > 0)
        run(L"Document.CloseAll");
    Vu::MessageBox::responder(nullptr);
    closeEverything();
    // Some run every existing command.
    run(L"Debug.ShowDebugDialog /off");
    if (Vu::WorkspaceWindow* window = Vu::WorkspaceWindow::activeWorkspaceWindow()) {
        window->workspace()->shellManager()->activateDefaultShell();
        window->fullScreen(false);
        window->windowState(0); // normal
    }
    Vu::ToolbarManager::get()->showToolbar(L"QATRight");
    UiTests::restore();
    for (const boost::filesystem::directory_entry& entry :
         boost::filesystem::directory_iterator(scratchFolder().path()))
        if (entry.path() != profile())
            boost::filesystem::remove_all(entry.path());
}

Vs::TextCommandResult WithProgram::run(const std::wstring& line)
{
    Vs::TextCommandResult result = Vs::TextCommandMgr::get()->executeCommandWithoutOutput(line);
    Vu::Application::get()->flushDeferredTasks();
    return result;
}

std::wstring WithProgram::answer(const std::wstring& line)
{
    const Vs::TextCommandResult result = run(line);
    EXPECT_EQ(result.first, 0u) << Vs::Strings::narrow(result.second);
    return result.second;
}

std::wstring WithProgram::failure(const std::wstring& line)
{
    const Vs::TextCommandResult result = run(line);
    EXPECT_EQ(result.first, 1u) << "the line was well done";
    return result.second;
}

unsigned WithProgram::documents()
{
    return Vs::DocumentMgr::get()->documents();
}

Vs::Document* WithProgram::activeDocument()
{
    Vu::DocumentSession* session = Vu::SessionMgr::get()->activeDocumentSession();
    return session ? session->document() : nullptr;
}

Vu::AssetSession* WithProgram::activeSession()
{
    return Vu::SessionMgr::get()->activeAssetSession();
}

Vu::CommandDefinition* WithProgram::definition(const std::wstring& id)
{
    return Vu::CommandDefinitionMgr::get()->findCommandDefinitionById(id);
}

bool WithProgram::applicable(const std::wstring& id)
{
    Vu::CommandContext context = Vu::CommandContext::activeContext();
    return definition(id)->isApplicable(&context);
}

void WithProgram::answerBoxes(int button)
{
    Vu::MessageBox::responder([this, button](const Vu::MessageBox& box) {
        m_boxes.push_back(box.text());
        return button;
    });
}

std::wstring WithProgram::scratch(const std::wstring& name)
{
    return (scratchFolder().path() / name).wstring();
}

void WithProgram::emptyScratch(const std::wstring& name)
{
    boost::filesystem::remove_all(scratch(name));
    boost::filesystem::create_directories(scratch(name));
}

} // namespace CommandsTests
