// Files from outside this project, each part measured. Skipped, with a notice, if the folder of real data is
// missing.

#include "Server/Base/Strings.h"
#include "Server/Body/Body.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/Edit/EditRequest.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "Tests/Server/DataModel/Measure/Measures.h"
#include "Tests/Support/RealData.h"

#include <cmath>

using namespace Vs;
using Type = EMeasureType;

class MeasureRealTest : public MeasuresTest
{
protected:
    void close() { DocumentMgr::get()->close(asset->document()); }
};

TEST_F(MeasureRealTest, EveryPartOfEveryBodyHasAnAnswerOrAReason)
{
    SKIP_WITHOUT_REAL_DATA();
    for (const char* file : {"as1-oc-214.stp", "screw.step", "nist_ctc_02_asme1_ap242-e2.stp", "bearing.iges",
                             "mal_vis.brep", "example_45_faces.iges", "curve_geom_plate.igs"}) {
        Document* document = open((TestSupport::realDataFolder() / file).wstring());
        if (!document)
            continue;
        asset = document->activeAsset();
        size_t answers = 0;
        for (const Component* component : componentsOf(*asset)) {
            if (!component->body)
                continue;
            const auto mesh = component->body->mesh();
            double area = 0;
            const auto ask = [&](ObjectPath::Leaf leaf, size_t count, std::initializer_list<Type> types) {
                for (uint32_t i = 0; i < count; ++i)
                    for (const Type type : types) {
                        MeasureResult result;
                        if (!measure({pathText(ObjectPath{component->id, leaf, i}, *asset)}, type, result))
                            continue;
                        ++answers;
                        area += type == Type::Area ? result.value : 0;
                    }
            };
            ask(ObjectPath::Leaf::Face, mesh->faces.size(),
                {Type::Area, Type::Radius, Type::LoopLength, Type::PositionZ});
            ask(ObjectPath::Leaf::Edge, mesh->edgeStarts.size() - 1,
                {Type::Length, Type::Radius, Type::PositionX});
            MeasureResult whole;
            if (measure({pathText(ObjectPath{component->id, ObjectPath::Leaf::Body}, *asset)}, Type::Area,
                        whole) &&
                std::string(file) != "nist_ctc_02_asme1_ap242-e2.stp") {
                SCOPED_TRACE(file);
                expectNear(area, whole.value, 3e-6);
            }
        }
        EXPECT_GT(answers, 10u) << file;
        close();
    }
}

namespace {

/// Whether the normals at a face's triangles differ.
bool isBent(const BodyMesh& mesh, const BodyMesh::Face& face)
{
    const auto normalAt = [&](size_t corner) {
        const float* n = &mesh.normals[size_t(mesh.triangles[corner]) * 3];
        return GkVector3d(n[0], n[1], n[2]);
    };
    const size_t first = size_t(face.firstTriangle) * 3;
    for (size_t i = first; i < first + size_t(face.triangleCount) * 3; ++i)
        if (normalAt(i).dotProduct(normalAt(first)) < 0.999)
            return true;
    return false;
}

} // namespace

TEST_F(MeasureRealTest, EveryRoundFaceHasARadiusThoughItCameAsASpline)
{
    SKIP_WITHOUT_REAL_DATA();
    Document* document = open((TestSupport::realDataFolder() / "as1-oc-214.stp").wstring());
    ASSERT_NE(document, nullptr);
    asset = document->activeAsset();
    size_t bent = 0;
    for (const Component* component : componentsOf(*asset)) {
        const auto mesh = component->body ? component->body->mesh() : nullptr;
        for (uint32_t i = 0; mesh && i < mesh->faces.size(); ++i) {
            const std::wstring face = pathText(ObjectPath{component->id, ObjectPath::Leaf::Face, i}, *asset);
            MeasureResult result;
            EXPECT_EQ(measure({face}, Type::Radius, result), isBent(*mesh, mesh->faces[i]))
                << Strings::narrow(face);
            bent += isBent(*mesh, mesh->faces[i]);
        }
    }
    EXPECT_EQ(bent, 70u);
    close();
}

TEST_F(MeasureRealTest, TrianglesHaveAnAreaButNoVolumeWhereTheyLeaveAHole)
{
    const std::string corner[] = {"0 0 0", "1 0 0", "0 1 0", "0 0 1"};
    const int sides[][3] = {{0, 2, 1}, {0, 1, 3}, {0, 3, 2}, {1, 2, 3}};
    for (const size_t count : {size_t(4), size_t(3)}) {
        std::string text = "solid s\n";
        for (size_t i = 0; i < count; ++i) {
            text += "facet normal 0 0 0\nouter loop\n";
            for (const int k : sides[i])
                text += "vertex " + corner[k] + "\n";
            text += "endloop\nendfacet\n";
        }
        Document* document = open(write("s" + std::to_string(count) + ".stl", text + "endsolid s\n"));
        ASSERT_NE(document, nullptr) << Strings::narrow(status.toString());
        asset = document->activeAsset();
        const std::wstring path = pathText(ObjectPath{asset->components()->children[0]->id}, *asset);
        MeasureResult result;
        EXPECT_GT(value({path}, Type::Area), 1.49);
        ASSERT_EQ(measure({path}, Type::Volume, result), count == 4);
        if (count == 4)
            expectNear(result.value, 1.0 / 6);
        else
            EXPECT_NE(why.find("is open"), std::string::npos) << why;
        EditRequest* copy = EditRequest::make(
            asset, L"Copy",
            CopyEdit{{asset->components()->children[0]->id}, {GkMatrix3d::translation({4, 0, 3})}});
        EXPECT_TRUE(copy->execute(asset, status));
        const std::wstring other = pathText(ObjectPath{copy->added()[0]}, *asset);
        copy->destroy();
        const std::wstring named = pathText(ObjectPath{asset->components()->children[0]->id}, *asset);
        // From the corner at (1, 0, 0), or its edge, to the copy's corner at (4, 0, 3).
        expectNear(value({named, other}, Type::Distance), std::sqrt(18.0));
    }
}
