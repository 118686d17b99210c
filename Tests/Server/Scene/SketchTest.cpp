// Drawings instead of pictures: pastel and graphite.

#include "Tests/Server/Scene/Studio.h"

#include <cmath>

using Vs::Scene::Image;
using Vs::Scene::NodeChange;

namespace {

constexpr int kNothing = 0, kPastel = 1, kGraphite = 3;

class SketchPicture : public SceneTest::Studio
{
protected:
    Image draw(int effect)
    {
        fragment->renderParams()->nprEffect(effect);
        return Studio::draw();
    }

    /// Mean and spread of a value of the pixels around a place.
    std::pair<double, double> around(const Image& image, const GkPoint3d& place,
                                     const std::function<double(const uint8_t*)>& value) const
    {
        const uint8_t* middle = pixel(image, place);
        const auto index = size_t(middle - image.pixels.data()) / 4;
        const auto x = int(index % image.width), y = int(index / image.width);
        double sum = 0, squares = 0, count = 0;
        for (int row = std::max(0, y - 8); row <= std::min(int(image.height) - 1, y + 8); ++row)
            for (int column = std::max(0, x - 8); column <= std::min(int(image.width) - 1, x + 8); ++column) {
                const double each = value(image.pixel(uint32_t(column), uint32_t(row)));
                sum += each;
                squares += each * each;
                ++count;
            }
        return {sum / count, std::sqrt(std::max(0.0, squares / count - sum * sum / count / count))};
    }
};

double brightnessOf(const uint8_t* p)
{
    return (p[0] * 3 + p[1] * 6 + p[2]) / 10.0;
}

double colourOf(const uint8_t* p)
{
    return std::max({p[0], p[1], p[2]}) - std::min({p[0], p[1], p[2]});
}

TEST_F(SketchPicture, GraphiteIsGreyAndHatchesWhatIsDark)
{
    NodeChange(box).bodyColour({0.05f, 0.06f, 0.3f, 1});
    NodeChange(ball).bodyColour({0.95f, 0.95f, 0.95f, 1});
    inEveryView({-1, 2, -1.5}, [&] {
        fragment->camera()->zoom(1.6);
        const Image plain = draw(kNothing), drawn = draw(kGraphite);
        const GkPoint3d dark(0, 0, 40), bright(100, 0, 38), paper(50, -60, 0);
        EXPECT_GT(around(plain, dark, colourOf).first, 60);
        for (const GkPoint3d& place : {dark, bright, paper})
            EXPECT_LT(around(drawn, place, colourOf).first, 14) << "grey";
        EXPECT_LT(around(drawn, dark, brightnessOf).first, around(drawn, paper, brightnessOf).first - 60);
        EXPECT_LT(around(plain, dark, brightnessOf).second, 8) << "an even face";
        EXPECT_GT(around(drawn, dark, brightnessOf).second, 15) << "has strokes";
        EXPECT_GT(around(drawn, paper, brightnessOf).first, 225);
        EXPECT_LT(around(drawn, paper, brightnessOf).second, 6);
    });
}

TEST_F(SketchPicture, PastelKeepsTheColoursButPaler)
{
    inEveryView({-1, 2, -1.5}, [&] {
        fragment->camera()->zoom(1.6);
        const Image plain = draw(kNothing), drawn = draw(kPastel);
        const GkPoint3d top(0, 0, 40);
        const uint8_t* p = pixel(drawn, top);
        EXPECT_GT(p[0], p[1] + 15) << "still red";
        EXPECT_LT(around(drawn, top, colourOf).first, around(plain, top, colourOf).first * 0.85);
        EXPECT_GT(around(drawn, top, brightnessOf).first, around(plain, top, brightnessOf).first + 10);
        EXPECT_GT(around(drawn, {50, -60, 0}, brightnessOf).second, 0.5) << "the paper's grain";
    });
}

TEST_F(SketchPicture, ShapesHaveOutlinesWhereTheirColourDoesNotShowThem)
{
    // White on white paper: only the outline shows where the ball is.
    NodeChange(box).visible(false);
    NodeChange(ball).bodyColour({1, 1, 1, 1});
    for (const int projection : {Vs::Scene::kParallelProjection, Vs::Scene::kPerspectiveProjection}) {
        look({0, 1, -0.2}, projection);
        const Image drawn = draw(kGraphite);
        const Vs::Scene::Projection view(*fragment->camera(), drawn.width, drawn.height);
        const GkPoint3d middle = view.worldToScreen({100, 0, 20});
        const double radius = view.worldToScreen({120, 0, 20}).x - middle.x;
        int outlined = 0;
        for (int angle = 0; angle < 360; angle += 5) {
            double darkest = 255;
            for (double away = radius - 4; away <= radius + 4; away += 0.5) {
                const double turn = angle * 3.14159265 / 180;
                const auto x = uint32_t(middle.x + away * std::cos(turn));
                const auto y = uint32_t(drawn.height - middle.y - away * std::sin(turn));
                darkest = std::min(darkest, brightnessOf(drawn.pixel(x, y)));
            }
            outlined += darkest < 170;
        }
        EXPECT_GT(outlined, 66) << "of 72 places around it";
    }
}

TEST_F(SketchPicture, AStillViewIsStillAndATransparentPictureStaysSo)
{
    for (const int effect : {kPastel, kGraphite}) {
        options.transparentBackground = false;
        const Image first = draw(effect);
        EXPECT_EQ(changed(first, draw(effect), 0), 0);
        options.transparentBackground = true;
        const Image clear = draw(effect);
        EXPECT_EQ(pixel(clear, {50, -60, 0})[3], 0);
        EXPECT_EQ(pixel(clear, {0, 0, 40})[3], 255);
    }
}

TEST_F(SketchPicture, OnlyTheFragmentThatAsksForItIsDrawnAndOnlyInItsPlace)
{
    // The model on the left, and a mere helper over the whole picture: a green mark on the right.
    fragment->data()->viewport()->placement(0, 0, 0.5, 1);
    fragment->renderParams()->groundPlaneEnabled(true);
    fragment->renderParams()->groundShadowEnabled(true);
    fragment->renderParams()->groundReflectionEnabled(true);
    const auto overlay = Vs::Scene::ViewFragment::make(nullptr, "Overlay");
    overlay->data()->supportSelectBackground(false);
    overlay->renderParams()->visualStyle(Vs::Scene::kShaded);
    overlay->renderParams()->groundPlaneEnabled(true);
    overlay->renderParams()->nprEffect(kGraphite);
    const auto mark = Rendra::Graphics::BodyNode::make(Shapes::box(20, 20, 20), {0.02f, 0.7f, 0.02f, 1});
    NodeChange(mark.get()).transform(GkMatrix3d::translation({50, 0, 0}));
    NodeChange(overlay->viewFragmentNode()).add(mark);
    Vs::Scene::Camera& camera = *overlay->camera();
    camera.projection(Vs::Scene::kParallelProjection);
    camera.position({0, -1000, 10});
    camera.target({0, 0, 10});
    camera.extentsWidth(kWidth);
    camera.extentsHeight(kHeight);
    options.grid = true;
    const auto drawBoth = [&](int effect) {
        fragment->renderParams()->nprEffect(effect);
        Image image;
        Vs::Status status;
        EXPECT_TRUE(Vs::Scene::OffscreenRenderer::get()->render({fragment.get(), overlay.get()}, kWidth,
                                                                kHeight, options, image, status));
        return image;
    };
    const Image plain = drawBoth(kNothing), drawn = drawBoth(kGraphite);
    const uint8_t* marked = drawn.pixel(kWidth / 2 + 60, kHeight / 2);
    EXPECT_GT(marked[1], marked[0] + 60) << "the mark is as it was";
    size_t left = 0, right = 0;
    for (uint32_t y = 0; y < kHeight; ++y)
        for (uint32_t x = 0; x < kWidth; ++x)
            (x < kWidth / 2 ? left : right) += std::abs(plain.pixel(x, y)[2] - drawn.pixel(x, y)[2]) > 1;
    EXPECT_GT(left, size_t(kWidth) * kHeight / 3);
    EXPECT_EQ(right, 0u);
}

TEST_F(SketchPicture, AnEmptySceneAndOneFarFromTheOriginAreDrawnAsWell)
{
    const Image usual = draw(kGraphite);
    for (const auto& [node, at] : {std::pair(box, GkVector3d(-20, -20, 0)), {ball, {100, 0, 20}}})
        NodeChange(node).transform(GkMatrix3d::translation(at + GkVector3d(1e9, -1e9, 1e9)));
    look({-1, 2, -1.5});
    EXPECT_LT(changed(draw(kGraphite), usual, 24), 0.06);
    NodeChange(box).visible(false);
    NodeChange(ball).visible(false);
    const Image empty = draw(kGraphite);
    EXPECT_GT(brightnessOf(empty.pixel(120, 90)), 225) << "paper";
}

} // namespace
