#include "Server/Body/PartsMesh.h"

#include "Server/Body/DividedMesh.h"

#include <chrono>
#include <future>
#include <mutex>
#include <unordered_map>

namespace Vs {

namespace {

using Mesh = std::shared_ptr<const BodyMesh>;
using Coming = std::shared_future<Mesh>;

/// Meshes of no more triangles are divided at once; that takes some milliseconds.
constexpr size_t kMadeAtOnce = 5000;
/// After so many new ones it is looked which are of meshes that are gone.
constexpr size_t kCollectAfter = 64;

struct Entry
{
    std::weak_ptr<const BodyMesh> source;
    Coming divided;
};

Coming dividedOf(const Mesh& mesh)
{
    // Never destroyed: a thread may still be at work when the process ends.
    static auto* const entries = new std::unordered_map<const BodyMesh*, Entry>;
    static auto* const mutex = new std::mutex;
    static size_t added = 0;
    const std::lock_guard lock(*mutex);
    Entry& entry = (*entries)[mesh.get()];
    if (!entry.source.expired())
        return entry.divided;
    const bool atOnce = mesh->triangles.size() / 3 <= kMadeAtOnce;
    Coming divided = std::async(atOnce ? std::launch::deferred : std::launch::async, [mesh]() -> Mesh {
                         return std::make_shared<const BodyMesh>(dividedMesh(*mesh));
                     }).share();
    if (atOnce)
        divided.wait();
    entry = {mesh, divided};
    if (++added % kCollectAfter == 0)
        std::erase_if(*entries, [](const auto& each) { return each.second.source.expired(); });
    return divided;
}

} // namespace

Mesh partsMesh(const Mesh& mesh)
{
    return mesh && isOfTriangles(*mesh) ? dividedOf(mesh).get() : mesh;
}

Mesh partsMeshIfMade(const Mesh& mesh)
{
    if (!mesh || !isOfTriangles(*mesh))
        return mesh;
    const Coming divided = dividedOf(mesh);
    return divided.wait_for(std::chrono::seconds(0)) == std::future_status::ready ? divided.get() : nullptr;
}

} // namespace Vs
