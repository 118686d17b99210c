// The observers of all runs: the part of CommandStack that tells them.

#include "UI/Base/Command/CommandObserver.h"
#include "UI/Base/Command/Private/CommandStack.h"
#include "UI/Base/Command/Private/Guarded.h"

#include <algorithm>

namespace Vu {

namespace {

/// Observers may come and go from inside a call of one.
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

void CommandStack::addObserver(ICommandObserver* observer)
{
    auto& list = observers().list;
    if (std::find(list.begin(), list.end(), observer) == list.end())
        list.push_back(observer);
}

void CommandStack::removeObserver(ICommandObserver* observer)
{
    std::replace(observers().list.begin(), observers().list.end(), observer,
                 static_cast<ICommandObserver*>(nullptr));
    if (observers().depth == 0)
        std::erase(observers().list, nullptr);
}

void CommandStack::tell(void (ICommandObserver::*what)(const CommandRun&), const CommandRun& run)
{
    Observers& all = observers();
    if (all.list.empty())
        return;
    ++all.depth;
    Vs::Status problems;
    for (size_t i = 0, count = all.list.size(); i < count; ++i)
        if (ICommandObserver* observer = all.list[i])
            guarded(problems, [&] { (observer->*what)(run); });
    if (--all.depth == 0)
        std::erase(all.list, nullptr);
    m_alerts.addAlerts(problems);
}

} // namespace Vu
