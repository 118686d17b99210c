#include "Server/Base/Progress.h"
#include "Server/Base/Strings.h"
#include "Server/Body/Body.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/DocumentOpener.h"
#include "Server/DataModel/Transaction.h"
#include "Server/DataModel/Translator.h"
#include "Server/DataModel/TranslatorFileRecognizer.h"
#include "Tests/Server/DataModel/Fixture.h"

#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>
#include <numbers>

using namespace Vs;

namespace {

constexpr const char* kAsciiStl = R"(SOLID First
  Facet normal 0 0 1
    outer loop
      Vertex 0 0 0
      vertex +1 0 0
      VERTEX 0 1e0 0
    endloop
  EndFacet
endsolid First
solid
facet normal 0 0 0 outer loop vertex 0 0 5 vertex 2 0 5 vertex 0 2 5 endloop endfacet
endsolid
)";

struct StlSummary
{
    uint32_t triangles = 0;
    double volume = 0;
    BBox bounds;
};

// Reads a binary STL file like any other program.
StlSummary readStl(const std::wstring& path)
{
    const std::string bytes = contentOf(path);
    StlSummary summary;
    std::memcpy(&summary.triangles, bytes.data() + 80, 4);
    EXPECT_EQ(bytes.size(), 84 + 50 * size_t(summary.triangles));
    for (uint32_t i = 0; i < summary.triangles; ++i) {
        float f[12];
        std::memcpy(f, bytes.data() + 84 + 50 * i, sizeof f);
        const GkPoint3d a(f[3], f[4], f[5]), b(f[6], f[7], f[8]), c(f[9], f[10], f[11]);
        summary.volume += a.asVector().dotProduct(b.asVector().crossProduct(c.asVector())) / 6;
        for (const GkPoint3d& p : {a, b, c})
            summary.bounds.add(p);
        // At a pole of a sphere a triangle may have no area, and so no normal.
        const GkVector3d area = (b - a).crossProduct(c - a);
        if (area.length() > 1e-6) {
            EXPECT_NEAR(area.normal().dotProduct({f[0], f[1], f[2]}), 1, 1e-3);
        }
    }
    return summary;
}

/// Cancels at the first opportunity.
class Impatient : public ProgressSink
{
public:
    Impatient() { Progress::sink(this); }
    ~Impatient() override { Progress::sink(nullptr); }
    void begin(const std::wstring&) override {}
    bool update(double, const std::wstring&) override { return false; }
    void end() override {}
};

} // namespace

class ExchangeTest : public DataModelTest
{
protected:
    /// A box, a cylinder, and a sphere without a name or colour.
    Asset* sample()
    {
        Asset* asset = boxAndCylinder();
        ModelBuilder builder(asset);
        builder.sphere(4, {GkMatrix3d::translation({0, 0, 40}), L"", std::nullopt}, status);
        return asset;
    }
};

TEST_F(ExchangeTest, NamesColoursPlacesAndVolumesSurviveStepAndIges)
{
    Asset* original = sample();
    const double volume = volumeOf(*original);
    ASSERT_TRUE(save(original, scratch("original.stl")));
    const BBox bounds = readStl(scratch("original.stl")).bounds;
    for (const char* name : {"out.stp", "out.STEP", "out.igs"}) {
        SCOPED_TRACE(name);
        ASSERT_TRUE(save(original, scratch(name))) << Strings::narrow(status.toString());
        Document* document = open(scratch(name));
        ASSERT_NE(document, nullptr) << Strings::narrow(status.toString());
        Asset* read = document->activeAsset();
        EXPECT_FALSE(document->isDirty(false));
        EXPECT_EQ(document->displayName(), L"out");
        EXPECT_EQ(document->bestPath(), scratch(name));
        EXPECT_FALSE(document->isOnDisk());

        ASSERT_TRUE(partNamed(*read, L"Red box") && partNamed(*read, L"Turned cylinder") &&
                    partNamed(*read, L"Sphere1"));
        ASSERT_TRUE(save(read, scratch("again.stl")));
        const BBox again = readStl(scratch("again.stl")).bounds;
        EXPECT_LT(again.low().distanceTo(bounds.low()) + again.high().distanceTo(bounds.high()), 0.5);
        // IGES holds surfaces, and each of them has its colour.
        if (std::string(name) == "out.igs")
            continue;
        EXPECT_NEAR(volumeOf(*read), volume, 1e-5 * volume);
        const Colour red = partNamed(*read, L"Red box")->body->colour();
        EXPECT_NEAR(red.r, 1, 0.01);
        EXPECT_NEAR(red.g, 0, 0.01);
        EXPECT_NEAR(partNamed(*read, L"Turned cylinder")->body->colour().g, 0.6, 0.01);
    }
}

TEST_F(ExchangeTest, BrepKeepsTheShapes)
{
    Asset* original = sample();
    ASSERT_TRUE(save(original, scratch("out.brep"))) << Strings::narrow(status.toString());
    Document* document = open(scratch("out.brep"));
    ASSERT_NE(document, nullptr) << Strings::narrow(status.toString());
    EXPECT_NEAR(volumeOf(*document->activeAsset()), volumeOf(*original), 1e-3);
}

TEST_F(ExchangeTest, StlHoldsEveryOccurrenceInItsPlace)
{
    Asset* asset = sample();
    ASSERT_TRUE(save(asset, scratch("out.stl"))) << Strings::narrow(status.toString());
    const StlSummary stl = readStl(scratch("out.stl"));
    EXPECT_EQ(stl.triangles, trianglesOf(*asset));
    EXPECT_NEAR(stl.volume, volumeOf(*asset), 0.02 * stl.volume);
    EXPECT_NEAR(stl.bounds.high().x, 55, 0.1);
    EXPECT_NEAR(stl.bounds.low().y, -20, 1e-3);
    EXPECT_NEAR(stl.bounds.high().z, 44, 0.1);
}

TEST_F(ExchangeTest, AFinerRefinementGivesMoreTrianglesAndLeavesTheShownMeshAlone)
{
    Asset* asset = sample();
    const size_t shown = trianglesOf(*asset);
    TranslatorFileRecognizer recognizer("TestAssetType", true);
    recognizer.recognize();
    Translator* stl = recognizer.translator(scratch("x.stl"));
    const auto options = stl->createSaveOptions();
    options->fileName(scratch("x.stl"));
    TranslatorContext context;
    context.asset(asset);
    std::vector<uint32_t> counts;
    for (const float degrees : {30.0f, 15.0f, 5.0f}) {
        options->refinement().normalDeviation = degrees;
        ASSERT_TRUE(stl->save(*options, context, status));
        counts.push_back(readStl(scratch("x.stl")).triangles);
    }
    EXPECT_LT(counts[0], counts[1]);
    EXPECT_LT(counts[1], counts[2]);
    EXPECT_EQ(trianglesOf(*asset), shown);
    options->resetRefinement();
    ASSERT_TRUE(stl->save(*options, context, status));
    EXPECT_EQ(readStl(scratch("x.stl")).triangles, shown);
}

TEST_F(ExchangeTest, AFileThatCannotBeWrittenKeepsWhatWasThere)
{
    Asset* asset = sample();
    const std::wstring missing = scratch("no/such/folder/out.stl");
    EXPECT_FALSE(save(asset, missing));
    EXPECT_TRUE(status.matchingError("No such file or directory"));
    boost::filesystem::create_directory(folder.path() / "taken.stp");
    EXPECT_FALSE(save(asset, scratch("taken.stp")));
    EXPECT_TRUE(status.matchingError("folder"));

    const std::wstring old = write("old.stl", "precious");
    EXPECT_FALSE(save(newAsset(), old));
    EXPECT_TRUE(status.isError());
    EXPECT_EQ(contentOf(old), "precious");
    {
        const Impatient cancelling;
        EXPECT_FALSE(save(asset, old));
        EXPECT_TRUE(status.isOk());
    }
    EXPECT_EQ(contentOf(old), "precious");
    EXPECT_EQ(std::distance(boost::filesystem::directory_iterator(folder.path()), {}), 2);
}

TEST_F(ExchangeTest, ANameOfTheGreatestLengthIsWritten)
{
    Asset* asset = sample();
    for (const std::string extension : {".stl", ".stp", ".brep", ".obj", ".gltf", ".glb"}) {
        const std::wstring path = scratch(std::string(255 - extension.size(), 'x') + extension);
        EXPECT_TRUE(save(asset, path)) << Strings::narrow(status.toString());
        EXPECT_NE(open(path), nullptr) << Strings::narrow(status.toString());
    }
}

TEST_F(ExchangeTest, APartWithANameOfAMegabyteIsWrittenSoThatItCanBeReadAgain)
{
    // IGES has only ASCII letters.
    for (const auto& [file, letter] :
         {std::pair{"long.stp", L'n'}, std::pair{"letters.stp", L'\u4e00'}, std::pair{"long.igs", L'n'},
          std::pair{"long.glb", L'\u00e4'}, std::pair{"long.obj", L'\u00e4'}}) {
        SCOPED_TRACE(file);
        Asset* asset = newAsset();
        const std::wstring name = L"Long" + std::wstring(1'000'000, letter);
        ASSERT_TRUE(ModelBuilder(asset).box(1, 2, 3, {{}, name, std::nullopt}, status));
        ASSERT_TRUE(save(asset, scratch(file))) << Strings::narrow(status.toString());
        Document* document = open(scratch(file));
        ASSERT_NE(document, nullptr) << Strings::narrow(status.toString());
        const auto all = componentsOf(*document->activeAsset());
        EXPECT_TRUE(std::ranges::any_of(all, [&](const Component* each) {
            return each->name.text().size() >= 1000 && name.starts_with(each->name.text());
        }));
    }
}

TEST_F(ExchangeTest, AsciiStlIsReadInAnyCaseWithAnyNumberOfSolids)
{
    Document* document = open(write("two.stl", kAsciiStl));
    ASSERT_NE(document, nullptr) << Strings::narrow(status.toString());
    const auto parts = componentsOf(*document->activeAsset());
    ASSERT_EQ(parts.size(), 2u);
    EXPECT_EQ(parts[0]->name, L"First");
    EXPECT_EQ(parts[1]->name, L"two");
    EXPECT_NEAR(areaOf(*document->activeAsset()), 2.5, 1e-6);
    EXPECT_FALSE(save(document->activeAsset(), scratch("out.stp")));
    EXPECT_TRUE(status.matchingError("triangles"));
    EXPECT_TRUE(save(document->activeAsset(), scratch("out.stl")));
    EXPECT_EQ(readStl(scratch("out.stl")).triangles, 2u);
}

TEST_F(ExchangeTest, EachBadFileGivesOneMessageThatNamesItAndTheCause)
{
    ASSERT_TRUE(save(sample(), scratch("good.stp")));
    ASSERT_TRUE(save(sample(), scratch("good.igs")));
    ASSERT_TRUE(save(sample(), scratch("good.brep")));
    ASSERT_TRUE(save(sample(), scratch("good.stl")));
    const std::string step = contentOf(scratch("good.stp")), iges = contentOf(scratch("good.igs")),
                      brep = contentOf(scratch("good.brep")), stl = contentOf(scratch("good.stl"));
    std::string garbage(20'000, '\0');
    for (size_t i = 0; i < garbage.size(); ++i)
        garbage[i] = static_cast<char>(i * i * 31 + i / 7);

    for (const char* name : {"x.stp", "x.igs", "x.brep", "x.stl"}) {
        expectFault(write(name, ""), "empty");
        expectFault(write(name, garbage), "doesn't hold");
    }
    expectFault(write("a.stp", stl), "is named .stp but holds STL");
    expectFault(write("a.stl", step), "is named .stl but holds STEP");
    expectFault(write("a.IGS", brep), "is named .igs but holds BREP");
    expectFault(write("a.brep", iges), "is named .brep but holds IGES");
    expectFault(write("cut.stl", stl.substr(0, stl.size() - 20)), "STL");
    expectFault(write("half.igs", iges.substr(0, iges.size() / 2)), "is cut off");
    // What is sound of these opens, but not without a word; of the second, the last four lines before its end
    // are missing.
    const size_t line = iges.find('\n') + 1;
    for (const std::string& text :
         {iges.substr(0, iges.size() / 10 * 9),
          iges.substr(0, iges.size() - 5 * line) + iges.substr(iges.size() - line)}) {
        EXPECT_NE(open(write("nearly.igs", text)), nullptr);
        EXPECT_NE(status.toString().find(L"is damaged"), std::wstring::npos);
    }
    expectFault(write("cut.brep", brep.substr(0, brep.size() / 2)), "BREP");
    expectFault(write("none.stp", "ISO-10303-21;\nHEADER;\nENDSEC;\nDATA;\nENDSEC;\nEND-ISO-10303-21;\n"),
                "");
    expectFault(write("none.stl", "solid nothing\nendsolid nothing\n"), "no triangles");
    expectFault(write("bad.stl", "solid a\nfacet normal 0 0 1\nouter loop\nvertex 1 2 x\n"), "line 4");
    expectFault(write("open.stl", "solid a\nfacet normal 0 0 1\nouter loop\nvertex 1 2 3\n"), "ends within");
    expectFault(scratch("missing.stp"), "doesn't exist");
    expectFault(folder.path().wstring() + L"/.", "folder");
    expectFault(write("text.txt", "hello"), "no kind");
    boost::filesystem::create_directory(folder.path() / "folder.stp");
    expectFault(scratch("folder.stp"), "folder");
}

TEST_F(ExchangeTest, AFileWithoutAKnownSuffixIsOpenedByWhatItHolds)
{
    ASSERT_TRUE(save(sample(), scratch("good.stp")));
    const std::wstring plain = write("plain", contentOf(scratch("good.stp")));
    EXPECT_NE(open(plain), nullptr) << Strings::narrow(status.toString());
}

TEST_F(ExchangeTest, ACancelledOpeningLeavesNothingAndSaysNothing)
{
    // A distinct shape: one that was read before would come from the cache, at once.
    Asset* asset = sample();
    ModelBuilder(asset).box(1.25, 2.5, 3.75, {}, status);
    ASSERT_TRUE(save(asset, scratch("cancel.brep")));
    const unsigned before = DocumentMgr::get()->documents();
    {
        const Impatient cancelling;
        EXPECT_EQ(open(scratch("cancel.brep")), nullptr);
    }
    EXPECT_TRUE(status.isOk());
    EXPECT_EQ(DocumentMgr::get()->documents(), before);
    EXPECT_NE(open(scratch("cancel.brep")), nullptr);
}

TEST_F(ExchangeTest, InsertingAddsTheFilesPartsAsOneUndoStep)
{
    ASSERT_TRUE(save(sample(), scratch("parts.stp")));
    Asset* target = newAsset();
    ModelBuilder(target).box(1, 1, 1, {}, status);
    const std::string before = digestOf(*target);
    const double volume = volumeOf(*target);
    TranslatorFileRecognizer recognizer("", false);
    recognizer.recognize();
    Translator* translator = recognizer.translator(L"x.stp");
    const auto options = translator->createOpenOptions();
    options->fileName(scratch("parts.stp"));
    TranslatorContext context;
    context.open(false);
    context.asset(target);
    ASSERT_TRUE(translator->open(*options, context, status)) << Strings::narrow(status.toString());
    EXPECT_EQ(context.document(), nullptr);
    const double added = 6000 + 500 * std::numbers::pi + 4.0 / 3 * 64 * std::numbers::pi;
    EXPECT_NEAR(volumeOf(*target), volume + added, 1e-2);
    EXPECT_EQ(Transaction::undoName(target), L"Import parts.stp");
    ASSERT_TRUE(Transaction::undo(target));
    EXPECT_EQ(digestOf(*target), before);
}

TEST_F(ExchangeTest, SeveralFilesOpenTogetherAndABadOneKeepsNobodyBack)
{
    ASSERT_TRUE(save(sample(), scratch("one.stp")));
    ASSERT_TRUE(save(sample(), scratch("two.brep")));
    const std::wstring bad = write("bad.stp", "ISO-10303-21;\nnonsense");
    DocumentOpener opener({scratch("one.stp"), bad, scratch("two.brep"), scratch("missing.tdsn")});
    Status errors;
    opener.open(errors, 1);
    ASSERT_EQ(opener.documentsOpened(), 2u);
    EXPECT_EQ(opener.documentOpened(0)->displayName(), L"one");
    EXPECT_EQ(opener.documentOpened(1)->displayName(), L"two");
    EXPECT_TRUE(errors.matchingError("bad.stp"));
    EXPECT_TRUE(errors.matchingError("missing.tdsn"));
}

TEST_F(ExchangeTest, TheRecogniserListsWhatCanBeOpenedAndSaved)
{
    TranslatorFileRecognizer recognizer("", false);
    EXPECT_FALSE(recognizer.hasAvailableTranslator());
    recognizer.recognize();
    EXPECT_EQ(recognizer.fileExtensions(),
              L"*.stp;*.step;*.igs;*.iges;*.brep;*.brp;*.stl;*.obj;*.gltf;*.glb;*.wrl;*.vrml");
    EXPECT_EQ(recognizer.fileFilter(),
              L"STEP Files (*.stp *.step);;IGES Files (*.igs *.iges);;"
              L"BREP Files (*.brep *.brp);;STL Files (*.stl);;OBJ Files (*.obj);;"
              L"glTF Files (*.gltf);;glTF Binary Files (*.glb);;VRML Files (*.wrl *.vrml)");
    EXPECT_EQ(recognizer.translator(L"/a/b.StEp")->identifier(), "StepTranslator");
    EXPECT_EQ(recognizer.translator(L"/a/b.tdsn"), nullptr);
    EXPECT_EQ(recognizer.translator(L".stp"), nullptr);
    TranslatorFileRecognizer forSave("TestAssetType", true);
    forSave.recognize();
    EXPECT_EQ(forSave.translator(L"x.dwg"), nullptr);
    EXPECT_EQ(forSave.translator(L"x.wrl"), nullptr);
    EXPECT_EQ(forSave.translator(L"x.STL")->identifier(), "StlTranslator");
}

TEST_F(ExchangeTest, AReferenceToWhatAFileLacksCostsNoFace)
{
    ASSERT_TRUE(save(boxAndCylinder(), scratch("whole.stp"))) << Strings::narrow(status.toString());
    const std::string whole = contentOf(scratch("whole.stp"));
    const auto facesOf = [&](const std::string& entity) {
        std::string damaged = whole;
        const size_t reference = damaged.find('#', damaged.find(entity + "("));
        if (reference > damaged.size())
            return size_t(0);
        damaged.replace(reference, damaged.find_first_of(",)", reference) - reference, "#999999");
        const Document* document = open(write("damaged.stp", damaged));
        EXPECT_NE(document, nullptr) << Strings::narrow(status.toString());
        size_t faces = 0;
        if (document)
            for (const Component* component : componentsOf(*document->activeAsset()))
                for (const BodyMesh::Face& face :
                     component->body ? component->body->mesh()->faces : std::vector<BodyMesh::Face>())
                    faces += face.triangleCount > 0;
        return faces;
    };
    // The box's six and the cylinder's three, of which those with an unsound part are free faces.
    EXPECT_EQ(facesOf("CLOSED_SHELL"), 9u);
    EXPECT_EQ(facesOf("MANIFOLD_SOLID_BREP"), 9u);
}

TEST_F(ExchangeTest, FilledLettersOfAnAnnotationKeepNobodyFromTheShapes)
{
    Asset* original = boxAndCylinder();
    const double volume = volumeOf(*original);
    ASSERT_TRUE(save(original, scratch("plain.stp"))) << Strings::narrow(status.toString());
    std::string text = contentOf(scratch("plain.stp"));
    // More than the kernel could take in before the reader is ended.
    std::string points = "(0.,0.,0.)", strips = "(1,2,3)";
    for (int i = 1; i < 60'000; ++i) {
        points += ",(1.,2.,3.)";
        strips += ",(1,2,3)";
    }
    text.insert(text.find("ENDSEC;", text.find("DATA;")),
                "#8000=COORDINATES_LIST('',60000,(" + points + "));\n" +
                    "#8001=COMPLEX_TRIANGULATED_SURFACE_SET('',#8000,60000,((0.,0.,1.)),(),(" + strips +
                    "),());\n#8002=COORDINATES_LIST('',3,((0.,0.,0.),(1.,0.,0.),(0.,1.,0.)));\n"
                    "#8003=TESSELLATED_CURVE_SET('',#8002,((1,2,3)));\n");
    const Document* document = open(write("lettered.stp", text));
    ASSERT_NE(document, nullptr) << Strings::narrow(status.toString());
    EXPECT_EQ(Strings::narrow(status.toString()), "");
    EXPECT_NEAR(volumeOf(*document->activeAsset()), volume, volume * 1e-6);
}
