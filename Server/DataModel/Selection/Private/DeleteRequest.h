#pragma once

#include "Server/DataModel/Request.h"
#include "Server/DataModel/Selection/ObjectPath.h"

#include <vector>

namespace Vs {

/// Deletes components with everything in them, as one undo step. What is in an assembly that occurs several
/// times disappears from all of its occurrences. Made for one asset and must not be executed on another;
/// ended by Request::destroy. It is an error if one of the components doesn't exist.
class DeleteRequest : public Implements<DeleteRequest, Request>
{
public:
    static DeleteRequest* make(const Asset* asset, std::vector<ObjectPath> paths);

protected:
    DeleteRequest(const Asset* asset, std::vector<ObjectPath> paths);
    void onExecute(Asset& asset, Status& status) override;

private:
    const Asset* m_asset; ///< Only for comparison.
    std::vector<ObjectPath> m_paths;
};

} // namespace Vs
