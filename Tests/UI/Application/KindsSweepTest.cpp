// Every line that edits or measures, on every kind of body that a file can contain, valid or not: the program
// answers each of them and survives.

#include "Tests/Server/DataModel/KernelShapes.h"
#include "Tests/Support/Process.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <boost/algorithm/string/replace.hpp>

#include <gtest/gtest.h>
#include <set>
#include <sstream>

using namespace TestSupport;

namespace {

constexpr const char* kTriangles = "solid\nfacet normal 0 0 -1\nouter loop\nvertex 0 0 0\nvertex 0 9 0\n"
                                   "vertex 9 0 0\nendloop\nendfacet\nfacet normal 0 -1 0\nouter loop\n"
                                   "vertex 0 0 0\nvertex 9 0 0\nvertex 0 0 9\nendloop\nendfacet\n"
                                   "facet normal -1 0 0\nouter loop\nvertex 0 0 0\nvertex 0 0 9\n"
                                   "vertex 0 9 0\nendloop\nendfacet\nfacet normal 1 1 1\nouter loop\n"
                                   "vertex 9 0 0\nvertex 0 9 0\nvertex 0 0 9\nendloop\nendfacet\nendsolid\n";

// $ is the body being tested; Box1 is beside it.
constexpr const char* kParameters[] = {"",
                                       "$",
                                       "$ Box1",
                                       "Box1 $",
                                       "$ Box1 $",
                                       "$ $",
                                       "$ 1 2 3",
                                       "$ X 5",
                                       "$ Z 90 Point 1 2 3",
                                       "$ X 5 2",
                                       "$ X 5 2 Y 5 2",
                                       "$ Z 360 3 Point 30 0 0",
                                       "$/Face1",
                                       "$/Edge1",
                                       "$/Vertex1",
                                       "$/Face1 Box1/Edge1",
                                       "$/Face1 $/Face2",
                                       "$/Edge1 $/Edge2",
                                       "$/Edge1 $/Face1 $/Vertex1",
                                       "$/Vertex1 Box1",
                                       "1 $/Edge1",
                                       "1 $/Edge1 $/Edge2 $/Edge3",
                                       "Red $",
                                       "Red $/Face1 $/Edge1"};

struct Line
{
    std::string area, name;
};

std::vector<Line> linesThatEditOrMeasure()
{
    // These have nothing to do with a body, or are tested separately.
    const std::set<std::string> others = {"New", "Sample", "Export", "Unit", "Box", "Cylinder", "Sphere"};
    std::vector<Line> found;
    std::istringstream lines(runQuillet({"--list-commands"}).output);
    for (std::string text; std::getline(lines, text);) {
        const QJsonObject line = QJsonDocument::fromJson(QByteArray::fromStdString(text)).object();
        const Line each{line["area"].toString().toStdString(), line["name"].toString().toStdString()};
        if ((each.area == "Design" || each.area == "Measure") && !others.contains(each.name))
            found.push_back(each);
    }
    return found;
}

// Opens the file, tries all lines on its contents, undoing each, and exports it.
void expectAnswers(const boost::filesystem::path& file)
{
    SCOPED_TRACE(file.string());
    const std::string body = file.stem().string();
    const std::string saved = quoted(boost::filesystem::path(file).replace_extension(".saved.vlra"));
    // The box can't be undone once the document has been reopened.
    std::string input = "Document.Open " + quoted(file) + "\nDesign.Box 5 5 5\nDocument.SaveAs " + saved +
                        "\nDocument.CloseAll\nDocument.Open " + saved + '\n';
    for (const Line& line : linesThatEditOrMeasure())
        for (const char* parameters : kParameters)
            input += line.area + '.' + line.name + ' ' +
                     boost::replace_all_copy<std::string>(parameters, "$", body) +
                     (line.area == "Design" ? "\nVuCommands.UndoCmd\n" : "\n");
    for (const char* suffix : {".stp", ".stl"})
        input += "Design.Export " + quoted(boost::filesystem::path(file.string() + suffix)) + '\n';
    input += "Sleeper.Sleep 0\n";
    const ProcessResult run = runQuillet({"--headless", "--keep-going", "--echo", "--console"},
                                         {.input = input, .secondsLimit = 120});
    EXPECT_FALSE(run.timedOut);
    EXPECT_EQ(run.signal, 0) << "after " << run.output.substr(run.output.rfind("\n> ") + 1);
    EXPECT_TRUE(run.output.ends_with("Sleep 0 ms.\n"));
    EXPECT_EQ(run.errors.find("Document.Open"), std::string::npos) << run.errors;
}

} // namespace

TEST(KindsSweepTest, EveryLineThatEditsOrMeasuresAnswersOnEveryKindOfBody)
{
    const ScratchFolder scratch;
    const auto in = [&](const char* name) { return (scratch.path() / name).string(); };
    scratch.write("triangles.stl", kTriangles);
    KernelShapes::writeOpenSolid(in("open.brep"));
    KernelShapes::writePlanes(in("faces.brep"));
    KernelShapes::writeEdges(in("wire.brep"));
    KernelShapes::writeSeveralSolids(in("several.brep"));
    KernelShapes::writeMixed(in("mixed.brep"));
    KernelShapes::writeDegenerate(in("degenerate.brep"));
    runQuillet({"--headless", "--command", "Design.New", "--command",
                "Document.SaveAs " + quoted(scratch.path() / "empty.vlra")});
    // Lines outside a transcript keep their references in the working folder.
    const boost::filesystem::path before = boost::filesystem::current_path();
    boost::filesystem::current_path(scratch.path());
    for (const char* name : {"triangles.stl", "open.brep", "faces.brep", "wire.brep", "several.brep",
                             "mixed.brep", "degenerate.brep", "empty.vlra"})
        expectAnswers(in(name));
    boost::filesystem::current_path(before);
}
