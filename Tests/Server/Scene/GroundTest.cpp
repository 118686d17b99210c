// The ground below the bodies: where it is, and what is visible on it.

#include "Server/Scene/Rendra/Ground.h"

#include "Tests/Server/Scene/Studio.h"

#include <cmath>

using Rendra::Graphics::BodyNode;
using Vs::Scene::Image;
using Vs::Scene::NodeChange;

namespace {

TEST(GroundFinder, TheGroundIsAsDeepAsTheLowestPointOfABodyNotOfItsBox)
{
    const auto root = Rendra::Graphics::GroupNode::make();
    const auto tilted = BodyNode::make(Shapes::ball(10, 64), {});
    // The box around a rotated ball is larger than the ball.
    NodeChange(tilted.get())
        .transform(GkMatrix3d::translation({1e6, 0, 50}) *
                   GkMatrix3d::rotation(0.7, GkVector3d(1, 2, 3).normal()));
    NodeChange(root.get()).add(tilted);
    Rendra::DrawList list;
    Rendra::GroundFinder finder;
    EXPECT_EQ(finder.find(list, {0, 0, 1}), nullptr) << "nothing stands on it yet";

    const auto height = [&](const GkVector3d& up) {
        list.update(*root);
        const Rendra::Ground* ground = finder.find(list, up);
        return ground ? ground->level + list.origin().dotProduct(up) : 0.0;
    };
    EXPECT_NEAR(height({0, 0, 1}), 40, 0.1);
    EXPECT_NEAR(height({0, 1, 0}), -10, 0.1);
    EXPECT_NEAR(height({0, 0, -1}), -60, 0.1);
    const GkVector3d slanting = GkVector3d(1, 1, 1).normal();
    EXPECT_NEAR(height(slanting), GkVector3d(1e6, 0, 50).dotProduct(slanting) - 10, 0.2);

    const auto deeper = BodyNode::make(Shapes::box(5, 5, 5), {});
    NodeChange(deeper.get()).transform(GkMatrix3d::translation({1e6, 0, 7}));
    NodeChange(root.get()).add(deeper);
    EXPECT_NEAR(height({0, 0, 1}), 7, 1e-3);
    NodeChange(deeper.get()).transform(GkMatrix3d::translation({1e6, 0, 45}));
    EXPECT_NEAR(height({0, 0, 1}), 40, 0.1) << "it moved up";
    NodeChange(tilted.get()).visible(false);
    EXPECT_NEAR(height({0, 0, 1}), 45, 1e-3);
}

class GroundPicture : public SceneTest::Studio
{
};

TEST_F(GroundPicture, ThePlaneLiesBelowTheBodiesAndFadesAwayAndIsNotSeenFromBelow)
{
    inEveryView({-1, 2, -1.5}, [&] {
        fragment->renderParams()->groundPlaneEnabled(false);
        const Image without = draw();
        fragment->renderParams()->groundPlaneEnabled(true);
        const Image with = draw();
        EXPECT_GT(difference(with, without, {50, -30, 0}), 8) << "beside the bodies";
        EXPECT_LE(difference(with, without, {0, 0, 40}), 1) << "a body is before it";
        EXPECT_LE(difference(with, without, {100, 0, 35}), 1);
    });
    inEveryView({-1, 2, 1.5}, [&] {
        fragment->renderParams()->groundPlaneEnabled(false);
        const Image without = draw();
        fragment->renderParams()->groundPlaneEnabled(true);
        EXPECT_EQ(changed(draw(), without, 0), 0);
    });
    // Far enough away that the place where it ends is in the picture.
    look({-1, 2, -1.5});
    fragment->camera()->zoom(0.06);
    fragment->renderParams()->groundPlaneEnabled(false);
    const Image without = draw();
    fragment->renderParams()->groundPlaneEnabled(true);
    const Image with = draw();
    EXPECT_GT(changed(with, without), 0.01);
    for (const GkPoint3d& far : {GkPoint3d(900, 0, 0), GkPoint3d(-900, 0, 0), GkPoint3d(0, 900, 0)})
        EXPECT_LE(difference(with, without, far), 1);
}

TEST_F(GroundPicture, ABodyThrowsASoftShadowOnTheGroundThatIsDarkestAtItsFoot)
{
    fragment->renderParams()->groundPlaneEnabled(true);
    inEveryView({-1, 2, -1.5}, [&] {
        fragment->renderParams()->groundShadowEnabled(false);
        const Image without = draw();
        fragment->renderParams()->groundShadowEnabled(true);
        const Image with = draw();
        const auto darkening = [&](double away) {
            const GkPoint3d place(0, -20 - away, 0);
            return brightness(without, place) - brightness(with, place);
        };
        EXPECT_GT(darkening(3), 30);
        EXPECT_GT(darkening(3), darkening(15) + 5);
        EXPECT_GT(darkening(15), darkening(40) + 5);
        EXPECT_LE(std::abs(darkening(150)), 2);
        EXPECT_LE(difference(with, without, {0, 0, 40}), 1) << "none on the bodies themselves";
    });
    // Wires don't hide it, and are as dark.
    fragment->renderParams()->visualStyle(Vs::Scene::kWireframe);
    look({-1, 2, -1.5});
    const Image with = draw();
    fragment->renderParams()->groundShadowEnabled(false);
    const int darkening = brightness(draw(), {12, 3, 0}) - brightness(with, {12, 3, 0});
    EXPECT_GT(darkening, 15);
    EXPECT_LT(darkening, 70);
}

TEST_F(GroundPicture, TheShadowStaysWhereItIsWhenTheCameraMovesAndFollowsABodyThatMoves)
{
    fragment->renderParams()->groundPlaneEnabled(true);
    fragment->renderParams()->groundShadowEnabled(true);
    const std::vector<GkPoint3d> places{{0, -25, 0}, {30, -25, 0}, {60, -30, 0}, {-40, -10, 0}};
    std::vector<int> seen;
    const Image first = draw();
    for (const GkPoint3d& place : places)
        seen.push_back(brightness(first, place));
    look({0.6, 2, -1.9});
    const Image second = draw();
    for (size_t i = 0; i < places.size(); ++i)
        EXPECT_NEAR(brightness(second, places[i]), seen[i], 8) << i;

    const GkPoint3d foot(0, -23, 0), later(0, -123, 0);
    EXPECT_LT(brightness(second, foot), brightness(second, later) - 30);
    NodeChange(box).transform(GkMatrix3d::translation({-20, -120, 0}));
    const Image moved = draw();
    EXPECT_GT(brightness(moved, foot), brightness(moved, later) + 30);
    NodeChange(box).visible(false);
    EXPECT_GT(brightness(draw(), later), brightness(moved, later) + 30);
}

TEST_F(GroundPicture, BodiesAreMirroredInTheGroundTheFainterTheHigherTheyAre)
{
    fragment->renderParams()->groundPlaneEnabled(true);
    NodeChange(box).bodyColour({0.8f, 0.02f, 0.02f, 1});
    inEveryView({0, 1, -0.4}, [&] {
        fragment->renderParams()->groundReflectionEnabled(false);
        const Image without = draw();
        fragment->renderParams()->groundReflectionEnabled(true);
        const Image with = draw();
        // Where the front of the box would be if it continued below the ground.
        const auto redness = [&](const Image& image, double below) {
            const uint8_t* p = pixel(image, {0, -20, -below});
            return p[0] - p[1];
        };
        EXPECT_GT(redness(with, 4), redness(without, 4) + 25);
        EXPECT_GT(redness(with, 4), redness(with, 25) + 10);
        EXPECT_GT(redness(with, 12), redness(without, 12) + 10);
        EXPECT_LE(difference(with, without, {0, -20, 20}), 1) << "not on the bodies";
        EXPECT_LE(difference(with, without, {55, -20, -4}), 2) << "not where none is mirrored";
    });
    fragment->renderParams()->groundPlaneEnabled(false);
    const Image without = draw();
    fragment->renderParams()->groundReflectionEnabled(false);
    EXPECT_EQ(changed(draw(), without, 0), 0) << "there is no mirror without a ground";
}

TEST_F(GroundPicture, ATransparentPictureHasTheShadowAsOpacityAlone)
{
    options.transparentBackground = true;
    fragment->renderParams()->groundPlaneEnabled(true);
    const GkPoint3d foot(0, -23, 0), far(0, -190, 0);
    Image image = draw();
    EXPECT_EQ(pixel(image, foot)[3], 0) << "the plane alone is not seen";
    fragment->renderParams()->groundShadowEnabled(true);
    image = draw();
    EXPECT_GT(pixel(image, foot)[3], 60);
    EXPECT_LT(pixel(image, foot)[3], 220);
    EXPECT_EQ(pixel(image, far)[3], 0);
    for (int channel = 0; channel < 3; ++channel)
        EXPECT_LT(pixel(image, foot)[channel], 8) << "black, so that it suits every page";
}

TEST_F(GroundPicture, AGroundUnderBodiesFarFromTheOriginOrVeryLargeOrSmallIsTheSame)
{
    fragment->renderParams()->groundPlaneEnabled(true);
    fragment->renderParams()->groundShadowEnabled(true);
    const Image usual = draw();
    const auto place = [&](const GkMatrix3d& all) {
        NodeChange(box).transform(all * GkMatrix3d::translation({-20, -20, 0}));
        NodeChange(ball).transform(all * GkMatrix3d::translation({100, 0, 20}));
        look({-1, 2, -1.5});
    };
    for (const double factor : {1e-6, 1e6}) {
        place(GkMatrix3d::scaling(factor));
        EXPECT_LT(changed(draw(), usual, 12), 0.02) << factor;
    }
    place(GkMatrix3d::translation({1e9, -1e9, 1e9}));
    EXPECT_LT(changed(draw(), usual, 12), 0.03) << "to the rounding of a double";
}

TEST_F(GroundPicture, AnEmptySceneHasNoGround)
{
    NodeChange(box).visible(false);
    NodeChange(ball).visible(false);
    const Image without = draw();
    fragment->renderParams()->groundPlaneEnabled(true);
    fragment->renderParams()->groundShadowEnabled(true);
    EXPECT_EQ(changed(draw(), without, 0), 0);
}

} // namespace
