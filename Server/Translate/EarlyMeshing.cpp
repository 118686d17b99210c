#include "Server/Translate/EarlyMeshing.h"

#include "Server/DataModel/Kernel/Mesher.h"

#include <Standard_Failure.hxx>

#include <algorithm>
#include <new>
#include <system_error>
#include <utility>

namespace Vs::Translate {

EarlyMeshing::EarlyMeshing()
{
    // The reader keeps one processor busy.
    const unsigned free = std::max(1u, std::thread::hardware_concurrency()) - 1;
    try {
        for (unsigned i = 0; i < free; ++i)
            m_threads.emplace_back([this] { work(); });
    } catch (const std::system_error&) {
        // If the system grants no more threads, what isn't meshed early is meshed later.
    }
}

EarlyMeshing::~EarlyMeshing()
{
    finish();
}

void EarlyMeshing::add(const TopoDS_Shape& shape)
{
    const std::lock_guard lock(m_mutex);
    if (m_threads.empty() || !m_added.insert(shape.TShape().get()).second)
        return;
    m_waiting.push_back(shape.Located({}));
    m_more.notify_one();
}

void EarlyMeshing::finish()
{
    {
        const std::lock_guard lock(m_mutex);
        m_finished = true;
        m_more.notify_all();
    }
    for (std::thread& thread : std::exchange(m_threads, {}))
        thread.join();
}

bool EarlyMeshing::hasMeshed(const TopoDS_Shape& shape) const
{
    return m_meshed.contains(shape.TShape().get());
}

void EarlyMeshing::work()
{
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_more.wait(lock, [this] { return m_finished || !m_waiting.empty(); });
        if (m_finished)
            return;
        const TopoDS_Shape shape = std::move(m_waiting.front());
        m_waiting.pop_front();
        lock.unlock();
        bool meshed = true;
        try {
            Kernel::meshShape(shape, {});
        } catch (const Standard_Failure&) {
            meshed = false;
        } catch (const std::bad_alloc&) {
            meshed = false;
        }
        lock.lock();
        if (meshed)
            m_meshed.insert(shape.TShape().get());
    }
}

} // namespace Vs::Translate
