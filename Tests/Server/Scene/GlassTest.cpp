#include "Server/Scene/EnvironmentManager.h"
#include "Tests/Server/Scene/Studio.h"

#include <array>
#include <numeric>

namespace {

using namespace Vs::Scene;
using Rendra::Graphics::BodyNode;
using Vs::Colour;

constexpr Colour kRed{0.7f, 0.05f, 0.05f, 0.4f}, kBlue{0.05f, 0.1f, 0.7f, 0.4f},
    kGreen{0.1f, 0.6f, 0.1f, 0.6f};

/// A square of 60 around the origin, perpendicular to y, of one face.
Shapes::MeshPtr sheet()
{
    auto mesh = std::make_shared<Vs::BodyMesh>();
    mesh->positions = {-30, 0, -30, 30, 0, -30, 30, 0, 30, -30, 0, 30};
    mesh->normals = {0, -1, 0, 0, -1, 0, 0, -1, 0, 0, -1, 0};
    mesh->triangles = {0, 1, 2, 0, 2, 3};
    mesh->faces = {{0, 2, -1}};
    mesh->bounds.add({-30, 0, -30});
    mesh->bounds.add({30, 0, 30});
    return mesh;
}

class GlassPicture : public SceneTest::Studio
{
protected:
    void SetUp() override
    {
        Studio::SetUp();
        options.fine = false;
    }
    void onlyShow(const std::function<void()>& bodies)
    {
        fragment = ViewFragment::make(nullptr);
        RenderParams& params = *fragment->renderParams();
        params.groundPlaneEnabled(false);
        params.ambientOcclusionEnabled(false);
        params.objectShadowType(0);
        params.visualStyle(kShaded);
        bodies();
    }
    /// The three ways in which pictures are drawn: to keep, on a canvas, and without anti-aliasing.
    void inEveryQuality(const std::function<void()>& check)
    {
        for (const auto& [fine, smooth] : {std::pair(true, true), {false, true}, {false, false}}) {
            SCOPED_TRACE(testing::Message() << (fine ? "fine" : smooth ? "smooth" : "quick"));
            options.fine = fine;
            options.antiAliasing = smooth;
            check();
        }
    }
};

TEST_F(GlassPicture, IsTheSameInWhateverOrderBodiesAreDrawn)
{
    struct Body
    {
        Shapes::MeshPtr mesh;
        GkVector3d at;
        Colour colour;
    };
    const Colour top{0.8f, 0.8f, 0.1f, 0.5f};
    // The first two are nested, the last one stands on an opaque plate and reaches into both.
    const std::array<Body, 5> bodies{Body{Shapes::box(40, 40, 40), {-20, -20, 0}, kRed},
                                     {Shapes::box(40, 40, 40), {-20, -20, 0}, kBlue},
                                     {Shapes::ball(25), {10, -15, 20}, kGreen},
                                     {Shapes::box(20, 60, 30, &top), {0, -30, 0}, kRed},
                                     {Shapes::box(100, 100, 5), {-50, -50, -5}, {0.6f, 0.6f, 0.6f, 1}}};
    inEveryQuality([&] {
        for (const int style : {kShaded, kShadedWithVisibleEdges, kRealistic}) {
            Image first;
            std::array<size_t, 5> order;
            std::iota(order.begin(), order.end(), size_t(0));
            for (int turn = 0; turn < 8; ++turn) {
                onlyShow([&] {
                    for (const size_t each : order)
                        show(bodies[each].mesh, bodies[each].at, bodies[each].colour);
                });
                fragment->renderParams()->visualStyle(style);
                look({-1, 2, -1.5});
                const Image image = draw();
                if (turn == 0)
                    first = image;
                // Where faces intersect, a few pixels have two at one depth; lines over each other are
                // rounded.
                EXPECT_LE(changed(first, image, style == kShadedWithVisibleEdges) * kWidth * kHeight, 3)
                    << "style " << style << ", order " << turn;
                std::rotate(order.begin(), order.begin() + 1 + turn % 2, order.end());
                std::swap(order[1], order[3]);
            }
        }
    });
}

TEST_F(GlassPicture, EqualBodiesHaveEqualColoursWhicheverOfTheirFacesIsDrawnFirst)
{
    const Colour top{0.8f, 0.8f, 0.1f, 0.8f};
    const Shapes::MeshPtr usual = Shapes::box(40, 40, 40, &top);
    const auto reversed = std::make_shared<Vs::BodyMesh>(*usual);
    std::reverse(reversed->faces.begin(), reversed->faces.end());
    reversed->triangles.clear();
    for (Vs::BodyMesh::Face& face : reversed->faces) {
        const auto first = usual->triangles.begin() + face.firstTriangle * 3;
        face.firstTriangle = uint32_t(reversed->triangles.size() / 3);
        reversed->triangles.insert(reversed->triangles.end(), first, first + face.triangleCount * 3);
    }
    onlyShow([&] {
        show(Shapes::box(220, 80, 5), {-110, -40, -5}, {0.7f, 0.7f, 0.7f, 1});
        show(usual, {-80, -20, 0}, kRed);
        show(reversed, {40, -20, 0}, kRed);
    });
    look({0, 1, -1}, kParallelProjection);
    inEveryQuality([&] {
        const Image image = draw(480, 360);
        for (const double x : {-12.0, 0.0, 12.0})
            for (const GkPoint3d& place : {GkPoint3d(x, 0, 40), {x, -20, 20}}) {
                const uint8_t *one = pixel(image, place + GkVector3d(-60, 0, 0)),
                              *other = pixel(image, place + GkVector3d(60, 0, 0));
                for (int channel = 0; channel < 3; ++channel)
                    EXPECT_NEAR(one[channel], other[channel], 3) << x << ", channel " << channel;
                EXPECT_GT(one[0], one[2] + 30) << "it is red or yellow";
            }
    });
}

TEST_F(GlassPicture, OfTwoLayersTheNearerOneCoversTheOtherByItsOpacity)
{
    bool wall = true;
    const auto seen = [&](bool red, bool blue, double direction) {
        onlyShow([&] {
            if (wall)
                show(Shapes::box(80, 2, 80), {-40, direction > 0 ? 60.0 : -62.0, -40}, {0.7f, 0.7f, 0.7f, 1});
            if (red)
                show(sheet(), {0, -20, 0}, kRed);
            if (blue)
                show(sheet(), {0, 20, 0}, kBlue);
        });
        look({0, direction, 0}, kParallelProjection);
        const Image image = draw();
        const uint8_t* p = pixel(image, {0, 0, 0});
        return std::array<double, 3>{double(p[0]), double(p[1]), double(p[2])};
    };
    const auto compare = [&] {
        for (const double direction : {1.0, -1.0}) {
            const auto none = seen(false, false, direction), red = seen(true, false, direction),
                       blue = seen(false, true, direction), both = seen(true, true, direction);
            const auto &near = direction > 0 ? red : blue, &far = direction > 0 ? blue : red;
            for (size_t i = 0; i < 3; ++i)
                EXPECT_NEAR(both[i], near[i] + (1 - 0.4) * (far[i] - none[i]), 3) << direction << ", " << i;
            EXPECT_GT(std::abs(red[0] - blue[0]), 30);
        }
    };
    compare();
    wall = false; // so that nothing opaque is in view
    inEveryQuality([&] {
        if (options.antiAliasing) // else it is the mean of all layers
            compare();
    });
}

TEST_F(GlassPicture, EdgesOnItsFrontAreDarkAndThoseBehindItAreSeenThroughIt)
{
    onlyShow([&] { show(Shapes::box(40, 40, 40), {-20, -20, -20}, {0.6f, 0.7f, 0.8f, 0.6f}); });
    look({-1, 2, -1.5});
    for (const bool fine : {true, false}) {
        options.fine = fine;
        fragment->renderParams()->visualStyle(kShaded);
        const Image plain = draw(480, 360);
        fragment->renderParams()->visualStyle(kShadedWithVisibleEdges);
        const Image lined = draw(480, 360);
        const auto ink = [&](const GkPoint3d& middle, const GkVector3d& across) {
            int most = 0;
            for (double off = -1.5; off <= 1.5; off += 0.1)
                most = std::max(most, brightness(plain, middle + across * off) -
                                          brightness(lined, middle + across * off));
            return most;
        };
        // The nearest upright edge, and the one in the opposite corner.
        const int front = ink({20, -20, 0}, {1, 1, 0}), back = ink({-20, 20, 0}, {1, 1, 0});
        EXPECT_GT(front, 80);
        EXPECT_GT(back, 8);
        EXPECT_LT(back, front / 2);
    }
}

TEST_F(GlassPicture, TheGridIsFaintUnderItAndAsElsewhereBeforeIt)
{
    options.grid = true;
    const auto strength = [&](double opacity, const GkVector3d& direction) {
        int most = 0;
        std::array<Image, 2> pictures;
        for (const bool grid : {false, true}) {
            options.grid = grid;
            onlyShow([&] {
                show(Shapes::box(40, 40, 2), {-20, -20, 9}, {0.7f, 0.7f, 0.7f, float(opacity)});
            });
            look(direction, kParallelProjection);
            pictures[grid] = draw();
        }
        for (double x = -12; x < 12; x += 0.25)
            most = std::max(most, difference(pictures[0], pictures[1], {x, 3, 10}));
        return most;
    };
    const GkVector3d down(0.1, 0.2, -1), up(0.1, 0.2, 1);
    const int bare = strength(0.01, down), under = strength(0.8, down), before = strength(0.8, up);
    EXPECT_GT(bare, 25);
    EXPECT_LT(under, bare / 4);
    EXPECT_GT(under, 0);
    EXPECT_GT(before, bare / 2);
}

TEST_F(GlassPicture, ItsShadowsAreFainterThanThoseOfWhatIsOpaque)
{
    fragment->renderParams()->groundPlaneEnabled(true);
    Image image;
    const auto darkness = [&](float opacity, const GkPoint3d& place) {
        NodeChange(box).colour(Colour{0.7f, 0.1f, 0.1f, opacity});
        NodeChange(ball).visible(false);
        image = draw();
        return brightness(image, place);
    };
    options.fine = true;
    const GkVector3d lamp = EnvironmentManager::getEnvManager()->activeEnvironment().lamps[0].direction;
    const GkVector3d away = GkVector3d(-lamp.x, -lamp.y, 0) * (45 / lamp.z);
    const GkPoint3d inShadow(away.x, away.y, 0), atFoot(-23, 0, 0);
    const auto compare = [&](const GkPoint3d& place) {
        const int opaque = darkness(1, place), glass = darkness(0.5f, place),
                  nothing = darkness(0.01f, place);
        EXPECT_GT(nothing, opaque + 15);
        EXPECT_GT(glass, opaque + 4);
        EXPECT_LT(glass, nothing - 4);
    };
    fragment->renderParams()->groundShadowEnabled(true);
    {
        SCOPED_TRACE("of the sky");
        look({1.5, 0.2, -2});
        compare(atFoot);
    }
    look(GkVector3d(-away.x, -away.y, -60));
    const auto red = [&](float opacity) {
        darkness(opacity, inShadow);
        return pixel(image, inShadow)[0] - pixel(image, inShadow)[2];
    };
    for (const int type : {1, 2, 3}) {
        SCOPED_TRACE(testing::Message() << "of a lamp, type " << type);
        fragment->renderParams()->objectShadowType(type);
        compare(inShadow);
        EXPECT_GT(red(0.5f), red(0.01f) + 8) << "red glass lets red light through";
    }
}

TEST_F(GlassPicture, WhatStandsBeforeItHasNoFringe)
{
    onlyShow([&] {
        show(Shapes::ball(20), {0, -60, 0}, {0.8f, 0.8f, 0.8f, 1});
        show(sheet(), {0, 0, 0}, {0.9f, 0.9f, 0.9f, 0.7f});
        show(Shapes::box(80, 10, 80), {-40, 30, -40}, {0, 0, 0, 1});
    });
    look({0, 1, 0}, kParallelProjection);
    options.fine = false;
    const Image image = draw();
    const int ball = brightness(image, {0, 0, 0}), glass = brightness(image, {25, 0, 25});
    int darkest = 255;
    for (double x = -26; x <= 26; x += 0.2)
        for (double z = -26; z <= 26; z += 0.2)
            darkest = std::min(darkest, brightness(image, {x, 0, z}));
    EXPECT_GT(ball, 100);
    EXPECT_GT(darkest, std::min(ball, glass) / 2) << "the black behind glass is nowhere seen bare";
}

} // namespace
