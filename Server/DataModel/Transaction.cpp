#include "Server/DataModel/Transaction.h"

#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/Model/ModelData.h"

#include <stdexcept>

namespace Vs {

namespace {

void tellChanges(Asset* asset)
{
    ComponentsEvent::Changes changes = asset->data().refresh();
    if (changes.added.empty() && changes.changed.empty() && changes.removed.empty())
        return;
    ComponentsEvent event(asset, std::move(changes));
    AssetEventSource::get()->fireAssetComponentsChanged(&event);
}

// A model whose kernel was never needed has no steps, and asking must not load the kernel.
template <class Result>
Result ask(const Asset* asset, Result (ModelKernel::*question)() const)
{
    ModelSource& source = asset->data().source();
    return source.kernelLoaded()
               ? source.withKernel([&](ModelKernel& kernel) { return (kernel.*question)(); })
               : Result();
}

bool step(Asset* asset, bool (ModelKernel::*direction)())
{
    ModelSource& source = asset->data().source();
    if (!source.kernelLoaded() || asset->data().transactionOpen || !asset->document()->mayBeEdited() ||
        !source.withKernel([&](ModelKernel& kernel) { return (kernel.*direction)(); }))
        return false;
    asset->data().markChanged();
    asset->markDirty();
    tellChanges(asset);
    return true;
}

} // namespace

Transaction::Transaction(Asset* asset, const std::wstring& name) : m_asset(asset)
{
    ModelData& data = asset->data();
    m_outermost = !data.transactionOpen;
    if (!m_outermost)
        return;
    if (!asset->document()->mayBeEdited())
        throw std::runtime_error("its document is read-only");
    data.source().withKernel([](ModelKernel& kernel) { kernel.begin(); });
    data.transactionOpen = true;
    data.transactionBroken = false;
    data.transactionName = name;
}

Transaction::~Transaction()
{
    if (m_open)
        abort();
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
    if (m_outermost) {
        data.transactionOpen = false;
        if (!data.source().withKernel(
                [&](ModelKernel& kernel) { return kernel.commit(data.transactionName); }))
            return;
        data.markChanged();
        m_asset->markDirty();
    }
    // An inner transaction shows what it did, so that the outer one can go on with it.
    tellChanges(m_asset);
}

void Transaction::abort()
{
    if (!m_open)
        return;
    m_open = false;
    ModelData& data = m_asset->data();
    if (!m_outermost) {
        data.transactionBroken = true;
        return;
    }
    data.transactionOpen = false;
    data.source().withKernel([](ModelKernel& kernel) { kernel.abort(); });
    tellChanges(m_asset);
}

unsigned Transaction::undoSteps(const Asset* asset)
{
    return ask(asset, &ModelKernel::undoSteps);
}

unsigned Transaction::redoSteps(const Asset* asset)
{
    return ask(asset, &ModelKernel::redoSteps);
}

std::wstring Transaction::undoName(const Asset* asset)
{
    return ask(asset, &ModelKernel::undoName);
}

std::wstring Transaction::redoName(const Asset* asset)
{
    return ask(asset, &ModelKernel::redoName);
}

bool Transaction::undo(Asset* asset)
{
    return step(asset, &ModelKernel::undo);
}

bool Transaction::redo(Asset* asset)
{
    return step(asset, &ModelKernel::redo);
}

} // namespace Vs
