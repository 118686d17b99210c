#include "Server/DataModel/Selection/Private/ComponentObject.h"

#include "Server/Component/ComponentIds.h"
#include "Server/DataModel/Edit/Private/ComponentGroups.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "Server/DataModel/Selection/Private/ComponentPasteRequest.h"
#include "Server/DataModel/Selection/Private/DeleteRequest.h"
#include "Server/DataModel/Selection/Selection.h"

#include <algorithm>
#include <iterator>
#include <sstream>
#include <unordered_set>

namespace Vs {

namespace {

/// Whether the component goes when what stands at these places goes: it is one of these, or lies in one.
bool goesWith(const std::string& component, const std::unordered_set<std::string>& places)
{
    std::istringstream steps(component);
    for (std::string step; std::getline(steps, step, '/');)
        if (places.contains(step))
            return true;
    return false;
}

std::vector<ObjectPath> toPaths(const std::vector<std::string>& components)
{
    std::vector<ObjectPath> paths;
    for (const std::string& component : components)
        paths.push_back({.component = component});
    return paths;
}

} // namespace

bool ComponentObject::canDelete(const ObjectPath& path) const
{
    Status ignored;
    return path.leaf == ObjectPath::Leaf::Component && resolvePath(path, *m_asset, ignored);
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
    const std::vector<ObjectPath> named = own(paths);
    if (named.empty())
        return nullptr;
    const ComponentGroups groups(*m_asset);
    std::vector<ObjectPath> going = toPaths(groups.groupOf(named.front().component));
    if (going.empty())
        std::copy_if(named.begin(), named.end(), std::back_inserter(going),
                     [&](const ObjectPath& path) { return !groups.isGrouped(path.component); });
    std::unordered_set<std::string> places;
    for (const ObjectPath& path : going)
        places.insert(placeOf(path.component));
    std::copy_if(named.begin(), named.end(), std::back_inserter(handled),
                 [&](const ObjectPath& path) { return goesWith(path.component, places); });
    return DeleteRequest::make(m_asset, std::move(going));
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
