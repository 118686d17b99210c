#pragma once

#include "Server/Base/Object.h"

#include <functional>
#include <memory>
#include <vector>

namespace Vs {

/// A deferred unit of work.
class Task : public Implements<Task>
{
public:
    explicit Task(int priority = 1) : m_priority(priority) {}

    /// Tasks with a smaller number run first; equal ones in the order in which they were added.
    int priority() const { return m_priority; }

    /// Does the work. Returns true when finished, false to be run again in the next round.
    [[nodiscard]] virtual bool run() = 0;

private:
    int m_priority;
};

/// A queue of tasks, run by the main loop: at the end of the current event (deferred) or when there is
/// nothing else to do (idle). Main thread only, except `post`.
class Tasks
{
public:
    Tasks();
    ~Tasks();

    /// Queues the task and takes it over.
    void add(std::unique_ptr<Task> task);
    void add(Task* task) { add(std::unique_ptr<Task>(task)); }

    /// Queues a function to run once, with priority 1. May be called from any thread.
    void post(std::function<void()> work);

    /// Removes a waiting task and deletes it. A task that is running right now is deleted after it returns.
    /// Returns false if it isn't here.
    bool remove(Task* task);

    /// One round: runs each task that waits now, once. Tasks added meanwhile wait for the next round.
    /// A task that throws is dropped; the exception goes on to the caller after the others were kept.
    /// Does nothing when called from inside a task of the same queue.
    void runOnce();

    /// Rounds until nothing waits, or `maximumRounds` have passed. This lets a task run what it queued
    /// itself.
    void flush(int maximumRounds = 1000);

    [[nodiscard]] bool empty() const;
    [[nodiscard]] size_t size() const;

    /// Called, from the thread that adds, when something was added to an empty queue: the main loop's chance
    /// to wake up.
    void wakeUp(std::function<void()> callback);

private:
    struct Data;
    std::unique_ptr<Data> m_data;
};

} // namespace Vs
