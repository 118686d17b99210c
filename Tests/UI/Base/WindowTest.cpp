#include "Server/Base/Progress.h"
#include "Server/Base/ResourceMgr.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/ModelBuilder.h"
#include "Server/DataModel/Selection/VisibilityRequest.h"
#include "Server/DataModel/Transaction.h"
#include "Server/Scene/SceneAssetAdapter.h"
#include "Tests/UI/Base/Fixture.h"
#include "Tests/UI/Base/ShownWindow.h"
#include "Tests/UI/Becomes.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/InteractiveCommandBase.h"
#include "UI/Base/Command/KeyEvents.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/AreaContents.h"
#include "UI/Base/Program/ProgressBar.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/DocumentRemark.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/ViewMgr.h"
#include "UI/Base/Window/BrowserModel.h"
#include "UI/Base/Window/BrowserPanel.h"
#include "UI/Base/Window/CommandBox.h"
#include "UI/Base/Window/CommandButton.h"
#include "UI/Base/Window/MainWindow.h"
#include "UI/Base/Window/ProgressPanel.h"
#include "UI/Base/Workspace/Arrangement.h"
#include "UI/Base/Workspace/Layout.h"
#include "UI/Base/Workspace/ToolbarManager.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <QApplication>
#include <QDialog>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QShortcut>
#include <QToolButton>
#include <QTreeView>
#include <QtTest/QTest>

using namespace Vu;
using UiTests::windowWith;

namespace {

/// Creates commands that stay active, and logs the keys they get.
class KeyCommandDef : private InfoHolder, public CommandDefinition
{
public:
    KeyCommandDef() : InfoHolder{Info(L"KeyTestCommand", L"Keys", nullptr)}, CommandDefinition(&record) {}
    std::string keys;

private:
    class KeyCommand : public InteractiveCommandBase
    {
    public:
        KeyCommand(KeyCommandDef* definition, CommandContext* context)
            : InteractiveCommandBase(definition, context), m_keys(definition->keys)
        {
        }
        void onKeyPress(KeyEvent* event) override
        {
            m_keys += "+" + std::to_string(event->keyCode());
            InteractiveCommandBase::onKeyPress(event);
        }
        void onKeyRelease(KeyEvent* event) override { m_keys += "-" + std::to_string(event->keyCode()); }

    private:
        std::string& m_keys;
    };
    CommandBase* onCreateCommand(CommandContext* context) override { return new KeyCommand(this, context); }
};

class WindowTest : public UiTest
{
protected:
    void addBoxes(Vs::Asset* asset, int count)
    {
        Vs::Status status;
        Vs::Transaction transaction(asset, L"Boxes");
        for (int i = 0; i < count; ++i)
            Vs::ModelBuilder(asset).box(10, 10, 10, {{}, L"Box " + std::to_wstring(i), {}}, status);
        transaction.commit();
        ASSERT_TRUE(status.isOk());
    }
};

} // namespace

TEST_F(WindowTest, TheBrowserListsTheTreeAndFollowsItsChanges)
{
    Vs::Asset* asset = newAsset();
    addBoxes(asset, 3);
    Application::get()->needGui();
    BrowserModel model(nullptr);
    model.asset(asset);
    const QModelIndex root = model.rootIndex();
    EXPECT_EQ(model.data(root, Qt::DisplayRole).toString().toStdWString(), asset->name());
    ASSERT_EQ(model.rowCount(root), 3);
    const QModelIndex last = model.index(2, 0, root);
    EXPECT_EQ(model.data(last, Qt::DisplayRole).toString().toStdString(), "Box 2");
    EXPECT_EQ(model.parent(last), root);
    EXPECT_EQ(model.indexOf(model.component(last)->id), last);
    EXPECT_FALSE(model.indexOf("no such id").isValid());

    addBoxes(asset, 1);
    EXPECT_EQ(model.rowCount(model.rootIndex()), 4);
    Vs::Transaction::undo(asset);
    EXPECT_EQ(model.rowCount(model.rootIndex()), 3);
}

TEST_F(WindowTest, ACheckMarkInTheBrowserAsksToHideAndTellsWhatIsHidden)
{
    Vs::Asset* asset = newAsset();
    addBoxes(asset, 2);
    Application::get()->needGui();
    BrowserModel model(nullptr);
    model.asset(asset);
    const QModelIndex box = model.index(1, 0, model.rootIndex());
    model.shower([&](const QModelIndex& index, bool visible) {
        Vs::Status status;
        Vs::Request* request = Vs::VisibilityRequest::make({{model.component(index)->id}}, visible);
        request->execute(asset, status);
        request->destroy();
    });
    const auto state = [&] { return model.data(box, Qt::CheckStateRole).toInt(); };
    auto* scene = Vs::cast<Vs::Scene::SceneAssetAdapter>(asset->adapter());
    ASSERT_TRUE(model.setData(box, Qt::Unchecked, Qt::CheckStateRole));
    EXPECT_EQ(state(), int(Qt::Unchecked));
    EXPECT_TRUE(model.data(box, Qt::ForegroundRole).isValid()) << "grey";
    EXPECT_FALSE(scene->node(model.component(box)->id)->visible());
    Vs::Transaction::undo(asset);
    EXPECT_EQ(state(), int(Qt::Checked));
    EXPECT_TRUE(scene->node(model.component(box)->id)->visible());
    EXPECT_FALSE(model.flags(model.rootIndex()).testFlag(Qt::ItemIsUserCheckable));
}

TEST_F(WindowTest, AClosedAssetLeavesAnEmptyBrowser)
{
    Vs::Asset* asset = newAsset();
    addBoxes(asset, 1);
    Application::get()->needGui();
    BrowserModel model(nullptr);
    model.asset(asset);
    Vs::DocumentMgr::get()->close(asset->document());
    EXPECT_EQ(model.rowCount(), 0);
    EXPECT_EQ(model.asset(), nullptr);
}

TEST_F(WindowTest, AToolbarButtonRunsItsCommandAndIsGreyWhenThatCannotRun)
{
    int runs = 0;
    FunctionCommandDef command(L"WindowTestCommand", [&](CommandContext&) { ++runs; });
    ToolbarManager::get()->add(
        {L"WindowTest", L"", "WindowTestBar", {{L"WindowTestCommand", L"", {}}}, true});
    MainWindow* window = windowWith({"WindowTestBar"})->mainWindow();
    ASSERT_EQ(window->buttons().size(), 1u);
    QTest::mouseClick(window->buttons().front(), Qt::LeftButton);
    EXPECT_EQ(runs, 0) << "it runs behind the click, not inside it";
    Application::get()->flushDeferredTasks();
    EXPECT_EQ(runs, 1);
    command.applicable = false;
    window->buttons().front()->refresh();
    EXPECT_FALSE(window->buttons().front()->isEnabled());
    WorkspaceMgr::get()->closeAll();
}

TEST_F(WindowTest, TheActiveCommandGetsTheKeysThatNothingElseTakesAndEndsAtEscape)
{
    MainWindow* window = windowWith({"TextCommands"})->mainWindow();
    AssetSession* session = SessionMgr::get()->assetSession(newAsset());
    SessionMgr::get()->currentAssetSession(session);
    SessionMgr::get()->activate();
    KeyCommandDef definition;
    std::ignore = session->commandManager()->executeCommand(&definition, CommandContext());
    ASSERT_NE(session->commandManager()->activeCommand(), nullptr);
    QTest::keyClick(window, Qt::Key_S);
    EXPECT_EQ(definition.keys, "+83-83");
    // Keys typed into the line stay with it, including their releases.
    definition.keys.clear();
    auto* line = window->commandBox()->findChild<QLineEdit*>();
    ASSERT_NE(line, nullptr);
    QTest::keyClick(line, Qt::Key_S);
    EXPECT_EQ(line->text().toStdString(), "s");
    EXPECT_EQ(definition.keys, "");
    QTest::keyClick(line, Qt::Key_Escape);
    EXPECT_EQ(line->text().toStdString(), "s") << "what completes it went first";
    QTest::keyClick(line, Qt::Key_Escape);
    EXPECT_EQ(line->text().toStdString(), "");
    EXPECT_NE(session->commandManager()->activeCommand(), nullptr) << "the line was emptied first";
    QTest::keyClick(line, Qt::Key_Escape);
    EXPECT_EQ(session->commandManager()->activeCommand(), nullptr);
    QTest::keyClick(window, Qt::Key_S);
    WorkspaceMgr::get()->closeAll();
}

TEST_F(WindowTest, HiddenAreasTakeNoRoomAndComeBack)
{
    WorkspaceWindow* window = windowWith({"GraphicsCanvas", "TextCommands", "NothingDrawsThis"});
    CommandBox* box = window->mainWindow()->commandBox();
    EXPECT_TRUE(box->isVisible());
    window->area(L"TextCommands")->visible(false);
    EXPECT_TRUE(UiTests::becomes([&] { return !box->isVisible(); }));
    window->area(L"TextCommands")->visible(true);
    EXPECT_TRUE(UiTests::becomes([&] { return box->isVisible(); }));
    EXPECT_EQ(window->mainWindow()->commandBox(), box) << "what was typed is kept";
}

TEST_F(WindowTest, TheTitleTellsTheDocumentAndWhetherItWasChanged)
{
    MainWindow* window = windowWith({"TextCommands"})->mainWindow();
    EXPECT_EQ(window->windowTitle().toStdString(), "Quillet");
    Vs::Asset* asset = newAsset();
    asset->document()->displayName(L"Pump [*]");
    SessionMgr::get()->currentAssetSession(SessionMgr::get()->assetSession(asset));
    SessionMgr::get()->activate();
    SessionMgr::get()->postActivate();
    std::ignore = UiTests::becomes([&] { return window->windowTitle().startsWith(QStringLiteral("Pump")); });
    EXPECT_EQ(window->windowTitle().toStdString(), "Pump [*][*][*] \u2013 Quillet")
        << "the name's own is kept";
    EXPECT_FALSE(window->isWindowModified());
    addBoxes(asset, 1);
    EXPECT_TRUE(UiTests::becomes([&] { return window->isWindowModified(); }));
    asset->markClean();
    window->refreshSoon();
    EXPECT_TRUE(UiTests::becomes([&] { return !window->isWindowModified(); }));

    // The remarks of add-ins come after the name.
    {
        const DocumentRemark remark([](const Vs::Document&) { return std::wstring(L"on its way"); });
        const DocumentRemark silent([](const Vs::Document&) { return std::wstring(); });
        Vs::Event changed;
        DocumentRemarkSource::get()->fireDocumentRemarksChanged(&changed);
        EXPECT_TRUE(UiTests::becomes([&] { return window->windowTitle().contains(QStringLiteral("on")); }));
        EXPECT_EQ(window->windowTitle().toStdString(), "Pump [*][*][*] (on its way) \u2013 Quillet");
    }
    window->refreshSoon();
    EXPECT_TRUE(UiTests::becomes([&] { return !window->windowTitle().contains(QStringLiteral("on its")); }));
}

TEST_F(WindowTest, WhetherAClosedWindowGoesIsForTheCommandToSay)
{
    int asked = 0;
    FunctionCommandDef exit(L"ExitApplicationCommand", [&](CommandContext&) { ++asked; });
    MainWindow* window = windowWith({"TextCommands"})->mainWindow();
    EXPECT_FALSE(window->close());
    EXPECT_EQ(asked, 0) << "behind the event, so that questions don't hold the window system up";
    Application::get()->flushDeferredTasks();
    EXPECT_EQ(asked, 1);
    EXPECT_TRUE(window->isVisible());
    {
        Vs::ProgressScope work(L"Saving");
        EXPECT_FALSE(window->close());
        Application::get()->flushDeferredTasks();
    }
    EXPECT_EQ(asked, 1) << "not in the middle of work";
    WorkspaceMgr::get()->closeAll();
}

TEST_F(WindowTest, AWindowHasTheSizeWithWhichTheLastOneWasClosed)
{
    windowWith({"TextCommands"})->mainWindow()->resize(517, 433);
    WorkspaceMgr::get()->closeAll();
    EXPECT_EQ(windowWith({"TextCommands"})->mainWindow()->size(), QSize(517, 433));
    WorkspaceMgr::get()->closeAll();
    UIBaseOptionGroup::get()->windowGeometry(L"no geometry");
    EXPECT_GT(windowWith({"TextCommands"})->mainWindow()->width(), 517);
}

TEST_F(WindowTest, ContentsThatSomebodyBringsStandInTheirAreaAndAPageOfAreasScrolls)
{
    const AreaContents tall("TestTall", [](QWidget* parent) {
        auto* widget = new QToolButton(parent);
        widget->setObjectName(QStringLiteral("tall"));
        widget->setFixedHeight(3000);
        return widget;
    });
    WorkspaceWindow* window = WorkspaceMgr::get()->create()->window();
    auto* layout = new Layout;
    Area* page = layout->addChild(std::make_unique<Area>(L"Page", Vs::UniqueString::find("ScrollPage")));
    page->addChild(std::make_unique<Area>(L"Tall", Vs::UniqueString::find("TestTall")));
    window->arrangementManager()->arrangement(Arrangement::make(window->arrangementManager(), layout));
    window->show();
    const auto* widget = window->widget()->findChild<QWidget*>(QStringLiteral("tall"));
    ASSERT_NE(widget, nullptr);
    EXPECT_EQ(widget->height(), 3000);
    EXPECT_LT(window->widget()->height(), 2000);
    WorkspaceMgr::get()->closeAll();
}

TEST_F(WindowTest, TheCommandLineKeepsTheKeyboardThroughAnotherLayout)
{
    WorkspaceWindow* window = windowWith({"GraphicsCanvas", "TextCommands"});
    auto* line = window->widget()->findChild<QLineEdit*>(QStringLiteral("commandLine"));
    ASSERT_NE(line, nullptr);
    line->setFocus();
    auto* layout = new Layout;
    layout->addChild(std::make_unique<Area>(L"Canvas", Area::graphicsCanvas()));
    layout->addChild(std::make_unique<Area>(L"Line", Vs::UniqueString::find("TextCommands")));
    ArrangementMgr* arrangements = window->arrangementManager();
    Arrangement* old = arrangements->arrangement();
    arrangements->arrangement(Arrangement::make(arrangements, layout));
    old->destroy();
    const QPointer<QWidget> before = line->parentWidget()->parentWidget();
    EXPECT_TRUE(UiTests::becomes([&] { return !before; }));
    EXPECT_EQ(window->widget()->focusWidget(), line);
}

TEST_F(WindowTest, LongWorkCanBeCancelledButStartsNoOtherCommand)
{
    MainWindow* window = windowWith({"TextCommands"})->mainWindow();
    bool ranInside = false;
    QLineEdit field(window);
    field.show();
    QApplication::setActiveWindow(window);
    {
        Vs::ProgressScope work(L"Loading");
        EXPECT_TRUE(window->progressPanel()->isVisible());
        EXPECT_TRUE(ProgressBar::get()->busy());
        Application::get()->deferredTasks()->post([&] { ranInside = true; });
        QTest::keyClicks(window, QStringLiteral("x"));
        field.setFocus();
        new QShortcut(QKeySequence(Qt::Key_V), window);
        for (const char key : {'2', '.', '5', 'v'})
            QTest::keyClick(window->windowHandle(), key);
        QTest::qWait(40);
        EXPECT_EQ(field.text(), QString());
        EXPECT_TRUE(work.update(0.4, L"Reading"));
        EXPECT_EQ(window->progressPanel()->findChild<QLabel*>()->text().toStdString(), "Loading: Reading");
        EXPECT_FALSE(ranInside);
        QDialog question(window);
        question.open();
        QTest::keyClick(question.windowHandle(), Qt::Key_Escape);
        EXPECT_FALSE(question.isVisible()) << "what the work asks cannot be answered";
        EXPECT_FALSE(Vs::Progress::cancelled());
        window->progressPanel()->cancelButton()->click();
        EXPECT_FALSE(work.update(0.5));
    }
    EXPECT_FALSE(window->progressPanel()->isVisible());
    {
        // A tool's key as well, when no field has the focus.
        new QShortcut(QKeySequence(Qt::Key_Escape), window);
        window->progressPanel()->setFocus();
        const Vs::ProgressScope work(L"Measuring");
        QTest::keyClick(window->windowHandle(), Qt::Key_Escape);
        EXPECT_TRUE(Vs::Progress::cancelled());
        field.setFocus();
    }
    // The first canvas has Qt recreate the native window; so does this.
    window->setWindowFlag(Qt::WindowStaysOnTopHint);
    window->show();
    EXPECT_TRUE(UiTests::becomes([&] { return ranInside; }));
    EXPECT_EQ(field.text().toStdString(), "2.5v") << "what is typed into a field waits for the end";

    const int width = window->width();
    const Vs::ProgressScope wide(L"Loading " + std::wstring(255, L'W'));
    QTest::qWait(20);
    EXPECT_EQ(window->width(), width);
    EXPECT_LT(window->minimumSizeHint().width(), width);
}

TEST_F(WindowTest, APictureIsWrittenWholeOrNotAtAll)
{
    Vs::Asset* asset = newAsset();
    addBoxes(asset, 1);
    AssetSession* session = SessionMgr::get()->assetSession(asset);
    auto* view = Vs::cast<GraphicsView>(session->viewManager()->view(GraphicsView::interfaceId()));
    ASSERT_NE(view, nullptr);
    for (const char* name : {"a.png", "a.jpg", "a.tif"}) {
        Vs::Status status;
        Vs::ImageResource image((folder.path() / name).wstring());
        ASSERT_TRUE(view->renderImage(&image, 64, 48, status)) << name;
        const QImage picture(QString::fromStdWString((folder.path() / name).wstring()));
        EXPECT_EQ(picture.size(), QSize(64, 48)) << name;
    }
    Vs::Status status;
    Vs::ImageResource nowhere(L"/no/such/folder/a.png");
    EXPECT_FALSE(view->renderImage(&nowhere, 64, 48, status));
    EXPECT_TRUE(status.matchingError("/no/such/folder/a.png"));
}
