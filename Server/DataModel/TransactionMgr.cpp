#include "Server/DataModel/TransactionMgr.h"

#include "Server/Base/Require.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Model/ModelData.h"
#include "Server/DataModel/Transaction.h"

#include <algorithm>

namespace Vs {
namespace {

TransactionMgr::CmdKeySource theSource = nullptr;

/// Whether the session's steps can be undone or redone now.
bool isFree(const ChangeHistory& history)
{
    return !history.isOpen() && !history.group();
}

bool holds(const TransactionNode::Changes& changes, const TransactionNode* step)
{
    if (!step)
        return !changes.empty();
    return std::any_of(changes.begin(), changes.end(), [&](const auto& each) { return each.get() == step; });
}

} // namespace

const TransactionNode* TransactionMgr::sessionTransaction() const
{
    return &m_asset->data().history().session();
}

const TransactionNode* TransactionMgr::currentTransaction() const
{
    const ChangeHistory& history = m_asset->data().history();
    if (history.open() && !history.open()->isPreview())
        return history.open();
    return history.group() ? history.group() : sessionTransaction();
}

bool TransactionMgr::canUndo(const TransactionNode* step) const
{
    return isFree(m_asset->data().history()) && holds(sessionTransaction()->doneChanges(), step);
}

bool TransactionMgr::canRedo(const TransactionNode* step) const
{
    return isFree(m_asset->data().history()) && holds(sessionTransaction()->undoneChanges(), step);
}

bool TransactionMgr::undo(const TransactionNode* step)
{
    if (!canUndo(step))
        return false;
    const TransactionNode* next = nullptr;
    do {
        next = sessionTransaction()->transactionToUndo();
        if (!Transaction::undo(m_asset))
            return false;
    } while (step && next != step);
    return true;
}

bool TransactionMgr::redo(const TransactionNode* step)
{
    if (!canRedo(step))
        return false;
    const TransactionNode* next = nullptr;
    do {
        next = sessionTransaction()->transactionToRedo();
        if (!Transaction::redo(m_asset))
            return false;
    } while (step && next != step);
    return true;
}

void TransactionMgr::keepWithLast(std::shared_ptr<TransactionStepUserCache> cache)
{
    m_asset->data().history().keepWithLast(std::move(cache));
}

void TransactionMgr::cmdKeySource(CmdKeySource source)
{
    assertMainThread();
    theSource = source;
}

std::wstring TransactionMgr::cmdKeyNow(const Asset* asset)
{
    return theSource ? theSource(asset) : std::wstring();
}

} // namespace Vs
