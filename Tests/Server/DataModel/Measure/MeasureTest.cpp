// Solids whose measures are known in closed form, measured through the manager.

#include "Server/Base/Progress.h"
#include "Server/Base/Strings.h"
#include "Server/Body/Body.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/Edit/EditRequest.h"
#include "Server/DataModel/Measure/MeasureMgr.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "Server/DataModel/Selection/SelectionFilter.h"
#include "Server/DataModel/Transaction.h"
#include "Tests/Server/DataModel/Measure/Measures.h"

#include <cmath>
#include <map>
#include <numbers>

using namespace Vs;
using std::numbers::pi;

using Type = EMeasureType;

class MeasureTest : public MeasuresTest
{
protected:
    /// A box of 10 x 20 x 30 at the origin, one rotated by 30 degrees about z beside it, a cylinder and
    /// spheres.
    void SetUp() override
    {
        asset = newAsset();
        ModelBuilder builder(asset);
        builder.box(10, 20, 30, {{}, L"Box", {}}, status);
        const GkMatrix3d turned =
            GkMatrix3d::translation({50, 0, 0}) * GkMatrix3d::rotation(pi / 6, {0, 0, 1});
        builder.box(10, 20, 30, {turned, L"Turned", {}}, status);
        builder.cylinder(5, 40, {GkMatrix3d::translation({0, 100, 0}), L"Post", {}}, status);
        builder.sphere(1, {GkMatrix3d::translation({-5, 0, 200}), L"Ball", {}}, status);
        builder.sphere(1, {GkMatrix3d::translation({5, 0, 200}), L"Ball", {}}, status);
        builder.sphere(3, {GkMatrix3d::translation({-5, 0, 200}), L"Shell", {}}, status);
        ASSERT_TRUE(status.isOk()) << Strings::narrow(status.toString());
    }

    /// The face of a box with its middle there, in the asset's coordinates.
    std::wstring at(const std::wstring& part, int count, const GkPoint3d& place)
    {
        for (int i = 1; i <= count; ++i) {
            const std::wstring path = part + std::to_wstring(i);
            if (position(path).isEqualTo(place, {1e-6, 1e-6}))
                return path;
        }
        ADD_FAILURE() << "nothing at " << place.x << ' ' << place.y << ' ' << place.z;
        return {};
    }
    std::wstring face(const std::wstring& name, const GkPoint3d& place)
    {
        return at(name + L"/Face", 6, place);
    }
};

TEST_F(MeasureTest, BodiesOfManyFacesAreAsFarApartAsTheirNearestPlaces)
{
    const auto apply = [&](const ModelEdit& edit) {
        EditRequest* request = EditRequest::make(asset, L"Edit", edit);
        EXPECT_TRUE(request->execute(asset, status)) << Strings::narrow(status.toString());
        const std::vector<std::string> added = request->added();
        request->destroy();
        return added;
    };
    ModelBuilder builder(asset);
    const std::string sieve = builder.box(100, 100, 4, {{}, L"Sieve", {}}, status)->id;
    CombineEdit drill{CombineEdit::Kind::Subtract, sieve, {}};
    for (int i = 0; i < 16; ++i)
        drill.tools.push_back(
            builder
                .cylinder(
                    3, 10,
                    {GkMatrix3d::translation({20.0 + 20 * (i % 4), 20.0 + 20 * (i / 4), -3}), L"Pin", {}},
                    status)
                ->id);
    apply(drill);
    const std::string above = apply(
        CopyEdit{{sieve}, {GkMatrix3d::translation({0, 0, 11}), GkMatrix3d::translation({103, 0, 8})}})[0];
    const auto apart = [&](const wchar_t* other) { return value({L"Sieve:1", other}, Type::Distance); };
    expectNear(apart(L"Sieve:2"), 7);
    expectNear(apart(L"Sieve:3"), 5);
    expectNear(value({L"Sieve:3", L"Sieve:2"}, Type::Distance), 3);
    builder.box(300, 300, 300, {GkMatrix3d::translation({-50, -50, -50}), L"Hull", {}}, status);
    EXPECT_EQ(value({L"Hull", L"Sieve:1"}, Type::Distance), 0);
    EXPECT_EQ(value({L"Sieve:1", L"Hull"}, Type::Distance), 0);
    // Cached values are valid for these places and these shapes.
    apply(MoveEdit{{above}, GkMatrix3d::translation({0, 0, 1})});
    expectNear(apart(L"Sieve:2"), 8);
    ASSERT_TRUE(Transaction::undo(asset));
    expectNear(apart(L"Sieve:2"), 7);
    const std::string knob =
        builder.box(1, 1, 7, {GkMatrix3d::translation({50, 50, 2}), L"Knob", {}}, status)->id;
    apply(CombineEdit{CombineEdit::Kind::Join, sieve, {knob}});
    expectNear(apart(L"Sieve:2"), 2);
}

TEST_F(MeasureTest, SolidsHaveTheirClosedForms)
{
    expectNear(value({L"Box"}, Type::Volume), 6000);
    expectNear(value({L"Turned/Body1"}, Type::Area), 2200);
    expectNear(value({L"Post"}, Type::Volume), pi * 25 * 40);
    expectNear(value({L"Post"}, Type::Area), 2 * pi * 25 + 2 * pi * 5 * 40);
    expectNear(value({L"Shell"}, Type::Volume), 4 * pi * 9);
    expectNear(value({L"Shell/Face1"}, Type::Area), 4 * pi * 9);
    EXPECT_TRUE(position(L"Box").isEqualTo({5, 10, 15}, {1e-5, 1e-5}));
    EXPECT_TRUE(position(L"Post").isEqualTo({0, 100, 20}, {1e-4, 1e-4}));
}

TEST_F(MeasureTest, PartsOfABoxAreThoseOfEachOfItsOccurrences)
{
    std::map<int, int> lengths;
    for (const std::wstring name : {L"Box", L"Turned"})
        for (int i = 1; i <= 12; ++i)
            ++lengths[int(std::lround(value({name + L"/Edge" + std::to_wstring(i)}, Type::Length)))];
    EXPECT_EQ(lengths, (std::map<int, int>{{10, 8}, {20, 8}, {30, 8}}));
    expectNear(value({face(L"Box", {5, 10, 30})}, Type::Area), 200);
    expectNear(value({face(L"Box", {5, 10, 30})}, Type::LoopLength), 60);
    const double c = std::cos(pi / 6), s = std::sin(pi / 6);
    const std::wstring turned = face(L"Turned", {50 + 5 * c - 10 * s, 5 * s + 10 * c, 30});
    expectNear(value({turned}, Type::LoopLength), 60);
    EXPECT_EQ(at(L"Box/Vertex", 8, {10, 20, 30}).substr(0, 10), L"Box/Vertex");
}

TEST_F(MeasureTest, RoundPartsHaveRadiiAndLoopsWithoutSeams)
{
    std::map<int, int> kinds;
    for (int i = 1; i <= 3; ++i) {
        MeasureResult result;
        const std::wstring path = L"Post/Face" + std::to_wstring(i);
        const bool round = measure({path}, Type::Radius, result);
        ++kinds[round];
        expectNear(value({path}, Type::LoopLength), (round ? 2 : 1) * 2 * pi * 5);
        EXPECT_EQ(MeasureMgr::get()->getLoopSelections(object(path)).size(), round ? 2u : 1u);
        if (round)
            expectNear(result.value, 5);
    }
    EXPECT_EQ(kinds, (std::map<int, int>{{0, 2}, {1, 1}}));
    for (const wchar_t* edge : {L"Post/Edge1", L"Post/Edge2"}) {
        expectNear(value({edge}, Type::Length), 2 * pi * 5);
        expectNear(value({edge}, Type::Radius), 5);
    }
    expectNear(value({L"Shell/Face1"}, Type::Radius), 3);
    EXPECT_TRUE(MeasureMgr::get()->getLoopSelections(object(L"Shell/Face1")).empty());
}

TEST_F(MeasureTest, DistancesAreTheShortestOnesWithTheirEnds)
{
    expectNear(value({face(L"Box", {5, 10, 0}), face(L"Box", {5, 10, 30})}, Type::Distance), 30);
    MeasureResult result;
    ASSERT_TRUE(measure({L"Ball:1", L"Ball:2"}, Type::Distance, result)) << why;
    expectNear(result.value, 8);
    EXPECT_TRUE(result.point1.isEqualTo({-4, 0, 200}, {1e-6, 1e-6}));
    EXPECT_TRUE(result.point2.isEqualTo({4, 0, 200}, {1e-6, 1e-6}));
    expectNear(value({L"Ball:2/Face1", L"Ball:1/Face1"}, Type::DeltaX), -8);
    // Concentric spheres are 2 mm apart everywhere, but the smaller solid is inside the larger.
    expectNear(value({L"Ball:1/Face1", L"Shell/Face1"}, Type::Distance), 2);
    EXPECT_EQ(value({L"Ball:1", L"Shell"}, Type::Distance), 0);
    // A corner to the side of the post, and skew edges.
    expectNear(value({at(L"Box/Vertex", 8, {0, 20, 0}), L"Post"}, Type::Distance), 75);
    const std::wstring upright = at(L"Box/Edge", 12, {0, 0, 15}), across = at(L"Box/Edge", 12, {5, 20, 30});
    expectNear(value({upright, across}, Type::Distance), 20);
    expectNear(value({upright, across}, Type::DeltaY), 20);
    expectNear(value({at(L"Box/Vertex", 8, {0, 0, 0}), at(L"Box/Vertex", 8, {10, 20, 30})}, Type::Distance),
               std::sqrt(1400.0));
}

TEST_F(MeasureTest, AnglesOfTwoAndOfThree)
{
    const std::wstring top = face(L"Box", {5, 10, 30}), side = face(L"Box", {0, 10, 15});
    expectNear(value({top, side}, Type::Angle), pi / 2);
    const double c = std::cos(pi / 6), s = std::sin(pi / 6);
    const std::wstring turned = face(L"Turned", {50 - 10 * s, 10 * c, 15});
    expectNear(value({side, turned}, Type::Angle), pi / 6);
    const std::wstring along = at(L"Box/Edge", 12, {5, 0, 0});
    expectNear(value({along, turned}, Type::Angle), pi / 3);
    expectNear(value({turned, along}, Type::Angle), pi / 3);
    expectNear(value({top, L"Turned/Edge1"}, Type::Angle), pi / 2);

    MeasureResult result;
    const std::wstring corners[] = {at(L"Box/Vertex", 8, {0, 0, 0}), at(L"Box/Vertex", 8, {10, 0, 0}),
                                    at(L"Box/Vertex", 8, {10, 20, 0})};
    ASSERT_TRUE(measure({corners[0], corners[1], corners[2]}, Type::Angle, result)) << why;
    expectNear(result.value, pi / 2);
    EXPECT_TRUE(result.point2.isEqualTo({10, 0, 0}));
    expectNear(value({corners[0], corners[1], L"Turned"}, Type::Angle),
               (position(L"Turned") - GkPoint3d(10, 0, 0)).angleTo({-1, 0, 0}));
    // An angle's own dimension shows the angle.
    for (const auto& [first, second] : {std::pair{side, turned}, {along, turned}, {top, side}}) {
        ASSERT_TRUE(measure({first, second}, Type::Angle, result)) << why;
        expectNear((result.point1 - result.point2).angleTo(result.point3 - result.point2), result.value);
    }
}

TEST_F(MeasureTest, WhatHasNoAnswerSaysWhy)
{
    const struct
    {
        std::vector<std::wstring> paths;
        Type type;
        const char* reason;
    } cases[] = {
        {{L"Box/Face1"}, Type::Length, "\"Box:1/Body1/Face1\": a plane has no length."},
        {{L"Box/Face1"}, Type::Volume, "a plane has no volume"},
        {{L"Box/Edge1"}, Type::Area, "a straight edge has no area"},
        {{L"Box/Vertex1"}, Type::Radius, "a vertex has no radius"},
        {{L"Box/Body1"}, Type::LoopLength, "a body has no loop length"},
        {{L"Box"}, Type::Radius, "a component has no radius"},
        {{L"Ball:1/Face1"}, Type::LoopLength, "a sphere has no loop length"},
        {{L"Box/Vertex9"}, Type::PositionX, "isn't in the exact shape"},
        {{L"Box/Face1", L"Ball:1/Face1"}, Type::Angle, "\"Ball:1/Body1/Face1\": a sphere has no angle."},
        {{face(L"Box", {5, 10, 0}), face(L"Box", {5, 10, 30})}, Type::Angle, "is parallel to the other"},
        {{at(L"Box/Edge", 12, {5, 0, 0}), at(L"Box/Edge", 12, {5, 20, 0})}, Type::Angle, "is parallel"},
        {{at(L"Box/Edge", 12, {5, 0, 0}), face(L"Box", {5, 10, 30})}, Type::Angle, "is parallel"},
        {{L"Box", L"Box/Face1"}, Type::Angle, "\"Box:1\": a component has no angle"},
        {{L"Box/Vertex1", L"Box/Vertex1", L"Box/Vertex2"}, Type::Angle, "lies at the apex"},
        {{L"Box", L"Post"}, Type::Volume, "can't be measured on that number"},
        {{L"Box"}, Type::Distance, "can't be measured on that number"},
    };
    for (const auto& each : cases) {
        MeasureResult result;
        result.value = 7;
        EXPECT_FALSE(measure(each.paths, each.type, result));
        EXPECT_EQ(result.value, 7);
        EXPECT_NE(why.find(each.reason), std::string::npos) << why;
        EXPECT_EQ(why.find('\n'), std::string::npos) << why;
    }
}

TEST_F(MeasureTest, ACancelEndsAMeasurementOfBodiesAndThoseThatWaitWithIt)
{
    {
        const Progress::CancelScope together;
        Progress::requestCancel();
        for (const Type type : {Type::Area, Type::Volume, Type::PositionX}) {
            MeasureResult result;
            EXPECT_FALSE(measure({L"Box"}, type, result));
            EXPECT_EQ(why, "\"Box:1\" can't be measured: it was cancelled.");
        }
    }
    expectNear(value({L"Box"}, Type::Volume), 6000);
}

TEST_F(MeasureTest, DeletedAndClosedAndForeignObjectsAreTold)
{
    const auto shell = object(L"Shell"), box = object(L"Box");
    MeasureResult result;
    status.clear();
    ASSERT_TRUE(Transaction::undo(asset));
    EXPECT_FALSE(MeasureMgr::get()->measure(shell, Type::Volume, result, &status));
    EXPECT_TRUE(status.matchingError("no longer"));
    ASSERT_TRUE(Transaction::redo(asset));
    EXPECT_TRUE(MeasureMgr::get()->measure(shell, Type::Volume, result));

    Asset* first = asset;
    asset = newAsset();
    ASSERT_NE(ModelBuilder(asset).box(1, 1, 1, {{}, L"Other", {}}, status), nullptr);
    status.clear();
    EXPECT_FALSE(MeasureMgr::get()->measure(box, object(L"Other"), Type::Distance, result, &status));
    EXPECT_TRUE(status.matchingError("belongs to another model"));
    DocumentMgr::get()->close(first->document());
    status.clear();
    EXPECT_FALSE(MeasureMgr::get()->measure(box, Type::Volume, result, &status));
    EXPECT_TRUE(status.matchingError("closed"));
    EXPECT_FALSE(MeasureMgr::get()->measure(nullptr, Type::Volume, result, &status));
}

TEST_F(MeasureTest, FiltersAcceptTheObjectsOfTheirType)
{
    MeasureMgr::get()->initialize();
    const std::pair<ESelectionType, const wchar_t*> types[] = {{ESelectionType::Vertex, L"Box/Vertex1"},
                                                               {ESelectionType::Edge, L"Box/Edge1"},
                                                               {ESelectionType::Component, L"Box"},
                                                               {ESelectionType::Face, L"Box/Face1"},
                                                               {ESelectionType::Body, L"Box/Body1"}};
    for (const auto& [type, path] : types) {
        const auto filters = MeasureMgr::get()->filters(type);
        ASSERT_EQ(filters.size(), 1u);
        for (const auto& [other, otherPath] : types)
            EXPECT_EQ(filters[0]->accepts(*object(otherPath)), type == other);
    }
}

TEST_F(MeasureTest, MeshesHaveTheVerticesOfTheExactShapesInTheirOrder)
{
    for (const std::wstring name : {L"Turned", L"Post"}) {
        const auto path = findPath(*asset, name, status);
        ASSERT_TRUE(path);
        const std::vector<float> points = asset->findComponent(path->component)->body->mesh()->vertexPoints;
        EXPECT_EQ(points.size(), 3 * (name == L"Post" ? 2u : 8u));
        for (size_t i = 0; i < points.size() / 3; ++i) {
            const GkPoint3d own(points[3 * i], points[3 * i + 1], points[3 * i + 2]);
            const GkPoint3d exact = position(name + L"/Vertex" + std::to_wstring(i + 1));
            EXPECT_TRUE((*placementOf(*path, *asset) * own).isEqualTo(exact, {1e-5, 1e-6})) << i;
        }
    }
}
