#pragma once

#include "Server/DataModel/Request.h"
#include "Server/DataModel/Selection/ObjectPath.h"

#include <vector>

namespace Vs {

/// Shows or hides components, as one undo step; a selection of a part of a component means the component.
/// Hiding one hides it wherever the assembly that holds it occurs, with everything in it. Ended by
/// Request::destroy.
///
/// It is an error if one is gone, or if there is none.
class VisibilityRequest : public Implements<VisibilityRequest, Request>
{
public:
    [[nodiscard]] static VisibilityRequest* make(std::vector<ObjectPath> paths, bool visible);

protected:
    VisibilityRequest(std::vector<ObjectPath> paths, bool visible);
    void onExecute(Asset& asset, Status& status) override;

private:
    std::vector<ObjectPath> m_paths;
    bool m_visible;
};

} // namespace Vs
