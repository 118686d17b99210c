// What tells directions and lengths in the corners of a view.

#include "Server/Scene/EnvironmentManager.h"
#include "Server/Scene/GraphicsOptionGroup.h"
#include "Tests/Server/Scene/Studio.h"

#include <cmath>

using Vs::Scene::GraphicsOptionGroup;
using Vs::Scene::Image;
using Vs::Scene::NodeChange;

namespace {

class MarksTest : public SceneTest::Studio
{
protected:
    void SetUp() override
    {
        Studio::SetUp();
        NodeChange(box).visible(false); // the corners are the same with and without marks
        NodeChange(ball).visible(false);
        options.marks = true;
        options.dome = true;
    }
    void TearDown() override { GraphicsOptionGroup::get()->reset(); }

    /// The picture with the marks, and its difference from the one without.
    Image marked(bool cross, bool bar, uint32_t width = 480, uint32_t height = 320)
    {
        GraphicsOptionGroup::get()->showAxisCross(false);
        GraphicsOptionGroup::get()->showScaleBar(false);
        without = draw(width, height);
        GraphicsOptionGroup::get()->showAxisCross(cross);
        GraphicsOptionGroup::get()->showScaleBar(bar);
        return draw(width, height);
    }
    struct Extent
    {
        uint32_t left = ~0u, right = 0, top = ~0u, bottom = 0;
        int width() const { return left > right ? 0 : int(right - left + 1); }
    };
    /// Where a channel of a picture, less another one's, exceeds what it was without the marks.
    Extent extent(const Image& picture, int more, int less, int least) const
    {
        Extent found;
        for (uint32_t y = 0; y < picture.height; ++y)
            for (uint32_t x = 0; x < picture.width; ++x) {
                const uint8_t *p = picture.pixel(x, y), *q = without.pixel(x, y);
                if ((p[more] - p[less]) - (q[more] - q[less]) > least)
                    found = {std::min(found.left, x), std::max(found.right, x), std::min(found.top, y),
                             std::max(found.bottom, y)};
            }
        return found;
    }
    /// Where the bar is, below its text.
    Extent barOf(const Image& picture) const
    {
        Extent found;
        for (uint32_t y = picture.height - uint32_t(25 * options.pixelRatio); y < picture.height; ++y)
            for (uint32_t x = 0; x < picture.width; ++x)
                if (std::abs(picture.pixel(x, y)[1] - without.pixel(x, y)[1]) > 60)
                    found = {std::min(found.left, x), std::max(found.right, x), std::min(found.top, y),
                             std::max(found.bottom, y)};
        return found;
    }

    Image without;
};

TEST_F(MarksTest, AxesPointToWhereTheModelsAxesDoInColoursOfTheirOwnBeforeLightAndDark)
{
    constexpr int kRed = 0, kGreen = 1, kBlue = 2;
    for (const wchar_t* id : {L"PhotoBooth", L"DarkSky"}) {
        Vs::Scene::EnvironmentManager::getEnvManager()->activeEnvironmentID(id);
        look({0, 1, 0}); // from the front: x to the right, z up, y away
        const Image front = marked(true, false);
        const Extent x = extent(front, kRed, kBlue, 60), z = extent(front, kBlue, kRed, 60);
        EXPECT_GT(x.width(), 30);
        EXPECT_LT(x.bottom - x.top, 8u);
        EXPECT_LT(z.width(), 8);
        EXPECT_GT(z.bottom, z.top + 30);
        EXPECT_LT(z.top, x.top) << "z points up";
        EXPECT_LT(x.right, 140u) << "in the corner at the left,";
        EXPECT_GT(z.top, 180u) << "and below";
        look({0, -1, 0});
        const Extent behind = extent(marked(true, false), kRed, kBlue, 60);
        EXPECT_LT(behind.left + 20, x.left) << "from behind, x points to the left";
        look({0, 0, -1}, Vs::Scene::kParallelProjection);
        fragment->camera()->up({0, 1, 0});
        const Extent y = extent(marked(true, false), kGreen, kRed, 50);
        EXPECT_LT(y.width(), 8);
        EXPECT_GT(y.bottom, y.top + 30) << "from above, y points up";
    }
}

TEST_F(MarksTest, TheBarIsARoundLengthAtTheTargetWhateverTheZoomAndGrowsWithTheDensityOfTheScreen)
{
    for (const int projection : {Vs::Scene::kParallelProjection, Vs::Scene::kPerspectiveProjection})
        for (const double zoom : {1.0, 0.3, 7.0, 4e4}) {
            SCOPED_TRACE(testing::Message() << projection << ", " << zoom);
            look({-1, 2, -1.5}, projection);
            fragment->camera()->zoom(zoom);
            const Image picture = marked(false, true);
            const Extent bar = barOf(picture);
            ASSERT_GT(bar.width(), 40);
            EXPECT_LT(bar.width(), 170);
            EXPECT_GT(bar.left, 300u) << "at the right";
            const Vs::Scene::Projection view(*fragment->camera(), 480, 320);
            const double length = (bar.width() - 1.5) * view.pixelSize(fragment->camera()->distance());
            const double lead = length / std::pow(10, std::floor(std::log10(length * 1.03)));
            double off = 1;
            for (const double round : {1.0, 2.0, 5.0})
                off = std::min(off, std::abs(lead / round - 1));
            EXPECT_LT(off, 0.03) << length << " mm";
        }
    look({-1, 2, -1.5}, Vs::Scene::kParallelProjection);
    const Extent usual = barOf(marked(false, true));
    options.pixelRatio = 2;
    const Extent dense = barOf(marked(false, true, 960, 640));
    EXPECT_NEAR(dense.width(), 2 * usual.width(), 4);
    EXPECT_NEAR(dense.bottom - dense.top, 2.0 * (usual.bottom - usual.top), 4);
}

TEST_F(MarksTest, PicturesThatAreNotViewsAndViewsTooSmallForThemHaveNone)
{
    const Image small = marked(true, true, 120, 100);
    EXPECT_EQ(changed(small, without, 0), 0);
    options.marks = false;
    const Image picture = marked(true, true);
    EXPECT_EQ(changed(picture, without, 0), 0);
}

} // namespace
