#include "Server/Scene/NodeChange.h"
#include "Server/Scene/OffscreenRenderer.h"
#include "Server/Scene/Rendra/CoarseMesh.h"
#include "Server/Scene/Rendra/MeshShape.h"
#include "Server/Scene/ViewFragment.h"
#include "Tests/Server/Scene/Shapes.h"

#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <set>

namespace {

using Rendra::coarseMesh;
using Rendra::Graphics::BodyNode;
using Vs::Scene::Image;
using Vs::Scene::OffscreenRenderer;

TEST(CoarseMesh, HasFarFewerTrianglesInTheSamePlacesAndStaysClosed)
{
    // The first and the last meridian are identical to the last bit, as in the kernel's meshes.
    Vs::BodyMesh rounded = *Shapes::ball(50, 100);
    for (float& value : rounded.positions)
        value = std::round(value * 1024) / 1024;
    const auto ball = std::make_shared<const Vs::BodyMesh>(std::move(rounded));
    ASSERT_TRUE(Rendra::isClosedAndOutward(*ball));
    for (const int cells : {8, 16, 32}) {
        const auto coarse = coarseMesh(*ball, cells);
        ASSERT_TRUE(coarse);
        EXPECT_LT(coarse->triangles.size(), ball->triangles.size() / 3) << cells;
        EXPECT_TRUE(Rendra::isClosedAndOutward(*coarse)) << cells;
        ASSERT_EQ(coarse->normals.size(), coarse->positions.size());
        const double slack = 100.0 / cells * std::sqrt(3.0);
        for (size_t i = 0; i < coarse->positions.size(); i += 3) {
            const float *p = &coarse->positions[i], *n = &coarse->normals[i];
            const double away = std::hypot(p[0], p[1], p[2]);
            ASSERT_NEAR(away, 50, slack);
            ASSERT_NEAR(std::hypot(n[0], n[1], n[2]), 1, 1e-5);
            ASSERT_GT(p[0] * n[0] + p[1] * n[1] + p[2] * n[2], 0.6 * away) << "normals point outwards";
        }
    }
}

TEST(CoarseMesh, KeepsColoursApartAndIsNotMadeWhereItSavesNothing)
{
    Vs::BodyMesh two = *Shapes::ball(50, 60);
    const auto half = uint32_t(two.triangles.size() / 6);
    two.colours = {{1, 0, 0, 1}, {0, 0, 1, 1}};
    two.faces = {{0, half, 0}, {half, uint32_t(two.triangles.size() / 3) - half, 1}};
    const auto coarse = coarseMesh(two, 12);
    ASSERT_TRUE(coarse);
    ASSERT_EQ(coarse->faces.size(), 2u);
    std::set<uint32_t> corners[2];
    for (size_t face = 0; face < 2; ++face) {
        EXPECT_EQ(coarse->faces[face].colour, int(face));
        const auto& run = coarse->faces[face];
        for (uint32_t i = run.firstTriangle * 3; i < (run.firstTriangle + run.triangleCount) * 3; ++i)
            corners[face].insert(coarse->triangles[i]);
    }
    for (const uint32_t corner : corners[0])
        EXPECT_EQ(corners[1].count(corner), 0u) << "no corner has both colours";

    EXPECT_FALSE(coarseMesh(*Shapes::box(10, 10, 10), 4));
    EXPECT_FALSE(coarseMesh(*Shapes::ball(50, 8), 64));
    EXPECT_FALSE(coarseMesh(Vs::BodyMesh(), 4));
}

TEST(MovingPicture, IsCoarserOnlyWhereTheSceneIsLargeAndWholeAgainWhenItStandsStill)
{
    const auto fragment = Vs::Scene::ViewFragment::make(nullptr);
    fragment->renderParams()->groundPlaneEnabled(false);
    Vs::Scene::ImageOptions still{.antiAliasing = false, .transparentBackground = true, .fine = false},
        moving = still;
    moving.moving = true;
    const auto draw = [&](const Vs::Scene::ImageOptions& options) {
        Image image;
        Vs::Status status;
        EXPECT_TRUE(OffscreenRenderer::get()->render({fragment.get()}, 400, 300, options, image, status));
        return image;
    };
    if (draw(still).pixels.empty())
        GTEST_SKIP() << "NOTICE: no OpenGL to draw with";
    const Shapes::MeshPtr ball = Shapes::ball(4, 28);
    const auto addBalls = [&](int from, int to) {
        for (int i = from; i < to; ++i) {
            const auto node = BodyNode::make(ball, {0.5f, 0.3f, 0.2f, 1});
            Vs::Scene::NodeChange(node.get())
                .transform(GkMatrix3d::translation({i % 10 * 10.0, i / 10 * 10.0, 0}));
            Vs::Scene::NodeChange(fragment->viewFragmentNode()).add(node);
        }
        fragment->camera()->fit(fragment->bounds());
    };
    addBalls(0, 10);
    const Image small = draw(still), smallMoving = draw(moving);
    size_t outlines = 0, shades = 0, seen = 0;
    for (size_t i = 0; i < small.pixels.size(); i += 4) {
        outlines += small.pixels[i + 3] != smallMoving.pixels[i + 3];
        seen += small.pixels[i + 3] > 0;
        shades += std::abs(small.pixels[i + 1] - smallMoving.pixels[i + 1]) > 12;
    }
    EXPECT_EQ(outlines, 0u) << "a small scene moves with all its triangles";
    EXPECT_LT(shades, seen / 50) << "and looks nearly as it does when it stands still";

    addBalls(10, 100);
    const Image before = draw(still), onTheWay = draw(moving);
    size_t differences = 0, covered = 0, outline = 0;
    for (size_t i = 0; i < before.pixels.size(); i += 4) {
        differences += std::abs(before.pixels[i] - onTheWay.pixels[i]) > 8;
        covered += before.pixels[i + 3] > 0;
        outline += (before.pixels[i + 3] > 0) != (onTheWay.pixels[i + 3] > 0);
    }
    EXPECT_GT(differences, covered / 100) << "it is another picture";
    EXPECT_LT(outline, covered / 5) << "of the same bodies";
    EXPECT_EQ(draw(still).pixels, before.pixels);
}

} // namespace
