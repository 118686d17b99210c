#include "Server/Scene/Camera.h"
#include "Server/Scene/HitInfo.h"
#include "Server/Scene/NodeChange.h"
#include "Tests/Server/Scene/Shapes.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <random>
#include <set>

using namespace Vs;
using namespace Vs::Scene;
using Rendra::Graphics::BodyNode;
using Rendra::Graphics::GroupNode;
using Rendra::Graphics::Part;

namespace {

constexpr PickWish kEverything{.vertices = true, .edges = true};
constexpr PickWish kThrough{.vertices = true, .edges = true, .visibleOnly = false};

StrongRef<BodyNode> show(GroupNode* parent, const Shapes::MeshPtr& mesh, const GkMatrix3d& placement = {})
{
    StrongRef<BodyNode> node = BodyNode::make(mesh, Colour());
    NodeChange(node.get()).transform(placement);
    NodeChange(parent).add(node);
    return node;
}

/// What was picked, as "v3 e0 f5".
std::string text(const std::vector<PickedPoint>& picked)
{
    std::string all;
    for (const PickedPoint& point : picked)
        all += (all.empty() ? "" : " ") + std::string(1, "fev"[int(point.part->part)]) +
               std::to_string(point.part->index);
    return all;
}

/// Equally near ones come in no particular order.
std::multiset<std::string> sorted(const std::vector<PickedPoint>& picked)
{
    std::multiset<std::string> words;
    for (const PickedPoint& point : picked)
        words.insert(text({point}));
    return words;
}

class PartPick : public testing::TestWithParam<int>
{
protected:
    /// A view of everything shown, in that many pixels, from a direction.
    void look(const GkVector3d& direction, double width = 400, double height = 400)
    {
        m_camera->projection(GetParam());
        m_camera->look(direction, std::abs(direction.z) > 0.99 ? GkVector3d(0, 1, 0) : GkVector3d(0, 0, 1));
        m_camera->fit(m_root->boundingBox());
        m_projection.emplace(*m_camera, width, height);
    }
    /// What is picked that many pixels to the right of and above a place of the model.
    std::vector<PickedPoint> at(const GkPoint3d& place, double right, double up,
                                const PickWish& wish = kEverything) const
    {
        const GkPoint3d screen = m_projection->worldToScreen(place);
        return pickAt(*m_root, *m_projection, screen.x + right, screen.y + up, wish);
    }

    StrongRef<GroupNode> m_root = GroupNode::make();
    StrongRef<Camera> m_camera = Camera::make();
    std::optional<Projection> m_projection;
};

INSTANTIATE_TEST_SUITE_P(InBothProjections, PartPick,
                         testing::Values(kParallelProjection, kPerspectiveProjection));

} // namespace

TEST_P(PartPick, VerticesComeBeforeEdgesAndThoseBeforeFacesWithinTheTolerance)
{
    show(m_root.get(), Shapes::box(10, 10, 10));
    look({0, 0, -1});
    EXPECT_EQ(text(at({10, 5, 10}, -8, 0)), "f5");
    EXPECT_EQ(text(at({10, 5, 10}, -4, 0)), "e1 f5");
    EXPECT_EQ(text(at({10, 5, 10}, 4, 0)), "e1") << "also from beside the body";
    EXPECT_EQ(text(at({10, 5, 10}, 6, 0)), "");
    EXPECT_EQ(text(at({10, 10, 10}, -3, -3)).substr(0, 5), "v6 e1");
    EXPECT_EQ(text(at({10, 10, 10}, -4, -4)).substr(0, 2), "e1")
        << "the vertex is farther than the tolerance";
    PickWish faces;
    EXPECT_EQ(text(at({10, 10, 10}, -1, -1, faces)), "f5");
    PickWish vertices{.vertices = true};
    EXPECT_EQ(text(at({10, 5, 10}, -1, 0, vertices)), "f5");
}

TEST_P(PartPick, TrianglesAloneHaveTheFacesEdgesAndVerticesThatTheyShow)
{
    auto triangles = std::make_shared<BodyMesh>(*Shapes::box(10, 10, 10));
    triangles->faces = {{0, uint32_t(triangles->triangles.size() / 3), -1}};
    triangles->edgePoints.clear();
    triangles->edgeStarts.assign(1, 0);
    triangles->vertexPoints.clear();
    show(m_root.get(), triangles);
    const auto kinds = [&](const GkPoint3d& place, double right, double up) {
        std::string all;
        for (const PickedPoint& point : at(place, right, up))
            all += "fev"[int(point.part->part)];
        return all;
    };
    std::set<uint32_t> faces;
    for (const GkVector3d& direction :
         {GkVector3d(0, 0, -1), {0, 0, 1}, {1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, -1, 0}}) {
        look(direction);
        const auto middle = at({5, 5, 5}, 0, 0);
        ASSERT_EQ(middle.size(), 1u);
        faces.insert(middle[0].part->index);
        EXPECT_EQ(at({5, 5, 5}, 60, -40)[0].part, middle[0].part) << "over the diagonal";
    }
    EXPECT_EQ(faces.size(), 6u);
    look({0, 0, -1});
    EXPECT_EQ(kinds({10, 5, 10}, -8, 0), "f");
    EXPECT_EQ(kinds({10, 5, 10}, -4, 0), "ef");
    EXPECT_EQ(kinds({10, 10, 10}, -3, -3).substr(0, 2), "ve");
    EXPECT_EQ(kinds({5, 5, 10}, 0, 0), "f") << "the diagonal of a side is not an edge";
}

TEST_P(PartPick, WhatSurfacesHideIsPickedOnlyWhenAskedFor)
{
    show(m_root.get(), Shapes::box(10, 10, 10));
    look({1, 0.8, -0.7});
    // The corner that is farthest from the viewer, and an edge that leads to it.
    EXPECT_EQ(text(at({10, 10, 0}, 0, 0)).find('v'), std::string::npos);
    EXPECT_EQ(text(at({10, 10, 0}, 0, 0, kThrough)).substr(0, 2), "v2");
    EXPECT_EQ(text(at({10, 10, 5}, 0, 0)).find('e'), std::string::npos);
    EXPECT_EQ(text(at({10, 10, 5}, 0, 0, kThrough)).substr(0, 2), "e4");
    EXPECT_EQ(text(at({0, 0, 10}, 0, 0)).substr(0, 2), "v4");
    EXPECT_EQ(text(at({0, 10, 0}, 0, 0)).substr(0, 2), "v3") << "the silhouette hides nothing of itself";

    // A plate in front hides the rest as well.
    const auto plate = show(m_root.get(), Shapes::box(0.1, 40, 40), GkMatrix3d::translation({-5, -15, -15}));
    EXPECT_EQ(text(at({0, 0, 10}, 0, 0)), "f0");
    NodeChange(plate.get()).visible(false);
    EXPECT_EQ(text(at({0, 0, 10}, 0, 0)).substr(0, 2), "v4");
}

TEST_P(PartPick, AllFacesAlongTheRayComeInTheirOrder)
{
    const auto low = show(m_root.get(), Shapes::box(10, 10, 1));
    const auto high = show(m_root.get(), Shapes::box(10, 10, 1), GkMatrix3d::translation({0, 0, 5}));
    look({0, 0, -1});
    const PickWish wish{.visibleOnly = false};
    const auto all = at({5, 5, 6}, 1, 2, wish);
    ASSERT_EQ(text(all), "f5 f4 f5 f4");
    EXPECT_EQ(all[1].path.back().get(), high.get());
    EXPECT_EQ(all[2].path.back().get(), low.get());
    EXPECT_NEAR(all[2].along - all[0].along, 5, 0.01);
    EXPECT_TRUE(all[0].localNormal.isEqualTo({0, 0, 1}));
    EXPECT_EQ(text(at({5, 5, 6}, 1, 2, PickWish())), "f5");
}

TEST_P(PartPick, NobodyMeansAnEdgeOfABodyAsSmallAsTheTolerance)
{
    show(m_root.get(), Shapes::box(100, 100, 1));
    show(m_root.get(), Shapes::box(1, 1, 1), GkMatrix3d::translation({50, 50, 1}));
    look({0, 0, -1});
    EXPECT_EQ(text(at({50.5, 50.5, 2}, 0, 0)), "f5");
    EXPECT_EQ(text(at({100, 50, 1}, 1, 0)), "e1");
}

TEST_P(PartPick, TheRimOfASmallHoleComesBeforeTheVertexWhereItCloses)
{
    auto plate = std::make_shared<BodyMesh>(*Shapes::box(100, 100, 10));
    const auto addRim = [&](float x, float radius) {
        constexpr int kSides = 24;
        for (int i = 0; i <= kSides; ++i) {
            const double angle = 2 * std::numbers::pi * i / kSides;
            for (const double value : {x + radius * std::cos(angle), 50 + radius * std::sin(angle), 10.0})
                plate->edgePoints.push_back(float(value));
        }
        plate->edgeStarts.push_back(uint32_t(plate->edgePoints.size() / 3));
        for (const float value : {x + radius, 50.0f, 10.0f})
            plate->vertexPoints.push_back(value);
    };
    addRim(30, 1);
    addRim(70, 10);
    show(m_root.get(), plate);
    look({0, 0, -1});
    EXPECT_EQ(text(at({30, 50, 10}, 0, 0)).substr(0, 5), "e6 v8");
    EXPECT_EQ(text(at({31, 50, 10}, 0, 0)).substr(0, 5), "e6 v8");
    EXPECT_EQ(text(at({80, 50, 10}, 0, 0)).substr(0, 5), "v9 e7") << "there is room to aim at either";
    EXPECT_EQ(text(at({31, 50, 10}, 0, 0, PickWish{.vertices = true})).substr(0, 2), "v8");
}

TEST_P(PartPick, ThePlaceOnAnEdgeLiesUnderThePointer)
{
    const GkMatrix3d placement =
        GkMatrix3d::translation({3, 4, 5}) * GkMatrix3d::rotation(0.4, {1, 2, 3}) * GkMatrix3d::scaling(2);
    show(m_root.get(), Shapes::box(200, 10, 10), placement);
    look(placement * GkVector3d(1, 0.4, -0.8), 300, 200);
    for (const double along : {5.0, 60.0, 190.0}) {
        const auto picked = at(placement * GkPoint3d(along, 0, 10), 0, 0, PickWish{.edges = true});
        ASSERT_FALSE(picked.empty()) << along;
        EXPECT_EQ(text({picked.front()}), "e1") << along;
        EXPECT_NEAR(picked.front().localPoint.x, along, along * 0.02);
        EXPECT_TRUE(picked.front().localNormal.isEqualTo({}));
        EXPECT_NEAR(picked.front().localToWorld.entry[0][3], 3, 1e-9);
    }
}

TEST_P(PartPick, ManyChildrenAreSearchedAsFewAreAlsoAfterChanges)
{
    // The same bodies under one group and under groups of a few.
    const auto nested = GroupNode::make();
    const auto mesh = Shapes::box(8, 8, 8);
    std::vector<StrongRef<BodyNode>> flat, other;
    StrongRef<GroupNode> few;
    for (int i = 0; i < 300; ++i) {
        if (i % 10 == 0) {
            few = GroupNode::make();
            NodeChange(nested.get()).add(few);
        }
        const GkMatrix3d placement =
            GkMatrix3d::translation({(i % 20) * 11.0, (i / 20) * 11.0, (i % 7) * 9.0}) *
            GkMatrix3d::rotation(i * 0.37, {1, 1, 0});
        flat.push_back(show(m_root.get(), mesh, placement));
        other.push_back(show(few.get(), mesh, placement));
    }
    look({1, 1.3, -0.9}, 500, 500);
    std::mt19937 random(99);
    std::uniform_real_distribution<double> any(0, 500);
    const auto compare = [&] {
        size_t edges = 0;
        for (int i = 0; i < 300; ++i) {
            const double x = any(random), y = any(random);
            const auto a = pickAt(*m_root, *m_projection, x, y, kEverything);
            const auto b = pickAt(*nested, *m_projection, x, y, kEverything);
            ASSERT_EQ(sorted(a), sorted(b)) << x << ", " << y;
            if (a.empty())
                continue;
            edges += a.front().part->part == Part::Edge;
            EXPECT_TRUE((a[0].localToWorld * a[0].localPoint)
                            .isEqualTo(b[0].localToWorld * b[0].localPoint, {1e-6, 1e-9}));
        }
        EXPECT_GT(edges, 5u);
    };
    compare();
    for (size_t i = 0; i < 300; i += 7)
        for (const auto& bodies : {flat, other}) {
            NodeChange(bodies[i].get())
                .transform(GkMatrix3d::translation({double(i) * 0.7, 200.0 - double(i) * 0.5, 30}));
            NodeChange(bodies[i / 2].get()).visible(false);
        }
    compare();
}

TEST(PlacesRevision, LooksDoNotMoveAnything)
{
    const auto root = GroupNode::make();
    const auto body = show(root.get(), Shapes::box(1, 1, 1));
    const uint64_t places = root->placesRevision(), all = root->subtreeRevision();
    NodeChange(body.get())
        .highlight(Rendra::Graphics::Highlight::Pointed)
        .colour(Colour{1, 0, 0, 1})
        .litParts({{Part::Edge, 0, Rendra::Graphics::Highlight::Selected}});
    EXPECT_EQ(root->placesRevision(), places);
    EXPECT_GT(root->subtreeRevision(), all);
    NodeChange(body.get()).visible(false);
    EXPECT_GT(root->placesRevision(), places);
    EXPECT_TRUE(root->boundingBox().isEmpty());
}
