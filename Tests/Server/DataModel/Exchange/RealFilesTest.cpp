// Files from outside this project, with quantities stated by others. Skipped, with a notice, if the folder of
// real data is missing.

#include "Server/Base/Strings.h"
#include "Server/Body/Body.h"
#include "Server/Body/BodyProperties.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/DocumentOpener.h"
#include "Tests/Server/DataModel/Fixture.h"
#include "Tests/Support/RealData.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <set>
#include <utility>

using namespace Vs;

namespace {

constexpr double kInch = 25.4;

struct Stated
{
    const char* file;
    double volume; // mm³
    double area;   // mm²
    double tolerance;
};

const Stated kStated[] = {
    {"sg1-c5-214.stp", 355877.882829, 46607.8737273, 1e-7},
    {"io1-pe-203.step", 78179.57908327, 21106.05791217, 1e-6},
    {"as1-tu-203.stp", 764518.031066584, 141079.335225521, 1e-6},
    {"dm1-id-214_inch.stp", 6.661344319766239 * kInch* kInch* kInch, 49.354253704974006 * kInch* kInch, 2e-6},
    {"nist_ctc_02_asme1_ap242-e2.stp", 47106788.0321802, 2480624.4791306, 2e-6},
    {"cube_1m_unit_m.step", 1e9, 6e6, 1e-9},
    {"cube_1m_unit_in.step", 1e9, 6e6, 1e-9},
    {"cube_1m_unit_mm.step", 1e9, 6e6, 1e-9},
    {"Torus_1.brep", 59217626.4, -1, 1e-6},
    {"Cone_1.brep", 3141592.65, -1, 1e-6},
};

size_t facesOf(const Asset& asset)
{
    size_t faces = 0;
    for (const Component* component : componentsOf(asset))
        if (component->body)
            faces += component->body->mesh()->faces.size();
    return faces;
}

} // namespace

class RealFilesTest : public DataModelTest
{
protected:
    Document* openReal(const std::string& name)
    {
        return open((TestSupport::realDataFolder() / name).wstring());
    }

    /// Opens a file that can't be read; checks that there is one message, which names it.
    void expectOneMessage(const std::wstring& path)
    {
        EXPECT_EQ(open(path), nullptr);
        const std::string text = Strings::narrow(status.toString());
        EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 0) << text;
        EXPECT_NE(text.find(boost::filesystem::path(path).filename().string()), std::string::npos) << text;
    }
};

TEST_F(RealFilesTest, AStepFileThatRefersToWhatIsNotInItOpensWithTheRest)
{
    SKIP_WITHOUT_REAL_DATA();
    const std::string whole = contentOf(TestSupport::realDataFolder() / "screw.step");
    Document* document = open(write("whole.step", whole));
    ASSERT_NE(document, nullptr) << Strings::narrow(status.toString());
    const size_t faces = facesOf(*document->activeAsset());
    ASSERT_GE(faces, 10u);
    for (const auto& [lost, found] :
         {std::pair{"EDGE_LOOP('',(#17,", "EDGE_LOOP('',(#9999999,"},
          std::pair{"EDGE_LOOP('',(#260,", "EDGE_LOOP('',(#9999999,"},
          std::pair{"CLOSED_SHELL('',(#14,", "CLOSED_SHELL('',(#9999999,"},
          std::pair{"ADVANCED_FACE('',(#258),#272,", "ADVANCED_FACE('',(#258),#9999999,"}}) {
        SCOPED_TRACE(lost);
        std::string damaged = whole;
        ASSERT_NE(damaged.find(lost), std::string::npos);
        damaged.replace(damaged.find(lost), std::strlen(lost), found);
        document = open(write("damaged.step", damaged));
        ASSERT_NE(document, nullptr) << Strings::narrow(status.toString());
        EXPECT_GE(facesOf(*document->activeAsset()) * 10, faces * 9);
    }
}

TEST_F(RealFilesTest, VolumesAndAreasAreThoseThatTheAuthorsState)
{
    SKIP_WITHOUT_REAL_DATA();
    for (const Stated& stated : kStated) {
        Document* document = openReal(stated.file);
        ASSERT_NE(document, nullptr) << Strings::narrow(status.toString());
        EXPECT_NEAR(volumeOf(*document->activeAsset()) / stated.volume, 1, stated.tolerance) << stated.file;
        if (stated.area > 0) {
            // The stated area is that of the solids.
            double area = 0;
            for (const Component* component : componentsOf(*document->activeAsset())) {
                const auto properties =
                    component->body ? bodyProperties(*component->body, status) : std::nullopt;
                area += properties && properties->solids > 0 ? properties->area : 0;
            }
            EXPECT_NEAR(area / stated.area, 1, stated.tolerance) << stated.file;
        }
        DocumentMgr::get()->close(document);
    }
}

TEST_F(RealFilesTest, FreeFacesBesideASolidAreCountedApart)
{
    SKIP_WITHOUT_REAL_DATA();
    Document* document = openReal("nist_ctc_02_asme1_ap242-e2.stp");
    ASSERT_NE(document, nullptr);
    double freeArea = 0;
    int solids = 0;
    for (const Component* component : componentsOf(*document->activeAsset()))
        if (component->body) {
            const auto properties = bodyProperties(*component->body, status);
            // Free faces in a part without solids are that part's area.
            freeArea += properties->solids == 0 ? properties->area : properties->freeArea;
            solids += properties->solids;
        }
    EXPECT_EQ(solids, 1);
    EXPECT_NEAR(freeArea, 5674.50173054656 + 4417.86466911065, 0.02);
}

TEST_F(RealFilesTest, AnAssemblyKeepsItsStructureAndSharesItsBodies)
{
    SKIP_WITHOUT_REAL_DATA();
    Document* document = openReal("as1-oc-214.stp");
    ASSERT_NE(document, nullptr) << Strings::narrow(status.toString());
    std::set<const Body*> bodies;
    std::set<std::wstring> names;
    std::set<std::string> ids;
    size_t occurrences = 0;
    for (const Component* component : componentsOf(*document->activeAsset())) {
        names.insert(component->name);
        EXPECT_TRUE(ids.insert(component->id).second);
        EXPECT_EQ(document->activeAsset()->findComponent(component->id), component);
        if (component->body) {
            ++occurrences;
            bodies.insert(component->body.get());
        }
    }
    EXPECT_EQ(occurrences, 18u);
    EXPECT_EQ(bodies.size(), 5u);
    for (const wchar_t* name : {L"nut", L"bolt", L"plate", L"rod"})
        EXPECT_TRUE(std::any_of(bodies.begin(), bodies.end(), [&](const Body* body) {
            return body->name() == name;
        })) << name;

    ASSERT_TRUE(save(document->activeAsset(), scratch("again.stp")));
    Document* again = open(scratch("again.stp"));
    ASSERT_NE(again, nullptr);
    size_t sameOccurrences = 0;
    for (const Component* component : componentsOf(*again->activeAsset()))
        sameOccurrences += component->body ? 1u : 0u;
    EXPECT_EQ(sameOccurrences, 18u);
    EXPECT_NEAR(volumeOf(*again->activeAsset()) / volumeOf(*document->activeAsset()), 1, 1e-6);
}

TEST_F(RealFilesTest, EveryDamagedFileOpensWithWhatIsSoundOrIsRefusedWithOneMessage)
{
    SKIP_WITHOUT_REAL_DATA();
    const std::vector<boost::filesystem::path> damaged = TestSupport::malformedFiles();
    std::vector<boost::filesystem::path> files = damaged;
    for (const char* name : {"dodgy_U008_segv.stp", "dodgy_M018.stp", "stl_empty_bin.stl",
                             "stl_empty_ascii.stl", "curve_geom_plate.igs"})
        files.push_back(TestSupport::realDataFolder() / name);
    DocumentOpener opener(files);
    opener.open(status, 1);
    EXPECT_EQ(opener.documentsOpened(), damaged.size());
    for (const auto& file : files) {
        const std::wstring name = L"/" + file.filename().wstring() + L"\" ";
        const auto names = [&](const std::wstring& text) { return text.find(name) != text.npos; };
        const bool opens = std::find(damaged.begin(), damaged.end(), file) != damaged.end();
        const auto told = std::count_if(status.warnings().begin(), status.warnings().end(), names);
        EXPECT_EQ(told > 0, opens) << file;
        const std::string text = Strings::narrow(status.toString());
        EXPECT_EQ(status.matchingError(Strings::narrow(name)), !opens) << text;
    }
    expectOneMessage((TestSupport::realDataFolder() / "nist_ftc_08_asme1_ap242-e1-tg.stp").wstring());
    EXPECT_TRUE(status.matchingError("tessellated"));
}

TEST_F(RealFilesTest, OddButUsableFilesOpen)
{
    SKIP_WITHOUT_REAL_DATA();
    const std::pair<const char*, size_t> files[] = {
        {"busted.stl", 3878},         {"two_objects_mixed_case.stl", 24},  {"head.stl", 117694},
        {"planes_100faces.stp", 200}, {"submarine_ap203_slowmesh.stp", 0}, {"mal_vis.brep", 0},
        {"example_45_faces.iges", 0}};
    for (const auto& [name, triangles] : files) {
        Document* document = openReal(name);
        ASSERT_NE(document, nullptr) << Strings::narrow(status.toString());
        const size_t count = trianglesOf(*document->activeAsset());
        EXPECT_TRUE(triangles == 0 ? count > 0 && count < 200'000 : count == triangles)
            << name << ": " << count;
    }
}

TEST_F(RealFilesTest, ColoursComeFromTheFile)
{
    SKIP_WITHOUT_REAL_DATA();
    Document* document = openReal("red_cube_blue_cylinder.step");
    ASSERT_NE(document, nullptr);
    bool red = false, blue = false;
    for (const Component* component : componentsOf(*document->activeAsset())) {
        std::vector<Colour> colours;
        if (component->colour)
            colours.push_back(*component->colour);
        if (component->body) {
            colours.push_back(component->body->colour());
            const auto mesh = component->body->mesh();
            colours.insert(colours.end(), mesh->colours.begin(), mesh->colours.end());
        }
        for (const Colour& colour : colours) {
            red |= colour.r > 0.6f && colour.g < 0.15f && colour.b < 0.1f;
            blue |= colour.b > 0.4f && colour.r < 0.1f && colour.g < 0.15f;
        }
    }
    EXPECT_TRUE(red && blue);
}
