#include "Server/DataModel/Transaction.h"

#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/Model/ModelData.h"
#include "Server/DataModel/SteppedTransaction.h"
#include "Server/DataModel/TransactionMgr.h"
#include "Server/DataModel/TransactionStepUserCache.h"

#include <stdexcept>

namespace Vs {

namespace {

void tellComponents(Asset* asset)
{
    asset->data().history().settle();
    ComponentsEvent::Changes changes = asset->data().refresh();
    if (changes.added.empty() && changes.changed.empty() && changes.removed.empty())
        return;
    ComponentsEvent event(asset, std::move(changes));
    AssetEventSource::get()->fireAssetComponentsChanged(&event);
}

/// Tells of values that were put back; of new ones Asset::setting has told.
void tellBack(Asset* asset, ChangeHistory::Extent extent)
{
    if (extent.model)
        tellComponents(asset);
    if (!extent.settings)
        return;
    AssetEvent event(asset);
    AssetEventSource::get()->fireAssetSettingsChanged(&event);
}

void begin(Asset* asset, const std::wstring& name,
           void (ChangeHistory::*start)(const std::wstring&, const std::wstring&))
{
    if (!asset->document()->mayBeEdited())
        throw std::runtime_error("its document is read-only");
    (asset->data().history().*start)(name, TransactionMgr::cmdKeyNow(asset));
}

void markChanged(Asset* asset, ChangeHistory::Extent extent)
{
    if (extent.model)
        asset->data().markChanged();
    asset->markDirty();
}

bool step(Asset* asset, ChangeHistory::Extent (ChangeHistory::*direction)())
{
    const ChangeHistory::Extent extent = (asset->data().history().*direction)();
    if (extent.nothing())
        return false;
    markChanged(asset, extent);
    tellBack(asset, extent);
    return true;
}

/// Whether the session's steps can be walked now.
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

SteppedTransaction::SteppedTransaction(Asset* asset, const std::wstring& name) : m_asset(asset)
{
    if (isOpen(asset) || asset->data().history().isOpen())
        throw std::runtime_error("another change of it isn't finished");
    begin(asset, name, &ChangeHistory::beginGroup);
}

SteppedTransaction::~SteppedTransaction()
{
    if (m_open)
        abort();
}

bool SteppedTransaction::isOpen(const Asset* asset)
{
    return asset->data().history().group() != nullptr;
}

const TransactionNode& SteppedTransaction::node() const
{
    return *m_asset->data().history().group();
}

void SteppedTransaction::commit()
{
    m_open = false;
    m_asset->data().history().commitGroup();
}

void SteppedTransaction::abort()
{
    m_open = false;
    const ChangeHistory::Extent extent = m_asset->data().history().abortGroup();
    if (extent.nothing())
        return;
    markChanged(m_asset, extent);
    tellBack(m_asset, extent);
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
