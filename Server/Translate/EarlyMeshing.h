#pragma once

#include <TopoDS_Shape.hxx>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <unordered_set>
#include <vector>

namespace Vs::Translate {

/// Meshes shapes on separate threads while the file's reader is still making others. Only add what the reader
/// won't change any more: the triangles are stored in the shape. What can't be meshed is left alone; it is
/// tried again, and reported, when all shapes exist.
class EarlyMeshing
{
public:
    EarlyMeshing();
    ~EarlyMeshing();
    EarlyMeshing(const EarlyMeshing&) = delete;
    EarlyMeshing& operator=(const EarlyMeshing&) = delete;

    void add(const TopoDS_Shape& shape);
    /// Drops what hasn't been started, and waits for the rest. Nothing may be added after that.
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
