// The options of an export: refinement, unit, all parts as one.

#include "Server/Base/Progress.h"
#include "Server/Base/SoftwareVersion.h"
#include "Server/Base/Strings.h"
#include "Server/Body/Body.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/DocumentOpener.h"
#include "Server/DataModel/Edit/EditRequest.h"
#include "Server/Types/LengthUnit.h"
#include "Tests/Server/DataModel/Fixture.h"
#include "Tests/Server/DataModel/KernelShapes.h"

#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <numeric>
#include <set>
#include <sys/syscall.h>
#include <unistd.h>

using namespace Vs;

namespace {

using Corner = std::array<float, 3>;
using Facet = std::array<Corner, 3>;

std::vector<Facet> facetsOf(const std::wstring& path)
{
    std::ifstream stream(Strings::narrow(path), std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
    std::vector<Facet> facets((bytes.size() - 84) / 50);
    for (size_t i = 0; i < facets.size(); ++i)
        std::memcpy(facets[i].data(), bytes.data() + 84 + 50 * i + 12, sizeof(Facet));
    return facets;
}

float length(const Corner& a, const Corner& b)
{
    return std::hypot(b[0] - a[0], b[1] - a[1], b[2] - a[2]);
}

float areaOf(const Facet& f)
{
    const auto from = [](const Corner& a, const Corner& b) {
        return GkVector3d(double(b[0]) - a[0], double(b[1]) - a[1], double(b[2]) - a[2]);
    };
    return float(from(f[0], f[1]).crossProduct(from(f[0], f[2])).length() / 2);
}

float longestSide(const std::vector<Facet>& facets)
{
    float longest = 0;
    for (const Facet& f : facets)
        longest = std::max({longest, length(f[0], f[1]), length(f[1], f[2]), length(f[2], f[0])});
    return longest;
}

/// The aspect ratio of the thinnest triangle.
float thinnest(const std::vector<Facet>& facets)
{
    float ratio = 0;
    for (const Facet& f : facets) {
        const float sides[] = {length(f[0], f[1]), length(f[1], f[2]), length(f[2], f[0])};
        const float longest = *std::max_element(sides, sides + 3);
        ratio = std::max(ratio, longest * longest / (2 * areaOf(f)));
    }
    return ratio;
}

double areaOf(const std::vector<Facet>& facets)
{
    return std::accumulate(facets.begin(), facets.end(), 0.0,
                           [](double sum, const Facet& f) { return sum + areaOf(f); });
}

/// Whether each side is met by exactly one other triangle, in the other direction.
bool isClosed(const std::vector<Facet>& facets)
{
    std::map<std::pair<Corner, Corner>, int> sides;
    for (const Facet& f : facets)
        for (size_t k = 0; k < 3; ++k)
            if (f[k] != f[(k + 1) % 3])
                ++sides[{f[k], f[(k + 1) % 3]}];
    return std::all_of(sides.begin(), sides.end(), [&](const auto& side) {
        const auto back = sides.find({side.first.second, side.first.first});
        return back != sides.end() && back->second == side.second;
    });
}

} // namespace

class SavingTest : public DataModelTest
{
protected:
    /// A flat plate and a slim rod, whose triangles are long.
    Asset* sample()
    {
        Asset* asset = newAsset();
        ModelBuilder builder(asset);
        builder.box(200, 100, 1, {{}, L"Plate", Colour{1, 0, 0, 1}}, status);
        builder.cylinder(2, 150, {GkMatrix3d::translation({300, 0, 0}), L"Rod", Colour{0, 1, 0, 1}}, status);
        return asset;
    }

    std::vector<Facet> facets(Asset* asset, const TranslatorRefinement& refinement)
    {
        EXPECT_TRUE(save(asset, scratch("x.stl"), [&](auto& options) { options.refinement() = refinement; }));
        return facetsOf(scratch("x.stl"));
    }
};

TEST_F(SavingTest, TheNumbersOfTheRefinementBoundTheTriangles)
{
    Asset* asset = sample();
    const size_t usual = facets(asset, {}).size();
    EXPECT_GT(facets(asset, {.normalDeviation = 5}).size(), usual);
    EXPECT_GT(facets(asset, {.normalDeviation = 60, .surfaceDeviation = 1e-5f}).size(),
              facets(asset, {.normalDeviation = 60, .surfaceDeviation = 1e-2f}).size());

    const auto narrow = facets(asset, {.maximumEdgeLength = 10});
    EXPECT_LE(longestSide(narrow), 0.1f * std::hypot(200.0f, 100.0f, 1.0f) * 1.001f);
    EXPECT_TRUE(isClosed(narrow));

    const auto everyday = facets(asset, {});
    ASSERT_GT(thinnest(everyday), 100);
    size_t before = usual;
    for (const float ratio : {20.0f, 8.0f, 4.0f}) {
        const auto round = facets(asset, {.maximumAspectRatio = ratio});
        EXPECT_LE(thinnest(round), ratio * 1.01f);
        EXPECT_TRUE(isClosed(round));
        EXPECT_NEAR(areaOf(round) / areaOf(everyday), 1, 1e-5);
        EXPECT_GT(round.size(), before);
        before = round.size();
    }
    EXPECT_EQ(facets(asset, {.maximumAspectRatio = 50}).size(), usual);

    // What is shown, and what the default numbers yield, is unchanged.
    EXPECT_EQ(facets(asset, {}).size(), usual);
    EXPECT_EQ(trianglesOf(*asset), usual);
}

TEST_F(SavingTest, TheLimitsHoldForTheFormatsThatTheKernelWritesToo)
{
    Asset* asset = sample();
    for (const char* name : {"limits.glb", "limits.obj"}) {
        SCOPED_TRACE(name);
        ASSERT_TRUE(
            save(asset, scratch(name), [](auto& options) { options.refinement().maximumEdgeLength = 10; }));
        Document* again = open(scratch(name));
        ASSERT_NE(again, nullptr) << Strings::narrow(status.toString());
        const auto triangles = facets(again->activeAsset(), {});
        EXPECT_EQ(triangles.size(), facets(asset, {.maximumEdgeLength = 10}).size());
        EXPECT_TRUE(isClosed(triangles));
    }
}

TEST_F(SavingTest, ANameWithoutAFolderIsAFileOfTheWorkingFolderInEveryFormat)
{
    Asset* asset = sample();
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(std::filesystem::path(scratch("x")).parent_path());
    for (const wchar_t* name :
         {L"here.stp", L"here.igs", L"here.brep", L"here.stl", L"here.obj", L"here.gltf", L"here.glb"})
        EXPECT_TRUE(save(asset, name) && open(name)) << Strings::narrow(name + status.toString());
    std::filesystem::current_path(before);
}

TEST_F(SavingTest, LengthsAreWrittenInTheUnitThatIsShownOnlyIfThatIsAskedFor)
{
    Asset* asset = sample();
    EXPECT_EQ(LengthUnit::find("furlong"), nullptr);
    LengthUnit::display(*LengthUnit::find("in"));
    const double volume = volumeOf(*asset);
    for (const bool shown : {false, true}) {
        const auto set = [&](auto& options) { options.exportInDisplayUnit() = shown; };
        ASSERT_TRUE(save(asset, scratch("unit.stl"), set));
        float right = 0;
        for (const Facet& facet : facetsOf(scratch("unit.stl")))
            for (const Corner& corner : facet)
                right = std::max(right, corner[0]);
        EXPECT_NEAR(right, shown ? 302 / 25.4f : 302, 1e-3f);
        // So are those of the other format that doesn't state a unit.
        ASSERT_TRUE(save(asset, scratch("unit.obj"), set));
        std::ifstream lines(Strings::narrow(scratch("unit.obj")));
        float farthest = 0, x = 0;
        for (std::string line; std::getline(lines, line);)
            if (std::sscanf(line.c_str(), "v %f", &x) == 1)
                farthest = std::max(farthest, x);
        EXPECT_NEAR(farthest, shown ? 302 / 25.4f : 302, 1e-3f);
        // STEP states its unit, so that the size stays the same whatever that is.
        ASSERT_TRUE(save(asset, scratch("unit.stp"), set));
        std::ifstream stream(Strings::narrow(scratch("unit.stp")));
        const std::string step{std::istreambuf_iterator<char>(stream), {}};
        EXPECT_EQ(step.find("'INCH'") != std::string::npos, shown);
        Document* again = open(scratch("unit.stp"));
        ASSERT_NE(again, nullptr);
        EXPECT_NEAR(volumeOf(*again->activeAsset()) / volume, 1, 1e-6);
    }
    LengthUnit::display(*LengthUnit::find("mm"));
}

TEST_F(SavingTest, HeadersNameTheDocumentAndThisProgramAndNobodyElse)
{
    Asset* asset = boxAndCylinder();
    asset->document()->displayName(L"Bracket 7");
    const std::string software = "Quillet " + SoftwareVersion::currentSoftwareVersion();
    for (const char* name : {"out.stp", "out.igs"}) {
        SCOPED_TRACE(name);
        ASSERT_TRUE(save(asset, scratch(name))) << Strings::narrow(status.toString());
        std::string header;
        std::ifstream stream(Strings::narrow(scratch(name)));
        // An IGES file has its section letter in column 73, and breaks words where a line ends.
        for (std::string line; std::getline(stream, line) && line != "DATA;";)
            if (line.size() < 73 || line[72] != 'D')
                header += line.size() == 80 ? line.substr(0, 72) : line + '\n';
            else
                break;
        for (const std::string& text : {std::string("Bracket 7"), software})
            EXPECT_NE(header.find(text), std::string::npos) << text << " in " << header;
        for (const std::string& text : {std::string("CASCADE"), std::string("Author"), std::string("root")})
            EXPECT_EQ(header.find(text), std::string::npos) << text << " in " << header;
    }
}

TEST_F(SavingTest, CombinedPartsBecomeOneThatKeepsItsShapes)
{
    Asset* asset = sample();
    const double volume = volumeOf(*asset);
    for (const char* name : {"one.stp", "one.glb", "one.obj"}) {
        SCOPED_TRACE(name);
        ASSERT_TRUE(save(asset, scratch(name), [](auto& options) { options.combineSolids() = true; }));
        Document* again = open(scratch(name));
        ASSERT_NE(again, nullptr) << Strings::narrow(status.toString());
        const auto parts = componentsOf(*again->activeAsset());
        EXPECT_EQ(std::count_if(parts.begin(), parts.end(), [](const auto* part) { return part->body; }), 1);
        EXPECT_NEAR(volumeOf(*again->activeAsset()) / volume, 1,
                    std::string(name) == "one.stp" ? 1e-6 : 0.02);
        EXPECT_GE(parts.back()->body->mesh()->colours.size(), 2u);
    }
    // The model itself is unchanged.
    EXPECT_EQ(componentsOf(*asset).size(), 2u);
}

namespace {

/// Cancels as soon as all of the files are being read.
class CancelsWhileReading : public ProgressSink
{
public:
    CancelsWhileReading() { Progress::sink(this); }
    ~CancelsWhileReading() override { Progress::sink(nullptr); }
    void begin(const std::wstring&) override {}
    bool update(double, const std::wstring&) override { return ++m_asked < 3; }
    void end() override {}

private:
    int m_asked = 0;
};

} // namespace

namespace {

std::set<int> threads()
{
    std::set<int> ids;
    for (const auto& each : std::filesystem::directory_iterator("/proc/self/task"))
        ids.insert(std::stoi(each.path().filename().string()));
    return ids;
}

/// Does something when the work has run for a moment, and returns its result: whether to go on.
class Meanwhile : public ProgressSink
{
public:
    explicit Meanwhile(std::function<bool()> what) : m_what(std::move(what)) { Progress::sink(this); }
    ~Meanwhile() override { Progress::sink(nullptr); }
    void begin(const std::wstring&) override {}
    bool update(double, const std::wstring&) override { return ++m_asked < 4 || m_what(); }
    void end() override {}

private:
    std::function<bool()> m_what;
    int m_asked = 0;
};

} // namespace

TEST_F(SavingTest, ABodyThatTheMesherHangsOrBreaksDownAtCostsOnlyTheExport)
{
    Asset* asset = newAsset();
    ModelBuilder builder(asset);
    builder.box(10, 20, 30, {{}, L"Block", {}}, status);
    builder.sphere(10, {GkMatrix3d::translation({50, 0, 0}), L"Ball", {}}, status);
    // With triangles this small the ball, which is one face, takes half a minute, without checking for
    // cancellation meanwhile.
    const auto endless = [](auto& options) { options.refinement().surfaceDeviation = 1e-7f; };
    for (const char* name : {"hard.stl", "hard.obj", "hard.glb"}) {
        SCOPED_TRACE(name);
        {
            const Meanwhile cancelling([] { return false; });
            EXPECT_FALSE(save(asset, scratch(name), endless));
        }
        EXPECT_TRUE(status.isOk()) << Strings::narrow(status.toString());
        {
            const std::set<int> before = threads();
            const Meanwhile breaking([&] {
                for (const int each : threads())
                    if (!before.contains(each))
                        syscall(SYS_tgkill, getpid(), each, SIGSEGV);
                return true;
            });
            EXPECT_FALSE(save(asset, scratch(name), endless));
        }
        EXPECT_NE(status.toString().find(L"\"Ball\" can't be meshed: the geometry kernel crashed"),
                  std::wstring::npos)
            << Strings::narrow(status.toString());
        EXPECT_FALSE(boost::filesystem::exists(scratch(name)));
        EXPECT_TRUE(save(asset, scratch(name), [](auto& options) {
            options.refinement().normalDeviation = 5;
        })) << Strings::narrow(status.toString());
    }
}

TEST_F(SavingTest, AFinerMeshKeepsColoursOfFacesAndWhatIsTrianglesAlone)
{
    KernelShapes::writeMixed(Strings::narrow(scratch("mixed.brep")));
    Document* mixed = open(scratch("mixed.brep"));
    ASSERT_NE(mixed, nullptr) << Strings::narrow(status.toString());
    const double area = areaOf(facets(mixed->activeAsset(), {}));
    EXPECT_NEAR(area, 625, 1e-3);
    EXPECT_NEAR(areaOf(facets(mixed->activeAsset(), {.normalDeviation = 5})), area, 1e-3);

    Asset* asset = sample();
    const Component& plate = *asset->components()->children.front();
    const ObjectPath face{plate.id, ObjectPath::Leaf::Face, 2};
    EditRequest* paint = EditRequest::make(asset, L"Colour", ColourEdit{{face}, Colour{0, 0, 1, 1}});
    ASSERT_TRUE(paint->execute(asset, status)) << Strings::narrow(status.toString());
    paint->destroy();
    for (const float angle : {0.f, 5.f}) {
        ASSERT_TRUE(save(asset, scratch("painted.obj"), [&](auto& options) {
            if (angle > 0)
                options.refinement().normalDeviation = angle;
        }));
        std::ifstream lines(Strings::narrow(scratch("painted.mtl")));
        const std::string text{std::istreambuf_iterator<char>(lines), {}};
        EXPECT_NE(text.find("\nKd 0 0 0.99999994\n"), std::string::npos) << angle << text;
    }
}

TEST_F(SavingTest, CancellingOneOfSeveralFilesCancelsAllAndLeavesNothing)
{
    std::vector<boost::filesystem::path> paths;
    for (int i = 1; i <= 4; ++i) {
        Asset* asset = newAsset();
        ModelBuilder(asset).box(i, 2 * i, 3.125 * i, {}, status);
        paths.push_back(scratch("several" + std::to_string(i) + ".stp"));
        ASSERT_TRUE(save(asset, paths.back().wstring()));
    }
    const unsigned before = DocumentMgr::get()->documents();
    const auto files = [&] {
        return std::distance(boost::filesystem::directory_iterator(folder.path()), {});
    };
    const auto filesBefore = files();
    {
        const CancelsWhileReading cancelling;
        DocumentOpener opener(paths);
        Status errors;
        opener.open(errors, 1);
        EXPECT_EQ(opener.documentsOpened(), 0u);
        EXPECT_TRUE(errors.isOk()) << Strings::narrow(errors.toString());
    }
    EXPECT_EQ(DocumentMgr::get()->documents(), before);
    EXPECT_EQ(files(), filesBefore);
    DocumentOpener opener(paths);
    Status errors;
    opener.open(errors, 1);
    EXPECT_EQ(opener.documentsOpened(), 4u) << Strings::narrow(errors.toString());
}
