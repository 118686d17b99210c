#include "Server/Base/PathInfo.h"
#include "Server/Base/TextCommandMgr.h"
#include "Server/Base/TranscriptKind.h"
#include "Server/Base/TranscriptMgr.h"
#include "Tests/Support/Files.h"
#include "Tests/Support/Users.h"
#include "Tests/UI/Commands/CommandsProgram.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/FileDialog.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/MouseEvents.h"
#include "UI/Commands/Adaptations/QT/Validation/QTAutoMatchLineEdit.h"
#include "UI/Commands/Adaptations/QT/Validation/QTNormalValidationDialog.h"
#include "UI/Commands/Adaptations/QT/Validation/QTPerfValidationDialog.h"
#include "UI/Commands/Transcripts/NormalValidationWidget.h"

#include <QCheckBox>
#include <QCompleter>
#include <QGridLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest/QTest>

#include <boost/filesystem/operations.hpp>

#include <cstdlib>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

using namespace Vu;
using namespace Vu::Commands;

namespace {

/// A recording whose transcript is read back, and the two companion windows.
class ValidationWindows : public CommandsTests::WithProgram
{
protected:
    void SetUp() override
    {
        WithProgram::SetUp();
        Application::get()->needGui();
        emptyScratch(L"recorded");
        FileDialog::responder([](const FileDialog::Request&, std::vector<std::wstring>& names) {
            names = {path()};
            return true;
        });
    }
    void TearDown() override
    {
        start(L"StopTranscriptingCommand");
        ValidationDialog::get()->needToShow(false);
        WithProgram::TearDown();
    }

    static std::wstring path() { return scratch(L"recorded/session.txt"); }
    /// After the line that describes the file.
    static std::string recorded()
    {
        const std::string content = TestSupport::contentOf(boost::filesystem::path(path()));
        EXPECT_TRUE(content.empty() || content.starts_with(Vs::kTextTranscriptHead)) << content;
        return content.empty() ? content : content.substr(content.find('\n') + 1);
    }
    static void start(const std::wstring& command)
    {
        std::ignore = CommandMgr::get()->executeCommand(command, CommandContext::emptyContext());
        Application::get()->flushDeferredTasks();
    }

    /// The button with that text, or the field, in a titled box of the window.
    template <class Widget>
    static Widget* inBox(const QWidget* window, const QString& title, const QString& text = {})
    {
        for (auto* box : window->findChildren<QGroupBox*>()) {
            if (box->title() != title)
                continue;
            for (auto* widget : box->findChildren<Widget*>())
                if (text.isEmpty() || widget->text() == text)
                    return widget;
        }
        return nullptr;
    }
    /// The check mark's position in a box.
    static void click(QAbstractButton* button)
    {
        QTest::mouseClick(button, Qt::LeftButton, {}, {8, button->height() / 2});
    }
};

TEST_F(ValidationWindows, CommentsAndChecksAreWrittenAsTheyStandInTheWindow)
{
    QWidget* const window = QTNormalValidationDialog::get();
    start(L"StartTranscriptingCommand");
    auto* comment = inBox<QLineEdit>(window, "Comment");
    auto* insert = inBox<QPushButton>(window, "Comment", "Insert");
    ASSERT_TRUE(comment && insert);
    click(insert);
    QTest::keyClicks(comment, "  as typed  ");
    click(insert);
    EXPECT_EQ(comment->text(), "  as typed  ");

    auto* description = inBox<QLineEdit>(window, "Volume");
    auto* validate = inBox<QPushButton>(window, "Volume", "Validate");
    auto* exact = inBox<QCheckBox>(window, "Volume", "Exact");
    auto* visible = inBox<QCheckBox>(window, "Volume", "Visible Only");
    ASSERT_TRUE(description && validate && exact && visible) << "the design's checks are there";
    EXPECT_FALSE(validate->isEnabled());
    QTest::keyClicks(description, " two words ");
    click(exact);
    click(validate);
    EXPECT_TRUE(exact->isChecked());
    click(exact);
    click(visible);
    description->clear();
    EXPECT_FALSE(validate->isEnabled());
    QTest::keyClicks(description, "  ");
    click(validate);
    EXPECT_EQ(recorded(), "# \n#   as typed  \nBody.CheckVolume two_words /Exact \n"
                          "Body.CheckVolume  /VisibleOnly \n");
    description->setText("/5\" pipe");
    click(validate);
    EXPECT_NE(recorded().find("\nBody.CheckVolume \"/5\\\"_pipe\" /VisibleOnly \n"), std::string::npos)
        << recorded();
    click(visible);
}

TEST_F(ValidationWindows, AWrittenCheckHasTheModelOfThatMomentForItsReference)
{
    const auto run = [](const wchar_t* line) {
        return Vs::TextCommandMgr::get()->executeCommandWithoutOutput(line).first;
    };
    start(L"StartTranscriptingCommand");
    EXPECT_EQ(run(L"Design.New"), 0u);
    EXPECT_EQ(run(L"Design.Box 10 20 30"), 0u);
    auto* const description = inBox<QLineEdit>(QTNormalValidationDialog::get(), "Volume");
    description->setText("box");
    click(inBox<QPushButton>(QTNormalValidationDialog::get(), "Volume", "Validate"));
    start(L"StopTranscriptingCommand");
    description->clear();
    EXPECT_TRUE(recorded().ends_with("\nBody.CheckVolume box \n")) << recorded();
    const std::string kept =
        TestSupport::contentOf(boost::filesystem::path(scratch(L"recorded/session.checks.json")));
    EXPECT_NE(kept.find("\"volume\": 6000"), std::string::npos) << kept;
    EXPECT_EQ(run(L"Script.DiscardChanges"), 0u);
    EXPECT_EQ(run(L"Document.Close"), 0u);
}

TEST_F(ValidationWindows, AnAddInAddsGroupsForItsChecks)
{
    QWidget* const window = QTNormalValidationDialog::get();
    const auto groups = [&](const char* title) {
        std::vector<QGroupBox*> found;
        for (auto* box : window->findChildren<QGroupBox*>())
            if (box->title() == title)
                found.push_back(box);
        return found;
    };
    {
        const NormalValidationWidget once(L"Probe", L"CheckWallThickness", L"A/B/C/D/E");
        const NormalValidationWidget twice = once; // A copy is the same one.
        const NormalValidationWidget again(L"Probe", L"CheckWallThickness", L"");
        const NormalValidationWidget bare(L"Probe", L"Check", L"/ShowEdges");
    }
    const auto walls = groups("Wall Thickness");
    ASSERT_EQ(walls.size(), 2u);
    const auto* grid = walls[0]->findChild<QGridLayout*>();
    ASSERT_EQ(grid->rowCount(), 3);
    EXPECT_EQ(static_cast<QCheckBox*>(grid->itemAtPosition(2, 0)->widget())->text(), "E");
    EXPECT_EQ(grid->itemAtPosition(2, 1), nullptr);
    EXPECT_TRUE(walls[1]->findChildren<QCheckBox*>().empty());
    ASSERT_EQ(groups("Check").size(), 1u);
    const auto boxes = groups("Check")[0]->findChildren<QCheckBox*>();
    ASSERT_EQ(boxes.size(), 2);
    EXPECT_EQ(boxes[0]->text(), "");
    EXPECT_EQ(boxes[1]->text(), "Show Edges");
    EXPECT_EQ(boxes[1]->accessibleName(), "ShowEdges");
}

TEST_F(ValidationWindows, ComeAndGoWithTheRecording)
{
    QWidget* const normal = QTNormalValidationDialog::get();
    QWidget* const performance = QTPerfValidationDialog::get();
    ValidationDialog::get()->needToShow(true);
    EXPECT_FALSE(normal->isVisible()) << "nothing is recorded";
    start(L"StartTranscriptingCommand");
    EXPECT_TRUE(normal->isVisible());
    ValidationDialog::get()->needToShow(false);
    EXPECT_FALSE(normal->isVisible());
    ValidationDialog::get()->needToShow(true);
    start(L"StopTranscriptingCommand");
    EXPECT_FALSE(normal->isVisible());
    start(L"StartPerfTranscriptingCommand");
    EXPECT_TRUE(performance->isVisible());
    EXPECT_FALSE(normal->isVisible());
    EXPECT_EQ(performance->windowFlags() & Qt::WindowCloseButtonHint, 0);
    start(L"StopTranscriptingCommand");
    EXPECT_FALSE(performance->isVisible());
}

/// The boxes, fields and the button of the performance window.
class PerformanceWindow : public ValidationWindows
{
protected:
    void SetUp() override
    {
        ValidationWindows::SetUp();
        start(L"StartPerfTranscriptingCommand");
    }
    void TearDown() override
    {
        ValidationWindows::TearDown();
        for (auto* box : window()->findChildren<QCheckBox*>())
            box->setChecked(false);
        for (auto* field : window()->findChildren<QTAutoMatchLineEdit*>())
            field->clear();
    }

    static QWidget* window() { return QTPerfValidationDialog::get(); }
    static QGridLayout* grid() { return window()->findChild<QGridLayout*>(); }
    static QCheckBox* box(int row)
    {
        return static_cast<QCheckBox*>(grid()->itemAtPosition(row, 0)->widget());
    }
    static QTAutoMatchLineEdit* field(int row)
    {
        return static_cast<QTAutoMatchLineEdit*>(grid()->itemAtPosition(row, 1)->widget());
    }
    static QPushButton* button() { return static_cast<QPushButton*>(grid()->itemAtPosition(7, 0)->widget()); }
};

TEST_F(PerformanceWindow, MarksWhereMetricsBeginAndEnd)
{
    EXPECT_EQ(button()->text(), "Start Metrics");
    EXPECT_FALSE(button()->isEnabled());
    click(box(5));
    EXPECT_FALSE(button()->isEnabled()) << "the description is missing";
    QTest::keyClicks(field(5), " hover slowly");
    EXPECT_TRUE(button()->isEnabled());
    click(box(1));
    EXPECT_FALSE(button()->isEnabled());
    QTest::keyClicks(field(1), "loaded");
    click(box(0));
    QTest::keyClicks(field(0), "all");
    click(button());
    EXPECT_EQ(button()->text(), "End Metrics");
    EXPECT_TRUE(button()->isEnabled());
    EXPECT_FALSE(box(0)->isEnabled() || field(3)->isEnabled()) << "what is measured stays";
    click(button());
    EXPECT_EQ(button()->text(), "Start Metrics");
    EXPECT_TRUE(box(0)->isEnabled() && field(3)->isEnabled());
    for (const int row : {0, 1, 5})
        click(box(row));
    EXPECT_FALSE(button()->isEnabled());
    EXPECT_EQ(recorded(), "Performance.StartPerformanceValidation\n"
                          "Performance.StartMetric ElapsedTime\n"
                          "Performance.StartMetric PrehighlightSelect\n"
                          "Performance.Validate ElapsedTime all\n"
                          "Performance.ValidateMemory /physical loaded\n"
                          "Performance.Validate PrehighlightSelect hover_slowly\n");
    ASSERT_TRUE(field(5)->completer());
    EXPECT_EQ(field(5)->completer()->model()->index(0, 0).data().toString(), " hover slowly");
}

TEST_F(PerformanceWindow, RecordsTheMovesThatMetricsOfTheMouseMeasure)
{
    answer(L"Design.New");
    std::vector<GraphicsCanvas*> canvases;
    GraphicsCanvas::allCanvases(canvases);
    ASSERT_FALSE(canvases.empty());
    const auto move = [&] {
        MouseEvent event(canvases.front(), {});
        MouseEventSource::get()->fireMouseMove(&event);
    };
    move();
    for (const int row : {5, 6}) {
        click(box(row));
        QTest::keyClicks(field(row), " hover slowly"); // As elsewhere: fields remember.
    }
    click(button());
    EXPECT_EQ(recorded().find("Mouse."), std::string::npos) << recorded();
    move();
    move();
    click(button());
    move();
    const std::string lines = recorded();
    const size_t first = lines.find("\nMouse.Move "), second = lines.find("\nMouse.Move ", first + 1);
    EXPECT_LT(lines.find("StartMetric PrehighlightInteractivity"), first) << lines;
    EXPECT_LT(second, lines.find("Validate PrehighlightSelect hover_slowly")) << lines;
    EXPECT_EQ(lines.find("\nMouse.Move ", second + 1), std::string::npos) << lines;
    for (const int row : {5, 6}) {
        click(box(row));
        field(row)->clear();
    }
}

TEST_F(PerformanceWindow, EndsStartedMetricsBeforeTheRecording)
{
    click(box(2));
    QTest::keyClicks(field(2), "end");
    click(button());
    start(L"StopTranscriptingCommand");
    const std::string expected = "Performance.StartPerformanceValidation\n"
                                 "Performance.ValidateMemory /virtual end\n"
                                 "Performance.EndPerformanceValidation\n";
    EXPECT_EQ(recorded(), expected);
    EXPECT_EQ(button()->text(), "Start Metrics");
    EXPECT_TRUE(box(2)->isEnabled());

    ValidationDialog::get()->needToShow(true);
    start(L"StartPerfTranscriptingCommand");
    click(button());
    answer(L"Transcripting.Stop");
    EXPECT_EQ(recorded(), expected) << "it may end by a line";
    EXPECT_EQ(button()->text(), "Start Metrics");
    EXPECT_FALSE(window()->isVisible());
}

TEST_F(PerformanceWindow, GoesWhenTheDiskIsFull)
{
    ValidationDialog::get()->needToShow(true);
    Vs::TranscriptMgr::get()->startRecording(L"/dev/full", Vs::kTextTranscript);
    ValidationDialog::get()->startPerformanceValidation();
    EXPECT_FALSE(Vs::TranscriptMgr::get()->recording());
    EXPECT_FALSE(window()->isVisible());
    start(L"StartPerfTranscriptingCommand");
    EXPECT_TRUE(window()->isVisible());
    click(box(2));
    QTest::keyClicks(field(2), "lost");
    click(button());
    Vs::TranscriptMgr::get()->startRecording(L"/dev/full", Vs::kTextTranscript);
    EXPECT_EQ(button()->text(), "Start Metrics") << "another recording ends this one";
    EXPECT_NE(recorded().find("ValidateMemory /virtual lost\nPerformance.End"), std::string::npos)
        << recorded();
}

TEST_F(ValidationWindows, FieldsRememberWhatWasEnteredInOrderAndOnce)
{
    const boost::filesystem::path file = Vs::PathInfo::temporaryDirectory(true) / "Probe.txt";
    boost::filesystem::remove(file);
    {
        QTAutoMatchLineEdit field(L"Probe");
        EXPECT_EQ(field.completer(), nullptr);
        for (const char* text : {"b", "a", "b", "groß und klein"}) {
            field.setText(text);
            field.rememberText();
        }
    }
    EXPECT_EQ(TestSupport::contentOf(file), "b\na\ngroß und klein\n");
    {
        const QTAutoMatchLineEdit field(L"Probe");
        ASSERT_TRUE(field.completer());
        EXPECT_EQ(field.completer()->model()->rowCount(), 3);
        EXPECT_EQ(field.completer()->model()->index(2, 0).data().toString(), "groß und klein");
    }
    boost::filesystem::remove(file);
    boost::filesystem::create_directory(file);
    {
        QTAutoMatchLineEdit field(L"Probe");
        field.setText("kept nowhere");
        field.rememberText();
    }
    EXPECT_TRUE(boost::filesystem::is_directory(file));
    boost::filesystem::remove(file);

    // Without a folder there is no history, and nothing else is wrong.
    const std::string before = std::getenv("TMPDIR") ? std::getenv("TMPDIR") : "";
    const std::string runtime = std::getenv("XDG_RUNTIME_DIR") ? std::getenv("XDG_RUNTIME_DIR") : "";
    setenv("TMPDIR", "/dev/null/none", 1);
    unsetenv("XDG_RUNTIME_DIR");
    {
        QTAutoMatchLineEdit field(L"Probe");
        field.setText("kept nowhere");
        field.rememberText();
    }
    before.empty() ? unsetenv("TMPDIR") : setenv("TMPDIR", before.c_str(), 1);
    if (!runtime.empty())
        setenv("XDG_RUNTIME_DIR", runtime.c_str(), 1);
}

TEST_F(ValidationWindows, FieldsKeepNothingInAFolderThatAnotherUserHasTaken)
{
    if (!TestSupport::mayBeOthers())
        GTEST_SKIP() << "only root may be others";
    const TestSupport::OpenFolder open;
    const boost::filesystem::path shared = open.path() / "tmp";
    boost::filesystem::create_directory(shared);
    ASSERT_EQ(chmod(shared.c_str(), 01777), 0);
    const boost::filesystem::path taken = shared / ("quillet-" + std::to_string(TestSupport::kSomebody));
    const TestSupport::Variable temporary("TMPDIR", shared.string());
    const TestSupport::Variable runtime("XDG_RUNTIME_DIR", std::nullopt);
    const auto remembers = [] {
        QTAutoMatchLineEdit field(L"Probe");
        field.setText("what I measure");
        field.rememberText();
    };
    EXPECT_TRUE(TestSupport::asUser(TestSupport::kSomebody, [&] { return remembers(), true; }));
    EXPECT_TRUE(boost::filesystem::exists(taken / "Probe.txt")) << "a folder of the user's own";
    boost::filesystem::remove_all(taken);
    // Anybody could write into it, so that nothing but the check keeps the field from it.
    ASSERT_EQ(mkdir(taken.c_str(), 0777), 0);
    ASSERT_EQ(chown(taken.c_str(), TestSupport::kAnother, TestSupport::kAnother), 0);
    ASSERT_EQ(chmod(taken.c_str(), 0777), 0);
    EXPECT_TRUE(TestSupport::asUser(TestSupport::kSomebody, [&] { return remembers(), true; }));
    EXPECT_TRUE(boost::filesystem::is_empty(taken));
}

} // namespace
