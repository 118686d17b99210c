#include "Server/DataModel/Transaction.h"

#include "Server/Base/Require.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/Model/ModelData.h"
#include "Server/DataModel/Private/ChangeSteps.h"
#include "Server/DataModel/TransactionMgr.h"
#include "Server/DataModel/TransactionStepUserCache.h"

#include <stdexcept>

namespace Vs {

using namespace ChangeSteps;

namespace {

/// Whether the session's steps can be undone or redone now.
bool isFree(Asset* asset)
{
    const ChangeHistory& history = asset->data().history();
    return !history.isOpen() && !history.group() && asset->document()->mayBeEdited();
}

std::wstring nameOf(const TransactionNode* step)
{
    return step ? step->userName() : std::wstring();
}

} // namespace

Transaction::Transaction(Asset* asset, const std::wstring& name, Purpose purpose) : m_asset(asset)
{
    assertMainThread();
    require(asset != nullptr, "a transaction changes an asset");
    ModelData& data = asset->data();
    m_outermost = !data.history().isOpen();
    if (!m_outermost)
        return;
    begin(asset, name, &ChangeHistory::begin);
    data.history().openIsPreview(purpose == Purpose::Preview);
    data.transactionBroken = false;
}

Transaction::~Transaction()
{
    if (m_open)
        abort();
}

bool Transaction::isBroken() const
{
    return m_open && m_asset->data().transactionBroken;
}

bool Transaction::isChanged() const
{
    return m_open && !m_asset->data().history().openExtent().nothing();
}

void Transaction::commit(std::shared_ptr<TransactionStepUserCache> cache)
{
    if (!m_open)
        return;
    ModelData& data = m_asset->data();
    if (m_outermost && data.transactionBroken) {
        abort();
        return;
    }
    m_open = false;
    ChangeHistory::Extent extent = data.history().openExtent();
    if (m_outermost) {
        extent = data.history().commit(std::move(cache));
        if (extent.nothing())
            return;
        markChanged(m_asset, extent);
    }
    // An inner transaction shows what it did, so that the outer one can go on with it.
    if (extent.model)
        tellComponents(m_asset);
    if (m_outermost)
        stepDone(m_asset);
}

void Transaction::abort()
{
    if (!m_open)
        return;
    m_open = false;
    ModelData& data = m_asset->data();
    if (m_outermost)
        tellBack(m_asset, data.history().abort());
    else
        data.transactionBroken = true;
}

unsigned Transaction::undoSteps(const Asset* asset)
{
    return static_cast<unsigned>(asset->data().history().session().doneChanges().size());
}

unsigned Transaction::redoSteps(const Asset* asset)
{
    return static_cast<unsigned>(asset->data().history().session().undoneChanges().size());
}

std::wstring Transaction::undoName(const Asset* asset)
{
    return nameOf(asset->data().history().session().transactionToUndo());
}

std::wstring Transaction::redoName(const Asset* asset)
{
    return nameOf(asset->data().history().session().transactionToRedo());
}

bool Transaction::undo(Asset* asset)
{
    return isFree(asset) && step(asset, &ChangeHistory::undo);
}

bool Transaction::redo(Asset* asset)
{
    return isFree(asset) && step(asset, &ChangeHistory::redo);
}

} // namespace Vs
