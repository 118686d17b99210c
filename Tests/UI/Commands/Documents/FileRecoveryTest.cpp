// The recovery files as the user sees them: the dialog, and the home screen's section, through Qt's events.

#include "Server/Base/PathInfo.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/Itemhub/ItemhubEvents.h"
#include "Server/Itemhub/ItemhubUtilities.h"
#include "Tests/Support/Files.h"
#include "Tests/Support/Process.h"
#include "Tests/UI/Commands/Documents/AutoSaveFixture.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Program/FileDialog.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Session/WelcomeScreen.h"
#include "UI/Base/Workspace/Workspace.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <QApplication>
#include <QDialog>
#include <QFrame>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QtTest/QTest>

#include <csignal>
#include <filesystem>
#include <regex>
#include <tuple>

namespace fs = std::filesystem;
using namespace Vs;
namespace Web = Corvane::Itemstore::WebServices;

namespace {

class FileRecoveryTest : public CommandsTests::WithAutoSave
{
protected:
    void SetUp() override
    {
        m_before = Vu::WorkspaceMgr::activeWorkspace();
        m_workspace = Vu::WorkspaceMgr::get()->create();
        m_workspace->window()->show();
        WithAutoSave::SetUp();
        QApplication::processEvents();
    }
    void TearDown() override
    {
        ItemhubUtilities::get()->signOut();
        if (dialog())
            dialog()->close();
        settle();
        WithAutoSave::TearDown();
        Vu::WorkspaceMgr::get()->close(m_workspace);
        Vu::WorkspaceMgr::activeWorkspace(m_before);
    }

    static void settle()
    {
        Vu::Application::get()->flushDeferredTasks();
        QTest::qWait(0);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    /// Null once it has closed.
    static QDialog* dialog()
    {
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (widget->isVisible() && widget->windowTitle() == QStringLiteral("File Recovery"))
                return qobject_cast<QDialog*>(widget);
        return nullptr;
    }
    static QListWidget* list() { return dialog()->findChild<QListWidget*>(); }
    static void showDialog()
    {
        Vu::CommandContext context = Vu::CommandContext::activeContext();
        std::ignore = definition(L"NotifyAutoSaveFilesCommand")->executeCommand(context);
        settle();
        ASSERT_NE(dialog(), nullptr);
    }
    static QStringList rows()
    {
        QStringList texts;
        for (int row = 0; row < list()->count(); ++row)
            texts.append(list()->item(row)->text());
        return texts;
    }
    static void clickRow(int row, Qt::MouseButton button = Qt::LeftButton,
                         Qt::KeyboardModifiers modifiers = {})
    {
        QTest::mouseClick(list()->viewport(), button, modifiers,
                          list()->visualItemRect(list()->item(row)).center());
    }
    /// The open menu; null if there is none.
    static QMenu* menu() { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); }
    static QAction* entry(const QString& title)
    {
        for (QAction* action : menu()->actions())
            if (action->text() == title)
                return action;
        return nullptr;
    }
    static void choose(const QString& title)
    {
        ASSERT_NE(menu(), nullptr);
        QTest::mouseClick(menu(), Qt::LeftButton, {}, menu()->actionGeometry(entry(title)).center());
        settle();
    }
    /// The answer to the next file-name question; keeps what was asked.
    void answerFile(const std::wstring& path)
    {
        Vu::FileDialog::responder([this, path](const auto& request, std::vector<std::wstring>& names) {
            asked = request;
            names = {path};
            return !path.empty();
        });
    }
    /// The rows of the home screen's section; none if it isn't shown.
    QList<QFrame*> homeRows() const
    {
        Vu::WelcomeScreen::get()->show();
        settle();
        auto* section = m_workspace->window()->widget()->findChild<QWidget*>("recoveredFiles");
        return section->isVisibleTo(section->parentWidget()) ? section->findChildren<QFrame*>("recoveredRow")
                                                             : QList<QFrame*>();
    }
    static void clickAtHome(const QFrame* row, const char* button)
    {
        QTest::mouseClick(row->findChild<QPushButton*>(button), Qt::LeftButton);
        settle();
    }

    Vu::FileDialog::Request asked;

private:
    Vu::Workspace* m_workspace = nullptr;
    Vu::Workspace* m_before = nullptr;
};

/// A service whose attachments are local files, and that has nothing else.
class FolderStore : public Itemhub::ItemStore
{
public:
    using Watch = Itemhub::Watch;
    Itemhub::Account account(const Watch&) override { return {"ada", {}, {}}; }
    void signOut() override {}
    Itemhub::Content content(const std::string& uri, const Watch&) override
    {
        if (!fs::exists(uri))
            throw Web::ItemhubException(Web::ItemhubException::Kind::NotFound,
                                        "The attachment was not found.");
        return {.attachmentId = 1, .version = 1, .file = fs::path(uri).filename(), .address = uri};
    }
    void download(const Itemhub::Content& content, const std::string& file, const Watch&) override
    {
        fs::copy_file(content.address, file);
    }

    Itemhub::Content content(std::int64_t, std::int64_t, const Watch&) override { refuse(); }
    std::vector<Web::Workspace> workspaces(const Watch&) override { refuse(); }
    Web::Workspace workspace(std::int64_t, const Watch&) override { refuse(); }
    std::vector<Web::Item> items(const Web::Workspace&, const Watch&) override { refuse(); }
    Web::Item item(std::int64_t, const Watch&) override { refuse(); }
    Web::Item addItem(const Itemhub::NewItem&, const std::string&, const Watch&) override { refuse(); }
    std::vector<Web::Attachment> attachments(std::int64_t, const Watch&) override { refuse(); }
    std::vector<Web::Version> versions(std::int64_t, const Watch&) override { refuse(); }
    std::vector<Web::Item> favourites(const Watch&) override { return {}; }
    void favourite(std::int64_t, bool, const Watch&) override { refuse(); }
    std::vector<Web::Item> search(const std::string&, int, const Watch&) override { refuse(); }
    std::vector<Web::Comment> comments(std::int64_t, const Watch&) override { refuse(); }
    Web::Comment addComment(std::int64_t, const std::string&, const std::string&, const Watch&) override
    {
        refuse();
    }
    Itemhub::ItemEvents events(std::int64_t, int, const Watch&) override { refuse(); }
    std::string beginUpload(std::uint64_t, const std::string&, const Watch&) override { refuse(); }
    std::uint64_t arrived(const std::string&, const Watch&) override { refuse(); }
    void upload(const std::string&, const std::string&, std::uint64_t, const Watch&) override { refuse(); }
    Itemhub::MadeVersion addVersion(const Itemhub::NewVersion&, const Watch&) override { refuse(); }

private:
    [[noreturn]] static void refuse()
    {
        throw Web::ItemhubException(Web::ItemhubException::Kind::Forbidden,
                                    "This service has no such thing.");
    }
};

/// The message to the user.
class Told : public ItemhubEventSite
{
public:
    Told() { ItemhubEventSource::get()->subscribe(this); }
    ~Told() override { ItemhubEventSource::get()->unsubscribe(this); }
    void onErrorMessage(ItemhubErrorEvent* event) override { texts.push_back(event->getErrorMessage()); }

    std::vector<std::wstring> texts;
};

} // namespace

TEST_F(FileRecoveryTest, TheDialogListsTheFilesAndClosesWithTheLastRow)
{
    closeUnsaved(L"First");
    closeUnsaved(L"\"Second <b>\"");
    showDialog();
    // Qt adds the system menu, which the close button belongs to.
    EXPECT_EQ(int(dialog()->windowFlags() & ~Qt::WindowType_Mask & ~Qt::WindowSystemMenuHint), 0x0A041000);
    EXPECT_TRUE(dialog()->isModal() && dialog()->testAttribute(Qt::WA_DeleteOnClose));
    EXPECT_EQ(dialog()->height(), 180);
    EXPECT_EQ(dialog()->minimumWidth(), dialog()->maximumWidth());
    EXPECT_GT(dialog()->maximumHeight(), 180);
    ASSERT_EQ(rows().size(), 2);
    const std::regex form("(First|Second <b>): Auto-saved on [01][0-9]:[0-5][0-9] [AP]M, [A-Z][a-z]+ [0-9]+, "
                          "20[0-9]{2}\\.");
    for (const QString& row : rows())
        EXPECT_TRUE(std::regex_match(row.toStdString(), form)) << row.toStdString();

    clickRow(0, Qt::MiddleButton);
    EXPECT_EQ(menu(), nullptr);
    const QRect last = list()->visualItemRect(list()->item(1));
    QTest::mouseClick(list()->viewport(), Qt::RightButton, {}, QPoint(5, last.bottom() + 20));
    EXPECT_EQ(menu(), nullptr) << "over empty space";
    clickRow(0, Qt::RightButton);
    ASSERT_NE(menu(), nullptr);
    EXPECT_TRUE(entry("Save As...")->isEnabled());
    choose("Delete");
    ASSERT_EQ(rows().size(), 1);
    clickRow(0);
    choose("Delete");
    EXPECT_EQ(dialog(), nullptr);
    EXPECT_TRUE(files().empty());
}

TEST_F(FileRecoveryTest, SeveralRowsAreOpenedAsUnsavedDocumentsButSavedOnlyOneByOne)
{
    closeUnsaved(L"First");
    closeUnsaved(L"Second");
    Vu::WelcomeScreen::get()->show();
    showDialog();
    clickRow(0);
    menu()->close();
    clickRow(1, Qt::LeftButton, Qt::ControlModifier);
    ASSERT_NE(menu(), nullptr);
    EXPECT_FALSE(entry("Save As...")->isEnabled());
    choose("Open");
    EXPECT_EQ(dialog(), nullptr);
    EXPECT_FALSE(Vu::WelcomeScreen::dialogExists());
    ASSERT_EQ(documents(), 2u);
    for (unsigned i = 0; i < documents(); ++i) {
        Document* document = DocumentMgr::get()->document(i);
        EXPECT_TRUE(document->isDirty(false) && document->path().empty());
        EXPECT_TRUE(document->displayName() == L"First" || document->displayName() == L"Second");
        EXPECT_EQ(document->activeAsset()->name(), document->displayName());
    }
}

TEST_F(FileRecoveryTest, ADocumentGetsItsFileBackWhereThatIsStillThere)
{
    for (const wchar_t* name : {L"Kept", L"Gone"}) {
        const std::wstring file = scratch(name + std::wstring(L" file.vlra"));
        answer(L"Design.New");
        answer(L"Document.SaveAs \"" + file + L"\"");
        answer(L"Design.Box 1 2 3");
        Vu::Commands::closeSilently(Vu::SessionMgr::get()->activeDocumentSession());
        Vu::Application::get()->flushDeferredTasks();
    }
    fs::remove(fs::path(scratch(L"Gone file.vlra")));
    showDialog();
    clickRow(0);
    menu()->close();
    clickRow(1, Qt::LeftButton, Qt::ControlModifier);
    choose("Open");
    ASSERT_EQ(documents(), 2u);
    for (unsigned i = 0; i < 2; ++i) {
        const Document* document = DocumentMgr::get()->document(i);
        EXPECT_EQ(document->path(),
                  document->displayName() == L"Kept file" ? scratch(L"Kept file.vlra") : L"");
        EXPECT_TRUE(document->displayName() == L"Kept file" || document->displayName() == L"Gone file");
    }
}

TEST_F(FileRecoveryTest, SaveAsProposesTheNameAndKeepsTheFileUntilTheCopyIsThere)
{
    const std::wstring folder = Vu::UIBaseOptionGroup::get()->lastDirectory();
    closeUnsaved(L"Part");
    showDialog();
    answerFile({});
    clickRow(0);
    choose("Save As...");
    EXPECT_EQ(asked.caption, L"Save Recovery File As");
    EXPECT_EQ(asked.initialPath, L"Part");
    EXPECT_TRUE(asked.filter.ends_with(L" (*.vlra)")) << Strings::narrow(asked.filter);
    EXPECT_EQ(rows().size(), 1) << "the user has cancelled";
    // Where the copy can't be stored, or would be deleted with the file.
    for (const std::wstring& place :
         {scratch(L"no/such/folder.vlra"),
          (PathInfo::Path(files()[0].autoSavedFile()).parent_path() / "x.vlra").wstring()}) {
        answerFile(place);
        clickRow(0);
        choose("Save As...");
        EXPECT_EQ(rows().size(), 1);
        EXPECT_EQ(files().size(), 1u);
        EXPECT_FALSE(fs::exists(fs::path(place)));
    }
    answerFile(scratch(L"Copy.vlra"));
    clickRow(0);
    choose("Save As...");
    EXPECT_EQ(dialog(), nullptr);
    EXPECT_TRUE(files().empty());
    EXPECT_TRUE(fs::exists(fs::path(scratch(L"Copy.vlra"))));
    EXPECT_EQ(Vu::UIBaseOptionGroup::get()->lastDirectory().find(L"recovery"), std::wstring::npos);
    answer(L"Document.Open \"" + scratch(L"Copy.vlra") + L"\"");
    EXPECT_EQ(activeDocument()->displayName(), L"Copy");
    Vu::UIBaseOptionGroup::get()->lastDirectory(folder);
}

TEST_F(FileRecoveryTest, ARowStaysWhereTheFileCannotBeOpened)
{
    closeUnsaved(L"Part");
    showDialog();
    // Damaged between listing and click.
    TestSupport::overwrite(Strings::toBytes(files()[0].autoSavedFile()), "nothing that could be opened");
    answer(L"Design.New");
    const Document* other = activeDocument();
    clickRow(0);
    choose("Open");
    EXPECT_EQ(rows().size(), 1);
    ASSERT_EQ(documents(), 1u);
    EXPECT_TRUE(other->path().empty());
    EXPECT_FALSE(other->isDirty(false));
}

TEST_F(FileRecoveryTest, WhatLiesOnTheServiceIsForWhoeverIsSignedIn)
{
    closeUnsaved(L"Attached");
    const std::string file = Strings::toBytes(files()[0].autoSavedFile());
    const std::wstring attachment = scratch(L"attachment.vlra");
    fs::copy(file, fs::path(attachment));
    const auto rewritten = TestSupport::runProcess(
        "/usr/bin/python3",
        {"-c",
         "import json, os, sys, zipfile\n"
         "old = zipfile.ZipFile(sys.argv[1])\n"
         "with zipfile.ZipFile(sys.argv[1] + '.new', 'w') as new:\n"
         "    for entry in old.infolist():\n"
         "        data = old.read(entry)\n"
         "        if entry.filename == 'recovery.json':\n"
         "            data = json.dumps({**json.loads(data), 'attachmentUrl': sys.argv[2]}).encode()\n"
         "        new.writestr(entry.filename, data)\n"
         "os.rename(sys.argv[1] + '.new', sys.argv[1])\n",
         file, Strings::toBytes(attachment)});
    ASSERT_EQ(rewritten.exitCode, 0) << rewritten.errors;

    showDialog();
    EXPECT_TRUE(rows().empty()) << "nobody is signed in";
    dialog()->close();
    settle();
    EXPECT_EQ(files().size(), 1u);
    EXPECT_TRUE(homeRows().empty());
    ItemhubUtilities::get()->signInTo(std::make_shared<FolderStore>(), "folder");
    showDialog();
    ASSERT_EQ(rows().size(), 1);
    EXPECT_TRUE(rows()[0].startsWith("Attached: Auto-saved  on the Cloud on ")) << rows()[0].toStdString();

    fs::rename(fs::path(attachment), fs::path(scratch(L"away")));
    const Told told;
    clickRow(0);
    choose("Open");
    EXPECT_EQ(told.texts, std::vector<std::wstring>{L"The attachment was not found."});
    EXPECT_EQ(rows().size(), 1);
    EXPECT_EQ(documents(), 0u);
    fs::rename(fs::path(scratch(L"away")), fs::path(attachment));
    clickRow(0);
    choose("Open");
    EXPECT_EQ(dialog(), nullptr);
    ASSERT_EQ(documents(), 1u);
    EXPECT_EQ(activeDocument()->displayName(), L"Attached");
    EXPECT_TRUE(files().empty());
}

TEST_F(FileRecoveryTest, TheHomeScreenHasARowForEachFileWithItsButtons)
{
    EXPECT_TRUE(homeRows().empty());
    for (const wchar_t* name : {L"First", L"Second", L"Third"})
        closeUnsaved(name);
    ASSERT_EQ(homeRows().size(), 3);
    clickAtHome(homeRows()[0], "delete");
    ASSERT_EQ(homeRows().size(), 2);
    answerFile(scratch(L"Copy.vlra"));
    clickAtHome(homeRows()[0], "saveAs");
    EXPECT_TRUE(fs::exists(fs::path(scratch(L"Copy.vlra"))));
    ASSERT_EQ(homeRows().size(), 1);
    clickAtHome(homeRows()[0], "open");
    EXPECT_TRUE(homeRows().empty());
    ASSERT_EQ(documents(), 1u);
    EXPECT_TRUE(DocumentMgr::get()->document(0)->isDirty(false));
}

TEST_F(FileRecoveryTest, OfManyFilesTheHomeScreenShowsTheNewestAndLeadsToTheRest)
{
    for (int i = 0; i < 10; ++i)
        closeUnsaved(L"Part" + std::to_wstring(i));
    const QList<QFrame*> rows = homeRows();
    EXPECT_EQ(rows.size(), 8);
    auto* all = rows.front()->parentWidget()->findChild<QPushButton*>("all");
    ASSERT_NE(all, nullptr);
    EXPECT_EQ(all->text(), QStringLiteral("Show All 10..."));
    QTest::mouseClick(all, Qt::LeftButton);
    settle();
    ASSERT_NE(dialog(), nullptr);
    EXPECT_EQ(list()->count(), 10);
}

TEST_F(FileRecoveryTest, TheRootComponentGetsANameOnlyWhereNobodyHasGivenItOne)
{
    EXPECT_NE(failure(L"Document.UpdateRootComponentName"), L"");
    answer(L"Design.New");
    answer(L"Document.Rename Flange");
    answer(L"Document.UpdateRootComponentName");
    EXPECT_EQ(activeDocument()->activeAsset()->name(), L"Flange");
    answer(L"Document.UpdateRootComponentName \"/some/folder/Other part.vlra\"");
    EXPECT_EQ(activeDocument()->activeAsset()->name(), L"Flange");
    answer(L"Design.New");
    answer(L"Document.UpdateRootComponentName \"/some/folder/Other part.vlra\"");
    EXPECT_EQ(activeDocument()->activeAsset()->name(), L"Other part");
}
