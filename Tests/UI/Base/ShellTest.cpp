#include "Tests/UI/Base/Fixture.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/Workspace/Arrangement.h"
#include "UI/Base/Workspace/Layout.h"
#include "UI/Base/Workspace/ShellMgr.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

using namespace Vu;

namespace {

std::string journal;

class NamedShell : public Shell
{
public:
    NamedShell(ShellMgr* manager, std::string name) : Shell(manager), m_name(std::move(name)) {}
    ~NamedShell() override { note("deleted"); }

protected:
    void onPreDelete() override { note("preDelete"); }
    void onPreActivate(Shell*) override { note("preActivate"); }
    void onPostActivate() override { note(isActiveShell() ? "postActivate" : "postActivate(inactive)"); }
    void onPreDeactivate(Shell*) override
    {
        note(isActiveShell() ? "preDeactivate" : "preDeactivate(inactive)");
    }
    void onPostDeactivate() override { note(isActiveShell() ? "postDeactivate(active)" : "postDeactivate"); }

private:
    void note(const char* what) { journal += m_name + "." + what + " "; }
    std::string m_name;
};

/// Offers the first shell of a workspace, creating it if needed.
class HomeFactory : public WorkspaceEventSite
{
public:
    HomeFactory() { WorkspaceEventSource::get()->subscribe(this); }
    ~HomeFactory() override { WorkspaceEventSource::get()->unsubscribe(this); }
    void workspaceDefaultShell(WorkspaceShellEvent* event) override
    {
        ShellMgr* manager = event->workspace()->shellManager();
        if (manager->shells().empty())
            manager->add(new NamedShell(manager, "home"));
        event->shell(manager->shells().front());
    }
};

class ShellTest : public UiTest
{
protected:
    ShellTest() { journal.clear(); }
    ~ShellTest() override { WorkspaceMgr::get()->closeAll(); }
    HomeFactory factory;
};

} // namespace

TEST_F(ShellTest, ANewWorkspaceIsActiveAndShowsItsDefaultShell)
{
    Workspace* workspace = WorkspaceMgr::get()->create();
    EXPECT_EQ(WorkspaceMgr::activeWorkspace(), workspace);
    EXPECT_EQ(WorkspaceWindow::activeWorkspaceWindow(), workspace->window());
    EXPECT_EQ(journal, "home.preActivate home.postActivate ");
    EXPECT_FALSE(workspace->window()->shown()) << "nobody asked for widgets";
}

TEST_F(ShellTest, AChangeOfShellsTellsBothInOrder)
{
    ShellMgr* manager = WorkspaceMgr::get()->create()->shellManager();
    auto* work = new NamedShell(manager, "work");
    manager->add(work);
    manager->add(work);
    EXPECT_EQ(manager->shells().size(), 2u);
    journal.clear();
    manager->activeShell(work);
    manager->activeShell(work);
    EXPECT_EQ(journal, "work.preActivate home.preDeactivate home.postDeactivate work.postActivate ");
    journal.clear();
    manager->pop();
    EXPECT_EQ(manager->activeShell(), nullptr);
    manager->pop();
    manager->activateDefaultShell();
    EXPECT_EQ(journal, "work.preDeactivate work.postDeactivate home.preActivate home.postActivate ");
}

TEST_F(ShellTest, ShellsOfAnotherWorkspaceAreNotActivated)
{
    ShellMgr* manager = WorkspaceMgr::get()->create()->shellManager();
    Shell* home = manager->activeShell();
    NamedShell stranger(nullptr, "stranger");
    manager->activeShell(&stranger);
    manager->activeShell(nullptr);
    EXPECT_EQ(manager->activeShell(), home);
}

TEST_F(ShellTest, AClosedWorkspaceDeactivatesAndDeletesItsShells)
{
    Workspace* workspace = WorkspaceMgr::get()->create();
    journal.clear();
    WorkspaceMgr::get()->close(workspace);
    EXPECT_EQ(journal, "home.preDeactivate home.postDeactivate home.preDelete home.deleted ");
    EXPECT_EQ(WorkspaceMgr::activeWorkspace(), nullptr);
}

TEST_F(ShellTest, AnArrangementThatIsTakenOutLivesOnAndADestroyedOneTakesItsCanvasesAlong)
{
    WorkspaceWindow* window = WorkspaceMgr::get()->create()->window();
    ArrangementMgr* arrangements = window->arrangementManager();
    auto* layout = new Layout;
    layout->addChild(std::make_unique<Area>(L"Canvas", Area::graphicsCanvas()));
    Arrangement* arrangement = Arrangement::make(arrangements, layout);
    EXPECT_EQ(window->area(), nullptr);
    arrangements->arrangement(arrangement);
    EXPECT_EQ(window->area(L"Canvas"), layout->children().front().get());
    arrangements->remove(arrangement);
    EXPECT_EQ(window->area(), nullptr);

    std::vector<GraphicsCanvas*> canvases;
    GraphicsCanvas::allCanvases(canvases);
    EXPECT_TRUE(canvases.empty()) << "no window shows it";
    EXPECT_EQ(GraphicsCanvas::existingCanvases().size(), 1u);
    arrangement->destroy();
    EXPECT_TRUE(GraphicsCanvas::existingCanvases().empty());
}
