#include "Server/DataModel/TransactionNode.h"

#include <ranges>

namespace Vs {

namespace {

void addCaches(auto&& steps, std::vector<TransactionStepUserCache*>& caches)
{
    for (const std::unique_ptr<TransactionNode>& step : steps)
        if (step->userCache())
            caches.push_back(step->userCache());
}

} // namespace

std::vector<TransactionStepUserCache*> TransactionNode::stepUserCaches(bool undo) const
{
    std::vector<TransactionStepUserCache*> caches;
    if (undo)
        addCaches(m_done | std::views::reverse, caches);
    else
        addCaches(m_undone, caches);
    return caches;
}

} // namespace Vs
