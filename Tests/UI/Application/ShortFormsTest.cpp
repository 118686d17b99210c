#include "Tests/Support/Files.h"
#include "Tests/Support/Process.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <boost/filesystem/operations.hpp>

#include <gtest/gtest.h>

using TestSupport::ProcessResult;
using TestSupport::runQuillet;
using TestSupport::ScratchFolder;

namespace {

/// Options that are shorthand for lines, on a document with two equal boxes and a sphere, one of which is
/// hidden.
class ShortFormsTest : public testing::Test
{
protected:
    ShortFormsTest()
    {
        const ProcessResult made = runQuillet(
            {"--headless", "--command", "Design.New", "--command", "Design.Box 10 20 30", "--command",
             "Design.Pattern Box1 X 100 2", "--command", "Design.Sphere 5 0,0,100", "--command",
             "Design.Hide Sphere1", "--command", "Document.SaveAs " + file("some parts.vlra")});
        EXPECT_EQ(made.exitCode, 0) << made.errors;
    }
    std::string file(const std::string& name) const { return TestSupport::quoted(m_folder.path() / name); }
    std::string path(const std::string& name) const { return (m_folder.path() / name).string(); }

    const ScratchFolder m_folder;
};

TEST_F(ShortFormsTest, InfoTellsStructureCountsAndMassOfEachFile)
{
    const ProcessResult told = runQuillet({"--info", "--json", "--density", "2.7", path("some parts.vlra")});
    ASSERT_EQ(told.exitCode, 0) << told.errors;
    const QJsonObject info = QJsonDocument::fromJson(QByteArray::fromStdString(told.output)).object();
    EXPECT_EQ(info["name"].toString(), "some parts");
    EXPECT_EQ(info["file"].toString().toStdString(), path("some parts.vlra"));
    EXPECT_EQ(info["unit"].toString(), "mm");
    EXPECT_EQ(info["parts"].toInt(), 3);
    EXPECT_EQ(info["differentParts"].toInt(), 2);
    EXPECT_EQ(info["hidden"].toInt(), 1);
    EXPECT_EQ(info["size"].toArray().size(), 3);
    const double volume = 2 * 6000 + 4 * 3.14159265358979 / 3 * 125;
    EXPECT_NEAR(info["volume"].toDouble(), volume, 1e-3 * volume);
    EXPECT_NEAR(info["mass"].toDouble(), volume / 1000 * 2.7, 1e-3 * volume);
    const QJsonArray structure = info["structure"].toArray();
    ASSERT_EQ(structure.size(), 2) << told.output;
    EXPECT_EQ(structure[0].toObject()["name"].toString(), "Box1");
    EXPECT_EQ(structure[0].toObject()["count"].toInt(), 2) << "equal neighbours are one, counted";

    const ProcessResult both =
        runQuillet({"--info", path("some parts.vlra"), path("missing.step"), path("some parts.vlra")});
    EXPECT_EQ(both.exitCode, 1);
    EXPECT_NE(both.output.find("Parts: 3, 2 different"), std::string::npos) << both.output;
    EXPECT_EQ(both.output.find("Mass:"), std::string::npos) << "nobody knows it without a density";
    EXPECT_NE(both.errors.find("missing.step"), std::string::npos);
}

TEST_F(ShortFormsTest, ExportWritesAsTheSuffixSaysAndFailsWithItsReason)
{
    const ProcessResult done = runQuillet({path("some parts.vlra"), "--export", path("out put.stl")});
    EXPECT_EQ(done.exitCode, 0) << done.errors;
    // Hidden parts aren't written: two boxes of twelve triangles.
    EXPECT_EQ(boost::filesystem::file_size(path("out put.stl")), 84u + 24 * 50);
    const ProcessResult wrong = runQuillet({path("some parts.vlra"), "--export", path("out.xyz")});
    EXPECT_EQ(wrong.exitCode, 1);
    EXPECT_TRUE(wrong.errors.starts_with("--export: ")) << wrong.errors;
}

TEST_F(ShortFormsTest, ThumbnailDrawsASquarePictureOfThatSize)
{
    const ProcessResult done =
        runQuillet({"--thumbnail", path("some parts.vlra"), "96", path("a picture.png")});
    ASSERT_EQ(done.exitCode, 0) << done.errors;
    const std::string picture = TestSupport::contentOf(path("a picture.png"));
    ASSERT_TRUE(picture.starts_with("\x89PNG"));
    EXPECT_EQ(picture.substr(16, 8), std::string("\0\0\0\x60\0\0\0\x60", 8));
    const ProcessResult large = runQuillet({"--thumbnail", path("some parts.vlra"), "5000", path("b.png")});
    EXPECT_EQ(large.exitCode, 1);
    EXPECT_NE(large.errors.find("16 to 1024"), std::string::npos) << large.errors;
    EXPECT_FALSE(boost::filesystem::exists(path("b.png")));
}

} // namespace
