#include "Server/DataModel/Transaction.h"

#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/Model/ModelData.h"
#include "Server/DataModel/TransactionMgr.h"

#include <stdexcept>

namespace Vs {

namespace {

void tellComponents(Asset* asset)
{
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

void markChanged(Asset* asset, ChangeHistory::Extent extent)
{
    if (extent.model)
        asset->data().markChanged();
    asset->markDirty();
}

bool step(Asset* asset, ChangeHistory::Extent (ChangeHistory::*direction)())
{
    if (!asset->document()->mayBeEdited())
        return false;
    const ChangeHistory::Extent extent = (asset->data().history().*direction)();
    if (extent.nothing())
        return false;
    markChanged(asset, extent);
    tellBack(asset, extent);
    return true;
}

std::wstring nameOf(const TransactionNode* step)
{
    return step ? step->userName() : std::wstring();
}

} // namespace

Transaction::Transaction(Asset* asset, const std::wstring& name) : m_asset(asset)
{
    ModelData& data = asset->data();
    m_outermost = !data.history().isOpen();
    if (!m_outermost)
        return;
    if (!asset->document()->mayBeEdited())
        throw std::runtime_error("its document is read-only");
    data.history().begin(name, TransactionMgr::cmdKeyNow(asset));
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

void Transaction::commit()
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
        extent = data.history().commit();
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
    return step(asset, &ChangeHistory::undo);
}

bool Transaction::redo(Asset* asset)
{
    return step(asset, &ChangeHistory::redo);
}

} // namespace Vs
