#include "Server/Body/Body.h"
#include "Server/DataModel/AssetEvents.h"
#include "Tests/Server/DataModel/Edit/EditFixture.h"
#include "Tests/Server/DataModel/KernelShapes.h"
#include "Tests/Support/RealData.h"

#include <numbers>

namespace {

using Vs::CopyEdit;
using Vs::MoveEdit;

class EditPlacesTest : public EditTest
{
protected:
    /// Brackets and bolts that occur several times, some of them rotated.
    Vs::Asset* assembly()
    {
        Vs::Document* document = open((TestSupport::realDataFolder() / "as1-oc-214.stp").wstring());
        return document ? document->activeAsset() : nullptr;
    }

    static void expectNear(const GkPoint3d& a, const GkPoint3d& b) { EXPECT_LT(a.distanceTo(b), 1e-9); }

    static const GkMatrix3d kAside;
};

const GkMatrix3d EditPlacesTest::kAside =
    GkMatrix3d::translation({5, -7, 11}) * GkMatrix3d::rotation(std::numbers::pi / 6, {0, 0, 1});

/// Records what a change reported.
class Listener : public Vs::AssetEventSite
{
public:
    Listener() { Vs::AssetEventSource::get()->subscribe(this); }
    ~Listener() override { Vs::AssetEventSource::get()->unsubscribe(this); }
    void assetComponentsChanged(Vs::ComponentsEvent* event) override { last = event->changes(); }

    Vs::ComponentsEvent::Changes last;
};

TEST_F(EditPlacesTest, APartMovesByItselfWhetherItHadAPlaceOrNot)
{
    Vs::Asset* asset = boxAndCylinder();
    for (const wchar_t* name : {L"Red box", L"Turned cylinder"}) {
        const std::string id = partNamed(*asset, name)->id;
        const Vs::Colour colour = partNamed(*asset, name)->body->colour();
        const GkPoint3d before = originOf(*asset, id);
        const Listener listener;
        edit(*asset, MoveEdit{{id}, kAside});
        expectNear(originOf(*asset, id), kAside * before);
        EXPECT_EQ(partNamed(*asset, name)->body->colour(), colour);
        EXPECT_EQ(listener.last.changed.size(), 1u);
        EXPECT_TRUE(listener.last.added.empty() && listener.last.removed.empty());
        edit(*asset, MoveEdit{{id}, kAside});
        expectNear(originOf(*asset, id), kAside * (kAside * before));
    }
    EXPECT_EQ(asset->components()->children.size(), 2u);
    EXPECT_NEAR(volumeOf(*asset), 10 * 20 * 30 + std::numbers::pi * 25 * 20, 1e-3);
}

TEST_F(EditPlacesTest, CopiesShowTheSameBodyAndOutliveTheOriginal)
{
    Vs::Asset* asset = boxAndCylinder();
    for (const wchar_t* name : {L"Red box", L"Turned cylinder"}) {
        const std::string id = partNamed(*asset, name)->id;
        const GkPoint3d before = originOf(*asset, id);
        const auto added = edit(*asset, CopyEdit{{id}, {kAside, kAside * kAside}});
        ASSERT_EQ(added.size(), 2u);
        expectNear(originOf(*asset, id), before);
        expectNear(originOf(*asset, added[0]), kAside * before);
        expectNear(originOf(*asset, added[1]), kAside * (kAside * before));
        for (const std::string& copy : added) {
            EXPECT_EQ(asset->findComponent(copy)->body, asset->findComponent(id)->body);
            EXPECT_EQ(asset->findComponent(copy)->name, name);
        }
    }
    EXPECT_NEAR(volumeOf(*asset), 3 * (10 * 20 * 30 + std::numbers::pi * 25 * 20), 1e-3);
    EXPECT_EQ(asset->findComponent(partNamed(*asset, L"Red box")->id)->body->colour(),
              (Vs::Colour{1, 0, 0, 1}));
}

TEST_F(EditPlacesTest, WhatStandsInATurnedAssemblyMovesAlongTheModelsAxes)
{
    SKIP_WITHOUT_REAL_DATA();
    Vs::Asset* asset = assembly();
    ASSERT_NE(asset, nullptr);
    std::string id;
    for (const Vs::Component* component : componentsOf(*asset))
        if (component->body && std::count(component->id.begin(), component->id.end(), '/') > 2)
            id = component->id;
    const GkPoint3d before = originOf(*asset, id);
    edit(*asset, MoveEdit{{id}, kAside});
    expectNear(originOf(*asset, id), kAside * before);
    const size_t parts = componentsOf(*asset).size();
    const auto added = edit(*asset, CopyEdit{{id}, {kAside}});
    ASSERT_EQ(added.size(), 1u);
    expectNear(originOf(*asset, added[0]), kAside * (kAside * before));
    // The assembly that holds the part occurs several times.
    EXPECT_GT(componentsOf(*asset).size(), parts + 1);
}

TEST_F(EditPlacesTest, AWholeModelMovesAndIsCopiedAndWhatIsNamedInsideMovesOnce)
{
    SKIP_WITHOUT_REAL_DATA();
    Vs::Asset* asset = assembly();
    ASSERT_NE(asset, nullptr);
    const std::string root = asset->components()->children.front()->id;
    const std::string inside = asset->components()->children.front()->children.front()->id;
    const GkPoint3d before = originOf(*asset, inside);
    const double volume = volumeOf(*asset);
    edit(*asset, MoveEdit{{inside, root, inside}, kAside});
    expectNear(originOf(*asset, inside), kAside * before);
    const auto added = edit(*asset, CopyEdit{{root}, {kAside}});
    ASSERT_EQ(asset->components()->children.size(), 2u);
    const Vs::Component* copy = asset->findComponent(added.at(0));
    EXPECT_EQ(copy->name, asset->components()->children.front()->name);
    expectNear(originOf(*asset, copy->children.front()->id), kAside * (kAside * before));
    EXPECT_NEAR(volumeOf(*asset), 2 * volume, 1e-6 * volume);
}

TEST_F(EditPlacesTest, WhatWasMovedAndCopiedIsSavedAndExported)
{
    Vs::Asset* asset = boxAndCylinder();
    const std::string box = partNamed(*asset, L"Red box")->id;
    edit(*asset, MoveEdit{{box}, kAside});
    const std::string copy = edit(*asset, CopyEdit{{box}, {kAside}}).at(0);
    const GkPoint3d place = originOf(*asset, copy);
    ASSERT_TRUE(save(asset, scratch("moved.stp")));
    Vs::Document* again = open(scratch("moved.stp"));
    ASSERT_NE(again, nullptr);
    EXPECT_NEAR(volumeOf(*again->activeAsset()), volumeOf(*asset), 1e-3);
    bool found = false;
    for (const Vs::Component* component : componentsOf(*again->activeAsset()))
        found |= component->body && originOf(*again->activeAsset(), component->id).distanceTo(place) < 1e-6;
    EXPECT_TRUE(found);
}

TEST_F(EditPlacesTest, NonsenseIsRefusedWithAReason)
{
    Vs::Asset* asset = boxAndCylinder();
    const std::string box = partNamed(*asset, L"Red box")->id;
    EXPECT_NE(refusal(*asset, MoveEdit{{}, kAside}).find("no object"), std::string::npos);
    EXPECT_NE(refusal(*asset, MoveEdit{{box, "0:1:1:77"}, kAside}).find("no longer"), std::string::npos);
    EXPECT_NE(refusal(*asset, MoveEdit{{box}, GkMatrix3d::translation({0, 2e9, 0})}).find("farther"),
              std::string::npos);
    EXPECT_NE(refusal(*asset, MoveEdit{{box}, GkMatrix3d::scaling(2)}).find("not scale"), std::string::npos);
    EXPECT_NE(refusal(*asset, CopyEdit{{box}, std::vector<GkMatrix3d>(200000)}).find("copies"),
              std::string::npos);
    Vs::Asset* other = newAsset();
    Vs::EditRequest* request = Vs::EditRequest::make(asset, L"Move", MoveEdit{{box}, kAside});
    Vs::Status own;
    EXPECT_FALSE(request->execute(other, own));
    request->destroy();
}

// The sum of the tetrahedra below the triangles, which is negative if those face inwards.
double volumeWithin(const Vs::BodyMesh& mesh, const GkMatrix3d& place)
{
    double volume = 0;
    for (size_t i = 0; i < mesh.triangles.size(); i += 3) {
        GkVector3d corner[3];
        for (size_t k = 0; k < 3; ++k) {
            const float* p = &mesh.positions[size_t(mesh.triangles[i + k]) * 3];
            corner[k] = (place * GkPoint3d(p[0], p[1], p[2])).asVector();
        }
        volume += corner[0].dotProduct(corner[1].crossProduct(corner[2])) / 6;
    }
    return volume;
}

TEST_F(EditPlacesTest, TheImageOfTrianglesIsOnTheOtherSideAndFacesOutwards)
{
    const std::wstring stl = write(
        "corner.stl", "solid\nfacet normal 0 0 -1\nouter loop\nvertex 0 0 0\nvertex 0 6 0\nvertex 6 0 0\n"
                      "endloop\nendfacet\nfacet normal 0 -1 0\nouter loop\nvertex 0 0 0\nvertex 6 0 0\n"
                      "vertex 0 0 6\nendloop\nendfacet\nfacet normal -1 0 0\nouter loop\nvertex 0 0 0\n"
                      "vertex 0 0 6\nvertex 0 6 0\nendloop\nendfacet\nfacet normal 1 1 1\nouter loop\n"
                      "vertex 6 0 0\nvertex 0 6 0\nvertex 0 0 6\nendloop\nendfacet\nendsolid\n");
    KernelShapes::writeMixed(Vs::Strings::narrow(scratch("mixed.brep")));
    for (const std::wstring& file : {stl, scratch("mixed.brep")}) {
        SCOPED_TRACE(Vs::Strings::narrow(file));
        Vs::Document* document = open(file);
        ASSERT_TRUE(document) << status.toString().c_str();
        Vs::Asset& asset = *document->activeAsset();
        const Vs::Component* part = componentsOf(asset).back();
        const auto before = part->body->mesh();
        const std::vector<std::string> added = edit(asset, Vs::MirrorEdit{{part->id}, {-1, 0, 0}, {1, 0, 0}});
        ASSERT_EQ(added.size(), 1u);
        const Vs::Component* image = componentsOf(asset).back();
        ASSERT_EQ(image->id, added.front());
        const auto after = image->body->mesh();
        const GkMatrix3d place = *Vs::placementOf(Vs::ObjectPath{.component = image->id}, asset);
        EXPECT_NEAR(volumeWithin(*after, place), volumeWithin(*before, {}), 1e-3);
        EXPECT_EQ(after->faces.size(), before->faces.size());
        for (size_t i = 0; i < after->positions.size(); i += 3)
            EXPECT_LT((place * GkPoint3d(after->positions[i], 0, 0)).x, -2 + 1e-6);
    }
}

} // namespace
