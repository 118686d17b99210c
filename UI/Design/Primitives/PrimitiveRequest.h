#pragma once

#include "Server/DataModel/Request.h"
#include "UI/Design/Primitives/PrimitiveTable.h"

#include <string>
#include <vector>

namespace Vu::Design {

/// Adds one primitive. Ended by Request::destroy, or made on the stack.
class PrimitiveRequest : public Vs::Implements<PrimitiveRequest, Vs::Request>
{
public:
    /// Sizes in the row's order. `parent` is the component (Component::id) that it goes into, without being
    /// moved in the model; empty for the top of the model.
    PrimitiveRequest(const PrimitiveRow& row, std::vector<double> sizes, Vs::ModelBuilder::Look look,
                     std::string parent);

    /// The component that the last execution made; where it was joined to the body of the parent, that one.
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

/// Where a primitive stands on its origin with its z axis in that direction, of any length but zero. Its x
/// axis is level: the model's own where the direction is upright.
[[nodiscard]] GkMatrix3d standingAt(const GkPoint3d& origin, const GkVector3d& direction);

} // namespace Vu::Design
