#include "Server/Scene/NodeChange.h"
#include "Server/Scene/OffscreenRenderer.h"
#include "Server/Scene/Projection.h"
#include "Server/Scene/ViewFragment.h"
#include "Tests/Server/Geometry/Near.h"
#include "Tests/Server/Scene/Meshes.h"

#include <cstdlib>
#include <set>

namespace {

using Rendra::Graphics::BodyNode;
using Rendra::Graphics::GroupNode;
using Vs::Colour;
using Vs::Scene::Image;
using Vs::Scene::ImageOptions;
using Vs::Scene::NodeChange;
using Vs::Scene::OffscreenRenderer;
using Vs::Scene::ViewFragment;

constexpr uint32_t kWidth = 320;
constexpr uint32_t kHeight = 240;
const Colour kRed{0.8f, 0.02f, 0.02f, 1};
const Colour kGreen{0.02f, 0.7f, 0.02f, 1};
const Colour kBlue{0.02f, 0.05f, 0.8f, 1};

struct Pixel
{
    int r, g, b, a;
};

void PrintTo(const Pixel& p, std::ostream* out)
{
    *out << "rgba(" << p.r << ", " << p.g << ", " << p.b << ", " << p.a << ')';
}

bool isMostly(const Pixel& p, int Pixel::*channel)
{
    int rest = 0;
    for (int Pixel::*other : {&Pixel::r, &Pixel::g, &Pixel::b})
        if (other != channel)
            rest = std::max(rest, p.*other);
    return p.*channel > rest + 40;
}

/// A fragment seen along +Y, Z up, in parallel projection: 1 mm is one pixel, the origin is in the middle.
class Picture : public testing::Test
{
protected:
    void SetUp() override
    {
        Vs::Status status;
        if (!OffscreenRenderer::get()->render({fragment.get()}, 8, 8, options, image, status))
            GTEST_SKIP() << "NOTICE: no OpenGL to draw with: " << testing::PrintToString(status.toString());
        Vs::Scene::Camera& camera = *fragment->camera();
        camera.projection(Vs::Scene::kParallelProjection);
        camera.position({0, -1000, 0});
        camera.target({0, 0, 0});
        camera.up({0, 0, 1});
        camera.extentsWidth(kWidth);
        camera.extentsHeight(kHeight);
        fragment->renderParams()->visualStyle(Vs::Scene::kShaded);
        fragment->renderParams()->groundShadowEnabled(false);
        fragment->renderParams()->groundPlaneEnabled(false);
    }

    Vs::StrongRef<BodyNode> add(std::shared_ptr<const Vs::BodyMesh> mesh, const Colour& colour,
                                const GkPoint3d& place = {})
    {
        const auto node = BodyNode::make(std::move(mesh), colour);
        NodeChange(node.get()).transform(GkMatrix3d::translation(place.asVector()));
        NodeChange(fragment->viewFragmentNode()).add(node);
        return node;
    }
    void draw(uint32_t width = kWidth, uint32_t height = kHeight)
    {
        Vs::Status status;
        ASSERT_TRUE(OffscreenRenderer::get()->render({fragment.get()}, width, height, options, image, status))
            << testing::PrintToString(status.toString());
        ASSERT_EQ(image.width, width);
        ASSERT_EQ(image.height, height);
        ASSERT_EQ(image.pixels.size(), size_t(width) * height * 4);
    }
    /// The pixel at a place given in mm from the middle of the picture, z upwards.
    Pixel at(double x, double z) const
    {
        const auto column = static_cast<uint32_t>(image.width / 2.0 + x * image.width / kWidth);
        const auto row = static_cast<uint32_t>(image.height / 2.0 - z * image.height / kHeight);
        const uint8_t* p = image.pixel(column, row);
        return {p[0], p[1], p[2], p[3]};
    }
    /// How many pixels the scene covers: those that aren't transparent.
    size_t covered()
    {
        options.transparentBackground = true;
        draw();
        size_t count = 0;
        for (size_t i = 3; i < image.pixels.size(); i += 4)
            count += image.pixels[i] > 127;
        return count;
    }

    Vs::StrongRef<ViewFragment> fragment = ViewFragment::make(nullptr);
    ImageOptions options;
    Image image;
};

TEST_F(Picture, ABodyHasItsColourAndStandsWhereItsTransformPutsIt)
{
    add(SceneTest::boxMesh(40, 40, 40), kRed, {-100, 0, 60});
    add(SceneTest::boxMesh(40, 40, 40), kBlue, {100, 0, -60});
    draw();
    EXPECT_TRUE(isMostly(at(-100, 60), &Pixel::r)) << testing::PrintToString(at(-100, 60));
    EXPECT_TRUE(isMostly(at(100, -60), &Pixel::b)) << testing::PrintToString(at(100, -60));
    for (const auto& [x, z] :
         {std::pair(0.0, 0.0), {100.0, 60.0}, {-100.0, -60.0}, {-75.0, 60.0}, {-100.0, 85.0}})
        EXPECT_FALSE(isMostly(at(x, z), &Pixel::r) || isMostly(at(x, z), &Pixel::b)) << x << ", " << z;
}

TEST_F(Picture, CoversAsManyPixelsAsTheBodyIsLarge)
{
    add(SceneTest::boxMesh(100, 10, 60), kGreen);
    EXPECT_NEAR(double(covered()), 100 * 60, 100);
    fragment->camera()->zoom(2);
    EXPECT_NEAR(double(covered()), 200 * 120, 300);
}

TEST_F(Picture, AFaceWithAColourOfItsOwnKeepsItBesideTheBodysColour)
{
    Vs::BodyMesh mesh = SceneTest::box(80, 80, 80);
    mesh.colours = {kGreen, kBlue};
    mesh.faces[2].colour = 0; // the face towards the viewer
    mesh.faces[5].colour = 1; // the top
    add(std::make_shared<const Vs::BodyMesh>(mesh), kRed);
    draw();
    EXPECT_TRUE(isMostly(at(0, 0), &Pixel::g)) << testing::PrintToString(at(0, 0));
    fragment->camera()->position({0, -1000, 1000});
    draw();
    EXPECT_TRUE(isMostly(at(0, 40), &Pixel::b)) << "the top: " << testing::PrintToString(at(0, 40));
    fragment->camera()->position({1000, 0, 0});
    draw();
    EXPECT_TRUE(isMostly(at(0, 0), &Pixel::r)) << "the side has the body's colour";
}

TEST_F(Picture, AColourOfAGroupHoldsForTheBodiesBelowThatHaveNone)
{
    const auto group = GroupNode::make();
    const auto left = BodyNode::make(SceneTest::boxMesh(40, 40, 40), kRed);
    const auto right = BodyNode::make(SceneTest::boxMesh(40, 40, 40), kRed);
    NodeChange(left.get()).transform(GkMatrix3d::translation({-60, 0, 0}));
    NodeChange(right.get()).transform(GkMatrix3d::translation({60, 0, 0})).colour(kBlue);
    NodeChange(group.get()).add(left).add(right).colour(kGreen);
    NodeChange(fragment->viewFragmentNode()).add(group);
    draw();
    EXPECT_TRUE(isMostly(at(-60, 0), &Pixel::g));
    EXPECT_TRUE(isMostly(at(60, 0), &Pixel::b));
    NodeChange(group.get()).colour(std::nullopt);
    draw();
    EXPECT_TRUE(isMostly(at(-60, 0), &Pixel::r));
    EXPECT_TRUE(isMostly(at(60, 0), &Pixel::b));
}

TEST_F(Picture, WhatIsNearerHidesWhatIsBehind)
{
    const auto front = add(SceneTest::boxMesh(40, 10, 40), kRed, {0, -50, 0});
    add(SceneTest::boxMesh(120, 10, 120), kBlue, {0, 50, 0});
    draw();
    EXPECT_TRUE(isMostly(at(0, 0), &Pixel::r));
    EXPECT_TRUE(isMostly(at(40, 0), &Pixel::b));
    NodeChange(front.get()).visible(false);
    draw();
    EXPECT_TRUE(isMostly(at(0, 0), &Pixel::b)) << "and a hidden body hides nothing";
}

TEST_F(Picture, AnOpenShellIsSeenFromInsideAndAMirroredBodyFromOutside)
{
    Vs::BodyMesh shell = SceneTest::box(100, 100, 100);
    // No front: the faces behind it are two triangles earlier.
    shell.triangles.erase(shell.triangles.begin() + 2 * 6, shell.triangles.begin() + 3 * 6);
    shell.faces.erase(shell.faces.begin() + 2);
    for (size_t i = 2; i < shell.faces.size(); ++i)
        shell.faces[i].firstTriangle -= 2;
    add(std::make_shared<const Vs::BodyMesh>(shell), kRed, {-80, 0, 0});

    GkMatrix3d mirror = GkMatrix3d::translation({80, 0, 0});
    mirror.entry[1][1] = -1;
    Vs::BodyMesh painted = SceneTest::box(100, 100, 100);
    painted.colours = {kGreen};
    painted.faces[3].colour = 0; // behind, and so in front in the mirror
    const auto mirrored = add(std::make_shared<const Vs::BodyMesh>(painted), kBlue);
    NodeChange(mirrored.get()).transform(mirror);
    draw();
    EXPECT_TRUE(isMostly(at(-80, 0), &Pixel::r)) << "the inner side of the back";
    EXPECT_TRUE(isMostly(at(80, 0), &Pixel::g)) << testing::PrintToString(at(80, 0));

    // No longer mirrored, it shows its own front side.
    mirror.entry[1][1] = 1;
    NodeChange(mirrored.get()).transform(mirror);
    draw();
    EXPECT_TRUE(isMostly(at(80, 0), &Pixel::b)) << testing::PrintToString(at(80, 0));
}

TEST_F(Picture, ABodyWhoseTrianglesLookInwardsIsStillSolid)
{
    Vs::BodyMesh mesh = SceneTest::box(100, 100, 100);
    for (size_t i = 0; i < mesh.triangles.size(); i += 3)
        std::swap(mesh.triangles[i], mesh.triangles[i + 1]);
    mesh.colours = {kGreen};
    mesh.faces[2].colour = 0; // the face towards the viewer
    add(std::make_shared<const Vs::BodyMesh>(mesh), kRed);
    draw();
    EXPECT_TRUE(isMostly(at(0, 0), &Pixel::g)) << testing::PrintToString(at(0, 0));
}

TEST_F(Picture, ATransparentBodyShowsWhatIsBehindIt)
{
    Colour glass = kRed;
    glass.a = 0.4f;
    add(SceneTest::boxMesh(60, 10, 60), glass, {0, -50, 0});
    add(SceneTest::boxMesh(30, 10, 120), kBlue, {0, 50, 0});
    draw();
    const Pixel through = at(0, 0), beside = at(24, 0), plain = at(0, 50);
    EXPECT_TRUE(isMostly(plain, &Pixel::b)) << testing::PrintToString(plain);
    EXPECT_GT(through.r, plain.r + 20) << testing::PrintToString(through);
    EXPECT_GT(through.b, through.g + 20) << testing::PrintToString(through);
    EXPECT_GT(beside.r, beside.b) << testing::PrintToString(beside);
}

TEST_F(Picture, EdgesAreDrawnOnTheSidesThatAreSeenAndNotThroughTheBody)
{
    add(SceneTest::boxMesh(100, 100, 100), Colour{0.7f, 0.7f, 0.7f, 1});
    // From the front and above, so that an edge crosses the middle of what is visible and one behind it is
    // hidden.
    fragment->camera()->position({0, -1000, 1000});
    draw();
    const auto darkest = [&](double from, double to) {
        int least = 255;
        for (double z = from; z <= to; z += 0.5)
            least = std::min(least, at(10, z).g);
        return least;
    };
    const int shaded = darkest(-5, 5);
    fragment->renderParams()->visualStyle(Vs::Scene::kShadedWithVisibleEdges);
    draw();
    EXPECT_LT(darkest(-5, 5), shaded - 50) << "the edge between front and top";
    // The lower edge at the back would show here if the body didn't hide it.
    EXPECT_GT(darkest(-40, -10), shaded / 2);
    EXPECT_GT(darkest(10, 40), shaded / 2);
}

TEST_F(Picture, AWireframeLeavesTheFacesOut)
{
    add(SceneTest::boxMesh(100, 100, 100), kRed);
    const size_t solid = covered();
    fragment->renderParams()->visualStyle(Vs::Scene::kWireframe);
    const size_t wires = covered();
    EXPECT_GT(wires, 50u);
    EXPECT_LT(wires, solid / 4);
}

TEST_F(Picture, FacesDifferInBrightnessSoThatAShapeIsSeen)
{
    add(SceneTest::boxMesh(100, 100, 100), Colour{0.5f, 0.5f, 0.5f, 1});
    Vs::Scene::Camera& camera = *fragment->camera();
    camera.look({-1, 1, -1}, {0, 0, 1});
    camera.fit(fragment->bounds());
    draw();
    const Vs::Scene::Projection view(camera, kWidth, kHeight);
    const auto brightness = [&](const GkPoint3d& world) {
        const GkPoint3d p = view.worldToScreen(world);
        return int(image.pixel(uint32_t(p.x), uint32_t(kHeight - p.y))[1]);
    };
    const int front = brightness({0, -50, 0}), side = brightness({50, 0, 0}), top = brightness({0, 0, 50});
    EXPECT_GT(std::abs(front - side), 8);
    EXPECT_GT(std::abs(front - top), 8);
    EXPECT_GT(std::abs(side - top), 8);
    EXPECT_GT(std::min({front, side, top}), 60) << "no side is black";
    EXPECT_LT(std::max({front, side, top}), 252) << "and none is burnt out";
}

TEST_F(Picture, ABackgroundIsThereUnlessItIsToBeTransparent)
{
    add(SceneTest::boxMesh(40, 40, 40), kRed);
    draw();
    EXPECT_EQ(at(-150, 100).a, 255);
    EXPECT_GT(at(-150, -100).g, 128) << "light";
    options.transparentBackground = true;
    draw();
    EXPECT_EQ(at(-150, 100).a, 0);
    EXPECT_EQ(at(0, 0).a, 255);
    EXPECT_TRUE(isMostly(at(0, 0), &Pixel::r));
}

TEST_F(Picture, AnEmptySceneIsNothingButBackground)
{
    options.transparentBackground = true;
    draw();
    for (size_t i = 3; i < image.pixels.size(); i += 4)
        ASSERT_EQ(image.pixels[i], 0);
}

TEST_F(Picture, SmoothEdgesHaveTonesBetweenBodyAndBackground)
{
    const auto node = add(SceneTest::boxMesh(100, 10, 100), kRed);
    NodeChange(node.get()).transform(GkMatrix3d::rotation(0.3, {0, 1, 0}));
    options.transparentBackground = true;
    std::set<uint8_t> tones;
    const auto between = [&] {
        draw();
        tones.clear();
        size_t count = 0;
        for (size_t i = 3; i < image.pixels.size(); i += 4) {
            count += image.pixels[i] > 10 && image.pixels[i] < 245;
            tones.insert(image.pixels[i]);
        }
        return count;
    };
    options.antiAliasing = true;
    EXPECT_GT(between(), 100u);
    const size_t fine = tones.size();
    options.fine = false;
    EXPECT_GT(between(), 100u);
    EXPECT_GE(fine, 2 * tones.size() - 1) << "a picture that is kept has more samples than a canvas";
    options.antiAliasing = false;
    EXPECT_EQ(between(), 0u);
}

TEST_F(Picture, EveryChangeShowsInTheNextPicture)
{
    const auto node = add(SceneTest::boxMesh(40, 40, 40), kRed, {-60, 0, 0});
    add(SceneTest::boxMesh(40, 40, 40), kBlue, {60, 0, 0});
    draw();
    ASSERT_TRUE(isMostly(at(-60, 0), &Pixel::r));

    NodeChange(node.get()).transform(GkMatrix3d::translation({-60, 0, 70}));
    draw();
    EXPECT_FALSE(isMostly(at(-60, 0), &Pixel::r));
    EXPECT_TRUE(isMostly(at(-60, 70), &Pixel::r));

    NodeChange(node.get()).bodyColour(kGreen);
    draw();
    EXPECT_TRUE(isMostly(at(-60, 70), &Pixel::g));

    NodeChange(node.get()).mesh(SceneTest::boxMesh(10, 10, 10));
    draw();
    EXPECT_FALSE(isMostly(at(-75, 70), &Pixel::g));
    EXPECT_TRUE(isMostly(at(-60, 70), &Pixel::g));

    NodeChange(node.get()).highlight(Rendra::Graphics::Highlight::Selected);
    const Pixel before = at(-60, 70);
    draw();
    const Pixel marked = at(-60, 70);
    EXPECT_GT(std::abs(marked.r - before.r) + std::abs(marked.g - before.g) + std::abs(marked.b - before.b),
              60);

    NodeChange(fragment->viewFragmentNode()).remove(node.get());
    draw();
    EXPECT_FALSE(isMostly(at(-60, 70), &Pixel::g));
    EXPECT_TRUE(isMostly(at(60, 0), &Pixel::b)) << "all that time the other one stays";

    add(SceneTest::boxMesh(20, 20, 20), kGreen, {0, 0, -70});
    draw();
    EXPECT_TRUE(isMostly(at(0, -70), &Pixel::g));
}

TEST_F(Picture, ManyBodiesOfOneMeshAreEachDrawnOnceWhereTheyStand)
{
    const auto mesh = SceneTest::boxMesh(4, 4, 4);
    for (int i = 0; i < 30; ++i)
        for (int j = 0; j < 20; ++j)
            add(mesh, (i + j) % 2 ? kRed : kBlue, {i * 10.0 - 145, 0, j * 10.0 - 95});
    EXPECT_NEAR(double(covered()), 30 * 20 * 16, 30 * 20 * 3);
    EXPECT_TRUE(isMostly(at(-145, -95), &Pixel::b));
    EXPECT_TRUE(isMostly(at(-135, -95), &Pixel::r));
    EXPECT_TRUE(isMostly(at(145, 95), &Pixel::b));
    // Most of them outside: what is left is still correct.
    fragment->camera()->dolly({290, 0, 0});
    EXPECT_NEAR(double(covered()), 2 * 20 * 16, 2 * 20 * 4);
}

TEST_F(Picture, AFittedSceneIsWholeAndInTheMiddleInPicturesOfEveryShape)
{
    add(SceneTest::boxMesh(300, 20, 40), kRed, {1000, 500, -200});
    Vs::Scene::Camera& camera = *fragment->camera();
    options.transparentBackground = true;
    for (const int projection : {Vs::Scene::kParallelProjection, Vs::Scene::kPerspectiveProjection})
        for (const auto& [width, height] : {std::pair(320u, 180u), {150u, 150u}, {90u, 260u}}) {
            SCOPED_TRACE(testing::Message() << width << " x " << height << ", projection " << projection);
            camera.projection(projection);
            camera.look({-1, 1, -1}, {0, 0, 1});
            camera.fit(fragment->bounds());
            draw(width, height);
            uint32_t left = width, right = 0, top = height, bottom = 0;
            for (uint32_t y = 0; y < height; ++y)
                for (uint32_t x = 0; x < width; ++x)
                    if (image.pixel(x, y)[3] > 127) {
                        left = std::min(left, x), right = std::max(right, x);
                        top = std::min(top, y), bottom = std::max(bottom, y);
                    }
            ASSERT_LT(left, right);
            EXPECT_GT(left, 0u);
            EXPECT_GT(top, 0u);
            EXPECT_LT(right, width - 1);
            EXPECT_LT(bottom, height - 1);
            EXPECT_NEAR(left + right, width - 1, width * 0.04);
            EXPECT_NEAR(top + bottom, height - 1, height * 0.04);
            EXPECT_GT(std::max(double(right - left) / width, double(bottom - top) / height), 0.85);
        }
}

TEST_F(Picture, ALargePictureOfManyTilesHasNoSeams)
{
    add(SceneTest::boxMesh(280, 20, 200), kRed);
    fragment->camera()->extentsWidth(kWidth);
    // Wider and higher than one tile.
    constexpr uint32_t kLarge = 4200;
    options.antiAliasing = false;
    draw(kLarge, kLarge * 3 / 4);
    // One plain face and one plain background: along a row and a column the colour must not jump.
    const auto expectEven = [&](double x0, double z0, double x1, double z1) {
        Pixel last = at(x0, z0);
        for (double part = 0; part <= 1; part += 0.0002) {
            const Pixel next = at(x0 + (x1 - x0) * part, z0 + (z1 - z0) * part);
            ASSERT_LE(std::abs(next.r - last.r), 2) << "at " << part;
            ASSERT_LE(std::abs(next.g - last.g), 2) << "at " << part;
            last = next;
        }
    };
    expectEven(-138, 3, 138, 3);
    expectEven(7, -98, 7, 98);
    expectEven(-158, -118, -158, 118);
    EXPECT_TRUE(isMostly(at(-139, 99), &Pixel::r));
    EXPECT_FALSE(isMostly(at(-141, 99), &Pixel::r));
    EXPECT_TRUE(isMostly(at(139, -99), &Pixel::r));
    EXPECT_FALSE(isMostly(at(139, -101), &Pixel::r));
}

TEST_F(Picture, ASizeOutOfRangeIsRefusedWithAMessage)
{
    for (const auto& [width, height] :
         {std::pair(0u, 100u), {100u, 0u}, {OffscreenRenderer::kLargestSide + 1, 10u}, {~0u, ~0u}}) {
        Vs::Status status;
        EXPECT_FALSE(
            OffscreenRenderer::get()->render({fragment.get()}, width, height, options, image, status));
        EXPECT_TRUE(status.isError());
        EXPECT_FALSE(status.toString().empty());
        EXPECT_TRUE(image.pixels.empty());
    }
}

TEST_F(Picture, LaterFragmentsAreDrawnOverEarlierOnesWhateverTheirDepth)
{
    add(SceneTest::boxMesh(60, 10, 60), kRed, {0, -500, 0});
    const auto overlay = ViewFragment::make(nullptr, "Overlay");
    overlay->camera()->copyFrom(*fragment->camera());
    overlay->renderParams()->visualStyle(Vs::Scene::kShaded);
    const auto mark = BodyNode::make(SceneTest::boxMesh(20, 10, 20), kBlue);
    NodeChange(mark.get()).transform(GkMatrix3d::translation({0, 500, 0}));
    NodeChange(overlay->viewFragmentNode()).add(mark);
    Vs::Status status;
    ASSERT_TRUE(OffscreenRenderer::get()->render({fragment.get(), overlay.get()}, kWidth, kHeight, options,
                                                 image, status));
    EXPECT_TRUE(isMostly(at(0, 0), &Pixel::b));
    EXPECT_TRUE(isMostly(at(20, 0), &Pixel::r));
}

TEST_F(Picture, AReleasedContextIsMadeAnewWithTheNextPicture)
{
    add(SceneTest::boxMesh(40, 40, 40), kRed);
    draw();
    EXPECT_FALSE(OffscreenRenderer::get()->description().empty());
    OffscreenRenderer::get()->release();
    draw();
    EXPECT_TRUE(isMostly(at(0, 0), &Pixel::r));
}

} // namespace
