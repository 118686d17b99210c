// Any bytes in the exact data of a native file: they are refused, or the kernel can mesh and measure what
// they say. The next model is read as ever.

#include "Server/Base/PathInfo.h"
#include "Server/DataModel/Exchange/ExactData.h"
#include "Server/DataModel/Model/ModelFile.h"
#include "Tests/Fuzz/Changes.h"
#include "Tests/Fuzz/Fuzz.h"
#include "Tests/Server/DataModel/Model/CraftedModel.h"
#include "Tests/Support/Files.h"
#include "Tests/Support/Process.h"

#include <cmath>
#include <sstream>
#include <stdexcept>

namespace {

using Vs::ModelKernel;

constexpr double kVolume = 10 * 20 * 30;

std::string exactData()
{
    const auto kernel = ModelKernel::create();
    kernel->begin();
    kernel->addPrimitive(ModelKernel::Primitive::Box, {10, 20, 30}, {}, L"Box", Vs::Colour{1, 0, 0, 1});
    kernel->addPrimitive(ModelKernel::Primitive::Cylinder, {5, 20, 0}, GkMatrix3d::translation({50, 0, 0}),
                         L"Cylinder", std::nullopt);
    kernel->addPrimitive(ModelKernel::Primitive::Sphere, {7, 0, 0}, {}, L"Sphere", std::nullopt);
    kernel->commit();
    for (const auto& body : kernel->tree().bodies)
        kernel->mesh(body.entry, {}, {});
    std::ostringstream stream;
    kernel->write(stream);
    return stream.str();
}

/// What the program does with the exact data of what is opened.
double volumeOf(ModelKernel& kernel)
{
    double sum = 0;
    for (const auto& body : kernel.tree().bodies) {
        kernel.mesh(body.entry, {}, {});
        kernel.recognise(body.entry);
        sum += kernel.properties(body.entry, Vs::BodyMeasure::Volume).volume;
    }
    return sum;
}

class Files
{
public:
    Files()
    {
        Vs::PathInfo::profileDirectory(m_folder.path());
        Vs::ModelFileWriter writer(path());
        writer.writeIndex({}, {});
        writer.addKernelData(exactData());
        writer.finish();
        m_sound = TestSupport::contentOf(path());
        m_volume = volume(m_sound);
        require(std::abs(m_volume - kVolume - 20 * 25 * M_PI - 4 / 3.0 * 343 * M_PI) < 1e-3,
                "the sound model is another");
    }

    double volume(const std::string& bytes) const
    {
        const auto file = Vs::ModelFile::open(m_folder.write("m.model", bytes).string());
        return volumeOf(*Vs::Exchange::ExactData::read(*file));
    }
    const std::string& sound() const { return m_sound; }
    double soundVolume() const { return m_volume; }

private:
    std::string path() const { return (m_folder.path() / "m.model").string(); }

    TestSupport::ScratchFolder m_folder;
    std::string m_sound;
    double m_volume = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const Files files;
    std::string bytes = files.sound();
    const size_t begin = CraftedModel(bytes).kernelPlace();
    applyChanges(bytes, begin, bytes.size(), data, size);
    CraftedModel crafted(std::move(bytes));
    try {
        files.volume(crafted.sealed());
    } catch (const std::runtime_error& error) {
        require(*error.what() != '\0', "refused without a reason");
    }
    require(files.volume(files.sound()) == files.soundVolume(), "the next model is read otherwise");
    return 0;
}
