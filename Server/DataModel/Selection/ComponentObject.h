#pragma once

#include "Server/DataModel/Selection/IDeletable.h"

namespace Vs {

/// A component as the commands that edit any kind of object see it. Components that are selected together
/// are deleted by one request.
class ComponentObject : public Implements<ComponentObject, SharedObject, DataModel::IDeletable>
{
public:
    /// The asset must outlive the object.
    explicit ComponentObject(Asset* asset) : m_asset(asset) {}

    bool canDelete(const ObjectPath& path) const override;
    bool requiresMultiDelete(const ObjectPath&) const override { return true; }
    Request* provideDeleteRequest(const ObjectPath& path) override;
    Request* provideMultiDeleteRequest(const std::vector<ObjectPath>& paths,
                                       std::vector<ObjectPath>& handled) override;

private:
    Asset* m_asset;
};

} // namespace Vs
