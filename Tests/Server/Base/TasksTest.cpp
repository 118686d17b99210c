#include "Server/Base/Event.h"
#include "Server/Base/Task.h"

#include <gtest/gtest.h>
#include <stdexcept>
#include <string>

namespace {

/// Notes its name whenever it runs, and performs its action.
class NotingTask : public Vs::Implements<NotingTask, Vs::Task>
{
public:
    NotingTask(
        std::string& log, char name, int priority, std::function<bool()> work = [] { return true; })
        : Implements(priority), m_log(log), m_name(name), m_work(std::move(work))
    {
    }
    bool run() override
    {
        m_log += m_name;
        return m_work();
    }

private:
    std::string& m_log;
    char m_name;
    std::function<bool()> m_work;
};

class TasksTest : public testing::Test
{
protected:
    NotingTask* add(
        char name, int priority = 1, std::function<bool()> work = [] { return true; })
    {
        auto* task = new NotingTask(log, name, priority, std::move(work));
        tasks.add(task);
        return task;
    }

    std::string log;
    Vs::Tasks tasks;
};

TEST_F(TasksTest, RunByPriorityAndThenInTheOrderOfAdding)
{
    add('c', 2);
    add('a', 1);
    add('d', 2);
    add('b', 1);
    tasks.runOnce();
    EXPECT_EQ(log, "abcd");
    EXPECT_TRUE(tasks.empty());
}

TEST_F(TasksTest, AddedFromATaskWaitForTheNextRound)
{
    add('a', 1, [&] {
        add('b', 0);
        tasks.runOnce(); // A round inside a round does nothing.
        return true;
    });
    tasks.runOnce();
    EXPECT_EQ(log, "a");
    tasks.flush();
    EXPECT_EQ(log, "ab");
}

TEST_F(TasksTest, MayFlushWhatTheyQueuedThemselves)
{
    NotingTask* behind = nullptr;
    add('a', 1, [&] {
        add('b', 0);
        add('c', 0);
        tasks.flush();
        EXPECT_EQ(log, "abc"); // Neither the running one nor those queued behind it.
        EXPECT_EQ(tasks.size(), 2u);
        add('d', 0, [&] { return tasks.remove(behind); });
        tasks.flush();
        return true;
    });
    behind = add('e', 1);
    add('f', 1);
    tasks.runOnce();
    EXPECT_EQ(log, "abcdf");
    EXPECT_TRUE(tasks.empty());
}

TEST_F(TasksTest, ThatAreNotDoneRunAgainUntilTheyAre)
{
    int left = 3;
    add('a', 1, [&] { return --left == 0; });
    tasks.flush();
    EXPECT_EQ(log, "aaa");

    log.clear();
    add('x', 1, [] { return false; });
    tasks.flush(5);
    EXPECT_EQ(log, "xxxxx");
}

TEST_F(TasksTest, CanBeRemovedFromInsideTheRoundThatWouldRunThem)
{
    NotingTask* later = nullptr;
    bool removed = false;
    add('a', 1, [&] { return removed = tasks.remove(later); });
    later = add('b', 2);
    add('c', 3);
    tasks.runOnce();
    EXPECT_TRUE(removed);
    EXPECT_EQ(log, "ac");
    EXPECT_FALSE(tasks.remove(later));
}

TEST_F(TasksTest, CanRemoveThemselvesWhileTheyRun)
{
    NotingTask* self = nullptr;
    self = add('a', 1, [&] {
        EXPECT_TRUE(tasks.remove(self));
        return false;
    });
    tasks.flush();
    EXPECT_EQ(log, "a");
    EXPECT_TRUE(tasks.empty());
}

TEST_F(TasksTest, ThatThrowAreDroppedAndTheOthersKept)
{
    add('a', 1, []() -> bool { throw std::runtime_error("broken"); });
    add('b', 2);
    EXPECT_THROW(tasks.runOnce(), std::runtime_error);
    EXPECT_EQ(tasks.size(), 1u);
    tasks.runOnce();
    EXPECT_EQ(log, "ab");
}

TEST_F(TasksTest, WakeTheLoopOnlyWhenTheQueueWasEmpty)
{
    int wakeUps = 0;
    tasks.wakeUp([&] { ++wakeUps; });
    add('a');
    add('b');
    EXPECT_EQ(wakeUps, 1);
    tasks.flush();
    tasks.post([&] { log += 'p'; });
    EXPECT_EQ(wakeUps, 2);
    tasks.flush();
    EXPECT_EQ(log, "abp");
}

class Site : public Vs::EventSite
{
public:
    std::function<void()> action;
    void told(Vs::Event*) { action(); }
};

class Source : public Vs::EventSource<Site>
{
public:
    void tell()
    {
        Vs::Event event;
        fire(&Site::told, &event);
    }
};

TEST(EventSourceTest, LetsSitesLeaveAndComeWhileItTells)
{
    Site first, second, third;
    Source source;
    std::string log;
    first.action = [&] {
        log += '1';
        source.unsubscribe(&second);
        source.subscribe(&third);
    };
    second.action = [&] { log += '2'; };
    third.action = [&] { log += '3'; };
    source.subscribe(&first);
    source.subscribe(&second);
    source.tell();
    EXPECT_EQ(log, "1");
    source.tell();
    EXPECT_EQ(log, "113");
}

TEST(EventSourceTest, StaysInOrderWhenASiteThrows)
{
    Source source;
    Site broken, other;
    int told = 0;
    broken.action = [&] {
        source.unsubscribe(&broken);
        throw std::runtime_error("broken");
    };
    other.action = [&] { ++told; };
    source.subscribe(&broken);
    source.subscribe(&other);
    EXPECT_THROW(source.tell(), std::runtime_error);
    source.tell();
    source.unsubscribe(&other);
    source.tell();
    EXPECT_EQ(told, 1);
    EXPECT_FALSE(source.subscribed(&other));
}

TEST(EventSourceTest, ASiteThatGoesWhileItIsSubscribedStopsTheProgramAtOnce)
{
    Source source;
    EXPECT_DEATH(
        {
            Site left;
            source.subscribe(&left);
        },
        "a site that goes is subscribed nowhere");
    // A source that is destroyed first has forgotten its sites.
    Site site;
    {
        Source gone;
        gone.subscribe(&site);
        gone.subscribe(&site);
    }
    source.subscribe(&site);
    source.unsubscribe(&site);
    source.unsubscribe(&site);
}

} // namespace
