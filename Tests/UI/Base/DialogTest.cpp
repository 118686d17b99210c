#include "Server/Base/Warning.h"
#include "Tests/UI/Base/Fixture.h"
#include "UI/Base/Command/AlertController.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/FileDialog.h"
#include "UI/Base/Program/MessageBox.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Session/RecentDocumentMgr.h"
#include "UI/Base/Session/RecentPaths.h"
#include "UI/Base/View/TransitionMgr.h"
#include "UI/Base/Window/NamingDialog.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QTimer>
#include <QtTest/QTest>

#include <boost/filesystem/operations.hpp>

#include <string>

using namespace Vu;
using namespace std::string_literals;

namespace {

class DialogTest : public UiTest
{
protected:
    bool saidSomethingOf(const wchar_t* text) const { return warned.find(text) != std::wstring::npos; }
    std::wstring warned;
    const Vs::WarningHandler handler{[this](const std::wstring& text) { warned += text; }};
    std::wstring name;
};

class Fade : public TransitionItem
{
public:
    explicit Fade(double& shown) : m_shown(shown) {}
    void apply(double fraction) override { m_shown = fraction; }

private:
    double& m_shown;
};

} // namespace

TEST_F(DialogTest, ABoxThatOnlyInformsIsAMessageWhereNobodyLooks)
{
    CommandMgr::get()->GetAlertController()->clearAllAlerts();
    MessageBox::warning(L"The disk is full.");
    EXPECT_TRUE(saidSomethingOf(L"The disk is full."));
    EXPECT_EQ(CommandMgr::get()->GetAlertController()->alerts().size(), 1u);
}

TEST_F(DialogTest, ABoxThatAsksCountsAsCancelledWhereNobodyAnswers)
{
    MessageBox box(L"Save changes?");
    box.addButton(L"Save", true);
    box.addButton(L"Don't Save");
    box.addButton(kCancelButton);
    EXPECT_EQ(box.show(), 2);
    EXPECT_TRUE(saidSomethingOf(L"Save changes?"));
    EXPECT_TRUE(saidSomethingOf(L"\"Cancel\""));

    MessageBox yesOrNo(L"Replace it?");
    yesOrNo.addButton(kNoButton, true);
    yesOrNo.addButton(kYesButton);
    EXPECT_EQ(yesOrNo.show(), 0);
    MessageBox own(L"Which?");
    own.addButton(L"This");
    own.addButton(L"That");
    EXPECT_EQ(own.show(), 1);
}

TEST_F(DialogTest, AResponderAnswersInPlaceOfAPerson)
{
    MessageBox::responder([](const MessageBox& box) {
        EXPECT_EQ(box.text(), L"Go on?");
        EXPECT_EQ(box.buttons(), (std::vector<std::wstring>{L"Yes", L"No"}));
        return 0;
    });
    MessageBox box(L"Go on?");
    box.addButton(kYesButton);
    box.addButton(kNoButton);
    EXPECT_EQ(box.show(), 0);
    EXPECT_TRUE(warned.empty());
}

TEST_F(DialogTest, ATranscriptableNameComesFromTheContextWithoutADialog)
{
    FileDialog::responder([](const FileDialog::Request&, std::vector<std::wstring>&) {
        ADD_FAILURE() << "asked all the same";
        return false;
    });
    CommandContext context;
    context.addArgument(CommandContext::pathArgumentName(), L"/tmp/part.step");
    EXPECT_TRUE(FileDialog::getTranscriptableFilename(L"STEP (*.step)", name, &context, true, L""));
    EXPECT_EQ(name, L"/tmp/part.step");
}

TEST_F(DialogTest, ANameThatWasAskedForIsLeftInTheContextForTheRecording)
{
    FileDialog::responder([](const FileDialog::Request& request, std::vector<std::wstring>& names) {
        EXPECT_FALSE(request.forOpen);
        EXPECT_EQ(request.caption, L"Save As");
        names = {L"/tmp/picture.png"};
        return true;
    });
    CommandContext context;
    EXPECT_TRUE(FileDialog::getTranscriptableFilenameForSaveAs(L"png (*.png)", L"Save As", name, &context));
    EXPECT_EQ(context.argumentAsString(CommandContext::pathArgumentName()), L"/tmp/picture.png");
    EXPECT_EQ(UIBaseOptionGroup::get()->lastDirectory(), L"/tmp");
}

TEST_F(DialogTest, WithoutANameAndWithoutAPersonTheDialogIsCancelledWithAMessage)
{
    CommandContext context;
    EXPECT_FALSE(FileDialog::getTranscriptableFilename(L"", name, &context, true, L""));
    EXPECT_TRUE(saidSomethingOf(L"no file name"));
    std::vector<std::wstring> names{L"old"};
    EXPECT_FALSE(FileDialog::getFilenamesForOpen(L"", names, L""));
    EXPECT_TRUE(names.empty());
}

TEST_F(DialogTest, ANameWithQuotesIsSavedUnderAsItStands)
{
    Application::get()->needGui();
    const QString given = QString::fromStdWString((folder.path() / "Plan \"B\"").wstring());
    NamingDialog dialog(nullptr, QStringLiteral("Save"), given, QStringLiteral("Design (*.vlra);;All (*.*)"));
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.show();
    auto* line = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    ASSERT_NE(line, nullptr);
    EXPECT_EQ(line->text().toStdString(), "Plan \"B\"");
    QTest::keyClick(line, Qt::Key_Return);
    EXPECT_EQ(dialog.name().toStdString(), given.toStdString() + ".vlra");

    dialog.show();
    line->setText(QStringLiteral("Plan C"));
    QTest::keyClick(line, Qt::Key_Return);
    EXPECT_EQ(dialog.name().toStdString(), (folder.path() / "Plan C.vlra").string());

    NamingDialog typed(nullptr, QStringLiteral("Save"), given, QStringLiteral("Python (*.py)"),
                       NamingDialog::Suffix::AsTyped);
    typed.setOption(QFileDialog::DontUseNativeDialog);
    typed.show();
    auto* typedLine = typed.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    typedLine->setText(QStringLiteral("session"));
    QTest::keyClick(typedLine, Qt::Key_Return);
    EXPECT_EQ(typed.name().toStdString(), (folder.path() / "session").string());

    // An existing one is only replaced with the user's consent, and is described correctly.
    for (const QString& name : {QStringLiteral("\"B\""), QStringLiteral("<b>B<")}) {
        write(name.toStdString() + ".vlra", "old");
        for (const auto answer : {QMessageBox::No, QMessageBox::Yes}) {
            dialog.show();
            line->setText(name);
            int asked = 0;
            QTimer::singleShot(0, [&] {
                auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
                ASSERT_NE(box, nullptr);
                ++asked;
                EXPECT_TRUE(box->text().startsWith(name + QStringLiteral(".vlra")))
                    << box->text().toStdString();
                EXPECT_EQ(box->textFormat(), Qt::PlainText);
                box->button(answer)->click();
            });
            QTest::keyClick(line, Qt::Key_Return);
            EXPECT_EQ(asked, 1);
            EXPECT_EQ(dialog.isVisible(), answer == QMessageBox::No);
            if (answer == QMessageBox::No)
                dialog.reject();
            EXPECT_EQ(dialog.name().toStdString(),
                      answer == QMessageBox::No ? ""
                                                : (folder.path() / (name.toStdString() + ".vlra")).string());
        }
    }
}

TEST_F(DialogTest, FiltersAreBroughtIntoTheSystemsForm)
{
    EXPECT_EQ(FileDialogRules::dialogFilter(
                  L"All supported files ( *.stp;*.step;*.tdsn );;Design (*.tdsn);;;STEP (*.stp)"),
              L"All supported files (*.stp *.step *.tdsn);;Design (*.tdsn);;STEP (*.stp)");
    EXPECT_EQ(FileDialogRules::dialogFilter(L""), L"");
    EXPECT_EQ(FileDialogRules::withSuffix(L"/a.b/part", L"STEP File (*.stp *.step)"), L"/a.b/part.stp");
    EXPECT_EQ(FileDialogRules::withSuffix(L"/a.b/part.x", L"STEP File (*.stp *.step)"), L"/a.b/part.x");
    EXPECT_EQ(FileDialogRules::withSuffix(L"part", L"All (*.*)"), L"part");
    EXPECT_EQ(FileDialogRules::withSuffix(L"", L"STL (*.stl)"), L"");
}

TEST_F(DialogTest, RecentDocumentsAreNewestFirstWithoutRepetitionAndBounded)
{
    RecentDocumentMgr* recent = RecentDocumentMgr::get();
    recent->clearRecent();
    for (int i = 0; i < 25; ++i)
        recent->add(L"/models/" + std::to_wstring(i), i % 2 == 1);
    recent->add(L"/models/20", false);
    recent->add(L"", false);
    std::vector<RecentDocument*> documents = recent->newestFirst(1000);
    ASSERT_EQ(documents.size(), size_t(RecentDocumentMgr::kMaximum));
    EXPECT_EQ(documents[0]->path(), L"/models/20");
    EXPECT_EQ(documents[1]->path(), L"/models/24");
    EXPECT_TRUE(documents[2]->isCloud());
    std::vector<RecentDocument*> newestLast;
    recent->recentDocuments(newestLast, 3);
    EXPECT_EQ(newestLast, (std::vector<RecentDocument*>{documents[2], documents[1], documents[0]}));
}

TEST_F(DialogTest, RecentDocumentsAreFoundFromWhereverTheProgramIsStartedNextTime)
{
    RecentDocumentMgr* recent = RecentDocumentMgr::get();
    recent->clearRecent();
    const boost::filesystem::path here = boost::filesystem::current_path();
    for (const std::wstring& path :
         {L"a/Pl\u00e4n.vlra"s, L"./a/Pl\u00e4n.vlra"s, (here / L"a/Pl\u00e4n.vlra").wstring()})
        recent->add(path, false);
    ASSERT_EQ(recent->newestFirst(10).size(), 1u);
    EXPECT_EQ(recent->newestFirst(10).front()->path(), (here / L"a/Pl\u00e4n.vlra").wstring());
}

TEST_F(DialogTest, RecentFilesOfAllKindsGoWithTheDocumentsListAndPinnedOnesStayInFront)
{
    RecentPaths& files = RecentPaths::files();
    const auto paths = [&] {
        std::wstring all;
        for (const RecentPaths::Entry& entry : files.entries())
            all += (entry.isPinned ? L'*' : L' ') + entry.path;
        return all;
    };
    for (const RecentPaths::Entry& entry : std::vector(files.entries()))
        files.remove(entry.path);
    RecentDocumentMgr* documents = RecentDocumentMgr::get();
    documents->clearRecent();
    documents->add(L"/models/a.vlra", false);
    files.add(L"/models/b.step");
    files.add(L"/models/./c.stl");
    documents->add(L"/models/a.vlra", false);
    files.add(L"");
    EXPECT_EQ(paths(), L" /models/a.vlra /models/c.stl /models/b.step");
    files.pin(L"/models/b.step", true);
    files.pin(L"/models/unknown", true);
    documents->add(L"/models/d.vlra", false);
    EXPECT_EQ(paths(), L"*/models/b.step /models/d.vlra /models/a.vlra /models/c.stl");
    documents->remove(L"/models/d.vlra");
    EXPECT_EQ(paths(), L"*/models/b.step /models/a.vlra /models/c.stl");
    for (size_t i = 0; i < 2 * RecentPaths::kMaximum; ++i)
        files.add(L"/many/" + std::to_wstring(i));
    EXPECT_EQ(files.entries().size(), RecentPaths::kMaximum + 1);
    EXPECT_EQ(files.entries()[1].path, L"/many/" + std::to_wstring(2 * RecentPaths::kMaximum - 1));
    documents->clearRecent();
    EXPECT_EQ(paths(), L"*/models/b.step");
    files.pin(L"/models/b.step", false);
    documents->clearRecent();
    EXPECT_EQ(paths(), L"");
}

TEST_F(DialogTest, ATransitionThatNobodySeesIsAtItsEndAtOnce)
{
    double shown = -1;
    TransitionMgr* transitions = TransitionMgr::get();
    Transition* transition = transitions->beginTransition();
    ASSERT_NE(transition, nullptr);
    EXPECT_EQ(transitions->beginTransition(), nullptr) << "one is being collected";
    transition->add(new Fade(shown));
    transitions->endTransition();
    EXPECT_EQ(shown, 1.0);
    EXPECT_FALSE(transitions->playing());
    ASSERT_NE(transitions->beginTransition(), nullptr);
    transitions->endTransition();
    transitions->endTransition();
}

TEST_F(DialogTest, ATaskThatThrowsBecomesAMessageAndTheOthersRun)
{
    bool ran = false;
    Application::get()->deferredTasks()->post([] { throw std::runtime_error("no such thing"); });
    Application::get()->deferredTasks()->post([&] { ran = true; });
    Application::get()->flushDeferredTasks();
    Application::get()->flushDeferredTasks();
    EXPECT_TRUE(ran);
    EXPECT_TRUE(saidSomethingOf(L"no such thing"));
}
