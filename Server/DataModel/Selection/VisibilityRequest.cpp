#include "Server/DataModel/Selection/VisibilityRequest.h"

#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Model/ModelData.h"
#include "Server/DataModel/Private/Texts.h"
#include "Server/DataModel/Selection/PathQueries.h"

#include <utility>

namespace Vs {

using DataModel::localized;

VisibilityRequest* VisibilityRequest::make(std::vector<ObjectPath> paths, bool visible)
{
    return new VisibilityRequest(std::move(paths), visible);
}

VisibilityRequest::VisibilityRequest(std::vector<ObjectPath> paths, bool visible)
    : Implements(visible ? localized("ShowComponents", "Show") : localized("HideComponents", "Hide")),
      m_paths(std::move(paths)),
      m_visible(visible)
{
}

void VisibilityRequest::onExecute(Asset& asset, Status& status)
{
    std::vector<std::string> components;
    for (const ObjectPath& path : m_paths) {
        const Component* component = resolvePath(path, asset, status);
        if (!component)
            return;
        if (component->visible != m_visible)
            components.push_back(path.component);
    }
    if (m_paths.empty())
        status.addError(localized("VisibilityNothing", "There is nothing to show or hide."));
    else if (!components.empty())
        asset.data().history().changeModel(
            [&](ModelKernel& kernel) { kernel.setVisible(components, m_visible); });
}

} // namespace Vs
