// What others state about files and shapes, read from their table, against what the manager measures.
// Skipped, with a notice, if the folder of real data is missing. Prints both as a table.

#include "Server/Base/Strings.h"
#include "Server/Body/Body.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/Edit/EditRequest.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "Tests/Server/DataModel/KernelShapes.h"
#include "Tests/Server/DataModel/Measure/Measures.h"
#include "Tests/Support/RealData.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>

#include <cmath>
#include <fstream>
#include <iostream>
#include <map>
#include <numbers>
#include <regex>

using namespace Vs;
using std::numbers::pi;

using Type = EMeasureType;

namespace {

/// The numbers in the column "expected", by the row's id.
std::map<std::string, std::vector<double>> readReferences()
{
    std::map<std::string, std::vector<double>> rows;
    std::ifstream file((TestSupport::realDataFolder() / "reference.tsv").string());
    const std::regex number(R"([-+]?\d+(?:\.\d+)?(?:[eE][-+]?\d+)?)");
    for (std::string line; std::getline(file, line);) {
        std::vector<std::string> columns;
        boost::split(columns, line, boost::is_any_of("\t"));
        if (columns.size() < 4)
            continue;
        std::vector<double>& values = rows[columns[0]];
        for (std::sregex_iterator each(columns[3].begin(), columns[3].end(), number), end; each != end;
             ++each)
            values.push_back(std::stod(each->str()));
    }
    return rows;
}

constexpr double kInch = 25.4;
/// The tolerance of an area that is stated without that of the free faces beside the solid.
constexpr double kNotStated = -1;

} // namespace

class MeasureReferenceTest : public MeasuresTest
{
protected:
    void SetUp() override
    {
        SKIP_WITHOUT_REAL_DATA();
        m_references = readReferences();
    }

    /// Compares with the row's number of that index, which is given in units of `unit`; its last digits are
    /// as accurate as the row says.
    void expectReference(const std::string& id, const char* what, size_t index, double ours,
                         double tolerance = 1e-6, double unit = 1)
    {
        ASSERT_LT(index, m_references[id].size()) << id << " is not in the table";
        expectValue(id, what, m_references[id][index] * unit, ours, tolerance);
    }
    void expectValue(const std::string& id, const char* what, double reference, double ours, double tolerance)
    {
        SCOPED_TRACE(id + " " + what);
        expectNear(ours, reference, tolerance);
        std::cout << "| " << id << " " << what << " | " << std::setprecision(15) << reference << " | " << ours
                  << " | " << std::setprecision(2) << ours / reference - 1 << " |\n";
    }

    void openFile(const std::wstring& path)
    {
        const Document* document = open(path);
        ASSERT_NE(document, nullptr) << Strings::narrow(status.toString());
        asset = document->activeAsset();
    }
    void openReal(const std::string& name) { openFile((TestSupport::realDataFolder() / name).wstring()); }
    void openShape(void (*write)(const std::string&))
    {
        write(Strings::narrow(scratch("shape.brep")));
        openFile(scratch("shape.brep"));
    }
    void close() { DocumentMgr::get()->close(asset->document()); }

    /// The sum over the parts at the top, except those that have no such value.
    double whole(Type type)
    {
        double sum = 0;
        for (const auto& top : asset->components()->children) {
            MeasureResult result;
            if (measure({pathText(ObjectPath{top->id}, *asset)}, type, result))
                sum += result.value;
            else
                EXPECT_NE(why.find("is open"), std::string::npos) << why;
        }
        return sum;
    }

    /// The id of a new part.
    std::string add(const Component* component)
    {
        EXPECT_NE(component, nullptr) << Strings::narrow(status.toString());
        return component ? component->id : std::string();
    }
    std::string box(double dx, double dy, double dz, const GkVector3d& at)
    {
        return add(ModelBuilder(asset).box(dx, dy, dz, {GkMatrix3d::translation(at), {}, {}}, status));
    }
    void edit(ModelEdit edit)
    {
        Request* request = EditRequest::make(asset, L"Edit", std::move(edit));
        EXPECT_TRUE(request->execute(asset, status)) << Strings::narrow(status.toString());
        request->destroy();
    }
    void combine(CombineEdit::Kind kind, const std::string& target, std::vector<std::string> tools)
    {
        edit(CombineEdit{kind, target, std::move(tools)});
    }

private:
    std::map<std::string, std::vector<double>> m_references;
};

TEST_F(MeasureReferenceTest, FilesMeasureWhatTheirAuthorsState)
{
    const struct
    {
        const char* id;
        const char* file;
        double volumeTolerance, areaTolerance;
        double unit = 1;
        double besideSolid = 0; ///< The area of the free faces, which the reference omits.
    } files[] = {
        {"R01", "sg1-c5-214.stp", 1e-9, 1e-9},
        {"R02", "io1-pe-203.step", 1e-7, 1e-7},
        {"R03", "as1-tu-203.stp", 1e-7, 1e-7},
        {"R05", "dm1-id-214_inch.stp", 1e-6, 1e-6, kInch},
        {"R06", "nist_ctc_01_asme1_ap242-e1.stp", 2e-7, 2e-7},
        {"R07", "nist_ctc_02_asme1_ap242-e2.stp", 2e-6, 2e-6, 1, 5674.50173054656 + 4417.86466911065},
        {"R11", "nist_ftc_07_asme1_ap242-e2.stp", 5e-6, kNotStated, kInch},
        {"R13", "cube_1m_unit_in.step", 1e-9, 1e-9},
        {"R13", "cube_1m_unit_m.step", 1e-9, 1e-9},
        {"R13", "cube_1m_unit_mm.step", 1e-9, 1e-9},
    };
    for (const auto& each : files) {
        SCOPED_TRACE(each.file);
        ASSERT_NO_FATAL_FAILURE(openReal(each.file));
        expectReference(each.id, "volume", 0, whole(Type::Volume), each.volumeTolerance,
                        each.unit * each.unit * each.unit);
        if (each.areaTolerance != kNotStated)
            expectReference(each.id, "area", 1, whole(Type::Area) - each.besideSolid, each.areaTolerance,
                            each.unit * each.unit);
        close();
    }
    for (const auto& [file, index] :
         {std::pair{"Torus_1.brep", 0}, {"Cylinder_1.brep", 1}, {"Cone_1.brep", 2}}) {
        ASSERT_NO_FATAL_FAILURE(openReal(file));
        expectReference("R36", file, size_t(index), whole(Type::Volume), 1e-7);
        close();
    }
}

TEST_F(MeasureReferenceTest, FacesBesideASolidAreMeasuredAlone)
{
    ASSERT_NO_FATAL_FAILURE(openReal("nist_ctc_02_asme1_ap242-e2.stp"));
    std::vector<double> areas;
    for (const Component* component : componentsOf(*asset))
        for (uint32_t i = 0; component->body && i < component->body->mesh()->faces.size(); ++i)
            areas.push_back(
                value({pathText(ObjectPath{component->id, ObjectPath::Leaf::Face, i}, *asset)}, Type::Area));
    for (const double stated : {5674.50173054656, 4417.86466911065}) {
        const auto nearest = std::min_element(areas.begin(), areas.end(), [&](double a, double b) {
            return std::abs(a - stated) < std::abs(b - stated);
        });
        ASSERT_NE(nearest, areas.end());
        expectReference("R08", "area of a free face", stated > 5000 ? 0 : 1, *nearest);
    }
}

TEST_F(MeasureReferenceTest, CombinedBodiesMeasureWhatOthersFound)
{
    asset = newAsset();
    const std::string ball = add(ModelBuilder(asset).sphere(1, {}, status));
    const GkMatrix3d turned = GkMatrix3d::rotation(0.7, {0.3, -0.5, 0.8});
    combine(CombineEdit::Kind::Intersect, ball,
            {add(ModelBuilder(asset).box(1, 1, 1, {turned, {}, {}}, status))});
    expectReference("R14", "area", 0, whole(Type::Area), 1e-5);
    close();

    asset = newAsset();
    const std::string cube = box(1, 1, 1, {0, 0, 0});
    combine(CombineEdit::Kind::Join, cube, {box(0.5, 0.5, 0.5, {-0.5, -0.5, -0.5})});
    expectReference("R15", "area of boxes that touch in a corner", 0, whole(Type::Area), 1e-9);
    close();

    asset = newAsset();
    const std::string bar = box(40, 10, 10, {0, 0, 0});
    combine(CombineEdit::Kind::Join, bar,
            {box(40, 10, 10, {0, 30, 0}), box(10, 40, 10, {0, 0, 0}), box(10, 40, 10, {30, 0, 0})});
    expectReference("R18", "area", 0, whole(Type::Area), 1e-9);
    expectReference("R18", "volume", 1, whole(Type::Volume), 1e-9);
    close();

    asset = newAsset();
    const std::string slot = box(3, 1, 1, {-1.5, -0.5, 0});
    const auto post = [&](double x) {
        return add(
            ModelBuilder(asset).cylinder(0.5, 1, {GkMatrix3d::translation({x, 0, 0}), {}, {}}, status));
    };
    combine(CombineEdit::Kind::Join, slot, {post(-1.5), post(1.5)});
    expectReference("R34", "volume of the slot", 0, whole(Type::Volume), 1e-9);
    combine(CombineEdit::Kind::Subtract, box(5, 5, 1, {-2.5, -2.5, 0}), {slot});
    expectReference("R34", "volume of the plate", 1, whole(Type::Volume), 1e-9);
}

TEST_F(MeasureReferenceTest, RoundedEdgesMeasureWhatOthersFound)
{
    asset = newAsset();
    const std::string cube = box(100, 100, 100, {0, 0, 0});
    BlendEdit rounded{BlendEdit::Kind::Fillet, {}, 10};
    for (uint32_t i = 0; i < 12; ++i) {
        const ObjectPath edge{cube, ObjectPath::Leaf::Edge, i};
        const GkPoint3d middle = position(pathText(edge, *asset));
        // Those that meet at the origin.
        if (middle.x + middle.y + middle.z < 60)
            rounded.edges.push_back(edge);
    }
    ASSERT_EQ(rounded.edges.size(), 3u);
    edit(rounded);
    expectReference("R17", "area", 0, whole(Type::Area), 1e-5);
}

TEST_F(MeasureReferenceTest, DistancesAndAnglesAreThoseThatOthersFound)
{
    asset = newAsset();
    const auto ball = [&](const wchar_t* name, const GkVector3d& at) {
        add(ModelBuilder(asset).sphere(1, {GkMatrix3d::translation(at), name, {}}, status));
    };
    ball(L"Left", {-5, 0, 0});
    ball(L"Right", {5, 0, 0});
    ball(L"Above", {-5, 0, 5});
    expectReference("R26", "distance", 0, value({L"Left", L"Right"}, Type::Distance));
    expectReference("R26", "distance of the third", 1, value({L"Left", L"Above"}, Type::Distance));
    ball(L"Origin", {0, 0, 0});
    ball(L"Beside", {0, 2.1, 0});
    MeasureResult result;
    ASSERT_TRUE(measure({L"Beside", L"Origin"}, Type::Distance, result)) << why;
    expectReference("R27", "distance", 0, result.value, 1e-5);
    EXPECT_TRUE(result.point1.isEqualTo({0, 1.1, 0}, {1e-5, 1e-5}));
    EXPECT_TRUE(result.point2.isEqualTo({0, 1, 0}, {1e-5, 1e-5}));
    close();

    ASSERT_NO_FATAL_FAILURE(openShape(&KernelShapes::writePlanes));
    const std::wstring part = pathText(ObjectPath{asset->components()->children[0]->id}, *asset);
    expectReference("R25", "distance", 0, value({part + L"/Face1", part + L"/Face2"}, Type::Distance), 1e-7);
    EXPECT_FALSE(measure({part + L"/Face1", part + L"/Face2"}, Type::Angle, result));
    close();

    ASSERT_NO_FATAL_FAILURE(openShape(&KernelShapes::writeEdges));
    // The face's four edges come first.
    const std::wstring edges = pathText(ObjectPath{asset->components()->children[0]->id}, *asset) + L"/Edge";
    EXPECT_FALSE(measure({edges + L"1", edges + L"3"}, Type::Angle, result)) << "R30, parallel lines";
    expectReference("R29", "angle of lines", 0, value({edges + L"5", edges + L"6"}, Type::Angle), 1e-12,
                    pi / 180);
    expectValue("R29", "angle of straight splines", pi / 4, value({edges + L"7", edges + L"8"}, Type::Angle),
                1e-9);
}

TEST_F(MeasureReferenceTest, ShapesThatTheKernelMakesHaveTheirClosedForms)
{
    ASSERT_NO_FATAL_FAILURE(openShape(&KernelShapes::writeHollowTorus));
    expectValue("R33", "volume of a hollow torus", 2 * pi * pi * 10 * (16 - 9), whole(Type::Volume), 1e-7);
}
