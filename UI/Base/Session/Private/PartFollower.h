#pragma once

#include "Server/DataModel/Selection/Selection.h"

#include <map>
#include <string>
#include <vector>

namespace Vs {
class Asset;
}

namespace Vu {

/// Finds the faces, edges and vertices that somebody holds again after their bodies changed shape. What a
/// preview shows is ignored: it disappears again, and then the parts are what they were.
class PartFollower
{
public:
    /// To be called when the asset's components have changed (AssetEventSite::assetComponentsChanged);
    /// returns whether what is held must be updated by `follow` now.
    [[nodiscard]] bool heard(const Vs::Asset& asset);
    /// What is left of the selections in the asset as it is now. Parts without exactly one successor are
    /// gone; other things than parts of the asset's bodies stay as they are.
    [[nodiscard]] std::vector<Vs::StrongRef<Vs::Selection>>
    follow(const std::vector<Vs::StrongRef<Vs::Selection>>& held, Vs::Asset* asset) const;
    /// To be called when all that is held was brought up to date.
    void followed() { m_before.clear(); }
    /// Whether the part belongs to a body that has another shape just now than when it was named.
    bool isAway(const Vs::ObjectPath& path) const
    {
        return path.isPartOfBody() && m_before.contains(path.component);
    }

private:
    std::map<std::string, uint64_t> m_before; ///< The revisions for which what is held is right.
};

} // namespace Vu
