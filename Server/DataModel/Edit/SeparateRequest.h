#pragma once

#include "Server/DataModel/Request.h"
#include "Server/DataModel/Selection/ObjectPath.h"

#include <string>
#include <vector>

namespace Vs {

/// Breaks up the groups of components that the named ones belong to, such as the copies of a pattern, as one
/// undo step: they stay where they are, and each can be deleted individually afterwards. Components without a
/// group are skipped. Ended by Request::destroy.
///
/// It is an error if a component is gone, or if none has a group.
class SeparateRequest : public Implements<SeparateRequest, Request>
{
public:
    [[nodiscard]] static SeparateRequest* make(std::vector<ObjectPath> paths);

    /// The components (Component::id) in the group of that one, including itself; none if it is in no group.
    [[nodiscard]] static std::vector<std::string> groupOf(const ObjectPath& path, Asset& asset);

protected:
    explicit SeparateRequest(std::vector<ObjectPath> paths);
    void onExecute(Asset& asset, Status& status) override;

private:
    std::vector<ObjectPath> m_paths;
};

} // namespace Vs
