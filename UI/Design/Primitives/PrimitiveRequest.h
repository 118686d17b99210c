#pragma once

#include "Server/DataModel/Request.h"
#include "UI/Design/Primitives/PrimitiveTable.h"

#include <string>
#include <vector>

namespace Vu::Design {

/// Adds one primitive. Ended by Request::destroy, or created on the stack.
class PrimitiveRequest : public Vs::Implements<PrimitiveRequest, Vs::Request>
{
public:
    /// Sizes in the row's order. `parent` is the component (Component::id) that it is added to, without being
    /// moved in the model; empty for the top of the model.
    PrimitiveRequest(const PrimitiveRow& row, std::vector<double> sizes, Vs::ModelBuilder::Look look,
                     std::string parent);

    /// The component created by the last execution; if it was joined to the parent's body, the parent.
    const std::string& made() const { return m_made; }

protected:
    void onExecute(Vs::Asset& asset, Vs::Status& status) override;

private:
    const PrimitiveRow& m_row;
    std::vector<double> m_sizes;
    Vs::ModelBuilder::Look m_look;
    std::string m_parent;
    std::string m_made;
};

/// The placement of a primitive at its origin with its z axis in that direction, of any non-zero length. Its
/// x axis is horizontal: the model's own if the direction is vertical.
[[nodiscard]] GkMatrix3d standingAt(const GkPoint3d& origin, const GkVector3d& direction);

} // namespace Vu::Design
