// Parts of bodies that consist only of triangles: what was once exact is measured as if it still were.

#include "Server/Body/Body.h"
#include "Server/Body/PartsMesh.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/Edit/EditRequest.h"
#include "Tests/Server/DataModel/Measure/Measures.h"
#include "Tests/Support/RealData.h"

#include <cmath>
#include <map>
#include <numbers>

using namespace Vs;
using Type = EMeasureType;
using std::numbers::pi;

namespace {

class MeasureTrianglesTest : public MeasuresTest
{
protected:
    /// A box of 40 by 30 by 20 mm with a hole of radius 6 through it and an edge along y rounded by 5, read
    /// back from a file of triangles.
    void readBack(const std::string& name)
    {
        asset = newAsset();
        ModelBuilder builder(asset);
        const std::string box = builder.box(40, 30, 20, {{}, L"Block", {}}, status)->id;
        const std::string drill =
            builder.cylinder(6, 30, {GkMatrix3d::translation({15, 15, -5}), L"Drill", {}}, status)->id;
        apply(CombineEdit{CombineEdit::Kind::Subtract, box, {drill}});
        apply(BlendEdit{BlendEdit::Kind::Fillet, {*findPath(*asset, edgeAt({40, 15, 20}), status)}, 5});
        ASSERT_TRUE(save(asset, scratch(name))) << Strings::narrow(status.toString());
        Document* document = open(scratch(name));
        ASSERT_NE(document, nullptr) << Strings::narrow(status.toString());
        asset = document->activeAsset();
        const Component* part = nullptr;
        for (const Component* component : componentsOf(*asset))
            part = component->body ? component : part;
        ASSERT_NE(part, nullptr);
        path = pathText(ObjectPath{part->id}, *asset);
        mesh = partsMesh(part->body->mesh());
    }

    void apply(const ModelEdit& edit)
    {
        EditRequest* request = EditRequest::make(asset, L"Edit", edit);
        EXPECT_TRUE(request->execute(asset, status)) << Strings::narrow(status.toString());
        request->destroy();
    }

    std::wstring edgeAt(const GkPoint3d& place)
    {
        for (int i = 1; i <= 14; ++i)
            if (position(L"Block/Edge" + std::to_wstring(i)).isEqualTo(place, {1e-3, 1e-3}))
                return L"Block/Edge" + std::to_wstring(i);
        ADD_FAILURE() << "no edge there";
        return {};
    }

    std::wstring part(const wchar_t* kind, size_t index) const
    {
        return path + L'/' + kind + std::to_wstring(index + 1);
    }
    /// The face or edge with its middle there.
    std::wstring at(const wchar_t* kind, size_t count, const GkPoint3d& place)
    {
        for (size_t i = 0; i < count; ++i)
            if (position(part(kind, i)).isEqualTo(place, {1e-2, 1e-2}))
                return part(kind, i);
        ADD_FAILURE() << "nothing at " << place.x << ' ' << place.y << ' ' << place.z;
        return part(kind, 0);
    }
    std::wstring face(const GkPoint3d& place) { return at(L"Face", mesh->faces.size(), place); }
    std::wstring edge(const GkPoint3d& place) { return at(L"Edge", mesh->edgeStarts.size() - 1, place); }

    std::wstring path;
    std::shared_ptr<const BodyMesh> mesh;
};

} // namespace

TEST_F(MeasureTrianglesTest, FacesEdgesAndVerticesAreThoseOfTheBodyThatTheyWere)
{
    for (const char* name : {"block.stl", "block.obj", "block.glb"}) {
        SCOPED_TRACE(name);
        readBack(name);
        ASSERT_NE(mesh, nullptr);
        // Six flat faces, the hole and the rounding; the rims of the hole have no vertices.
        EXPECT_EQ(mesh->faces.size(), 8u);
        EXPECT_EQ(mesh->edgeStarts.size() - 1, 17u);
        EXPECT_EQ(mesh->vertexPoints.size() / 3, 10u);

        const std::wstring left = face({0, 15, 10});
        expectNear(value({left}, Type::Area), 600);
        std::map<int, int> radii;
        for (size_t i = 0; i < mesh->faces.size(); ++i) {
            MeasureResult result;
            if (measure({part(L"Face", i)}, Type::Radius, result))
                ++radii[int(std::lround(result.value * 1000))];
        }
        EXPECT_EQ(radii, (std::map<int, int>{{5000, 1}, {6000, 1}}));
        std::map<int, int> rims;
        for (size_t i = 0; i + 1 < mesh->edgeStarts.size(); ++i) {
            MeasureResult result;
            if (measure({part(L"Edge", i)}, Type::Radius, result))
                ++rims[int(std::lround(result.value * 1000))];
        }
        EXPECT_EQ(rims, (std::map<int, int>{{5000, 2}, {6000, 2}}));
        expectNear(value({edge({0, 15, 0})}, Type::Length), 30);
        const double around = value({edge({15, 15, 0})}, Type::Length);
        EXPECT_LT(around, 2 * pi * 6);
        expectNear(around, 2 * pi * 6, 1e-2);

        expectNear(value({left}, Type::LoopLength), 100);
        expectNear(value({face({20.52, 15, 0})}, Type::LoopLength), 140);
        expectNear(value({face({15, 15, 10})}, Type::LoopLength), 2 * around);
        expectNear(value({left, face({40, 15, 7.5})}, Type::Distance), 40);
        expectNear(value({edge({0, 15, 0}), edge({40, 15, 0})}, Type::Distance), 40);
        // From the rim to the side, 9 mm away, as exactly as its corners allow.
        expectNear(value({edge({15, 15, 0}), left}, Type::Distance), 9, 2e-2);
        expectNear(value({left, face({19.872, 0, 9.94})}, Type::Angle), pi / 2);
        std::map<int, int> corners;
        for (size_t i = 0; i < mesh->vertexPoints.size() / 3; ++i)
            ++corners[int(std::lround(value({part(L"Vertex", i), left}, Type::Distance)))];
        EXPECT_EQ(corners, (std::map<int, int>{{0, 4}, {35, 2}, {40, 4}}));
        // Where there is no value, the reason is given.
        MeasureResult result;
        EXPECT_FALSE(measure({part(L"Face", mesh->faces.size() - 1)}, Type::Length, result));
        DocumentMgr::get()->close(asset->document());
    }
}

TEST_F(MeasureTrianglesTest, ASurfaceOfNoFormStaysOneAndIsMeasured)
{
    SKIP_WITHOUT_REAL_DATA();
    Document* document = open((TestSupport::realDataFolder() / "head.stl").wstring());
    ASSERT_NE(document, nullptr);
    asset = document->activeAsset();
    const Component* head = asset->components()->children[0].get();
    const std::shared_ptr<const BodyMesh> parts = partsMesh(head->body->mesh());
    EXPECT_EQ(partsMesh(head->body->mesh()), parts) << "kept";
    EXPECT_EQ(partsMeshIfMade(head->body->mesh()), parts);
    EXPECT_EQ(parts->triangles.size(), head->body->mesh()->triangles.size());
    EXPECT_LT(parts->faces.size(), 500u);
    path = pathText(ObjectPath{head->id}, *asset);
    double area = 0;
    for (size_t i = 0; i < parts->faces.size(); ++i)
        area += value({part(L"Face", i)}, Type::Area);
    expectNear(area, value({path}, Type::Area), 1e-5);
    DocumentMgr::get()->close(asset->document());
}
