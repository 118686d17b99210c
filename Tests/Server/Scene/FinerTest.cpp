#include "Server/Body/FinerMesh.h"
#include "Server/Body/MeshPoints.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Model/ModelBody.h"
#include "Server/DataModel/ModelBuilder.h"
#include "Server/DataModel/ModelDigest.h"
#include "Server/DataModel/Transaction.h"
#include "Server/Scene/FinerMeshes.h"
#include "Server/Scene/GraphicsOptionGroup.h"
#include "Server/Scene/OffscreenRenderer.h"
#include "Server/Scene/Picker.h"
#include "Server/Scene/ViewFragment.h"
#include "Tests/Server/Scene/OneAsset.h"
#include "Tests/Server/Scene/Shapes.h"

#include <cmath>
#include <numbers>

namespace {

using Vs::Scene::FinerMeshes;
using Vs::Scene::OffscreenRenderer;
using Vs::Scene::ViewFragment;

constexpr double kRadius = 25;
constexpr uint32_t kSide = 400;
/// A picture of the rim from so near that the usual mesh is off by several pixels.
constexpr double kNear = 2;

/// A disc seen along its axis, the camera on a place of its rim.
class FinerView : public SceneTests::OneAsset
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(asset);
        fragment->showAsset(scene);
        Vs::Status status;
        options.transparentBackground = true;
        options.dome = false;
        fragment->renderParams()->visualStyle(Vs::Scene::kShaded);
        if (!OffscreenRenderer::get()->render({fragment.get()}, 8, 8, options, image, status))
            GTEST_SKIP() << "NOTICE: no OpenGL to draw with: " << testing::PrintToString(status.toString());
        ASSERT_TRUE(Vs::ModelBuilder(asset).cylinder(kRadius, 10, {}, status));
    }
    ~FinerView() override { Vs::Scene::GraphicsOptionGroup::get()->meshQuality(L"normal"); }

    const Vs::Component& disc() const { return *asset->components()->children.front(); }
    bool showsFiner() const { return Vs::shownMesh(disc().body->mesh()) != disc().body->mesh(); }

    void look(double across, double angle)
    {
        Vs::Scene::Camera& camera = *fragment->camera();
        camera.projection(Vs::Scene::kParallelProjection);
        const double x = kRadius * std::cos(angle), y = kRadius * std::sin(angle);
        camera.position({x, y, 1000});
        camera.target({x, y, 0});
        camera.up({0, 1, 0});
        camera.extentsWidth(across);
        camera.extentsHeight(across);
        m_across = across;
        m_angle = angle;
    }
    void draw()
    {
        Vs::Status status;
        ASSERT_TRUE(OffscreenRenderer::get()->render({fragment.get()}, kSide, kSide, options, image, status))
            << testing::PrintToString(status.toString());
    }

    /// As a canvas that stands still until all is there.
    void drawUntilFine()
    {
        options.finerWait = 0;
        draw();
        FinerMeshes::get().await(60);
        draw();
    }

    /// How far the silhouette is from the circle at most, in pixels: along each ray from the middle, what is
    /// covered is summed up.
    double off() const
    {
        const double pixels = kSide / m_across;
        const GkPoint3d middle(kSide / 2.0 - kRadius * pixels * std::cos(m_angle),
                               kSide / 2.0 + kRadius * pixels * std::sin(m_angle), 0);
        double most = 0;
        const double reach = 0.35 * m_across / kRadius;
        for (double turn = -reach; turn <= reach; turn += reach / 100) {
            constexpr double kAround = 12, kStep = 0.05;
            double covered = 0;
            for (double along = -kAround; along < kAround; along += kStep) {
                const double away = kRadius * pixels + along, angle = m_angle + turn;
                covered +=
                    kStep * cover(middle.x + away * std::cos(angle), middle.y - away * std::sin(angle));
            }
            most = std::max(most, std::abs(covered - kAround));
        }
        return most;
    }

    /// Between the middles of pixels.
    double cover(double x, double y) const
    {
        const double left = std::floor(x - 0.5), top = std::floor(y - 0.5);
        double sum = 0;
        for (int i = 0; i < 4; ++i) {
            const double column = left + i % 2, row = top + double(i / 2);
            sum += (1 - std::abs(x - 0.5 - column)) * (1 - std::abs(y - 0.5 - row)) *
                   image.pixel(uint32_t(column), uint32_t(row))[3] / 255;
        }
        return sum;
    }

    Vs::StrongRef<ViewFragment> fragment = ViewFragment::make(nullptr);
    Vs::Scene::ImageOptions options;
    Vs::Scene::Image image;

private:
    double m_across = 1, m_angle = 0;
};

TEST_F(FinerView, TheRimOfADiscIsRoundFromFarAndNearAsFarAsTheQualityAsks)
{
    for (const auto& [quality, allowed] : {std::pair(L"normal", 0.5), {L"fine", 0.25}, {L"coarse", 2.0}}) {
        Vs::Scene::GraphicsOptionGroup::get()->meshQuality(quality);
        for (const double across : {4 * kRadius, kRadius, kNear})
            for (const double angle : {0.02, 0.71, 2.4}) {
                look(across, angle);
                draw();
                // What pixels and samples can tell.
                EXPECT_LT(off(), allowed + 0.3) << quality << ", " << across << " mm, " << angle;
            }
    }
    EXPECT_GT(Vs::chordalDeviation(*disc().body->mesh()) * kSide / kNear, 4) << "too fine for this test";
}

TEST_F(FinerView, RoundFacesAreSplitAlongSeamsAndAtTipsAsElsewhere)
{
    constexpr double kPipe = 8, kHeight = 40;
    Vs::Status status;
    Vs::ModelBuilder builder(asset);
    const auto aside = [](const GkVector3d& p) { return GkVector3d(p.x, p.y, 0); };
    // How far a place is from the surface, along its normal there.
    const auto check = [&](const char* name, const auto& awayFromSurface) {
        const auto mesh = asset->components()->children.back()->body->mesh();
        const auto finer = Vs::finerMeshOf(mesh)->make(mesh, 3, [] { return true; });
        ASSERT_TRUE(finer && finer->triangles.size() > mesh->triangles.size()) << name;
        const double deviation = Vs::chordalDeviation(*mesh);
        for (size_t i = 0; i < finer->triangles.size(); i += 3) {
            GkVector3d corners[3], middle;
            for (size_t k = 0; k < 3; ++k) {
                corners[k] = Vs::pointAt(finer->positions, finer->triangles[i + k]).asVector();
                middle = middle + corners[k] * (1.0 / 3);
            }
            const auto& [away, normal] = awayFromSurface(middle);
            ASSERT_LT(std::abs(away), deviation) << name;
            const GkVector3d area = (corners[1] - corners[0]).crossProduct(corners[2] - corners[0]);
            ASSERT_GE(area.dotProduct(normal.normal()), 0.9 * area.length() - 1e-6) << name;
        }
    };
    ASSERT_TRUE(builder.torus(kRadius, kPipe, {}, status));
    check("torus", [&](const GkVector3d& p) {
        const GkVector3d off = p - aside(p).normal() * kRadius;
        return std::pair(off.length() - kPipe, off);
    });
    ASSERT_TRUE(builder.sphere(kRadius, {}, status));
    check("sphere", [&](const GkVector3d& p) { return std::pair(p.length() - kRadius, p); });
    ASSERT_TRUE(builder.cone(kRadius, 0, kHeight, {}, status));
    check("cone", [&](const GkVector3d& p) {
        if (p.z < 1e-6)
            return std::pair(0.0, GkVector3d(0, 0, -1));
        const GkVector3d out = aside(p).normal() * kHeight + GkVector3d(0, 0, kRadius);
        return std::pair(aside(p).length() - kRadius * (1 - p.z / kHeight), out);
    });
}

TEST_F(FinerView, WhatIsToldOfABodyIsThatOfItsOwnMesh)
{
    const auto mesh = disc().body->mesh();
    const uint64_t digest = Vs::modelDigest(*asset);
    const auto bounds = fragment->bounds();
    const size_t triangles = mesh->triangles.size();
    Vs::Status status;
    const auto before = disc().body->properties(Vs::BodyMeasure::Volume, status);
    look(kNear, 0.71);
    draw();
    EXPECT_FALSE(showsFiner()) << "left behind by a picture";
    drawUntilFine();
    ASSERT_TRUE(showsFiner());
    EXPECT_GT(Vs::shownMesh(mesh)->triangles.size(), 2 * triangles);

    EXPECT_EQ(disc().body->mesh(), mesh);
    EXPECT_EQ(mesh->triangles.size(), triangles);
    EXPECT_EQ(Vs::modelDigest(*asset), digest);
    EXPECT_EQ(fragment->bounds().high().x, bounds.high().x);
    const auto after = disc().body->properties(Vs::BodyMeasure::Volume, status);
    ASSERT_TRUE(before && after);
    EXPECT_EQ(after->volume, before->volume);

    look(40 * kRadius, 0.71);
    drawUntilFine();
    EXPECT_FALSE(showsFiner()) << "nobody sees it from there";
}

TEST_F(FinerView, PicksMeetWhatIsDrawn)
{
    const auto missed = [&] {
        int count = 0;
        for (int i = 0; i < 500; ++i) {
            const double angle = 2 * std::numbers::pi * i / 500, away = kRadius - 0.02;
            const GkPoint3d above(away * std::cos(angle), away * std::sin(angle), 100);
            const auto hit = Vs::Scene::pick(*fragment->viewFragmentNode(), above, {0, 0, -1});
            count += !hit;
            EXPECT_TRUE(!hit || hit->path.back().get() == scene->bodyNode(disc().id));
        }
        return count;
    };
    ASSERT_GT(missed(), 50) << "between the corners of the usual mesh";
    look(kNear, 0.71);
    drawUntilFine();
    EXPECT_EQ(missed(), 0);
}

TEST_F(FinerView, WhatIsUndoneOrClosedWhileItsFinerMeshIsMadeIsShownByNobody)
{
    options.finerWait = 0;
    look(kNear, 0.71);
    draw();
    EXPECT_FALSE(showsFiner()) << "who doesn't wait draws what there is";
    EXPECT_TRUE(FinerMeshes::get().working());
    ASSERT_TRUE(Vs::Transaction::undo(asset));
    draw();
    FinerMeshes::get().await(60);
    EXPECT_FALSE(FinerMeshes::get().working());
    ASSERT_TRUE(Vs::Transaction::redo(asset));
    drawUntilFine();
    EXPECT_TRUE(showsFiner());
    EXPECT_LT(off(), 1);

    Vs::Status status;
    ASSERT_TRUE(Vs::ModelBuilder(asset).torus(40, 20, {}, status));
    draw();
    const std::weak_ptr<const Vs::BodyMesh> mesh = disc().body->mesh();
    reopen();
    fragment->showAsset(scene);
    draw();
    FinerMeshes::get().await(60);
    EXPECT_TRUE(mesh.expired()) << "kept after the end of its document";
}

TEST_F(FinerView, TheNextOpeningFindsFinerMeshesInTheCache)
{
    look(kNear, 0.71);
    const auto pictureAfterOpening = [&](bool& kernel) {
        reopen();
        fragment->showAsset(scene);
        drawUntilFine();
        EXPECT_TRUE(showsFiner());
        kernel = Vs::cast<Vs::ModelBody>(disc().body.get())->source()->kernelLoaded();
        return image.pixels;
    };
    bool first = false, second = true;
    const auto made = pictureAfterOpening(first), found = pictureAfterOpening(second);
    EXPECT_TRUE(first);
    EXPECT_FALSE(second);
    EXPECT_EQ(made, found);
}

TEST_F(FinerView, ABodyOfTrianglesAloneKeepsThem)
{
    const auto ball = Shapes::ball(kRadius, 12);
    EXPECT_GT(Vs::chordalDeviation(*ball), 0.1);
    EXPECT_EQ(Vs::chordalDeviation(*Shapes::box(10, 20, 30)), 0);
    EXPECT_FALSE(Vs::finerMeshOf(ball));
    EXPECT_EQ(Vs::shownMesh(ball), ball);
}

} // namespace
