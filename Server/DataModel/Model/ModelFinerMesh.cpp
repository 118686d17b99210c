#include "Server/DataModel/Model/ModelFinerMesh.h"

#include "Server/DataModel/Exchange/ImportCache.h"
#include "Server/DataModel/KernelVersion.h"
#include "Server/DataModel/Model/ModelFile.h"

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <stdexcept>

namespace Vs {

namespace {

/// Part of every key. Raised whenever the same shape would give a different mesh.
constexpr const char* kMaker = "finer3";
/// Exact data of more bytes aren't read for the look alone.
constexpr size_t kMostRead = size_t(96) << 20;

std::string keyOf(const ModelFile& file, int body, int level)
{
    char hash[17];
    std::snprintf(hash, sizeof hash, "%016llx", static_cast<unsigned long long>(file.hash()));
    return std::string(hash) + "-" + std::to_string(body) + "-" + std::to_string(level) + "-" + kMaker + "-" +
           kernelVersion();
}

/// Null if it isn't there.
std::shared_ptr<const BodyMesh> kept(const std::string& key)
{
    const auto file = Exchange::importCache().find(key);
    return file ? file->mesh(0) : nullptr;
}

void keep(const std::string& key, const BodyMesh& mesh)
{
    Exchange::ImportCache& cache = Exchange::importCache();
    const std::string scratch = cache.scratchPath();
    try {
        ModelFileWriter writer(scratch);
        writer.addMesh(&mesh);
        PartTree one;
        one.bodies.emplace_back();
        writer.writeIndex(one, {});
        writer.finish();
        cache.store(key, scratch);
    } catch (const std::runtime_error&) {
        // It is made again the next time.
        std::error_code ignored;
        std::filesystem::remove(scratch, ignored);
    }
}

} // namespace

std::shared_ptr<const BodyMesh> ModelFinerMesh::make(const std::weak_ptr<const BodyMesh>& mesh, int level,
                                                     const std::function<bool()>& goOn)
{
    const auto source = m_source.lock();
    if (!source)
        return nullptr;
    // The mesh isn't held while another is made, so that everybody sees when nobody needs either.
    const auto fits = [&](const std::shared_ptr<const BodyMesh>& finer) {
        const auto plain = mesh.lock();
        return plain && finer && hasSameParts(*plain, *finer);
    };
    const std::string key = m_fileIndex >= 0 ? keyOf(*source->file, m_fileIndex, level) : std::string();
    try {
        if (!key.empty())
            if (auto known = kept(key); fits(known))
                return known;
        auto made = makeAnew(*source, deviationOf(mesh, level), level, goOn);
        if (!fits(made))
            return nullptr;
        if (!key.empty())
            keep(key, *made);
        return made;
    } catch (const std::runtime_error&) {
        return nullptr;
    }
}

double ModelFinerMesh::deviationOf(const std::weak_ptr<const BodyMesh>& mesh, int level)
{
    const auto plain = mesh.lock();
    return plain ? std::ldexp(deviation(*plain), -2 * level) : 0;
}

// The kernel is used for as long as a copy takes; the meshing goes on beside whatever else is done with it.
std::shared_ptr<const BodyMesh> ModelFinerMesh::makeAnew(ModelSource& source, double deviation, int level,
                                                         const std::function<bool()>& goOn) const
{
    if (!(deviation > 0) ||
        (!source.kernelLoaded() && source.file && source.file->kernelData().size() > kMostRead))
        return nullptr;
    const auto mesher =
        source.withKernel([&](ModelKernel& kernel) { return kernel.finerMesher(m_entry, deviation, level); });
    return goOn() ? mesher([&](double) { return goOn(); }) : nullptr;
}

} // namespace Vs
