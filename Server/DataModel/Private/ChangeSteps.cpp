#include "Server/DataModel/Private/ChangeSteps.h"

#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/Model/ModelData.h"
#include "Server/DataModel/TransactionMgr.h"

#include <stdexcept>

namespace Vs {
namespace {

void (*s_listener)(Asset*) = nullptr;

} // namespace

void ChangeSteps::tellComponents(Asset* asset)
{
    asset->data().history().settle();
    ComponentsEvent::Changes changes = asset->data().refresh();
    if (changes.added.empty() && changes.changed.empty() && changes.removed.empty())
        return;
    ComponentsEvent event(asset, std::move(changes));
    AssetEventSource::get()->fireAssetComponentsChanged(&event);
}

/// Announces values that were restored; Asset::setting has announced new ones.
void ChangeSteps::tellBack(Asset* asset, ChangeHistory::Extent extent)
{
    if (extent.model)
        tellComponents(asset);
    if (!extent.settings)
        return;
    AssetEvent event(asset);
    AssetEventSource::get()->fireAssetSettingsChanged(&event);
}

void ChangeSteps::begin(Asset* asset, const std::wstring& name,
                        void (ChangeHistory::*start)(const std::wstring&, const std::wstring&))
{
    if (!asset->document()->mayBeEdited())
        throw std::runtime_error("its document is read-only");
    (asset->data().history().*start)(name, TransactionMgr::cmdKeyNow(asset));
}

void ChangeSteps::markChanged(Asset* asset, ChangeHistory::Extent extent)
{
    if (extent.model)
        asset->data().markChanged();
    asset->markDirty();
}

void ChangeSteps::stepDone(Asset* asset)
{
    if (s_listener)
        s_listener(asset);
}

void ChangeSteps::listener(void (*stepped)(Asset*))
{
    s_listener = stepped;
}

bool ChangeSteps::step(Asset* asset, ChangeHistory::Extent (ChangeHistory::*direction)())
{
    const ChangeHistory::Extent extent = (asset->data().history().*direction)();
    if (extent.nothing())
        return false;
    markChanged(asset, extent);
    tellBack(asset, extent);
    stepDone(asset);
    return true;
}

} // namespace Vs
