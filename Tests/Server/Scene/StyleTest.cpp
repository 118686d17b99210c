#include "Server/Body/BodyMesh.h"
#include "Server/Scene/EnvironmentManager.h"
#include "Server/Scene/GraphicsOptionGroup.h"
#include "Server/Scene/NodeChange.h"
#include "Server/Scene/OffscreenRenderer.h"
#include "Server/Scene/Projection.h"
#include "Server/Scene/ViewFragment.h"
#include "Tests/Server/Scene/Shapes.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>

namespace {

using namespace Vs::Scene;
using Rendra::Graphics::BodyNode;
using Vs::Colour;

constexpr uint32_t kWidth = 320;
constexpr uint32_t kHeight = 240;

/// How a style or an environment renders a box, a cylinder and a ball side by side.
class StylePicture : public testing::Test
{
protected:
    void SetUp() override
    {
        options.antiAliasing = false;
        Vs::Status status;
        if (!OffscreenRenderer::get()->render({fragment.get()}, 8, 8, options, image, status))
            GTEST_SKIP() << "NOTICE: no OpenGL to draw with: " << testing::PrintToString(status.toString());
        EnvironmentManager::getEnvManager()->activeEnvironmentID(L"PhotoBooth");
        fragment->renderParams()->groundPlaneEnabled(false);
        fragment->renderParams()->ambientOcclusionEnabled(false);
    }
    void TearDown() override { EnvironmentManager::getEnvManager()->activeEnvironmentID(before); }

    void show(const Shapes::MeshPtr& mesh, const GkVector3d& at, const Colour& colour)
    {
        const auto node = BodyNode::make(mesh, colour);
        NodeChange(node.get()).transform(GkMatrix3d::translation(at));
        NodeChange(fragment->viewFragmentNode()).add(node);
    }
    void showAll()
    {
        show(Shapes::box(40, 40, 40), {-70, -20, -20}, {0.6f, 0.1f, 0.1f, 1});
        show(Shapes::cylinder(20, 40), {0, 0, -20}, {0.5f, 0.5f, 0.5f, 1});
        show(Shapes::ball(22), {55, 0, 0}, {0.1f, 0.4f, 0.1f, 1});
        fragment->camera()->fit(fragment->bounds());
    }
    const Image& draw(int style)
    {
        fragment->renderParams()->visualStyle(style);
        return draw();
    }
    const Image& draw()
    {
        Vs::Status status;
        EXPECT_TRUE(
            OffscreenRenderer::get()->render({fragment.get()}, kWidth, kHeight, options, image, status))
            << testing::PrintToString(status.toString());
        return image;
    }
    const Image& drawIn(const wchar_t* environment)
    {
        EnvironmentManager::getEnvManager()->activeEnvironmentID(environment);
        return draw();
    }
    /// The pixel in which a point of the world is seen.
    const uint8_t* at(const GkPoint3d& world) const
    {
        const GkPoint3d p =
            Projection(*fragment->camera(), kWidth, kHeight, fragment->bounds()).worldToScreen(world);
        return image.pixel(uint32_t(p.x), uint32_t(kHeight - p.y));
    }
    /// The strongest line across the direction of a segment, at that many places along it: 0 for none, 255.
    std::vector<int> inkAlong(const GkPoint3d& from, const GkPoint3d& to, int places) const
    {
        std::vector<int> ink;
        const Projection projection(*fragment->camera(), kWidth, kHeight, fragment->bounds());
        for (int i = 0; i < places; ++i) {
            const GkPoint3d p = projection.worldToScreen(from + (to - from) * (0.1 + 0.8 * i / (places - 1)));
            int strongest = 0;
            for (int dx = -1; dx <= 1; ++dx)
                for (int dy = -1; dy <= 1; ++dy)
                    strongest = std::max<int>(
                        strongest, image.pixel(uint32_t(p.x + dx), uint32_t(kHeight - p.y + dy))[3]);
            ink.push_back(strongest);
        }
        return ink;
    }

    static size_t differences(const Image& a, const Image& b)
    {
        size_t count = 0;
        for (size_t i = 0; i < a.pixels.size(); i += 4)
            count += std::abs(a.pixels[i] - b.pixels[i]) + std::abs(a.pixels[i + 1] - b.pixels[i + 1]) +
                         std::abs(a.pixels[i + 2] - b.pixels[i + 2]) >
                     24;
        return count;
    }

    Vs::StrongRef<ViewFragment> fragment = ViewFragment::make(nullptr);
    ImageOptions options;
    Image image;
    const std::wstring before = EnvironmentManager::getEnvManager()->activeEnvironmentID();
};

TEST_F(StylePicture, NoTwoStylesDrawTheSamePicture)
{
    showAll();
    for (const int projection : {kPerspectiveProjection, kParallelProjection}) {
        fragment->camera()->projection(projection);
        std::vector<Image> pictures;
        for (int style = kShaded; style <= kRealistic; ++style)
            pictures.push_back(draw(style));
        for (size_t i = 0; i < pictures.size(); ++i)
            for (size_t j = i + 1; j < pictures.size(); ++j)
                EXPECT_GT(differences(pictures[i], pictures[j]), 60u) << i << " and " << j;
    }
}

TEST_F(StylePicture, EveryStyleDrawsTheSmallestAndTheFarthestBodiesAsItDrawsOthers)
{
    options.transparentBackground = true;
    const auto covered = [&](double size, const GkVector3d& place, int style, int projection) {
        const auto node = BodyNode::make(Shapes::cylinder(size / 2, size), {0.5f, 0.5f, 0.5f, 1});
        NodeChange(node.get()).transform(GkMatrix3d::translation(place));
        NodeChange(fragment->viewFragmentNode()).add(node);
        fragment->camera()->projection(projection);
        fragment->camera()->fit(fragment->bounds());
        draw(style);
        NodeChange(fragment->viewFragmentNode()).remove(node.get());
        double count = 0;
        for (size_t i = 3; i < image.pixels.size(); i += 4)
            count += image.pixels[i] > 60;
        return count;
    };
    for (const int projection : {kParallelProjection, kPerspectiveProjection})
        for (int style = kShaded; style <= kRealistic; ++style) {
            const double usual = covered(100, {}, style, projection);
            EXPECT_GT(usual, 400) << style;
            EXPECT_NEAR(covered(1e-3, {}, style, projection), usual, usual / 4) << style << ", small";
            EXPECT_NEAR(covered(1e9, {}, style, projection), usual, usual / 4) << style << ", large";
            EXPECT_NEAR(covered(100, {1e9, -1e9, 1e9}, style, projection), usual, usual / 4)
                << style << ", far away";
        }
}

/// Two squares that meet in an edge in the middle, the second one sloped by that much.
Shapes::MeshPtr twoFaces(float slope)
{
    auto mesh = std::make_shared<Vs::BodyMesh>();
    mesh->positions = {-50, 0, -50, 0,  0,          -50, 0,  0,          50, -50, 0, 50,
                       0,   0, -50, 50, slope * 50, -50, 50, slope * 50, 50, 0,   0, 50};
    const float length = std::hypot(slope, 1.0f);
    for (int i = 0; i < 8; ++i)
        mesh->normals.insert(mesh->normals.end(), {i < 4 ? 0 : slope / length, i < 4 ? -1 : -1 / length, 0});
    mesh->triangles = {0, 1, 2, 0, 2, 3, 4, 5, 6, 4, 6, 7};
    mesh->faces = {{0, 2, -1}, {2, 2, -1}};
    mesh->edgePoints = {0, 0, -50, 0, 0, 50};
    mesh->edgeStarts = {0, 2};
    mesh->bounds.add({-50, 0, -50});
    mesh->bounds.add({50, slope * 50.0, 50});
    return mesh;
}

TEST_F(StylePicture, AnEdgeInWhichFacesGoOnSmoothlyIsFaintFullOrLeftOutAsTheOptionSays)
{
    auto& option = GraphicsOptionGroup::get()->tangentEdges;
    const std::wstring usual = option();
    /// The darkest pixel around the middle of the edge.
    const auto ink = [&](const wchar_t* value) {
        option(value);
        draw(kShadedWithVisibleEdges);
        int darkest = 255;
        for (double x = -3; x <= 3; x += 0.5)
            darkest = std::min(darkest, int(at({x, 0, 0})[1]));
        return darkest;
    };
    for (const float slope : {0.0f, 1.0f}) {
        fragment = ViewFragment::make(nullptr);
        fragment->renderParams()->groundPlaneEnabled(false);
        show(twoFaces(slope), {}, {0.6f, 0.6f, 0.6f, 1});
        fragment->camera()->fit(fragment->bounds());
        const int faint = ink(L"faint"), full = ink(L"full"), none = ink(L"none");
        EXPECT_LT(full, 90);
        if (slope > 0) {
            EXPECT_EQ(faint, full) << "an edge as any other";
            EXPECT_EQ(none, full);
        } else {
            EXPECT_GT(faint, full + 30);
            EXPECT_LT(faint, none - 10);
        }
    }
    option(usual);
}

TEST_F(StylePicture, LinesAreAsWideAsTheScreenIsDenseWhateverWayTheyRun)
{
    const auto mesh = std::make_shared<Vs::BodyMesh>();
    mesh->edgePoints = {-50, 0, 0, 50, 0, 0};
    mesh->edgeStarts = {0, 2};
    mesh->bounds.add({-50, -50, -50});
    mesh->bounds.add({50, 50, 50});
    show(mesh, {}, {0.5f, 0.5f, 0.5f, 1});
    options.transparentBackground = true;
    fragment->camera()->projection(kParallelProjection);
    for (const auto& [smooth, fine] : {std::pair(false, false), {true, false}, {true, true}})
        for (const float ratio : {1.0f, 1.5f, 2.0f})
            for (const double slope : {0.0, 0.05, 0.3, 0.7, 1.0}) {
                options.antiAliasing = smooth;
                options.fine = fine;
                options.pixelRatio = ratio;
                fragment->camera()->look({0, 1, 0}, {slope, 0, 1});
                fragment->camera()->fit(fragment->bounds());
                draw(kWireframe);
                constexpr double kOpacity = 0.88;
                double ink = 0;
                for (size_t i = 3; i < image.pixels.size(); i += 4)
                    ink += image.pixels[i] / 255.0 / kOpacity;
                const Projection view(*fragment->camera(), kWidth, kHeight, fragment->bounds());
                const double width = ink * view.pixelSize(1) / 100;
                EXPECT_NEAR(width, 1.15 * double(ratio), 0.1 * double(ratio))
                    << smooth << fine << ", ratio " << ratio << ", slope " << slope;
            }
}

TEST_F(StylePicture, HiddenEdgesAreFainterThanSeenOnesAndDashed)
{
    show(Shapes::box(100, 100, 100), {-50, -50, -50}, {0.6f, 0.6f, 0.6f, 1});
    fragment->camera()->fit(fragment->bounds());
    options.transparentBackground = true;
    // From the front, the right and above: the corner at the low end of all axes but y is the hidden one.
    const GkPoint3d hidden(-50, 50, -50), near(50, -50, 50), low(-50, -50, -50), below(50, -50, -50);
    draw(kWireframeWithHiddenEdges);
    const std::vector<int> dashed = inkAlong(hidden, {50, 50, -50}, 60), seen = inkAlong(near, below, 60);
    const auto isInked = [](int ink) { return ink > 20; };
    EXPECT_EQ(std::count_if(seen.begin(), seen.end(), isInked), 60) << "a seen edge has no gaps";
    const auto inked = std::count_if(dashed.begin(), dashed.end(), isInked);
    EXPECT_GT(inked, 20);
    EXPECT_LT(inked, 58);
    int changes = 0;
    for (size_t i = 1; i < dashed.size(); ++i)
        changes += isInked(dashed[i]) != isInked(dashed[i - 1]);
    EXPECT_GE(changes, 6) << "dashes";
    EXPECT_LT(*std::max_element(dashed.begin(), dashed.end()),
              *std::min_element(seen.begin(), seen.end()) - 40);

    draw(kWireframeWithVisibleEdges);
    for (const GkPoint3d& other : {GkPoint3d(50, 50, -50), GkPoint3d(-50, 50, 50), low}) {
        const std::vector<int> gone = inkAlong(hidden, other, 60);
        EXPECT_LT(*std::max_element(gone.begin() + 6, gone.end() - 6), 20) << "hidden lines are removed";
    }
    draw(kWireframe);
    const std::vector<int> through = inkAlong(hidden, low, 60);
    EXPECT_GT(*std::min_element(through.begin(), through.end()), 100) << "all edges are equal";
}

TEST_F(StylePicture, HiddenEdgesShowThroughShadedFacesOnlyWhereTheyAreAskedFor)
{
    show(Shapes::box(100, 100, 100), {-50, -50, -50}, {0.6f, 0.6f, 0.6f, 1});
    fragment->camera()->fit(fragment->bounds());
    const auto darkness = [&](int style) {
        const Image plain = draw(kShaded);
        const Image lined = draw(style);
        int most = 0;
        for (double along = -30; along <= 30; along += 1) {
            image = plain;
            const int without = at({along, 50, -50})[1];
            image = lined;
            most = std::max(most, without - at({along, 50, -50})[1]);
        }
        return most;
    };
    EXPECT_GT(darkness(kShadedWithHiddenEdges), 25);
    EXPECT_LT(darkness(kShadedWithVisibleEdges), 5);
}

TEST_F(StylePicture, RoundBodiesHaveAnOutlineInWireframesThatFollowsTheView)
{
    show(Shapes::ball(50), {}, {0.5f, 0.5f, 0.5f, 1});
    fragment->camera()->projection(kParallelProjection);
    fragment->camera()->fit(fragment->bounds());
    options.transparentBackground = true;
    for (const int style : {kWireframe, kWireframeWithHiddenEdges, kWireframeWithVisibleEdges})
        for (const GkVector3d& direction : {GkVector3d(0, 1, 0), GkVector3d(-1, 2, -3)}) {
            fragment->camera()->look(direction, {0, 0, 1});
            draw(style);
            const Projection view(*fragment->camera(), kWidth, kHeight, fragment->bounds());
            const double radius = 50 / view.pixelSize(1);
            size_t onCircle = 0, elsewhere = 0;
            for (uint32_t y = 0; y < kHeight; ++y)
                for (uint32_t x = 0; x < kWidth; ++x) {
                    if (image.pixel(x, y)[3] < 60)
                        continue;
                    const double away = std::hypot(x + 0.5 - kWidth / 2.0, y + 0.5 - kHeight / 2.0);
                    ++(std::abs(away - radius) < 2 ? onCircle : elsewhere);
                }
            EXPECT_GT(onCircle, size_t(4 * radius)) << "style " << style;
            EXPECT_LT(elsewhere, onCircle / 20) << "style " << style;
            for (double angle = 0; angle < 6.28; angle += 0.01) {
                int most = 0;
                for (double away = radius - 2; away <= radius + 2; away += 0.1)
                    most =
                        std::max(most, int(image.pixel(uint32_t(kWidth / 2.0 + away * std::cos(angle)),
                                                       uint32_t(kHeight / 2.0 + away * std::sin(angle)))[3]));
                EXPECT_GT(most, 40) << "a gap at " << angle;
            }
        }
}

TEST_F(StylePicture, RoundBodiesHaveAnOutlineOnTheirFacesWhereEdgesAreDrawn)
{
    show(Shapes::ball(50), {}, {0.7f, 0.7f, 0.7f, 1});
    for (const int projection : {kParallelProjection, kPerspectiveProjection}) {
        fragment->camera()->projection(projection);
        fragment->camera()->fit(fragment->bounds());
        const Image plain = draw(kShaded);
        for (const int style : {kShadedWithVisibleEdges, kShadedWithHiddenEdges}) {
            draw(style);
            std::vector<GkPoint2d> darker;
            GkPoint2d middle;
            for (uint32_t y = 0; y < kHeight; ++y)
                for (uint32_t x = 0; x < kWidth; ++x)
                    if (plain.pixel(x, y)[1] - image.pixel(x, y)[1] >= 40) {
                        darker.emplace_back(x, y);
                        middle.x += x;
                        middle.y += y;
                    }
            ASSERT_FALSE(darker.empty()) << style;
            double nearest = 1e9, farthest = 0;
            for (const GkPoint2d& each : darker) {
                const double away = std::hypot(each.x - middle.x / double(darker.size()),
                                               each.y - middle.y / double(darker.size()));
                nearest = std::min(nearest, away);
                farthest = std::max(farthest, away);
            }
            EXPECT_GT(double(darker.size()), 4 * nearest) << style << ", all around";
            EXPECT_LT(farthest - nearest, 5) << style << ", and nowhere else";
        }
    }
}

TEST_F(StylePicture, EveryEnvironmentLightsTheBodiesInItsOwnWay)
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

TEST_F(StylePicture, RealisticLightBelongsToTheModelSoThatGlossStaysInPlaceWhenTheViewerTurns)
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

TEST_F(StylePicture, TheDomesHorizonIsWhereTheCameraSeesIt)
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

TEST_F(StylePicture, WithoutADomeTheBackgroundIsThePlainColourOfTheEnvironment)
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

} // namespace
