#include "Server/Scene/GraphicsOptionGroup.h"
#include "Server/Scene/NodeChange.h"
#include "Server/Scene/OffscreenRenderer.h"
#include "Server/Scene/Rendra/Renderer.h"
#include "Server/Scene/ViewFragment.h"
#include "Tests/Server/Scene/Shapes.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <gtest/gtest.h>

namespace {

using namespace Vs::Scene;
using Rendra::Graphics::BodyNode;
using Rendra::Graphics::GroupNode;
using Rendra::Graphics::Highlight;
using Vs::Colour;

constexpr uint32_t kSide = 240;

/// Seen along +Y, Z up, in parallel projection: 1 mm is one pixel, the origin is in the middle.
class EffectPicture : public testing::Test
{
protected:
    void SetUp() override
    {
        Vs::Status status;
        if (!OffscreenRenderer::get()->render({fragment.get()}, 8, 8, options, image, status))
            GTEST_SKIP() << "NOTICE: no OpenGL to draw with: " << testing::PrintToString(status.toString());
        options.antiAliasing = false;
        Camera& camera = *fragment->camera();
        camera.projection(kParallelProjection);
        camera.position({0, -1000, 0});
        camera.target({});
        camera.up({0, 0, 1});
        camera.extentsWidth(kSide);
        camera.extentsHeight(kSide);
        fragment->renderParams()->visualStyle(kShaded);
        fragment->renderParams()->groundPlaneEnabled(false);
    }
    void TearDown() override { GraphicsOptionGroup::get()->selectionEffectOption(before); }

    /// A box around a place.
    Vs::StrongRef<BodyNode> show(double size, const GkPoint3d& middle, GroupNode* below = nullptr)
    {
        const auto node = BodyNode::make(Shapes::box(size, size, size), {0.6f, 0.6f, 0.6f, 1});
        NodeChange(node.get())
            .transform(GkMatrix3d::translation(middle.asVector() - GkVector3d(size, size, size) * 0.5));
        NodeChange(below ? below : fragment->viewFragmentNode()).add(node);
        return node;
    }
    const Image& draw(uint32_t side = kSide)
    {
        Vs::Status status;
        EXPECT_TRUE(OffscreenRenderer::get()->render({fragment.get()}, side, side, options, image, status))
            << testing::PrintToString(status.toString());
        return image;
    }
    const Image& drawWith(int effect)
    {
        GraphicsOptionGroup::get()->selectionEffectOption(effect);
        return draw();
    }
    const uint8_t* at(double x, double z) const
    {
        return image.pixel(uint32_t(image.width / 2.0 + x), uint32_t(image.height / 2.0 - z));
    }
    bool isBlue(double x, double z) const { return at(x, z)[2] > at(x, z)[0] + 50; }
    /// Like a face whose own colour is still visible.
    bool isTinted(double x, double z) const { return at(x, z)[2] > at(x, z)[0] + 15; }

    Vs::StrongRef<ViewFragment> fragment = ViewFragment::make(nullptr);
    ImageOptions options;
    Image image;
    const int before = GraphicsOptionGroup::get()->selectionEffectOption();
};

TEST_F(EffectPicture, SelectedBodiesStandOutAsTheOptionSays)
{
    const auto body = show(60, {});
    const Image plain = drawWith(Rendra::kNormalEffect);
    for (const Highlight highlight : {Highlight::Selected, Highlight::Pointed}) {
        NodeChange(body.get()).highlight(highlight);
        drawWith(Rendra::kNormalEffect);
        EXPECT_TRUE(isTinted(0, 0));
        EXPECT_FALSE(isBlue(0, 0)) << "its own colour is still seen";
        for (const auto& [x, z] : {std::pair(-31.5, 0.0), {31.5, 0.0}, {0.0, 31.5}, {0.0, -31.5}})
            EXPECT_TRUE(isBlue(x, z)) << "an outline at " << x << ", " << z;
        EXPECT_FALSE(isBlue(40, 0));

        drawWith(Rendra::kFastEffect);
        EXPECT_TRUE(isBlue(0, 0)) << "where nothing else tells";
        EXPECT_FALSE(isBlue(31.5, 0)) << "no outline";

        drawWith(Rendra::kSimplifiedEffect);
        EXPECT_FALSE(isBlue(0, 0)) << "faces stay as they are";
        size_t lines = 0;
        for (int x = -36; x <= 36; ++x)
            for (int z = -36; z <= 36; ++z)
                lines += isBlue(x + 0.5, z + 0.5);
        EXPECT_GT(lines, 100u);

        EXPECT_EQ(drawWith(Rendra::kNoEffect).pixels, plain.pixels);
    }
}

TEST_F(EffectPicture, SinglePartsOfABodyStandOutAlsoAmongOthersOfTheSameMesh)
{
    using Rendra::Graphics::LitPart;
    using Rendra::Graphics::Part;
    const auto mesh = Shapes::box(60, 60, 60);
    std::vector<Vs::StrongRef<BodyNode>> bodies;
    for (const double x : {-80.0, 10.0}) {
        bodies.push_back(BodyNode::make(mesh, {0.6f, 0.6f, 0.6f, 1}));
        NodeChange(bodies.back().get()).transform(GkMatrix3d::translation({x, 0, -30}));
        NodeChange(fragment->viewFragmentNode()).add(bodies.back());
    }
    const auto lightWith = [&](std::vector<LitPart> parts, int effect) {
        NodeChange(bodies[1].get()).litParts(std::move(parts));
        return drawWith(effect);
    };
    const Image plain = lightWith({}, Rendra::kNormalEffect);
    for (const int effect : {Rendra::kNormalEffect, Rendra::kFastEffect, Rendra::kSimplifiedEffect}) {
        lightWith({{Part::Face, 2, Highlight::Selected}}, effect);
        EXPECT_TRUE(isBlue(40, 0));
        EXPECT_FALSE(isBlue(-50, 0)) << "the other body's";
        lightWith({{Part::Face, 3, Highlight::Selected}}, effect);
        EXPECT_FALSE(isBlue(40, 0)) << "the face that looks away";

        lightWith({{Part::Edge, 1, Highlight::Pointed}}, effect);
        EXPECT_TRUE(isBlue(40, 29.5) || isBlue(40, 30.5));
        EXPECT_FALSE(isBlue(40, 0));
        EXPECT_FALSE(isBlue(40, -29.5) || isBlue(40, -30.5));

        lightWith({{Part::Vertex, 5, Highlight::Selected}}, effect);
        EXPECT_TRUE(isBlue(68.5, 28.5));
        EXPECT_TRUE(isBlue(71.5, 31.5));
        EXPECT_FALSE(isBlue(40, 29.5));
    }
    lightWith({{Part::Face, 2, Highlight::Selected}, {Part::Edge, 1, Highlight::Selected}},
              Rendra::kNoEffect);
    EXPECT_EQ(image.pixels, plain.pixels);

    // What is hidden, moved or removed takes its parts along.
    lightWith({{Part::Face, 2, Highlight::Selected}}, Rendra::kNormalEffect);
    NodeChange(bodies[1].get()).transform(GkMatrix3d::translation({10, 0, -110}));
    draw();
    EXPECT_FALSE(isBlue(40, 0));
    EXPECT_TRUE(isBlue(40, -80));
    NodeChange(bodies[1].get()).visible(false);
    draw();
    EXPECT_FALSE(isBlue(40, -80));
    NodeChange(bodies[1].get()).visible(true);
    NodeChange(fragment->viewFragmentNode()).remove(bodies[0].get());
    draw();
    EXPECT_TRUE(isBlue(40, -80));
}

TEST_F(EffectPicture, WhatIsSelectedDiffersFromWhatIsPointedAtWithoutHues)
{
    const auto body = show(60, {});
    const auto grey = [&](double x) {
        const uint8_t* pixel = at(x, 0);
        return 0.3 * pixel[0] + 0.59 * pixel[1] + 0.11 * pixel[2];
    };
    NodeChange(body.get()).highlight(Highlight::Pointed);
    drawWith(Rendra::kNormalEffect);
    const double pointed = grey(30.5), beside = grey(33.5);
    NodeChange(body.get()).highlight(Highlight::Selected);
    drawWith(Rendra::kNormalEffect);
    EXPECT_LT(grey(30.5), 0.7 * pointed);
    EXPECT_LT(grey(33.5), beside - 20) << "a broader line";
}

TEST_F(EffectPicture, AnOutlineIsSeenThroughWhatHidesTheBody)
{
    const auto body = show(40, {0, 50, 0});
    show(100, {0, -80, 0});
    NodeChange(body.get()).highlight(Highlight::Selected);
    drawWith(Rendra::kNormalEffect);
    EXPECT_FALSE(isBlue(0, 0)) << "what hides it keeps its colour";
    EXPECT_TRUE(isTinted(21.5, 0));
    EXPECT_FALSE(isBlue(21.5, 0)) << "as strong as if nothing hid it";
    NodeChange(body.get()).transform(GkMatrix3d::translation({-20, -130, -20}));
    drawWith(Rendra::kNormalEffect);
    EXPECT_TRUE(isBlue(21.5, 0)) << "before it";
    drawWith(Rendra::kFastEffect);
    EXPECT_FALSE(isBlue(21.5, 0));
}

TEST_F(EffectPicture, AnOutlineRunsOnWhereTheTilesOfALargePictureMeet)
{
    constexpr uint32_t kLarge = 1200; // more than a tile of a fine picture
    options.antiAliasing = true;
    const auto body = show(60, {});
    NodeChange(body.get()).highlight(Highlight::Selected);
    GraphicsOptionGroup::get()->selectionEffectOption(Rendra::kNormalEffect);
    fragment->camera()->extentsWidth(kLarge);
    fragment->camera()->extentsHeight(kLarge);
    // Two tiles, which meet in the middle: the upper or the lower side is there, or just beside.
    for (const int shift : {-31, 29, 32}) {
        NodeChange(body.get()).transform(GkMatrix3d::translation({-30.0, -30.0, -30.0 + shift}));
        draw(kLarge);
        EXPECT_TRUE(isBlue(0, 31.5 + shift)) << shift;
        EXPECT_TRUE(isBlue(0, -31.5 + shift)) << shift;
        EXPECT_TRUE(isBlue(-31.5, 10.0 + shift)) << shift;
    }
}

TEST_F(EffectPicture, ColourCyclingGivesEachBodyAColourOfItsOwnThatStaysWhateverElseChanges)
{
    GraphicsOptionGroup::get()->selectionEffectOption(Rendra::kNormalEffect);
    const auto group = GroupNode::make();
    NodeChange(fragment->viewFragmentNode()).add(group);
    std::vector<Vs::StrongRef<BodyNode>> bodies;
    for (int i = 0; i < 5; ++i)
        bodies.push_back(show(30, {i * 44.0 - 88, 0, 0}, group.get()));
    const auto colours = [&] {
        draw();
        std::vector<std::array<int, 3>> seen;
        for (int i = 0; i < 5; ++i) {
            const uint8_t* p = at(i * 44.0 - 88, 0);
            seen.push_back({p[0], p[1], p[2]});
        }
        return seen;
    };
    const auto plain = colours();
    for (const auto& colour : plain)
        for (size_t channel = 0; channel < 3; ++channel)
            EXPECT_NEAR(colour[channel], plain[0][channel], 1) << "but for the grain of faces";
    fragment->renderParams()->colorCyclingEnabled(true);
    const auto cycled = colours();
    for (size_t i = 0; i < 5; ++i)
        for (size_t j = i + 1; j < 5; ++j) {
            int apart = 0;
            for (size_t channel = 0; channel < 3; ++channel)
                apart += std::abs(cycled[i][channel] - cycled[j][channel]);
            EXPECT_GT(apart, 40) << i << " and " << j;
        }

    NodeChange(bodies[1].get()).visible(false);
    auto fewer = colours();
    EXPECT_NE(fewer[1], cycled[1]);
    fewer[1] = cycled[1];
    EXPECT_EQ(fewer, cycled);
    NodeChange(bodies[1].get()).visible(true);
    NodeChange(group.get()).remove(bodies[0].get());
    NodeChange(group.get()).add(bodies[0]);
    EXPECT_EQ(colours(), cycled);
    fragment->renderParams()->colorCyclingEnabled(false);
    EXPECT_EQ(colours(), plain);
}

} // namespace
