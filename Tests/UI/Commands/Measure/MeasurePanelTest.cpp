// The measure command, driven by lines as its panel and the canvas drive it.

#include "Server/Base/Strings.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Server/DataModel/Selection/SelectionSet.h"
#include "Server/DataModel/Transaction.h"
#include "Server/Scene/GeometryNode.h"
#include "Server/Scene/ViewFragment.h"
#include "Server/Types/LengthUnit.h"
#include "Server/Types/UnitsOptionGroup.h"
#include "Tests/UI/Commands/Navigation.h"
#include "UI/Base/Command/CommandBase.h"
#include "UI/Base/Command/CommandInputSet.h"
#include "UI/Base/Command/RealValueCommandInput.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/UIInternalOptionGroup.h"
#include "UI/Base/Session/ActiveAssetUtils.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SelectionCommandInput.h"
#include "UI/Base/Session/SnapManager.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/Workspace/HUDManager.h"

#include <QWidget>

#include <fstream>
#include <iterator>
#include <vector>

using Vu::RealValueCommandInput;
using Vu::SelectionCommandInput;

namespace {

class MeasurePanel : public CommandsTests::Navigation
{
protected:
    void SetUp() override
    {
        Navigation::SetUp();
        Vu::UIInternalOptionGroup::get()->reset();
        answer(L"Design.Box 10 20 30 200,0,0");
        answer(L"Design.Cylinder 5 40 300,0,0");
    }
    void TearDown() override
    {
        Vu::Inference::SnapManager::get()->reset();
        Vs::UnitsOptionGroup::get()->reset();
        Vu::UIInternalOptionGroup::get()->reset();
        Navigation::TearDown();
    }

    static void begin(const std::wstring& arguments = {})
    {
        answer(L"Commands.Start MeasureCommand" + arguments);
    }
    static void pick(int number, const std::wstring& path)
    {
        answer(L"Commands.SetInput SelectionInput" + std::to_wstring(number) + L" \"" + path + L"\"");
    }
    template <class Input>
    static Input* input(const std::wstring& key)
    {
        return Vs::cast<Input>(activeCommand()->commandInputSet()->findInput(key));
    }
    /// The panel's value; empty for a missing result.
    static std::wstring shown(const std::wstring& key)
    {
        const auto* result = input<RealValueCommandInput>(key);
        return result->isUsable() && result->isShown() ? result->displayText() : std::wstring();
    }
    /// The keys of all results shown.
    static std::wstring results()
    {
        std::wstring keys;
        for (const auto& each : activeCommand()->commandInputSet()->inputs())
            if (Vs::cast<RealValueCommandInput>(each.get()) && each->isUsable() && each->isShown())
                keys += (keys.empty() ? L"" : L" ") + each->info()->key();
        return keys;
    }
    static std::vector<const Rendra::Graphics::InstanceNode*> previewNodes()
    {
        std::vector<const Rendra::Graphics::InstanceNode*> nodes;
        for (const auto& node : view()->modelFragment()->viewFragmentNode()->children())
            if (const auto* preview = Vs::cast<Rendra::Graphics::InstanceNode>(node.get()))
                nodes.push_back(preview);
        return nodes;
    }
    static size_t previews() { return previewNodes().size(); }
    static bool hudShown(const wchar_t* which)
    {
        return Vu::HUDManager::get()->hudById(std::wstring(L"MeasureCmd") + which + L"Selection")->shown();
    }
    /// The vertex of a box at that position.
    static std::wstring vertex(const std::wstring& position, const std::wstring& box = L"Box2")
    {
        for (int i = 1; i <= 8; ++i) {
            const std::wstring path = box + L"/Vertex" + std::to_wstring(i);
            const auto [code, where] = run(L"Measure.Position " + path);
            if (code == 0 && where == position)
                return path;
        }
        ADD_FAILURE() << "no vertex at " << Vs::Strings::narrow(position);
        return {};
    }
};

TEST_F(MeasurePanel, ShowsWhatEachSelectionAndTheTwoOfThemMeasure)
{
    begin();
    EXPECT_EQ(activeKey(), L"MeasureCommand");
    EXPECT_EQ(results(), L"");
    EXPECT_FALSE(input<SelectionCommandInput>(L"SelectionInput2")->enabled());
    pick(1, L"Cylinder1/Face1");
    EXPECT_EQ(results(), L"RadiusInput1 AreaInput1 LoopLengthInput1");
    EXPECT_EQ(shown(L"RadiusInput1"), L"5 mm");
    EXPECT_TRUE(hudShown(L"First"));
    pick(2, L"Box2");
    EXPECT_EQ(results(), L"DistanceInput RadiusInput1 AreaInput1 LoopLengthInput1 AreaInput2 VolumeInput2");
    EXPECT_EQ(shown(L"DistanceInput"), L"85 mm");
    EXPECT_EQ(shown(L"VolumeInput2"), L"6000 mm³");
    EXPECT_EQ(previews(), 1u);
    EXPECT_TRUE(hudShown(L"Second"));

    answer(L"Commands.SetInput RestartSelectionInput \"\"");
    EXPECT_EQ(results(), L"");
    EXPECT_EQ(previews(), 0u);
    EXPECT_FALSE(hudShown(L"First") || hudShown(L"Second"));
    EXPECT_FALSE(input<SelectionCommandInput>(L"SelectionInput2")->enabled());
    EXPECT_TRUE(input<SelectionCommandInput>(L"SelectionInput1")->enabled());
}

TEST_F(MeasurePanel, MeasuresTheTypesThatAreOn)
{
    const auto stored = [] { return Vu::UIInternalOptionGroup::get()->value("MeasureCmd_measureTypes", -1); };
    begin();
    EXPECT_EQ(stored(), 0) << "made at the first use, and no mask at all is the usual one";
    EXPECT_EQ(answer(L"Commands.Inputs").find(L"PositionInput"), std::wstring::npos);
    pick(1, L"Box2/Edge1");
    pick(2, L"Box2/Face1");
    answer(L"Commands.SetInput MeasureTypesInput MeasureTypeArea");
    EXPECT_EQ(results(), L"AreaInput2 LoopLengthInput2");
    answer(L"Commands.SetInput MeasureTypesInput \"\"");
    EXPECT_EQ(results(), L"");
    EXPECT_EQ(previews(), 0u);
    answer(L"Commands.SetInput MeasureTypesInput MeasureTypeDistance|MeasureTypeVolume");
    EXPECT_EQ(results().substr(0, 13), L"DistanceInput");
    EXPECT_EQ(stored(), 0) << "kept at the end alone";
    answer(L"Commands.Commit");
    EXPECT_EQ(stored(), 34);

    begin(L" MeasureTypes=2");
    pick(1, L"Box2/Edge1");
    pick(2, L"Cylinder1/Face1");
    EXPECT_EQ(results(), L"DistanceInput LengthInput1 RadiusInput2");
    answer(L"Commands.Commit");
    EXPECT_EQ(stored(), 2);

    begin(L" MeasureTypes=16");
    pick(1, vertex(L"200 mm, 0 mm, 0 mm"));
    pick(2, vertex(L"210 mm, 20 mm, 30 mm"));
    EXPECT_EQ(results(),
              L"DeltaInputX DeltaInputY DeltaInputZ PositionInput1X PositionInput1Y PositionInput1Z "
              L"PositionInput2X PositionInput2Y PositionInput2Z");
    EXPECT_EQ(shown(L"DeltaInputZ"), L"30 mm");
    EXPECT_EQ(shown(L"PositionInput2Y"), L"20 mm");
}

TEST_F(MeasurePanel, TakesWhatTheSelectionTypesAllowAndNothingTwice)
{
    begin();
    pick(1, L"Box2/Face1");
    EXPECT_NE(failure(L"Commands.SetInput SelectionInput2 Box2/Face1").find(L"can't be selected"),
              std::wstring::npos);
    EXPECT_NE(failure(L"Commands.SetInput SelectionInput2 Box2/Face7").find(L"the last is number 6"),
              std::wstring::npos);
    pick(2, L"Box2/Face2");
    failure(L"Commands.SetInput SelectionInput1 Box2/Face2");
    failure(L"Commands.SetInput SelectionInput3 Box2/Face3");
    pick(3, L"Box2/Vertex1");
    EXPECT_EQ(input<SelectionCommandInput>(L"SelectionInput3")->valueAsString(), L"Box2:1/Body1/Vertex1");
    // If there are several, the first one counts.
    pick(2, L"Box2/Edge1|Box2/Edge2");
    EXPECT_EQ(input<SelectionCommandInput>(L"SelectionInput2")->valueAsString(), L"Box2:1/Body1/Edge1");

    answer(L"Commands.SetInput SelectionTypesInput BodyFilterInput");
    EXPECT_FALSE(input<SelectionCommandInput>(L"SelectionInput3")->enabled());
    failure(L"Commands.SetInput SelectionInput1 Box2/Face1");
    pick(1, L"Box2/Body1");
    answer(L"Commands.Commit");
    EXPECT_EQ(Vu::UIInternalOptionGroup::get()->value("MeasureCmd_selectionTypes", -1), 16);
}

TEST_F(MeasurePanel, ShowsAnglesOfThreeWithTheirArcsWhereTheyHaveOne)
{
    answer(L"Design.Box 1 1 1 220,0,0");
    answer(L"Design.Box 1 1 1 300,0,0");
    const std::wstring apex = vertex(L"210 mm, 0 mm, 0 mm");
    const struct
    {
        std::wstring from, to;
        const wchar_t* angle;
        size_t arcs;
    } cases[] = {
        {vertex(L"200 mm, 0 mm, 0 mm"), vertex(L"210 mm, 20 mm, 0 mm"), L"90°", 1},
        {vertex(L"200 mm, 0 mm, 0 mm"), vertex(L"220 mm, 0 mm, 0 mm", L"Box3"), L"180°", 0},
        {vertex(L"300 mm, 0 mm, 0 mm", L"Box4"), vertex(L"300 mm, 1 mm, 0 mm", L"Box4"), L"0.637°", 1},
        {vertex(L"300 mm, 0 mm, 0 mm", L"Box4"), vertex(L"220 mm, 0 mm, 0 mm", L"Box3"), L"0°", 0},
    };
    for (const auto& each : cases) {
        begin(L" MeasureTypes=4");
        pick(1, each.from);
        pick(2, apex);
        EXPECT_EQ(results(), L"") << "two vertices have no angle";
        pick(3, each.to);
        EXPECT_EQ(shown(L"AngleInput"), each.angle);
        EXPECT_EQ(previews(), each.arcs);
        EXPECT_TRUE(hudShown(L"Third"));
        answer(L"Commands.Commit");
        EXPECT_EQ(previews(), 0u);
        EXPECT_FALSE(hudShown(L"Third"));
    }
}

TEST_F(MeasurePanel, FormatsAnewWithAnotherPrecision)
{
    begin();
    pick(1, L"Cylinder1/Face1");
    const double area = input<RealValueCommandInput>(L"AreaInput1")->value();
    EXPECT_EQ(shown(L"AreaInput1"), L"1256.637 mm²");
    answer(L"Commands.SetInput PrecisionInput Precision1");
    EXPECT_EQ(shown(L"AreaInput1"), L"1256.6 mm²");
    answer(L"Commands.SetInput PrecisionInput PrecisionAll");
    EXPECT_EQ(shown(L"AreaInput1").substr(0, 14), L"1256.637061435");
    EXPECT_EQ(input<RealValueCommandInput>(L"AreaInput1")->value(), area);
    EXPECT_EQ(answer(L"Measure.Radius Cylinder1/Face1"), L"5 mm") << "the user's setting, for all numbers";
    EXPECT_EQ(Vs::UnitsOptionGroup::get()->generalPrecision(), 16);
}

TEST_F(MeasurePanel, FollowsTheUserToAnotherUnit)
{
    begin();
    pick(1, L"Cylinder1/Face1");
    pick(2, L"Box2");
    Vs::LengthUnit::display(*Vs::LengthUnit::find("cm"));
    EXPECT_EQ(shown(L"AreaInput1"), L"12.566 cm²");
    EXPECT_EQ(shown(L"DistanceInput"), L"8.5 cm");
    EXPECT_EQ(shown(L"VolumeInput2"), L"6 cm³");
    Vs::LengthUnit::display(*Vs::LengthUnit::find("m"));
    EXPECT_EQ(shown(L"VolumeInput2"), L"0.000006 m³") << "little is not nothing";
    Vs::LengthUnit::display(*Vs::LengthUnit::find("mm"));
    EXPECT_EQ(shown(L"VolumeInput2"), L"6000 mm³");
}

TEST_F(MeasurePanel, GivesUpWhatIsDeletedAndMeasuresAgainWhatChanged)
{
    begin();
    pick(1, L"Cylinder1");
    pick(2, L"Box2");
    EXPECT_EQ(previews(), 1u);
    Vs::Asset* asset = activeSession()->asset();
    ASSERT_TRUE(Vs::Transaction::undo(asset));
    EXPECT_EQ(activeKey(), L"MeasureCommand");
    EXPECT_EQ(results(), L"AreaInput2 VolumeInput2");
    EXPECT_EQ(previews(), 0u);
    EXPECT_FALSE(hudShown(L"First"));
    ASSERT_TRUE(Vs::Transaction::redo(asset));
    EXPECT_TRUE(Vs::Transaction::undo(asset) && Vs::Transaction::undo(asset)) << "measuring is no step";
    EXPECT_EQ(results(), L"");
    EXPECT_FALSE(input<SelectionCommandInput>(L"SelectionInput2")->enabled());
}

TEST_F(MeasurePanel, FollowsTheCameraWithoutMeasuring)
{
    begin();
    pick(1, L"Box2/Vertex1");
    pick(2, L"Cylinder1");
    const auto placeOf = [] { return Vu::HUDManager::get()->hudById(L"MeasureCmdFirstSelection")->place(); };
    const Vs::Point2 before = placeOf();
    const double distance = input<RealValueCommandInput>(L"DistanceInput")->value();
    camera()->dolly({30, 0, 10});
    EXPECT_NE(placeOf(), before);
    EXPECT_EQ(input<RealValueCommandInput>(L"DistanceInput")->value(), distance);
    EXPECT_EQ(previews(), 1u);
    // Another tool is on top of it meanwhile.
    press(Vu::kMiddleButton, 0, 0);
    EXPECT_NE(activeKey(), L"MeasureCommand");
    EXPECT_FALSE(hudShown(L"First"));
    release(Vu::kMiddleButton, 0, 0);
    EXPECT_EQ(activeKey(), L"MeasureCommand");
    EXPECT_TRUE(hudShown(L"First"));
    // In a canvas of another size a pixel covers a different extent.
    const Vs::Point2 inOldCanvas = placeOf();
    const auto drawn = previewNodes().front()->children();
    Vu::Application::get()->needGui();
    QWidget window;
    QWidget* widget = canvas()->widget(&window);
    window.show();
    widget->resize(200, 700);
    EXPECT_NE(placeOf(), inOldCanvas);
    EXPECT_NE(previewNodes().front()->children().front().get(), drawn.front().get());
}

TEST_F(MeasurePanel, LightsUpWhatAResultBelongsTo)
{
    begin();
    pick(1, L"Cylinder1/Face1");
    pick(2, L"Box2/Face1");
    const auto lit = [](const std::wstring& key) {
        input<RealValueCommandInput>(key)->hover(true);
        const size_t count = Vu::ActiveAssetUtils::highlightSet()->size();
        input<RealValueCommandInput>(key)->hover(false);
        EXPECT_TRUE(Vu::ActiveAssetUtils::highlightSet()->empty());
        return count;
    };
    EXPECT_EQ(lit(L"RadiusInput1"), 1u);
    EXPECT_EQ(lit(L"LoopLengthInput1"), 2u);
    EXPECT_EQ(lit(L"LoopLengthInput2"), 4u);
    EXPECT_EQ(lit(L"DistanceInput"), 0u) << "the dimension lights up instead";
}

TEST_F(MeasurePanel, FillsTheFieldOfAnotherCommand)
{
    const std::wstring recording = scratch(L"measured.txt");
    answer(L"Transcripting.Start \"" + recording + L"\"");
    answer(L"VuCommands.SetSnapValueCmd");
    answer(L"Commands.SetInput SnapFixedInput 1");
    auto* value = input<RealValueCommandInput>(L"SnapValueInput");
    const auto offered = value->mruCommands();
    ASSERT_EQ(offered.size(), 1u);
    EXPECT_EQ(offered[0]->key(), L"MeasureCommand");
    value->triggerMruCommand(L"MeasureCommand");
    EXPECT_EQ(activeKey(), L"MeasureCommand");
    EXPECT_FALSE(activeCommand()->usesCommandDialog());
    // A face has neither a radius nor a length: the next result is the distance of two.
    pick(1, L"Box2/Face1");
    Vu::Application::get()->idleTasks()->flush();
    EXPECT_EQ(activeKey(), L"MeasureCommand");
    pick(2, L"Cylinder1");
    EXPECT_EQ(activeKey(), L"MeasureCommand") << "it ends in its own time";
    Vu::Application::get()->idleTasks()->flush();
    EXPECT_EQ(activeKey(), L"SetSnapValueCmd");
    EXPECT_EQ(value->displayText(), L"95 mm");
    answer(L"Commands.Commit");
    answer(L"Transcripting.Stop");
    std::ifstream file(Vs::Strings::narrow(recording));
    const std::string lines{std::istreambuf_iterator<char>(file), {}};
    EXPECT_NE(lines.find("SnapValueInput \"95 mm\""), std::string::npos) << lines;
    EXPECT_EQ(lines.find("Measure"), std::string::npos) << "the value says it all: " << lines;
    EXPECT_EQ(Vu::UIInternalOptionGroup::get()->value("MeasureCmd_measureTypes", -1), 0)
        << "what the user measures next is the usual";
}

TEST_F(MeasurePanel, BeginsWithWhatIsSelectedAndAnewWithWhatTheThirdCantTake)
{
    const auto content = [](const wchar_t* key) { return input<SelectionCommandInput>(key)->displayText(); };
    Vs::Status status;
    Vs::Asset* asset = activeSession()->asset();
    const auto object = [&](const wchar_t* text) {
        return Vs::StrongRef<Vs::Selection>(
            new Vs::LogicalSelection(asset, *Vs::findPath(*asset, text, status), nullptr));
    };
    Vu::ActiveAssetUtils::selectionSet()->replace({object(L"Cylinder1/Face1"), object(L"Box2")});
    start(L"MeasureCommand");
    EXPECT_EQ(content(L"SelectionInput1"), L"Cylinder of Cylinder1");
    EXPECT_EQ(content(L"SelectionInput2"), L"Box2");
    EXPECT_EQ(shown(L"DistanceInput"), L"85 mm");
    // The third accepts only vertices; a click beside everything isn't a start either.
    camera()->look({0, 1, 0}, {0, 0, 1});
    BBox box;
    ASSERT_TRUE(Vs::cast<Vs::LogicalSelection>(object(L"Box2").get())->calculateBounds(*asset, box));
    camera()->fit(box);
    pick(3, L"Box2/Vertex1");
    click(Vu::kLeftButton, 2 - canvas()->width() / 2, 0);
    EXPECT_EQ(content(L"SelectionInput2"), L"Box2");
    click(Vu::kLeftButton, 0, 0);
    EXPECT_EQ(content(L"SelectionInput1"), L"Plane of Box2");
    EXPECT_EQ(content(L"SelectionInput2"), L"Select in the view");
    // So does one on the second selection, which the third can't accept either.
    answer(L"Commands.SetInput RestartSelectionInput \"\"");
    pick(1, L"Cylinder1/Face1");
    click(Vu::kLeftButton, 0, 0);
    EXPECT_EQ(content(L"SelectionInput2"), L"Plane of Box2");
    click(Vu::kLeftButton, 0, 0);
    EXPECT_EQ(content(L"SelectionInput1"), L"Plane of Box2");
    EXPECT_EQ(content(L"SelectionInput2"), L"Select in the view");
    // With both modifier keys a click takes what contains the face.
    answer(L"Commands.SetInput RestartSelectionInput \"\"");
    click(Vu::kLeftButton, 0, 0, Vu::kShiftModifier | Vu::kControlModifier);
    EXPECT_EQ(content(L"SelectionInput1"), L"Box2");
    answer(L"Commands.Commit");
    answer(L"Design.Hide Box2");
    Vu::ActiveAssetUtils::selectionSet()->replace({object(L"Box2/Face1"), object(L"Cylinder1/Face1")});
    start(L"MeasureCommand");
    EXPECT_EQ(content(L"SelectionInput1"), L"Cylinder of Cylinder1") << "and not what nobody sees";
    answer(L"Commands.Commit");
    // So does a line, except one of a recording, which says itself what was measured.
    Vu::ActiveAssetUtils::selectionSet()->replace({object(L"Cylinder1/Face1")});
    begin();
    EXPECT_NE(results(), L"");
    answer(L"Commands.Commit");
    const std::wstring recording = scratch(L"measure.txt");
    std::ofstream(Vs::Strings::narrow(recording)) << "Commands.Start MeasureCommand\n";
    answer(L"Transcripting.Replay \"" + recording + L'"');
    EXPECT_EQ(results(), L"");
    answer(L"Commands.Commit");
}

TEST_F(MeasurePanel, AThirdSelectionThatIsBarredIsNeitherMeasuredNorLit)
{
    begin(L" MeasureTypes=4");
    pick(1, L"Box2/Vertex1");
    pick(2, L"Box2/Vertex2");
    pick(3, L"Box2/Vertex4");
    EXPECT_EQ(results(), L"AngleInput");
    const Vs::SelectionSet& lit = Vu::ActiveAssetUtils::selectionManager()->collectedSet();
    EXPECT_EQ(lit.size(), 3u);
    answer(L"Commands.SetInput SelectionTypesInput BodyFilterInput");
    EXPECT_EQ(lit.size(), 2u);
    EXPECT_EQ(results(), L"");
    answer(L"Commands.SetInput SelectionTypesInput FaceEdgeVertexFilterInput");
    EXPECT_EQ(lit.size(), 3u);
    EXPECT_EQ(results(), L"AngleInput");
}

TEST_F(MeasurePanel, WaitsWhileWhatItMeasuresIsSelected)
{
    answer(L"VuCommands.SetSnapValueCmd");
    answer(L"Commands.SetInput SnapFixedInput 1");
    auto* value = input<RealValueCommandInput>(L"SnapValueInput");
    value->triggerMruCommand(L"MeasureCommand");
    Vs::Status status;
    const auto path = Vs::findPath(*activeSession()->asset(), L"Box2/Edge1", status);
    Vs::SelectionSet* selected = Vu::ActiveAssetUtils::selectionSet();
    selected->add(
        Vs::StrongRef<Vs::Selection>(new Vs::LogicalSelection(activeSession()->asset(), *path, nullptr)));
    pick(1, L"Box2/Edge1");
    Vu::Application::get()->idleTasks()->flush();
    EXPECT_EQ(activeKey(), L"MeasureCommand");
    EXPECT_EQ(Vu::HUDManager::get()->hintText().substr(0, 7), L"length ");
    selected->clear();
    Vu::Application::get()->idleTasks()->flush();
    EXPECT_EQ(activeKey(), L"SetSnapValueCmd");
    EXPECT_EQ(Vu::HUDManager::get()->hintText(), L"");
    EXPECT_GT(value->value(), 9);
}

TEST_F(MeasurePanel, EndsWithTheCommandThatItMeasuresFor)
{
    for (const bool hostFirst : {true, false}) {
        answer(L"VuCommands.SetSnapValueCmd");
        Vu::CommandBase* host = activeCommand();
        answer(L"Commands.SetInput SnapFixedInput 1");
        input<RealValueCommandInput>(L"SnapValueInput")->triggerMruCommand(L"MeasureCommand");
        pick(1, L"Box2/Edge1");
        if (hostFirst) {
            host->destroy(Vu::ETerminationReason::Cancel);
            EXPECT_NE(activeKey(), L"MeasureCommand");
        } else {
            answer(L"Commands.Cancel");
            EXPECT_EQ(activeKey(), L"SetSnapValueCmd");
            EXPECT_EQ(input<RealValueCommandInput>(L"SnapValueInput")->displayText(), L"1 mm");
            answer(L"Commands.Cancel");
        }
        Vu::Application::get()->idleTasks()->flush();
    }
}

} // namespace
