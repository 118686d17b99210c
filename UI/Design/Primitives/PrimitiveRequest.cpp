#include "UI/Design/Primitives/PrimitiveRequest.h"

#include "Server/Base/Strings.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Edit/EditRequest.h"
#include "UI/Design/Localized.h"

#include <memory>
#include <utility>

namespace Vu::Design {

PrimitiveRequest::PrimitiveRequest(const PrimitiveRow& row, std::vector<double> sizes,
                                   Vs::ModelBuilder::Look look, std::string parent)
    : Implements(Vs::Strings::widen(row.look.title)),
      m_row(row),
      m_sizes(std::move(sizes)),
      m_look(std::move(look)),
      m_parent(std::move(parent))
{
}

void PrimitiveRequest::onExecute(Vs::Asset& asset, Vs::Status& status)
{
    Vs::ModelBuilder builder(&asset);
    const Vs::Component* made = m_row.build(builder, m_sizes.data(), m_look, status);
    m_made = made ? made->id : std::string();
    if (!made || m_parent.empty())
        return;
    struct Destroy
    {
        void operator()(Vs::Request* request) const { request->destroy(); }
    };
    const std::unique_ptr<Vs::EditRequest, Destroy> request(
        Vs::EditRequest::make(&asset, name(), Vs::NestEdit{{m_made}, m_parent}));
    request->execute(&asset, status);
    m_made = request->added().empty() ? m_parent : request->added().front();
}

GkMatrix3d standingAt(const GkPoint3d& origin, const GkVector3d& direction)
{
    const GkVector3d up = GkVector3d::kZAxis, z = direction.normal();
    const GkVector3d x = z.isParallelTo(up) ? GkVector3d::kXAxis : up.crossProduct(z).normal();
    const GkVector3d y = z.crossProduct(x);
    GkMatrix3d place;
    const GkVector3d columns[] = {x, y, z, origin.asVector()};
    for (int column = 0; column < 4; ++column) {
        place.entry[0][column] = columns[column].x;
        place.entry[1][column] = columns[column].y;
        place.entry[2][column] = columns[column].z;
    }
    return place;
}

} // namespace Vu::Design
