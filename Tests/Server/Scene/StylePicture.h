#pragma once

#include "Server/Scene/EnvironmentManager.h"
#include "Server/Scene/NodeChange.h"
#include "Server/Scene/OffscreenRenderer.h"
#include "Server/Scene/Projection.h"
#include "Server/Scene/ViewFragment.h"
#include "Tests/Server/Scene/Shapes.h"

#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>

namespace SceneTest {

using namespace Vs::Scene;
using Rendra::Graphics::BodyNode;
using Vs::Colour;

/// How a style or an environment renders a box, a cylinder and a ball side by side.
class StylePicture : public testing::Test
{
protected:
    static constexpr uint32_t kWidth = 320, kHeight = 240;

    void SetUp() override
    {
        options.antiAliasing = false;
        Vs::Status status;
        if (!OffscreenRenderer::get()->render({fragment.get()}, 8, 8, options, image, status))
            GTEST_SKIP() << "NOTICE: no OpenGL to draw with: " << testing::PrintToString(status.toString());
        EnvironmentManager::getEnvManager()->activeEnvironmentID(L"PhotoBooth");
        fragment->renderParams()->groundPlaneEnabled(false);
        fragment->renderParams()->ambientOcclusionEnabled(false);
    }
    void TearDown() override { EnvironmentManager::getEnvManager()->activeEnvironmentID(before); }

    void show(const Shapes::MeshPtr& mesh, const GkVector3d& at, const Colour& colour)
    {
        const auto node = BodyNode::make(mesh, colour);
        NodeChange(node.get()).transform(GkMatrix3d::translation(at));
        NodeChange(fragment->viewFragmentNode()).add(node);
    }
    void showAll()
    {
        show(Shapes::box(40, 40, 40), {-70, -20, -20}, {0.6f, 0.1f, 0.1f, 1});
        show(Shapes::cylinder(20, 40), {0, 0, -20}, {0.5f, 0.5f, 0.5f, 1});
        show(Shapes::ball(22), {55, 0, 0}, {0.1f, 0.4f, 0.1f, 1});
        fragment->camera()->fit(fragment->bounds());
    }
    const Image& draw(int style)
    {
        fragment->renderParams()->visualStyle(style);
        return draw();
    }
    const Image& draw()
    {
        Vs::Status status;
        EXPECT_TRUE(
            OffscreenRenderer::get()->render({fragment.get()}, kWidth, kHeight, options, image, status))
            << testing::PrintToString(status.toString());
        return image;
    }
    const Image& drawIn(const wchar_t* environment)
    {
        EnvironmentManager::getEnvManager()->activeEnvironmentID(environment);
        return draw();
    }
    /// The pixel in which a point of the world is seen.
    const uint8_t* at(const GkPoint3d& world) const
    {
        const GkPoint3d p =
            Projection(*fragment->camera(), kWidth, kHeight, fragment->bounds()).worldToScreen(world);
        return image.pixel(uint32_t(p.x), uint32_t(kHeight - p.y));
    }
    /// The strongest line across the direction of a segment, at that many places along it: 0 for none, 255.
    std::vector<int> inkAlong(const GkPoint3d& from, const GkPoint3d& to, int places) const
    {
        std::vector<int> ink;
        const Projection projection(*fragment->camera(), kWidth, kHeight, fragment->bounds());
        for (int i = 0; i < places; ++i) {
            const GkPoint3d p = projection.worldToScreen(from + (to - from) * (0.1 + 0.8 * i / (places - 1)));
            int strongest = 0;
            for (int dx = -1; dx <= 1; ++dx)
                for (int dy = -1; dy <= 1; ++dy)
                    strongest = std::max<int>(
                        strongest, image.pixel(uint32_t(p.x + dx), uint32_t(kHeight - p.y + dy))[3]);
            ink.push_back(strongest);
        }
        return ink;
    }

    static size_t differences(const Image& a, const Image& b)
    {
        size_t count = 0;
        for (size_t i = 0; i < a.pixels.size(); i += 4)
            count += std::abs(a.pixels[i] - b.pixels[i]) + std::abs(a.pixels[i + 1] - b.pixels[i + 1]) +
                         std::abs(a.pixels[i + 2] - b.pixels[i + 2]) >
                     24;
        return count;
    }

    Vs::StrongRef<ViewFragment> fragment = ViewFragment::make(nullptr);
    ImageOptions options;
    Image image;
    const std::wstring before = EnvironmentManager::getEnvManager()->activeEnvironmentID();
};

} // namespace SceneTest
