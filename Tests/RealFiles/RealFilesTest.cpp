// Real CAD files through the program: opened, listed and exported by text lines, in a process of their own.

#include "Tests/Support/Process.h"
#include "Tests/Support/RealData.h"

#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>

#include <array>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>

using namespace TestSupport;
namespace fs = boost::filesystem;

namespace {

struct StlContent
{
    uint32_t triangles = 0;
    double area = 0;   ///< mm2
    double volume = 0; ///< mm3, by the divergence theorem; right only for closed surfaces.
};

// An own reader, so that the program's writer isn't checked by its own reader.
StlContent readBinaryStl(const fs::path& file)
{
    StlContent content;
    fs::ifstream stream(file, std::ios::binary);
    stream.seekg(80);
    stream.read(reinterpret_cast<char*>(&content.triangles), 4);
    for (uint32_t i = 0; i < content.triangles; ++i) {
        std::array<float, 12> values{};
        stream.read(reinterpret_cast<char*>(values.data()), 48);
        stream.ignore(2);
        const float *a = &values[3], *b = &values[6], *c = &values[9];
        const double u[3] = {b[0] - a[0], b[1] - a[1], b[2] - a[2]};
        const double v[3] = {c[0] - a[0], c[1] - a[1], c[2] - a[2]};
        const double n[3] = {u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]};
        content.area += std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]) / 2;
        content.volume += (a[0] * n[0] + a[1] * n[1] + a[2] * n[2]) / 6;
    }
    EXPECT_TRUE(stream.good()) << file << " is shorter than its header says";
    return content;
}

struct Sound
{
    const char* file;
    double area;   ///< Stated by the authoring system or a closed form, mm2; 0 where nobody states one.
    double volume; ///< The same, mm3.
};

std::ostream& operator<<(std::ostream& stream, const Sound& sound)
{
    return stream << sound.file;
}

class SoundFile : public testing::TestWithParam<Sound>
{
};

constexpr double kInch = 25.4;

// Meshes approximate curved faces from inside, so the tolerance is that of a mesh, not of the kernel.
const Sound kSound[] = {
    {"sg1-c5-214.stp", 46607.8737273, 355877.882829},
    {"io1-pe-203.step", 21106.05791217, 78179.57908327},
    {"as1-tu-203.stp", 141079.335225521, 764518.031066584},
    {"dm1-id-214_inch.stp", 49.354253704974006 * kInch* kInch, 6.661344319766239 * kInch* kInch* kInch},
    {"nist_ctc_01_asme1_ap242-e1.stp", 807080.802199914, 14644822.6361138},
    {"cube_1m_unit_m.step", 6e6, 1e9},
    {"cube_1m_unit_in.step", 6e6, 1e9},
    {"cube_1m_unit_mm.step", 6e6, 1e9},
    {"as1-oc-214.stp", 0, 0},
    {"red_cube_blue_cylinder.step", 0, 0},
    {"mayo_332.stp", 0, 0},
    {"screw.step", 0, 0},
    {"bearing.iges", 0, 0},
    {"as1_pe_203.igs", 0, 0},
    {"Torus_1.brep", 0, 0},
    {"Cylinder_1.brep", 0, 0},
    {"Motor-c.brep", 0, 0},
    {"head.stl", 0, 0},
    {"bearing_ascii.stl", 0, 0},
    {"two_objects_mixed_case.stl", 0, 0},
    {"planes_100faces.stp", 0, 0},
};

INSTANTIATE_TEST_SUITE_P(All, SoundFile, testing::ValuesIn(kSound), [](const auto& info) {
    std::string name = info.param.file;
    for (char& character : name)
        if (!isalnum(static_cast<unsigned char>(character)))
            character = '_';
    return name;
});

} // namespace

TEST_P(SoundFile, OpensAndExportsItsSurface)
{
    SKIP_WITHOUT_REAL_DATA();
    const Sound& sound = GetParam();
    const ScratchFolder scratch;
    const fs::path stl = scratch.path() / "out.stl";
    const ProcessResult run =
        runQuillet({"--headless", "--command", "Document.Open " + quoted(realDataFolder() / sound.file),
                    "--command", "Asset.Export " + quoted(stl), "--command", "Asset.List"});
    ASSERT_EQ(run.exitCode, 0) << run.output << run.errors;
    EXPECT_NE(run.output.find("Asset name: "), std::string::npos) << run.output;

    const StlContent content = readBinaryStl(stl);
    EXPECT_GT(content.triangles, 0u);
    if (sound.area > 0) {
        EXPECT_NEAR(content.area / sound.area, 1.0, 0.01);
    }
    if (sound.volume > 0) {
        EXPECT_NEAR(content.volume / sound.volume, 1.0, 0.01);
    }
}

TEST(RealFiles, StlKeepsEveryTriangleOfAMeshThatCameFromStl)
{
    SKIP_WITHOUT_REAL_DATA();
    const ScratchFolder scratch;
    const fs::path stl = scratch.path() / "out.stl";
    const ProcessResult run =
        runQuillet({"--headless", "--command", "Document.Open " + quoted(realDataFolder() / "head.stl"),
                    "--command", "Asset.Export " + quoted(stl)});
    ASSERT_EQ(run.exitCode, 0) << run.errors;
    // The count stands in the file's own header; damaged (zero-area) triangles may be dropped, nothing else.
    EXPECT_NEAR(readBinaryStl(stl).triangles, 117694, 100);
}

TEST(RealFiles, ASecondOpeningGivesTheSameModelAsTheFirst)
{
    SKIP_WITHOUT_REAL_DATA();
    const ScratchFolder scratch;
    const std::string open = "Document.Open " + quoted(realDataFolder() / "as1-oc-214.stp");
    const auto arguments = [&](const char* name) {
        return std::vector<std::string>{
            "--headless", "--profile-dir", (scratch.path() / "profile").string(),          "--command",
            open,         "--command",     "Asset.Export " + quoted(scratch.path() / name)};
    };
    const std::string program = (runningTree() / "bin/quillet").string();
    ASSERT_EQ(runProcess(program, arguments("first.stl")).exitCode, 0);
    ASSERT_EQ(runProcess(program, arguments("second.stl")).exitCode, 0);
    const StlContent first = readBinaryStl(scratch.path() / "first.stl");
    const StlContent second = readBinaryStl(scratch.path() / "second.stl");
    EXPECT_EQ(first.triangles, second.triangles);
    EXPECT_NEAR(first.volume, second.volume, 1e-3);
}
