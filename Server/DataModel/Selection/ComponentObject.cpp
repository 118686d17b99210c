#include "Server/DataModel/Selection/ComponentObject.h"

#include "Server/DataModel/Selection/ComponentPasteRequest.h"
#include "Server/DataModel/Selection/DeleteRequest.h"
#include "Server/DataModel/Selection/Selection.h"

#include <algorithm>
#include <iterator>

namespace Vs {

StrongRef<SharedObject> LogicalSelection::leaf(Asset& asset) const
{
    Status ignored;
    if (&asset != m_asset || m_path.leaf != ObjectPath::Leaf::Component || !m_path.resolve(asset, ignored))
        return nullptr;
    return StrongRef<SharedObject>(new ComponentObject(&asset));
}

bool ComponentObject::canDelete(const ObjectPath& path) const
{
    Status ignored;
    return path.leaf == ObjectPath::Leaf::Component && path.resolve(*m_asset, ignored);
}

Request* ComponentObject::provideDeleteRequest(const ObjectPath& path)
{
    return canDelete(path) ? DeleteRequest::make(m_asset, {path}) : nullptr;
}

std::vector<ObjectPath> ComponentObject::own(const std::vector<ObjectPath>& paths) const
{
    std::vector<ObjectPath> own;
    std::copy_if(paths.begin(), paths.end(), std::back_inserter(own),
                 [this](const ObjectPath& path) { return canDelete(path); });
    return own;
}

Request* ComponentObject::provideMultiDeleteRequest(const std::vector<ObjectPath>& paths,
                                                    std::vector<ObjectPath>& handled)
{
    std::vector<ObjectPath> taken = own(paths);
    if (taken.empty())
        return nullptr;
    handled.insert(handled.end(), taken.begin(), taken.end());
    return DeleteRequest::make(m_asset, std::move(taken));
}

PasteRequest* ComponentObject::providePasteRequest(const std::vector<ObjectPath>& paths, bool cut,
                                                   std::vector<ObjectPath>& handled)
{
    std::vector<ObjectPath> taken = own(paths);
    if (taken.empty())
        return nullptr;
    handled.insert(handled.end(), taken.begin(), taken.end());
    return ComponentPasteRequest::make(m_asset, std::move(taken), cut);
}

} // namespace Vs
