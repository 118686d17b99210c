#include "UI/Base/Command/Private/CommandStacks.h"

#include <map>
#include <set>

namespace Vu::CommandStacks {
namespace {

/// Numbers tell the order in which the stacks were made.
struct Data
{
    std::map<uint64_t, CommandStack*> all;
    std::set<uint64_t> executing, visitors;
    uint64_t last = 0;
};

/// Never destroyed: managers may go after all other static objects.
Data& data()
{
    static auto* const made = new Data;
    return *made;
}

} // namespace

uint64_t add(CommandStack& stack)
{
    data().all[++data().last] = &stack;
    return data().last;
}

void remove(uint64_t number)
{
    data().all.erase(number);
    data().executing.erase(number);
    data().visitors.erase(number);
}

void forEach(const std::function<void(CommandStack&)>& use)
{
    const std::map<uint64_t, CommandStack*> stacks = data().all;
    for (const auto& [number, stack] : stacks)
        if (data().all.contains(number))
            use(*stack);
}

void executes(uint64_t number, bool executing)
{
    if (executing)
        data().executing.insert(number);
    else
        data().executing.erase(number);
}

const CommandStack* executing()
{
    return data().executing.empty() ? nullptr : data().all.at(*data().executing.begin());
}

void visits(uint64_t number)
{
    data().visitors.insert(number);
}

void forEachVisitor(const std::function<void(const CommandStack&)>& use)
{
    for (const uint64_t number : data().visitors)
        use(*data().all.at(number));
}

} // namespace Vu::CommandStacks
