#include "Server/Scene/NodeChange.h"
#include "Server/Scene/OffscreenRenderer.h"
#include "Server/Scene/Rendra/CoarseMesh.h"
#include "Server/Scene/Rendra/MeshShape.h"
#include "Server/Scene/Rendra/ReducedMesh.h"
#include "Server/Scene/ViewFragment.h"
#include "Tests/Server/Scene/Shapes.h"

#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <set>

namespace {

using Rendra::coarseMesh;
using Rendra::reducedMesh;
using Rendra::smoothedMesh;
using Rendra::Graphics::BodyNode;
using Vs::Scene::Image;
using Vs::Scene::OffscreenRenderer;

/// The first and the last meridian are identical to the last bit, as in the kernel's meshes.
Shapes::MeshPtr closedBall(double radius, int rings)
{
    Vs::BodyMesh rounded = *Shapes::ball(radius, rings);
    for (float& value : rounded.positions)
        value = std::round(value * 1024) / 1024;
    return std::make_shared<const Vs::BodyMesh>(std::move(rounded));
}

TEST(CoarseMesh, HasFarFewerTrianglesInTheSamePlacesAndStaysClosed)
{
    const Shapes::MeshPtr ball = closedBall(50, 100);
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
    two.finishes = {{}, {1, 0.2f, {}, 0.5f, 1}, {}};
    two.faces = {{0, half, 0}, {half, uint32_t(two.triangles.size() / 3) - half, 1}};
    const auto coarse = coarseMesh(two, 12);
    ASSERT_TRUE(coarse);
    ASSERT_EQ(coarse->faces.size(), 2u);
    EXPECT_EQ(coarse->finishes, two.finishes);
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

TEST(CoarseMesh, SmoothedMovesNothingButSmoothSurfacesAndThoseHardly)
{
    const Vs::BodyMesh rounded = *closedBall(50, 100);
    constexpr int kCells = 50;
    const auto smooth = smoothedMesh(rounded, kCells);
    ASSERT_TRUE(smooth);
    EXPECT_LT(smooth->triangles.size(), rounded.triangles.size() / 4);
    EXPECT_TRUE(Rendra::isClosedAndOutward(*smooth));
    for (size_t i = 0; i < smooth->positions.size(); i += 3) {
        const float* p = &smooth->positions[i];
        ASSERT_NEAR(std::hypot(p[0], p[1], p[2]), 50, 0.1 * 100 / kCells);
    }

    // A slanted square beside it has sharp edges and another colour.
    Vs::BodyMesh mesh = rounded;
    const auto first = uint32_t(mesh.positions.size() / 3), triangles = uint32_t(mesh.triangles.size() / 3);
    const float corners[4][3] = {{60, 0, 0}, {61, 0, 0.1f}, {61, 1, 0.1f}, {60, 1, 0}};
    for (const auto& corner : corners) {
        mesh.positions.insert(mesh.positions.end(), std::begin(corner), std::end(corner));
        mesh.normals.insert(mesh.normals.end(), {-0.0995f, 0, 0.995f});
        mesh.bounds.add({corner[0], corner[1], corner[2]});
    }
    mesh.normals[3 * size_t(first)] = 1; // a corner that looks elsewhere
    mesh.normals[3 * size_t(first) + 2] = 0;
    mesh.triangles.insert(mesh.triangles.end(), {first, first + 1, first + 2, first, first + 2, first + 3});
    mesh.faces.push_back({triangles, 2, -1});
    const auto both = smoothedMesh(mesh, kCells);
    ASSERT_TRUE(both);
    ASSERT_EQ(both->faces.back().triangleCount, 2u);
    for (size_t i = 0; i < 4; ++i) {
        const uint32_t at = both->triangles[both->triangles.size() - 6 + (i < 3 ? i : 5)];
        for (size_t axis = 0; axis < 3; ++axis)
            EXPECT_EQ(both->positions[3 * size_t(at) + axis], corners[i][axis]);
    }
}

TEST(CoarseMesh, ReducedStaysWithinItsDeviationAndKeepsFacesApart)
{
    Vs::BodyMesh two = *closedBall(50, 60);
    const auto half = uint32_t(two.triangles.size() / 6);
    two.colours = {{1, 0, 0, 1}, {0, 0, 1, 1}};
    two.faces = {{0, half, 0}, {half, uint32_t(two.triangles.size() / 3) - half, 1}};
    const float side = two.positions[3 * size_t(two.triangles[0]) + 2] > 0 ? -1.0f : 1.0f;
    size_t before = two.triangles.size();
    for (const double deviation : {0.4, 1.6, 6.4}) {
        SCOPED_TRACE(deviation);
        const auto reduced = reducedMesh(two, deviation);
        ASSERT_TRUE(reduced);
        EXPECT_TRUE(Rendra::isClosedAndOutward(*reduced));
        EXPECT_LT(reduced->triangles.size(), before / 2);
        before = reduced->triangles.size();
        ASSERT_EQ(reduced->normals.size(), reduced->positions.size());
        ASSERT_EQ(reduced->faces.size(), 2u);
        for (size_t face = 0; face < 2; ++face) {
            EXPECT_EQ(reduced->faces[face].colour, int(face));
            const size_t first = reduced->faces[face].firstTriangle;
            for (size_t i = first; i < first + reduced->faces[face].triangleCount; ++i) {
                GkVector3d middle;
                for (size_t corner = 0; corner < 3; ++corner) {
                    const float* p = &reduced->positions[3 * size_t(reduced->triangles[3 * i + corner])];
                    ASSERT_NEAR(std::hypot(p[0], p[1], p[2]), 50, 0.01) << "it is a vertex of the ball";
                    // The faces meet in the plane of the equator.
                    ASSERT_LT((face == 0 ? side : -side) * p[2], 2.5 * deviation);
                    middle = middle + GkVector3d(p[0], p[1], p[2]) * (1.0 / 3);
                }
                ASSERT_GT(middle.length(), 50 - 1.5 * deviation);
            }
        }
    }
    EXPECT_FALSE(reducedMesh(*Shapes::box(10, 10, 10), 0.1));
    EXPECT_FALSE(reducedMesh(Vs::BodyMesh(), 1));
}

TEST(StillPicture, LooksTheSameWithFewerTrianglesOnSmallBodies)
{
    const auto fragment = Vs::Scene::ViewFragment::make(nullptr);
    fragment->renderParams()->groundPlaneEnabled(false);
    const Shapes::MeshPtr ball = closedBall(4, 28); // few enough for the first picture
    ASSERT_TRUE(Rendra::isClosedAndOutward(*ball) && smoothedMesh(*ball, 8));
    std::vector<Vs::StrongRef<BodyNode>> nodes;
    for (int i = 0; i < 100; ++i) {
        nodes.push_back(BodyNode::make(ball, {0.5f, 0.3f, 0.2f, 1}));
        Vs::Scene::NodeChange(nodes.back().get())
            .transform(GkMatrix3d::translation({i % 10 * 10.0, i / 10 * 10.0, 0}));
        Vs::Scene::NodeChange(fragment->viewFragmentNode()).add(nodes.back());
    }
    fragment->camera()->fit(fragment->bounds());
    Vs::Scene::ImageOptions options{.antiAliasing = false, .transparentBackground = true};
    options.highlights = options.fine = false;
    const auto draw = [&] {
        Image image;
        Vs::Status status;
        if (!OffscreenRenderer::get()->render({fragment.get()}, 400, 300, options, image, status))
            image.pixels.clear();
        return image.pixels;
    };
    const std::vector<uint8_t> smoothed = draw();
    if (smoothed.empty())
        GTEST_SKIP() << "NOTICE: no OpenGL to draw with";
    // What is selected has all its triangles, as its outline must lie on it.
    for (const auto& node : nodes)
        Vs::Scene::NodeChange(node.get()).highlight(Rendra::Graphics::Highlight::Selected);
    const std::vector<uint8_t> whole = draw();
    size_t covered = 0, outline = 0, shades = 0;
    for (size_t i = 0; i < whole.size(); i += 4) {
        covered += whole[i + 3] > 0;
        outline += (whole[i + 3] > 0) != (smoothed[i + 3] > 0);
        shades += std::abs(whole[i + 1] - smoothed[i + 1]) > 12;
    }
    // Outlines have moved by half a pixel at most, of 100 balls that are 26 pixels across.
    EXPECT_LT(outline, covered / 30);
    EXPECT_LT(shades, covered / 25);
    EXPECT_NE(whole, smoothed) << "nothing has fewer triangles";
    // Hardly anything opens farther from an outline, but where two bodies nearly touch, as both move.
    size_t gaps = 0;
    for (size_t y = 2; y + 2 < 300; ++y)
        for (size_t x = 2; x + 2 < 400; ++x) {
            bool opens = smoothed[4 * (y * 400 + x) + 3] == 0;
            for (size_t i = 0; i < 25; ++i)
                opens = opens && whole[4 * ((y + i / 5 - 2) * 400 + x + i % 5 - 2) + 3] > 0;
            gaps += opens;
        }
    EXPECT_LT(gaps, 10u);
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
