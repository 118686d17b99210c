#include "Tests/UI/Commands/Recorded.h"

#include "Server/Base/PythonManager.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TranscriptKind.h"
#include "Server/Base/TranscriptMgr.h"
#include "Server/Base/TranscriptReplay.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/ModelDigest.h"
#include "UI/Base/Command/CommandBase.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Workspace/ShellMgr.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <QWidget>

#include <boost/filesystem/fstream.hpp>

#include <sstream>

namespace CommandsTests {

using Vs::TranscriptMgr;

void Recorded::TearDownTestSuite()
{
    Vs::PythonManager::get()->shutdown();
}

void Recorded::SetUp()
{
    WithProgram::SetUp();
    emptyScratch(L"transcripts");
}

void Recorded::TearDown()
{
    TranscriptMgr::get()->endRecording();
    Navigation::TearDown();
}

std::vector<std::string> Recorded::linesOf(const std::wstring& name)
{
    boost::filesystem::ifstream stream{boost::filesystem::path(file(name))};
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);)
        if (!line.starts_with(Vs::kTextTranscriptHead))
            lines.push_back(line);
    return lines;
}

void Recorded::record(const std::wstring& name)
{
    answer(L"Transcripting.Start \"" + file(name) + L'"');
}

void Recorded::closeAll()
{
    Vu::MessageBox::responder([](const Vu::MessageBox&) { return 1; });
    if (documents() > 0)
        run(L"Document.CloseAll");
    Vu::MessageBox::responder(nullptr);
}

std::wstring Recorded::state()
{
    std::wostringstream text;
    const Vs::DocumentMgr* manager = Vs::DocumentMgr::get();
    for (unsigned i = 0; i < manager->documents(); ++i) {
        Vs::Document* document = manager->document(i);
        text << L"document "
             // Names of new documents are numbered consecutively.
             << (document->path().empty() && document->displayName().starts_with(L"Untitled")
                     ? L"Untitled"
                     : document->displayName())
             << L' ' << document->path() << L'\n';
        for (unsigned k = 0; k < document->assets(); ++k) {
            Vs::Asset* asset = document->asset(k);
            text << L"  asset " << asset->assetTypeName() << L' ' << std::hex << Vs::modelDigest(*asset)
                 << std::dec << (asset == document->activeAsset() ? L" active\n" : L"\n");
        }
    }
    if (const Vu::Shell* shell = Vu::WorkspaceMgr::activeWorkspace()->shellManager()->activeShell())
        text << L"shell " << shell->getInterfaceId()->wideText() << L'\n';
    if (const Vu::CommandBase* command = Vu::CommandBase::getActiveCommand())
        text << L"command " << command->commandDefinition()->id() << L'\n';
    if (activeSession())
        text << L"selected " << answer(L"Selection.List") << L'\n' << answer(L"Camera.Dump");
    return text.str();
}

std::wstring Recorded::stateAfter(const std::wstring& name)
{
    closeAll();
    Vs::Status status;
    TranscriptMgr::get()->replay(file(name), status, TranscriptMgr::typeOf(name));
    run(L"");
    EXPECT_TRUE(status.isOk()) << Vs::Strings::narrow(status.toString());
    return (status.isOk() ? L"" : status.toString() + L'\n') + state();
}

SmallWindow::SmallWindow(int width, int height)
    : m_before(Vu::WorkspaceMgr::activeWorkspace()), m_workspace(Vu::WorkspaceMgr::get()->create())
{
    Vu::WorkspaceMgr::activeWorkspace(m_workspace);
    m_workspace->window()->show();
    m_workspace->window()->widget()->resize(width, height);
}

SmallWindow::~SmallWindow()
{
    Vu::WorkspaceMgr::get()->close(m_workspace);
    Vu::WorkspaceMgr::activeWorkspace(m_before);
}

} // namespace CommandsTests
