#include "Server/DataModel/Selection/Private/DeleteRequest.h"

#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Edit/Private/ComponentGroups.h"
#include "Server/DataModel/Model/ModelData.h"
#include "Server/DataModel/Private/Texts.h"
#include "Server/DataModel/Selection/PathQueries.h"

#include <utility>

namespace Vs {

DeleteRequest* DeleteRequest::make(const Asset* asset, std::vector<ObjectPath> paths)
{
    return new DeleteRequest(asset, std::move(paths));
}

DeleteRequest::DeleteRequest(const Asset* asset, std::vector<ObjectPath> paths)
    : Implements(DataModel::localized("DeleteComponents", "Delete")),
      m_asset(asset),
      m_paths(std::move(paths))
{
}

void DeleteRequest::onExecute(Asset& asset, Status& status)
{
    if (&asset != m_asset) {
        status.addError(
            DataModel::localized("DeleteOtherModel", "Delete: the components belong to another model."));
        return;
    }
    std::vector<std::string> components;
    for (const ObjectPath& path : m_paths) {
        if (!resolvePath(path, asset, status))
            return;
        components.push_back(path.component);
    }
    asset.data().history().changeModel([&](ModelKernel& kernel) { kernel.remove(components); });
    ComponentGroups(asset).remove(components);
}

} // namespace Vs
