// What a first-time user does: opens an assembly, turns it, measures a hole, hides a plate, rounds an edge,
// adds a cylinder on a face, exports, saves and reopens it. Once only with real keys and once only with a
// real mouse, without a line of text.

#include "Server/Body/Body.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/Outermost.h"
#include "Server/Scene/Projection.h"
#include "Server/Scene/ViewFragment.h"
#include "Tests/Support/RealData.h"
#include "Tests/UI/Base/Window/Visitor.h"
#include "UI/Base/Command/CommandBase.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandInputSet.h"
#include "UI/Base/Command/RealValueCommandInput.h"
#include "UI/Base/Session/SceneUtilities.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/TransitionMgr.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QFileDialog>
#include <QLabel>
#include <QMenu>

#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <array>
#include <gtest/gtest.h>

using namespace Vu;
using UiTests::Visitor;
using Leaf = Vs::ObjectPath::Leaf;

namespace {

constexpr const wchar_t* kPlate = L"as1/plate_1";
constexpr const wchar_t* kBracket = L"as1/l-bracket-assembly_1/l-bracket_1";

class WalkTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (TestSupport::realDataFolder().empty())
            GTEST_SKIP() << "NOTICE: no real CAD files";
        m_started = visitor.begin();
        if (!m_started)
            GTEST_SKIP() << "NOTICE: no display, or no openbox or xdotool, for a visitor";
        boost::filesystem::copy_file(TestSupport::realDataFolder() / "as1-oc-214.stp",
                                     visitor.folder() / "as1.stp");
    }
    void TearDown() override
    {
        if (m_started)
            visitor.end();
    }

    // On the main thread.
    static const Vs::Component* component(const std::wstring& path)
    {
        const Vs::Asset* asset = Vs::DocumentMgr::get()->activeAsset();
        Vs::Status status;
        const auto found = asset ? Vs::findPath(*asset, path, status) : std::nullopt;
        return found ? Vs::resolvePath(*found, *asset, status) : nullptr;
    }
    static bool isOpen() { return component(kPlate) != nullptr; }
    static bool beginsWithNewDocument()
    {
        const auto* button = qobject_cast<const QAbstractButton*>(QApplication::focusWidget());
        return button && button->accessibleName() == QStringLiteral("New Document");
    }
    static size_t facesOfBracket() { return component(kBracket)->body->mesh()->faces.size(); }
    static GkVector3d direction()
    {
        return SceneUtilities::getActiveAssetGraphicView()->modelFragment()->camera()->direction();
    }
    static bool isRunning(const wchar_t* command)
    {
        const CommandBase* active = CommandBase::getActiveCommand();
        return active && active->commandDefinition() && active->commandDefinition()->id() == command;
    }
    /// The contents of the running command's panel in the field with that key; empty if it can't be used.
    static std::wstring field(const wchar_t* key)
    {
        CommandBase* active = CommandBase::getActiveCommand();
        const CommandInputSet* inputs = active ? active->commandInputSet() : nullptr;
        const CommandInputBase* input = inputs ? inputs->findInput(key) : nullptr;
        return input && input->isUsable() ? input->displayText() : std::wstring();
    }
    /// In the view, with the tool that has a panel on top again.
    static bool isStill() { return !TransitionMgr::get()->playing() && isRunning(L"CylinderCommand"); }
    /// Whether assistive technology finds the menu below the view.
    static bool isMenuTold()
    {
        QAccessibleInterface* view = QAccessible::queryAccessibleInterface(
            SceneUtilities::getActiveAssetGraphicView()->canvas()->existingWidget());
        for (int i = 0; i < view->childCount(); ++i)
            if (view->child(i)->role() == QAccessible::PopupMenu && view->child(i)->childCount() > 5)
                return true;
        return false;
    }
    /// Whether the model's outermost points to the left, right, top and bottom are visible, and not behind a
    /// bar.
    static bool isFramed()
    {
        const GraphicsView* view = SceneUtilities::getActiveAssetGraphicView();
        const Vs::Scene::ViewFragment* model = view->modelFragment();
        const GkVector3d up = model->camera()->up(), right = model->camera()->direction().crossProduct(up);
        return std::ranges::all_of(std::array{up, -up, right, -right}, [&](const GkVector3d& way) {
            const auto point = Vs::Scene::outermostPoint(*model->viewFragmentNode(), way);
            const auto place = point ? view->worldToWindow(*point) : std::nullopt;
            const auto covers = [&](const CanvasRect& rect) {
                return place->x > rect.left && place->x < rect.right && place->y > rect.top &&
                       place->y < rect.bottom;
            };
            return place && place->x > 0 && place->y > 0 && place->x < view->canvasWidth() &&
                   place->y < view->canvasHeight() && std::ranges::none_of(view->canvas()->covered(), covers);
        });
    }
    static bool says(const QString& text)
    {
        const auto labels = QApplication::activeWindow()->findChildren<QLabel*>();
        return std::ranges::any_of(
            labels, [&](const QLabel* label) { return label->isVisible() && label->text() == text; });
    }
    // A dialog only has the focus once the window manager has given it.
    static bool asks()
    {
        const QWidget* dialog = QApplication::activeModalWidget();
        return dialog && dialog->isActiveWindow();
    }
    static bool asksForFile()
    {
        return asks() && qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
    }

    using Fits = std::function<bool(const Vs::BodyMesh& mesh, uint32_t index)>;
    /// Of any occurrence of the part with that name.
    static Visitor::Test of(const wchar_t* part, std::optional<Leaf> leaf = {}, const Fits& fits = {})
    {
        return [=](const Vs::ObjectPath& path) {
            const Vs::Component* found = Vs::DocumentMgr::get()->activeAsset()->findComponent(path.component);
            return found && found->name == part && (!leaf || path.leaf == *leaf) &&
                   (!fits || fits(*found->body->mesh(), path.index));
        };
    }
    static bool isLong(const Vs::BodyMesh& mesh, uint32_t edge)
    {
        const auto point = [&](uint32_t index) {
            const float* at = mesh.edgePoints.data() + size_t(3) * index;
            return GkPoint3d(at[0], at[1], at[2]);
        };
        const uint32_t first = mesh.edgeStarts[edge], end = mesh.edgeStarts[edge + 1];
        return end - first == 2 && point(first).distanceTo(point(end - 1)) > 40;
    }
    static bool isFlat(const Vs::BodyMesh& mesh, uint32_t face) { return !isRound(mesh, face); }
    /// Whether its triangles face many directions, as those of a hole do.
    static bool isRound(const Vs::BodyMesh& mesh, uint32_t face)
    {
        const Vs::BodyMesh::Face& run = mesh.faces[face];
        const auto normal = [&](uint32_t triangle) {
            const float* at = mesh.normals.data() + size_t(3) * mesh.triangles[size_t(3) * triangle];
            return GkVector3d(at[0], at[1], at[2]);
        };
        return normal(run.firstTriangle).dotProduct(normal(run.firstTriangle + run.triangleCount / 2)) < 0.99;
    }

    /// Where an arrow that drags a size of the cylinder is on the display, and in which direction it points.
    /// Its tip may be outside the view.
    struct Arrow
    {
        QPoint shaft;
        QPointF way;
    };
    /// Where it starts, in radii and heights.
    static Arrow arrow(const GkVector3d& begin, const GkVector3d& along)
    {
        constexpr double kSize = 105; // Of an arrow, in pixels.
        const GraphicsView* view = SceneUtilities::getActiveAssetGraphicView();
        const Vs::Component* cylinder = component(L"Cylinder1");
        const BBox box = cylinder ? cylinder->body->mesh()->bounds : BBox();
        const GkPoint3d from(begin.x * box.high().x, 0, begin.z * box.high().z);
        const Vs::Scene::Projection projection(*view->modelFragment()->camera(), view->canvasWidth(),
                                               view->canvasHeight());
        const GkMatrix3d placement = cylinder ? cylinder->placement.matrix() : GkMatrix3d();
        const double depth = projection.worldToScreen(placement * from).z;
        const auto seen = [&](const GkPoint3d& place) {
            const GkPoint3d found = projection.worldToScreen(placement * place);
            return QPointF(found.x, view->canvasHeight() - found.y);
        };
        const QPointF shaft = seen(from + along * (0.2 * kSize * projection.pixelSize(depth)));
        const QPointF unit = shaft - seen(from);
        return {view->canvas()->existingWidget()->mapToGlobal(shaft.toPoint()), unit};
    }

    void expectWork(size_t faces) const
    {
        ASSERT_FALSE(HasFailure());
        ASSERT_TRUE(Visitor::becomes(isOpen));
        Visitor::see([&] {
            EXPECT_FALSE(component(kPlate)->visible);
            EXPECT_EQ(facesOfBracket(), faces + 1);
            const Vs::Component* cylinder = component(L"Cylinder1");
            ASSERT_TRUE(cylinder);
            const BBox box = cylinder->body->mesh()->bounds;
            EXPECT_NEAR(box.high().z - box.low().z, 40, 1e-6);
            EXPECT_NEAR(box.high().x - box.low().x, 20, 0.1);
        });
    }

    Visitor visitor;

private:
    bool m_started = false;
};

TEST_F(WalkTest, ByKeysAloneNoStepTakesMoreThanEight)
{
    Visitor::run([&] {
        size_t faces = 0;
        EXPECT_TRUE(Visitor::becomes(beginsWithNewDocument)) << "the keyboard is elsewhere";
        visitor.step("open an assembly", [&] {
            visitor.keys("ctrl+o");
            ASSERT_TRUE(Visitor::becomes(asksForFile));
            visitor.keys("a s 1 Down Return Return");
            ASSERT_TRUE(Visitor::becomes(isOpen));
            EXPECT_TRUE(Visitor::becomes(isFramed));
        });
        visitor.step("turn it", [&] {
            const GkVector3d before = Visitor::see(direction);
            visitor.keys("Right");
            EXPECT_TRUE(Visitor::becomes([&] { return before.dotProduct(direction()) < 0.99; }));
            faces = Visitor::see(facesOfBracket);
        });
        visitor.step("look at what fills a hole, and hide it", [&] {
            visitor.point(of(L"bolt_1"));
            visitor.keys("space shift+f h");
        });
        visitor.step("look for what measures, by its German title", [&] {
            visitor.keys("ctrl+shift+p m e s s Return");
            ASSERT_TRUE(Visitor::becomes([] { return isRunning(L"MeasureCommand"); }));
        });
        visitor.step("measure a hole", [&] {
            visitor.point(of(L"l-bracket_1", Leaf::Face, isRound));
            visitor.keys("space");
            EXPECT_TRUE(Visitor::becomes([] { return field(L"RadiusInput1") == L"5 mm"; }));
        });
        visitor.step("hide a plate", [&] {
            visitor.keys("Escape");
            visitor.point(of(L"plate_1"));
            visitor.keys("space h");
            EXPECT_TRUE(Visitor::becomes([] { return !component(kPlate)->visible; }));
        });
        visitor.step("round an edge", [&] {
            visitor.keys("alt+m f");
            ASSERT_TRUE(Visitor::becomes([] { return isRunning(L"FilletCommand"); }));
            visitor.point(of(L"l-bracket_1", Leaf::Edge));
            visitor.keys("space Return");
            EXPECT_TRUE(Visitor::becomes([&] { return facesOfBracket() == faces + 1; }));
        });
        visitor.step("choose a face", [&] {
            visitor.point(of(L"l-bracket_1"));
            visitor.keys("space");
            visitor.point(of(L"l-bracket_1", Leaf::Face, isFlat));
            visitor.keys("space");
        });
        visitor.step("add a cylinder 20 x 40 on it", [&] {
            visitor.keys("alt+i c");
            ASSERT_TRUE(Visitor::becomes([] { return isRunning(L"CylinderCommand"); }));
            visitor.keys("1 0 Tab 4 0 Return");
            EXPECT_TRUE(
                Visitor::becomes([] { return component(L"Cylinder1") && !isRunning(L"CylinderCommand"); }));
        });
        visitor.step("export it", [&] {
            visitor.keys("ctrl+e");
            ASSERT_TRUE(Visitor::becomes(asksForFile));
            visitor.keys("w Return");
            ASSERT_TRUE(Visitor::becomes([] { return asks() && !asksForFile(); }));
            visitor.keys("Return");
            EXPECT_TRUE(
                Visitor::becomes([&] { return boost::filesystem::exists(visitor.folder() / "w.stp"); }));
        });
        visitor.step("save it", [&] {
            visitor.keys("ctrl+s");
            ASSERT_TRUE(Visitor::becomes(asksForFile));
            visitor.keys("Return");
            EXPECT_TRUE(
                Visitor::becomes([&] { return boost::filesystem::exists(visitor.folder() / "as1.vlra"); }));
        });
        visitor.step("open it again", [&] {
            visitor.keys("ctrl+w");
            ASSERT_TRUE(Visitor::becomes([] { return Vs::DocumentMgr::get()->documents() == 0; }));
            visitor.keys("ctrl+o");
            ASSERT_TRUE(Visitor::becomes(asksForFile));
            visitor.keys("a s 1 Down Down Return");
        });
        expectWork(faces);
    });
}

TEST_F(WalkTest, ByTheMouseAloneNoStepTakesMoreThanThreeClicks)
{
    Visitor::run([&] {
        size_t faces = 0;
        visitor.step("open an assembly", [&] {
            visitor.press(Visitor::button("Open..."));
            visitor.doublePress(Visitor::file("as1.stp"));
            ASSERT_TRUE(Visitor::becomes(isOpen));
        });
        visitor.step("turn it", [&] {
            const GkVector3d before = Visitor::see(direction);
            visitor.drag(
                Visitor::thing(of(L"plate_1")), {-1, 0.1},
                [&] { return before.dotProduct(direction()) < 0.97; }, 3);
            faces = Visitor::see(facesOfBracket);
        });
        visitor.step("look at what fills a hole", [&] {
            visitor.press(Visitor::thing(of(L"bolt_1", Leaf::Component)), 3);
            const QPoint entry = Visitor::entry("Fit Selection");
            EXPECT_TRUE(Visitor::becomes(isMenuTold));
            visitor.press(entry);
        });
        visitor.step("hide it", [&] {
            visitor.press(Visitor::thing(of(L"bolt_1", Leaf::Component)), 3);
            visitor.press(Visitor::entry("Hide"));
        });
        visitor.step("measure a hole", [&] {
            visitor.press(Visitor::widget("MeasureCommand"));
            ASSERT_TRUE(Visitor::becomes([] { return isRunning(L"MeasureCommand"); }));
            visitor.press(Visitor::thing(of(L"l-bracket_1", Leaf::Face, isRound)));
            EXPECT_TRUE(Visitor::becomes([] { return field(L"RadiusInput1") == L"5 mm"; }));
            visitor.press(Visitor::button("Cancel"));
        });
        visitor.step("hide a plate", [&] {
            visitor.press(Visitor::thing(of(L"plate_1", Leaf::Component)), 3);
            visitor.press(Visitor::entry("Hide"));
            EXPECT_TRUE(Visitor::becomes([] { return !component(kPlate)->visible; }));
        });
        visitor.step("round an edge", [&] {
            visitor.press(Visitor::edgeOrFace(of(L"l-bracket_1", Leaf::Edge, isLong)), 3);
            visitor.moveTo(Visitor::entry("Edge"));
            visitor.press(Visitor::entry("Fillet"));
            ASSERT_TRUE(Visitor::becomes([] { return isRunning(L"FilletCommand"); }));
            EXPECT_TRUE(Visitor::becomes([&] { return facesOfBracket() == faces + 1; }));
            EXPECT_TRUE(Visitor::becomes([] { return says(QStringLiteral("Edge of l-bracket_1")); }))
                << "and not how long another edge of the preview is";
            visitor.press(Visitor::button("OK"));
        });
        visitor.step("see all of it again", [&] { visitor.press(Visitor::widget("FitCommand")); });
        visitor.step("put a cylinder on a face", [&] {
            visitor.press(Visitor::widget("CylinderCommand"));
            ASSERT_TRUE(Visitor::becomes([] { return isRunning(L"CylinderCommand"); }));
            visitor.press(Visitor::thing(of(L"l-bracket_1", Leaf::Face, isFlat)));
            visitor.press(Visitor::widget("FitCommand"));
        });
        visitor.step("make it 20 x 40", [&] {
            EXPECT_TRUE(Visitor::becomes(isStill));
            const auto dragTo = [&](const wchar_t* key, int size, const GkVector3d& begin,
                                    const GkVector3d& along) {
                const Arrow grip = Visitor::see([&] { return arrow(begin, along); });
                const bool grows = Visitor::see([&] { return std::stod(field(key)) < size; });
                visitor.drag(grip.shaft, grows ? grip.way : -grip.way,
                             [&] { return field(key) == std::to_wstring(size) + L" mm"; });
            };
            dragTo(L"Height", 40, {0, 0, 1}, {0, 0, 1});
            dragTo(L"Radius", 10, {1, 0, 0.5}, {1, 0, 0});
            visitor.press(Visitor::button("OK"));
            EXPECT_TRUE(
                Visitor::becomes([] { return component(L"Cylinder1") && !isRunning(L"CylinderCommand"); }));
        });
        visitor.step("export it", [&] {
            visitor.press(Visitor::widget("VeloraExportCommand"));
            ASSERT_TRUE(Visitor::becomes(asksForFile));
            visitor.press(Visitor::button("Save"));
            ASSERT_TRUE(Visitor::becomes([] { return asks() && !asksForFile(); }));
            visitor.press(Visitor::button("Export"));
            EXPECT_TRUE(Visitor::becomes(
                [&] { return boost::filesystem::exists(visitor.folder() / "as1 exported.stp"); }));
        });
        visitor.step("save it", [&] {
            visitor.press(Visitor::widget("SaveDocumentCommand"));
            ASSERT_TRUE(Visitor::becomes(asksForFile));
            visitor.press(Visitor::button("Save"));
            EXPECT_TRUE(
                Visitor::becomes([&] { return boost::filesystem::exists(visitor.folder() / "as1.vlra"); }));
        });
        visitor.step("open it again", [&] {
            visitor.press(Visitor::widget("closeTab"));
            ASSERT_TRUE(Visitor::becomes([] { return Vs::DocumentMgr::get()->documents() == 0; }));
            visitor.press(Visitor::button("as1"));
            ASSERT_TRUE(Visitor::becomes(isOpen));
            EXPECT_TRUE(Visitor::becomes(isFramed));
        });
        expectWork(faces);
    });
}

} // namespace
