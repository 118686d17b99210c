#include "Server/Base/Task.h"

#include "Server/Base/Require.h"

#include <algorithm>
#include <deque>
#include <iterator>
#include <list>
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

/// Tasks that are run once each, one after the other.
struct Round
{
    std::deque<std::unique_ptr<Task>> left; ///< What has still to be done.
    Task* running = nullptr;
    bool runningRemoved = false;
};

} // namespace

struct Tasks::Data
{
    mutable std::mutex mutex;
    std::deque<std::unique_ptr<Task>> waiting; ///< For the next round.
    std::list<Round> rounds;                   ///< Those that run now; each but the first is inside a task.
    std::function<void()> wakeUp;

    void insert(std::unique_ptr<Task> task)
    {
        const auto place = std::upper_bound(
            waiting.begin(), waiting.end(), task->priority(),
            [](int priority, const std::unique_ptr<Task>& other) { return priority < other->priority(); });
        waiting.insert(place, std::move(task));
    }
    void queue(std::unique_ptr<Task> task)
    {
        std::function<void()> wake;
        {
            std::lock_guard lock(mutex);
            if (waiting.empty())
                wake = wakeUp;
            insert(std::move(task));
        }
        if (wake)
            wake();
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
    bool anyWaiting() const
    {
        std::lock_guard lock(mutex);
        return !waiting.empty();
    }
    void runRound(Tasks& tasks);
};

Tasks::Tasks() : m_data(std::make_unique<Data>()) {}
Tasks::~Tasks() = default;

void Tasks::add(std::unique_ptr<Task> task)
{
    assertMainThread();
    require(task != nullptr, "a task that is queued is there");
    m_data->queue(std::move(task));
}

void Tasks::post(std::function<void()> work)
{
    require(work != nullptr, "a function that is queued is there");
    m_data->queue(std::make_unique<FunctionTask>(std::move(work)));
}

bool Tasks::remove(Task* task)
{
    assertMainThread();
    std::unique_ptr<Task> removed; // Its destructor may call this queue, so it runs without the lock.
    std::lock_guard lock(m_data->mutex);
    removed = m_data->take(m_data->waiting, task);
    for (Round& round : m_data->rounds) {
        if (task && task == round.running) {
            round.runningRemoved = true;
            return true;
        }
        if (!removed)
            removed = m_data->take(round.left, task);
    }
    return removed != nullptr;
}

void Tasks::runOnce()
{
    if (m_data->rounds.empty())
        m_data->runRound(*this);
}

void Tasks::Data::runRound(Tasks& tasks)
{
    assertMainThread();
    // Whatever happens in a task, those after it go back into the queue and the round is over.
    struct Guard
    {
        Tasks& tasks;
        Data& data;
        std::vector<std::unique_ptr<Task>> again;

        ~Guard()
        {
            std::list<Round> ended;
            {
                std::lock_guard lock(data.mutex);
                ended.splice(ended.end(), data.rounds, std::prev(data.rounds.end()));
            }
            for (auto& task : ended.front().left)
                tasks.add(std::move(task));
            for (auto& task : again)
                tasks.add(std::move(task));
        }
    };
    Round* round;
    {
        std::lock_guard lock(mutex);
        round = &rounds.emplace_back();
        round->left.swap(waiting);
    }
    Guard guard{tasks, *this, {}};

    while (true) {
        std::unique_ptr<Task> task;
        {
            std::lock_guard lock(mutex);
            if (round->left.empty())
                break;
            task = std::move(round->left.front());
            round->left.pop_front();
            round->running = task.get();
            round->runningRemoved = false;
        }
        const bool done = task->run();
        std::lock_guard lock(mutex);
        round->running = nullptr;
        if (!done && !round->runningRemoved)
            guard.again.push_back(std::move(task));
    }
}

void Tasks::flush(int maximumRounds)
{
    for (int round = 0; round < maximumRounds && m_data->anyWaiting(); ++round)
        m_data->runRound(*this);
}

bool Tasks::empty() const
{
    return size() == 0;
}

size_t Tasks::size() const
{
    std::lock_guard lock(m_data->mutex);
    size_t count = m_data->waiting.size();
    for (const Round& round : m_data->rounds)
        count += round.left.size();
    return count;
}

void Tasks::wakeUp(std::function<void()> callback)
{
    std::lock_guard lock(m_data->mutex);
    m_data->wakeUp = std::move(callback);
}

} // namespace Vs
