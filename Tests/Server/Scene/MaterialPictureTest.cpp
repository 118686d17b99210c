// How the materials of faces show in pictures: metal, roughness, light that is given off, faces of one side.

#include "Server/Scene/Picker.h"
#include "Tests/Server/Scene/StylePicture.h"

#include <cmath>

namespace {

using namespace Vs::Scene;
using Vs::Colour;
using Vs::Finish;

Shapes::MeshPtr finished(const Shapes::MeshPtr& mesh, const std::vector<Finish>& finishes)
{
    Vs::BodyMesh copy = *mesh;
    copy.finishes = finishes;
    return std::make_shared<const Vs::BodyMesh>(std::move(copy));
}

Finish finish(float metallic, float roughness, const std::array<float, 3>& emissive = {})
{
    return {metallic, roughness, emissive, 0.5f, 1, 1};
}

/// A square in the plane of x and z, in two faces beside each other that look towards -y.
Shapes::MeshPtr wall(const std::vector<Colour>& colours, const std::vector<Finish>& finishes)
{
    Vs::BodyMesh mesh;
    mesh.positions = {-20, 0, -20, 0,  0, -20, 0,  0, 20, -20, 0, 20,
                      0,   0, -20, 20, 0, -20, 20, 0, 20, 0,   0, 20};
    for (int i = 0; i < 8; ++i)
        mesh.normals.insert(mesh.normals.end(), {0, -1, 0});
    mesh.triangles = {0, 1, 2, 0, 2, 3, 4, 5, 6, 4, 6, 7};
    mesh.faces = {{0, 2, colours.empty() ? -1 : 0}, {2, 2, -1}};
    mesh.colours = colours;
    mesh.finishes = finishes;
    mesh.bounds = BBox({-20, 0, -20}, {20, 0, 20});
    return std::make_shared<const Vs::BodyMesh>(std::move(mesh));
}

class MaterialPicture : public SceneTest::StylePicture
{
protected:
    void SetUp() override
    {
        StylePicture::SetUp();
        fragment->camera()->projection(kParallelProjection);
        fragment->camera()->look({0, 1, 0}, {0, 0, 1});
        fragment->renderParams()->objectShadowType(0);
        options.transparentBackground = true;
    }

    /// The red, green and blue of all pixels of a ball, the brightest first.
    std::vector<std::array<int, 3>> ballOf(const Colour& colour, const std::vector<Finish>& finishes,
                                           int style)
    {
        NodeChange(fragment->viewFragmentNode()).removeAll();
        show(finished(Shapes::ball(20, 96), finishes), {}, colour);
        fragment->camera()->fit(fragment->bounds());
        draw(style);
        std::vector<std::array<int, 3>> pixels;
        for (size_t i = 0; i < image.pixels.size(); i += 4)
            if (image.pixels[i + 3] == 255)
                pixels.push_back({image.pixels[i], image.pixels[i + 1], image.pixels[i + 2]});
        EXPECT_GT(pixels.size(), 1000u);
        std::ranges::sort(pixels, std::greater(), [](const auto& p) { return p[0] + p[1] + p[2]; });
        return pixels;
    }
    bool isCovered(const GkPoint3d& place) const { return at(place)[3] > 0; }
};

TEST_F(MaterialPicture, MetalMirrorsInItsOwnColourAndRoughnessBlursWhatIsMirrored)
{
    const Colour brass{0.9f, 0.5f, 0.1f, 1}, red{0.5f, 0.02f, 0.02f, 1};
    const auto spread = [](const auto& pixels) { return pixels[20][1] - pixels[pixels.size() - 20][1]; };
    // Where it is bright, but mirrors no lamp.
    const auto hue = [](const auto& pixels) {
        const auto& p = pixels[pixels.size() / 10];
        return p[2] / double(std::max(p[0], 1));
    };
    for (const int style : {kRealistic, kShaded}) {
        SCOPED_TRACE(style);
        const auto smooth = ballOf(brass, {finish(1, 0.1f)}, style);
        const auto rough = ballOf(brass, {finish(1, 1)}, style);
        EXPECT_GT(spread(smooth), spread(rough) + 25);
        const auto metal = ballOf(red, {finish(1, 0.4f)}, style),
                   paint = ballOf(red, {finish(0, 0.4f)}, style);
        EXPECT_LT(hue(metal), hue(paint) - 0.05) << "light on paint is white, and on metal not";
        const auto glossy = ballOf(red, {finish(0, 0.1f)}, style),
                   dull = ballOf(red, {finish(0, 0.9f)}, style);
        EXPECT_GT(glossy[20][1], dull[20][1] + 25);
    }
    // Grey is no metal where a material says so, and metal where one says that.
    const Colour grey{0.3f, 0.3f, 0.3f, 1};
    const auto guessed = ballOf(grey, {}, kRealistic), paint = ballOf(grey, {finish(0, 0.6f)}, kRealistic);
    EXPECT_LT(spread(paint), spread(guessed) - 25);
    EXPECT_EQ(ballOf(grey, {Finish()}, kRealistic), guessed) << "an unknown finish counts as none";
}

TEST_F(MaterialPicture, LightThatFacesGiveOffIsAddedInStylesWithFacesAlone)
{
    const Finish dark = finish(0, 1), lamp = finish(0, 1, {0, 0.6f, 0});
    const std::vector<Colour> black{{0.01f, 0.01f, 0.01f, 1}};
    show(wall(black, {dark, lamp}), {}, {0.01f, 0.01f, 0.01f, 1});
    fragment->camera()->fit(fragment->bounds());
    for (const int style : {kShaded, kRealistic, kShadedWithVisibleEdges}) {
        draw(style);
        EXPECT_GT(at({-10, 0, 0})[1], at({10, 0, 0})[1] + 80) << style;
        EXPECT_NEAR(at({-10, 0, 0})[0], at({10, 0, 0})[0], 8) << "it is green";
    }
    // Colours that tell components apart are only these.
    fragment->renderParams()->colorCyclingEnabled(true);
    draw(kShaded);
    EXPECT_NEAR(at({-10, 0, 5})[1], at({10, 0, 5})[1], 2);
    fragment->renderParams()->colorCyclingEnabled(false);
    // Through glass as well.
    NodeChange(fragment->viewFragmentNode()).removeAll();
    show(wall({{0, 0, 0, 0.5f}}, {dark, lamp}), {}, {0, 0, 0, 0.5f});
    draw(kShaded);
    EXPECT_GT(at({-10, 0, 0})[1], at({10, 0, 0})[1] + 40);
}

TEST_F(MaterialPicture, AFaceOfOneSideIsSeenAndPickedFromThereAloneMirroredOrNot)
{
    Finish oneSided = finish(0, 0.5f);
    oneSided.isDoubleSided = 0;
    const auto mirrored = [&] {
        const auto& node = fragment->viewFragmentNode()->children().front();
        NodeChange(node.get()).transform(GkMatrix3d::scaling(-1));
    };
    const auto isPicked = [&](double x, double y) {
        return pick(*fragment->viewFragmentNode(), {x, -50 * y, 1}, {0, y, 0}).has_value();
    };
    for (const Colour& colour : {Colour{0.5f, 0, 0, 1}, Colour{0.5f, 0, 0, 0.5f}}) {
        SCOPED_TRACE(colour.a);
        NodeChange(fragment->viewFragmentNode()).removeAll();
        // The left face has both sides.
        show(wall({colour}, {oneSided, finish(0, 0.5f)}), {}, colour);
        for (const bool isMirrored : {false, true}) {
            SCOPED_TRACE(isMirrored);
            if (isMirrored)
                mirrored(); // at its origin: front and back, left and right change places
            const double one = isMirrored ? -10 : 10, front = isMirrored ? -1 : 1;
            for (const double side : {front, -front})
                for (const int style : {kShaded, kRealistic}) {
                    fragment->camera()->look({0, side, 0}, {0, 0, 1});
                    fragment->camera()->fit(fragment->bounds());
                    draw(style);
                    EXPECT_TRUE(isCovered({-one, 0, 0}));
                    EXPECT_EQ(isCovered({one, 0, 0}), side == front);
                    EXPECT_TRUE(isPicked(-one, side));
                    EXPECT_EQ(isPicked(one, side), side == front);
                }
        }
    }
}

TEST_F(MaterialPicture, WhatHasNoMaterialLooksTheSameBesideWhatHasOne)
{
    show(Shapes::ball(20, 64), {-30, 0, 0}, {0.4f, 0.4f, 0.4f, 1});
    show(Shapes::ball(20, 64), {30, 0, 0}, {0.1f, 0.3f, 0.1f, 1});
    fragment->camera()->fit(fragment->bounds());
    for (const int style : {kShaded, kRealistic, kShadedWithHiddenEdges}) {
        draw(style);
        const Image alone = image;
        show(finished(Shapes::ball(6, 32), {finish(1, 0.2f, {1, 0, 0})}), {}, {1, 1, 1, 1});
        draw(style);
        NodeChange(fragment->viewFragmentNode())
            .remove(fragment->viewFragmentNode()->children().back().get());
        size_t others = 0, covered = 0;
        for (size_t i = 0; i < alone.pixels.size(); i += 4) {
            const bool isBall = alone.pixels[i + 3] > 0;
            covered += isBall;
            others += isBall && !std::equal(&alone.pixels[i], &alone.pixels[i + 4], &image.pixels[i]);
        }
        EXPECT_GT(covered, 5000u);
        EXPECT_EQ(others, 0u);
    }
}

} // namespace
