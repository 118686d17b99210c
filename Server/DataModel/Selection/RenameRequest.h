#pragma once

#include "Server/DataModel/Request.h"
#include "Server/DataModel/Selection/ObjectPath.h"

#include <vector>

namespace Vs {

/// Renames components, all of them or none, as one undo step. Made for one asset and must not be executed on
/// another; ended by Request::destroy.
///
/// It is an error if there is no component, if one is gone or isn't a component, and if the name is empty or
/// blank.
class RenameRequest : public Implements<RenameRequest, Request>
{
public:
    [[nodiscard]] static RenameRequest* make(Asset* asset, const std::vector<ObjectPath>& paths,
                                             const std::wstring& name);

protected:
    RenameRequest(const Asset* asset, std::vector<ObjectPath> paths, std::wstring name);
    void onExecute(Asset& asset, Status& status) override;

private:
    bool isPossible(const Asset& asset, Status& status) const;

    const Asset* m_asset; ///< Only for comparison.
    std::vector<ObjectPath> m_paths;
    std::wstring m_newName;
};

} // namespace Vs
