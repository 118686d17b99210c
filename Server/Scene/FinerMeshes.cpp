#include "Server/Scene/FinerMeshes.h"

#include "Server/Scene/GraphicsOptionGroup.h"

#include <algorithm>
#include <chrono>
#include <set>
#include <sys/resource.h>
#include <unistd.h>
#include <utility>

namespace Vs::Scene {

namespace {

/// Of what is kept without being shown, in triangles, as a multiple of what may be shown.
constexpr uint64_t kKeptForLater = 2;
/// Whoever works in the window comes first.
constexpr int kLessShare = 5;

bool isSame(const std::weak_ptr<const BodyMesh>& a, const std::weak_ptr<const BodyMesh>& b)
{
    return !a.owner_before(b) && !b.owner_before(a);
}

uint64_t trianglesOf(const BodyMesh& mesh)
{
    return mesh.triangles.size() / 3;
}

} // namespace

MeshQuality MeshQuality::current()
{
    const std::wstring quality = GraphicsOptionGroup::get()->meshQuality();
    if (quality == L"coarse")
        return {2, 250'000, 50'000};
    if (quality == L"fine")
        return {0.25, 4'000'000, 500'000};
    return {0.5, 1'000'000, 150'000};
}

FinerMeshes& FinerMeshes::get()
{
    // Never destroyed: its thread may outlive static objects.
    static auto* const all = new FinerMeshes;
    return *all;
}

void FinerMeshes::want(const void* viewer, const std::vector<FinerWish>& wishes, uint64_t triangles)
{
    std::vector<Wish> kept;
    for (const FinerWish& wish : wishes)
        kept.push_back({wish.mesh, wish.level, wish.pixels, wish.instances});
    if (kept.empty())
        m_wishes.erase(viewer);
    else
        m_wishes[viewer] = {std::move(kept), triangles};
    takeMade();
}

/// What all views need together, what is largest on the screen first; of equals, in the order of the views'
/// lists.
std::vector<FinerMeshes::Wish> FinerMeshes::merged() const
{
    std::unordered_map<const BodyMesh*, size_t> places;
    std::vector<Wish> all;
    for (const auto& [viewer, wishes] : m_wishes)
        for (const Wish& wish : wishes.all) {
            const auto mesh = wish.mesh.lock();
            if (!mesh)
                continue;
            const auto [found, isNew] = places.try_emplace(mesh.get(), all.size());
            if (isNew) {
                all.push_back(wish);
                continue;
            }
            Wish& known = all[found->second];
            known.level = std::max(known.level, wish.level);
            known.pixels = std::max(known.pixels, wish.pixels);
            known.instances = std::max(known.instances, wish.instances);
        }
    std::stable_sort(all.begin(), all.end(),
                     [](const Wish& a, const Wish& b) { return a.pixels > b.pixels; });
    return all;
}

void FinerMeshes::takeMade()
{
    std::vector<Job> done;
    {
        const std::lock_guard lock(m_mutex);
        done.swap(m_done);
    }
    for (Job& job : done)
        if (const auto mesh = job.mesh.lock(); mesh && !job.cancelled)
            m_kept[mesh.get()].levels[job.level] = std::move(job.made);
    show();
}

void FinerMeshes::show()
{
    std::erase_if(m_kept, [](const auto& each) { return each.second.mesh.expired(); });
    ++m_uses;
    m_reach = 0;
    uint64_t most = 0, sum = 0;
    for (const auto& [viewer, wishes] : m_wishes)
        most = std::max(most, wishes.triangles);
    std::set<const BodyMesh*> shown;
    std::vector<Job> missing;
    for (const Wish& wish : merged()) {
        const auto mesh = wish.mesh.lock();
        const auto finer = finerMeshOf(mesh);
        if (!finer)
            continue;
        Kept& kept = m_kept[mesh.get()];
        kept.mesh = mesh;
        kept.finer = finer;
        int wanted = wish.level;
        while (wanted > 0 && sum + kept.triangles(wanted) * wish.instances > most)
            --wanted;
        if (wanted == 0)
            continue;
        sum += kept.triangles(wanted) * wish.instances;
        if (!kept.levels.contains(wanted))
            missing.push_back({mesh, finer, wanted, false, nullptr, nullptr});
        // Meanwhile, or where there can't be such, the next best.
        for (int level = wanted; level > 0; --level) {
            const auto there = kept.levels.find(level);
            if (there == kept.levels.end() || !there->second)
                continue;
            kept.lastUse = m_uses;
            finer->show(there->second);
            shown.insert(mesh.get());
            m_reach = std::max(m_reach.load(), finer->deviation(*mesh));
            break;
        }
    }
    for (auto& [mesh, kept] : m_kept)
        if (!shown.contains(mesh))
            kept.finer->show(nullptr);
    dropUnused();

    const std::lock_guard lock(m_mutex);
    m_queue.clear();
    bool isRunningWanted = false;
    for (auto job = missing.rbegin(); job != missing.rend(); ++job) {
        if (m_running && isSame(m_running->mesh, job->mesh) && m_running->level == job->level)
            isRunningWanted = true;
        else
            m_queue.push_back(std::move(*job));
    }
    if (m_running && !isRunningWanted)
        m_running->cancelled = true;
    if (!m_queue.empty() && !m_thread.joinable()) {
        m_ending = false;
        m_thread = std::thread([this] { work(); });
    }
    m_changed.notify_all();
}

/// Of a level; at most so many if it isn't there yet.
uint64_t FinerMeshes::Kept::triangles(int level) const
{
    const auto plain = mesh.lock();
    uint64_t known = plain ? trianglesOf(*plain) : 0;
    int times = level;
    for (const auto& [each, made] : levels)
        if (made && each <= level) {
            known = trianglesOf(*made);
            times = level - each;
        }
    return known << 2 * times;
}

void FinerMeshes::dropUnused()
{
    uint64_t sum = 0;
    std::vector<Kept*> unused;
    for (auto& [mesh, kept] : m_kept) {
        for (const auto& [level, made] : kept.levels)
            sum += made ? trianglesOf(*made) : 0;
        if (kept.lastUse != m_uses)
            unused.push_back(&kept);
    }
    const uint64_t most = kKeptForLater * MeshQuality::current().triangles;
    std::sort(unused.begin(), unused.end(),
              [](const Kept* a, const Kept* b) { return a->lastUse < b->lastUse; });
    for (Kept* kept : unused) {
        if (sum <= most)
            break;
        std::erase_if(kept->levels, [&](const auto& level) {
            if (level.second)
                sum -= trianglesOf(*level.second);
            return level.second != nullptr;
        });
    }
}

bool FinerMeshes::working() const
{
    const std::lock_guard lock(m_mutex);
    return m_running || !m_queue.empty() || !m_done.empty();
}

void FinerMeshes::await(double seconds)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    while (working()) {
        {
            std::unique_lock lock(m_mutex);
            if (!m_changed.wait_until(lock, end, [this] { return !m_running && m_queue.empty(); }))
                break;
        }
        takeMade();
    }
    takeMade();
}

void FinerMeshes::stop()
{
    m_wishes.clear();
    show();
    {
        const std::lock_guard lock(m_mutex);
        m_ending = true;
        m_changed.notify_all();
    }
    if (m_thread.joinable())
        m_thread.join();
    takeMade();
}

void FinerMeshes::work()
{
    setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), kLessShare);
    std::unique_lock lock(m_mutex);
    while (true) {
        m_changed.wait(lock, [this] { return m_ending || !m_queue.empty(); });
        if (m_ending)
            return;
        m_running = std::make_unique<Job>(std::move(m_queue.back()));
        m_queue.pop_back();
        Job& job = *m_running;
        lock.unlock();
        run(job);
        lock.lock();
        // What it worked with is released where it is taken.
        m_done.push_back(std::move(job));
        m_running.reset();
        m_changed.notify_all();
    }
}

void FinerMeshes::run(Job& job)
{
    std::shared_ptr<const void> source = job.finer->source();
    std::shared_ptr<const BodyMesh> made = job.finer->make(job.mesh, job.level, [&] {
        const std::lock_guard lock(m_mutex);
        return !job.cancelled && !job.mesh.expired();
    });
    const std::lock_guard lock(m_mutex);
    job.source = std::move(source);
    job.made = std::move(made);
}

} // namespace Vs::Scene
