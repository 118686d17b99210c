#include "Server/Scene/EnvironmentManager.h"
#include "Server/Scene/NodeChange.h"
#include "Server/Scene/OffscreenRenderer.h"
#include "Server/Scene/Projection.h"
#include "Server/Scene/StrokeFont.h"
#include "Server/Scene/ViewFragment.h"
#include "Tests/Server/Scene/Shapes.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>

using namespace Vs;
using namespace Vs::Scene;
using Rendra::Graphics::BodyNode;
using Rendra::Graphics::EBillboard;
using Rendra::Graphics::GeometryNode;
using Rendra::Graphics::InstanceNode;
using Rendra::Graphics::Texture;

namespace {

constexpr uint32_t kWidth = 200, kHeight = 120;

/// Lines and pictures over bodies, examined in pictures without a background.
class Helpers : public testing::Test
{
protected:
    void SetUp() override
    {
        Status status;
        if (!OffscreenRenderer::get()->render({}, 1, 1, {}, m_image, status))
            GTEST_SKIP() << "NOTICE: no OpenGL to draw with: " << testing::PrintToString(status.toString());
    }

    Helpers() : m_fragment(ViewFragment::make(Segment::makeTransientStandalone("HelpersTest")))
    {
        m_fragment->renderParams()->visualStyle(kShaded);
        m_options.transparentBackground = true;
        m_options.fine = false;
        m_options.antiAliasing = false;
        const auto box = BodyNode::make(Shapes::box(20, 20, 20), Colour{0.02f, 0.6f, 0.02f, 1});
        NodeChange(m_fragment->viewFragmentNode()).add(box);
        m_fragment->camera()->look({0, 0, -1}, {0, 1, 0});
        m_fragment->camera()->fit(m_fragment->bounds());
    }

    /// A red square of 20 pixels that is half visible through what hides it.
    void addMarker(float effectOpacity = -1)
    {
        auto texture = std::make_shared<Texture>();
        texture->width = texture->height = 40;
        texture->scale = 0.5;
        texture->occludedOpacity = 0.5;
        for (int i = 0; i < 40 * 40; ++i)
            texture->pixels.insert(texture->pixels.end(), {255, 0, 0, 255});
        m_geometry = NodeChange::createLODGeometryNode(nullptr, true);
        NodeChange(m_geometry.get())
            .depthPriority(1)
            .billBoard({}, {0, 0, 1}, EBillboard::FacesViewer)
            .texture(texture);
        m_marker = NodeChange::createInstanceNode(m_fragment->viewFragmentNode(), true);
        NodeChange(m_marker.get()).add(m_geometry).occludedEffect("", {1, 1, 1, 1}, effectOpacity);
    }

    void draw()
    {
        Status status;
        ASSERT_TRUE(
            OffscreenRenderer::get()->render({m_fragment.get()}, kWidth, kHeight, m_options, m_image, status))
            << testing::PrintToString(status.toString());
    }
    /// The red of a pixel at that offset from the place's.
    int redAt(const GkPoint3d& world, int right = 0, int up = 0) const
    {
        const Projection projection(*m_fragment->camera(), kWidth, kHeight);
        const GkPoint3d p = projection.worldToScreen(world);
        return m_image.pixel(uint32_t(int(p.x) + right), uint32_t(int(kHeight) - 1 - int(p.y) - up))[0];
    }

    StrongRef<ViewFragment> m_fragment;
    StrongRef<GeometryNode> m_geometry;
    StrongRef<InstanceNode> m_marker;
    ImageOptions m_options;
    Image m_image;
};

} // namespace

TEST_F(Helpers, DarkLinesOverTheModelAreSeenBeforeEverySky)
{
    EnvironmentManager& environments = *EnvironmentManager::getEnvManager();
    const std::wstring before = environments.activeEnvironmentID();
    const auto over = ViewFragment::make(Segment::makeTransientStandalone("Over"));
    over->renderParams()->visualStyle(kHelpersOnly);
    const auto geometry = NodeChange::createLODGeometryNode(over->viewFragmentNode(), true);
    NodeChange(geometry.get()).colorEffect({0.02f, 0.02f, 0.02f, 1}).polyline({{-0.3, 0, 0}, {0.3, 0, 0}});
    Camera& camera = *over->camera();
    camera.position({0, 0, -1});
    camera.target({0, 0, 0});
    camera.up({0, 1, 0});
    camera.extentsWidth(1);
    camera.extentsHeight(1);
    m_options.transparentBackground = false;
    for (const Environment& environment : environments.environments()) {
        environments.activeEnvironmentID(environment.id);
        Image plain, lined;
        Status status;
        const auto sky = ViewFragment::make(Segment::makeTransientStandalone("Sky"));
        for (const bool drawn : {false, true}) {
            std::vector<ViewFragment*> fragments{sky.get()};
            if (drawn)
                fragments.push_back(over.get());
            ASSERT_TRUE(OffscreenRenderer::get()->render(fragments, kWidth, kHeight, m_options,
                                                         drawn ? lined : plain, status));
        }
        int most = 0;
        for (size_t i = 0; i < plain.pixels.size(); ++i)
            most = std::max(most, std::abs(plain.pixels[i] - lined.pixels[i]));
        EXPECT_GT(most, 70) << testing::PrintToString(environment.id);
    }
    environments.activeEnvironmentID(before);
}

TEST_F(Helpers, AMarkerKeepsItsSizeOnTheScreenWhateverTheCameraDoes)
{
    addMarker();
    const GkPoint3d place(10, 10, 25);
    NodeChange(m_marker.get()).transform(place);
    for (const int projection : {kPerspectiveProjection, kParallelProjection})
        for (const double zoom : {1.0, 0.3, 1.7}) {
            m_fragment->camera()->toggleProjection(EProjection(projection));
            m_fragment->camera()->fit(m_fragment->bounds());
            m_fragment->camera()->zoom(zoom);
            m_fragment->camera()->roll(0.4);
            draw();
            EXPECT_GT(redAt(place), 250);
            EXPECT_GT(redAt(place, 8, 8), 250);
            EXPECT_LT(redAt(place, 14, 0), 150) << "zoom " << zoom;
            EXPECT_LT(redAt(place, 0, -14), 150) << "zoom " << zoom;
        }
}

TEST_F(Helpers, ADecimalPointIsSeenWhereverItFallsBetweenThePixels)
{
    m_fragment->camera()->toggleProjection(kParallelProjection);
    m_fragment->camera()->fit(m_fragment->bounds());
    const double pixel = Projection(*m_fragment->camera(), kWidth, kHeight).pixelSize(1);
    for (const bool smooth : {false, true})
        for (const double height : {9.0, 12.0})
            for (int offset = 0; offset < 20; ++offset) {
                m_options.antiAliasing = smooth;
                const GkPoint3d corner(5 + offset * 0.05 * pixel, 7 + offset * 0.35 * pixel, 25);
                const auto dot = NodeChange::createLODGeometryNode(m_fragment->viewFragmentNode(), true);
                NodeChange(dot.get()).colorEffect({1, 0, 0, 1});
                for (const StrokeFont::Polyline& stroke : StrokeFont::lines(L".")) {
                    GeometryNode::Polyline line;
                    for (const GkPoint2d& point : stroke)
                        line.push_back(corner + GkVector3d(point.x, point.y, 0) * (height * pixel));
                    NodeChange(dot.get()).polyline(line);
                }
                draw();
                double covered = 0; // In whole pixels of it.
                for (int x = -2; x <= 3; ++x)
                    for (int y = -2; y <= 4; ++y)
                        covered += redAt(corner, x, y) / 255.0;
                NodeChange(m_fragment->viewFragmentNode()).remove(dot.get());
                EXPECT_GT(covered, 1.2) << height << " high, " << offset << (smooth ? ", smooth" : "");
            }
}

TEST_F(Helpers, AHiddenMarkerShowsThroughAsMuchAsItsPictureSaysOrItsPlaceDoes)
{
    const GkPoint3d inside(10, 10, 10);
    addMarker();
    draw();
    const int bare = redAt(inside);
    NodeChange(m_marker.get()).transform(inside);
    draw();
    EXPECT_NEAR(redAt(inside), (bare + 255) / 2, 8);
    NodeChange(m_marker.get()).occludedEffect("", {1, 1, 1, 1}, 0.0f);
    draw();
    EXPECT_NEAR(redAt(inside), bare, 2);
}

TEST_F(Helpers, AMarkerOnASlantingFaceIsSeenWhole)
{
    addMarker();
    m_fragment->camera()->look({1, 0, -1}, {0, 0, 1});
    for (const int projection : {kPerspectiveProjection, kParallelProjection}) {
        m_fragment->camera()->toggleProjection(EProjection(projection));
        m_fragment->camera()->fit(m_fragment->bounds());
        const GkPoint3d place(10, 10, 20);
        NodeChange(m_marker.get()).transform(place);
        draw();
        EXPECT_GT(redAt(place, 0, 7), 250);
        EXPECT_GT(redAt(place, 0, -7), 250);
    }
}

TEST_F(Helpers, AMarkerBeyondAllBodiesIsNotCutAwayAndChangesNoBounds)
{
    const BBox bounds = m_fragment->bounds();
    addMarker();
    m_fragment->camera()->toggleProjection(kParallelProjection);
    const GkPoint3d before(10, 10, 60), beside(31, 10, -400);
    NodeChange(m_marker.get()).transform(before);
    draw();
    EXPECT_GT(redAt(before), 250);
    NodeChange(m_marker.get()).transform(beside);
    draw();
    EXPECT_GT(redAt(beside), 250);
    EXPECT_TRUE(m_fragment->bounds().high().isEqualTo(bounds.high()));
    EXPECT_TRUE(m_fragment->bounds().low().isEqualTo(bounds.low()));
}

TEST_F(Helpers, AMarkerThatGoesLeavesThePictureAsItWas)
{
    draw();
    const std::vector<uint8_t> before = m_image.pixels;
    addMarker();
    NodeChange(m_marker.get()).transform(GkPoint3d(10, 10, 30));
    draw();
    EXPECT_NE(m_image.pixels, before);
    uint64_t seen = 0;
    m_fragment->update(seen);
    NodeChange(m_marker.get()).transform(GkPoint3d(10, 10, 30));
    NodeChange(m_marker.get()).transform(GkPoint3d(std::numeric_limits<double>::quiet_NaN(), 0, 0));
    EXPECT_FALSE(m_fragment->update(seen));
    NodeChange(m_fragment->viewFragmentNode()).remove(m_marker.get());
    EXPECT_TRUE(m_fragment->update(seen));
    draw();
    EXPECT_EQ(m_image.pixels, before);
}

TEST_F(Helpers, AFragmentOfLinesAloneIsDrawnOverTheModelWithAnArcThatCloses)
{
    auto over = ViewFragment::make(Segment::makeTransientStandalone("HelpersTest"), "Over");
    over->renderParams()->visualStyle(kHelpersOnly);
    Camera* camera = over->camera();
    camera->position({0, 0, -1});
    camera->target({0, 0, 0});
    camera->up({0, 1, 0});
    camera->extentsWidth(1);
    camera->extentsHeight(1);
    const auto circle = NodeChange::createLODGeometryNode(over->viewFragmentNode(), true);
    NodeChange(circle.get())
        .colorEffect({1, 0, 0, 1})
        .arc({}, {0, 0, 1}, {0, 0.25, 0}, 0, 2 * std::numbers::pi, 0x1000);
    ASSERT_EQ(circle->polylines().size(), 1u);
    EXPECT_TRUE(circle->polylines()[0].front().isEqualTo(circle->polylines()[0].back()));
    EXPECT_EQ(circle->clientType(), 0x1000);

    Status status;
    ASSERT_TRUE(OffscreenRenderer::get()->render({m_fragment.get(), over.get()}, kWidth, kHeight, m_options,
                                                 m_image, status));
    // A radius of a quarter of the smaller side, wherever the view is from.
    for (int angle = 0; angle < 360; angle += 15) {
        int reddest = 0;
        for (double radius = kHeight / 4.0 - 2; radius < kHeight / 4.0 + 2; radius += 0.5) {
            const double x = kWidth / 2.0 + radius * std::cos(angle * std::numbers::pi / 180);
            const double y = kHeight / 2.0 + radius * std::sin(angle * std::numbers::pi / 180);
            for (int beside = -1; beside <= 1; ++beside)
                reddest = std::max<int>(
                    reddest, m_image.pixel(uint32_t(int(x) + beside), uint32_t(int(y) + beside))[0]);
        }
        EXPECT_GT(reddest, 200) << angle;
    }
}
