#include "Server/DataModel/SteppedTransaction.h"

#include "Server/Base/Require.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Model/ModelData.h"
#include "Server/DataModel/Private/ChangeSteps.h"

#include <stdexcept>

namespace Vs {

using namespace ChangeSteps;

SteppedTransaction::SteppedTransaction(Asset* asset, const std::wstring& name) : m_asset(asset)
{
    assertMainThread();
    require(asset != nullptr, "a transaction changes an asset");
    if (isOpen(asset) || asset->data().history().isOpen())
        throw std::runtime_error("another change of it isn't finished");
    begin(asset, name, &ChangeHistory::beginGroup);
}

SteppedTransaction::~SteppedTransaction()
{
    // A transaction that outlives it belongs to an asset that goes as well.
    if (m_open && !hasOpenStep())
        abort();
}

bool SteppedTransaction::isOpen(const Asset* asset)
{
    return asset->data().history().group() != nullptr;
}

const TransactionNode& SteppedTransaction::node() const
{
    require(m_open, "a change in steps has a node while it is open");
    return *m_asset->data().history().group();
}

void SteppedTransaction::commit()
{
    require(m_open, "a change in steps is ended once");
    m_open = false;
    m_asset->data().history().commitGroup();
    stepDone(m_asset);
}

void SteppedTransaction::abort()
{
    require(m_open, "a change in steps is ended once");
    m_open = false;
    const ChangeHistory::Extent extent = m_asset->data().history().abortGroup();
    if (extent.nothing())
        return;
    markChanged(m_asset, extent);
    tellBack(m_asset, extent);
    stepDone(m_asset);
}

// What others changed after a step goes with it.
bool SteppedTransaction::undoStep()
{
    if (m_asset->data().history().isOpen())
        return false;
    while (const TransactionNode* next = node().transactionToUndo()) {
        const bool own = next->userCache();
        step(m_asset, &ChangeHistory::undo);
        if (own)
            return true;
    }
    return false;
}

size_t SteppedTransaction::steps(const Asset* asset)
{
    const TransactionNode* group = asset->data().history().group();
    return group ? group->doneChanges().size() : 0;
}

void SteppedTransaction::undoTo(Asset* asset, size_t count)
{
    if (asset->data().history().isOpen())
        return;
    while (steps(asset) > count)
        step(asset, &ChangeHistory::undo);
}

bool SteppedTransaction::hasOpenStep() const
{
    return m_asset->data().history().isOpen();
}

bool SteppedTransaction::redoStep()
{
    if (m_asset->data().history().isOpen() || !node().transactionToRedo())
        return false;
    do
        step(m_asset, &ChangeHistory::redo);
    while (node().transactionToRedo() && !node().transactionToRedo()->userCache());
    return true;
}

} // namespace Vs
