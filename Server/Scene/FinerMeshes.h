#pragma once

#include "Server/Body/FinerMesh.h"

#include <atomic>
#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <unordered_map>
#include <vector>

namespace Vs::Scene {

/// A mesh whose facets show in a view, and the form that it needs there.
struct FinerWish
{
    std::shared_ptr<const BodyMesh> mesh;
    int level;        ///< From 1 to FinerMesh::kLevels.
    double pixels;    ///< Across the largest of its occurrences in view.
    size_t instances; ///< How many are in view.
};

/// How fine views are, by the user's option.
struct MeshQuality
{
    double deviation; ///< Meshes may deviate by so many pixels from the exact shape.
    /// What is drawn in place of the meshes has at most so many: in a picture that is kept or by a GPU, and
    /// where the processor draws again and again.
    uint64_t triangles, trianglesInSoftware;

    /// Main thread.
    static MeshQuality current();
};

/// Makes the finer meshes that views wish for, on a thread of its own, and keeps them as long as there is
/// room: those that no view needs any more aren't shown, but are there at once when it comes near again. Main
/// thread.
class FinerMeshes
{
public:
    static FinerMeshes& get();

    /// What a view needs, in place of what it needed before. Shows what is there, and begins to make the
    /// rest, what is large on the screen first, as far as `triangles` go.
    void want(const void* viewer, const std::vector<FinerWish>& wishes, uint64_t triangles);
    void forget(const void* viewer) { want(viewer, {}, 0); }
    /// Shows what was made since the last call.
    void takeMade();
    /// Whether any wish is still being fulfilled.
    bool working() const;
    /// Waits until none is, but not longer than that.
    void await(double seconds);
    /// Cancels whatever is being made, and waits for the end of that. For the end of the program.
    void stop();

    /// By how much the meshes shown may reach beyond the bounds of those that they stand in for, in
    /// millimetres.
    double reach() const { return m_reach; }

private:
    FinerMeshes() = default;

    struct Wish
    {
        std::weak_ptr<const BodyMesh> mesh; ///< Its document may be closed.
        int level;
        double pixels;
        size_t instances;
    };
    struct Wishes
    {
        std::vector<Wish> all;
        uint64_t triangles;
    };
    /// What was made for one mesh.
    struct Kept
    {
        std::weak_ptr<const BodyMesh> mesh;
        std::shared_ptr<FinerMesh> finer;
        std::map<int, std::shared_ptr<const BodyMesh>> levels; ///< Null where there can't be one.
        uint64_t lastUse = 0;

        uint64_t triangles(int level) const;
    };
    struct Job
    {
        std::weak_ptr<const BodyMesh> mesh;
        std::shared_ptr<FinerMesh> finer;
        int level;
        bool cancelled = false;
        std::shared_ptr<const void> source;
        std::shared_ptr<const BodyMesh> made;
    };

    std::vector<Wish> merged() const;
    void show();
    void dropUnused();
    void work();
    void run(Job& job);

    std::map<const void*, Wishes> m_wishes;
    std::unordered_map<const BodyMesh*, Kept> m_kept;
    uint64_t m_uses = 0;
    std::atomic<double> m_reach = 0;

    mutable std::mutex m_mutex; ///< Of all that follows.
    std::condition_variable m_changed;
    std::vector<Job> m_queue; ///< The next one last.
    std::vector<Job> m_done;
    std::unique_ptr<Job> m_running; ///< Its `cancelled` and `mesh` alone are looked at by others.
    bool m_ending = false;
    std::thread m_thread;
};

} // namespace Vs::Scene
