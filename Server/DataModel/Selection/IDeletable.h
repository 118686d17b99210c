#pragma once

#include "Server/Base/Object.h"
#include "Server/DataModel/Selection/ObjectPath.h"

#include <vector>

namespace Vs {
class Request;
}

namespace Vs::DataModel {

/// An object of a model that can be deleted, as returned by LogicalSelection::leaf. Main thread only.
class IDeletable
{
public:
    static const UniqueString* interfaceId()
    {
        static const UniqueString* const id = Vs::Detail::classInterfaceId(typeid(IDeletable));
        return id;
    }
    virtual ~IDeletable() = default;

    /// `path` is where the object was selected, here and below.
    [[nodiscard]] virtual bool canDelete(const ObjectPath& path) const = 0;
    /// Whether it is deleted together with others of its kind, by one request.
    [[nodiscard]] virtual bool requiresMultiDelete(const ObjectPath& path) const = 0;
    /// The request that deletes only this object; null if there is none. The caller ends it
    /// (Request::destroy).
    [[nodiscard]] virtual Request* provideDeleteRequest(const ObjectPath& path) = 0;
    /// The same for as many of the paths as one request takes; these are added to `handled`.
    [[nodiscard]] virtual Request* provideMultiDeleteRequest(const std::vector<ObjectPath>& paths,
                                                             std::vector<ObjectPath>& handled) = 0;
};

} // namespace Vs::DataModel
