#pragma once

#include <TopoDS_Shape.hxx>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <unordered_set>
#include <vector>

namespace Vs::Translate {

/// Meshes shapes on threads of its own while the file's reader still makes others. Only what the reader will
/// not change any more may be added: the triangles are put into the shape. What can't be meshed is left
/// alone; it is tried again, and told of, when all shapes are there.
class EarlyMeshing
{
public:
    EarlyMeshing();
    ~EarlyMeshing();
    EarlyMeshing(const EarlyMeshing&) = delete;
    EarlyMeshing& operator=(const EarlyMeshing&) = delete;

    void add(const TopoDS_Shape& shape);
    /// Drops what hasn't been begun, and waits for the rest. Nothing may be added after that.
    void finish();
    /// Whether that shape, wherever it is placed, has its triangles; after `finish`.
    bool hasMeshed(const TopoDS_Shape& shape) const;

private:
    void work();

    std::mutex m_mutex;
    std::condition_variable m_more;
    bool m_finished = false;
    std::deque<TopoDS_Shape> m_waiting;
    std::unordered_set<const TopoDS_TShape*> m_added, m_meshed;
    std::vector<std::thread> m_threads;
};

} // namespace Vs::Translate
