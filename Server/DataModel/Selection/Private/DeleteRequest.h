#pragma once

#include "Server/DataModel/Request.h"
#include "Server/DataModel/Selection/ObjectPath.h"

#include <vector>

namespace Vs {

/// Deletes components with all that is in them, as one undo step. What stands in an assembly that occurs
/// several times goes from all of these. Made for one asset and not to be executed on another; ended by
/// Request::destroy. It is an error if one of the components isn't there.
class DeleteRequest : public Implements<DeleteRequest, Request>
{
public:
    static DeleteRequest* make(const Asset* asset, std::vector<ObjectPath> paths);

protected:
    DeleteRequest(const Asset* asset, std::vector<ObjectPath> paths);
    void onExecute(Asset& asset, Status& status) override;

private:
    const Asset* m_asset; ///< Only to be compared.
    std::vector<ObjectPath> m_paths;
};

} // namespace Vs
