#include "Server/Base/Task.h"

#include <algorithm>
#include <deque>
#include <mutex>

namespace Vs {

namespace {

class FunctionTask : public Implements<FunctionTask, Task>
{
public:
    explicit FunctionTask(std::function<void()> work) : m_work(std::move(work)) {}
    bool run() override
    {
        m_work();
        return true;
    }

private:
    std::function<void()> m_work;
};

} // namespace

struct Tasks::Data
{
    mutable std::mutex mutex;
    std::deque<std::unique_ptr<Task>> waiting; ///< For the next round.
    std::deque<std::unique_ptr<Task>> round;   ///< What the round that runs now has still to do.
    std::function<void()> wakeUp;
    Task* running = nullptr;
    bool runningRemoved = false;
    bool inRound = false;

    void insert(std::unique_ptr<Task> task)
    {
        const auto place = std::upper_bound(
            waiting.begin(), waiting.end(), task->priority(),
            [](int priority, const std::unique_ptr<Task>& other) { return priority < other->priority(); });
        waiting.insert(place, std::move(task));
    }
    std::unique_ptr<Task> take(std::deque<std::unique_ptr<Task>>& queue, const Task* task)
    {
        const auto found =
            std::find_if(queue.begin(), queue.end(), [&](const auto& other) { return other.get() == task; });
        if (found == queue.end())
            return nullptr;
        std::unique_ptr<Task> taken = std::move(*found);
        queue.erase(found);
        return taken;
    }
};

Tasks::Tasks() : m_data(std::make_unique<Data>()) {}
Tasks::~Tasks() = default;

void Tasks::add(std::unique_ptr<Task> task)
{
    if (!task)
        return;
    std::function<void()> wakeUp;
    {
        std::lock_guard lock(m_data->mutex);
        if (m_data->waiting.empty())
            wakeUp = m_data->wakeUp;
        m_data->insert(std::move(task));
    }
    if (wakeUp)
        wakeUp();
}

void Tasks::post(std::function<void()> work)
{
    add(std::make_unique<FunctionTask>(std::move(work)));
}

bool Tasks::remove(Task* task)
{
    std::unique_ptr<Task> removed; // Its destructor may call this queue, so it runs without the lock.
    std::lock_guard lock(m_data->mutex);
    if (task && task == m_data->running) {
        m_data->runningRemoved = true;
        return true;
    }
    removed = m_data->take(m_data->waiting, task);
    if (!removed)
        removed = m_data->take(m_data->round, task);
    return removed != nullptr;
}

void Tasks::runOnce()
{
    if (m_data->inRound)
        return;
    {
        std::lock_guard lock(m_data->mutex);
        m_data->round.swap(m_data->waiting);
    }

    // Whatever happens in a task, those behind it go back into the queue and the round is over.
    struct Round
    {
        Tasks& tasks;
        std::vector<std::unique_ptr<Task>> again;

        explicit Round(Tasks& queue) : tasks(queue) { tasks.m_data->inRound = true; }
        ~Round()
        {
            std::deque<std::unique_ptr<Task>> left;
            {
                std::lock_guard lock(tasks.m_data->mutex);
                left.swap(tasks.m_data->round);
                tasks.m_data->running = nullptr;
                tasks.m_data->inRound = false;
            }
            for (auto& task : left)
                tasks.add(std::move(task));
            for (auto& task : again)
                tasks.add(std::move(task));
        }
    } guard(*this);

    while (true) {
        std::unique_ptr<Task> task;
        {
            std::lock_guard lock(m_data->mutex);
            if (m_data->round.empty())
                break;
            task = std::move(m_data->round.front());
            m_data->round.pop_front();
            m_data->running = task.get();
            m_data->runningRemoved = false;
        }
        const bool done = task->run();
        std::lock_guard lock(m_data->mutex);
        m_data->running = nullptr;
        if (!done && !m_data->runningRemoved)
            guard.again.push_back(std::move(task));
    }
}

void Tasks::flush(int maximumRounds)
{
    for (int round = 0; round < maximumRounds && !empty() && !m_data->inRound; ++round)
        runOnce();
}

bool Tasks::empty() const
{
    return size() == 0;
}

size_t Tasks::size() const
{
    std::lock_guard lock(m_data->mutex);
    return m_data->waiting.size() + m_data->round.size();
}

void Tasks::wakeUp(std::function<void()> callback)
{
    std::lock_guard lock(m_data->mutex);
    m_data->wakeUp = std::move(callback);
}

} // namespace Vs
