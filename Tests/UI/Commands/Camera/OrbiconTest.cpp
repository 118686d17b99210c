// The cube in the corner: what it shows, which mouse events it takes, where it moves the camera.

#include "Server/CommonData/CommonDataAssetSettings.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/AssetAdapter.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/OffscreenRenderer.h"
#include "Server/Scene/Projection.h"
#include "Server/Scene/ViewFragment.h"
#include "Tests/UI/Becomes.h"
#include "Tests/UI/Commands/Navigation.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/View/AutoCamViewFragment.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"

#include <QApplication>
#include <QImage>
#include <QWidget>
#include <QtTest/QTest>

using namespace Vu;
using CommandsTests::stand;

namespace {

AutoCamViewFragment* orbiconOf(const GraphicsView* view)
{
    for (Vs::Scene::ViewFragment* fragment : view->viewFragments())
        if (auto* found = Vs::cast<AutoCamViewFragment>(fragment))
            return found;
    return nullptr;
}

/// Counts what reaches mouse listeners.
class Listener : public MouseEventSite
{
public:
    Listener() { MouseEventSource::get()->subscribe(this); }
    ~Listener() override { MouseEventSource::get()->unsubscribe(this); }
    void mouseMove(MouseEvent*) override { ++events; }
    void mouseDown(MouseEvent*) override { ++events; }
    void mouseUp(MouseEvent*) override { ++events; }
    void mouseDrag(MouseEvent*) override { ++events; }
    void mouseScroll(MouseEvent*) override { ++events; }
    void mouseDoubleClick(MouseEvent*) override { ++events; }
    int events = 0;
};

class OrbiconTest : public CommandsTests::Navigation
{
protected:
    void SetUp() override
    {
        Navigation::SetUp();
        camera()->look({-1, 1.3, -1.1}, {0, 0, 1});
        orbicon()->layOut(canvas()->width(), canvas()->height());
    }
    void TearDown() override
    {
        UIBaseOptionGroup::get()->reset();
        Navigation::TearDown();
    }

    static AutoCamViewFragment* orbicon() { return orbiconOf(view()); }
    struct Pixel
    {
        int x, y;
    };
    /// The position of the middle of a zone, relative to the middle of the canvas.
    static Pixel pixelOf(const GkVector3d& direction)
    {
        const AutoCamViewFragment::Place& place = orbicon()->place();
        const Vs::Scene::Projection projection(*orbicon()->camera(), place.size, place.size);
        // The faces are at 1; edges and corners are cut off.
        const double out[] = {0, 1, 0.87, 0.83};
        const int sides = int(std::lround(direction.lengthSqrd()));
        const GkPoint3d at = projection.worldToScreen(GkPoint3d::kOrigin + direction * out[sides]);
        return {int(std::lround(place.left + at.x)) - canvas()->width() / 2,
                int(std::lround(place.top + place.size - at.y)) - canvas()->height() / 2};
    }
    static std::optional<size_t> highlighted() { return orbicon()->cube()->highlighted(); }
    void clickOn(const GkVector3d& direction)
    {
        const Pixel at = pixelOf(direction);
        click(kLeftButton, at.x, at.y);
    }
    static Vs::Scene::Image picture(uint32_t width = 640, uint32_t height = 400)
    {
        Vs::Scene::Image image;
        Vs::Status status;
        Vs::Scene::ImageOptions options;
        options.fine = false; // As in a canvas.
        EXPECT_TRUE(Vs::Scene::OffscreenRenderer::get()->render(view()->viewFragments(), width, height,
                                                                options, image, status))
            << status.matchingError("");
        return image;
    }
};

} // namespace

TEST_F(OrbiconTest, EachOfItsPlacesIsFoundUnderTheMouseAndLooksAtTheModelFromThere)
{
    for (size_t zone = 0; zone < OrbiconCube::kZones; ++zone) {
        const GkVector3d& direction = OrbiconCube::direction(zone);
        SCOPED_TRACE(std::to_string(direction.x) + " " + std::to_string(direction.y) + " " +
                     std::to_string(direction.z));
        // From a side on which the place is in view, but not in the middle.
        camera()->look(-direction - GkVector3d(0.21, -0.13, 0.17), {0, 0, 1});
        const Pixel at = pixelOf(direction);
        move(at.x, at.y);
        ASSERT_EQ(highlighted(), zone);
        click(kLeftButton, at.x, at.y);
        EXPECT_TRUE(camera()->direction().isEqualTo(-direction.normal(), {1e-9, 1e-9}));
        EXPECT_TRUE(camera()->target().isEqualTo(view()->modelFragment()->bounds().centre(), {5, 1e-9}));
        if (direction.x != 0 || direction.y != 0)
            EXPECT_GT(camera()->screenUp().dotProduct({0, 0, 1}), 0.3);
        else
            EXPECT_NEAR(std::abs(camera()->screenUp().x) + std::abs(camera()->screenUp().y), 1, 1e-9);
    }
}

TEST_F(OrbiconTest, TopAndBottomTurnTheViewAsLittleAsTheyCanAndASecondClickMakesThemUpright)
{
    camera()->look({0, 1, -0.4}, {0, 0, 1}); // Rather from the front.
    clickOn({0, 0, 1});
    EXPECT_TRUE(camera()->screenUp().isEqualTo({0, 1, 0}, {1e-9, 1e-9}));
    camera()->look({-1, 0.1, -0.4}, {0, 0, 1}); // Rather from the right.
    clickOn({0, 0, 1});
    EXPECT_TRUE(camera()->screenUp().isEqualTo({-1, 0, 0}, {1e-9, 1e-9}));
    clickOn({0, 0, 1});
    EXPECT_TRUE(camera()->screenUp().isEqualTo({0, 1, 0}, {1e-9, 1e-9}));
    camera()->look({0, 1, 0.4}, {0, 0, 1});
    clickOn({0, 0, -1});
    EXPECT_TRUE(camera()->screenUp().isEqualTo({0, -1, 0}, {1e-9, 1e-9}));
}

TEST_F(OrbiconTest, ItsSidesAreThoseOfTheModelsOwnUpAndFront)
{
    auto* settings = Vs::cast<Vs::CommonData::CommonDataAssetSettings>(
        activeSession()->asset()->adapter()->assetSettings());
    ASSERT_TRUE(settings->sceneOrientation({0, 1, 0}, {0, 0, 1}));
    orbicon()->lookFrom({0, -1, 0});
    EXPECT_TRUE(camera()->direction().isEqualTo({0, 0, -1}, {1e-9, 1e-9}));
    EXPECT_TRUE(camera()->screenUp().isEqualTo({0, 1, 0}, {1e-9, 1e-9}));
    orbicon()->lookFrom({1, 0, 0});
    EXPECT_TRUE(camera()->direction().isEqualTo({-1, 0, 0}, {1e-9, 1e-9}));
    orbicon()->lookFrom({0, 0, 1});
    EXPECT_TRUE(camera()->direction().isEqualTo({0, -1, 0}, {1e-9, 1e-9}));
}

TEST_F(OrbiconTest, WhatHappensOverItReachesNobodyElse)
{
    const Pixel front = pixelOf({0, -1, 0});
    {
        const Listener listener;
        move(front.x, front.y);
        scroll(120, front.x, front.y);
        click(kRightButton, front.x, front.y);
        click(kMiddleButton, front.x, front.y);
        EXPECT_EQ(activeKey(), L"");
        drag(kLeftButton, front.x, front.y, 0, 0); // Ends over the model.
        EXPECT_EQ(listener.events, 0);
        move(0, 0);
        EXPECT_EQ(listener.events, 1);
    }
    EXPECT_EQ(highlighted(), std::nullopt);
    // Beside the cube, in its square, the mouse belongs to the model.
    const AutoCamViewFragment::Place& place = orbicon()->place();
    const Listener listener;
    click(kLeftButton, int(place.left) + 2 - canvas()->width() / 2,
          int(place.top) + 2 - canvas()->height() / 2);
    EXPECT_EQ(listener.events, 2);
}

TEST_F(OrbiconTest, AReleaseThatIsLostDoesNotKeepTheMouseForEver)
{
    const Pixel front = pixelOf({0, -1, 0});
    press(kLeftButton, front.x, front.y);
    const Listener listener;
    press(kRightButton, 0, 0);
    EXPECT_EQ(listener.events, 0);
    click(kLeftButton, 0, 0);
    EXPECT_EQ(listener.events, 2);
}

TEST_F(OrbiconTest, ADragThatBeganElsewhereGoesOnOverIt)
{
    const Pixel front = pixelOf({0, -1, 0});
    const std::string before = stand(*camera());
    const Listener listener;
    press(kMiddleButton, 0, 0);
    move(front.x, front.y);
    EXPECT_EQ(highlighted(), std::nullopt);
    release(kMiddleButton, front.x, front.y);
    EXPECT_GE(listener.events, 3);
    EXPECT_NE(stand(*camera()), before);
    EXPECT_EQ(activeKey(), L"");
}

TEST_F(OrbiconTest, DraggingItTurnsTheModelAboutItsUp)
{
    const Pixel front = pixelOf({0, -1, 0});
    const double distance = camera()->distance();
    const GkPoint3d target = camera()->target();
    const GkVector3d before = camera()->direction();
    // To the right: the camera moves left around the model.
    drag(kLeftButton, front.x, front.y, front.x + 12, front.y);
    EXPECT_NEAR(camera()->distance(), distance, 1e-9 * distance);
    EXPECT_TRUE(camera()->target().isEqualTo(target, {1e-6, 1e-9}));
    EXPECT_NEAR(camera()->direction().z, before.z, 1e-9);
    EXPECT_GT(before.crossProduct(camera()->direction()).dotProduct({0, 0, -1}), 0.1);
    EXPECT_NEAR(camera()->right().z, 0, 1e-9);
    UIBaseOptionGroup::get()->useContrainedOrbit(false);
    const Pixel again = pixelOf({0, -1, 0});
    drag(kLeftButton, again.x, again.y, again.x + 10, again.y + 10);
    EXPECT_GT(std::abs(camera()->right().z), 0.01);
}

TEST_F(OrbiconTest, AClickWithAShakingHandIsAClickAndOneThatSlidesOffIsNone)
{
    const Pixel front = pixelOf({0, -1, 0});
    press(kLeftButton, front.x, front.y);
    move(front.x + 1, front.y + 1);
    release(kLeftButton, front.x + 1, front.y + 1);
    EXPECT_TRUE(camera()->direction().isEqualTo({0, 1, 0}, {1e-9, 1e-9}));
    const std::string before = stand(*camera());
    press(kRightButton, front.x, front.y);
    move(front.x + 30, front.y);
    release(kRightButton, front.x + 30, front.y);
    EXPECT_EQ(stand(*camera()), before);
}

TEST_F(OrbiconTest, CommandsShowAndHideItInAllViewsAndAHiddenOneTakesNothing)
{
    GraphicsView* const second = activeSession()->createView();
    EXPECT_TRUE(orbicon()->enabled());
    EXPECT_FALSE(applicable(L"ShowOrbiconCommand"));
    answer(L"VuCommands.HideOrbiconCmd");
    EXPECT_FALSE(orbicon()->enabled() || orbiconOf(second)->enabled());
    EXPECT_FALSE(UIBaseOptionGroup::get()->wantToShowOrbicon());
    EXPECT_TRUE(applicable(L"ShowOrbiconCommand"));
    EXPECT_FALSE(applicable(L"HideOrbiconCommand"));
    const Pixel front = pixelOf({0, -1, 0});
    {
        const Listener listener;
        move(front.x, front.y);
        EXPECT_EQ(listener.events, 1);
    }
    answer(L"VuCommands.ShowOrbiconCmd");
    EXPECT_TRUE(orbicon()->enabled() && orbiconOf(second)->enabled());
}

TEST_F(OrbiconTest, OnlyWhatChangesIsDrawnAnew)
{
    uint64_t seen = 0;
    const Pixel front = pixelOf({0, -1, 0});
    move(front.x, front.y);
    orbicon()->update(seen);
    orbicon()->layOut(canvas()->width(), canvas()->height());
    move(front.x + 1, front.y);
    EXPECT_FALSE(orbicon()->update(seen));
    move(0, 0);
    EXPECT_TRUE(orbicon()->update(seen));
    move(10, 10);
    EXPECT_FALSE(orbicon()->update(seen));
    camera()->zoom(2); // the same direction
    EXPECT_FALSE(orbicon()->update(seen));
    camera()->orbit(5, 5);
    EXPECT_TRUE(orbicon()->update(seen));
}

TEST_F(OrbiconTest, ItStandsInTheCornerOfTheCanvasAndInNoPicture)
{
    const uint32_t width = 640, height = 400;
    orbicon()->layOut(width, height);
    const AutoCamViewFragment::Place place = orbicon()->place();
    EXPECT_GT(place.left + place.size, width - 20);
    const auto difference = [&](const Vs::Scene::Image& a, const Vs::Scene::Image& b, bool inside) {
        size_t count = 0;
        for (uint32_t y = 0; y < height; ++y)
            for (uint32_t x = 0; x < width; ++x)
                if ((x >= place.left && y >= place.top && y < place.top + place.size) == inside)
                    count += std::abs(int(a.pixel(x, y)[1]) - int(b.pixel(x, y)[1])) > 12;
        return count;
    };
    const Vs::Scene::Image with = picture(width, height);
    orbicon()->enable(false);
    const Vs::Scene::Image without = picture(width, height);
    orbicon()->enable(true);
    EXPECT_GT(difference(with, without, true), size_t(place.size * place.size / 5));
    EXPECT_EQ(difference(with, without, false), 0u);
    // A zone turns blue under the mouse.
    orbicon()->layOut(canvas()->width(), canvas()->height());
    const Pixel front = pixelOf({0, -1, 0});
    move(front.x, front.y);
    orbicon()->layOut(width, height);
    const Vs::Scene::Image pointed = picture(width, height);
    size_t blue = 0;
    for (uint32_t y = 0; y < place.size; ++y)
        for (auto x = uint32_t(place.left); x < width; ++x)
            blue += pointed.pixel(x, y)[2] > pointed.pixel(x, y)[0] + 60;
    EXPECT_GT(blue, 200u);
    // A captured picture shows only the model.
    const std::wstring shown = scratch(L"shown.png"), hidden = scratch(L"hidden.png");
    const std::wstring size = L" Width=320 Height=200";
    answer(L"Commands.Start SaveAsImageCommand Path=" + shown + size);
    orbicon()->enable(false);
    answer(L"Commands.Start SaveAsImageCommand Path=" + hidden + size);
    EXPECT_EQ(QImage(QString::fromStdWString(shown)), QImage(QString::fromStdWString(hidden)));
}

TEST_F(OrbiconTest, ASmallCanvasHasASmallCubeAndATinyOneNone)
{
    orbicon()->layOut(200, 160);
    EXPECT_LT(orbicon()->place().size, 80);
    EXPECT_GT(orbicon()->place().size, 40);
    orbicon()->layOut(60, 60);
    EXPECT_EQ(orbicon()->place().size, 0);
    orbicon()->layOut(0, 0);
    EXPECT_EQ(orbicon()->place().size, 0);
}

TEST_F(OrbiconTest, TheWindowsOwnEventsReachIt)
{
    Application::get()->needGui();
    QWidget window;
    QWidget* widget = canvas()->widget(&window);
    window.resize(800, 600);
    widget->setGeometry(0, 0, 800, 600);
    window.show();
    const auto place = [&] {
        orbicon()->layOut(widget->width(), widget->height());
        const Pixel at = pixelOf({0, -1, 0});
        return QPoint(at.x + canvas()->width() / 2, at.y + canvas()->height() / 2);
    };
    EXPECT_TRUE(UiTests::becomes([&] {
        QTest::mouseMove(widget, place());
        return highlighted().has_value();
    }));
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(widget, &leave);
    EXPECT_FALSE(highlighted().has_value());
    QTest::mouseClick(widget, Qt::LeftButton, {}, place());
    EXPECT_TRUE(camera()->direction().isEqualTo({0, 1, 0}, {1e-9, 1e-9}));
    delete widget;
}
