// Shadows that bodies cast on each other, and ambient occlusion in corners.

#include "Server/Scene/EnvironmentManager.h"
#include "Server/Scene/GraphicsOptionGroup.h"
#include "Tests/Server/Scene/Studio.h"

#include <cmath>

using Vs::Scene::Image;
using Vs::Scene::NodeChange;

namespace {

/// A plate with a post on it. The lamp is at the environment's first one.
class ShadowPicture : public SceneTest::Studio
{
protected:
    void SetUp() override
    {
        Studio::SetUp();
        if (IsSkipped())
            return;
        NodeChange(box).visible(false);
        NodeChange(ball).visible(false);
        show(Shapes::box(300, 300, 10), {-150, -150, -10}, {0.6f, 0.6f, 0.6f, 1});
        post = show(Shapes::box(16, 16, 60), {-8, -8, 0}, {0.6f, 0.6f, 0.6f, 1});
        const auto* manager = Vs::Scene::EnvironmentManager::getEnvManager();
        lamp = manager->activeEnvironment().lamps[0].direction;
        fragment->renderParams()->visualStyle(Vs::Scene::kShaded);
    }

    /// The place on the plate that a part of the post, from 0 to 1, casts its shadow on, a few millimetres
    /// aside.
    GkPoint3d shadowOf(double part, double aside = 0) const
    {
        const GkVector3d across = GkVector3d(-lamp.y, lamp.x, 0).normal() * aside;
        return {-lamp.x / lamp.z * 60 * part + across.x, -lamp.y / lamp.z * 60 * part + across.y, 0};
    }

    /// From above and from the side on which the shadow lies, so that the post doesn't hide it.
    GkVector3d onShadow(double aside = 0) const
    {
        return {lamp.x * 0.4 - lamp.y * aside, lamp.y * 0.4 + lamp.x * aside, -1};
    }

    Rendra::Graphics::BodyNode* post = nullptr;
    GkVector3d lamp;
};

TEST_F(ShadowPicture, ABodyThrowsItsShadowAwayFromTheLampOnAnother)
{
    for (const int style : {Vs::Scene::kShaded, Vs::Scene::kShadedWithVisibleEdges, Vs::Scene::kRealistic})
        for (const int projection : {Vs::Scene::kParallelProjection, Vs::Scene::kPerspectiveProjection})
            for (const int type : {1, 2, 3}) {
                SCOPED_TRACE(testing::Message()
                             << "style " << style << ", projection " << projection << ", type " << type);
                fragment->renderParams()->visualStyle(style);
                look(onShadow(), projection);
                fragment->camera()->zoom(1.6);
                fragment->renderParams()->objectShadowType(0);
                const Image without = draw();
                fragment->renderParams()->objectShadowType(type);
                const Image with = draw();
                const int inShadow = brightness(with, shadowOf(0.6));
                EXPECT_LT(inShadow, brightness(with, shadowOf(-0.6)) - 15) << "none towards the lamp";
                EXPECT_LT(inShadow, brightness(with, shadowOf(0.6, 40)) - 15) << "nor beside it";
                EXPECT_LT(inShadow, brightness(with, shadowOf(1.7)) - 15) << "nor beyond its end";
                // Gloss isn't the same everywhere, but doesn't change where the lamp reaches.
                const bool glossy = style == Vs::Scene::kRealistic;
                const int beside = brightness(with, shadowOf(0.6, 40));
                EXPECT_NEAR(
                    beside,
                    glossy ? brightness(without, shadowOf(0.6, 40)) : brightness(with, shadowOf(-1.2)), 3)
                    << "a lit plane has no stripes";
                EXPECT_LT(inShadow, brightness(without, shadowOf(0.6)));
            }
}

TEST_F(ShadowPicture, AShadowBeginsAtTheFootOfWhatThrowsIt)
{
    look(onShadow(), Vs::Scene::kParallelProjection);
    fragment->camera()->zoom(3);
    for (const int type : {1, 2, 3}) {
        fragment->renderParams()->objectShadowType(type);
        const Image with = draw();
        const GkVector3d away = GkVector3d(-lamp.x, -lamp.y, 0).normal();
        // Just behind the post, starting at its side or its corner.
        const double side = 8 / std::max(std::abs(away.x), std::abs(away.y));
        const GkVector3d near = away * (side + 4);
        EXPECT_LT(brightness(with, {near.x, near.y, 0}), brightness(with, shadowOf(-1)) - 15) << type;
    }
}

TEST_F(ShadowPicture, FlatAndRoundFacesInTheLightAreNotShadedByThemselves)
{
    show(Shapes::ball(30), {80, 80, 30}, {0.6f, 0.6f, 0.6f, 1});
    NodeChange(post).visible(false);
    look(-lamp, Vs::Scene::kParallelProjection); // the lamp is behind the viewer: no shadow is visible
    fragment->renderParams()->visualStyle(Vs::Scene::kRealistic);
    fragment->renderParams()->objectShadowType(0);
    const Image without = draw();
    for (const int type : {1, 2, 3}) {
        fragment->renderParams()->objectShadowType(type);
        EXPECT_LT(changed(draw(), without, 6), 0.004) << type;
    }
}

TEST_F(ShadowPicture, UntilSomebodyChoosesRealisticBodiesHaveSoftShadowsAndOthersNone)
{
    Vs::Scene::GraphicsOptionGroup::get()->reset();
    fragment = Vs::Scene::ViewFragment::make(nullptr);
    Vs::Scene::RenderParams& params = *fragment->renderParams();
    params.groundPlaneEnabled(false);
    params.groundShadowEnabled(true);
    params.ambientOcclusionEnabled(false);
    show(Shapes::box(60, 60, 10), {-30, -30, -10}, {0.6f, 0.6f, 0.6f, 1});
    show(Shapes::box(16, 16, 60), {-8, -8, 0}, {0.6f, 0.6f, 0.6f, 1});
    options.dome = true;
    look(onShadow(), Vs::Scene::kParallelProjection);
    const GkPoint3d onPlate = shadowOf(0.35), onFloor = shadowOf(0.9) - GkVector3d(0, 0, 10);
    const GkVector3d aside = GkVector3d(-lamp.y, lamp.x, 0).normal() * 35;
    const auto dark = [&](const GkPoint3d& place, const GkPoint3d& beside) {
        const Image image = draw();
        return brightness(image, beside) - brightness(image, place);
    };
    const GkPoint3d before = shadowOf(-0.35);
    params.visualStyle(Vs::Scene::kRealistic);
    EXPECT_GT(dark(onPlate, before), 15);
    const int shaded = dark(onFloor, onFloor + aside);
    EXPECT_GT(shaded, 15) << "the floor of the environment has it, too";
    params.visualStyle(Vs::Scene::kShaded);
    EXPECT_LT(dark(onPlate, before), 4);
    params.visualStyle(Vs::Scene::kRealistic);
    params.objectShadowType(0);
    EXPECT_LT(dark(onPlate, before), 8);
    EXPECT_LT(dark(onFloor, onFloor + aside), shaded - 12);
}

TEST_F(ShadowPicture, SofterShadowsHaveBroaderEdges)
{
    look({0, 0.01, -1}, Vs::Scene::kParallelProjection);
    fragment->camera()->zoom(2.5);
    const auto widthOfEdge = [&](int type) {
        fragment->renderParams()->objectShadowType(type);
        const Image with = draw(480, 360);
        const int dark = brightness(with, shadowOf(0.7)), bright = brightness(with, shadowOf(0.7, 40));
        int between = 0;
        for (double aside = 0; aside < 40; aside += 0.1) {
            const int seen = brightness(with, shadowOf(0.7, aside));
            between += seen > dark + (bright - dark) / 8 && seen < bright - (bright - dark) / 8;
        }
        return between;
    };
    const int sharp = widthOfEdge(1), soft = widthOfEdge(2), softer = widthOfEdge(3);
    EXPECT_LT(sharp, soft);
    EXPECT_LT(soft, softer);
    EXPECT_GT(softer, 2 * sharp);
}

TEST_F(ShadowPicture, ShadowsFollowBodiesThatMoveAndStayWhenTheCameraMoves)
{
    look(onShadow());
    fragment->renderParams()->objectShadowType(2);
    const Image before = draw();
    ASSERT_LT(brightness(before, shadowOf(0.6)), brightness(before, shadowOf(-0.6)) - 15);
    look(onShadow(0.4));
    const Image turned = draw();
    EXPECT_LT(brightness(turned, shadowOf(0.6)), brightness(turned, shadowOf(-0.6)) - 15);
    NodeChange(post).transform(GkMatrix3d::translation({-8 + shadowOf(-1.2).x, -8 + shadowOf(-1.2).y, 0}));
    const Image moved = draw();
    EXPECT_GT(brightness(moved, shadowOf(0.6)), brightness(turned, shadowOf(0.6)) + 15);
    EXPECT_LT(brightness(moved, shadowOf(-0.6)), brightness(moved, shadowOf(0.6)) - 15);
}

TEST_F(ShadowPicture, FarFromTheOriginAndVerySmallShadowsAreTheSame)
{
    const GkVector3d places[] = {{-150, -150, -10}, {-8, -8, 0}};
    const auto& children = fragment->viewFragmentNode()->children();
    ASSERT_EQ(children.size(), 4u);
    fragment->renderParams()->objectShadowType(2);
    look(onShadow());
    const Image usual = draw();
    for (const GkMatrix3d& all : {GkMatrix3d::scaling(1e-6), GkMatrix3d::translation({1e9, -1e9, 1e9})}) {
        for (size_t i = 0; i < 2; ++i)
            NodeChange(children[i + 2].get()).transform(all * GkMatrix3d::translation(places[i]));
        look(onShadow());
        EXPECT_LT(changed(draw(), usual, 12), 0.02);
    }
}

TEST_F(ShadowPicture, CornersAreDarkerWithAmbientOcclusionInEveryView)
{
    inEveryView({0.4, 0.5, -0.7}, [&] {
        fragment->camera()->zoom(1.6);
        fragment->renderParams()->ambientOcclusionEnabled(false);
        const Image without = draw();
        fragment->renderParams()->ambientOcclusionEnabled(true);
        const Image with = draw();
        const auto darkening = [&](const GkPoint3d& place) {
            return brightness(without, place) - brightness(with, place);
        };
        EXPECT_GT(darkening({0, -10, 0}), 8) << "at the foot of the post";
        EXPECT_LE(std::abs(darkening({0, -60, 0})), 3) << "on the open plate";
        EXPECT_LE(std::abs(darkening({0, 0, 60})), 3) << "on the post's top";
    });
}

TEST_F(ShadowPicture, CornersAreAsDarkFarFromTheOriginAndInASmallModel)
{
    const GkVector3d places[] = {{-150, -150, -10}, {-8, -8, 0}};
    const auto& children = fragment->viewFragmentNode()->children();
    fragment->renderParams()->ambientOcclusionEnabled(true);
    for (const int projection : {Vs::Scene::kParallelProjection, Vs::Scene::kPerspectiveProjection}) {
        for (size_t i = 0; i < 2; ++i)
            NodeChange(children[i + 2].get()).transform(GkMatrix3d::translation(places[i]));
        look({0.4, 0.5, -0.7}, projection);
        const Image usual = draw();
        for (const GkMatrix3d& all : {GkMatrix3d::scaling(1e-6), GkMatrix3d::scaling(1e6),
                                      GkMatrix3d::translation({1e9, -1e9, 1e9})}) {
            for (size_t i = 0; i < 2; ++i)
                NodeChange(children[i + 2].get()).transform(all * GkMatrix3d::translation(places[i]));
            look({0.4, 0.5, -0.7}, projection);
            EXPECT_LT(changed(draw(), usual, 12), 0.02) << projection;
        }
    }
}

} // namespace
