#include "Server/Base/Strings.h"
#include "Server/DataModel/Document.h"
#include "Tests/Support/Files.h"
#include "Tests/UI/Commands/Transcribed.h"

#include <boost/filesystem/operations.hpp>

namespace {

class Checks : public CommandsTests::Transcribed
{
protected:
    /// The line after a model of three parts, as a transcript; `change` changes the model.
    const std::wstring& check(const std::string& line, const std::string& change = "")
    {
        return replay("Design.New\nDesign.Box 10 20 30\nDesign.Sphere 5 0,0,100\nDesign.Sphere 5 0,0,130\n" +
                      change + line + "\n");
    }
    static boost::filesystem::path references() { return file("bracket.checks.json"); }
    static bool holds(const std::wstring& answers, const std::wstring& text)
    {
        return answers.find(text) != std::wstring::npos;
    }
};

#define EXPECT_HOLDS(answers, text) EXPECT_TRUE(holds(answers, text)) << Vs::Strings::narrow(answers)

TEST_F(Checks, KeepWhatTheyFindAtFirstAndFailWhenItIsAnother)
{
    const std::string lines = "Body.CheckVolume all\nBody.CheckArea all\nBody.CheckBounds all\n"
                              "Component.CheckCount all\nModel.CheckDigest all";
    const std::wstring kept = check(lines);
    EXPECT_EQ(failures(), 0u) << Vs::Strings::narrow(kept);
    EXPECT_HOLDS(kept, L"Kept as the reference \"Body.CheckVolume all\" in " + references().wstring() +
                           L": volume 7047.197551 mm³");
    EXPECT_EQ(check(lines), L"") << "what is right needs no words";

    const std::wstring changed = check(lines, "Design.Box 10 10 10 0,0,-10\n");
    EXPECT_EQ(failures(), 5u);
    EXPECT_HOLDS(changed, L"bracket.txt:6: Body.CheckVolume all: volume is 8047.197551 mm³ instead of "
                          L"7047.197551 mm³, with a tolerance of 0.7047197551 mm³. The reference is in " +
                              references().wstring());
    EXPECT_HOLDS(changed, L"low z is -10 mm instead of 0 mm");
    EXPECT_HOLDS(changed, L"components is 4 instead of 3");
    EXPECT_HOLDS(changed, L"Model.CheckDigest all: model is ");
    EXPECT_HOLDS(changed, L"\n    component Box2:1 is new");

    // A differing digest is explained.
    EXPECT_HOLDS(check("Model.CheckDigest all", "Design.Move Sphere1 5mm 0 0\nDesign.Hide Box1\n"),
                 L"\n    component Box1:1: visible no instead of yes\n    component Sphere1:1: place 5,0,100 "
                 L"instead of 0,0,100");
    EXPECT_HOLDS(check("Model.CheckDigest all", "Design.Fillet 1 Box1/Edge1\nSelection.Select Sphere2\n"
                                                "Commands.Start DeleteCommand\n"),
                 L"component Box1:1: shape ");
    EXPECT_HOLDS(check("Model.CheckDigest all", "Selection.Select Sphere2\nCommands.Start DeleteCommand\n"),
                 L"component Sphere2:1 is not there any more");
}

TEST_F(Checks, HaveTolerancesOfTheirOwn)
{
    check("Body.CheckVolume all");
    const std::string slightlyMore =
        R"({"format": 1, "references": {"Body.CheckVolume all": {"volume": 7047.3}}})";
    TestSupport::overwrite(references(), slightlyMore);
    EXPECT_EQ(check("Body.CheckVolume all"), L"");
    EXPECT_HOLDS(check("Body.CheckVolume all /Exact"), L"instead of 7047.3 mm³");
    EXPECT_EQ(failures(), 1u) << "a narrower tolerance is still of the same reference";
    EXPECT_EQ(TestSupport::contentOf(references()), slightlyMore);
}

TEST_F(Checks, LookAtOnePartOrEachOrWhatIsSelected)
{
    check("Body.CheckVolume box Box1\nBody.CheckVolume parts /EachBody\nModel.CheckDigest state /Selection "
          "/Camera");
    const std::string kept = TestSupport::contentOf(references());
    EXPECT_NE(kept.find("\"Body.CheckVolume box Box1\""), std::string::npos) << kept;
    EXPECT_NE(kept.find("\"volume of Sphere2:1\": 523.59877"), std::string::npos) << kept;
    EXPECT_NE(kept.find("\"camera\": \"perspective "), std::string::npos) << kept;
    EXPECT_HOLDS(check("Body.CheckVolume parts /EachBody", "Design.Sphere 5 0,0,160\n"),
                 L"volume of Sphere3:1 is 523.5987756 mm³, and the reference has none");
    TestSupport::overwrite(references(), R"({"format": 1, "references": {"Body.CheckVolume parts /EachBody":
        {"volume of Box1:1": 6000, "volume of Bolt:1": 7, "volume of Nut:1": 8, "volume of Sphere1:1": 523.5987756,
         "volume of Sphere2:1": 523.5987756}}})");
    EXPECT_HOLDS(check("Body.CheckVolume parts /EachBody"),
                 L"volume of Bolt:1 is not there any more, and was 7. The reference is in " +
                     references().wstring() + L".\n    volume of Nut:1 is not there any more, and was 8");
}

TEST_F(Checks, TellWhatTheyCannotDo)
{
    EXPECT_HOLDS(failure(L"Body.CheckVolume nothing"), L"no active model to check");
    EXPECT_HOLDS(check("Body.CheckVolume a /Visible"), L"Body.CheckVolume has no flag /Visible. There are: "
                                                       L"/EachBody, /Exact, /VisibleOnly.");
    EXPECT_HOLDS(check("Body.CheckVolume a Bolt"), L"there is no \"Bolt\" in the model");
    for (const char* line : {"Model.CheckDigest a b", "Model.CheckSelection a b = Plate:1"})
        EXPECT_HOLDS(check(line), L"\"b\" is one word too many");
    EXPECT_HOLDS(replay("Design.New\nBody.CheckArea empty\n"),
                 L"bracket.txt:2: Body.CheckArea empty: There is no "
                 L"body to check.");
    EXPECT_FALSE(boost::filesystem::exists(references()));
    TestSupport::overwrite(references(), "{\"format\": 1,\n\"references\": {\n}");
    EXPECT_HOLDS(check("Body.CheckVolume a"), references().wstring() + L":3: ");
    EXPECT_EQ(failures(), 1u);
    EXPECT_EQ(TestSupport::contentOf(references()), "{\"format\": 1,\n\"references\": {\n}");
}

TEST_F(Checks, CompareWithWhatTheirLineSays)
{
    const std::string good =
        "Body.CheckVolume box Box1 = 6000 mm^3\nBody.CheckVolume box Box1 = 6 cm^3 +- 0.1 %\n"
        "Body.CheckVolume all = 7047 +- 1\nBody.CheckArea box Box1 = 2*(200+300+600) mm^2\n"
        "Body.CheckBounds box Box1 = 0,0,0,10 mm,2 cm,30 +- 1e-3 mm";
    EXPECT_EQ(check(good), L"");
    EXPECT_FALSE(boost::filesystem::exists(references()));
    EXPECT_HOLDS(
        check("Body.CheckVolume box Box1 = 6100 mm^3 +- 1 %"),
        L"bracket.txt:5: Body.CheckVolume box Box1 = 6100 mm^3 +- 1 %: volume is 6000 mm³ instead of 6100 "
        L"mm³, with a tolerance of 61 mm³.");
    EXPECT_HOLDS(check("Body.CheckVolume parts /EachBody = 3"),
                 L"the check finds 3 values, and the line has 1");
    EXPECT_HOLDS(check("Body.CheckVolume box Box1 = 5 kg"), L"kg");
    EXPECT_HOLDS(check("Body.CheckVolume box Box1 = 5 mm"), L"Body.CheckVolume box Box1 = 5 mm: ");
    EXPECT_EQ(failures(), 1u);
}

TEST_F(Checks, LookAtCentresPartsOpenEdgesColoursDistancesAndTheSelection)
{
    const std::string good =
        "Body.CheckCentre box Box1 = 5,10,15 +- 1e-6 mm\nBody.CheckCentre spheres Sphere1 = 0,0,10 cm\n"
        "Body.CheckParts all = 3,8,12\nBody.CheckFreeEdges all = 0,0,0\n"
        "Component.CheckColours box Box1 = #ff0000ff\nMeasure.CheckDistance gap Sphere1 Sphere2 = 20 mm\n"
        "Measure.CheckDistance side Box1/Face1 Box1/Face2 = 10 +- 1 %\nModel.CheckSelection chosen = "
        "Box1:1/Body1/Edge1\n";
    const std::string change = "Design.Colour #ff0000 Box1\nSelection.Select Box1/Edge1\n";
    EXPECT_EQ(check(good, change), L"");
    EXPECT_EQ(failures(), 0u);
    EXPECT_HOLDS(check("Body.CheckCentre box Box1 = 5,10,16 +- 0.1 mm"),
                 L"centre z is 15 mm instead of 16 mm");
    EXPECT_HOLDS(check("Body.CheckParts box Box1 = 1,6,12", "Design.Fillet 1 Box1/Edge1\n"),
                 L"faces is 7 instead of 6, with a tolerance of 0.\n    edges is 15 instead of 12");
    EXPECT_HOLDS(check("Component.CheckColours box Box1 = #ff0000ff"), L"colour of Box1:1 is #");
    EXPECT_HOLDS(check("Measure.CheckDistance gap Sphere1 Sphere2 = 21 mm +- 0.5 mm"),
                 L"distance is 20 mm instead of 21 mm");
    EXPECT_HOLDS(check("Measure.CheckDistance gap Sphere1"), L"two objects");
    EXPECT_HOLDS(check("Model.CheckSelection chosen = Box1:1"), L"selection is  instead of Box1:1");
    // A side of a box that was read as triangles is open all around.
    const std::string open = file("open.stl").string();
    TestSupport::overwrite(open, "solid a\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\n"
                                 "vertex 0 1 0\nendloop\nendfacet\nendsolid a\n");
    EXPECT_EQ(check("Body.CheckFreeEdges all = 3,0,1", "Document.Open " + open + "\n"), L"");
    EXPECT_HOLDS(check("Body.CheckCentre all", "Document.Open " + open + "\n"),
                 L"There is no solid to check.");
}

TEST_F(Checks, ReplaceReferencesOrInsistOnThem)
{
    check("Body.CheckVolume all\nComponent.CheckCount all");
    answer(L"References.Mode Update");
    check("Body.CheckVolume all", "Design.Box 10 10 10\n");
    answer(L"References.Mode Compare");
    EXPECT_EQ(check("Body.CheckVolume all", "Design.Box 10 10 10\n"), L"");
    EXPECT_EQ(check("Component.CheckCount all"), L"") << "what wasn't checked was kept";
    EXPECT_HOLDS(check("Body.CheckArea all"), L"There is no reference \"Body.CheckArea all\" in ");
}

TEST_F(Checks, TypedByHandHaveTheirFileInTheCurrentFolderNamedAfterTheDocument)
{
    const boost::filesystem::path before = boost::filesystem::current_path();
    boost::filesystem::current_path(file("."));
    answer(L"Design.New");
    answer(L"Design.Box 1 2 3");
    activeDocument()->displayName(L"Lid/left");
    const boost::filesystem::path expected = boost::filesystem::current_path() / "Lid_left.checks.json";
    EXPECT_EQ(answer(L"References.File"), expected.wstring());
    EXPECT_HOLDS(answer(L"Body.CheckVolume \"a lid\""), L"Kept as the reference \"Body.CheckVolume a lid\"");
    EXPECT_EQ(answer(L"Body.CheckVolume \"a lid\""), L"");
    EXPECT_TRUE(boost::filesystem::exists(expected));
    boost::filesystem::current_path(before);
}

} // namespace
