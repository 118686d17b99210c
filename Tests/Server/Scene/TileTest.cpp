// A picture that is assembled from tiles equals the one drawn whole, whatever is shown around the bodies; and
// one without the bodies that others hide equals the one with all.

#include "Server/Scene/Rendra/EglContext.h"
#include "Server/Scene/Rendra/PictureTarget.h"
#include "Server/Scene/Rendra/Renderer.h"
#include "Tests/Server/Scene/Studio.h"
#include "Tests/Support/Seed.h"

#include <random>

using Vs::Scene::Image;
using Vs::Scene::NodeChange;
using Vs::Scene::ViewFragment;

namespace {

class Tiles : public SceneTest::Studio
{
protected:
    static constexpr int kWhole = 300, kHigh = 220;

    void SetUp() override
    {
        Studio::SetUp();
        if (IsSkipped())
            return;
        Vs::Status status;
        context = Rendra::EglContext::make(status);
        ASSERT_TRUE(context) << testing::PrintToString(status.toString());
        ASSERT_TRUE(renderer.initialize(status)) << testing::PrintToString(status.toString());
        look({-1, 2, -0.9});
        target.dome = false;
        target.effects = true;
    }
    void TearDown() override
    {
        if (context)
            surface.release();
    }

    /// In tiles no larger than this; scaled down by the picture's own `pixelScale`.
    Image drawIn(int width, int height)
    {
        Image image;
        image.width = kWhole;
        image.height = kHigh;
        image.pixels.resize(size_t(kWhole) * kHigh * 4);
        const int scale = target.pixelScale;
        EXPECT_TRUE(surface.prepare(width, height, scale, target.samples));
        target.framebuffer = surface.framebuffer();
        target.width = kWhole * scale;
        target.height = kHigh * scale;
        for (int y = 0; y < kHigh; y += height)
            for (int x = 0; x < kWhole; x += width) {
                const int partWidth = std::min(width, kWhole - x), partHeight = std::min(height, kHigh - y);
                target.tileX = x * scale;
                target.tileY = y * scale;
                target.tileWidth = partWidth * scale;
                target.tileHeight = partHeight * scale;
                renderer.render({fragment.get()}, target);
                surface.read(partWidth, partHeight, &image.pixels[(size_t(y) * kWhole + size_t(x)) * 4],
                             kWhole);
            }
        return image;
    }

    void expectNoSeams(const char* what)
    {
        SCOPED_TRACE(what);
        for (const int scale : {1, 2})
            for (const bool transparent : {false, true}) {
                target.pixelScale = scale;
                target.lineWidth = float(scale);
                target.transparentBackground = transparent;
                const Image whole = drawIn(kWhole, kHigh), tiled = drawIn(130, 90);
                // Where an edge runs exactly between two pixels, rounding may go the other way.
                EXPECT_LT(changed(whole, tiled, 3), 0.002)
                    << "scale " << scale << (transparent ? ", transparent" : "");
            }
    }

    std::unique_ptr<Rendra::EglContext> context;
    Rendra::Renderer renderer;
    Rendra::PictureTarget surface;
    Rendra::RenderTarget target;
};

TEST_F(Tiles, FitTogetherWithEverythingThatStandsAroundTheBodies)
{
    Vs::Scene::RenderParams& params = *fragment->renderParams();
    expectNoSeams("bodies alone");
    Vs::Scene::NodeChange(box).bodyColour({0.2f, 0.5f, 0.9f, 0.4f});
    expectNoSeams("glass");
    params.groundPlaneEnabled(true);
    params.groundShadowEnabled(true);
    params.groundReflectionEnabled(true);
    expectNoSeams("ground");
    params.objectShadowType(3);
    expectNoSeams("shadows");
    params.ambientOcclusionEnabled(true);
    expectNoSeams("occlusion");
    target.grid = target.gridNumbers = true;
    expectNoSeams("grid");
    params.nprEffect(1);
    expectNoSeams("pastel");
    params.nprEffect(3);
    expectNoSeams("graphite");
}

TEST_F(Tiles, ShadowsAndOcclusionAreFoundAgainOnlyIfABodyMoves)
{
    Vs::Scene::RenderParams& params = *fragment->renderParams();
    params.groundPlaneEnabled(true);
    params.groundShadowEnabled(true);
    params.objectShadowType(2);
    params.ambientOcclusionEnabled(true);
    const auto drawCalls = [&] {
        drawIn(kWhole, kHigh);
        return renderer.statistics().drawCalls;
    };
    const uint64_t first = drawCalls(), again = drawCalls();
    EXPECT_LT(again, first / 2);
    Vs::Scene::NodeChange(box)
        .highlight(Rendra::Graphics::Highlight::Pointed)
        .bodyColour({0.1f, 0.6f, 0.1f, 1});
    EXPECT_LE(drawCalls(), again + 2) << "a colour throws no shadow; what is pointed at has an outline";
    Vs::Scene::NodeChange(box).highlight(Rendra::Graphics::Highlight::None);
    fragment->camera()->orbit(10, 0);
    const uint64_t turned = drawCalls();
    EXPECT_GT(turned, again) << "occlusion depends on the view,";
    EXPECT_LT(turned, first) << "but shadows do not";
    Vs::Scene::NodeChange(box).transform(GkMatrix3d::translation({-20, -30, 0}));
    EXPECT_EQ(drawCalls(), first);
}

// Each body in a cell of its own, so that no two have a depth in common.
TEST_F(Tiles, LackNothingThatIsSeenWhateverWasHiddenInThePictureBefore)
{
    std::mt19937 random(TestSupport::seed());
    const auto number = [&](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    fragment = ViewFragment::make(nullptr);
    fragment->renderParams()->groundPlaneEnabled(false);
    const Vs::Colour blue{0.1f, 0.2f, 0.8f, 0.4f};
    const Shapes::MeshPtr meshes[] = {Shapes::box(11, 9, 2), Shapes::box(6, 6, 6, &blue), Shapes::ball(5, 28),
                                      Shapes::cylinder(3, 8)};
    for (int i = 0; i < 400; ++i) {
        const Vs::Colour colour{float(number(0, 1)), float(number(0, 1)), float(number(0, 1)),
                                i % 7 == 0 ? 0.5f : 1};
        const auto node = Rendra::Graphics::BodyNode::make(meshes[random() % 4], colour);
        GkMatrix3d place = GkMatrix3d::translation({i % 10 * 16.0, i / 10 % 10 * 16.0, i / 100 * 16.0}) *
                           GkMatrix3d::rotation(number(0, 6), {number(-1, 1), number(-1, 1), 1});
        if (i % 5 == 0)
            place = place * GkMatrix3d::scaling(number(0.2, 0.9));
        NodeChange(node.get()).transform(place);
        NodeChange(fragment->viewFragmentNode()).add(node);
    }
    target.effects = false;
    Vs::Scene::Camera& camera = *fragment->camera();
    uint64_t hidden = 0;
    for (int turn = 0; turn < 12; ++turn) {
        target.samples = turn % 3 == 2 ? 4 : 1;
        target.shiftX = turn % 4 == 1 ? 0.3 : 0;
        constexpr int kStyles[] = {Vs::Scene::kShaded, Vs::Scene::kShadedWithVisibleEdges,
                                   Vs::Scene::kShadedWithHiddenEdges, Vs::Scene::kWireframeWithVisibleEdges};
        fragment->renderParams()->visualStyle(kStyles[random() % 4]);
        look({number(-1, 1), number(-1, 1), number(-1, 1)}, int(random() % 2));
        camera.zoom(number(0.5, 3));
        if (turn % 6 == 5) // from among them
            camera.position({number(0, 150), number(0, 150), number(0, 90)});
        SCOPED_TRACE(testing::Message()
                     << "turn " << turn << ", style " << fragment->renderParams()->visualStyle());
        for (int step = 0; step < 2; ++step) {
            const int width = step == 0 && turn % 2 == 0 ? 130 : kWhole;
            const Image seen = drawIn(width, kHigh);
            hidden += renderer.statistics().hiddenInstances;
            target.skipsHidden = false;
            const Image all = drawIn(width, kHigh);
            EXPECT_EQ(renderer.statistics().hiddenInstances, 0u);
            target.skipsHidden = true;
            EXPECT_EQ(changed(seen, all, 0), 0) << "step " << step;
            camera.orbit(number(-40, 40), number(-20, 20));
        }
    }
    EXPECT_GT(hidden, 24u * 15) << "something was left out";
}

} // namespace
