#include "UI/Base/Command/Private/CommandObservers.h"

#include "Server/Base/Require.h"
#include "UI/Base/Command/Private/Guarded.h"

#include <algorithm>

namespace Vu {

namespace {

/// Observers may be added and removed from inside a call of one.
struct Observers
{
    std::vector<ICommandObserver*> list;
    int depth = 0;
};

Observers& observers()
{
    static Observers* const observers = new Observers;
    return *observers;
}

} // namespace

void CommandObservers::add(ICommandObserver* observer)
{
    Vs::assertMainThread();
    Vs::require(observer != nullptr, "an observer is there");
    auto& list = observers().list;
    if (std::find(list.begin(), list.end(), observer) == list.end())
        list.push_back(observer);
}

void CommandObservers::remove(ICommandObserver* observer)
{
    Vs::assertMainThread();
    std::replace(observers().list.begin(), observers().list.end(), observer,
                 static_cast<ICommandObserver*>(nullptr));
    if (observers().depth == 0)
        std::erase(observers().list, nullptr);
}

Vs::Status CommandObservers::tell(void (ICommandObserver::*what)(const CommandRun&), const CommandRun& run)
{
    Vs::Status problems;
    Observers& all = observers();
    if (all.list.empty())
        return problems;
    ++all.depth;
    for (size_t i = 0, count = all.list.size(); i < count; ++i)
        if (ICommandObserver* observer = all.list[i])
            guarded(problems, [&] { (observer->*what)(run); });
    if (--all.depth == 0)
        std::erase(all.list, nullptr);
    return problems;
}

} // namespace Vu
