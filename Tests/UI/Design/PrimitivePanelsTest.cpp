// The panels of box, cylinder, sphere, cone and torus, filled in by keys and by the mouse.

#include "Server/Body/Body.h"
#include "Server/Body/BodyProperties.h"
#include "Tests/Support/Files.h"
#include "Tests/UI/Commands/InCanvas.h"
#include "UI/Base/Session/SnapManager.h"
#include "UI/Base/View/TransitionMgr.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <cmath>
#include <numbers>

namespace {

constexpr double kPi = std::numbers::pi;

/// Box1 and Box2 are at the origin, Box3 of 3 mm at (10, 0, 0); all are seen from the front.
class PrimitivePanelsTest : public CommandsTests::InCanvas
{
protected:
    /// Through its entry in the menu "Insert".
    void start(const std::wstring& id)
    {
        auto* menu = canvas->window()->findChild<QMenu*>(QStringLiteral("Insert"));
        ASSERT_TRUE(menu);
        Q_EMIT menu->aboutToShow();
        auto* entry = menu->findChild<QAction*>(QString::fromStdWString(id));
        ASSERT_TRUE(entry && entry->isEnabled());
        entry->trigger();
        settle();
        ASSERT_TRUE(panel() && panel()->isVisible());
    }
    QWidget* panel() const { return canvas->window()->findChild<QWidget*>(QStringLiteral("commandPanel")); }
    QPushButton* ok() const { return panel()->findChild<QPushButton*>(QStringLiteral("panelOk")); }
    std::string message() const
    {
        const auto* label = panel()->findChild<QLabel*>(QStringLiteral("inputMessage"));
        return label->isVisible() ? label->text().toStdString() : std::string();
    }
    QLineEdit* line(const char* input) const
    {
        return panel()->findChild<QWidget*>(QString::fromLatin1(input))->findChild<QLineEdit*>();
    }
    static void key(Qt::Key key)
    {
        QTest::keyClick(QApplication::focusWidget(), key);
        settle();
    }
    static void write(const char* text)
    {
        QTest::keyClicks(QApplication::focusWidget(), QString::fromUtf8(text));
        settle();
    }
    void enter(const char* input, const char* text)
    {
        line(input)->setFocus();
        line(input)->selectAll();
        write(text);
        key(Qt::Key_Tab);
    }

    static const Vs::Component* last() { return asset()->components()->children.back().get(); }
    static double volume()
    {
        Vs::Status status;
        const auto measured = Vs::bodyProperties(*last()->body, status);
        return measured ? measured->volume : 0;
    }
    static size_t parts() { return asset()->components()->children.size(); }
    static GkPoint3d origin() { return last()->placement * GkPoint3d(); }
    static GkVector3d direction() { return last()->placement * GkVector3d(0, 0, 1); }

    QPoint seen(const GkPoint3d& place) const
    {
        const Vs::Scene::Projection projection(*camera(), canvas->width(), canvas->height());
        const GkPoint3d shown = projection.worldToScreen(place);
        return {int(std::lround(shown.x)), int(std::lround(canvas->height() - shown.y))};
    }
    void drag(const QPoint& from, const QPoint& to)
    {
        QTest::mouseMove(canvas, from);
        settle();
        QTest::mousePress(canvas, Qt::LeftButton, {}, from);
        QTest::mouseMove(canvas, (from + to) / 2);
        QTest::mouseMove(canvas, to);
        QTest::mouseRelease(canvas, Qt::LeftButton, {}, to);
        settle();
    }
};

TEST_F(PrimitivePanelsTest, KeysAloneMakeAPartThatIsSelectedAndRecordedAsOneLine)
{
    answer(L"Transcripting.Start \"" + scratch(L"panel.txt") + L'"');
    const unsigned before = steps();
    start(L"CylinderCommand");
    EXPECT_EQ(parts(), 4u) << "it shows at once";
    write("2 mm");
    key(Qt::Key_Tab);
    write("1/2 in");
    key(Qt::Key_Tab);
    EXPECT_NEAR(volume(), kPi * 4 * 12.7, 1e-6);
    enter("X", "-5");
    EXPECT_TRUE(origin().isEqualTo({-5, 0, 0}));
    key(Qt::Key_Return);
    EXPECT_FALSE(panel()->isVisible());
    EXPECT_EQ(steps(), before + 1);
    EXPECT_EQ(selectedComponents(), CommandsTests::Texts{L"Cylinder1:1"});
    answer(L"Transcripting.Stop");
    const std::string recorded = TestSupport::contentOf(scratch(L"panel.txt"));
    EXPECT_NE(recorded.find("Design.Cylinder 2 12.7 -5,0,0\n"), std::string::npos) << recorded;
    EXPECT_NE(recorded.find("Selection.Select Cylinder1"), std::string::npos) << recorded;
    EXPECT_EQ(recorded.find("Commands."), std::string::npos) << recorded;
    start(L"BoxCommand");
    key(Qt::Key_Escape);
    EXPECT_EQ(parts(), 4u);
    EXPECT_EQ(steps(), before + 1);
}

TEST_F(PrimitivePanelsTest, OnAFaceAPartStandsAlongItsNormalAndFollowsTheHandles)
{
    Vu::Inference::SnapManager::get()->enableDistanceSnapping(false);
    start(L"CylinderCommand");
    enter("Radius", "3");
    enter("Height", "2");
    clickAt(placeOf(L"Box3"));
    EXPECT_TRUE(origin().isEqualTo({11.5, 0, 1.5})) << origin().x << ' ' << origin().y << ' ' << origin().z;
    EXPECT_TRUE(direction().isEqualTo({0, -1, 0}));
    // The arrow of the radius lies across the view.
    const Vs::Scene::Projection projection(*camera(), canvas->width(), canvas->height());
    const double pixel = projection.pixelSize(camera()->distance());
    const GkPoint3d tip{11.5 + 3 + 70 * pixel, -1, 1.5};
    drag(seen(tip), seen(tip + GkVector3d(2, 0, 0)));
    EXPECT_NEAR(line("Radius")->text().split(QLatin1Char(' ')).value(0).toDouble(), 5, 0.2);
    EXPECT_TRUE(origin().isEqualTo({11.5, 0, 1.5}));
    // Nothing can stand on what is being created.
    clickAt(seen({11.5 + 4, -2, 1.5}));
    EXPECT_TRUE(origin().isEqualTo({11.5, 0, 1.5}));
    key(Qt::Key_Return);
    EXPECT_EQ(parts(), 4u);
    Vu::Inference::SnapManager::get()->enableDistanceSnapping(true);

    // The initial selection is the face; a sphere lies on it, and a box stands in its middle.
    select({L"Box3/Face1"});
    const std::wstring middle = answer(L"Measure.Position Box3/Face1");
    start(L"BoxCommand");
    EXPECT_NE(panel()->findChild<QPushButton*>(QStringLiteral("inputSelection"))->text().indexOf("Box3"), -1);
    for (const char* size : {"Dx", "Dy", "Dz"})
        enter(size, "1");
    key(Qt::Key_Return);
    EXPECT_NEAR(volume(), 1, 1e-9);
    BBox bounds;
    const Vs::LogicalSelection made(asset(), last()->id, Vs::StrongRef<Vs::Selection>());
    ASSERT_TRUE(made.calculateBounds(*asset(), bounds));
    EXPECT_NEAR((bounds.centre() + direction() * -0.5).distanceTo({10, 1.5, 1.5}), 0, 1e-6) << middle;
}

TEST_F(PrimitivePanelsTest, SizesThatMakeNoSenseAreToldAndKeepOkGrey)
{
    start(L"BoxCommand");
    const std::pair<const char*, const char*> kWrong[] = {
        {"0", "Length: The value must be 0.0001 mm or more."},
        {"1e9", "Length: The value must be 10000000 mm or less."},
        {"1/0", "Length: "},
        {"twelve", "Length: "}};
    for (const auto& [text, told] : kWrong) {
        enter("Dx", "100");
        EXPECT_EQ(parts(), 4u) << "the value from before shows again";
        enter("Dx", text);
        EXPECT_EQ(message().rfind(told, 0), 0u) << message();
        EXPECT_FALSE(ok()->isEnabled()) << text;
        key(Qt::Key_Return);
        EXPECT_TRUE(panel()->isVisible()) << text;
        EXPECT_EQ(parts(), 3u) << "no preview of what was there before: " << text;
    }
    enter("Dx", "7");
    EXPECT_EQ(message(), "");
    EXPECT_TRUE(ok()->isEnabled());
    EXPECT_EQ(parts(), 4u);
    key(Qt::Key_Escape);

    start(L"TorusCommand");
    enter("TubeRadius", "60");
    EXPECT_EQ(message(), "The radius of the tube must be less than that of the ring.");
    EXPECT_FALSE(ok()->isEnabled());
    key(Qt::Key_Escape);
    start(L"ConeCommand");
    enter("Radius", "0");
    EXPECT_EQ(message(), "A cone has a radius at its base, at its top, or both.");
    enter("TopRadius", "2");
    EXPECT_EQ(message(), "");
    key(Qt::Key_Escape);
    EXPECT_EQ(parts(), 3u);
}

TEST_F(PrimitivePanelsTest, TheFirstSizesSuitWhatTheViewShows)
{
    const auto length = [&](double shown) {
        camera()->fit({GkPoint3d(), GkPoint3d(shown, shown, shown)});
        start(L"BoxCommand");
        const BBox box = last()->body->mesh()->bounds;
        key(Qt::Key_Escape);
        return box.high().x - box.low().x;
    };
    const double small = length(4);
    EXPECT_GT(small, 0.4);
    EXPECT_LT(small, 4);
    EXPECT_NEAR(length(400), 100 * small, 1e-6);
}

TEST_F(PrimitivePanelsTest, ThePanelComesUpWhereItDoesNotHideTheNewPart)
{
    const auto isAtRight = [&] {
        const QPoint middle = canvas->mapTo(canvas->window(), canvas->rect().center());
        return panel()->geometry().center().x() > middle.x();
    };
    start(L"BoxCommand");
    EXPECT_TRUE(isAtRight()) << "the origin is on the left";
    key(Qt::Key_Escape);
    select({L"Box3/Face1"});
    start(L"BoxCommand");
    EXPECT_FALSE(isAtRight());
    key(Qt::Key_Escape);
}

TEST_F(PrimitivePanelsTest, TheViewMovesOnlyIfTheNewPartIsNotToBeSeenThere)
{
    const auto make = [&](const char* x) {
        start(L"SphereCommand");
        enter("Radius", "1");
        enter("X", x);
        const GkPoint3d before = camera()->target();
        key(Qt::Key_Return);
        settle();
        EXPECT_TRUE(UiTests::becomes([] { return !Vu::TransitionMgr::get()->playing(); }));
        return camera()->target().distanceTo(before);
    };
    EXPECT_EQ(make("5"), 0);
    EXPECT_GT(make("4000"), 3000);
    EXPECT_TRUE(canvas->rect().contains(seen({4000, 0, 0})));
    EXPECT_EQ(selectedComponents(), CommandsTests::Texts{L"Sphere2:1"});
}

} // namespace
