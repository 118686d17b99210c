// Real files, exported to another format and read again: everything that the format can hold is still there.

#include "Server/Base/Strings.h"
#include "Server/Body/Body.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/DocumentOpener.h"
#include "Tests/Server/DataModel/Fixture.h"
#include "Tests/Support/RealData.h"

#include <cmath>
#include <map>
#include <regex>
#include <set>

using namespace Vs;

namespace {

/// How often each name occurs among the parts.
std::map<std::wstring, int> partNames(const Asset& asset)
{
    std::map<std::wstring, int> names;
    for (const Component* component : componentsOf(asset))
        if (component->body)
            ++names[component->body->name()];
    return names;
}

size_t bodies(const Asset& asset)
{
    std::set<const Body*> found;
    for (const Component* component : componentsOf(asset))
        if (component->body)
            found.insert(component->body.get());
    return found.size();
}

/// The depth of each part in the tree, so that a flattened assembly is noticed.
std::multiset<int> depths(const Component& component, int depth = 0)
{
    std::multiset<int> found;
    if (component.body)
        found.insert(depth);
    for (const auto& child : component.children)
        found.merge(depths(*child, depth + 1));
    return found;
}

/// The displayed colours, with the number of triangles in each, to a hundredth.
std::map<std::array<int, 4>, size_t> colours(const Asset& asset)
{
    std::map<std::array<int, 4>, size_t> found;
    const auto visit = [&](const auto& self, const Component& component,
                           const std::optional<Colour>& inherited) -> void {
        const std::optional<Colour> own = component.colour ? component.colour : inherited;
        if (component.body) {
            const auto mesh = component.body->mesh();
            for (const BodyMesh::Face& face : mesh->faces) {
                const Colour c = face.colour >= 0 ? mesh->colours[size_t(face.colour)]
                                                  : own.value_or(component.body->colour());
                found[{int(std::lround(c.r * 100)), int(std::lround(c.g * 100)), int(std::lround(c.b * 100)),
                       int(std::lround(c.a * 100))}] += face.triangleCount;
            }
        }
        for (const auto& child : component.children)
            self(self, *child, own);
    };
    visit(visit, *asset.components(), std::nullopt);
    return found;
}

std::multiset<std::string> layersIn(const std::string& step)
{
    static const std::regex layer("PRESENTATION_LAYER_ASSIGNMENT\\s*\\(\\s*'([^']*)'");
    std::multiset<std::string> names;
    for (std::sregex_iterator each(step.begin(), step.end(), layer), end; each != end; ++each)
        names.insert((*each)[1]);
    return names;
}

} // namespace

class RoundTripTest : public DataModelTest
{
protected:
    Document* openReal(const std::string& name)
    {
        Document* document = open((TestSupport::realDataFolder() / name).wstring());
        EXPECT_NE(document, nullptr) << Strings::narrow(status.toString());
        return document;
    }

    Document* throughFile(Document* document, const std::string& name, const SetOptions& set = {})
    {
        EXPECT_TRUE(save(document->activeAsset(), scratch(name), set)) << Strings::narrow(status.toString());
        Document* again = open(scratch(name));
        EXPECT_NE(again, nullptr) << Strings::narrow(status.toString());
        return again;
    }
};

TEST_F(RoundTripTest, StepKeepsTheTreeItsSharedPartsColoursAndSizes)
{
    SKIP_WITHOUT_REAL_DATA();
    for (const char* name :
         {"as1-oc-214.stp", "as1-tu-203.stp", "dm1-id-214_inch.stp", "red_cube_blue_cylinder.step",
          "Motor-c.brep", "nist_ctc_02_asme1_ap242-e2.stp"}) {
        SCOPED_TRACE(name);
        Document* document = openReal(name);
        ASSERT_NE(document, nullptr);
        Document* again = throughFile(document, "again.stp");
        ASSERT_NE(again, nullptr);
        const Asset &before = *document->activeAsset(), &after = *again->activeAsset();
        EXPECT_EQ(partNames(after), partNames(before));
        EXPECT_EQ(bodies(after), bodies(before));
        EXPECT_EQ(depths(*after.components()), depths(*before.components()));
        EXPECT_NEAR(volumeOf(after) / volumeOf(before), 1, 1e-6);
        EXPECT_NEAR(areaOf(after) / areaOf(before), 1, 1e-6);
        EXPECT_EQ(colours(after).size(), colours(before).size());
        DocumentMgr::get()->close(again);
        DocumentMgr::get()->close(document);
    }
}

TEST_F(RoundTripTest, StepKeepsLayers)
{
    SKIP_WITHOUT_REAL_DATA();
    const std::string name = "as1-oc-214.stp";
    const auto before = layersIn(contentOf((TestSupport::realDataFolder() / name).wstring()));
    ASSERT_FALSE(before.empty());
    Document* document = openReal(name);
    ASSERT_TRUE(document && save(document->activeAsset(), scratch("layers.stp")));
    const auto after = layersIn(contentOf(scratch("layers.stp")));
    EXPECT_EQ(std::set<std::string>(after.begin(), after.end()),
              std::set<std::string>(before.begin(), before.end()));
}

TEST_F(RoundTripTest, LevelsOfAnIgesFileAreReadAsLayers)
{
    Asset* asset = newAsset();
    ModelBuilder(asset).box(1, 2, 3, {}, status);
    ASSERT_TRUE(save(asset, scratch("plain.igs"))) << Strings::narrow(status.toString());
    std::string iges = contentOf(scratch("plain.igs"));
    // The fifth field of the first of an entity's two lines; 186 is the solid that the part becomes.
    constexpr size_t kLine = 81, kLetter = 72, kLevelEnd = 40;
    size_t line = 0;
    while (line + kLine <= iges.size() &&
           (iges[line + kLetter] != 'D' || iges.compare(line, 8, "     186") != 0))
        line += kLine;
    ASSERT_LT(line + kLine, iges.size());
    iges[line + kLevelEnd - 1] = '7';
    Document* document = open(write("levels.igs", iges));
    ASSERT_NE(document, nullptr) << Strings::narrow(status.toString());
    ASSERT_TRUE(save(document->activeAsset(), scratch("levels.stp")));
    EXPECT_EQ(layersIn(contentOf(scratch("levels.stp"))), std::multiset<std::string>{"7"});
}

TEST_F(RoundTripTest, BrepAndIgesKeepShapes)
{
    SKIP_WITHOUT_REAL_DATA();
    // Solids, an assembly, and faces that belong to none.
    for (const char* file : {"as1-oc-214.stp", "mayo_332.stp", "planes_100faces.stp", "example_45_faces.iges",
                             "red_cube_blue_cylinder.step"}) {
        Document* document = openReal(file);
        ASSERT_NE(document, nullptr);
        const double area = areaOf(*document->activeAsset()), volume = volumeOf(*document->activeAsset());
        for (const char* name : {"out.brep", "out.igs"}) {
            SCOPED_TRACE(std::string(file) + " as " + name);
            Document* again = throughFile(document, name);
            ASSERT_NE(again, nullptr);
            EXPECT_NEAR(areaOf(*again->activeAsset()), area, 1e-5 * area);
            EXPECT_NEAR(volumeOf(*again->activeAsset()), volume, 1e-5 * volume);
            const size_t shown = colours(*document->activeAsset()).size();
            EXPECT_EQ(colours(*again->activeAsset()).size(), std::string(name) == "out.igs" ? shown : 1);
            DocumentMgr::get()->close(again);
        }
        DocumentMgr::get()->close(document);
    }
}

TEST_F(RoundTripTest, GltfAndObjKeepTrianglesNamesAndColours)
{
    SKIP_WITHOUT_REAL_DATA();
    for (const char* name : {"as1-oc-214.stp", "asm_board_pic_ap214.step", "head.stl"}) {
        Document* document = openReal(name);
        ASSERT_NE(document, nullptr);
        const Asset& before = *document->activeAsset();
        for (const char* form : {"out.glb", "out.gltf", "out.obj"}) {
            SCOPED_TRACE(std::string(name) + " as " + form);
            Document* again = throughFile(document, form);
            ASSERT_NE(again, nullptr);
            const Asset& after = *again->activeAsset();
            EXPECT_EQ(trianglesOf(after), trianglesOf(before));
            EXPECT_EQ(colours(after).size(), colours(before).size());
            if (std::string(form) == "out.obj") {
                EXPECT_EQ(bodies(after), depths(*before.components()).size());
            } else {
                EXPECT_EQ(partNames(after), partNames(before));
                EXPECT_EQ(bodies(after), bodies(before));
                EXPECT_EQ(depths(*after.components()), depths(*before.components()));
                EXPECT_EQ(colours(after), colours(before));
            }
            DocumentMgr::get()->close(again);
        }
        DocumentMgr::get()->close(document);
    }
}

TEST_F(RoundTripTest, PartsThatAreCombinedStayInTheirPlacesAndColours)
{
    SKIP_WITHOUT_REAL_DATA();
    Document* document = openReal("as1-oc-214.stp");
    ASSERT_NE(document, nullptr);
    const Asset& before = *document->activeAsset();
    for (const char* name : {"one.stp", "one.glb", "one.obj"}) {
        SCOPED_TRACE(name);
        const bool exact = std::string(name) == "one.stp";
        Document* again = throughFile(document, name, [](auto& options) { options.combineSolids() = true; });
        ASSERT_NE(again, nullptr);
        const Asset& after = *again->activeAsset();
        EXPECT_EQ(bodies(after), 1u);
        EXPECT_EQ(partNames(after), (std::map<std::wstring, int>{{L"one", 1}}));
        EXPECT_NEAR(volumeOf(after) / volumeOf(before), 1, exact ? 1e-6 : 0.02);
        EXPECT_EQ(colours(after).size(), colours(before).size());
        if (std::string(name) == "one.glb") {
            EXPECT_EQ(colours(after), colours(before));
        }
        DocumentMgr::get()->close(again);
    }
}

TEST_F(RoundTripTest, SeveralRealFilesOpenedTogetherAreTheSameAsOneByOne)
{
    SKIP_WITHOUT_REAL_DATA();
    const char* const names[] = {"sg1-c5-214.stp", "Motor-c.brep", "bearing.iges", "as1-tu-203.stp",
                                 "head.stl"};
    std::vector<boost::filesystem::path> paths;
    for (const char* name : names)
        paths.push_back(TestSupport::realDataFolder() / name);
    // Together first, so that none of them comes from the cache.
    DocumentOpener opener(paths);
    Status errors;
    opener.open(errors, 1);
    ASSERT_EQ(opener.documentsOpened(), paths.size()) << Strings::narrow(errors.toString());
    std::vector<std::pair<std::wstring, size_t>> together;
    for (unsigned i = 0; i < paths.size(); ++i) {
        Document* document = opener.documentOpened(i);
        together.emplace_back(document->displayName(), trianglesOf(*document->activeAsset()));
    }
    for (unsigned i = 0; i < paths.size(); ++i) {
        DocumentMgr::get()->close(opener.documentOpened(i));
        Document* alone = openReal(names[i]);
        ASSERT_NE(alone, nullptr);
        EXPECT_EQ(alone->displayName(), together[i].first);
        EXPECT_EQ(trianglesOf(*alone->activeAsset()), together[i].second);
    }
}
