// How environments light bodies, what is seen of them behind these, and in the realistic style.

#include "Server/Scene/GraphicsOptionGroup.h"
#include "Tests/Server/Scene/StylePicture.h"

#include <cmath>

namespace {

using namespace Vs::Scene;
using LightPicture = SceneTest::StylePicture;

TEST_F(LightPicture, EveryEnvironmentLightsTheBodiesInItsOwnWay)
{
    showAll();
    options.transparentBackground = true;
    for (const int style : {kShaded, kRealistic}) {
        fragment->renderParams()->visualStyle(style);
        std::vector<Image> pictures;
        for (const Environment& each : EnvironmentManager::getEnvManager()->environments())
            pictures.push_back(drawIn(each.id.c_str()));
        size_t covered = 0;
        for (size_t i = 3; i < image.pixels.size(); i += 4)
            covered += image.pixels[i] == 255;
        for (size_t i = 0; i < pictures.size(); ++i)
            for (size_t j = i + 1; j < pictures.size(); ++j)
                EXPECT_GT(differences(pictures[i], pictures[j]), covered / 10) << i << " and " << j;
    }
    const Image room = drawIn(L"SkyRoom");
    EXPECT_EQ(room.pixels, drawIn(L"SkyRoomPool").pixels);
    EXPECT_NE(room.pixels, drawIn(L"no such room").pixels);
}

TEST_F(LightPicture, RealisticLightBelongsToTheModelSoThatGlossStaysInPlaceWhenTheViewerTurns)
{
    show(Shapes::ball(50, 96), {}, {0.02f, 0.05f, 0.3f, 1});
    fragment->camera()->projection(kParallelProjection);
    fragment->camera()->fit(fragment->bounds());
    EnvironmentManager::getEnvManager()->activeEnvironmentID(L"InfinityPool");
    // The brightest point of the ball, as a direction of the world.
    const auto brightest = [&](int style, const GkVector3d& look) {
        fragment->camera()->look(look, {0, 0, 1});
        draw(style);
        const Projection view(*fragment->camera(), kWidth, kHeight, fragment->bounds());
        const double radius = 50 / view.pixelSize(1);
        int most = -1;
        GkVector3d place;
        for (uint32_t y = 0; y < kHeight; ++y)
            for (uint32_t x = 0; x < kWidth; ++x) {
                const double dx = (x + 0.5 - kWidth / 2.0) / radius, dy = (kHeight / 2.0 - y - 0.5) / radius;
                if (dx * dx + dy * dy > 0.95)
                    continue;
                const uint8_t* p = image.pixel(x, y);
                const int sum = p[0] + p[1] + p[2];
                if (sum > most) {
                    most = sum;
                    place = view.view().inverse() * GkVector3d(dx, dy, std::sqrt(1 - dx * dx - dy * dy));
                }
            }
        return place;
    };
    const GkVector3d lamp = EnvironmentManager::getEnvManager()->activeEnvironment().lamps[0].direction;
    for (const GkVector3d& look : {GkVector3d(-1, -1, -0.6), GkVector3d(-1, 0, -1)}) {
        // A lamp is reflected halfway between it and the viewer.
        const GkVector3d halfway = (lamp - look.normal()).normal();
        EXPECT_LT(brightest(kRealistic, look).angleTo(halfway), 0.25);
    }
    EXPECT_GT(brightest(kShaded, {-1, -1, -0.6}).angleTo(brightest(kShaded, {-1, 0, -1})), 0.3)
        << "elsewhere the lamps go with the viewer";
}

TEST_F(LightPicture, WhatNobodyColouredIsNoDarkMetalAndMetalMirrorsTheEnvironment)
{
    show(Shapes::ball(20, 64), {-30, 0, 0}, {});
    show(Shapes::ball(20, 64), {30, 0, 0}, {0.4f, 0.4f, 0.4f, 1});
    fragment->camera()->projection(kParallelProjection);
    fragment->camera()->look({0, 1, 0}, {0, 0, 1});
    fragment->camera()->fit(fragment->bounds());
    const auto green = [&](double x, double z) { return int(at({x, -10, z})[1]); };
    for (const wchar_t* id : {L"PhotoBooth", L"GreyRoom", L"SkyRoom"}) {
        EnvironmentManager::getEnvManager()->activeEnvironmentID(id);
        draw(kShaded);
        const int usual = green(-30, 0);
        draw(kRealistic);
        EXPECT_GT(green(-30, 0), usual * 0.75);
        EXPECT_LT(green(30, 0), green(-30, 0) - 25) << "a grey one is darker, since it mirrors the horizon";
        EXPECT_GT(green(30, 0), 60) << "but not black";
    }
    // What is above is blue there, and what is below is not.
    const uint8_t *above = at({30, -10, 12}), *below = at({30, -10, -13});
    EXPECT_GT(above[2] - above[0], below[2] - below[0] + 25);

    show(Shapes::box(80, 80, 5), {-40, -40, -30}, {0.847f, 0.847f, 0.847f, 1});
    fragment->camera()->look({-180, 230, -170}, {0, 0, 1});
    fragment->camera()->fit(fragment->bounds());
    EnvironmentManager::getEnvManager()->activeEnvironmentID(L"PhotoBooth");
    draw();
    EXPECT_GT(int(at({30, -35, -25})[1]), 220) << "a light grey plate is paint, and mirrors no dark floor";
}

TEST_F(LightPicture, RealisticBodiesTouchTheFloorOfTheirEnvironmentAndAreAsBrightAsExposed)
{
    show(Shapes::box(40, 40, 40), {-20, -20, 0}, {0.1f, 0.2f, 0.1f, 1});
    fragment->camera()->fit(fragment->bounds());
    fragment->camera()->zoom(0.6);
    const auto floor = [&] { return int(at({0, -22, 0})[1]) - int(at({0, -60, 0})[1]); };
    options.effects = true;
    fragment->renderParams()->groundShadowEnabled(true);
    draw(kShaded);
    EXPECT_NEAR(floor(), 0, 4);
    draw(kRealistic);
    EXPECT_LT(floor(), -20) << "dark where they touch it";
    const int usual = at({0, 0, 40})[1];
    options.dome = false;
    draw();
    EXPECT_NEAR(floor(), 0, 1) << "without an environment there is no floor";
    for (const double stops : {-1.0, 1.0}) {
        GraphicsOptionGroup::get()->exposure(stops);
        draw();
        const double factor = std::pow(at({0, 0, 40})[1] / double(usual), 2.2);
        EXPECT_NEAR(factor, std::exp2(stops), 0.1 * std::exp2(stops));
    }
    GraphicsOptionGroup::get()->reset();
}

TEST_F(LightPicture, FacesAndSkiesHaveAGrainInPlaceOfBands)
{
    show(Shapes::ball(400, 256), {}, {0.2f, 0.3f, 0.3f, 1});
    fragment->camera()->fit(fragment->bounds());
    // One step up and down again, or down and up: bands have none of that.
    const auto grains = [&] {
        int count = 0;
        for (uint32_t y = 0; y < kHeight; ++y)
            for (uint32_t x = 1; x + 1 < kWidth; ++x) {
                const int here = image.pixel(x, y)[1];
                count += image.pixel(x - 1, y)[1] == image.pixel(x + 1, y)[1] &&
                         std::abs(here - image.pixel(x - 1, y)[1]) == 1;
            }
        return count;
    };
    fragment->camera()->zoom(4);
    for (const int style : {kShaded, kRealistic}) {
        draw(style);
        EXPECT_GT(grains(), int(kWidth * kHeight / 20)) << style;
    }
    fragment->camera()->zoom(0.005);
    draw(kShaded);
    EXPECT_GT(grains(), int(kWidth * kHeight / 20)) << "where there is nothing but sky";
}

/// The row of the picture, from the top, at which the middle column changes most between two rows.
int horizonRow(const Image& image)
{
    int row = 0, most = -1;
    for (uint32_t y = 4; y < image.height; ++y) {
        const int change =
            std::abs(image.pixel(image.width / 2, y)[0] - image.pixel(image.width / 2, y - 4)[0]);
        if (change > most) {
            most = change;
            row = int(y);
        }
    }
    return row - 2;
}

TEST_F(LightPicture, TheDomesHorizonIsWhereTheCameraSeesIt)
{
    EnvironmentManager::getEnvManager()->activeEnvironmentID(L"InfinityPool");
    Camera& camera = *fragment->camera();
    for (const int projection : {kPerspectiveProjection, kParallelProjection}) {
        camera.projection(projection);
        camera.look({0, 1, 0}, {0, 0, 1});
        EXPECT_NEAR(horizonRow(draw()), int(kHeight) / 2, 3);
        camera.look(GkVector3d(0, 1, -0.1), {0, 0, 1});
        const int down = horizonRow(draw());
        EXPECT_LT(down, int(kHeight) / 2 - 20) << "looking down, it goes up";
        camera.look(GkVector3d(0, 1, 0.1), {0, 0, 1});
        EXPECT_NEAR(horizonRow(draw()), int(kHeight) - down, 4);
        camera.look({0, 1, -1}, {0, 0, 1});
        const Image deep = draw();
        EXPECT_LT(std::abs(deep.pixel(160, 8)[0] - deep.pixel(160, 12)[0]), 4) << "no horizon down there";
    }
    // Rolled by a quarter turn, it runs vertically.
    camera.look({0, 1, 0}, {1, 0, 0});
    draw();
    EXPECT_GT(std::abs(image.pixel(150, 120)[0] - image.pixel(170, 120)[0]), 20);
    EXPECT_LT(std::abs(image.pixel(150, 20)[0] - image.pixel(150, 220)[0]), 3);
}

TEST_F(LightPicture, WithoutADomeTheBackgroundIsThePlainColourOfTheEnvironment)
{
    for (const Environment& each : EnvironmentManager::getEnvManager()->environments()) {
        options.dome = true;
        const Image dome = drawIn(each.id.c_str());
        options.dome = false;
        const Image plain = draw();
        const uint8_t* first = plain.pixel(0, 0);
        EXPECT_NEAR(first[1], 255 * std::pow(each.plain.g, 1 / 2.2), 1);
        for (size_t i = 0; i < plain.pixels.size(); i += 4)
            ASSERT_TRUE(std::equal(first, first + 4, &plain.pixels[i])) << each.id.c_str();
        bool varies = false;
        for (size_t i = 0; i < dome.pixels.size(); i += 4)
            varies = varies || std::abs(dome.pixels[i + 1] - dome.pixels[1]) > 3;
        EXPECT_TRUE(varies) << testing::PrintToString(each.id);
    }
}

TEST_F(LightPicture, WhiteUncolouredGreyAndBlackBodiesStandOutFromEveryPlainBackground)
{
    options.dome = false;
    const Vs::Colour colours[] = {{1, 1, 1, 1}, {}, {0.216f, 0.216f, 0.216f, 1}, {0.005f, 0.005f, 0.005f, 1}};
    for (int i = 0; i < 4; ++i)
        show(Shapes::box(20, 20, 20), {30.0 * i, 0, 0}, colours[i]);
    fragment->camera()->look({-1, 1.5, -0.8}, {0, 0, 1});
    fragment->camera()->fit(fragment->bounds());
    for (const Environment& each : EnvironmentManager::getEnvManager()->environments())
        for (const int style : {kShaded, kRealistic}) {
            fragment->renderParams()->visualStyle(style);
            drawIn(each.id.c_str());
            const uint8_t* around = image.pixel(0, 0);
            for (int i = 0; i < 4; ++i) {
                int faces = 0;
                for (const GkPoint3d& place : std::initializer_list<GkPoint3d>{
                         GkPoint3d(10, 10, 20), GkPoint3d(10, 0, 10), GkPoint3d(20, 10, 10)}) {
                    const uint8_t* seen = at(place + GkVector3d(30.0 * i, 0, 0));
                    int most = 0;
                    for (int channel = 0; channel < 3; ++channel)
                        most = std::max(most, std::abs(seen[channel] - around[channel]));
                    faces += most >= 10;
                }
                EXPECT_EQ(faces, 3) << testing::PrintToString(each.id) << ", style " << style << ", body "
                                    << i;
            }
        }
}

TEST_F(LightPicture, EdgesOfBlackBodiesAreLight)
{
    show(Shapes::box(40, 40, 40), {-20, -20, -20}, {0.005f, 0.005f, 0.005f, 1});
    fragment->camera()->projection(kParallelProjection);
    fragment->camera()->look({-125, 210, -110}, {0, 0, 1});
    fragment->camera()->fit(fragment->bounds());
    options.transparentBackground = true;
    const auto light = [&](int style) {
        draw(style);
        int count = 0;
        for (size_t i = 0; i < image.pixels.size(); i += 4)
            count += image.pixels[i + 3] == 255 && image.pixels[i + 1] > 85;
        return count;
    };
    EXPECT_EQ(light(kShaded), 0);
    EXPECT_GT(light(kShadedWithVisibleEdges), 150);
}

} // namespace
