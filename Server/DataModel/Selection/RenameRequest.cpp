#include "Server/DataModel/Selection/RenameRequest.h"

#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Model/ModelData.h"
#include "Server/DataModel/Private/Texts.h"
#include "Server/DataModel/Selection/PathQueries.h"

#include <algorithm>
#include <cwctype>
#include <utility>

namespace Vs {

using DataModel::localized;
using DataModel::localizedFormat;

RenameRequest* RenameRequest::make(Asset* asset, const std::vector<ObjectPath>& paths,
                                   const std::wstring& name)
{
    return new RenameRequest(asset, paths, name);
}

RenameRequest::RenameRequest(const Asset* asset, std::vector<ObjectPath> paths, std::wstring name)
    : Implements(localized("RenameComponent", "Rename")),
      m_asset(asset),
      m_paths(std::move(paths)),
      m_newName(std::move(name))
{
}

bool RenameRequest::isPossible(const Asset& asset, Status& status) const
{
    if (std::all_of(m_newName.begin(), m_newName.end(),
                    [](wchar_t c) { return !std::iswgraph(static_cast<wint_t>(c)); })) {
        status.addError(
            localized("RenameNoName", "Rename: a name needs at least one letter or digit that shows."));
        return false;
    }
    if (m_paths.empty() || &asset != m_asset) {
        status.addError(localized("RenameNothing", "Rename: no object that can be renamed was given."));
        return false;
    }
    return std::all_of(m_paths.begin(), m_paths.end(), [&](const ObjectPath& path) {
        if (!resolvePath(path, asset, status))
            return false;
        if (path.leaf == ObjectPath::Leaf::Component)
            return true;
        status.addError(localizedFormat("RenameNoComponent",
                                        "Rename: \"%1%\" has no name of its own; only components have one.",
                                        pathText(path, asset)));
        return false;
    });
}

void RenameRequest::onExecute(Asset& asset, Status& status)
{
    if (!isPossible(asset, status))
        return;
    asset.data().history().changeModel([&](ModelKernel& kernel) {
        for (const ObjectPath& path : m_paths)
            kernel.rename(path.component, m_newName);
    });
}

} // namespace Vs
