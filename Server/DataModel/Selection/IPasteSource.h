#pragma once

#include "Server/Base/Object.h"
#include "Server/DataModel/Request.h"
#include "Server/DataModel/Selection/ObjectPath.h"

#include <string>
#include <vector>

namespace Vs {

/// Pastes copies of objects into the asset on which it is executed, as one undo step. Ended by
/// Request::destroy.
class PasteRequest : public Implements<PasteRequest, Request>
{
public:
    using Implements::Implements;
    /// The component (Component::id) that the copies go into; empty, the default, for the top of the model.
    void into(const std::string& component) { m_into = component; }
    /// What the last execution pasted.
    const std::vector<ObjectPath>& pasted() const { return m_pasted; }

protected:
    std::vector<ObjectPath> m_pasted;
    std::string m_into;
};

} // namespace Vs

namespace Vs::DataModel {

/// An object of a model that can be put elsewhere, as returned by LogicalSelection::leaf. Main thread only.
class IPasteSource
{
public:
    static const UniqueString* interfaceId()
    {
        static const UniqueString* const id = Vs::Detail::classInterfaceId(typeid(IPasteSource));
        return id;
    }
    virtual ~IPasteSource() = default;

    /// Whether it can be cut, and whether it can be moved among its siblings.
    [[nodiscard]] virtual bool canCut() const = 0;
    [[nodiscard]] virtual bool canReorder() const = 0;
    /// The request that pastes as many of the objects at these paths as one request takes; they are added to
    /// `handled`. With `cut`, executing it on the objects' own asset removes them from where they were; on
    /// another asset it leaves that to whoever deletes them there. Null if there is none.
    [[nodiscard]] virtual PasteRequest* providePasteRequest(const std::vector<ObjectPath>& paths, bool cut,
                                                            std::vector<ObjectPath>& handled) = 0;
};

} // namespace Vs::DataModel
