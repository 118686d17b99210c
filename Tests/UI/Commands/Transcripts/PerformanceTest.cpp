#include "Server/Base/Strings.h"
#include "Server/Scene/NodeChange.h"
#include "Server/Scene/ViewFragment.h"
#include "Tests/Support/Files.h"
#include "Tests/UI/Becomes.h"
#include "Tests/UI/Commands/Navigation.h"
#include "Tests/UI/Commands/Transcribed.h"
#include "UI/Base/Validation/PerfTestingContext.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/Workspace/Workspace.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QWidget>
#include <QtTest/QTest>

#include <boost/filesystem/operations.hpp>

namespace {

class PerformanceLines : public CommandsTests::Transcribed
{
protected:
    void TearDown() override
    {
        run(L"Performance.EndPerformanceValidation");
        Transcribed::TearDown();
    }

    static boost::filesystem::path references() { return file("bracket.performance.json"); }
    /// A reference made on a machine as fast as this one.
    static void writeReference(const std::string& name, const std::string& values)
    {
        TestSupport::overwrite(references(),
                               R"({"format": 1, "references": {")" + name + "\": {" + values + "}}}");
    }
    /// The last test's result for that metric.
    static const Vu::PerfReport::Result* result(const std::wstring& metric)
    {
        for (const auto& each : Vu::PerfTestingContext::report().results)
            if (each.metric == metric)
                return &each;
        return nullptr;
    }
};

const std::string kTimed = "Performance.StartPerformanceValidation\n"
                           "Performance.StartMetric ElapsedTime\n"
                           "Sleeper.Sleep 60\n"
                           "Performance.Validate ElapsedTime a_while\n"
                           "Performance.EndPerformanceValidation\n";

TEST_F(PerformanceLines, SayWhatIsWrongWithTheCall)
{
    EXPECT_EQ(failure(L"Performance.Validate Speed nothing"), L"The metric type is not a valid one");
    EXPECT_EQ(failure(L"Performance.StartMetric elapsedtime"), L"The metric type is not a valid one");
    for (const wchar_t* line :
         {L"Performance.Validate ElapsedTime nothing", L"Performance.StartMetric ElapsedTime",
          L"Performance.ValidateMemory nothing"})
        EXPECT_EQ(failure(line), L"The performance validation has not been started.");
    EXPECT_EQ(answer(L"Performance.StartPerformanceValidation"), L"Start performance validation");
    EXPECT_EQ(answer(L"Performance.StartMetric FramesRate"), L"Start FramesRate metric");
    EXPECT_EQ(answer(L"Performance.Validate ElapsedTime never_started"),
              L"Fail to validate ElapsedTime metric\r\nThe metric ElapsedTime was not started.");
    EXPECT_NE(answer(L"Performance.Validate FramesRate still").find(L"has happened since it was started"),
              std::wstring::npos);
    EXPECT_EQ(answer(L"Performance.EndPerformanceValidation"), L"End performance validation");
    failure(L"Performance.StartMetric FramesRate");
}

TEST_F(PerformanceLines, KeepReferencesBesideTheTranscriptAndCompareWithThem)
{
    EXPECT_NE(replay(kTimed).find(L"Success to validate ElapsedTime metric"), std::wstring::npos);
    ASSERT_TRUE(boost::filesystem::exists(references()));
    ASSERT_TRUE(result(L"ElapsedTime"));
    EXPECT_EQ(result(L"ElapsedTime")->outcome, Vu::PerfReport::Outcome::Kept);
    EXPECT_GE(result(L"ElapsedTime")->value, 0.06);

    // A machine a thousand times slower, and one where the work took a thousandth.
    writeReference("ElapsedTime a_while", R"("value": 0.00006, "calibration": 1e-6)");
    EXPECT_NE(replay(kTimed).find(L"Success"), std::wstring::npos);
    ASSERT_TRUE(result(L"ElapsedTime"));
    EXPECT_EQ(result(L"ElapsedTime")->outcome, Vu::PerfReport::Outcome::Passed);
    writeReference("ElapsedTime a_while", R"("value": 0.00006, "calibration": 0.1)");
    const std::wstring answers = replay(kTimed);
    EXPECT_EQ(failures(), 0u) << "a bad value is no failure of the line";
    EXPECT_NE(answers.find(L"Fail to validate ElapsedTime metric\r\nElapsedTime \"a_while\" is "),
              std::wstring::npos)
        << Vs::Strings::narrow(answers);
    EXPECT_NE(answers.find(references().wstring()), std::wstring::npos);
    writeReference("ElapsedTime a_while", R"("value": 0.00006, "calibration": 0.1, "ratio": 1e9)");
    EXPECT_NE(replay(kTimed).find(L"Success"), std::wstring::npos) << "the file's own bound counts";
}

TEST_F(PerformanceLines, MakeReferencesAnewOrNoneAsTheyAreTold)
{
    writeReference("ElapsedTime a_while", R"("value": 0.00006, "calibration": 0.1)");
    answer(L"References.Mode Update");
    EXPECT_NE(replay(kTimed).find(L"Success"), std::wstring::npos);
    EXPECT_EQ(result(L"ElapsedTime")->outcome, Vu::PerfReport::Outcome::Kept);
    answer(L"References.Mode Compare");
    EXPECT_NE(replay(kTimed, "other.txt").find(L"There is no reference \"ElapsedTime a_while\""),
              std::wstring::npos);
    EXPECT_FALSE(boost::filesystem::exists(file("other.performance.json")));
    EXPECT_EQ(answer(L"References.Mode"), L"Compare");
    EXPECT_NE(failure(L"References.Mode Sometimes").find(L"Fill, Update or Compare"), std::wstring::npos);
}

TEST_F(PerformanceLines, LeaveReferencesThatTheyCannotUse)
{
    const std::pair<const char*, const wchar_t*> kBroken[] = {
        {"{\n\"format\": 1,\n", L"performance.json:"},
        {"[]", L"this is not a JSON object"},
        {"{\"format\": 1}", L"this is not a file of references"},
        {"{\"format\": 99, \"references\": {}}", L"a later version"},
        {"{\"format\": 1, \"references\": {\"ElapsedTime a_while\": 7}}", L"is not an object of values"},
        {"{\"format\": 1, \"references\": {\"ElapsedTime a_while\": {\"value\": []}}}", L"neither a number"},
        {"{\"format\": 1, \"references\": {\"ElapsedTime a_while\": {\"value\": 1}}}", L"its calibration"},
    };
    for (const auto& [content, complaint] : kBroken) {
        TestSupport::overwrite(references(), content);
        const std::wstring answers = replay(kTimed);
        EXPECT_NE(answers.find(L"Fail to validate ElapsedTime metric\r\n"), std::wstring::npos) << content;
        EXPECT_NE(answers.find(complaint), std::wstring::npos) << content << Vs::Strings::narrow(answers);
        EXPECT_EQ(TestSupport::contentOf(references()), content) << "what a person may mend is still there";
    }
}

TEST_F(PerformanceLines, MeasureTheMemoryOfTheProcess)
{
    replay("Performance.StartPerformanceValidation\nPerformance.ValidateMemory /physical small\n"
           "Performance.ValidateMemory large\n");
    ASSERT_TRUE(result(L"PhysicalMemory") && result(L"VirtualMemory")) << "no flag is the virtual memory";
    EXPECT_GT(result(L"PhysicalMemory")->value, 1e6);
    EXPECT_GT(result(L"VirtualMemory")->value, result(L"PhysicalMemory")->value);
    const double less = result(L"PhysicalMemory")->value - 1e6;
    writeReference("PhysicalMemory small", "\"value\": " + std::to_string(less));
    EXPECT_NE(replay("Performance.StartPerformanceValidation\nPerformance.ValidateMemory /physical small\n")
                  .find(L"Success"),
              std::wstring::npos)
        << "a few megabytes more are nothing";
    writeReference("PhysicalMemory small", R"("value": 4096, "ratio": 1.5)");
    EXPECT_NE(replay("Performance.StartPerformanceValidation\nPerformance.ValidateMemory /physical small\n")
                  .find(L"Fail to validate memory metric\n"),
              std::wstring::npos);
}

TEST_F(PerformanceLines, CountTheCommandsAndPicturesOfTheBlock)
{
    replay("Performance.StartPerformanceValidation\n"
           "Design.New\nDesign.Box 10 20 30\n"
           "Performance.StartMetric CommandInteractivity\nPerformance.StartMetric FramesRate\n"
           "Commands.Start ConstrainedOrbitCommand\nDesign.Sphere 5\n"
           "Camera.Set 0,0,100 0,0,0 0,1,0 10 1000 50 50 2\nCamera.Set 9,0,100 0,0,0 0,1,0 10 1000 50 50 2\n"
           "Performance.Validate CommandInteractivity tools\nPerformance.Validate FramesRate turning\n");
    ASSERT_TRUE(result(L"CommandInteractivity"));
    EXPECT_EQ(result(L"CommandInteractivity")->count, 2u) << "the tool that stays is done when it waits";
    ASSERT_TRUE(result(L"FramesRate")) << "without a window, pictures are drawn all the same";
    EXPECT_GE(result(L"FramesRate")->count, 2u);
    EXPECT_NE(TestSupport::contentOf(references()).find("FramesRate windowless turning"), std::string::npos);
}

TEST_F(PerformanceLines, ReportAsTextAndAsJson)
{
    replay(kTimed);
    const std::wstring text = answer(L"Performance.Report");
    EXPECT_NE(text.find(L"Performance of \"bracket\""), std::wstring::npos) << Vs::Strings::narrow(text);
    EXPECT_NE(text.find(L"ElapsedTime \"a_while\": "), std::wstring::npos);
    EXPECT_NE(text.find(L"kept as the reference"), std::wstring::npos);

    const boost::filesystem::path written = file("report.json");
    answer(L"Performance.Report " + Vs::Strings::quote(written.wstring()));
    const QJsonObject report =
        QJsonDocument::fromJson(QByteArray::fromStdString(TestSupport::contentOf(written))).object();
    EXPECT_EQ(report["test"].toString(), "bracket");
    const QJsonObject result = report["results"].toArray().at(0).toObject();
    EXPECT_EQ(result["metric"].toString(), "ElapsedTime");
    EXPECT_EQ(result["outcome"].toString(), "kept");
    EXPECT_GE(result["value"].toDouble(), 0.06);
    EXPECT_NE(
        failure(L"Performance.Report " + (file("none") / "report.txt").wstring()).find(L"cannot be written"),
        std::wstring::npos);
}

/// Highlights the box as soon as the mouse is over it, as a selection tool does.
class Marker : public Vu::MouseEventSite
{
public:
    explicit Marker(Vs::Scene::ViewFragment* fragment) : m_fragment(fragment)
    {
        Vu::MouseEventSource::get()->subscribe(this);
    }
    ~Marker() override { Vu::MouseEventSource::get()->unsubscribe(this); }

private:
    void mouseMove(Vu::MouseEvent* event) override
    {
        const bool over = event->x() > 100;
        Vs::Scene::NodeChange(m_fragment->viewFragmentNode())
            .highlight(over ? Rendra::Graphics::Highlight::Pointed : Rendra::Graphics::Highlight::None);
    }

    Vs::Scene::ViewFragment* m_fragment;
};

/// Without a transcript, references are in the current folder.
class Prehighlight : public CommandsTests::Navigation
{
protected:
    void SetUp() override
    {
        Navigation::SetUp();
        emptyScratch(L"prehighlight");
        boost::filesystem::current_path(boost::filesystem::path(scratch(L"prehighlight")));
    }
    void TearDown() override
    {
        boost::filesystem::current_path(m_before);
        Navigation::TearDown();
    }

private:
    const boost::filesystem::path m_before = boost::filesystem::current_path();
};

TEST_F(Prehighlight, IsMeasuredFromTheMoveToTheMarkAndToItsPicture)
{
    const Marker marker(view()->modelFragment());
    // The first move completes whatever is still being added to the scene.
    move(-510, 0);
    Vu::PerfTestingContext context("moves");
    for (const auto type : {Vu::EMetricType::PrehighlightSelect, Vu::EMetricType::PrehighlightInteractivity})
        context.startMetric(type);
    move(-500, 0);
    move(-490, 0);
    move(0, 0);
    EXPECT_TRUE(context.validate(Vu::EMetricType::PrehighlightSelect, L"moves"));
    EXPECT_TRUE(context.validate(Vu::EMetricType::PrehighlightInteractivity, L"moves"));
    const auto& results = Vu::PerfTestingContext::report().results;
    ASSERT_EQ(results.size(), 2u);
    EXPECT_EQ(results[0].count, 3u);
    EXPECT_EQ(results[1].count, 1u) << "only what changes the picture is seen";
    EXPECT_GT(results[1].value, results[0].value);
    EXPECT_TRUE(boost::filesystem::exists("moves.performance.json"));
}

/// A separate workspace, with a window.
class WindowPictures : public Prehighlight
{
protected:
    void SetUp() override
    {
        m_beforeIt = Vu::WorkspaceMgr::activeWorkspace();
        m_workspace = Vu::WorkspaceMgr::get()->create();
        m_workspace->window()->show();
        Vu::WorkspaceMgr::activeWorkspace(m_workspace);
        Prehighlight::SetUp();
    }
    void TearDown() override
    {
        Prehighlight::TearDown();
        Vu::WorkspaceMgr::get()->close(m_workspace);
        Vu::WorkspaceMgr::activeWorkspace(m_beforeIt);
    }

private:
    Vu::Workspace* m_workspace = nullptr;
    Vu::Workspace* m_beforeIt = nullptr;
};

TEST_F(WindowPictures, AreCountedAsTheyAreDrawn)
{
    ASSERT_TRUE(UiTests::becomes([] {
        std::vector<Vu::GraphicsCanvas*> canvases;
        Vu::GraphicsCanvas::allCanvases(canvases);
        return std::any_of(canvases.begin(), canvases.end(), [](const Vu::GraphicsCanvas* canvas) {
            return canvas->existingWidget() && canvas->existingWidget()->isVisible();
        });
    }));
    Vu::PerfTestingContext context("window");
    context.startMetric(Vu::EMetricType::FramesRate);
    Vu::WorkspaceWindow::forceImmediateRepaint();
    EXPECT_TRUE(context.validate(Vu::EMetricType::FramesRate, L"turning"));
    const auto& results = Vu::PerfTestingContext::report().results;
    ASSERT_EQ(results.size(), 1u);
    EXPECT_GT(results[0].value, 0);
    EXPECT_EQ(TestSupport::contentOf("window.performance.json").find("windowless"), std::string::npos);

    // The lines of a replay leave the window no time of its own. One more picture is drawn if the camera has
    // stood still for long enough meanwhile.
    TestSupport::overwrite("turn.txt", "Performance.StartPerformanceValidation\n"
                                       "Performance.StartMetric FramesRate\n"
                                       "Camera.ZoomIn 1.1\nCamera.ZoomIn 1.1\nCamera.ZoomIn 1.1\n"
                                       "Performance.Validate FramesRate turning\n");
    answer(L"Transcripting.Replay turn.txt");
    ASSERT_EQ(Vu::PerfTestingContext::report().results.size(), 1u);
    EXPECT_GE(Vu::PerfTestingContext::report().results[0].count, 3u);
    EXPECT_EQ(TestSupport::contentOf("turn.performance.json").find("windowless"), std::string::npos);
    answer(L"Performance.EndPerformanceValidation");
}

} // namespace
