// The layout grid: the spacing of its lines, the labels of its numbers, and how both look.

#include "Server/Base/Strings.h"
#include "Server/Scene/Rendra/GridNumbers.h"
#include "Tests/Server/Scene/Studio.h"

#include <cmath>
#include <random>

using Rendra::GridNumbers;
using Rendra::GridScale;
using Vs::Scene::Image;
using Vs::Scene::NodeChange;
using Vs::Scene::Projection;

namespace {

TEST(GridScale, StepsAreRoundAndTheNarrowestThatAreWideEnough)
{
    for (double least = 1.3e-7; least < 1e10; least *= 1.37) {
        SCOPED_TRACE(least);
        const GridScale scale(least);
        EXPECT_GE(scale.minor(), least * (1 - 1e-8));
        EXPECT_LE(scale.minor(), least * 2.5);
        const double lead = scale.minor() / std::pow(10, std::floor(std::log10(scale.minor() * 1.0001)));
        EXPECT_TRUE(std::abs(lead - 1) < 1e-9 || std::abs(lead - 2) < 1e-9 || std::abs(lead - 5) < 1e-9)
            << lead;
    }
    for (const double exact : {0.001, 0.02, 0.5, 1.0, 2.0, 5.0, 1000.0})
        EXPECT_NEAR(GridScale(exact).minor() / exact, 1, 1e-12) << exact;
}

TEST(GridScale, NumbersAreWrittenShortAndWithoutRoundingErrors)
{
    const auto text = [](double least, int64_t index) {
        return Vs::Strings::narrow(GridScale(least).number(index));
    };
    EXPECT_EQ(text(1, 0), "0");
    EXPECT_EQ(text(1, 3), "30");
    EXPECT_EQ(text(2, 3), "30");
    EXPECT_EQ(text(5, -4), "-200");
    EXPECT_EQ(text(0.01, 3), "0.3");
    EXPECT_EQ(text(0.02, 30), "3.0");
    EXPECT_EQ(text(0.005, -7), "-0.35");
    EXPECT_EQ(text(1000, 7), "70000");
    EXPECT_EQ(text(1e8, 3), "3e+09");
    EXPECT_EQ(text(1e-8, 3), "3e-07");
}

TEST(GridNumbers, NoneCoversAnotherAndEachStandsAtItsPlaceWhereverTheCameraIs)
{
    std::mt19937 random(20);
    std::uniform_real_distribution<double> any(-1, 1);
    size_t most = 0;
    for (int turn = 0; turn < 200; ++turn) {
        SCOPED_TRACE(turn);
        const auto camera = Vs::Scene::Camera::make();
        camera->projection(turn % 2 ? Vs::Scene::kPerspectiveProjection : Vs::Scene::kParallelProjection);
        camera->target({any(random) * 100, any(random) * 100, any(random) * 20});
        camera->position(camera->target() + GkVector3d(any(random), any(random), any(random)).normal() * 400);
        const Projection view(*camera, 800, 600);
        const double pixel = turn % 3 ? 1 : 2;
        GridNumbers numbers(view, pixel);
        const GridScale scale(5);
        numbers.addAxis({1, 0, 0}, camera->target().x, camera->target().y, 4000, 50, scale);
        numbers.addAxis({0, 1, 0}, camera->target().y, camera->target().x, 4000, 50, scale);
        const auto& labels = numbers.labels();
        most = std::max(most, labels.size());
        for (size_t i = 0; i < labels.size(); ++i) {
            const GridNumbers::Box& box = labels[i].box;
            for (size_t j = 0; j < i; ++j) {
                const GridNumbers::Box& other = labels[j].box;
                EXPECT_TRUE(box.left >= other.right || other.left >= box.right || box.bottom >= other.top ||
                            other.bottom >= box.top)
                    << Vs::Strings::narrow(labels[i].text) << " and " << Vs::Strings::narrow(labels[j].text);
            }
        }
        GridNumbers alone(view, pixel);
        alone.addAxis({1, 0, 0}, camera->target().x, camera->target().y, 4000, 50, scale);
        for (const GridNumbers::Label& label : alone.labels()) {
            const GkPoint3d at = view.worldToScreen({std::stod(label.text), 0, 0});
            const double away = std::hypot(at.x - std::clamp(at.x, label.box.left, label.box.right),
                                           at.y - std::clamp(at.y, label.box.bottom, label.box.top));
            EXPECT_GE(away, 4 * pixel) << Vs::Strings::narrow(label.text) << " is crossed by the axis";
            EXPECT_LE(away, 12 * pixel) << Vs::Strings::narrow(label.text);
        }
        for (const GridNumbers::Line& line : numbers.lines())
            EXPECT_TRUE(line.ahead > 0 || !view.perspective()) << "nothing from behind the camera";
    }
    EXPECT_GT(most, 8u);
}

TEST(GridNumbers, AnAxisFarBesideTheGridHasNone)
{
    const Projection view(*Vs::Scene::Camera::make(), 800, 600);
    GridNumbers numbers(view, 1);
    numbers.addAxis({1, 0, 0}, 0, 1000, 900, 50, GridScale(5));
    EXPECT_TRUE(numbers.labels().empty());
}

class GridPicture : public SceneTest::Studio
{
protected:
    /// The picture without, and then with the grid.
    std::pair<Image, Image> both()
    {
        options.grid = false;
        Image without = draw();
        options.grid = true;
        return {std::move(without), draw()};
    }
};

TEST_F(GridPicture, LinesRunThroughTheOriginAndAreHiddenByBodies)
{
    inEveryView({-1, 2, -1.5}, [&] {
        const auto [without, with] = both();
        const uint8_t* alongX = pixel(with, {50, 0, 0});
        EXPECT_GT(alongX[0], alongX[1] + 25) << "one axis is red";
        const uint8_t* alongY = pixel(with, {0, -60, 0});
        EXPECT_GT(alongY[1], alongY[0] + 15) << "the other green";
        EXPECT_LE(difference(with, without, {0, 0, 40}), 1) << "a body stands before the origin";
        EXPECT_GT(changed(with, without, 3), 0.05);
        EXPECT_LT(changed(with, without, 3), 0.6) << "there is much room between lines";
    });
}

TEST_F(GridPicture, LinesKeepTheirDistanceOnTheScreenWhenTheCameraZooms)
{
    look({0, 0, -1}, Vs::Scene::kParallelProjection);
    fragment->camera()->up({0, 1, 0});
    const double width = fragment->camera()->extentsWidth();
    for (const double factor : {1.0, 0.37, 0.011, 21.0, 3e4}) {
        SCOPED_TRACE(factor);
        fragment->camera()->extentsWidth(width * factor);
        fragment->camera()->extentsHeight(width * factor * 0.75);
        const auto [without, with] = both();
        // A column with a line differs nearly everywhere.
        std::vector<uint32_t> columns;
        for (uint32_t x = 1; x < with.width; ++x) {
            double sum = 0;
            for (uint32_t y = 0; y < with.height; ++y)
                sum += std::abs(with.pixel(x, y)[2] - without.pixel(x, y)[2]) > 4;
            if (sum > with.height * 0.5 && (columns.empty() || x - columns.back() > 2))
                columns.push_back(x);
        }
        ASSERT_GE(columns.size(), 3u);
        for (size_t i = 1; i < columns.size(); ++i) {
            EXPECT_GE(columns[i] - columns[i - 1], 10u);
            EXPECT_LE(columns[i] - columns[i - 1], 60u);
        }
    }
}

TEST_F(GridPicture, LinesVanishTowardsTheHorizonBeforeTheyBlurIntoPatterns)
{
    look({0, 1, -0.06});
    NodeChange(box).visible(false);
    NodeChange(ball).visible(false);
    const auto [without, with] = both();
    const Projection view(*fragment->camera(), with.width, with.height);
    const auto horizon = uint32_t(with.height - view.worldToScreen({0, 1e7, 0}).y);
    ASSERT_LT(horizon, with.height - 20);
    const auto strongest = [&](uint32_t row) {
        int most = 0;
        for (uint32_t x = 0; x < with.width; ++x)
            most = std::max(most, std::abs(with.pixel(x, row)[2] - without.pixel(x, row)[2]));
        return most;
    };
    EXPECT_GT(strongest(with.height - 4), 10);
    EXPECT_LE(strongest(horizon + 1), 6);
    EXPECT_LE(strongest(horizon - 3), 1) << "and above it there is none";
}

TEST_F(GridPicture, NumbersAreShownBesideTheAxesOnlyWithTheGrid)
{
    look({0, 0, -1}, Vs::Scene::kParallelProjection);
    fragment->camera()->up({0, 1, 0});
    fragment->camera()->zoom(0.5); // Bodies cover what is near the middle.
    options.grid = true;
    const Image lines = draw(600, 450);
    options.gridNumbers = true;
    const Image with = draw(600, 450);
    EXPECT_GT(changed(with, lines), 0.0005);
    EXPECT_LT(changed(with, lines), 0.02);
    // All of them within the strips below one axis and beside the other.
    const Projection view(*fragment->camera(), with.width, with.height);
    const GkPoint3d origin = view.worldToScreen({});
    for (uint32_t y = 0; y < with.height; ++y)
        for (uint32_t x = 0; x < with.width; ++x)
            if (std::abs(with.pixel(x, y)[2] - lines.pixel(x, y)[2]) > 6) {
                const double right = x - origin.x, down = y - (with.height - origin.y);
                EXPECT_TRUE((down > 0 && down < 20) || (std::abs(right) > 0 && std::abs(right) < 45))
                    << x << ", " << y;
            }
    options.grid = false;
    const Image none = draw();
    options.gridNumbers = false;
    EXPECT_EQ(changed(none, draw(), 0), 0);
}

TEST_F(GridPicture, AFragmentThatOnlyDrawsOverTheModelHasNoGrid)
{
    fragment->data()->supportSelectBackground(false);
    const auto [without, with] = both();
    EXPECT_EQ(changed(with, without, 0), 0);
}

TEST_F(GridPicture, AnEmptySceneAndOneFarAwayHaveAGridToo)
{
    NodeChange(box).visible(false);
    NodeChange(ball).visible(false);
    const auto [without, with] = both();
    EXPECT_GT(changed(with, without, 3), 0.05);

    NodeChange(box).visible(true).transform(GkMatrix3d::translation({1e9, 1e9, 0}));
    look({-1, 2, -1.5});
    const auto [plain, lined] = both();
    EXPECT_GT(changed(lined, plain, 3), 0.05);
    EXPECT_LT(changed(lined, plain, 3), 0.6);
}

} // namespace
