#include "Server/DataModel/Edit/SeparateRequest.h"

#include "Server/Base/Status.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Edit/Private/ComponentGroups.h"
#include "Server/DataModel/Private/Texts.h"
#include "Server/DataModel/Selection/PathQueries.h"

#include <utility>

namespace Vs {

SeparateRequest* SeparateRequest::make(std::vector<ObjectPath> paths)
{
    return new SeparateRequest(std::move(paths));
}

SeparateRequest::SeparateRequest(std::vector<ObjectPath> paths)
    : Implements(DataModel::localized("SeparateComponents", "Separate Pattern")), m_paths(std::move(paths))
{
}

std::vector<std::string> SeparateRequest::groupOf(const ObjectPath& path, Asset& asset)
{
    return ComponentGroups(asset).groupOf(path.component);
}

void SeparateRequest::onExecute(Asset& asset, Status& status)
{
    ComponentGroups groups(asset);
    bool any = false;
    for (const ObjectPath& path : m_paths) {
        if (!resolvePath(path, asset, status))
            return;
        any = groups.separate(path.component) || any;
    }
    if (!any)
        status.addError(DataModel::localized(
            "SeparateNothing",
            "None of the given components belongs to a pattern, so there is nothing to separate."));
}

} // namespace Vs
