#pragma once

#include "Server/Scene/NodeChange.h"
#include "Server/Scene/OffscreenRenderer.h"
#include "Server/Scene/Projection.h"
#include "Server/Scene/ViewFragment.h"
#include "Tests/Server/Scene/Shapes.h"

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>

namespace SceneTest {

/// Some bodies on a ground at z = 0, seen from above: a box of 40 around the origin and, beside it at x =
/// 100, a ball of radius 20. Pictures are of good quality, with all effects that are requested; everything
/// that the user's options could turn on is initially off.
class Studio : public testing::Test
{
protected:
    static constexpr uint32_t kWidth = 240, kHeight = 180;

    void SetUp() override
    {
        Vs::Status status;
        if (!Vs::Scene::OffscreenRenderer::get()->render({}, 1, 1, {}, m_image, status))
            GTEST_SKIP() << "NOTICE: no OpenGL to draw with: " << testing::PrintToString(status.toString());
        Vs::Scene::RenderParams& params = *fragment->renderParams();
        params.visualStyle(Vs::Scene::kShaded);
        params.groundPlaneEnabled(false);
        params.groundShadowEnabled(false);
        params.groundReflectionEnabled(false);
        params.ambientOcclusionEnabled(false);
        params.nprEffect(0);
        params.objectShadowType(0);
        options.dome = false;
        box = show(Shapes::box(40, 40, 40), {-20, -20, 0});
        ball = show(Shapes::ball(20), {100, 0, 20});
        look({-1, 2, -1.5});
    }

    Rendra::Graphics::BodyNode* show(const Shapes::MeshPtr& mesh, const GkVector3d& at,
                                     const Vs::Colour& colour = {0.7f, 0.1f, 0.1f, 1})
    {
        const auto node = Rendra::Graphics::BodyNode::make(mesh, colour);
        Vs::Scene::NodeChange(node.get()).transform(GkMatrix3d::translation(at));
        Vs::Scene::NodeChange(fragment->viewFragmentNode()).add(node);
        return node.get();
    }

    /// Looks along a direction at everything, with some room around it.
    void look(const GkVector3d& direction, int projection = Vs::Scene::kPerspectiveProjection)
    {
        Vs::Scene::Camera& camera = *fragment->camera();
        camera.projection(projection);
        camera.look(direction, {0, 0, 1});
        camera.fit(fragment->bounds());
        camera.zoom(0.6);
    }

    Vs::Scene::Image draw(uint32_t width = kWidth, uint32_t height = kHeight)
    {
        Vs::Status status;
        EXPECT_TRUE(Vs::Scene::OffscreenRenderer::get()->render({fragment.get()}, width, height, options,
                                                                m_image, status))
            << testing::PrintToString(status.toString());
        return m_image;
    }

    /// The pixel that shows a place, whatever is in front of it.
    const uint8_t* pixel(const Vs::Scene::Image& image, const GkPoint3d& place) const
    {
        const Vs::Scene::Projection view(*fragment->camera(), image.width, image.height);
        const GkPoint3d p = view.worldToScreen(place);
        const auto within = [](double value, uint32_t length) {
            return uint32_t(std::clamp(value, 0.0, double(length - 1)));
        };
        return image.pixel(within(p.x, image.width), within(image.height - p.y, image.height));
    }
    int brightness(const Vs::Scene::Image& image, const GkPoint3d& place) const
    {
        const uint8_t* p = pixel(image, place);
        return (p[0] * 2 + p[1] * 5 + p[2]) / 8;
    }
    /// The largest difference of a channel between two pictures at a place.
    int difference(const Vs::Scene::Image& a, const Vs::Scene::Image& b, const GkPoint3d& place) const
    {
        const uint8_t *p = pixel(a, place), *q = pixel(b, place);
        int most = 0;
        for (int channel = 0; channel < 4; ++channel)
            most = std::max(most, std::abs(p[channel] - q[channel]));
        return most;
    }
    /// The fraction of the pixels that differ by more than some steps.
    static double changed(const Vs::Scene::Image& a, const Vs::Scene::Image& b, int steps = 4)
    {
        size_t count = 0;
        for (size_t i = 0; i < a.pixels.size(); i += 4) {
            int most = 0;
            for (size_t channel = i; channel < i + 4; ++channel)
                most = std::max(most, std::abs(a.pixels[channel] - b.pixels[channel]));
            count += most > steps;
        }
        return double(count) * 4 / double(std::max<size_t>(a.pixels.size(), 1));
    }
    /// Holds in every kind of view: both projections, some styles.
    void inEveryView(const GkVector3d& direction, const std::function<void()>& check)
    {
        for (const int projection : {Vs::Scene::kParallelProjection, Vs::Scene::kPerspectiveProjection})
            for (const int style : {Vs::Scene::kShaded, Vs::Scene::kShadedWithVisibleEdges}) {
                SCOPED_TRACE(testing::Message() << "projection " << projection << ", style " << style);
                fragment->renderParams()->visualStyle(style);
                look(direction, projection);
                check();
            }
    }

    Vs::StrongRef<Vs::Scene::ViewFragment> fragment = Vs::Scene::ViewFragment::make(nullptr);
    Rendra::Graphics::BodyNode* box = nullptr;
    Rendra::Graphics::BodyNode* ball = nullptr;
    Vs::Scene::ImageOptions options;

private:
    Vs::Scene::Image m_image;
};

} // namespace SceneTest
