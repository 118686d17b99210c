#include "Server/Body/BodyMesh.h"
#include "Server/Scene/GraphicsOptionGroup.h"
#include "Tests/Server/Scene/StylePicture.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace {

using namespace Vs::Scene;
using Rendra::Graphics::BodyNode;
using Vs::Colour;

using StylePicture = SceneTest::StylePicture;

TEST_F(StylePicture, NoTwoStylesDrawTheSamePicture)
{
    showAll();
    for (const int projection : {kPerspectiveProjection, kParallelProjection}) {
        fragment->camera()->projection(projection);
        std::vector<Image> pictures;
        for (int style = kShaded; style <= kRealistic; ++style)
            pictures.push_back(draw(style));
        for (size_t i = 0; i < pictures.size(); ++i)
            for (size_t j = i + 1; j < pictures.size(); ++j)
                EXPECT_GT(differences(pictures[i], pictures[j]), 60u) << i << " and " << j;
    }
}

TEST_F(StylePicture, EveryStyleDrawsTheSmallestAndTheFarthestBodiesAsItDrawsOthers)
{
    options.transparentBackground = true;
    const auto covered = [&](double size, const GkVector3d& place, int style, int projection) {
        const auto node = BodyNode::make(Shapes::cylinder(size / 2, size), {0.5f, 0.5f, 0.5f, 1});
        NodeChange(node.get()).transform(GkMatrix3d::translation(place));
        NodeChange(fragment->viewFragmentNode()).add(node);
        fragment->camera()->projection(projection);
        fragment->camera()->fit(fragment->bounds());
        draw(style);
        NodeChange(fragment->viewFragmentNode()).remove(node.get());
        double count = 0;
        for (size_t i = 3; i < image.pixels.size(); i += 4)
            count += image.pixels[i] > 60;
        return count;
    };
    for (const int projection : {kParallelProjection, kPerspectiveProjection})
        for (int style = kShaded; style <= kRealistic; ++style) {
            const double usual = covered(100, {}, style, projection);
            EXPECT_GT(usual, 400) << style;
            EXPECT_NEAR(covered(1e-3, {}, style, projection), usual, usual / 4) << style << ", small";
            EXPECT_NEAR(covered(1e9, {}, style, projection), usual, usual / 4) << style << ", large";
            EXPECT_NEAR(covered(100, {1e9, -1e9, 1e9}, style, projection), usual, usual / 4)
                << style << ", far away";
        }
}

/// Two squares that meet in an edge in the middle, the second one sloped by that much.
Shapes::MeshPtr twoFaces(float slope)
{
    auto mesh = std::make_shared<Vs::BodyMesh>();
    mesh->positions = {-50, 0, -50, 0,  0,          -50, 0,  0,          50, -50, 0, 50,
                       0,   0, -50, 50, slope * 50, -50, 50, slope * 50, 50, 0,   0, 50};
    const float length = std::hypot(slope, 1.0f);
    for (int i = 0; i < 8; ++i)
        mesh->normals.insert(mesh->normals.end(), {i < 4 ? 0 : slope / length, i < 4 ? -1 : -1 / length, 0});
    mesh->triangles = {0, 1, 2, 0, 2, 3, 4, 5, 6, 4, 6, 7};
    mesh->faces = {{0, 2, -1}, {2, 2, -1}};
    mesh->edgePoints = {0, 0, -50, 0, 0, 50};
    mesh->edgeStarts = {0, 2};
    mesh->bounds.add({-50, 0, -50});
    mesh->bounds.add({50, slope * 50.0, 50});
    return mesh;
}

TEST_F(StylePicture, AnEdgeInWhichFacesGoOnSmoothlyIsFaintFullOrLeftOutAsTheOptionSays)
{
    auto& option = GraphicsOptionGroup::get()->tangentEdges;
    const std::wstring usual = option();
    /// The darkest pixel around the middle of the edge.
    const auto ink = [&](const wchar_t* value) {
        option(value);
        draw(kShadedWithVisibleEdges);
        int darkest = 255;
        for (double x = -3; x <= 3; x += 0.5)
            darkest = std::min(darkest, int(at({x, 0, 0})[1]));
        return darkest;
    };
    for (const float slope : {0.0f, 1.0f}) {
        fragment = ViewFragment::make(nullptr);
        fragment->renderParams()->groundPlaneEnabled(false);
        show(twoFaces(slope), {}, {0.6f, 0.6f, 0.6f, 1});
        fragment->camera()->fit(fragment->bounds());
        const int faint = ink(L"faint"), full = ink(L"full"), none = ink(L"none");
        EXPECT_LT(full, 90);
        if (slope > 0) {
            EXPECT_EQ(faint, full) << "an edge as any other";
            EXPECT_EQ(none, full);
        } else {
            EXPECT_GT(faint, full + 30);
            EXPECT_LT(faint, none - 10);
        }
    }
    option(usual);
}

TEST_F(StylePicture, LinesAreAsWideAsTheScreenIsDenseWhateverWayTheyRun)
{
    const auto mesh = std::make_shared<Vs::BodyMesh>();
    mesh->edgePoints = {-50, 0, 0, 50, 0, 0};
    mesh->edgeStarts = {0, 2};
    mesh->bounds.add({-50, -50, -50});
    mesh->bounds.add({50, 50, 50});
    show(mesh, {}, {0.5f, 0.5f, 0.5f, 1});
    options.transparentBackground = true;
    fragment->camera()->projection(kParallelProjection);
    for (const auto& [smooth, fine] : {std::pair(false, false), {true, false}, {true, true}})
        for (const float ratio : {1.0f, 1.5f, 2.0f})
            for (const double slope : {0.0, 0.05, 0.3, 0.7, 1.0}) {
                options.antiAliasing = smooth;
                options.fine = fine;
                options.pixelRatio = ratio;
                fragment->camera()->look({0, 1, 0}, {slope, 0, 1});
                fragment->camera()->fit(fragment->bounds());
                draw(kWireframe);
                constexpr double kOpacity = 0.88;
                double ink = 0;
                for (size_t i = 3; i < image.pixels.size(); i += 4)
                    ink += image.pixels[i] / 255.0 / kOpacity;
                const Projection view(*fragment->camera(), kWidth, kHeight, fragment->bounds());
                const double width = ink * view.pixelSize(1) / 100;
                EXPECT_NEAR(width, 1.15 * double(ratio), 0.1 * double(ratio))
                    << smooth << fine << ", ratio " << ratio << ", slope " << slope;
            }
}

TEST_F(StylePicture, HiddenEdgesAreFainterThanSeenOnesAndDashed)
{
    show(Shapes::box(100, 100, 100), {-50, -50, -50}, {0.6f, 0.6f, 0.6f, 1});
    fragment->camera()->fit(fragment->bounds());
    options.transparentBackground = true;
    // From the front, the right and above: the corner at the low end of all axes but y is the hidden one.
    const GkPoint3d hidden(-50, 50, -50), near(50, -50, 50), low(-50, -50, -50), below(50, -50, -50);
    draw(kWireframeWithHiddenEdges);
    const std::vector<int> dashed = inkAlong(hidden, {50, 50, -50}, 60), seen = inkAlong(near, below, 60);
    const auto isInked = [](int ink) { return ink > 20; };
    EXPECT_EQ(std::count_if(seen.begin(), seen.end(), isInked), 60) << "a seen edge has no gaps";
    const auto inked = std::count_if(dashed.begin(), dashed.end(), isInked);
    EXPECT_GT(inked, 20);
    EXPECT_LT(inked, 58);
    int changes = 0;
    for (size_t i = 1; i < dashed.size(); ++i)
        changes += isInked(dashed[i]) != isInked(dashed[i - 1]);
    EXPECT_GE(changes, 6) << "dashes";
    EXPECT_LT(*std::max_element(dashed.begin(), dashed.end()),
              *std::min_element(seen.begin(), seen.end()) - 40);

    draw(kWireframeWithVisibleEdges);
    for (const GkPoint3d& other : {GkPoint3d(50, 50, -50), GkPoint3d(-50, 50, 50), low}) {
        const std::vector<int> gone = inkAlong(hidden, other, 60);
        EXPECT_LT(*std::max_element(gone.begin() + 6, gone.end() - 6), 20) << "hidden lines are removed";
    }
    draw(kWireframe);
    const std::vector<int> through = inkAlong(hidden, low, 60);
    EXPECT_GT(*std::min_element(through.begin(), through.end()), 100) << "all edges are equal";
}

TEST_F(StylePicture, HiddenEdgesShowThroughShadedFacesOnlyWhereTheyAreAskedFor)
{
    show(Shapes::box(100, 100, 100), {-50, -50, -50}, {0.6f, 0.6f, 0.6f, 1});
    fragment->camera()->fit(fragment->bounds());
    const auto darkness = [&](int style) {
        const Image plain = draw(kShaded);
        const Image lined = draw(style);
        int most = 0;
        for (double along = -30; along <= 30; along += 1) {
            image = plain;
            const int without = at({along, 50, -50})[1];
            image = lined;
            most = std::max(most, without - at({along, 50, -50})[1]);
        }
        return most;
    };
    EXPECT_GT(darkness(kShadedWithHiddenEdges), 25);
    EXPECT_LT(darkness(kShadedWithVisibleEdges), 5);
}

TEST_F(StylePicture, RoundBodiesHaveAnOutlineInWireframesThatFollowsTheView)
{
    show(Shapes::ball(50), {}, {0.5f, 0.5f, 0.5f, 1});
    fragment->camera()->projection(kParallelProjection);
    fragment->camera()->fit(fragment->bounds());
    options.transparentBackground = true;
    for (const int style : {kWireframe, kWireframeWithHiddenEdges, kWireframeWithVisibleEdges})
        for (const GkVector3d& direction : {GkVector3d(0, 1, 0), GkVector3d(-1, 2, -3)}) {
            fragment->camera()->look(direction, {0, 0, 1});
            draw(style);
            const Projection view(*fragment->camera(), kWidth, kHeight, fragment->bounds());
            const double radius = 50 / view.pixelSize(1);
            size_t onCircle = 0, elsewhere = 0;
            for (uint32_t y = 0; y < kHeight; ++y)
                for (uint32_t x = 0; x < kWidth; ++x) {
                    if (image.pixel(x, y)[3] < 60)
                        continue;
                    const double away = std::hypot(x + 0.5 - kWidth / 2.0, y + 0.5 - kHeight / 2.0);
                    ++(std::abs(away - radius) < 2 ? onCircle : elsewhere);
                }
            EXPECT_GT(onCircle, size_t(4 * radius)) << "style " << style;
            EXPECT_LT(elsewhere, onCircle / 20) << "style " << style;
            for (double angle = 0; angle < 6.28; angle += 0.01) {
                int most = 0;
                for (double away = radius - 2; away <= radius + 2; away += 0.1)
                    most =
                        std::max(most, int(image.pixel(uint32_t(kWidth / 2.0 + away * std::cos(angle)),
                                                       uint32_t(kHeight / 2.0 + away * std::sin(angle)))[3]));
                EXPECT_GT(most, 40) << "a gap at " << angle;
            }
        }
}

TEST_F(StylePicture, RoundBodiesHaveAnOutlineOnTheirFacesWhereEdgesAreDrawn)
{
    show(Shapes::ball(50), {}, {0.7f, 0.7f, 0.7f, 1});
    for (const int projection : {kParallelProjection, kPerspectiveProjection}) {
        fragment->camera()->projection(projection);
        fragment->camera()->fit(fragment->bounds());
        const Image plain = draw(kShaded);
        for (const int style : {kShadedWithVisibleEdges, kShadedWithHiddenEdges}) {
            draw(style);
            std::vector<GkPoint2d> darker;
            GkPoint2d middle;
            for (uint32_t y = 0; y < kHeight; ++y)
                for (uint32_t x = 0; x < kWidth; ++x)
                    if (plain.pixel(x, y)[1] - image.pixel(x, y)[1] >= 40) {
                        darker.emplace_back(x, y);
                        middle.x += x;
                        middle.y += y;
                    }
            ASSERT_FALSE(darker.empty()) << style;
            double nearest = 1e9, farthest = 0;
            for (const GkPoint2d& each : darker) {
                const double away = std::hypot(each.x - middle.x / double(darker.size()),
                                               each.y - middle.y / double(darker.size()));
                nearest = std::min(nearest, away);
                farthest = std::max(farthest, away);
            }
            EXPECT_GT(double(darker.size()), 4 * nearest) << style << ", all around";
            EXPECT_LT(farthest - nearest, 5) << style << ", and nowhere else";
        }
    }
}

} // namespace
