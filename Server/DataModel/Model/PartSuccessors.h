#pragma once

#include "Server/DataModel/Selection/ObjectPath.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace Vs {

/// What the faces, edges and vertices of a body became when it got another shape, by their numbers
/// (ObjectPath::index). A value.
class PartSuccessors
{
public:
    using Numbers = std::vector<uint32_t>;
    static constexpr uint32_t kNone = UINT32_MAX;

    /// For a shape whose parts all still exist under the same numbers.
    PartSuccessors() = default;
    /// Each list holds the successor of every part; kNone if there isn't exactly one.
    PartSuccessors(Numbers faces, Numbers edges, Numbers vertices)
        : m_same(false), m_lists{std::move(faces), std::move(edges), std::move(vertices)}
    {
    }

    /// Nothing if the part has no successor, or several.
    std::optional<uint32_t> of(ObjectPath::Leaf leaf, uint32_t index) const;
    /// What the parts of the later shape were before; nothing where several were merged.
    PartSuccessors inverse() const;
    /// What the parts become by this and then by `next`.
    PartSuccessors followedBy(const PartSuccessors& next) const;

private:
    bool m_same = true;
    Numbers m_lists[3]; ///< Faces, edges, vertices.
};

} // namespace Vs
