#pragma once

#include "Server/DataModel/Selection/IDeletable.h"
#include "Server/DataModel/Selection/IPasteSource.h"

namespace Vs {

/// A component as seen by the commands that edit any kind of object. Components that are selected together
/// are deleted, or pasted, by one request; those of a group (ComponentGroups) by a separate one, which also
/// takes the others of the group, unless one is deleted alone.
class ComponentObject
    : public Implements<ComponentObject, SharedObject, DataModel::IDeletable, DataModel::IPasteSource>
{
public:
    /// The asset must outlive the object.
    explicit ComponentObject(Asset* asset) : m_asset(asset) {}

    bool canDelete(const ObjectPath& path) const override;
    bool requiresMultiDelete(const ObjectPath&) const override { return true; }
    Request* provideDeleteRequest(const ObjectPath& path) override;
    Request* provideMultiDeleteRequest(const std::vector<ObjectPath>& paths,
                                       std::vector<ObjectPath>& handled) override;

    bool canCut() const override { return true; }
    bool canReorder() const override { return true; }
    PasteRequest* providePasteRequest(const std::vector<ObjectPath>& paths, bool cut,
                                      std::vector<ObjectPath>& handled) override;

private:
    /// Those of the paths that are components of the asset.
    std::vector<ObjectPath> own(const std::vector<ObjectPath>& paths) const;

    Asset* m_asset;
};

} // namespace Vs
