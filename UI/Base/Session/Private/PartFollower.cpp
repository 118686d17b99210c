#include "UI/Base/Session/Private/PartFollower.h"

#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Selection/PartHistory.h"

namespace Vu {

bool PartFollower::heard(const Vs::Asset& asset)
{
    for (const Vs::ReshapedBody& body : Vs::reshapedBodies(asset))
        m_before.try_emplace(body.component, body.before);
    return !m_before.empty() && !Vs::showsPreview(asset);
}

std::vector<Vs::StrongRef<Vs::Selection>>
PartFollower::follow(const std::vector<Vs::StrongRef<Vs::Selection>>& held, Vs::Asset* asset) const
{
    std::vector<Vs::StrongRef<Vs::Selection>> left;
    for (const auto& each : held) {
        const auto* part = Vs::cast<Vs::LogicalSelection>(each.get());
        if (!part || part->asset() != asset || !isAway(part->path())) {
            left.push_back(each);
            continue;
        }
        const auto now = Vs::successorOf(part->path(), m_before.at(part->componentId()), *asset);
        if (now && *now == part->path())
            left.push_back(each);
        else if (now)
            left.emplace_back(new Vs::LogicalSelection(asset, *now, nullptr));
    }
    return left;
}

} // namespace Vu
