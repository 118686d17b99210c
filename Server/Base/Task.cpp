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
    std::deque<std::unique_ptr<Task>> waiting;
    std::function<void()> wakeUp;
    Task* running = nullptr;
    bool runningRemoved = false;
    bool inRound = false;
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
        auto& waiting = m_data->waiting;
        if (waiting.empty())
            wakeUp = m_data->wakeUp;
        const auto place = std::upper_bound(
            waiting.begin(), waiting.end(), task->priority(),
            [](int priority, const std::unique_ptr<Task>& other) { return priority < other->priority(); });
        waiting.insert(place, std::move(task));
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
    std::unique_ptr<Task> removed;
    std::lock_guard lock(m_data->mutex);
    if (task && task == m_data->running) {
        m_data->runningRemoved = true;
        return true;
    }
    auto& waiting = m_data->waiting;
    const auto found =
        std::find_if(waiting.begin(), waiting.end(), [&](const auto& other) { return other.get() == task; });
    if (found == waiting.end())
        return false;
    removed = std::move(*found);
    waiting.erase(found);
    return true;
}

void Tasks::runOnce()
{
    if (m_data->inRound)
        return;
    std::deque<std::unique_ptr<Task>> round;
    {
        std::lock_guard lock(m_data->mutex);
        round.swap(m_data->waiting);
    }
    if (round.empty())
        return;

    // Whatever happens in a task, those behind it go back into the queue and the round is over.
    struct Round
    {
        Tasks& tasks;
        std::deque<std::unique_ptr<Task>>& left;
        std::vector<std::unique_ptr<Task>> again;
        ~Round()
        {
            tasks.m_data->inRound = false;
            for (auto& task : again)
                tasks.add(std::move(task));
            for (auto& task : left)
                tasks.add(std::move(task));
        }
    } guard{*this, round, {}};
    m_data->inRound = true;

    // A task may remove one that waits behind it in this same round, so they go back before each run.
    while (!round.empty()) {
        std::unique_ptr<Task> task = std::move(round.front());
        round.pop_front();
        {
            std::lock_guard lock(m_data->mutex);
            m_data->running = task.get();
            m_data->runningRemoved = false;
        }
        struct Running
        {
            Data& data;
            ~Running() { data.running = nullptr; }
        } running{*m_data};
        const bool done = task->run();
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
    return m_data->waiting.size();
}

void Tasks::wakeUp(std::function<void()> callback)
{
    std::lock_guard lock(m_data->mutex);
    m_data->wakeUp = std::move(callback);
}

} // namespace Vs
