#include "Server/Base/Strings.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Measure/MeasureMgr.h"
#include "Server/DataModel/ModelBuilder.h"
#include "Server/DataModel/Selection/Private/DeleteRequest.h"
#include "Server/DataModel/Selection/SelectionFilter.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Server/DataModel/Transaction.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/GraphicsOptionGroup.h"
#include "Server/Scene/Projection.h"
#include "Server/Scene/SceneAssetAdapter.h"
#include "Server/Scene/ViewFragment.h"
#include "Server/Types/LengthUnit.h"
#include "Tests/UI/Base/Fixture.h"
#include "UI/Base/Command/CommandInputSet.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/InteractiveCommandBase.h"
#include "UI/Base/Command/KeyEvents.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/Environment.h"
#include "UI/Base/Session/SelectionCommandInput.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/Session/Thumbnail.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/ViewMgr.h"
#include "UI/Base/Window/StatusFields.h"

#include <QApplication>
#include <QLabel>
#include <QMouseEvent>
#include <QToolButton>
#include <QWidget>
#include <QtTest/QTest>

#include <algorithm>
#include <random>

using namespace Vu;
using Leaf = Vs::ObjectPath::Leaf;

namespace {

/// Selects for the session, as the resting command does.
class RestCommand : public Vs::Implements<RestCommand, InteractiveCommandBase>
{
public:
    RestCommand(CommandDefinition* definition, CommandContext* context) : Implements(definition, context)
    {
        static Info info(L"Selected", L"Selected", nullptr);
        CommandInputSet* inputs = CommandInputSet::make(this);
        input = SelectionCommandInput::make(inputs, 0, &info);
        input->replacesCurrentSelection(true);
        commandInputSet(inputs);
    }
    SelectionCommandInput* input = nullptr;
};

class RestCommandDef : private InfoHolder, public CommandDefinition
{
public:
    RestCommandDef() : InfoHolder{Info(L"RestTestCommand", L"Rest", nullptr)}, CommandDefinition(&record) {}

private:
    CommandBase* onCreateCommand(CommandContext* context) override { return new RestCommand(this, context); }
};

/// Three boxes side by side, seen from above in a canvas of a window that gets the platform's real events.
class SelectingTest : public UiTest
{
protected:
    SelectingTest() : asset(newAsset()), session(SessionMgr::get()->assetSession(asset))
    {
        Application::get()->needGui();
        Vs::Status status;
        for (const double x : {0.0, 20.0, 40.0})
            boxes.push_back(Vs::ModelBuilder(asset)
                                .box(10, 10, 10, {GkMatrix3d::translation({x, 0, 0}), {}, {}}, status)
                                ->id);
        auto* view = Vs::cast<GraphicsView>(session->viewManager()->view(GraphicsView::interfaceId()));
        canvas.widget(nullptr)->resize(600, 400);
        canvas.view(view, false, false);
        view->update();
        fragment = view->modelFragment();
        fragment->camera()->projection(Vs::Scene::kParallelProjection);
        fragment->camera()->look({0, 0, -1}, {0, 1, 0});
        fragment->camera()->fit(fragment->bounds());
        Vs::MeasureMgr::get()->initialize();
        std::ignore = session->commandManager()->executeCommand(&definition, CommandContext());
        input = Vs::cast<RestCommand>(session->commandManager()->activeCommand())->input;
    }
    ~SelectingTest() override
    {
        session->commandManager()->terminateAll(ETerminationReason::Cancel);
        canvas.view(nullptr, false, false);
        delete canvas.existingWidget();
    }

    const Vs::SelectionFilter* only(Vs::ESelectionType type)
    {
        return Vs::MeasureMgr::get()->filters(type).front();
    }
    Vs::SelectionSet& selected() { return session->selectionManager()->selectionSet(); }
    Vs::SelectionSet& pointed() { return session->selectionManager()->highlightSet(); }

    /// The position of a point of the model in the canvas.
    QPointF at(double x, double y, double z = 10) const
    {
        const Vs::Scene::Projection projection(*fragment->camera(), canvas.width(), canvas.height());
        const GkPoint3d screen = projection.worldToScreen({x, y, z});
        return {screen.x, canvas.height() - screen.y};
    }
    void send(QEvent::Type type, QPointF place, Qt::MouseButton button, Qt::KeyboardModifiers modifiers)
    {
        const bool held = type == QEvent::MouseButtonPress || (type == QEvent::MouseMove && m_held);
        m_held = type == QEvent::MouseMove ? m_held : held;
        QMouseEvent event(type, place, place, button, held ? Qt::LeftButton : Qt::NoButton, modifiers);
        QApplication::sendEvent(canvas.existingWidget(), &event);
    }
    void hover(QPointF place) { send(QEvent::MouseMove, place, Qt::NoButton, Qt::NoModifier); }
    void press(QPointF place, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        send(QEvent::MouseButtonPress, place, Qt::LeftButton, modifiers);
    }
    void release(QPointF place, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        send(QEvent::MouseButtonRelease, place, Qt::LeftButton, modifiers);
    }
    void click(QPointF place, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        press(place, modifiers);
        release(place, modifiers);
    }
    void pull(QPointF from, QPointF to, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        press(from, modifiers);
        hover((from + to) / 2);
        hover(to);
        release(to, modifiers);
    }
    /// Which boxes are selected, as "02".
    std::string chosen()
    {
        std::string numbers;
        for (size_t i = 0; i < boxes.size(); ++i)
            if (selected().contains(Vs::LogicalSelection(asset, boxes[i], nullptr)))
                numbers += std::to_string(i);
        return numbers;
    }
    const Vs::ObjectPath& path(const Vs::SelectionSet& set) const
    {
        static const Vs::ObjectPath none{.component = "none"};
        const auto* logical =
            set.size() == 1 ? Vs::cast<Vs::LogicalSelection>(set.selections().front().get()) : nullptr;
        return logical ? logical->path() : none;
    }
    const std::vector<Rendra::Graphics::LitPart>& litOf(size_t box) const
    {
        return Vs::cast<Vs::Scene::SceneAssetAdapter>(asset->adapter())->bodyNode(boxes[box])->litParts();
    }

    RestCommandDef definition;
    Vs::Asset* asset;
    AssetSession* session;
    std::vector<std::string> boxes;
    GraphicsCanvas canvas;
    Vs::Scene::ViewFragment* fragment = nullptr;
    SelectionCommandInput* input = nullptr;

private:
    bool m_held = false;
};

const QPointF kBeside(3, 3);

} // namespace

TEST_F(SelectingTest, AnInputThatReplacesTheCurrentSelectionIsTheSessionsOwn)
{
    EXPECT_EQ(&input->selectionSet(), &selected());
    selected().add(Vs::StrongRef<Vs::Selection>(new Vs::GroupSelection({})));
    click(at(5, 5), Qt::ControlModifier);
    EXPECT_EQ(selected().size(), 2u);
    click(kBeside, Qt::ShiftModifier);
    EXPECT_EQ(selected().size(), 2u) << "who adds and misses loses nothing";
    click(at(5, 5), Qt::ShiftModifier);
    EXPECT_EQ(selected().size(), 1u);
    click(at(25, 5));
    EXPECT_EQ(selected().size(), 1u);
    EXPECT_EQ(chosen(), "1");
    click(kBeside);
    EXPECT_TRUE(selected().empty());

    click(at(5, 5));
    input->clearSelectionOnCommandEnd(false);
    session->commandManager()->terminateAll(ETerminationReason::Cancel);
    EXPECT_EQ(chosen(), "0");
    std::ignore = session->commandManager()->executeCommand(&definition, CommandContext());
    session->commandManager()->terminateAll(ETerminationReason::Cancel);
    EXPECT_TRUE(selected().empty());
}

TEST_F(SelectingTest, TheFilterSaysWhichKindsArePickedAndLit)
{
    using Rendra::Graphics::Highlight;
    using Rendra::Graphics::Part;
    hover(at(5, 5));
    EXPECT_EQ(path(pointed()), (Vs::ObjectPath{boxes[0]})) << "without a filter, components";
    EXPECT_TRUE(litOf(0).empty());

    input->requiredFilter(only(Vs::ESelectionType::Edge));
    const QPointF nearEdge = at(10, 5) - QPointF(3, 0);
    hover(nearEdge);
    const Vs::ObjectPath edge = path(pointed());
    EXPECT_EQ(edge.leaf, Leaf::Edge);
    ASSERT_EQ(litOf(0).size(), 1u);
    EXPECT_EQ(litOf(0)[0], (Rendra::Graphics::LitPart{Part::Edge, edge.index, Highlight::Pointed}));
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(canvas.existingWidget(), &leave);
    EXPECT_TRUE(pointed().empty()) << "the pointer is elsewhere";
    EXPECT_TRUE(litOf(0).empty());
    hover(nearEdge);
    EXPECT_EQ(path(pointed()), edge);
    hover(at(5, 5));
    EXPECT_TRUE(pointed().empty()) << "a face is no edge";
    EXPECT_TRUE(litOf(0).empty());
    click(nearEdge);
    EXPECT_EQ(path(selected()), edge);
    EXPECT_EQ(litOf(0)[0].highlight, Highlight::Selected);

    input->requiredFilter(only(Vs::ESelectionType::Vertex));
    click(at(10, 10) + QPointF(2, 2));
    EXPECT_EQ(path(selected()).leaf, Leaf::Vertex);
    Vs::Status status;
    Vs::MeasureResult place;
    const Vs::StrongRef<Vs::LogicalSelection> vertex(
        Vs::cast<Vs::LogicalSelection>(selected().selections().front().get()));
    ASSERT_TRUE(Vs::MeasureMgr::get()->measure(vertex, Vs::EMeasureType::PositionX, place, &status));
    EXPECT_TRUE(place.point1.isEqualTo({10, 10, 10}, {1e-9, 1e-9})) << "the exact shape's own vertex";

    input->requiredFilter(only(Vs::ESelectionType::Body));
    click(at(45, 5));
    EXPECT_EQ(path(selected()), (Vs::ObjectPath{boxes[2], Leaf::Body}));
    EXPECT_TRUE(litOf(0).empty());
    Vs::CompositeSelectionFilter both(Vs::CompositeSelectionFilter::ELogic::Any);
    both.add(only(Vs::ESelectionType::Face));
    both.add(only(Vs::ESelectionType::Edge));
    input->requiredFilter(&both);
    click(at(5, 5));
    EXPECT_EQ(path(selected()).leaf, Leaf::Face);
    click(nearEdge);
    EXPECT_EQ(path(selected()), edge);
    input->requiredFilter(nullptr);
}

TEST_F(SelectingTest, ThePictureForFileListsShowsNeitherASelectionNorGhosts)
{
    const std::string bare = thumbnailOf(asset, 64);
    if (bare.empty())
        GTEST_SKIP() << "NOTICE: no OpenGL to draw with";
    click(at(5, 5));
    input->requiredFilter(only(Vs::ESelectionType::Face));
    hover(at(25, 5));
    EXPECT_FALSE(selected().empty() || pointed().empty());
    EXPECT_TRUE(thumbnailOf(asset, 64) == bare);
    input->requiredFilter(nullptr);

    DebugEnvironmentDef environment;
    session->enterComponent(&environment, boxes[1]);
    EXPECT_TRUE(selected().empty() && pointed().empty());
    EXPECT_TRUE(thumbnailOf(asset, 64) == bare);
    click(at(5, 5));
    EXPECT_TRUE(selected().empty()) << "a ghost isn't picked";
    click(at(25, 5));
    EXPECT_EQ(path(selected()), (Vs::ObjectPath{boxes[1]}));
    session->leaveEnvironment();
    click(at(5, 5));
    EXPECT_EQ(path(selected()), (Vs::ObjectPath{boxes[0]}));
}

TEST_F(SelectingTest, WhatIsHiddenIsPickedWhenTheUserWantsIt)
{
    input->requiredFilter(only(Vs::ESelectionType::Edge));
    fragment->camera()->look({0.3, 0.5, -1}, {0, 1, 0});
    fragment->camera()->fit(fragment->bounds());
    const QPointF hiddenEdge = at(25, 10, 0);
    hover(hiddenEdge);
    EXPECT_TRUE(pointed().empty());
    auto* options = Vs::Scene::GraphicsOptionGroup::get();
    options->selectClosestItemOnly(false);
    click(hiddenEdge);
    options->selectClosestItemOnly(true);
    EXPECT_EQ(path(selected()).leaf, Leaf::Edge);
    selected().clear();
    fragment->renderParams()->visualStyle(Vs::Scene::kWireframe);
    click(hiddenEdge);
    EXPECT_EQ(path(selected()).leaf, Leaf::Edge) << "lines alone hide nothing";
    input->requiredFilter(nullptr);
}

TEST_F(SelectingTest, ABandTakesWhatIsInsideOrToTheLeftWhatItCrosses)
{
    pull(at(-2, 12), at(25, -2));
    EXPECT_EQ(chosen(), "0");
    pull(at(25, -2), at(-2, 12));
    EXPECT_EQ(chosen(), "01");
    pull(at(35, 12), at(52, -2), Qt::ShiftModifier);
    EXPECT_EQ(chosen(), "012");
    pull(at(-2, 12), at(32, -2), Qt::ShiftModifier);
    EXPECT_EQ(chosen(), "012") << "Shift adds";
    pull(at(-2, 12), at(32, -2), Qt::ControlModifier);
    EXPECT_EQ(chosen(), "2") << "Control toggles";
    pull(kBeside, kBeside + QPointF(5, 5));
    EXPECT_EQ(chosen(), "");

    input->requiredFilter(only(Vs::ESelectionType::Face));
    pull(at(-2, 12), at(12, -2));
    EXPECT_EQ(path(selected()).leaf, Leaf::Face) << "the upper one; the others are seen edge on";
    input->requiredFilter(nullptr);
}

TEST_F(SelectingTest, TheBandIsSeenWhileItIsPulledAndEscapeGivesItUp)
{
    click(at(5, 5));
    press(at(-2, 12));
    hover(at(30, 5));
    ASSERT_TRUE(canvas.band());
    EXPECT_FALSE(canvas.band()->crossing());
    EXPECT_EQ(canvas.band()->fromX, at(-2, 12).x());
    EXPECT_EQ(canvas.band()->toX, at(30, 5).x());
    EXPECT_TRUE(canvas.existingWidget()->findChild<QWidget*>("selectionBand"));
    hover(at(-4, 5));
    EXPECT_TRUE(canvas.band()->crossing());

    KeyEvent escape(kEscapeKey);
    CommandBase* command = session->commandManager()->activeCommand();
    Vs::cast<InteractiveCommandBase>(command)->keyPress(&escape);
    EXPECT_FALSE(canvas.band());
    hover(at(30, -2));
    release(at(30, -2));
    EXPECT_EQ(chosen(), "0");
    ASSERT_EQ(session->commandManager()->activeCommand(), command) << "the command goes on";

    input->requiredQuantity(true, 1);
    pull(at(-2, 12), at(52, -2));
    EXPECT_EQ(chosen(), "0") << "who wants one thing doesn't want a crowd";
}

TEST_F(SelectingTest, AnInputOfItsOwnCollectsAndLightsWhatItHoldsUntilItsCommandEnds)
{
    input->replacesCurrentSelection(false);
    const auto* scene = Vs::cast<Vs::Scene::SceneAssetAdapter>(asset->adapter());
    const auto lit = [&](size_t box) { return scene->node(boxes[box])->highlight(); };
    using Rendra::Graphics::Highlight;
    click(at(5, 5));
    click(at(25, 5));
    click(kBeside);
    EXPECT_EQ(input->selectionSet().size(), 2u);
    EXPECT_TRUE(selected().empty());
    EXPECT_EQ(lit(0), Highlight::Selected);
    click(at(5, 5), Qt::ControlModifier);
    EXPECT_EQ(input->selectionSet().size(), 1u);
    EXPECT_EQ(lit(0), Highlight::None);
    pull(at(-2, 12), at(52, -2));
    EXPECT_EQ(input->selectionSet().size(), 3u);
    session->commandManager()->terminateAll(ETerminationReason::Cancel);
    EXPECT_EQ(lit(1), Highlight::None);
}

TEST_F(SelectingTest, FacesEdgesAndVerticesAreTextsAsComponentsAre)
{
    for (const wchar_t* text :
         {L"Box2:1/Body1/Face3", L"Box1:1/Body1/Edge12|Box3:1/Body1/Vertex8", L"Box2:1/Body1", L""}) {
        ASSERT_TRUE(input->valueFromString(text)) << Vs::Strings::narrow(text);
        EXPECT_EQ(input->valueAsString(), text);
    }
    EXPECT_TRUE(input->valueFromString(Vs::Strings::widen(boxes[1])));
    EXPECT_EQ(chosen(), "1") << "identifiers are read as well";
    for (const wchar_t* text : {L"Box2:1/Body1/Face7", L"Box9:1", L"Box1:1|Box9:1"})
        EXPECT_FALSE(input->valueFromString(text)) << Vs::Strings::narrow(text);
    EXPECT_EQ(chosen(), "1");
}

TEST_F(SelectingTest, TheStatusBarSaysWhatIsSelectedInTheUnitThatIsShown)
{
    SessionMgr::get()->currentAssetSession(session);
    SessionMgr::get()->activate();
    StatusFields fields(nullptr);
    const auto* label = fields.findChild<QLabel*>(QStringLiteral("selection"));
    const auto shown = [&](const wchar_t* text) {
        EXPECT_TRUE(input->valueFromString(text)) << Vs::Strings::narrow(text);
        fields.refresh();
        return label->isHidden() ? std::string() : label->text().toStdString();
    };
    EXPECT_EQ(shown(L""), "");
    EXPECT_EQ(shown(L"Box2:1/Body1/Face3"), "Face of Box2, plane, 100 mm\u00b2");
    EXPECT_EQ(shown(L"Box1:1/Body1/Edge12"), "Edge of Box1, line, 10 mm");
    EXPECT_EQ(shown(L"Box1:1/Body1/Vertex8"), "Vertex of Box1");
    Vs::LengthUnit::display(*Vs::LengthUnit::find("cm"));
    EXPECT_EQ(shown(L"Box2:1/Body1/Face3"), "Face of Box2, plane, 1 cm\u00b2");
    EXPECT_EQ(fields.findChild<QToolButton*>(QStringLiteral("unit"))->text().toStdString(), "cm");
    Vs::LengthUnit::display(*Vs::LengthUnit::find("mm"));
    click(at(5, 5));
    click(at(25, 5), Qt::ControlModifier);
    QTest::qWait(0);
    EXPECT_EQ(label->text().toStdString(), "2 selected") << "it follows by itself";
}

TEST_F(SelectingTest, AClickIntoTheViewOfAnotherModelIsNotThisSessions)
{
    click(at(5, 5));
    AssetSession* other = SessionMgr::get()->assetSession(newAsset());
    canvas.view(Vs::cast<GraphicsView>(other->viewManager()->view(GraphicsView::interfaceId())), false,
                false);
    click(kBeside);
    EXPECT_EQ(chosen(), "0");
    pull(kBeside, {500, 300});
    EXPECT_EQ(chosen(), "0");
    EXPECT_FALSE(canvas.band());
}

TEST_F(SelectingTest, WhatIsDeletedIsNoLongerSelectedAndTheRestStaysLit)
{
    pull(at(-2, 12), at(32, -2));
    ASSERT_EQ(chosen(), "01");
    Vs::Status status;
    Vs::Request* request = Vs::DeleteRequest::make(asset, {Vs::ObjectPath{boxes[0]}});
    ASSERT_TRUE(request->execute(asset, status));
    request->destroy();
    EXPECT_EQ(chosen(), "1");
    EXPECT_EQ(selected().size(), 1u);
    ASSERT_TRUE(Vs::Transaction::undo(asset));
    EXPECT_EQ(chosen(), "1");
    const auto* scene = Vs::cast<Vs::Scene::SceneAssetAdapter>(asset->adapter());
    EXPECT_EQ(scene->node(boxes[0])->highlight(), Rendra::Graphics::Highlight::None);
    EXPECT_EQ(scene->node(boxes[1])->highlight(), Rendra::Graphics::Highlight::Selected);
}

TEST_F(SelectingTest, WhateverIsAddedPutInPlaceOrTakenOutIsHeldOnceInItsOrderAndLit)
{
    const auto* scene = Vs::cast<Vs::Scene::SceneAssetAdapter>(asset->adapter());
    const auto faceOf = [&](size_t number) {
        return Vs::ObjectPath{boxes[number % 3], Leaf::Face, uint32_t(number / 3)};
    };
    std::mt19937 random(7);
    std::vector<size_t> plain; // Numbers of faces.
    for (int step = 0; step < 300; ++step) {
        std::vector<Vs::StrongRef<Vs::Selection>> some;
        const auto action = random() % 8;
        if (action == 0)
            plain.clear();
        for (int i = 0; i < 3; ++i) {
            const size_t number = random() % 18;
            some.emplace_back(new Vs::LogicalSelection(asset, faceOf(number), nullptr));
            const bool isHeld = std::ranges::find(plain, number) != plain.end();
            const bool takesOut = action == 1 || action == 2;
            if (action == 2 || (action == 1 && i == 0))
                std::erase(plain, number);
            else if (!takesOut && !isHeld)
                plain.push_back(number);
        }
        std::ignore = action == 0   ? selected().replace(some)
                      : action == 1 ? selected().remove(*some.front())
                      : action == 2 ? selected().remove(some)
                                    : selected().add(some);
        ASSERT_EQ(selected().size(), plain.size()) << "step " << step;
        size_t lit = 0;
        for (size_t i = 0; i < plain.size(); ++i)
            ASSERT_EQ(Vs::cast<Vs::LogicalSelection>(selected().selections()[i].get())->path(),
                      faceOf(plain[i]))
                << "step " << step;
        for (size_t box = 0; box < boxes.size(); ++box) {
            lit += litOf(box).size();
            EXPECT_EQ(selected().components().has(boxes[box]), !litOf(box).empty()) << "step " << step;
        }
        ASSERT_EQ(lit, plain.size()) << "step " << step;
        ASSERT_EQ(scene->node(boxes[0])->highlight(), Rendra::Graphics::Highlight::None);
    }
}
