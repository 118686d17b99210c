#include "Server/Base/Strings.h"
#include "Server/Body/Body.h"
#include "Server/Body/BodyProperties.h"
#include "Server/DataModel/AssetEvents.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/Model/ModelData.h"
#include "Server/DataModel/Model/ModelKernel.h"
#include "Server/DataModel/Request.h"
#include "Server/DataModel/Transaction.h"
#include "Tests/Server/DataModel/Fixture.h"
#include "Tests/Server/DataModel/KernelShapes.h"
#include "Tests/Support/Seed.h"

#include <algorithm>
#include <cmath>
#include <iostream>
#include <limits>
#include <numbers>
#include <random>
#include <sstream>
#include <stdexcept>

using namespace Vs;

namespace {

class Watcher : public AssetEventSite
{
public:
    Watcher() { AssetEventSource::get()->subscribe(this); }
    ~Watcher() override { AssetEventSource::get()->unsubscribe(this); }
    void assetComponentsChanged(ComponentsEvent* event) override { told.push_back(event->changes()); }

    std::vector<ComponentsEvent::Changes> told;
};

/// Adds a box and then fails, or not.
class AddBox : public Implements<AddBox, Request>
{
public:
    enum class Then { Succeed, AddError, Throw };
    explicit AddBox(Then then) : Implements(L"Add a box"), m_then(then) {}

protected:
    void onExecute(Asset& asset, Status& status) override
    {
        ModelBuilder(&asset).box(1, 1, 1, {}, status);
        if (m_then == Then::AddError)
            status.addError(L"not today");
        if (m_then == Then::Throw)
            throw std::runtime_error("out of order");
    }

private:
    Then m_then;
};

} // namespace

class ModelTest : public DataModelTest
{
};

TEST_F(ModelTest, WhatTheKernelSaysOfDamagedDataIsNotPrinted)
{
    std::ostringstream stream;
    boxAndCylinder()->data().source().withKernel([&](ModelKernel& kernel) { kernel.write(stream); });
    const std::string sound = stream.str();
    const std::string evil = "\x1b]0;\x07";
    for (const std::string& place : {std::string("BinXCAF"), std::string("START_TYPES"),
                                     std::string("TDataStd_Name"), std::string("XCAFDoc_ShapeTool"),
                                     std::string("TNaming_NamedShape"), std::string("XCAFDoc_Color")}) {
        SCOPED_TRACE(place);
        std::string damaged = sound;
        ASSERT_NE(damaged.find(place), std::string::npos);
        damaged.replace(damaged.find(place), place.size(), (evil + place).substr(0, place.size()));
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        try {
            ModelKernel::read(damaged);
        } catch (const std::runtime_error&) {
            // It doesn't matter here that it is refused.
        }
        std::cout.flush();
        EXPECT_EQ(testing::internal::GetCapturedStdout() + testing::internal::GetCapturedStderr(), "");
    }
}

TEST_F(ModelTest, PrimitivesHaveTheirSizesNamesAndColours)
{
    Asset* asset = newAsset();
    ModelBuilder builder(asset);
    const Colour red{1, 0, 0, 1};
    const Component* box = builder.box(10, 20, 30, {{}, L"Block", red}, status);
    const Component* cylinder = builder.cylinder(5, 8, {}, status);
    const Component* sphere =
        builder.sphere(3, {GkMatrix3d::translation({100, 0, 0}), L"", std::nullopt}, status);
    ASSERT_TRUE(box && cylinder && sphere) << status.toString().c_str();
    EXPECT_EQ(box->name, L"Block");
    EXPECT_EQ(cylinder->name, L"Cylinder1");
    EXPECT_EQ(box->body->colour(), red);
    EXPECT_EQ(sphere->placement.matrix().entry[0][3], 100);

    const auto measure = [&](const Component* component) {
        return *bodyProperties(*component->body, status);
    };
    EXPECT_NEAR(measure(box).volume, 6000, 6e-3);
    EXPECT_NEAR(measure(box).area, 2200, 2e-3);
    EXPECT_NEAR(measure(cylinder).volume, 200 * std::numbers::pi, 6e-4);
    EXPECT_NEAR(measure(sphere).volume, 36 * std::numbers::pi, 1e-4);
    EXPECT_EQ(measure(box).solids, 1);
    EXPECT_EQ(measure(box).faces, 6);

    const auto mesh = box->body->mesh();
    EXPECT_EQ(mesh->triangles.size(), 12u * 3);
    EXPECT_EQ(mesh->faces.size(), 6u);
    EXPECT_EQ(mesh->edgeStarts.size(), 12u + 1);
    EXPECT_NEAR(mesh->bounds.diagonal(), std::sqrt(1400), 1e-6);
    EXPECT_TRUE(asset->isDirty(false));
}

TEST_F(ModelTest, MeshesFaceOutwardsAndHaveNormalsOfLengthOne)
{
    Asset* asset = newAsset();
    ModelBuilder builder(asset);
    const Component* parts[] = {builder.box(2, 2, 2, {}, status), builder.cylinder(1, 2, {}, status),
                                builder.sphere(1, {}, status), builder.sphere(24, {}, status)};
    for (const Component* part : parts) {
        const auto mesh = part->body->mesh();
        const auto point = [&](const std::vector<float>& from, uint32_t i) {
            return GkPoint3d(from[3 * i], from[3 * i + 1], from[3 * i + 2]);
        };
        double volume = 0;
        for (size_t t = 0; t < mesh->triangles.size(); t += 3) {
            const uint32_t* corner = &mesh->triangles[t];
            const GkPoint3d a = point(mesh->positions, corner[0]), b = point(mesh->positions, corner[1]),
                            c = point(mesh->positions, corner[2]);
            volume += a.asVector().dotProduct(b.asVector().crossProduct(c.asVector())) / 6;
            const GkVector3d area = (b - a).crossProduct(c - a);
            // The kernel closes a sphere's poles with triangles of zero area.
            if (area.length() < 1e-6)
                continue;
            const GkVector3d normal = area.normal();
            for (int k = 0; k < 3; ++k) {
                const GkVector3d given = point(mesh->normals, corner[k]).asVector();
                EXPECT_NEAR(given.length(), 1, 1e-5);
                EXPECT_GT(given.dotProduct(normal), 0.9);
            }
        }
        EXPECT_NEAR(volume, bodyProperties(*part->body, status)->volume, 0.02 * volume);
    }
}

TEST_F(ModelTest, TrianglesOfAPlaneLeaveItsHolesOpenAndNothingElse)
{
    KernelShapes::writePerforatedPlane(Strings::narrow(scratch("plane.brep")));
    const Document* document = open(scratch("plane.brep"));
    ASSERT_TRUE(document) << status.toString().c_str();
    const auto mesh = componentsOf(*document->activeAsset()).back()->body->mesh();
    EXPECT_EQ(mesh->edgeStarts.size(), 801u * 4 + 1);
    // As many as any triangulation of such a polygon has.
    EXPECT_EQ(mesh->triangles.size() / 3, 801u * 4 + 2 * 800 - 2);
    const auto corner = [&](size_t i) {
        const float* p = &mesh->positions[size_t(mesh->triangles[i]) * 3];
        return GkPoint3d(p[0], p[1], p[2]);
    };
    double area = 0, expected = 800;
    for (size_t i = 0; i < mesh->triangles.size(); i += 3)
        area += (corner(i + 1) - corner(i)).crossProduct(corner(i + 2) - corner(i)).length() / 2;
    for (int i = 0; i < 800; ++i)
        expected -= std::pow(0.1 + 0.8 * i / 799, 2);
    EXPECT_NEAR(area, expected, 1e-3);
}

TEST_F(ModelTest, ImpossibleSizesAndPlacesAreRefusedAndLeaveNothing)
{
    Asset* asset = newAsset();
    ModelBuilder builder(asset);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    for (const double size : {0.0, -1.0, nan, infinity, 1e-9, 1e12}) {
        for (int place = 0; place < 3; ++place) {
            Status refused;
            EXPECT_EQ(
                builder.box(place == 0 ? size : 1, place == 1 ? size : 1, place == 2 ? size : 1, {}, refused),
                nullptr);
            EXPECT_TRUE(refused.matchingError(place == 0 ? "length" : place == 1 ? "width" : "height"));
        }
        Status refused;
        EXPECT_EQ(builder.sphere(size, {}, refused), nullptr);
        EXPECT_EQ(builder.cylinder(1, size, {}, refused), nullptr);
        EXPECT_EQ(builder.cylinder(size, 1, {}, refused), nullptr);
    }
    GkMatrix3d mirror, lost;
    mirror.entry[0][0] = -1;
    lost.entry[2][3] = nan;
    for (const GkMatrix3d& placement : {mirror, lost, GkMatrix3d::scaling(2)}) {
        Status refused;
        EXPECT_EQ(builder.box(1, 1, 1, {placement, L"", std::nullopt}, refused), nullptr);
        EXPECT_TRUE(refused.matchingError("place"));
    }
    EXPECT_TRUE(componentsOf(*asset).empty());
    EXPECT_EQ(Transaction::undoSteps(asset), 0u);
    EXPECT_FALSE(asset->isDirty(false));
}

TEST_F(ModelTest, UndoAndRedoBringBackTheWholeModelStepByStep)
{
    std::mt19937 random(TestSupport::seed());
    Asset* asset = newAsset();
    ModelBuilder builder(asset);
    std::vector<std::string> states{digestOf(*asset)};
    const auto addSomething = [&] {
        const double size = 1 + double(random() % 50);
        ModelBuilder::Look look;
        if (random() % 2)
            look.placement = GkMatrix3d::translation({size, -size, 1}) * GkMatrix3d::rotation(0.3, {0, 0, 1});
        if (random() % 2)
            look.colour = Colour{0.5f, float(random() % 100) / 100, 0.25f, 1};
        switch (random() % 3) {
        case 0:
            return builder.box(size, 2, 3, look, status);
        case 1:
            return builder.cylinder(size, 4, look, status);
        default:
            return builder.sphere(size, look, status);
        }
    };
    for (int round = 0; round < 40; ++round) {
        const size_t at = Transaction::undoSteps(asset);
        switch (random() % 4) {
        case 0:
            EXPECT_EQ(Transaction::undo(asset), at > 0);
            EXPECT_EQ(digestOf(*asset), states[at > 0 ? at - 1 : 0]);
            break;
        case 1:
            EXPECT_EQ(Transaction::redo(asset), at + 1 < states.size());
            EXPECT_EQ(digestOf(*asset), states[std::min(at + 1, states.size() - 1)]);
            break;
        default:
            ASSERT_NE(addSomething(), nullptr) << status.toString().c_str();
            states.resize(at + 1);
            states.push_back(digestOf(*asset));
        }
    }
    while (Transaction::undo(asset))
        EXPECT_EQ(digestOf(*asset), states[Transaction::undoSteps(asset)]);
    EXPECT_TRUE(componentsOf(*asset).empty());
    while (Transaction::redo(asset))
        EXPECT_EQ(digestOf(*asset), states[Transaction::undoSteps(asset)]);
    EXPECT_EQ(digestOf(*asset), states.back());
}

TEST_F(ModelTest, WhatDoesNotChangeStaysTheSameObject)
{
    Asset* asset = newAsset();
    ModelBuilder builder(asset);
    const Component* first = builder.box(1, 1, 1, {}, status);
    const Body* body = first->body.get();
    Watcher watcher;
    const Component* second = builder.sphere(1, {}, status);
    ASSERT_EQ(watcher.told.size(), 1u);
    EXPECT_EQ(watcher.told[0].added, std::vector{second});
    EXPECT_TRUE(watcher.told[0].changed.empty() && watcher.told[0].removed.empty());
    const std::string id = second->id;
    Transaction::undo(asset);
    EXPECT_EQ(watcher.told.back().removed, std::vector{id});
    EXPECT_EQ(asset->findComponent(id), nullptr);
    EXPECT_EQ(asset->findComponent(first->id), first);
    EXPECT_EQ(first->body.get(), body);
}

TEST_F(ModelTest, AnotherShapeInTheSamePlaceIsAnotherBody)
{
    Asset* asset = newAsset();
    ModelBuilder builder(asset);
    const Component* sphere = builder.sphere(1, {}, status);
    const StrongRef<Body> old = sphere->body;
    const double volume = bodyProperties(*old, status)->volume;
    Transaction::undo(asset);
    const Component* box = builder.box(1, 1, 1, {}, status);
    EXPECT_FALSE(box->body == old);
    EXPECT_NEAR(bodyProperties(*box->body, status)->volume, 1, 1e-6);
    EXPECT_EQ(bodyProperties(*old, status)->volume, volume);
}

TEST_F(ModelTest, ARequestHappensAsAWholeOrNotAtAll)
{
    Asset* asset = newAsset();
    for (const AddBox::Then then : {AddBox::Then::AddError, AddBox::Then::Throw}) {
        Status refused;
        EXPECT_FALSE(AddBox(then).execute(asset, refused));
        EXPECT_TRUE(refused.isError());
        EXPECT_TRUE(componentsOf(*asset).empty());
        EXPECT_EQ(Transaction::undoSteps(asset), 0u);
    }
    EXPECT_FALSE(AddBox(AddBox::Then::Succeed).execute(nullptr, status));
    status.clear();
    EXPECT_TRUE(AddBox(AddBox::Then::Succeed).execute(asset, status));
    EXPECT_EQ(Transaction::undoName(asset), L"Add a box");
}

TEST_F(ModelTest, InnerTransactionsJoinTheOuterOne)
{
    Asset* asset = newAsset();
    {
        Transaction outer(asset, L"Two boxes");
        ModelBuilder(asset).box(1, 1, 1, {}, status);
        ModelBuilder(asset).box(2, 2, 2, {}, status);
        EXPECT_FALSE(Transaction::undo(asset));
        outer.commit();
    }
    EXPECT_EQ(Transaction::undoSteps(asset), 1u);
    EXPECT_EQ(componentsOf(*asset).size(), 2u);
    {
        Transaction outer(asset, L"Broken");
        ModelBuilder(asset).box(3, 3, 3, {}, status);
        {
            Transaction inner(asset, L"Inner");
        }
        outer.commit();
    }
    EXPECT_EQ(componentsOf(*asset).size(), 2u);
    EXPECT_EQ(Transaction::undoSteps(asset), 1u);
    {
        Transaction nothing(asset, L"Nothing");
        nothing.commit();
    }
    EXPECT_EQ(Transaction::undoSteps(asset), 1u);
}

TEST_F(ModelTest, ABodyOutlivesItsDocument)
{
    StrongRef<Body> body = ModelBuilder(newAsset()).box(2, 2, 2, {}, status)->body;
    DocumentMgr::get()->close(DocumentMgr::get()->document(0u));
    EXPECT_EQ(body->mesh()->triangles.size(), 36u);
    EXPECT_NEAR(bodyProperties(*body, status)->volume, 8, 1e-5);
}
